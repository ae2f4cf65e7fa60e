// The scan for url and seq of a message against the document's own search. Input: a byte that says whether
// the rest is the message or picks the pieces that it is made of.

#include "FuzzScript.h"
#include "HeadScanChecks.h"

namespace {

std::string Message(FuzzScript& script)
{
    constexpr size_t kMany = 80; // of one piece, more than are open in any decoder's message
    constexpr size_t kLong = 8192;
    if (script.Number() % 2 == 0) {
        return script.Rest();
    }
    static const std::vector<std::string_view> kPieces = MessagePieces();
    std::string message;
    while (!script.AtEnd() && message.size() < kLong) {
        const unsigned int n = script.Number();
        const std::string_view piece = kPieces[n % kPieces.size()];
        for (size_t i = 0; i < (n / kPieces.size() == 3 ? kMany : 1); ++i) {
            message += piece;
        }
    }
    return message;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzScript script(data, size);
    const std::string message = Message(script);
    Require(ScanAgreesWithDocument(message));
    const SMessageHead head = ReadMessageHead(message);
    Observe(head.url.value_or("no url") + '\n' + head.seq.value_or("no seq"));
    return 0;
}
