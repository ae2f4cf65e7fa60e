#include "Picture/WallPictures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Picture/Captions.h"
#include "Picture/Svg.h"
#include "State/SubWindowGrid.h"

namespace simulated_decoder {

namespace {

// In the picture's own units, like everything below that is not said to be in wall coordinates.
constexpr double kMargin = 32;
constexpr double kTitleHeight = 92;
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
constexpr const char* kVideo = "#1e293b";
constexpr const char* kPolledVideo = "#4c1d95";
constexpr const char* kVideoText = "#f8fafc";
constexpr const char* kSoftVideoText = "#cbd5e1";
constexpr const char* kBorder = "#f59e0b";
constexpr const char* kSound = "#22c55e";

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

const Colour& ColourOf(const Window& window) { return kColours[window.id % kColours.size()]; }

// A loudspeaker, as high as wide.
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

// One sub-window in its cell: what it is on top, what it shows in the middle.
class CellDrawing {
public:
    CellDrawing(Svg& svg, const DeviceState& state, const Window& window, const SubWindow& subWindow,
                const Area& area)
        : m_svg(svg),
          m_state(state),
          m_colour(ColourOf(window)),
          m_subWindow(subWindow),
          m_area(area),
          m_zoomed(window.zoomed.has_value()),
          m_size(std::min({16.0, area.height * 0.17, area.width * 0.11}))
    {
    }

    void Draw()
    {
        const char* ground = m_subWindow.polledGroup      ? kPolledVideo
                             : !m_subWindow.media.empty() ? kVideo
                                                          : "none";
        m_svg.Rect(m_area,
                   fmt::format("fill=\"{}\" stroke=\"{}\" stroke-width=\"0.8\"", ground, m_colour.line));
        if (m_subWindow.border && m_state.wall.Switches().borders) {
            const double width = std::min(4.0, m_area.width / 10);
            m_svg.Rect(m_area.Shrunk(width / 2),
                       fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"{:.1f}\"", kBorder, width));
        }
        if (m_subWindow.IsIdle()) {
            DrawIdle();
        } else {
            DrawShow();
        }
        DrawMarks();
    }

private:
    double Room() const { return m_area.width - 1.4 * m_size; }

    void DrawIdle()
    {
        const double size = std::min(22.0, m_area.height * 0.36);
        const std::string index = std::to_string(m_subWindow.index);
        const std::string osd = fmt::format("OSD {}", m_subWindow.osdId);
        const bool both = size >= 7 && TextWidth(osd, size * 0.6) <= m_area.width * 0.92;
        if (size >= kLeastText && TextWidth(index, size) <= m_area.width * 0.92) {
            m_svg.Text(m_area.CentreX(), m_area.y + m_area.height * (both ? 0.42 : 0.5), index,
                       {size, m_colour.line, m_colour.fill, false, Anchor::Middle});
        }
        if (both) {
            m_svg.Text(m_area.CentreX(), m_area.y + m_area.height * 0.42 + size * 0.95, osd,
                       {size * 0.6, kSoftInk, m_colour.fill, false, Anchor::Middle});
        }
    }

    void DrawShow()
    {
        if (m_size < kLeastText) {
            return;
        }
        const Caption caption = CaptionOf(m_subWindow, m_state.groups);
        Centred(m_area.CentreY() - m_size * 0.1, caption.title, {m_size, kVideoText, nullptr, true});
        Centred(m_area.CentreY() + m_size, caption.detail, {m_size * 0.75, kSoftVideoText});
        const std::string name = fmt::format("{} · OSD {}", m_subWindow.index, m_subWindow.osdId);
        const double size = m_size * 0.75;
        const bool both = TextWidth(name, size) <= Room() - 4 * m_size;
        m_svg.Text(m_area.x + 0.7 * m_size, m_area.y + m_size,
                   both ? name : std::to_string(m_subWindow.index), {size, kSoftVideoText});
    }

    void Centred(double y, const std::string& text, TextLook look)
    {
        look.anchor = Anchor::Middle;
        m_svg.Text(m_area.CentreX(), y, Fit(text, look.size, Room()), look);
    }

