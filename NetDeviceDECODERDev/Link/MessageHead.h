#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the receive thread needs from a message: the texts of td_command/td_header/url and of the first seq
// after it, or of the first seq if there is no url. A missing element has no text.
struct SMessageHead {
    std::optional<std::string> url;
    std::optional<std::string> seq;
};

// Finds what CMarkupSTL would find in the same bytes, ill-formed ones included, without parsing them all into
// a document: the scan ends as soon as nothing that follows can change the result, and looks at no byte more
// than three times. It allocates the two texts, with a quarter to spare; if more than 64 elements are open at
// a time, also 12 bytes for each, in blocks of 3 KiB, and a fifth of the message's size, at most 20 KiB.
// Nesting deeper than 65,535 levels ends the text; a text of more than 2^31 - 1 bytes has no head. Any
// thread. Throws nothing but std::bad_alloc.
SMessageHead ReadMessageHead(std::string_view message);
