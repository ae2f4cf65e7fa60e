// The two requests that carry credentials, through the real handlers, against the bare RSA calls that they
// need: the counter "vs_rsa" is the ratio of the two. 16 windows of 16 sub-windows with one stream each make
// 512 texts to encipher; WallByKey is such a wall under longer keys, and under the exponent that takes
// longest.

#include <memory>
#include <string>
#include <vector>

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/bn.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <benchmark/benchmark.h>

#include "BenchSession.h"
#include "LinkTexts.h"
#include "Ratio.h"

namespace {

constexpr unsigned int kWindows = 16;
constexpr unsigned int kSubWindows = 16;
constexpr int kCredentials = 2 * kWindows * kSubWindows;

const std::string kUser = "operator";
const std::string kPassword = "a password of a camera";

constexpr int kDecoderKeyBits = 1024; // size of the decoder's keys

// A public key without a private one; enciphering takes as long as with any other.
class DecoderKey {
public:
    DecoderKey(int bits, unsigned long exponent)
        : m_key(RSA_new(), &RSA_free), m_cipher(static_cast<size_t>(bits) / 8)
    {
        BIGNUM* modulus = BN_new();
        BIGNUM* bigExponent = BN_new();
        BN_rand(modulus, bits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ODD);
        BN_set_word(bigExponent, exponent);
        RSA_set0_key(m_key.get(), modulus, bigExponent, nullptr);
    }

    // Length of an enciphered text, in characters.
    size_t TextLen() const { return (m_cipher.size() + 2) / 3 * 4; }

    std::string Pem() const
    {
        const std::unique_ptr<BIO, decltype(&BIO_free)> text(BIO_new(BIO_s_mem()), &BIO_free);
        PEM_write_bio_RSAPublicKey(text.get(), m_key.get());
        const char* data = nullptr;
        const long len = BIO_get_mem_data(text.get(), &data);
        return {data, static_cast<size_t>(len)};
    }

    void Encipher(const std::string& text)
    {
        const auto* data = reinterpret_cast<const unsigned char*>(text.data());
        const int len = RSA_public_encrypt(static_cast<int>(text.size()), data, m_cipher.data(), m_key.get(),
                                           RSA_PKCS1_PADDING);
        benchmark::DoNotOptimize(len);
    }

private:
    std::unique_ptr<RSA, decltype(&RSA_free)> m_key;
    std::vector<unsigned char> m_cipher;
};

std::string Credentials() { return Field("10.0.0.9", 32) + Field(kUser, 256) + Field(kPassword, 256); }

std::string Media()
{
    Bytes record = Bytes().U32(kWindows);
    for (unsigned int id = 0; id < kWindows; ++id) {
        record.U32(id).U32(kSubWindows);
        for (unsigned int index = 0; index < kSubWindows; ++index) {
            record.U32(index).U32(1).U32(0).Text("ABCDEFGHIJKLMNOP").U32(1).U32(0).U32(554).U32(0).Zeros(28);
            record.Text(Credentials());
        }
    }
    return Option(0x60004, record);
}

std::string Wall()
{
    Bytes record = Bytes().U32(kWindows);
    for (unsigned int id = 0; id < kWindows; ++id) {
        record.U16(id).U16(1).U16(kSubWindows).Zeros(4).U16(1920).U16(1080).U32(kSubWindows);
        for (unsigned int index = 0; index < kSubWindows; ++index) {
            record.U16(index).U16(index).U16(1).U16(0).U16(554).Zeros(14).Text("ABCDEFGHIJKLMNOP");
            record.Text(Credentials()).U32(0);
        }
    }
    return Option(0x60010, record);
}

void RunBeside(benchmark::State& state, unsigned int cmdID, std::string payload,
               int keyBits = kDecoderKeyBits, unsigned long exponent = RSA_F4)
{
    DecoderKey key(keyBits, exponent);
    BenchSession session("<pubkey1>" + key.Pem() + "</pubkey1><pubkey2>" + key.Pem() + "</pubkey2>");
    session.Run(cmdID, payload);
    if (!session.Succeeded() || session.RequestLen() < size_t{kCredentials} * key.TextLen()) {
        state.SkipWithError("the credentials were not sent");
        return;
    }
    RunRatio(
        state, "vs_rsa", [&] { session.Run(cmdID, payload); },
        [&] {
            for (int i = 0; i < kCredentials; i += 2) {
                key.Encipher(kUser);
                key.Encipher(kPassword);
            }
        });
}

void DoPlayMedia(benchmark::State& state) { RunBeside(state, 0x50002, Media()); }
void SetWallInfo(benchmark::State& state) { RunBeside(state, 0x50001, Wall()); }
void WallByKey(benchmark::State& state)
{
    RunBeside(state, 0x50001, Wall(), static_cast<int>(state.range(0)),
              static_cast<unsigned long>(state.range(1)));
}
BENCHMARK(DoPlayMedia)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SetWallInfo)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(WallByKey)
    ->ArgNames({"bits", "exponent"})
    ->ArgsProduct({{1024, 2048, 4096, 8192, 16384}, {RSA_F4, 0xFFFFFFFF}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
