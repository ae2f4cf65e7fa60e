#include "Server/JsonLog.h"

#include <chrono>

#include <nlohmann/json.hpp>
#include <spdlog/fmt/chrono.h>

#include "Server/Secrets.h"

namespace simulated_decoder {

namespace {

std::string Now()
{
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(system_clock::to_time_t(now)),
                       now.time_since_epoch().count() % 1000);
}

} // namespace

void JsonLog::Write(int connection, const RequestContext& context, std::string_view text,
                    std::optional<ErrorCode> answered)
{
    if (!m_file.IsOpen()) {
        return;
    }
    nlohmann::ordered_json line{
        {"time", Now()},       {"connection", connection},           {"url", context.request.Url()},
        {"seq", nullptr},      {"request", HidePlainAccounts(text)}, {"credentials", context.credentials},
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
