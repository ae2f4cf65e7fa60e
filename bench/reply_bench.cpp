// Long replies, through the real handlers, against a bare parse of the same text with tinyxml2: the counter
// "vs_parse" is the ratio of the two. Of a command, only the worker's part from the reply on counts, not the
// request, the receive thread's part or what the host does with the answer.

#include <string>

#include <benchmark/benchmark.h>
#include <tinyxml2.h>

#include "BenchSession.h"
#include "LinkTexts.h"
#include "Ratio.h"

namespace {

// A list that repeats one item.
std::string List(const std::string& name, const std::string& item, int64_t items)
{
    std::string text = "<" + name + ">";
    for (int64_t i = 0; i < items; ++i) {
        text += item;
    }
    return text + "</" + name + ">";
}

void RunBeside(benchmark::State& state, const std::string& body, unsigned int cmdID, std::string payload,
               size_t itemLen)
{
    BenchSession session(body);
    session.Run(cmdID, payload);
    if (session.AnswerLen() < static_cast<size_t>(state.range(0)) * itemLen) {
        state.SkipWithError("the answer does not hold every item");
        return;
    }
    RunRatio(
        state, "vs_parse", [&] { return session.Run(cmdID, payload); },
        [&] {
            tinyxml2::XMLDocument document;
            document.Parse(session.ReplySent().data(), session.ReplySent().size());
            benchmark::DoNotOptimize(document.RootElement());
        });
    state.SetComplexityN(state.range(0));
}

void GetWallLayout(benchmark::State& state)
{
    const std::string item = "<item><id>5</id><name>left</name><coordinate><xpos>0</xpos><ypos>1</ypos>"
                             "</coordinate></item>";
    RunBeside(state, "<row>4</row><col>4</col>" + List("td_channellist", item, state.range(0)), 0x50006, "",
              268);
}

void GetAudioConfig(benchmark::State& state)
{
    const std::string item =
        "<item><id>5</id><td_subwindowlist><item><index>0</index><channelid>12</channelid>"
        "</item></td_subwindowlist></item>";
    RunBeside(state, List("td_windowlist", item, state.range(0)), 0x50000, Option(0x60016, ""), 16);
}

BENCHMARK(GetWallLayout)->RangeMultiplier(16)->Range(16, 4096)->Complexity(benchmark::oN)->UseManualTime();
BENCHMARK(GetAudioConfig)->RangeMultiplier(16)->Range(16, 4096)->Complexity(benchmark::oN)->UseManualTime();

} // namespace
