#include "Commands/Records/CheckedJson.h"

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

// Follows the parser through the file. The library itself would let a key's last value win.
class CDuplicateCheck {
public:
    explicit CDuplicateCheck(const std::string& strFile) : m_strFile(strFile) {}

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
    struct SLevel {
        bool bArray;
        std::size_t nIndex;
        std::string strKey;
        std::set<std::string> keys;
    };

    void OnKey(const std::string& strKey)
    {
        SLevel& level = m_levels.back();
        level.strKey = strKey;
        if (!level.keys.insert(strKey).second) {
            throw CUsageError(m_strFile + ": " + Place() + " is given twice");
        }
    }

    void Next()
    {
        if (!m_levels.empty()) {
            ++m_levels.back().nIndex;
        }
    }

    std::string Place() const
    {
        std::string strPlace;
        for (const SLevel& level : m_levels) {
            if (level.bArray) {
                strPlace += '[' + std::to_string(level.nIndex) + ']';
            } else {
                strPlace += (strPlace.empty() ? "" : ".") + tools::OneLine(level.strKey);
            }
        }
        return strPlace;
    }

    const std::string& m_strFile;
    std::vector<SLevel> m_levels; // objects and arrays that are open
};

std::string LineAndColumn(const std::string& strText, std::size_t nByte)
{
    const auto nOffset =
        static_cast<std::ptrdiff_t>(std::min(std::max<std::size_t>(nByte, 1) - 1, strText.size()));
    const auto end = strText.begin() + nOffset;
    const auto lineBegin = std::find(std::make_reverse_iterator(end), strText.rend(), '\n').base();
    return "line " + std::to_string(1 + std::count(strText.begin(), end, '\n')) + ", column " +
           std::to_string(1 + (end - lineBegin));
}

} // namespace

Json ParseJson(const std::string& strText, const std::string& strFile)
{
    CDuplicateCheck check(strFile);
    try {
        return Json::parse(strText, [&](int, Json::parse_event_t event, Json& parsed) {
            check.On(event, parsed);
            return true;
        });
    } catch (const Json::parse_error& error) {
        throw CUsageError(strFile + ": " + LineAndColumn(strText, error.byte) + ": this is no valid JSON");
    } catch (const Json::exception&) {
        throw CUsageError(strFile + ": a number is too large for any field");
    }
}

CJsonObject::CJsonObject(const Json& value, std::string strPlace, std::initializer_list<const char*> keys)
    : m_value(value), m_strPlace(std::move(strPlace))
{
    if (!value.is_object()) {
        throw CUsageError(m_strPlace + " must be an object");
    }
    for (const auto& [strKey, ignored] : value.items()) {
        if (std::find(keys.begin(), keys.end(), strKey) == keys.end()) {
            throw CUsageError(m_strPlace + " has the unknown key '" + tools::OneLine(strKey) + "'");
        }
    }
}

int64_t CJsonObject::Number(const char* szKey, int64_t nMin, int64_t nMax,
                            std::optional<int64_t> nDefault) const
{
    const Json* pValue = Find(szKey);
    if (pValue == nullptr && nDefault) {
        return *nDefault;
    }
    // What is beyond the signed numbers is beyond every field as well.
    const bool bHuge = pValue != nullptr && pValue->is_number_unsigned() &&
                       pValue->get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (pValue == nullptr || !pValue->is_number_integer() || bHuge || pValue->get<int64_t>() < nMin ||
        pValue->get<int64_t>() > nMax) {
        Refuse(szKey, "must be a whole number from " + std::to_string(nMin) + " to " + std::to_string(nMax));
    }
    return pValue->get<int64_t>();
}

std::string CJsonObject::Text(const char* szKey, std::size_t nMax,
                              std::optional<std::string> strDefault) const
{
    const Json* pValue = Find(szKey);
    if (pValue == nullptr && strDefault) {
        return *strDefault;
    }
    if (pValue == nullptr || !pValue->is_string()) {
        Refuse(szKey, "must be a text");
    }
    auto strText = pValue->get<std::string>();
    if (strText.size() > nMax || strText.find('\0') != std::string::npos) {
        Refuse(szKey, "must be a text of at most " + std::to_string(nMax) + " bytes without a zero byte");
    }
    return strText;
}

const Json* CJsonObject::Find(const char* szKey) const
{
    const auto it = m_value.find(szKey);
    return it == m_value.end() ? nullptr : &*it;
}

const Json& CJsonObject::List(const char* szKey, bool bRequired) const
{
    static const Json s_empty = Json::array();
    const Json* pValue = Find(szKey);
    if (pValue == nullptr && !bRequired) {
        return s_empty;
    }
    if (pValue == nullptr || !pValue->is_array()) {
        Refuse(szKey, "must be a list");
    }
    return *pValue;
}

std::string CJsonObject::PlaceOf(const char* szKey) const
{
    // The file's name ends with a colon, its objects have a path behind it.
    return m_strPlace + (m_strPlace.ends_with(':') ? " " : ".") + szKey;
}

void CJsonObject::Refuse(const char* szKey, const std::string& strWhat) const
{
    throw CUsageError(PlaceOf(szKey) + ' ' + strWhat);
}

} // namespace standin_host
