// What composing a request allocates, and what the session keeps of it.

#include "AllocationFault.h"
#include "Session/Envelope.h"
#include "SessionFixture.h"

namespace {

constexpr unsigned int kSmall = 4;
constexpr unsigned int kLarge = 256;

class RequestMemoryTest : public SessionFixture {
protected:
    // Windows with 16 sub-windows each.
    static void AddWindows(CMarkupSTL& doc, unsigned int windows)
    {
        for (unsigned int n = 0; n < 16 * windows; ++n) {
            CElemScope item(doc, "item");
            doc.AddElem("index", n % 16);
            doc.AddElem("osdid", n);
        }
    }
    static std::string BodyFor(CNetProtocolProcTWDECODERDevImp& session, unsigned int windows)
    {
        CDeviceRequest request(session, "docreatewindow");
        AddWindows(request.Body(), windows);
        return BodyOf(request.Doc().GetDoc());
    }
    // Bytes for one request, whose text the command writes itself.
    long Taken(unsigned int windows)
    {
        const long before = allocation_fault::TakenBytes();
        CDeviceRequest request(session);
        AddWindows(request.Doc(), windows);
        return allocation_fault::TakenBytes() - before;
    }
    CNetProtocolProcTWDECODERDevImp other;
};

TEST_F(RequestMemoryTest, ALargeRequestIsComposedInTheMemoryOfTheOneBefore)
{
    constexpr long kMostForEachByte = 10; // text and index, and what they grow out of
    constexpr long kForElementsEntered = 64;
    const std::string body = BodyFor(other, kLarge);
    EXPECT_LT(Taken(kLarge), kMostForEachByte * static_cast<long>(body.size()));
    EXPECT_LE(Taken(kLarge), kForElementsEntered);
    Taken(kSmall);
    EXPECT_EQ(BodyFor(session, kLarge), body);
    {
        CDeviceRequest outer(session, "dowallclear");
        AddWindows(outer.Body(), kLarge);
        EXPECT_EQ(BodyFor(session, kSmall), BodyFor(other, kSmall)) << "composed while another request waits";
        EXPECT_EQ(BodyOf(outer.Doc().GetDoc()), body);
    }
    EXPECT_LE(Taken(kLarge), kForElementsEntered);
}

TEST_F(RequestMemoryTest, SmallAndHugeRequestsLeaveNothing)
{
    const long live = allocation_fault::LiveBytes();
    Taken(kSmall);
    EXPECT_EQ(allocation_fault::LiveBytes(), live);
    Taken(kLarge);
    EXPECT_LE(allocation_fault::LiveBytes(), live + (2 << 20) + 4096);
    EXPECT_GT(allocation_fault::LiveBytes(), live);
    for (const unsigned int times : {3U, 16U}) { // at first little text, but many elements
        Taken(times * kLarge);
        EXPECT_EQ(allocation_fault::LiveBytes(), live);
    }
}

} // namespace
