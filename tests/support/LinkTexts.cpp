#include "LinkTexts.h"

#include "FakeCommand.h"
#include "TvwallProtocol.h"

using namespace ORVA_NET_PROTOCOL;

std::string Frame(const std::string& payload)
{
    return Bytes().Text("1111").U32(payload.size()).Text(payload);
}

std::string ReplyText(const std::string& url, const std::string& seq, const std::string& errorcode,
                      const std::string& headerTail, const std::string& body)
{
    return "<td_command><td_header><url>" + url + "</url><seq>" + seq + "</seq><errorcode>" + errorcode +
           "</errorcode>" + headerTail + "</td_header><td_body>" + body + "</td_body></td_command>";
}

std::string Element(const std::string& xml, const std::string& name)
{
    const auto begin = xml.find("<" + name + ">");
    const auto end = xml.find("</" + name + ">");
    if (begin == std::string::npos || end == std::string::npos) {
        return xml.find("<" + name + "/>") != std::string::npos ? "" : "?";
    }
    const auto content = begin + name.size() + 2;
    return xml.substr(content, end - content);
}

std::string BodyOf(const std::string& request)
{
    const std::string end = "</td_header>\r\n";
    return request.substr(request.find(end) + end.size());
}

std::string Lines(std::string text)
{
    for (auto at = text.find("><"); at != std::string::npos; at = text.find("><", at)) {
        text.insert(at + 1, "\r\n");
    }
    return text + "\r\n";
}

std::string Body(const std::string& inner)
{
    return Lines((inner.empty() ? "<td_body/>" : "<td_body>" + inner + "</td_body>") + "</td_command>");
}

std::vector<std::string_view> Split(std::string_view texts)
{
    std::vector<std::string_view> all;
    for (size_t at = 0; at <= texts.size(); at += all.back().size() + 1) {
        all.push_back(texts.substr(at, texts.find('|', at) - at));
    }
    return all;
}

std::string Repeat(const std::string& text, size_t n)
{
    std::string all;
    all.reserve(text.size() * n);
    for (size_t i = 0; i < n; ++i) {
        all += text;
    }
    return all;
}

std::string Field(const std::string& text, size_t size)
{
    return text + std::string(size - text.size(), '\0');
}

std::string Option(unsigned int optType, const std::string& record)
{
    return Bytes().U32(optType).U32(record.size()).Text(record);
}

std::string LoginPayload(const std::string& user, const std::string& password)
{
    std::string payload(sizeof(_kest_net_login_info), '\0');
    payload.replace(offsetof(_kest_net_login_info, username), user.size(), user);
    payload.replace(offsetof(_kest_net_login_info, password), password.size(), password);
    return payload;
}

std::string ResultOf(unsigned int optType, const std::string& data)
{
    const auto len = static_cast<unsigned int>(data.size());
    return "buffer " + Hex(Bytes().U32(optType).U16(8).U16(len).U32(0).U32(0).Text(data));
}
