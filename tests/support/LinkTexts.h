#pragma once
// What goes over the link and into the plug-in, written down shortly.

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// --- the decoder's texts ---

std::string Frame(const std::string& payload);
// <td_command> with url, seq, errorcode, the header's tail and the body.
std::string ReplyText(const std::string& url, const std::string& seq, const std::string& errorcode = "0",
                      const std::string& headerTail = "", const std::string& body = "");
// The text between <name> and </name>, "" for <name/>, "?" when neither is there.
std::string Element(const std::string& xml, const std::string& name);

// --- the plug-in's requests ---

// An element text as it goes over the link, from one without line breaks.
std::string Lines(std::string text);

// The end of a request: what follows its header.
std::string BodyOf(const std::string& request);

// The same, from what stands between <td_body> and </td_body>.
std::string Body(const std::string& inner);

// The end of a request without a body.
inline const std::string kNoBody = "</td_command>\r\n";

// An element with a text, and one item of a list.
template <class Value>
std::string Elem(const std::string& name, const Value& value)
{
    std::string text;
    if constexpr (std::is_arithmetic_v<Value>) {
        text = std::to_string(value);
    } else {
        text = value;
    }
    return text.empty() ? "<" + name + "/>" : "<" + name + ">" + text + "</" + name + ">";
}
inline std::string Item(const std::string& inner) { return Elem("item", inner); }

// The body with a list of windows, and one window of it by its id and sub-windows.
inline std::string Windows(const std::string& items) { return Body(Elem("td_windowlist", items)); }
inline std::string WindowItem(long id, const std::string& subItems)
{
    return Item(Elem("id", id) + Elem("td_subwindowlist", subItems));
}

// What stands between the bars.
std::vector<std::string_view> Split(std::string_view texts);

// n times the same text.
std::string Repeat(const std::string& text, size_t n);

// --- the host's bytes ---

// A text field, filled up with zeros.
std::string Field(const std::string& text, size_t size);

// Little-endian bytes of numbers, and texts as they are.
class Bytes {
public:
    Bytes& U16(unsigned int n) { return Put(n, 2); }
    Bytes& U32(unsigned long n) { return Put(n, 4); }
    Bytes& Zeros(size_t n) { return Text(std::string(n, '\0')); }
    Bytes& Text(const std::string& text)
    {
        m_bytes += text;
        return *this;
    }
    operator std::string() const { return m_bytes; }

private:
    Bytes& Put(unsigned long n, int width)
    {
        for (int i = 0; i < width; ++i) {
            m_bytes += static_cast<char>(n >> (8 * i));
        }
        return *this;
    }
    std::string m_bytes;
};

// The two GUIDs in front of many records: those of wall and plan, or of wall and decoder.
inline Bytes Guids() { return Bytes().Text(std::string(16, 'W')).Text(std::string(16, 'P')); }

// The option envelope with its record.
std::string Option(unsigned int optType, const std::string& record);
std::string LoginPayload(const std::string& user, const std::string& password);

// The answer of success with its data, as FakeCommand tells it.
std::string ResultOf(unsigned int optType, const std::string& data);
