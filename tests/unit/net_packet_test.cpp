#include <gtest/gtest.h>
#include <string>

#include "FakeHost.h"
#include "HostFunctions.h"
#include "NetPacketNew.h"

namespace {

bool Save(CNetPacketNew& queue, const std::string& bytes)
{
    return queue.SaveBuffer(bytes.data(), bytes.size());
}

// The first n bytes, by both ways of asking for them.
std::string Front(const CNetPacketNew& queue, unsigned long n)
{
    std::string head(n, '?');
    char* packet = queue.GetPacket(n);
    EXPECT_EQ(queue.GetPacketHead(head.data(), n), packet != nullptr);
    if (packet == nullptr) {
        return "none";
    }
    EXPECT_EQ(std::string(MEM_POOL_GetData(packet), MEM_POOL_GetLen(packet)), head);
    queue.ReleasePack(packet);
    return head;
}

} // namespace

class NetPacket : public testing::Test {
protected:
    void SetUp() override { fake_host::Reset(); }
    void TearDown() override
    {
        EXPECT_EQ(fake_host::LiveBuffers(), before) << "pool references do not balance";
    }

    const long before = fake_host::LiveBuffers();
};

TEST_F(NetPacket, EveryCutOfTheBytesGivesTheSameBytesBack)
{
    const std::string text = "abcdefghij";
    for (size_t first = 1; first < text.size(); ++first) {
        for (size_t drop = 0; drop <= text.size(); ++drop) {
            CNetPacketNew queue;
            EXPECT_TRUE(Save(queue, text.substr(first, 1)));
            EXPECT_TRUE(Save(queue, text.substr(first + 1)));
            EXPECT_TRUE(queue.SaveBufferFront(text.data(), first));
            EXPECT_TRUE(queue.TruncateFront(drop));
            const std::string rest = text.substr(drop);
            for (size_t n = 0; n <= rest.size(); ++n) {
                EXPECT_EQ(Front(queue, n), rest.substr(0, n));
            }
            EXPECT_TRUE(queue.HaveData(rest.size()));
            EXPECT_EQ(Front(queue, rest.size() + 1), "none");
        }
    }
}

TEST_F(NetPacket, TruncatingMoreThanIsHeldIsReportedAndChangesNothing)
{
    CNetPacketNew queue;
    EXPECT_TRUE(Save(queue, "abc"));
    EXPECT_FALSE(queue.TruncateFront(4));
    EXPECT_EQ(fake_host::CountAsserts("NetPacketNew", 158), 1);
    EXPECT_EQ(Front(queue, 3), "abc");
    EXPECT_TRUE(queue.TruncateFront(3));
    EXPECT_EQ(fake_host::LiveBuffers(), before) << "a used buffer is given back at once";
    EXPECT_EQ(fake_host::Logs().size(), 1u);
}

TEST_F(NetPacket, APoolHandleIsHeldByAReferenceOfItsOwn)
{
    CNetPacketNew queue;
    const std::string text = "hello" + std::string(70000, '!');
    char* buffer = MEM_POOL_New(text.data(), text.size());
    EXPECT_TRUE(queue.SaveBuffer(buffer, 0xFFFFFFFF)); // as hosts mark one
    MEM_POOL_Delete(buffer);
    EXPECT_TRUE(Save(queue, " you"));
    EXPECT_EQ(Front(queue, text.size() + 4), text + " you");
    // The same buffer twice: what is cut from one is missing from the other, and nothing is read behind the
    // end.
    EXPECT_TRUE(queue.SaveBuffer(buffer, 0xFFFFFFFF));
    EXPECT_TRUE(queue.TruncateFront(3));
    EXPECT_EQ(Front(queue, 2 * text.size() + 1), "none");
    EXPECT_TRUE(queue.TruncateFront(2 * text.size() + 1));
}

TEST_F(NetPacket, WithoutMemoryNothingIsHeldAndNothingIsLost)
{
    CNetPacketNew queue;
    EXPECT_TRUE(Save(queue, "abc"));
    fake_host::FailPoolAllocation(1);
    EXPECT_FALSE(Save(queue, "def"));
    EXPECT_TRUE(Save(queue, "ghi"));
    for (const int failing : {1, 2}) { // the new buffer, then its growth
        fake_host::FailPoolAllocation(failing);
        EXPECT_EQ(queue.GetPacket(6), nullptr);
    }
    EXPECT_TRUE(queue.SaveBuffer(nullptr, 0xFFFFFFFF)) << "null data counts as no bytes";
    EXPECT_TRUE(queue.SaveBuffer(nullptr, 5));
    EXPECT_EQ(Front(queue, 6), "abcghi");
    EXPECT_FALSE(queue.HaveData(7));
}
