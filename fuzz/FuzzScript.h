#pragma once
// What the fuzz targets share: bytes as a script, checks that end the run.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "FakeHost.h"

// What came out of an input so far, for a replay that holds it against what is recorded; the fuzzer does not
// ask.
inline std::string* g_outcome = nullptr;
inline void Observe(std::string_view what)
{
    if (g_outcome != nullptr) {
        g_outcome->append(what).append("\n");
    }
}

// What was logged since this was called last.
inline void ObserveLogs()
{
    for (const auto& log : fake_host::Logs()) {
        Observe(log.text + log.source + std::to_string(log.line) +
                std::to_string(static_cast<int>(log.level)));
    }
    fake_host::Reset();
    fake_host::SetLogRecording(g_outcome != nullptr);
}

inline void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

// The fuzzer's bytes, taken from the front; zero and empty when they are used up.
class FuzzScript {
public:
    FuzzScript(const uint8_t* data, size_t size) : m_left(reinterpret_cast<const char*>(data), size) {}

    bool AtEnd() const { return m_left.empty(); }
    unsigned int Number() { return m_left.empty() ? 0 : static_cast<unsigned char>(Text(1)[0]); }
    std::string Text(size_t n)
    {
        const std::string text(m_left.substr(0, n));
        m_left.remove_prefix(text.size());
        return text;
    }
    std::string Rest() { return Text(m_left.size()); }

private:
    std::string_view m_left;
};
