#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

class SeenWindows;

// Completions of the word at the cursor of the shell's line.
struct Completion {
    std::string word;                    // as read, without quoting
    std::vector<std::string> candidates; // whole words that begin with it, sorted
};

// Commands, options and their values: switches and modes, files, profiles, the windows seen so far. line ends
// at the cursor.
Completion CompleteLine(std::string_view line, const SeenWindows& windows);

// What all candidates share beyond the word, ready to insert at the cursor: blanks and the like are quoted,
// and a single candidate gets a trailing blank unless it is a folder.
std::string CommonRest(const Completion& completion);

} // namespace standin_host
