// A browser view for the toolkit's embedded pages (the payoff chart). It
// remembers whether its page has loaded and holds scripts back until then.
#pragma once

#include <QStringList>
#include <QWebEngineView>

#include <boost/function.hpp>

namespace WG {

class CCefWebView : public QWebEngineView {
    Q_OBJECT
public:
    explicit CCefWebView(QWidget* parent);
    ~CCefWebView() override;

    bool isLoaded() const { return m_loaded; }
    bool loadSucceeded() const { return m_loadOk; }
    // Called with the result every time a load ends.
    void setLoadFinishedCallback(boost::function<void(bool)> callback);
    // Runs the script now if the page is loaded, else once it has.
    void runScript(const QString& script);
    int pendingScripts() const { return m_pending.size(); }

private:
    void onLoadFinished(bool ok);

    bool m_loaded = false;
    bool m_loadOk = false;
    boost::function<void(bool)> m_callback;
    QStringList m_pending;
};

}  // namespace WG
