#pragma once
// The host's side of the TV-wall protocol: command ids, option types and the fixed records that travel with
// them. All integers are little-endian; a record's in-memory form is its wire form.

#include <cstddef>
#include <cstdint>

#include "HostTypes.h"

namespace ORVA_NET_PROTOCOL {

// Host command ids.
enum _net_protocol_cmd_def_ : uint32_t {
    KEST_CMD_REQUEST_LOGIN = 0x101,
    KEST_CMD_TVWALL_DECODE_GET_CONFIG = 0x50000,
    KEST_CMD_TVWALL_DECODE_SAVE_CONFIG = 0x50001,
    KEST_CMD_TVWALL_DECODE_OPTION = 0x50002,
    KEST_CMD_TVWALL_DECODE_UPDATE = 0x50003, // plug-in to host: notifications
    KEST_CMD_TVWALL_DECODE_SET_WALL_LAYOUT = 0x50005,
    KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT = 0x50006,
    KEST_CMD_TVWALL_DECODE_DO_BIND_WALL = 0x50007,
    KEST_CMD_TVWALL_DECODE_DO_UNBIND_WALL = 0x50008,
};

// Codes in _kest_net_reply::dwResult.
enum _kest_net_result_ : uint32_t {
    KEST_RESULT_DEVICE_ERROR = 0x20000002,     // the decoder reported an error or gave no usable reply
    KEST_RESULT_TIMEOUT = 0x2000000F,          // no reply in time
    KEST_RESULT_NOT_READY = 0x20000013,        // stopped, or not logged in
    KEST_RESULT_LOGIN_DEVICE_103 = 0x20000024, // the decoder refused the login with its code 103
    KEST_RESULT_LOGIN_DEVICE_106 = 0x2000005C, // ... 106
    KEST_RESULT_LOGIN_DEVICE_105 = 0x2000009E, // ... 105
};

// Head of the payload of the three option commands; the option record follows at byte 8.
struct _kest_tvwall_opt_info {
    uint32_t nOptType = 0; // a value of ORVA2_DECODER_TVW::E_DECODE_OPT_TYPE
    uint32_t nLen = 0;     // bytes of the option record, as stated by the sender
};
using TVWALL_OPT_INFO = _kest_tvwall_opt_info;
static_assert(sizeof(_kest_tvwall_opt_info) == 8);
static_assert(offsetof(_kest_tvwall_opt_info, nLen) == 4);

// Failure answer.
struct _kest_net_reply {
    uint32_t dwResult = 0; // a value of _kest_net_result_
    GUID nodeID{};
    uint16_t wDescriptionLen = 0;
    char szDescription[246] = {};
};
static_assert(sizeof(_kest_net_reply) == 268);
static_assert(offsetof(_kest_net_reply, nodeID) == 4);
static_assert(offsetof(_kest_net_reply, wDescriptionLen) == 20);
static_assert(offsetof(_kest_net_reply, szDescription) == 22);

#pragma pack(push, 1)

// Payload of KEST_CMD_REQUEST_LOGIN. Packed: merow4GdeviceHandle lies at 668, off its natural alignment.
struct _kest_net_login_info {
    uint32_t nodeType = 0;
    GUID nodeID{};
    GUID destNodeID{};
    char username[64] = {}; // zero-terminated unless all 64 bytes are used
    char password[64] = {}; // as for username
    char IP[24] = {};
    char szMAC[306] = {};
    uint8_t typeBySpecialVersionControl = 0;
    char szServerVersion[16] = {};
    char sz4GMerowSn[32] = {};
    char szDecrInfo[28] = {};
    uint8_t szIsOtherType = 0;
    char byRtspUrl[96] = {};
    uint64_t merow4GdeviceHandle = 0;
    uint8_t byReserve1[24] = {};
    uint8_t byTestLogin = 0;
    uint8_t szPlatformType = 0;
    uint8_t szEncrypt = 0;
    uint8_t isNeedCheckTime = 0;
    uint32_t softwarePackID = 0;
    uint32_t customerID = 0;
    uint32_t clientNonce = 0;
    uint32_t reserve[7] = {};
};
static_assert(sizeof(_kest_net_login_info) == 744);
static_assert(offsetof(_kest_net_login_info, nodeID) == 4);
static_assert(offsetof(_kest_net_login_info, destNodeID) == 20);
static_assert(offsetof(_kest_net_login_info, username) == 36);
static_assert(offsetof(_kest_net_login_info, password) == 100);
static_assert(offsetof(_kest_net_login_info, IP) == 164);
static_assert(offsetof(_kest_net_login_info, szMAC) == 188);
static_assert(offsetof(_kest_net_login_info, typeBySpecialVersionControl) == 494);
static_assert(offsetof(_kest_net_login_info, szServerVersion) == 495);
static_assert(offsetof(_kest_net_login_info, sz4GMerowSn) == 511);
static_assert(offsetof(_kest_net_login_info, szDecrInfo) == 543);
static_assert(offsetof(_kest_net_login_info, szIsOtherType) == 571);
static_assert(offsetof(_kest_net_login_info, byRtspUrl) == 572);
static_assert(offsetof(_kest_net_login_info, merow4GdeviceHandle) == 668);
static_assert(offsetof(_kest_net_login_info, byReserve1) == 676);
static_assert(offsetof(_kest_net_login_info, byTestLogin) == 700);
static_assert(offsetof(_kest_net_login_info, szPlatformType) == 701);
static_assert(offsetof(_kest_net_login_info, szEncrypt) == 702);
static_assert(offsetof(_kest_net_login_info, isNeedCheckTime) == 703);
static_assert(offsetof(_kest_net_login_info, softwarePackID) == 704);
static_assert(offsetof(_kest_net_login_info, customerID) == 708);
static_assert(offsetof(_kest_net_login_info, clientNonce) == 712);
static_assert(offsetof(_kest_net_login_info, reserve) == 716);

// Answer to a successful login. The plug-in fills remoteNodeID and remoteNodeType; the rest is zero.
struct _net_login_success_info {
    GUID remoteNodeID{};
    uint32_t remoteNodeType = 0;
    char strRemoteNodeName[7] = {};
    char szOrvaVersion[16] = {};
    uint8_t typePlateform = 0;
    uint8_t IsEnableIndustryThermalEx = 0;
    uint8_t typeBySpecialVersionControl = 0;
    uint8_t IsEnableUploadLicense = 0;
    uint8_t StandardClientUseThermalImage = 0;
    uint8_t clientDigest[20] = {};
    uint8_t transportEncryptKey[16] = {};
    GUID nodeID{};
    GUID guidPCSerial{};
    uint8_t sysRSUSerial[16] = {};
};
static_assert(sizeof(_net_login_success_info) == 132);
static_assert(offsetof(_net_login_success_info, remoteNodeType) == 16);
static_assert(offsetof(_net_login_success_info, strRemoteNodeName) == 20);
static_assert(offsetof(_net_login_success_info, szOrvaVersion) == 27);
static_assert(offsetof(_net_login_success_info, typePlateform) == 43);
static_assert(offsetof(_net_login_success_info, IsEnableIndustryThermalEx) == 44);
static_assert(offsetof(_net_login_success_info, typeBySpecialVersionControl) == 45);
static_assert(offsetof(_net_login_success_info, IsEnableUploadLicense) == 46);
static_assert(offsetof(_net_login_success_info, StandardClientUseThermalImage) == 47);
static_assert(offsetof(_net_login_success_info, clientDigest) == 48);
static_assert(offsetof(_net_login_success_info, transportEncryptKey) == 68);
static_assert(offsetof(_net_login_success_info, nodeID) == 84);
static_assert(offsetof(_net_login_success_info, guidPCSerial) == 100);
static_assert(offsetof(_net_login_success_info, sysRSUSerial) == 116);

#pragma pack(pop)

} // namespace ORVA_NET_PROTOCOL

