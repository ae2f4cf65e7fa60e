#include "Base/CheckedJson.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "Base/ExitStatus.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

using Json = nlohmann::json;

// Follows the parser through the file; on its own the library would let a key's last value win.
class DuplicateCheck {
public:
    explicit DuplicateCheck(const std::string& path) : m_file(path) {}

    void On(Json::parse_event_t event, const Json& parsed)
    {
        switch (event) {
        case Json::parse_event_t::object_start:
        case Json::parse_event_t::array_start:
            m_levels.push_back({event == Json::parse_event_t::array_start, 0, "", {}});
            break;
        case Json::parse_event_t::key:
            OnKey(parsed.get<std::string>());
            break;
        case Json::parse_event_t::object_end:
        case Json::parse_event_t::array_end:
            m_levels.pop_back();
            Next();
            break;
        case Json::parse_event_t::value:
            Next();
            break;
        }
    }

private:
    struct Level {
        bool array;
        std::size_t index;
        std::string keyText;
        std::set<std::string> keys;
    };

    void OnKey(const std::string& keyText)
    {
        Level& level = m_levels.back();
        level.keyText = keyText;
        if (!level.keys.insert(keyText).second) {
            throw UsageError(m_file + ": " + Place() + " is given twice");
        }
    }

    void Next()
    {
        if (!m_levels.empty()) {
            ++m_levels.back().index;
        }
    }

    std::string Place() const
    {
        std::string place;
        for (const Level& level : m_levels) {
            if (level.array) {
                place += '[' + std::to_string(level.index) + ']';
            } else {
                place += (place.empty() ? "" : ".") + tools::OneLine(level.keyText);
            }
        }
        return place;
    }

    const std::string& m_file;
    std::vector<Level> m_levels; // open objects and arrays
};

std::string LineAndColumn(const std::string& text, std::size_t byte)
{
    const auto offset =
        static_cast<std::ptrdiff_t>(std::min(std::max<std::size_t>(byte, 1) - 1, text.size()));
    const auto end = text.begin() + offset;
    const auto lineBegin = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    return "line " + std::to_string(1 + std::count(text.begin(), end, '\n')) + ", column " +
           std::to_string(1 + (end - lineBegin));
}

} // namespace

Json ParseJson(const std::string& text, const std::string& path)
{
    DuplicateCheck check(path);
    try {
        return Json::parse(text, [&](int, Json::parse_event_t event, Json& parsed) {
            check.On(event, parsed);
            return true;
        });
    } catch (const Json::parse_error& error) {
        throw UsageError(path + ": " + LineAndColumn(text, error.byte) + ": this is no valid JSON");
    } catch (const Json::exception&) {
        throw UsageError(path + ": a number is too large for any field");
    }
}

JsonObject::JsonObject(const Json& value, std::string place, std::initializer_list<const char*> keys)
    : m_value(value), m_place(std::move(place))
{
    if (!value.is_object()) {
        throw UsageError(m_place + " must be an object");
    }
    for (const auto& [keyText, ignored] : value.items()) {
        if (std::find(keys.begin(), keys.end(), keyText) == keys.end()) {
            throw UsageError(m_place + " has the unknown key '" + tools::OneLine(keyText) + "'");
        }
    }
}

int64_t JsonObject::Number(const char* key, int64_t lowest, int64_t highest,
                           std::optional<int64_t> fallback) const
{
    const Json* value = Find(key);
    if (value == nullptr && fallback) {
        return *fallback;
    }
    // A number too large for a signed type is too large for any field.
    const bool huge = value != nullptr && value->is_number_unsigned() &&
                      value->get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (value == nullptr || !value->is_number_integer() || huge || value->get<int64_t>() < lowest ||
        value->get<int64_t>() > highest) {
        Refuse(key,
               "must be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return value->get<int64_t>();
}

std::string JsonObject::Text(const char* key, std::size_t longest, std::optional<std::string> fallback) const
{
    const Json* value = Find(key);
    if (value == nullptr && fallback) {
        return *fallback;
    }
    if (value == nullptr || !value->is_string()) {
        Refuse(key, "must be a text");
    }
    auto text = value->get<std::string>();
    if (text.size() > longest || text.find('\0') != std::string::npos) {
        Refuse(key, "must be a text of at most " + std::to_string(longest) + " bytes without a zero byte");
    }
    return text;
}

const Json* JsonObject::Find(const char* key) const
{
    const auto it = m_value.find(key);
    return it == m_value.end() ? nullptr : &*it;
}

const Json& JsonObject::List(const char* key, bool required) const
{
    static const Json kEmpty = Json::array();
    const Json* value = Find(key);
    if (value == nullptr && !required) {
        return kEmpty;
    }
    if (value == nullptr || !value->is_array()) {
        Refuse(key, "must be a list");
    }
    return *value;
}

std::string JsonObject::PlaceOf(const char* key) const
{
    // The file's name ends with a colon; an object has its path after it.
    return m_place + (m_place.ends_with(':') ? " " : ".") + key;
}

void JsonObject::Refuse(const char* key, const std::string& what) const
{
    throw UsageError(PlaceOf(key) + ' ' + what);
}

} // namespace standin_host
