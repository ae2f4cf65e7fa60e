#include "ErrorLines.h"

#include <cstdio>
#include <utility>

#include "HostEvents.h"
#include "Mutex.h"

namespace standin_host {

namespace {

struct SHeldLines {
    CMutex lock;
    CHostEvents* pEvents TVWALL_GUARDED_BY(lock) = nullptr; // null while nobody holds lines back
    std::string strLines TVWALL_GUARDED_BY(lock);
};

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
    if (held.pEvents == nullptr) {
        WriteNow(lines);
        return;
    }
    held.strLines += lines;
    held.pEvents->Changed();
}

CErrorLinesHold::CErrorLinesHold(CHostEvents& events)
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.pEvents = &events;
}

CErrorLinesHold::~CErrorLinesHold()
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    held.pEvents = nullptr;
    WriteNow(std::exchange(held.strLines, {}));
}

void CErrorLinesHold::Write()
{
    SHeldLines& held = Held();
    const TMutexGuard guard(held.lock);
    WriteNow(std::exchange(held.strLines, {}));
}

} // namespace standin_host
