#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "VTXMLParse.h"

// The text of a reply, opened for reading by path.
class CDeviceReply {
public:
    // Means that the reply is not an XML document; no decoder sends this code.
    static constexpr unsigned int UNREADABLE = 0xFFFFFFFF;

    // Copies what it needs from the text; nBeside bytes of other messages are held meanwhile. Throws nothing
    // but std::bad_alloc.
    void Open(std::string_view text, size_t nBeside);
    // Forgets it. True when the memory that reading it took is kept for the next one.
    bool Close() { return m_xml.Clear(); }

    // The decoder's error code: 0 is success, and also stands for a reply without one.
    unsigned int ErrorCode() const;
    // The element's text, zero-terminated, valid as long as this object; null if there is no such element.
    const char* TextIfThere(const char* szPath) const;
    // For everything else in the reply; an unreadable one is empty.
    const CVTXMLParse& Xml() const { return m_xml; }

private:
    CVTXMLParse m_xml;
};

// Appends the record of one item of a reply and subtracts from nSpare, which starts as CVTXMLParse::Spare,
// the most that it needs: the record, its place in the list, and its bytes twice, encoded and in the answer.
// Throws std::length_error when nSpare is too small.
template <class Items, class Item>
void AppendReplied(Items& items, std::shared_ptr<Item> item, uint64_t& nSpare)
{
    constexpr uint64_t LIST_PLACE = 72; // including a shared pointer's counts and heap overhead
    constexpr uint64_t NEEDED = 3 * sizeof(Item) + LIST_PLACE;
    if (nSpare < NEEDED) {
        throw std::length_error("too many items in a reply");
    }
    nSpare -= NEEDED;
    items.push_back(std::move(item));
}
