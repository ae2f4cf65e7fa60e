#include "Link/RequestLimits.h"

#include <algorithm>
#include <cstddef>

namespace simulated_decoder {

namespace {

constexpr int kMaxDepth = 64;
constexpr int kMaxAttributes = 64; // the parser compares each with all earlier ones
constexpr std::size_t kMaxReference = 12;

// Moves past `end`; false when there is none.
bool SkipPast(std::string_view& text, std::string_view end)
{
    const auto at = text.find(end);
    if (at == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(at + end.size());
    return true;
}

// The rest of a tag, from after its "<" to after its ">"; an attribute's value may hold a ">" too.
bool SkipTag(std::string_view& text, int& depth)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
    const bool closes = text.starts_with('/');
    for (int attributes = 0; attributes <= kMaxAttributes; ++attributes) {
        const auto at = text.find_first_of(">\"'");
        if (at == std::string_view::npos) {
            return false;
        }
        const std::string_view found = text.substr(at, 1);
        const bool isEmpty = at > 0 && text[at - 1] == '/';
        text.remove_prefix(at + 1);
        if (found == ">") {
            depth += closes ? -1 : isEmpty ? 0 : 1;
            return depth <= kMaxDepth;
        }
        if (!SkipPast(text, found)) {
            return false;
        }
    }
    return false;
}

// The markup after its "<".
bool SkipMarkup(std::string_view& text, int& depth)
{
    constexpr struct {
        std::string_view begin, end;
    } kOthers[] = {{"?", "?>"}, {"!--", "-->"}, {"![CDATA[", "]]>"}, {"!", ">"}};
    for (const auto& [begin, end] : kOthers) {
        if (text.starts_with(begin)) {
            text.remove_prefix(begin.size());
            return SkipPast(text, end);
        }
    }
    return SkipTag(text, depth);
}

// The parser searches for the end of each, however far away.
bool HasLongReference(std::string_view text)
{
    for (auto at = text.find("&#"); at != std::string_view::npos; at = text.find("&#", at + 1)) {
        if (text.substr(at, kMaxReference).find(';') == std::string_view::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

bool KeepsLimits(std::string_view text)
{
    if (HasLongReference(text)) {
        return false;
    }
    int depth = 0;
    while (SkipPast(text, "<")) {
        if (!SkipMarkup(text, depth)) {
            return false;
        }
    }
    return true;
}

} // namespace simulated_decoder
