#pragma once
// Wall commands as rows: the record that goes in, the request that goes out, the answer that comes back.

#include <string>

#include "SessionFixture.h"

// An element text as it goes over the link, from one without line breaks.
inline std::string Lines(std::string text)
{
    for (auto at = text.find("><"); at != std::string::npos; at = text.find("><", at)) {
        text.insert(at + 1, "\r\n");
    }
    return text + "\r\n";
}

// The end of a request, from what stands between <td_body> and </td_body>.
inline std::string Body(const std::string& inner)
{
    return Lines((inner.empty() ? "<td_body/>" : "<td_body>" + inner + "</td_body>") + "</td_command>");
}

// The end of a request without a body.
inline const std::string NO_BODY = "</td_command>\r\n";

// An element with a text, and one item of a list.
template <class Value>
std::string Elem(const std::string& name, const Value& value)
{
    std::string text;
    if constexpr (std::is_arithmetic_v<Value>) {
        text = std::to_string(value);
    } else {
        text = value;
    }
    return text.empty() ? "<" + name + "/>" : "<" + name + ">" + text + "</" + name + ">";
}
inline std::string Item(const std::string& inner) { return Elem("item", inner); }

// The answer of success.
inline std::string ResultOf(unsigned int nOptType, const std::string& extra)
{
    const auto nLen = static_cast<unsigned int>(extra.size());
    return "buffer " + Hex(Bytes().U32(nOptType).U16(8).U16(nLen).U32(0).U32(0).Text(extra));
}

class WallCommandFixture : public SessionFixture {
protected:
    struct Case {
        const char* what;
        unsigned int nCmdID;
        unsigned int nOptType;
        std::string record;
        const char* url;
        std::string body; // of the request, see Body
        unsigned int nAnswerType;
    };

    // A command that the decoder accepts and whose answer returns its record.
    void Check(const Case& c)
    {
        SCOPED_TRACE(c.what);
        ReplyWith(ReplyText(c.url, "%SEQ%"));
        EXPECT_EQ(Run(c.nCmdID, Option(c.nOptType, c.record)), ResultOf(c.nAnswerType, c.record));
        EXPECT_EQ(SentBody(), c.body);
        EXPECT_EQ(Element(LastRequest(), "url"), c.url);
    }

    // LastBody as the rows of a test write it.
    virtual std::string SentBody() const { return LastBody(); }

    // The host's answer when the decoder's reply has this body.
    std::string Ask(unsigned int nCmdID, const std::string& payload, const char* szUrl,
                    const std::string& replyBody = "")
    {
        ReplyWith(ReplyText(szUrl, "%SEQ%", "0", "", replyBody));
        const std::string answer = Run(nCmdID, payload);
        EXPECT_EQ(Element(LastRequest(), "url"), szUrl);
        return answer;
    }

    // A decoder that refuses, and one that cannot be reached.
    void CheckFailures(unsigned int nCmdID, unsigned int nOptType, const std::string& record = "")
    {
        SCOPED_TRACE(nOptType);
        ReplyWith(ReplyText("dowallclear", "%SEQ%", "5"));
        EXPECT_EQ(Run(nCmdID, Option(nOptType, record)), "failure 20000002");
        node.sendErrors = {1};
        EXPECT_EQ(Run(nCmdID, Option(nOptType, record)), "failure 2000000f");
        EXPECT_EQ(nPolls, 0);
    }
};
