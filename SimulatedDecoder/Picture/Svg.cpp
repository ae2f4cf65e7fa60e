#include "Picture/Svg.h"

#include <algorithm>

namespace simulated_decoder {

namespace {

constexpr double kCharacter = 0.58; // average width, relative to the font size
constexpr std::size_t kLeastShortened = 5;

std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        const char* entity = character == '&'   ? "&amp;"
                             : character == '<' ? "&lt;"
                             : character == '>' ? "&gt;"
                                                : nullptr;
        if (entity != nullptr) {
            escaped += entity;
        } else {
            escaped += character;
        }
    }
    return escaped;
}

} // namespace

double TextWidth(std::string_view text, double size)
{
    const auto characters =
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
    return static_cast<double>(characters) * size * kCharacter;
}

std::string Fit(const std::string& text, double size, double room)
{
    if (TextWidth(text, size) <= room) {
        return text;
    }
    const double characters = std::max(0.0, room / (size * kCharacter));
    const auto kept = static_cast<std::size_t>(characters);
    return kept >= kLeastShortened ? text.substr(0, kept - 1) + "…" : "";
}

Svg::Svg(double width, double height)
{
    Add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 "
        "{0:.0f} "
        "{1:.0f}\" font-family=\"Helvetica, Arial, 'DejaVu Sans', sans-serif\">\n"
        "<rect class=\"ground\" width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n",
        width, height);
}

void Svg::Rect(const Area& area, std::string_view look)
{
    Add("<rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" {}/>\n", area.x, area.y,
        area.width, area.height, look);
}

void Svg::Path(std::string_view d, std::string_view look) { Add("<path d=\"{}\" {}/>\n", d, look); }

void Svg::Open(std::string_view tag) { Add("{}\n", tag); }

void Svg::Close() { Add("</g>\n"); }

void Svg::Title(std::string_view text) { Add("<title>{}</title>\n", Escape(text)); }

void Svg::Text(double x, double y, std::string_view text, const TextLook& look)
{
    Add("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{:.1f}\" fill=\"{}\" text-anchor=\"{}\"", x,
        y + look.size * 0.35, look.size, look.fill, look.anchor);
    if (look.bold) {
        Add(" font-weight=\"bold\"");
    }
    if (look.rim != nullptr) {
        Add(" stroke=\"{}\" stroke-width=\"{:.1f}\" paint-order=\"stroke\"", look.rim,
            std::min(4.0, look.size * 0.3));
    }
    Add(">{}</text>\n", Escape(text));
}

std::string Svg::Finish()
{
    m_text += "</svg>\n";
    return std::move(m_text);
}

} // namespace simulated_decoder
