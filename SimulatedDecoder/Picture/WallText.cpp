#include "Picture/WallPictures.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <spdlog/fmt/fmt.h>

#include "Picture/WallView.h"

namespace simulated_decoder {

namespace {

constexpr std::int64_t kMaxColumns = 96; // characters across the wall, without its right edge
constexpr std::int64_t kMaxLines = 32;
constexpr std::size_t kMaxTableLines = 100;

// Corners, edges and middle of a box, row by row, and the characters of a box too thin for them.
struct Pen {
    const char* strokes[3][3];
    const char* bar;
};
constexpr Pen kScreenPen{{{"┌", "─", "┐"}, {"│", " ", "│"}, {"└", "─", "┘"}}, "·"};
constexpr Pen kWindowPen{{{"╔", "═", "╗"}, {"║", " ", "║"}, {"╚", "═", "╝"}}, "■"};
// Where screens meet, so do their corners.
constexpr const char* kJoints[3][3] = {{"┌", "┬", "┐"}, {"├", "┼", "┤"}, {"└", "┴", "┘"}};

// 0 for the first, 2 for the last, 1 in between.
std::size_t Third(std::int64_t value, std::int64_t first, std::int64_t last)
{
    return value == first ? 0 : value == last ? 2 : 1;
}

// Inclusive corners in characters.
struct Box {
    std::int64_t left, top, right, bottom;
};

// A sheet of characters; nothing is drawn outside its open part, at first the whole sheet.
class Sheet {
public:
    Sheet(std::int64_t columns, std::int64_t lines)
        : m_columns(columns),
          m_open{0, 0, columns - 1, lines - 1},
          m_cells(static_cast<std::size_t>(columns * lines), " ")
    {
    }

    const Box& Open() const { return m_open; }
    // Closes the rows and columns at its edges.
    void CloseEdges() { m_open = {m_open.left + 1, m_open.top + 1, m_open.right - 1, m_open.bottom - 1}; }
    // The part of the box inside the open part.
    Box Clip(const Box& box) const
    {
        return {std::max(box.left, m_open.left), std::max(box.top, m_open.top),
                std::min(box.right, m_open.right), std::min(box.bottom, m_open.bottom)};
    }

    void Put(std::int64_t column, std::int64_t line, std::string_view character)
    {
        if (column >= m_open.left && column <= m_open.right && line >= m_open.top && line <= m_open.bottom) {
            m_cells[static_cast<std::size_t>(line * m_columns + column)] = character;
        }
    }

    // A frame around an empty inside, or a bar if there is no inside.
    void Draw(const Box& box, const Pen& pen)
    {
        const bool thin = box.right <= box.left || box.bottom <= box.top;
        const Box seen = Clip(box);
        for (std::int64_t line = seen.top; line <= seen.bottom; ++line) {
            for (std::int64_t column = seen.left; column <= seen.right; ++column) {
                const char* stroke =
                    pen.strokes[Third(line, box.top, box.bottom)][Third(column, box.left, box.right)];
                Put(column, line, thin ? pen.bar : stroke);
            }
        }
    }

    // An ASCII text from `column` on, if it ends before `end`.
    void Write(std::int64_t column, std::int64_t line, std::int64_t end, std::string_view text)
    {
        if (column + static_cast<std::int64_t>(text.size()) > end) {
            return;
        }
        for (const char& character : text) {
            Put(column++, line, {&character, 1});
        }
    }

    std::string Text() const
    {
        std::string text;
        for (std::size_t i = 0; i < m_cells.size(); i += static_cast<std::size_t>(m_columns)) {
            text += fmt::format("{}\n", fmt::join(&m_cells[i], &m_cells[i] + m_columns, ""));
        }
        return text;
    }

private:
    std::int64_t m_columns;
    Box m_open;
    std::vector<std::string> m_cells; // one UTF-8 character each
};

class Drawing {
public:
    explicit Drawing(const WallView& view)
        : m_view(view), m_screenColumns(ScreenColumns(view)), m_sheet(Columns(), Lines())
    {
    }

