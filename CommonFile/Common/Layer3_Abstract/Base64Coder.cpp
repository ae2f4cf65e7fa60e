#include "Base64Coder.h"

#include <openssl/evp.h>
#include <utility>

namespace {

constexpr size_t MAX_LEN = size_t{1} << 30; // the library's lengths are 32-bit signed

unsigned char* Bytes(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

const unsigned char* Bytes(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

// Number of padding characters at the end, 0 to 2.
size_t CountPadding(const std::string& strText)
{
    const size_t nEnd = strText.find_last_not_of('=');
    return strText.size() - (nEnd == std::string::npos ? 0 : nEnd + 1);
}

} // namespace

std::string CBase64Coder::Encode(const void* pData, size_t nLen)
{
    if (nLen == 0 || nLen > MAX_LEN) {
        return {};
    }
    // The library also writes a terminating zero, over the string's own.
    std::string strText((nLen + 2) / 3 * 4, '\0');
    EVP_EncodeBlock(Bytes(strText), static_cast<const unsigned char*>(pData), static_cast<int>(nLen));
    return strText;
}

bool CBase64Coder::Decode(const std::string& strText, std::string& out)
{
    constexpr const char* ALPHABET = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const size_t nPadding = CountPadding(strText);
    if (strText.size() % 4 != 0 || strText.size() > MAX_LEN || nPadding > 2 ||
        strText.find_first_not_of(ALPHABET) < strText.size() - nPadding) {
        return false;
    }
    std::string data(strText.size() / 4 * 3, '\0');
    EVP_DecodeBlock(Bytes(data), Bytes(strText), static_cast<int>(strText.size()));
    data.resize(data.size() - nPadding); // the library decodes padding into zeros
    out = std::move(data);
    return true;
}
