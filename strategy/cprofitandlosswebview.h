// The expiry payoff of the selected legs, drawn by the chart page in an
// embedded browser. The widget keeps the legs and their directions and does
// all the arithmetic (CProfitAndLossCurve); the page only draws the series.
// Hidden until a page has loaded and there are legs to draw.
#pragma once

#include "toolkit/cbasewidget.h"

#include <QMap>
#include <QString>

namespace WG {
class CCefWebView;
}

namespace TC {

class CProfitAndLossWebView : public WG::CBaseWidget {
    Q_OBJECT
public:
    explicit CProfitAndLossWebView(QWidget* parent = nullptr);
    ~CProfitAndLossWebView() override;

    // The page below the configuration directory, as an absolute path without "..".
    static QString pagePath();
    // The URL the browser is given for the page.
    static QString pageUrl();

    // Grid, payoff and script for the legs; hands the script to the page and shows the widget.
    void loadData();
    // The last script handed to the page (empty before the first curve).
    QString lastScript() const { return m_lastScript; }
    // The theme call of the present theme, sent on load and on every theme change.
    QString themeScript() const;

    void themeChanged() override;

    // Instrument text to direction (18 buy, 19 sell), walked in text order. The
    // map's keys are the texts as they came: a code and its key are two entries.
    // The panel empties it directly on a change of basket or face.
    QMap<QString, int> legOperations;
    // Passed to the page; the panel sets it to the width of its bottom area.
    int chartWidth = 750;
    // The page has finished loading.
    bool pageLoaded = false;
    // The browser, null when none was created (no web view in this client).
    WG::CCefWebView* webView = nullptr;

public slots:
    void slotSelected(bool bSelect, QString qsCode);
    void slotBSChanged(int nOpt, QString qsCode);
    void slotLoadFinished(bool bFinished);

private:
    void applyTheme();

    QString m_lastScript;
};

}  // namespace TC
