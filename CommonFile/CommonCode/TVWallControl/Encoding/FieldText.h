#pragma once
// Texts in the fixed fields of host records.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

// The text up to its zero byte, or the whole field if there is none; a view of the field.
template <size_t nSize>
std::string_view FieldView(const char (&field)[nSize])
{
    return {field, strnlen(field, nSize)};
}

// The same as a copy; not for secrets.
template <size_t nSize>
std::string FieldText(const char (&field)[nSize])
{
    return std::string(FieldView(field));
}

// Cuts the text to leave room for a terminating zero; the rest of the field is zeroed.
template <size_t nSize>
void SetFieldText(char (&field)[nSize], std::string_view text)
{
    const size_t nLen = std::min(text.size(), nSize - 1);
    std::memcpy(field, text.data(), nLen);
    std::memset(field + nLen, 0, nSize - nLen);
}
