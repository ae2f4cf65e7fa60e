// One request and its reply: framing, sending, waiting, opening the reply. Runs on the worker thread.

#include <cstring>

#include "AtomicAccess.h"
#include "Crypto/CredentialCipher.h"
#include "HostFunctions.h"
#include "Link/DeviceReply.h"
#include "NetNode.h"
#include "PFHelper.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/RunningCommand.h"
#include "Session/SessionLog.h"

namespace {

constexpr unsigned int REPLY_TIMEOUT_MS = 30000;
constexpr unsigned int POLL_INTERVAL_MS = 100;
constexpr unsigned int SEND_RETRY_INTERVAL_MS = 1;

} // namespace

unsigned int CNetProtocolProcTWDECODERDevImp::GetDevHeaderLength() { return sizeof(_tagNET_DATAHEAD); }

void CNetProtocolProcTWDECODERDevImp::FillKESTHeader(char* head, unsigned long len)
{
    _tagNET_DATAHEAD dataHead{{'1', '1', '1', '1'}, static_cast<uint32_t>(len - GetDevHeaderLength())};
    memcpy(head, &dataHead, sizeof(dataHead));
}

unsigned long CNetProtocolProcTWDECODERDevImp::KESTToDevXmltoBuf(const CMarkupSTL& doc, char*& buf,
                                                                 unsigned long& bufLen)
{
    const std::string& text = doc.GetDoc();
    const unsigned long nFrameLen = GetDevHeaderLength() + text.size();
    if (buf != nullptr) {
        ResizeBuffer(buf, bufLen, nFrameLen);
    } else {
        buf = new char[nFrameLen]();
    }
    FillKESTHeader(buf, nFrameLen);
    memcpy(buf + GetDevHeaderLength(), text.data(), text.size());
    // From the capacity to the frame's length: a later, longer frame reallocates the buffer. The receive
    // thread reads this length for notifications.
    AtomicStoreRelaxed(bufLen, nFrameLen);
    return nFrameLen;
}

long CNetProtocolProcTWDECODERDevImp::SendDataToDev(CNetNode* node, const void* data, unsigned long len)
{
    if (node == nullptr) {
        session_log::Assert(2015);
        return -1;
    }
    while (!node->SendData(data, len)) {
        if (GetLastError() != NET_SOCKET_ERROR_NOBUFS) {
            SHARESDK_AbnormalOutput("CNetProtocolProcTWDECODERImp：：SendDataToDev 发送失败 ",
                                    session_log::SOURCE, 2025);
            return -1;
        }
        // A full socket buffer is retried without limit, but Stop does not wait for a peer that never reads.
        if (AtomicLoad(m_RunFlag) == 0) {
            return -1;
        }
        CPFHelper::Sleep(SEND_RETRY_INTERVAL_MS);
    }
    return static_cast<long>(len);
}

bool CNetProtocolProcTWDECODERDevImp::WaitProc(unsigned int cmdID, unsigned int timeoutMs)
{
    for (unsigned int nPolls = 0; nPolls < timeoutMs / POLL_INTERVAL_MS; ++nPolls) {
        CPFHelper::Sleep(POLL_INTERVAL_MS);
        if (AtomicLoad(m_RunFlag) == 0) {
            return false;
        }
        const int nSeq = static_cast<int>(cmdID);
        if (AtomicLoad(m_recvCmdID) == nSeq || m_replyHandOver.HasReply(nSeq)) {
            return true;
        }
    }
    session_log::Normal(1940,
                        "CNetProtocolProcTWDECODERDevImp::WaitProc time out 等待设备回复命令超时 nCmdID=%d , "
                        "m_recvCmdID=%d",
                        static_cast<int>(cmdID), AtomicLoad(m_recvCmdID));
    return false;
}

CNetProtocolProcTWDECODERDevImp::E_Exchange
CNetProtocolProcTWDECODERDevImp::SendAndWait(const CDeviceRequest& request, E_SendCheck sendCheck)
{
    CloseReply();
    S_RunningCommand& running = Running();
    if (running.bGivenUp) {
        return E_Exchange::NoReply;
    }
    const unsigned long nFrameLen = KESTToDevXmltoBuf(request.Doc(), m_pTmpBuffer, m_TmpbufferLen);
    m_replyHandOver.Expect(static_cast<int>(request.Seq()));
    const bool bSent = SendDataToDev(AtomicLoad(m_pCurNetNode), m_pTmpBuffer, nFrameLen) >= 0;
    const bool bCame =
        (bSent || sendCheck == E_SendCheck::WaitAnyway) && WaitProc(request.Seq(), REPLY_TIMEOUT_MS);
    if (bCame) {
        running.pReply = m_replyHandOver.Take();
    }
    m_replyHandOver.ExpectNone();
    if (!bCame) {
        return E_Exchange::NoReply;
    }
    return AtomicLoad(m_IsReplySuccess) ? E_Exchange::Reply : E_Exchange::NotStored;
}

bool CNetProtocolProcTWDECODERDevImp::Exchange(CCmdProcObject* cmd, const CDeviceRequest& request)
{
    switch (SendAndWait(request, E_SendCheck::FailAtOnce)) {
    case E_Exchange::Reply:
        return true;
    case E_Exchange::NoReply:
        DevToKSETFailReturn(cmd, ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT);
        return false;
    case E_Exchange::NotStored:
        DevToKSETFailReturn(cmd, ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR);
        return false;
    }
    return false;
}

std::string_view CNetProtocolProcTWDECODERDevImp::ReplyText() const
{
    const auto& pReply = Running().pReply;
    return pReply ? std::string_view(pReply->strText) : std::string_view();
}

const CDeviceReply& CNetProtocolProcTWDECODERDevImp::Reply()
{
    S_RunningCommand& running = Running();
    if (!running.pOpenReply) {
        const size_t nBeside = running.pReply ? running.pReply->nBeside : 0;
        running.pOpenReply = m_pSpareReply ? std::move(m_pSpareReply) : std::make_unique<CDeviceReply>();
        running.pOpenReply->Open(ReplyText(), nBeside);
    }
    return *running.pOpenReply;
}

void CNetProtocolProcTWDECODERDevImp::CloseReply()
{
    S_RunningCommand& running = Running();
    if (running.pOpenReply && running.pOpenReply->Close()) {
        m_pSpareReply = std::move(running.pOpenReply);
    }
    running.pOpenReply.reset();
    running.pReply.reset();
}
