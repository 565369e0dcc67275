// The combination panel ("opsp"): its tool bar, account subscriptions by login
// status and trading day, the search, the release command with its checks and
// messages, the double click that hands a row to the host, and its saved string.
#include "positions/combfixture.h"
#include "seam/logger.h"
#include "toolkit/cautobutton.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/csearchtextlineedit.h"
#include "toolkit/csmallnonormalbutton.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <algorithm>

namespace {

using positionstest::combPosition;

class CombPanelTest : public positionstest::CombPanelTest {
protected:
    std::vector<std::string> requested()
    {
        std::vector<std::string> keys = panel->requestedAccountKeys();
        std::sort(keys.begin(), keys.end());
        return keys;
    }
};

TEST_F(CombPanelTest, TheToolBarHasTheReleaseButtonAndTheSearch)
{
    start();
    ASSERT_NE(panel->getReleaseButton(), nullptr);
    EXPECT_EQ(panel->getReleaseButton()->text(), QStringLiteral("解除"));
    EXPECT_EQ(panel->getReleaseButton()->parentWidget(), panel->getToolBar());
    ASSERT_NE(panel->getSearchEdit(), nullptr);
    EXPECT_EQ(panel->getSearchEdit()->lineEdit()->placeholderText(), QStringLiteral("请输入组合号码"));
    EXPECT_EQ(panel->getRefreshButton(), nullptr) << "only in the quote mode";
    EXPECT_EQ(panel->getTable()->id(), 0);
    EXPECT_EQ(panel->getTradeType(), 32);
    EXPECT_TRUE(panel->supportedTraderTypes().testFlag(nqservice::VQ_TRADER_TYPE_STOCK_OPTION));
    EXPECT_FALSE(panel->supportedTraderTypes().testFlag(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION));
}

TEST_F(CombPanelTest, InTheQuoteModeRefreshAsksTheServerForReadyUnfilteredAccounts)
{
    store->setUserDataInt(TC::UM_KELVAN_QUOTE_MODE, 1);
    store->setAccountFilter(QStringLiteral("A2"), true);
    start();
    ASSERT_NE(panel->getRefreshButton(), nullptr);
    EXPECT_EQ(panel->getRefreshButton()->text(), QStringLiteral("刷新"));
    EXPECT_EQ(panel->getRefreshButton()->size(), QSize(40, 20));
    login->set("A1", nqservice::BLS_READY);
    EXPECT_TRUE(clickButton(TC::COptionStrategyPositionPanel::OSP_REFRESH));
    EXPECT_EQ(client->refreshed, std::vector<std::string>({"A1"}));
    login->set("A1", nqservice::BLS_DISCONNECTED);
    clickButton(TC::COptionStrategyPositionPanel::OSP_REFRESH);
    EXPECT_EQ(client->refreshed.size(), 1u) << "a logged-out account is not asked";
}

TEST_F(CombPanelTest, LoadAccountsSubscribesTheReadyStockOptionAccounts)
{
    login->set("A2", nqservice::BLS_DISCONNECTED);
    start();
    EXPECT_EQ(requested(), std::vector<std::string>({"A1"}));
    EXPECT_EQ(panel->subscribedAccounts(), QStringList({"A1"}));
    EXPECT_EQ(one->openSubscriptions(1030), 1);
    EXPECT_EQ(two->openSubscriptions(1030), 0);
    EXPECT_EQ(future->openSubscriptions(), 0) << "a future-option account is not this panel's";
    // The broker reports A2 ready: the login signal brings it in.
    login->set("A2", nqservice::BLS_READY);
    two->store(1030, combPosition(infoTwo, "x", 1));
    emit client->sigLoginStatus(infoTwo, nqservice::BLS_READY, std::string());
    settle();
    EXPECT_EQ(requested(), std::vector<std::string>({"A1", "A2"}));
    EXPECT_EQ(two->openSubscriptions(1030), 1);
    EXPECT_EQ(shownCombs(), QStringList({"x"}));
}

TEST_F(CombPanelTest, AFilteredAccountIsLeftOutUntilANewTradingDayBringsItBack)
{
    store->setAccountFilter(QStringLiteral("A2"), true);
    one->store(1030, combPosition(infoOne, "a", 1));
    two->store(1030, combPosition(infoTwo, "x", 1));
    start();
    EXPECT_EQ(requested(), std::vector<std::string>({"A1"}));
    EXPECT_EQ(shownCombs(), QStringList({"a"}));
    EXPECT_EQ(one->subscriptionsMade(), 1);
    // The filter is gone from the walk of a new day, though requestAccount
    // still tests it: only the accounts it lets through come back.
    store->setAccountFilter(QStringLiteral("A2"), false);
    panel->slotNewTradingDay("20261123");
    settle();
    EXPECT_EQ(one->subscriptionsMade(), 2) << "dropped and made again";
    EXPECT_EQ(one->openSubscriptions(1030), 1);
    EXPECT_EQ(requested(), std::vector<std::string>({"A1", "A2"}));
    EXPECT_EQ(shownCombs(), QStringList({"a", "x"}));
}

TEST_F(CombPanelTest, ANewTradingDayDropsAllSubscriptionsAndRebuildsThem)
{
    start();
    ASSERT_EQ(one->openSubscriptions(1030), 1);
    ASSERT_EQ(two->openSubscriptions(1030), 1);
    login->set("A2", nqservice::BLS_DISCONNECTED);
    panel->slotNewTradingDay("20261123");
    EXPECT_EQ(one->openSubscriptions(1030), 1);
    EXPECT_EQ(one->subscriptionsMade(), 2);
    EXPECT_EQ(two->openSubscriptions(1030), 0) << "not ready that day";
    EXPECT_EQ(requested(), std::vector<std::string>({"A1"}));
}

TEST_F(CombPanelTest, ARecordOfTheSubscriptionReachesTheTableFromAServiceThread)
{
    start();
    std::thread broker([&] { one->publish(1030, combPosition(infoOne, "ZH1", 4)); });
    broker.join();
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"ZH1"}));
    EXPECT_EQ(cell("A1|ZH1", 5), QStringLiteral("4"));
    std::thread release([&] { one->publish(1030, combPosition(infoOne, "ZH1", 0)); });
    release.join();
    settle();
    EXPECT_TRUE(shownCombs().isEmpty());
}

