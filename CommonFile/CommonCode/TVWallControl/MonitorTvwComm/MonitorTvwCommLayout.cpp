#include "MonitorTvwCommLayout.h"

#include "Encoding/FieldText.h"

namespace ORVA2_CLIENT_TVW {

void S_MTvw_Wall_WallLayout_Item::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_WallLayout_Item id:%u name:%s xPos:%u yPos:%u\n", _id,
             FieldText(_name).c_str(), _coordinate._xPos, _coordinate._yPos);
}

void S_MTvw_Wall_WallLayout_Item::ClearData()
{
    CRecordClearer clearer;
    clearer.Plain(_name, _coordinate);
}

void S_MTvw_Wall_Layout::Dump() const
{
    DumpText(SITE, "\n**************S_MTvw_Wall_Layout row:%u col:%u numchannel:%u\n", rowCol._row,
             rowCol._col, _numchannel);
    DumpList(SITE, "channel list \n", _channelList);
}

void S_MTvw_Wall_Layout::ClearData()
{
    rowCol = {};
    _channelList.clear();
}

} // namespace ORVA2_CLIENT_TVW
