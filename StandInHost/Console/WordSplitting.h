#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

// Splits a line into words as a shell does: white space separates, single quotes keep everything, double
// quotes and plain text know the backslash, and a # that begins a word begins a comment. Throws UsageError
// on an open quote or a backslash at the end.
std::vector<std::string> SplitLine(std::string_view line);

// A line up to the cursor: the words that are complete, and the one that is still being written, empty behind
// a blank.
struct WrittenLine {
    std::vector<std::string> words;
    std::string last;
};
// Nothing inside a quotation or a comment.
std::optional<WrittenLine> SplitWrittenLine(std::string_view line);

} // namespace standin_host
