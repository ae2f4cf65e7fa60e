#include "Picture/WallPictures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Picture/Svg.h"
#include "Picture/WallView.h"

namespace simulated_decoder {

namespace {

// In the picture's own units, like everything below unless wall coordinates are named.
constexpr double kMargin = 32;
constexpr double kTitleHeight = 92;
constexpr double kBareMargin = 8;
constexpr double kBareShare = 0.625; // share of the full size, so that texts are large
constexpr double kMaxWallWidth = 1216;
constexpr double kMaxWallHeight = 720;
constexpr double kMinWidth = 704;
constexpr double kListLine = 22;
constexpr double kListColumn = 400;
constexpr std::size_t kMaxListLines = 12;
constexpr double kLeastCell = 7; // sub-windows smaller than this are not drawn
constexpr double kLeastText = 5;

constexpr const char* kInk = "#0f172a";
constexpr const char* kSoftInk = "#475569";
constexpr const char* kVideoText = "#f8fafc";
constexpr const char* kSoftVideoText = "#cbd5e1";
constexpr const char* kFrameColour = "#f59e0b";
constexpr const char* kSound = "#22c55e";

// Elements that a page may restyle have a class.
constexpr const char* kPlaysLook = "class=\"plays\" fill=\"#1e293b\"";
constexpr const char* kPollsLook = "class=\"polls\" fill=\"#4c1d95\"";

struct Colour {
    const char* fill;
    const char* line;
};
constexpr std::array<Colour, 10> kColours{{
    {"#dbeafe", "#1d4ed8"},
    {"#dcfce7", "#15803d"},
    {"#ffedd5", "#c2410c"},
    {"#ede9fe", "#6d28d9"},
    {"#cffafe", "#0e7490"},
    {"#fce7f3", "#be185d"},
    {"#fef9c3", "#a16207"},
    {"#e0e7ff", "#4338ca"},
    {"#fee2e2", "#b91c1c"},
    {"#e2e8f0", "#334155"},
}};

const Colour& ColourOf(const WindowView& window) { return kColours[window.id % kColours.size()]; }

std::string Describe(const Rect& rect)
{
    return fmt::format("{},{} · {} × {}", rect.x, rect.y, rect.width, rect.height);
}

// A loudspeaker, as wide as it is high.
void DrawSpeaker(Svg& svg, double x, double y, double size)
{
    const double u = size / 10;
    svg.Path(fmt::format("M{:.1f} {:.1f}h{:.1f}l{:.1f} {:.1f}v{:.1f}l{:.1f} {:.1f}h{:.1f}z", x, y + 3 * u,
                         2 * u, 3 * u, -3 * u, 10 * u, -3 * u, -3 * u, -2 * u),
             fmt::format("fill=\"{}\"", kSound));
    svg.Path(
        fmt::format("M{:.1f} {:.1f}q{:.1f} {:.1f} 0 {:.1f}", x + 6.5 * u, y + 2 * u, 3.5 * u, 3 * u, 6 * u),
        fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"{:.1f}\"", kSound, 1.2 * u));
}

// A sub-window in its area: its name on top, what it shows in the middle.
struct CellDrawing {
    Svg& svg;
    const WindowView& window;
    const CellView& cell;
    Area area;
    double size; // font size of the title
    const Colour& colour = ColourOf(window);

    void Draw() const
    {
        const bool idle = cell.kind == CellView::Kind::Idle;
        svg.Open("<g>");
        svg.Title(fmt::format("Sub-window {} of window {}, OSD {}: {}{}", cell.index, window.id, cell.osdId,
                              cell.Shows("idle"), cell.sound ? fmt::format(", sound {}", *cell.sound) : ""));
        const char* ground = idle                                 ? "fill=\"none\""
                             : cell.kind == CellView::Kind::Polls ? kPollsLook
                                                                  : kPlaysLook;
        svg.Rect(area, fmt::format("{} stroke=\"{}\" stroke-width=\"0.8\"", ground, colour.line));
        if (cell.framed) {
            const double width = std::min(4.0, area.width / 10);
            svg.Rect(area.Shrunk(width / 2),
                     fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"{:.1f}\"", kFrameColour, width));
        }
        if (idle) {
            DrawIdle();
        } else if (size >= kLeastText) {
            DrawShow();
        }
        if (size >= kLeastText) {
            DrawMarks(idle);
        }
        svg.Close();
    }

