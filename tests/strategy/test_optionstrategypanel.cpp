// The workbench panel: its widgets, the two faces, events from the tree and the
// table, the saved string, the code entry and the quick order button.
#include "strategy/coptionstrategypanel.h"

#include "strategyfixture.h"

#include "order/cstkoptionmultiorderdialog.h"
#include "order/cstkoptionorderdialog.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitandlosscurve.h"
#include "strategy/cprofitandlosswebview.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "strategy/cstrategymanagetable.h"
#include "strategy/cstrategymanagetree.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cquotesaddinstrumentwidget.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/csplitcontainer.h"
#include "toolkit/clineedit.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

using strategytest::leg;
using strategytest::settle;
using strategytest::writeBasket;
using TC::COptionStrategyPanel;
using TC::CStrategyManageTree;

namespace {

class StrategyPanelTest : public strategytest::StrategyTest {
protected:
    void SetUp() override
    {
        StrategyTest::SetUp();
        recorder->resize(1400, 700);
    }
    COptionStrategyPanel* makePanel()
    {
        panel = new COptionStrategyPanel(7, recorder);
        panel->resize(1400, 700);
        recorder->show();
        return panel;
    }
    void pressTool(int id) { QTest::mouseClick(panel->getToolButton(id), Qt::LeftButton); }

    COptionStrategyPanel* panel = nullptr;
};

}  // namespace

TEST_F(StrategyPanelTest, BuildsEveryWidgetInPlace)
{
    makePanel();
    EXPECT_EQ(panel->name(), QStringLiteral("ops"));
    EXPECT_EQ(panel->getTradeType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    ASSERT_NE(panel->getTree(), nullptr);
    ASSERT_NE(panel->getTable(), nullptr);
    ASSERT_NE(panel->getCodeEntry(), nullptr);
    ASSERT_NE(panel->getWinner(), nullptr);
    ASSERT_NE(panel->getAnalysis(), nullptr);
    ASSERT_NE(panel->getToolBar(), nullptr);
    EXPECT_EQ(panel->getCodeEntry()->id(), 2);
    EXPECT_EQ(panel->getCodeEntry()->tradeType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_GE(panel->getCodeEntry()->minimumWidth(), 180);
    const struct {
        int id;
        const char* text;
        int width;
    } buttons[] = {{4, "删除", 35}, {5, "全选", 35}, {6, "反选", 35}, {9, "快速下单", 60}};
    for (const auto& def : buttons) {
        WG::CSmallNoNormalButton* button = panel->getToolButton(def.id);
        ASSERT_NE(button, nullptr) << def.id;
        EXPECT_EQ(button->text(), QString::fromUtf8(def.text));
        EXPECT_EQ(button->size(), QSize(def.width, 20));
    }
    // The basket face first: tools and table shown, winner and analysis hidden.
    EXPECT_FALSE(panel->getTable()->isHidden());
    EXPECT_FALSE(panel->getToolBar()->isHidden());
    EXPECT_TRUE(panel->getWinner()->isHidden());
    EXPECT_TRUE(panel->getAnalysis()->isHidden());
    EXPECT_EQ(panel->getWinner()->getAnalysisWidget(), panel->getAnalysis());
    // The client uses a web view: the curve stands in the bottom list, hidden until it has legs.
    ASSERT_NE(panel->getCurve(), nullptr);
    EXPECT_EQ(panel->getCurve()->objectName(), QStringLiteral("profitAndLossWebView"));
    EXPECT_TRUE(panel->getCurve()->isHidden());
    EXPECT_TRUE(panel->getOuterSplit()->isAncestorOf(panel->getCurve()));
}

TEST_F(StrategyPanelTest, SetParamLoadsTheFirstBasket)
{
    writeBasket(QStringLiteral("b"), {leg("10000012", 1, nqservice::OT_BUY)});
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY), leg("10000021", 1, nqservice::OT_SELL)});
    makePanel();
    panel->setParam(QString());
    EXPECT_EQ(panel->getTable()->currentBasket(), QStringLiteral("a"));
    EXPECT_EQ(panel->getTable()->rowCount(), 2);
}

