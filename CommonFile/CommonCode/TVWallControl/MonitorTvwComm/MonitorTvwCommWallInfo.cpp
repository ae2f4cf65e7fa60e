#include "MonitorTvwCommWallInfo.h"

#include "Encoding/FieldText.h"
#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {
namespace {

constexpr RecordSite SUBWIN_SITE{"MonitorTvwCommWallInfo", 10};

} // namespace

void S_MTvw_Wall_Set_wall_Subwin::Dump() const
{
    DumpText(SUBWIN_SITE,
             "\n**************S_MTvw_Wall_Set_wall_Subwin index:%d osdid:%d type:%d reqmode:%d port:%d "
             "begintime:%u endtime:%u streamType:%u channelid:%s addr:%s channelIdInt:%d\n",
             _index, _osdid, _mediaInfo._type, _mediaInfo._reqmode, _mediaInfo._port, _mediaInfo._begintime,
             _mediaInfo._endtime, _mediaInfo._streamType,
             CSysHelper::GuidToString(_mediaInfo._channelid).c_str(), FieldText(_mediaInfo._addr).c_str(),
             _mediaInfo._channelIdInt);
}

void S_MTvw_Wall_Set_wall_Wind::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Wall_Set_wall_Wind id:%d layerindx:%d mode:%d xPos:%d yPos:%d width:%d "
             "height:%d numwind:%u\n",
             _id, _layerindx, _mode, _rect._xPos, _rect._yPos, _rect._width, _rect._height, _numwind);
    DumpList(SITE, "sub window list \n", _subwin);
}

void S_MTvw_Wall_Set_wall_V2::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Set_wall_V2 numwind:%u\n", _numwind);
    DumpList(SITE, "window list \n", _windList);
}

} // namespace ORVA2_CLIENT_TVW
