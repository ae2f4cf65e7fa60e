#include "Link/Crypto.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <openssl/encoder.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>

#include "Tools/Common/Hex.h"

namespace simulated_decoder {

namespace {

constexpr unsigned int kKeyBits = 1024;
constexpr std::size_t kMaxCipherText = 4096; // Base64 characters; a real one has 172

void Require(bool good, const char* what)
{
    if (!good) {
        throw std::runtime_error(std::string("OpenSSL failed: ") + what);
    }
}

std::string EncodePublicKey(EVP_PKEY* key)
{
    // "type-specific" is what makes it PKCS#1 instead of SubjectPublicKeyInfo.
    const std::unique_ptr<OSSL_ENCODER_CTX, decltype(&OSSL_ENCODER_CTX_free)> encoder(
        OSSL_ENCODER_CTX_new_for_pkey(key, EVP_PKEY_PUBLIC_KEY, "PEM", "type-specific", nullptr),
        &OSSL_ENCODER_CTX_free);
    unsigned char* data = nullptr;
    std::size_t length = 0;
    Require(encoder && OSSL_ENCODER_to_data(encoder.get(), &data, &length) == 1, "public key to PEM");
    std::string pem(data, data + length);
    OPENSSL_free(data);
    return pem;
}

std::optional<std::string> DecodeBase64(std::string_view text)
{
    if (text.empty() || text.size() > kMaxCipherText || text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string bytes(text.size() / 4 * 3, '\0');
    const int length =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    // OpenSSL counts the padding as zero bytes.
    const auto padding = std::count(text.end() - 2, text.end(), '=');
    if (length < padding) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(length - padding));
    return bytes;
}

} // namespace

RsaKeyPair::RsaKeyPair() : m_key(EVP_RSA_gen(kKeyBits))
{
    Require(m_key != nullptr, "generating an RSA key");
    m_publicPem = EncodePublicKey(m_key.get());
}

std::optional<std::string> RsaKeyPair::Decipher(std::string_view base64) const
{
    const std::optional<std::string> cipher = DecodeBase64(base64);
    if (!cipher) {
        return std::nullopt;
    }
    const std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> context(
        EVP_PKEY_CTX_new(m_key.get(), nullptr), &EVP_PKEY_CTX_free);
    Require(context && EVP_PKEY_decrypt_init(context.get()) > 0 &&
                EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) > 0,
            "RSA deciphering set-up");
    std::string plain(static_cast<std::size_t>(EVP_PKEY_get_size(m_key.get())), '\0');
    std::size_t length = plain.size();
    if (EVP_PKEY_decrypt(context.get(), reinterpret_cast<unsigned char*>(plain.data()), &length,
                         reinterpret_cast<const unsigned char*>(cipher->data()), cipher->size()) <= 0) {
        return std::nullopt;
    }
    plain.resize(length);
    return plain;
}

std::string Sha256Hex(std::string_view data)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    Require(EVP_Digest(data.data(), data.size(), digest.data(), &length, EVP_sha256(), nullptr) == 1,
            "SHA-256");
    return tools::HexText(digest.data(), length, tools::HexCase::Upper);
}

std::string RandomId()
{
    std::array<unsigned char, 16> bytes{};
    Require(RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1, "random bytes");
    return tools::HexText(bytes.data(), bytes.size(), tools::HexCase::Upper);
}

} // namespace simulated_decoder
