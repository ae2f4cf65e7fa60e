#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools {

// The candidate that a mistyped word probably meant: the one with the fewest letters added, left out,
// replaced or swapped with their neighbour, at most one for each three letters of the word, and two. Empty
// when none is that near.
std::string Nearest(std::string_view word, const std::vector<std::string>& candidates);

// "; did you mean 'window'?"; empty when none is that near.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates);

} // namespace tools
