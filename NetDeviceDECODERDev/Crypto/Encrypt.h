#pragma once

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Scrambles bytes with a repeated key. The two virtual operations, in this order, are its whole virtual
// table, which is part of the ABI: a virtual destructor would add to it. Not to be deleted through a base
// pointer.
class CEncryptXOR {
public:
    // Transforms len bytes in place. Without a key (null, or keyLen not positive) the data is left unchanged.
    virtual void Encrypt(unsigned char* data, int len, unsigned char* key, int keyLen);
    // Undoes Encrypt.
    virtual void Decrypt(unsigned char* data, int len, unsigned char* key, int keyLen);
};

#pragma GCC diagnostic pop
