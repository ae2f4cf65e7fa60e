#pragma once
// A complete picture of a wall. Its media hold credentials in the clear, so no log shows them.

#include <cstddef>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

struct S_MTvw_Wall_Set_wall_Rect {
    tuint16 _xPos = 0; // in wall coordinates
    tuint16 _yPos = 0;
    tuint16 _width = 0;
    tuint16 _height = 0;
};
static_assert(sizeof(S_MTvw_Wall_Set_wall_Rect) == 8);

// The stream of a sub-window. Not the media entry of MonitorTvwCommMedia.h: narrower numbers, different
// fields in a different order. The texts are zero-terminated unless they fill their field.
struct S_MTvw_Wall_Set_wall_Subwin_Medinfo {
    tuint16 _type = 0;
    tuint16 _reqmode = 0; // 6: the channel is _channelIdInt
    tuint16 _port = 0;
    tuint16 _gap = 0;       // kept, not read
    tuint32 _begintime = 0; // the decoder does not see the times
    tuint32 _endtime = 0;
    tuint32 _streamType = 0;
    GUID _channelid{};
    char _addr[32] = {};
    char _user[256] = {};
    char _pwd[256] = {};
    tint32 _channelIdInt = 0; // -1 = none
};

// One sub-window: an image that travels whole.
struct S_MTvw_Wall_Set_wall_Subwin {
    tuint16 _index = 0;
    tuint16 _osdid = 0;
    S_MTvw_Wall_Set_wall_Subwin_Medinfo _mediaInfo{};

    void Dump() const;
};
static_assert(sizeof(S_MTvw_Wall_Set_wall_Subwin) == 588);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo) == 4);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._port) == 8);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._begintime) == 12);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._streamType) == 20);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._channelid) == 24);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._addr) == 40);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._user) == 72);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._pwd) == 328);
static_assert(offsetof(S_MTvw_Wall_Set_wall_Subwin, _mediaInfo._channelIdInt) == 584);
using SETWALLSUBWINLIST = std::list<std::shared_ptr<S_MTvw_Wall_Set_wall_Subwin>>;

// One window.
struct S_MTvw_Wall_Set_wall_Wind : CTvwRecord<S_MTvw_Wall_Set_wall_Wind> {
    tuint16 _id = 0;
    tuint16 _layerindx = 0; // stacking order
    tuint16 _mode = 0;      // split mode
    S_MTvw_Wall_Set_wall_Rect _rect{};
    tuint32 _numwind = 0; // sub-windows
    SETWALLSUBWINLIST _subwin;

    static constexpr RecordSite SITE{"MonitorTvwCommWallInfo", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._layerindx, self._mode, self._rect, self._numwind);
        visitor.ImageList(self._numwind, self._subwin);
    }
    void Dump() const;
};
using SETWALLWINDLIST = std::list<std::shared_ptr<S_MTvw_Wall_Set_wall_Wind>>;

// The wall.
struct S_MTvw_Wall_Set_wall_V2 : CTvwRecord<S_MTvw_Wall_Set_wall_V2> {
    tuint32 _numwind = 0;
    SETWALLWINDLIST _windList;

    static constexpr RecordSite SITE{"MonitorTvwCommWallInfo", 50};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._numwind);
        visitor.List(self._numwind, self._windList);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
