// The quick order of three or more legs by copies: its rows and columns, the
// one price type for all legs, quotes queued under the lock and applied on the
// timer, the copies the money allows, the checks and the command of copies
// times each leg's quantity.
#include "order/ccolorkeybutton.h"
#include "order/chpfoptionmultiorderdata.h"
#include "order/chpfoptionmultiorderdatamodel.h"
#include "order/cstkoptionmultiorderdialog.h"
#include "order/strategyorderfixture.h"
#include "seam/uievents.h"
#include "toolkit/cbasetablecolumncomboxdelegate.h"
#include "toolkit/cbasetablecolumndoublespinboxdelegate.h"
#include "toolkit/ccombobox.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cstandardexhpftable.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QTimer>

#include <climits>
#include <memory>
#include <thread>

namespace {

using TC::CHpfOptionMultiOrderData;
using TC::CStkOptionMultiOrderDialog;

const QString kBuyPut = QStringLiteral("10000020.SH");
const QString kSellPut = QStringLiteral("10000021.SH");
const QString kSellCall = QStringLiteral("10000012.SH");
const QString kBuyCall = QStringLiteral("10000013.SH");

class StkOptionMultiOrderDialog : public ordertest::StrategyOrderTest {
protected:
    void TearDown() override
    {
        dialog.reset();
        StrategyOrderTest::TearDown();
    }
    CStkOptionMultiOrderDialog* open(const QList<TC::CStrategyStockData>& legs)
    {
        dialog = std::make_unique<CStkOptionMultiOrderDialog>(nullptr);
        dialog->setLegs(legs);
        dialog->show();
        return dialog.get();
    }
    // An iron condor: buy the 2.9 put, sell the 3.0 put, sell the 3.1 call, buy the 3.2 call.
    CStkOptionMultiOrderDialog* openCondor(long long quantity = 1)
    {
        return open({leg("10000020", nqservice::OT_BUY, quantity), leg("10000021", nqservice::OT_SELL, quantity),
                     leg("10000012", nqservice::OT_SELL, quantity), leg("10000013", nqservice::OT_BUY, quantity)});
    }
    void selectType(int type)
    {
        WG::CComboBox* combo = dialog->getPriceTypeCombo();
        if (combo->findData(type) < 0) {
            combo->addItem(QString::number(type), type);  // a type another exchange offers
        }
        combo->setCurrentIndex(combo->findData(type));
    }
    void setPrice(const QString& code, double price)
    {
        dialog->getPriceDelegate()->setItemValue(code.toStdString(), price, true);
    }
    // Hand prices of the condor: 0.0300, 0.0600, 0.0500, 0.0200.
    void priceCondor()
    {
        setPrice(kBuyPut, 0.03);
        setPrice(kSellPut, 0.06);
        setPrice(kSellCall, 0.05);
        setPrice(kBuyCall, 0.02);
    }
    void setCopies(int copies)
    {
        dialog->getCopiesCell()->setInt(copies);
    }
    void click(int id) { dialog->handleEvent(WG::UE_BUTTON_CLICKED, id, 0, QString(), nullptr); }
    TC::CHpfOptionMultiOrderData* row(const QString& code) const
    {
        return dynamic_cast<CHpfOptionMultiOrderData*>(dialog->getLegModel()->getDataByKey(code).get());
    }

