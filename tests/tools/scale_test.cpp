// What tvwall-scale concludes from its figures.

#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "ScaleReport.h"

namespace scale {
namespace {

// What is found wrong with a soak of 20 samples after something has been changed in a good one; one line.
std::string Verdict(const std::function<void(ScaleResult&)>& change, std::size_t samples = 20)
{
    standin_host::HostEvents events;
    ScaleResult result(events);
    const ProcessFigures figures{40'000'000, 60'000'000, 103, 115};
    result.stages = {figures, figures, figures, figures, figures, figures, figures};
    result.load.queued = result.load.done = 1000;
    for (std::size_t i = 0; i < samples; ++i) {
        result.samples.push_back({static_cast<double>(i), figures, 50 * i, 300, 900});
        result.samples.back().figures.heap += i % 3 * 100'000; // commands under way
    }
    change(result);
    ScaleOptions options;
    options.soakMinutes = 1;
    std::string text;
    for (const std::string& complaint : Complaints(options, result)) {
        text += complaint + ';';
    }
    return text;
}

void Grow(ScaleResult& result, std::size_t ProcessFigures::*figure, std::size_t step)
{
    for (std::size_t i = 0; i < result.samples.size(); ++i) {
        result.samples[i].figures.*figure += i * step;
    }
}

TEST(ScaleVerdict, NamesWhatWasLostOrGrew)
{
    const auto nothing = [](ScaleResult&) {};
    EXPECT_EQ(Verdict(nothing), "");
    EXPECT_EQ(Verdict(nothing, 7), "only 7 samples, too few to judge by;");
    const std::pair<std::string, std::function<void(ScaleResult&)>> cases[] = {
        {"3 commands got no answer;", [](ScaleResult& r) { r.load.queued += 3; }},
        {"1 answers came a second time;", [](ScaleResult& r) { ++r.load.doubled; }},
        {"1 commands were refused by the decoder;", [](ScaleResult& r) { r.load.done -= ++r.load.refused; }},
        {"1 answers are not those of their commands;",
         [](ScaleResult& r) { r.load.done -= ++r.load.foreign; }},
        {"only 449 notifications came;",
         [](ScaleResult& r) {
             r.loadTime = std::chrono::seconds(92); // 10 decoders, one a second each
             r.notifications = r.numbered = 449;
         }},
        {"1 notifications had no number;", [](ScaleResult& r) { ++r.notifications; }},
        {"1 threads are not the host's;", [](ScaleResult& r) { ++r.stages.loaded.threads; }},
        {"a session holds 4100 bytes of heap;", [](ScaleResult& r) { r.stages.loaded.heap += 41'000; }},
        {"the heap grew from 40268000 to 40484000 bytes;",
         [](ScaleResult& r) { Grow(r, &ProcessFigures::heap, 24'000); }},
        {"", [](ScaleResult& r) { Grow(r, &ProcessFigures::heap, 100); }},
        {"resident memory grew from 61400000 to 63400000 bytes;",
         [](ScaleResult& r) { Grow(r, &ProcessFigures::resident, 200'000); }},
        {"the number of descriptors went from 115 to 116;",
         [](ScaleResult& r) { ++r.samples.back().figures.descriptors; }},
    };
    for (const auto& [expected, change] : cases) {
        EXPECT_EQ(Verdict(change), expected);
    }
}

TEST(LoadCommand, TellsItsOwnAnswerFromThatOfAnotherCommand)
{
    standin_host::HostEvents events;
    Tally tally(events);
    const auto answered = [&](std::optional<std::vector<uint8_t>> own, const std::string& buffer) {
        auto* command = new LoadCommand(1, tally, std::move(own));
        if (buffer.empty()) {
            ORVA_NET_PROTOCOL::_kest_net_reply refusal{};
            refusal.dwResult = ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR;
            command->ReplyRecord(refusal);
        } else {
            command->ReplyBuffer(buffer.data(), buffer.size());
        }
        command->DecReference(LoadCommand::kCreatorTag);
        return std::array<uint64_t, 3>{tally.done.exchange(0), tally.refused.exchange(0),
                                       tally.foreign.exchange(0)};
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
    for (const uint64_t value : {0ULL, 31ULL, 32ULL, 33ULL, 63ULL, 64ULL, 1000ULL, 123'456'789ULL, ~0ULL}) {
        LatencyHistogram histogram;
        histogram.Record(value);
        const uint64_t readCount = histogram.Percentile(1);
        EXPECT_GE(readCount, value);
        EXPECT_LE(readCount - value, value / 32) << value;
    }
    LatencyHistogram recent;
    for (uint64_t i = 1; i <= 1000; ++i) {
        recent.Record(i);
    }
    LatencyHistogram all;
    all.Take(recent);
    EXPECT_EQ(recent.Count(), 0U);
    EXPECT_EQ(all.Count(), 1000U);
    EXPECT_NEAR(static_cast<double>(all.Percentile(0.5)), 500, 16);
    EXPECT_NEAR(static_cast<double>(all.Percentile(0.99)), 990, 31);
}

} // namespace
} // namespace scale
