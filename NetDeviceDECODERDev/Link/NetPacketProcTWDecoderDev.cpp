#include "Link/NetPacketProcTWDecoderDev.h"

#include <cstring>

#include "HostFunctions.h"

namespace {

constexpr char DATA_HEAD_MARK[4] = {'1', '1', '1', '1'};
constexpr unsigned int DATA_HEAD_LEN = sizeof(_tagNET_DATAHEAD);
constexpr unsigned int DEVICE_HEAD_LEN = 64;

constexpr char BEAT_DATA[DATA_HEAD_LEN] = {'1', '1', '1', '1', 0, 0, 0, 0};

void ReportAssert(int nLine) { SHARESDK_AbnormalOutput("ASSERT", "NetPacketProcTWDecoderDev", nLine); }

// Reports missing data or a zero length; missing data gets length 0.
unsigned long CheckedLen(const char* data, unsigned long len, int nNullLine, int nZeroLine)
{
    if (data == nullptr) {
        ReportAssert(nNullLine);
    }
    if (len == 0) {
        ReportAssert(nZeroLine);
    }
    return data == nullptr ? 0 : len;
}

void ClearSlot(NET_COMBINED_INFO& slot)
{
    if (slot.buffer != nullptr) {
        MEM_POOL_Delete(slot.buffer);
    }
    slot = NET_COMBINED_INFO();
}

} // namespace

CNetPacketProcTWDECODERDev::CNetPacketProcTWDECODERDev() = default;

CNetPacketProcTWDECODERDev::~CNetPacketProcTWDECODERDev()
{
    ClearSlot(m_recvLiveCombinedInfo);
    ClearSlot(m_recvPlayCombinedInfo);
    m_combinedInfoMap.clear();
}

bool CNetPacketProcTWDECODERDev::Initial(NetPacketRoutine routine, void* param)
{
    m_pNetPacketRoutine = routine;
    m_pNetPacketRoutineParam = param;
    return true;
}

void CNetPacketProcTWDECODERDev::Destroy() {}

const char* CNetPacketProcTWDECODERDev::GetBeatData(unsigned long& len)
{
    len = sizeof(BEAT_DATA);
    return BEAT_DATA;
}

bool CNetPacketProcTWDECODERDev::IsValidDataHead(const char* head)
{
    return memcmp(head, DATA_HEAD_MARK, sizeof(DATA_HEAD_MARK)) == 0;
}

bool CNetPacketProcTWDECODERDev::IsDeviceHead(const char* /*head*/) { return true; }

unsigned int CNetPacketProcTWDECODERDev::GetDeviceHeadLen() { return DEVICE_HEAD_LEN; }

void CNetPacketProcTWDECODERDev::Deliver(tagNET_PACKETTYPE type, const char* data, unsigned long len)
{
    if (m_pNetPacketRoutine != nullptr) {
        m_pNetPacketRoutine(type, data, len, m_pNetPacketRoutineParam);
    }
}

bool CNetPacketProcTWDECODERDev::RecvProc(const char* data, unsigned long len, unsigned int& consumed,
                                          unsigned int* needLen)
{
    if (needLen != nullptr) {
        ParseInPlace(data, CheckedLen(data, len, 135, 136), consumed, *needLen);
        return true;
    }
    consumed = static_cast<unsigned int>(len);
    return ParseHeld(data, CheckedLen(data, len, 52, 53));
}

void CNetPacketProcTWDECODERDev::ParseInPlace(const char* data, unsigned long len, unsigned int& consumed,
                                              unsigned int& needLen)
{
    unsigned long p = 0;
    unsigned long nFrameLen = DATA_HEAD_LEN; // of the first incomplete frame
    while (len - p >= DATA_HEAD_LEN) {
        const char* frame = data + p;
        _tagNET_DATAHEAD head;
        memcpy(&head, frame, sizeof(head));
        const bool bDataHead = IsValidDataHead(frame);
        nFrameLen =
            bDataHead ? DATA_HEAD_LEN + static_cast<unsigned long>(head.data_len) : GetDeviceHeadLen();
        if (len - p < nFrameLen) {
            break;
        }
        if (!bDataHead) {
            Deliver(NET_PACKETTYPE_DEVICE_HEAD, frame, nFrameLen);
        } else if (head.data_len == 0) {
            Deliver(NET_PACKETTYPE_BEAT, frame, nFrameLen);
        } else {
            Deliver(NET_PACKETTYPE_DATA, frame + DATA_HEAD_LEN, head.data_len);
        }
        p += nFrameLen;
        nFrameLen = DATA_HEAD_LEN;
    }
    consumed = static_cast<unsigned int>(p);
    needLen = p == len ? 0 : static_cast<unsigned int>(nFrameLen - (len - p));
}