namespace ORVA2_DECODER_TVW {

// Option types, grouped by the command that carries them.
enum E_DECODE_OPT_TYPE : uint32_t {
    // KEST_CMD_TVWALL_DECODE_GET_CONFIG
    TVWALL_DECODE_GET_BASICCFG = 0x50002,
    TVWALL_DECODE_GET_SYSINFO = 0x5000A,
    TVWALL_DECODE_GET_CHANNEL_GROUP = 0x6000D,
    TVWALL_DECODE_GET_WINDOW_CONFIG = 0x60013,
    TVWALL_DECODE_GET_AUDIO_CONFIG = 0x60016,
    // KEST_CMD_TVWALL_DECODE_SAVE_CONFIG
    TVWALL_DECODE_SET_DECODERFRAME = 0x5000E,
    TVWALL_DECODE_DRAWBODER = 0x60003,
    TVWALL_DECODE_SET_CHANNEL_GROUP = 0x6000C,
    TVWALL_DECODE_SET_WALL_INFO = 0x60010,
    TVWALL_DECODE_CLEAR_WALL = 0x60011,
    TVWALL_DECODE_SET_WINDOW_CONFIG = 0x60012,
    // KEST_CMD_TVWALL_DECODE_OPTION
    TVWALL_DECODE_LOGOUT = 0x50000,
    TVWALL_DECODE_ZOOMOUT = 0x50014,
    TVWALL_DECODE_PLAYBACK_CTRL = 0x5001D,
    TVWALL_DECODE_DO_PLAY_MEDIA = 0x60004,
    TVWALL_DECODE_DO_STOP_PLAY_MEDIA = 0x60005,
    TVWALL_DECODE_CREATE_CANVAS = 0x60006,
    TVWALL_DECODE_DEL_CANVAS = 0x60007,
    TVWALL_DECODE_MODIFY_CANVAS = 0x60008,
    TVWALL_DECODE_TOP_CANVAS = 0x60009,
    TVWALL_DECODE_ADD_CHANNEL_GROUP = 0x6000A,
    TVWALL_DECODE_DELETE_CHANNEL_GROUP = 0x6000B,
    TVWALL_DECODE_START_CHLGROUP_POLLING = 0x6000E,
    TVWALL_DECODE_STOP_CHLGROUP_POLLING = 0x6000F,
    TVWALL_DECODE_PLAY_AUDIO = 0x60014,
    TVWALL_DECODE_STOP_AUDIO = 0x60015,
    // KEST_CMD_TVWALL_DECODE_UPDATE, plug-in to host
    TVWALL_DECODE_NOTIFY_IORES = 0x60000,
    TVWALL_DECODE_NOTIFY_IORES_STATUS = 0x60001,
};

// Outcome of an option command, the record inside the default result buffer.
struct S_Decoder_Opt_Result {
    uint32_t _nResult = 0;    // always 0, success
    uint32_t _nErrorCode = 0; // the decoder's error code, so always 0: any other ends in _kest_net_reply
};
static_assert(sizeof(S_Decoder_Opt_Result) == 8);
static_assert(offsetof(S_Decoder_Opt_Result, _nErrorCode) == 4);

// The first 16 bytes of a successful option answer; extra data follows.
struct S_Decoder_Default_Result {
    uint32_t nOptType = 0;   // the option type being answered
    uint16_t wResultLen = 0; // bytes of the result record
    uint16_t wExtraLen = 0;  // bytes of extra data, modulo 2^16
    S_Decoder_Opt_Result result{};
};
static_assert(sizeof(S_Decoder_Default_Result) == 16);
static_assert(offsetof(S_Decoder_Default_Result, wResultLen) == 4);
static_assert(offsetof(S_Decoder_Default_Result, wExtraLen) == 6);
static_assert(offsetof(S_Decoder_Default_Result, result) == 8);

} // namespace ORVA2_DECODER_TVW
