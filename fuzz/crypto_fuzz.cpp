// Digests, ciphers and text forms of any data under any key: a byte with the length of the key, the key, the
// data.

#include <cstdlib>

#include "Base64Coder.h"
#include "Crypto/Encrypt.h"
#include "Crypto/tdcrypto.h"
#include "FuzzScript.h"
#include "PUB_md5.h"
#include "SysHelper.h"

using namespace tdcrypto;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* input, size_t size)
{
    FuzzScript script(input, size);
    std::string key = script.Text(script.Number() % 32);
    std::string data = script.Rest();
    std::string out;
    auto* bytes = reinterpret_cast<unsigned char*>(data.data());
    const int len = static_cast<int>(data.size());

    char text[65] = {};
    Sha265_String(bytes, static_cast<unsigned int>(len), text);
    Observe(text);
    PUB_MD5Encrypt(data.data(), len, text, key.empty());
    Observe(text);
    GUID guid{};
    data.copy(reinterpret_cast<char*>(&guid), sizeof(guid));
    Observe(CSysHelper::GuidToString(guid, text, key.size() + 24) ? text : "cut" + std::string(text));

    Base64Encode(bytes, data.size(), out);
    Require(out == CBase64Coder::Encode(bytes, data.size()));
    Observe(out);
    unsigned char* decoded = nullptr;
    unsigned long decodedLen = 0;
    Base64Decode(data.data(), len, &decoded, &decodedLen);
    Observe(std::to_string(decodedLen) + (decoded == nullptr ? "" : std::string(decoded, decoded + len)));
    std::free(decoded);
    Observe((CBase64Coder::Decode(data, out) ? "decoded" : "kept") + out);

    Observe((AesDataEncrypt(data, key.c_str(), out) ? "enciphered" : "kept") + out);
    Observe((AesDataDecrypt(data, key.c_str(), out) ? "deciphered" : "kept") + out);
    RsaPubKeyPKCS1toPKCS8(data, out);
    Observe(out);
    Observe(std::to_string(RsaPubEncrypt(key, data).size()));
    CEncryptXOR().Encrypt(bytes, len, reinterpret_cast<unsigned char*>(key.data()),
                          static_cast<int>(key.size()));
    Observe(data);
    key.resize(16);
    Observe(std::to_string(AesCbcDecrypt(data.data(), len / 16 * 16, key.data(), out)) + out);
    Observe(std::to_string(AesCbcEncrypt(data.data(), len, key.data(), out)) + out);
    return 0;
}
