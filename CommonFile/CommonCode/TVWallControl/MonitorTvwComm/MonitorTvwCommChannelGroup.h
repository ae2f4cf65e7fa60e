#pragma once
// Channel groups, through which the decoder cycles in a sub-window ("polling"). The walls' GUIDs are the
// host's; the decoder does not see them.

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// One group: 300 bytes. The texts are zero-terminated unless they fill their field.
struct S_MTvw_Wall_Channel_Group_Info : CTvwRecord<S_MTvw_Wall_Channel_Group_Info> {
    GUID _guidwall{};
    tint32 _nid = 0;
    tuint32 _channelnum = 0;
    tuint32 _interval = 0; // from channel to channel, in the decoder's unit
    char _name[256] = {};
    char _td_channellist[16] = {}; // in the decoder's notation

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidwall, self._nid, self._channelnum, self._interval, self._name,
                      self._td_channellist);
    }
    void Dump() const;
};
using CHANNELGROUPLIST = std::list<std::shared_ptr<S_MTvw_Wall_Channel_Group_Info>>;

// A group to delete.
struct S_MTvw_Wall_Del_Ch_Group_item : CTvwRecord<S_MTvw_Wall_Del_Ch_Group_item> {
    tint32 _id = 0;

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id);
    }
    void Dump() const;
};
using DELCHGROUPLIST = std::list<std::shared_ptr<S_MTvw_Wall_Del_Ch_Group_item>>;

// Groups to delete.
struct S_MTvw_Wall_Delete_Channel_Group : CTvwRecord<S_MTvw_Wall_Delete_Channel_Group> {
    GUID _guidwall{};
    tuint32 _numchgroup = 0;
    DELCHGROUPLIST _chgrouplist;

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 50};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidwall, self._numchgroup);
        visitor.List(self._numchgroup, self._chgrouplist);
    }
    void Dump() const;
};

// A sub-window and the group to cycle through.
struct S_MTvw_Wall_Chl_GrPolling_Subitem : CTvwRecord<S_MTvw_Wall_Chl_GrPolling_Subitem> {
    tuint32 _index = 0;
    tuint32 _channelgroup = 0; // group id

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 70};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._index, self._channelgroup);
    }
    void Dump() const;
};
using GRPOLLINGSUBLIST = std::list<std::shared_ptr<S_MTvw_Wall_Chl_GrPolling_Subitem>>;

// A canvas window with sub-windows to start.
struct S_MTvw_Wall_Chl_GrPolling_Winitem : CTvwRecord<S_MTvw_Wall_Chl_GrPolling_Winitem> {
    tint32 _id = 0;
    tuint32 _subitemSize = 0; // items, not bytes
    GRPOLLINGSUBLIST _subitemList;

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 90};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._subitemSize);
        visitor.List(self._subitemSize, self._subitemList);
    }
    void Dump() const;
};
using GRPOLLINGWINLIST = std::list<std::shared_ptr<S_MTvw_Wall_Chl_GrPolling_Winitem>>;

// Where to start polling.
struct S_MTvw_Wall_Start_Chl_GrPolling : CTvwRecord<S_MTvw_Wall_Start_Chl_GrPolling> {
    GUID _guidwall{};
    tuint32 _numgrpoll = 0;
    GRPOLLINGWINLIST _GrPollinglist;

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 110};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidwall, self._numgrpoll);
        visitor.List(self._numgrpoll, self._GrPollinglist);
    }
    void Dump() const;
};

// A query for one group, or for all of them.
struct S_MTvw_Wall_Get_ChGroup : CTvwRecord<S_MTvw_Wall_Get_ChGroup, CClearingReader> {
    GUID _guidwall{};
    tint32 _id = 0; // 0 = all

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 130};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        // Read separately: the host may omit the id.
        visitor.Plain(self._guidwall);
        visitor.Plain(self._id);
    }
    void Dump() const;
};

// The answer: the decoder's groups. Set _numchgroup before encoding.
struct S_MTvw_Wall_Get_ChGroup_info : CTvwRecord<S_MTvw_Wall_Get_ChGroup_info> {
    tuint32 _numchgroup = 0;
    CHANNELGROUPLIST getChGroupList;

    static constexpr RecordSite SITE{"MonitorTvwCommChannelGroup", 150};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._numchgroup);
        visitor.List(self._numchgroup, self.getChGroupList);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
