#pragma once

#include <cstdint>
#include <string>

namespace standin_host {

// One of the plug-in's failure codes: what it means, and what to look at.
struct FailureCode {
    uint32_t hostCode;
    uint32_t deviceCode; // the decoder's code that maps to this; 0 if none, or any other, does
    const char* meaning;
    const char* hint;
};

// An unknown code gets words of its own.
const FailureCode& FailureOf(uint32_t hostCode);

// "0x20000002".
std::string CodeText(uint32_t hostCode);

// All codes, one per line, each with its hint on the line below; the last line ends with a line end too.
std::string FailureTable();

} // namespace standin_host
