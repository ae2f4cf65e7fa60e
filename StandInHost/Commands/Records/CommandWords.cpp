#include "Commands/Records/CommandWords.h"

#include <algorithm>
#include <unordered_map>

#include "Base/ExitStatus.h"
#include "Tools/Common/Numbers.h"

namespace standin_host {

int64_t Number(const std::string& text, const Field& field)
{
    if (field.isSwitch) {
        return OnOrOff(text, field.name) ? 1 : 0;
    }
    const auto value = tools::ParseNumber(text, field.min, field.highest);
    if (!value) {
        throw UsageError(std::string(field.name) + " must be a number from " + std::to_string(field.min) +
                         " to " + std::to_string(field.highest) + ", not '" + text + "'");
    }
    return *value;
}

uint32_t Unsigned(const std::string& text, const char* name)
{
    return static_cast<uint32_t>(Number(text, FieldOf<uint32_t>(name)));
}

int32_t Signed(const std::string& text, const char* name)
{
    return static_cast<int32_t>(Number(text, FieldOf<int32_t>(name)));
}

bool OnOrOff(const std::string& text, const char* name)
{
    if (text != "on" && text != "off") {
        throw UsageError(std::string(name) + " must be on or off, not '" + text + "'");
    }
    return text == "on";
}

const std::string& Fitting(const std::string& text, std::size_t highest, const char* name)
{
    if (text.size() > highest) {
        throw UsageError(std::string(name) + " must not be longer than " + std::to_string(highest) +
                         " bytes");
    }
    return text;
}

std::vector<WordGroup> Groups(const Words& words, std::size_t size, const char* shape)
{
    if (words.size() % size != 0) {
        throw UsageError(shape);
    }
    std::vector<WordGroup> groups;
    for (std::size_t begin = 0; begin < words.size(); begin += size) {
        groups.push_back(WordGroup(words).subspan(begin, size));
    }
    return groups;
}

std::vector<SubWindows> ReadSubWindows(const Words& words, std::span<const Field> fields, const char* shape)
{
    const auto groups = Groups(words, fields.size(), shape);
    if (groups.size() > kMaxSubWindows) {
        throw UsageError("one command takes at most " + std::to_string(kMaxSubWindows) + " sub-windows");
    }
    std::vector<SubWindows> windows;
    std::unordered_map<int64_t, std::size_t> places; // place of each window, by id
    for (const WordGroup& group : groups) {
        int64_t numbers[4] = {};
        std::transform(group.begin(), group.end(), fields.begin(), numbers, Number);
        const auto [it, isNew] = places.try_emplace(numbers[0], windows.size());
        if (isNew) {
            windows.push_back({numbers[0], {}});
        }
        windows[it->second].subWindows.push_back({numbers[1], numbers[2], numbers[3]});
    }
    return windows;
}

std::string Join(const Words& words)
{
    std::string text;
    for (const std::string& word : words) {
        text += ' ' + word;
    }
    return text;
}

} // namespace standin_host