    std::unique_ptr<CStkOptionMultiOrderDialog> dialog;
};

TEST_F(StkOptionMultiOrderDialog, ARowPerLegWithItsColumns)
{
    openCondor(2);
    QAbstractItemModelTester tester(dialog->getLegTable()->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(dialog->title(), QStringLiteral("快速下单"));
    EXPECT_EQ(dialog->size(), QSize(800, 350));
    TC::CHpfOptionMultiOrderDataModel* model = dialog->getLegModel();
    ASSERT_EQ(model->size(), 4);
    ASSERT_EQ(model->columnCount(), 8);
    QStringList headers;
    for (int column = 0; column < model->columnCount(); ++column) {
        headers << model->columnHeader(column);
    }
    EXPECT_EQ(headers, (QStringList{QStringLiteral("代码"), QStringLiteral("名称"), QStringLiteral("类别"),
                                    QStringLiteral("开平"), QStringLiteral("买卖"), QStringLiteral("每份数量"),
                                    QStringLiteral("价格"), QStringLiteral("账号")}));
    EXPECT_EQ(model->columnType(0), 10);
    EXPECT_EQ(model->columnType(4), 10);
    EXPECT_EQ(model->columnType(5), 2);
    EXPECT_EQ(model->columnType(6), 0);
    EXPECT_EQ(model->columnType(7), 0);
    const CHpfOptionMultiOrderData* put = row(kBuyPut);
    ASSERT_NE(put, nullptr);
    EXPECT_EQ(put->displayText(0), kBuyPut);
    EXPECT_EQ(put->displayText(1), QStringLiteral("50ETF沽11月2900"));
    EXPECT_EQ(put->displayText(2), QStringLiteral("认沽"));
    EXPECT_EQ(put->displayText(3), QStringLiteral("开仓"));
    EXPECT_EQ(put->displayText(4), QStringLiteral("买入"));
    EXPECT_EQ(put->displayText(5), QStringLiteral("2"));
    EXPECT_EQ(put->intValue(5), 2);
    EXPECT_EQ(put->intValue(4), 0x7fffffff);
    EXPECT_EQ(put->doubleValue(5), DBL_MAX);
    EXPECT_EQ(put->longLongValue(5), LLONG_MAX);
    EXPECT_EQ(put->displayText(6), QString());
    EXPECT_EQ(put->keyString(), "10000020.SH");
    EXPECT_EQ(row(kSellCall)->displayText(2), QStringLiteral("认购"));
    EXPECT_EQ(row(kSellCall)->displayText(4), QStringLiteral("卖出"));
    EXPECT_EQ(row(kSellCall)->buySell, nqservice::OT_SELL);
    CHpfOptionMultiOrderData blank;
    EXPECT_EQ(blank.displayText(5), QStringLiteral("-")) << "a quantity not yet known";
    EXPECT_EQ(dialog->getAccountDelegate()->items("10000020.SH"), (QStringList{QStringLiteral("SO001"), QStringLiteral("SO002")}));
    EXPECT_EQ(dialog->subscriptionCount(), 4);
    EXPECT_TRUE(dialog->getTimer()->isActive());
    EXPECT_EQ(dialog->getTimer()->interval(), 500);
}

TEST_F(StkOptionMultiOrderDialog, OnePriceTypeForAllLegs)
{
    openCondor();
    EXPECT_EQ(dialog->getPriceTypeCombo()->currentData().toInt(), 11);
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        EXPECT_TRUE(dialog->getPriceDelegate()->itemVisible(code.toStdString())) << "a fixed type is typed per row";
    }
    EXPECT_EQ(dialog->priceText(kBuyPut), QStringLiteral("0.0300")) << "the last price to start from";
    EXPECT_TRUE(dialog->getSuperPriceCell()->isHidden());
    selectType(27);
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        EXPECT_FALSE(dialog->getPriceDelegate()->itemVisible(code.toStdString()));
        EXPECT_EQ(dialog->priceText(code), QStringLiteral("市价"));
    }
    EXPECT_TRUE(dialog->getAvailableCell()->isHidden());
    selectType(14);  // the opponent's best: the other side of each row
    EXPECT_FALSE(dialog->getAvailableCell()->isHidden());
    EXPECT_FALSE(dialog->getSuperPriceCell()->isHidden());
    EXPECT_FALSE(dialog->getPriceDelegate()->itemVisible(kBuyPut.toStdString()));
    EXPECT_EQ(dialog->priceText(kBuyPut), QStringLiteral("0.0310")) << "a buy takes the ask";
    EXPECT_EQ(dialog->priceText(kSellPut), QStringLiteral("0.0590")) << "a sell takes the bid";
}

