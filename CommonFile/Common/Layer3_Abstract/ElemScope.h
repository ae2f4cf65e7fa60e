#pragma once

#include "MarkupSTL.h"

// An element scoped to a C++ block: added and entered at its start, left at its end. So the nesting of blocks
// is the nesting of the XML.
class CElemScope {
public:
    CElemScope(CMarkupSTL& doc, const char* szName)
        : m_doc(doc), m_bInside(doc.AddElem(szName) && doc.IntoElem())
    {
    }
    ~CElemScope()
    {
        if (m_bInside) {
            m_doc.OutOfElem();
        }
    }
    CElemScope(const CElemScope&) = delete;
    CElemScope& operator=(const CElemScope&) = delete;

private:
    CMarkupSTL& m_doc;
    bool m_bInside; // false when the document refused the element
};
