#pragma once

#include <string>
#include <vector>

namespace standin_host {

// Rows with aligned columns, each on a line of its own that begins with "\n ". Texts are made fit for a
// terminal; column widths are in UTF-8 characters.
std::string TextTable(const std::vector<std::vector<std::string>>& rows);

} // namespace standin_host
