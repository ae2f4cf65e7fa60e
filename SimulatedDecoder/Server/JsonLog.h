#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Link/ErrorCode.h"
#include "Requests/RequestHandlers.h"
#include "Server/AppendedFile.h"

namespace simulated_decoder {

// The requests as received, one JSON object per line:
//   {"time":"2024-05-01T12:00:00.000Z","connection":1,"url":"dowallclear","seq":7,"request":"<td_command>…",
//    "credentials":0,"errorcode":0}
// `url` is empty and `seq` null if the request has none; `errorcode` is null if no code was sent.
// `credentials` counts the accounts of video sources that were deciphered. In `request`, bytes that are not
// UTF-8 are replaced, and so are accounts that the host has not enciphered. A line is in the file before the
// reply is sent.
class JsonLog {
public:
    // Truncates the file; throws std::runtime_error on failure. With an empty path nothing is logged.
    explicit JsonLog(const std::string& path) : m_file(path) {}

    void Write(int connection, const RequestContext& context, std::string_view text,
               std::optional<ErrorCode> answered);

private:
    AppendedFile m_file;
};

} // namespace simulated_decoder
