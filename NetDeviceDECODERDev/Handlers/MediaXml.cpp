#include "Handlers/MediaXml.h"

#include <cstring>
#include <optional>
#include <string>

#include "Encoding/FieldText.h"
#include "SysHelper.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

constexpr tuint16 REQMODE_CHANNEL_NUMBER = 6;
constexpr tint32 NO_CHANNEL_NUMBER = -1;

bool IsZero(const GUID& guid)
{
    constexpr GUID ZERO{};
    return std::memcmp(&guid, &ZERO, sizeof(GUID)) == 0;
}

// Here the GUID decides; the number is used for a channel without one.
std::optional<std::string> ChannelId(const S_MTvw_Wall_Media_info& media)
{
    if (!IsZero(media._channelid)) {
        return CSysHelper::GuidToString(media._channelid);
    }
    return media._channelIdInt >= 0 ? std::optional(std::to_string(media._channelIdInt)) : std::nullopt;
}

// Here the request mode decides, whatever the GUID and number, as the decoder expects.
std::optional<std::string> ChannelId(const S_MTvw_Wall_Set_wall_Subwin_Medinfo& media)
{
    return media._reqmode == REQMODE_CHANNEL_NUMBER ? std::to_string(media._channelIdInt)
                                                    : CSysHelper::GuidToString(media._channelid);
}

template <class Media>
void AddSource(CMarkupSTL& doc, const Media& media, const CCredentialCipher& cipher)
{
    // Both texts in a row, then both elements: code and data stay in the processor's cache.
    const std::string user = cipher.Encrypt(FieldView(media._user));
    const std::string pwd = cipher.Encrypt(FieldView(media._pwd));
    doc.AddElem("type", media._type);
    doc.AddElem("reqmode", media._reqmode);
    doc.AddElem("addr", FieldText(media._addr).c_str());
    doc.AddElem("port", media._port);
    if (const auto channelId = ChannelId(media)) {
        doc.AddElem("channelid", channelId->c_str());
    }
    doc.AddElem("user", user.c_str());
    doc.AddElem("pwd", pwd.c_str());
}

} // namespace

void AddMediaXml(CMarkupSTL& doc, const S_MTvw_Wall_Media_info& media, const CCredentialCipher& cipher)
{
    AddSource(doc, media, cipher);
    doc.AddElem("begintime", media._begintime);
    doc.AddElem("endtime", media._endtime);
    doc.AddElem("streamtype", media._streamtype);
    doc.AddElem("recordmask", media._recordmask);
    doc.AddElem("source", media._source);
}

void AddMediaXml(CMarkupSTL& doc, const S_MTvw_Wall_Set_wall_Subwin_Medinfo& media,
                 const CCredentialCipher& cipher)
{
    AddSource(doc, media, cipher);
    doc.AddElem("streamtype", media._streamType);
}

bool HasMedia(const S_MTvw_Wall_Set_wall_Subwin_Medinfo& media)
{
    return !IsZero(media._channelid) || media._channelIdInt != NO_CHANNEL_NUMBER;
}
