#include "MonitorTvwCommDeviceInfo.h"

namespace ORVA2_CLIENT_TVW {

unsigned int S_MTvw_Wall_Basic_Config::GetLength() const
{
    CRecordLength length;
    length.Plain(_guidwall, _identidy, _runmode);
    return static_cast<unsigned int>(length.GetLength() + _devicename.size());
}

unsigned int S_MTvw_Wall_Basic_Config::GetData(char*& pData) const
{
    if (pData == nullptr) {
        return 0;
    }
    CRecordWriter writer(pData, GetLength());
    writer.Plain(_guidwall, _identidy, _runmode);
    _devicename.copy(pData + writer.GetLength(), _devicename.size());
    return GetLength();
}

std::string S_MTvw_Wall_Basic_Config::Encode() const
{
    std::string bytes(GetLength(), '\0');
    char* pData = bytes.data();
    GetData(pData);
    return bytes;
}

} // namespace ORVA2_CLIENT_TVW
