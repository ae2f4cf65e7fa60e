#include "MonitorTvwCommCanvas.h"

#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {
namespace {

constexpr RecordSite WND_ITEM_SITE{"MonitorTvwComm", 190};

// The three canvas-window commands differ only in their items.
template <class Record>
void DumpCommand(const Record& record, const char* szName)
{
    DumpText(Record::SITE, "\n**************%s guidWall:%s guidPlan:%s listCount:%u\n", szName,
             CSysHelper::GuidToString(record._guidWall).c_str(),
             CSysHelper::GuidToString(record._guidPlan).c_str(), record._listCount);
}

} // namespace

void S_MTvw_Create_CavansWindow::Dump() const
{
    DumpCommand(*this, "S_MTvw_Create_CavansWindow");
    DumpList(SITE, "canvas window list \n", _listCanvas);
}

void S_MTvw_Del_CavansWindow::Dump() const
{
    DumpCommand(*this, "S_MTvw_Del_CavansWindow");
    DumpList(SITE, "delete canvas window list \n", _listDelCanvas);
}

void S_MTvw_Modyfy_CavansWindow::Dump() const
{
    DumpCommand(*this, "S_MTvw_Modyfy_CavansWindow");
    DumpList(SITE, "modify canvas window list \n", _listModfyCanvas);
}

void S_MTvw_Canvas_Item_V2::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Canvas_Item nOffetX:%d nOffetY:%d nWidth:%d\t\t\t\t  nHeight:%d nRow:%d "
             "_nCol:%d nLogicScreenNum:%d\n",
             _nOffetX, _nOffetY, _nWidth, _nHeight, _nRow, _nCol, static_cast<int>(_nLogicScreenNum));
    DumpList(SITE, "logic screen list \n", _logicScreenList);
    DumpList(SITE, "canvas window list \n", _canvasList);
}

void S_MTvw_Wnd_Item::Dump() const
{
    DumpText(WND_ITEM_SITE, "\n**************S_MTvw_Wnd_Item id:%d SX1=%f SY1:%f SX2:%f SY2:%f ", _nID,
             static_cast<double>(_fStartX), static_cast<double>(_fStartY), static_cast<double>(_fEndX),
             static_cast<double>(_fEndY));
}

void S_MTvw_Screen::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Screen id:%d SX1=%f SY1:%f SX2:%f SY2:%f zoom:%d state:%d wndcnt:%d "
             "pipCnt:%d ",
             _wndItem._nID, static_cast<double>(_wndItem._fStartX), static_cast<double>(_wndItem._fStartY),
             static_cast<double>(_wndItem._fEndX), static_cast<double>(_wndItem._fEndY), _bZoom, _nState,
             _nWndCnt, _nPipCnt);
    DumpList(SITE, "window list \n", _wndList);
    DumpList(SITE, "pip window list \n", _pipWndList);
}

} // namespace ORVA2_CLIENT_TVW
