// Prints the sample of every command for scripts/fuzz-corpus and scripts/check-docs, one a line: handler,
// command id, option type, answer type, urls of its requests, and in hexadecimal the payload, the record in
// it and the body of the decoder's reply.

#include <cstdio>

#include "CommandSamples.h"
#include "FakeCommand.h"

int main()
{
    for (const CommandSample& sample : CommandSamples()) {
        printf("%s\t%u\t%u\t%u\t%s\t%s\t%s\t%s\n", sample.name, sample.cmdID, sample.optType,
               sample.answerType, sample.urls.c_str(), Hex(sample.Payload()).c_str(),
               Hex(sample.record).c_str(), Hex(sample.replyBody).c_str());
    }
    return 0;
}
