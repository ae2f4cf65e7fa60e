#pragma once
// The files of the page as they stand in web/; the build puts them into the program.

#include <string_view>

namespace simulated_decoder {

extern const std::string_view kPageHtml;
extern const std::string_view kPageCss;
extern const std::string_view kPageJs;

} // namespace simulated_decoder
