#include "Console/Progress.h"

#include <cstdio>

#include <unistd.h>

namespace standin_host {

CProgress::CProgress() : m_bTerminal(::isatty(STDERR_FILENO) != 0) {}

void CProgress::Show(const std::string& strText)
{
    if (m_bTerminal) {
        (void)std::fprintf(stderr, "\r%s\x1b[K", strText.c_str());
        m_bShown = true;
    }
}

void CProgress::Clear()
{
    if (m_bShown) {
        (void)std::fputs("\r\x1b[K", stderr);
        m_bShown = false;
    }
}

} // namespace standin_host
