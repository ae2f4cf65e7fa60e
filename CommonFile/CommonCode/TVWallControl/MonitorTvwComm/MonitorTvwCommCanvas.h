#pragma once
// Canvas windows, and screens with their windows. Spellings such as Cavans, Modyfy, Modfy and Offet are the
// host's.

#include <cstddef>

#include "DecodeCommCanvas.h"
#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// Canvas windows to create, or to split anew.
struct S_MTvw_Create_CavansWindow : CTvwRecord<S_MTvw_Create_CavansWindow> {
    GUID _guidWall{};
    GUID _guidPlan{};
    tuint32 _listCount = 0;
    ORVA2_DECODER_TVW::CANVASWINDOWINFOLIST _listCanvas;

    static constexpr RecordSite SITE{"MonitorTvwComm", 40};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidWall, self._guidPlan, self._listCount);
        visitor.List(self._listCount, self._listCanvas);
    }
    void Dump() const;
};

// Canvas windows to delete.
struct S_MTvw_Del_CavansWindow : CTvwRecord<S_MTvw_Del_CavansWindow> {
    GUID _guidWall{};
    GUID _guidPlan{};
    tuint32 _listCount = 0;
    ORVA2_DECODER_TVW::DELETECANVASLIST _listDelCanvas;

    static constexpr RecordSite SITE{"MonitorTvwComm", 70};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidWall, self._guidPlan, self._listCount);
        visitor.List(self._listCount, self._listDelCanvas);
    }
    void Dump() const;
};

// Canvas windows to move or resize.
struct S_MTvw_Modyfy_CavansWindow : CTvwRecord<S_MTvw_Modyfy_CavansWindow> {
    GUID _guidWall{};
    GUID _guidPlan{};
    tuint32 _listCount = 0;
    ORVA2_DECODER_TVW::ROARCANVASLIST _listModfyCanvas;

    static constexpr RecordSite SITE{"MonitorTvwComm", 100};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._guidWall, self._guidPlan, self._listCount);
        visitor.List(self._listCount, self._listModfyCanvas);
    }
    void Dump() const;
};

// A canvas window to raise: an image that is read in place (ReadImage).
struct S_MTvw_Top_Canvas_Item {
    GUID _guidWall{};
    GUID _guidPlan{};
    tuint32 _id = 0;
};
static_assert(sizeof(S_MTvw_Top_Canvas_Item) == 36);
static_assert(offsetof(S_MTvw_Top_Canvas_Item, _id) == 32);

// The canvas of a wall: its place, its grid of screens and the windows on it.
struct S_MTvw_Canvas_Item_V2 : CTvwRecord<S_MTvw_Canvas_Item_V2> {
    tint16 _nOffetX = 0;
    tint16 _nOffetY = 0;
    tuint16 _nWidth = 0;
    tuint16 _nHeight = 0;
    tint16 _abs_x = 0;
    tint16 _abs_y = 0;
    tuint16 _abs_w = 0;
    tuint16 _abs_h = 0;
    tuint16 _nRow = 0;
    tuint16 _nCol = 0;
    tuint16 _nCanvasNum = 0;
    tuint32 _nLogicScreenNum = 0;
    ORVA2_DECODER_TVW::LOGICSCREENLIST_V2 _logicScreenList;
    ORVA2_DECODER_TVW::CANVASWINDOWINFOLIST _canvasList;

    static constexpr RecordSite SITE{"MonitorTvwComm", 130};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nOffetX, self._nOffetY, self._nWidth, self._nHeight, self._abs_x, self._abs_y,
                      self._abs_w, self._abs_h, self._nRow, self._nCol, self._nCanvasNum,
                      self._nLogicScreenNum);
        visitor.List(self._nLogicScreenNum, self._logicScreenList);
        visitor.List(self._nCanvasNum, self._canvasList);
    }
    void Dump() const;
};

// A window of a screen: an image that travels whole. Only the fields that the log shows have names here.
struct S_MTvw_Wnd_Item {
    tint32 _nID = 0;
    float _fStartX = 0.0F; // upper left and lower right corner
    float _fStartY = 0.0F;
    float _fEndX = 0.0F;
    float _fEndY = 0.0F;
    char _rest[20] = {};

    void Dump() const;
};
static_assert(sizeof(S_MTvw_Wnd_Item) == 40);
static_assert(offsetof(S_MTvw_Wnd_Item, _rest) == 20);
using SCREENWNDLIST = std::list<std::shared_ptr<S_MTvw_Wnd_Item>>;

// One screen with its windows and the picture-in-picture windows over them.
struct S_MTvw_Screen : CTvwRecord<S_MTvw_Screen> {
    S_MTvw_Wnd_Item _wndItem{}; // the screen itself
    tuint8 _bZoom = 0;
    tuint8 _nState = 0;
    tint8 _nWndCnt = 0; // the host's counts are signed: 128 and more announce nothing
    tint8 _nPipCnt = 0;
    SCREENWNDLIST _wndList;
    SCREENWNDLIST _pipWndList;

    static constexpr RecordSite SITE{"MonitorTvwComm", 160};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._wndItem, self._bZoom, self._nState, self._nWndCnt, self._nPipCnt);
        visitor.ImageList(self._nWndCnt, self._wndList);
        visitor.ImageList(self._nPipCnt, self._pipWndList);
    }
    void Dump() const;
};

} // namespace ORVA2_CLIENT_TVW
