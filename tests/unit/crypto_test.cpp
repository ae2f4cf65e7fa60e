#define OPENSSL_SUPPRESS_DEPRECATED // as the plug-in has it
#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <memory>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <string>
#include <vector>

#include "Base64Coder.h"
#include "Crypto/Encrypt.h"
#include "Crypto/tdcrypto.h"
#include "HostCalls.h"
#include "PUB_md5.h"

namespace {

using namespace tdcrypto;

template <class Byte = const unsigned char, class Text>
Byte* BytesOf(Text& text)
{
    return reinterpret_cast<Byte*>(text.data());
}

// Bytes of every value, the same in every run.
std::string SomeBytes(size_t len)
{
    std::string bytes(len, '\0');
    for (size_t i = 0; i < len; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 256 + 1);
    }
    return bytes;
}

// Every call leaves the thread's error queue as it was, an earlier entry of the caller included.
class CryptoTest : public testing::Test {
protected:
    CryptoTest()
    {
        ERR_clear_error();
        ERR_raise(ERR_LIB_USER, 77);
        GenerateRsaKey(keys);
    }
    ~CryptoTest() override
    {
        EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 77);
        EXPECT_EQ(ERR_get_error(), 0U);
    }

    std::string keys[2]; // public, private; of 96 bytes
};

TEST_F(CryptoTest, DigestsAreHexadecimalText)
{
    const std::string longText = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    char out[65];
    Sha265_String(nullptr, 0, out);
    EXPECT_STREQ(out, "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855");
    Sha265_String(longText.data(), 56, out);
    EXPECT_STREQ(out, "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1");
    Sha265_String(std::string(1000000, 'a').data(), 1000000, out);
    EXPECT_STREQ(out, "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0");
    PUB_MD5Encrypt(longText.data(), 56, out, true);
    EXPECT_STREQ(out, "8215EF0796A20BCAAAE116D3876C664A");
    PUB_MD5Encrypt(nullptr, 0, out, false);
    EXPECT_STREQ(out, "d41d8cd98f00b204e9800998ecf8427e");
}

TEST_F(CryptoTest, Base64IsOneLineAndComesBack)
{
    for (const size_t len : {0U, 1U, 2U, 3U, 100U, 768U, 2'000'000U}) {
        const std::string bytes = SomeBytes(len);
        std::string text = "stale", decoded;
        EXPECT_EQ(Base64Encode(BytesOf(bytes), len, text), 0);
        EXPECT_EQ(text.size(), (len + 2) / 3 * 4);
        EXPECT_EQ(text, CBase64Coder::Encode(bytes.data(), len));
        EXPECT_TRUE(CBase64Coder::Decode(text, decoded));
        EXPECT_EQ(decoded, bytes);

        const std::vector<char> exact(text.begin(), text.end()); // no terminating zero: nothing is read past
        unsigned char* decodedBytes = nullptr;
        unsigned long decodedLen = 0;
        mallopt(M_PERTURB, 0xAA); // what is allocated is zero only where it has been zeroed
        EXPECT_EQ(Base64Decode(exact.data(), static_cast<int>(exact.size()), &decodedBytes, &decodedLen), 0);
        mallopt(M_PERTURB, 0);
        EXPECT_EQ(std::string(decodedBytes, decodedBytes + exact.size()),
                  bytes + std::string(exact.size() - decodedLen, '\0'));
        std::free(decodedBytes);
    }
    EXPECT_EQ(CBase64Coder::Encode("", (size_t{1} << 30) + 1), "");
    std::string kept = "kept";
    for (const char* bad : {"A", "AA", "AAA", "A===", "====", "AA=A", "AA\n=", "AAA AAAA", "AA==AAAA"}) {
        EXPECT_FALSE(CBase64Coder::Decode(bad, kept)) << bad;
    }
    EXPECT_EQ(kept, "kept");
}

