#include "Tools/Common/TerminalText.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <cwctype>

#include <locale.h>

#include "Tools/Common/Hex.h"

namespace tools {

namespace {

// While it lives, this thread's characters are UTF-8, whatever the terminal's are.
class Utf8Scope {
public:
    Utf8Scope() : m_before(::uselocale(Utf8())) {}
    ~Utf8Scope() { ::uselocale(m_before); }
    Utf8Scope(const Utf8Scope&) = delete;
    Utf8Scope& operator=(const Utf8Scope&) = delete;

private:
    static locale_t Utf8()
    {
        static const locale_t kLocale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return kLocale;
    }

    const locale_t m_before;
};

struct Character {
    wchar_t code;
    std::size_t size; // in bytes; 0 when the text does not begin with one
};

// The character at the start of the text. Inside a Utf8Scope.
Character FirstOf(std::string_view text)
{
    if (static_cast<std::uint8_t>(text.front()) < 0x80) {
        return {static_cast<wchar_t>(text.front()), 1};
    }
    std::mbstate_t state{};
    wchar_t code = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): unsafe only without a state of its own
    const std::size_t size = std::mbrtowc(&code, text.data(), text.size(), &state);
    return {code, size <= text.size() ? size : 0};
}

// Size in bytes of the printable character at the start of the text; 0 when there is none.
std::size_t PrintableBytes(std::string_view text)
{
    const Character first = FirstOf(text);
    return first.size != 0 && std::iswprint(static_cast<std::wint_t>(first.code)) != 0 ? first.size : 0;
}

} // namespace

std::string OneLine(std::string_view text)
{
    const Utf8Scope utf8;
    std::string line;
    bool lineEnd = false;
    while (!text.empty()) {
        if (text.front() == '\n' || text.front() == '\r') {
            lineEnd = true;
            text.remove_prefix(1);
            continue;
        }
        if (lineEnd && !line.empty()) {
            line += ' ';
        }
        lineEnd = false;
        const std::size_t printable = PrintableBytes(text);
        line += printable != 0 ? std::string(text.substr(0, printable)) : "\\x" + HexText(text.data(), 1);
        text.remove_prefix(std::max<std::size_t>(printable, 1));
    }
    return line;
}

bool IsUtf8(std::string_view text)
{
    const Utf8Scope utf8;
    while (!text.empty()) {
        const std::size_t size = FirstOf(text).size;
        if (size == 0) {
            return false;
        }
        text.remove_prefix(size);
    }
    return true;
}

} // namespace tools
