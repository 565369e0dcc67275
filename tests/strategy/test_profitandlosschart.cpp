// The payoff chart page in a real browser (QtWebEngine on a virtual display:
// run under xvfb-run with QT_QPA_PLATFORM=xcb): the page as the desk places it,
// drawn by the curve widget, read back from ECharts once it has finished.
#include "app/cchartpages.h"
#include "board/boardfixture.h"
#include "seam/user.h"
#include "strategy/cprofitandlosswebview.h"
#include "support/testsupport.h"
#include "strategy/chartpagesupport.h"
#include "toolkit/ccefviewmanager.h"
#include "toolkit/ccefwebview.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWidget>

#include <memory>

namespace {

using TC::CProfitAndLossWebView;

bool webEngineCanRun() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

using chartpage::chartState;
using chartpage::runScript;

// The JSON inside "loadChart('{...}')".
QJsonObject scriptPayload(const QString& script)
{
    const QString prefix = QStringLiteral("loadChart('");
    const QString inner = script.mid(prefix.size(), script.size() - prefix.size() - 2);
    return QJsonDocument::fromJson(inner.toUtf8()).object();
}

// Waits until ECharts has reported "finished" more often than before.
testing::AssertionResult waitFinished(WG::CCefWebView* view, int before)
{
    if (testsupport::waitUntil([&] { return chartState(view).value("finished").toInt() > before; }, 10000)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "no \"finished\" from ECharts; page error: "
                                       << chartState(view).value("error").toString().toStdString();
}

class ProfitAndLossChart : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        if (!webEngineCanRun()) {
            GTEST_SKIP() << "QtWebEngine needs a display; run under xvfb-run with QT_QPA_PLATFORM=xcb";
        }
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        BoardTest::SetUp();
        ASSERT_TRUE(desk.isValid());
        previousDir = TC::getConfigDir();
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        // As the desk does at start: pages to <config-dir>/charts, panels below <config-dir>/config.
        QString error;
        ASSERT_TRUE(desk::CChartPages::install(desk::CChartPages::sourceDir(), desk.path(), &error))
            << error.toStdString();
        TC::getConfig()->setConfigDir(QDir(desk.path()).filePath(QStringLiteral("config")));
        TC::getConfig()->setUseWebView(true);
        publish(quote("10000011", 0.1, 0.09));   // 50ETF购 3.0
        publish(quote("10000022", 0.07, 0.06));  // 50ETF沽 3.1
    }
    void TearDown() override
    {
        if (!webEngineCanRun()) {
            return;
        }
        delete host;
        utils::CSingletonT<TC::CCefViewManager>::destroy();
        TC::getConfig()->setConfigDir(previousDir);
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        BoardTest::TearDown();
    }
    // A curve in a shown host, its page loaded and still.
    void openCurve()
    {
        host = new QWidget;
        host->resize(820, 360);
        curve = new CProfitAndLossWebView(host);
        curve->resize(820, 360);
        host->show();
        ASSERT_NE(curve->webView, nullptr);
        ASSERT_TRUE(testsupport::waitUntil([&] { return curve->pageLoaded; }, 30000));
        runScript(curve->webView, QStringLiteral("setAnimation(false)"));
    }

    QTemporaryDir desk;
    QString previousDir;
    QWidget* host = nullptr;
    CProfitAndLossWebView* curve = nullptr;
};

TEST_F(ProfitAndLossChart, ThePageHoldsExactlyTheSeriesItsBreakEvensAndAxisNames)
{
    ASSERT_TRUE(QFileInfo::exists(CProfitAndLossWebView::pagePath())) << CProfitAndLossWebView::pagePath().toStdString();
    openCurve();
    const QJsonObject empty = chartState(curve->webView);
    // The page is useless without ECharts: the build must have installed it.
    ASSERT_FALSE(empty.value("echarts").toString().isEmpty()) << "ECharts is missing beside the page";
    EXPECT_TRUE(empty.value("error").toString().isEmpty()) << empty.value("error").toString().toStdString();
    const int before = empty.value("finished").toInt();

    // A bought call 3.0 at 0.1 and a bought put 3.1 at 0.07: a strangle, two break-evens.
    curve->slotSelected(true, QStringLiteral("10000011.SH"));
    curve->slotSelected(true, QStringLiteral("10000022.SH"));
    EXPECT_TRUE(curve->isVisible());
    ASSERT_TRUE(waitFinished(curve->webView, before));
    const QJsonObject state = chartState(curve->webView);
    const QJsonObject sent = scriptPayload(curve->lastScript());
    ASSERT_FALSE(sent.value("data").toArray().isEmpty()) << curve->lastScript().toStdString();
    EXPECT_EQ(state.value("data").toArray(), sent.value("data").toArray());
    EXPECT_EQ(state.value("width").toInt(), 750);
    // Both premiums paid, 0.17: even at 3.0 - 0.07 ... no: at 3.1 - 0.17 = 2.93 and 3.0 + 0.17 = 3.17.
    const QJsonArray breakEvens = state.value("breakEvens").toArray();
    ASSERT_EQ(breakEvens.size(), 2);
    EXPECT_NEAR(breakEvens.at(0).toDouble(), 2.93, 1e-9);
    EXPECT_NEAR(breakEvens.at(1).toDouble(), 3.17, 1e-9);
    EXPECT_EQ(state.value("zeroLine").toArray(), QJsonArray{0});
    EXPECT_EQ(state.value("xAxisName").toString(), QStringLiteral("标的价格"));
    EXPECT_EQ(state.value("yAxisName").toString(), QStringLiteral("到期盈亏"));
}

