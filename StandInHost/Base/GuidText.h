#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "HostTypes.h"

namespace standin_host {

// "{00112233-4455-6677-8899-AABBCCDDEEFF}".
std::string GuidText(const GUID& guid);
// With or without braces, either letter case.
std::optional<GUID> ParseGuid(std::string_view text);

} // namespace standin_host
