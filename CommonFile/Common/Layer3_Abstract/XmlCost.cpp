#include "XmlCost.h"

#include <algorithm>
#include <cstddef>
#include <tinyxml2.h>

namespace {

// The library takes its nodes from blocks of about 4 KiB; a block's overhead is less than two bytes for each
// node.
template <class Node>
constexpr uint64_t NODE_COST = sizeof(Node) + 2;

constexpr uint64_t RECEIVED_COPIES = 2; // the received text and the worker's
constexpr uint64_t PARSED_COPIES = 1;   // the XML library's
constexpr uint64_t ANSWER_COPIES = 3;   // as read, as encoded, and in the answer
constexpr size_t LONG_TEXT = 1024;      // longer than any field of a list's items
constexpr size_t MAX_ATTRIBUTES = 32;

uint64_t TextCost(size_t nLen)
{
    return NODE_COST<tinyxml2::XMLText> + (nLen > LONG_TEXT ? ANSWER_COPIES * nLen : 0);
}

size_t Count(std::string_view text, char c)
{
    constexpr size_t BLOCK = 255; // a byte counts up to this, so that the compiler can vectorise
    size_t nCount = 0;
    for (; !text.empty(); text.remove_prefix(std::min(BLOCK, text.size()))) {
        uint8_t nInBlock = 0;
        for (const char other : text.substr(0, BLOCK)) {
            nInBlock = static_cast<uint8_t>(nInBlock + (other == c ? 1 : 0));
        }
        nCount += nInBlock;
    }
    return nCount;
}

struct SSection {
    std::string_view open;
    std::string_view close;
    uint64_t nCost;
};

constexpr SSection SECTIONS[] = {
    {"<!--", "-->", NODE_COST<tinyxml2::XMLComment>},
    {"<?", "?>", NODE_COST<tinyxml2::XMLDeclaration>},
    {"<!", ">", NODE_COST<tinyxml2::XMLUnknown>},
};

// The nodes of a text as the library sees them, up to its first error or until they cost too much.
class CNodes {
public:
    explicit CNodes(std::string_view text) : m_text(text) {}

    uint64_t Cost()
    {
        uint64_t nCost = 0;
        while (!m_text.empty() && nCost <= xml_cost::LIMIT) {
            nCost += SkipText();
            if (!m_text.empty()) {
                const uint64_t nMarkup = SkipMarkup();
                nCost = nMarkup == xml_cost::NEVER ? nMarkup : nCost + nMarkup;
            }
        }
        return nCost;
    }

private:
    // Goes to the next '<'.
    uint64_t SkipText()
    {
        const size_t nLen = std::min(m_text.find('<'), m_text.size());
        const bool bSpace = m_text.substr(0, nLen).find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
        m_text.remove_prefix(nLen);
        return bSpace ? 0 : TextCost(nLen);
    }

    uint64_t SkipMarkup()
    {
        if (m_text.starts_with("<![CDATA[")) {
            return TextCost(SkipPast(9, "]]>"));
        }
        for (const SSection& section : SECTIONS) {
            if (m_text.starts_with(section.open)) {
                SkipPast(section.open.size(), section.close);
                return section.nCost;
            }
        }
        return SkipTag();
    }

    // Moves past the next such end, or to the end of the text; returns the distance.
    size_t SkipPast(size_t nFrom, std::string_view end)
    {
        const size_t nBefore = m_text.size();
        const size_t nAt = m_text.find(end, nFrom);
        m_text.remove_prefix(nAt == std::string_view::npos ? nBefore : nAt + end.size());
        return nBefore - m_text.size();
    }

    // A value ends at its own quotation mark, whatever it contains.
    uint64_t SkipTag()
    {
        uint64_t nCost = m_text.starts_with("</") ? 0 : NODE_COST<tinyxml2::XMLElement>;
        for (size_t nAttributes = 0; nAttributes <= MAX_ATTRIBUTES; ++nAttributes) {
            SkipNames();
            if (m_text.empty() || m_text[0] == '>') {
                m_text.remove_prefix(std::min<size_t>(1, m_text.size()));
                return nCost;
            }
            SkipPast(1, m_text.substr(0, 1));
            nCost += NODE_COST<tinyxml2::XMLAttribute>;
        }
        return xml_cost::NEVER;
    }

    // Goes to the next quotation mark or '>'.
    void SkipNames()
    {
        const auto it = std::find_if(m_text.begin(), m_text.end(),
                                     [](char c) { return c == '>' || c == '"' || c == '\''; });
        m_text.remove_prefix(static_cast<size_t>(it - m_text.begin()));
    }

    std::string_view m_text;
};

// At each '&' the library tries the names of the known entities. For each "&#" it scans to the next ';' of
// the text or value, at worst to its end, and back.
bool HasCostlyReferences(std::string_view text)
{
    constexpr uint64_t MAX_LOOKS = uint64_t{64} << 20U;
    constexpr uint64_t NAMES_LOOKS = 8;
    uint64_t nLooks = 0;
    size_t nEnd = 0; // end of the last reference; later ones may share it
    for (size_t nAt = text.find('&'); nAt < text.size() && nLooks <= MAX_LOOKS;
         nAt = text.find('&', nAt + 1)) {
        nLooks += NAMES_LOOKS;
        if (text.substr(nAt, 2) == "&#") {
            nEnd = nEnd > nAt ? nEnd : std::min(text.find(';', nAt), text.size());
            nLooks += nEnd - nAt;
        }
    }
    return nLooks > MAX_LOOKS;
}

// Quick upper bound: as if an element and a text began at each '<', and an attribute at each '='.
uint64_t UpperBound(std::string_view text)
{
    return (PARSED_COPIES + ANSWER_COPIES) * text.size() +
           Count(text, '<') *
               (NODE_COST<tinyxml2::XMLElement> + NODE_COST<tinyxml2::XMLText>)+MAX_ATTRIBUTES *
               NODE_COST<tinyxml2::XMLAttribute>;
}

} // namespace

uint64_t xml_cost::Estimate(std::string_view text, size_t nReceived, size_t nBeside)
{
    const uint64_t nHeld = RECEIVED_COPIES * nReceived + nBeside;
    const uint64_t nCopies = nHeld + PARSED_COPIES * text.size();
    if (nCopies > LIMIT || HasCostlyReferences(text)) {
        return NEVER;
    }
    const uint64_t nBound = nHeld + UpperBound(text);
    if (nBound <= LIMIT / 8 && Count(text, '=') <= MAX_ATTRIBUTES) {
        return nBound;
    }
    const uint64_t nNodes = CNodes(text).Cost();
    return nNodes == NEVER ? NEVER : nNodes + nCopies;
}
