#include "DeviceRequest.h"

#include "NetProtocolProcTWDECODERDevImp.h"

CDeviceRequest::CDeviceRequest() : m_nSeq(CNetProtocolProcTWDECODERDevImp::GetCmdID()) {}

CDeviceRequest::CDeviceRequest(const CNetProtocolProcTWDECODERDevImp& session, const std::string& url)
{
    CNetProtocolProcTWDECODERDevImp::AddRequestXmfHeader(m_doc);
    m_nSeq = CNetProtocolProcTWDECODERDevImp::GetCmdID();
    session.AddCommomXmlStr(m_doc, url, m_nSeq);
}

CDeviceRequest::CDeviceRequest(const std::string& url)
{
    CNetProtocolProcTWDECODERDevImp::AddRequestXmfHeader(m_doc);
    m_nSeq = CNetProtocolProcTWDECODERDevImp::GetCmdID();
    CNetProtocolProcTWDECODERDevImp::AddSessionlessXmlStr(m_doc, url, m_nSeq);
}

CMarkupSTL& CDeviceRequest::Body()
{
    if (!m_bHasBody) {
        m_bHasBody = true;
        m_doc.OutOfElem();
        m_doc.AddElem("td_body");
        m_doc.IntoElem();
    }
    return m_doc;
}
