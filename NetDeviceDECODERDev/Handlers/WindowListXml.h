#pragma once

#include <list>
#include <memory>

#include "ElemScope.h"

// The list of windows and their sub-windows that many requests carry: td_windowlist with an item for each
// window, begun by addWindow, and inside it td_subwindowlist with an item for each sub-window, filled by
// addSubWindow. Adds it to the current element.
template <class Window, class SubWindow, class AddWindow, class AddSubWindow>
void AddWindowList(CMarkupSTL& doc, const std::list<std::shared_ptr<Window>>& windows,
                   std::list<std::shared_ptr<SubWindow>> Window::*subWindows, const AddWindow& addWindow,
                   const AddSubWindow& addSubWindow)
{
    CElemScope windowList(doc, "td_windowlist");
    for (const auto& window : windows) {
        CElemScope item(doc, "item");
        addWindow(*window);
        CElemScope subWindowList(doc, "td_subwindowlist");
        for (const auto& subWindow : (*window).*subWindows) {
            CElemScope subItem(doc, "item");
            addSubWindow(*subWindow);
        }
    }
}

// The same with only the id of each window.
template <class Window, class SubWindow, class AddSubWindow>
void AddWindowList(CMarkupSTL& doc, const std::list<std::shared_ptr<Window>>& windows,
                   std::list<std::shared_ptr<SubWindow>> Window::*subWindows,
                   const AddSubWindow& addSubWindow)
{
    const auto addId = [&doc](const Window& window) { doc.AddElem("id", window._id); };
    AddWindowList(doc, windows, subWindows, addId, addSubWindow);
}

// A rectangle in wall coordinates.
template <class Number>
void AddRect(CMarkupSTL& doc, Number x, Number y, Number width, Number height)
{
    CElemScope rect(doc, "rect");
    doc.AddElem("xpos", x);
    doc.AddElem("ypos", y);
    doc.AddElem("width", width);
    doc.AddElem("height", height);
}
