#pragma once

#include <string>

namespace standin_host {

// The one line on a terminal's standard error that says how far a script is. Elsewhere it shows nothing.
class CProgress {
public:
    CProgress();
    ~CProgress() { Clear(); }
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    void Show(const std::string& strText);
    // Takes the line away, so that something else can be printed.
    void Clear();

private:
    const bool m_bTerminal;
    bool m_bShown = false;
};

} // namespace standin_host