TEST_F(CryptoTest, WhatThePublicKeyEnciphersThePrivateKeyReads)
{
    for (const std::string& data : {std::string("x"), std::string("a\0b", 3), SomeBytes(96 - 11)}) {
        EXPECT_EQ(RsaPriDecrypt(RsaPubEncrypt(data, keys[0]), keys[1]), data);
    }
    EXPECT_EQ(RsaPriDecrypt("", keys[1]) + RsaPriDecrypt("AAAA", keys[0]), "");
    EXPECT_EQ(RsaPriDecrypt(std::string(132, 'A'), keys[1]), ""); // more bytes than the key has

    // The decoder's side.
    std::string cipher, plain(96, '\0');
    ASSERT_TRUE(CBase64Coder::Decode(RsaPubEncrypt("admin", keys[0]), cipher));
    const std::unique_ptr<BIO, decltype(&BIO_free)> pem(BIO_new_mem_buf(keys[1].data(), -1), BIO_free);
    const std::unique_ptr<RSA, decltype(&RSA_free)> key(
        PEM_read_bio_RSAPrivateKey(pem.get(), nullptr, nullptr, nullptr), RSA_free);
    const std::unique_ptr<BIO, decltype(&BIO_free)> locked(BIO_new(BIO_s_mem()), BIO_free);
    unsigned char passphrase = 0; // an empty one
    PEM_write_bio_RSAPrivateKey(locked.get(), key.get(), EVP_aes_128_cbc(), &passphrase, 0, nullptr, nullptr);
    const char* lockedText = nullptr;
    const auto lockedLen = static_cast<size_t>(BIO_get_mem_data(locked.get(), &lockedText));
    EXPECT_GT(lockedLen, keys[1].size());
    EXPECT_EQ(RsaPriDecrypt(RsaPubEncrypt("x", keys[0]), {lockedText, lockedLen}), "");
    EXPECT_EQ(
        RSA_private_decrypt(96, BytesOf(cipher), BytesOf<unsigned char>(plain), key.get(), RSA_PKCS1_PADDING),
        5);
    EXPECT_EQ(plain.substr(0, 5), "admin");
    EXPECT_TRUE(BN_is_word(RSA_get0_e(key.get()), 65537));
    EXPECT_EQ(RSA_bits(key.get()), 768);
}

TEST_F(CryptoTest, OnlyPkcs1PublicKeysOfSufficientSizeEncipher)
{
    std::string spki;
    RsaPubKeyPKCS1toPKCS8(keys[0], spki);
    EXPECT_EQ(keys[0].find("-----BEGIN RSA PUBLIC KEY-----\n"), 0U);
    EXPECT_TRUE(keys[0].ends_with("-----END RSA PUBLIC KEY-----\n"));
    EXPECT_EQ(spki.find("-----BEGIN PUBLIC KEY-----\n"), 0U);
    std::string locked = keys[0]; // would ask for a passphrase on the terminal
    locked.insert(locked.find('\n') + 1,
                  "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-128-CBC,000102030405060708090A0B0C0D0E0F\n\n");
    for (const std::string& key : {std::string(), spki, keys[1], locked, keys[0].substr(0, 60)}) {
        EXPECT_EQ(RsaPubEncrypt("secret", key), "") << key;
    }
    EXPECT_EQ(RsaPubEncrypt("", keys[0]) + RsaPubEncrypt(SomeBytes(96 - 10), keys[0]), "");
    RsaPubKeyPKCS1toPKCS8(spki, spki);
    EXPECT_EQ(spki, "");
}

TEST_F(CryptoTest, AesFillsTheLastBlockWithZeros)
{
    const char* key = "0123456789abcdef";
    std::string cipher, plain, text;
    EXPECT_EQ(AesCbcEncrypt("a wall of screens", 17, key, cipher), 32);
    Base64Encode(BytesOf(cipher), cipher.size(), text);
    EXPECT_EQ(text, "LgdND6Pvu3tap/0yTx7qsC35bXO3OfchsNQl14fBeFQ=");
    AesCbcEncrypt("cut\0here", 8, key, cipher);
    EXPECT_EQ(AesCbcDecrypt(cipher.data(), 16, key, plain), 16);
    EXPECT_EQ(plain, "cut");
}

