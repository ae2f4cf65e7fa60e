#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <list>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "AtomicAccess.h"
#include "Interlocked.h"
#include "Lock.h"
#include "Mutex.h"
#include "PFTime.h"
#include "SysHelper.h"
#include "TypeCheck.h"
#include "Wipe.h"

namespace {

constexpr unsigned int kFarAhead = 0xFFFFFFFF;

void RunThreads(int threadCount, const std::function<void()>& work)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back(work);
    }
}

TEST(PlatformTest, DeadlinesCarryIntoTheSeconds)
{
    const auto add = [](long ns, unsigned int ms) {
        const timespec sum = CPFTime::AddMilliseconds({7, ns}, ms);
        return std::pair(sum.tv_sec, sum.tv_nsec);
    };
    EXPECT_EQ(add(0, 999), std::pair(7L, 999'000'000L));
    EXPECT_EQ(add(999'000'000, 1), std::pair(8L, 0L));
    EXPECT_EQ(add(999'999'999, 0), std::pair(7L, 999'999'999L));
    EXPECT_EQ(add(999'999'999, kFarAhead), std::pair(4'294'975L, 294'999'999L));
}

TEST(PlatformTest, AnEventReleasesOneWaitPerSetOrAllUntilReset)
{
    for (const bool manual : {false, true}) {
        CMyEvent event(manual);
        EXPECT_EQ(event.WaitEvent(0), WAIT_TIMED_OUT);
        EXPECT_TRUE(event.SetEvent() && event.SetEvent());
        EXPECT_EQ(event.WaitEvent(0), WAIT_SIGNALLED);
        EXPECT_EQ(event.WaitEvent(0), manual ? WAIT_SIGNALLED : WAIT_TIMED_OUT);
        event.SetEvent();
        {
            const CMySingleEvent running(event);
            EXPECT_EQ(event.WaitEvent(1), WAIT_TIMED_OUT);
        }
        EXPECT_EQ(event.WaitEvent(0), WAIT_SIGNALLED);
    }
}

TEST(PlatformTest, SeveralEventsArePolledInPasses)
{
    const auto wait = [](const std::vector<bool>& signalled, bool waitAll, unsigned int ms) {
        std::list<CMyEvent> events;
        std::vector<const CMyEvent*> pointers;
        for (const bool isSignalled : signalled) {
            pointers.push_back(&events.emplace_back(waitAll)); // may be seen signalled again
            isSignalled ? events.back().SetEvent() : events.back().ResetEvent();
        }
        return WaitForMultipleObjects(static_cast<int>(pointers.size()), pointers.data(), waitAll, ms);
    };
    EXPECT_EQ(wait({false, true, true}, false, 0), 1U);
    EXPECT_EQ(wait({true}, false, 0), 0U);
    EXPECT_EQ(wait({false}, true, 0), WAIT_TIMED_OUT);
    EXPECT_EQ(wait({false, false}, false, 0), WAIT_TIMED_OUT);
    EXPECT_EQ(wait({}, false, kFarAhead), WAIT_TIMED_OUT);
    EXPECT_EQ(wait({}, true, 0), WAIT_SIGNALLED);
    EXPECT_EQ(WaitForMultipleObjects(-1, nullptr, true, 0), WAIT_SIGNALLED);
    EXPECT_EQ(wait({true, true}, true, 10), WAIT_SIGNALLED);
    EXPECT_EQ(wait({true, true}, true, 9), WAIT_TIMED_OUT); // the first pass ends at event 0 and counts 10 ms
    EXPECT_EQ(wait({true, false}, true, 30), WAIT_TIMED_OUT);
}

TEST(PlatformTest, ASemaphoreCountsUpToItsMaximum)
{
    CMySemaphore semaphore(9, 3);
    int prev = -1;
    EXPECT_FALSE(semaphore.unlock());
    EXPECT_TRUE(semaphore.lock(0) && semaphore.lock(kFarAhead) && semaphore.trylock());
    EXPECT_FALSE(semaphore.trylock() || semaphore.lock(1));
    EXPECT_TRUE(semaphore.unlock(2, &prev));
    EXPECT_EQ(prev, 0);
    for (const int wrong : {2, 0, -1}) {
        EXPECT_FALSE(semaphore.unlock(wrong, &prev)) << wrong;
        EXPECT_EQ(prev, 2);
    }
    {
        const std::jthread producer([&] { EXPECT_TRUE(semaphore.unlock()); });
        RunThreads(3, [&] { semaphore.lock(); });
    }
    EXPECT_FALSE(semaphore.trylock());
}

