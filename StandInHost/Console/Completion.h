#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

// What the word at the cursor of the shell's line can become.
struct Completion {
    std::string word;                    // as it was read, without quoting
    std::vector<std::string> candidates; // whole words that begin with it, sorted
};

// Commands, options, and files where a file is wanted. The line goes up to the cursor.
Completion CompleteLine(std::string_view line);

// What all candidates have beyond the word, ready to be put in at the cursor: blanks and the like are quoted,
// and a blank follows the only candidate unless it is a folder.
std::string CommonRest(const Completion& completion);

} // namespace standin_host
