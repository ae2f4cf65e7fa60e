#pragma once

#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Host/Command.h"
#include "Host/HostEvents.h"

namespace standin_host {

struct ReadableAnswer;

// The program's standard output, flushed at once: one line for each command and notification, and after a
// command's line the indented rows of its table.
class Output {
public:
    // A signal reported to the events ends the wait for a reader; they outlive the output.
    static std::unique_ptr<Output> Create(bool json, HostEvents& events);
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // answer is null for a command that got no answer; else its passwords are already blanked, and read says
    // what it means.
    virtual void PrintCommand(const ConsoleCommand& command, const HostAnswer* answer,
                              const ReadableAnswer& read) = 0;
    virtual void PrintNotification(const Notification& notification) = 0;
    // True once a line could not be written, such as to a closed pipe, or was given up on a signal. Nothing
    // more is written then.
    bool Failed() const { return m_failed; }

protected:
    explicit Output(HostEvents& events) : m_events(events) {}

    void Line(std::string line);

private:
    HostEvents& m_events;
    bool m_failed = false;
};

} // namespace standin_host