TEST_F(CombPanelTest, SearchTextSurvivesClearAndOnlyReloadPassesItOn)
{
    one->store(1030, combPosition(infoOne, "ZH001", 1));
    one->store(1030, combPosition(infoOne, "KS002", 1));
    start();
    ASSERT_EQ(shownCombs(), QStringList({"KS002", "ZH001"}));
    // Typing delivers the text event: the panel reloads with the filter.
    panel->getSearchEdit()->setText(QStringLiteral("zh"));
    settle();
    EXPECT_EQ(model()->getSearchText(), "zh");
    EXPECT_EQ(shownCombs(), QStringList({"ZH001"}));
    panel->clear();
    EXPECT_EQ(panel->getSearchEdit()->getText(), QStringLiteral("zh"));
    EXPECT_TRUE(panel->requestedAccountKeys().empty());
    panel->refreshAccounts();
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"ZH001"})) << "the table kept its filter";
    EXPECT_TRUE(panel->handleEvent(WG::UE_TEXT_FILTER_CHANGED, 4, 0, QString(), nullptr));
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"ZH001"}));
}

TEST_F(CombPanelTest, ReleaseSendsOneCommandWithTheTickedCombination)
{
    TC::CTradeSetting setting;
    setting.modeSetting = 3;
    store->setTradeSetting(setting);
    one->store(1030, combPosition(infoOne, "ZH1", 2, "CNSJC", "10000010", "10000011"));
    one->store(1030, combPosition(infoOne, "ZH2", 5, "PXSJC", "10000023", "10000022"));
    start();
    tick("A1|ZH2");
    EXPECT_TRUE(clickButton(TC::COptionStrategyPositionPanel::OSP_RELEASE));
    ASSERT_EQ(commands->commands.size(), 1u);
    const nqservice::COrderComandParam& command = *commands->commands.front();
    EXPECT_EQ(command.traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(command.stopLossType, 0);
    EXPECT_EQ(command.orderFlag, 1);
    EXPECT_EQ(command.modeSetting, 3);
    EXPECT_EQ(command.warningText, "");
    EXPECT_EQ(command.confirmFlag, 1);
    EXPECT_EQ(command.extra, 0);
    EXPECT_TRUE(commands->commandCallbacksEmpty.front());
    EXPECT_TRUE(commands->commandConfirmed.front());
    EXPECT_EQ(commands->commandFlags.front(), 0);
    ASSERT_EQ(command.params.size(), 1u);
    const nqservice::CCodeOrderParam& order = *command.params.front();
    EXPECT_EQ(order.operationType, nqservice::OT_COMB_STRATEGY_RELEASE);
    EXPECT_EQ(order.combPositionKey, "ZH2");
    EXPECT_EQ(order.volume, 5);
    EXPECT_EQ(order.stockInfo.code, "10000023/10000022");
    EXPECT_EQ(order.account->getKey(), "A1");
    EXPECT_EQ(order.userName, "交易员甲");
    EXPECT_TRUE(messages->texts.isEmpty());
}

TEST_F(CombPanelTest, EveryReleasingRoleSendsAndOthersAreSilent)
{
    one->store(1030, combPosition(infoOne, "ZH1", 2));
    for (int role : {90, 91, 101, 100, 80, 92, 200, 400}) {
        SCOPED_TRACE(role);
        store->setUserDataInt(TC::UM_USER_ROLE, role);
        commands->commands.clear();
        start();
        WG::CMessageBox::TestHook hook;
        if (model()->checkDelegate() != nullptr) {
            tick("A1|ZH1");
        }
        clickButton(TC::COptionStrategyPositionPanel::OSP_RELEASE);
        // 200 and 400 may tick but not send; 92 may send but has nothing to tick.
        const bool sends = role != 200 && role != 400 && role != 92;
        EXPECT_EQ(commands->commands.size(), sends ? 1u : 0u);
        if (role == 92) {
            // No check box for this role: nothing is ticked, and the box says so.
            EXPECT_EQ(hook.count(), 1);
            EXPECT_TRUE(commands->commands.empty());
        } else {
            EXPECT_EQ(hook.count(), 0);
        }
        EXPECT_TRUE(messages->texts.isEmpty()) << "a refused role gets no message";
    }
}

TEST_F(CombPanelTest, NothingTickedShowsTheWarning)
{
    one->store(1030, combPosition(infoOne, "ZH1", 2));
    start();
    WG::CMessageBox::TestHook hook;
    clickButton(TC::COptionStrategyPositionPanel::OSP_RELEASE);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().text, QStringLiteral("未选择任何组合策略持仓!"));
    EXPECT_EQ(hook.last().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_TRUE(commands->commands.empty());
}

TEST_F(CombPanelTest, ACombinationWithoutNumberIsNotReleased)
{
    one->store(1030, combPosition(infoOne, "", 2));
    start();
    tick("A1|");
    clickButton(TC::COptionStrategyPositionPanel::OSP_RELEASE);
    EXPECT_TRUE(commands->commands.empty());
    ASSERT_EQ(messages->texts.size(), 1);
    EXPECT_EQ(messages->texts.front(), QStringLiteral("未找到对应的组合策略持仓！"));
    EXPECT_EQ(messages->types.front(), 4);
    EXPECT_EQ(messages->levels.front(), 1);
    EXPECT_FALSE(messages->modals.front());
}

TEST_F(CombPanelTest, ADoubleClickHandsTheRowToTheHost)
{
    one->store(1030, combPosition(infoOne, "ZH1", 2));
    start();
    QSignalSpy spy(panel.get(), &TC::COptionStrategyPositionPanel::sigCloseOptionCombPosition);
    const int row = table()->rowOfKey("A1|ZH1");
    ASSERT_GE(row, 0);
    EXPECT_TRUE(panel->handleEvent(WG::UE_CELL_ACTIVATED, 0, row, QStringLiteral("2"), nullptr));
    ASSERT_EQ(spy.count(), 1);
    const auto detail = spy.at(0).at(0).value<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>();
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->combId, "ZH1");
    panel->handleEvent(WG::UE_CELL_ACTIVATED, 0, 99, QString(), nullptr);
    EXPECT_EQ(spy.count(), 1) << "no row, no signal";
}

TEST_F(CombPanelTest, TheSavedStringRestoresTheTableLayout)
{
    start();
    table()->setColumnWidth(2, 177);
    table()->setColumnVisible(4, false);
    const QString saved = panel->param();
    EXPECT_FALSE(saved.isEmpty());
    panel.reset();
    start();
    EXPECT_NE(table()->columnWidth(2), 177);
    panel->setParam(saved);
    EXPECT_EQ(table()->columnWidth(2), 177);
    EXPECT_FALSE(table()->columnVisible(4));
    EXPECT_EQ(panel->param(), saved);
    panel->setParam(QString());
    EXPECT_EQ(table()->columnWidth(2), 177) << "an empty string changes nothing";
}

}  // namespace