TEST_F(StrategyPanelTest, SetParamWithNoBasketLeavesTheTableEmpty)
{
    makePanel();
    panel->setParam(QString());
    EXPECT_EQ(panel->getTable()->rowCount(), 0);
    EXPECT_TRUE(panel->getTable()->currentBasket().isEmpty());
    ASSERT_NE(panel->getCurve(), nullptr);
    EXPECT_TRUE(panel->getCurve()->legOperations.isEmpty());
    EXPECT_TRUE(panel->getCurve()->isHidden());
}

TEST_F(StrategyPanelTest, ParamJoinsTheTwoTableLayouts)
{
    makePanel();
    panel->getTable()->setColumnVisible(9, false);
    const QString saved = panel->param();
    const QStringList parts = saved.split(QLatin1Char('|'));
    ASSERT_EQ(parts.size(), 2);
    EXPECT_EQ(parts[0], panel->getTable()->saveConfigStr());
    EXPECT_EQ(parts[1], panel->getWinner()->getTable()->saveConfigStr());

    COptionStrategyPanel again(8, recorder);
    again.setParam(saved);
    EXPECT_FALSE(again.getTable()->columnVisible(9));
    // An empty string is one empty part: the table gets "" and keeps its layout.
    COptionStrategyPanel third(9, recorder);
    third.setParam(QString());
    EXPECT_TRUE(third.getTable()->columnVisible(9));
}

TEST_F(StrategyPanelTest, TheWinnerBranchSwitchesFacesAndBack)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY)});
    makePanel();
    panel->setParam(QString());
    QSignalSpy selected(panel, &COptionStrategyPanel::sigSelected);
    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, CStrategyManageTree::IT_WINNER_BRANCH, QString(), nullptr);
    EXPECT_TRUE(panel->isWinnerFace());
    EXPECT_TRUE(panel->getTable()->isHidden());
    EXPECT_TRUE(panel->getToolBar()->isHidden());
    EXPECT_FALSE(panel->getWinner()->isHidden());
    EXPECT_FALSE(panel->getAnalysis()->isHidden());
    EXPECT_FALSE(panel->getTree()->isHidden()) << "the tree shows on both faces";
    // No candidate is checked with no settings: nothing is emitted.
    EXPECT_EQ(selected.count(), 0);

    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, 0, QStringLiteral("a"), nullptr);
    EXPECT_FALSE(panel->isWinnerFace());
    EXPECT_FALSE(panel->getTable()->isHidden());
    EXPECT_TRUE(panel->getAnalysis()->isHidden());
    EXPECT_EQ(panel->getTable()->rowCount(), 1);
}

TEST_F(StrategyPanelTest, TheBasketsBranchEmptiesTheTableAndAnUnknownNameChangesNothing)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY)});
    makePanel();
    panel->setParam(QString());
    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, 0, QStringLiteral("nope"), nullptr);
    EXPECT_EQ(panel->getTable()->rowCount(), 1);
    EXPECT_EQ(panel->getTable()->currentBasket(), QStringLiteral("a"));
    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, CStrategyManageTree::IT_CUSTOM_BRANCH, QString(), nullptr);
    EXPECT_EQ(panel->getTable()->rowCount(), 0);
    EXPECT_TRUE(panel->getTable()->currentBasket().isEmpty());
    EXPECT_TRUE(panel->getTable()->rowByKey().isEmpty());
}

