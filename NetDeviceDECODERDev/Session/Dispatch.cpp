// From a host command to its handler. Runs on the worker thread.

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "AtomicAccess.h"
#include "CmdProcObject.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/RunningCommand.h"
#include "Session/SessionLog.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

struct CNetProtocolProcTWDECODERDevImp::S_CommandRow {
    unsigned int nCmdID;
    CommandHandler pHandler;
};

struct CNetProtocolProcTWDECODERDevImp::S_OptionRow {
    unsigned int nCmdID;
    unsigned int nOptType;
    CommandHandler pHandler;
};

#define TVWALL_COMMAND_ROW(id, handler) {id, &CNetProtocolProcTWDECODERDevImp::handler},
#define TVWALL_OPTION_ROW(id, type, handler) {id, type, &CNetProtocolProcTWDECODERDevImp::handler},
const CNetProtocolProcTWDECODERDevImp::S_CommandRow CNetProtocolProcTWDECODERDevImp::COMMAND_TABLE[] = {
    TVWALL_COMMANDS(TVWALL_COMMAND_ROW)};
const CNetProtocolProcTWDECODERDevImp::S_OptionRow CNetProtocolProcTWDECODERDevImp::OPTION_TABLE[] = {
    TVWALL_OPTIONS(TVWALL_OPTION_ROW)};
#undef TVWALL_OPTION_ROW
#undef TVWALL_COMMAND_ROW

// Makes a command the running one, and restores the outer one in the end.
class CNetProtocolProcTWDECODERDevImp::CRunningScope {
public:
    CRunningScope(CNetProtocolProcTWDECODERDevImp& session, CCmdProcObject* cmd, S_RunningCommand* pOuter)
        : m_session(session), m_command{cmd, pOuter}
    {
        AtomicStore(m_session.m_pRunning, &m_command);
        if (pOuter == nullptr) {
            m_session.m_replyHandOver.Open();
        }
    }
    ~CRunningScope()
    {
        m_session.CloseReply();
        if (m_command.pOuter == nullptr) {
            m_session.m_replyHandOver.Close();
        }
        AtomicStore(m_session.m_pRunning, m_command.pOuter);
    }
    CRunningScope(const CRunningScope&) = delete;
    CRunningScope& operator=(const CRunningScope&) = delete;

private:
    CNetProtocolProcTWDECODERDevImp& m_session;
    S_RunningCommand m_command;
};

void CNetProtocolProcTWDECODERDevImp::ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf,
                                                     unsigned int len)
{
    // The outermost command keeps the event unsignalled, so that Stop waits for all of them.
    S_RunningCommand* const pOuter = AtomicLoad(m_pRunning);
    std::optional<CMySingleEvent> running;
    if (pOuter == nullptr) {
        running.emplace(m_ExportEvent);
    }
    AtomicStore(m_recvCmdID, -1);
    if (m_ExportFlag == 0) {
        // Stop drains the queue on its own thread while the worker may still take a command, so this must
        // touch no more of the session.
        SendFailure(cmd, KEST_RESULT_NOT_READY);
        return;
    }
    const CRunningScope scope(*this, cmd, pOuter);
    AtomicStore(m_recvCmdID, -1); // once more: a number seen from here on has its message in the hand-over
    try {
        RunCommand(cmd, reinterpret_cast<char*>(buf), len);
    } catch (const std::exception&) { // out of memory, or an oversized reply; the answer needs no memory
        m_replyHandOver.ExpectNone();
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
    }
}

void CNetProtocolProcTWDECODERDevImp::RunCommand(CCmdProcObject* cmd, char* data, unsigned int len)
{
    const unsigned int nCmdID = cmd->GetRequestCommand();
    session_log::Normal(166, "**************a=%d\n", nCmdID);
    if (!m_bSuccessLogin && nCmdID != KEST_CMD_REQUEST_LOGIN) {
        DevToKSETFailReturn(cmd, KEST_RESULT_NOT_READY);
        return;
    }
    for (const S_CommandRow& row : COMMAND_TABLE) {
        if (row.nCmdID == nCmdID) {
            (this->*row.pHandler)(cmd, data, len);
            return;
        }
    }
}

void CNetProtocolProcTWDECODERDevImp::GetDecoderConfig(CCmdProcObject* cmd, char* data, unsigned int len)
{
    RunOption(cmd, data, len, E_OptionLog::Logged);
}

void CNetProtocolProcTWDECODERDevImp::SaveDecoderConfig(CCmdProcObject* cmd, char* data, unsigned int len)
{
    RunOption(cmd, data, len, E_OptionLog::Logged);
}

void CNetProtocolProcTWDECODERDevImp::DecoderOption(CCmdProcObject* cmd, char* data, unsigned int len)
{
    RunOption(cmd, data, len, E_OptionLog::Quiet);
}

void CNetProtocolProcTWDECODERDevImp::RunOption(CCmdProcObject* cmd, char* data, unsigned int len,
                                                E_OptionLog log)
{
    TVWALL_OPT_INFO option;
    if (data == nullptr || len < sizeof(option)) {
        return;
    }
    memcpy(&option, data, sizeof(option));
    // The stated length is not trusted; the handler gets the bytes that are there.
    const unsigned int nLen = std::min(option.nLen, len - static_cast<unsigned int>(sizeof(option)));
    if (log == E_OptionLog::Logged) {
        session_log::Normal(session_log::NO_LINE, "**************pOptType.opt:%d******************",
                            option.nOptType);
    }
    for (const S_OptionRow& row : OPTION_TABLE) {
        if (row.nCmdID == cmd->GetRequestCommand() && row.nOptType == option.nOptType) {
            (this->*row.pHandler)(cmd, data + sizeof(option), nLen);
            return;
        }
    }
}
