#pragma once
// The element index of CMarkupSTL: where each element stands in the text and how elements are related.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// One element. Offsets and lengths are bytes of the document text; the i fields are places in the index, 0
// for none. Index 0 is the document itself: its first child is the root element, its length that of the text.
struct ElemPos {
    enum {
        EP_STBITS = 22,
        // Not a run of 22 ones; kept as it is. A start-tag length must survive this mask to be indexed.
        EP_STMASK = 3145727,
        EP_ETMAX = 1023,
        EP_LEVMASK = 65535
    };

    int nStart;      // the "<" of the start tag
    int nLength;     // start tag to end of end tag
    int nTagLengths; // start-tag length, and from bit EP_STBITS the end-tag length
    int nFlags;      // level in the low 16 bits, node flags above
    int iElemParent;
    int iElemChild; // first child
    int iElemNext;
    int iElemPrev; // previous sibling; that of the first child is the last child

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
    int EndContent() const { return StartContent() + ContentLen(); }
    int StartAfter() const { return nStart + nLength; }
    int Level() const { return nFlags & EP_LEVMASK; }
};

// Entries in segments. The first segment grows by doubling; from then on whole segments are added and nothing
// moves. New entries are not initialised: memory that is never used is never touched.
class PosArray {
public:
    PosArray() = default;
    PosArray(const PosArray& other);
    PosArray& operator=(const PosArray&) = delete;
    void Swap(PosArray& other) noexcept;

    // Drops all entries and makes room for nEntries, at most one segment for a start.
    void Reset(size_t nEntries);
    void Clear();
    void Grow();

    int Size() const { return nSize; }
    ElemPos& operator[](int i) { return pSegs[Segment(i)][Slot(i)]; }
    const ElemPos& operator[](int i) const { return pSegs[Segment(i)][Slot(i)]; }

private:
    enum { PA_SEGBITS = 16, PA_SEGMASK = 65535, PA_SEGSIZE = PA_SEGMASK + 1 };
    static size_t Segment(int i) { return static_cast<size_t>(i) >> PA_SEGBITS; }
    static size_t Slot(int i) { return static_cast<size_t>(i) & PA_SEGMASK; }
    // All segments but the first are whole.
    size_t SegmentSize(size_t nSeg) const;

    std::vector<std::unique_ptr<ElemPos[]>> pSegs;
    int nSize = 0; // entries allocated
};

// Cursor positions saved under a name.
struct SavedPos {
    std::string strName;
    int iPos = 0;
    int nSavedPosFlags = 0;
};

using SavedPosMap = std::vector<SavedPos>;