    void DrawIdle() const
    {
        const double large = std::min(22.0, area.height * 0.36);
        const std::string index = std::to_string(cell.index);
        const std::string osd = fmt::format("OSD {}", cell.osdId);
        const bool both = large >= 7 && TextWidth(osd, large * 0.6) <= area.width * 0.92;
        if (large >= kLeastText && TextWidth(index, large) <= area.width * 0.92) {
            svg.Text(area.CentreX(), area.y + area.height * (both ? 0.42 : 0.5), index,
                     {large, colour.line, colour.fill, false, "middle"});
        }
        if (both) {
            svg.Text(area.CentreX(), area.y + area.height * 0.42 + large * 0.95, osd,
                     {large * 0.6, kSoftInk, colour.fill, false, "middle"});
        }
    }

    void DrawShow() const
    {
        const double small = size * 0.75;
        const double room = area.width - 1.4 * size;
        svg.Text(area.CentreX(), area.CentreY() - size * 0.1, Fit(cell.title, size, room),
                 {size, kVideoText, nullptr, true, "middle"});
        svg.Text(area.CentreX(), area.CentreY() + size, Fit(cell.detail, small, room),
                 {small, kSoftVideoText, nullptr, false, "middle"});
        const std::string name = fmt::format("{} · OSD {}", cell.index, cell.osdId);
        const bool both = TextWidth(name, small) <= room - 4 * size;
        svg.Text(area.x + 0.7 * size, area.y + size, both ? name : std::to_string(cell.index),
                 {small, kSoftVideoText});
    }

    // In the upper right corner.
    void DrawMarks(bool idle) const
    {
        const double small = size * 0.75;
        double right = area.Right() - 0.7 * size;
        if (cell.sound) {
            DrawSpeaker(svg, right - size, area.y + size * 0.5, size);
            right -= size * 1.3;
            const std::string channel = std::to_string(*cell.sound);
            svg.Text(right, area.y + size, channel, {small, kSound, nullptr, true, "end"});
            right -= TextWidth(channel, small) + size * 0.5;
        }
        if (window.zoomed) {
            svg.Text(right, area.y + size, "zoomed",
                     {small, idle ? colour.line : kFrameColour, nullptr, true, "end"});
        }
    }
};

class Picture {
public:
    Picture(const WallView& view, bool bare)
        : m_view(view),
          m_bare(bare),
          m_scale((bare ? kBareShare : 1) * std::min(kMaxWallWidth / static_cast<double>(view.rect.width),
                                                     kMaxWallHeight / static_cast<double>(view.rect.height))),
          m_left(bare ? kBareMargin : kMargin),
          m_wall(OnPicture(view.rect)),
          m_width(std::max(bare ? 0 : kMinWidth, m_wall.width + 2 * m_left)),
          m_listColumns(static_cast<std::size_t>((m_width - 2 * kMargin) / kListColumn)),
          m_svg(m_width, Height())
    {
    }

    std::string Text()
    {
        if (!m_bare) {
            DrawTitle();
            DrawLegend();
        }
        DrawScreens();
        // Clips the part of a window beyond the wall.
        m_svg.Add("<clipPath id=\"wall\"><path d=\"M{:.1f} {:.1f}h{:.1f}v{:.1f}h{:.1f}z\"/></clipPath>\n",
                  m_wall.x, m_wall.y, m_wall.width, m_wall.height, -m_wall.width);
        m_svg.Open("<g id=\"wall-windows\" clip-path=\"url(#wall)\">");
        for (const WindowView& window : m_view.windows) {
            if (!window.covered || m_bare) {
                DrawWindow(window);
            }
        }
        m_svg.Close();
        DrawOutputs();
        if (!m_bare) {
            DrawList();
        }
        return m_svg.Finish();
    }

private:
    double Scaled(std::int64_t pixels) const { return static_cast<double>(pixels) * m_scale; }

    Area OnPicture(const Rect& rect) const
    {
        return {m_left + Scaled(rect.x), (m_bare ? kBareMargin : kTitleHeight) + Scaled(rect.y),
                Scaled(rect.width), Scaled(rect.height)};
    }

    std::size_t ListLines() const
    {
        return std::min((m_view.windows.size() + m_listColumns - 1) / m_listColumns, kMaxListLines);
    }

