#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the receive thread needs of a message: the texts of td_command/td_header/url and of the first seq that
// follows it, or of the first seq where there is no url. An element that is not there has none.
struct SMessageHead {
    std::optional<std::string> url;
    std::optional<std::string> seq;
};

// Finds what CMarkupSTL would find in the same bytes, ill-formed ones included, without parsing them all into
// a document: the scan ends where nothing that follows can change the result, looks at no byte more than
// three times, and allocates nothing but the two texts and, below 64 open elements, at most 14 bytes for each
// level. The text counts as ended where elements nest deeper than 65,535 levels; one of more than 2^31 - 1
// bytes has no head. Any thread. Throws nothing but std::bad_alloc.
SMessageHead ReadMessageHead(std::string_view message);