    std::string Text()
    {
        for (const ScreenView& screen : m_view.screens) {
            DrawScreen(screen);
        }
        m_sheet.CloseEdges(); // the wall's frame stays visible around windows that extend beyond it
        for (const WindowView& window : m_view.windows) {
            if (!window.covered) {
                DrawWindow(window);
            }
        }
        return m_sheet.Text();
    }

private:
    // A character is about twice as high as it is wide; a screen is 16 by 9.
    static std::int64_t LinesFor(std::int64_t screenColumns)
    {
        return std::max<std::int64_t>(2, (screenColumns * kScreenHeight + kScreenWidth) / (2 * kScreenWidth));
    }
    static std::int64_t ScreenColumns(const WallView& view)
    {
        std::int64_t columns = std::max<std::int64_t>(3, kMaxColumns / view.columns);
        while (columns > 4 && LinesFor(columns) * view.rows > kMaxLines) {
            --columns;
        }
        return columns;
    }

    std::int64_t Columns() const { return m_screenColumns * m_view.columns + 1; }
    std::int64_t Lines() const { return LinesFor(m_screenColumns) * m_view.rows + 1; }
    std::int64_t Column(std::int64_t x) const { return Scale(x, Columns() - 1, m_view.rect.width); }
    std::int64_t Line(std::int64_t y) const { return Scale(y, Lines() - 1, m_view.rect.height); }
    static std::int64_t Scale(std::int64_t value, std::int64_t to, std::int64_t from)
    {
        return (2 * value * to + from) / (2 * from);
    }

    void DrawScreen(const ScreenView& screen)
    {
        const Rect& rect = screen.rect;
        const Box box{Column(rect.x), Line(rect.y), Column(rect.x + rect.width), Line(rect.y + rect.height)};
        m_sheet.Draw(box, kScreenPen);
        if (screen.output) {
            WriteCentred(box, (box.top + box.bottom) / 2, {fmt::format("output {}", *screen.output)});
        }
        for (const std::int64_t line : {box.top, box.bottom}) {
            for (const std::int64_t column : {box.left, box.right}) {
                m_sheet.Put(column, line,
                            kJoints[Third(line, 0, Lines() - 1)][Third(column, 0, Columns() - 1)]);
            }
        }
    }

    // Windows are drawn inside the screens' lines, so that these stay visible between them. However little of
    // a window lies on the wall, at least one character shows.
    void DrawWindow(const WindowView& window)
    {
        const Rect& rect = window.rect;
        const std::int64_t left = std::min(Column(rect.x) + 1, Columns() - 2);
        const std::int64_t top = std::min(Line(rect.y) + 1, Lines() - 2);
        const Box box{left, top, std::max({left, Column(rect.x + rect.width) - 1, m_sheet.Open().left}),
                      std::max({top, Line(rect.y + rect.height) - 1, m_sheet.Open().top})};
        m_sheet.Draw(box, kWindowPen);
        if (!window.cells.empty()) {
            DrawCells(box, window);
        }
        if (m_view.switches.windowIds) {
            const Box seen = m_sheet.Clip(box);
            m_sheet.Write(seen.left + 2, seen.top, seen.right, fmt::format(" {} ", window.id));
        }
    }

    void DrawCells(const Box& box, const WindowView& window)
    {
        const auto columns = static_cast<std::int64_t>(window.columns);
        const auto rows = static_cast<std::int64_t>(window.rows);
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
                m_sheet.Put(columnLine(i), line, "│");
            }
        }
        for (std::int64_t i = 1; i < rows; ++i) {
            for (std::int64_t column = inside.left; column <= inside.right; ++column) {
                m_sheet.Put(column, rowLine(i), "─");
            }
            for (std::int64_t j = 1; j < columns; ++j) {
                m_sheet.Put(columnLine(j), rowLine(i), "┼");
            }
        }
        std::int64_t i = 0;
        for (const CellView& cell : window.SeenCells()) {
            const std::int64_t column = i % columns;
            const std::int64_t row = i++ / columns;
            DrawCell({columnLine(column), rowLine(row), columnLine(column + 1), rowLine(row + 1)}, cell);
        }
    }

