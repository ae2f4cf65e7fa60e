#pragma once

#include <string_view>

namespace simulated_decoder {

// Whether the text is one that the XML parser reads in a time that grows with its length alone: elements at
// most 64 deep with at most 64 attributes each, and each reference to a character ended within 12 bytes.
// Looks at each byte a few times and allocates nothing. Of a text that is not well-formed, what the parser
// reads before it gives up is held to the limits.
bool KeepsLimits(std::string_view text);

} // namespace simulated_decoder
