// The quick order of the strategy pages for one or two legs: what a leg loads,
// the available volume and its range, the price types, the checks in their
// order, and the one command with both legs, field by field.
#include "order/ccolorkeybutton.h"
#include "order/cstkoptionorderdialog.h"
#include "order/cstkoptionorderwidget.h"
#include "order/strategyorderfixture.h"
#include "seam/uievents.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cquotesgraphwidget.h"
#include "toolkit/csimpletextwidget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QLineEdit>
#include <QTimer>

#include <climits>
#include <memory>
#include <thread>

namespace {

using TC::CStkOptionOrderDialog;
using TC::CStkOptionOrderWidget;

class StkOptionOrderDialog : public ordertest::StrategyOrderTest {
protected:
    void TearDown() override
    {
        dialog.reset();
        StrategyOrderTest::TearDown();
    }
    CStkOptionOrderDialog* open(const QList<TC::CStrategyStockData>& legs)
    {
        dialog = std::make_unique<CStkOptionOrderDialog>(legs.size(), nullptr);
        dialog->setLegs(legs);
        dialog->show();
        return dialog.get();
    }
    // A bull call spread: buy the 2.9 call, sell the 3.0 call, two of each.
    CStkOptionOrderDialog* openSpread()
    {
        return open({leg("10000010", nqservice::OT_BUY, 2), leg("10000011", nqservice::OT_SELL, 2)});
    }
    static void selectAccount(CStkOptionOrderWidget* widget, const char* key)
    {
        widget->getAccountCombo()->setCurrentIndex(widget->getAccountCombo()->findData(QString::fromLatin1(key)));
    }
    static void selectType(CStkOptionOrderWidget* widget, int type)
    {
        const int index = widget->getPriceTypeCombo()->findData(type);
        ASSERT_GE(index, 0) << type;
        widget->getPriceTypeCombo()->setCurrentIndex(index);
    }
    static void setVolume(CStkOptionOrderWidget* widget, int volume)
    {
        widget->getVolumeCell()->setInt(volume);
        widget->handleEvent(WG::UE_SPIN_CHANGED, CStkOptionOrderWidget::ID_VOLUME_CELL, 0, QString(), nullptr);
    }
    void click(int id) { dialog->handleEvent(WG::UE_BUTTON_CLICKED, id, 0, QString(), nullptr); }
    CStkOptionOrderWidget* first() const { return dialog->getOrderWidget(0); }
    CStkOptionOrderWidget* second() const { return dialog->getOrderWidget(1); }

