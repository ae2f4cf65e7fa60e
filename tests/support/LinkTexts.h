#pragma once
// What goes over the link and into the plug-in, written down shortly.

#include <cstddef>
#include <string>

// --- the decoder's texts ---

std::string Frame(const std::string& payload);
// <td_command> with url, seq, errorcode, the header's tail and the body.
std::string ReplyText(const std::string& url, const std::string& seq, const std::string& errorcode = "0",
                      const std::string& headerTail = "", const std::string& body = "");
// The text between <name> and </name>, "" for <name/>, "?" when neither is there.
std::string Element(const std::string& xml, const std::string& name);

// n times the same text.
std::string Repeat(const std::string& text, size_t n);

// --- the host's bytes ---

// A text field, filled up with zeros.
std::string Field(const std::string& text, size_t nSize);

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
    Bytes& Put(unsigned long n, int nBytes)
    {
        for (int i = 0; i < nBytes; ++i) {
            m_bytes += static_cast<char>(n >> (8 * i));
        }
        return *this;
    }
    std::string m_bytes;
};

// The option envelope with its record.
std::string Option(unsigned int nOptType, const std::string& record);
std::string LoginPayload(const std::string& user, const std::string& password);