TEST_F(StkOptionMultiOrderDialog, QuotesWaitUnderTheLockAndTheTimerAppliesTheNewest)
{
    openCondor();
    selectType(14);
    const long long before = dialog->rowUpdates();
    std::thread feed([&] {
        for (int i = 1; i <= 250; ++i) {
            book("10000020", 0.03, 0.029, 0.031 + 0.0001 * (i % 50));
            book("10000021", 0.06, 0.059 - 0.0001 * (i % 40), 0.061);
            book("10000012", 0.05, 0.049, 0.051);
            book("10000013", 0.02, 0.019, 0.021);
        }
    });
    feed.join();
    EXPECT_EQ(dialog->queuedPrices(), 4) << "one a code, however many came";
    EXPECT_EQ(dialog->rowUpdates(), before) << "no table work on the service thread";
    dialog->slotTimeOut();
    EXPECT_EQ(dialog->queuedPrices(), 0);
    EXPECT_EQ(dialog->rowUpdates(), before + 4) << "one update per leg";
    EXPECT_EQ(dialog->priceText(kBuyPut), QStringLiteral("0.0310")) << "i = 250: the newest ask";
    EXPECT_EQ(dialog->priceText(kSellPut), QStringLiteral("0.0580")) << "i = 250: the newest bid";

    // With a fixed type the queue waits, one price a code, until the type changes.
    selectType(11);
    book("10000020", 0.03, 0.029, 0.0333);
    book("10000020", 0.03, 0.029, 0.0344);
    dialog->slotTimeOut();
    EXPECT_EQ(dialog->queuedPrices(), 1);
    EXPECT_EQ(dialog->rowUpdates(), before + 4);
    selectType(14);
    dialog->slotTimeOut();
    EXPECT_EQ(dialog->queuedPrices(), 0);
    EXPECT_EQ(dialog->priceText(kBuyPut), QStringLiteral("0.0344"));
}

TEST_F(StkOptionMultiOrderDialog, CopiesForHandComputedFundsPricesFeesAndMargins)
{
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    priceCondor();
    // Two legs on one account add up: 1.6 + 0.03 * 10000 = 301.6, 3000 * 1.1 = 3300,
    // 3300, 1.6 + 0.02 * 10000 = 201.6; 7103.2 a copy; 100,000 元 pay for 14.
    dialog->calcAvailableCopies();
    EXPECT_EQ(dialog->getAvailableCopies(), 14);
    EXPECT_EQ(dialog->getAvailableCell()->text(), QStringLiteral("14"));
    dialog->getCopiesCell()->setInt(15);
    EXPECT_FALSE(dialog->getCopiesCell()->hasAcceptableInput());
    dialog->getCopiesCell()->setInt(14);
    EXPECT_TRUE(dialog->getCopiesCell()->hasAcceptableInput());
    // The short call on SO002 (20,000 元): 20000 / 3300 = 6 beside 100000 / 3803.2 = 26.
    dialog->setRowAccount(kSellCall, QStringLiteral("SO002"));
    EXPECT_EQ(dialog->getAvailableCopies(), 6);
    // Two copies of each leg cost twice as much.
    so2->detail->availableFunds = 40000.0;
    dialog->handleEvent(CStkOptionMultiOrderDialog::UE_ACCOUNT_FUNDS, 0, 0, QString(), nullptr);
    EXPECT_EQ(dialog->getAvailableCopies(), 12);
    // Funds unknown: the account has no say.
    so2->detail.reset();
    dialog->handleEvent(CStkOptionMultiOrderDialog::UE_ACCOUNT_DATA, 0, 0, QString(), nullptr);
    EXPECT_EQ(dialog->getAvailableCopies(), 26);
}

