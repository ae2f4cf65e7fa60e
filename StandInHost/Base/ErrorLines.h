#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace standin_host {

// Writes whole lines to standard error. Any thread; blocks until somebody reads them there. While a line is
// being typed there, they wait for its editor.
void PrintErrorLines(std::string_view lines);

// While it lives, such lines are written by this function, under a lock; it writes none itself. One at a
// time.
class ErrorLinesWriter {
public:
    explicit ErrorLinesWriter(std::function<void(std::string_view)> writer);
    ~ErrorLinesWriter();
    ErrorLinesWriter(const ErrorLinesWriter&) = delete;
    ErrorLinesWriter& operator=(const ErrorLinesWriter&) = delete;
};

// Holds such lines back while it lives, and tells of each, so that the editor can write them in place of
// what is being typed and draw that again after them. One at a time; what is left at the end is
// written.
class ErrorLinesHold {
public:
    // onLine is called for each line, on the thread that writes it, and writes none itself.
    explicit ErrorLinesHold(std::function<void()> onLine);
    ~ErrorLinesHold();
    ErrorLinesHold(const ErrorLinesHold&) = delete;
    ErrorLinesHold& operator=(const ErrorLinesHold&) = delete;

    // Writes what has come since.
    static void Write();
};

} // namespace standin_host
