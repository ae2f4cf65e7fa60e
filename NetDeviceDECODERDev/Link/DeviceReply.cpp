#include "Link/DeviceReply.h"

CDeviceReply::CDeviceReply(std::string_view text) : m_xml(text.data(), text.size()) {}

unsigned int CDeviceReply::ErrorCode() const
{
    return m_xml.IsParsed() ? m_xml.GetValueDWORD("td_command/td_header/errorcode") : UNREADABLE;
}

void CDeviceReply::ReadIfThere(const char* szPath, std::string& value) const
{
    if (const CVTXMLParse::Item item = m_xml.GetFirstItem(szPath)) {
        value = m_xml.GetValueStr(item);
    }
}
