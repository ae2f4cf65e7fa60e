#pragma once

#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Host/Command.h"
#include "Host/HostEvents.h"

namespace standin_host {

struct SReadAnswer;

// What the program says on standard output, flushed at once: one line for each command and notification, and
// behind a command's line the indented rows of its table.
class COutput {
public:
    // A signal that the events hear of ends the waiting for a reader; they outlive the output.
    static std::unique_ptr<COutput> Create(bool bJson, CHostEvents& events);
    virtual ~COutput() = default;
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    // pAnswer is null for a command that got no answer; else it holds no password any more, and read says
    // what it means.
    virtual void Command(const SConsoleCommand& command, const SAnswer* pAnswer, const SReadAnswer& read) = 0;
    virtual void Notification(const SNotification& notification) = 0;
    // True once a line could not be written, such as to a closed pipe, or was given up at a signal. Nothing
    // is written any more then.
    bool Failed() const { return m_bFailed; }

protected:
    explicit COutput(CHostEvents& events) : m_events(events) {}

    void Line(std::string strLine);

private:
    CHostEvents& m_events;
    bool m_bFailed = false;
};

} // namespace standin_host
