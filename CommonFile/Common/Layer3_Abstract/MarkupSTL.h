#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "Base64Coder.h"
#include "MarkupSTLIndex.h"

struct NodePos;
struct NodeStack;
struct TokenPos;

// An XML document in memory: its text, an index of its elements, and the cursor at which elements are added.
// The text is edited in place and sent as is.
//
// The cursor has a parent and, among the children of that parent, a main position or none. Operations that
// return false leave document and cursor unchanged. A text has at most 2^31 - 1 bytes; anything longer is
// refused. Bad input never throws; an operation that allocates may throw std::bad_alloc and leaves the
// document usable. A document is a value, used by one thread at a time.
class CMarkupSTL {
public:
    enum MarkupNodeType {
        MNT_ELEMENT = 1,
        MNT_TEXT = 2,
        MNT_WHITESPACE = 4,
        MNT_CDATA_SECTION = 8,
        MNT_PROCESSING_INSTRUCTION = 16,
        MNT_COMMENT = 32,
        MNT_DOCUMENT_TYPE = 64,
        MNT_EXCLUDE_WHITESPACE = 123,
        MNT_LONE_END_TAG = 128,
        MNT_NODE_ERROR = 32768
    };

    enum MarkupNodeFlags {
        MNF_WITHCDATA = 1,      // data in CDATA sections instead of escaped
        MNF_WITHNOLINES = 2,    // no line ends around the element
        MNF_WITHXHTMLSPACE = 4, // "<name />"
        MNF_WITHREFS = 8,       // an "&" that starts a reference is kept
        MNF_WITHNOEND = 16,     // "<name>" without an end tag; the element has no data
        MNF_ESCAPEQUOTES = 256,
        MNF_NONENDED = 1048576,
        MNF_ILLDATA = 2097152
    };

    enum MarkupNodeFlagsInternal {
        MNF_REPLACE = 4096,
        MNF_INSERT = 8192,
        MNF_CHILD = 16384,
        MNF_QUOTED = 32768,
        MNF_EMPTY = 65536,
        MNF_DELETED = 131072,
        MNF_FIRST = 524288,
        MNF_PUBLIC = 3145728,
        MNF_ILLFORMED = 8388608,
        MNF_USER = 251658240
    };

    enum MarkupDocFlags { MDF_IGNORECASE = 8 };

    CMarkupSTL();
    // Copies and parses nLen bytes, which may hold zero bytes.
    CMarkupSTL(const char* szDoc, unsigned int nLen);
    CMarkupSTL(const CMarkupSTL&) = default; // no move: it would leave an index without its text
    CMarkupSTL& operator=(const CMarkupSTL& other);
    ~CMarkupSTL() = default;

    // Replaces the text and parses it; a null pointer gives an empty text. True when the new document is
    // well-formed; an ill-formed one holds what could be recognised. False, with the old document kept, when
    // the text is too long.
    bool SetDoc(const char* szDoc);
    bool SetDoc(const char* szDoc, unsigned int nLen);
    // Empties the document, as if it were new, but keeps its memory for the next text.
    void Clear();
    // Bytes of memory held for text and index.
    size_t GetMemory() const { return m_strDoc.capacity() + m_aPos.Memory(); }
    // The document text; valid until the next change.
    const std::string& GetDoc() const { return m_strDoc; }
    // What the last SetDoc found wrong, joined with ", "; offsets are bytes of its text. Ends after about 1
    // MiB.
    const std::string& GetError() const { return m_strError; }
    bool IsWellFormed() const;

    // Adds an element after the main position, or as the parent's last child if there is none, and makes it
    // the main position. Without data, or with empty data, it is written as an empty element. szName is
    // written as is; szName and szData must not point into this document. False for an empty name, for data
    // with MNF_WITHNOEND, and when a tag is longer than the index can hold (an end tag of 1023, a start tag
    // of about a million bytes).
    bool AddElem(const char* szName, const char* szData = nullptr, int nFlags = 0);
    bool AddElem(const char* szName, int nData, int nFlags = 0);
    bool AddElem(const char* szName, unsigned int nData, int nFlags = 0);
    // Written as a signed number: above 2^63 - 1 it is negative, as the decoder expects.
    bool AddElem(const char* szName, unsigned long long nData, int nFlags = 0);

    // Makes the main position the parent. False without a main position.
    bool IntoElem();
    // Makes the parent the main position. False at the document level.
    bool OutOfElem();
    // Advances from the main position, or the start, to the parent's next child of this name; null or empty
    // takes any. In szName the name may be followed by one of " =/[]".
    bool FindElem(const char* szName = nullptr);
    void ResetPos();

    // At the main position; empty without one. The data of an element with child elements is empty.
    std::string GetTagName() const;
    std::string GetData() const;

    // nFlags: MNF_ESCAPEQUOTES, MNF_WITHREFS.
    static std::string EscapeText(const char* szText, int nFlags = 0);
    // nLen bytes of text; -1 means up to the terminating zero byte.
    static std::string UnescapeText(const char* szText, int nTextLength = -1);

private:
    struct NewElem;

    void InitDocFlags() { m_nFlags = 0; }
    bool x_SetDoc(std::string_view strDoc);

    bool x_ParseDoc();
    void x_ParseElem(NodeStack& open, const TokenPos& token, const NodePos& node);
    void x_ParseEndTag(NodeStack& open, const TokenPos& token, const NodePos& node);
    void x_EndUnended(NodeStack& open, int nOffset);
    void x_AddError(std::string_view strError);
    void x_AddNodeError(std::initializer_list<std::string_view> parts);
    static void x_ParseNode(TokenPos& token, NodePos& node);

    bool x_AddText(std::string_view strName, std::string_view strData, int nFlags);
    template <class Number>
    bool x_AddNumber(std::string_view strName, Number nData, int nFlags);
    bool x_AddElem(const NewElem& elem);
    bool x_InsertNew(const NewElem& elem, ElemPos& parent);
    bool x_InsertIntoEmpty(const NewElem& elem, ElemPos& parent);
    size_t x_FindInsertOffset(const ElemPos& parent) const;
    char* x_MakeGap(size_t nOffset, size_t nReplace, size_t nGap);
    void x_IndexNew(const NewElem& elem, ElemPos& parent, size_t nStart, size_t nShift);
    static bool x_IsEmptyElem(const ElemPos& elem);
    void x_GrowParent(int iPosNext, ElemPos& parent, int nShift);
    void x_ShiftTree(int iPosTop, int nShift);

    TokenPos x_FindTagName(int iPos) const;
    std::string x_GetData(int iPos) const;
    static std::string_view x_EncodeData(std::string_view strData, int nFlags, std::string& strBuffer);

    std::string m_strDoc;
    std::string m_strError;
    CBase64Coder m_Base64;
    int m_iPosParent = 0;
    int m_iPos = 0;
    int m_iPosChild = 0;
    int m_iPosFree = 0;    // the next index never used
    int m_iPosDeleted = 0; // head of the released indexes
    int m_nNodeType = 0;   // for a node that is not an element
    int m_nNodeOffset = 0;
    int m_nNodeLength = 0; // 0 on an element
    int m_nFlags = 0;
    SavedPosMap m_mapSavedPos;
    PosArray m_aPos;
    std::vector<int> m_aGrown; // growth of each element that the cursor is inside, since it was entered
};
