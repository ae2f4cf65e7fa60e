#pragma once

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Scrambles bytes with a repeated key. The two virtual operations, in this order, are the whole of its table,
// which is binary contract: a virtual destructor would add to it. Not to be deleted through a base pointer.
class CEncryptXOR {
public:
    // Transforms len bytes in place. Without a key (null, or keyLen not positive) the data stay as they are.
    virtual void Encrypt(unsigned char* data, int len, unsigned char* key, int keyLen);
    // Undoes Encrypt.
    virtual void Decrypt(unsigned char* data, int len, unsigned char* key, int keyLen);
};

#pragma GCC diagnostic pop