TEST_F(StkOptionMultiOrderDialog, ALegWithAnUnknownAccountHasNoShareAndIsRejected)
{
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    priceCondor();
    dialog->setRowAccount(kSellCall, QStringLiteral("SO999"));  // no such account: no choice
    EXPECT_EQ(dialog->getAccountDelegate()->currentIndex(kSellCall.toStdString()), -1);
    EXPECT_EQ(dialog->getAvailableCopies(), 26) << "100000 / 3803.2 without the short call";
    setCopies(1);
    WG::CMessageBox::TestHook boxes;
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().kind, QStringLiteral("warning"));
    EXPECT_EQ(boxes.last().title, QStringLiteral("提示"));
    EXPECT_EQ(boxes.last().text, QStringLiteral("请选择账号"));
    EXPECT_EQ(boxes.last().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(StkOptionMultiOrderDialog, WithNoRowPricedEveryNeedIsTheFeeAndTheCopiesAreFinite)
{
    // Contracts without a quote: each buy costs its fee of 1.6 only.
    for (const char* code : {"10000031", "10000032", "10000041"}) {
        const auto detail = exchange->getCodeInfo(QString::fromLatin1(code) + QStringLiteral(".SH"));
        center->fees.set("SO001", detail->key(), 1.6, 0.0, 0.1);
    }
    open({leg("10000031", nqservice::OT_BUY, 1), leg("10000032", nqservice::OT_BUY, 1),
          leg("10000041", nqservice::OT_BUY, 1)});
    EXPECT_FALSE(utils::isUsable(dialog->getPriceDelegate()->itemValue("10000031.SH"))) << "no price yet";
    EXPECT_EQ(dialog->getAvailableCopies(), 20833) << "100000 / 4.8";
    EXPECT_LT(dialog->getAvailableCopies(), LLONG_MAX);
}

TEST_F(StkOptionMultiOrderDialog, NoFeeDataLeavesTheLargestNumberAndTheRangeAtTheLargestInt)
{
    center->fees.fees.clear();
    openCondor();
    EXPECT_EQ(dialog->getAvailableCopies(), LLONG_MAX);
    EXPECT_EQ(dialog->getAvailableCell()->text(), QStringLiteral("9223372036854775807"));
    dialog->getCopiesCell()->lineEdit()->setText(QStringLiteral("2147483647"));
    EXPECT_TRUE(dialog->getCopiesCell()->hasAcceptableInput());
}

TEST_F(StkOptionMultiOrderDialog, ChecksInTheirOrder)
{
    openCondor(0);
    dialog->getPriceTypeCombo()->setCurrentIndex(-1);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择报价方式"));
    selectType(11);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("下单量为0"));
    EXPECT_EQ(WG::CMessageTip::lastTip().anchor, dialog->getCopiesCell());
    setCopies(2);
    WG::CMessageBox::TestHook boxes;
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("下单量为0")) << "no leg has a quantity";
    EXPECT_TRUE(commands->calls.empty());

    CStkOptionMultiOrderDialog empty(nullptr);
    empty.setLegs({});
    EXPECT_EQ(empty.getLegModel()->size(), 0) << "no legs, no rows";
}

