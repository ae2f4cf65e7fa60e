// What surrounds the body of every request: number, header, session and token, and the document that holds
// it. Runs on the worker thread, except for the numbers.

#include "Session/Envelope.h"

#include <atomic>

#include "AtomicAccess.h"
#include "Crypto/CredentialCipher.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/RunningCommand.h"

namespace {

constexpr unsigned int FIRST_CMD_ID = 256;
constexpr unsigned int LAST_CMD_ID = 0xFFFFFFFD;

std::atomic<unsigned int> g_nCmdID{FIRST_CMD_ID}; // shared by all sessions of the process

} // namespace

unsigned int CNetProtocolProcTWDECODERDevImp::GetCmdID()
{
    unsigned int nLast = g_nCmdID.load(std::memory_order_relaxed);
    while (!g_nCmdID.compare_exchange_weak(nLast, CmdIDAfter(nLast), std::memory_order_relaxed)) {
    }
    return CmdIDAfter(nLast);
}

unsigned int CNetProtocolProcTWDECODERDevImp::CmdIDAfter(unsigned int nCmdID)
{
    return nCmdID < LAST_CMD_ID ? nCmdID + 1 : FIRST_CMD_ID;
}

void CNetProtocolProcTWDECODERDevImp::AddRequestXmfHeader(CMarkupSTL& doc)
{
    doc.AddElem("td_command");
    doc.IntoElem();
    doc.AddElem("td_header");
}

void CNetProtocolProcTWDECODERDevImp::AddSessionlessXmlStr(CMarkupSTL& doc, const std::string& url,
                                                           unsigned int seq)
{
    constexpr int IDENTITY_PLUGIN = 3; // what the decoder takes the sender for
    doc.IntoElem();
    doc.AddElem("version", "2.2");
    doc.AddElem("type", "request");
    doc.AddElem("url", url.c_str());
    doc.AddElem("seq", seq);
    doc.AddElem("identity", IDENTITY_PLUGIN);
}

// The url is passed by value, as callers that link this by name expect.
void CNetProtocolProcTWDECODERDevImp::AddCommomXmlStr(
    // cppcheck-suppress passedByValue
    CMarkupSTL& doc, std::string url, // NOLINT(performance-unnecessary-value-param)
    unsigned int seq) const
{
    AddSessionlessXmlStr(doc, url, seq);
    doc.AddElem("session", m_replyMessage.s_sessionId.c_str());
    doc.AddElem("token", m_replyMessage.s_token.c_str());
}

std::unique_ptr<CMarkupSTL> CNetProtocolProcTWDECODERDevImp::TakeDocument()
{
    if (!m_pSpareDocument) {
        return std::make_unique<CMarkupSTL>();
    }
    auto pDoc = std::move(m_pSpareDocument);
    pDoc->Clear();
    return pDoc;
}

void CNetProtocolProcTWDECODERDevImp::KeepDocument(std::unique_ptr<CMarkupSTL> pDoc)
{
    constexpr size_t KEPT_FROM = size_t{128} << 10; // from here on the allocator maps each block
    constexpr size_t KEPT_UP_TO = size_t{2} << 20;
    const size_t nMemory = pDoc->GetMemory();
    if (nMemory >= KEPT_FROM && nMemory <= KEPT_UP_TO) {
        m_pSpareDocument = std::move(pDoc);
    }
}

CCredentialCipher CNetProtocolProcTWDECODERDevImp::Cipher(const std::string& pubKeyPem) const
{
    return {pubKeyPem, m_RunFlag, Running().bGivenUp};
}

CDeviceRequest::CDeviceRequest(CNetProtocolProcTWDECODERDevImp& session)
    : m_pSession(&session),
      m_pDoc(session.TakeDocument()),
      m_nSeq(CNetProtocolProcTWDECODERDevImp::GetCmdID())
{
}

CDeviceRequest::CDeviceRequest(CNetProtocolProcTWDECODERDevImp& session, const std::string& url)
    : m_pSession(&session), m_pDoc(session.TakeDocument())
{
    CNetProtocolProcTWDECODERDevImp::AddRequestXmfHeader(*m_pDoc);
    m_nSeq = CNetProtocolProcTWDECODERDevImp::GetCmdID();
    session.AddCommomXmlStr(*m_pDoc, url, m_nSeq);
}

CDeviceRequest::CDeviceRequest(const std::string& url) : m_pDoc(std::make_unique<CMarkupSTL>())
{
    CNetProtocolProcTWDECODERDevImp::AddRequestXmfHeader(*m_pDoc);
    m_nSeq = CNetProtocolProcTWDECODERDevImp::GetCmdID();
    CNetProtocolProcTWDECODERDevImp::AddSessionlessXmlStr(*m_pDoc, url, m_nSeq);
}

CDeviceRequest::~CDeviceRequest()
{
    if (m_pSession != nullptr) {
        m_pSession->KeepDocument(std::move(m_pDoc));
    }
}

CMarkupSTL& CDeviceRequest::Body()
{
    if (!m_bHasBody) {
        m_bHasBody = true;
        m_pDoc->OutOfElem();
        m_pDoc->AddElem("td_body");
        m_pDoc->IntoElem();
    }
    return *m_pDoc;
}
