#pragma once

#include <cstddef>
#include <string>

namespace standin_host {

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
    // How much of a file has been taken, such as " (35 %)"; empty where the length is not known.
    std::string PositionText() const;

private:
    void Close() const;

    int m_nDescriptor;
    bool m_bOwned;
    bool m_bEnd = false;
    std::size_t m_nSize = 0; // of a file; 0 where it is not known
    std::size_t m_nRead = 0;
    std::string m_strBuffer;
};

} // namespace standin_host
