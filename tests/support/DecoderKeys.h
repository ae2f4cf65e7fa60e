#pragma once

#include "Crypto/tdcrypto.h"

// A real key pair.
struct TestKeys {
    std::string publicKey;
    std::string privateKey;
};
inline const TestKeys& DecoderKeys() // made once
{
    static const TestKeys kKeys = [] {
        std::string texts[2];
        tdcrypto::GenerateRsaKey(texts);
        return TestKeys{texts[0], texts[1]};
    }();
    return kKeys;
}
