#pragma once
// What the fuzz targets share: bytes as a script, checks that end the run.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

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
