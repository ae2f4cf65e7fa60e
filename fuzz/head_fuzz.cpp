// The scan for url and seq of a message against the document's own search in the same bytes, with at most
// three looks at each byte. Input: a byte that says whether the rest is the message or picks the pieces that
// it is made of.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CountedText.h"
#include "FuzzScript.h"
#include "Link/MessageHead.h"
#include "MarkupSTL.h"

namespace {

// Separated by a sign that is in none of them.
constexpr char PIECES[] =
    "<td_command>|</td_command>|<td_header>|</td_header>|<url>|</url>|<seq>|</seq>|<url/>|"
    "<seq/>|<a>|</a>|<ab>|</ab>|<bb>|</bb>|<a/>|<a//>|<a x='>'>|<a x=\"/\"|<seq y='1'/>|"
    "<url a=\"|<|>|/|</|/>|</ seq>|</seq \r\n>|</seq x>|<!|<!-|<!--|-->|<!---->|<!-->|->|"
    "<![CDATA[|]]>|<![CDATA[x]|]|<!DOCTYPE|<!DOCTYPE a [|<?|?>|<?>|&|&lt;|&amp;|&#65;|&#x41;|"
    "&#0;|&#12345678;|&#x;|;|1|25| |\r\n|x|'|\"|=|td_command|td_header|<td_command |"
    "<td_command/|<td_header/|<tail></a>|\0";

std::vector<std::string_view> Pieces()
{
    std::vector<std::string_view> pieces;
    const std::string_view all(PIECES, sizeof(PIECES) - 1);
    for (size_t at = 0; at <= all.size(); at += pieces.back().size() + 1) {
        pieces.push_back(all.substr(at, all.find('|', at) - at));
    }
    return pieces;
}

std::string Message(FuzzScript& script)
{
    constexpr size_t MANY = 80; // of one piece, more than are open in any decoder's message
    constexpr size_t LONG = 8192;
    if (script.Number() % 2 == 0) {
        return script.Rest();
    }
    static const std::vector<std::string_view> pieces = Pieces();
    std::string message;
    while (!script.AtEnd() && message.size() < LONG) {
        const unsigned int n = script.Number();
        const std::string_view piece = pieces[n % pieces.size()];
        for (size_t i = 0; i < (n / pieces.size() == 3 ? MANY : 1); ++i) {
            message += piece;
        }
    }
    return message;
}

std::optional<std::string> DataOf(CMarkupSTL& doc, const char* szName)
{
    return doc.FindElem(szName) ? std::optional(doc.GetData()) : std::nullopt;
}

SMessageHead Expected(const std::string& message)
{
    CMarkupSTL doc(message.data(), static_cast<unsigned int>(message.size()));
    if (!doc.FindElem("td_command") || !doc.IntoElem() || !doc.FindElem("td_header") || !doc.IntoElem()) {
        return {};
    }
    SMessageHead head;
    head.url = DataOf(doc, "url");
    head.seq = DataOf(doc, "seq");
    return head;
}

void RequireSame(const SMessageHead& a, const SMessageHead& b) { Require(a.url == b.url && a.seq == b.seq); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr uint64_t KEY = 0x0FEDCBA987654321;
    FuzzScript script(data, size);
    const std::string message = Message(script);
    const SMessageHead expected = Expected(message);
    RequireSame(ReadMessageHead(message), expected);
    const CMessageText text(message);
    RequireSame(CMessageHeadScan<const CMessageText>(text, 0).Run(), expected); // many names with one hash
    CountedText counted(message);
    RequireSame(CMessageHeadScan<CountedText>(counted, KEY).Run(), expected);
    Require(counted.MostLooks() <= 3);
    return 0;
}
