#pragma once
// The element index of CMarkupSTL: the place of each element in the text, and the links between elements.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// One element. Offsets and lengths are bytes of the document text; the i fields are indexes of other
// elements, 0 for none. Index 0 is the document itself: its first child is the root element, its length the
// text's.
struct ElemPos {
    enum {
        EP_STBITS = 22,
        // Not a run of 22 ones; kept as it is. A start-tag length must survive this mask to be indexed.
        EP_STMASK = 3145727,
        EP_ETMAX = 1023,
        EP_LEVMASK = 65535,
        EP_FIRST = 524288 // the node flag of a first child
    };

    int nStart;      // the "<" of the start tag
    int nLength;     // start tag to end of end tag
    int nTagLengths; // start-tag length, and from bit EP_STBITS the end-tag length
    int nFlags;      // level in the low 16 bits, node flags above
    int iElemParent;
    int iElemChild; // first child
    int iElemNext;
    int iElemPrev; // previous sibling; for the first child, the last one

    static bool FitsTags(size_t nStartTag, size_t nEndTag)
    {
        return (nStartTag & ~static_cast<size_t>(EP_STMASK)) == 0 && nEndTag <= EP_ETMAX;
    }
    // Lengths must fit.
    void SetTagLengths(size_t nStartTag, size_t nEndTag)
    {
        nTagLengths = static_cast<int>(static_cast<unsigned int>(nEndTag << EP_STBITS | nStartTag));
    }
    int StartTagLen() const { return nTagLengths & EP_STMASK; }
    int EndTagLen() const { return static_cast<int>(static_cast<unsigned int>(nTagLengths) >> EP_STBITS); }
    int StartContent() const { return nStart + StartTagLen(); }
    int ContentLen() const { return nLength - StartTagLen() - EndTagLen(); }
    int EndContent() const { return StartAfter() - EndTagLen(); }
    int StartAfter() const { return nStart + nLength; }
    int Level() const { return nFlags & EP_LEVMASK; }
};

// Entries in segments. The first segment grows by a factor; from then on whole segments are added and nothing
// moves. New entries are not initialised: memory that is never used is never touched.
class PosArray {
public:
    PosArray() = default;
    PosArray(const PosArray& other);
    PosArray& operator=(const PosArray&) = delete;
    void Swap(PosArray& other) noexcept;

    // Makes room for nEntries, at most one segment at first, unless there is enough already; the entries'
    // contents are lost.
    void Reset(size_t nEntries);
    void Clear();
    void Grow();

    int Size() const { return nSize; }
    size_t Memory() const { return static_cast<size_t>(nSize) * sizeof(ElemPos); }
    ElemPos& operator[](int i) { return pSegs[Segment(i)][Slot(i)]; }
    const ElemPos& operator[](int i) const { return pSegs[Segment(i)][Slot(i)]; }

    int LastChild(int iParent) const;
    // Links a new element after its sibling iPrev; if 0, it is the only child. Sets its level, keeping its
    // flags, and all its links.
    void Link(int iPos, int iParent, int iPrev);

private:
    enum { PA_SEGBITS = 16, PA_SEGMASK = 65535, PA_SEGSIZE = PA_SEGMASK + 1 };
    static size_t Segment(int i) { return static_cast<size_t>(i) >> PA_SEGBITS; }
    static size_t Slot(int i) { return static_cast<size_t>(i) & PA_SEGMASK; }
    // All segments but the first are full-sized.
    size_t SegmentSize(size_t nSeg) const;

    std::vector<std::unique_ptr<ElemPos[]>> pSegs;
    int nSize = 0; // entries allocated
};

inline int PosArray::LastChild(int iParent) const
{
    const int iFirst = (*this)[iParent].iElemChild;
    return iFirst == 0 ? 0 : (*this)[iFirst].iElemPrev;
}

// Inline, as it runs once for each element.
inline void PosArray::Link(int iPos, int iParent, int iPrev)
{
    ElemPos& elem = (*this)[iPos];
    ElemPos& parent = (*this)[iParent];
    elem.nFlags |= std::min<int>(parent.Level() + 1, ElemPos::EP_LEVMASK);
    elem.iElemParent = iParent;
    elem.iElemChild = 0;
    if (iPrev == 0) {
        elem.nFlags |= ElemPos::EP_FIRST;
        elem.iElemNext = 0;
        elem.iElemPrev = iPos;
        parent.iElemChild = iPos;
        return;
    }
    ElemPos& prev = (*this)[iPrev];
    const int iNext = prev.iElemNext;
    elem.iElemNext = iNext;
    elem.iElemPrev = iPrev;
    prev.iElemNext = iPos;
    (*this)[iNext != 0 ? iNext : parent.iElemChild].iElemPrev = iPos;
}

// Cursor positions saved under a name.
struct SavedPos {
    std::string strName;
    int iPos = 0;
    int nSavedPosFlags = 0;
};

using SavedPosMap = std::vector<SavedPos>;