TEST(PlatformTest, CountersAreAtomicAndAStorePublishesWhatWasWrittenBefore)
{
    ASSERT_EQ(Interlocked(-5).Decrement(), -6); // or the threads would wait for ever
    Interlocked counter(5), arrived(0), running(4);
    EXPECT_EQ(counter.ExchangeAdd(7), 5);
    EXPECT_EQ(counter.SetValue(0), 12);
    std::string text;
    const char* published = nullptr;
    CMutex mutex;
    CRecursiveMutex recursive;
    const std::unique_lock once(recursive), again(recursive);
    int guarded = 0;
    RunThreads(4, [&] {
        arrived.ExchangeAdd(1);
        while (arrived < 4) { // all at once
        }
        for (int i = 0; i < 100'000; ++i) {
            counter.Increment();
            const TMutexGuard lock(mutex);
            ++guarded;
        }
        if (running.Decrement() == 0) { // true for one thread alone
            text = "reply";
            AtomicStore(published, text.c_str());
        }
        while (AtomicLoad(published) == nullptr) {
            std::this_thread::yield();
        }
        EXPECT_EQ(text, "reply");
    });
    EXPECT_EQ(counter.Increment(), 400'001);
    EXPECT_EQ(guarded, 400'000);
}

TEST(PlatformTest, AWipedValueIsWipedWhole)
{
    using Secret = TWiped<std::array<char, 99>>;
    alignas(Secret) char memory[sizeof(Secret)];
    std::fill_n(memory, sizeof(memory), 's');
    auto* secret = new (memory) Secret;
    EXPECT_EQ(secret->value, Secret().value); // zeros
    secret->value.fill('s');
    secret->~Secret();
    EXPECT_EQ(std::string(memory, sizeof(memory)).find('s'), std::string::npos);
}

TEST(PlatformTest, GuidTextIsUpperCaseInBraces)
{
    const GUID guid{0x1A2B3C4D, 0x0E5F, 0xABCD, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
    EXPECT_EQ(CSysHelper::GuidToString(guid), "{1A2B3C4D-0E5F-ABCD-0123-456789ABCDEF}");
    char buffer[39];
    EXPECT_TRUE(CSysHelper::GuidToString(guid, buffer, 39));
    EXPECT_STREQ(buffer, "{1A2B3C4D-0E5F-ABCD-0123-456789ABCDEF}");
    EXPECT_FALSE(CSysHelper::GuidToString(guid, buffer, 0));
}

TEST(PlatformTest, NodeTypesLieBetweenTheirRangeMarkers)
{
    EXPECT_EQ(CTypeCheck::GetDECODERAbstractTypeValue(), 513U);
    EXPECT_TRUE(CTypeCheck::IsDecoder_s(513, nullptr) && CTypeCheck::NODE_TYPE_SCREEN_LED_BEGIN == 753U);
    for (const unsigned int type :
         {0U, 1U, 31U, 32U, 131U, 132U, 133U, 134U, 512U, 513U, 751U, 752U, 0xFFFFFFFFU}) {
        const CTypeCheck check(type);
        CTypeCheck::CDecoderTypeCheck out, outStatic;
        EXPECT_EQ(check.IsDecoder(&out), type == 513 || type == 751) << type;
        EXPECT_EQ(out.m_dwTypeValue, type);
        EXPECT_EQ(CTypeCheck::IsDecoder_s(type, &outStatic), type == 513 || type == 751);
        EXPECT_EQ(outStatic.m_dwTypeValue, type);
        EXPECT_EQ(std::tuple(check.IsClient(), check.IsWall(), check.IsChannelGroup()),
                  std::tuple(type == 1 || type == 31, type == 132, type == 133))
            << type;
    }
}

} // namespace
