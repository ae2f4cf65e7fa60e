// The session's receive path: everything here runs on the host's receive thread; NotifyHost also on the
// worker.

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "AtomicAccess.h"
#include "CmdProcParam.h"
#include "HostFunctions.h"
#include "Link/CmdXmlFormat.h"
#include "Link/MessageHead.h"
#include "NetNode.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/SessionLog.h"

namespace {

CReplyHandOver::E_Kind KindOf(const std::string& url)
{
    using namespace DECODE_XML_CMD_HEADER;
    const bool bNotification =
        url == HTTP_CMDX_NOTIFY_CHANNEL_CHANGE || url == HTTP_CMDX_NOTIFY_CHANNEL_STATE;
    return bNotification ? CReplyHandOver::E_Kind::Notification : CReplyHandOver::E_Kind::Reply;
}

} // namespace

unsigned int CNetProtocolProcTWDECODERDevImp::OnSocketRecvData(int /*nSocket*/, const char* data,
                                                               unsigned int len, unsigned int* needLen,
                                                               void* /*context*/)
{
    if (m_ImportFlag == 0) {
        return 0;
    }
    if (needLen != nullptr) {
        *needLen = 0;
    }
    CNetNode* node = AtomicLoad(m_pCurNetNode);
    if (node != nullptr && node->IsDropRecvData()) {
        return 0;
    }
    CMySingleEvent receiving(m_ImportEvent);
    // Stop may have checked the event between the first check of the flag and here; nothing may be parsed
    // once Stop has returned.
    if (m_ImportFlag == 0) {
        return 0;
    }
    unsigned int consumed = 0;
    bool bFollowed = false;
    try {
        bFollowed = m_NetPacketProc.RecvProc(data, len, consumed, needLen);
    } catch (const std::exception&) { // no memory to keep the bytes
    }
    if (!bFollowed && node != nullptr) {
        node->Disconnect();
    }
    return consumed;
}

unsigned int CNetProtocolProcTWDECODERDevImp::PacketProcCallback(tagNET_PACKETTYPE type, const char* data,
                                                                 unsigned long len, void* context)
{
    auto* session = static_cast<CNetProtocolProcTWDECODERDevImp*>(context);
    if (session == nullptr) {
        return 0;
    }
    switch (type) {
    case NET_PACKETTYPE_DATA:
        session->m_keepBeat.SetValue(0);
        try {
            session->ProcOneNetPack(data, len);
        } catch (const std::exception&) { // no memory for this message: drop it, the session goes on
        }
        break;
    case NET_PACKETTYPE_BEAT:
        session->m_keepBeat.SetValue(0);
        break;
    case NET_PACKETTYPE_DEVICE_HEAD:
        break;
    default:
        session_log::Assert(226);
    }
    return 0;
}

void CNetProtocolProcTWDECODERDevImp::ProcOneNetPack(const char* data, unsigned long len)
{
    if (data == nullptr) {
        session_log::Assert(235);
        len = 0;
    }
    if (AtomicLoad(m_pCurNetNode) == nullptr) {
        session_log::Assert(236);
    }
    if (len == MEM_POOL_HANDLE_LEN) {
        len = MEM_POOL_GetLen(data);
        data = MEM_POOL_GetData(data);
    }
    std::string url;
    {
        CReplyHandOver::CReceiveScope scope(m_replyHandOver);
        if (!GetXmlUrlFromDevData(data, len, url)) {
            return;
        }
        if (IsSupportFunc(url)) {
            AtomicStore(m_IsReplySuccess, true);
        }
        StoreReply(data, len);
    }
    // The host is told the length of the last request, not of this message; it takes the message's length
    // from the parameter's data.
    if (url == DECODE_XML_CMD_HEADER::HTTP_CMDX_NOTIFY_CHANNEL_CHANGE) {
        NotifyHost(ORVA2_DECODER_TVW::TVWALL_DECODE_NOTIFY_IORES, m_pBufferReply, len,
                   AtomicLoadRelaxed(m_TmpbufferLen));
    } else if (url == DECODE_XML_CMD_HEADER::HTTP_CMDX_NOTIFY_CHANNEL_STATE) {
        NotifyHost(ORVA2_DECODER_TVW::TVWALL_DECODE_NOTIFY_IORES_STATUS, m_pBufferReply, len,
                   AtomicLoadRelaxed(m_TmpbufferLen));
    }
}

bool CNetProtocolProcTWDECODERDevImp::GetXmlUrlFromDevData(const char* data, unsigned long len,
                                                           std::string& url)
{
    if (len == 0) {
        return false;
    }
    SMessageHead head = ReadMessageHead({data, len});
    if (head.url) {
        url = std::move(*head.url);
    }
    if (head.seq) {
        // Read wider than the field, so that numbers above 0x7FFFFFFF match the request's as 32 bits.
        const int nSeq = static_cast<int>(strtoll(head.seq->c_str(), nullptr, 10));
        // The copy comes first: if there is no memory for it, the number must not become visible either.
        m_replyHandOver.Prepare(nSeq, KindOf(url), {data, len});
        AtomicStore(m_recvCmdID, nSeq);
    }
    return true;
}

bool CNetProtocolProcTWDECODERDevImp::IsSupportFunc(const std::string& url)
{
    return DECODE_XML_CMD_HEADER::IsKnownUrl(url);
}

void CNetProtocolProcTWDECODERDevImp::ResizeBuffer(char*& buf, unsigned long& capacity, unsigned long need)
{
    if (need <= capacity) {
        return;
    }
    delete[] buf;
    buf = new (std::nothrow) char[need]();
    AtomicStoreRelaxed(capacity, buf != nullptr ? need : 0);
    if (buf == nullptr) {
        throw std::bad_alloc();
    }
}

void CNetProtocolProcTWDECODERDevImp::StoreReply(const char* data, unsigned long len)
{
    AtomicStore(m_BufReplayValidLen, 0);
    AtomicStore(m_BufValidLenReply, 0);
    ResizeBuffer(m_pBufferReply, m_BufMaxLen, len);
    memset(m_pBufferReply, 0, len);
    memcpy(m_pBufferReply, data, len);
    AtomicStore(m_BufReplayValidLen, len);
    AtomicStore(m_BufValidLenReply, len);
}

void CNetProtocolProcTWDECODERDevImp::NotifyHost(unsigned int nOptType, const char* data,
                                                 unsigned long nDataLen, unsigned long nLen)
{
    CNetNode* node = AtomicLoad(m_pCurNetNode);
    if (node == nullptr) {
        return;
    }
    CCmdProcParamMTvwall param(nullptr, data, nDataLen);
    param.m_DataTvwallInfo.nOptType = nOptType;
    param.m_DataTvwallInfo.nLen = static_cast<uint32_t>(nLen);
    param.m_destNodeID = NET_COMM_GetCurrentAppNodeID();
    node->DeliverCommand(ORVA_NET_PROTOCOL::KEST_CMD_TVWALL_DECODE_UPDATE, &param);
}
