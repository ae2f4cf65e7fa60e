#include "Link/ErrorCode.h"

namespace simulated_decoder {

std::string ListErrorCodes()
{
#define ERROR_LINE(name, number, words) #number " " words "\n"
    return SIMULATED_DECODER_ERRORS(ERROR_LINE);
#undef ERROR_LINE
}

const char* Words(ErrorCode code)
{
    switch (code) {
#define ERROR_WORDS(name, number, words)                                                                     \
    case ErrorCode::name:                                                                                    \
        return words;
        SIMULATED_DECODER_ERRORS(ERROR_WORDS)
#undef ERROR_WORDS
    }
    return "error made up by a fault";
}

} // namespace simulated_decoder
