#pragma once
// How a host calls a session or a processor.

#include <array>
#include <bit>
#include <string>
#include <vector>

#include "CmdProcObject.h"
#include "SocketDataObserver.h"

// Runs the command with a payload of its own.
template <class Processor>
void Process(Processor& processor, CCmdProcObject& command, std::string payload)
{
    processor.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                             static_cast<unsigned int>(payload.size()));
}

// The entries of virtual operations in their tables.
template <class... Operation>
std::vector<long> Entries(Operation... operation)
{
    return {std::bit_cast<std::array<long, 2>>(operation)[0] / 8 ...}; // one more than the bytes before it
}

// The bytes that are consumed of these, which lie in the host's buffer or are kept by the session.
inline unsigned int Offer(CSocketDataObserver& observer, const std::string& bytes, bool buffered = false)
{
    unsigned int need = 0;
    return observer.OnSocketRecvData(0, bytes.data(), static_cast<unsigned int>(bytes.size()),
                                     buffered ? nullptr : &need, nullptr);
}
