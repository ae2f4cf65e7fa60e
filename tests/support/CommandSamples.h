#pragma once
// One well-formed example of every command that the plug-in knows, for tests that go through all of them.

#include <string>
#include <vector>

struct CommandSample {
    const char* szName; // of its handler
    unsigned int nCmdID;
    std::string payload;
    std::string replyBody; // what the decoder says beside success
};

// In the order of the dispatch tables, the login first.
const std::vector<CommandSample>& CommandSamples();
