#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Base/LineInput.h"
#include "Commands/SeenWindows.h"
#include "Console/HistoryFile.h"
#include "Console/LineEditor.h"
#include "Console/OpenSession.h"
#include "Console/Options.h"

namespace standin_host {

// Takes commands from a terminal, or from a pipe without prompt and editing. After a session has ended for
// any reason, the next command that needs one opens a new one.
class Shell {
public:
    explicit Shell(const SessionGround& ground);

    // Until exit or the end of the input. Returns 0 for a terminal, the gravest status of the commands for a
    // pipe, and 128 + n after a signal.
    int Run();

private:
    bool ReadLine(std::string& line);
    bool ReadPipedLine(std::string& line);
    void RunLine(const std::string& line);
    void RunCommand(const ConsoleCommand& command);
    void RunInSession(ConsoleCommand command);
    void Open(const ConsoleCommand& first);
    void Meanwhile();
    void Remember(const std::string& line, bool understood);
    void Complain(int status, const std::string& text);
    std::string Prompt() const;

    void Connect(const std::string& profile);

    Options m_options; // change with the profile
    const SessionGround m_ground;
    SeenWindows m_windows;
    std::optional<OpenSession> m_session;
    HistoryFile m_history;
    LineInput m_piped;
    std::unique_ptr<LineEditor> m_editor; // null for a pipe
    bool m_exit = false;
    int m_status = 0;
};

} // namespace standin_host
