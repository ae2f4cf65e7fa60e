#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
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
    // Replaces value by the element's text; where there is no such element it is left alone.
    void ReadIfThere(const char* szPath, std::string& value) const;
    // For everything else in it; an unreadable reply has nothing.
    const CVTXMLParse& Xml() const { return m_xml; }

private:
    CVTXMLParse m_xml;
};

// Appends what was read of one item of a reply. Throws std::length_error where no real decoder has so many:
// each item of a few bytes takes some hundred in the host's record.
template <class Items, class Item>
void AppendReplied(Items& items, std::shared_ptr<Item> item)
{
    constexpr size_t MAX_ITEMS = 1 << 18;
    if (items.size() == MAX_ITEMS) {
        throw std::length_error("too many items in a reply");
    }
    items.push_back(std::move(item));
}
