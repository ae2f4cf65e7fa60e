#pragma once

#include <string>
#include <string_view>

namespace standin_host {

class CHostEvents;

// Writes whole lines to standard error. Any thread; while a line is being typed there, they wait for its
// editor.
void PrintErrorLines(std::string_view lines);

// Holds such lines back while it lives, and reports each to the events, so that the editor can write them in
// place of what is being typed and draw that again behind them. One at a time; what is left at the end is
// written.
class CErrorLinesHold {
public:
    explicit CErrorLinesHold(CHostEvents& events);
    ~CErrorLinesHold();
    CErrorLinesHold(const CErrorLinesHold&) = delete;
    CErrorLinesHold& operator=(const CErrorLinesHold&) = delete;

    // Writes what has come since.
    static void Write();
};

} // namespace standin_host
