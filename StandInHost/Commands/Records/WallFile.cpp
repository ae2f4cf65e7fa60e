#include "Commands/Records/WallFile.h"

#include <limits>

#include "Base/Files.h"
#include "Commands/Records/CheckedJson.h"

namespace standin_host {

namespace {

using Json = nlohmann::json;

constexpr int64_t kMax16 = std::numeric_limits<uint16_t>::max();
constexpr int64_t kMax32 = std::numeric_limits<uint32_t>::max();

std::string At(const std::string& strPlace, std::size_t nIndex)
{
    return strPlace + '[' + std::to_string(nIndex) + ']';
}

void ReadChannel(const CJsonObject& object, SMedia& media)
{
    const Json* pChannel = object.Find("channel");
    const bool bGiven = pChannel != nullptr &&
                        ((pChannel->is_string() && ParseChannel(pChannel->get<std::string>(), media)) ||
                         (pChannel->is_number_integer() && ParseChannel(pChannel->dump(), media)));
    if (!bGiven) {
        object.Refuse("channel", "must be a number from 0 to 2147483647 or a GUID");
    }
}

SMedia ReadMedia(const Json& value, const std::string& strPlace, const std::string& strPassword)
{
    const CJsonObject object(value, strPlace,
                             {"address", "port", "channel", "user", "password", "type", "requestMode",
                              "streamType", "begin", "end"});
    SMedia media;
    media.strAddress = object.Text("address", kMaxSourceAddress);
    media.nPort = object.Number("port", 0, kMax16);
    ReadChannel(object, media);
    media.strUser = object.Text("user", kMaxSourceCredential, "");
    media.strPassword =
        object.Text("password", kMaxSourceCredential, media.strUser.empty() ? "" : strPassword);
    media.nType = object.Number("type", 0, kMax16, 0);
    media.nRequestMode = object.Number("requestMode", 0, kMax16, media.nRequestMode);
    media.nStreamType = object.Number("streamType", 0, kMax32, 0);
    media.nBegin = static_cast<uint64_t>(object.Number("begin", 0, kMax32, 0));
    media.nEnd = static_cast<uint64_t>(object.Number("end", 0, kMax32, 0));
    return media;
}

SWallSubWindow ReadSubWindow(const Json& value, const std::string& strPlace, const std::string& strPassword)
{
    const CJsonObject object(value, strPlace, {"index", "osd", "media"});
    SWallSubWindow sub;
    sub.nIndex = object.Number("index", 0, kMax16);
    sub.nOsdId = object.Number("osd", 0, kMax16, 0);
    if (const Json* pMedia = object.Find("media")) {
        sub.media = ReadMedia(*pMedia, object.PlaceOf("media"), strPassword);
    }
    return sub;
}

SWallWindow ReadWindow(const Json& value, const std::string& strPlace, const std::string& strPassword)
{
    const CJsonObject object(value, strPlace,
                             {"id", "x", "y", "width", "height", "layer", "mode", "subWindows"});
    const Json& subWindows = object.List("subWindows", false);
    SWallWindow window;
    window.nID = object.Number("id", 0, kMax16);
    window.nX = object.Number("x", 0, kMax16);
    window.nY = object.Number("y", 0, kMax16);
    window.nWidth = object.Number("width", 0, kMax16);
    window.nHeight = object.Number("height", 0, kMax16);
    window.nLayer = object.Number("layer", 0, kMax16, 0);
    if (subWindows.size() > static_cast<std::size_t>(kMax16)) {
        object.Refuse("subWindows", "must have at most 65535 items"); // each has an index of 16 bits
    }
    window.nMode = object.Number("mode", 0, kMax16, static_cast<int64_t>(subWindows.size()));
    for (std::size_t i = 0; i < subWindows.size(); ++i) {
        window.subWindows.push_back(
            ReadSubWindow(subWindows[i], At(object.PlaceOf("subWindows"), i), strPassword));
    }
    return window;
}

} // namespace

std::vector<SWallWindow> ReadWallFile(const std::string& strFile, const std::string& strPassword)
{
    const Json root = ParseJson(ReadWholeFile(strFile, "wall"), strFile);
    const CJsonObject object(root, strFile + ':', {"windows"});
    const Json& list = object.List("windows", true);
    std::vector<SWallWindow> windows;
    for (std::size_t i = 0; i < list.size(); ++i) {
        windows.push_back(ReadWindow(list[i], At(object.PlaceOf("windows"), i), strPassword));
    }
    return windows;
}

} // namespace standin_host
