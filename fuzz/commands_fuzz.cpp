// Every command, all that it says to the decoder and to the host: the first byte picks it, the second says
// what the rest is, the record from the host or so much of the decoder's reply.

#include "CommandSamples.h"
#include "FuzzSession.h"

namespace {

constexpr unsigned int kHeaderTail = 0, kAllButUrlAndNumber = 1, kBody = 2, kRecord = 3, kWays = 4;

// A session that has logged in and then hears the same reply to every request.
void Exchange(CommandSample sample, unsigned int way, const std::string& text)
{
    if (way == kRecord) {
        sample.record = text;
    }
    const std::string keys = CommandSamples().front().replyBody;
    bool loggedIn = false;
    FuzzSession session(false, [&](FuzzSession& s) {
        if (!loggedIn) {
            s.Receive(s.Reply("0", "<session>SID</session><token>TOK</token>", keys));
        } else if (way == kHeaderTail) {
            s.Receive(s.Reply("0", text, sample.replyBody));
        } else if (way == kAllButUrlAndNumber) { // which the session wants in this order
            const std::string request = s.LastRequest();
            s.Receive(Frame("<td_command><td_header><url>" + Element(request, "url") + "</url><seq>" +
                            Element(request, "seq") + "</seq>" + text));
        } else {
            s.Receive(s.Reply("0", "", way == kBody ? text : sample.replyBody));
        }
    });
    session.Run(CommandSamples().front().cmdID, CommandSamples().front().Payload());
    loggedIn = true;
    session.ForgetRequests(); // the same every time
    session.Run(sample.cmdID, sample.Payload());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzScript script(data, size);
    const auto& samples = CommandSamples();
    const CommandSample& sample = samples[script.Number() % samples.size()];
    const unsigned int way = script.Number();
    Exchange(sample, way % kWays, script.Rest());
    return 0;
}
