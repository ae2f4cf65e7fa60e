#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "HostFunctions.h"
#include "Link/NetPacketProcTWDecoderDev.h"
#include "LinkTexts.h"
#include <tuple>

namespace {

const char kFrameSource[] = "NetPacketProcTWDecoderDev";
const std::string kBeat = Bytes().Text("1111").U32(0);
const std::string kDeviceHead = "ABCD" + std::string(60, 'x');

// A parser with everything it delivered, one word a frame: "beat", "device", or "data:" with the payload.
class FramesTest : public testing::Test {
protected:
    FramesTest()
    {
        fake_host::Reset();
        EXPECT_TRUE(parser.Initial(nullptr, &parser)); // the last one counts
        EXPECT_TRUE(parser.Initial(&FramesTest::Deliver, this));
    }

    static unsigned int Deliver(tagNET_PACKETTYPE type, const char* data, unsigned long len, void* param)
    {
        auto& test = *static_cast<FramesTest*>(param);
        if (type == NET_PACKETTYPE_DATA && len == MEM_POOL_HANDLE_LEN) {
            test.delivered.push_back("data:" + std::string(MEM_POOL_GetData(data), MEM_POOL_GetLen(data)));
        } else if (type == NET_PACKETTYPE_DATA) {
            test.delivered.push_back("data:" + std::string(data, len));
        } else {
            EXPECT_EQ(len, type == NET_PACKETTYPE_BEAT ? 8U : 64U);
            test.delivered.push_back(type == NET_PACKETTYPE_BEAT ? "beat" : "device");
        }
        return 0;
    }

    bool Buffered(const std::string& bytes)
    {
        return parser.RecvProc(bytes.data(), bytes.size(), consumed, nullptr);
    }

