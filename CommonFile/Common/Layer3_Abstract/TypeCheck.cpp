#include "TypeCheck.h"

unsigned int CTypeCheck::GetDECODERAbstractTypeValue() { return NODE_TYPE_PERIPHERAL_ABSTRACT_DECODER; }

bool CTypeCheck::IsDecoder(CDecoderTypeCheck* pOut) const
{
    if (pOut != nullptr) {
        pOut->m_dwTypeValue = m_dwTypeValue;
    }
    // Both range markers are exclusive, as everywhere in the host.
    return m_dwTypeValue > NODE_TYPE_PERIPHERAL_DECODER_BEGIN &&
           m_dwTypeValue < NODE_TYPE_PERIPHERAL_DECODER_END;
}

bool CTypeCheck::IsDecoder_s(unsigned int dwTypeValue, CDecoderTypeCheck* pOut)
{
    return CTypeCheck(dwTypeValue).IsDecoder(pOut);
}
