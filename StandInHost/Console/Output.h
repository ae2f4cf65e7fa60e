#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Host/Command.h"
#include "Host/HostEvents.h"

namespace standin_host {

struct Ending;
struct ReadableAnswer;

// A command that has ended; the passwords in its answer are blanked.
struct EndedCommand {
    const ConsoleCommand& command;
    const Ending& ending;
    const ReadableAnswer& read; // what the ending says
    std::size_t line;           // of the script; 0 outside one
};

// The program's standard output, flushed at once: one line for each command and notification, and after a
// command's line the indented rows of its table.
class Output {
public:
    // A signal reported to the events ends the wait for a reader; they outlive the output.
    static std::unique_ptr<Output> Create(bool json, HostEvents& events);
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    virtual void PrintCommand(const EndedCommand& ended) = 0;
    // A command that the program has ended by itself: the plug-in was not asked. Throws as CheckWritten does.
    void PrintOwn(const ConsoleCommand& command, const ReadableAnswer& read);
    // What a command would queue; its passwords are already blanked. line is its script's, 0 outside one.
    virtual void PrintQueued(const ConsoleCommand& command, std::size_t line) = 0;
    virtual void PrintNotification(const Notification& notification) = 0;
    // A watch has lost its link, and has another after a gap in which notifications were missed.
    virtual void PrintLinkLost(const std::string& reason) = 0;
    virtual void PrintLinkBack(std::chrono::milliseconds gap) = 0;
    // True once a line could not be written, such as to a closed pipe, or was given up on a signal. Nothing
    // more is written then.
    bool Failed() const { return m_failed; }
    // Throws ExitError with status 128 + n when it has failed.
    void CheckWritten() const;

protected:
    explicit Output(HostEvents& events) : m_events(events) {}

    void Line(std::string line);

private:
    HostEvents& m_events;
    bool m_failed = false;
};

} // namespace standin_host
