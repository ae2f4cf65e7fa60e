#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace standin_host {

inline constexpr std::size_t kMaxLine = 64UL * 1024;
inline constexpr char kLongLine[] = "the line is longer than 64 KiB";

// Lines of a descriptor, read no further ahead than one read goes.
class LineInput {
public:
    // "-" is standard input. Throws UsageError when the file cannot be opened.
    explicit LineInput(const std::string& path);
    // Reads from a descriptor that it does not own.
    explicit LineInput(int descriptor) : m_descriptor(descriptor), m_owned(false) {}
    ~LineInput();
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

    // The next whole line without its line end, or the rest at the end of the input; false when there is none
    // yet. Throws UsageError for a line longer than kMaxLine.
    bool Take(std::string& line);
    bool AtEnd() const { return m_end && m_buffer.empty(); }
    bool Ended() const { return m_end; } // nothing more will be read
    // Reads once; blocks when the descriptor has nothing. Throws UsageError on a read error.
    void Fill();
    int Descriptor() const { return m_descriptor; }
    // Everything read and not yet taken.
    std::string TakeAll() { return std::exchange(m_buffer, {}); }
    std::size_t Buffered() const { return m_buffer.size(); }
    // How much of a file has been taken, such as " (35 %)"; empty if the length is unknown.
    std::string PositionText() const;

private:
    void Close() const;

    int m_descriptor;
    bool m_owned;
    bool m_end = false;
    std::size_t m_nSize = 0; // size of the file; 0 if unknown
    std::size_t m_read = 0;
    std::string m_buffer;
};

} // namespace standin_host
