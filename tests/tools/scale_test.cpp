// What tvwall-scale concludes from its figures.

#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "ScaleReport.h"

namespace scale {
namespace {

// What is found wrong with a soak of 20 samples after something has been changed in a good one; one line.
std::string Verdict(const std::function<void(SScaleResult&)>& change, std::size_t nSamples = 20)
{
    standin_host::CHostEvents events;
    SScaleResult result(events);
    const SProcessFigures figures{40'000'000, 60'000'000, 103, 115};
    result.stages = {figures, figures, figures, figures, figures, figures, figures};
    result.load.nQueued = result.load.nDone = 1000;
    for (std::size_t i = 0; i < nSamples; ++i) {
        result.samples.push_back({static_cast<double>(i), figures, 50 * i, 300, 900});
        result.samples.back().figures.nHeap += i % 3 * 100'000; // commands under way
    }
    change(result);
    SScaleOptions options;
    options.soakMinutes = 1;
    std::string strText;
    for (const std::string& strComplaint : Complaints(options, result)) {
        strText += strComplaint + ';';
    }
    return strText;
}

void Grow(SScaleResult& result, std::size_t SProcessFigures::*figure, std::size_t nStep)
{
    for (std::size_t i = 0; i < result.samples.size(); ++i) {
        result.samples[i].figures.*figure += i * nStep;
    }
}

TEST(ScaleVerdict, NamesWhatWasLostOrGrew)
{
    const auto nothing = [](SScaleResult&) {};
    EXPECT_EQ(Verdict(nothing), "");
    EXPECT_EQ(Verdict(nothing, 7), "only 7 samples, too few to judge by;");
    const std::pair<std::string, std::function<void(SScaleResult&)>> cases[] = {
        {"3 commands got no answer;", [](SScaleResult& r) { r.load.nQueued += 3; }},
        {"1 answers came a second time;", [](SScaleResult& r) { ++r.load.nDoubled; }},
        {"1 commands were refused by the decoder;",
         [](SScaleResult& r) {
             --r.load.nDone;
             ++r.load.nRefused;
         }},
        {"1 answers are not those of their commands;",
         [](SScaleResult& r) {
             --r.load.nDone;
             ++r.load.nForeign;
         }},
        {"only 449 notifications came;",
         [](SScaleResult& r) {
             r.loadTime = std::chrono::seconds(92); // 10 decoders, one a second each
             r.nNotifications = r.nNumbered = 449;
         }},
        {"1 notifications had no number;", [](SScaleResult& r) { ++r.nNotifications; }},
        {"1 threads are not the host's;", [](SScaleResult& r) { ++r.stages.loaded.nThreads; }},
        {"a session holds 4100 bytes of heap;", [](SScaleResult& r) { r.stages.loaded.nHeap += 41'000; }},
        {"the heap grew from 40268000 to 40484000 bytes;",
         [](SScaleResult& r) { Grow(r, &SProcessFigures::nHeap, 24'000); }},
        {"", [](SScaleResult& r) { Grow(r, &SProcessFigures::nHeap, 100); }},
        {"resident memory grew from 61400000 to 63400000 bytes;",
         [](SScaleResult& r) { Grow(r, &SProcessFigures::nResident, 200'000); }},
        {"the number of descriptors went from 115 to 116;",
         [](SScaleResult& r) { ++r.samples.back().figures.nDescriptors; }},
    };
    for (const auto& [strExpected, change] : cases) {
        EXPECT_EQ(Verdict(change), strExpected);
    }
}

TEST(LoadCommand, TellsItsOwnAnswerFromThatOfAnotherCommand)
{
    standin_host::CHostEvents events;
    STally tally(events);
    const auto answered = [&](std::optional<std::vector<uint8_t>> own, const std::string& strBuffer) {
        auto* pCommand = new CLoadCommand(1, tally, std::move(own));
        if (strBuffer.empty()) {
            ORVA_NET_PROTOCOL::_kest_net_reply refusal{};
            refusal.dwResult = ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR;
            pCommand->ReplyRecord(refusal);
        } else {
            pCommand->ReplyBuffer(strBuffer.data(), strBuffer.size());
        }
        pCommand->DecReference(CLoadCommand::kCreatorTag);
        return std::array<uint64_t, 3>{tally.nDone.exchange(0), tally.nRefused.exchange(0),
                                       tally.nForeign.exchange(0)};
    };
    using Counts = std::array<uint64_t, 3>;
    EXPECT_EQ(answered({{'a', 'b'}}, "ab"), (Counts{1, 0, 0}));
    EXPECT_EQ(answered({{'a', 'b'}}, "aB"), (Counts{0, 0, 1}));
    EXPECT_EQ(answered({{'a', 'b'}}, "abc"), (Counts{0, 0, 1}));
    EXPECT_EQ(answered({{'a', 'b'}}, ""), (Counts{0, 1, 0}));
    EXPECT_EQ(answered(std::nullopt, ""), (Counts{1, 0, 0})) << "the refusal was due";
    EXPECT_EQ(answered(std::nullopt, "ab"), (Counts{0, 0, 1}));
}

TEST(LatencyHistogram, IsExactToThreePercentOverItsWholeRange)
{
    for (const uint64_t nValue : {0ULL, 31ULL, 32ULL, 33ULL, 63ULL, 64ULL, 1000ULL, 123'456'789ULL, ~0ULL}) {
        CLatencyHistogram histogram;
        histogram.Record(nValue);
        const uint64_t nRead = histogram.Percentile(1);
        EXPECT_GE(nRead, nValue);
        EXPECT_LE(nRead - nValue, nValue / 32) << nValue;
    }
    CLatencyHistogram recent;
    for (uint64_t i = 1; i <= 1000; ++i) {
        recent.Record(i);
    }
    CLatencyHistogram all;
    all.Take(recent);
    EXPECT_EQ(recent.Count(), 0U);
    EXPECT_EQ(all.Count(), 1000U);
    EXPECT_NEAR(static_cast<double>(all.Percentile(0.5)), 500, 16);
    EXPECT_NEAR(static_cast<double>(all.Percentile(0.99)), 990, 31);
}

} // namespace
} // namespace scale
