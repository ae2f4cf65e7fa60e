// The RSA, AES and SHA-256 calls of the older interface fix the key forms and paddings that the decoder
// expects; the library marks them as deprecated.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "Crypto/tdcrypto.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include <openssl/aes.h>
#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/sha.h>

#include "Wipe.h"

namespace tdcrypto {

namespace {

constexpr int RSA_KEY_BITS = 768;
constexpr int AES_KEY_BITS = 128;
constexpr size_t AES_KEY_LEN = AES_KEY_BITS / 8;
constexpr size_t SALT_LEN = 3; // expected in front of an enciphered text

template <auto Release>
struct Releaser {
    template <class T>
    void operator()(T* p) const
    {
        Release(p);
    }
};
using BioChain = std::unique_ptr<BIO, Releaser<BIO_free_all>>;
using RsaKey = std::unique_ptr<RSA, Releaser<RSA_free>>;
using MallocBytes = std::unique_ptr<unsigned char, Releaser<std::free>>;

// A zeroed buffer that leaves no clear text behind.
class SecretBytes {
public:
    explicit SecretBytes(size_t nLen) : m_bytes(nLen) {}

    unsigned char* Data() { return m_bytes.data(); }
    const char* Text() const { return reinterpret_cast<const char*>(m_bytes.data()); }

private:
    std::vector<unsigned char, TWipingAllocator<unsigned char>> m_bytes;
};

// Runs an operation that may run out of memory or fail inside the library. Nothing is thrown past it, and the
// thread's error queue is left as it was.
template <class Result, class Operation>
Result Contained(Result onFailure, Operation operation) noexcept
{
    ERR_set_mark();
    try {
        onFailure = operation();
    } catch (const std::exception&) {
        // Out of memory: the failure result stands.
    }
    ERR_pop_to_mark();
    return onFailure;
}

const unsigned char* Bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

unsigned char* Bytes(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

// The library's lengths are int.
bool IsUsableLength(size_t nLen) { return nLen > 0 && nLen <= INT_MAX; }

// --- Base64 ---

BioChain PutBase64Filter(BioChain target)
{
    BIO* pFilter = BIO_new(BIO_f_base64());
    if (pFilter == nullptr || !target) {
        BIO_free(pFilter);
        return nullptr;
    }
    BIO_set_flags(pFilter, BIO_FLAGS_BASE64_NO_NL);
    return BioChain(BIO_push(pFilter, target.release()));
}

std::string TakeMemory(BIO* pMemory)
{
    const char* pData = nullptr;
    const long nLen = BIO_get_mem_data(pMemory, &pData);
    return nLen > 0 ? std::string(pData, static_cast<size_t>(nLen)) : std::string();
}

std::string ToBase64(const unsigned char* data, size_t len)
{
    const size_t nTextLen = (len + 2) / 3 * 4;
    if (data == nullptr || !IsUsableLength(len) || !IsUsableLength(nTextLen)) {
        return {};
    }
    std::string text(nTextLen + 1, '\0'); // with the zero that the library appends
    EVP_EncodeBlock(Bytes(text), data, static_cast<int>(len));
    text.pop_back();
    return text;
}

struct Decoded {
    MallocBytes bytes;
    long nLen = 0; // negative when the text could not be read
};

Decoded FromBase64(const char* in, int len)
{
    Decoded decoded;
    if (in == nullptr || len <= 0) {
        return decoded;
    }
    const auto nMax = static_cast<size_t>(len);
    decoded.bytes.reset(static_cast<unsigned char*>(std::calloc(nMax, 1)));
    const BioChain chain = PutBase64Filter(BioChain(BIO_new_mem_buf(in, len)));
    if (!decoded.bytes || !chain) {
        return decoded;
    }
    decoded.nLen = BIO_read(chain.get(), decoded.bytes.get(), static_cast<int>(strnlen(in, nMax)));
    return decoded;
}

// --- RSA ---

// The library's own callback would prompt on the terminal for an enciphered key.
int RefusePassphrase(char* /*buffer*/, int /*size*/, int /*forWriting*/, void* /*context*/) { return -1; }

using PemReader = RSA* (*)(BIO*, RSA**, pem_password_cb*, void*);

RsaKey ReadKey(PemReader read, const std::string& pem)
{
    if (pem.empty() || pem.size() > MAX_KEY_TEXT) {
        return nullptr;
    }
    const BioChain text(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    RsaKey key(text ? read(text.get(), nullptr, RefusePassphrase, nullptr) : nullptr);
    return key && RSA_size(key.get()) > 0 ? std::move(key) : nullptr;
}

template <class Writer>
std::string WriteKey(Writer write)
{
    const BioChain text(BIO_new(BIO_s_mem()));
    return text && write(text.get()) == 1 ? TakeMemory(text.get()) : std::string();
}

std::string PublicPem(RSA* pKey)
{
    return WriteKey([pKey](BIO* pOut) { return PEM_write_bio_RSAPublicKey(pOut, pKey); });
}

std::string PrivatePem(RSA* pKey)
{
    return WriteKey([pKey](BIO* pOut) {
        return PEM_write_bio_RSAPrivateKey(pOut, pKey, nullptr, nullptr, 0, nullptr, nullptr);
    });
}

// --- AES ---

// The first 16 bytes of a key text, padded with zeros.
SecretBytes MakeAesKey(const std::string& salt, const char* key)
{
    SecretBytes block(AES_KEY_LEN);
    const size_t nSalt = salt.copy(reinterpret_cast<char*>(block.Data()), AES_KEY_LEN);
    std::memcpy(block.Data() + nSalt, key, strnlen(key, AES_KEY_LEN - nSalt));
    return block;
}

using AesKeySetter = int (*)(const unsigned char*, int, AES_KEY*);

// nLen is a multiple of the block size.
bool RunAesCbc(AesKeySetter setKey, int nDirection, const char* key, const unsigned char* in, size_t nLen,
               unsigned char* out)
{
    AES_KEY schedule;
    unsigned char iv[AES_BLOCK_SIZE] = {};
    const bool bSet = setKey(Bytes(key), AES_KEY_BITS, &schedule) == 0;
    if (bSet) {
        AES_cbc_encrypt(in, out, nLen, &schedule, iv, nDirection);
    }
    WipeBytes(&schedule, sizeof(schedule));
    return bSet;
}

bool HasKeyText(const char* key) { return key != nullptr && *key != '\0'; }

// False for a key that does not hide a text or makes it unrecoverable, such as one with the exponent 1 (a
// text that would go out in the clear does not go out), and for one made to keep the processor busy.
// Otherwise the key length is up to the decoder.
bool IsUsableKey(const RSA& key)
{
    const BIGNUM* pModulus = nullptr;
    const BIGNUM* pExponent = nullptr;
    RSA_get0_key(&key, &pModulus, &pExponent, nullptr);
    constexpr int MAX_MODULUS_BITS = 16384;
    constexpr int MAX_EXPONENT_BITS = 32;
    return BN_num_bits(pModulus) <= MAX_MODULUS_BITS && BN_num_bits(pExponent) <= MAX_EXPONENT_BITS &&
           !BN_is_negative(pModulus) && !BN_is_negative(pExponent) && BN_is_odd(pExponent) &&
           !BN_is_one(pExponent);
}

} // namespace

void Sha265_String(const void* data, unsigned int len, char* out) noexcept
{
    if (out == nullptr) {
        return;
    }
    out[0] = '\0';
    if (data == nullptr && len > 0) {
        return;
    }
    SHA256_CTX context;
    unsigned char digest[SHA256_DIGEST_LENGTH];
    SHA256_Init(&context);
    SHA256_Update(&context, data, len);
    SHA256_Final(digest, &context);
    for (size_t i = 0; i < sizeof(digest); ++i) {
        (void)std::snprintf(out + 2 * i, 3, "%02X", digest[i]);
    }
    WipeBytes(&context, sizeof(context));
    WipeBytes(digest, sizeof(digest));
}

int Base64Encode(const unsigned char* data, unsigned long len, std::string& out) noexcept
{
    out = Contained(std::string(), [&] { return ToBase64(data, len); });
    return 0;
}

int Base64Decode(const char* in, int len, unsigned char** out, unsigned long* outLen) noexcept
{
    if (out == nullptr || outLen == nullptr) {
        return 0;
    }
    Decoded decoded = Contained(Decoded(), [&] { return FromBase64(in, len); });
    *out = decoded.bytes.release();
    *outLen = static_cast<unsigned long>(decoded.nLen);
    return 0;
}

void GenerateRsaKey(std::string* keys) noexcept
{
    if (keys == nullptr) {
        return;
    }
    struct Pair {
        std::string publicPem, privatePem;
    };
    Pair pair = Contained(Pair(), [] {
        const RsaKey key(RSA_generate_key(RSA_KEY_BITS, RSA_F4, nullptr, nullptr));
        return key ? Pair{PublicPem(key.get()), PrivatePem(key.get())} : Pair();
    });
    keys[0] = std::move(pair.publicPem);
    keys[1] = std::move(pair.privatePem);
}

void RsaPubKeyPKCS1toPKCS8(const std::string& pkcs1Pem, std::string& out) noexcept
{
    out = Contained(std::string(), [&] {
        const RsaKey key = ReadKey(PEM_read_bio_RSAPublicKey, pkcs1Pem);
        return key ? WriteKey([&](BIO* pOut) { return PEM_write_bio_RSA_PUBKEY(pOut, key.get()); })
                   : std::string();
    });
}

void CRsaPubKey::Free::operator()(rsa_st* pKey) const noexcept { RSA_free(pKey); }

CRsaPubKey::CRsaPubKey(const std::string& pubKeyPem) noexcept
{
    Contained(false, [&] {
        RsaKey key = ReadKey(PEM_read_bio_RSAPublicKey, pubKeyPem);
        if (key && IsUsableKey(*key)) {
            m_key.reset(key.release());
        }
        return true;
    });
}

std::string CRsaPubKey::Encrypt(std::string_view data) const noexcept
{
    return Contained(std::string(), [&] {
        if (!m_key || !IsUsableLength(data.size())) {
            return std::string();
        }
        std::vector<unsigned char> cipher(static_cast<size_t>(RSA_size(m_key.get())) + 1);
        const int nLen = RSA_public_encrypt(static_cast<int>(data.size()), Bytes(data.data()), cipher.data(),
                                            m_key.get(), RSA_PKCS1_PADDING);
        return nLen < 0 ? std::string() : ToBase64(cipher.data(), static_cast<size_t>(nLen));
    });
}

std::string RsaPubEncrypt(const std::string& data, const std::string& pubKeyPem) noexcept
{
    return CRsaPubKey(pubKeyPem).Encrypt(data);
}

std::string RsaPriDecrypt(const std::string& cipherBase64, const std::string& priKeyPem) noexcept
{
    return Contained(std::string(), [&] {
        const RsaKey key = ReadKey(PEM_read_bio_RSAPrivateKey, priKeyPem);
        if (!key || !IsUsableLength(cipherBase64.size())) {
            return std::string();
        }
        const Decoded cipher = FromBase64(cipherBase64.data(), static_cast<int>(cipherBase64.size()));
        if (!cipher.bytes || cipher.nLen < 0) {
            return std::string();
        }
        SecretBytes plain(static_cast<size_t>(RSA_size(key.get())) + 1);
        const int nLen = RSA_private_decrypt(static_cast<int>(cipher.nLen), cipher.bytes.get(), plain.Data(),
                                             key.get(), RSA_PKCS1_PADDING);
        return nLen < 0 ? std::string() : std::string(plain.Text(), static_cast<size_t>(nLen));
    });
}

int AesCbcEncrypt(const char* data, int len, const char* key, std::string& out) noexcept
{
    constexpr int BLOCK = AES_BLOCK_SIZE;
    if (data == nullptr || key == nullptr || len < 0 || len > INT_MAX - BLOCK) {
        return 0;
    }
    return Contained(0, [&] {
        const int nPadded = (len + BLOCK - 1) / BLOCK * BLOCK;
        SecretBytes plain(static_cast<size_t>(nPadded));
        std::copy_n(data, len, plain.Data());
        std::string cipher(static_cast<size_t>(nPadded), '\0');
        if (!RunAesCbc(AES_set_encrypt_key, AES_ENCRYPT, key, plain.Data(), cipher.size(), Bytes(cipher))) {
            return 0;
        }
        out = std::move(cipher);
        return nPadded;
    });
}

int AesCbcDecrypt(const char* data, int len, const char* key, std::string& out) noexcept
{
    if (data == nullptr || key == nullptr || len < 0 || len % AES_BLOCK_SIZE != 0) {
        return 0;
    }
    return Contained(0, [&] {
        const auto nLen = static_cast<size_t>(len);
        SecretBytes plain(nLen + 1);
        if (!RunAesCbc(AES_set_decrypt_key, AES_DECRYPT, key, Bytes(data), nLen, plain.Data())) {
            return 0;
        }
        out = plain.Text();
        return len;
    });
}

std::string RandomSalt() noexcept { return {}; }

bool AesDataEncrypt(const std::string& plain, const char* key, std::string& out) noexcept
{
    if (!IsUsableLength(plain.size()) || !HasKeyText(key)) {
        return false;
    }
    return Contained(false, [&] {
        const std::string salt = RandomSalt();
        const SecretBytes aesKey = MakeAesKey(salt, key);
        std::string cipher;
        if (AesCbcEncrypt(plain.data(), static_cast<int>(plain.size()), aesKey.Text(), cipher) == 0) {
            return false;
        }
        const std::string text = ToBase64(Bytes(cipher), cipher.size());
        if (text.empty()) {
            return false;
        }
        out = salt + text;
        return true;
    });
}

bool AesDataDecrypt(const std::string& cipherText, const char* key, std::string& out) noexcept
{
    if (!IsUsableLength(cipherText.size()) || cipherText.size() < SALT_LEN || !HasKeyText(key)) {
        return false;
    }
    return Contained(false, [&] {
        const SecretBytes aesKey = MakeAesKey(cipherText.substr(0, SALT_LEN), key);
        const Decoded cipher =
            FromBase64(cipherText.data() + SALT_LEN, static_cast<int>(cipherText.size() - SALT_LEN));
        return AesCbcDecrypt(reinterpret_cast<const char*>(cipher.bytes.get()), static_cast<int>(cipher.nLen),
                             aesKey.Text(), out) != 0;
    });
}

} // namespace tdcrypto