    std::unique_ptr<CStkOptionOrderDialog> dialog;
};

TEST_F(StkOptionOrderDialog, EachLegLoadsItsOperationTitleVolumeAndAccountsWithoutADefault)
{
    openSpread();
    EXPECT_EQ(dialog->title(), QStringLiteral("快速下单"));
    EXPECT_EQ(dialog->getLegCount(), 2);
    EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(dialog->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(first()->objectName(), QStringLiteral("stk_option_order_widget"));
    EXPECT_EQ(first()->width(), 262);
    // Edge: 18 gives " 可买开", 19 gives " 可卖开".
    EXPECT_EQ(first()->getOperationType(), nqservice::OT_BUY_OPEN);
    EXPECT_EQ(first()->getAvailableCell()->cellName(), QStringLiteral(" 可买开"));
    EXPECT_EQ(second()->getOperationType(), nqservice::OT_SELL_OPEN);
    EXPECT_EQ(second()->getAvailableCell()->cellName(), QStringLiteral(" 可卖开"));
    EXPECT_EQ(first()->getTitleText()->getText(), QStringLiteral("买入开仓:腿10000010"));
    EXPECT_EQ(second()->getTitleText()->getText(), QStringLiteral("卖出开仓:腿10000011"));
    EXPECT_EQ(first()->getVolumeCell()->toInt(), 2);
    EXPECT_EQ(first()->getOrderCount(), 2);
    ASSERT_EQ(first()->getAccountCombo()->count(), 2) << "FO001 serves commodity options";
    EXPECT_EQ(first()->getAccountCombo()->currentIndex(), -1) << "no account stands pre-selected";
    QList<int> types;
    for (int i = 0; i < first()->getPriceTypeCombo()->count(); ++i) {
        types << first()->getPriceTypeCombo()->itemData(i).toInt();
    }
    EXPECT_EQ(types, (QList<int>{11, 26, 27, 28, 29})) << "the SSE's types";
    EXPECT_TRUE(first()->getPriceEdit()->isEnabled()) << "a fixed type is typed";
    EXPECT_TRUE(first()->getSuperPriceCell()->isHidden()) << "no super price for a fixed type";
    EXPECT_EQ(dialog->getQuotesWidget(0)->stockCode(), QStringLiteral("10000010.SH"));
    EXPECT_EQ(dialog->getOrderButton()->text(), QStringLiteral("下单"));
    EXPECT_EQ(dialog->getOrderButton()->colorKey(), QStringLiteral("clr_global_rise"));
    EXPECT_EQ(dialog->getCancelButton()->text(), QStringLiteral("取消"));
}

TEST_F(StkOptionOrderDialog, OneLegHasOneWidgetAndOnePicture)
{
    open({leg("10000012", nqservice::OT_BUY, 1)});
    EXPECT_EQ(dialog->getLegCount(), 1);
    EXPECT_EQ(second(), nullptr);
    EXPECT_EQ(dialog->getQuotesWidget(1), nullptr);
    EXPECT_LT(first()->mapTo(dialog.get(), QPoint(0, 0)).x(),
              dialog->getQuotesWidget(0)->mapTo(dialog.get(), QPoint(0, 0)).x())
        << "the picture to the widget's right";
}

TEST_F(StkOptionOrderDialog, ABuyWithAnEmptyPriceIsUnboundedUntilAPriceComes)
{
    openSpread();
    selectAccount(first(), "SO001");
    first()->getPriceEdit()->setText(QString());
    EXPECT_EQ(first()->getAvailableVolume(), LLONG_MAX);
    EXPECT_EQ(first()->getAvailableCell()->text(), QStringLiteral("9223372036854775807"));
    first()->getVolumeCell()->lineEdit()->setText(QStringLiteral("2147483647"));
    EXPECT_TRUE(first()->getVolumeCell()->hasAcceptableInput()) << "the range stops at 0x7FFFFFFF";
    const std::size_t asked = center->calculator->asks.size();
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));
    ASSERT_GT(center->calculator->asks.size(), asked) << "a price asks the calculator";
    const ordertest::CVolumeAsk& ask = center->calculator->asks.back();
    EXPECT_EQ(ask.code, "10000010");
    EXPECT_EQ(ask.operation, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(ask.hedge, 49);
    EXPECT_EQ(ask.offset, 48);
    EXPECT_EQ(ask.cover, 48);
    EXPECT_DOUBLE_EQ(ask.price, 0.161);
    EXPECT_EQ(first()->getAvailableVolume(), 37);
    first()->getVolumeCell()->setInt(38);
    EXPECT_FALSE(first()->getVolumeCell()->hasAcceptableInput());
    first()->getVolumeCell()->setInt(37);
    EXPECT_TRUE(first()->getVolumeCell()->hasAcceptableInput());
}

TEST_F(StkOptionOrderDialog, ASellAsksTheCalculatorWhateverThePriceAndTheTimerKeepsAsking)
{
    openSpread();
    EXPECT_EQ(second()->getAvailableVolume(), 0) << "no account, nothing available";
    selectAccount(second(), "SO002");
    second()->getPriceEdit()->setText(QString());
    EXPECT_EQ(center->calculator->asks.back().operation, nqservice::OT_SELL_OPEN);
    EXPECT_EQ(second()->getAvailableVolume(), 37);
    ASSERT_NE(second()->getTimer(), nullptr);
    EXPECT_TRUE(second()->getTimer()->isActive());
    EXPECT_EQ(second()->getTimer()->interval(), 500);
    center->calculator->volume = 12;
    second()->slotCanOrderNum();
    EXPECT_EQ(second()->getAvailableCell()->text(), QStringLiteral("12"));
    // An account the trading services don't know has nothing available.
    center->data->accounts.erase(utils::hash(std::string("SO002")));
    second()->slotCanOrderNum();
    EXPECT_EQ(second()->getAvailableVolume(), 0);
}

TEST_F(StkOptionOrderDialog, AMarketTypeShowsMarketAndHidesAvailableAndSuperPrice)
{
    openSpread();
    selectType(first(), 27);
    EXPECT_EQ(first()->getPriceEdit()->text(), QStringLiteral("市价"));
    EXPECT_FALSE(first()->getPriceEdit()->isEnabled());
    EXPECT_TRUE(first()->getAvailableCell()->isHidden());
    EXPECT_TRUE(first()->getSuperPriceCell()->isHidden());
    selectType(first(), 11);
    EXPECT_FALSE(first()->getAvailableCell()->isHidden());
    EXPECT_TRUE(first()->getPriceEdit()->isEnabled());
}

TEST_F(StkOptionOrderDialog, PercentUnitsCountOfWhatIsAvailable)
{
    openSpread();
    selectAccount(first(), "SO001");
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));  // 37 available
    setVolume(first(), 10);
    first()->slotUnitClicked(QStringLiteral("%"));
    EXPECT_FALSE(first()->getPercentVolumeText()->isHidden());
    EXPECT_EQ(first()->getOrderCount(), 9) << "27.027 % of 37, truncated";
    first()->slotUnitClicked(QStringLiteral("张"));
    EXPECT_TRUE(first()->getPercentVolumeText()->isHidden());
    EXPECT_EQ(first()->getVolumeCell()->toInt(), 9);
}

