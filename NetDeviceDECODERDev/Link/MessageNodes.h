#pragma once
// Splits the bytes of a message into the nodes that CMarkupSTL sees in them, looking at each byte once.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "MarkupSTLIndex.h"

// How the scan reads a message. Tests substitute a reader that counts.
class CMessageText {
public:
    explicit CMessageText(std::string_view text) : m_text(text) {}

    size_t Size() const { return m_text.size(); }
    char At(size_t n) const { return m_text[n]; }
    // The offset of the first such character from nFrom on; nEnd when there is none before it.
    size_t Find(char c, size_t nFrom, size_t nEnd) const
    {
        const size_t nFound = m_text.substr(0, nEnd).find(c, nFrom);
        return nFound == std::string_view::npos ? nEnd : nFound;
    }

private:
    std::string_view m_text;
};

// A polynomial over the name's bytes modulo 2^61 - 1, at a point that a peer does not know: two names of n
// bytes, even if chosen by the peer, have the same hash with a probability of n in 2^61.
class CNameHash {
public:
    explicit CNameHash(uint64_t nKey) : m_nKey(nKey % PRIME) {}

    void Add(unsigned char c)
    {
        __extension__ typedef unsigned __int128 Product;
        const Product product = static_cast<Product>(m_nHash) * m_nKey + c + 1U;
        const uint64_t n = static_cast<uint64_t>(product & PRIME) + static_cast<uint64_t>(product >> 61U);
        m_nHash = n >= PRIME ? n - PRIME : n;
    }
    uint64_t Value() const { return m_nHash; }

private:
    static constexpr uint64_t PRIME = (uint64_t{1} << 61U) - 1;

    uint64_t m_nKey;
    uint64_t m_nHash = 0;
};

inline bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool EndsXmlName(char c)
{
    return IsXmlSpace(c) || c == '<' || c == '>' || c == '=' || c == '\\' || c == '/' || c == '?' || c == '!';
}

enum class E_MessageNode { Text, CData, StartTag, EmptyTag, EndTag, Other, End };

// A name in the message.
struct SMessageName {
    size_t nStart = 0;
    size_t nLen = 0;
    uint64_t nHash = 0;
};

// Iterates over the nodes in the bytes [nBegin, nEnd). What is not a node is Other: it ends where the
// document resumes after an error.
template <class Text>
class CMessageNodes {
public:
    CMessageNodes(Text& text, size_t nBegin, size_t nEnd, uint64_t nKey)
        : m_text(text), m_nKey(nKey), m_nEnd(nEnd), m_nAt(nBegin), m_nSeen(nBegin)
    {
    }

    // Takes the next node.
    E_MessageNode Next()
    {
        m_nStart = m_nAt;
        if (m_nAt == m_nEnd) {
            return E_MessageNode::End;
        }
        if (!m_bMark) {
            m_nSeen = m_text.Find('<', m_nSeen, m_nEnd);
            m_bMark = m_nSeen != m_nEnd;
        }
        if (m_nSeen != m_nAt) {
            m_nAt = m_nSeen;
            return E_MessageNode::Text;
        }
        m_bMark = false;
        return TakeMarkup();
    }

    // The last node's first byte, the byte after it, and a tag's name.
    size_t Start() const { return m_nStart; }
    size_t After() const { return m_nAt; }
    const SMessageName& Name() const { return m_name; }

private:
    static constexpr int NONE = -1; // no character: at the end
    static bool IsQuote(int c) { return c == '"' || c == '\''; }
    bool IsSpace() const { return m_c != NONE && IsXmlSpace(static_cast<char>(m_c)); }

    void Advance()
    {
        ++m_nSeen;
        m_c = m_nSeen < m_nEnd ? static_cast<unsigned char>(m_text.At(m_nSeen)) : NONE;
    }
    // Moves past the next such character.
    void SkipPast(int c)
    {
        m_nSeen = m_text.Find(static_cast<char>(c), m_nSeen + 1, m_nEnd);
        m_c = NONE;
        if (m_nSeen != m_nEnd) {
            Advance();
        }
    }
    // On failure, the characters that matched have been skipped.
    bool SkipText(std::string_view text)
    {
        for (const char c : text) {
            if (m_c != c) {
                return false;
            }
            Advance();
        }
        return true;
    }

