#include "Commands/Records/CommandWords.h"

#include <algorithm>
#include <unordered_map>

#include "Base/ExitStatus.h"
#include "Tools/Common/Numbers.h"

namespace standin_host {

int64_t Number(const std::string& strText, const SField& field)
{
    if (field.bSwitch) {
        return OnOrOff(strText, field.szName) ? 1 : 0;
    }
    const auto nValue = tools::ParseNumber(strText, field.nMin, field.nMax);
    if (!nValue) {
        throw CUsageError(std::string(field.szName) + " must be a number from " + std::to_string(field.nMin) +
                          " to " + std::to_string(field.nMax) + ", not '" + strText + "'");
    }
    return *nValue;
}

uint32_t Unsigned(const std::string& strText, const char* szName)
{
    return static_cast<uint32_t>(Number(strText, FieldOf<uint32_t>(szName)));
}

int32_t Signed(const std::string& strText, const char* szName)
{
    return static_cast<int32_t>(Number(strText, FieldOf<int32_t>(szName)));
}

bool OnOrOff(const std::string& strText, const char* szName)
{
    if (strText != "on" && strText != "off") {
        throw CUsageError(std::string(szName) + " must be on or off, not '" + strText + "'");
    }
    return strText == "on";
}

const std::string& Fitting(const std::string& strText, std::size_t nMax, const char* szName)
{
    if (strText.size() > nMax) {
        throw CUsageError(std::string(szName) + " must not be longer than " + std::to_string(nMax) +
                          " bytes");
    }
    return strText;
}

std::vector<WordGroup> Groups(const Words& words, std::size_t nSize, const char* szShape)
{
    if (words.size() % nSize != 0) {
        throw CUsageError(szShape);
    }
    std::vector<WordGroup> groups;
    for (std::size_t nBegin = 0; nBegin < words.size(); nBegin += nSize) {
        groups.push_back(WordGroup(words).subspan(nBegin, nSize));
    }
    return groups;
}

std::vector<SSubWindows> SubWindows(const Words& words, std::span<const SField> fields, const char* szShape)
{
    const auto groups = Groups(words, fields.size(), szShape);
    if (groups.size() > kMaxSubWindows) {
        throw CUsageError("one command takes at most " + std::to_string(kMaxSubWindows) + " sub-windows");
    }
    std::vector<SSubWindows> windows;
    std::unordered_map<int64_t, std::size_t> places; // of the windows, by id
    for (const WordGroup& group : groups) {
        int64_t numbers[4] = {};
        std::transform(group.begin(), group.end(), fields.begin(), numbers, Number);
        const auto [it, bNew] = places.try_emplace(numbers[0], windows.size());
        if (bNew) {
            windows.push_back({numbers[0], {}});
        }
        windows[it->second].subWindows.push_back({numbers[1], numbers[2], numbers[3]});
    }
    return windows;
}

std::string Join(const Words& words)
{
    std::string strText;
    for (const std::string& strWord : words) {
        strText += ' ' + strWord;
    }
    return strText;
}

} // namespace standin_host
