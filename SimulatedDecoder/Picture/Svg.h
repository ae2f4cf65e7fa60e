#pragma once
// The elements of SVG that the picture of the wall is made of. All measures are in the picture's own units.

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
    // What it has in common with another; a width or height that is not positive where that is nothing.
    Area Common(const Area& other) const
    {
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        return {left, top, std::min(Right(), other.Right()) - left, std::min(Bottom(), other.Bottom()) - top};
    }
    Area Shrunk(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
};

// How a text looks. `rim` is a colour that keeps it apart from lines behind it; none when null.
struct TextLook {
    double size;
    const char* fill;
    const char* rim = nullptr;
    bool bold = false;
    const char* anchor = "start"; // what of it is at the given place: "start", "middle" or "end"
};

// What a UTF-8 text takes in a common sans-serif font.
double TextWidth(std::string_view text, double size);
// The text, shortened with an ellipsis to what there is room for; empty when not even a few characters have
// room. Only ASCII texts are shortened well.
std::string Fit(const std::string& text, double size, double room);

class Svg {
public:
    Svg(double width, double height);

    // `look` is the rest of the element's attributes.
    void Rect(const Area& area, std::string_view look);
    void Path(std::string_view d, std::string_view look);
    // A group from its start tag to its end.
    void Open(std::string_view tag);
    void Close();
    // Of the group; browsers show it where the pointer is. Markup in it is escaped.
    void Title(std::string_view text);
    // A text whose middle line is at `y`; markup in it is escaped.
    void Text(double x, double y, std::string_view text, const TextLook& look);

    template <typename... Values>
    void Add(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Values>(values)...);
    }

    // Ends the picture.
    std::string Finish();

private:
    std::string m_text;
};

} // namespace simulated_decoder
