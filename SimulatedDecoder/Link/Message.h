#pragma once
// The XML messages of the link: `td_command` with `td_header` and `td_body`.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <tinyxml2.h>

#include "Link/ErrorCode.h"
#include "Tools/Common/Numbers.h"

namespace simulated_decoder {

// The text of a child element; empty when it has none or is missing. `parent` may be null.
std::string_view ChildText(const tinyxml2::XMLElement* parent, const char* name);

// Whether it has characters that neither XML text nor a terminal line should hold: below U+0020, and U+007F
// to U+009F.
bool HasControls(std::string_view text);
// Whether it is all printable ASCII.
bool IsPlain(std::string_view text);

template <typename Number>
std::optional<Number> ChildNumber(const tinyxml2::XMLElement* parent, const char* name)
{
    return tools::ParseDecimal<Number>(ChildText(parent, name));
}

// Adds a child element at the end, empty or with a text.
tinyxml2::XMLElement& AddChild(tinyxml2::XMLElement& parent, const char* name);
void AddChild(tinyxml2::XMLElement& parent, const char* name, std::string_view text);
template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
void AddChild(tinyxml2::XMLElement& parent, const char* name, Number value)
{
    AddChild(parent, name, std::string_view(std::to_string(value)));
}

// A request as received.
class Request {
public:
    // False when the text is not XML or beyond the limits of KeepsLimits, or its header lacks the version,
    // the type, a url or a number in `seq`. What could be read is kept, for the refusal to carry.
    bool Parse(std::string_view text);

    const std::string& Url() const { return m_url; }
    std::optional<std::uint32_t> Seq() const { return m_seq; }
    std::string_view Header(const char* name) const { return ChildText(m_header, name); }
    // Null when the request has no body.
    const tinyxml2::XMLElement* Body() const { return m_body; }

private:
    tinyxml2::XMLDocument m_document;
    const tinyxml2::XMLElement* m_header = nullptr;
    const tinyxml2::XMLElement* m_body = nullptr;
    std::string m_url;
    std::optional<std::uint32_t> m_seq;
};

// A message of the decoder under construction: a reply or a notification.
class Message {
public:
    // Hosts look for `seq` after `url`, so the elements come in this order; one that is not given is omitted.
    Message(const char* type, const std::string& url, std::optional<std::uint32_t> seq);

    void SetErrorCode(ErrorCode code);
    // After the elements that every message has.
    void AddHeader(const char* name, std::string_view text) { AddChild(*m_header, name, text); }
    tinyxml2::XMLElement& Body() { return *m_body; }

    std::string Text() const;

private:
    tinyxml2::XMLDocument m_document;
    tinyxml2::XMLElement* m_header;
    tinyxml2::XMLElement* m_body;
    tinyxml2::XMLElement* m_errorCode = nullptr;
};

} // namespace simulated_decoder