    // In the upper right corner.
    void DrawMarks()
    {
        if (m_size < kLeastText) {
            return;
        }
        double right = m_area.Right() - 0.7 * m_size;
        if (m_subWindow.sound) {
            DrawSpeaker(m_svg, right - m_size, m_area.y + m_size * 0.5, m_size);
            right -= m_size * 1.3;
            const std::string channel = std::to_string(*m_subWindow.sound);
            m_svg.Text(right, m_area.y + m_size, channel,
                       {m_size * 0.75, kSound, nullptr, true, Anchor::End});
            right -= TextWidth(channel, m_size * 0.75) + m_size * 0.5;
        }
        if (m_zoomed) {
            const char* ink = m_subWindow.IsIdle() ? m_colour.line : kBorder;
            m_svg.Text(right, m_area.y + m_size, "zoomed", {m_size * 0.75, ink, nullptr, true, Anchor::End});
        }
    }

    Svg& m_svg;
    const DeviceState& m_state;
    const Colour& m_colour;
    const SubWindow& m_subWindow;
    Area m_area;
    bool m_zoomed;
    double m_size; // of the title
};

class Picture {
public:
    explicit Picture(const DeviceState& state)
        : m_state(state),
          m_wall(state.wall),
          m_scale(std::min(kMaxWallWidth / static_cast<double>(m_wall.Width()),
                           kMaxWallHeight / static_cast<double>(m_wall.Height()))),
          m_width(std::max(kMinWidth, Scaled(m_wall.Width()) + 2 * kMargin)),
          m_listColumns(static_cast<std::size_t>((m_width - 2 * kMargin) / kListColumn)),
          m_svg(m_width, Height())
    {
    }

    std::string Text()
    {
        DrawTitle();
        DrawLegend();
        DrawScreens();
        // What of a window lies beyond the wall is cut off.
        const Area wall = WallArea();
        m_svg.Add("<clipPath id=\"wall\"><path d=\"M{:.1f} {:.1f}h{:.1f}v{:.1f}h{:.1f}z\"/></clipPath>\n",
                  wall.x, wall.y, wall.width, wall.height, -wall.width);
        m_svg.Add("<g clip-path=\"url(#wall)\">\n");
        for (const VisibleWindow& visible : VisibleWindows(m_wall)) {
            DrawWindow(visible);
        }
        m_svg.Add("</g>\n");
        DrawOutputs();
        DrawList();
        return m_svg.Finish();
    }

private:
    double Scaled(std::int64_t pixels) const { return static_cast<double>(pixels) * m_scale; }

    Area OnPicture(const Rect& rect) const
    {
        return {kMargin + Scaled(rect.x), kTitleHeight + Scaled(rect.y), Scaled(rect.width),
                Scaled(rect.height)};
    }
    Area WallArea() const { return OnPicture({0, 0, m_wall.Width(), m_wall.Height()}); }
    Area ScreenArea(std::int64_t column, std::int64_t row) const
    {
        return OnPicture({column * kScreenWidth, row * kScreenHeight, kScreenWidth, kScreenHeight});
    }

    std::size_t ListLines() const
    {
        const std::size_t lines = (m_wall.Windows().size() + m_listColumns - 1) / m_listColumns;
        return std::min(lines, kMaxListLines);
    }

    double Height() const
    {
        const std::size_t lines = ListLines();
        return kTitleHeight + Scaled(m_wall.Height()) + kMargin +
               (lines != 0 ? static_cast<double>(lines + 1) * kListLine : 0);
    }

    void DrawTitle()
    {
        m_svg.Text(kMargin, 36, "TV wall", {24, kInk, nullptr, true});
        std::string text = fmt::format("{} × {} screens, {} bound · {} × {} pixels · {}", m_wall.Rows(),
                                       m_wall.Columns(), m_wall.Screens().Bound().size(), m_wall.Width(),
                                       m_wall.Height(), TallyText(m_wall, " · "));
        text += m_wall.Switches().borders ? "" : " · borders off";
        text += m_wall.Switches().windowIds ? "" : " · window ids off";
        m_svg.Text(kMargin, 65, text, {15, kSoftInk});
    }

