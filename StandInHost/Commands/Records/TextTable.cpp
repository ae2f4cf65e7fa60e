#include "Commands/Records/TextTable.h"
#include "Tools/Common/TerminalText.h"

#include <algorithm>

namespace standin_host {

namespace {

std::size_t Width(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

std::string TextTable(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Width(tools::OneLine(row[i])));
        }
    }
    std::string table;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string cell = tools::OneLine(row[i]);
            line += cell + std::string(widths[i] - Width(cell) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        table += "\n  " + line;
    }
    return table;
}

} // namespace standin_host
