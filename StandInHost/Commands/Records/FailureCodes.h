#pragma once

#include <cstdint>
#include <string>

namespace standin_host {

// One of the plug-in's failure codes: what it means, and what to look at.
struct FailureCode {
    uint32_t hostCode;
    uint32_t deviceCode; // the one code of the decoder that becomes this; 0 where none or any other does
    const char* meaning;
    const char* hint;
};

// A code that the plug-in does not have gets words of its own.
const FailureCode& FailureOf(uint32_t hostCode);

// "0x20000002".
std::string CodeText(uint32_t hostCode);

// All codes, one a line, their hints on the line below; every line ends with a line end.
std::string FailureTable();

} // namespace standin_host
