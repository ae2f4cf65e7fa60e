#pragma once
// The two media elements. Their source and its credentials follow the same rules; the channel and the rest of
// the fields do not.

#include "Crypto/CredentialCipher.h"
#include "MarkupSTL.h"
#include "MonitorTvwCommMedia.h"
#include "MonitorTvwCommWallInfo.h"

// Adds what "doplaymedia" says of a stream to the current element. User name and password are enciphered;
// where that yields nothing, the elements are empty.
void AddMediaXml(CMarkupSTL& doc, const ORVA2_CLIENT_TVW::S_MTvw_Wall_Media_info& media,
                 const CCredentialCipher& cipher);

// The same for "setwallinfo".
void AddMediaXml(CMarkupSTL& doc, const ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_Subwin_Medinfo& media,
                 const CCredentialCipher& cipher);

// False for a sub-window of a whole wall that shows nothing: neither GUID nor number names a channel.
bool HasMedia(const ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_Subwin_Medinfo& media);
