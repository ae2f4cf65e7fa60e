#include "MarkupSTL.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>

#include "MarkupSTLToken.h"

namespace {

constexpr size_t kGrowth = 4;       // large steps: untouched memory costs nothing
constexpr size_t kFirstText = 1024; // holds the usual request

std::string_view View(const char* szText) { return szText == nullptr ? std::string_view() : szText; }

char* Put(char* p, std::string_view strText)
{
    std::memcpy(p, strText.data(), strText.size());
    return p + strText.size();
}

char* PutEndTag(char* p, std::string_view strName)
{
    p = Put(Put(p, "</"), strName);
    *p = '>';
    return p + 1;
}

size_t EndTagLen(size_t nName) { return nName + 3; }

} // namespace

// An element about to be added, its data already encoded.
struct CMarkupSTL::NewElem {
    NewElem(std::string_view name, std::string_view data, int nNodeFlags)
        : strName(name), strData(data), nFlags(nNodeFlags), bLines((nNodeFlags & MNF_WITHNOLINES) == 0)
    {
        if (strData.empty() && (nFlags & MNF_WITHNOEND) == 0) {
            strTagClose = (nFlags & MNF_WITHXHTMLSPACE) != 0 ? " />" : "/>";
        }
        nStartTag = 1 + strName.size() + strTagClose.size();
        nEndTag = strData.empty() ? 0 : EndTagLen(strName.size());
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
    ElemPos& parent = m_aPos[m_iPosParent];
    return m_iPosParent != 0 && x_IsEmptyElem(parent) ? x_InsertIntoEmpty(elem, parent)
                                                      : x_InsertNew(elem, parent);
}

// After the main position, or at the end of the parent's content if there is none.
bool CMarkupSTL::x_InsertNew(const NewElem& elem, ElemPos& parent)
{
    const bool bFirstContent = m_iPosParent != 0 && parent.ContentLen() == 0;
    const size_t nLead = bFirstContent ? elem.LineEndLen() : 0;
    const size_t nGap = nLead + elem.Length() + elem.LineEndLen();
    const size_t nOffset = x_FindInsertOffset(parent);
    char* p = x_MakeGap(nOffset, 0, nGap);
    if (p == nullptr) {
        return false;
    }
    p = bFirstContent ? elem.PutLineEnd(p) : p;
    elem.PutLineEnd(elem.PutElem(p));
    x_IndexNew(elem, parent, nOffset + nLead, nGap);
    return true;
}

// The parent gets an end tag: its "/>" becomes ">", the new element and "</name>".
bool CMarkupSTL::x_InsertIntoEmpty(const NewElem& elem, ElemPos& parent)
{
    constexpr size_t kReplaced = 2;
    const size_t nName = x_FindTagName(m_iPosParent).GetToken().size();
    const size_t nStartTag = static_cast<size_t>(parent.StartTagLen()) - 1;
    const size_t nEndTag = EndTagLen(nName);
    if (!ElemPos::FitsTags(nStartTag, nEndTag)) {
        return false;
    }
    const size_t nOffset = static_cast<size_t>(parent.StartContent()) - kReplaced;
    const size_t nLead = 1 + elem.LineEndLen();
    const size_t nGap = nLead + elem.Length() + elem.LineEndLen() + nEndTag;
    char* p = x_MakeGap(nOffset, kReplaced, nGap);
    if (p == nullptr) {
        return false;
    }
    p = elem.PutLineEnd(Put(p, ">"));
    PutEndTag(elem.PutLineEnd(elem.PutElem(p)),
              std::string_view(m_strDoc).substr(static_cast<size_t>(parent.nStart) + 1, nName));
    parent.SetTagLengths(nStartTag, nEndTag);
    x_IndexNew(elem, parent, nOffset + nLead, nGap - kReplaced);
    return true;
}

// The new element goes on the line after the previous one, replacing whitespace that precedes a tag or the
// end.
size_t CMarkupSTL::x_FindInsertOffset(const ElemPos& parent) const
{
    const auto nEnd = static_cast<size_t>(parent.EndContent());
    if (m_iPos == 0) {
        return nEnd;
    }
    const auto nAfter = static_cast<size_t>(m_aPos[m_iPos].StartAfter());
    size_t nNext = nAfter;
    while (nNext < nEnd && TokenPos::IsSpace(m_strDoc[nNext])) {
        ++nNext;
    }
    return nNext == nEnd || m_strDoc[nNext] == '<' ? nNext : nAfter;
}

// Replaces nReplace bytes by a gap of nGap bytes; returns its place, or null when the text would be too long.
char* CMarkupSTL::x_MakeGap(size_t nOffset, size_t nReplace, size_t nGap)
{
    if (nGap > INT_MAX - m_strDoc.size()) {
        return nullptr;
    }
    if (m_strDoc.size() + nGap > m_strDoc.capacity()) {
        m_strDoc.reserve(std::clamp<size_t>(kGrowth * (m_strDoc.size() + nGap), kFirstText, INT_MAX));
    }
    m_strDoc.replace(nOffset, nReplace, nGap, '\0');
    return &m_strDoc[nOffset];
}

// Indexes the element at nStart and makes it current. The text has grown by nShift.
void CMarkupSTL::x_IndexNew(const NewElem& elem, ElemPos& parent, size_t nStart, size_t nShift)
{
    const int iPos = m_iPosFree++;
    ElemPos& pos = m_aPos[iPos];
    pos.nStart = static_cast<int>(nStart);
    pos.nLength = static_cast<int>(elem.Length());
    pos.SetTagLengths(elem.nStartTag, elem.nEndTag);
    pos.nFlags = (elem.nFlags & MNF_WITHNOEND) != 0 ? MNF_NONENDED : 0;
    m_aPos.Link(iPos, m_iPosParent, m_iPos != 0 ? m_iPos : m_aPos.LastChild(m_iPosParent));
    x_GrowParent(pos.iElemNext, parent, static_cast<int>(nShift));
    m_iPos = iPos;
    m_iPosChild = 0;
}

// Whether the element is written with "/>".
bool CMarkupSTL::x_IsEmptyElem(const ElemPos& elem)
{
    return elem.EndTagLen() == 0 && (elem.nFlags & MNF_NONENDED) == 0;
}

// After the text has grown by nShift before iPosNext, a child of the cursor's parent or none: lengthens the
// parent and shifts its later children. Outer elements are updated when the cursor leaves the parent, so that
// adding costs the same at any depth.
void CMarkupSTL::x_GrowParent(int iPosNext, ElemPos& parent, int nShift)
{
    for (int iNext = iPosNext; iNext != 0; iNext = m_aPos[iNext].iElemNext) {
        x_ShiftTree(iNext, nShift);
    }
    parent.nLength += nShift;
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
