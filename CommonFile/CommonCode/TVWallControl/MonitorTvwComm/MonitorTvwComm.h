#pragma once
// All records of the wall model as the client side sees it, and what belongs to no family.

#include <cstddef>
#include <string>
#include <vector>

#include "HostTypes.h"
#include "MonitorTvwCommAudio.h"
#include "MonitorTvwCommCanvas.h"
#include "MonitorTvwCommChannelGroup.h"
#include "MonitorTvwCommDeviceInfo.h"
#include "MonitorTvwCommDisplay.h"
#include "MonitorTvwCommLayout.h"
#include "MonitorTvwCommMedia.h"
#include "MonitorTvwCommWallInfo.h"

namespace ORVA2_CLIENT_TVW {

// Host data types of wall commands; the host has others without a name here.
enum E_MTVW_TYPE : uint32_t {
    TVWALL_DATATYPE_MODIFY_BINDINFO = 1,
    TVWALL_DATATYPE_SAVE_WALLCONFIG = 4,
    TVWALL_DATATYPE_SAVE_WORKSTATION = 6,
    TVWALL_DATATYPE_SAVEAS_PLAN = 7,
    TVWALL_DATATYPE_PLAN_WNDLIVECONFIG = 13,
    TVWALL_DATATYPE_PLAN_WNDINCONFIG = 15,
    TVWALL_DATATYPE_PLAN_DELWNDCONFIG = 16,
    TVWALL_DATATYPE_ADD_GROUPDWELL = 24,
    TVWALL_DATATYPE_MODIFY_GROUPDWELL = 26,
    TVWALL_DATATYPE_MODIFY_ALARMLINKINFO = 36,
    TVWALL_DATATYPE_MODIFY_PLANDWELLINFO = 40,
    TVWALL_DATATYPE_PLAYBACK_CTRL = 64,
    TVWALL_DATATYPE_NOTIFY_DECODER_STATE = 1024,
    TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_CHANGE = 1025,
    TVWALL_DATATYPE_NOTIFY_DECODER_IO_RES_STATE = 1026,
    TVWALL_DATATYPE_NOTIFY_DECODER_AUDIO_CFG = 1027,
    TVWALL_DATATYPE_NOTIFY_CHANGE_WALL_BINDINFO = 1282,
    TVWALL_DOCLEAR_WALL = 1309,
};

// False when records of this type have variable parts and go through SetData; true when they are copied as
// they are.
bool IsPodType(E_MTVW_TYPE type);
// True when a refresh notification follows a command of this data type.
bool IsNeedNotifyFresh(const unsigned int& nType);

// Reads a whole file; nMode takes the flags of open(2). False, with nothing in the vector, for an empty path,
// a file that cannot be opened or read (a directory) or does not fit. A file shorter than its stated size
// yields what was read; nReadLen is the size of the vector.
bool ReadFile(const std::string& strPath, std::vector<BYTE>& vecData, uint32_t& nReadLen, uint32_t nMode);
// Writes nLen bytes; nMode takes the flags of open(2). False for an empty path, a null buffer, or a file that
// cannot be opened or does not take all bytes.
bool WriteFile(const std::string& strPath, const BYTE* pData, uint32_t nLen, uint32_t nMode);

// A node of the host by identifier, name and address: an image that travels whole. No command to this decoder
// carries one.
struct S_GuidUntStr {
    GUID _guid{};
    union {
        tuint32 _nState = 0;
    };
    char _sName[256] = {};
    tuint16 _szIp[32] = {}; // in 16-bit units
};
static_assert(sizeof(S_GuidUntStr) == 340);
static_assert(offsetof(S_GuidUntStr, _nState) == 16);
static_assert(offsetof(S_GuidUntStr, _sName) == 20);
static_assert(offsetof(S_GuidUntStr, _szIp) == 276);

} // namespace ORVA2_CLIENT_TVW
