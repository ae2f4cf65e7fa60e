#include "Console/Progress.h"

#include <cstdio>

#include <unistd.h>

namespace standin_host {

Progress::Progress() : m_terminal(::isatty(STDERR_FILENO) != 0) {}

void Progress::Show(const std::string& text)
{
    if (m_terminal) {
        (void)std::fprintf(stderr, "\r%s\x1b[K", text.c_str());
        m_shown = true;
    }
}

void Progress::Clear()
{
    if (m_shown) {
        (void)std::fputs("\r\x1b[K", stderr);
        m_shown = false;
    }
}

} // namespace standin_host