TEST_F(CryptoTest, EncipheredTextHasNoSaltWhenWrittenAndThreeCharactersWhenRead)
{
    std::string out;
    ASSERT_TRUE(AesDataEncrypt("secret", "abckey", out));
    EXPECT_EQ(out, "mAwiAfOugDDCBRJO21Zhrw=="); // the key is filled up with zeros
    EXPECT_TRUE(AesDataDecrypt("abc" + out, "key", out));
    EXPECT_EQ(out, "secret");
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // a destructor would take places of the virtual table
// The host calls both by their places in the virtual table, and Decrypt calls Encrypt so.
TEST_F(CryptoTest, XorHasATableOfTwoOperations)
{
    EXPECT_EQ(Entries(&CEncryptXOR::Encrypt, &CEncryptXOR::Decrypt), (std::vector<long>{0, 1}));
    struct Replaced final : CEncryptXOR {
        void Encrypt(unsigned char* data, int, unsigned char*, int) override { *data = 'E'; }
    } replaced;
    unsigned char data = 'x';
    replaced.Decrypt(&data, 1, nullptr, 0);
    EXPECT_EQ(data, 'E');
}
#pragma GCC diagnostic pop

TEST_F(CryptoTest, NullPointersAndImpossibleLengthsAreFailures)
{
    const char key[16] = {};
    unsigned char letter = 'x';
    CEncryptXOR().Encrypt(&letter, 1, nullptr, 3);
    CEncryptXOR().Encrypt(&letter, -1, &letter, 1);
    EXPECT_EQ(letter, 'x');
    char digest[65] = "stale";
    std::string out = "kept";
    unsigned char* decodedBytes = nullptr;
    unsigned long decodedLen = 1;
    GenerateRsaKey(nullptr);
    Sha265_String(nullptr, 1, digest);
    EXPECT_STREQ(digest, "");
    for (const auto& [data, len] : {std::pair("abc", -1), {nullptr, 1}}) {
        digest[0] = 's';
        PUB_MD5Encrypt(data, len, digest, true);
        EXPECT_STREQ(digest, "");
    }
    Sha265_String("abc", 3, nullptr);
    PUB_MD5Encrypt("abc", 3, nullptr, true);
    for (const int len : {-1, INT_MAX}) {
        EXPECT_EQ(AesCbcEncrypt(key, len, key, out) + AesCbcDecrypt(key, len, key, out), 0);
    }
    EXPECT_EQ(AesCbcEncrypt(nullptr, 16, key, out) + AesCbcDecrypt(nullptr, 16, key, out), 0);
    EXPECT_EQ(AesCbcEncrypt(key, 16, nullptr, out) + AesCbcDecrypt(key, 16, nullptr, out), 0);
    EXPECT_FALSE(AesDataEncrypt("x", nullptr, out) || AesDataDecrypt("abcd", nullptr, out));
    EXPECT_EQ(out, "kept");
    for (const int len : {-1, 0, 4}) {
        Base64Decode(len == 4 ? nullptr : "AAAA", len, &decodedBytes, &decodedLen);
        EXPECT_TRUE(decodedBytes == nullptr && decodedLen == 0);
    }
    EXPECT_EQ(Base64Decode("AAAA", 4, nullptr, &decodedLen), 0);
    EXPECT_EQ(Base64Decode("AAAA", 4, &decodedBytes, nullptr), 0);
    EXPECT_EQ(CRsaPubKey(keys[0]).Encrypt({keys[0].data(), 0x100000003}), "");
    EXPECT_EQ(Base64Encode(nullptr, 1, out), 0);
    for (const unsigned long len : {0x60000001UL, 0x100000003UL}) {
        EXPECT_EQ(Base64Encode(BytesOf(keys[0]), len, out = "stale"), 0);
        EXPECT_EQ(out, "");
    }
}

} // namespace