    CNetPacketProcTWDECODERDev parser;
    std::vector<std::string> delivered;
    unsigned int consumed = 77;
    unsigned int needLen = 77;
};

using Words = std::vector<std::string>;

TEST_F(FramesTest, BothModesDeliverWholeFramesAndDirectModeTellsWhatTheNextOneNeeds)
{
    EXPECT_TRUE(CNetPacketProcTWDECODERDev::IsDeviceHead(kDeviceHead.data())); // as any other 64 bytes
    const std::tuple<std::string, Words, unsigned int, unsigned int> cases[] = {
        {kBeat + kBeat + Frame("<a/>"), {"beat", "beat", "data:<a/>"}, 28, 0},
        {Frame("<a/>") + Frame("<b/>"), {"data:<a/>", "data:<b/>"}, 24, 0},
        {"11111", {}, 0, 3},
        {Frame("<abc/>").substr(0, 7), {}, 0, 1},
        {Frame("<abc/>").substr(0, 8), {}, 0, 6},
        {kBeat + Frame("<abc/>").substr(0, 10), {"beat"}, 8, 4},
        {kBeat + "1", {"beat"}, 8, 7},
        {Frame("<abc/>") + "1", {"data:<abc/>"}, 14, 7},
        {kDeviceHead, {"device"}, 64, 0},
        {kDeviceHead.substr(0, 63), {}, 0, 1},
        {"111x" + kDeviceHead.substr(4), {"device"}, 64, 0},
        {kDeviceHead + kBeat, {"device", "beat"}, 72, 0},
        {Bytes().Text("1111").U32(0xFFFFFFF8), {}, 0, 0xFFFFFFF8},
        {Bytes().Text("1111").U32(0xFFFFFFFF).Text("x"), {}, 0, 0xFFFFFFFE},
    };
    for (const auto& [bytes, frames, expectedConsumed, expectedNeed] : cases) {
        SCOPED_TRACE(Hex(bytes.substr(0, 12)));
        delivered.clear();
        EXPECT_TRUE(parser.RecvProc(bytes.data(), bytes.size(), consumed, &needLen));
        EXPECT_EQ(delivered, frames);
        EXPECT_EQ(std::pair(consumed, needLen), std::pair(expectedConsumed, expectedNeed));

        for (size_t cut = 1; cut <= bytes.size(); ++cut) {
            delivered.clear();
            CNetPacketProcTWDECODERDev keeping;
            keeping.Initial(&FramesTest::Deliver, this);
            EXPECT_TRUE(keeping.RecvProc(bytes.data(), cut, consumed, nullptr));
            EXPECT_EQ(consumed, cut);
            for (const char byte : bytes.substr(cut)) { // then one by one
                EXPECT_TRUE(keeping.RecvProc(&byte, 1, consumed, nullptr));
            }
            EXPECT_EQ(delivered, frames) << cut;
        }
    }
    const std::string large = Frame(std::string(70000, 'x'));
    EXPECT_TRUE(Buffered(large) && consumed == large.size());
    EXPECT_TRUE(parser.RecvProc(large.data(), large.size(), consumed, &needLen) && consumed == large.size());
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    EXPECT_TRUE(fake_host::Logs().empty());
}

TEST_F(FramesTest, WithoutMemoryAMessageIsDroppedAndLostBytesEndTheStream)
{
    EXPECT_TRUE(Buffered(Frame("<lost/>").substr(0, 10)));
    fake_host::FailPoolAllocation(2); // the bytes are kept, the payload's own buffer is not made
    EXPECT_TRUE(Buffered(Frame("<lost/>").substr(10) + Frame("<next/>")));
    EXPECT_EQ(delivered, Words{"data:<next/>"});
    fake_host::FailPoolAllocation(1);
    EXPECT_FALSE(Buffered(kBeat));
}

TEST_F(FramesTest, MissingBytesAreReportedAndNothingElseHappens)
{
    const std::tuple<const char*, unsigned long, unsigned int*, int> cases[] = {
        {"", 0, &needLen, 136}, {nullptr, 9, &needLen, 135}, {"", 0, nullptr, 53}, {nullptr, 9, nullptr, 52}};
    for (const auto& [data, len, need, line] : cases) {
        fake_host::Reset();
        EXPECT_TRUE(parser.RecvProc(data, len, consumed, need));
        EXPECT_EQ(fake_host::CountAsserts(kFrameSource, line), 1) << line;
        EXPECT_EQ(fake_host::Logs().size(), 1U);
        EXPECT_EQ(consumed, need == nullptr ? len : 0U);
    }
    EXPECT_EQ(needLen, 0U);
}

TEST_F(FramesTest, FragmentsInOrderBecomeOneMessage)
{
    swl_combined_data live{0x80010007, 2, 0x80010006, 1, 3, 0};
    swl_combined_data play{9, 1, 3, 1, 3, 1};
    EXPECT_TRUE(parser.CombineDataProc(live, "abc", 3));
    EXPECT_TRUE(parser.CombineDataProc(play, "xyz", 3)); // another slot
    live.dwIndex = 2;
    for (const auto field :
         {&swl_combined_data::dwDataID, &swl_combined_data::dwTotalPack, &swl_combined_data::dwTotalLen}) {
        swl_combined_data stranger = live;
        ++(stranger.*field);
        EXPECT_FALSE(parser.CombineDataProc(stranger, "???", 3));
    }
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 265), 3);
    fake_host::FailPoolAllocation(1);
    EXPECT_FALSE(parser.CombineDataProc(live, "def", 3)); // may come again
    EXPECT_TRUE(parser.CombineDataProc({live.dwDataID, 2, live.dwTotalLen, 3, 0, 0}, "", 0));
    char* handle = MEM_POOL_New("def", 3);
    EXPECT_TRUE(parser.CombineDataProcMemPool(live, handle));
    MEM_POOL_Delete(handle);
    EXPECT_EQ(delivered, (Words{"data:xyz", "data:abcdef"}));
    EXPECT_EQ(fake_host::LiveBuffers(), 0);

    parser.Initial(nullptr, nullptr); // a message that nobody takes stays until the next one
    EXPECT_TRUE(parser.CombineDataProc(play, "xyz", 3) && Buffered(kBeat));
    EXPECT_EQ(fake_host::LiveBuffers(), 1);
}

TEST_F(FramesTest, FragmentsThatFitNowhereAreRefused)
{
    EXPECT_FALSE(parser.CombineDataProc({1, 1, 1, 1, 1, 2}, "a", 1));
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 239), 1);
    fake_host::FailPoolAllocation(1);
    EXPECT_FALSE(parser.CombineDataProc({1, 1, 1, 1, 1, 0}, "a", 1));
    EXPECT_FALSE(parser.CombineDataProc({0, 0, 0, 0, 0, 0}, "a", 1)); // equals an empty slot
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 265), 1);
    EXPECT_TRUE(parser.CombineDataProcMemPool({1, 2, 1, 1, 1, 0}, nullptr));
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 231), 1);
    EXPECT_TRUE(parser.CombineDataProc({1, 2, 1, 1, 1, 0}, nullptr, 5));
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 230), 2);
    EXPECT_TRUE(parser.CombineDataProc({2, 2, 0, 1, 1, 0}, "", 0)); // replaces the one before
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 231), 2);
    char* none = MEM_POOL_New("", 0);
    EXPECT_TRUE(parser.CombineDataProcMemPool({2, 2, 0, 1, 1, 0}, none));
    MEM_POOL_Delete(none);
    EXPECT_EQ(fake_host::CountAsserts(kFrameSource, 231), 3);
    EXPECT_EQ(fake_host::LiveBuffers(), 1);
    EXPECT_TRUE(delivered.empty());
}

} // namespace
