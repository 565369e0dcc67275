// The chain table's order flow: a press of a row's button opens the order
// dialog at the mouse; its answer becomes one command, field by field, or a
// message that says why not.
#include "board/boardfixture.h"
#include "board/coptionpricettable.h"
#include "order/coptionorderdialog.h"
#include "order/commandexpectations.h"
#include "order/orderfakes.h"
#include "seam/trading.h"
#include "seam/uievents.h"
#include "services/trading/cdesktradeclient.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cparametercell.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QPointer>
#include <QScreen>

namespace {

class CEmptySplitTradeClient : public trading::CDeskTradeClient {
public:
    std::vector<long long> splitEntrusts(long long, double, nqservice::EPriceType,
                                         const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>&,
                                         const std::vector<double>&, nqservice::EPositionType, std::string, std::string,
                                         nqservice::EOperationType, nqservice::EHedge_Flag_Type,
                                         boost::shared_ptr<utils::NQError>, bool, bool,
                                         const std::map<std::string, long long>&,
                                         const std::vector<long long>&) override
    {
        return {};
    }
};

class OrderFlow : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, true);
        center = boost::make_shared<ordertest::CFakeTraderCenter>();
        center->data->addAccount("SO001");
        center->data->addAccount("SO002");
        center->calculator->volume = 500;
        nqservice::TraderCenter::install(center);
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(new ordertest::CAllReadyLogin());
        utils::CManualSingletonT<TC::CTradeClient>::create<trading::CDeskTradeClient>();
        commands = utils::CManualSingletonT<TC::COvCommandCenter>::create<ordertest::CRecordingCommandCenter>();
        messages = utils::CManualSingletonT<TC::CMsgService>::create<ordertest::CRecordingMessages>();
        for (const char* code : {"10000011.SH", "10000021.SH"}) {
            exchange->getCodeInfo(QString::fromLatin1(code))->maxOrderVolume = 50;
        }
        store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), 0);
        store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceSplitAllowance), 1);
        auto call = quote("10000011", 0.1200, 0.1000);
        call->setAsk(1, 0.1210, 30);
        call->setBid(1, 0.1190, 20);
        call->upStopPrice = 0.4;
        publish(call);
        publish(quote("10000021", 0.0500, 0.0600));
        table = new TC::COptionPriceTTable(nullptr);
        table->resize(900, 400);
        table->setInstrument(QStringList{QStringLiteral("10000011.SH"), QStringLiteral("10000021.SH")});
        table->show();
        row = table->rowOfCode(QStringLiteral("10000011.SH"));
        ASSERT_GE(row, 0);
    }
    void TearDown() override
    {
        delete table;
        utils::CManualSingletonT<TC::CMsgService>::destroy();
        utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(nullptr);
        nqservice::TraderCenter::destroy();
        BoardTest::TearDown();
    }
    TC::COptionOrderDialog* press(int operationIndex)
    {
        table->handleEvent(WG::UE_BUTTON_CLICKED, row * 100 + operationIndex, 0, QString(), nullptr);
        return table->getOrderDialog();
    }
    // Fills the dialog with a limit order and confirms.
    void order(TC::COptionOrderDialog* dialog, int volume, double price = 0.1150, int type = 11)
    {
        ASSERT_NE(dialog, nullptr);
        dialog->getPriceTypeCombo()->setCurrentIndex(dialog->getPriceTypeCombo()->findData(type));
        if (type == 11) {
            dialog->getPriceEdit()->setText(QString::number(price, 'f', 4));
        }
        dialog->getVolumeCell()->setInt(volume);
        dialog->handleEvent(WG::UE_SPIN_CHANGED, TC::COptionOrderDialog::ID_VOLUME_CELL, 0, QString(), nullptr);
        dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::COptionOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    }

    boost::shared_ptr<ordertest::CFakeTraderCenter> center;
    ordertest::CRecordingCommandCenter* commands = nullptr;
    ordertest::CRecordingMessages* messages = nullptr;
    TC::COptionPriceTTable* table = nullptr;
    int row = -1;
};

