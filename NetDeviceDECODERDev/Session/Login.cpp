// Login and logout. The login is two exchanges: the first brings the decoder's keys and a session id, the
// second sends the enciphered account and brings the token.

#include <algorithm>
#include <cstring>

#include "AtomicAccess.h"
#include "Crypto/CredentialCipher.h"
#include "Crypto/tdcrypto.h"
#include "Encoding/FieldText.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "NetNode.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/SessionLog.h"
#include "TypeCheck.h"
#include "Wipe.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA_NET_PROTOCOL;

namespace {

constexpr int REQUEST_RSA_ENCRYPTION = 1;

// Every request carries both; decoders send a few dozen characters.
constexpr size_t MAX_SESSION_TEXT = size_t{64} << 10U;

// Replaces the session id or the token by the element's text, if the element exists. False for a text that is
// too long.
bool TakeSessionText(std::string& value, const CDeviceReply& reply, const char* szPath)
{
    const char* szText = reply.TextIfThere(szPath);
    if (szText == nullptr) {
        return true;
    }
    if (strnlen(szText, MAX_SESSION_TEXT + 1) > MAX_SESSION_TEXT) {
        return false;
    }
    value = szText;
    return true;
}

// The same for a key. A text too long for a key is kept only far enough to show that it is.
void TakeKey(std::string& value, const CDeviceReply& reply, const char* szPath)
{
    if (const char* szText = reply.TextIfThere(szPath)) {
        value.assign(szText, strnlen(szText, tdcrypto::MAX_KEY_TEXT + 1));
    }
}

// The name from the login record, enciphered, and the password's digest.
struct S_Account {
    std::string strName;
    std::string strAuthentication;
};

// Reads as much of the login record as there is, the rest as zeros. Wipes what the decoder must not see in
// the clear.
S_Account Encipher(const char* data, unsigned int len, const CCredentialCipher& cipher)
{
    TWiped<_kest_net_login_info> record;
    if (data != nullptr) {
        memcpy(&record.value, data, std::min<size_t>(len, sizeof(record.value)));
    }
    const std::string_view password = FieldView(record.value.password);
    TWiped<char[65]> digest; // 64 hexadecimal characters of SHA-256
    tdcrypto::Sha265_String(password.data(), static_cast<unsigned int>(password.size()), digest.value);
    return {cipher.Encrypt(FieldView(record.value.username)), cipher.Encrypt(digest.value)};
}

// The host's code for a refused login; 0 when the host gets no answer.
unsigned int HostCodeOfLoginError(unsigned int nDeviceCode)
{
    switch (nDeviceCode) {
    case 103:
        return KEST_RESULT_LOGIN_DEVICE_103;
    case 106:
        return KEST_RESULT_LOGIN_DEVICE_106;
    case 51:
        return KEST_RESULT_DEVICE_ERROR;
    case 105:
        return KEST_RESULT_LOGIN_DEVICE_105;
    default:
        return 0;
    }
}

} // namespace

void CNetProtocolProcTWDECODERDevImp::ProcDoOptionCmd(CCmdProcObject* cmd, char* data, unsigned int len)
{
    if (len != sizeof(_kest_net_login_info)) {
        session_log::Assert(549);
    }
    m_sendOptin = true;
    CDeviceRequest request(HTTP_CMDX_DOOPTION);
    request.Body().AddElem("encryption", REQUEST_RSA_ENCRYPTION);
    // A login that cannot be sent or gets no reply is not answered; the host has its own timeout.
    if (SendAndWait(request, E_SendCheck::WaitAnyway) != E_Exchange::Reply) {
        return;
    }
    const CDeviceReply& reply = Reply();
    if (!TakeSessionText(m_replyMessage.s_sessionId, reply, "td_command/td_header/session")) {
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
        return;
    }
    TakeKey(m_replyMessage.s_pubkey1, reply, "td_command/td_body/pubkey1");
    TakeKey(m_replyMessage.s_pubkey2, reply, "td_command/td_body/pubkey2");
    const unsigned int nErrorCode = reply.ErrorCode();
    CloseReply(); // makes room for the second request
    if (nErrorCode != 0) {
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
        return;
    }
    ProcLoginCmd(cmd, data, len);
}

void CNetProtocolProcTWDECODERDevImp::ProcLoginCmd(CCmdProcObject* cmd, char* data, unsigned int len)
{
    if (len != sizeof(_kest_net_login_info)) {
        session_log::Assert(594);
    }
    m_sendOptin = false;
    CDeviceRequest request(*this, HTTP_CMDX_LOGIN);
    const S_Account account = Encipher(data, len, Cipher(m_replyMessage.s_pubkey1));
    request.Header().AddElem("account", account.strName.c_str());
    request.Header().AddElem("authentication", account.strAuthentication.c_str());
    if (SendAndWait(request, E_SendCheck::WaitAnyway) != E_Exchange::Reply) {
        return;
    }
    const CDeviceReply& reply = Reply();
    const bool bToken = TakeSessionText(m_replyMessage.s_token, reply, "td_command/td_header/token");
    if (reply.ErrorCode() == 0 && !bToken) {
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
        return;
    }
    ReplyLogin(cmd, reply.ErrorCode());
}

void CNetProtocolProcTWDECODERDevImp::ReplyLogin(CCmdProcObject* cmd, unsigned int nErrorCode)
{
    if (nErrorCode != 0) {
        if (const unsigned int nHostCode = HostCodeOfLoginError(nErrorCode)) {
            DevToKSETFailReturn(cmd, nHostCode);
        }
        return;
    }
    _net_login_success_info answer{};
    if (const CNetNode* node = AtomicLoad(m_pCurNetNode)) {
        answer.remoteNodeID = node->GetNodeID();
    }
    answer.remoteNodeType = CTypeCheck::GetDECODERAbstractTypeValue();
    m_bSuccessLogin = true;
    ReplyBuffer(cmd, reinterpret_cast<const char*>(&answer), sizeof(answer));
}

// Leaves the login state as it is: the host ends the session by destroying the processor.
void CNetProtocolProcTWDECODERDevImp::ProcLoginOutCmd(CCmdProcObject* cmd, char* /*data*/,
                                                      unsigned int /*len*/)
{
    const CDeviceRequest request(*this, HTTP_CMDX_LOGOUT);
    if (!Exchange(cmd, request)) {
        return;
    }
    if (Reply().ErrorCode() != 0) {
        DevToKSETFailReturn(cmd, KEST_RESULT_DEVICE_ERROR);
        return;
    }
    ReplyBuffer(cmd, nullptr, 0);
}
