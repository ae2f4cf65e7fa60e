#pragma once
// The grid of a wall's screens, and the decoder's output channels in it.

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// Size of the grid, in screens.
struct S_MTvw_Wall_RC_WallLayout {
    tuint32 _row = 0;
    tuint32 _col = 0;
};
static_assert(sizeof(S_MTvw_Wall_RC_WallLayout) == 8);

// A place in the grid.
struct S_MTvw_Wall_WallLayout_Coor {
    tuint32 _xPos = 0;
    tuint32 _yPos = 0;
};
static_assert(sizeof(S_MTvw_Wall_WallLayout_Coor) == 8);

// One screen: 268 bytes. The name is zero-terminated unless it fills its field.
struct S_MTvw_Wall_WallLayout_Item : CTvwRecord<S_MTvw_Wall_WallLayout_Item> {
    tuint32 _id = 0; // of the output channel that feeds it
    char _name[256] = {};
    S_MTvw_Wall_WallLayout_Coor _coordinate{};

    static constexpr RecordSite SITE{"MonitorTvwCommLayout", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._name, self._coordinate);
    }
    void Dump() const;
    // Leaves the id unchanged, as the host's own record does.
    void ClearData();
};
using WALLLAYOUTLIST = std::list<std::shared_ptr<S_MTvw_Wall_WallLayout_Item>>;

// The wall. Set _numchannel before encoding.
struct S_MTvw_Wall_Layout : CTvwRecord<S_MTvw_Wall_Layout, CCheckedHeadReader> {
    S_MTvw_Wall_RC_WallLayout rowCol{};
    tuint32 _numchannel = 0;
    WALLLAYOUTLIST _channelList;

    static constexpr RecordSite SITE{"MonitorTvwCommLayout", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self.rowCol, self._numchannel);
        visitor.List(self._numchannel, self._channelList);
    }
    void Dump() const;
    // Leaves _numchannel unchanged, as the host's own record does.
    void ClearData();
};

} // namespace ORVA2_CLIENT_TVW
