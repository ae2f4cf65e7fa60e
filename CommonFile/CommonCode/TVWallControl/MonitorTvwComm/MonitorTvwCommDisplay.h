#pragma once
// How windows are shown: images that are read in place (ReadImage). The GUIDs are the host's; the decoder
// does not see them.

#include <cstddef>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// A sub-window to zoom to its whole window, or back.
struct S_MTvw_PlanWnd_Zoom_v2 {
    GUID _guidWall{};
    GUID _guidPlan{};
    tuint32 _nWndID = 0;
    tuint16 _bZoom = 0; // 1 = to the whole window, 0 = back
    tuint16 _nIndex = 0;
};
static_assert(sizeof(S_MTvw_PlanWnd_Zoom_v2) == 40);
static_assert(offsetof(S_MTvw_PlanWnd_Zoom_v2, _nWndID) == 32);
static_assert(offsetof(S_MTvw_PlanWnd_Zoom_v2, _bZoom) == 36);
static_assert(offsetof(S_MTvw_PlanWnd_Zoom_v2, _nIndex) == 38);

// The switches for the whole wall.
struct S_MTvw_Wall_Set_WindCfg_V2 {
    GUID _guidWall{};
    GUID _guidDecoder{};
    tuint16 _enableborder = 0;
    tuint16 _enableshowwinid = 0;
};
static_assert(sizeof(S_MTvw_Wall_Set_WindCfg_V2) == 36);
static_assert(offsetof(S_MTvw_Wall_Set_WindCfg_V2, _enableborder) == 32);
static_assert(offsetof(S_MTvw_Wall_Set_WindCfg_V2, _enableshowwinid) == 34);

} // namespace ORVA2_CLIENT_TVW