TEST_F(OrderFlow, ALimitOrderReachesTheCommandCentreFieldByField)
{
    TC::COptionOrderDialog* dialog = press(4);  // buy to open the call
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    order(dialog, 3);
    EXPECT_EQ(table->getOrderDialog(), nullptr) << "the dialog is gone, and so is the pointer";
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    ordertest::expectManualStockOptionCommand(call);
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}}));
    ASSERT_EQ(call.params.size(), 1u);
    const nqservice::CCodeOrderParam& param = *call.params.front();
    EXPECT_EQ(param.operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(param.userName, "paper");
    EXPECT_EQ(param.hedgeFlag, 49);
    EXPECT_EQ(param.orderKind, 5);
    EXPECT_EQ(param.stockInfo.market, "SH");
    EXPECT_EQ(param.stockInfo.code, "10000011");
    EXPECT_EQ(param.stockInfo.name, "50ETF购11月3000");
    ASSERT_TRUE(param.account);
    EXPECT_EQ(param.account->getKey(), "SO001");
    EXPECT_TRUE(utils::isPriceEqual(param.price, 0.1150));
    EXPECT_EQ(param.priceType, 11);
    EXPECT_EQ(param.volume, 3);
    EXPECT_TRUE(messages->texts.isEmpty());
}

TEST_F(OrderFlow, CancellingTheDialogSendsNothing)
{
    TC::COptionOrderDialog* dialog = press(2);
    ASSERT_NE(dialog, nullptr);
    dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::COptionOrderDialog::ID_CLOSE, 0, QString(), nullptr);
    EXPECT_EQ(table->getOrderDialog(), nullptr);
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(messages->texts.isEmpty());
}

TEST_F(OrderFlow, ASecondPressReusesTheOpenDialog)
{
    TC::COptionOrderDialog* first = press(4);
    TC::COptionOrderDialog* second = press(8);  // the put's sell to open
    EXPECT_EQ(first, second);
    EXPECT_EQ(second->getStockCode(), QStringLiteral("10000021.SH"));
    EXPECT_EQ(second->getOperationType(), nqservice::OT_SELL_OPEN);
    second->close();
}

TEST_F(OrderFlow, RolesThatMayNotOrderOpenNothingAndRolesThatMayNotSendSendNothing)
{
    for (int role : {200, 102}) {
        store->setUserDataInt(TC::UM_USER_ROLE, role);
        TC::COptionOrderDialog* dialog = press(4);
        ASSERT_NE(dialog, nullptr) << "made, but not shown";
        EXPECT_FALSE(dialog->isVisible()) << role;
    }
    store->setUserDataInt(TC::UM_USER_ROLE, 7);  // may fill in the dialog, sends nothing
    order(press(4), 2);
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(messages->texts.isEmpty()) << "a refused role gets no message";
    for (int role : {90, 91, 101, 100, 400, 80}) {
        store->setUserDataInt(TC::UM_USER_ROLE, role);
        order(press(4), 2);
    }
    EXPECT_EQ(commands->calls.size(), 6u);
}

TEST_F(OrderFlow, WithoutAccountsAPressOpensNothing)
{
    store->setAccounts({});
    TC::COptionOrderDialog* dialog = press(4);
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(OrderFlow, AnUnknownInstrumentIsRefusedWithAMessage)
{
    TC::COptionOrderDialog* dialog = press(4);
    ASSERT_NE(dialog, nullptr);
    TC::orderValue value;
    value.accountKey = QStringLiteral("SO001");
    value.stockCode = QStringLiteral("99999999.SH");
    value.priceType = static_cast<nqservice::EPriceType>(11);
    value.operationType = nqservice::OT_BUY_OPEN;
    value.price = 0.1;
    value.volume = 1;
    dialog->getResult() = value;
    table->slotDoOperation();
    EXPECT_TRUE(commands->calls.empty());
    ASSERT_EQ(messages->texts.size(), 1);
    EXPECT_EQ(messages->texts.front(), QStringLiteral("合约 99999999.SH 错误, 无法下单"));
    EXPECT_EQ(messages->types.front(), 4);
    EXPECT_EQ(messages->levels.front(), 1);
    EXPECT_FALSE(messages->modals.front());
    dialog->close();
}

TEST_F(OrderFlow, AVolumeAtTheLimitPassesWithoutAQuestion)
{
    WG::CMessageBox::TestHook boxes;
    order(press(4), 50);
    EXPECT_EQ(boxes.count(), 0);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.front().params.front()->volume, 50);
}