TEST_F(StkOptionOrderDialog, ChecksRunInOrderWithTheirTipsAndSendNothing)
{
    openSpread();
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择账号"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor, first()->getAccountCombo());
    selectAccount(first(), "SO001");
    first()->getPriceTypeCombo()->setCurrentIndex(-1);
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择报价方式"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor, first()->getPriceTypeCombo());
    selectType(first(), 11);
    setVolume(first(), 0);
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("下单量为0"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor, first()->getVolumeCell());
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), 0);
}

TEST_F(StkOptionOrderDialog, AFailingSecondLegSendsNothingAndLeavesBothLegsOnScreen)
{
    openSpread();
    selectAccount(first(), "SO001");
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);  // the second leg has no account
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择账号"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor, second()->getAccountCombo());
    selectAccount(second(), "SO001");
    second()->getPriceEdit()->setText(QStringLiteral("0"));
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);  // the second leg has no price
    EXPECT_EQ(messages->texts, QStringList{QStringLiteral("委托价 0 错误, 无法下单")});
    EXPECT_TRUE(commands->calls.empty()) << "not even the leg that passed";
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(first()->getPriceEdit()->text(), QStringLiteral("0.1610"));
    EXPECT_EQ(first()->getOrderCount(), 2);
    EXPECT_EQ(second()->getOrderCount(), 2);
}

TEST_F(StkOptionOrderDialog, ABullCallSpreadOnTwoAccountsAtFixedPricesIsOneCommandFieldByField)
{
    openSpread();
    selectAccount(first(), "SO001");
    selectAccount(second(), "SO002");
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));
    second()->getPriceEdit()->setText(QStringLiteral("0.1190"));
    setVolume(second(), 3);
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    EXPECT_EQ(call.traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(call.hedgeType, 0);
    EXPECT_EQ(call.stopLossType, 0);
    EXPECT_FALSE(call.autoHedge);
    EXPECT_TRUE(call.confirmed);
    EXPECT_TRUE(call.callbackEmpty);
    EXPECT_TRUE(call.hedgeParamsEmpty);
    EXPECT_EQ(call.strategyName, "");
    EXPECT_EQ(call.platform, 0);
    EXPECT_TRUE(call.platformParamsEmpty);
    EXPECT_EQ(call.limitedPriceType, 0);
    EXPECT_TRUE(call.remark.isEmpty());
    EXPECT_FALSE(call.algorithmic);
    EXPECT_EQ(call.extra, 0);
    EXPECT_EQ(call.etfHedge, -1);
    EXPECT_TRUE(call.reservedEmpty);
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}, {"SO002", 1.0}}));
    ASSERT_EQ(call.params.size(), 2u);
    const auto& buy = call.params.at(0);
    EXPECT_EQ(buy->account->getKey(), "SO001");
    EXPECT_EQ(buy->stockInfo.market, "SH");
    EXPECT_EQ(buy->stockInfo.code, "10000010");
    EXPECT_EQ(buy->stockInfo.name, "50ETF购11月2900");
    EXPECT_EQ(buy->operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(buy->priceType, nqservice::PT_FIX);
    EXPECT_DOUBLE_EQ(buy->price, 0.161);
    EXPECT_EQ(buy->volume, 2);
    EXPECT_EQ(buy->hedgeFlag, 49);
    EXPECT_EQ(buy->orderKind, 5);
    EXPECT_DOUBLE_EQ(buy->superPrice, 0.0) << "the cell is hidden for a fixed type";
    const auto& sell = call.params.at(1);
    EXPECT_EQ(sell->account->getKey(), "SO002");
    EXPECT_EQ(sell->stockInfo.code, "10000011");
    EXPECT_EQ(sell->operationType, nqservice::OT_SELL_OPEN);
    EXPECT_DOUBLE_EQ(sell->price, 0.119);
    EXPECT_EQ(sell->volume, 3);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(StkOptionOrderDialog, BothLegsOnOneAccountAtMarketAreOneWeight)
{
    openSpread();
    for (CStkOptionOrderWidget* widget : {first(), second()}) {
        selectAccount(widget, "SO001");
        selectType(widget, 27);
    }
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}}));
    ASSERT_EQ(call.params.size(), 2u);
    for (const auto& param : call.params) {
        EXPECT_EQ(param->priceType, 27);
        EXPECT_DOUBLE_EQ(param->price, 0.0) << "a market order carries no price";
        EXPECT_EQ(param->volume, 2);
        EXPECT_EQ(param->account->getKey(), "SO001");
    }
    EXPECT_EQ(call.params.at(0)->operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(call.params.at(1)->operationType, nqservice::OT_SELL_OPEN);
}

