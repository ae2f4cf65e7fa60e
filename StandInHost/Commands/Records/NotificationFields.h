#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace standin_host {

// What a notification on channels says: "channels", a list of objects with "id", "name" and "online" as far
// as the decoder tells them; a state that is neither online nor offline stands as it is, in "state". Empty
// for a text that cannot be read, or is longer than kMostNoticeRead.
nlohmann::ordered_json NotificationFields(const std::string& xml);
inline constexpr std::size_t kMostNoticeRead = 4UL * 1024 * 1024;

// The "channels" of such fields in words: "1 Gate offline, 2 Yard online".
std::string ChannelsText(const nlohmann::ordered_json& fields);

} // namespace standin_host
