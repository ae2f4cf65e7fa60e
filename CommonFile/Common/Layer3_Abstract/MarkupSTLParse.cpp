#include "MarkupSTL.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <vector>

#include "MarkupSTLToken.h"

namespace {

constexpr size_t kMaxErrorText = 1 << 20;
constexpr size_t kBytesPerElem = 64; // a first guess

// Nodes delimited by two fixed texts.
struct Section {
    std::string_view strOpen;
    std::string_view strClose;
    int nNodeType;
    std::string_view strName;
};

constexpr Section kSections[] = {
    {"<?", "?>", CMarkupSTL::MNT_PROCESSING_INSTRUCTION, "Processing instruction"},
    {"<!--", "-->", CMarkupSTL::MNT_COMMENT, "Comment"},
    {"<![CDATA[", "]]>", CMarkupSTL::MNT_CDATA_SECTION, "CDATA Section"},
};

std::string Joined(std::initializer_list<std::string_view> parts)
{
    std::string strJoined;
    for (const std::string_view strPart : parts) {
        strJoined += strPart;
    }
    return strJoined;
}

void SetUnterminated(NodePos& node, std::string_view strName)
{
    node.nNodeType = CMarkupSTL::MNT_NODE_ERROR;
    node.strMeta = strName;
    node.bUnterminated = true;
}

void SetIncorrect(NodePos& node, std::string_view strName)
{
    node.nNodeType = CMarkupSTL::MNT_NODE_ERROR;
    node.strMeta = strName;
}

void ParseSection(TokenPos& token, NodePos& node, const Section& section)
{
    token.nNext += static_cast<int>(section.strOpen.size());
    node.nNodeType = section.nNodeType;
    if (!token.FindPast(section.strClose)) {
        SetUnterminated(node, section.strName);
    }
}

void ParseDoctype(TokenPos& token, NodePos& node)
{
    node.nNodeType = CMarkupSTL::MNT_DOCUMENT_TYPE;
    while (!token.AtEnd()) {
        const char c = token.Peek();
        ++token.nNext;
        if (c == '>') {
            return;
        }
        if (c == '"' || c == '\'') {
            token.FindPast(std::string_view(&c, 1));
        } else if (c == '[') {
            token.FindPast("]");
        }
    }
    SetUnterminated(node, "Doctype");
}

void ParseMarked(TokenPos& token, NodePos& node)
{
    const std::string_view strRest = token.Rest();
    for (const Section& section : kSections) {
        if (strRest.starts_with(section.strOpen)) {
            ParseSection(token, node, section);
            return;
        }
    }
    if (strRest.starts_with("<!DOCTYPE")) {
        ParseDoctype(token, node);
        return;
    }
    SetIncorrect(node, strRest.starts_with("<!-") ? "comment tag" : "! tag");
    token.nNext += 2;
}

void ParseEndTag(TokenPos& token, NodePos& node)
{
    node.nNodeType = CMarkupSTL::MNT_LONE_END_TAG;
    token.nNext += 2;
    if (!token.FindName()) {
        SetIncorrect(node, "tag name character");
        return;
    }
    if (!token.FindAny() || token.Peek() != '>') {
        SetUnterminated(node, "Element end tag");
        return;
    }
    ++token.nNext;
    if (!ElemPos::FitsTags(0, static_cast<size_t>(token.nNext - node.nStart))) {
        SetIncorrect(node, "Element end tag");
    }
}

void ParseStartTag(TokenPos& token, NodePos& node)
{
    node.nNodeType = CMarkupSTL::MNT_ELEMENT;
    ++token.nNext;
    if (!token.FindName() && !token.AtEnd()) {
        SetIncorrect(node, "tag name character");
        return;
    }
    if (!token.FindTagEnd()) {
        SetUnterminated(node, "Element tag");
        return;
    }
    ++token.nNext;
    const std::string_view strTag =
        token.szDoc.substr(static_cast<size_t>(node.nStart), static_cast<size_t>(token.nNext - node.nStart));
    if (strTag.ends_with("/>")) {
        node.nFlags |= CMarkupSTL::MNF_EMPTY;
    }
    // With "//>" the tag would still be an empty one after gaining a child.
    if (strTag.ends_with("//>") || !ElemPos::FitsTags(strTag.size(), 0)) {
        SetIncorrect(node, "Element tag");
    }
}

void ParseText(TokenPos& token, NodePos& node)
{
    const bool bMore = token.FindAny();
    node.nNodeType = bMore && token.Peek() != '<' ? CMarkupSTL::MNT_TEXT : CMarkupSTL::MNT_WHITESPACE;
    token.nNext = static_cast<int>(
        std::min(token.szDoc.find('<', static_cast<size_t>(token.nNext)), token.szDoc.size()));
}

} // namespace

// The elements that are open while a text is parsed, outermost first.
struct NodeStack {
    struct Open {
        int iPos;
        std::string_view strName;
    };

    bool IsEmpty() const { return pN.empty(); }
    const Open& Top() const { return pN.back(); }
    int TopPos() const { return pN.empty() ? 0 : pN.back().iPos; }
    void Push(int iPos, std::string_view strName) { pN.push_back({iPos, strName}); }

    void Pop()
    {
        if (pN.size() == nCounted) {
            const auto it = mapCounts.find(Top().strName);
            if (--it->second == 0) {
                mapCounts.erase(it);
            }
            --nCounted;
        }
        pN.pop_back();
    }

