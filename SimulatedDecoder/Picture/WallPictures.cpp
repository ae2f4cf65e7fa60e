#include "Picture/WallPictures.h"

#include <utility>

#include "Picture/WallView.h"
#include "Tools/Common/AtomicFile.h"

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
        problem = tools::WriteFileAtomically(m_svgPath, DrawSvg(view));
    }
    if (!m_textPath.empty() && problem.empty()) {
        problem = tools::WriteFileAtomically(m_textPath, DrawText(view));
    }
    return problem;
}

} // namespace simulated_decoder
