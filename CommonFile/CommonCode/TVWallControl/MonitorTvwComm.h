#pragma once
// Records of the wall model as the client side sees it. Spellings such as Cavans, Modyfy, Modfy and Offet are
// the host's.

#include <cstddef>
#include <string>
#include <vector>

#include "DecodeComm.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// Host data types of wall commands; the host knows more of them than have a name here.
enum E_MTVW_TYPE : uint32_t {
    TVWALL_DATATYPE_MODIFY_BINDINFO = 1,
    TVWALL_DATATYPE_SAVE_WALLCONFIG = 4,
    TVWALL_DATATYPE_SAVE_WORKSTATION = 6,
    TVWALL_DATATYPE_SAVEAS_PLAN = 7,
    TVWALL_DATATYPE_PLAN_WNDLIVECONFIG = 13,
    TVWALL_DATATYPE_PLAN_WNDINCONFIG = 15,
    TVWALL_DATATYPE_PLAN_DELWNDCONFIG = 16,
    TVWALL_DATATYPE_ADD_GROUPDWELL = 24,
    TVWALL_DATATYPE_MODIFY_GROUPDWELL = 26,
    TVWALL_DATATYPE_MODIFY_ALARMLINKINFO = 36,
    TVWALL_DATATYPE_MODIFY_PLANDWELLINFO = 40,
    TVWALL_DATATYPE_PLAYBACK_CTRL = 64,
    TVWALL_DATATYPE_NOTIFY_DECODER_STATE = 1024,
    TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_CHANGE = 1025,
    TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_STATE = 1026,
    TVWALL_DATATYPE_NOTIFY_DECODER_AUDIO_CFG = 1027,
    TVWALL_DATATYPE_NOTIFY_CHANGE_WALL_BINDINFO = 1282,
    TVWALL_DOCLEAR_WALL = 1309,
};

// False when records of this type have variable parts and go through SetData; true when they are copied as
// they lie.
bool IsPodType(E_MTVW_TYPE type);
// True when a refresh notification follows a command of this data type.
bool IsNeedNotifyFresh(const unsigned int& nType);

// Reads a whole file; nMode takes the flags of open(2). False, with nothing in the vector, for an empty path,
// a file that will not open, cannot be read (a directory) or does not fit. Of a file that is shorter than it
// says, what was read; nReadLen is the size of the vector.
bool ReadFile(const std::string& strPath, std::vector<BYTE>& vecData, uint32_t& nReadLen, uint32_t nMode);
// Writes nLen bytes; nMode takes the flags of open(2). False for an empty path, a null buffer, a file that
// will not open or one that does not take all bytes.
bool WriteFile(const std::string& strPath, const BYTE* pData, uint32_t nLen, uint32_t nMode);

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
    GUID _guidWall;
    GUID _guidPlan;
    tuint32 _id;
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

// A window of a screen: an image that travels whole. Only what the log shows of it has names here.
struct S_MTvw_Wnd_Item {
    tint32 _nID;
    float _fStartX; // upper left and lower right corner
    float _fStartY;
    float _fEndX;
    float _fEndY;
    char _rest[20];

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
