#pragma once
// One well-formed example of every command that the plug-in knows, with all that a plain run of it shows: for
// tests that go through all of them.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

struct CommandSample {
    static constexpr unsigned int kNoOption = 0; // the payload is the record alone
    static constexpr unsigned int kNoHead = 0;   // the answer is its data alone

    const char* name; // of its handler
    unsigned int cmdID;
    unsigned int optType;
    std::string record;
    std::string urls; // of its requests, in turn
    std::string body; // of the first one: what follows its header; credentials of sources in clear
    unsigned int answerType;
    std::string replyBody = {};                 // what the decoder says beside success
    std::optional<std::string> answerData = {}; // what the host gets, unless its record comes back

    std::string Payload() const;
    // The host's answer, as FakeCommand tells it.
    std::string Answer() const;
    // The same when no reply comes. Hosts have timeouts of their own for the commands without an option head:
    // login and layout.
    std::string AnswerWithoutReply() const { return optType != kNoOption ? "failure 2000000f" : "none"; }

    friend std::ostream& operator<<(std::ostream& out, const CommandSample& sample)
    {
        return out << sample.name;
    }
};

// The account of the video sources. It leaves enciphered, and appears in no log. A text object that held a
// copy of either would need memory for it.
inline constexpr auto kSourceUser = "user of the cameras";
inline constexpr auto kSourcePassword = "secret of the cameras";

// A channel's GUID, as the host's bytes and as text.
inline const std::string kGuidBytes = "ABCDEFGHIJKLMNOP";
inline const std::string kGuidText = "{44434241-4645-4847-494A-4B4C4D4E4F50}";
inline const std::string kNoGuid(16, '\0');

// Parts of the host's records, and of the requests that they become; texts are filled up with zeros.
std::string ScreenRecord(unsigned long id, const std::string& name, unsigned long x, unsigned long y);
std::string GroupRecord(const std::string& guid, unsigned long id, unsigned long channelCount,
                        unsigned long interval, const std::string& name, const std::string& channels);
// Without the gap it is the packed form.
std::string StreamRecord(const std::string& guid, unsigned long channel, const std::string& user,
                         const std::string& pwd, const std::string& gap = "gap!");
std::string StreamElements(const std::string& channel, const std::string& user, const std::string& pwd);
std::string WallWindowRecord(unsigned int id, unsigned long subWindows);
std::string WallWindowItem(const std::string& id, const std::string& subItems);
std::string WallStreamRecord(const std::string& guid, unsigned long channel, unsigned int reqMode);
// Without a channel there is no media element.
std::string WallStreamItem(const std::string& channelid, int reqMode);

// The login first; new ones last, since the corpus of commands_fuzz tells them by their place.
const std::vector<CommandSample>& CommandSamples();
const CommandSample& CommandSampleOf(const std::string& handler);
