#pragma once

#include <string>
#include <string_view>

namespace tools {

// Text from outside, fit for one line of a terminal, where it is to be read, not interpreted: line ends
// become one blank; anything but a printable UTF-8 character, such as a one-byte or two-byte control
// character, becomes "\xNN" byte by byte. Any thread, whatever the locale.
std::string OneLine(std::string_view text);

// Whether the text is UTF-8 throughout. Any thread, whatever the locale.
bool IsUtf8(std::string_view text);

} // namespace tools
