#pragma once

#include <string>
#include <vector>

namespace standin_host {

// The shell's lines from earlier sessions, oldest first, in a file that only its owner can read. Several
// shells may write it at the same time. History is a convenience: what cannot be read or written is silently
// dropped.
class HistoryFile {
public:
    // At $XDG_STATE_HOME/tvwall/history, else ~/.local/state/tvwall/history; nowhere without a home.
    HistoryFile();

    // The last kMaxLines lines at most; a file that has grown to twice that is cut to them.
    std::vector<std::string> Load() const;
    void Append(const std::string& line) const;

    static constexpr std::size_t kMaxLines = 1000;

private:
    std::string m_file; // empty: nowhere
};

} // namespace standin_host
