#pragma once
// A decoder's part on the wall. The spellings identidy and devicename are the decoder's.

#include <string>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

struct S_MTvw_Wall_Basic_Config : CTvwRecord<S_MTvw_Wall_Basic_Config> {
    GUID _guidwall{}; // stays null
    tuint32 _identidy = 0;
    tuint32 _runmode = 0;
    std::string _devicename; // all remaining bytes, without a terminating zero

    static constexpr RecordSite SITE{"MonitorTvwCommDeviceInfo", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidwall, self._identidy, self._runmode);
        visitor.Rest(self._devicename);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