TEST_F(StrategyPanelTest, WithoutACurveTicksAreSwallowedAndSidesGoUp)
{
    utils::CSingletonT<TC::CConfig>::instance()->setUseWebView(false);
    makePanel();
    recorder->events.clear();
    EXPECT_TRUE(panel->handleEvent(1259, 0, 2, QStringLiteral("10000011"), nullptr));
    EXPECT_TRUE(recorder->events.isEmpty());
    panel->handleEvent(1260, 0, 18, QStringLiteral("10000011"), nullptr);
    EXPECT_EQ(recorder->ofCode(1260).size(), 1) << "passed on to the base";
    EXPECT_TRUE(panel->handleEvent(1258, 0, 0, QString(), nullptr));
    utils::CSingletonT<TC::CConfig>::instance()->setUseWebView(true);
}

TEST_F(StrategyPanelTest, NewRenameAndDeleteReachTheTreeAndTable)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY)});
    makePanel();
    panel->setParam(QString());
    panel->getTree()->slotNewStrategy(true);
    EXPECT_EQ(panel->getTree()->currentBasketName(), QStringLiteral("我的组合"));
    EXPECT_EQ(panel->getTable()->currentBasket(), QStringLiteral("我的组合"));
    EXPECT_EQ(panel->getTable()->rowCount(), 0);
    EXPECT_EQ(panel->getTree()->basketNames(), (QStringList{QStringLiteral("a"), QStringLiteral("我的组合")}));

    panel->getTree()->slotDeleteStrategy(true, QStringLiteral("我的组合"));
    settle();
    EXPECT_EQ(panel->getTree()->basketNames(), QStringList{QStringLiteral("a")});
    EXPECT_EQ(panel->getTable()->currentBasket(), QStringLiteral("a"));
    EXPECT_EQ(panel->getTable()->rowCount(), 1);

    panel->getTree()->slotDeleteStrategy(true, QStringLiteral("a"));
    settle();
    EXPECT_TRUE(panel->getTree()->basketNames().isEmpty());
    EXPECT_EQ(panel->getTable()->rowCount(), 0) << "deleting the last basket leaves the table empty";
    EXPECT_TRUE(panel->getTable()->currentBasket().isEmpty());
}

TEST_F(StrategyPanelTest, ACodeWithoutABasketIsRefusedWithATip)
{
    makePanel();
    panel->setParam(QString());
    WG::CMessageTip::resetRecord();
    panel->getCodeEntry()->addInstrument(QStringLiteral("10000011"));
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择已存在篮子或者新建篮子"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor.data(), panel->getCodeEntry());
}

TEST_F(StrategyPanelTest, TwoCodesMakeATwoLegBasket)
{
    writeBasket(QStringLiteral("a"), {});
    makePanel();
    panel->setParam(QString());
    panel->getCodeEntry()->addInstrument(QStringLiteral("10000011"));
    panel->getCodeEntry()->addInstrument(QStringLiteral("10000012"));
    EXPECT_EQ(panel->getTable()->rowCount(), 2);
    EXPECT_EQ(TC::CStrategyBaskets::copy().value(QStringLiteral("a")).legs.size(), 2);
}

TEST_F(StrategyPanelTest, ToolButtonsDeleteTickAllAndInvert)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY, false), leg("10000012", 1, nqservice::OT_BUY, true)});
    makePanel();
    panel->setParam(QString());
    pressTool(COptionStrategyPanel::ID_INVERT);
    EXPECT_TRUE(TC::CStrategyBaskets::copy().value(QStringLiteral("a")).legs.at(0)->checked);
    EXPECT_FALSE(TC::CStrategyBaskets::copy().value(QStringLiteral("a")).legs.at(1)->checked);
    pressTool(COptionStrategyPanel::ID_CHECK_ALL);
    EXPECT_TRUE(TC::CStrategyBaskets::copy().value(QStringLiteral("a")).legs.at(1)->checked);
    pressTool(COptionStrategyPanel::ID_DELETE);
    EXPECT_EQ(panel->getTable()->rowCount(), 0);
    EXPECT_TRUE(TC::CStrategyBaskets::copy().value(QStringLiteral("a")).legs.isEmpty());
}

