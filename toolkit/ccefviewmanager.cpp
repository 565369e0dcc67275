#include "toolkit/ccefviewmanager.h"

#include "toolkit/ccefwebview.h"

#include <QFileInfo>
#include <QUrl>

namespace TC {

CCefViewManager::CCefViewManager() = default;

CCefViewManager::~CCefViewManager() = default;

WG::CCefWebView* CCefViewManager::getWebView(const QString& url, QWidget* parent)
{
    auto* view = new WG::CCefWebView(parent);
    ++m_created;
    if (!url.isEmpty()) {
        // A path of the configuration directory is a file; anything else is taken as typed.
        const QUrl target = QFileInfo::exists(url) ? QUrl::fromLocalFile(QFileInfo(url).absoluteFilePath())
                                                   : QUrl::fromUserInput(url);
        view->load(target);
    }
    return view;
}

void CCefViewManager::setloadFinished(WG::CCefWebView* view, boost::function<void(bool)> callback)
{
    if (view != nullptr) {
        view->setLoadFinishedCallback(std::move(callback));
    }
}

void CCefViewManager::executeJavaScript(WG::CCefWebView* view, const QString& script)
{
    if (view != nullptr && !script.isEmpty()) {
        view->runScript(script);
    }
}

}  // namespace TC
