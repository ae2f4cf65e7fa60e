#pragma once
// The names of the requests and notifications of the device link.

#include <string>

#include "Link/CommandTable.h"

namespace DECODE_XML_CMD_HEADER {

#define TVWALL_DECLARE_URL(name, text) extern const std::string name;
TVWALL_DEVICE_URLS(TVWALL_DECLARE_URL)
#undef TVWALL_DECLARE_URL

// True when url is one of the texts.
bool IsKnownUrl(const std::string& url);

} // namespace DECODE_XML_CMD_HEADER
