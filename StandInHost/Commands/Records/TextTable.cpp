#include "Commands/Records/TextTable.h"
#include "Tools/Common/TerminalText.h"

#include <algorithm>

namespace standin_host {

namespace {

std::size_t Width(const std::string& strText)
{
    return static_cast<std::size_t>(
        std::count_if(strText.begin(), strText.end(), [](char c) { return (c & 0xC0) != 0x80; }));
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
    std::string strTable;
    for (const auto& row : rows) {
        std::string strLine;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string strCell = tools::OneLine(row[i]);
            strLine += strCell + std::string(widths[i] - Width(strCell) + 2, ' ');
        }
        strLine.erase(strLine.find_last_not_of(' ') + 1);
        strTable += "\n  " + strLine;
    }
    return strTable;
}

} // namespace standin_host
