#include "MonitorTvwCommChannelGroup.h"

#include "Encoding/FieldText.h"
#include "SysHelper.h"

namespace ORVA2_CLIENT_TVW {

void S_MTvw_Wall_Channel_Group_Info::Dump() const
{
    DumpText(SITE,
             "\n**************S_MTvw_Wall_Channel_Group_Info guidwall:%s nid:%d channelnum:%u interval:%u "
             "name:%s td_channellist:%s\n",
             CSysHelper::GuidToString(_guidwall).c_str(), _nid, _channelnum, _interval,
             FieldText(_name).c_str(), FieldText(_td_channellist).c_str());
}

void S_MTvw_Wall_Del_Ch_Group_item::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Del_Ch_Group_item id:%d\n", _id);
}

void S_MTvw_Wall_Delete_Channel_Group::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Delete_Channel_Group guidwall:%s numchgroup:%u\n",
             CSysHelper::GuidToString(_guidwall).c_str(), _numchgroup);
    DumpList(SITE, "channel group list \n", _chgrouplist);
}

void S_MTvw_Wall_Chl_GrPolling_Subitem::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Chl_GrPolling_Subitem index:%u channelgroup:%u\n", _index,
             _channelgroup);
}

void S_MTvw_Wall_Chl_GrPolling_Winitem::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Chl_GrPolling_Winitem id:%d subitemSize:%u\n", _id,
             _subitemSize);
    DumpList(SITE, "sub window list \n", _subitemList);
}

void S_MTvw_Wall_Start_Chl_GrPolling::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Start_Chl_GrPolling guidwall:%s numgrpoll:%u\n",
             CSysHelper::GuidToString(_guidwall).c_str(), _numgrpoll);
    DumpList(SITE, "window list \n", _GrPollinglist);
}

void S_MTvw_Wall_Get_ChGroup::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Get_ChGroup guidwall:%s id:%d\n",
             CSysHelper::GuidToString(_guidwall).c_str(), _id);
}

void S_MTvw_Wall_Get_ChGroup_info::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Get_ChGroup_info numchgroup:%u\n", _numchgroup);
    DumpList(SITE, "channel group list \n", getChGroupList);
}

} // namespace ORVA2_CLIENT_TVW
