// Every reader of replies: the first byte picks a command, the second says how much of its reply the fuzzer
// writes, the rest is that text.

#include "CommandSamples.h"
#include "FuzzSession.h"

namespace {

// A session that has logged in and then hears the same text for every request.
void AnswerWith(const CommandSample& sample, unsigned int nWay, const std::string& text)
{
    const std::string keys = CommandSamples().front().replyBody;
    bool bLoggedIn = false;
    FuzzSession session(false, [&](FuzzSession& s) {
        if (!bLoggedIn) {
            s.Receive(s.Reply("0", "<session>SID</session><token>TOK</token>", keys));
        } else if (nWay % 4 == 0) {
            s.Receive(s.Reply("0", text, sample.replyBody));
        } else if (nWay % 4 == 1) { // whole, but for url and number, which the session wants in this order
            const std::string request = s.LastRequest();
            s.Receive(Frame("<td_command><td_header><url>" + Element(request, "url") + "</url><seq>" +
                            Element(request, "seq") + "</seq>" + text));
        } else {
            s.Receive(s.Reply("0", "", text));
        }
    });
    session.Run(CommandSamples().front().nCmdID, CommandSamples().front().Payload());
    bLoggedIn = true;
    session.Run(sample.nCmdID, sample.Payload());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzScript script(data, size);
    const auto& samples = CommandSamples();
    const CommandSample& sample = samples[script.Number() % samples.size()];
    const unsigned int nWay = script.Number();
    AnswerWith(sample, nWay, script.Rest());
    return 0;
}
