#pragma once

#include <string>

namespace standin_host {

// A line on standard error that shows a script's progress. Only on a terminal.
class Progress {
public:
    Progress();
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(const std::string& text);
    // Removes the line, so that something else can be printed.
    void Clear();

private:
    const bool m_terminal;
    bool m_shown = false;
};

} // namespace standin_host
