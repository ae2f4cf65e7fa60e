// Every answer to the host leaves here: one for each command, none for a command that wants none. Runs on the
// worker thread; refusals of queued commands also on the thread that stops the session.

#include <cstring>
#include <utility>

#include "AtomicAccess.h"
#include "CmdProcObject.h"
#include "Link/DeviceReply.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/RunningCommand.h"
#include "Wipe.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

bool CNetProtocolProcTWDECODERDevImp::TakeAnswer(const CCmdProcObject* cmd)
{
    S_RunningCommand* pRunning = AtomicLoad(m_pRunning);
    while (pRunning != nullptr && pRunning->pCommand != cmd) {
        pRunning = pRunning->pOuter;
    }
    return pRunning == nullptr || !std::exchange(pRunning->bAnswered, true);
}

void CNetProtocolProcTWDECODERDevImp::SendFailure(CCmdProcObject* cmd, unsigned int code)
{
    if (!cmd->HasReply()) {
        return;
    }
    _kest_net_reply reply{};
    reply.dwResult = code;
    cmd->ReplyRecord(reply);
}

void CNetProtocolProcTWDECODERDevImp::DevToKSETFailReturn(CCmdProcObject* cmd, const unsigned int& code)
{
    if (TakeAnswer(cmd)) {
        SendFailure(cmd, code);
    }
}

void CNetProtocolProcTWDECODERDevImp::ReplyBuffer(CCmdProcObject* cmd, const char* data, unsigned long len)
{
    if (TakeAnswer(cmd) && cmd->HasReply()) {
        cmd->ReplyBuffer(data, len);
    }
}

unsigned long CNetProtocolProcTWDECODERDevImp::DevToKESTDefaultResultBuf(const int& optType,
                                                                         const int& errorCode, char*& buf,
                                                                         unsigned long& bufLen,
                                                                         const char* extra,
                                                                         const unsigned long& extraLen)
{
    S_Decoder_Default_Result head{};
    head.nOptType = static_cast<uint32_t>(optType);
    head.wResultLen = sizeof(head.result);
    head.wExtraLen = static_cast<uint16_t>(extraLen);
    head.result._nResult = errorCode == 0 ? 0 : 1;
    head.result._nErrorCode = static_cast<uint32_t>(errorCode);

    const unsigned long nAnswerLen = sizeof(head) + extraLen;
    ResizeBuffer(buf, bufLen, nAnswerLen);
    memcpy(buf, &head, sizeof(head));
    if (extraLen != 0) {
        memcpy(buf + sizeof(head), extra, extraLen);
    }
    bufLen = nAnswerLen;
    return nAnswerLen;
}

void CNetProtocolProcTWDECODERDevImp::ReplyResult(CCmdProcObject* cmd, char* extra, unsigned int extraLen,
                                                  unsigned int optType)
{
    const unsigned int nErrorCode = Reply().ErrorCode();
    if (nErrorCode != 0) {
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
        return;
    }
    // Large enough from the start, so that no copy is left behind: the bytes may repeat passwords.
    unsigned long nCapacity = sizeof(S_Decoder_Default_Result) + extraLen;
    const auto answer = MakeWipedBytes<char>(nCapacity);
    char* buf = answer.get();
    const unsigned long nLen = DevToKESTDefaultResultBuf(
        static_cast<int>(optType), static_cast<int>(nErrorCode), buf, nCapacity, extra, extraLen);
    ReplyBuffer(cmd, buf, nLen);
}
