#include <limits>

#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Commands/CommandFamilies.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/Media.h"
#include "Tools/Common/Address.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

struct MediaArguments {
    std::shared_ptr<std::string> window, indexWord, addressWord;
    std::string channel, user, passwordFile;
    std::string type = "0", requestMode, stream = "0", recordMask = "0", selector = "0";
    std::string begin = "0", end = "0";

    Media Read() const
    {
        Media media;
        const auto address = tools::ParseAddress(*addressWord, 1);
        if (!address) {
            throw UsageError("ADDRESS " + tools::AddressRemedy(*addressWord, 1));
        }
        media.address = Fitting(address->host, kMaxSourceAddress, "the source's address");
        media.port = address->port;
        if (!ParseChannel(channel, media)) {
            throw UsageError("--channel takes a number from 0 to 2147483647 or a GUID, not '" + channel +
                             "'");
        }
        media.requestMode = requestMode.empty() ? media.requestMode : Signed(requestMode, "--request-mode");
        media.type = Signed(type, "--type");
        media.streamType = Signed(stream, "--stream");
        media.recordMask = Unsigned(recordMask, "--record-mask");
        media.selector = Signed(selector, "--selector");
        media.begin = static_cast<uint64_t>(Number(begin, Time("--begin")));
        media.end = static_cast<uint64_t>(Number(end, Time("--end")));
        media.user = Fitting(user, kMaxSourceCredential, "the source's user name");
        media.password = user.empty() ? "" : SourcePassword(passwordFile).value_or("");
        return media;
    }

private:
    static Field Time(const char* name) { return {name, 0, std::numeric_limits<int64_t>::max()}; }
};

} // namespace

namespace {

Fields MediaArgs(int32_t window, int32_t index, const Media& media)
{
    Fields args{{"window", window}, {"index", index}, {"address", media.address}, {"port", media.port}};
    args["channel"] =
        media.channelNumber >= 0 ? Fields(media.channelNumber) : Fields(GuidText(media.channel));
    args["user"] = media.user;
    args["type"] = media.type;
    args["requestMode"] = media.requestMode;
    args["stream"] = media.streamType;
    args["begin"] = media.begin;
    args["end"] = media.end;
    args["recordMask"] = media.recordMask;
    args["selector"] = media.selector;
    return args;
}

} // namespace

void SetUpMediaPlay(CLI::App& app, ConsoleCommand& command)
{
    const auto arguments = std::make_shared<MediaArguments>();
    arguments->window = AddWord(app, "WINDOW", "window id");
    arguments->indexWord = AddWord(app, "INDEX", "sub-window index, from 0");
    arguments->addressWord = AddWord(app, "ADDRESS", "HOST:PORT of the camera or recorder");
    const auto add = [&](const char* name, std::string& value, const char* type, const char* help) {
        return app.add_option(name, value, help)->type_name(type)->capture_default_str();
    };
    add("--channel", arguments->channel, "N|GUID", "the source's channel")->required();
    auto* user = add("--source-user", arguments->user, "NAME",
                     "account on the source; a decoder may refuse one without a password");
    add("--source-password-file", arguments->passwordFile, "FILE",
        "file whose first line is the source's password (else TVWALL_SOURCE_PASSWORD is taken)")
        ->needs(user);
    add("--type", arguments->type, "N", "media type");
    add("--request-mode", arguments->requestMode, "N",
        "request mode (default: 6 for a numeric channel, else 0)");
    add("--stream", arguments->stream, "N", "stream type");
    add("--begin", arguments->begin, "TIME", "start of recorded video, as the decoder counts");
    add("--end", arguments->end, "TIME", "end of recorded video");
    add("--record-mask", arguments->recordMask, "N", "record types of recorded video");
    add("--selector", arguments->selector, "N", "source selector");
    app.callback([&command, arguments] {
        const int32_t window = Signed(*arguments->window, "the window id");
        const int32_t index = Signed(*arguments->indexWord, "the sub-window index");
        const Media media = arguments->Read();
        command.args = MediaArgs(window, index, media);
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DO_PLAY_MEDIA,
                      PlayMediaRecord(window, index, media));
        command.title += Join({*arguments->window, *arguments->indexWord, *arguments->addressWord});
        command.readsFiles = !arguments->passwordFile.empty();
    });
}

void SetUpMediaStop(CLI::App& app, ConsoleCommand& command)
{
    static constexpr Field kFields[] = {FieldOf<int32_t>("the window id"),
                                        FieldOf<int32_t>("the sub-window index")};
    SetUpSubWindows(app, command,
                    {kFields, "WINDOW INDEX", KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DO_STOP_PLAY_MEDIA,
                     StopMediaRecord});
}

void SetUpPlayback(CLI::App& app, ConsoleCommand& command)
{
    static constexpr Field kFields[] = {
        FieldOf<uint16_t>("the window id"), FieldOf<uint16_t>("the sub-window index"),
        FieldOf<uint16_t>("the control type"), FieldOf<uint16_t>("the control value")};
    SetUpSubWindows(app, command,
                    {kFields,
                     "WINDOW INDEX TYPE VALUE",
                     KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_PLAYBACK_CTRL,
                     PlaybackRecord,
                     {"type", "value"}});
}

} // namespace standin_host
