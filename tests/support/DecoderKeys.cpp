#include "DecoderKeys.h"

#include "Crypto/tdcrypto.h"

const TestKeys& DecoderKeys()
{
    static const TestKeys keys = [] {
        std::string texts[2];
        tdcrypto::GenerateRsaKey(texts);
        return TestKeys{texts[0], texts[1]};
    }();
    return keys;
}
