// The desk as the host of the combination panel: "opsp" is one of its panels,
// docked, saved and restored; a double click on a combination asks whether to
// release it and close both legs, and on Yes sends the release, then the
// closing command.
#include "app/ccombclosehandler.h"
#include "app/cdeskwindow.h"
#include "app/cpanelfactory.h"
#include "positions/combfixture.h"
#include "seam/tradinghelpers.h"

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QTemporaryDir>

namespace {

using positionstest::combPosition;

class CombCloseTest : public positionstest::CombPanelTest {
protected:
    void SetUp() override
    {
        CombPanelTest::SetUp();
        auto bid = quote("10000010", 0.2, 0.18);
        bid->bidPrice1 = 0.1990;
        bid->askPrice1 = 0.2010;
        publish(bid);
        auto ask = quote("10000011", 0.12, 0.1);
        ask->bidPrice1 = 0.1180;
        ask->askPrice1 = 0.1220;
        publish(ask);
        spread = combPosition(infoOne, "Z00000001", 3, "CNSJC", "10000010", "10000011");
        spread->releaseVolume = 2;
    }
    desk::CPanelFactory combinationsOnly()
    {
        desk::CPanelFactory factory;
        factory.add(QStringLiteral("opsp"), QStringLiteral("组合持仓"), [](int id, QWidget* parent) {
            return new TC::COptionStrategyPositionPanel(id, parent);
        });
        return factory;
    }
    boost::shared_ptr<nqservice::CStkOptCombPositionDetail> spread;
    QTemporaryDir deskDir;
};

TEST_F(CombCloseTest, TheDeskOffersTheCombinationPanel)
{
    const desk::CPanelFactory factory = desk::CPanelFactory::withBuiltins();
    ASSERT_TRUE(factory.has(QStringLiteral("opsp")));
    EXPECT_EQ(factory.title(QStringLiteral("opsp")), QStringLiteral("组合持仓"));
    EXPECT_EQ(factory.traderType(QStringLiteral("opsp")), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
}

TEST_F(CombCloseTest, EachLegClosesAtTheOtherSidesBestWithTheReleaseVolume)
{
    const auto orders = desk::CCombCloseHandler::closingOrders(*spread);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[0]->operationType, nqservice::OT_SELL_CLOSE);
    EXPECT_EQ(static_cast<int>(orders[0]->operationType), 33);
    EXPECT_EQ(orders[0]->stockInfo.code, "10000010");
    EXPECT_EQ(orders[0]->stockInfo.market, "SH");
    EXPECT_EQ(orders[0]->stockInfo.name, "50ETF购11月2900");
    EXPECT_DOUBLE_EQ(orders[0]->price, 0.1990);
    EXPECT_EQ(orders[1]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(static_cast<int>(orders[1]->operationType), 35);
    EXPECT_EQ(orders[1]->stockInfo.code, "10000011");
    EXPECT_DOUBLE_EQ(orders[1]->price, 0.1220);
    for (const auto& order : orders) {
        EXPECT_EQ(order->priceType, nqservice::PT_OPPONENT);
        EXPECT_EQ(order->volume, 2);
        EXPECT_EQ(order->account, infoOne);
        EXPECT_EQ(order->userName, "交易员甲");
    }
    const QString text = desk::CCombCloseHandler::question(*spread, orders);
    EXPECT_TRUE(text.contains(QStringLiteral("Z00000001"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("卖平 10000010 50ETF购11月2900 2张 对手价 0.1990"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("买平 10000011 50ETF购11月3000 2张 对手价 0.1220"))) << text.toStdString();
}

TEST_F(CombCloseTest, AShortStraddleBuysBothLegsBack)
{
    auto straddle = combPosition(infoOne, "Z2", 1, "KS", "10000011", "10000021");
    straddle->legOneType = '1';
    straddle->legTwoType = '1';
    const auto orders = desk::CCombCloseHandler::closingOrders(*straddle);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[0]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(orders[1]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(orders[1]->price, 0.0) << "no quote: the broker takes the other side's best itself";
    EXPECT_TRUE(desk::CCombCloseHandler::question(*straddle, orders).contains(QStringLiteral("对手价 -")));
}

TEST_F(CombCloseTest, YesSendsTheReleaseThenTheClosingCommand)
{
    WG::CMessageBox::TestHook hook;
    hook.queueAnswer(QMessageBox::Yes);
    EXPECT_TRUE(desk::CCombCloseHandler::closeCombination(nullptr, spread));
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("question"));
    EXPECT_EQ(hook.last().title, QStringLiteral("提示"));
    ASSERT_EQ(commands->commands.size(), 2u);
    const auto& release = commands->commands[0];
    ASSERT_EQ(release->params.size(), 1u);
    EXPECT_EQ(release->params[0]->operationType, nqservice::OT_COMB_STRATEGY_RELEASE);
    EXPECT_EQ(release->params[0]->combPositionKey, "Z00000001");
    EXPECT_EQ(release->params[0]->volume, 2);
    const auto& closing = commands->commands[1];
    ASSERT_EQ(closing->params.size(), 2u);
    EXPECT_EQ(closing->params[0]->operationType, nqservice::OT_SELL_CLOSE);
    EXPECT_EQ(closing->params[1]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(closing->traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
}

TEST_F(CombCloseTest, NoSendsNothing)
{
    WG::CMessageBox::TestHook hook;
    hook.queueAnswer(QMessageBox::No);
    EXPECT_FALSE(desk::CCombCloseHandler::closeCombination(nullptr, spread));
    EXPECT_EQ(hook.count(), 1);
    EXPECT_TRUE(commands->commands.empty());
}

TEST_F(CombCloseTest, NothingToReleaseSaysSo)
{
    spread->releaseVolume = 0;
    WG::CMessageBox::TestHook hook;
    EXPECT_FALSE(desk::CCombCloseHandler::closeCombination(nullptr, spread));
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("warning"));
    EXPECT_TRUE(commands->commands.empty());
}

TEST_F(CombCloseTest, ADoubleClickInTheDocksPanelReachesTheDesk)
{
    one->store(1030, spread);
    desk::CDeskWindow window(combinationsOnly(), deskDir.path(), 50);
    window.restore();
    window.show();
    auto* docked = dynamic_cast<TC::COptionStrategyPositionPanel*>(window.panel(QStringLiteral("opsp")));
    ASSERT_NE(docked, nullptr);
    ASSERT_NE(window.dock(QStringLiteral("opsp")), nullptr);
    EXPECT_EQ(window.dock(QStringLiteral("opsp"))->windowTitle(), QStringLiteral("组合持仓"));
    ASSERT_TRUE(docked->getTable()->getModel()->waitForIdle(5000));
    docked->getTable()->updateTable();
    const int row = docked->getTable()->rowOfKey("A1|Z00000001");
    ASSERT_GE(row, 0) << "the desk handed the ready accounts over";
    WG::CMessageBox::TestHook hook;
    hook.queueAnswer(QMessageBox::Yes);
    docked->handleEvent(WG::UE_CELL_ACTIVATED, 0, row, QString(), nullptr);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_TRUE(hook.last().text.contains(QStringLiteral("Z00000001")));
    EXPECT_EQ(commands->commands.size(), 2u);
}

TEST_F(CombCloseTest, TheDeskSavesAndRestoresThePanelsString)
{
    QString saved;
    {
        desk::CDeskWindow window(combinationsOnly(), deskDir.path(), 50);
        window.restore();
        auto* docked = dynamic_cast<TC::COptionStrategyPositionPanel*>(window.panel(QStringLiteral("opsp")));
        ASSERT_NE(docked, nullptr);
        docked->getTable()->setColumnWidth(2, 181);
        saved = docked->param();
        QString error;
        ASSERT_TRUE(window.saveLayout(&error)) << error.toStdString();
    }
    desk::CDeskWindow again(combinationsOnly(), deskDir.path(), 50);
    again.restore();
    auto* docked = dynamic_cast<TC::COptionStrategyPositionPanel*>(again.panel(QStringLiteral("opsp")));
    ASSERT_NE(docked, nullptr);
    EXPECT_EQ(docked->getTable()->columnWidth(2), 181);
    EXPECT_EQ(docked->param(), saved);
}

}  // namespace
