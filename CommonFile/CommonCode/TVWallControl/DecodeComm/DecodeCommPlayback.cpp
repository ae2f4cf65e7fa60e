#include "DecodeCommPlayback.h"

namespace ORVA2_DECODER_TVW {

void S_Playback_Ctrl_Subwnd::Dump() const
{
    DumpText(SITE, "\n**************S_Playback_Ctrl_Subwnd nIndex:%d nPbCtrlType:%d nPbCtrlVal:%d\n", _nIndex,
             _nPbCtrlType, _nPbCtrlVal);
}

void S_Playback_Ctrl_Cavs::Dump() const
{
    DumpText(SITE, "\n**************S_Playback_Ctrl_Cavs id:%d wndNum:%d\n", _id, _wndNum);
    DumpList(SITE, "sub window list \n", _subWnd);
}

void S_Playback_Ctrl_Items_V2::Dump() const
{
    DumpText(SITE, "\n**************S_Playback_Ctrl_Items_V2 cavNum:%d\n", _cavNum);
    DumpList(SITE, "window list \n", _nCavs);
}

} // namespace ORVA2_DECODER_TVW
