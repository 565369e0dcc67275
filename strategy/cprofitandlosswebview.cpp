#include "strategy/cprofitandlosswebview.h"

#include "seam/common.h"
#include "seam/user.h"
#include "strategy/cprofitandlosscurve.h"
#include "toolkit/ccefviewmanager.h"
#include "toolkit/ccefwebview.h"
#include "toolkit/cuiresource.h"

#include <QDir>
#include <QPointer>
#include <QUrl>
#include <QVBoxLayout>

namespace TC {

namespace {

const char* const kPagePath = "/../charts/profitAndLossChart/profitAndLossIndex.html";

CCefViewManager* viewManager() { return utils::CSingletonT<CCefViewManager>::instance(); }

}  // namespace

CProfitAndLossWebView::CProfitAndLossWebView(QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("profitAndLossWebView"), false, parent)
{
    setContextMenuPolicy(Qt::PreventContextMenu);
    if (getConfig()->useWebView()) {
        webView = viewManager()->getWebView(pageUrl(), this);
        if (webView != nullptr) {
            // The browser may report after this widget is gone.
            QPointer<CProfitAndLossWebView> self(this);
            viewManager()->setloadFinished(webView, [self](bool finished) {
                if (self) {
                    self->slotLoadFinished(finished);
                }
            });
            webView->setContextMenuPolicy(Qt::PreventContextMenu);
            auto* layout = new QVBoxLayout(this);
            layout->setContentsMargins(0, 0, 0, 0);
            layout->setSpacing(0);
            layout->addWidget(webView);
        }
    }
    hide();
}

CProfitAndLossWebView::~CProfitAndLossWebView() = default;

QString CProfitAndLossWebView::pagePath()
{
    return QDir(getConfigDir() + QLatin1String(kPagePath)).absolutePath();
}

QString CProfitAndLossWebView::pageUrl() { return QUrl(QStringLiteral("File:///") + pagePath()).toString(); }

void CProfitAndLossWebView::slotSelected(bool bSelect, QString qsCode)
{
    if (bSelect) {
        // A reselected leg starts again as a buy.
        legOperations[qsCode] = CProfitAndLossCurve::kBuy;
    } else {
        legOperations.remove(qsCode);
    }
    loadData();
}

void CProfitAndLossWebView::slotBSChanged(int nOpt, QString qsCode)
{
    auto it = legOperations.find(qsCode);
    if (it == legOperations.end()) {
        return;
    }
    it.value() = nOpt;
    loadData();
}

void CProfitAndLossWebView::slotLoadFinished(bool bFinished)
{
    pageLoaded = bFinished;
    if (pageLoaded) {
        applyTheme();
    }
    loadData();
}

void CProfitAndLossWebView::loadData()
{
    if (legOperations.isEmpty() || !pageLoaded) {
        hide();
        return;
    }
    const CProfitAndLossCurve::SSeries series =
        CProfitAndLossCurve::build(chartWidth, CProfitAndLossCurve::collectLegs(legOperations), this);
    // No valid strike: the last curve stays as it was, shown or not.
    if (series.outcome != CProfitAndLossCurve::OC_DRAWN) {
        return;
    }
    m_lastScript = series.script;
    if (webView != nullptr) {
        viewManager()->executeJavaScript(webView, series.script);
    }
    show();
}

QString CProfitAndLossWebView::themeScript() const
{
    const WG::CUiResource* resource = WG::CUiResource::get();
    const auto colour = [resource](const char* key) {
        return resource->getColor(QLatin1String(key))->name(QColor::HexRgb);
    };
    return CProfitAndLossCurve::themeScript(resource->themeName(),
                                            {{QStringLiteral("rise"), colour("clr_global_rise")},
                                             {QStringLiteral("fall"), colour("clr_global_fall")},
                                             {QStringLiteral("background"), colour("clr_window_background")},
                                             {QStringLiteral("text"), colour("clr_text_default")},
                                             {QStringLiteral("grid"), colour("clr_table_grid_line")},
                                             {QStringLiteral("mark"), colour("clr_text_warning")}});
}

void CProfitAndLossWebView::themeChanged()
{
    if (pageLoaded) {
        applyTheme();
    }
}

void CProfitAndLossWebView::applyTheme()
{
    if (webView != nullptr) {
        viewManager()->executeJavaScript(webView, themeScript());
    }
}

}  // namespace TC
