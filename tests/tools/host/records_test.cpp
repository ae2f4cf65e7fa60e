// Two opinions on every byte between host and plug-in: the stand-in host's builders and readers, and those of
// the kit, which are the plug-in's own. Values are drawn with a fixed seed; answers are cut everywhere.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <random>

#include <nlohmann/json.hpp>

#include "Base/GuidText.h"
#include "Commands/Records/AnswerForms.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Records/Media.h"
#include "Commands/Records/NotificationFields.h"
#include "Commands/Records/Payloads.h"
#include "tvwall/answers.h"
#include "tvwall/commands.h"

namespace standin_host {

namespace kit = tvwall;

namespace {

// Numbers, often the extreme ones.
class Draw {
public:
    template <class Field>
    Field Of()
    {
        const uint64_t kind = m_engine() % 4;
        return kind == 0   ? std::numeric_limits<Field>::min()
               : kind == 1 ? std::numeric_limits<Field>::max()
                           : static_cast<Field>(m_engine());
    }
    uint32_t U32() { return Of<uint32_t>(); }
    std::size_t Count(std::size_t most) { return m_engine() % (most + 1); }
    bool Flag() { return Count(1) == 1; }
    std::string Text(std::size_t most)
    {
        return std::string(Flag() ? most : Count(most), static_cast<char>('a' + Count(25)));
    }
    GUID Guid()
    {
        return {Of<uint32_t>(), Of<uint16_t>(), Of<uint16_t>(), {1, 2, 3, 4, 5, 6, 7, Of<uint8_t>()}};
    }

