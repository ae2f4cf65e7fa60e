#include "Commands/Records/WallFile.h"

#include <limits>

#include "Base/CheckedJson.h"
#include "Base/Files.h"

namespace standin_host {

namespace {

using Json = nlohmann::json;

constexpr int64_t kMax16 = std::numeric_limits<uint16_t>::max();
constexpr int64_t kMax32 = std::numeric_limits<uint32_t>::max();

std::string At(const std::string& place, std::size_t index)
{
    return place + '[' + std::to_string(index) + ']';
}

void ReadChannel(const JsonObject& object, Media& media)
{
    const Json* channel = object.Find("channel");
    const bool given =
        channel != nullptr && ((channel->is_string() && ParseChannel(channel->get<std::string>(), media)) ||
                               (channel->is_number_integer() && ParseChannel(channel->dump(), media)));
    if (!given) {
        object.Refuse("channel", "must be a number from 0 to 2147483647 or a GUID");
    }
}

Media ReadMedia(const Json& value, const std::string& place, const std::optional<std::string>& password)
{
    const JsonObject object(value, place,
                            {"address", "port", "channel", "user", "password", "type", "requestMode",
                             "streamType", "begin", "end"});
    Media media;
    media.address = object.Text("address", kMaxSourceAddress);
    media.port = object.Number("port", 0, kMax16);
    ReadChannel(object, media);
    media.user = object.Text("user", kMaxSourceCredential, "");
    media.password =
        object.Text("password", kMaxSourceCredential, media.user.empty() ? "" : password.value_or(""));
    media.passwordMissing = !media.user.empty() && !password && object.Find("password") == nullptr;
    media.type = object.Number("type", 0, kMax16, 0);
    media.requestMode = object.Number("requestMode", 0, kMax16, media.requestMode);
    media.streamType = object.Number("streamType", 0, kMax32, 0);
    media.begin = static_cast<uint64_t>(object.Number("begin", 0, kMax32, 0));
    media.end = static_cast<uint64_t>(object.Number("end", 0, kMax32, 0));
    return media;
}

WallSubWindow ReadSubWindow(const Json& value, const std::string& place,
                            const std::optional<std::string>& password)
{
    const JsonObject object(value, place, {"index", "osd", "media"});
    WallSubWindow sub;
    sub.index = object.Number("index", 0, kMax16);
    sub.osdId = object.Number("osd", 0, kMax16, 0);
    if (const Json* media = object.Find("media")) {
        sub.media = ReadMedia(*media, object.PlaceOf("media"), password);
    }
    return sub;
}

WallWindow ReadWindow(const Json& value, const std::string& place, const std::optional<std::string>& password)
{
    const JsonObject object(value, place, {"id", "x", "y", "width", "height", "layer", "mode", "subWindows"});
    const Json& subWindows = object.List("subWindows", false);
    WallWindow window;
    window.id = object.Number("id", 0, kMax16);
    window.x = object.Number("x", 0, kMax16);
    window.y = object.Number("y", 0, kMax16);
    window.width = object.Number("width", 0, kMax16);
    window.height = object.Number("height", 0, kMax16);
    window.layer = object.Number("layer", 0, kMax16, 0);
    if (subWindows.size() > static_cast<std::size_t>(kMax16)) {
        object.Refuse("subWindows", "must have at most 65535 items"); // an index has 16 bits
    }
    window.mode = object.Number("mode", 0, kMax16, static_cast<int64_t>(subWindows.size()));
    for (std::size_t i = 0; i < subWindows.size(); ++i) {
        window.subWindows.push_back(
            ReadSubWindow(subWindows[i], At(object.PlaceOf("subWindows"), i), password));
    }
    return window;
}

} // namespace

std::vector<WallWindow> ReadWallFile(const std::string& path, const std::optional<std::string>& password)
{
    const Json root = ParseJson(ReadWholeFile(path, "wall"), path);
    const JsonObject object(root, path + ':', {"windows"});
    const Json& list = object.List("windows", true);
    std::vector<WallWindow> windows;
    for (std::size_t i = 0; i < list.size(); ++i) {
        windows.push_back(ReadWindow(list[i], At(object.PlaceOf("windows"), i), password));
    }
    return windows;
}

} // namespace standin_host
