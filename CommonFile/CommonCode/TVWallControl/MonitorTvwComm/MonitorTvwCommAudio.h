#pragma once
// Sound of sub-windows: which to switch on or off, and which are on.

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// One sub-window.
struct S_MTvw_Get_AuCfg_Subwnd : CTvwRecord<S_MTvw_Get_AuCfg_Subwnd> {
    tint32 _index = 0;
    tint32 _channelId = 0; // the channel whose sound it plays, in the decoder's numbering

    static constexpr RecordSite SITE{"MonitorTvwCommAudio", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._index, self._channelId);
    }
    void Dump() const;
};
using AUCFGSUBWNDLIST = std::list<std::shared_ptr<S_MTvw_Get_AuCfg_Subwnd>>;

// One canvas window.
struct S_MTvw_Get_AuCfg_Cav : CTvwRecord<S_MTvw_Get_AuCfg_Cav> {
    tint32 _id = 0;
    tuint32 _subCnt = 0;
    AUCFGSUBWNDLIST _subList;

    static constexpr RecordSite SITE{"MonitorTvwCommAudio", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._subCnt);
        visitor.List(self._subCnt, self._subList);
    }
    void Dump() const;
};
using AUCFGCAVLIST = std::list<std::shared_ptr<S_MTvw_Get_AuCfg_Cav>>;

// The whole command, and the answer to the query. The GUIDs are the host's; the decoder does not see them.
struct S_MTvw_Get_Audio_Config : CTvwRecord<S_MTvw_Get_Audio_Config, CCheckedHeadReader> {
    GUID _nwallGuid{};
    GUID _DecGuid{};
    tuint32 _cavCnt = 0;
    AUCFGCAVLIST _cavList;

    static constexpr RecordSite SITE{"MonitorTvwCommAudio", 50};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nwallGuid, self._DecGuid, self._cavCnt);
        visitor.List(self._cavCnt, self._cavList);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
