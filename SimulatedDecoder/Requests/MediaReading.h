#pragma once
// Reading of what a sub-window shows, shared by the requests for media and for the whole wall.

#include <vector>

#include <tinyxml2.h>

#include "Requests/RequestReading.h"

namespace simulated_decoder {

// A request that sets the whole wall omits what only recorded video has.
enum class MediaForm { Full, WithoutRecording };

// Appends the media of one `mediainfo`, their accounts deciphered and checked, to the list.
ErrorCode ReadMedia(RequestContext& context, const tinyxml2::XMLElement& mediaInfo, MediaForm form,
                    std::vector<Media>& list);

} // namespace simulated_decoder