    // The node ends with the current character.
    E_MessageNode Close(E_MessageNode node)
    {
        m_nAt = ++m_nSeen;
        return node;
    }
    // An error: the next node begins at nAt. What was seen from there on holds no '<', except perhaps the
    // current character.
    E_MessageNode ResumeAt(size_t nAt)
    {
        m_nAt = nAt;
        m_bMark = m_c == '<';
        if (m_c != NONE && !m_bMark) {
            ++m_nSeen;
        }
        return E_MessageNode::Other;
    }
    E_MessageNode Unterminated()
    {
        m_nAt = m_nEnd;
        return E_MessageNode::Other;
    }

    E_MessageNode TakeMarkup()
    {
        Advance();
        switch (m_c) {
        case '/':
            return TakeEndTag();
        case '?':
            Advance();
            return TakeSection('?', 1, E_MessageNode::Other);
        case '!':
            return TakeMarked();
        default:
            return TakeStartTag();
        }
    }

    E_MessageNode TakeMarked()
    {
        Advance();
        if (m_c == '-') {
            return SkipText("--") ? TakeSection('-', 2, E_MessageNode::Other) : ResumeAt(m_nStart + 2);
        }
        if (m_c == '[') {
            return SkipText("[CDATA[") ? TakeSection(']', 2, E_MessageNode::CData) : ResumeAt(m_nStart + 2);
        }
        return SkipText("DOCTYPE") ? TakeDoctype() : ResumeAt(m_nStart + 2);
    }

    // Up to a '>' that follows nMarks marks or more.
    E_MessageNode TakeSection(char cMark, size_t nMarks, E_MessageNode node)
    {
        for (size_t n = 0; m_c != NONE; Advance()) {
            if (m_c == '>' && n >= nMarks) {
                return Close(node);
            }
            n = m_c == cMark ? n + 1 : 0;
        }
        return Unterminated();
    }

    E_MessageNode TakeDoctype()
    {
        while (m_c != NONE && m_c != '>') {
            if (IsQuote(m_c)) {
                SkipPast(m_c);
            } else if (m_c == '[') {
                SkipPast(']');
            } else {
                Advance();
            }
        }
        return m_c == NONE ? Unterminated() : Close(E_MessageNode::Other);
    }

    void TakeName()
    {
        CNameHash hash(m_nKey);
        m_name.nStart = m_nSeen;
        for (; m_c != NONE && !EndsXmlName(static_cast<char>(m_c)); Advance()) {
            hash.Add(static_cast<unsigned char>(m_c));
        }
        m_name.nLen = m_nSeen - m_name.nStart;
        m_name.nHash = hash.Value();
    }

    E_MessageNode TakeEndTag()
    {
        Advance();
        TakeName();
        while (m_name.nLen != 0 && IsSpace()) {
            Advance();
        }
        if (m_name.nLen == 0 || m_c != '>') {
            return ResumeAt(m_nSeen);
        }
        Close(E_MessageNode::EndTag);
        return ElemPos::FitsTags(0, m_nAt - m_nStart) ? E_MessageNode::EndTag : E_MessageNode::Other;
    }

    E_MessageNode TakeStartTag()
    {
        TakeName();
        if (m_name.nLen == 0 && m_c != NONE) {
            return ResumeAt(m_nSeen);
        }
        const size_t nSlashes = SkipAttributes();
        if (m_c == NONE) {
            return Unterminated();
        }
        Close(E_MessageNode::StartTag);
        if (nSlashes > 1 || !ElemPos::FitsTags(m_nAt - m_nStart, 0)) {
            return E_MessageNode::Other;
        }
        return nSlashes == 1 ? E_MessageNode::EmptyTag : E_MessageNode::StartTag;
    }

    // Moves to the '>' of a tag; returns the number of slashes before it. A quotation mark hides a '>' only
    // after '='.
    size_t SkipAttributes()
    {
        size_t nSlashes = 0;
        bool bValue = false;
        while (m_c != NONE && m_c != '>') {
            nSlashes = m_c == '/' ? nSlashes + 1 : 0;
            if (bValue && IsQuote(m_c)) {
                SkipPast(m_c);
                bValue = false;
            } else {
                bValue = IsSpace() ? bValue : m_c == '=';
                Advance();
            }
        }
        return nSlashes;
    }

    Text& m_text;
    uint64_t m_nKey;
    size_t m_nEnd;
    size_t m_nStart = 0;
    size_t m_nAt;         // where the next node begins
    size_t m_nSeen;       // m_nAt up to here has been scanned and holds no '<'
    bool m_bMark = false; // the character at m_nSeen has been scanned too, and is a '<'
    int m_c = NONE;       // inside a node: the character at m_nSeen
    SMessageName m_name;
};
