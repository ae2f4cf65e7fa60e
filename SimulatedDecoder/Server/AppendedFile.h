#pragma once

#include <string>
#include <string_view>

namespace simulated_decoder {

// A file that grows while the program runs. What is written is there when Write returns. A pipe whose reader
// stands still does not hold up the decoder: nothing more is written then.
class AppendedFile {
public:
    // Starts the file anew, with this in it; std::runtime_error when that cannot be done. Without a path
    // there is none.
    explicit AppendedFile(const std::string& path, std::string_view head = {});
    ~AppendedFile();
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    // False without a path, and once it cannot be written any more.
    bool IsOpen() const { return m_descriptor >= 0; }

    // All of the bytes; when that fails, the log says so and the file is closed.
    void Write(std::string_view bytes);

private:
    int Append(std::string_view bytes) const; // 0, or the error's number
    void Close();

    std::string m_path;
    int m_descriptor = -1;
};

} // namespace simulated_decoder
