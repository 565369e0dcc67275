// The curve widget without a page (no web view in this client): its leg map
// and the quirks of that map, when it hides and shows, and what it would hand
// to the page. The page itself is tested under xvfb (test_profitandlosschart).
#include "board/boardfixture.h"
#include "seam/user.h"
#include "strategy/cprofitandlosscurve.h"
#include "strategy/cprofitandlosswebview.h"
#include "support/testsupport.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QUrl>
#include <QWidget>

#include <memory>

namespace {

using TC::CProfitAndLossCurve;
using TC::CProfitAndLossWebView;

const QString kCall = QStringLiteral("10000011.SH");  // 50ETF购 3.0
const QString kPut = QStringLiteral("10000021.SH");   // 50ETF沽 3.0
const QString kCall31 = QStringLiteral("10000012.SH");

class ProfitAndLossWebView : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        useWebView = TC::getConfig()->useWebView();
        TC::getConfig()->setUseWebView(false);
        host.resize(800, 300);
        curve = new CProfitAndLossWebView(&host);
        host.show();
        publish(quote("10000011", 0.1, 0.09));
        publish(quote("10000021", 0.08, 0.09));
        publish(quote("10000012", 0.05, 0.04));
    }
    void TearDown() override
    {
        TC::getConfig()->setUseWebView(useWebView);
        BoardTest::TearDown();
    }
    // What the core makes of the legs as the services answer now.
    QString scriptFor(const QMap<QString, int>& legs, int width = 750) const
    {
        return CProfitAndLossCurve::build(width, CProfitAndLossCurve::collectLegs(legs), curve).script;
    }

    bool useWebView = true;
    QWidget host;
    CProfitAndLossWebView* curve = nullptr;
};

TEST_F(ProfitAndLossWebView, StartsHiddenWithoutBrowserWhenNoWebViewIsUsed)
{
    EXPECT_EQ(curve->objectName(), QStringLiteral("profitAndLossWebView"));
    EXPECT_FALSE(curve->isVisible());
    EXPECT_EQ(curve->chartWidth, 750);
    EXPECT_FALSE(curve->pageLoaded);
    EXPECT_EQ(curve->webView, nullptr);
    EXPECT_TRUE(curve->legOperations.isEmpty());
    EXPECT_EQ(static_cast<int>(curve->contextMenuPolicy()), 4);
}

TEST_F(ProfitAndLossWebView, HiddenUntilThePageHasLoadedThenDrawsAtOnce)
{
    curve->slotSelected(true, kCall);
    EXPECT_EQ(curve->legOperations.value(kCall), 18);
    EXPECT_FALSE(curve->isVisible());
    EXPECT_TRUE(curve->lastScript().isEmpty());
    curve->slotLoadFinished(true);
    EXPECT_TRUE(curve->pageLoaded);
    EXPECT_TRUE(curve->isVisible());
    EXPECT_EQ(curve->lastScript(), scriptFor({{kCall, 18}}));
    EXPECT_TRUE(curve->lastScript().contains(QStringLiteral("[3.1000,0.0000]"))) << curve->lastScript().toStdString();
    // A failed load hides it again.
    curve->slotLoadFinished(false);
    EXPECT_FALSE(curve->isVisible());
}

TEST_F(ProfitAndLossWebView, UntickingTheLastLegHides)
{
    curve->slotLoadFinished(true);
    curve->slotSelected(true, kCall);
    EXPECT_TRUE(curve->isVisible());
    curve->slotSelected(false, kCall);
    EXPECT_TRUE(curve->legOperations.isEmpty());
    EXPECT_FALSE(curve->isVisible());
}

TEST_F(ProfitAndLossWebView, AReselectedLegFallsBackToBuy)
{
    curve->slotLoadFinished(true);
    curve->slotSelected(true, kPut);
    curve->slotBSChanged(19, kPut);
    EXPECT_EQ(curve->legOperations.value(kPut), 19);
    EXPECT_EQ(curve->lastScript(), scriptFor({{kPut, 19}}));
    curve->slotSelected(true, kPut);
    EXPECT_EQ(curve->legOperations.value(kPut), 18);
    EXPECT_EQ(curve->lastScript(), scriptFor({{kPut, 18}}));
}

TEST_F(ProfitAndLossWebView, ASoldLegArrivesAs19AndAnyOtherValueIsASale)
{
    curve->slotLoadFinished(true);
    curve->slotSelected(true, kCall);
    curve->slotSelected(true, kCall31);
    curve->slotBSChanged(19, kCall31);
    const QString sold = curve->lastScript();
    EXPECT_EQ(sold, scriptFor({{kCall, 18}, {kCall31, 19}}));
    curve->slotBSChanged(3, kCall31);
    EXPECT_EQ(curve->legOperations.value(kCall31), 3);
    EXPECT_EQ(curve->lastScript(), sold);
    curve->slotBSChanged(18, kCall31);
    EXPECT_NE(curve->lastScript(), sold);
}

