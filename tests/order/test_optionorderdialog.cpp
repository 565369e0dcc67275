// The option order dialog as a chain table drives it: what it loads for a
// button, its accounts, price types and available volume, what it answers, and
// how quotes from other threads reach it.
#include "board/boardfixture.h"
#include "order/coptionorderdialog.h"
#include "order/orderfakes.h"
#include "seam/trading.h"
#include "seam/uievents.h"
#include "services/trading/cdesktradeclient.h"
#include "support/testsupport.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/csmallnormalbutton.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <climits>
#include <thread>

namespace {

// A parent with the slots the dialog connects to by name.
class CDialogHost : public QWidget {
    Q_OBJECT
public:
    QStringList defaults;
    int operations = 0;
public slots:
    void slotSetDefaultAccount(QString key) { defaults << key; }
    void slotDoOperation() { ++operations; }
};

// A trade client whose broker answers available volumes through a callback the test calls.
class CAnsweringTradeClient : public trading::CDeskTradeClient {
public:
    bool requestStockVolume(const TC::CStockRequestParam& param, boost::shared_ptr<TC::StockSubTable>& table) override
    {
        if (!table) {
            table = boost::make_shared<TC::StockSubTable>();
        }
        table->setStockKey(utils::vqStockKey(param.market, param.code));
        requests.push_back(param);
        return true;
    }
    std::vector<TC::CStockRequestParam> requests;
};

class OptionOrderDialog : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        // The desk's quote client hands a new subscriber its snapshot at once.
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, true);
        center = boost::make_shared<ordertest::CFakeTraderCenter>();
        center->data->addAccount("SO001");
        center->data->addAccount("SO002");
        center->data->addAccount("FO001");
        nqservice::TraderCenter::install(center);
        login = new ordertest::CAllReadyLogin();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(login);
        tradeClient = utils::CManualSingletonT<TC::CTradeClient>::create<CAnsweringTradeClient>();
        auto call = quote("10000011", 0.1200, 0.1000);
        call->setAsk(1, 0.1210, 30);
        call->setBid(1, 0.1190, 20);
        call->setAsk(2, 0.1220, 10);
        call->upStopPrice = 0.4;
        call->downStopPrice = 0.0001;
        publish(call);
        rows[0] = QStringList{QStringLiteral("10000011.SH"), QStringLiteral("10000021.SH")};
        host = new CDialogHost();
        WG::CMessageTip::resetRecord();
    }
    void TearDown() override
    {
        delete host;
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(nullptr);
        nqservice::TraderCenter::destroy();
        BoardTest::TearDown();
    }
    TC::COptionOrderDialog* open(int id, const std::string& account = "SO001")
    {
        auto* dialog = new TC::COptionOrderDialog(host);
        dialog->setViewInfo(id, rows, nqservice::VQ_TRADER_TYPE_STOCK_OPTION, account);
        dialog->show();
        return dialog;
    }
    int selectedType(TC::COptionOrderDialog* dialog) { return dialog->getPriceTypeCombo()->currentData().toInt(); }
    void selectType(TC::COptionOrderDialog* dialog, int type)
    {
        const int index = dialog->getPriceTypeCombo()->findData(type);
        ASSERT_GE(index, 0) << type;
        dialog->getPriceTypeCombo()->setCurrentIndex(index);
    }
    void setVolume(TC::COptionOrderDialog* dialog, int volume)
    {
        dialog->getVolumeCell()->setInt(volume);
        dialog->handleEvent(WG::UE_SPIN_CHANGED, TC::COptionOrderDialog::ID_VOLUME_CELL, 0, QString(), nullptr);
    }
    void click(TC::COptionOrderDialog* dialog, int id)
    {
        dialog->handleEvent(WG::UE_BUTTON_CLICKED, id, 0, QString(), nullptr);
    }

    boost::shared_ptr<ordertest::CFakeTraderCenter> center;
    ordertest::CAllReadyLogin* login = nullptr;
    CAnsweringTradeClient* tradeClient = nullptr;
    QMap<int, QStringList> rows;
    CDialogHost* host = nullptr;
};

