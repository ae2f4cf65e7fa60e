#include "Commands/SeenWindows.h"

#include "Commands/ParsedCommand.h"
#include "TvwallProtocol.h"

namespace standin_host {

void SeenWindows::Note(const ConsoleCommand& command)
{
    using namespace ORVA2_DECODER_TVW;
    if (command.optType == TVWALL_DECODE_CLEAR_WALL || command.optType == TVWALL_DECODE_SET_WALL_INFO) {
        m_ids.clear();
    }
    for (const std::string& id : command.windows) {
        if (command.optType == TVWALL_DECODE_DEL_CANVAS) {
            m_ids.erase(id);
        } else if (m_ids.size() < kMost) {
            m_ids.insert(id);
        }
    }
}

} // namespace standin_host
