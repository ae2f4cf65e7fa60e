#include "Crypto/Encrypt.h"

void CEncryptXOR::Encrypt(unsigned char* data, int len, unsigned char* key, int keyLen)
{
    if (data == nullptr || key == nullptr || keyLen <= 0) {
        return;
    }
    for (int i = 0, j = 0; i < len; ++i) {
        data[i] ^= key[j];
        if (++j == keyLen) {
            j = 0;
        }
    }
}

void CEncryptXOR::Decrypt(unsigned char* data, int len, unsigned char* key, int keyLen)
{
    Encrypt(data, len, key, keyLen);
}
