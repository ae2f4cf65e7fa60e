#include "DecodeCommDisplay.h"

namespace ORVA2_DECODER_TVW {
namespace {

constexpr RecordSite SUBWIND_SITE{"DecodeCommDisplay", 50};

} // namespace

void S_Decoder_Draw_Border_Subwind::Dump() const
{
    DumpText(SUBWIND_SITE, "\n**************S_Decoder_Draw_Border_Subwind index:%d drawborder:%d\n", _index,
             _drawborder);
}

void S_Decoder_Draw_Border_Wind::Dump() const
{
    DumpText(SITE, "\n**************S_Decoder_Draw_Border_Wind id:%d subwindCount:%u\n", _id, _subwindCount);
    DumpList(SITE, "sub window list \n", _subwindlist);
}

void S_Decoder_Draw_Border::Dump() const
{
    DumpText(SITE, "\n**************S_Decoder_Draw_Border windCount:%u\n", _windCount);
    DumpList(SITE, "window list \n", _windlist);
}

} // namespace ORVA2_DECODER_TVW
