#pragma once

#include <cstddef>
#include <string>

namespace standin_host {

// Lines of a descriptor, read only as far as one read brings them.
class LineInput {
public:
    // "-" is standard input. Throws UsageError when the file cannot be opened.
    explicit LineInput(const std::string& path);
    // Reads from a descriptor that stays its owner's.
    explicit LineInput(int descriptor) : m_descriptor(descriptor), m_owned(false) {}
    ~LineInput();
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

    // The next whole line without its end, or the rest before the end of the input; false when there is none
    // yet.
    bool Take(std::string& line);
    bool AtEnd() const { return m_end && m_buffer.empty(); }
    // Reads once; blocks when the descriptor has nothing. Throws UsageError on a read error.
    void Fill();
    int Descriptor() const { return m_descriptor; }
    // How much of a file has been taken, such as " (35 %)"; empty where the length is not known.
    std::string PositionText() const;

private:
    void Close() const;

    int m_descriptor;
    bool m_owned;
    bool m_end = false;
    std::size_t m_nSize = 0; // of a file; 0 where it is not known
    std::size_t m_read = 0;
    std::string m_buffer;
};

} // namespace standin_host
