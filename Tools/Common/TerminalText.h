#pragma once

#include <string>
#include <string_view>

namespace tools {

// Text from outside, fit for one line of a terminal, where it shall be read, not carried out: line ends
// become one blank; what is no printable character of UTF-8, control characters of one byte and of two,
// becomes "\xNN" byte by byte. Any thread, whatever the locale.
std::string OneLine(std::string_view text);

} // namespace tools
