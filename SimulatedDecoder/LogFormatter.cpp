#include "LogFormatter.h"

#include <string>

#include <spdlog/pattern_formatter.h>

#include "Tools/Common/TerminalText.h"

namespace simulated_decoder {

namespace {

class PrintableMessage : public spdlog::custom_flag_formatter {
public:
    void format(const spdlog::details::log_msg& message, const std::tm&, spdlog::memory_buf_t& line) override
    {
        const std::string text = tools::OneLine({message.payload.data(), message.payload.size()});
        line.append(text.data(), text.data() + text.size());
    }
    std::unique_ptr<custom_flag_formatter> clone() const override
    {
        return std::make_unique<PrintableMessage>();
    }
};

} // namespace

std::unique_ptr<spdlog::formatter> LogFormatter()
{
    auto formatter = std::make_unique<spdlog::pattern_formatter>();
    formatter->add_flag<PrintableMessage>('*').set_pattern("%H:%M:%S.%e %^%l%$ %*");
    return formatter;
}

} // namespace simulated_decoder
