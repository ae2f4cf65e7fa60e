#include "MarkupSTL.h"

#include <algorithm>
#include <charconv>
#include <climits>

#include "MarkupSTLToken.h"

namespace {

constexpr size_t kGrowth = 4; // large steps, as memory that was not touched yet costs nothing

std::string_view View(const char* szText) { return szText == nullptr ? std::string_view() : szText; }

char* Put(char* p, std::string_view strText) { return std::copy(strText.begin(), strText.end(), p); }

char* PutEndTag(char* p, std::string_view strName)
{
    p = Put(Put(p, "</"), strName);
    *p = '>';
    return p + 1;
}

size_t EndTagLen(std::string_view strName) { return strName.size() + 3; }

} // namespace

// An element that is about to be added, its data already encoded.
struct CMarkupSTL::NewElem {
    NewElem(std::string_view name, std::string_view data, int nNodeFlags)
        : strName(name), strData(data), nFlags(nNodeFlags), bLines((nNodeFlags & MNF_WITHNOLINES) == 0)
    {
        if (strData.empty() && (nFlags & MNF_WITHNOEND) == 0) {
            strTagClose = (nFlags & MNF_WITHXHTMLSPACE) != 0 ? " />" : "/>";
        }
        nStartTag = 1 + strName.size() + strTagClose.size();
        nEndTag = strData.empty() ? 0 : EndTagLen(strName);
    }

    bool IsValid() const
    {
        const bool bDataWithoutEnd = (nFlags & MNF_WITHNOEND) != 0 && !strData.empty();
        return !strName.empty() && !bDataWithoutEnd && ElemPos::FitsTags(nStartTag, nEndTag);
    }
    size_t Length() const { return nStartTag + strData.size() + nEndTag; }
    size_t LineEndLen() const { return bLines ? 2 : 0; }

    char* PutLineEnd(char* p) const { return bLines ? Put(p, "\r\n") : p; }
    char* PutElem(char* p) const
    {
        *p = '<';
        p = Put(p + 1, strName);
        if (strData.empty()) {
            return Put(p, strTagClose);
        }
        *p = '>';
        return PutEndTag(Put(p + 1, strData), strName);
    }

    std::string_view strName;
    std::string_view strData;
    std::string_view strTagClose = ">";
    int nFlags;
    bool bLines;
    size_t nStartTag;
    size_t nEndTag;
};

bool CMarkupSTL::AddElem(const char* szName, const char* szData, int nFlags)
{
    return x_AddText(View(szName), View(szData), nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, int nData, int nFlags)
{
    return x_AddNumber(View(szName), nData, nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, unsigned int nData, int nFlags)
{
    return x_AddNumber(View(szName), nData, nFlags);
}

bool CMarkupSTL::AddElem(const char* szName, unsigned long long nData, int nFlags)
{
    return x_AddNumber(View(szName), static_cast<long long>(nData), nFlags);
}

bool CMarkupSTL::x_AddText(std::string_view strName, std::string_view strData, int nFlags)
{
    if (strData.empty()) {
        return x_AddElem(NewElem(strName, strData, nFlags));
    }
    std::string strBuffer;
    return x_AddElem(NewElem(strName, x_EncodeData(strData, nFlags, strBuffer), nFlags));
}

template <class Number>
bool CMarkupSTL::x_AddNumber(std::string_view strName, Number nData, int nFlags)
{
    char szNumber[24];
    const char* pEnd = std::to_chars(std::begin(szNumber), std::end(szNumber), nData).ptr;
    const std::string_view strNumber(szNumber, static_cast<size_t>(pEnd - szNumber));
    if ((nFlags & MNF_WITHCDATA) != 0) {
        return x_AddText(strName, strNumber, nFlags);
    }
    return x_AddElem(NewElem(strName, strNumber, nFlags)); // digits need no escaping
}

bool CMarkupSTL::x_AddElem(const NewElem& elem)
{
    if (m_aPos.Size() == 0 || !elem.IsValid()) {
        return false;
    }
    if (m_iPosFree == m_aPos.Size()) {
        m_aPos.Grow();
    }
    return x_IsEmptyElem(m_iPosParent) ? x_InsertIntoEmpty(elem) : x_InsertNew(elem);
}

// Behind the main position, else at the end of the parent's content.
bool CMarkupSTL::x_InsertNew(const NewElem& elem)
{
    const bool bFirstContent = m_iPosParent != 0 && m_aPos[m_iPosParent].ContentLen() == 0;
    const size_t nLead = bFirstContent ? elem.LineEndLen() : 0;
    const size_t nGap = nLead + elem.Length() + elem.LineEndLen();
    const size_t nOffset = x_FindInsertOffset();
    char* p = x_MakeGap(nOffset, 0, nGap);
    if (p == nullptr) {
        return false;
    }
    p = bFirstContent ? elem.PutLineEnd(p) : p;
    elem.PutLineEnd(elem.PutElem(p));
    x_IndexNew(elem, nOffset + nLead, nGap);
    return true;
}

// The parent gets an end tag: its "/>" becomes ">", the new element and "</name>".
bool CMarkupSTL::x_InsertIntoEmpty(const NewElem& elem)
{
    constexpr size_t kReplaced = 2;
    const std::string strParent(x_FindTagName(m_iPosParent).GetToken()); // the text is about to move
    const size_t nStartTag = static_cast<size_t>(m_aPos[m_iPosParent].StartTagLen()) - 1;
    const size_t nEndTag = EndTagLen(strParent);
    if (!ElemPos::FitsTags(nStartTag, nEndTag)) {
        return false;
    }
    const size_t nOffset = static_cast<size_t>(m_aPos[m_iPosParent].StartContent()) - kReplaced;
    const size_t nLead = 1 + elem.LineEndLen();
    const size_t nGap = nLead + elem.Length() + elem.LineEndLen() + nEndTag;
    char* p = x_MakeGap(nOffset, kReplaced, nGap);
    if (p == nullptr) {
        return false;
    }
    p = elem.PutLineEnd(Put(p, ">"));
    PutEndTag(elem.PutLineEnd(elem.PutElem(p)), strParent);
    m_aPos[m_iPosParent].SetTagLengths(nStartTag, nEndTag);
    x_IndexNew(elem, nOffset + nLead, nGap - kReplaced);
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
        m_strDoc.reserve(std::min<size_t>(kGrowth * (m_strDoc.size() + nGap), INT_MAX));
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
    pos.SetTagLengths(elem.nStartTag, elem.nEndTag);
    pos.nFlags = (elem.nFlags & MNF_WITHNOEND) != 0 ? MNF_NONENDED : 0;
    x_LinkElem(iPos, m_iPosParent, m_iPos != 0 ? m_iPos : x_LastChild(m_iPosParent));
    x_GrowParent(iPos, static_cast<int>(nShift));
    m_iPos = iPos;
    m_iPosChild = 0;
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
