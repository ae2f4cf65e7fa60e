#pragma once

#include <string>
#include <string_view>

namespace simulated_decoder {

// A file that grows while the program runs. Bytes are in the file when Write returns. A pipe whose reader
// stalls does not hold up the decoder: nothing more is written.
class AppendedFile {
public:
    // Truncates the file and writes this to it; throws std::runtime_error on failure. An empty path means no
    // file.
    explicit AppendedFile(const std::string& path, std::string_view head = {});
    ~AppendedFile();
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    // False without a path, and once the file cannot be written any more.
    bool IsOpen() const { return m_descriptor >= 0; }

    // Writes all bytes; on failure the log says so and the file is closed.
    void Write(std::string_view bytes);

private:
    int Append(std::string_view bytes) const; // 0, or the errno value
    void Close();

    std::string m_path;
    int m_descriptor = -1;
};

} // namespace simulated_decoder
