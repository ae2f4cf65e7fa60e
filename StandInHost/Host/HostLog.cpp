#include "Host/HostLog.h"

#include <fstream>
#include <memory>

#include <spdlog/sinks/base_sink-inl.h> // the library has it for its own mutexes only
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

// Standard error, where the user may be typing a line.
class ErrorLinesSink final : public spdlog::sinks::base_sink<CMutex> {
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        PrintErrorLines({line.data(), line.size()});
    }
    void flush_() override {}
};

spdlog::level::level_enum LibraryLevel(LogLevel level)
{
    switch (level) {
    case LogLevel::Off:
        return spdlog::level::off;
    case LogLevel::Error:
        return spdlog::level::err;
    case LogLevel::Abnormal:
        return spdlog::level::warn;
    case LogLevel::Normal:
        return spdlog::level::info;
    case LogLevel::Debug:
        break;
    }
    return spdlog::level::debug;
}

std::shared_ptr<spdlog::logger> MakeLogger(LogLevel level, spdlog::sink_ptr sink)
{
    auto logger = std::make_shared<spdlog::logger>("host", std::move(sink));
    logger->set_pattern("%H:%M:%S.%e [%l] %v");
    logger->set_level(LibraryLevel(level));
    logger->flush_on(spdlog::level::trace);
    return logger;
}

std::shared_ptr<spdlog::logger>& Logger()
{
    static auto logger = MakeLogger(LogLevel::Abnormal, std::make_shared<ErrorLinesSink>());
    return logger;
}

void PluginOutput(LogLevel level, const char* text, const char* source, int lineNumber)
{
    Logger()->log(LibraryLevel(level), "{} ({}:{})", tools::OneLine(text == nullptr ? "" : text),
                  source == nullptr ? "" : source, lineNumber);
}

} // namespace

void OpenLog(LogLevel level, const std::string& path)
{
    spdlog::sink_ptr sink = std::make_shared<ErrorLinesSink>();
    if (!path.empty()) {
        if (!std::ofstream(path, std::ios::app)) { // the library would create missing folders
            throw UsageError("cannot write the log file " + path);
        }
        try {
            sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(path);
        } catch (const spdlog::spdlog_ex&) {
            throw UsageError("cannot write the log file " + path);
        }
    }
    Logger() = MakeLogger(level, std::move(sink));
}

void Log(LogLevel level, std::string_view text) { Logger()->log(LibraryLevel(level), tools::OneLine(text)); }

} // namespace standin_host

using standin_host::LogLevel;

extern "C" {

HOST_EXPORT void SHARESDK_NormalOutput(const char* text, const char* source, int lineNumber)
{
    standin_host::PluginOutput(LogLevel::Normal, text, source, lineNumber);
}

HOST_EXPORT void SHARESDK_AbnormalOutput(const char* text, const char* source, int lineNumber)
{
    standin_host::PluginOutput(LogLevel::Abnormal, text, source, lineNumber);
}

HOST_EXPORT void SHARESDK_DebugOutput(const char* text, const char* source, int lineNumber)
{
    standin_host::PluginOutput(LogLevel::Debug, text, source, lineNumber);
}

} // extern "C"
