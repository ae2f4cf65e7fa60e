#include "Tools/Common/Nearest.h"

#include <algorithm>
#include <cstddef>

namespace tools {

namespace {

constexpr std::size_t kMostEdits = 2;

// Rows of the usual table: the edits between the first letters of one word and the first of the other.
std::size_t Edits(std::string_view one, std::string_view other)
{
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(other.size() + 1);
    std::vector<std::size_t> row(other.size() + 1);
    for (std::size_t j = 0; j <= other.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= one.size(); ++i) {
        beforeLast = last;
        last = row;
        row[0] = i;
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

std::string Nearest(std::string_view word, const std::vector<std::string>& candidates)
{
    std::size_t fewest = std::min(kMostEdits, word.size() / 3) + 1;
    std::string nearest;
    for (const std::string& candidate : candidates) {
        const std::size_t longer = std::max(word.size(), candidate.size());
        if (longer - std::min(word.size(), candidate.size()) >= fewest) {
            continue;
        }
        if (const std::size_t edits = Edits(word, candidate); edits < fewest) {
            fewest = edits;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates)
{
    const std::string nearest = Nearest(word, candidates);
    return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

} // namespace tools
