// A command's way through the queue, against a mutex-guarded deque that holds the same copy: the counter
// "vs_deque" is the ratio of the two.

#include <cstring>
#include <deque>
#include <memory>

#include <benchmark/benchmark.h>

#include "FakeCommand.h"
#include "Mutex.h"
#include "NetProtocolProcDevice.h"
#include "Ratio.h"

namespace {

class IdleQueue : public CNetProtocolProcDevice {
public:
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int) override
    {
        benchmark::DoNotOptimize(cmd);
        benchmark::DoNotOptimize(buf);
    }
};

class DequeQueue {
public:
    void Add(FakeCommand* command, const unsigned char* buf, unsigned int len)
    {
        auto copy = std::make_unique_for_overwrite<unsigned char[]>(len);
        memcpy(copy.get(), buf, len);
        const TMutexGuard lock(m_mutex);
        m_entries.push_back({command, std::move(copy)});
    }
    void Run()
    {
        const Entry entry = Take();
        benchmark::DoNotOptimize(entry.command);
        benchmark::DoNotOptimize(entry.copy.get());
    }

private:
    struct Entry {
        FakeCommand* command;
        std::unique_ptr<unsigned char[]> copy;
    };
    Entry Take()
    {
        const TMutexGuard lock(m_mutex);
        Entry entry = std::move(m_entries.front());
        m_entries.pop_front();
        return entry;
    }

    CMutex m_mutex;
    std::deque<Entry> m_entries TVWALL_GUARDED_BY(m_mutex);
};

void AddAndRun(benchmark::State& state)
{
    constexpr int kRounds = 1000; // so that the cost of reading the clock does not count
    const auto depth = static_cast<int>(state.range(0));
    unsigned char payload[256] = {};
    FakeCommand command(1);
    IdleQueue queue;
    DequeQueue deque;
    RunRatio(
        state, "vs_deque",
        [&] {
            for (int i = 0; i < kRounds; i += depth) {
                for (int k = 0; k < depth; ++k) {
                    queue.AddOneCmd(&command, payload, sizeof(payload));
                }
                while (queue.ProcDevCmd()) {
                }
            }
        },
        [&] {
            for (int i = 0; i < kRounds; i += depth) {
                for (int k = 0; k < depth; ++k) {
                    deque.Add(&command, payload, sizeof(payload));
                }
                for (int k = 0; k < depth; ++k) {
                    deque.Run();
                }
            }
        });
}
BENCHMARK(AddAndRun)->Arg(1)->Arg(100)->UseManualTime();

} // namespace
