#pragma once
// Between a host's stream socket and the plug-in, which reads in the host's memory.

#include <cstddef>
#include <span>
#include <string>

#include "SocketDataObserver.h"

namespace tvwall {

// The received bytes of one connection that the plug-in has not consumed yet. Belongs to the receive thread.
class ReceiveBuffer {
public:
    // Keeps at most mostKept bytes, since decoders choose how long their messages are (up to 4 GiB).
    explicit ReceiveBuffer(std::size_t mostKept = std::size_t{64} << 20U) : m_mostKept(mostKept) {}

    // Takes bytes as they came, and passes them on to the plug-in, with those kept before them, once there
    // are as many as it needs. What a stopped processor, or one whose node drops received data, leaves is
    // discarded. False when more than mostKept are left, or there is no memory for them: then the connection
    // has to be given up.
    bool Take(std::span<const char> bytes, CSocketDataObserver& observer, void* context);

private:
    std::size_t m_mostKept;
    std::string m_kept;
    std::size_t m_wanted = 1; // bytes to be kept before the plug-in is called
};

} // namespace tvwall
