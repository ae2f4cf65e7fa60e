#pragma once
// Takes secrets out of the messages of the link. Works on the text, as a host's request need not be
// well-formed, and on the beginning of a message as well.

#include <string>
#include <string_view>

namespace simulated_decoder {

// Without the accounts of video sources that the host has not enciphered.
std::string HidePlainAccounts(std::string_view text);

// Without anything that logs in or opens a source, enciphered or not, since whoever repeats it is let in.
std::string HideCredentials(std::string_view text);

} // namespace simulated_decoder
