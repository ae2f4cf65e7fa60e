#include "MarkupSTL.h"

#include <climits>

#include "MarkupSTLToken.h"

static_assert(int{CMarkupSTL::MDF_IGNORECASE} == TokenPos::IGNORE_CASE);

CMarkupSTL::CMarkupSTL()
{
    InitDocFlags();
    SetDoc(nullptr);
}

CMarkupSTL::CMarkupSTL(const char* szDoc, unsigned int nLen)
{
    InitDocFlags();
    SetDoc(szDoc, nLen);
}

// Copies everything first: text, index and cursor must always belong to the same document.
CMarkupSTL& CMarkupSTL::operator=(const CMarkupSTL& other)
{
    CMarkupSTL copy(other);
    m_strDoc.swap(copy.m_strDoc);
    m_strError.swap(copy.m_strError);
    m_mapSavedPos.swap(copy.m_mapSavedPos);
    m_aPos.Swap(copy.m_aPos);
    m_aGrown.swap(copy.m_aGrown);
    m_iPosParent = copy.m_iPosParent;
    m_iPos = copy.m_iPos;
    m_iPosChild = copy.m_iPosChild;
    m_iPosFree = copy.m_iPosFree;
    m_iPosDeleted = copy.m_iPosDeleted;
    m_nNodeType = copy.m_nNodeType;
    m_nNodeOffset = copy.m_nNodeOffset;
    m_nNodeLength = copy.m_nNodeLength;
    m_nFlags = copy.m_nFlags;
    return *this;
}

bool CMarkupSTL::SetDoc(const char* szDoc)
{
    return x_SetDoc(szDoc == nullptr ? std::string_view() : std::string_view(szDoc));
}

bool CMarkupSTL::SetDoc(const char* szDoc, unsigned int nLen)
{
    return x_SetDoc(szDoc == nullptr ? std::string_view() : std::string_view(szDoc, nLen));
}

bool CMarkupSTL::x_SetDoc(std::string_view strDoc)
{
    if (strDoc.size() > INT_MAX) {
        return false;
    }
    std::string strNew(strDoc);
    // The old index goes before its text, so that running out of memory leaves no offsets without text.
    ResetPos();
    m_mapSavedPos.clear();
    m_aPos.Clear();
    m_strDoc.swap(strNew);
    m_strError.clear();
    return x_ParseDoc();
}

void CMarkupSTL::Clear()
{
    ResetPos();
    m_mapSavedPos.clear();
    m_strDoc.clear();
    m_strError.clear();
    x_ParseDoc();
}

bool CMarkupSTL::IsWellFormed() const
{
    if (m_aPos.Size() == 0 || (m_aPos[0].nFlags & MNF_ILLFORMED) != 0) {
        return false;
    }
    const int iRoot = m_aPos[0].iElemChild;
    return iRoot != 0 && m_aPos[iRoot].iElemNext == 0;
}

bool CMarkupSTL::IntoElem()
{
    if (m_iPos == 0 || m_nNodeLength != 0) {
        return false;
    }
    m_aGrown.push_back(0);
    m_iPosParent = m_iPos;
    m_iPos = 0;
    m_iPosChild = 0;
    return true;
}

bool CMarkupSTL::OutOfElem()
{
    if (m_iPosParent == 0) {
        return false;
    }
    m_iPosChild = m_iPos;
    m_iPos = m_iPosParent;
    m_iPosParent = m_aPos[m_iPos].iElemParent;
    const int nGrown = m_aGrown.back();
    m_aGrown.pop_back();
    if (nGrown != 0) {
        x_GrowParent(m_aPos[m_iPos].iElemNext, m_aPos[m_iPosParent], nGrown);
    }
    return true;
}

bool CMarkupSTL::FindElem(const char* szName)
{
    if (m_aPos.Size() == 0) {
        return false;
    }
    const std::string_view strName = szName == nullptr ? std::string_view() : std::string_view(szName);
    int iPos = m_iPos != 0 ? m_aPos[m_iPos].iElemNext : m_aPos[m_iPosParent].iElemChild;
    while (iPos != 0 && !strName.empty() && !x_FindTagName(iPos).Match(strName)) {
        iPos = m_aPos[iPos].iElemNext;
    }
    if (iPos == 0) {
        return false;
    }
    m_iPos = iPos;
    m_iPosChild = 0;
    return true;
}

void CMarkupSTL::ResetPos()
{
    while (OutOfElem()) {
    }
    m_iPos = 0;
    m_iPosChild = 0;
    m_nNodeType = 0;
    m_nNodeOffset = 0;
    m_nNodeLength = 0;
}

std::string CMarkupSTL::GetTagName() const
{
    return m_iPos == 0 ? std::string() : std::string(x_FindTagName(m_iPos).GetToken());
}

std::string CMarkupSTL::GetData() const { return m_iPos == 0 ? std::string() : x_GetData(m_iPos); }

TokenPos CMarkupSTL::x_FindTagName(int iPos) const
{
    TokenPos token(m_strDoc, m_aPos[iPos].nStart + 1, m_nFlags);
    token.FindName();
    return token;
}
