#include "ScaleReport.h"

#include <algorithm>
#include <cmath>
#include <iomanip>

#include <nlohmann/json.hpp>

namespace scale {

namespace {

using Json = nlohmann::json;

uint64_t Lost(const STally& tally) { return tally.nQueued - tally.Answered(); }

// Threads that the process has gained since the host had all of its own.
long PluginThreads(const SScaleResult& result)
{
    std::size_t nMost = std::max(result.stages.sessions.nThreads, result.stages.loaded.nThreads);
    for (const SSample& sample : result.samples) {
        nMost = std::max(nMost, sample.figures.nThreads);
    }
    return static_cast<long>(nMost) - static_cast<long>(result.stages.host.nThreads);
}

double PerNode(std::size_t nAfter, std::size_t nBefore, uint32_t nNodes)
{
    return (static_cast<double>(nAfter) - static_cast<double>(nBefore)) / nNodes;
}

using Figure = std::size_t SProcessFigures::*;

std::size_t Median(std::vector<SSample>::const_iterator first, std::vector<SSample>::const_iterator last,
                   Figure figure)
{
    std::vector<std::size_t> values;
    std::transform(first, last, std::back_inserter(values),
                   [figure](const SSample& sample) { return sample.figures.*figure; });
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// A session has the decoder's keys, a login and two buffers to hold. One of them is as long as the longest
// message so far, of which the bound covers so many bytes.
constexpr double kMaxSessionHeap = 4 * 1024;
constexpr std::size_t kUsualMessage = 2 * 1024;

double SessionHeap(const SScaleOptions& options, const SScaleResult& result)
{
    return PerNode(result.stages.loaded.nHeap, result.stages.noSession.nHeap, options.nDecoders);
}

constexpr std::size_t kMinSamples = 8;

// The first quarter is warm-up; the second one's median against the last one's.
void JudgeMemory(std::vector<std::string>& complaints, const std::vector<SSample>& samples, Figure figure,
                 const char* szWhat, double dShare, std::size_t nFloor)
{
    const auto nQuarter = static_cast<std::ptrdiff_t>(samples.size() / 4);
    const std::size_t nBefore = Median(samples.begin() + nQuarter, samples.begin() + 2 * nQuarter, figure);
    const std::size_t nAfter = Median(samples.end() - nQuarter, samples.end(), figure);
    const std::size_t nAllowed =
        std::max(nFloor, static_cast<std::size_t>(dShare * static_cast<double>(nBefore)));
    if (nAfter > nBefore + nAllowed) {
        complaints.push_back(std::string(szWhat) + " grew from " + std::to_string(nBefore) + " to " +
                             std::to_string(nAfter) + " bytes");
    }
}

void JudgeConstant(std::vector<std::string>& complaints, const std::vector<SSample>& samples, Figure figure,
                   const char* szWhat)
{
    const auto [least, most] =
        std::minmax_element(samples.begin(), samples.end(), [figure](const SSample& a, const SSample& b) {
            return a.figures.*figure < b.figures.*figure;
        });
    if (least->figures.*figure != most->figures.*figure) {
        complaints.push_back("the number of " + std::string(szWhat) + " went from " +
                             std::to_string(least->figures.*figure) + " to " +
                             std::to_string(most->figures.*figure));
    }
}

void JudgeSoak(std::vector<std::string>& complaints, const std::vector<SSample>& samples)
{
    if (samples.size() < kMinSamples) {
        complaints.push_back("only " + std::to_string(samples.size()) + " samples, too few to judge by");
        return;
    }
    // Of what the commands under way hold, a sample sees sometimes more and sometimes less.
    JudgeMemory(complaints, samples, &SProcessFigures::nHeap, "the heap", 0.005, 64 * 1024);
    JudgeMemory(complaints, samples, &SProcessFigures::nResident, "resident memory", 0.02, 1024 * 1024);
    JudgeConstant(complaints, samples, &SProcessFigures::nDescriptors, "descriptors");
    JudgeConstant(complaints, samples, &SProcessFigures::nThreads, "threads");
}

void Expect(std::vector<std::string>& complaints, uint64_t nCount, const char* szWhat)
{
    if (nCount != 0) {
        complaints.push_back(std::to_string(nCount) + ' ' + szWhat);
    }
}

// A load without the notifications that were asked for shows nothing. A busy machine may be late with some.
void JudgeNotifications(std::vector<std::string>& complaints, const SScaleOptions& options,
                        const SScaleResult& result)
{
    const double dDue = options.dNotify * options.nDecoders * result.loadTime.count();
    const auto nNotifications = static_cast<double>(result.nNotifications);
    if (nNotifications + options.nDecoders * options.nBurst < dDue / 2) {
        complaints.push_back("only " + std::to_string(result.nNotifications) + " notifications came");
    }
    Expect(complaints, result.nNotifications - result.nNumbered, "notifications had no number");
}

Json ToJson(const SProcessFigures& figures)
{
    return {{"heap", figures.nHeap},
            {"resident", figures.nResident},
            {"threads", figures.nThreads},
            {"descriptors", figures.nDescriptors}};
}

} // namespace

std::vector<std::string> Complaints(const SScaleOptions& options, const SScaleResult& result)
{
    std::vector<std::string> complaints;
    Expect(complaints, Lost(result.load), "commands got no answer");
    Expect(complaints, result.load.nDoubled, "answers came a second time");
    Expect(complaints, result.load.nForeign, "answers are not those of their commands");
    Expect(complaints, result.load.nRefused, "commands were refused by the decoder");
    Expect(complaints, result.load.nTimedOut, "commands saw no reply of the decoder");
    Expect(complaints, result.load.nOtherFailures, "commands failed in the plug-in");
    Expect(complaints, result.nOfflineAnswers, "liveness checks took a decoder for gone");
    JudgeNotifications(complaints, options, result);
    if (const long nThreads = PluginThreads(result); nThreads != 0) {
        complaints.push_back(std::to_string(nThreads) + " threads are not the host's");
    }
    const double dHeap = SessionHeap(options, result);
    const std::size_t nLonger = std::max(result.nLongestNotification, kUsualMessage) - kUsualMessage;
    if (dHeap > kMaxSessionHeap + static_cast<double>(nLonger)) {
        complaints.push_back("a session holds " + std::to_string(std::lround(dHeap)) + " bytes of heap");
    }
    if (options.soakMinutes) {
        JudgeSoak(complaints, result.samples);
    }
    return complaints;
}

Json ToJson(const SScaleOptions& options, const SScaleResult& result)
{
    const SStages& stages = result.stages;
    const uint32_t nNodes = options.nDecoders;
    const STally& load = result.load;
    Json samples = Json::array();
    for (const SSample& sample : result.samples) {
        Json entry = ToJson(sample.figures);
        entry.update({{"seconds", sample.dSeconds},
                      {"answered", sample.nAnswered},
                      {"latency_p50_us", sample.nP50},
                      {"latency_p99_us", sample.nP99}});
        samples.push_back(std::move(entry));
    }
    const auto complaints = Complaints(options, result);
    return {
        {"decoders", nNodes},
        {"soak_minutes", options.soakMinutes ? Json(*options.soakMinutes) : Json(nullptr)},
        {"rate", options.dRate},
        {"notify_rate", options.dNotify},
        {"notify_burst", options.nBurst},
        {"channels", options.nChannels},
        {"compiler", "g++ " __VERSION__},
        {"login_seconds", result.loginTime.count()},
        {"load_seconds", result.loadTime.count()},
        {"notifications", result.nNotifications},
        {"commands",
         {{"queued", load.nQueued.load()},
          {"answered", load.Answered()},
          {"done", load.nDone.load()},
          {"refused", load.nRefused.load()},
          {"timed_out", load.nTimedOut.load()},
          {"failed", load.nOtherFailures.load()},
          {"lost", Lost(load)},
          {"doubled", load.nDoubled.load()},
          {"foreign", load.nForeign.load()}}},
        {"latency_us",
         {{"p50", result.latency.Percentile(0.5)},
          {"p99", result.latency.Percentile(0.99)},
          {"max", result.latency.Percentile(1)}}},
        {"processor_us_per_command", static_cast<double>(result.processorTime.count()) /
                                         static_cast<double>(std::max<uint64_t>(load.Answered(), 1))},
        {"plugin_threads", PluginThreads(result)},
        {"session_heap",
         {{"created", PerNode(stages.sessions.nHeap, stages.host.nHeap, nNodes)},
          {"after_load", SessionHeap(options, result)}}},
        {"session_stack", PerNode(result.nStacks, result.nHostStacks, nNodes)},
        {"session_resident", PerNode(stages.loaded.nResident, stages.host.nResident, nNodes)},
        {"host_heap", PerNode(stages.host.nHeap, stages.begin.nHeap, nNodes)},
        {"host_stack", PerNode(result.nHostStacks, 0, nNodes)},
        {"host_resident", PerNode(stages.host.nResident, stages.begin.nResident, nNodes)},
        {"host_heap_gained", PerNode(stages.noSession.nHeap, stages.host.nHeap, nNodes)},
        {"left_heap", static_cast<long>(stages.end.nHeap) - static_cast<long>(stages.begin.nHeap)},
        {"stages",
         {{"begin", ToJson(stages.begin)},
          {"host", ToJson(stages.host)},
          {"sessions", ToJson(stages.sessions)},
          {"logged_in", ToJson(stages.loggedIn)},
          {"loaded", ToJson(stages.loaded)},
          {"no_session", ToJson(stages.noSession)},
          {"end", ToJson(stages.end)}}},
        {"samples", std::move(samples)},
        {"complaints", complaints},
    };
}

void PrintTable(std::ostream& out, const Json& report)
{
    out << std::fixed << std::setprecision(1);
    const auto Row = [&out](const char* szName, auto value, const char* szUnit) {
        out << "  " << std::left << std::setw(44) << szName << std::right << std::setw(12) << value << ' '
            << szUnit << '\n';
    };
    const auto KiB = [](const Json& bytes) { return bytes.get<double>() / 1024; };
    const auto Milliseconds = [](const Json& microseconds) { return microseconds.get<double>() / 1000; };
    const Json& commands = report["commands"];
    const Json& latency = report["latency_us"];
    Row("decoders", report["decoders"].get<uint32_t>(), "");
    Row("all logged in after", report["login_seconds"].get<double>(), "s");
    Row("load", report["load_seconds"].get<double>(), "s");
    Row("commands answered", commands["answered"].get<uint64_t>(), "");
    Row("  of these refused by the decoder", commands["refused"].get<uint64_t>(), "");
    Row("answers lost", commands["lost"].get<uint64_t>(), "");
    Row("answers twice", commands["doubled"].get<uint64_t>(), "");
    Row("answers of another command", commands["foreign"].get<uint64_t>(), "");
    Row("commands without a reply in time", commands["timed_out"].get<uint64_t>(), "");
    Row("notifications", report["notifications"].get<uint64_t>(), "");
    Row("latency beyond the polling step, p50", Milliseconds(latency["p50"]), "ms");
    Row("latency beyond the polling step, p99", Milliseconds(latency["p99"]), "ms");
    Row("processor time of the host a command", report["processor_us_per_command"].get<double>(), "us");
    Row("threads of the plug-in", report["plugin_threads"].get<long>(), "");
    Row("session: heap when created", KiB(report["session_heap"]["created"]), "KiB");
    Row("session: heap after the load", KiB(report["session_heap"]["after_load"]), "KiB");
    Row("session: resident memory in all", KiB(report["session_resident"]), "KiB");
    Row("  of these stack of the worker", KiB(report["session_stack"]), "KiB");
    Row("host's own part a decoder: heap", KiB(report["host_heap"]), "KiB");
    Row("  and held by it after the load", KiB(report["host_heap_gained"]), "KiB");
    Row("host's own part a decoder: resident", KiB(report["host_resident"]), "KiB");
    Row("  of these stack of the worker", KiB(report["host_stack"]), "KiB");
    Row("heap left when all is gone, in all", KiB(report["left_heap"]), "KiB");
}

} // namespace scale
