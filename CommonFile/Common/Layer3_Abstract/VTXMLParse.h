#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tinyxml2 {
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

// Reads values out of a decoder's message by path. A path is element names separated by '/', each meaning the
// first child of that name: an absolute path starts with the root element ("td_command/td_body/row"), a
// relative one below an item. A missing element reads as 0 or as an empty text. Used by one thread at a time.
class CVTXMLParse {
public:
    // An element of the parsed text; null when there is none. Valid until the next Parse.
    using Item = const tinyxml2::XMLElement*;

    CVTXMLParse();
    CVTXMLParse(const char* pText, size_t nLen, size_t nBeside = 0);
    ~CVTXMLParse();
    CVTXMLParse(const CVTXMLParse&) = delete;
    CVTXMLParse& operator=(const CVTXMLParse&) = delete;

    // Parses a text of nLen bytes, which need not be zero-terminated; a zero byte ends it. False, with
    // nothing to read, for a text that is not well-formed, has no element, nests deeper than the parser
    // follows, or would take too much memory or time (XmlCost.h), with nBeside bytes of the memory taken
    // already. Throws nothing but std::bad_alloc.
    bool Parse(const char* pText, size_t nLen, size_t nBeside = 0);
    // Forgets the text. True when the memory of its nodes is kept for the next text, as after one that was
    // parsed and that is estimated (XmlCost.h) at 128 KiB to 16 MiB. A next text of another size frees it.
    bool Clear();
    // The result of the last Parse: tells a message that lacks an element from a text that is not XML at all.
    bool IsParsed() const { return m_bParsed; }

    // Bytes still allowed for what is made of the text.
    uint64_t Spare() const { return m_nSpare; }

    Item GetFirstItem(const char* szPath) const;
    Item GetFirstItem(Item item, const char* szPath) const;
    // The first child element, whatever its name.
    Item GetFirstChild(Item item) const;
    // The next element under the same parent, of the given name or of any.
    Item GetNextSiblingItem(Item item, const char* szName = nullptr) const;

    // Numbers are read as strtol and strtoul read them in base 10, then cut to their low 32 bits.
    int32_t GetValue_i32(const char* szPath) const { return GetValue_i32(GetFirstItem(szPath)); }
    int32_t GetValue_i32(Item item, const char* szPath = "") const;
    uint32_t GetValueDWORD(const char* szPath) const { return GetValueDWORD(GetFirstItem(szPath)); }
    uint32_t GetValueDWORD(Item item, const char* szPath = "") const;
    std::string GetValueStr(const char* szPath) const { return GetValueStr(GetFirstItem(szPath)); }
    std::string GetValueStr(Item item, const char* szPath = "") const { return GetText(item, szPath); }
    // Zero-terminated, never null; valid as long as the item is.
    const char* GetText(Item item, const char* szPath = "") const;

private:
    std::unique_ptr<tinyxml2::XMLDocument> m_pDocument; // null when there is nothing to read
    uint64_t m_nSpare = 0;
    bool m_bParsed = false;
};
