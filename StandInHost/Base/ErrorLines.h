#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace standin_host {

// Writes whole lines to standard error. Any thread; blocks until they are read there. While a line is being
// typed there, they wait for its editor.
void PrintErrorLines(std::string_view lines);

// A line on standard error, if that is a terminal, that tells what is going on: it replaces the one before
// it, and gives way to lines printed here. What is printed elsewhere clears it first. Any thread.
bool HasProgress(); // whether there is a terminal to show it on
void ShowProgress(std::string_view text);
void ClearProgress();

// While it lives, such lines go to this function, under a lock; the function must not write any itself. One
// object at a time.
class ErrorLinesWriter {
public:
    explicit ErrorLinesWriter(std::function<void(std::string_view)> writer);
    ~ErrorLinesWriter();
    ErrorLinesWriter(const ErrorLinesWriter&) = delete;
    ErrorLinesWriter& operator=(const ErrorLinesWriter&) = delete;
};

// Holds such lines back while it lives and reports each, so that the editor can write them in place of the
// line being typed and redraw it after them. One object at a time; lines left at the end are written.
class ErrorLinesHold {
public:
    // onLine is called for each line, on the thread that writes it; it must not write any itself.
    explicit ErrorLinesHold(std::function<void()> onLine);
    ~ErrorLinesHold();
    ErrorLinesHold(const ErrorLinesHold&) = delete;
    ErrorLinesHold& operator=(const ErrorLinesHold&) = delete;

    // Writes the lines held so far.
    static void Write();
};

} // namespace standin_host
