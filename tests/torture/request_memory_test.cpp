// What composing a request allocates, and what the session keeps of it.

#include "AllocationFault.h"
#include "Session/Envelope.h"
#include "SessionFixture.h"

namespace {

constexpr unsigned int SMALL = 4;
constexpr unsigned int LARGE = 256;

class RequestMemoryTest : public SessionFixture {
protected:
    // Windows with 16 sub-windows each.
    static void AddWindows(CDeviceRequest& request, unsigned int nWindows)
    {
        for (unsigned int n = 0; n < 16 * nWindows; ++n) {
            CElemScope item(request.Body(), "item");
            request.Body().AddElem("index", n % 16);
            request.Body().AddElem("osdid", n);
        }
    }
    static std::string BodyFor(CNetProtocolProcTWDECODERDevImp& session, unsigned int nWindows)
    {
        CDeviceRequest request(session, "docreatewindow");
        AddWindows(request, nWindows);
        return BodyOf(request.Doc().GetDoc());
    }
    // Bytes for one request.
    long Taken(unsigned int nWindows)
    {
        const long nBefore = allocation_fault::TakenBytes();
        CDeviceRequest request(session, "docreatewindow");
        AddWindows(request, nWindows);
        return allocation_fault::TakenBytes() - nBefore;
    }
    CNetProtocolProcTWDECODERDevImp other;
};

TEST_F(RequestMemoryTest, ALargeRequestIsComposedInTheMemoryOfTheOneBefore)
{
    constexpr long MOST_FOR_EACH_BYTE = 10; // text and index, and what they grow out of
    constexpr long FOR_ELEMENTS_ENTERED = 64;
    const std::string body = BodyFor(other, LARGE);
    EXPECT_LT(Taken(LARGE), MOST_FOR_EACH_BYTE * static_cast<long>(body.size()));
    EXPECT_LE(Taken(LARGE), FOR_ELEMENTS_ENTERED);
    Taken(SMALL);
    EXPECT_EQ(BodyFor(session, LARGE), body);
    {
        CDeviceRequest outer(session, "dowallclear");
        AddWindows(outer, LARGE);
        EXPECT_EQ(BodyFor(session, SMALL), BodyFor(other, SMALL)) << "composed while another request waits";
        EXPECT_EQ(BodyOf(outer.Doc().GetDoc()), body);
    }
    EXPECT_LE(Taken(LARGE), FOR_ELEMENTS_ENTERED);
}

TEST_F(RequestMemoryTest, SmallAndHugeRequestsLeaveNothing)
{
    const long nLive = allocation_fault::LiveBytes();
    Taken(SMALL);
    EXPECT_EQ(allocation_fault::LiveBytes(), nLive);
    Taken(LARGE);
    EXPECT_LE(allocation_fault::LiveBytes(), nLive + (2 << 20) + 4096);
    EXPECT_GT(allocation_fault::LiveBytes(), nLive);
    Taken(16 * LARGE);
    EXPECT_EQ(allocation_fault::LiveBytes(), nLive);
}

} // namespace
