#include "State/Window.h"

#include <algorithm>

namespace simulated_decoder {

void SubWindow::StopShowing()
{
    media.clear();
    control.reset();
    polledGroup.reset();
}

const SubWindow* Split::Find(std::uint32_t index) const
{
    const auto found = std::find_if(subWindows.begin(), subWindows.end(),
                                    [index](const SubWindow& candidate) { return candidate.index == index; });
    return found != subWindows.end() ? &*found : nullptr;
}

SubWindow* Split::Find(std::uint32_t index)
{
    return const_cast<SubWindow*>(static_cast<const Split&>(*this).Find(index));
}

} // namespace simulated_decoder
