#include "PUB_md5.h"

#include <cstdio>
#include <openssl/err.h>
#include <openssl/evp.h>

void PUB_MD5Encrypt(const void* pIn, int iLenIn, char* szOut, bool bUpper) noexcept
{
    if (szOut == nullptr) {
        return;
    }
    szOut[0] = '\0';
    if (iLenIn < 0 || (pIn == nullptr && iLenIn > 0)) {
        return;
    }
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int nDigestLen = 0;
    ERR_set_mark();
    if (EVP_Digest(pIn, static_cast<size_t>(iLenIn), digest, &nDigestLen, EVP_md5(), nullptr) == 1) {
        for (unsigned int i = 0; i < nDigestLen; ++i) {
            (void)std::snprintf(szOut + size_t{2} * i, 3, bUpper ? "%02X" : "%02x", digest[i]);
        }
    }
    ERR_pop_to_mark();
}
