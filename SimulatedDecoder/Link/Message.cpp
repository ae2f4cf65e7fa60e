#include "Link/Message.h"

#include <algorithm>
#include <utility>

#include "Link/RequestLimits.h"

namespace simulated_decoder {

namespace {

constexpr std::string_view kVersion = "2.2";

} // namespace

std::string_view ChildText(const tinyxml2::XMLElement* parent, const char* name)
{
    const tinyxml2::XMLElement* child = parent != nullptr ? parent->FirstChildElement(name) : nullptr;
    const char* text = child != nullptr ? child->GetText() : nullptr;
    return text != nullptr ? std::string_view(text) : std::string_view();
}

tinyxml2::XMLElement& AddChild(tinyxml2::XMLElement& parent, const char* name)
{
    return *parent.InsertNewChildElement(name);
}

void AddChild(tinyxml2::XMLElement& parent, const char* name, std::string_view text)
{
    AddChild(parent, name).SetText(std::string(text).c_str());
}

bool HasControls(std::string_view text)
{
    unsigned char before = 0;
    return std::any_of(text.begin(), text.end(), [&](unsigned char byte) {
        const bool isSecondOfTwo = std::exchange(before, byte) == 0xC2;
        return byte < ' ' || byte == 0x7F || (isSecondOfTwo && byte >= 0x80 && byte < 0xA0);
    });
}

bool IsPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

bool Request::Parse(std::string_view text)
{
    // The parser takes a zero byte for the end of the text; on this link no text holds one.
    if (text.find('\0') != std::string_view::npos || !KeepsLimits(text) ||
        m_document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
        return false;
    }
    const tinyxml2::XMLElement* root = m_document.FirstChildElement("td_command");
    if (root == nullptr) {
        return false;
    }
    m_header = root->FirstChildElement("td_header");
    m_body = root->FirstChildElement("td_body");
    m_url = Header("url");
    m_seq = tools::ParseDecimal<std::uint32_t>(Header("seq"));
    return Header("version") == kVersion && Header("type") == "request" && !m_url.empty() &&
           m_seq.has_value();
}

Message::Message(const char* type, const std::string& url, std::optional<std::uint32_t> seq)
{
    m_document.InsertEndChild(m_document.NewDeclaration());
    auto& root = *m_document.InsertEndChild(m_document.NewElement("td_command"))->ToElement();
    m_header = &AddChild(root, "td_header");
    m_body = &AddChild(root, "td_body");
    AddHeader("version", kVersion);
    AddHeader("type", type);
    if (!url.empty()) {
        AddHeader("url", url);
    }
    if (seq) {
        AddHeader("seq", std::to_string(*seq));
    }
}

void Message::SetErrorCode(ErrorCode code)
{
    if (m_errorCode == nullptr) {
        m_errorCode = &AddChild(*m_header, "errorcode");
    }
    m_errorCode->SetText(static_cast<std::uint32_t>(code));
}

std::string Message::Text() const
{
    tinyxml2::XMLPrinter printer(nullptr, true);
    m_document.Print(&printer);
    return printer.CStr();
}

} // namespace simulated_decoder
