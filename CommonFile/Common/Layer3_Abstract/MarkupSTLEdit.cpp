#include "MarkupSTL.h"

#include <algorithm>
#include <charconv>
#include <climits>

#include "MarkupSTLToken.h"

namespace {

constexpr size_t kGrowth = 4; // large steps, as memory that was not touched yet costs nothing

std::string_view View(const char* szText) { return szText == nullptr ? std::string_view() : szText; }

// Decimal text of a number.
class NumberText {
public:
    template <class Number>
    explicit NumberText(Number n) : m_pEnd(std::to_chars(std::begin(m_szText), std::end(m_szText), n).ptr)
    {
    }
    std::string_view View() const { return {m_szText, static_cast<size_t>(m_pEnd - m_szText)}; }

private:
    char m_szText[24];
    char* m_pEnd;
};

char* Put(char* p, std::string_view strText) { return std::copy(strText.begin(), strText.end(), p); }

char* PutEndTag(char* p, std::string_view strName)
{
    p = Put(p, "</");
    p = Put(p, strName);
    return Put(p, ">");
}

size_t EndTagLen(std::string_view strName) { return strName.size() + 3; }

} // namespace

// An element that is about to be added, its data already encoded.
struct CMarkupSTL::NewElem {
    std::string_view strName;
    std::string_view strData;
    int nFlags;

    std::string_view TagClose() const
    {
        if (!strData.empty() || (nFlags & MNF_WITHNOEND) != 0) {
            return ">";
        }
        return (nFlags & MNF_WITHXHTMLSPACE) != 0 ? " />" : "/>";
    }
    std::string_view LineEnd() const { return (nFlags & MNF_WITHNOLINES) != 0 ? "" : "\r\n"; }
    size_t StartTagLen() const { return 1 + strName.size() + TagClose().size(); }
    size_t EndTagLen() const { return strData.empty() ? 0 : ::EndTagLen(strName); }
    size_t Length() const { return StartTagLen() + strData.size() + EndTagLen(); }
    bool Fits() const { return ElemPos::FitsTags(StartTagLen(), EndTagLen()); }

    char* Write(char* p) const
    {
        p = Put(p, "<");
        p = Put(p, strName);
        p = Put(p, TagClose());
        return strData.empty() ? p : PutEndTag(Put(p, strData), strName);
    }
};

