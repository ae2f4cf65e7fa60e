// What Stop may have to wait for: one message of 60 MB on the receive thread, both the scan for its url and
// seq alone and all that a session does with it, in nanoseconds per byte; and the largest replies that are
// read, on the worker, in processor time.

#include <string>

#include <benchmark/benchmark.h>

#include "BenchSession.h"
#include "HeavyMessages.h"
#include "Link/MessageHead.h"

namespace {

constexpr size_t kMessageLen = 60000000;

const HeavyMessage& Message(int64_t n)
{
    static const std::vector<HeavyMessage> kMessages = HeavyMessages(kMessageLen);
    return kMessages[static_cast<size_t>(n)];
}

void SetTimePerByte(benchmark::State& state, size_t len)
{
    state.counters["per_byte"] =
        benchmark::Counter(static_cast<double>(len) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void Scan(benchmark::State& state)
{
    const HeavyMessage& message = Message(state.range(0));
    state.SetLabel(message.what);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(ReadMessageHead(message.text));
    }
    SetTimePerByte(state, message.text.size());
}

void Receive(benchmark::State& state)
{
    const HeavyMessage& message = Message(state.range(0));
    state.SetLabel(message.what);
    const std::string frame = Frame(message.text);
    BenchNode node;
    CNetProtocolProcTWDECODERDevImp session;
    session.Start(&node, nullptr, 0);
    for ([[maybe_unused]] auto _ : state) {
        unsigned int need = 0;
        session.OnSocketRecvData(0, frame.data(), static_cast<unsigned int>(frame.size()), &need, nullptr);
    }
    SetTimePerByte(state, message.text.size());
}

void LargestReply(benchmark::State& state)
{
    const std::string far = "<devicename>" + Repeat("&#x", 64) + "g";
    std::string attributes; // as many as are read, which the XML library compares with each other
    for (int i = 0; i < 32; ++i) {
        attributes += " b" + std::to_string(10 + i) + "=''";
    }
    const struct {
        std::string item;
        size_t count;
        std::string first = "";
        std::string last = "";
    } texts[] = {{"<a>x</a>", 1020000},
                 {"<a/>x", 1050000},
                 {"<a b=''/>", 1150000},
                 {"<a/>", 1970000},
                 {"0", 1048000, far, ";</devicename>" + Repeat("<a>x</a>", 990000)},
                 {"0", 43000000, "<devicename>&#x", ";</devicename>"},
                 {"&", 8300000, "<devicename>", "</devicename>"},
                 {"<a" + attributes + "/>", 76000}};
    const auto& text = texts[state.range(0)];
    state.SetLabel((text.first.substr(0, 24) + text.item).substr(0, 40));
    BenchSession session(text.first + Repeat(text.item, text.count) + text.last);
    std::string payload = Option(0x50002, "");
    for ([[maybe_unused]] auto _ : state) {
        session.Run(0x50000, payload);
        if (!session.Succeeded()) {
            state.SkipWithError("the reply is not read");
        }
    }
}

BENCHMARK(Scan)->DenseRange(0, 18)->Unit(benchmark::kMillisecond);
BENCHMARK(Receive)->DenseRange(0, 18)->Unit(benchmark::kMillisecond);
BENCHMARK(LargestReply)->DenseRange(0, 7)->Unit(benchmark::kMillisecond);

} // namespace
