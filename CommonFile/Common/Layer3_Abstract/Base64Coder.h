#pragma once

#include <cstddef>
#include <string>

// Base64 (RFC 4648, padded, no line breaks) for binary values inside XML documents.
class CBase64Coder {
public:
    // Empty when nLen is 0 or more than 1 GiB.
    static std::string Encode(const void* pData, size_t nLen);
    // False, with out unchanged, when the text is not Base64 or longer than 1 GiB.
    static bool Decode(const std::string& strText, std::string& out);
};
