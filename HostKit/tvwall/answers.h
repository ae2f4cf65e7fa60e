#pragma once
// The answers to commands, one function for each kind, and the decoder's notifications.
//
// Bytes come from CCmdProcObject::ReplyBuffer; only ReadDone returns a view of them. Whatever they hold, a
// function returns a value or a reason, and throws nothing but std::bad_alloc; what it allocates is bounded
// by the length of the bytes. Bytes after the end of a record are ignored. The functions may run on any
// threads at the same time.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "CmdProcParam.h"
#include "TvwallProtocol.h"
#include "tvwall/result.h"
#include "tvwall/types.h"

namespace tvwall {

using Bytes = std::span<const char>;

// --- answers that say only that the command was carried out ---

// The answer to a command with that answerType (see Command): the data after its head, which is the record
// that was sent unless the command asks for something. For the type 0 the answer has no bytes.
Result<Bytes> ReadDone(std::uint32_t answerType, Bytes answer);

// --- answers that bring something ---

struct LoggedIn {
    GUID node{};                // that the session was started for
    std::uint32_t nodeType = 0; // 513, this kind of decoder
};
Result<LoggedIn> ReadLogIn(Bytes answer);

// An empty wall has one screen, with output 0 and no name, at the upper left.
Result<Layout> ReadLayout(Bytes answer);

struct SystemInfo {
    std::string name{}; // each text of at most 63 bytes
    std::int32_t model = 0;
    std::string modelName{};
    std::string mac{};
    std::string softwareVersion{};
    std::string buildDate{};
    std::string kernelVersion{};
    std::string dataVersion{};
};
Result<SystemInfo> ReadSystemInfo(Bytes answer);

struct BasicConfig {
    std::uint32_t identity = 0; // the decoder's role
    std::uint32_t runMode = 0;
    std::string name{};
};
Result<BasicConfig> ReadBasicConfig(Bytes answer);

struct Sound {
    SoundOwner owner{}; // as it was asked with
    std::vector<InWindow<SubWindowSound>> windows{};
};
Result<Sound> ReadSound(Bytes answer);

Result<std::vector<ChannelGroup>> ReadChannelGroups(Bytes answer);

// The answer to setting as to getting them.
struct DisplaySwitches {
    std::string node{}; // its GUID as text
    bool borders = false;
    bool windowIds = false;
};
Result<DisplaySwitches> ReadDisplaySwitches(Bytes answer);

// --- failures ---

struct Failure {
    std::uint32_t code = 0;
    std::string description{}; // the plug-in gives none
};
Result<Failure> ReadFailure(Bytes record);

// The code in a few words: "wrong password". Of a code that the plug-in does not have: "failure".
const char* Meaning(std::uint32_t code);

// --- notifications ---

// An input channel, as far as the decoder tells of it.
struct Channel {
    std::optional<ChannelNumber> number{};
    std::optional<std::string> name{};
    std::string state{}; // "online", "offline", or what else the decoder says
};

struct Notification {
    enum class Kind { Channels, States }; // which channels there are, or how some of them are
    Kind kind = Kind::Channels;
    std::vector<Channel> channels{};
};
Result<Notification> ReadNotification(std::uint32_t optType, Bytes text);

// As CNetNode::DeliverCommand gets it.
inline Result<Notification> ReadNotification(const CCmdProcParamMTvwall& param)
{
    return ReadNotification(param.m_DataTvwallInfo.nOptType, Bytes(param.GetData(), param.GetDataLen()));
}

} // namespace tvwall
