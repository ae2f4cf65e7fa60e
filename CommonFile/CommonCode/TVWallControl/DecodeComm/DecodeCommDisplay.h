#pragma once
// Borders of sub-windows.

#include <cstddef>

#include "Encoding/TvwRecord.h"

namespace ORVA2_DECODER_TVW {

// One sub-window: an image that travels whole.
struct S_Decoder_Draw_Border_Subwind {
    tint16 _index = 0;
    tint16 _drawborder = 0; // not 0: the border is drawn

    void Dump() const;
};
static_assert(sizeof(S_Decoder_Draw_Border_Subwind) == 4);
static_assert(offsetof(S_Decoder_Draw_Border_Subwind, _drawborder) == 2);
using DRAWBORDERSUBWINDLIST = std::list<std::shared_ptr<S_Decoder_Draw_Border_Subwind>>;

// One canvas window.
struct S_Decoder_Draw_Border_Wind : CTvwRecord<S_Decoder_Draw_Border_Wind, CCutListReader> {
    tint16 _id = 0;
    tuint32 _subwindCount = 0;
    DRAWBORDERSUBWINDLIST _subwindlist;

    static constexpr RecordSite SITE{"DecodeCommDisplay", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        // Read separately: the id is kept when the count is cut.
        visitor.Plain(self._id);
        visitor.Plain(self._subwindCount);
        visitor.ImageList(self._subwindCount, self._subwindlist);
    }
    void Dump() const;
};
using DRAWBORDERWINDLIST = std::list<std::shared_ptr<S_Decoder_Draw_Border_Wind>>;

// The whole command. The host may announce more than it sends; what is there counts.
struct S_Decoder_Draw_Border : CTvwRecord<S_Decoder_Draw_Border, CCutListReader> {
    tuint32 _windCount = 0;
    DRAWBORDERWINDLIST _windlist;

    static constexpr RecordSite SITE{"DecodeCommDisplay", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._windCount);
        visitor.List(self._windCount, self._windlist);
    }
    // Missing data is no error, as in the host's own record.
    void SetData(const char* pData, unsigned int nLen) { CTvwRecord::SetData(pData, nLen); }
    void Dump() const;
};

} // namespace ORVA2_DECODER_TVW