TEST_F(OrderFlow, OverTheLimitWithTheAllowanceAsksAndAYesSendsTheWholeVolume)
{
    WG::CMessageBox::TestHook boxes;
    boxes.queueAnswer(QMessageBox::No);
    order(press(4), 51);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().kind, QStringLiteral("question"));
    EXPECT_EQ(boxes.last().title, QStringLiteral("提示"));
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量超过合规最大下单量50,是否自动拆单?"));
    EXPECT_TRUE(commands->calls.empty()) << "No sends nothing";
    EXPECT_EQ(messages->texts, QStringList{QStringLiteral("单笔下单量超过合规最大下单量50")});

    boxes.queueAnswer(QMessageBox::Yes);
    order(press(4), 120);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.front().params.front()->volume, 120) << "whole: the broker splits it";
    EXPECT_EQ(messages->texts.size(), 1);
}

TEST_F(OrderFlow, OverTheLimitWithoutTheAllowanceWarnsTwiceAndSendsNothing)
{
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceSplitAllowance), 0);
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), 20);
    WG::CMessageBox::TestHook boxes;
    order(press(4), 21);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().kind, QStringLiteral("warning"));
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量不能超过合规最大下单量20"));
    EXPECT_EQ(boxes.last().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_EQ(messages->texts, QStringList{QStringLiteral("单笔下单量不能超过合规最大下单量20")});
    EXPECT_TRUE(commands->calls.empty());
}

TEST_F(OrderFlow, AMarketPriceTypeTakesTheMarketLimitOfTenWhenNoneIsConfigured)
{
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptMarketPriceMaxOrderLimit), 0);
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptMarketPriceSplitAllowance), 0);
    WG::CMessageBox::TestHook boxes;
    order(press(4), 11, 0.0, 27);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量不能超过合规最大下单量10"));
    order(press(4), 10, 0.0, 27);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.front().params.front()->priceType, 27);
    EXPECT_TRUE(utils::isPriceEqual(commands->calls.front().params.front()->price, 0.1210))
        << "the price the type means: the other side's best";
}

TEST_F(OrderFlow, AnEmptySplitLeavesTheVolumeAtItsDefaultAndPassesTheLimit)
{
    utils::CManualSingletonT<TC::CTradeClient>::destroy();
    utils::CManualSingletonT<TC::CTradeClient>::create<CEmptySplitTradeClient>();
    WG::CMessageBox::TestHook boxes;
    order(press(4), 120);
    EXPECT_EQ(boxes.count(), 0);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.front().params.front()->volume, 0);
}

TEST_F(OrderFlow, TheDefaultAccountIsKeptByTheTable)
{
    TC::COptionOrderDialog* dialog = press(4);
    dialog->getAccountCombo()->setCurrentIndex(dialog->getAccountCombo()->findData(QStringLiteral("SO002")));
    dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::COptionOrderDialog::ID_DEFAULT_BUTTON, 0, QString(), nullptr);
    EXPECT_EQ(table->getDefaultAccount(), QStringLiteral("SO002"));
    order(dialog, 1);
    TC::COptionOrderDialog* again = press(4);
    EXPECT_EQ(again->getAccountCombo()->currentData().toString(), QStringLiteral("SO002"));
    again->close();
}

TEST_F(OrderFlow, TheDialogOpensAtTheMouseAndStaysInsideTheScreen)
{
    QScreen* screen = table->screen();
    ASSERT_NE(screen, nullptr);
    const QRect available = screen->availableGeometry();
    const QPoint corners[] = {available.topLeft() + QPoint(5, 5), available.bottomRight() - QPoint(5, 5),
                              QPoint(available.right() - 5, available.top() + 5),
                              QPoint(available.left() + 5, available.bottom() - 5)};
    for (const QPoint& mouse : corners) {
        QCursor::setPos(mouse);
        if (QCursor::pos() != mouse) {
            GTEST_SKIP() << "this platform does not move the cursor";
        }
        TC::COptionOrderDialog* dialog = press(4);
        ASSERT_NE(dialog, nullptr);
        const QRect frame(dialog->pos(), dialog->size());
        EXPECT_TRUE(available.contains(frame)) << mouse.x() << "," << mouse.y() << " -> " << frame.x() << ","
                                               << frame.y() << " " << frame.width() << "x" << frame.height();
        EXPECT_TRUE(frame.contains(mouse) || frame.adjusted(-1, -1, 1, 1).contains(mouse))
            << "a corner of the dialog stands at the mouse";
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

}  // namespace