    // Its name and below it, space permitting, what it shows.
    void DrawCell(const Box& box, const CellView& cell)
    {
        const std::int64_t lines = box.bottom - box.top - 1;
        const std::int64_t used = cell.title.empty() ? 1 : std::min<std::int64_t>(lines, 3);
        std::int64_t line = box.top + 1 + (lines - used) / 2;
        const std::string index = std::to_string(cell.index) + Marks(cell);
        WriteCentred(box, line, {fmt::format("{} osd {}", index, cell.osdId), index});
        if (used > 1) {
            WriteCentred(box, ++line, {cell.title});
        }
        if (used > 2) {
            WriteCentred(box, ++line, {cell.detail});
        }
    }

    // For what shows even in a small cell.
    static std::string Marks(const CellView& cell)
    {
        std::string marks;
        marks += cell.kind == CellView::Kind::Plays ? "p" : "";
        marks += cell.kind == CellView::Kind::Polls ? "g" : "";
        marks += cell.sound ? "s" : "";
        marks += cell.framed ? "b" : "";
        return marks.empty() ? "" : " " + marks;
    }

    // The first of the texts that fits.
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

    const WallView& m_view;
    std::int64_t m_screenColumns;
    Sheet m_sheet;
};

std::string MoreBelow(std::size_t all, std::size_t shown)
{
    return shown < all ? fmt::format("and {} more below\n", all - shown) : "";
}

std::string DrawWindowTable(const std::vector<WindowView>& windows)
{
    if (windows.empty()) {
        return "no windows\n";
    }
    constexpr const char* kLine = "{:>10} {:>7} {:>7} {:>7} {:>7} {:>5} {:>6}  {}\n";
    std::string text = fmt::format(kLine, "window", "x", "y", "width", "height", "mode", "layer", "zoomed");
    const std::size_t shown = std::min(windows.size(), kMaxTableLines);
    std::for_each(windows.rbegin(), windows.rbegin() + static_cast<std::ptrdiff_t>(shown),
                  [&](const WindowView& window) {
                      text += fmt::format(kLine, window.id, window.rect.x, window.rect.y, window.rect.width,
                                          window.rect.height, window.mode, window.layer,
                                          window.zoomed ? std::to_string(*window.zoomed) : "-");
                  });
    return text + MoreBelow(windows.size(), shown);
}

std::string DrawBusyTable(const WallView& view)
{
    if (view.busy.empty()) {
        return {};
    }
    constexpr const char* kLine = "{:>10} {:>4} {:>10} {:>6} {:>6}  {}\n";
    std::string text = fmt::format(kLine, "window", "sub", "osd", "sound", "border", "shows");
    for (const auto& [windowId, cell] : view.busy) {
        text += fmt::format(kLine, windowId, cell.index, cell.osdId,
                            cell.sound ? std::to_string(*cell.sound) : "-", cell.border ? "yes" : "-",
                            cell.Shows("-"));
    }
    return text + MoreBelow(view.busyCount, view.busy.size());
}

} // namespace

std::string DrawText(const WallView& view)
{
    std::string text = fmt::format("TV wall, {} x {} screens, {} bound, {} x {} pixels", view.rows,
                                   view.columns, view.bound, view.rect.width, view.rect.height);
    for (const std::string& off : view.switchedOff) {
        text += ", " + off;
    }
    return fmt::format("{}\n{}\n{}{}{}", text, fmt::join(view.tally, ", "), Drawing(view).Text(),
                       DrawWindowTable(view.windows), DrawBusyTable(view));
}

} // namespace simulated_decoder
