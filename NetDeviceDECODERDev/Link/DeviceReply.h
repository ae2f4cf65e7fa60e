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
    // Stands for a reply that is no XML document; no decoder gives this code.
    static constexpr unsigned int UNREADABLE = 0xFFFFFFFF;

    // Copies what it needs of the text. Throws nothing but std::bad_alloc.
    explicit CDeviceReply(std::string_view text);

    // The decoder's error code: 0 is success, also when the reply names none.
    unsigned int ErrorCode() const;
    // The element's text, zero-terminated, valid as long as this; null where there is no such element.
    const char* TextIfThere(const char* szPath) const;
    // For everything else in it; an unreadable reply has nothing.
    const CVTXMLParse& Xml() const { return m_xml; }

private:
    CVTXMLParse m_xml;
};

// Appends what was read of one item of a reply, and takes off nSpare, which begins with what the text leaves
// (CVTXMLParse::Spare), what it needs at most: the record, its place in the list, and its bytes twice,
// encoded and in the answer. Throws std::length_error where nSpare does not suffice.
template <class Items, class Item>
void AppendReplied(Items& items, std::shared_ptr<Item> item, uint64_t& nSpare)
{
    constexpr uint64_t LIST_PLACE = 72; // with the counts of a shared pointer and what the heap adds
    constexpr uint64_t NEEDED = 3 * sizeof(Item) + LIST_PLACE;
    if (nSpare < NEEDED) {
        throw std::length_error("too many items in a reply");
    }
    nSpare -= NEEDED;
    items.push_back(std::move(item));
}
