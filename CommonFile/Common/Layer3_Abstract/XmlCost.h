#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace xml_cost {

// Peak memory that reading one message may take, in bytes, including the answer made from it.
inline constexpr uint64_t LIMIT = uint64_t{254} << 20U;
// The estimate for a text that is refused at any size: more than 32 attributes on one element, which the XML
// library compares with each other, or so many references, or character references so far from their ends,
// that it would look at more than 64 Mi bytes for them. Decoders send neither.
inline constexpr uint64_t NEVER = UINT64_MAX;

// Estimates, before parsing, the memory that a text takes while it is read: its own bytes three times (as
// received, the worker's copy, the XML library's), the library's allocations for each element, text,
// attribute and comment, and a long text three times more, as it may become the answer. Never too low;
// possibly too high where the cost is far below the limit. Only text is parsed; nReceived, never less than
// its size, is the size received and copied, and nBeside what else is held meanwhile.
uint64_t Estimate(std::string_view text, size_t nReceived, size_t nBeside);

} // namespace xml_cost
