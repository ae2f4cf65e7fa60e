#pragma once

#include <string_view>

namespace simulated_decoder {

// Whether the XML parser reads the text in time linear in its length: elements at most 64 deep with at most
// 64 attributes each, and each character reference ended within 12 bytes. Looks at each byte a few times and
// allocates nothing. In an ill-formed text, the limits apply to what the parser reads before it gives up.
bool KeepsLimits(std::string_view text);

} // namespace simulated_decoder
