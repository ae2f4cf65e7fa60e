#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin_host {

// The candidate that a mistyped word probably meant: the one with the fewest letters added, left out,
// replaced or swapped with their neighbour, at most one for each three letters of the word, and two. Empty
// when none is that near.
std::string Nearest(std::string_view word, const std::vector<std::string>& candidates);

} // namespace standin_host