TEST_F(StrategyPanelTest, QuickOrderWithNothingTickedAsksForAStrategy)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY, false)});
    makePanel();
    panel->setParam(QString());
    WG::CMessageBox::TestHook hook;
    pressTool(COptionStrategyPanel::ID_QUICK_ORDER);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("warning"));
    EXPECT_EQ(hook.last().title, QStringLiteral("提示"));
    EXPECT_EQ(hook.last().text, QStringLiteral("请选择策略"));
}

TEST_F(StrategyPanelTest, RolesThatPlaceNoOrdersAreToldNothing)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY, false)});
    makePanel();
    panel->setParam(QString());
    for (int role : {200, 102}) {
        store->setUserDataInt(TC::UM_USER_ROLE, role);
        WG::CMessageBox::TestHook hook;
        WG::CMessageTip::resetRecord();
        pressTool(COptionStrategyPanel::ID_QUICK_ORDER);
        EXPECT_EQ(hook.count(), 0) << role;
        EXPECT_EQ(WG::CMessageTip::tipCount(), 0) << role;
        EXPECT_TRUE(QApplication::topLevelWidgets().size() >= 1);
    }
}

TEST_F(StrategyPanelTest, UpdateGreekRecomputesTheTable)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY)});
    makePanel();
    panel->setParam(QString());
    publish(quote("510050", 3.05, 3.0));
    settle();
    store->setUserDataInt(TC::UM_GREEK_BENCHMARK, 0);
    panel->updateGreek();
    EXPECT_FALSE(utils::isAbsent(panel->getTable()->itemDouble(0, 11)));
    EXPECT_GT(panel->getTable()->itemDouble(0, 11), 0.3) << "per unit: a delta near one half";
}

TEST_F(StrategyPanelTest, ThemeChangeRestylesTheTree)
{
    makePanel();
    panel->getTree()->setStyleSheet(QString());
    panel->themeChanged();
    EXPECT_FALSE(panel->getTree()->styleSheet().isEmpty());
}

TEST_F(StrategyPanelTest, QuickOrderOpensTheDialogForTheTickedLegs)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY, true), leg("10000012", 1, nqservice::OT_SELL, true),
                                      leg("10000021", 1, nqservice::OT_BUY, false)});
    makePanel();
    panel->setParam(QString());
    WG::CMessageBox::TestHook hook;
    pressTool(COptionStrategyPanel::ID_QUICK_ORDER);
    auto* twoLegs = qobject_cast<TC::CStkOptionOrderDialog*>(panel->getLastOrderDialog());
    ASSERT_NE(twoLegs, nullptr) << "two ticked legs: the two-leg dialog";
    EXPECT_EQ(twoLegs->getLegCount(), 2);
    EXPECT_TRUE(twoLegs->isVisible());
    EXPECT_EQ(hook.count(), 0);
    twoLegs->close();
    settle();

    pressTool(COptionStrategyPanel::ID_INVERT);
    pressTool(COptionStrategyPanel::ID_QUICK_ORDER);
    auto* oneLeg = qobject_cast<TC::CStkOptionOrderDialog*>(panel->getLastOrderDialog());
    ASSERT_NE(oneLeg, nullptr);
    EXPECT_EQ(oneLeg->getLegCount(), 1);
    oneLeg->close();
    settle();

    pressTool(COptionStrategyPanel::ID_CHECK_ALL);
    pressTool(COptionStrategyPanel::ID_QUICK_ORDER);
    auto* multi = qobject_cast<TC::CStkOptionMultiOrderDialog*>(panel->getLastOrderDialog());
    ASSERT_NE(multi, nullptr) << "three ticked legs: the multi-leg dialog";
    EXPECT_TRUE(multi->isVisible());
    multi->close();
}