TEST_F(StkOptionOrderDialog, ATypeThatFollowsTheBookTakesQuotesAndItsSuperPrice)
{
    openSpread();
    // The opponent's best (14) follows the book and may add a super price.
    first()->getPriceTypeCombo()->addItem(QStringLiteral("对手价"), 14);
    selectType(first(), 14);
    EXPECT_FALSE(first()->getSuperPriceCell()->isHidden());
    EXPECT_FALSE(first()->getPriceEdit()->isEnabled());
    EXPECT_EQ(first()->getPriceEdit()->text(), QStringLiteral("0.1610")) << "the ask for a buy";
    QSignalSpy applied(dialog.get(), &CStkOptionOrderDialog::sigPriceApplied);
    std::thread feed([&] {
        for (int i = 1; i <= 100; ++i) {
            book("10000010", 0.1600, 0.1590, 0.1610 + 0.0001 * i);
        }
    });
    feed.join();
    EXPECT_EQ(first()->getPriceEdit()->text(), QStringLiteral("0.1610")) << "nothing touched off the GUI thread";
    QApplication::processEvents();
    EXPECT_EQ(applied.count(), 1) << "a burst costs one update";
    EXPECT_EQ(first()->getPriceEdit()->text(), QStringLiteral("0.1710")) << "the newest quote";
    EXPECT_EQ(second()->getPriceEdit()->text().isEmpty(), false) << "the other leg keeps its own price";
    EXPECT_GT(dialog->getQuotesWidget(0)->pointCount(), 0);

    selectAccount(first(), "SO001");
    selectAccount(second(), "SO001");
    second()->getPriceEdit()->setText(QStringLiteral("0.1190"));
    first()->getSuperPriceCell()->setDouble(2.0);
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    const auto& buy = commands->calls.front().params.at(0);
    EXPECT_EQ(buy->priceType, 14);
    EXPECT_DOUBLE_EQ(buy->price, 0.171);
    EXPECT_NEAR(buy->superPrice, 0.02 * 0.171, 1e-12);
}

TEST_F(StkOptionOrderDialog, AnUnsendingRoleSendsNothingButTheDialogCloses)
{
    store->setUserDataInt(TC::UM_USER_ROLE, 102);
    openSpread();
    selectAccount(first(), "SO001");
    selectAccount(second(), "SO001");
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));
    second()->getPriceEdit()->setText(QStringLiteral("0.1190"));
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(StkOptionOrderDialog, OverTheLimitANoSendsNothingAndCancelCloses)
{
    openSpread();
    selectAccount(first(), "SO001");
    selectAccount(second(), "SO001");
    center->calculator->volume = 100;
    first()->getPriceEdit()->setText(QStringLiteral("0.1610"));
    second()->getPriceEdit()->setText(QStringLiteral("0.1190"));
    setVolume(first(), 60);
    WG::CMessageBox::TestHook boxes;
    boxes.queueAnswer(QMessageBox::No);
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量超过合规最大下单量50,是否自动拆单?"));
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(dialog->isVisible());
    click(CStkOptionOrderDialog::ID_CANCEL_BUTTON);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(StkOptionOrderDialog, AnUnknownContractCannotGo)
{
    open({leg("10009999", nqservice::OT_BUY, 1), leg("10000011", nqservice::OT_SELL, 1)});
    selectAccount(first(), "SO001");
    selectAccount(second(), "SO001");
    first()->getPriceEdit()->setText(QStringLiteral("0.1"));
    second()->getPriceEdit()->setText(QStringLiteral("0.1"));
    click(CStkOptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(messages->texts, QStringList{QStringLiteral("合约 10009999.SH 错误, 无法下单")});
    EXPECT_TRUE(commands->calls.empty());
}

}  // namespace
