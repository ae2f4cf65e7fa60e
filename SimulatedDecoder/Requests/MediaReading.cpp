#include "Requests/MediaReading.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string>

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

constexpr std::size_t kMaxMedia = 16; // for one sub-window
constexpr std::size_t kMaxAddress = 255;
constexpr std::size_t kMaxChannel = 64;

// The elements of one media item, by name.
using MediaElements = std::map<std::string_view, std::string_view>;

// The media of a sub-window follow each other in its single `mediainfo`; each begins with its `type`. Nothing
// when the elements are arranged otherwise.
std::optional<std::vector<MediaElements>> CutMedia(const XMLElement& mediaInfo)
{
    std::vector<MediaElements> list;
    for (const XMLElement* element = mediaInfo.FirstChildElement(); element != nullptr;
         element = element->NextSiblingElement()) {
        const std::string_view name = element->Name();
        if (name == "type") {
            list.emplace_back();
        }
        const char* text = element->GetText();
        if (list.empty() || !list.back().emplace(name, text != nullptr ? text : "").second) {
            return std::nullopt;
        }
    }
    return list;
}

// A host name or IP address; a URL could hold an account.
bool IsAddress(std::string_view text)
{
    return !text.empty() && text.size() <= kMaxAddress &&
           std::all_of(text.begin(), text.end(), [](char byte) {
               return std::isalnum(static_cast<unsigned char>(byte)) != 0 ||
                      std::string_view(".-_:%[]").find(byte) != std::string_view::npos;
           });
}

class MediaReader {
public:
    explicit MediaReader(MediaElements elements) : m_elements(std::move(elements)) {}

    std::optional<Media> Read(MediaForm form)
    {
        Media media;
        Take("type", media.type);
        Take("reqmode", media.requestMode);
        media.address = m_elements["addr"];
        Take("port", media.port);
        media.channel = m_elements["channelid"];
        Take("streamtype", media.streamType);
        if (form == MediaForm::Full) {
            Take("begintime", media.beginTime);
            Take("endtime", media.endTime);
            Take("recordmask", media.recordMask);
            Take("source", media.source);
        }
        m_good = m_good && IsAddress(media.address) && media.port != 0 &&
                 media.channel.size() <= kMaxChannel && IsPlain(media.channel);
        return m_good ? std::optional(std::move(media)) : std::nullopt;
    }

private:
    template <typename Number>
    void Take(std::string_view name, Number& number)
    {
        const auto value = tools::ParseDecimal<Number>(m_elements[name]);
        m_good = m_good && value;
        number = value.value_or(0);
    }

    MediaElements m_elements;
    bool m_good = true;
};

ErrorCode CheckAccount(RequestContext& context, MediaElements& elements)
{
    const RsaKeyPair& key = context.session.Desk().SourceKey();
    const auto user = key.Decipher(elements["user"]);
    const auto password = key.Decipher(elements["pwd"]);
    if (!user || user->empty() || !password || password->empty()) {
        return ErrorCode::UnreadableCredential;
    }
    ++context.credentials;
    return context.state.sources.Accept(*user, *password) ? ErrorCode::Success : ErrorCode::RefusedCredential;
}

} // namespace

ErrorCode ReadMedia(RequestContext& context, const XMLElement& mediaInfo, MediaForm form,
                    std::vector<Media>& list)
{
    auto cut = CutMedia(mediaInfo);
    if (!cut || cut->empty()) {
        return ErrorCode::BadValue;
    }
    if (cut->size() > kMaxMedia) {
        return ErrorCode::TooManyMedia;
    }
    for (MediaElements& elements : *cut) {
        auto media = MediaReader(elements).Read(form);
        if (!media) {
            return ErrorCode::BadValue;
        }
        if (const ErrorCode code = CheckAccount(context, elements); code != ErrorCode::Success) {
            return code;
        }
        list.push_back(std::move(*media));
    }
    return ErrorCode::Success;
}

} // namespace simulated_decoder
