#pragma once

#include <set>
#include <string>
#include <vector>

namespace standin_host {

struct ConsoleCommand;

// The windows that the commands of a session have named, for completion.
class SeenWindows {
public:
    // A command that was done. Deleted windows are gone, and all of them when the wall was cleared.
    void Note(const ConsoleCommand& command);
    void Forget() { m_ids.clear(); } // another decoder has other windows
    std::vector<std::string> Ids() const { return {m_ids.begin(), m_ids.end()}; }

    static constexpr std::size_t kMost = 4096; // further ones are not kept

private:
    std::set<std::string> m_ids;
};

} // namespace standin_host