    // Counts names only when a text is ill-formed, once each, so that stray end tags do not search the stack.
    bool Holds(std::string_view strName)
    {
        for (; nCounted < pN.size(); ++nCounted) {
            ++mapCounts[pN[nCounted].strName];
        }
        return mapCounts.contains(strName);
    }

private:
    std::vector<Open> pN;
    std::map<std::string_view, int> mapCounts; // counts for the first nCounted elements
    size_t nCounted = 0;
};

bool CMarkupSTL::x_ParseDoc()
{
    m_aPos.Reset(m_strDoc.size() / kBytesPerElem + 8);
    m_aPos[0] = ElemPos{};
    m_aPos[0].nLength = static_cast<int>(m_strDoc.size());
    m_iPosFree = 1;
    m_iPosDeleted = 0;
    if (m_strDoc.empty()) {
        x_AddError("Empty document");
        return false;
    }

    NodeStack open;
    TokenPos token(m_strDoc);
    while (!token.AtEnd()) {
        NodePos node;
        x_ParseNode(token, node);
        if (node.nNodeType == MNT_ELEMENT) {
            x_ParseElem(open, token, node);
        } else if (node.nNodeType == MNT_LONE_END_TAG) {
            x_ParseEndTag(open, token, node);
        } else if (node.nNodeType == MNT_NODE_ERROR) {
            x_AddNodeError({node.bUnterminated ? "" : "Incorrect ", node.strMeta, " at offset ",
                            std::to_string(node.nStart), node.bUnterminated ? " unterminated" : ""});
        }
    }
    while (!open.IsEmpty()) {
        x_EndUnended(open, token.Length());
    }

    if (m_aPos[0].iElemChild == 0) {
        x_AddError("No root element");
    } else if (m_aPos[m_aPos[0].iElemChild].iElemNext != 0) {
        x_AddError("Root element has sibling");
    }
    return IsWellFormed();
}

// Takes the node at the scan position and moves past it. A node that does not end runs to the end of the
// text, or to where an end tag ought to end.
void CMarkupSTL::x_ParseNode(TokenPos& token, NodePos& node)
{
    node.nStart = token.nNext;
    if (token.Peek() != '<') {
        ParseText(token, node);
    } else if (token.Peek(1) == '/') {
        ParseEndTag(token, node);
    } else if (token.Peek(1) == '?' || token.Peek(1) == '!') {
        ParseMarked(token, node);
    } else {
        ParseStartTag(token, node);
    }
    node.nLength = token.nNext - node.nStart;
}

void CMarkupSTL::x_ParseElem(NodeStack& open, const TokenPos& token, const NodePos& node)
{
    if (m_iPosFree == m_aPos.Size()) {
        m_aPos.Grow();
    }
    const int iPos = m_iPosFree++;
    ElemPos& elem = m_aPos[iPos];
    elem = ElemPos{};
    elem.nStart = node.nStart;
    elem.SetTagLengths(static_cast<size_t>(node.nLength), 0);
    const int iParent = open.TopPos();
    m_aPos.Link(iPos, iParent, m_aPos.LastChild(iParent));
    if ((node.nFlags & MNF_EMPTY) != 0) {
        elem.nLength = node.nLength;
        return;
    }
    // Unterminated until its end tag is found.
    elem.nFlags |= MNF_NONENDED;
    elem.nLength = token.Length() - node.nStart;
    open.Push(iPos, token.GetToken());
}

void CMarkupSTL::x_ParseEndTag(NodeStack& open, const TokenPos& token, const NodePos& node)
{
    const std::string_view strName = token.GetToken();
    const bool bMatches = !open.IsEmpty() && open.Top().strName == strName;
    if (!bMatches && !open.Holds(strName)) {
        x_AddNodeError({"No start tag for end tag '", strName, "' at offset ", std::to_string(node.nStart)});
        return;
    }
    if (!bMatches) {
        x_AddNodeError({"End tag '", strName, "' at offset ", std::to_string(node.nStart),
                        " does not match start tag '", open.Top().strName, "' at offset ",
                        std::to_string(m_aPos[open.TopPos()].nStart)});
        m_aPos[open.TopPos()].nLength = node.nStart - m_aPos[open.TopPos()].nStart;
        open.Pop();
        while (open.Top().strName != strName) {
            x_EndUnended(open, node.nStart);
        }
    }
    ElemPos& elem = m_aPos[open.TopPos()];
    elem.nFlags &= ~MNF_NONENDED;
    elem.nLength = node.nStart + node.nLength - elem.nStart;
    elem.SetTagLengths(static_cast<size_t>(elem.StartTagLen()), static_cast<size_t>(node.nLength));
    open.Pop();
}

void CMarkupSTL::x_EndUnended(NodeStack& open, int nOffset)
{
    ElemPos& elem = m_aPos[open.TopPos()];
    elem.nLength = nOffset - elem.nStart;
    x_AddNodeError(
        {"Element '", open.Top().strName, "' at offset ", std::to_string(elem.nStart), " not ended"});
    open.Pop();
}

void CMarkupSTL::x_AddError(std::string_view strError)
{
    if (!m_strError.empty()) {
        m_strError += ", ";
    }
    m_strError += strError;
}

// Composed in place.
void CMarkupSTL::x_AddNodeError(std::initializer_list<std::string_view> parts)
{
    m_aPos[0].nFlags |= MNF_ILLFORMED;
    if (m_strError.size() < kMaxErrorText) {
        x_AddError(Joined(parts));
    }
}