TEST_F(StkOptionMultiOrderDialog, AFourLegCondorOnOneAccountAtFixedPricesFieldByField)
{
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    priceCondor();
    setCopies(3);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    EXPECT_EQ(call.traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(call.hedgeType, 0);
    EXPECT_EQ(call.stopLossType, 0);
    EXPECT_FALSE(call.autoHedge);
    EXPECT_TRUE(call.confirmed);
    EXPECT_TRUE(call.callbackEmpty);
    EXPECT_EQ(call.strategyName, "");
    EXPECT_EQ(call.platform, 0);
    EXPECT_EQ(call.limitedPriceType, 0);
    EXPECT_FALSE(call.algorithmic);
    EXPECT_EQ(call.extra, 0);
    EXPECT_EQ(call.etfHedge, -1);
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}}));
    ASSERT_EQ(call.params.size(), 4u);
    const struct {
        const char* code;
        nqservice::EOperationType operation;
        double price;
    } expected[] = {{"10000020", nqservice::OT_BUY_OPEN, 0.03},
                    {"10000021", nqservice::OT_SELL_OPEN, 0.06},
                    {"10000012", nqservice::OT_SELL_OPEN, 0.05},
                    {"10000013", nqservice::OT_BUY_OPEN, 0.02}};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& param = call.params.at(i);
        EXPECT_EQ(param->stockInfo.code, expected[i].code) << i;
        EXPECT_EQ(param->stockInfo.market, "SH");
        EXPECT_EQ(param->operationType, expected[i].operation) << i;
        EXPECT_EQ(param->priceType, nqservice::PT_FIX);
        EXPECT_DOUBLE_EQ(param->price, expected[i].price) << i;
        EXPECT_EQ(param->volume, 3) << "three copies of one";
        EXPECT_EQ(param->account->getKey(), "SO001");
        EXPECT_EQ(param->hedgeFlag, 49);
        EXPECT_EQ(param->orderKind, 5);
        EXPECT_DOUBLE_EQ(param->superPrice, 0.0);
    }
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(StkOptionMultiOrderDialog, SeveralAccountsAndQuantitiesAtTheOpponentsBestWithASuperPrice)
{
    open({leg("10000020", nqservice::OT_BUY, 1), leg("10000021", nqservice::OT_SELL, 2),
          leg("10000012", nqservice::OT_SELL, 2), leg("10000013", nqservice::OT_BUY, 1)});
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    dialog->setRowAccount(kSellCall, QStringLiteral("SO002"));
    selectType(14);
    dialog->getSuperPriceCell()->setDouble(1.0);
    setCopies(2);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}, {"SO002", 1.0}}));
    ASSERT_EQ(call.params.size(), 4u);
    EXPECT_EQ(call.params.at(0)->volume, 2);
    EXPECT_EQ(call.params.at(1)->volume, 4) << "two copies of two";
    EXPECT_EQ(call.params.at(2)->volume, 4);
    EXPECT_EQ(call.params.at(2)->account->getKey(), "SO002");
    EXPECT_EQ(call.params.at(3)->volume, 2);
    EXPECT_EQ(call.params.at(0)->priceType, 14);
    EXPECT_DOUBLE_EQ(call.params.at(0)->price, 0.031) << "the ask of a buy";
    EXPECT_DOUBLE_EQ(call.params.at(1)->price, 0.059) << "the bid of a sell";
    EXPECT_NEAR(call.params.at(0)->superPrice, 0.01 * 0.031, 1e-12);
}

TEST_F(StkOptionMultiOrderDialog, AtMarketEveryLegGoesWithTheMarketType)
{
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    selectType(27);
    setCopies(1);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    for (const auto& param : commands->calls.front().params) {
        EXPECT_EQ(param->priceType, 27);
        EXPECT_EQ(param->volume, 1);
    }
}

TEST_F(StkOptionMultiOrderDialog, OneLegOverTheLimitWithNoSendsNothingForAnyLeg)
{
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    priceCondor();
    exchange->getCodeInfo(kSellCall)->maxOrderVolume = 5;
    center->fees.fees.clear();  // the money does not bound the copies here
    dialog->calcAvailableCopies();
    setCopies(6);
    WG::CMessageBox::TestHook boxes;
    boxes.queueAnswer(QMessageBox::No);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量超过合规最大下单量5,是否自动拆单?"));
    EXPECT_TRUE(commands->calls.empty()) << "the legs before it don't go either";
    EXPECT_EQ(messages->texts, QStringList{QStringLiteral("单笔下单量超过合规最大下单量5")});
    EXPECT_TRUE(dialog->isVisible());
    boxes.queueAnswer(QMessageBox::Yes);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.front().params.size(), 4u);
    EXPECT_EQ(commands->calls.front().params.at(2)->volume, 6) << "whole: the broker splits it";
}

TEST_F(StkOptionMultiOrderDialog, AnUnsendingRoleSendsNothingAndCancelRejects)
{
    store->setUserDataInt(TC::UM_USER_ROLE, 200);
    openCondor();
    for (const QString& code : {kBuyPut, kSellPut, kSellCall, kBuyCall}) {
        dialog->setRowAccount(code, QStringLiteral("SO001"));
    }
    setCopies(1);
    click(CStkOptionMultiOrderDialog::ID_ORDER_BUTTON);
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);

    openCondor();
    click(CStkOptionMultiOrderDialog::ID_CANCEL_BUTTON);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(dialog->isVisible());
}

}  // namespace
