#pragma once
// The page's files from web/; the build embeds them in the program.

#include <string_view>

namespace simulated_decoder {

extern const std::string_view kPageHtml;
extern const std::string_view kPageCss;
extern const std::string_view kPageJs;

} // namespace simulated_decoder
