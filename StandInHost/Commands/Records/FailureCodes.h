#pragma once

#include <cstdint>
#include <string>

namespace standin_host {

// One of the plug-in's failure codes: what it means, and what to look at.
struct SFailureCode {
    uint32_t nCode;
    uint32_t nDeviceCode; // the one code of the decoder that becomes this; 0 where none or any other does
    const char* szMeaning;
    const char* szHint;
};

// A code that the plug-in does not have gets words of its own.
const SFailureCode& FailureOf(uint32_t nCode);

// "0x20000002".
std::string CodeText(uint32_t nCode);

// All codes, one a line, their hints on the line below; every line ends with a line end.
std::string FailureTable();

} // namespace standin_host
