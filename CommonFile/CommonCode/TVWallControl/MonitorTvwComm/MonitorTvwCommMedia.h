#pragma once
// Live and recorded video for the sub-windows of canvas windows. The decoder pulls it from its source with
// the credentials held here in the clear, so no log shows them.

#include <cstddef>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// One stream. It has two wire forms: inside a sub-window it is an image of 608 bytes, its gap included; alone
// it is packed, like every other record, to 604 bytes. The meaning of type, reqmode, streamtype, recordmask
// and source, and the unit of the times, are between host and decoder. The texts are zero-terminated unless
// they fill their field.
struct S_MTvw_Wall_Media_info : CTvwRecord<S_MTvw_Wall_Media_info> {
    tint32 _channelIdInt = 0; // used when _channelid is all zero; negative = no channel
    GUID _channelid{};
    tint32 _type = 0;
    tint32 _reqmode = 0;
    tint32 _port = 0;
    tint32 _streamtype = 0;
    tuint32 _recordmask = 0;
    tint32 _source = 0;
    tuint32 _gap = 0; // in the image only; kept, not read
    tuint64 _begintime = 0;
    tuint64 _endtime = 0;
    char _addr[32] = {};
    char _user[256] = {};
    char _pwd[256] = {};

    static constexpr RecordSite SITE{"MonitorTvwCommMedia", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._channelIdInt, self._channelid, self._type, self._reqmode, self._port,
                      self._streamtype, self._recordmask, self._source, self._begintime, self._endtime,
                      self._addr, self._user, self._pwd);
    }
    void Dump() const;
};
static_assert(sizeof(S_MTvw_Wall_Media_info) == 608);
static_assert(offsetof(S_MTvw_Wall_Media_info, _channelid) == 4);
static_assert(offsetof(S_MTvw_Wall_Media_info, _type) == 20);
static_assert(offsetof(S_MTvw_Wall_Media_info, _source) == 40);
static_assert(offsetof(S_MTvw_Wall_Media_info, _begintime) == 48);
static_assert(offsetof(S_MTvw_Wall_Media_info, _addr) == 64);
static_assert(offsetof(S_MTvw_Wall_Media_info, _user) == 96);
static_assert(offsetof(S_MTvw_Wall_Media_info, _pwd) == 352);
using MEDIAINFOLIST = std::list<std::shared_ptr<S_MTvw_Wall_Media_info>>;

// One sub-window with its streams.
struct S_MTvw_Wall_Media_Sub_Wind : CTvwRecord<S_MTvw_Wall_Media_Sub_Wind> {
    tint32 _index = 0;
    tuint32 _numinfo = 0;
    MEDIAINFOLIST _mediaInfo;

    static constexpr RecordSite SITE{"MonitorTvwCommMedia", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._index, self._numinfo);
        visitor.ImageList(self._numinfo, self._mediaInfo);
    }
    void Dump() const;
};
using MEDIASUBWINDLIST = std::list<std::shared_ptr<S_MTvw_Wall_Media_Sub_Wind>>;

// One window.
struct S_MTvw_Wall_Media_Wind : CTvwRecord<S_MTvw_Wall_Media_Wind> {
    tint32 _id = 0;
    tuint32 _numwind = 0; // sub-windows; the host uses one name for both counts
    MEDIASUBWINDLIST _subWind;

    static constexpr RecordSite SITE{"MonitorTvwCommMedia", 50};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._numwind);
        visitor.List(self._numwind, self._subWind);
    }
    void Dump() const;
};
using MEDIAWINDLIST = std::list<std::shared_ptr<S_MTvw_Wall_Media_Wind>>;

// Media to start, or windows in which to stop them.
struct S_MTvw_Wall_Media : CTvwRecord<S_MTvw_Wall_Media> {
    tuint32 _numwind = 0;
    MEDIAWINDLIST _mediaWind;

    static constexpr RecordSite SITE{"MonitorTvwCommMedia", 70};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._numwind);
        visitor.List(self._numwind, self._mediaWind);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
