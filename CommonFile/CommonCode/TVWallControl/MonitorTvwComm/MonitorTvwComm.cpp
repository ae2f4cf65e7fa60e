#include "MonitorTvwComm.h"

#include <limits>
#include <stdexcept>

#include "PFFile.h"

namespace ORVA2_CLIENT_TVW {
namespace {

// Does not trust the stated size: it may be a directory's, or change before the read.
bool ReadOpenFile(CPFFile& file, std::vector<BYTE>& vecData)
{
    const int64_t nSize = file.GetSize();
    if (nSize < 0 || nSize > std::numeric_limits<uint32_t>::max()) {
        return false;
    }
    try {
        vecData.resize(static_cast<size_t>(nSize));
    } catch (const std::bad_alloc&) {
        return false;
    }
    const int64_t nRead = file.Read(vecData.data(), vecData.size());
    vecData.resize(nRead > 0 ? static_cast<size_t>(nRead) : 0);
    return nRead >= 0;
}

} // namespace

bool IsPodType(E_MTVW_TYPE type)
{
    switch (type) {
    case TVWALL_DATATYPE_MODIFY_BINDINFO:
    case TVWALL_DATATYPE_SAVE_WALLCONFIG:
    case TVWALL_DATATYPE_SAVE_WORKSTATION:
    case TVWALL_DATATYPE_SAVEAS_PLAN:
    case TVWALL_DATATYPE_PLAN_WNDLIVECONFIG:
    case TVWALL_DATATYPE_PLAN_WNDINCONFIG:
    case TVWALL_DATATYPE_PLAN_DELWNDCONFIG:
    case TVWALL_DATATYPE_ADD_GROUPDWELL:
    case TVWALL_DATATYPE_MODIFY_GROUPDWELL:
    case TVWALL_DATATYPE_MODIFY_ALARMLINKINFO:
    case TVWALL_DATATYPE_MODIFY_PLANDWELLINFO:
    case TVWALL_DATATYPE_PLAYBACK_CTRL:
    case TVWALL_DATATYPE_NOTIFY_DECODER_STATE:
    case TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_CHANGE:
    case TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_STATE:
    case TVWALL_DATATYPE_NOTIFY_DECODER_AUDIO_CFG:
    case TVWALL_DATATYPE_NOTIFY_CHANGE_WALL_BINDINFO:
        return false;
    default:
        return true;
    }
}

bool IsNeedNotifyFresh(const unsigned int& nType)
{
    if (nType >= 10 && nType <= 33) {
        return true;
    }
    switch (nType) {
    case TVWALL_DATATYPE_MODIFY_BINDINFO:
    case TVWALL_DATATYPE_SAVE_WALLCONFIG:
    case TVWALL_DATATYPE_SAVE_WORKSTATION:
    case TVWALL_DATATYPE_SAVEAS_PLAN:
    case 8:
    case TVWALL_DATATYPE_MODIFY_ALARMLINKINFO:
    case 37:
    case 38:
    case 41:
    case 45:
    case 46:
    case 47:
    case 49:
    case 50:
    case 51:
    case 54:
    case 55:
    case 56:
    case 62:
    case TVWALL_DATATYPE_PLAYBACK_CTRL:
    case TVWALL_DOCLEAR_WALL:
        return true;
    default:
        return false;
    }
}

bool ReadFile(const std::string& strPath, std::vector<BYTE>& vecData, uint32_t& nReadLen, uint32_t nMode)
{
    vecData.clear();
    CPFFile file;
    const bool bRead = !strPath.empty() && file.Open(strPath, nMode) && ReadOpenFile(file, vecData);
    nReadLen = static_cast<uint32_t>(vecData.size());
    return bRead;
}

bool WriteFile(const std::string& strPath, const BYTE* pData, uint32_t nLen, uint32_t nMode)
{
    CPFFile file;
    return !strPath.empty() && pData != nullptr && file.Open(strPath, nMode) && file.Write(pData, nLen);
}

} // namespace ORVA2_CLIENT_TVW
