#pragma once
// Scanning of XML text for CMarkupSTL. Nothing here reads beyond its view.

#include <string_view>

// A node that was parsed or is being inserted.
struct NodePos {
    int nNodeType = 0; // MarkupNodeType
    int nStart = 0;
    int nLength = 0;
    int nFlags = 0;
    std::string_view strMeta;   // error nodes only: what is wrong, a constant text
    bool bUnterminated = false; // error nodes only: unterminated, else incorrect
};

// A cursor over a text of at most 2^31 - 1 bytes.
struct TokenPos {
    static constexpr int IGNORE_CASE = 8; // a document flag: names differ in more than case

    explicit TokenPos(std::string_view strDoc, int nPos = 0, int nDocFlags = 0)
        : nNext(nPos), szDoc(strDoc), nTokenFlags(nDocFlags)
    {
    }

    int nL = 0;  // first character of the token
    int nR = -1; // last character of the token; nL - 1 when it is empty
    int nNext;   // where scanning continues
    std::string_view szDoc;
    int nTokenFlags; // document flags
    int nPreSpaceStart = 0;
    int nPreSpaceLength = 0;

    static bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    bool AtEnd() const { return nNext >= Length(); }
    int Length() const { return static_cast<int>(szDoc.size()); }
    // The character n places ahead; a zero byte beyond the end.
    char Peek(int n = 0) const
    {
        return n < Length() - nNext ? szDoc[static_cast<size_t>(nNext) + static_cast<size_t>(n)] : '\0';
    }
    std::string_view Rest() const { return szDoc.substr(static_cast<size_t>(nNext)); }
    std::string_view GetToken() const
    {
        return szDoc.substr(static_cast<size_t>(nL), static_cast<size_t>(nR) + 1 - static_cast<size_t>(nL));
    }

    // Skips whitespace to the next character, if there is one, and notes what it skipped.
    bool FindAny();
    // Takes the tag name at the scan position as the token; false when there is none.
    bool FindName();
    // Moves past the next occurrence of strText; false, at the end, when there is none.
    bool FindPast(std::string_view strText);
    // Skips the attributes to the ">" that ends a tag; false, at the end, when there is none.
    bool FindTagEnd();
    // Whether the token is the whole searched name or is followed in it by one of " =/[]".
    bool Match(std::string_view strName) const;
};
