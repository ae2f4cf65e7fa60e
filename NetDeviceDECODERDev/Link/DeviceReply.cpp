#include "Link/DeviceReply.h"

void CDeviceReply::Open(std::string_view text, size_t nBeside)
{
    m_xml.Parse(text.data(), text.size(), nBeside);
}

unsigned int CDeviceReply::ErrorCode() const
{
    return m_xml.IsParsed() ? m_xml.GetValueDWORD("td_command/td_header/errorcode") : UNREADABLE;
}

const char* CDeviceReply::TextIfThere(const char* szPath) const
{
    const CVTXMLParse::Item item = m_xml.GetFirstItem(szPath);
    return item == nullptr ? nullptr : m_xml.GetText(item);
}
