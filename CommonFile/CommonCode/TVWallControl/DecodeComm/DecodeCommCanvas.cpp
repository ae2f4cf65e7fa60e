#include "DecodeCommCanvas.h"

namespace ORVA2_DECODER_TVW {

void S_Cavans_Sub_WindowInfo::Dump() const
{
    DumpText(SITE, "\n**************S_Cavans_Sub_WindowInfo nIndex:%u nOsdid:%u\n", _nIndex, _nOsdid);
}

void S_Create_Cavans_WindowInfo::Dump() const
{
    DumpText(
        SITE,
        "\n**************S_Create_Cavans_WindowInfo nID:%u nXPos:%u nYpos:%u nWidth:%u nHeight:%u abs_x:%d "
        "abs_y:%d abs_w:%d abs_h:%d nMode:%u layId:%u zoomWndIndex:%d\n",
        _nID, _nXPos, _nYpos, _nWidth, _nHeight, _abs_x, _abs_y, _abs_w, _abs_h, _nMode, _layId,
        _zoomWndIndex);
    DumpList(SITE, "sub window list \n", _listSubWindow);
}

void S_Delete_Canvas_Window_Item::Dump() const
{
    DumpText(SITE, "\n**************S_Delete_Canvas_Window_Item nID:%u\n", _nID);
}

void S_Roar_CanvasWindow_Item::Dump() const
{
    DumpText(
        SITE,
        "\n**************S_Roar_CanvasWindow_Item nID:%d nPositionX:%d nPositionY:%d nWidth:%d nHeight:%d\n",
        _nID, _nPositionX, _nPositionY, _nWidth, _nHeight);
}

void S_Decoder_LogicScreen_Item_V2::Dump() const
{
    DumpText(SITE,
             "\n**************S_Decoder_LogicScreen_Item_V2 nID:%u nOffetX:%d nOffetY:%d nWidth:%d "
             "nHeight:%d\n",
             _nID, _nOffetX, _nOffetY, _nWidth, _nHeight);
}

} // namespace ORVA2_DECODER_TVW
