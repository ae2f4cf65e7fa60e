#pragma once

#include <string>

namespace standin_host {

// The one line on a terminal's standard error that says how far a script is. Elsewhere it shows nothing.
class Progress {
public:
    Progress();
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(const std::string& text);
    // Takes the line away, so that something else can be printed.
    void Clear();

private:
    const bool m_terminal;
    bool m_shown = false;
};

} // namespace standin_host
