#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

// Splits a line into words as a shell does: white space separates, single quotes keep everything, a backslash
// escapes in double quotes and plain text, and a # at the start of a word begins a comment. Throws UsageError
// on an open quote or a backslash at the end.
std::vector<std::string> SplitLine(std::string_view line);

// A line up to the cursor: the complete words, and the one still being typed, empty after a blank.
struct WrittenLine {
    std::vector<std::string> words;
    std::string last;
};
// Nothing inside quotes or a comment.
std::optional<WrittenLine> SplitWrittenLine(std::string_view line);

} // namespace standin_host
