#pragma once
// The frames of the device link: splitting received bytes into frames, and the heartbeat.

#include <cstdint>
#include <map>

#include "NetPacketNew.h"
#include "ThreadLock.h"

// Head of a data frame, and the whole of a heartbeat. Little-endian.
struct _tagNET_DATAHEAD {
    char debug_head[4]; // "1111"
    uint32_t data_len;  // payload bytes that follow; 0 in a heartbeat
};
static_assert(sizeof(_tagNET_DATAHEAD) == 8);

// Head of one fragment of a larger message.
struct swl_combined_data {
    uint32_t dwDataID;    // identity of the message, the same in all its fragments
    uint32_t dwTotalPack; // number of fragments
    uint32_t dwTotalLen;  // length of the whole message
    uint32_t dwIndex;     // 1-based index of this fragment
    uint32_t dwLen;       // length of this fragment
    uint32_t dwDataType;  // 0 live, 1 playback
};
static_assert(sizeof(swl_combined_data) == 24);

struct NETHEAD_AND_COMBINEDINFO {
    _tagNET_DATAHEAD head;
    swl_combined_data combined;
};
static_assert(sizeof(NETHEAD_AND_COMBINEDINFO) == 32);

// A message in reassembly; empty when all fields are zero.
struct NET_COMBINED_INFO {
    uint32_t dwDataID;
    uint32_t dwTotalPack;
    uint32_t dwTotalLen;
    uint32_t offset;
    char* buffer; // memory-pool handle; one reference is held here
};

enum tagNET_PACKETTYPE {
    NET_PACKETTYPE_BEAT = 0,        // a heartbeat, 8 bytes
    NET_PACKETTYPE_DATA = 1,        // a payload
    NET_PACKETTYPE_DEVICE_HEAD = 2, // a device head, 64 bytes
};

// Receives every complete frame. When len is MEM_POOL_HANDLE_LEN, data is a memory-pool handle that the
// callee reads but does not free. The result is ignored.
using NetPacketRoutine = unsigned int (*)(tagNET_PACKETTYPE type, const char* data, unsigned long len,
                                          void* param);

// One connection's parser. Called by one receive thread at a time; takes no lock itself.
class CNetPacketProcTWDECODERDev {
public:
    CNetPacketProcTWDECODERDev();
    ~CNetPacketProcTWDECODERDev();
    CNetPacketProcTWDECODERDev(const CNetPacketProcTWDECODERDev&) = delete;
    CNetPacketProcTWDECODERDev& operator=(const CNetPacketProcTWDECODERDev&) = delete;

    bool Initial(NetPacketRoutine routine, void* param);
    void Destroy();

    // The heartbeat frame, a static array; len receives its size, 8.
    static const char* GetBeatData(unsigned long& len);
    // head points to at least 4 bytes.
    static bool IsValidDataHead(const char* head);
    // Anything but a data head is taken for a device head.
    static bool IsDeviceHead(const char* head);
    static unsigned int GetDeviceHeadLen();

    // Parses len received bytes. With a non-null needLen it works in the caller's buffer: consumed receives
    // the bytes of all complete frames, *needLen the least number that the next frame still needs. With a
    // null needLen it keeps all bytes (data may then be a pool handle, len MEM_POOL_HANDLE_LEN) and sets
    // consumed to len. An announced length costs no memory until its bytes arrive. False when there is no
    // memory to keep the bytes, so that the stream cannot be followed any further.
    bool RecvProc(const char* data, unsigned long len, unsigned int& consumed, unsigned int* needLen);

    // Reassembly of fragments, which must come in order 1, 2, ... dwTotalPack for each data type. False when
    // a fragment is refused; the message in reassembly stays as it was.
    bool CombineDataProc(const swl_combined_data& info, const char* data, unsigned long len);
    bool CombineDataProcMemPool(const swl_combined_data& info, const char* poolBuffer);

private:
    void ParseInPlace(const char* data, unsigned long len, unsigned int& consumed, unsigned int& needLen);
    bool ParseHeld(const char* data, unsigned long len);
    // Takes one complete frame out of the held bytes; false when there is none yet.
    bool TakeHeldFrame();
    void TakeHeldPayload(unsigned int nPayloadLen);
    bool AppendFragment(const swl_combined_data& info, const char* data, unsigned long len);
    NET_COMBINED_INFO* ChooseSlot(uint32_t dwDataType);
    void Deliver(tagNET_PACKETTYPE type, const char* data, unsigned long len);

    NET_COMBINED_INFO m_recvLiveCombinedInfo{};
    NET_COMBINED_INFO m_recvPlayCombinedInfo{};
    CLock m_ComboDataMapLock;
    NetPacketRoutine m_pNetPacketRoutine = nullptr;
    void* m_pNetPacketRoutineParam = nullptr;
    CNetPacketNew m_NetPacket; // bytes held between calls when the host keeps none
    std::map<uint32_t, NET_COMBINED_INFO*> m_combinedInfoMap TVWALL_GUARDED_BY(m_ComboDataMapLock);
    [[maybe_unused]] NETHEAD_AND_COMBINEDINFO m_NetHeadAndCombinedInfo{};
    _tagNET_DATAHEAD m_TmpDataHead{};
};
