#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct rsa_st;

// Hashing, RSA, AES and Base64 for the traffic with the decoder. Keys are PEM texts, header and footer lines
// included. Nothing here throws or logs, keeps state, or leaves entries in OpenSSL's error queue; every
// function may be called from any thread. Null pointers and negative lengths are failures.
namespace tdcrypto {

// SHA-256, despite the name: 64 upper-case hexadecimal characters and a terminating zero, 65 bytes at out.
// Empty text on failure.
void Sha265_String(const void* data, unsigned int len, char* out) noexcept;

// Always 0. out receives the text without line breaks, or is emptied on failure.
int Base64Encode(const unsigned char* data, unsigned long len, std::string& out) noexcept;

// Always 0. The text must have no line breaks and ends at len bytes or at the first zero byte. *out receives
// a buffer of len bytes that the caller releases with free(), or null; *outLen the bytes decoded into it, or
// a negative count converted to unsigned when the text could not be read.
int Base64Decode(const char* in, int len, unsigned char** out, unsigned long* outLen) noexcept;

// --- RSA with PKCS#1 padding ---

// Longest key text that is read, in bytes: many times that of a 16,384-bit key. The library takes more than a
// second for a text of 40 MB.
inline constexpr size_t MAX_KEY_TEXT = size_t{64} << 10U;

// Generates a 768-bit key pair: keys[0] receives the public and keys[1] the private key, both in PKCS#1 form,
// or both are emptied on failure.
void GenerateRsaKey(std::string* keys) noexcept;

// Re-encodes a PKCS#1 public key as SubjectPublicKeyInfo; out is emptied on failure.
void RsaPubKeyPKCS1toPKCS8(const std::string& pkcs1Pem, std::string& out) noexcept;

// Enciphers data, at most the key's size minus 11 bytes, under a PKCS#1 public key ("RSA PUBLIC KEY"; other
// forms are refused, and so are keys under which the text could be read, such as one with the
// exponent 1, and keys of more than 16,384 bits or 32 bits of exponent, or in a longer text than above).
// Returns the Base64 text of the ciphertext, or an empty string on failure.
std::string RsaPubEncrypt(const std::string& data, const std::string& pubKeyPem) noexcept;

// A public key, read once for many texts.
class CRsaPubKey {
public:
    // A key that cannot be read enciphers nothing.
    explicit CRsaPubKey(const std::string& pubKeyPem) noexcept;

    // What RsaPubEncrypt returns.
    std::string Encrypt(std::string_view data) const noexcept;

private:
    struct Free {
        void operator()(rsa_st* pKey) const noexcept;
    };
    std::unique_ptr<rsa_st, Free> m_key;
};

// The reverse, with the PKCS#1 private key; an empty string on failure.
std::string RsaPriDecrypt(const std::string& cipherBase64, const std::string& priKeyPem) noexcept;

// --- AES-128 in CBC mode with a zero initialisation vector; key points to 16 bytes ---

// A last block that is not full is padded with zeros; full blocks get no padding. Returns the length of the
// ciphertext in out; 0 on failure, with out unchanged, and for no data, with out emptied.
int AesCbcEncrypt(const char* data, int len, const char* key, std::string& out) noexcept;

// len is a multiple of 16. out receives the plaintext up to its first zero byte. Returns len; 0
// on failure, with out unchanged, and for no data, with out emptied.
int AesCbcDecrypt(const char* data, int len, const char* key, std::string& out) noexcept;

// --- AES with a salted key text (zero-terminated, cut or zero-filled to 16 bytes) and Base64 ---

// Always empty: the two functions below are built on it as it is.
std::string RandomSalt() noexcept;

// Puts the (empty) salt in front of the Base64 text.
bool AesDataEncrypt(const std::string& plain, const char* key, std::string& out) noexcept;

// Expects a salt of three characters in front of the Base64 text. So it does not recover what AesDataEncrypt
// wrote; both forms are required as they are by the peers that exchange such texts.
bool AesDataDecrypt(const std::string& cipherText, const char* key, std::string& out) noexcept;

} // namespace tdcrypto