// The curve under the workbench, without a browser here (offscreen): the page is
// taken as loaded, and what the curve would draw is its last script.
class StrategyPanelCurveTest : public StrategyPanelTest {
protected:
    TC::CProfitAndLossWebView* openWithBasket()
    {
        writeBasket(QStringLiteral("a"), {leg("10000011", 1, nqservice::OT_BUY, false),
                                          leg("10000021", 1, nqservice::OT_SELL, false)});
        publish(quote("10000011", 0.1, 0.09));
        publish(quote("10000021", 0.08, 0.09));
        makePanel();
        panel->setParam(QString());
        TC::CProfitAndLossWebView* curve = panel->getCurve();
        if (curve != nullptr) {
            curve->slotLoadFinished(true);
        }
        return curve;
    }
    static QString scriptFor(const QMap<QString, int>& legs, int width)
    {
        return TC::CProfitAndLossCurve::build(width, TC::CProfitAndLossCurve::collectLegs(legs), nullptr).script;
    }
};

TEST_F(StrategyPanelCurveTest, TickedLegsReachTheCurveWithTheirSides)
{
    TC::CProfitAndLossWebView* curve = openWithBasket();
    ASSERT_NE(curve, nullptr);
    EXPECT_TRUE(curve->isHidden()) << "nothing ticked";
    panel->getTable()->checkDelegate()->setItemChecked("0", true, true);
    panel->getTable()->checkDelegate()->setItemChecked("1", true, true);
    const QMap<QString, int> both = {{QStringLiteral("10000011.SH"), 18}, {QStringLiteral("10000021.SH"), 19}};
    EXPECT_EQ(curve->legOperations, both);
    EXPECT_FALSE(curve->isHidden());
    EXPECT_EQ(curve->lastScript(), scriptFor(both, curve->chartWidth));
    // Unticking takes the leg out again.
    panel->getTable()->checkDelegate()->setItemChecked("0", false, true);
    EXPECT_EQ(curve->legOperations.keys(), QStringList{QStringLiteral("10000021.SH")});
    EXPECT_EQ(curve->lastScript(), scriptFor({{QStringLiteral("10000021.SH"), 19}}, curve->chartWidth));
}

TEST_F(StrategyPanelCurveTest, ChoosingABasketClearsTheCurveAndTheLoadNamesLegsByCode)
{
    TC::CProfitAndLossWebView* curve = openWithBasket();
    ASSERT_NE(curve, nullptr);
    panel->getTable()->checkDelegate()->setItemChecked("0", true, true);
    ASSERT_FALSE(curve->isHidden());
    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_CHOSEN, 0, 0, QStringLiteral("a"), nullptr);
    // The load ticks the checked leg by its code, which names no instrument: nothing to draw.
    EXPECT_EQ(curve->legOperations.keys(), QStringList{QStringLiteral("10000011")});
    EXPECT_TRUE(curve->isHidden());
    // A new basket empties it.
    panel->handleEvent(CStrategyManageTree::UE_STRATEGY_REMOVED, 0, 0, QString(), nullptr);
    EXPECT_TRUE(curve->legOperations.isEmpty());
    EXPECT_TRUE(curve->isHidden());
}

TEST_F(StrategyPanelCurveTest, TheCurveTakesTheWidthOfTheBottomArea)
{
    TC::CProfitAndLossWebView* curve = openWithBasket();
    ASSERT_NE(curve, nullptr);
    EXPECT_EQ(curve->chartWidth, 750) << "setParam starts it at 750";
    panel->handleEvent(271, 0, 0, QString(), nullptr);
    const int width = panel->getOuterSplit()->getSecondWidth();
    ASSERT_GE(width, 0);
    EXPECT_EQ(curve->chartWidth, width);
    panel->getTable()->checkDelegate()->setItemChecked("0", true, true);
    EXPECT_TRUE(curve->lastScript().startsWith(QStringLiteral("loadChart('{\"width\":%1,").arg(width)));
}
