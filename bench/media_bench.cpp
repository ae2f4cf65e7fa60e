// The two requests that carry credentials, through the real handlers, beside the bare RSA calls that they
// need: the counter "vs_rsa" is the ratio of the two. 16 windows of 16 sub-windows with one stream each make
// 512 texts to encipher.

#include <algorithm>
#include <memory>
#include <string>

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <benchmark/benchmark.h>

#include "CmdProcObject.h"
#include "FakeHost.h"
#include "LinkTexts.h"
#include "NetNode.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "Ratio.h"
#include "TestClock.h"

namespace {

constexpr unsigned int WINDOWS = 16;
constexpr unsigned int SUB_WINDOWS = 16;
constexpr int CREDENTIALS = 2 * WINDOWS * SUB_WINDOWS;

const std::string USER = "operator";
const std::string PASSWORD = "a password of a camera";

// A key of the size that the decoder's keys have.
class DecoderKey {
public:
    DecoderKey() : m_key(RSA_generate_key(1024, RSA_F4, nullptr, nullptr), &RSA_free) {}

    std::string Pem() const
    {
        const std::unique_ptr<BIO, decltype(&BIO_free)> text(BIO_new(BIO_s_mem()), &BIO_free);
        PEM_write_bio_RSAPublicKey(text.get(), m_key.get());
        const char* data = nullptr;
        const long nLen = BIO_get_mem_data(text.get(), &data);
        return {data, static_cast<size_t>(nLen)};
    }

    void Encipher(const std::string& text)
    {
        const auto* data = reinterpret_cast<const unsigned char*>(text.data());
        const int nLen =
            RSA_public_encrypt(static_cast<int>(text.size()), data, m_cipher, m_key.get(), RSA_PKCS1_PADDING);
        benchmark::DoNotOptimize(nLen);
    }

private:
    std::unique_ptr<RSA, decltype(&RSA_free)> m_key;
    unsigned char m_cipher[128];
};

// A host and a link that copy nothing: what they do with the bytes is theirs.
class Node final : public CNetNode {
public:
    void DeliverCommand(unsigned int, CCmdProcParam*) override {}
    bool SendData(const void* pData, unsigned long nLen) override
    {
        constexpr unsigned long ENVELOPE_LEN = 300;
        m_envelope.assign(static_cast<const char*>(pData), std::min(nLen, ENVELOPE_LEN));
        m_nLen = nLen;
        return true;
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override {}
    GUID GetNodeID() const override { return {}; }

    std::string m_envelope; // of the last request
    unsigned long m_nLen = 0;
};

class Command final : public CCmdProcObject {
public:
    explicit Command(unsigned int nCmdID) : m_nCmdID(nCmdID) {}
    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {}
    void DecReference(int) override {}
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply&) override {}
    void ReplyBuffer(const char* pData, unsigned long) override { m_bSucceeded = pData != nullptr; }

    bool m_bSucceeded = false;

private:
    unsigned int m_nCmdID;
};

// A logged-in session whose decoder answers at the first poll.
class Session {
public:
    explicit Session(const std::string& keyPem)
    {
        fake_host::SetLogRecording(false);
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this, keyPem](unsigned int) {
            const std::string keys = "<pubkey1>" + keyPem + "</pubkey1><pubkey2>" + keyPem + "</pubkey2>";
            const std::string reply =
                Frame(ReplyText("dologin", Element(m_node.m_envelope, "seq"), "0", "", keys));
            unsigned int nNeed = 0;
            m_session.OnSocketRecvData(0, reply.data(), static_cast<unsigned int>(reply.size()), &nNeed,
                                       nullptr);
        });
        std::string login = LoginPayload("admin", "secret");
        m_bLoggedIn = Run(0x101, login);
    }
    ~Session() { test_clock::SetSleepHook({}); }

    bool IsLoggedIn() const { return m_bLoggedIn; }
    size_t LastRequestLen() const { return m_node.m_nLen; }

    // False when the host gets no success.
    bool Run(unsigned int nCmdID, std::string& payload)
    {
        Command command(nCmdID);
        m_session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                 static_cast<unsigned int>(payload.size()));
        return command.m_bSucceeded;
    }

private:
    Node m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
    bool m_bLoggedIn = false;
};

std::string Field(const std::string& text, size_t nSize)
{
    return text + std::string(nSize - text.size(), '\0');
}

std::string Credentials() { return Field("10.0.0.9", 32) + Field(USER, 256) + Field(PASSWORD, 256); }

std::string Media()
{
    Bytes record = Bytes().U32(WINDOWS);
    for (unsigned int id = 0; id < WINDOWS; ++id) {
        record.U32(id).U32(SUB_WINDOWS);
        for (unsigned int index = 0; index < SUB_WINDOWS; ++index) {
            record.U32(index).U32(1).U32(0).Text("ABCDEFGHIJKLMNOP").U32(1).U32(0).U32(554).U32(0).Zeros(28);
            record.Text(Credentials());
        }
    }
    return Option(0x60004, record);
}

std::string Wall()
{
    Bytes record = Bytes().U32(WINDOWS);
    for (unsigned int id = 0; id < WINDOWS; ++id) {
        record.U16(id).U16(1).U16(SUB_WINDOWS).Zeros(4).U16(1920).U16(1080).U32(SUB_WINDOWS);
        for (unsigned int index = 0; index < SUB_WINDOWS; ++index) {
            record.U16(index).U16(index).U16(1).U16(0).U16(554).Zeros(14).Text("ABCDEFGHIJKLMNOP");
            record.Text(Credentials()).U32(0);
        }
    }
    return Option(0x60010, record);
}

void RunBeside(benchmark::State& state, unsigned int nCmdID, std::string payload)
{
    DecoderKey key;
    Session session(key.Pem());
    if (!session.IsLoggedIn() || !session.Run(nCmdID, payload) ||
        session.LastRequestLen() < size_t{CREDENTIALS} * 172) {
        state.SkipWithError("the credentials were not sent");
        return;
    }
    RunRatio(
        state, "vs_rsa", [&] { session.Run(nCmdID, payload); },
        [&] {
            for (int i = 0; i < CREDENTIALS; i += 2) {
                key.Encipher(USER);
                key.Encipher(PASSWORD);
            }
        });
}

void DoPlayMedia(benchmark::State& state) { RunBeside(state, 0x50002, Media()); }
void SetWallInfo(benchmark::State& state) { RunBeside(state, 0x50001, Wall()); }
BENCHMARK(DoPlayMedia)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SetWallInfo)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
