#pragma once
// Playback control of recorded video in sub-windows.

#include "Encoding/TvwRecord.h"

namespace ORVA2_DECODER_TVW {

// One sub-window; what type and value mean is between host and decoder.
struct S_Playback_Ctrl_Subwnd : CTvwRecord<S_Playback_Ctrl_Subwnd> {
    tuint16 _nIndex = 0;
    tuint16 _nPbCtrlType = 0;
    tuint16 _nPbCtrlVal = 0;

    static constexpr RecordSite SITE{"DecodeCommPlayback", 10};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._nIndex, self._nPbCtrlType, self._nPbCtrlVal);
    }
    void Dump() const;
};
using PLAYBACKCTRLSUBWNDLIST = std::list<std::shared_ptr<S_Playback_Ctrl_Subwnd>>;

// One canvas window.
struct S_Playback_Ctrl_Cavs : CTvwRecord<S_Playback_Ctrl_Cavs> {
    tuint16 _id = 0;
    tuint16 _wndNum = 0;
    PLAYBACKCTRLSUBWNDLIST _subWnd;

    static constexpr RecordSite SITE{"DecodeCommPlayback", 30};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._id, self._wndNum);
        visitor.List(self._wndNum, self._subWnd);
    }
    void Dump() const;
};
using PLAYBACKCTRLCAVSLIST = std::list<std::shared_ptr<S_Playback_Ctrl_Cavs>>;

// The whole command. The host may announce more windows than it sends; a window that is cut is still an
// error.
struct S_Playback_Ctrl_Items_V2 : CTvwRecord<S_Playback_Ctrl_Items_V2, COpenListReader> {
    tuint16 _cavNum = 0;
    PLAYBACKCTRLCAVSLIST _nCavs;

    static constexpr RecordSite SITE{"DecodeCommPlayback", 50};
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor& visitor)
    {
        visitor.Plain(self._cavNum);
        visitor.List(self._cavNum, self._nCavs);
    }
    void Dump() const;
};

} // namespace ORVA2_DECODER_TVW
