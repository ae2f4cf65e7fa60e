#pragma once
// The scan for url and seq of a message, held against the document's own search in the same bytes.

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Link/MessageHead.h"
#include "Link/MessageHeadScan.h"
#include "LinkTexts.h"
#include "MarkupSTL.h"

// A message that counts how often the scan looks at each of its bytes.
class CountedText {
public:
    explicit CountedText(std::string_view text) : m_text(text), m_looks(text.size()) {}

    size_t Size() const { return m_text.Size(); }
    char At(size_t n)
    {
        ++m_looks[n];
        return m_text.At(n);
    }
    size_t Find(char c, size_t from, size_t end)
    {
        const size_t found = m_text.Find(c, from, end);
        for (size_t n = from; n < std::min(found + 1, end); ++n) {
            ++m_looks[n];
        }
        return found;
    }

    // The most looks that any byte got.
    unsigned int MostLooks() const
    {
        return m_looks.empty() ? 0 : *std::max_element(m_looks.begin(), m_looks.end());
    }

    // Bytes that got one look or more.
    size_t Seen() const
    {
        return m_looks.size() - static_cast<size_t>(std::count(m_looks.begin(), m_looks.end(), 0U));
    }

private:
    CMessageText m_text;
    std::vector<unsigned int> m_looks;
};

inline SMessageHead DocumentHead(const std::string& message)
{
    CMarkupSTL doc(message.data(), static_cast<unsigned int>(message.size()));
    SMessageHead head;
    if (doc.FindElem("td_command") && doc.IntoElem() && doc.FindElem("td_header") && doc.IntoElem()) {
        head.url = doc.FindElem("url") ? std::optional(doc.GetData()) : std::nullopt;
        head.seq = doc.FindElem("seq") ? std::optional(doc.GetData()) : std::nullopt;
    }
    return head;
}

// Whether the scan finds the same, also where all names have one hash, with three looks at each byte at most.
inline bool ScanAgreesWithDocument(const std::string& message)
{
    constexpr uint64_t kKey = 0x0FEDCBA987654321;
    const SMessageHead expected = DocumentHead(message);
    const auto agrees = [&](const SMessageHead& head) {
        return head.url == expected.url && head.seq == expected.seq;
    };
    const CMessageText text(message);
    CountedText counted(message);
    return agrees(ReadMessageHead(message)) && agrees(CMessageHeadScan<const CMessageText>(text, 0).Run()) &&
           agrees(CMessageHeadScan<CountedText>(counted, kKey).Run()) && counted.MostLooks() <= 3;
}

// What messages are made of, odd pieces included. Files of head_fuzz's corpus tell them by their place.
inline std::vector<std::string_view> MessagePieces()
{
    static constexpr char kPieces[] = // separated by a sign that is in none of them
        "<td_command>|</td_command>|<td_header>|</td_header>|<url>|</url>|<seq>|</seq>|<url/>|"
        "<seq/>|<a>|</a>|<ab>|</ab>|<bb>|</bb>|<a/>|<a//>|<a x='>'>|<a x=\"/\"|<seq y='1'/>|"
        "<url a=\"|<|>|/|</|/>|</ seq>|</seq \r\n>|</seq x>|<!|<!-|<!--|-->|<!---->|<!-->|->|"
        "<![CDATA[|]]>|<![CDATA[x]|]|<!DOCTYPE|<!DOCTYPE a [|<?|?>|<?>|&|&lt;|&amp;|&#65;|&#x41;|"
        "&#0;|&#12345678;|&#x;|;|1|25| |\r\n|x|'|\"|=|td_command|td_header|<td_command |"
        "<td_command/|<td_header/|<tail></a>|\0|<![|DOCTYPE|[CDATA[|CDDOCTYPE|&#32;|&#9;";
    return Split({kPieces, sizeof(kPieces) - 1});
}
