#pragma once

#include <cstdint>
#include <string>

namespace standin_host {

// One of the plug-in's failure codes: what it means, and what to look at.
struct FailureCode {
    uint32_t hostCode;
    uint32_t deviceCode; // the decoder's code that becomes this one at a login; 0 if none does
    const char* meaning;
    const char* hint;
};

// An unknown code gets words of its own.
const FailureCode& FailureOf(uint32_t hostCode);

// What a decoder's code in a reply to "dologin" means, where the link gives it a meaning: that of the failure
// which answers it. Null for any other number.
const char* LoginMeaning(uint32_t deviceCode);

// "0x20000002".
std::string CodeText(uint32_t hostCode);

// All codes, one per line, each with its hint on the line below; the last line ends with a line end too.
std::string FailureTable();

} // namespace standin_host
