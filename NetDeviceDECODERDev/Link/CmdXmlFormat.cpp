#include "Link/CmdXmlFormat.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace DECODE_XML_CMD_HEADER {

#define TVWALL_DEFINE_URL(name, text) const std::string name = text;
TVWALL_DEVICE_URLS(TVWALL_DEFINE_URL)
#undef TVWALL_DEFINE_URL

bool IsKnownUrl(const std::string& url)
{
#define TVWALL_URL_TEXT(name, text) text,
    static constexpr std::string_view KNOWN_URLS[] = {TVWALL_DEVICE_URLS(TVWALL_URL_TEXT)};
#undef TVWALL_URL_TEXT
    return std::find(std::begin(KNOWN_URLS), std::end(KNOWN_URLS), url) != std::end(KNOWN_URLS);
}

} // namespace DECODE_XML_CMD_HEADER