    // From the right to the left, on the line of the title.
    void DrawLegend()
    {
        double x = m_width - kMargin;
        const auto word = [&](const char* text) {
            m_svg.Text(x, 36, text, {13, kSoftInk, nullptr, false, Anchor::End});
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
        swatch("border", fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"3\"", kBorder));
        swatch("polls a group", fmt::format("fill=\"{}\"", kPolledVideo));
        swatch("plays", fmt::format("fill=\"{}\"", kVideo));
        swatch("idle", fmt::format("fill=\"{}\" stroke=\"{}\"", kColours[0].fill, kColours[0].line));
    }

    void DrawScreens()
    {
        m_svg.Rect(WallArea().Shrunk(-6), "rx=\"6\" fill=\"#cbd5e1\"");
        for (int row = 0; row < m_wall.Rows(); ++row) {
            for (int column = 0; column < m_wall.Columns(); ++column) {
                const Area screen = ScreenArea(column, row);
                m_svg.Rect(screen, "fill=\"#f1f5f9\" stroke=\"#94a3b8\"");
                m_svg.Text(screen.CentreX(), screen.CentreY(),
                           fmt::format("screen {}.{}", row + 1, column + 1),
                           {std::min(14.0, screen.height / 4), "#94a3b8", "#f1f5f9", false, Anchor::Middle});
            }
        }
    }

    // Over the windows: the screens that show something, by the outputs that feed them.
    void DrawOutputs()
    {
        for (const auto& [position, output] : m_wall.Screens().Bound()) {
            const Area screen = ScreenArea(position.column, position.row);
            const std::string text = fmt::format("output {}", output);
            const double size = std::min(11.0, screen.height * 0.12);
            const double width = TextWidth(text, size) + size;
            const Area badge{screen.Right() - width - size * 0.6, screen.Bottom() - size * 2.1, width,
                             size * 1.5};
            m_svg.Rect(badge, fmt::format("rx=\"{:.1f}\" fill=\"#ffffff\" stroke=\"#64748b\"", size * 0.75));
            m_svg.Text(badge.CentreX(), badge.CentreY(), text, {size, kInk, nullptr, false, Anchor::Middle});
        }
    }

    // Where a window reaches over several screens, one sees through it where they meet.
    void DrawBezels(const Rect& rect)
    {
        const Area area = OnPicture(rect);
        for (std::int64_t x = kScreenWidth; x < m_wall.Width(); x += kScreenWidth) {
            if (x > rect.x && x < rect.x + rect.width) {
                DrawBezel({kMargin + Scaled(x), area.y, 0, area.height});
            }
        }
        for (std::int64_t y = kScreenHeight; y < m_wall.Height(); y += kScreenHeight) {
            if (y > rect.y && y < rect.y + rect.height) {
                DrawBezel({area.x, kTitleHeight + Scaled(y), area.width, 0});
            }
        }
    }

    void DrawBezel(const Area& line)
    {
        m_svg.Path(fmt::format("M{:.1f} {:.1f}l{:.1f} {:.1f}", line.x, line.y, line.width, line.height),
                   "stroke=\"#64748b\" stroke-width=\"1.5\" stroke-dasharray=\"5 4\"");
    }

