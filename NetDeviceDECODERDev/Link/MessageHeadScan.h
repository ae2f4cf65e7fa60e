#pragma once
// The scan of MessageHead.h, over any text with the interface of CMessageText.

#include <array>
#include <string>
#include <string_view>

#include "Link/MessageHead.h"
#include "Link/MessageNodes.h"
#include "Link/OpenElements.h"
#include "MarkupSTL.h"

// An element's parent is whatever is open at its start tag, and a closed element never reopens. So the head
// is settled once seq has followed url, or once td_header or td_command is closed.
template <class Message>
class CMessageHeadScan {
public:
    // nKey: see CNameHash.
    CMessageHeadScan(Message& text, uint64_t nKey) : m_text(text), m_nKey(nKey), m_open(text) {}

    SMessageHead Run()
    {
        CMessageNodes<Message> nodes(m_text, 0, m_text.Size(), m_nKey);
        while (Take(nodes) && !IsSettled()) {
        }
        return {Data(m_url), Data(m_seq)};
    }

private:
    static constexpr std::array<std::string_view, 2> PATH = {"td_command", "td_header"};

    // A copy of a name; empty if it is longer than any name looked for.
    class CShortName {
    public:
        CShortName(Message& text, const SMessageName& name)
            : m_nLen(name.nLen <= m_name.size() ? name.nLen : 0)
        {
            for (size_t n = 0; n < m_nLen; ++n) {
                m_name[n] = text.At(name.nStart + n);
            }
        }
        std::string_view Text() const { return {m_name.data(), m_nLen}; }

    private:
        std::array<char, PATH[0].size()> m_name;
        size_t m_nLen;
    };

    // An element of the header and its data; none unless it ends with its own tag and holds no element.
    struct SField {
        bool bFound = false;
        size_t nBegin = 0;
        size_t nEnd = 0;
    };

    bool IsSettled() const { return m_bClosed || (m_url.bFound && m_seq.bFound && m_pField == nullptr); }

    // False when the scan is over.
    bool Take(CMessageNodes<Message>& nodes)
    {
        switch (nodes.Next()) {
        case E_MessageNode::StartTag:
            Find(nodes, false);
            return m_open.Push(nodes.Name());
        case E_MessageNode::EmptyTag:
            Find(nodes, true);
            return true;
        case E_MessageNode::EndTag:
            Close(nodes);
            return true;
        case E_MessageNode::End:
            return false;
        default:
            return true;
        }
    }

    void Find(const CMessageNodes<Message>& nodes, bool bEmpty)
    {
        m_pField = nullptr; // an element that holds another has no data
        if (m_open.Size() != m_nFound) {
            return;
        }
        if (m_nFound < PATH.size()) {
            if (CShortName(m_text, nodes.Name()).Text() == PATH[m_nFound]) {
                ++m_nFound;
                m_bClosed = bEmpty;
            }
        } else if (SField* pField = FieldOf(nodes.Name())) {
            *pField = {true, nodes.After(), nodes.After()};
            m_pField = bEmpty ? nullptr : pField;
        }
    }

    SField* FieldOf(const SMessageName& name)
    {
        const CShortName field(m_text, name);
        if (!m_url.bFound && field.Text() == "url") {
            m_seq = {}; // one before url does not count
            return &m_url;
        }
        return !m_seq.bFound && field.Text() == "seq" ? &m_seq : nullptr;
    }

    void Close(const CMessageNodes<Message>& nodes)
    {
        const size_t nLevel = m_open.Pop(nodes.Name());
        if (nLevel == 0) {
            return;
        }
        if (m_pField != nullptr && nLevel > PATH.size()) {
            m_pField->nEnd = nodes.Start();
        }
        m_pField = nullptr;
        m_bClosed = nLevel <= m_nFound;
    }

    std::optional<std::string> Data(const SField& field) const
    {
        if (!field.bFound) {
            return std::nullopt;
        }
        std::string data;
        const size_t nLen = field.nEnd - field.nBegin;
        data.reserve(nLen + nLen / 4); // "&#0;" becomes five bytes
        CMessageNodes<Message> nodes(m_text, field.nBegin, field.nEnd, m_nKey);
        for (;;) {
            switch (nodes.Next()) {
            case E_MessageNode::Text:
                AppendText(data, nodes.Start(), nodes.After(), nodes.After() - nodes.Start() == nLen);
                break;
            case E_MessageNode::CData:
                AppendCData(data, nodes.Start(), nodes.After());
                break;
            case E_MessageNode::End:
                return data;
            default:
                break;
            }
        }
    }

    // Whitespace alone counts only where it is all the data; a reference to whitespace is text.
    void AppendText(std::string& data, size_t nBegin, size_t nEnd, bool bAll) const
    {
        const size_t nBefore = data.size();
        size_t nReference = std::string::npos; // where a possible reference begins
        bool bKeep = bAll;
        for (size_t n = nBegin; n < nEnd; ++n) {
            data += m_text.At(n);
            bKeep = bKeep || !IsXmlSpace(data.back());
            if (data.back() == '&') {
                nReference = data.size() - 1;
            } else if (data.back() == ';' && nReference != std::string::npos) {
                ReplaceReference(data, nReference);
                nReference = std::string::npos;
            }
        }
        if (!bKeep) {
            data.resize(nBefore);
        }
    }

    static void ReplaceReference(std::string& data, size_t nAt)
    {
        constexpr size_t LONGEST = 11; // "&#x10FFFFF;"
        const size_t nLen = data.size() - nAt;
        if (nLen <= LONGEST) {
            data.replace(nAt, nLen, CMarkupSTL::UnescapeText(&data[nAt], static_cast<int>(nLen)));
        }
    }

    void AppendCData(std::string& data, size_t nStart, size_t nAfter) const
    {
        constexpr size_t OPEN = std::string_view("<![CDATA[").size();
        constexpr size_t CLOSE = std::string_view("]]>").size();
        for (size_t n = nStart + OPEN; n < nAfter - CLOSE; ++n) {
            data += m_text.At(n);
        }
    }

    Message& m_text;
    uint64_t m_nKey;
    COpenElements<Message> m_open;
    size_t m_nFound = 0;    // elements of the path found so far, all open
    bool m_bClosed = false; // one of them has been closed
    SField m_url;
    SField m_seq;
    SField* m_pField = nullptr; // the open one, as long as it has held no element
};
