#include "Picture/WallPictures.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <spdlog/fmt/fmt.h>

#include "Picture/Captions.h"
#include "State/SubWindowGrid.h"

namespace simulated_decoder {

namespace {

constexpr std::int64_t kMaxColumns = 96; // characters across the wall, without its right edge
constexpr std::int64_t kMaxLines = 32;
constexpr std::size_t kMaxTableLines = 100;

// The edges and corners of a box, and what one is made of that is too thin for them.
struct Pen {
    char32_t horizontal, vertical, upperLeft, upperRight, lowerLeft, lowerRight, bar;
};
constexpr Pen kScreenPen{U'─', U'│', U'┌', U'┐', U'└', U'┘', U'·'};
constexpr Pen kWindowPen{U'═', U'║', U'╔', U'╗', U'╚', U'╝', U'■'};

// Inclusive corners in characters.
struct Box {
    std::int64_t left, top, right, bottom;
};

// Of the characters below U+10000, which are all that is drawn.
void AppendUtf8(std::string& text, char32_t character)
{
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6);
        append(0x80 | (character & 0x3F));
    } else {
        append(0xE0 | character >> 12);
        append(0x80 | (character >> 6 & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

// A sheet of characters; what lies beyond its open part, at first all of it, is not drawn.
class Sheet {
public:
    Sheet(std::int64_t columns, std::int64_t lines)
        : m_columns(columns),
          m_open{0, 0, columns - 1, lines - 1},
          m_cells(static_cast<std::size_t>(columns * lines), U' ')
    {
    }

    const Box& Open() const { return m_open; }
    // Closes the lines and columns at its edges.
    void CloseEdges() { m_open = {m_open.left + 1, m_open.top + 1, m_open.right - 1, m_open.bottom - 1}; }
    // What of the box lies in the open part.
    Box Clip(const Box& box) const
    {
        return {std::max(box.left, m_open.left), std::max(box.top, m_open.top),
                std::min(box.right, m_open.right), std::min(box.bottom, m_open.bottom)};
    }

    void Put(std::int64_t column, std::int64_t line, char32_t character)
    {
        if (column >= m_open.left && column <= m_open.right && line >= m_open.top && line <= m_open.bottom) {
            m_cells[static_cast<std::size_t>(line * m_columns + column)] = character;
        }
    }

    // A frame around an empty inside, or where there is no inside, a bar.
    void Draw(const Box& box, const Pen& pen)
    {
        const bool thin = box.right <= box.left || box.bottom <= box.top;
        const Box seen = Clip(box);
        for (std::int64_t line = seen.top; line <= seen.bottom; ++line) {
            for (std::int64_t column = seen.left; column <= seen.right; ++column) {
                Put(column, line, thin ? pen.bar : Stroke(box, column, line, pen));
            }
        }
    }

    // An ASCII text from `column` on, when it ends before `end`.
    void Write(std::int64_t column, std::int64_t line, std::int64_t end, std::string_view text)
    {
        if (column + static_cast<std::int64_t>(text.size()) > end) {
            return;
        }
        for (const char character : text) {
            Put(column++, line, static_cast<unsigned char>(character));
        }
    }

    std::string Text() const
    {
        std::string text;
        for (std::size_t i = 0; i < m_cells.size(); ++i) {
            AppendUtf8(text, m_cells[i]);
            if ((i + 1) % static_cast<std::size_t>(m_columns) == 0) {
                text += '\n';
            }
        }
        return text;
    }

private:
    static char32_t Stroke(const Box& box, std::int64_t column, std::int64_t line, const Pen& pen)
    {
        if (line == box.top) {
            return column == box.left ? pen.upperLeft : column == box.right ? pen.upperRight : pen.horizontal;
        }
        if (line == box.bottom) {
            return column == box.left ? pen.lowerLeft : column == box.right ? pen.lowerRight : pen.horizontal;
        }
        return column == box.left || column == box.right ? pen.vertical : U' ';
    }

    std::int64_t m_columns;
    Box m_open;
    std::u32string m_cells;
};

class Drawing {
public:
    explicit Drawing(const DeviceState& state)
        : m_state(state),
          m_wall(state.wall),
          m_screenColumns(ScreenColumns(m_wall)),
          m_sheet(Columns(), Lines())
    {
    }

    std::string Text()
    {
        for (int row = 0; row < m_wall.Rows(); ++row) {
            for (int column = 0; column < m_wall.Columns(); ++column) {
                DrawScreen(row, column);
            }
        }
        m_sheet.CloseEdges(); // the frame of the wall stays visible around windows that reach over it
        for (const VisibleWindow& visible : VisibleWindows(m_wall)) {
            DrawWindow(visible);
        }
        return m_sheet.Text();
    }

private:
    // A character is about twice as high as wide; a screen is 16 by 9.
    static std::int64_t LinesFor(std::int64_t screenColumns)
    {
        return std::max<std::int64_t>(2, (screenColumns * kScreenHeight + kScreenWidth) / (2 * kScreenWidth));
    }
    static std::int64_t ScreenColumns(const Wall& wall)
    {
        std::int64_t columns = std::max<std::int64_t>(3, kMaxColumns / wall.Columns());
        while (columns > 4 && LinesFor(columns) * wall.Rows() > kMaxLines) {
            --columns;
        }
        return columns;
    }

    std::int64_t Columns() const { return m_screenColumns * m_wall.Columns() + 1; }
    std::int64_t Lines() const { return LinesFor(m_screenColumns) * m_wall.Rows() + 1; }
    std::int64_t Column(std::int64_t x) const { return Scale(x, Columns() - 1, m_wall.Width()); }
    std::int64_t Line(std::int64_t y) const { return Scale(y, Lines() - 1, m_wall.Height()); }
    static std::int64_t Scale(std::int64_t value, std::int64_t to, std::int64_t from)
    {
        return (2 * value * to + from) / (2 * from);
    }

    void DrawScreen(int row, int column)
    {
        const std::int64_t screenLines = LinesFor(m_screenColumns);
        const Box box{column * m_screenColumns, row * screenLines, (column + 1) * m_screenColumns,
                      (row + 1) * screenLines};
        m_sheet.Draw(box, kScreenPen);
        const auto bound = m_wall.Screens().Bound().find(
            {static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(row)});
        if (bound != m_wall.Screens().Bound().end()) {
            WriteCentred(box, (box.top + box.bottom) / 2, {fmt::format("output {}", bound->second)});
        }
        // Where screens meet, their corners do.
        const auto joint = [&](std::int64_t x, std::int64_t y) {
            const bool left = x > 0, right = x<Columns() - 1, up = y> 0, down = y < Lines() - 1;
            if (left && right) {
                m_sheet.Put(x, y, up && down ? U'┼' : down ? U'┬' : U'┴');
            } else if (up && down) {
                m_sheet.Put(x, y, right ? U'├' : U'┤');
            }
        };
        joint(box.left, box.top);
        joint(box.right, box.top);
        joint(box.left, box.bottom);
        joint(box.right, box.bottom);
    }

    // Windows are drawn inside the lines of the screens, so that those stay visible between them. However
    // little of one lies on the wall, a character of it is seen.
    void DrawWindow(const VisibleWindow& visible)
    {
        const Window& window = *visible.window;
        const Rect& rect = window.rect;
        const std::int64_t left = std::min(Column(rect.x) + 1, Columns() - 2);
        const std::int64_t top = std::min(Line(rect.y) + 1, Lines() - 2);
        const Box box{left, top, std::max({left, Column(rect.x + rect.width) - 1, m_sheet.Open().left}),
                      std::max({top, Line(rect.y + rect.height) - 1, m_sheet.Open().top})};
        m_sheet.Draw(box, kWindowPen);
        if (visible.withCells) {
            DrawSubWindows(box, VisibleSubWindows(window));
        }
        if (m_wall.Switches().windowIds) {
            const Box seen = m_sheet.Clip(box);
            m_sheet.Write(seen.left + 2, seen.top, seen.right, fmt::format(" {} ", window.id));
        }
    }

    void DrawSubWindows(const Box& box, const std::vector<const SubWindow*>& subWindows)
    {
        const SubWindowGrid grid(subWindows.size());
        const auto columns = static_cast<std::int64_t>(grid.columns);
        const auto rows = static_cast<std::int64_t>(grid.rows);
        if ((box.right - box.left) / columns < 2 || (box.bottom - box.top) / rows < 2) {
            return;
        }
        const auto columnLine = [&](std::int64_t i) {
            return box.left + (box.right - box.left) * i / columns;
        };
        const auto rowLine = [&](std::int64_t i) { return box.top + (box.bottom - box.top) * i / rows; };
        const Box inside = m_sheet.Clip({box.left + 1, box.top + 1, box.right - 1, box.bottom - 1});
        for (std::int64_t line = inside.top; line <= inside.bottom; ++line) {
            for (std::int64_t i = 1; i < columns; ++i) {
                m_sheet.Put(columnLine(i), line, U'│');
            }
        }
        for (std::int64_t i = 1; i < rows; ++i) {
            for (std::int64_t column = inside.left; column <= inside.right; ++column) {
                m_sheet.Put(column, rowLine(i), U'─');
            }
            for (std::int64_t j = 1; j < columns; ++j) {
                m_sheet.Put(columnLine(j), rowLine(i), U'┼');
            }
        }
        std::int64_t cell = 0;
        for (const SubWindow* subWindow : subWindows) {
            const std::int64_t column = cell % columns;
            const std::int64_t row = cell / columns;
            ++cell;
            DrawSubWindow({columnLine(column), rowLine(row), columnLine(column + 1), rowLine(row + 1)},
                          *subWindow);
        }
    }

    // What it is, and below, as far as there is room, what it shows.
    void DrawSubWindow(const Box& cell, const SubWindow& subWindow)
    {
        const Caption caption = CaptionOf(subWindow, m_state.groups);
        const std::int64_t lines = cell.bottom - cell.top - 1;
        const std::int64_t used = caption.title.empty() ? 1 : std::min<std::int64_t>(lines, 3);
        std::int64_t line = cell.top + 1 + (lines - used) / 2;
        const std::string index = std::to_string(subWindow.index) + Marks(subWindow);
        WriteCentred(cell, line, {fmt::format("{} osd {}", index, subWindow.osdId), index});
        if (used > 1) {
            WriteCentred(cell, ++line, {caption.title});
        }
        if (used > 2) {
            WriteCentred(cell, ++line, {caption.detail});
        }
    }

    // Of what can be seen in a small cell, too.
    std::string Marks(const SubWindow& subWindow) const
    {
        std::string marks;
        marks += subWindow.media.empty() ? "" : "p";
        marks += subWindow.polledGroup ? "g" : "";
        marks += subWindow.sound ? "s" : "";
        marks += subWindow.border && m_wall.Switches().borders ? "b" : "";
        return marks.empty() ? "" : " " + marks;
    }

    // The first of the texts for which there is room.
    void WriteCentred(const Box& cell, std::int64_t line, const std::vector<std::string>& texts)
    {
        const std::int64_t room = cell.right - cell.left - 1;
        for (const std::string& text : texts) {
            const std::int64_t margin = room - static_cast<std::int64_t>(text.size());
            if (margin >= 0) {
                m_sheet.Write(cell.left + 1 + margin / 2, line, cell.right, text);
                return;
            }
        }
    }

    const DeviceState& m_state;
    const Wall& m_wall;
    std::int64_t m_screenColumns;
    Sheet m_sheet;
};

std::string DrawWindowTable(const Wall& wall)
{
    const std::vector<Window>& windows = wall.Windows();
    if (windows.empty()) {
        return "no windows\n";
    }
    constexpr const char* kLine = "{:>10} {:>7} {:>7} {:>7} {:>7} {:>5} {:>6}  {}\n";
    std::string text = fmt::format(kLine, "window", "x", "y", "width", "height", "mode", "layer", "zoomed");
    const std::size_t shown = std::min(windows.size(), kMaxTableLines);
    for (std::size_t i = 0; i < shown; ++i) {
        const std::size_t layer = windows.size() - i;
        const Window& window = windows[layer - 1];
        text += fmt::format(fmt::runtime(kLine), window.id, window.rect.x, window.rect.y, window.rect.width,
                            window.rect.height, window.split.mode, layer,
                            window.zoomed ? std::to_string(*window.zoomed) : "-");
    }
    if (shown < windows.size()) {
        text += fmt::format("and {} more below\n", windows.size() - shown);
    }
    return text;
}

// The sub-windows that show something, sound or have a border.
std::string DrawShowTable(const DeviceState& state)
{
    constexpr const char* kLine = "{:>10} {:>4} {:>10} {:>6} {:>6}  {}\n";
    std::string text;
    std::size_t lines = 0;
    const std::vector<Window>& windows = state.wall.Windows();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        for (const SubWindow& subWindow : window->split.subWindows) {
            if ((subWindow.IsIdle() && !subWindow.sound && !subWindow.border) || ++lines > kMaxTableLines) {
                continue;
            }
            const Caption caption = CaptionOf(subWindow, state.groups);
            text += fmt::format(kLine, window->id, subWindow.index, subWindow.osdId,
                                subWindow.sound ? std::to_string(*subWindow.sound) : "-",
                                subWindow.border ? "yes" : "-",
                                subWindow.IsIdle() ? "-" : caption.title + ", " + caption.detail);
        }
    }
    if (lines > kMaxTableLines) {
        text += fmt::format("and {} more below\n", lines - kMaxTableLines);
    }
    return text.empty() ? text
                        : fmt::format(kLine, "window", "sub", "osd", "sound", "border", "shows") + text;
}

} // namespace

std::string DrawText(const DeviceState& state)
{
    const Wall& wall = state.wall;
    const auto off = [](bool on, const char* what) { return on ? "" : fmt::format(", {} off", what); };
    return fmt::format("TV wall, {} x {} screens, {} bound, {} x {} pixels{}{}\n{}\n", wall.Rows(),
                       wall.Columns(), wall.Screens().Bound().size(), wall.Width(), wall.Height(),
                       off(wall.Switches().borders, "borders"), off(wall.Switches().windowIds, "window ids"),
                       TallyText(wall, ", ")) +
           Drawing(state).Text() + DrawWindowTable(wall) + DrawShowTable(state);
}

} // namespace simulated_decoder
