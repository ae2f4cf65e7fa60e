#pragma once
// Canvas windows and their sub-windows. Spellings such as Cavans and Roar are the host's.

#include "Encoding/TvwRecord.h"

namespace ORVA2_DECODER_TVW {

// One sub-window of a canvas window.
struct S_Cavans_Sub_WindowInfo : CTvwRecord<S_Cavans_Sub_WindowInfo> {
    tuint32 _nIndex = 0; // position inside the window
    tuint32 _nOsdid = 0; // on-screen-display id

    static constexpr RecordSite SITE{"DecodeComm", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nIndex, self._nOsdid);
    }
    void Dump() const;
};
using CANVASSUBWINDOWLIST = std::list<std::shared_ptr<S_Cavans_Sub_WindowInfo>>;

// One canvas window.
struct S_Create_Cavans_WindowInfo : CTvwRecord<S_Create_Cavans_WindowInfo> {
    tuint32 _nID = 0;
    tuint32 _nXPos = 0; // the rectangle, in wall coordinates
    tuint32 _nYpos = 0;
    tuint32 _nWidth = 0;
    tuint32 _nHeight = 0;
    tuint16 _abs_x = 0;
    tuint16 _abs_y = 0;
    tuint16 _abs_w = 0;
    tuint16 _abs_h = 0;
    tuint32 _nMode = 0; // split mode, which is also the number of sub-windows
    tuint32 _layId = 0;
    tint32 _zoomWndIndex = 0;
    CANVASSUBWINDOWLIST _listSubWindow;

    static constexpr RecordSite SITE{"DecodeComm", 60};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nID, self._nXPos, self._nYpos, self._nWidth, self._nHeight, self._abs_x,
                      self._abs_y, self._abs_w, self._abs_h, self._nMode, self._layId, self._zoomWndIndex);
        visitor.List(self._nMode, self._listSubWindow);
    }
    void Dump() const;
};
using CANVASWINDOWINFOLIST = std::list<std::shared_ptr<S_Create_Cavans_WindowInfo>>;

// A canvas window to delete.
struct S_Delete_Canvas_Window_Item : CTvwRecord<S_Delete_Canvas_Window_Item> {
    tuint32 _nID = 0;

    static constexpr RecordSite SITE{"DecodeComm", 90};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nID);
    }
    void Dump() const;
};
using DELETECANVASLIST = std::list<std::shared_ptr<S_Delete_Canvas_Window_Item>>;

// A canvas window to move or resize, in wall coordinates; a window may extend beyond the wall's left and
// upper edges.
struct S_Roar_CanvasWindow_Item : CTvwRecord<S_Roar_CanvasWindow_Item> {
    tint32 _nID = 0;
    tint32 _nPositionX = 0;
    tint32 _nPositionY = 0;
    tint32 _nWidth = 0;
    tint32 _nHeight = 0;

    static constexpr RecordSite SITE{"DecodeComm", 120};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nID, self._nPositionX, self._nPositionY, self._nWidth, self._nHeight);
    }
    void Dump() const;
};
using ROARCANVASLIST = std::list<std::shared_ptr<S_Roar_CanvasWindow_Item>>;

// A logic screen of a canvas: a part of its grid that shows one picture. No command to this decoder carries
// one.
struct S_Decoder_LogicScreen_Item_V2 : CTvwRecord<S_Decoder_LogicScreen_Item_V2> {
    tuint32 _nID = 0;
    tint16 _nOffetX = 0; // on the canvas
    tint16 _nOffetY = 0;
    tuint16 _nWidth = 0;
    tuint16 _nHeight = 0;

    static constexpr RecordSite SITE{"DecodeComm", 150};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nID, self._nOffetX, self._nOffetY, self._nWidth, self._nHeight);
    }
    void Dump() const;
};
using LOGICSCREENLIST_V2 = std::list<std::shared_ptr<S_Decoder_LogicScreen_Item_V2>>;

} // namespace ORVA2_DECODER_TVW
