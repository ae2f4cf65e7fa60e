#include <limits>

#include "Base/ExitStatus.h"
#include "Commands/CommandFamilies.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/Media.h"
#include "Tools/Common/Address.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

struct SMediaArguments {
    std::shared_ptr<std::string> pWindow, pIndex, pAddress;
    std::string strChannel, strUser, strPasswordFile;
    std::string strType = "0", strRequestMode, strStream = "0", strRecordMask = "0", strSelector = "0";
    std::string strBegin = "0", strEnd = "0";

    SMedia Media() const
    {
        SMedia media;
        const auto address = tools::ParseAddress(*pAddress, 1);
        if (!address) {
            throw CUsageError("ADDRESS takes HOST:PORT with a port from 1 to 65535, not '" + *pAddress + "'");
        }
        media.strAddress = Fitting(address->host, kMaxSourceAddress, "the source's address");
        media.nPort = address->port;
        if (!ParseChannel(strChannel, media)) {
            throw CUsageError("--channel takes a number from 0 to 2147483647 or a GUID, not '" + strChannel +
                              "'");
        }
        media.nRequestMode =
            strRequestMode.empty() ? media.nRequestMode : Signed(strRequestMode, "--request-mode");
        media.nType = Signed(strType, "--type");
        media.nStreamType = Signed(strStream, "--stream");
        media.nRecordMask = Unsigned(strRecordMask, "--record-mask");
        media.nSelector = Signed(strSelector, "--selector");
        media.nBegin = static_cast<uint64_t>(Number(strBegin, Time("--begin")));
        media.nEnd = static_cast<uint64_t>(Number(strEnd, Time("--end")));
        media.strUser = Fitting(strUser, kMaxSourceCredential, "the source's user name");
        media.strPassword = strUser.empty() ? "" : SourcePassword(strPasswordFile);
        return media;
    }

private:
    static SField Time(const char* szName) { return {szName, 0, std::numeric_limits<int64_t>::max()}; }
};

} // namespace

void SetUpMediaPlay(CLI::App& app, SConsoleCommand& command)
{
    const auto pArguments = std::make_shared<SMediaArguments>();
    pArguments->pWindow = AddWord(app, "WINDOW", "window id");
    pArguments->pIndex = AddWord(app, "INDEX", "sub-window index, from 0");
    pArguments->pAddress = AddWord(app, "ADDRESS", "HOST:PORT of the camera or recorder");
    const auto add = [&](const char* szName, std::string& strValue, const char* szType, const char* szHelp) {
        return app.add_option(szName, strValue, szHelp)->type_name(szType)->capture_default_str();
    };
    add("--channel", pArguments->strChannel, "N|GUID", "the source's channel")->required();
    auto* pUser = add("--source-user", pArguments->strUser, "NAME",
                      "account on the source; a decoder may refuse one without a password");
    add("--source-password-file", pArguments->strPasswordFile, "FILE",
        "file whose first line is the source's password (else TVWALL_SOURCE_PASSWORD is taken)")
        ->needs(pUser);
    add("--type", pArguments->strType, "N", "media type");
    add("--request-mode", pArguments->strRequestMode, "N",
        "request mode (default: 6 for a numeric channel, else 0)");
    add("--stream", pArguments->strStream, "N", "stream type");
    add("--begin", pArguments->strBegin, "TIME", "start of recorded video, as the decoder counts");
    add("--end", pArguments->strEnd, "TIME", "end of recorded video");
    add("--record-mask", pArguments->strRecordMask, "N", "record types of recorded video");
    add("--selector", pArguments->strSelector, "N", "source selector");
    app.callback([&command, pArguments] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DO_PLAY_MEDIA,
                      PlayMediaRecord(Signed(*pArguments->pWindow, "the window id"),
                                      Signed(*pArguments->pIndex, "the sub-window index"),
                                      pArguments->Media()));
        command.strTitle += Join({*pArguments->pWindow, *pArguments->pIndex, *pArguments->pAddress});
    });
}

void SetUpMediaStop(CLI::App& app, SConsoleCommand& command)
{
    static constexpr SField s_fields[] = {FieldOf<int32_t>("the window id"),
                                          FieldOf<int32_t>("the sub-window index")};
    SetUpSubWindows(app, command,
                    {s_fields, "WINDOW INDEX", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_DO_STOP_PLAY_MEDIA, StopMediaRecord});
}

void SetUpPlayback(CLI::App& app, SConsoleCommand& command)
{
    static constexpr SField s_fields[] = {
        FieldOf<uint16_t>("the window id"), FieldOf<uint16_t>("the sub-window index"),
        FieldOf<uint16_t>("the control type"), FieldOf<uint16_t>("the control value")};
    SetUpSubWindows(app, command,
                    {s_fields, "WINDOW INDEX TYPE VALUE", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_PLAYBACK_CTRL, PlaybackRecord});
}

} // namespace standin_host
