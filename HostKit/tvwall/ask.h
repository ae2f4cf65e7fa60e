#pragma once
// A command and what comes of it, for hosts without command objects of their own.

#include <cstdint>
#include <future>
#include <string>

#include "NetProtocolProc.h"
#include "tvwall/commands.h"

namespace tvwall {

// What came of a command.
struct Outcome {
    enum class Kind {
        Done,     // it was carried out
        Failed,   // it was refused, or failed
        NoAnswer, // it has run, and the plug-in gave no answer, or one for whose copy there was no memory
    };
    Kind kind = Kind::NoAnswer;
    std::uint32_t failure = 0; // its code, if it failed
    std::string answer{};      // its bytes, if it was carried out

    explicit operator bool() const { return kind == Kind::Done; }
    // "done", "no answer", or the failure in a few words (see Meaning).
    const char* Text() const;
};

// Queues a command; any thread. The future is ready once the command has run, answered or not, which happens
// inside ProcDevCmd or Stop: so a thread that calls these itself waits afterwards. A command that is still in
// the queue of a processor when that is destroyed never gets ready. Throws std::bad_alloc, and queues nothing
// then.
std::future<Outcome> Ask(CNetProtocolProc& processor, const Command& command);

} // namespace tvwall
