// Makes browser views for embedded pages and talks to them: the end of loading
// and scripts. utils::CSingletonT<TC::CCefViewManager>::instance().
#pragma once

#include <QString>

#include <boost/function.hpp>

class QWidget;

namespace WG {
class CCefWebView;
}

namespace TC {

class CCefViewManager {
public:
    CCefViewManager();
    ~CCefViewManager();
    CCefViewManager(const CCefViewManager&) = delete;
    CCefViewManager& operator=(const CCefViewManager&) = delete;

    // A new view (owned by parent) loading the url: a local file path or a URL.
    // Null where no browser can run (the offscreen and minimal platforms).
    WG::CCefWebView* getWebView(const QString& url, QWidget* parent);
    static bool canCreateViews();
    // Called with the result whenever the view's page finishes loading.
    void setloadFinished(WG::CCefWebView* view, boost::function<void(bool)> callback);
    // Runs the script in the view's page, waiting for the page to load if need be.
    void executeJavaScript(WG::CCefWebView* view, const QString& script);

    int createdViews() const { return m_created; }

private:
    int m_created = 0;
};

}  // namespace TC
