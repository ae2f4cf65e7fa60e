#pragma once
// Parameters that travel with a host command when the plug-in is the one that sends it
// (CNetNode::DeliverCommand).

#include "HostTypes.h"
#include "TvwallProtocol.h"

// Borrows its data: the bytes must outlive the object.
class CCmdProcParam {
public:
    CCmdProcParam(CCmdProcParam* pParent, const char* pData, unsigned long nLen)
        : m_pParent(pParent), m_pData(pData), m_nDataLen(nLen)
    {
    }
    virtual ~CCmdProcParam() = default;
    CCmdProcParam(const CCmdProcParam&) = delete;
    CCmdProcParam& operator=(const CCmdProcParam&) = delete;

    CCmdProcParam* GetParent() const { return m_pParent; }
    const char* GetData() const { return m_pData; }
    unsigned long GetDataLen() const { return m_nDataLen; }

private:
    CCmdProcParam* m_pParent;
    const char* m_pData;
    unsigned long m_nDataLen;
};

// A notification of the decoder, which comes unasked: there is nothing to subscribe to. Its data is the
// decoder's XML text, not zero-terminated; the host takes their length from GetDataLen, since
// m_DataTvwallInfo.nLen of an unsolicited message is another number. It has no parent.
class CCmdProcParamMTvwall : public CCmdProcParam {
public:
    CCmdProcParamMTvwall(CCmdProcParam* pParent, const char* pData, unsigned long nLen)
        : CCmdProcParam(pParent, pData, nLen)
    {
    }

    ORVA_NET_PROTOCOL::TVWALL_OPT_INFO m_DataTvwallInfo{}; // nOptType: a TVWALL_DECODE_NOTIFY_*
    GUID m_destNodeID{};                                   // what NET_COMM_GetCurrentAppNodeID returned
};
