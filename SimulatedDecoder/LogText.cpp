#include "LogText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include <spdlog/pattern_formatter.h>

#include "Link/Message.h"

namespace simulated_decoder {

namespace {

// Of the UTF-8 character at the front; 0 when there is none.
std::size_t CharacterLength(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    const std::string_view rest = text.substr(1, std::max<std::size_t>(length, 1) - 1);
    const bool whole = rest.size() + 1 == length &&
                       std::all_of(rest.begin(), rest.end(), [](char byte) { return (byte & 0xC0) == 0x80; });
    return whole ? length : 0;
}

class VisibleMessage : public spdlog::custom_flag_formatter {
public:
    void format(const spdlog::details::log_msg& message, const std::tm&, spdlog::memory_buf_t& line) override
    {
        const std::string text = Visible({message.payload.data(), message.payload.size()});
        line.append(text.data(), text.data() + text.size());
    }
    std::unique_ptr<custom_flag_formatter> clone() const override
    {
        return std::make_unique<VisibleMessage>();
    }
};

} // namespace

std::string Visible(std::string_view text)
{
    std::string visible;
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        if (length != 0 && !HasControls(character)) {
            visible += character;
        } else {
            for (const char byte : character) {
                fmt::format_to(std::back_inserter(visible), "\\x{:02x}", static_cast<unsigned char>(byte));
            }
        }
        text.remove_prefix(character.size());
    }
    return visible;
}

std::unique_ptr<spdlog::formatter> LogFormatter()
{
    auto formatter = std::make_unique<spdlog::pattern_formatter>();
    formatter->add_flag<VisibleMessage>('*').set_pattern("%H:%M:%S.%e %^%l%$ %*");
    return formatter;
}

} // namespace simulated_decoder
