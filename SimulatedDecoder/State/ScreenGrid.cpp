#include "State/ScreenGrid.h"

#include <algorithm>

namespace simulated_decoder {

bool ScreenGrid::Holds(const GridPosition& position) const
{
    return position.column < static_cast<std::uint32_t>(m_columns) &&
           position.row < static_cast<std::uint32_t>(m_rows);
}

ErrorCode ScreenGrid::Resize(int rows, int columns)
{
    if (rows < 1 || rows > kMaxScreens || columns < 1 || columns > kMaxScreens) {
        return ErrorCode::BadValue;
    }
    m_rows = rows;
    m_columns = columns;
    std::erase_if(m_bound, [this](const auto& bound) { return !Holds(bound.first); });
    return ErrorCode::Success;
}

ErrorCode ScreenGrid::Bind(const std::vector<Binding>& bindings)
{
    auto bound = m_bound;
    for (const auto& [output, position] : bindings) {
        if (output < 1 || output > kOutputs) {
            return ErrorCode::UnknownOutput;
        }
        if (!Holds(position)) {
            return ErrorCode::UnknownScreen;
        }
        const auto holder =
            std::find_if(bound.begin(), bound.end(),
                         [output = output](const auto& candidate) { return candidate.second == output; });
        if (holder != bound.end() && holder->first != position) {
            return ErrorCode::OutputTaken;
        }
        if (bound.emplace(position, output).first->second != output) {
            return ErrorCode::ScreenTaken;
        }
    }
    m_bound.swap(bound);
    return ErrorCode::Success;
}

ErrorCode ScreenGrid::Unbind(const std::vector<GridPosition>& positions)
{
    auto bound = m_bound;
    for (const GridPosition& position : positions) {
        if (!Holds(position)) {
            return ErrorCode::UnknownScreen;
        }
        if (bound.erase(position) == 0) {
            return ErrorCode::ScreenNotBound;
        }
    }
    m_bound.swap(bound);
    return ErrorCode::Success;
}

} // namespace simulated_decoder
