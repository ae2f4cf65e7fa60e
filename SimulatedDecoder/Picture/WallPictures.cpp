#include "Picture/WallPictures.h"

#include <utility>

#include "Picture/AtomicFile.h"
#include "Picture/WallView.h"

namespace simulated_decoder {

WallPictures::WallPictures(std::string svgPath, std::string textPath)
    : m_svgPath(std::move(svgPath)), m_textPath(std::move(textPath))
{
}

std::string WallPictures::Write(const DeviceState& state) const
{
    if (m_svgPath.empty() && m_textPath.empty()) {
        return {};
    }
    const WallView view = See(state);
    std::string problem;
    if (!m_svgPath.empty()) {
        problem = WriteFileAtomically(m_svgPath, DrawSvg(view));
    }
    if (!m_textPath.empty() && problem.empty()) {
        problem = WriteFileAtomically(m_textPath, DrawText(view));
    }
    return problem;
}

} // namespace simulated_decoder
