#pragma once
// One well-formed example of every command that the plug-in knows, with all that a plain run of it shows: for
// tests that go through all of them.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

struct CommandSample {
    static constexpr unsigned int NO_OPTION = 0; // the payload is the record alone
    static constexpr unsigned int NO_HEAD = 0;   // the answer is its data alone

    const char* szName; // of its handler
    unsigned int nCmdID;
    unsigned int nOptType;
    std::string record;
    std::string urls; // of its requests, in turn
    std::string body; // of the first one: what follows its header; credentials of sources in clear
    unsigned int nAnswerType;
    std::string replyBody = {};                 // what the decoder says beside success
    std::optional<std::string> answerData = {}; // what the host gets, unless its record comes back

    std::string Payload() const;
    // The host's answer, as FakeCommand tells it.
    std::string Answer() const;
    // The same when no reply comes. Hosts have timeouts of their own for the commands without an option head:
    // login and layout.
    std::string AnswerWithoutReply() const { return nOptType != NO_OPTION ? "failure 2000000f" : "none"; }

    friend std::ostream& operator<<(std::ostream& out, const CommandSample& sample)
    {
        return out << sample.szName;
    }
};

// The account of the video sources. It leaves enciphered, and appears in no log. A text object that held a
// copy of either would need memory for it.
inline constexpr auto SOURCE_USER = "user of the cameras";
inline constexpr auto SOURCE_PASSWORD = "secret of the cameras";

// A channel's GUID, as the host's bytes and as text.
inline const std::string GUID_BYTES = "ABCDEFGHIJKLMNOP";
inline const std::string GUID_TEXT = "{44434241-4645-4847-494A-4B4C4D4E4F50}";

// The login first; new ones last, since the corpus of replies_fuzz tells them by their place.
const std::vector<CommandSample>& CommandSamples();
const CommandSample& CommandSampleOf(const std::string& handler);
