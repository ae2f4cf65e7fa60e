#include "Base/ErrorLines.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

#include <unistd.h>

#include "Mutex.h"

namespace standin_host {

namespace {

struct HeldLines {
    CMutex lock;
    std::function<void(std::string_view)> writer TVWALL_GUARDED_BY(lock); // empty: write to standard error
    std::function<void()> onLine TVWALL_GUARDED_BY(lock); // empty while nobody holds lines back
    std::string lines TVWALL_GUARDED_BY(lock);
    std::size_t dropped TVWALL_GUARDED_BY(lock) = 0;
    bool progress TVWALL_GUARDED_BY(lock) = false; // is shown

    std::string Take() TVWALL_REQUIRES(lock)
    {
        std::string taken = std::exchange(lines, {});
        if (const std::size_t lost = std::exchange(dropped, 0)) {
            taken +=
                "tvwall-host: " + std::to_string(lost) + " more messages while the terminal stood still\n";
        }
        return taken;
    }

    void Write(std::string_view text) TVWALL_REQUIRES(lock)
    {
        if (std::exchange(progress, false)) {
            Put("\r\x1b[K");
        }
        Put(text);
    }

    void Put(std::string_view text) TVWALL_REQUIRES(lock)
    {
        if (writer) {
            writer(text);
            return;
        }
        (void)std::fwrite(text.data(), 1, text.size(), stderr);
        (void)std::fflush(stderr);
    }
};

// Nobody writes held lines while a terminal is stalled.
constexpr std::size_t kMaxHeld = std::size_t{1} << 20;

HeldLines& Held()
{
    static HeldLines held;
    return held;
}

void SetWriter(std::function<void(std::string_view)> writer)
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.writer = std::move(writer);
}

} // namespace

ErrorLinesWriter::ErrorLinesWriter(std::function<void(std::string_view)> writer)
{
    SetWriter(std::move(writer));
}

ErrorLinesWriter::~ErrorLinesWriter() { SetWriter(nullptr); }

void PrintErrorLines(std::string_view lines)
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    if (!held.onLine) {
        held.Write(lines);
        return;
    }
    if (held.lines.size() + lines.size() > kMaxHeld) {
        ++held.dropped;
        return;
    }
    held.lines += lines;
    held.onLine();
}

bool HasProgress()
{
    static const bool kTerminal = ::isatty(STDERR_FILENO) != 0;
    return kTerminal;
}

void ShowProgress(std::string_view text)
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    if (HasProgress() && !held.onLine) {
        held.Write("\x1b[?7l" + std::string(text) + "\x1b[?7h"); // cut off at the edge instead of wrapped
        held.progress = true;
    }
}

void ClearProgress()
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.Write("");
}

ErrorLinesHold::ErrorLinesHold(std::function<void()> onLine)
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.onLine = std::move(onLine);
}

ErrorLinesHold::~ErrorLinesHold()
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.onLine = nullptr;
    held.Write(held.Take());
}

void ErrorLinesHold::Write()
{
    HeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.Write(held.Take());
}

} // namespace standin_host
