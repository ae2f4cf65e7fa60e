#include "Base/ErrorLines.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

#include "Mutex.h"

namespace standin_host {

namespace {

struct SHeldLines {
    CMutex lock;
    std::function<void()> onLine TVWALL_GUARDED_BY(lock); // empty while nobody holds lines back
    std::string strLines TVWALL_GUARDED_BY(lock);
    std::size_t nDropped TVWALL_GUARDED_BY(lock) = 0;

    std::string Take() TVWALL_REQUIRES(lock)
    {
        std::string strTaken = std::exchange(strLines, {});
        if (const std::size_t nLost = std::exchange(nDropped, 0)) {
            strTaken +=
                "tvwall-host: " + std::to_string(nLost) + " more messages while the terminal stood still\n";
        }
        return strTaken;
    }
};

// While a terminal stands still nobody writes what is held.
constexpr std::size_t kMaxHeld = std::size_t{1} << 20;

SHeldLines& Held()
{
    static SHeldLines s_held;
    return s_held;
}

void WriteNow(std::string_view lines)
{
    (void)std::fwrite(lines.data(), 1, lines.size(), stderr);
    (void)std::fflush(stderr);
}

} // namespace

void PrintErrorLines(std::string_view lines)
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    if (!held.onLine) {
        WriteNow(lines);
        return;
    }
    if (held.strLines.size() + lines.size() > kMaxHeld) {
        ++held.nDropped;
        return;
    }
    held.strLines += lines;
    held.onLine();
}

CErrorLinesHold::CErrorLinesHold(std::function<void()> onLine)
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.onLine = std::move(onLine);
}

CErrorLinesHold::~CErrorLinesHold()
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.onLine = nullptr;
    WriteNow(held.Take());
}

void CErrorLinesHold::Write()
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    WriteNow(held.Take());
}

} // namespace standin_host
