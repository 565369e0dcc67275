// Theme, scale and fixed-font notifications for widgets that cache derived looks.
// Widgets that resolve resource keys at paint time need no override.
#pragma once

#include <vector>

namespace WG {

class CUiResourceChangeHandler {
public:
    CUiResourceChangeHandler();
    virtual ~CUiResourceChangeHandler();
    CUiResourceChangeHandler(const CUiResourceChangeHandler&) = delete;
    CUiResourceChangeHandler& operator=(const CUiResourceChangeHandler&) = delete;

    virtual void setFixFont() {}
    virtual void themeChanged() {}
    virtual void scaleChanged() {}

    // Every live handler, in creation order (GUI thread only).
    static std::vector<CUiResourceChangeHandler*> liveHandlers();
    static bool isLive(const CUiResourceChangeHandler* handler);
};

}  // namespace WG
