#pragma once

#include <string>

#include "State/DeviceState.h"

namespace simulated_decoder {

struct WallView;

// A picture of the wall: screens and their outputs, windows from the lowest layer to the highest with what
// their sub-windows show, and a list of the windows. Each window is a group with the id "window-ID"; its
// outline has the id "outline-ID".
std::string DrawSvg(const WallView& view);
// The wall alone, for a page with its own title and list. Covered windows have only their outlines,
// invisible.
std::string DrawBareSvg(const WallView& view);
// The picture in box-drawing characters (UTF-8), at most 100 columns wide.
std::string DrawText(const WallView& view);

// The files that hold the pictures. An empty path means that the picture is not wanted.
class WallPictures {
public:
    WallPictures(std::string svgPath, std::string textPath);

    // Rewrites both files. Returns an empty string on success, else a one-line reason.
    std::string Write(const DeviceState& state) const;

private:
    std::string m_svgPath;
    std::string m_textPath;
};

} // namespace simulated_decoder
