#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

// Splits a line into words as a shell does: white space separates, single quotes keep everything, double
// quotes and plain text know the backslash, and a # that begins a word begins a comment. Throws CUsageError
// on an open quote or a backslash at the end.
std::vector<std::string> SplitLine(std::string_view line);

// Lines of a descriptor, read only as far as one read brings them.
class CLineInput {
public:
    // "-" is standard input. Throws CUsageError when the file cannot be opened.
    explicit CLineInput(const std::string& strFile);
    // Reads from a descriptor that stays its owner's.
    explicit CLineInput(int nDescriptor) : m_nDescriptor(nDescriptor), m_bOwned(false) {}
    ~CLineInput();
    CLineInput(const CLineInput&) = delete;
    CLineInput& operator=(const CLineInput&) = delete;

    // The next whole line without its end, or the rest before the end of the input; false when there is none
    // yet.
    bool Take(std::string& strLine);
    bool AtEnd() const { return m_bEnd && m_strBuffer.empty(); }
    // Reads once; blocks when the descriptor has nothing. Throws CUsageError on a read error.
    void Fill();
    int Descriptor() const { return m_nDescriptor; }

private:
    void Close() const;

    int m_nDescriptor;
    bool m_bOwned;
    bool m_bEnd = false;
    std::string m_strBuffer;
};

} // namespace standin_host
