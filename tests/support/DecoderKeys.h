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

// A request with the credentials as the decoder reads them.
inline std::string InClear(std::string request, const std::string& privateKey)
{
    for (const std::string tag : {"<account>", "<authentication>", "<user>", "<pwd>"}) {
        for (auto at = request.find(tag); at != std::string::npos; at = request.find(tag, at)) {
            at += tag.size();
            const auto len = request.find('<', at) - at;
            request.replace(at, len, tdcrypto::RsaPriDecrypt(request.substr(at, len), privateKey));
        }
    }
    return request;
}
