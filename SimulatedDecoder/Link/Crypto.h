#pragma once
// What the login needs of OpenSSL. Failures of OpenSSL itself (no randomness, no memory) throw
// std::runtime_error.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <openssl/evp.h>

namespace simulated_decoder {

// Base64 characters of a text that is enciphered under such a key.
inline constexpr std::size_t kEncipheredLength = 172;

// An RSA key pair of 1024 bits, generated with the object.
class RsaKeyPair {
public:
    RsaKeyPair();

    // PKCS#1 ("RSA PUBLIC KEY") PEM text with header and footer lines, the only form that hosts read.
    const std::string& PublicPem() const { return m_publicPem; }
    // The plain text of a Base64 text that was enciphered under the public key with PKCS#1 v1.5 padding;
    // nothing when it was not.
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
