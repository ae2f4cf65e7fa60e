#pragma once
// The session's reports to the host's log. The line numbers are fixed identifiers, not actual source lines:
// the host's operators search for them.

#include <array>
#include <cstdio>

#include "HostFunctions.h"

namespace session_log {

inline constexpr char SOURCE[] = "NetProtocolProcTWDECODERDevImp";

// For places without a fixed number.
inline constexpr int NO_LINE = 0;

inline void Assert(int nLine) { SHARESDK_AbnormalOutput("ASSERT", SOURCE, nLine); }

// printf-like; at most 4095 characters arrive.
template <class... Args>
std::array<char, 4096> Text(const char* szFormat, Args... args)
{
    std::array<char, 4096> text{};
    (void)snprintf(text.data(), text.size(), szFormat, args...);
    return text;
}

template <class... Args>
void Normal(int nLine, const char* szFormat, Args... args)
{
    SHARESDK_NormalOutput(Text(szFormat, args...).data(), SOURCE, nLine);
}

template <class... Args>
void Debug(int nLine, const char* szFormat, Args... args)
{
    SHARESDK_DebugOutput(Text(szFormat, args...).data(), SOURCE, nLine);
}

} // namespace session_log