bool CNetPacketProcTWDECODERDev::ParseHeld(const char* data, unsigned long len)
{
    if (len != 0 && !m_NetPacket.SaveBuffer(data, len)) {
        return false;
    }
    while (TakeHeldFrame()) {
    }
    return true;
}

bool CNetPacketProcTWDECODERDev::TakeHeldFrame()
{
    const char* head = reinterpret_cast<const char*>(&m_TmpDataHead);
    if (!m_NetPacket.GetPacketHead(reinterpret_cast<char*>(&m_TmpDataHead), DATA_HEAD_LEN)) {
        return false;
    }
    if (!IsValidDataHead(head)) {
        char deviceHead[DEVICE_HEAD_LEN];
        if (!m_NetPacket.GetPacketHead(deviceHead, DEVICE_HEAD_LEN)) {
            return false;
        }
        Deliver(NET_PACKETTYPE_DEVICE_HEAD, deviceHead, DEVICE_HEAD_LEN);
        m_NetPacket.TruncateFront(DEVICE_HEAD_LEN);
        return true;
    }
    if (m_TmpDataHead.data_len == 0) {
        Deliver(NET_PACKETTYPE_BEAT, head, DATA_HEAD_LEN);
        m_NetPacket.TruncateFront(DATA_HEAD_LEN);
        return true;
    }
    if (!m_NetPacket.HaveData(DATA_HEAD_LEN + static_cast<unsigned long>(m_TmpDataHead.data_len))) {
        return false;
    }
    TakeHeldPayload(m_TmpDataHead.data_len);
    return true;
}

void CNetPacketProcTWDECODERDev::TakeHeldPayload(unsigned int nPayloadLen)
{
    m_NetPacket.TruncateFront(DATA_HEAD_LEN);
    // If memory runs out, the message is dropped and the stream continues after it.
    if (char* hPayload = m_NetPacket.GetPacket(nPayloadLen)) {
        Deliver(NET_PACKETTYPE_DATA, hPayload, MEM_POOL_HANDLE_LEN);
        m_NetPacket.ReleasePack(hPayload);
    }
    m_NetPacket.TruncateFront(nPayloadLen);
}

bool CNetPacketProcTWDECODERDev::CombineDataProc(const swl_combined_data& info, const char* data,
                                                 unsigned long len)
{
    return AppendFragment(info, data, CheckedLen(data, len, 230, 231));
}

bool CNetPacketProcTWDECODERDev::CombineDataProcMemPool(const swl_combined_data& info, const char* poolBuffer)
{
    const char* data = poolBuffer != nullptr ? MEM_POOL_GetData(poolBuffer) : nullptr;
    const unsigned long len = poolBuffer != nullptr ? MEM_POOL_GetLen(poolBuffer) : 0;
    return AppendFragment(info, data, CheckedLen(data, len, 230, 231));
}

NET_COMBINED_INFO* CNetPacketProcTWDECODERDev::ChooseSlot(uint32_t dwDataType)
{
    switch (dwDataType) {
    case 0:
        return &m_recvLiveCombinedInfo;
    case 1:
        return &m_recvPlayCombinedInfo;
    default:
        return nullptr;
    }
}

bool CNetPacketProcTWDECODERDev::AppendFragment(const swl_combined_data& info, const char* data,
                                                unsigned long len)
{
    NET_COMBINED_INFO* slot = ChooseSlot(info.dwDataType);
    if (slot == nullptr) {
        ReportAssert(239);
        return false;
    }
    if (info.dwIndex == 1) {
        ClearSlot(*slot);
        slot->buffer = MEM_POOL_New(data, len);
        if (slot->buffer == nullptr) {
            return false;
        }
        slot->dwDataID = info.dwDataID;
        slot->dwTotalLen = info.dwTotalLen;
        slot->dwTotalPack = info.dwTotalPack;
    } else {
        // An empty slot is never continued, even by a header whose fields are zero like its own.
        if (slot->buffer == nullptr || slot->dwDataID != info.dwDataID ||
            slot->dwTotalLen != info.dwTotalLen || slot->dwTotalPack != info.dwTotalPack) {
            ReportAssert(265);
            return false;
        }
        if (!MEM_POOL_Append(slot->buffer, data, len)) {
            return false;
        }
    }
    if (info.dwIndex == info.dwTotalPack && m_pNetPacketRoutine != nullptr) {
        Deliver(NET_PACKETTYPE_DATA, slot->buffer, MEM_POOL_HANDLE_LEN);
        ClearSlot(*slot);
    }
    return true;
}
