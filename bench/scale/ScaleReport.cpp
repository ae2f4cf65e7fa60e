#include "ScaleReport.h"

#include <algorithm>
#include <cmath>
#include <iomanip>

#include <nlohmann/json.hpp>

namespace scale {

namespace {

using Json = nlohmann::json;

uint64_t Lost(const Tally& tally) { return tally.queued - tally.Answered(); }

// Threads gained since the host had all of its own.
long PluginThreads(const ScaleResult& result)
{
    std::size_t most = std::max(result.stages.sessions.threads, result.stages.loaded.threads);
    for (const Sample& sample : result.samples) {
        most = std::max(most, sample.figures.threads);
    }
    return static_cast<long>(most) - static_cast<long>(result.stages.host.threads);
}

double PerNode(std::size_t after, std::size_t before, uint32_t nodes)
{
    return (static_cast<double>(after) - static_cast<double>(before)) / nodes;
}

using Figure = std::size_t ProcessFigures::*;

std::size_t Median(std::vector<Sample>::const_iterator first, std::vector<Sample>::const_iterator last,
                   Figure figure)
{
    std::vector<std::size_t> values;
    std::transform(first, last, std::back_inserter(values),
                   [figure](const Sample& sample) { return sample.figures.*figure; });
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// A session holds the decoder's keys, a login and two buffers. One buffer is as long as the longest message
// so far, of which the bound covers this many bytes.
constexpr double kMaxSessionHeap = 4 * 1024;
constexpr std::size_t kUsualMessage = 2 * 1024;

double SessionHeap(const ScaleOptions& options, const ScaleResult& result)
{
    return PerNode(result.stages.loaded.heap, result.stages.noSession.heap, options.decoders);
}

constexpr std::size_t kMinSamples = 8;

// The first quarter is warm-up; compares the medians of the second and the last.
void JudgeMemory(std::vector<std::string>& complaints, const std::vector<Sample>& samples, Figure figure,
                 const char* what, double share, std::size_t floor)
{
    const auto quarter = static_cast<std::ptrdiff_t>(samples.size() / 4);
    const std::size_t before = Median(samples.begin() + quarter, samples.begin() + 2 * quarter, figure);
    const std::size_t after = Median(samples.end() - quarter, samples.end(), figure);
    const std::size_t allowed =
        std::max(floor, static_cast<std::size_t>(share * static_cast<double>(before)));
    if (after > before + allowed) {
        complaints.push_back(std::string(what) + " grew from " + std::to_string(before) + " to " +
                             std::to_string(after) + " bytes");
    }
}

void JudgeConstant(std::vector<std::string>& complaints, const std::vector<Sample>& samples, Figure figure,
                   const char* what)
{
    const auto [least, most] =
        std::minmax_element(samples.begin(), samples.end(), [figure](const Sample& a, const Sample& b) {
            return a.figures.*figure < b.figures.*figure;
        });
    if (least->figures.*figure != most->figures.*figure) {
        complaints.push_back("the number of " + std::string(what) + " went from " +
                             std::to_string(least->figures.*figure) + " to " +
                             std::to_string(most->figures.*figure));
    }
}

void JudgeSoak(std::vector<std::string>& complaints, const std::vector<Sample>& samples)
{
    if (samples.size() < kMinSamples) {
        complaints.push_back("only " + std::to_string(samples.size()) + " samples, too few to judge by");
        return;
    }
    // Allows for the memory of commands under way, of which a sample sees more or less.
    JudgeMemory(complaints, samples, &ProcessFigures::heap, "the heap", 0.005, 64 * 1024);
    JudgeMemory(complaints, samples, &ProcessFigures::resident, "resident memory", 0.02, 1024 * 1024);
    JudgeConstant(complaints, samples, &ProcessFigures::descriptors, "descriptors");
    JudgeConstant(complaints, samples, &ProcessFigures::threads, "threads");
}

void Expect(std::vector<std::string>& complaints, uint64_t count, const char* what)
{
    if (count != 0) {
        complaints.push_back(std::to_string(count) + ' ' + what);
    }
}

// A load without the requested notifications proves nothing. A busy machine may be late with some.
void JudgeNotifications(std::vector<std::string>& complaints, const ScaleOptions& options,
                        const ScaleResult& result)
{
    const double due = options.notify * options.decoders * result.loadTime.count();
    const auto notifications = static_cast<double>(result.notifications);
    if (notifications + options.decoders * options.burst < due / 2) {
        complaints.push_back("only " + std::to_string(result.notifications) + " notifications came");
    }
    Expect(complaints, result.notifications - result.numbered, "notifications had no number");
}

Json ToJson(const ProcessFigures& figures)
{
    return {{"heap", figures.heap},
            {"resident", figures.resident},
            {"threads", figures.threads},
            {"descriptors", figures.descriptors}};
}

} // namespace

std::vector<std::string> Complaints(const ScaleOptions& options, const ScaleResult& result)
{
    std::vector<std::string> complaints;
    Expect(complaints, Lost(result.load), "commands got no answer");
    Expect(complaints, result.load.doubled, "answers came a second time");
    Expect(complaints, result.load.foreign, "answers are not those of their commands");
    Expect(complaints, result.load.refused, "commands were refused by the decoder");
    Expect(complaints, result.load.timedOut, "commands saw no reply of the decoder");
    Expect(complaints, result.load.otherFailures, "commands failed in the plug-in");
    Expect(complaints, result.offlineAnswers, "liveness checks took a decoder for gone");
    JudgeNotifications(complaints, options, result);
    if (const long threads = PluginThreads(result); threads != 0) {
        complaints.push_back(std::to_string(threads) + " threads are not the host's");
    }
    const double heap = SessionHeap(options, result);
    const std::size_t longer = std::max(result.longestNotification, kUsualMessage) - kUsualMessage;
    if (heap > kMaxSessionHeap + static_cast<double>(longer)) {
        complaints.push_back("a session holds " + std::to_string(std::lround(heap)) + " bytes of heap");
    }
    if (options.soakMinutes) {
        JudgeSoak(complaints, result.samples);
    }
    return complaints;
}

Json ToJson(const ScaleOptions& options, const ScaleResult& result)
{
    const Stages& stages = result.stages;
    const uint32_t nodes = options.decoders;
    const Tally& load = result.load;
    Json samples = Json::array();
    for (const Sample& sample : result.samples) {
        Json entry = ToJson(sample.figures);
        entry.update({{"seconds", sample.seconds},
                      {"answered", sample.answered},
                      {"latency_p50_us", sample.p50},
                      {"latency_p99_us", sample.p99}});
        samples.push_back(std::move(entry));
    }
    const auto complaints = Complaints(options, result);
    return {
        {"decoders", nodes},
        {"soak_minutes", options.soakMinutes ? Json(*options.soakMinutes) : Json(nullptr)},
        {"rate", options.rate},
        {"notify_rate", options.notify},
        {"notify_burst", options.burst},
        {"channels", options.channelCount},
        {"compiler", "g++ " __VERSION__},
        {"login_seconds", result.loginTime.count()},
        {"load_seconds", result.loadTime.count()},
        {"notifications", result.notifications},
        {"commands",
         {{"queued", load.queued.load()},
          {"answered", load.Answered()},
          {"done", load.done.load()},
          {"refused", load.refused.load()},
          {"timed_out", load.timedOut.load()},
          {"failed", load.otherFailures.load()},
          {"lost", Lost(load)},
          {"doubled", load.doubled.load()},
          {"foreign", load.foreign.load()}}},
        {"latency_us",
         {{"p50", result.latency.Percentile(0.5)},
          {"p99", result.latency.Percentile(0.99)},
          {"max", result.latency.Percentile(1)}}},
        {"processor_us_per_command", static_cast<double>(result.processorTime.count()) /
                                         static_cast<double>(std::max<uint64_t>(load.Answered(), 1))},
        {"plugin_threads", PluginThreads(result)},
        {"session_heap",
         {{"created", PerNode(stages.sessions.heap, stages.host.heap, nodes)},
          {"after_load", SessionHeap(options, result)}}},
        {"session_stack", PerNode(result.stacks, result.hostStacks, nodes)},
        {"session_resident", PerNode(stages.loaded.resident, stages.host.resident, nodes)},
        {"host_heap", PerNode(stages.host.heap, stages.begin.heap, nodes)},
        {"host_stack", PerNode(result.hostStacks, 0, nodes)},
        {"host_resident", PerNode(stages.host.resident, stages.begin.resident, nodes)},
        {"host_heap_gained", PerNode(stages.noSession.heap, stages.host.heap, nodes)},
        {"left_heap", static_cast<long>(stages.end.heap) - static_cast<long>(stages.begin.heap)},
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
    const auto row = [&out](const char* name, auto value, const char* unit) {
        out << "  " << std::left << std::setw(44) << name << std::right << std::setw(12) << value << ' '
            << unit << '\n';
    };
    const auto inKiB = [](const Json& bytes) { return bytes.get<double>() / 1024; };
    const auto inMilliseconds = [](const Json& microseconds) { return microseconds.get<double>() / 1000; };
    const Json& commands = report["commands"];
    const Json& latency = report["latency_us"];
    row("decoders", report["decoders"].get<uint32_t>(), "");
    row("all logged in after", report["login_seconds"].get<double>(), "s");
    row("load", report["load_seconds"].get<double>(), "s");
    row("commands answered", commands["answered"].get<uint64_t>(), "");
    row("  of which refused by the decoder", commands["refused"].get<uint64_t>(), "");
    row("answers lost", commands["lost"].get<uint64_t>(), "");
    row("answers doubled", commands["doubled"].get<uint64_t>(), "");
    row("answers of another command", commands["foreign"].get<uint64_t>(), "");
    row("commands without a reply in time", commands["timed_out"].get<uint64_t>(), "");
    row("notifications", report["notifications"].get<uint64_t>(), "");
    row("latency beyond the polling step, p50", inMilliseconds(latency["p50"]), "ms");
    row("latency beyond the polling step, p99", inMilliseconds(latency["p99"]), "ms");
    row("processor time of the host per command", report["processor_us_per_command"].get<double>(), "us");
    row("threads started by the plug-in", report["plugin_threads"].get<long>(), "");
    row("session: heap when created", inKiB(report["session_heap"]["created"]), "KiB");
    row("session: heap after the load", inKiB(report["session_heap"]["after_load"]), "KiB");
    row("session: resident in total", inKiB(report["session_resident"]), "KiB");
    row("  of which worker's stack", inKiB(report["session_stack"]), "KiB");
    row("host per decoder: heap", inKiB(report["host_heap"]), "KiB");
    row("  held in addition after the load", inKiB(report["host_heap_gained"]), "KiB");
    row("host per decoder: resident", inKiB(report["host_resident"]), "KiB");
    row("  of which worker's stack", inKiB(report["host_stack"]), "KiB");
    row("heap left when all is gone, in total", inKiB(report["left_heap"]), "KiB");
}

} // namespace scale
