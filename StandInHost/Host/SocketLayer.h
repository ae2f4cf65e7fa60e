#pragma once

#include <map>
#include <memory>

#include "Host/Connection.h"
#include "HostFunctions.h"
#include "Mutex.h"

namespace standin_host {

// The process's table of connection handles, through which the plug-in names its connection. Thread-safe.
class CSocketLayer {
public:
    static CSocketLayer& Instance();

    int Add(std::shared_ptr<CConnection> pConnection);    // the new handle, greater than 0
    std::shared_ptr<CConnection> Find(int nHandle) const; // null when there is none
    // Takes the connection out of the table; null when there is none.
    std::shared_ptr<CConnection> Remove(int nHandle);

private:
    mutable CMutex m_lock;
    std::map<int, std::shared_ptr<CConnection>> m_connections TVWALL_GUARDED_BY(m_lock);
    int m_nLastHandle TVWALL_GUARDED_BY(m_lock) = 0;
};

} // namespace standin_host