    void DrawWindow(const VisibleWindow& visible)
    {
        const Window& window = *visible.window;
        const Area outer = OnPicture(window.rect);
        const double inset = std::min({2.0, outer.width / 8, outer.height / 8});
        const Area area = outer.Shrunk(inset);
        const Colour& colour = ColourOf(window);
        m_svg.Add("<g>\n");
        m_svg.Rect(area, fmt::format("fill=\"{}\" stroke=\"{}\" stroke-width=\"{:.1f}\"", colour.fill,
                                     colour.line, inset));
        // What is seen of it carries its name, even where its own upper edge is cut off.
        const Area seen = area.Common(WallArea());
        const double height = std::min(24.0, seen.height / 4);
        const double size = height * 0.6;
        const std::string name = NameFor(window, visible.layer, seen.width, size);
        const double header = name.empty() ? 0 : height;
        if (visible.withCells) {
            DrawSubWindows(window, {area.x, area.y + header, area.width, area.height - header});
        }
        if (!name.empty()) {
            m_svg.Rect({seen.x, seen.y, seen.width, height}, fmt::format("fill=\"{}\"", colour.line));
            m_svg.Text(seen.x + size * 0.7, seen.y + height / 2, name, {size, "#ffffff", nullptr, true});
        }
        DrawBezels(window.rect);
        m_svg.Add("</g>\n");
    }

    // For the strip on top, as full as there is room; empty without any.
    std::string NameFor(const Window& window, std::size_t layer, double room, double size) const
    {
        if (!m_wall.Switches().windowIds || size < 4) {
            return {};
        }
        const Rect& rect = window.rect;
        const std::string name = fmt::format("#{}", window.id);
        const std::string withLayer = fmt::format("{} · layer {}", name, layer);
        const std::string full =
            fmt::format("{} · {},{} · {} × {}", withLayer, rect.x, rect.y, rect.width, rect.height);
        for (const std::string& text : {full, withLayer, name}) {
            if (TextWidth(text, size) + 2 * size <= room) {
                return text;
            }
        }
        return {};
    }

    void DrawSubWindows(const Window& window, const Area& area)
    {
        const std::vector<const SubWindow*> subWindows = VisibleSubWindows(window);
        const SubWindowGrid grid(subWindows.size());
        const double width = area.width / static_cast<double>(grid.columns);
        const double height = area.height / static_cast<double>(grid.rows);
        if (width < kLeastCell || height < kLeastCell) {
            return;
        }
        for (std::size_t cell = 0; cell < subWindows.size(); ++cell) {
            const std::size_t row = cell / grid.columns;
            const double x = area.x + width * static_cast<double>(cell % grid.columns);
            const double y = area.y + height * static_cast<double>(row);
            CellDrawing(m_svg, m_state, window, *subWindows[cell], {x, y, width, height}).Draw();
        }
    }

    // The windows from the highest layer down, column by column.
    void DrawList()
    {
        const std::vector<Window>& windows = m_wall.Windows();
        const std::size_t lines = ListLines();
        const std::size_t shown = std::min(windows.size(), lines * m_listColumns);
        const double top = kTitleHeight + Scaled(m_wall.Height()) + kListLine * 1.4;
        for (std::size_t i = 0; i < shown; ++i) {
            const std::size_t layer = windows.size() - i;
            const Window& window = windows[layer - 1];
            const std::size_t listColumn = i / lines;
            const double x = kMargin + static_cast<double>(listColumn) * kListColumn;
            const double y = top + static_cast<double>(i % lines) * kListLine;
            const Colour& colour = ColourOf(window);
            m_svg.Rect({x, y - 6, 12, 12},
                       fmt::format("fill=\"{}\" stroke=\"{}\"", colour.fill, colour.line));
            m_svg.Text(x + 19, y,
                       fmt::format("#{} · {},{} · {} × {} · mode {} · layer {}", window.id, window.rect.x,
                                   window.rect.y, window.rect.width, window.rect.height, window.split.mode,
                                   layer),
                       {13, "#334155"});
        }
        if (shown < windows.size()) {
            m_svg.Text(kMargin, top + static_cast<double>(lines) * kListLine,
                       fmt::format("and {} more below", windows.size() - shown), {13, "#64748b"});
        }
    }

    const DeviceState& m_state;
    const Wall& m_wall;
    double m_scale;
    double m_width;
    std::size_t m_listColumns; // at least 1, by kMinWidth
    Svg m_svg;
};

} // namespace

std::string DrawSvg(const DeviceState& state) { return Picture(state).Text(); }

} // namespace simulated_decoder
