#pragma once

#include <map>
#include <memory>

#include "Host/Connection.h"
#include "HostFunctions.h"
#include "Mutex.h"

namespace standin_host {

// The process's table of connection handles, through which the plug-in names its connection. Thread-safe.
class SocketLayer {
public:
    static SocketLayer& Instance();

    int Add(std::shared_ptr<Connection> connection);    // the new handle, greater than 0
    std::shared_ptr<Connection> Find(int handle) const; // null when there is none
    // Removes the connection from the table; null when there is none.
    std::shared_ptr<Connection> Remove(int handle);

private:
    mutable CMutex m_lock;
    std::map<int, std::shared_ptr<Connection>> m_connections TVWALL_GUARDED_BY(m_lock);
    int m_lastHandle TVWALL_GUARDED_BY(m_lock) = 0;
};

} // namespace standin_host
