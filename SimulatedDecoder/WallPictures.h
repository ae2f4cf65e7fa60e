#pragma once

#include <string>

#include "Wall.h"

namespace simulated_decoder {

// A picture of the wall: screens, windows from the lowest layer to the highest with their sub-windows, and a
// list of the windows.
std::string DrawSvg(const Wall& wall);
// The same with box-drawing characters (UTF-8), at most 100 columns wide.
std::string DrawText(const Wall& wall);

// The files in which the pictures are kept. An empty path means that this picture is not wanted.
class WallPictures {
public:
    WallPictures(std::string svgPath, std::string textPath);

    // Rewrites both files. Empty when that went well, else what did not, in one line.
    std::string Write(const Wall& wall) const;

private:
    std::string m_svgPath;
    std::string m_textPath;
};

} // namespace simulated_decoder
