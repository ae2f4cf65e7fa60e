#include "Server/JsonLog.h"

#include <algorithm>
#include <cctype>
#include <chrono>

#include <nlohmann/json.hpp>
#include <spdlog/fmt/chrono.h>

#include "Link/Crypto.h"

namespace simulated_decoder {

namespace {

std::string Now()
{
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(system_clock::to_time_t(now)),
                       now.time_since_epoch().count() % 1000);
}

bool IsEnciphered(std::string_view text)
{
    return text.size() == kEncipheredLength && std::all_of(text.begin(), text.end(), [](char byte) {
               return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '+' || byte == '/' ||
                      byte == '=';
           });
}

// Replaces the content of elements with this name that is not enciphered. Works on the text, as a host's
// request need not be well-formed.
std::string HidePlain(std::string_view text, const std::string& name)
{
    const std::string begin = "<" + name;
    std::string hidden;
    std::size_t copied = 0;
    for (auto at = text.find(begin); at != std::string_view::npos; at = text.find(begin, at)) {
        at += begin.size();
        const std::string_view rest = text.substr(at);
        if (rest.empty() || std::string_view("> \t\r\n").find(rest.front()) == std::string_view::npos) {
            continue; // an element without content, or with a longer name
        }
        const std::string_view content = rest.substr(0, rest.find("</" + name));
        if (content != ">" && !IsEnciphered(content.substr(1))) {
            hidden.append(text, copied, at - copied).append(">(not enciphered)");
            at += content.size();
            copied = at;
        }
    }
    return hidden.append(text, copied);
}

} // namespace

void JsonLog::Write(int connection, const RequestContext& context, std::string_view text,
                    std::optional<ErrorCode> answered)
{
    if (!m_file.IsOpen()) {
        return;
    }
    nlohmann::ordered_json line{{"time", Now()},
                                {"connection", connection},
                                {"url", context.request.Url()},
                                {"seq", nullptr},
                                {"request", HidePlain(HidePlain(text, "user"), "pwd")},
                                {"credentials", context.credentials},
                                {"errorcode", nullptr}};
    if (context.request.Seq()) {
        line["seq"] = *context.request.Seq();
    }
    if (answered) {
        line["errorcode"] = static_cast<std::uint32_t>(*answered);
    }
    m_file.Write(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n');
}

} // namespace simulated_decoder
