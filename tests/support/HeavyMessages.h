#pragma once
// Messages of about n bytes that hurt whoever looks for their url and seq.

#include <cstddef>
#include <string>
#include <vector>

#include "LinkTexts.h"

struct HeavyMessage {
    const char* what;
    std::string text;
};

// Pieces with a number each, one after another.
inline std::string Numbered(const std::string& before, const std::string& after, size_t bytes)
{
    std::string text;
    for (size_t n = 0; text.size() < bytes; ++n) {
        text += before + std::to_string(n) + after;
    }
    return text;
}

inline std::vector<HeavyMessage> HeavyMessages(size_t n)
{
    const std::string head = "<td_command><td_header>";
    const std::string found = "<url>u</url><seq>7</seq>";
    const std::string names = Numbered("<a", ">", 400); // more than are open in any decoder's message
    return {
        {"elements without end", Repeat("<a>", n / 3)},
        {"elements without end after a number", head + "<seq>7</seq>" + Repeat("<a>", n / 3)},
        {"distinct names and a stray end tag", Numbered("<a", ">", n) + "</b>"},
        {"distinct names and stray end tags", names + Numbered("</b", ">", n)},
        {"distinct names, each closed", names + Numbered("<b", "></b>", n / 2) + "</a0>" + head + found},
        {"names that are long",
         "<" + std::string(900, 'a') + ">" + Repeat("</" + std::string(900, 'a') + "b>", n / 904)},
        {"a deep nest that closes", Repeat("<a><b>", n / 16) + Repeat("</b></a>", n / 16) + head + found},
        {"attributes", Numbered("<a b='>' c", "=\"/\"/>", n) + head + found},
        {"one tag", "<a" + Numbered(" b", "='<'", n) + "/>" + head + found},
        {"references in url", head + "<url>" + Repeat("&#0;", n / 4) + "</url><seq>7</seq>"},
        {"endless references in seq", head + "<url/><seq>" + Repeat("&#1", n / 3) + "</seq>"},
        {"text in url after a nest", Repeat("<a>", 70) + Repeat("</a>", 70) + head + "<url>" +
                                         std::string(n, 'u') + "</url><seq>7</seq>"},
        {"pieces of text in url", head + "<url>" + Repeat("a<!-->--> ", n / 10) + "</url><seq>7</seq>"},
        {"seq again and again", head + Repeat("<seq>7</seq>", n / 12) + found},
        {"errors", Repeat("<!<![CDATA<!-<//></ ></b b< <a//>", n / 33) + head + found},
        {"an error at the end", head + "<url>u</url>" + Repeat("<a/>", n / 4) + "<seq>7</seq"},
        {"a comment without end", head + "<url>u</url><!--" + Repeat("->", n / 2)},
        {"sections", Repeat("<?a?><![CDATA[]]]]><!---->", n / 26) + head + found},
        {"a doctype",
         "<!DOCTYPE a [" + Repeat("'\"", n / 2) + "]" + Repeat("'>'", n / 3) + ">" + head + found},
    };
}
