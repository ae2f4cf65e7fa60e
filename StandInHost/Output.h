#pragma once

#include <memory>
#include <string>

#include "Command.h"
#include "ConsoleCommands.h"
#include "HostEvents.h"

namespace standin_host {

// What the program says on standard output: one line for each command and notification, flushed at once.
class COutput {
public:
    static std::unique_ptr<COutput> Create(bool bJson);
    virtual ~COutput() = default;

    // pAnswer is null for a command that got no answer.
    virtual void Command(const SConsoleCommand& command, const SAnswer* pAnswer) = 0;
    virtual void Notification(const SNotification& notification) = 0;
    // True once a line could not be written, such as to a closed pipe.
    bool Failed() const { return m_bFailed; }

protected:
    void Line(const std::string& strLine);

private:
    bool m_bFailed = false;
};

} // namespace standin_host
