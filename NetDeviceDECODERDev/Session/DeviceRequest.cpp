#include "Session/DeviceRequest.h"

#include "Session/NetProtocolProcTWDECODERDevImp.h"

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