TEST_F(ProfitAndLossWebView, AnUnknownKeyOfADirectionChangeIsIgnoredWithoutRedraw)
{
    curve->slotLoadFinished(true);
    curve->slotSelected(true, kCall);
    const QString drawn = curve->lastScript();
    // A new quote would change the curve, if it were redrawn.
    publish(quote("10000011", 0.2, 0.09));
    curve->slotBSChanged(19, kPut);
    EXPECT_FALSE(curve->legOperations.contains(kPut));
    EXPECT_EQ(curve->lastScript(), drawn);
    curve->slotBSChanged(18, kCall);
    EXPECT_NE(curve->lastScript(), drawn);
}

TEST_F(ProfitAndLossWebView, ACodeAndItsKeyAreTwoEntries)
{
    curve->slotLoadFinished(true);
    const QString code = QStringLiteral("10000011");
    // After a basket's load the legs come as codes, a tick adds the key.
    curve->slotSelected(true, code);
    curve->slotSelected(true, kCall);
    EXPECT_EQ(curve->legOperations.size(), 2);
    // A direction change from the table reaches only the code's entry.
    curve->slotBSChanged(19, code);
    EXPECT_EQ(curve->legOperations.value(code), 19);
    EXPECT_EQ(curve->legOperations.value(kCall), 18);
    // Unticking removes only the key's entry.
    curve->slotSelected(false, kCall);
    EXPECT_EQ(curve->legOperations.keys(), QStringList{code});
}

TEST_F(ProfitAndLossWebView, NoValidStrikeNeitherUpdatesNorHides)
{
    curve->slotLoadFinished(true);
    curve->slotSelected(true, kCall);
    const QString drawn = curve->lastScript();
    ASSERT_TRUE(curve->isVisible());
    // Only a bare code is left: no instrument, no strike.
    curve->slotSelected(true, QStringLiteral("10000011"));
    curve->slotSelected(false, kCall);
    EXPECT_EQ(curve->legOperations.size(), 1);
    EXPECT_TRUE(curve->isVisible());
    EXPECT_EQ(curve->lastScript(), drawn);
}

TEST_F(ProfitAndLossWebView, TheWidthGoesToThePage)
{
    curve->slotLoadFinished(true);
    curve->chartWidth = 420;
    curve->slotSelected(true, kCall);
    EXPECT_TRUE(curve->lastScript().startsWith(QStringLiteral("loadChart('{\"width\":420,\"data\":[[")))
        << curve->lastScript().toStdString();
}

TEST_F(ProfitAndLossWebView, ThePageStandsBesideTheConfigurationDirectory)
{
    const QString before = TC::getConfigDir();
    TC::getConfig()->setConfigDir(QStringLiteral("/tmp/desk-x/config"));
    EXPECT_EQ(CProfitAndLossWebView::pagePath(),
              QStringLiteral("/tmp/desk-x/charts/profitAndLossChart/profitAndLossIndex.html"));
    const QUrl url(CProfitAndLossWebView::pageUrl());
    EXPECT_TRUE(url.isLocalFile()) << CProfitAndLossWebView::pageUrl().toStdString();
    EXPECT_TRUE(CProfitAndLossWebView::pageUrl().endsWith(CProfitAndLossWebView::pagePath()));
    TC::getConfig()->setConfigDir(before);
}

TEST_F(ProfitAndLossWebView, TheThemeCallCarriesTheThemesRiseAndFallColours)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    const QString before = resource->themeName();
    ASSERT_TRUE(resource->setTheme(QStringLiteral("dark")));
    const QString dark = curve->themeScript();
    EXPECT_TRUE(dark.startsWith(QStringLiteral("setTheme('dark',{\"rise\":\""))) << dark.toStdString();
    EXPECT_TRUE(dark.contains(resource->getColor(QStringLiteral("clr_global_rise"))->name()));
    EXPECT_TRUE(dark.contains(resource->getColor(QStringLiteral("clr_global_fall"))->name()));
    ASSERT_TRUE(resource->setTheme(QStringLiteral("light")));
    const QString light = curve->themeScript();
    EXPECT_TRUE(light.startsWith(QStringLiteral("setTheme('light',"))) << light.toStdString();
    EXPECT_TRUE(light.contains(resource->getColor(QStringLiteral("clr_global_rise"))->name()));
    EXPECT_NE(light, dark);
    resource->setTheme(before);
}

}  // namespace
