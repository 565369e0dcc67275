// The payoff curve in the desk on the simulated market, in a real browser
// (QtWebEngine under xvfb-run with QT_QPA_PLATFORM=xcb): the page the desk put
// below its configuration directory draws the ticked legs of the example basket.
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "seam/cquoteclient.h"
#include "strategy/coptionstrategypanel.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitandlosswebview.h"
#include "strategy/cstrategymanagetable.h"
#include "strategy/cstrategymanagetree.h"
#include "support/testsupport.h"
#include "strategy/chartpagesupport.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/ccefwebview.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cuiresource.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDockWidget>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEnginePage>

#include <memory>

namespace {

using chartpage::chartState;
using chartpage::runScript;

// True once the page has finished a drawing after `finishedBefore` and holds
// the series of the curve's last script.
bool drawsItsLastScript(TC::CProfitAndLossWebView* curve, int finishedBefore)
{
    return testsupport::waitUntil(
               [&] { return chartState(curve->webView).value("finished").toInt() > finishedBefore; }, 10000) &&
           testsupport::waitUntil(
               [&] {
                   const QString script = curve->lastScript();
                   const QJsonObject sent =
                       QJsonDocument::fromJson(script.mid(11, script.size() - 13).toUtf8()).object();
                   return chartState(curve->webView).value("data") == sent.value("data");
               },
               10000);
}

class StrategyCurveOnDesk : public deskfixture::DeskTest {
protected:
    // The desk with the workbench in front (it shares the board's tabs) and its
    // chart page loaded, without animations.
    void openWorkbench()
    {
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window->restore(QStringLiteral("dark"));
        window->resize(1600, 1000);
        window->show();
        window->dock(QStringLiteral("ops"))->raise();
        panel = qobject_cast<TC::COptionStrategyPanel*>(window->panel(QStringLiteral("ops")));
        ASSERT_NE(panel, nullptr);
        curve = panel->getCurve();
        ASSERT_NE(curve, nullptr);
        ASSERT_NE(curve->webView, nullptr);
        ASSERT_TRUE(testsupport::waitUntil([&] { return curve->pageLoaded; }, 30000)) << "the page did not load";
        runScript(curve->webView, QStringLiteral("setAnimation(false)"));
    }

    TC::COptionStrategyPanel* panel = nullptr;
    TC::CProfitAndLossWebView* curve = nullptr;
};

TEST_F(StrategyCurveOnDesk, TickingTwoLegsOfTheExampleBasketDrawsTheirCurve)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        GTEST_SKIP() << "QtWebEngine needs a display; run under xvfb-run with QT_QPA_PLATFORM=xcb";
    }
    // Where the desk put the page at start, and where the panels look for it.
    EXPECT_TRUE(QFileInfo::exists(dir.filePath(QStringLiteral("charts/profitAndLossChart/echarts.min.js"))));
    EXPECT_EQ(QFileInfo(TC::CProfitAndLossWebView::pagePath()).canonicalFilePath(),
              QFileInfo(dir.filePath(QStringLiteral("charts/profitAndLossChart/profitAndLossIndex.html")))
                  .canonicalFilePath());

    ASSERT_NO_FATAL_FAILURE(openWorkbench());

    TC::CStrategyManageTable* table = panel->getTable();
    ASSERT_EQ(table->rowCount(), 2) << "the example basket, a bull call spread";
    // Both legs quoted by the feed, so that their strikes count.
    TC::CQuoteClient* quotes = utils::CManualSingletonT<TC::CQuoteClient>::instance();
    const QString first = table->itemText(0, TC::CStrategyManageTable::COL_CODE) + QStringLiteral(".SH");
    const QString second = table->itemText(1, TC::CStrategyManageTable::COL_CODE) + QStringLiteral(".SH");
    ASSERT_TRUE(testsupport::waitUntil([&] { return quotes->getStockPrice(first) && quotes->getStockPrice(second); },
                                       10000));
    // The trader ticks the two legs (the loaded basket had them ticked: off, then on).
    const int before = chartState(curve->webView).value("finished").toInt();
    for (const char* row : {"0", "1"}) {
        table->checkDelegate()->setItemChecked(row, false, true);
        table->checkDelegate()->setItemChecked(row, true, true);
    }
    EXPECT_EQ(curve->legOperations.value(first), 18);
    EXPECT_EQ(curve->legOperations.value(second), 19);
    EXPECT_TRUE(curve->isVisible());
    ASSERT_TRUE(drawsItsLastScript(curve, before));
    const QJsonObject state = chartState(curve->webView);
    EXPECT_GE(state.value("data").toArray().size(), 20);
    // A bull call spread crosses zero once, between its strikes.
    EXPECT_EQ(state.value("breakEvens").toArray().size(), 1);
    EXPECT_EQ(state.value("xAxisName").toString(), QStringLiteral("标的价格"));

    const QString shots = qEnvironmentVariable("OPTDESK_DESK_SHOTS");
    if (!shots.isEmpty()) {
        testsupport::waitUntil([] { return false; }, 500);
        window->saveScreenshot(shots + QStringLiteral("/curve-dark.png"));
    }
    // The theme follows the desk's.
    const int dark = chartState(curve->webView).value("finished").toInt();
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(QStringLiteral("light")));
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return chartState(curve->webView).value("finished").toInt() > dark; }, 10000));
    EXPECT_EQ(chartState(curve->webView).value("theme").toString(), QStringLiteral("light"));
    if (!shots.isEmpty()) {
        testsupport::waitUntil([] { return false; }, 500);
        window->saveScreenshot(shots + QStringLiteral("/curve-light.png"));
    }
}

TEST_F(StrategyCurveOnDesk, TheWinnersSelectedCandidateDrawsItsCurve)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        GTEST_SKIP() << "QtWebEngine needs a display; run under xvfb-run with QT_QPA_PLATFORM=xcb";
    }
    ASSERT_NO_FATAL_FAILURE(openWorkbench());

    TC::COptionWinnerWidget* winner = panel->getWinner();
    TC::COptionUndlCodeComboBox* combo = winner->getUnderlyingCombo();
    combo->setCurrentIndex(combo->findData(QStringLiteral("510050.SH")));
    winner->getForecastCombo()->setCurrentIndex(0);
    // The winner face: the winner prices its candidates only while it shows.
    panel->handleEvent(TC::CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, TC::CStrategyManageTree::IT_WINNER_BRANCH,
                       QString(), nullptr);
    // The candidate's legs quoted by the feed, so that their strikes count.
    TC::CQuoteClient* quotes = utils::CManualSingletonT<TC::CQuoteClient>::instance();
    ASSERT_FALSE(winner->getCheckedRowKeys().isEmpty()) << "rows " << winner->getTable()->rowCount();
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            for (const QString& key : winner->getCheckedRowKeys()) {
                if (!quotes->getStockPrice(key)) {
                    return false;
                }
            }
            return true;
        },
        10000));
    const int before = chartState(curve->webView).value("finished").toInt();
    // The trader comes back to the winner, priced now: its selected candidate's legs go to the curve.
    panel->handleEvent(TC::CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, TC::CStrategyManageTree::IT_WINNER_BRANCH,
                       QString(), nullptr);
    QStringList keys = winner->getCheckedRowKeys();
    ASSERT_FALSE(keys.isEmpty());
    keys.sort();
    EXPECT_EQ(curve->legOperations.keys(), keys);
    EXPECT_TRUE(curve->isVisible());
    ASSERT_TRUE(drawsItsLastScript(curve, before));
    EXPECT_FALSE(chartState(curve->webView).value("breakEvens").toArray().isEmpty());
}

}  // namespace
