#include "Host/Frames/ExchangeWatch.h"

#include <cstdlib>
#include <utility>

#include <tinyxml2.h>

namespace standin_host {

namespace {

struct MessageHeader {
    std::string url;
    uint32_t seq;
    uint32_t errorCode;
};

std::string TextOf(const tinyxml2::XMLElement* element)
{
    const char* text = element == nullptr ? nullptr : element->GetText();
    return text == nullptr ? "" : text;
}

// Nothing for a message without a header that can be read, or without a number. Only the header is parsed:
// what follows it may be long, and broken. A number before the url is none; numbers are cut to 32 bits, as
// the plug-in does it.
std::optional<MessageHeader> ReadHeader(std::string_view message)
{
    const std::size_t end = message.find("</td_header");
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string text = std::string(message.substr(0, end)) + "</td_header></td_command>";
    tinyxml2::XMLDocument document;
    document.Parse(text.data(), text.size());
    const tinyxml2::XMLElement* root = document.FirstChildElement("td_command");
    const tinyxml2::XMLElement* header = root == nullptr ? nullptr : root->FirstChildElement("td_header");
    if (header == nullptr) {
        return std::nullopt;
    }
    const tinyxml2::XMLElement* url = header->FirstChildElement("url");
    const tinyxml2::XMLElement* seq =
        url == nullptr ? header->FirstChildElement("seq") : url->NextSiblingElement("seq");
    if (seq == nullptr) {
        return std::nullopt;
    }
    const std::string code = TextOf(header->FirstChildElement("errorcode"));
    return MessageHeader{TextOf(url), static_cast<uint32_t>(std::strtoll(TextOf(seq).c_str(), nullptr, 10)),
                         static_cast<uint32_t>(std::strtoul(code.c_str(), nullptr, 10))};
}

bool IsNotification(const std::string& url)
{
    return url == "notifychannelchange" || url == "notifychannelstate";
}

} // namespace

void ExchangeWatch::Forget()
{
    const TMutexGuard guard(m_lock);
    m_last = {};
}

void ExchangeWatch::Sent(std::string_view bytes)
{
    m_out.Feed(bytes);
    FrameSplitter::Frame frame{};
    while (m_out.Next(frame)) {
        auto header = frame.kind == FrameSplitter::Kind::Frame ? ReadHeader(frame.payload) : std::nullopt;
        if (header) {
            const TMutexGuard guard(m_lock);
            m_last = {.sent = true, .url = std::move(header->url)};
            m_seq = header->seq;
            m_sentAt = Clock::now();
        }
    }
}

void ExchangeWatch::Received(std::string_view bytes)
{
    m_in.Feed(bytes);
    FrameSplitter::Frame frame{};
    while (m_in.Next(frame)) {
        if (frame.kind != FrameSplitter::Kind::Frame || !Awaits()) {
            continue;
        }
        const auto header = ReadHeader(frame.payload);
        const TMutexGuard guard(m_lock);
        if (header && header->seq == m_seq && !IsNotification(header->url) && IsAwaiting()) {
            m_last.deviceCode = header->errorCode;
        }
    }
}

bool ExchangeWatch::Awaits() const
{
    const TMutexGuard guard(m_lock);
    return IsAwaiting();
}

Exchange ExchangeWatch::Last() const
{
    const TMutexGuard guard(m_lock);
    Exchange last = m_last;
    if (last.sent) {
        last.waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_sentAt);
    }
    return last;
}

} // namespace standin_host
