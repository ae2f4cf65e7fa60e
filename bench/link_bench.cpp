// Cutting frames out of the host's buffer, against a plain copy of the same bytes: the counter "vs_copy" is
// the ratio of the two, measured alternately within one run.

#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "FakeHost.h"
#include "Link/NetPacketProcTWDecoderDev.h"
#include "LinkTexts.h"
#include "Ratio.h"

namespace {

unsigned int CountPayload(tagNET_PACKETTYPE, const char*, unsigned long len, void* param)
{
    *static_cast<unsigned long*>(param) += len;
    return 0;
}

void ParseInPlace(benchmark::State& state)
{
    const auto frameLen = static_cast<size_t>(state.range(0));
    constexpr size_t kStreamLen = 1 << 20;
    std::string stream;
    while (stream.size() < kStreamLen) {
        stream += Frame(std::string(frameLen - 8, 'x'));
    }
    std::string copy(stream.size(), '\0');
    unsigned long payload = 0;
    CNetPacketProcTWDECODERDev parser;
    parser.Initial(&CountPayload, &payload);
    RunRatio(
        state, "vs_copy",
        [&] {
            unsigned int consumed = 0;
            unsigned int need = 0;
            parser.RecvProc(stream.data(), stream.size(), consumed, &need);
            benchmark::DoNotOptimize(payload);
        },
        [&] {
            memcpy(copy.data(), stream.data(), stream.size());
            benchmark::DoNotOptimize(copy.data());
            benchmark::ClobberMemory();
        });
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(stream.size()));
}
BENCHMARK(ParseInPlace)->Arg(64)->Arg(64 * 1024)->UseManualTime();

} // namespace