    double Height() const
    {
        const std::size_t lines = m_bare ? 0 : ListLines();
        return m_wall.Bottom() + m_left + (lines != 0 ? static_cast<double>(lines + 1) * kListLine : 0);
    }

    void DrawTitle()
    {
        m_svg.Text(kMargin, 36, "TV wall", {24, kInk, nullptr, true});
        std::string text = fmt::format("{} × {} screens, {} bound · {} × {} pixels", m_view.rows,
                                       m_view.columns, m_view.bound, m_view.rect.width, m_view.rect.height);
        for (const auto* phrases : {&m_view.tally, &m_view.switchedOff}) {
            for (const std::string& phrase : *phrases) {
                text += " · " + phrase;
            }
        }
        m_svg.Text(kMargin, 65, text, {15, kSoftInk});
    }

    // From right to left, on the title's line.
    void DrawLegend()
    {
        double x = m_width - kMargin;
        const auto word = [&](const char* text) {
            m_svg.Text(x, 36, text, {13, kSoftInk, nullptr, false, "end"});
            x -= TextWidth(text, 13) + 18;
        };
        const auto swatch = [&](const char* text, const std::string& look) {
            word(text);
            m_svg.Rect({x, 30, 12, 12}, look);
            x -= 14;
        };
        word("sound");
        DrawSpeaker(m_svg, x, 30, 12);
        x -= 14;
        swatch("border", fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"3\"", kFrameColour));
        swatch("polls a group", kPollsLook);
        swatch("plays", kPlaysLook);
        swatch("idle", fmt::format("fill=\"{}\" stroke=\"{}\"", kColours[0].fill, kColours[0].line));
    }

    void DrawScreens()
    {
        m_svg.Open("<g class=\"screens\">");
        m_svg.Rect(m_wall.Shrunk(-6), "class=\"frame\" rx=\"6\" fill=\"#cbd5e1\"");
        for (const ScreenView& screen : m_view.screens) {
            const Area area = OnPicture(screen.rect);
            m_svg.Rect(area, "fill=\"#f1f5f9\" stroke=\"#94a3b8\"");
            m_svg.Text(area.CentreX(), area.CentreY(),
                       fmt::format("screen {}.{}", screen.position.row + 1, screen.position.column + 1),
                       {std::min(14.0, area.height / 4), "#94a3b8", "#f1f5f9", false, "middle"});
        }
        m_svg.Close();
    }

    // On top of the windows: the outputs that feed the screens showing something.
    void DrawOutputs()
    {
        for (const ScreenView& screen : m_view.screens) {
            if (!screen.output) {
                continue;
            }
            const Area area = OnPicture(screen.rect);
            const std::string text = fmt::format("output {}", *screen.output);
            const double size = std::min(11.0, area.height * 0.12);
            const double width = TextWidth(text, size) + size;
            const Area badge{area.Right() - width - size * 0.6, area.Bottom() - size * 2.1, width,
                             size * 1.5};
            m_svg.Rect(badge, fmt::format("rx=\"{:.1f}\" fill=\"#ffffff\" stroke=\"#64748b\"", size * 0.75));
            m_svg.Text(badge.CentreX(), badge.CentreY(), text, {size, kInk, nullptr, false, "middle"});
        }
    }

    void DrawWindow(const WindowView& window)
    {
        const Area outer = OnPicture(window.rect);
        const double inset = std::min({2.0, outer.width / 8, outer.height / 8});
        const Area area = outer.Shrunk(inset);
        const Colour& colour = ColourOf(window);
        m_svg.Open(fmt::format("<g id=\"window-{}\">", window.id));
        m_svg.Title(fmt::format("Window {}, layer {}, {} × {} at {}, {}", window.id, window.layer,
                                window.rect.width, window.rect.height, window.rect.x, window.rect.y));
        m_svg.Rect(area, fmt::format("id=\"outline-{}\" fill=\"{}\" stroke=\"{}\" stroke-width=\"{:.1f}\"{}",
                                     window.id, colour.fill, colour.line, inset,
                                     window.covered ? " visibility=\"hidden\"" : ""));
        if (!window.covered) {
            DrawInside(window, area);
            DrawSeams(window.rect);
        }
        m_svg.Close();
    }

    void DrawInside(const WindowView& window, const Area& area)
    {
        // Its visible part carries its name, even if its own upper edge is cut off.
        const Area seen = area.Common(OnPicture(window.seen));
        const double height = std::min(24.0, seen.height / 4);
        const double size = height * 0.6;
        const std::string name = NameFor(window, seen.width, size);
        const double header = name.empty() ? 0 : height;
        DrawCells(window, {area.x, area.y + header, area.width, area.height - header});
        if (!name.empty()) {
            m_svg.Rect({seen.x, seen.y, seen.width, height},
                       fmt::format("fill=\"{}\"", ColourOf(window).line));
            m_svg.Text(seen.x + size * 0.7, seen.y + height / 2, name, {size, "#ffffff", nullptr, true});
        }
    }

    // For the strip on top, as full as it fits; empty if there is no room.
    std::string NameFor(const WindowView& window, double room, double size) const
    {
        if (!m_view.switches.windowIds || size < 4) {
            return {};
        }
        const std::string name = fmt::format("#{}", window.id);
        const std::string withLayer = fmt::format("{} · layer {}", name, window.layer);
        for (const std::string& text : {withLayer + " · " + Describe(window.rect), withLayer, name}) {
            if (TextWidth(text, size) + 2 * size <= room) {
                return text;
            }
        }
        return {};
    }

    void DrawCells(const WindowView& window, const Area& area)
    {
        const auto cells = window.SeenCells();
        const double width = area.width / static_cast<double>(window.columns);
        const double height = area.height / static_cast<double>(window.rows);
        if (width < kLeastCell || height < kLeastCell) {
            return;
        }
        const double size = std::min({16.0, height * 0.17, width * 0.11});
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::size_t row = i / window.columns;
            const double x = area.x + width * static_cast<double>(i % window.columns);
            const double y = area.y + height * static_cast<double>(row);
            CellDrawing{m_svg, window, cells[i], {x, y, width, height}, size}.Draw();
        }
    }

    // A window that spans several screens lets their borders show through.
    void DrawSeams(const Rect& rect)
    {
        const Area area = OnPicture(rect);
        const auto draw = [this](double x, double y, double width, double height) {
            m_svg.Path(fmt::format("M{:.1f} {:.1f}l{:.1f} {:.1f}", x, y, width, height),
                       "stroke=\"#64748b\" stroke-width=\"1.5\" stroke-dasharray=\"5 4\"");
        };
        for (std::int64_t x = kScreenWidth; x < m_view.rect.width; x += kScreenWidth) {
            if (x > rect.x && x < rect.x + rect.width) {
                draw(m_wall.x + Scaled(x), area.y, 0, area.height);
            }
        }
        for (std::int64_t y = kScreenHeight; y < m_view.rect.height; y += kScreenHeight) {
            if (y > rect.y && y < rect.y + rect.height) {
                draw(area.x, m_wall.y + Scaled(y), area.width, 0);
            }
        }
    }

    // The windows, highest layer first, column by column.
    void DrawList()
    {
        const std::size_t count = m_view.windows.size();
        const std::size_t lines = ListLines();
        const std::size_t shown = std::min(count, lines * m_listColumns);
        const double top = m_wall.Bottom() + kListLine * 1.4;
        for (std::size_t i = 0; i < shown; ++i) {
            const WindowView& window = m_view.windows[count - 1 - i];
            const std::size_t column = i / lines;
            const double x = kMargin + static_cast<double>(column) * kListColumn;
            const double y = top + static_cast<double>(i % lines) * kListLine;
            const Colour& colour = ColourOf(window);
            m_svg.Rect({x, y - 6, 12, 12},
                       fmt::format("fill=\"{}\" stroke=\"{}\"", colour.fill, colour.line));
            m_svg.Text(x + 19, y,
                       fmt::format("#{} · {} · mode {} · layer {}", window.id, Describe(window.rect),
                                   window.mode, window.layer),
                       {13, "#334155"});
        }
        if (shown < count) {
            m_svg.Text(kMargin, top + static_cast<double>(lines) * kListLine,
                       fmt::format("and {} more below", count - shown), {13, "#64748b"});
        }
    }

    const WallView& m_view;
    bool m_bare;
    double m_scale;
    double m_left;
    Area m_wall;
    double m_width;
    std::size_t m_listColumns; // at least 1, thanks to kMinWidth, when there is a list
    Svg m_svg;
};

} // namespace

std::string DrawSvg(const WallView& view) { return Picture(view, false).Text(); }

std::string DrawBareSvg(const WallView& view) { return Picture(view, true).Text(); }

} // namespace simulated_decoder
