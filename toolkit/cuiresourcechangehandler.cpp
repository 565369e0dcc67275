#include "toolkit/cuiresourcechangehandler.h"

#include <algorithm>

namespace WG {

namespace {
// GUI-thread registry; a vector keeps creation order, so parents hear before children.
std::vector<CUiResourceChangeHandler*>& registry()
{
    static std::vector<CUiResourceChangeHandler*> s_handlers;
    return s_handlers;
}
}  // namespace

CUiResourceChangeHandler::CUiResourceChangeHandler() { registry().push_back(this); }

CUiResourceChangeHandler::~CUiResourceChangeHandler()
{
    auto& handlers = registry();
    handlers.erase(std::remove(handlers.begin(), handlers.end(), this), handlers.end());
}

std::vector<CUiResourceChangeHandler*> CUiResourceChangeHandler::liveHandlers() { return registry(); }

bool CUiResourceChangeHandler::isLive(const CUiResourceChangeHandler* handler)
{
    const auto& handlers = registry();
    return std::find(handlers.begin(), handlers.end(), handler) != handlers.end();
}

}  // namespace WG
