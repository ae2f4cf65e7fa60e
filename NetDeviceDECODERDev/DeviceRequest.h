#pragma once

#include <string>

#include "ElemScope.h"
#include "MarkupSTL.h"

class CNetProtocolProcTWDECODERDevImp;

// One request to the decoder: takes a sequence number, writes the envelope, and lends the document to the
// handler for the rest.
class CDeviceRequest {
public:
    // With an empty document, for those who write the envelope themselves.
    CDeviceRequest();
    CDeviceRequest(const CNetProtocolProcTWDECODERDevImp& session, const std::string& url);
    // Without session and token: before there is a session id.
    explicit CDeviceRequest(const std::string& url);

    unsigned int Seq() const { return m_nSeq; }
    const CMarkupSTL& Doc() const { return m_doc; }
    CMarkupSTL& Doc() { return m_doc; }

    // The document with the position inside td_header, before the first call of Body.
    CMarkupSTL& Header() { return m_doc; }
    // The document with the position inside td_body, which the first call adds.
    CMarkupSTL& Body();

private:
    CMarkupSTL m_doc;
    unsigned int m_nSeq;
    bool m_bHasBody = false;
};
