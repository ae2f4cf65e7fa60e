#include "MonitorTvwCommAudio.h"

#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {

void S_MTvw_Get_AuCfg_Subwnd::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Get_AuCfg_Subwnd index:%d channelId:%d\n", _index, _channelId);
}

void S_MTvw_Get_AuCfg_Cav::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Get_AuCfg_Cav id:%d subCnt:%u\n", _id, _subCnt);
    DumpList(SITE, "sub window list \n", _subList);
}

void S_MTvw_Get_Audio_Config::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Get_Audio_Config nwallGuid:%s DecGuid:%s cavCnt:%u\n",
             CSysHelper::GuidToString(_nwallGuid).c_str(), CSysHelper::GuidToString(_DecGuid).c_str(),
             _cavCnt);
    DumpList(SITE, "window list \n", _cavList);
}

} // namespace ORVA2_CLIENT_TVW
