#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace xml_cost {

// What reading one message may take at its peak, in bytes, the answer made of it included.
inline constexpr uint64_t LIMIT = uint64_t{254} << 20U;
// The estimate for a text that is not read at any size: more than 32 attributes on one element, which the XML
// library compares with each other, or character references so far from their ends that it would look at more
// than 64 Mi bytes for them. Decoders write neither.
inline constexpr uint64_t NEVER = UINT64_MAX;

// Estimates before parsing what a text takes in memory while it is read: its own bytes three times (where it
// was received, the worker's copy, the XML library's), what the library allocates for each element, text,
// attribute and comment, and a long text three times more, as it may become the answer. Never less than that,
// though it may be more where that is far below the limit. Only text is parsed; nReceived, which is not less,
// counts for what was received and copied.
uint64_t Estimate(std::string_view text, size_t nReceived);

} // namespace xml_cost