    // Windows and their sub-windows with numbers of one width.
    template <class Field, class Index = Field>
    std::vector<SubWindows> Windows()
    {
        std::vector<SubWindows> windows(Count(3));
        for (SubWindows& window : windows) {
            window.window = Of<Field>();
            window.subWindows.resize(Count(3));
            for (SubWindow& sub : window.subWindows) {
                sub = {Of<Index>(), Of<Index>(), Of<Index>()};
            }
        }
        return windows;
    }

private:
    std::mt19937_64 m_engine{20261126};
};

// The same for the kit.
template <class Sub>
Sub Make(const SubWindow& sub)
{
    if constexpr (std::is_same_v<Sub, kit::SubWindowIndex>) {
        return {sub.index};
    } else if constexpr (std::is_same_v<Sub, kit::SubWindowPlayback>) {
        return {{sub.index}, sub.first, sub.second};
    } else if constexpr (std::is_same_v<Sub, kit::SubWindowBorder>) {
        return {{sub.index}, sub.first == 1};
    } else {
        return {{sub.index}, {sub.first}};
    }
}
struct ForKit {
    const std::vector<SubWindows>& windows;
    template <class Sub>
    operator std::vector<kit::InWindow<Sub>>() const
    {
        std::vector<kit::InWindow<Sub>> made;
        for (const SubWindows& window : windows) {
            made.push_back({{window.window}, {}});
            std::transform(window.subWindows.begin(), window.subWindows.end(),
                           std::back_inserter(made.back().subWindows), Make<Sub>);
        }
        return made;
    }
};

void Same(const kit::Command& command, uint32_t id, uint32_t option, const Record& record,
          std::optional<uint32_t> answerType = {})
{
    SCOPED_TRACE(testing::Message() << std::hex << id << ' ' << option);
    const Record payload = option == 0 ? record : OptionPayload(option, record);
    EXPECT_EQ(command.id, id);
    EXPECT_EQ(command.answerType, answerType.value_or(option));
    EXPECT_TRUE(std::equal(payload.bytes.begin(), payload.bytes.end(), command.payload.begin(),
                           command.payload.end()));
}

// A source for both, whose numbers fit the width.
template <class Field>
std::pair<kit::Source, Media> DrawSource(Draw& draw)
{
    Media media;
    media.address = draw.Text(kMaxSourceAddress);
    media.user = draw.Text(kMaxSourceCredential);
    media.password = draw.Text(kMaxSourceCredential);
    media.type = draw.Of<Field>();
    media.port = draw.Of<Field>();
    media.streamType = draw.Of<Field>();
    media.begin = draw.U32();
    media.end = draw.U32();
    kit::SourceChannel channel;
    if (draw.Flag()) {
        media.channelNumber = draw.Of<int32_t>();
        media.requestMode = kNumericChannelMode;
        channel = kit::ChannelNumber{media.channelNumber};
    } else if (draw.Flag()) {
        channel = media.channel = draw.Guid();
    }
    const kit::Source source{media.address, media.port, channel,          media.user,  media.password,
                             media.type,    {},         media.streamType, media.begin, media.end};
    return {source, media};
}

void CompareWindows(Draw& draw)
{
    const auto u32 = [&draw] { return draw.U32(); };
    std::vector<Window> windows(draw.Count(3));
    std::vector<kit::Window> kit;
    std::vector<WindowMove> moves;
    std::vector<kit::MovedWindow> kitMoves;
    std::vector<kit::WindowId> kitIds;
    std::vector<uint32_t> ids;
    for (Window& window : windows) {
        window = {u32(), u32(), u32(), u32(), u32(), u32(), {u32(), u32()}};
        kit.push_back({{window.id},
                       {window.x, window.y, window.width, window.height},
                       {{window.osdIds[0]}, {window.osdIds[1]}},
                       window.layer});
        const auto i32 = [&draw] { return draw.Of<int32_t>(); };
        moves.push_back({i32(), i32(), i32(), i32(), i32()});
        const WindowMove& move = moves.back();
        kitMoves.push_back({{move.id}, {move.x, move.y, move.width, move.height}});
        ids.push_back(window.id);
        kitIds.push_back({window.id});
    }
    Same(kit::CreateWindows(kit), 0x50002, 0x60006, CreateRecord(windows));
    Same(kit::SplitWindows(kit), 0x50001, 0x5000E, CreateRecord(windows), 0x60006);
    Same(kit::MoveWindows(kitMoves), 0x50002, 0x60008, MoveRecord(moves));
    Same(kit::DeleteWindows(kitIds), 0x50002, 0x60007, DeleteRecord(ids));
    const uint32_t id = u32();
    Same(kit::RaiseWindow({id}), 0x50002, 0x60009, RaiseRecord(id));
    const auto index = draw.Of<uint16_t>();
    const bool on = draw.Flag(), both = draw.Flag();
    Same(kit::Zoom({id}, {index}, on), 0x50002, 0x50014, ZoomRecord(id, index, on));
    Same(kit::SetDisplaySwitches(on, both), 0x50001, 0x60012, WindowConfigRecord(on, both));
    Same(kit::GetDisplaySwitches(), 0x50000, 0x60013, {});
    Same(kit::ClearWall(), 0x50001, 0x60011, {});
}

void CompareSessionAndLayout(Draw& draw)
{
    const std::string user = draw.Text(kMaxCredential), password = draw.Text(kMaxCredential);
    Same(kit::LogIn(user, password), 0x101, 0, LoginRecord(user, password));
    Same(kit::LogOut(), 0x50002, 0x50000, {}, 0);
    Same(kit::GetSystemInfo(), 0x50000, 0x5000A, {});
    Same(kit::GetBasicConfig(), 0x50000, 0x50002, {});
    const auto u32 = [&draw] { return draw.U32(); };
    std::vector<Screen> screens(draw.Count(3));
    std::vector<kit::Screen> bound;
    std::vector<kit::ScreenPlace> freed;
    for (Screen& screen : screens) {
        screen = {u32(), u32(), u32()};
        bound.push_back({{screen.id}, {screen.x, screen.y}, {}});
        freed.push_back(bound.back().place);
    }
    const uint32_t rows = u32(), columns = u32();
    Same(kit::GetLayout(), 0x50006, 0, {});
    Same(kit::SetLayout(rows, columns), 0x50005, 0, LayoutRecord(rows, columns, {}));
    Same(kit::BindScreens(bound), 0x50007, 0, LayoutRecord(0, 0, screens));
    std::for_each(screens.begin(), screens.end(), [](Screen& screen) { screen.id = 0; });
    Same(kit::UnbindScreens(freed), 0x50008, 0, LayoutRecord(0, 0, screens));
}

void CompareMedia(Draw& draw)
{
    const auto window = draw.Of<int32_t>(), index = draw.Of<int32_t>();
    auto [source, media] = DrawSource<int32_t>(draw);
    source.recordMask = media.recordMask = draw.U32();
    source.selector = media.selector = draw.Of<int32_t>();
    Same(kit::PlayMedia({{{window}, {{{index}, {source}}}}}), 0x50002, 0x60004,
         PlayMediaRecord(window, index, media));
    const auto stopped = draw.Windows<int32_t>();
    Same(kit::StopMedia(ForKit{stopped}), 0x50002, 0x60005, StopMediaRecord(stopped));
    Same(kit::StopPolling(ForKit{stopped}), 0x50002, 0x6000F, StopMediaRecord(stopped), 0x60005);
    std::vector<WallWindow> wall(draw.Count(2));
    std::vector<kit::WallWindow> kit;
    for (WallWindow& each : wall) {
        const auto u16 = [&draw] { return draw.Of<uint16_t>(); };
        each = {u16(), u16(), u16(), u16(), u16(), u16(), u16(), std::vector<WallSubWindow>(draw.Count(2))};
        kit.push_back({{each.id}, {each.x, each.y, each.width, each.height}, {}, each.layer, each.mode});
        for (WallSubWindow& sub : each.subWindows) {
            sub = {u16(), u16(), {}};
            auto& kitSub =
                kit.back().subWindows.emplace_back(kit::WallSubWindow{{sub.index}, {sub.osdId}, {}});
            if (draw.Flag()) {
                std::tie(kitSub.source, sub.media) = DrawSource<uint16_t>(draw);
            }
        }
    }
    Same(kit::SetWall(kit), 0x50001, 0x60010, WallRecord(wall));
}

// Numbers that are only 0, or 0 and 1.
std::vector<SubWindows> Masked(std::vector<SubWindows> windows, int64_t mask)
{
    for (SubWindows& window : windows) {
        for (SubWindow& sub : window.subWindows) {
            sub.first &= mask;
        }
    }
    return windows;
}

void CompareSubWindows(Draw& draw)
{
    const auto played = draw.Windows<uint16_t>();
    Same(kit::ControlPlayback(ForKit{played}), 0x50002, 0x5001D, PlaybackRecord(played));
    const auto sounds = draw.Windows<int32_t>();
    Same(kit::PlaySound(ForKit{sounds}), 0x50002, 0x60014, AudioRecord(sounds));
    Same(kit::StopSound(ForKit{sounds}), 0x50002, 0x60015, AudioRecord(Masked(sounds, 0)));
    Same(kit::GetSound(), 0x50000, 0x60016, AudioRecord({}));
    const auto polled = draw.Windows<int32_t, uint32_t>();
    Same(kit::StartPolling(ForKit{polled}), 0x50002, 0x6000E, PollingRecord(polled));
    const auto borders = Masked(draw.Windows<int16_t>(), 1);
    Same(kit::DrawBorders(ForKit{borders}), 0x50001, 0x60003, BorderRecord(borders));
}

void CompareGroups(Draw& draw)
{
    const ChannelGroup group{draw.Of<int32_t>(), draw.Text(kMaxGroupName), draw.Text(kMaxGroupChannels),
                             draw.U32(), draw.U32()};
    const kit::ChannelGroup kit{
        {group.id}, group.name, group.channelList, group.channelCount, group.interval};
    Same(kit::AddChannelGroup(kit), 0x50002, 0x6000A, GroupRecord(group));
    Same(kit::SetChannelGroup(kit), 0x50001, 0x6000C, GroupRecord(group), 0x6000E);
    Same(kit::DeleteChannelGroups({{group.id}, {7}}), 0x50002, 0x6000B, DeleteGroupsRecord({group.id, 7}));
    Same(kit::GetChannelGroup({group.id}), 0x50000, 0x6000D, GetGroupRecord(group.id), 0x6000E);
    Same(kit::GetChannelGroups(), 0x50000, 0x6000D, GetGroupRecord(0), 0x6000E);
}

TEST(TwoOpinions, OnEveryCommand)
{
    Draw draw;
    for (int round = 0; round < 30 && !HasFailure(); ++round) {
        CompareSessionAndLayout(draw);
        CompareWindows(draw);
        CompareMedia(draw);
        CompareSubWindows(draw);
        CompareGroups(draw);
    }
}

// --- answers ---

// Cut everywhere, an answer is whole for both or for neither, and says the same.
template <class Read, class Tell>
void SameAnswer(const AnswerForm& form, ByteWriter written, const Read& read, const Tell& tell)
{
    const Record answer = written.Take();
    for (std::size_t n = 0; n <= answer.bytes.size(); ++n) {
        const std::vector<uint8_t> cut(answer.bytes.begin(),
                                       answer.bytes.begin() + static_cast<std::ptrdiff_t>(n));
        ByteReader reader(cut);
        Fields fields;
        form.read(reader, fields);
        const std::vector<char> exact(cut.begin(), cut.end());
        const auto result = read(exact);
        ASSERT_EQ(static_cast<bool>(result), !reader.Failed()) << n;
        if (result) {
            ASSERT_EQ(tell(*result), fields) << n;
        } else {
            ASSERT_LE(result.Why().offset, n) << result.Why().Text();
        }
    }
}

ByteWriter Head(uint32_t type) { return ByteWriter().U32(type).U16(8).U16(0).Zeros(8); }

void CompareLists(Draw& draw)
{
    ByteWriter layout = ByteWriter().U32(draw.U32()).U32(draw.U32()).U32(2);
    ByteWriter sound = Head(0x60016).Guid(draw.Guid()).Guid(draw.Guid()).U32(2);
    ByteWriter groups = Head(0x6000E).U32(2);
    for (int i = 0; i < 2; ++i) {
        layout.U32(draw.U32()).Text(draw.Text(256), 256).U32(draw.U32()).U32(draw.U32());
        const std::size_t subs = draw.Count(2);
        sound.I32(draw.Of<int32_t>()).Count(subs);
        for (std::size_t sub = 0; sub < subs; ++sub) {
            sound.I32(draw.Of<int32_t>()).I32(draw.Of<int32_t>());
        }
        groups.Guid(draw.Guid()).I32(draw.Of<int32_t>()).U32(0).U32(draw.U32());
        groups.Text(draw.Text(256), 256).Text(draw.Text(16), 16);
    }
    SameAnswer(kLayoutForm, layout, kit::ReadLayout, [](const auto& value) {
        Fields told{{"rows", value.rows}, {"columns", value.columns}, {"screens", Fields::array()}};
        for (const auto& [id, place, name] : value.screens) {
            told["screens"].push_back(
                {{"id", id.number}, {"name", name}, {"x", place.column}, {"y", place.row}});
        }
        return told;
    });
    SameAnswer(kAudioForm, sound, kit::ReadSound, [](const auto& value) {
        Fields told{{"wall", GuidText(value.owner.wall)},
                    {"decoder", kit::GuidText(value.owner.decoder)},
                    {"windows", Fields::array()}};
        for (const auto& window : value.windows) {
            told["windows"].push_back({{"id", window.window.number}, {"subWindows", Fields::array()}});
            for (const auto& sub : window.subWindows) {
                told["windows"].back()["subWindows"].push_back(
                    {{"index", sub.index.number}, {"channel", sub.channel.number}});
            }
        }
        return told;
    });
    SameAnswer(kGroupsForm, groups, kit::ReadChannelGroups, [](const auto& value) {
        Fields told{{"groups", Fields::array()}};
        for (const auto& [id, name, channels, count, interval] : value) {
            told["groups"].push_back(
                {{"id", id.number}, {"interval", interval}, {"name", name}, {"channels", channels}});
        }
        return told;
    });
}

void CompareDeviceAnswers(Draw& draw)
{
    SameAnswer(kLoginForm, ByteWriter().Guid(draw.Guid()).U32(draw.U32()).Zeros(112), kit::ReadLogIn,
               [](const auto& value) {
                   return Fields{{"nodeId", kit::GuidText(value.node)}, {"nodeType", value.nodeType}};
               });
    ByteWriter info = Head(0x5000A).Zeros(16).Text(draw.Text(64), 64).I32(draw.Of<int32_t>());
    for (int i = 0; i < 6; ++i) {
        info.Text(draw.Text(64), 64);
    }
    SameAnswer(kSystemInfoForm, info, kit::ReadSystemInfo, [](const auto& value) {
        return Fields{{"decoder", GuidText({})},
                      {"name", value.name},
                      {"model", value.model},
                      {"deviceType", value.modelName},
                      {"mac", value.mac},
                      {"softwareVersion", value.softwareVersion},
                      {"buildDate", value.buildDate},
                      {"kernelVersion", value.kernelVersion},
                      {"dataVersion", value.dataVersion}};
    });
    const std::string name = draw.Text(300);
    SameAnswer(kBasicConfigForm,
               Head(0x50002).Zeros(16).U32(draw.U32()).U32(draw.U32()).Text(name, name.size()),
               kit::ReadBasicConfig, [](const auto& value) {
                   return Fields{{"wall", GuidText({})},
                                 {"identity", value.identity},
                                 {"runMode", value.runMode},
                                 {"name", value.name}};
               });
    const std::string text =
        "<response>\n<id>{1}</id>\n<baseInfo>\n<errorcode>0</errorcode>\n<enableborder>" +
        std::to_string(draw.U32()) + "</enableborder>\n<enableshowwinid>" + std::to_string(draw.Count(1)) +
        "</enableshowwinid>\n</baseInfo>\n</response>\n";
    SameAnswer(
        kWindowConfigForm, Head(draw.Flag() ? 0x60012 : 0x60013).Text(text, text.size() + 1),
        kit::ReadDisplaySwitches, [](const auto& value) {
            return Fields{{"node", value.node}, {"borders", value.borders}, {"windowIds", value.windowIds}};
        });
    SameAnswer(
        kDoneForm, Head(0x60006).Text(name, name.size()),
        [](kit::Bytes answer) { return kit::ReadDone(0x60006, answer); },
        [](const kit::Bytes&) { return Fields(); });
}

TEST(TwoOpinions, OnEveryAnswerAndItsPieces)
{
    Draw draw;
    for (int round = 0; round < 10 && !HasFailure(); ++round) {
        CompareLists(draw);
        CompareDeviceAnswers(draw);
    }
    for (uint32_t code = 0x20000000; code < 0x20000100; ++code) {
        EXPECT_STREQ(kit::Meaning(code), FailureOf(code).meaning);
    }
}

TEST(TwoOpinions, OnNotificationsAndTheirPieces)
{
    for (const std::string list : {"td_channellist", "td_channelstatelist"}) {
        const std::string text =
            "<td_command><td_header><url>u</url></td_header><td_body><" + list +
            "><item><id>1</id><name>Gate &amp; yard</name><state>online</state></item><item><id>x</id>"
            "<state>asleep</state></item><other/><item><id>-3</id><name/></item></" +
            list + "></td_body></td_command>\n";
        const bool states = list != "td_channellist";
        for (std::size_t n = 0; n <= text.size(); ++n) {
            const std::vector<char> cut(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(n));
            CCmdProcParamMTvwall param(nullptr, cut.data(), cut.size());
            param.m_DataTvwallInfo.nOptType = states ? 0x60001 : 0x60000;
            const auto read = kit::ReadNotification(param);
            Fields told = Fields::object();
            for (const auto& channel : read ? read->channels : std::vector<kit::Channel>()) {
                Fields& one = told["channels"].emplace_back(Fields::object());
                if (channel.number) {
                    one["id"] = channel.number->number;
                }
                if (channel.name) {
                    one["name"] = *channel.name;
                }
                if (channel.state == "online" || channel.state == "offline") {
                    one["online"] = channel.state == "online";
                } else if (!channel.state.empty()) {
                    one["state"] = channel.state;
                }
            }
            ASSERT_EQ(told, NotificationFields({cut.begin(), cut.end()})) << n;
            EXPECT_TRUE(!read || (read->kind == kit::Notification::Kind::States) == states);
        }
    }
}

} // namespace
} // namespace standin_host
