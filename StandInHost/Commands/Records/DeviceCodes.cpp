#include "Commands/Records/DeviceCodes.h"

#include <optional>
#include <string_view>
#include <utility>

#include "Base/ExitStatus.h"
#include "Base/Files.h"
#include "Tools/Common/Numbers.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? ""
                                           : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// The number and the words of a line; nothing where either is missing.
std::optional<std::pair<uint32_t, std::string>> ReadCode(std::string_view line)
{
    const std::size_t end = line.find_first_of(kBlanks);
    const auto code = tools::ParseDecimal<uint32_t>(line.substr(0, end));
    if (end == std::string_view::npos || !code) {
        return std::nullopt;
    }
    return std::pair(*code, std::string(Trimmed(line.substr(end))));
}

} // namespace

DeviceCodes::DeviceCodes(const std::string& path)
{
    const std::string content = ReadWholeFile(path, "device codes");
    std::string_view left = content;
    for (std::size_t number = 1; !left.empty(); ++number) {
        const std::size_t end = left.find('\n');
        const char* problem = AddLine(Trimmed(left.substr(0, end)));
        if (problem != nullptr) {
            throw UsageError(path + ": line " + std::to_string(number) + ": " + problem);
        }
        left.remove_prefix(end == std::string_view::npos ? left.size() : end + 1);
    }
}

const char* DeviceCodes::AddLine(std::string_view line)
{
    if (!tools::IsUtf8(line)) {
        return "this is not UTF-8";
    }
    if (line.empty() || line.front() == '#') {
        return nullptr;
    }
    auto code = ReadCode(line);
    if (!code) {
        return "a line takes a number and words, such as \"201 unknown window\"";
    }
    return m_words.insert(*std::move(code)).second ? nullptr : "this number was given before";
}

std::string DeviceCodes::Words(uint32_t code) const
{
    const auto found = m_words.find(code);
    return found == m_words.end() ? "" : found->second;
}

} // namespace standin_host
