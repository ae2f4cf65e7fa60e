// Every reader of replies: the first byte picks a command, the second says how much of its reply the fuzzer
// writes, the rest is that text.

#include "CommandSamples.h"
#include "FuzzSession.h"

namespace {

// A session that has logged in and then hears the same text for every request.
void AnswerWith(const CommandSample& sample, unsigned int way, const std::string& text)
{
    const std::string keys = CommandSamples().front().replyBody;
    bool loggedIn = false;
    FuzzSession session(false, [&](FuzzSession& s) {
        if (!loggedIn) {
            s.Receive(s.Reply("0", "<session>SID</session><token>TOK</token>", keys));
        } else if (way % 4 == 0) {
            s.Receive(s.Reply("0", text, sample.replyBody));
        } else if (way % 4 == 1) { // whole, but for url and number, which the session wants in this order
            const std::string request = s.LastRequest();
            s.Receive(Frame("<td_command><td_header><url>" + Element(request, "url") + "</url><seq>" +
                            Element(request, "seq") + "</seq>" + text));
        } else {
            s.Receive(s.Reply("0", "", text));
        }
    });
    session.Run(CommandSamples().front().cmdID, CommandSamples().front().Payload());
    loggedIn = true;
    session.Run(sample.cmdID, sample.Payload());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzScript script(data, size);
    const auto& samples = CommandSamples();
    const CommandSample& sample = samples[script.Number() % samples.size()];
    const unsigned int way = script.Number();
    AnswerWith(sample, way, script.Rest());
    return 0;
}
