#pragma once

#include <string>

#include "State/DeviceState.h"

namespace simulated_decoder {

struct WallView;

// A picture of the wall: screens and what is bound to them, windows from the lowest layer to the highest with
// what their sub-windows show, and a list of the windows. Each window is a group with the id "window-ID", its
// outline has the id "outline-ID".
std::string DrawSvg(const WallView& view);
// The wall alone, for a page that has title and list of its own. Windows that are covered are there with
// nothing but their outlines, which are not visible.
std::string DrawBareSvg(const WallView& view);
// The picture with box-drawing characters (UTF-8), at most 100 columns wide.
std::string DrawText(const WallView& view);

// The files in which the pictures are kept. An empty path means that this picture is not wanted.
class WallPictures {
public:
    WallPictures(std::string svgPath, std::string textPath);

    // Rewrites both files. Empty when that went well, else what did not, in one line.
    std::string Write(const DeviceState& state) const;

private:
    std::string m_svgPath;
    std::string m_textPath;
};

} // namespace simulated_decoder
