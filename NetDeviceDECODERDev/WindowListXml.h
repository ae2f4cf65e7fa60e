#pragma once

#include <list>
#include <memory>

#include "ElemScope.h"

// The list of windows and their sub-windows that many requests carry: td_windowlist with an item per window,
// its id and td_subwindowlist with an item per sub-window, which addSubWindow fills. Adds it to the current
// element.
template <class Window, class SubWindow, class AddSubWindow>
void AddWindowList(CMarkupSTL& doc, const std::list<std::shared_ptr<Window>>& windows,
                   std::list<std::shared_ptr<SubWindow>> Window::*subWindows,
                   const AddSubWindow& addSubWindow)
{
    CElemScope windowList(doc, "td_windowlist");
    for (const auto& window : windows) {
        CElemScope item(doc, "item");
        doc.AddElem("id", window->_id);
        CElemScope subWindowList(doc, "td_subwindowlist");
        for (const auto& subWindow : (*window).*subWindows) {
            CElemScope subItem(doc, "item");
            addSubWindow(*subWindow);
        }
    }
}
