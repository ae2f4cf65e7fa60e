#pragma once
// The two media elements. Their source and its credentials follow the same rules; the channel and the other
// fields do not.

#include "Crypto/CredentialCipher.h"
#include "MarkupSTL.h"
#include "MonitorTvwCommMedia.h"
#include "MonitorTvwCommWallInfo.h"

// Adds the fields of a stream for "doplaymedia" to the current element. User name and password are
// enciphered; if that fails, their elements are empty.
void AddMediaXml(CMarkupSTL& doc, const ORVA2_CLIENT_TVW::S_MTvw_Wall_Media_info& media,
                 const CCredentialCipher& cipher);

// The same for "setwallinfo".
void AddMediaXml(CMarkupSTL& doc, const ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_Subwin_Medinfo& media,
                 const CCredentialCipher& cipher);

// False for a sub-window of a whole wall that shows nothing: neither its GUID nor its number names a channel.
bool HasMedia(const ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_Subwin_Medinfo& media);
