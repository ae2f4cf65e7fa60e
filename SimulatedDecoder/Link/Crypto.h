#pragma once
// What the login needs from OpenSSL. Failures of OpenSSL itself (no randomness, no memory) throw
// std::runtime_error.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <openssl/evp.h>

namespace simulated_decoder {

// Length of a text enciphered under such a key, in Base64 characters.
inline constexpr std::size_t kEncipheredLength = 172;

// A 1024-bit RSA key pair, generated on construction.
class RsaKeyPair {
public:
    RsaKeyPair();

    // PKCS#1 ("RSA PUBLIC KEY") PEM text with header and footer lines, the only form that hosts accept.
    const std::string& PublicPem() const { return m_publicPem; }
    // Deciphers a Base64 text enciphered under the public key with PKCS#1 v1.5 padding; nothing when it is
    // not such a text.
    std::optional<std::string> Decipher(std::string_view base64) const;

private:
    struct FreeKey {
        void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    };
    std::unique_ptr<EVP_PKEY, FreeKey> m_key;
    std::string m_publicPem;
};

// SHA-256 as 64 upper-case hexadecimal characters.
std::string Sha256Hex(std::string_view data);

// 16 random bytes as 32 upper-case hexadecimal characters.
std::string RandomId();

} // namespace simulated_decoder
