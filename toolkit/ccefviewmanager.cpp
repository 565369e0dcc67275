#include "toolkit/ccefviewmanager.h"

#include "toolkit/ccefwebview.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

namespace TC {

CCefViewManager::CCefViewManager() = default;

CCefViewManager::~CCefViewManager() = default;

bool CCefViewManager::canCreateViews()
{
    // QtWebEngine needs a real display: on these platforms its GPU process can't start.
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

WG::CCefWebView* CCefViewManager::getWebView(const QString& url, QWidget* parent)
{
    if (!canCreateViews()) {
        return nullptr;
    }
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
