#include "WallPictures.h"

#include <utility>

#include "AtomicFile.h"

namespace simulated_decoder {

WallPictures::WallPictures(std::string svgPath, std::string textPath)
    : m_svgPath(std::move(svgPath)), m_textPath(std::move(textPath))
{
}

std::string WallPictures::Write(const Wall& wall) const
{
    std::string problem;
    if (!m_svgPath.empty()) {
        problem = WriteFileAtomically(m_svgPath, DrawSvg(wall));
    }
    if (!m_textPath.empty() && problem.empty()) {
        problem = WriteFileAtomically(m_textPath, DrawText(wall));
    }
    return problem;
}

} // namespace simulated_decoder
