#pragma once

#include <memory>
#include <string>

#include "ElemScope.h"
#include "MarkupSTL.h"

class CNetProtocolProcTWDECODERDevImp;

// One request to the decoder: takes a sequence number, writes the envelope, and lends the document to the
// handler for the rest. The document is the one that the session keeps for its requests, unless another
// request has it; the session outlives the request.
class CDeviceRequest {
public:
    // With an empty document, for callers that write the envelope themselves.
    explicit CDeviceRequest(CNetProtocolProcTWDECODERDevImp& session);
    CDeviceRequest(CNetProtocolProcTWDECODERDevImp& session, const std::string& url);
    // Without session and token, for use before there is a session id.
    explicit CDeviceRequest(const std::string& url);
    ~CDeviceRequest();
    CDeviceRequest(const CDeviceRequest&) = delete;
    CDeviceRequest& operator=(const CDeviceRequest&) = delete;

    unsigned int Seq() const { return m_nSeq; }
    const CMarkupSTL& Doc() const { return *m_pDoc; }
    CMarkupSTL& Doc() { return *m_pDoc; }

    // The document, positioned inside td_header; only before the first call of Body.
    CMarkupSTL& Header() { return *m_pDoc; }
    // The document, positioned inside td_body, which the first call adds.
    CMarkupSTL& Body();

private:
    CNetProtocolProcTWDECODERDevImp* m_pSession = nullptr; // gets the document back
    std::unique_ptr<CMarkupSTL> m_pDoc;
    unsigned int m_nSeq = 0;
    bool m_bHasBody = false;
};
