#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

constexpr Field kFields[] = {FieldOf<int32_t>("the window id"), FieldOf<int32_t>("the sub-window index"),
                             FieldOf<int32_t>("the channel")};

} // namespace

void SetUpAudioPlay(CLI::App& app, ConsoleCommand& command)
{
    SetUpSubWindows(app, command,
                    {kFields,
                     "WINDOW INDEX CHANNEL",
                     KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_PLAY_AUDIO,
                     AudioRecord,
                     {"channel"}});
}

void SetUpAudioStop(CLI::App& app, ConsoleCommand& command)
{
    SetUpSubWindows(app, command,
                    {std::span(kFields).first(2), "WINDOW INDEX", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_STOP_AUDIO, AudioRecord});
}

void SetUpAudioGet(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_AUDIO_CONFIG,
                      AudioRecord({}), kAudioForm);
    });
}

} // namespace standin_host