TEST_F(ProfitAndLossChart, AThemeChangeRecoloursTheSeries)
{
    openCurve();
    curve->slotSelected(true, QStringLiteral("10000011.SH"));
    ASSERT_TRUE(waitFinished(curve->webView, 0));
    const QJsonObject dark = chartState(curve->webView);
    EXPECT_EQ(dark.value("theme").toString(), QStringLiteral("dark"));
    EXPECT_EQ(dark.value("seriesColor").toString(),
              WG::CUiResource::get()->getColor(QStringLiteral("clr_global_rise"))->name());
    // The toolkit tells every live widget; the curve passes it on to the page.
    const int finished = dark.value("finished").toInt();
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(QStringLiteral("light")));
    ASSERT_TRUE(waitFinished(curve->webView, finished));
    const QJsonObject light = chartState(curve->webView);
    EXPECT_EQ(light.value("theme").toString(), QStringLiteral("light"));
    EXPECT_EQ(light.value("seriesColor").toString(),
              WG::CUiResource::get()->getColor(QStringLiteral("clr_global_rise"))->name());
    EXPECT_NE(light.value("seriesColor"), dark.value("seriesColor"));
    EXPECT_NE(light.value("background"), dark.value("background"));
    // The series stays what it was.
    EXPECT_EQ(light.value("data"), dark.value("data"));
}

TEST_F(ProfitAndLossChart, AGrabOfTheViewIsNotBlank)
{
    openCurve();
    curve->slotSelected(true, QStringLiteral("10000011.SH"));
    ASSERT_TRUE(waitFinished(curve->webView, 0));
    // The compositor may lag the "finished" event by a frame or two.
    QSet<QRgb> colours;
    testsupport::waitUntil(
        [&] {
            const QImage image = curve->webView->grab().toImage();
            colours.clear();
            for (int y = 0; y < image.height(); y += 3) {
                for (int x = 0; x < image.width(); x += 3) {
                    colours.insert(image.pixel(x, y));
                }
            }
            return colours.size() > 20;
        },
        5000);
    EXPECT_GT(colours.size(), 20);
    const QImage image = curve->webView->grab().toImage();
    if (qEnvironmentVariableIsSet("OPTDESK_CHART_SHOT")) {
        image.save(qEnvironmentVariable("OPTDESK_CHART_SHOT"));
    }
}

TEST_F(ProfitAndLossChart, AValueThatCantShowBecomesAGap)
{
    openCurve();
    runScript(curve->webView,
              QStringLiteral("loadChart('{\"width\":500,\"data\":[[2.9000,-0.1000],[2.9500,非法值],[3.0000,0.1000]]}')"));
    ASSERT_TRUE(waitFinished(curve->webView, 0));
    const QJsonObject state = chartState(curve->webView);
    const QJsonArray data = state.value("data").toArray();
    ASSERT_EQ(data.size(), 3);
    EXPECT_TRUE(data.at(1).toArray().at(1).isNull());
    EXPECT_EQ(data.at(2).toArray(), (QJsonArray{3.0, 0.1}));
}

TEST_F(ProfitAndLossChart, WithoutEChartsThePageSaysSo)
{
    // The page alone, without the ECharts file beside it.
    QTemporaryDir bare;
    const QString page = QDir(bare.path()).filePath(QStringLiteral("profitAndLossIndex.html"));
    ASSERT_TRUE(QFile::copy(CProfitAndLossWebView::pagePath(), page));
    host = new QWidget;
    WG::CCefWebView* view = utils::CSingletonT<TC::CCefViewManager>::instance()->getWebView(page, host);
    host->resize(400, 300);
    host->show();
    ASSERT_TRUE(testsupport::waitUntil([&] { return view->isLoaded(); }, 30000));
    const QJsonObject state = chartState(view);
    EXPECT_TRUE(state.value("echarts").toString().isEmpty());
    EXPECT_EQ(state.value("error").toString(), QStringLiteral("echarts missing"));
    EXPECT_EQ(runScript(view, QStringLiteral("loadChart('{\"width\":400,\"data\":[[1,2]]}')")).toBool(), false);
    EXPECT_TRUE(runScript(view, QStringLiteral("document.getElementById('message').textContent"))
                    .toString()
                    .contains(QStringLiteral("ECharts")));
    // And the desk refuses to install pages without it.
    QTemporaryDir source;
    QDir(source.path()).mkpath(QStringLiteral("profitAndLossChart"));
    ASSERT_TRUE(QFile::copy(page, QDir(source.path()).filePath(QStringLiteral("profitAndLossChart/profitAndLossIndex.html"))));
    QTemporaryDir target;
    QString error;
    EXPECT_FALSE(desk::CChartPages::install(source.path(), target.path(), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("echarts.min.js"))) << error.toStdString();
}

}  // namespace
