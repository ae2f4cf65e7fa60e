#include "Base/ExitStatus.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace standin_host {

namespace {

const ExitMeaning& MeaningOf(int status)
{
    const auto* found = std::find_if(std::begin(kExitMeanings), std::end(kExitMeanings),
                                     [status](const ExitMeaning& row) { return row.status == status; });
    return found == std::end(kExitMeanings) ? *std::prev(found) : *found; // a signal, the last row
}

// "2, 5, 3, 4, 1"
std::string GravestFirst()
{
    std::vector<ExitMeaning> failures(std::begin(kExitMeanings) + 1, std::end(kExitMeanings) - 1);
    std::sort(failures.begin(), failures.end(),
              [](const ExitMeaning& a, const ExitMeaning& b) { return a.gravity > b.gravity; });
    std::string list;
    for (const ExitMeaning& failure : failures) {
        list += (list.empty() ? "" : ", ") + std::to_string(failure.status);
    }
    return list;
}

} // namespace

int Graver(int one, int other) { return MeaningOf(other).gravity > MeaningOf(one).gravity ? other : one; }

std::string ExitStatusTable()
{
    std::string table;
    for (const ExitMeaning& row : kExitMeanings) {
        const std::string status = std::to_string(row.status) + (row.status == kExitSignalBase ? " + n" : "");
        table += "  " + status + std::string(9 - status.size(), ' ') + row.meaning + '\n';
    }
    return table + "  Of several failures the gravest counts: " + GravestFirst() + '.';
}

} // namespace standin_host
