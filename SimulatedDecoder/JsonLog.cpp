#include "JsonLog.h"

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>

#include <nlohmann/json.hpp>
#include <spdlog/fmt/chrono.h>
#include <spdlog/spdlog.h>

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

JsonLog::JsonLog(const std::string& path)
{
    if (path.empty()) {
        return;
    }
    m_file.open(path, std::ios::binary | std::ios::trunc);
    if (!m_file) {
        throw std::runtime_error("cannot write " + path + ": " + std::generic_category().message(errno));
    }
}

void JsonLog::Write(int connection, const Request& request, std::string_view text,
                    std::optional<ErrorCode> answered)
{
    if (!m_file.is_open()) {
        return;
    }
    nlohmann::ordered_json line{{"time", Now()},  {"connection", connection}, {"url", request.Url()},
                                {"seq", nullptr}, {"request", text},          {"errorcode", nullptr}};
    if (request.Seq()) {
        line["seq"] = *request.Seq();
    }
    if (answered) {
        line["errorcode"] = static_cast<std::uint32_t>(*answered);
    }
    m_file << line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
    if (!m_file) {
        spdlog::error("cannot write the log of the requests any more");
        m_file.close();
    }
}

} // namespace simulated_decoder