TEST_F(OptionOrderDialog, TheFirstPressShowsTheOperationAndBuildsThePriceTypesFromTheSnapshot)
{
    TC::COptionOrderDialog* dialog = open(4);  // row 0, buy to open the call
    EXPECT_EQ(dialog->windowTitle().isEmpty() ? dialog->getTitleText()->getText() : dialog->getTitleText()->getText(),
              QStringLiteral("买入开仓:50ETF购11月3000"));
    EXPECT_EQ(dialog->getStockCode(), QStringLiteral("10000011.SH"));
    EXPECT_EQ(dialog->getOperationType(), nqservice::OT_BUY_OPEN);
    EXPECT_EQ(dialog->getOrderButton()->text(), QStringLiteral("买入开仓"));
    EXPECT_EQ(dialog->orderButtonColorKey(), QStringLiteral("clr_global_rise"));
    EXPECT_EQ(dialog->getAvailableCell()->cellName(), QStringLiteral(" 可买开"));
    EXPECT_TRUE(dialog->hasPriceData());
    // The SSE's types for the code, as the order parameter table offers them, the first standing.
    ASSERT_EQ(dialog->getPriceTypeCombo()->count(), 5) << "built on the first press";
    QList<int> types;
    for (int i = 0; i < dialog->getPriceTypeCombo()->count(); ++i) {
        types << dialog->getPriceTypeCombo()->itemData(i).toInt();
    }
    EXPECT_EQ(types, (QList<int>{11, 26, 27, 28, 29}));
    EXPECT_EQ(selectedType(dialog), 11);
    EXPECT_EQ(dialog->getPriceTypeCombo()->currentText(), QStringLiteral("限价"));
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(4), 0.1210)) << "ask 1";
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(6), 0.1190)) << "bid 1";
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(3), 0.1220)) << "ask 2";
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(5), 0.1200)) << "last";
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(14), 0.1210)) << "the other side's best for a buy";
    EXPECT_FALSE(dialog->getCloseTodayCheck()->isVisible());
    dialog->close();
}

