#include "toolkit/ccefwebview.h"

#include <QWebEnginePage>

namespace WG {

CCefWebView::CCefWebView(QWidget* parent) : QWebEngineView(parent)
{
    connect(this, &QWebEngineView::loadStarted, this, [this]() { m_loaded = false; });
    connect(this, &QWebEngineView::loadFinished, this, [this](bool ok) { onLoadFinished(ok); });
}

CCefWebView::~CCefWebView() = default;

void CCefWebView::setLoadFinishedCallback(boost::function<void(bool)> callback) { m_callback = std::move(callback); }

void CCefWebView::runScript(const QString& script)
{
    if (m_loaded && m_loadOk) {
        page()->runJavaScript(script);
    } else {
        m_pending << script;
    }
}

void CCefWebView::onLoadFinished(bool ok)
{
    m_loaded = true;
    m_loadOk = ok;
    if (ok) {
        const QStringList scripts = m_pending;
        m_pending.clear();
        for (const QString& script : scripts) {
            page()->runJavaScript(script);
        }
    }
    if (m_callback) {
        // A copy: the callback may replace itself.
        const boost::function<void(bool)> callback = m_callback;
        callback(ok);
    }
}

}  // namespace WG
