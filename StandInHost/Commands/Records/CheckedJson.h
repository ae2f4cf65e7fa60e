#pragma once
// JSON files that people write: whatever is not as it must be ends in one line that names the place, and
// never repeats a value, which may be a password.

#include <initializer_list>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace standin_host {

// Parses the text of a file. Throws CUsageError on bad syntax and on a key that an object has twice.
nlohmann::json ParseJson(const std::string& strText, const std::string& strFile);

// One object of the file. Every operation throws CUsageError when the file says something else.
class CJsonObject {
public:
    // strPlace is the object's own, such as "wall.json: windows[0]". Keys other than these are refused.
    CJsonObject(const nlohmann::json& value, std::string strPlace, std::initializer_list<const char*> keys);

    // Without a default the key is required.
    int64_t Number(const char* szKey, int64_t nMin, int64_t nMax, std::optional<int64_t> nDefault = {}) const;
    // At most nMax bytes, none of them zero.
    std::string Text(const char* szKey, std::size_t nMax, std::optional<std::string> strDefault = {}) const;
    // Null when the key is missing.
    const nlohmann::json* Find(const char* szKey) const;
    // An empty list when the key is missing and not required.
    const nlohmann::json& List(const char* szKey, bool bRequired) const;
    std::string PlaceOf(const char* szKey) const;

    [[noreturn]] void Refuse(const char* szKey, const std::string& strWhat) const;

private:
    const nlohmann::json& m_value;
    const std::string m_strPlace;
};

} // namespace standin_host
