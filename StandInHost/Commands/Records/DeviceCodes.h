#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace standin_host {

// What the error codes of one make of decoder mean: its maker's words for its numbers.
class DeviceCodes {
public:
    DeviceCodes() = default; // no words for any
    // Reads lines "NUMBER words"; empty lines and lines that begin with # are skipped. Throws UsageError for
    // a file that cannot be read, a line that is something else or not UTF-8, and a number given twice.
    explicit DeviceCodes(const std::string& path);

    // Empty for a number that is not in the list.
    std::string Words(uint32_t code) const;

private:
    const char* AddLine(std::string_view line); // what is wrong with it, or null

    std::map<uint32_t, std::string> m_words;
};

} // namespace standin_host
