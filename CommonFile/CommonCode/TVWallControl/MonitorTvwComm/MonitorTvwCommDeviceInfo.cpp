#include "MonitorTvwCommDeviceInfo.h"

#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {

void S_MTvw_Wall_Basic_Config::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Wall_Basic_Config guidwall:%s identidy:%u runmode:%u devicename:%s\n",
             CSysHelper::GuidToString(_guidwall).c_str(), _identidy, _runmode, _devicename.c_str());
}

} // namespace ORVA2_CLIENT_TVW