bool CMarkupSTL::AddElem(const char* szName, const char* szData, int nFlags)
{
    return x_AddElem(View(szName), View(szData), nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, int nData, int nFlags)
{
    return x_AddElem(View(szName), NumberText(nData).View(), nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, unsigned int nData, int nFlags)
{
    return x_AddElem(View(szName), NumberText(nData).View(), nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, unsigned long long nData, int nFlags)
{
    return x_AddElem(View(szName), NumberText(static_cast<long long>(nData)).View(), nFlags);
}

bool CMarkupSTL::x_AddElem(std::string_view strName, std::string_view strData, int nFlags)
{
    if (m_aPos.Size() == 0 || strName.empty() || ((nFlags & MNF_WITHNOEND) != 0 && !strData.empty())) {
        return false;
    }
    std::string strBuffer;
    if (!strData.empty()) {
        strData = x_EncodeData(strData, nFlags, strBuffer);
    }
    const NewElem elem{strName, strData, nFlags};
    if (!elem.Fits()) {
        return false;
    }
    x_MakeRoom();
    return x_IsEmptyElem(m_iPosParent) ? x_InsertIntoEmpty(elem) : x_InsertNew(elem);
}

// Behind the main position, else at the end of the parent's content.
bool CMarkupSTL::x_InsertNew(const NewElem& elem)
{
    const bool bFirstContent = m_iPosParent != 0 && m_aPos[m_iPosParent].ContentLen() == 0;
    const std::string_view strLead = bFirstContent ? elem.LineEnd() : "";
    const size_t nShift = strLead.size() + elem.Length() + elem.LineEnd().size();
    const size_t nOffset = x_FindInsertOffset();
    char* p = x_MakeGap(nOffset, 0, nShift);
    if (p == nullptr) {
        return false;
    }
    Put(elem.Write(Put(p, strLead)), elem.LineEnd());
    x_IndexNew(elem, nOffset + strLead.size(), nShift);
    return true;
}

// The parent gets an end tag: its "/>" becomes ">", the new element and "</name>".
bool CMarkupSTL::x_InsertIntoEmpty(const NewElem& elem)
{
    constexpr size_t kReplaced = 2;
    const std::string strParent(x_FindTagName(m_iPosParent).GetToken()); // the text is about to move
    const size_t nStartTag = static_cast<size_t>(m_aPos[m_iPosParent].StartTagLen()) - 1;
    if (!ElemPos::FitsTags(nStartTag, EndTagLen(strParent))) {
        return false;
    }
    const size_t nGap =
        1 + elem.LineEnd().size() + elem.Length() + elem.LineEnd().size() + EndTagLen(strParent);
    const size_t nOffset = static_cast<size_t>(m_aPos[m_iPosParent].StartContent()) - kReplaced;
    char* p = x_MakeGap(nOffset, kReplaced, nGap);
    if (p == nullptr) {
        return false;
    }
    p = elem.Write(Put(Put(p, ">"), elem.LineEnd()));
    PutEndTag(Put(p, elem.LineEnd()), strParent);
    m_aPos[m_iPosParent].SetTagLengths(nStartTag, EndTagLen(strParent));
    x_IndexNew(elem, nOffset + 1 + elem.LineEnd().size(), nGap - kReplaced);
    return true;
}

// The new element goes on the line after the previous one: over whitespace, where a tag or the end follows.
size_t CMarkupSTL::x_FindInsertOffset() const
{
    const int nEnd = m_aPos[m_iPosParent].EndContent();
    if (m_iPos == 0) {
        return static_cast<size_t>(nEnd);
    }
    TokenPos token(std::string_view(m_strDoc).substr(0, static_cast<size_t>(nEnd)),
                   m_aPos[m_iPos].StartAfter());
    const bool bTextFollows = token.FindAny() && token.Peek() != '<';
    return static_cast<size_t>(bTextFollows ? token.nPreSpaceStart : token.nNext);
}

// Puts nGap bytes in the place of nReplace bytes; answers where, or null when the text would be too long.
char* CMarkupSTL::x_MakeGap(size_t nOffset, size_t nReplace, size_t nGap)
{
    if (nGap > INT_MAX - m_strDoc.size()) {
        return nullptr;
    }
    if (m_strDoc.size() + nGap > m_strDoc.capacity()) {
        m_strDoc.reserve(kGrowth * (m_strDoc.size() + nGap));
    }
    m_strDoc.replace(nOffset, nReplace, nGap, '\0');
    return &m_strDoc[nOffset];
}

// Makes the element at nStart known and current. The text has grown by nShift.
void CMarkupSTL::x_IndexNew(const NewElem& elem, size_t nStart, size_t nShift)
{
    const int iPos = m_iPosFree++;
    ElemPos& pos = m_aPos[iPos];
    pos = ElemPos{};
    pos.nStart = static_cast<int>(nStart);
    pos.nLength = static_cast<int>(elem.Length());
    pos.SetTagLengths(elem.StartTagLen(), elem.EndTagLen());
    pos.nFlags = (elem.nFlags & MNF_WITHNOEND) != 0 ? MNF_NONENDED : 0;
    x_LinkElem(iPos, m_iPosParent, m_iPos != 0 ? m_iPos : x_LastChild(m_iPosParent));
    x_GrowParent(iPos, static_cast<int>(nShift));
    m_iPos = iPos;
    m_iPosChild = 0;
}

void CMarkupSTL::x_MakeRoom()
{
    if (m_iPosFree == m_aPos.Size()) {
        m_aPos.Grow();
    }
}

int CMarkupSTL::x_LastChild(int iPosParent) const
{
    const int iFirst = m_aPos[iPosParent].iElemChild;
    return iFirst == 0 ? 0 : m_aPos[iFirst].iElemPrev;
}

// Whether the element is written with "/>".
bool CMarkupSTL::x_IsEmptyElem(int iPos) const
{
    return iPos != 0 && m_aPos[iPos].EndTagLen() == 0 && (m_aPos[iPos].nFlags & MNF_NONENDED) == 0;
}

// Links a new element behind its sibling iPosPrev; with 0 it is the only child.
void CMarkupSTL::x_LinkElem(int iPos, int iPosParent, int iPosPrev)
{
    ElemPos& elem = m_aPos[iPos];
    ElemPos& parent = m_aPos[iPosParent];
    elem.iElemParent = iPosParent;
    elem.nFlags |= std::min<int>(parent.Level() + 1, ElemPos::EP_LEVMASK);
    if (iPosPrev == 0) {
        parent.iElemChild = iPos;
        elem.iElemPrev = iPos;
        elem.nFlags |= MNF_FIRST;
        return;
    }
    ElemPos& prev = m_aPos[iPosPrev];
    elem.iElemNext = prev.iElemNext;
    elem.iElemPrev = iPosPrev;
    prev.iElemNext = iPos;
    const int iFollowing = elem.iElemNext != 0 ? elem.iElemNext : parent.iElemChild;
    m_aPos[iFollowing].iElemPrev = iPos;
}

// After the text has grown by nShift at iPos, a child of the cursor's parent: the parent is longer, what
// follows in it stands later. What is above learns of it when the cursor leaves the parent, so that adding
// costs the same at any depth.
void CMarkupSTL::x_GrowParent(int iPos, int nShift)
{
    for (int iNext = m_aPos[iPos].iElemNext; iNext != 0; iNext = m_aPos[iNext].iElemNext) {
        x_ShiftTree(iNext, nShift);
    }
    m_aPos[m_iPosParent].nLength += nShift;
    if (m_iPosParent != 0) {
        m_aGrown.back() += nShift;
    }
}

void CMarkupSTL::x_ShiftTree(int iPosTop, int nShift)
{
    int iPos = iPosTop;
    for (;;) {
        m_aPos[iPos].nStart += nShift;
        if (m_aPos[iPos].iElemChild != 0) {
            iPos = m_aPos[iPos].iElemChild;
            continue;
        }
        while (iPos != iPosTop && m_aPos[iPos].iElemNext == 0) {
            iPos = m_aPos[iPos].iElemParent;
        }
        if (iPos == iPosTop) {
            return;
        }
        iPos = m_aPos[iPos].iElemNext;
    }
}
