#include "MonitorTvwCommMedia.h"

#include "Encoding/FieldText.h"
#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {

void S_MTvw_Wall_Media_info::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Wall_Media_info channelIdInt:%d channelid:%s type:%d reqmode:%d port:%d "
             "streamtype:%d recordmask:%u source:%d begintime:%llu endtime:%llu addr:%s\n",
             _channelIdInt, CSysHelper::GuidToString(_channelid).c_str(), _type, _reqmode, _port, _streamtype,
             _recordmask, _source, _begintime, _endtime, FieldText(_addr).c_str());
}

void S_MTvw_Wall_Media_Sub_Wind::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Media_Sub_Wind index:%d numinfo:%u\n", _index, _numinfo);
    DumpList(SITE, "media list \n", _mediaInfo);
}

void S_MTvw_Wall_Media_Wind::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Media_Wind id:%d numwind:%u\n", _id, _numwind);
    DumpList(SITE, "sub window list \n", _subWind);
}

void S_MTvw_Wall_Media::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Media numwind:%u\n", _numwind);
    DumpList(SITE, "window list \n", _mediaWind);
}

} // namespace ORVA2_CLIENT_TVW
