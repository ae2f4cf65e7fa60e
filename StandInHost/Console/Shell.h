#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Base/LineInput.h"
#include "Console/HistoryFile.h"
#include "Console/LineEditor.h"
#include "Console/OpenSession.h"

namespace standin_host {

// Takes commands from a terminal, or from a pipe without prompt and editing. A session that has ended,
// whatever ended it, is followed by a new one when the next command needs it.
class CShell {
public:
    explicit CShell(const SSessionGround& ground);

    // Until exit or the end of the input. Returns 0 from a terminal, from a pipe the gravest status of the
    // commands, and 128 + n after a signal.
    int Run();

private:
    bool ReadLine(std::string& strLine);
    bool ReadPipedLine(std::string& strLine);
    void RunLine(const std::string& strLine);
    void RunCommand(const SConsoleCommand& command);
    void RunInSession(const SConsoleCommand& command);
    void Open(const SConsoleCommand& first);
    void Meanwhile();
    void Remember(const std::string& strLine, bool bUnderstood);
    void Complain(int nStatus, const std::string& strText);
    std::string Prompt() const;

    const SSessionGround m_ground;
    std::optional<COpenSession> m_session;
    CHistoryFile m_history;
    CLineInput m_piped;
    std::unique_ptr<CLineEditor> m_pEditor; // null for a pipe
    bool m_bExit = false;
    int m_nStatus = 0;
};

} // namespace standin_host
