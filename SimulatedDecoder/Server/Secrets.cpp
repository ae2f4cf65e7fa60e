#include "Server/Secrets.h"

#include <algorithm>
#include <cctype>

#include "Link/Crypto.h"

namespace simulated_decoder {

namespace {

bool IsEnciphered(std::string_view text)
{
    return text.size() == kEncipheredLength && std::all_of(text.begin(), text.end(), [](char byte) {
               return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '+' || byte == '/' ||
                      byte == '=';
           });
}

bool IsNothing(std::string_view text) { return text.empty(); }

// Replaces the content of elements with this name, unless it may stay.
std::string Hide(std::string_view text, std::string_view name, bool (*mayStay)(std::string_view),
                 std::string_view instead)
{
    const std::string begin = "<" + std::string(name);
    const std::string end = "</" + std::string(name);
    std::string hidden;
    std::size_t copied = 0;
    for (auto at = text.find(begin); at != std::string_view::npos; at = text.find(begin, at)) {
        at += begin.size();
        const std::string_view rest = text.substr(at);
        if (rest.empty() || std::string_view("> \t\r\n").find(rest.front()) == std::string_view::npos) {
            continue; // an element without content, or with a longer name
        }
        const std::string_view content = rest.substr(0, rest.find(end));
        if (content != ">" && !mayStay(content.substr(1))) {
            hidden.append(text, copied, at - copied).append(">").append(instead);
            at += content.size();
            copied = at;
        }
    }
    return hidden.append(text, copied);
}

} // namespace

std::string HidePlainAccounts(std::string_view text)
{
    constexpr std::string_view kInstead = "(not enciphered)";
    return Hide(Hide(text, "user", IsEnciphered, kInstead), "pwd", IsEnciphered, kInstead);
}

std::string HideCredentials(std::string_view text)
{
    std::string hidden(text);
    for (const char* name : {"account", "authentication", "token", "user", "pwd"}) {
        hidden = Hide(hidden, name, IsNothing, "(hidden)");
    }
    return hidden;
}

} // namespace simulated_decoder