TEST_F(OptionOrderDialog, APutButtonTakesThePutAndASellTheFallColour)
{
    TC::COptionOrderDialog* dialog = open(8);  // the put's sell to open
    EXPECT_EQ(dialog->getStockCode(), QStringLiteral("10000021.SH"));
    EXPECT_EQ(dialog->getOperationType(), nqservice::OT_SELL_OPEN);
    EXPECT_EQ(dialog->orderButtonColorKey(), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(dialog->getTitleText()->getText(), QStringLiteral("卖出开仓:50ETF沽11月3000"));
    dialog->close();
}

TEST_F(OptionOrderDialog, AccountsAreTheLoggedInOnesOfTheTraderType)
{
    login->loggedOut["SO002"] = true;
    TC::COptionOrderDialog* dialog = open(4, "SO001");
    ASSERT_EQ(dialog->getAccountCombo()->count(), 1) << "SO002 is logged out, FO001 is a futures account";
    EXPECT_EQ(dialog->getAccountCombo()->currentData().toString(), QStringLiteral("SO001"));
    EXPECT_FALSE(dialog->getDefaultButton()->isEnabled());
    dialog->close();

    login->loggedOut.clear();
    TC::COptionOrderDialog* again = open(4, "SO002");
    EXPECT_EQ(again->getAccountCombo()->count(), 2);
    EXPECT_EQ(again->getAccountCombo()->currentData().toString(), QStringLiteral("SO002"));
    again->getAccountCombo()->setCurrentIndex(again->getAccountCombo()->findData(QStringLiteral("SO001")));
    EXPECT_TRUE(again->getDefaultButton()->isEnabled()) << "another account than the default";
    click(again, TC::COptionOrderDialog::ID_DEFAULT_BUTTON);
    EXPECT_EQ(host->defaults, QStringList{QStringLiteral("SO001")});
    EXPECT_EQ(again->getDefaultAccount(), QStringLiteral("SO001"));
    EXPECT_FALSE(again->getDefaultButton()->isEnabled());
    again->close();
}

TEST_F(OptionOrderDialog, ASingleAccountWithoutADefaultBecomesTheDefault)
{
    login->loggedOut["SO002"] = true;
    TC::COptionOrderDialog* dialog = open(4, "");
    EXPECT_EQ(dialog->getAccountCombo()->currentData().toString(), QStringLiteral("SO001"));
    EXPECT_EQ(host->defaults, QStringList{QStringLiteral("SO001")});
    dialog->close();
}

TEST_F(OptionOrderDialog, TheCalculatorGivesTheAvailableVolumeThatBoundsTheInput)
{
    TC::COptionOrderDialog* dialog = open(4);
    ASSERT_FALSE(center->calculator->asks.empty());
    const ordertest::CVolumeAsk& ask = center->calculator->asks.back();
    EXPECT_EQ(ask.code, "10000011");
    EXPECT_EQ(ask.operation, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(ask.hedge, 49);
    EXPECT_EQ(ask.offset, 48);
    EXPECT_EQ(ask.cover, 48);
    EXPECT_EQ(ask.ceiling, LLONG_MAX);
    EXPECT_EQ(dialog->getAvailableVolume(), 37);
    EXPECT_EQ(dialog->getAvailableCell()->text(), QStringLiteral("37"));
    dialog->getVolumeCell()->setInt(99);
    EXPECT_FALSE(dialog->getVolumeCell()->hasAcceptableInput()) << "a volume above what is available is not taken";
    dialog->getVolumeCell()->setInt(37);
    EXPECT_TRUE(dialog->getVolumeCell()->hasAcceptableInput());
    dialog->close();
}

TEST_F(OptionOrderDialog, AMarketPriceTypeShowsMarketAndReckonsWithThePriceOfItsSide)
{
    TC::COptionOrderDialog* dialog = open(4);
    selectType(dialog, 27);  // 市价即成剩撤
    EXPECT_EQ(dialog->getPriceEdit()->text(), QStringLiteral("市价"));
    EXPECT_FALSE(dialog->getPriceEdit()->isEnabled());
    EXPECT_TRUE(dialog->getAvailableCell()->isHidden());
    // With no number in the edit the available volume is reckoned at the price the
    // type means for the money: a market buy at the day's upper limit.
    ASSERT_FALSE(center->calculator->asks.empty());
    EXPECT_TRUE(utils::isPriceEqual(center->calculator->asks.back().price, 0.4)) << center->calculator->asks.back().price;
    setVolume(dialog, 3);
    QSignalSpy done(host, SIGNAL(destroyed()));
    QPointer<TC::COptionOrderDialog> alive(dialog);
    click(dialog, TC::COptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(host->operations, 1);
    const TC::orderValue result = dialog->getResult();
    EXPECT_EQ(result.priceType, 27);
    EXPECT_TRUE(utils::isPriceEqual(result.price, dialog->priceOfType(27))) << "from the type, not the edit";
    EXPECT_EQ(result.volume, 3);
    EXPECT_EQ(result.accountKey, QStringLiteral("SO001"));
    EXPECT_EQ(result.stockCode, QStringLiteral("10000011.SH"));
    EXPECT_EQ(result.operationType, nqservice::OT_BUY_OPEN);
    EXPECT_NEAR(result.ratio, 3.0 / 37.0, 1e-12);
}

TEST_F(OptionOrderDialog, AFixedPriceIsWhatTheTraderTyped)
{
    TC::COptionOrderDialog* dialog = open(4);
    selectType(dialog, 11);
    EXPECT_TRUE(dialog->getPriceEdit()->isEnabled());
    dialog->getPriceEdit()->setText(QStringLiteral("0.1150"));
    setVolume(dialog, 2);
    click(dialog, TC::COptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_TRUE(utils::isPriceEqual(dialog->getResult().price, 0.1150));
    EXPECT_EQ(dialog->getResult().priceType, 11);
}

TEST_F(OptionOrderDialog, ConfirmRefusesWithATipAndKeepsTheInput)
{
    TC::COptionOrderDialog* dialog = open(4);
    selectType(dialog, 11);
    click(dialog, TC::COptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("下单量为0"));
    EXPECT_EQ(host->operations, 0);
    EXPECT_TRUE(dialog->getResult().stockCode.isEmpty());
    dialog->getPriceTypeCombo()->setCurrentIndex(-1);
    setVolume(dialog, 2);
    click(dialog, TC::COptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择报价方式"));
    dialog->getAccountCombo()->setCurrentIndex(-1);
    click(dialog, TC::COptionOrderDialog::ID_ORDER_BUTTON);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("请选择账号"));
    EXPECT_TRUE(dialog->isVisible());
    // Esc after the failed confirm: the answer is empty, the parent hears of it, the dialog goes.
    QPointer<TC::COptionOrderDialog> alive(dialog);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_EQ(host->operations, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(alive.isNull()) << "deleted on close";
}

TEST_F(OptionOrderDialog, TheCloseButtonAnswersEmpty)
{
    TC::COptionOrderDialog* dialog = open(4);
    setVolume(dialog, 2);
    click(dialog, TC::COptionOrderDialog::ID_CLOSE);
    EXPECT_EQ(host->operations, 1);
    EXPECT_TRUE(dialog->getResult().stockCode.isEmpty());
}

TEST_F(OptionOrderDialog, PercentUnitsAndTheirCount)
{
    TC::COptionOrderDialog* dialog = open(4);  // 37 available
    setVolume(dialog, 10);
    EXPECT_EQ(dialog->getOrderCount(), 10);
    EXPECT_NEAR(dialog->getRatio(), 10.0 / 37.0, 1e-12);
    dialog->slotUnitClicked(QStringLiteral("%"));
    EXPECT_EQ(dialog->getVolumeCell()->unit(), QStringLiteral("%"));
    EXPECT_FALSE(dialog->getPercentVolumeText()->isHidden());
    // The share as the cell holds it (27.027 %) comes to 9 contracts, truncated.
    EXPECT_EQ(dialog->getOrderCount(), 9);
    EXPECT_TRUE(dialog->getPercentVolumeText()->getText().endsWith(QStringLiteral("9张")));
    const double ratio = dialog->getRatio();
    dialog->slotUnitClicked(QStringLiteral("张"));
    EXPECT_TRUE(dialog->getPercentVolumeText()->isHidden());
    EXPECT_EQ(dialog->getOrderCount(), 9) << "back to contracts keeps the count";
    EXPECT_DOUBLE_EQ(dialog->getRatio(), ratio) << "and the share";
    EXPECT_EQ(dialog->getVolumeCell()->toInt(), 9);
    dialog->close();
}

TEST_F(OptionOrderDialog, AHundredPercentOfMoreThanAnIntHoldsIsTheLargestCount)
{
    center->calculator->volume = 5000000000LL;
    TC::COptionOrderDialog* dialog = open(4);
    EXPECT_EQ(dialog->getAvailableVolume(), 5000000000LL);
    dialog->slotUnitClicked(QStringLiteral("%"));
    dialog->getVolumeCell()->setDouble(100.0);
    dialog->handleEvent(WG::UE_SPIN_CHANGED, TC::COptionOrderDialog::ID_VOLUME_CELL, 0, QString(), nullptr);
    EXPECT_EQ(dialog->getOrderCount(), 0x7fffffff);
    EXPECT_TRUE(dialog->getPercentVolumeText()->getText().endsWith(QStringLiteral("2147483647张")));
    dialog->close();
}

TEST_F(OptionOrderDialog, TheBrokersVolumeAnswersAndItsUnboundedAnswerShowsAsZero)
{
    center->data->byBroker["SO001"] = true;
    TC::COptionOrderDialog* dialog = open(4);
    // The request goes out with what the dialog holds once it is loaded.
    dialog->handleEvent(WG::UE_VALUE_COMMITTED, TC::COptionOrderDialog::ID_PRICE_EDIT, 0, QString(), nullptr);
    ASSERT_FALSE(tradeClient->requests.empty());
    const TC::CStockRequestParam request = tradeClient->requests.back();
    EXPECT_EQ(request.accounts, std::vector<std::string>{"SO001"});
    EXPECT_EQ(request.code, "10000011");
    EXPECT_EQ(request.operationType, nqservice::OT_BUY_OPEN);
    // The answer comes on a service thread and reaches the cells on the GUI thread.
    std::thread([&] { request.callback("SO001", 12); }).join();
    EXPECT_NE(dialog->getAvailableCell()->text(), QStringLiteral("12")) << "not before the GUI thread runs";
    QApplication::processEvents();
    EXPECT_EQ(dialog->getAvailableCell()->text(), QStringLiteral("12"));
    std::thread([&] { request.callback("SO001", LLONG_MAX); }).join();
    QApplication::processEvents();
    EXPECT_EQ(dialog->getAvailableVolume(), 0);
    EXPECT_EQ(dialog->getAvailableCell()->text(), QStringLiteral("0"));
    dialog->close();
}

TEST_F(OptionOrderDialog, QuotesFromAServiceThreadReachTheDialogOnTheGuiThreadNewestOnly)
{
    TC::COptionOrderDialog* dialog = open(4);
    QSignalSpy updates(dialog, &TC::COptionOrderDialog::sigUpdateCellPrice);
    std::thread feed([&] {
        for (int i = 1; i <= 100; ++i) {
            auto data = quote("10000011", 0.1200 + 0.0001 * i, 0.1000);
            publish(data);
        }
    });
    feed.join();
    EXPECT_EQ(updates.count(), 0) << "nothing touched off the GUI thread";
    QApplication::processEvents();
    EXPECT_EQ(updates.count(), 1) << "a burst costs one update";
    EXPECT_TRUE(utils::isPriceEqual(dialog->priceOfType(5), 0.1300)) << "the newest quote";
    dialog->close();
}

TEST_F(OptionOrderDialog, CommodityOptionsOfferCloseOfToday)
{
    auto detail = exchange->getCodeInfo(QStringLiteral("10000011.SH"));
    ASSERT_TRUE(detail);
    auto* dialog = new TC::COptionOrderDialog(host);
    dialog->setViewInfo(5, rows, nqservice::VQ_TRADER_TYPE_FUTURE_OPTION, "FO001");
    dialog->show();
    EXPECT_EQ(dialog->getAccountCombo()->count(), 1) << "the futures account only";
    EXPECT_EQ(dialog->getOrderButton()->text(), QStringLiteral("平多"));
    EXPECT_TRUE(dialog->getCloseTodayCheck()->isVisible());
    EXPECT_EQ(dialog->getOperationType(), nqservice::OT_CLOSE_LONG);
    EXPECT_EQ(selectedType(dialog), 5) << "the last price first";
    dialog->getCloseTodayCheck()->setChecked(true);
    dialog->handleEvent(WG::UE_CHECK_CLICKED, TC::COptionOrderDialog::ID_CLOSE_TODAY, 1, QString(), nullptr);
    EXPECT_EQ(dialog->getOperationType(), nqservice::OT_CLOSE_LONG_TODAY);
    dialog->close();
}

}  // namespace

#include "test_optionorderdialog.moc"
