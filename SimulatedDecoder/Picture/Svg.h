#pragma once
// The SVG elements of the wall's picture. All measures are in the picture's own units.

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include <spdlog/fmt/fmt.h>

namespace simulated_decoder {

struct Area {
    double x, y, width, height;

    double Right() const { return x + width; }
    double Bottom() const { return y + height; }
    double CentreX() const { return x + width / 2; }
    double CentreY() const { return y + height / 2; }
    // Its intersection with another; width or height is not positive when they do not overlap.
    Area Common(const Area& other) const
    {
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        return {left, top, std::min(Right(), other.Right()) - left, std::min(Bottom(), other.Bottom()) - top};
    }
    Area Shrunk(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
};

// How a text looks. `rim` is the colour of an outline that sets it off from lines behind it; null for none.
struct TextLook {
    double size;
    const char* fill;
    const char* rim = nullptr;
    bool bold = false;
    const char* anchor = "start"; // which part of it is at the given place: "start", "middle" or "end"
};

// The width of a UTF-8 text in a common sans-serif font.
double TextWidth(std::string_view text, double size);
// The text, shortened with an ellipsis to fit; empty when not even a few characters fit. Only ASCII texts are
// shortened well.
std::string Fit(const std::string& text, double size, double room);

class Svg {
public:
    Svg(double width, double height);

    // `look` holds the element's other attributes.
    void Rect(const Area& area, std::string_view look);
    void Path(std::string_view d, std::string_view look);
    // A group from its start tag to its end.
    void Open(std::string_view tag);
    void Close();
    // The group's tooltip; markup in it is escaped.
    void Title(std::string_view text);
    // A text vertically centred at `y`; markup in it is escaped.
    void Text(double x, double y, std::string_view text, const TextLook& look);

    template <typename... Values>
    void Add(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Values>(values)...);
    }

    // Finishes the picture.
    std::string Finish();

private:
    std::string m_text;
};

} // namespace simulated_decoder
