#include "WallPictures.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

#include <spdlog/fmt/fmt.h>

#include "SubWindowGrid.h"

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

constexpr Colour kScreenColour{"#f1f5f9", "#94a3b8"};

const Colour& ColourOf(const Window& window) { return kColours[window.id % kColours.size()]; }

struct Area {
    double x, y, width, height;
};

// What a text of this many characters takes, in a common sans-serif font.
double TextWidth(std::string_view text, double size)
{
    const auto characters =
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
    return static_cast<double>(characters) * size * 0.58;
}

std::string Plural(std::size_t count, const char* noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

class Picture {
public:
    explicit Picture(const Wall& wall)
        : m_wall(wall),
          m_scale(std::min(kMaxWallWidth / static_cast<double>(wall.Width()),
                           kMaxWallHeight / static_cast<double>(wall.Height()))),
          m_width(std::max(kMinWidth, Scaled(wall.Width()) + 2 * kMargin)),
          m_listColumns(static_cast<std::size_t>((m_width - 2 * kMargin) / kListColumn))
    {
    }

    std::string Text()
    {
        Begin();
        DrawScreens();
        std::size_t layer = 0;
        for (const Window& window : m_wall.Windows()) {
            DrawWindow(window, ++layer);
        }
        DrawList();
        m_text += "</svg>\n";
        return std::move(m_text);
    }

private:
    template <typename... Values>
    void Add(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Values>(values)...);
    }

    double Scaled(std::int64_t pixels) const { return static_cast<double>(pixels) * m_scale; }

    Area OnPicture(const Rect& rect) const
    {
        return {kMargin + Scaled(rect.x), kTitleHeight + Scaled(rect.y), Scaled(rect.width),
                Scaled(rect.height)};
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

    void Begin()
    {
        std::size_t subWindows = 0;
        for (const Window& window : m_wall.Windows()) {
            subWindows += window.split.subWindows.size();
        }
        Add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 "
            "{0:.0f} {1:.0f}\" "
            "font-family=\"Helvetica, Arial, 'DejaVu Sans', sans-serif\">\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n",
            m_width, Height());
        Add("<text x=\"{}\" y=\"44\" font-size=\"24\" font-weight=\"bold\" fill=\"#0f172a\">TV wall</text>\n",
            kMargin);
        Add("<text x=\"{}\" y=\"70\" font-size=\"15\" fill=\"#475569\">{} × {} screens · {} × {} pixels · {} "
            "· {}</text>\n",
            kMargin, m_wall.Rows(), m_wall.Columns(), m_wall.Width(), m_wall.Height(),
            Plural(m_wall.Windows().size(), "window"), Plural(subWindows, "sub-window"));
    }

    // `look` is the rest of the element's attributes.
    void DrawRect(const Area& area, std::string_view look)
    {
        Add("<rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" {}/>\n", area.x, area.y,
            area.width, area.height, look);
    }

    void DrawScreens()
    {
        const Area wall = OnPicture({0, 0, m_wall.Width(), m_wall.Height()});
        DrawRect({wall.x - 6, wall.y - 6, wall.width + 12, wall.height + 12}, "rx=\"6\" fill=\"#cbd5e1\"");
        for (int row = 0; row < m_wall.Rows(); ++row) {
            for (int column = 0; column < m_wall.Columns(); ++column) {
                const Area screen =
                    OnPicture({column * kScreenWidth, row * kScreenHeight, kScreenWidth, kScreenHeight});
                DrawRect(screen,
                         fmt::format("fill=\"{}\" stroke=\"{}\"", kScreenColour.fill, kScreenColour.line));
                Text(screen.x + screen.width / 2, screen.y + screen.height / 2,
                     std::min(14.0, screen.height / 4), kScreenColour,
                     fmt::format("screen {}.{}", row + 1, column + 1));
            }
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
        Add("<path d=\"M{:.1f} {:.1f}l{:.1f} {:.1f}\" stroke=\"#64748b\" stroke-width=\"1.5\" "
            "stroke-dasharray=\"5 4\"/>\n",
            line.x, line.y, line.width, line.height);
    }

    // Centred on x and y, with a rim in the colour of the ground that keeps it apart from lines behind it.
    void Text(double x, double y, double size, const Colour& colour, const std::string& text)
    {
        Add("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{:.1f}\" text-anchor=\"middle\" fill=\"{}\" "
            "stroke=\"{}\" stroke-width=\"{:.1f}\" paint-order=\"stroke\">{}</text>\n",
            x, y + size * 0.35, size, colour.line, colour.fill, std::min(4.0, size * 0.3), text);
    }

    void DrawWindow(const Window& window, std::size_t layer)
    {
        const Area outer = OnPicture(window.rect);
        const double inset = std::min({2.0, outer.width / 8, outer.height / 8});
        const Area area{outer.x + inset, outer.y + inset, outer.width - 2 * inset, outer.height - 2 * inset};
        const Colour& colour = ColourOf(window);
        m_text += "<g>\n";
        DrawRect(area, fmt::format("fill=\"{}\" stroke=\"{}\" stroke-width=\"{:.1f}\"", colour.fill,
                                   colour.line, inset));
        DrawBezels(window.rect);
        const double header = DrawHeader(window, layer, area);
        DrawSubWindows(window, {area.x, area.y + header, area.width, area.height - header});
        m_text += "</g>\n";
    }

    // The strip on top that names the window, as fully as there is room. Returns its height, 0 without any.
    double DrawHeader(const Window& window, std::size_t layer, const Area& area)
    {
        const double height = std::min(24.0, area.height / 4);
        const double size = height * 0.6;
        const Rect& rect = window.rect;
        const std::string name = fmt::format("#{}", window.id);
        const std::string withLayer = fmt::format("{} · layer {}", name, layer);
        const std::string full =
            fmt::format("{} · {},{} · {} × {}", withLayer, rect.x, rect.y, rect.width, rect.height);
        for (const std::string& text : {full, withLayer, name}) {
            if (size >= 4 && TextWidth(text, size) + 2 * size <= area.width) {
                DrawRect({area.x, area.y, area.width, height},
                         fmt::format("fill=\"{}\"", ColourOf(window).line));
                Add("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{:.1f}\" font-weight=\"bold\" "
                    "fill=\"#ffffff\">{}</text>\n",
                    area.x + size * 0.7, area.y + height * 0.72, size, text);
                return height;
            }
        }
        return 0;
    }

    void DrawSubWindows(const Window& window, const Area& area)
    {
        const SubWindowGrid grid(window.split.subWindows.size());
        const double width = area.width / static_cast<double>(grid.columns);
        const double height = area.height / static_cast<double>(grid.rows);
        if (width < kLeastCell || height < kLeastCell) {
            return;
        }
        const Colour& colour = ColourOf(window);
        std::size_t cell = 0;
        for (const SubWindow& subWindow : window.split.subWindows) {
            const std::size_t row = cell / grid.columns;
            const double x = area.x + width * static_cast<double>(cell % grid.columns);
            const double y = area.y + height * static_cast<double>(row);
            ++cell;
            DrawRect({x, y, width, height},
                     fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"0.8\"", colour.line));
            const double size = std::min(22.0, height * 0.36);
            const std::string index = std::to_string(subWindow.index);
            const std::string osd = fmt::format("OSD {}", subWindow.osdId);
            const bool both = size >= 7 && TextWidth(osd, size * 0.6) <= width * 0.92;
            if (size >= 5 && TextWidth(index, size) <= width * 0.92) {
                Text(x + width / 2, y + height * (both ? 0.42 : 0.5), size, colour, index);
            }
            if (both) {
                Text(x + width / 2, y + height * 0.42 + size * 0.95, size * 0.6, {colour.fill, "#475569"},
                     osd);
            }
        }
    }

    // The windows from the highest layer down, column by column.
    void DrawList()
    {
        const std::vector<Window>& windows = m_wall.Windows();
        const std::size_t lines = ListLines();
        const std::size_t shown = std::min(windows.size(), lines * m_listColumns);
        const double top = kTitleHeight + Scaled(m_wall.Height()) + kListLine * 1.6;
        for (std::size_t i = 0; i < shown; ++i) {
            const std::size_t layer = windows.size() - i;
            const Window& window = windows[layer - 1];
            const std::size_t column = i / lines;
            const double x = kMargin + static_cast<double>(column) * kListColumn;
            const double y = top + static_cast<double>(i % lines) * kListLine;
            const Colour& colour = ColourOf(window);
            DrawRect({x, y - 10, 12, 12}, fmt::format("fill=\"{}\" stroke=\"{}\"", colour.fill, colour.line));
            Add("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"13\" fill=\"#334155\"><tspan "
                "font-weight=\"bold\">#{}</tspan> "
                "{},{} · {} × {} · mode {} · layer {}</text>\n",
                x + 19, y, window.id, window.rect.x, window.rect.y, window.rect.width, window.rect.height,
                window.split.mode, layer);
        }
        if (shown < windows.size()) {
            Add("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"13\" fill=\"#64748b\">and {} more "
                "below</text>\n",
                kMargin, top + static_cast<double>(lines) * kListLine, windows.size() - shown);
        }
    }

    const Wall& m_wall;
    double m_scale;
    double m_width;
    std::size_t m_listColumns; // at least 1, by kMinWidth
    std::string m_text;
};

} // namespace

std::string DrawSvg(const Wall& wall) { return Picture(wall).Text(); }

} // namespace simulated_decoder
