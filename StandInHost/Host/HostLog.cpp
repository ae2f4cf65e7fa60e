#include "Host/HostLog.h"

#include <fstream>
#include <memory>

#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Host/HostExport.h"
#include "HostFunctions.h"
#include "Mutex.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

// Standard error, where a line may be being typed.
class CErrorLinesSink final : public spdlog::sinks::base_sink<CMutex> {
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        PrintErrorLines({line.data(), line.size()});
    }
    void flush_() override {}
};

spdlog::level::level_enum LibraryLevel(ELogLevel level)
{
    switch (level) {
    case ELogLevel::Off:
        return spdlog::level::off;
    case ELogLevel::Error:
        return spdlog::level::err;
    case ELogLevel::Abnormal:
        return spdlog::level::warn;
    case ELogLevel::Normal:
        return spdlog::level::info;
    case ELogLevel::Debug:
        break;
    }
    return spdlog::level::debug;
}

std::shared_ptr<spdlog::logger> MakeLogger(ELogLevel level, spdlog::sink_ptr sink)
{
    auto logger = std::make_shared<spdlog::logger>("host", std::move(sink));
    logger->set_pattern("%H:%M:%S.%e [%l] %v");
    logger->set_level(LibraryLevel(level));
    logger->flush_on(spdlog::level::trace);
    return logger;
}

std::shared_ptr<spdlog::logger>& Logger()
{
    static auto s_logger = MakeLogger(ELogLevel::Abnormal, std::make_shared<CErrorLinesSink>());
    return s_logger;
}

void PluginOutput(ELogLevel level, const char* szText, const char* szSource, int nLine)
{
    Logger()->log(LibraryLevel(level), "{} ({}:{})", tools::OneLine(szText == nullptr ? "" : szText),
                  szSource == nullptr ? "" : szSource, nLine);
}

} // namespace

void OpenLog(ELogLevel level, const std::string& strFile)
{
    spdlog::sink_ptr sink = std::make_shared<CErrorLinesSink>();
    if (!strFile.empty()) {
        if (!std::ofstream(strFile, std::ios::app)) { // the library would make missing folders
            throw CUsageError("cannot write the log file " + strFile);
        }
        try {
            sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(strFile);
        } catch (const spdlog::spdlog_ex&) {
            throw CUsageError("cannot write the log file " + strFile);
        }
    }
    Logger() = MakeLogger(level, std::move(sink));
}

void Log(ELogLevel level, std::string_view text) { Logger()->log(LibraryLevel(level), tools::OneLine(text)); }

} // namespace standin_host

using standin_host::ELogLevel;

extern "C" {

HOST_EXPORT void SHARESDK_NormalOutput(const char* szText, const char* szSource, int nLine)
{
    standin_host::PluginOutput(ELogLevel::Normal, szText, szSource, nLine);
}

HOST_EXPORT void SHARESDK_AbnormalOutput(const char* szText, const char* szSource, int nLine)
{
    standin_host::PluginOutput(ELogLevel::Abnormal, szText, szSource, nLine);
}

HOST_EXPORT void SHARESDK_DebugOutput(const char* szText, const char* szSource, int nLine)
{
    standin_host::PluginOutput(ELogLevel::Debug, szText, szSource, nLine);
}

} // extern "C"
