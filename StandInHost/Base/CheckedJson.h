#pragma once
// JSON files written by people: every fault ends in a one-line error that names the place and never repeats a
// value, which may be a password.

#include <initializer_list>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace standin_host {

// Parses the text of a file. Throws UsageError on bad syntax and on a duplicate key.
nlohmann::json ParseJson(const std::string& text, const std::string& path);

// One object of the file. Every operation throws UsageError when the file does not fit.
class JsonObject {
public:
    // place is the object's own, such as "wall.json: windows[0]". Keys other than these are refused.
    JsonObject(const nlohmann::json& value, std::string place, std::initializer_list<const char*> keys);

    // Without a default the key is required.
    int64_t Number(const char* key, int64_t lowest, int64_t highest,
                   std::optional<int64_t> fallback = {}) const;
    // At most highest bytes, none of them zero.
    std::string Text(const char* key, std::size_t longest, std::optional<std::string> fallback = {}) const;
    // Null when the key is missing.
    const nlohmann::json* Find(const char* key) const;
    // An empty list when the key is missing and not required.
    const nlohmann::json& List(const char* key, bool required) const;
    std::string PlaceOf(const char* key) const;

    [[noreturn]] void Refuse(const char* key, const std::string& what) const;

private:
    const nlohmann::json& m_value;
    const std::string m_place;
};

} // namespace standin_host
