#pragma once

#include <string>

// A real key pair, made once.
struct TestKeys {
    std::string publicKey;
    std::string privateKey;
};
const TestKeys& DecoderKeys();
