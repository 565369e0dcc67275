// The price ladder beside the chain: what a click sends for a group of
// accounts (field by field, with the shared template of the close orders),
// sell modes, the limit, cancels by price, working volumes and positions.
#include "board/boardfixture.h"
#include "order/cpricetquickordertable.h"
#include "order/cpricetquickorderwidget.h"
#include "order/orderfakes.h"
#include "seam/trading.h"
#include "seam/uievents.h"
#include "services/trading/cdesktradeclient.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cradiobuttongroup.h"
#include "toolkit/cradiobutton.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>

#include <thread>

namespace {

class CLadderAccount : public ordertest::CFakeAccountData {
public:
    void getVector(int type, std::vector<boost::shared_ptr<nqservice::IData>>& out) override
    {
        out = type == nqservice::VQ_DATA_TYPE_ORDER ? orders
                                                    : (type == nqservice::VQ_DATA_TYPE_POSITION_STATICS ? positions
                                                                                                         : out);
    }
    boost::shared_ptr<nqservice::SubRequest> subscribe(int type, const std::string&,
                                                       const nqservice::DataCallback& callback) override
    {
        callbacks[type].push_back(callback);
        return boost::shared_ptr<nqservice::SubRequest>();
    }
    double getCanOrderVolume(const std::string&, const std::string&, int operation, int, double, long long,
                             nqservice::EPriceType, long long) override
    {
        asked.push_back(operation);
        return static_cast<double>(closable);
    }
    void push(int type, const boost::shared_ptr<nqservice::IData>& record)
    {
        for (auto& callback : callbacks[type]) {
            callback(record);
        }
    }
    std::vector<boost::shared_ptr<nqservice::IData>> orders;
    std::vector<boost::shared_ptr<nqservice::IData>> positions;
    std::map<int, std::vector<nqservice::DataCallback>> callbacks;
    long long closable = 0;
    std::vector<int> asked;
};

// A trade client that records its splits and cancels and splits as the desk does.
class CRecordingTradeClient : public trading::CDeskTradeClient {
public:
    std::vector<long long> splitEntrusts(long long volume, double price, nqservice::EPriceType type,
                                         const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>& accounts,
                                         const std::vector<double>& weights, nqservice::EPositionType position,
                                         std::string market, std::string code, nqservice::EOperationType operation,
                                         nqservice::EHedge_Flag_Type hedge, boost::shared_ptr<utils::NQError> error,
                                         bool byAvailable, bool roundToUnit,
                                         const std::map<std::string, long long>& fixed,
                                         const std::vector<long long>& lots) override
    {
        prices.push_back(price);
        splitWeights.push_back(weights);
        return trading::CDeskTradeClient::splitEntrusts(volume, price, type, accounts, weights, position, market, code,
                                                        operation, hedge, error, byAvailable, roundToUnit, fixed, lots);
    }
    void cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order, QString&, int, QString,
                     const boost::shared_ptr<TC::COrderAuxInfo>&) override
    {
        cancelled.push_back(order->orderId);
    }
    std::vector<double> prices;
    std::vector<std::vector<double>> splitWeights;
    std::vector<std::string> cancelled;
};

boost::shared_ptr<nqservice::CAccountInfo> info(const std::string& key)
{
    auto account = boost::make_shared<nqservice::CAccountInfo>();
    account->accountId = key;
    account->accountType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
    account->displayName = key;
    return account;
}

boost::shared_ptr<nqservice::COrderDetail> order(const std::string& account, const std::string& id, bool buy,
                                                 double price, int remaining, nqservice::EOrderStatus status)
{
    auto detail = boost::make_shared<nqservice::COrderDetail>();
    detail->account = info(account);
    detail->orderId = id;
    detail->market = "SH";
    detail->code = "10000011";
    detail->side = buy ? nqservice::EBS_BUY : nqservice::EBS_SELL;
    detail->price = price;
    detail->remaining = remaining;
    detail->volume = remaining;
    detail->status = status;
    return detail;
}

class QuickOrder : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        center = boost::make_shared<ordertest::CFakeTraderCenter>();
        for (const char* key : {"SO001", "SO002", "SO003"}) {
            auto account = boost::make_shared<CLadderAccount>();
            account->info = info(key);
            center->data->accounts[utils::hash(key)] = account;
            live[key] = account;
        }
        nqservice::TraderCenter::install(center);
        trade = utils::CManualSingletonT<TC::CTradeClient>::create<CRecordingTradeClient>();
        commands = utils::CManualSingletonT<TC::COvCommandCenter>::create<ordertest::CRecordingCommandCenter>();
        // A group of three with weights 1:2:3.
        QVector<boost::shared_ptr<TC::CAccount>> users;
        for (const char* key : {"SO001", "SO002", "SO003"}) {
            auto account = boost::make_shared<TC::CAccount>();
            account->accountId = QString::fromLatin1(key);
            account->displayName = QString::fromLatin1(key);
            account->accountType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
            users << account;
        }
        store->setAccounts(users);
        TC::CAccountGroup group;
        group.name = QStringLiteral("三户");
        group.weights = {{QStringLiteral("SO001"), 1}, {QStringLiteral("SO002"), 2}, {QStringLiteral("SO003"), 3}};
        store->setAccountGroups({group});
        exchange->getCodeInfo(QStringLiteral("10000011.SH"))->maxOrderVolume = 50;
        auto call = quote("10000011", 0.1200, 0.1000);
        call->setBid(1, 0.1190, 20);
        call->setAsk(1, 0.1210, 30);
        publish(call);
        widget = std::make_unique<TC::CPriceTQuickOrderWidget>(nullptr);
        widget->resize(267, 900);
        widget->show();
        widget->setStockCode(QStringLiteral("10000011.SH"));
    }
    void TearDown() override
    {
        widget.reset();
        utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        nqservice::TraderCenter::destroy();
        BoardTest::TearDown();
    }
    void useGroup()
    {
        widget->setAccounts({{"SO001", info("SO001")}, {"SO002", info("SO002")}, {"SO003", info("SO003")}},
                            QStringLiteral("三户"));
    }
    int rowOf(const QString& price) const { return widget->getPriceTable()->priceToRow.value(price, -1); }
    void click(const QString& price, int column, int button)
    {
        const int row = rowOf(price);
        ASSERT_GE(row, 0) << price.toStdString();
        widget->handleEvent(WG::UE_CELL_SECONDARY, 0, row, QString::number(column), &button);
    }
    void setVolume(int volume) { widget->getVolumeCell()->setInt(volume); }

    boost::shared_ptr<ordertest::CFakeTraderCenter> center;
    std::map<std::string, boost::shared_ptr<CLadderAccount>> live;
    CRecordingTradeClient* trade = nullptr;
    ordertest::CRecordingCommandCenter* commands = nullptr;
    std::unique_ptr<TC::CPriceTQuickOrderWidget> widget;
};

TEST_F(QuickOrder, TheLadderStandsOnTheMarketWithTheBestBidMarked)
{
    QAbstractItemModelTester tester(widget->getPriceTable()->model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    TC::CPriceTQuickOrderTable* table = widget->getPriceTable();
    EXPECT_EQ(table->rowCount(), 41);
    EXPECT_EQ(table->itemText(20, 2), QStringLiteral("0.1200"));
    EXPECT_EQ(table->bestBidRow, 30) << "0.1190, ten ticks under the last";
    EXPECT_EQ(table->itemText(30, 1), QStringLiteral("20"));
    EXPECT_EQ(table->itemText(10, 3), QStringLiteral("30"));
    EXPECT_EQ(table->itemText(20, 1), QString()) << "no level: the absent form shows";
    EXPECT_EQ(widget->objectName(), QStringLiteral("priceT_quick_order_widget"));
}

TEST_F(QuickOrder, ABuyForAGroupSplitsByWeightAndClosesFirstWithTheSharedTemplate)
{
    useGroup();
    live["SO002"]->closable = 3;
    live["SO003"]->closable = 10;
    setVolume(12);
    click(QStringLiteral("0.1190"), 1, 1);
    ASSERT_EQ(commands->calls.size(), 1u);
    const ordertest::CCommandCall& call = commands->calls.front();
    EXPECT_EQ(call.traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(call.weights, (std::map<std::string, double>{{"SO001", 1.0}, {"SO002", 2.0}, {"SO003", 3.0}}));
    EXPECT_TRUE(call.confirmed);
    EXPECT_EQ(call.etfHedge, -1);
    ASSERT_EQ(trade->splitWeights.size(), 1u);
    EXPECT_EQ(trade->splitWeights.front(), (std::vector<double>{1.0, 2.0, 3.0}));
    // Shares 2, 4, 6. SO001: 2 to open. SO002: 3 to close, 1 to open. SO003: 6 to close, nothing to open.
    ASSERT_EQ(call.params.size(), 4u);
    EXPECT_EQ(call.params[0]->account->getKey(), "SO001");
    EXPECT_EQ(call.params[0]->operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(call.params[0]->volume, 2);
    EXPECT_EQ(call.params[2]->account->getKey(), "SO002");
    EXPECT_EQ(call.params[2]->operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(call.params[2]->volume, 1);
    // The close orders are one object appended twice: it holds the last account's values.
    EXPECT_EQ(call.params[1], call.params[3]);
    EXPECT_EQ(call.params[1]->account->getKey(), "SO003");
    EXPECT_EQ(call.params[1]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(call.params[1]->volume, 6);
    for (const auto& param : call.params) {
        EXPECT_EQ(param->priceType, nqservice::PT_FIX);
        EXPECT_TRUE(utils::isPriceEqual(param->price, 0.1190));
        EXPECT_EQ(param->hedgeFlag, 49);
        EXPECT_EQ(param->orderKind, 5);
        EXPECT_EQ(param->stockInfo.code, "10000011");
        EXPECT_EQ(param->userName, "paper");
    }
    EXPECT_EQ(live["SO001"]->asked, std::vector<int>{nqservice::OT_BUY_CLOSE}) << "asked for the closable volume";
}

TEST_F(QuickOrder, ABuyOfTenWithFourClosableSendsFourToCloseAndSixToOpen)
{
    widget->setAccounts({{"SO001", info("SO001")}}, QString());
    live["SO001"]->closable = 4;
    setVolume(10);
    click(QStringLiteral("0.1200"), 0, 1);
    ASSERT_EQ(commands->calls.size(), 1u);
    const auto& params = commands->calls.front().params;
    ASSERT_EQ(params.size(), 2u);
    EXPECT_EQ(params[0]->operationType, nqservice::OT_BUY_CLOSE);
    EXPECT_EQ(params[0]->volume, 4);
    EXPECT_EQ(params[1]->operationType, nqservice::OT_BUY_OPEN);
    EXPECT_EQ(params[1]->volume, 6);
    EXPECT_EQ(commands->calls.front().weights, (std::map<std::string, double>{{"SO001", 1.0}}));

    live["SO001"]->closable = 12;
    click(QStringLiteral("0.1200"), 0, 1);
    ASSERT_EQ(commands->calls.size(), 2u);
    ASSERT_EQ(commands->calls.back().params.size(), 1u) << "ten or more closable: the close alone";
    EXPECT_EQ(commands->calls.back().params[0]->volume, 10);
}

TEST_F(QuickOrder, SellsOpenOrCloseByTheSellMode)
{
    widget->setAccounts({{"SO001", info("SO001")}}, QString());
    setVolume(2);
    click(QStringLiteral("0.1210"), 3, 1);
    ASSERT_EQ(commands->calls.size(), 1u);
    EXPECT_EQ(commands->calls.back().params.at(0)->operationType, nqservice::OT_SELL_OPEN);
    widget->getSellModeGroup()->setButtonCheckedByID(1);
    click(QStringLiteral("0.1210"), 4, 1);
    EXPECT_EQ(commands->calls.back().params.at(0)->operationType, nqservice::OT_SELL_CLOSE);
    EXPECT_TRUE(live["SO001"]->asked.empty()) << "a sell asks for no closable volume";
}

TEST_F(QuickOrder, ThePriceColumnDoesNothingAndAnEmptyRowOrdersAtZero)
{
    widget->setAccounts({{"SO001", info("SO001")}}, QString());
    setVolume(1);
    click(QStringLiteral("0.1200"), 2, 1);
    EXPECT_TRUE(commands->calls.empty());
    EXPECT_TRUE(trade->prices.empty());
    // A row whose price is blank: the split is asked at 0 all the same.
    widget->getPriceTable()->setItemText(40, 2, QString(), true);
    int button = 1;
    widget->handleEvent(WG::UE_CELL_SECONDARY, 0, 40, QStringLiteral("1"), &button);
    ASSERT_EQ(trade->prices.size(), 1u);
    EXPECT_EQ(trade->prices.front(), 0.0);
}

TEST_F(QuickOrder, EachCheckSaysWhyNot)
{
    WG::CMessageBox::TestHook boxes;
    setVolume(1);
    click(QStringLiteral("0.1200"), 1, 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("请选择账号"));
    widget->setAccounts({{"SO009", info("SO009")}}, QString());
    click(QStringLiteral("0.1200"), 1, 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("账号未登录"));
    widget->setAccounts({{"SO001", info("SO001")}}, QString());
    setVolume(0);
    click(QStringLiteral("0.1200"), 1, 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("下单量为0"));
    EXPECT_EQ(boxes.last().title, QStringLiteral("提示"));
    EXPECT_TRUE(commands->calls.empty());
}

TEST_F(QuickOrder, TheLimitLooksAtTheOpeningPartAndANoSendsNothing)
{
    widget->setAccounts({{"SO001", info("SO001")}}, QString());
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), 0);
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceSplitAllowance), 1);
    WG::CMessageBox::TestHook boxes;
    live["SO001"]->closable = 20;
    setVolume(60);  // 20 to close, 40 to open: within 50
    click(QStringLiteral("0.1200"), 0, 1);
    EXPECT_EQ(boxes.count(), 0);
    EXPECT_EQ(commands->calls.size(), 1u);
    live["SO001"]->closable = 0;
    boxes.queueAnswer(QMessageBox::No);
    click(QStringLiteral("0.1200"), 0, 1);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量超过合规最大下单量50,是否自动拆单?"));
    EXPECT_EQ(commands->calls.size(), 1u) << "No sends nothing";
}

TEST_F(QuickOrder, WorkingOrdersShowByPriceAndARightClickCancelsThem)
{
    live["SO001"]->orders.push_back(order("SO001", "A1", true, 0.1190, 3, nqservice::OS_WORKING));
    useGroup();
    EXPECT_EQ(widget->getPriceTable()->itemText(rowOf(QStringLiteral("0.1190")), 0), QStringLiteral("3"));
    // More arrives on a service thread; the cells follow on the GUI thread.
    std::thread([&] {
        live["SO002"]->push(nqservice::VQ_DATA_TYPE_ORDER, order("SO002", "B1", true, 0.1190, 4, nqservice::OS_WORKING));
        live["SO003"]->push(nqservice::VQ_DATA_TYPE_ORDER, order("SO003", "C1", false, 0.1210, 5, nqservice::OS_WORKING));
    }).join();
    QApplication::processEvents();
    EXPECT_EQ(widget->getPriceTable()->itemText(rowOf(QStringLiteral("0.1190")), 0), QStringLiteral("7"));
    EXPECT_EQ(widget->getPriceTable()->itemText(rowOf(QStringLiteral("0.1210")), 4), QStringLiteral("5"));
    EXPECT_EQ(widget->workingVolume(QStringLiteral("0.1190"), true), 7);
    click(QStringLiteral("0.1190"), 0, 2);
    std::sort(trade->cancelled.begin(), trade->cancelled.end());
    EXPECT_EQ(trade->cancelled, (std::vector<std::string>{"A1", "B1"}));
    EXPECT_TRUE(commands->calls.empty()) << "a cancel places nothing";
    // A finished order leaves its price with nothing working: an empty cell.
    std::thread([&] {
        live["SO003"]->push(nqservice::VQ_DATA_TYPE_ORDER, order("SO003", "C1", false, 0.1210, 0, nqservice::OS_FILLED));
    }).join();
    QApplication::processEvents();
    EXPECT_EQ(widget->getPriceTable()->itemText(rowOf(QStringLiteral("0.1210")), 4), QString());
}

TEST_F(QuickOrder, PositionFiguresOfTheGroupInTheCurrentCode)
{
    auto position = [](const std::string& account, long long size, bool isLong, const std::string& code = "10000011") {
        auto record = boost::make_shared<nqservice::CPositionStatics>();
        record->account = info(account);
        record->market = "SH";
        record->code = code;
        record->position = size;
        record->direction = isLong ? 48 : 49;
        return record;
    };
    live["SO001"]->positions.push_back(position("SO001", 5, true));
    useGroup();
    EXPECT_EQ(widget->positionText(0), QStringLiteral("5"));
    live["SO002"]->push(nqservice::VQ_DATA_TYPE_POSITION_STATICS, position("SO002", 2, false));
    live["SO002"]->push(nqservice::VQ_DATA_TYPE_POSITION_STATICS, position("SO002", 9, true, "10000021"));
    live["SO002"]->push(nqservice::VQ_DATA_TYPE_POSITION_STATICS, position("SO009", 7, true));
    QApplication::processEvents();
    EXPECT_EQ(widget->positionText(0), QStringLiteral("5"));
    EXPECT_EQ(widget->positionText(1), QStringLiteral("2"));
    EXPECT_EQ(widget->positionText(2), QStringLiteral("3"));
}

TEST_F(QuickOrder, TheSavedStringIsTheCodeAndTheVolume)
{
    setVolume(7);
    EXPECT_EQ(widget->param(), QStringLiteral("10000011.SH$7"));
    TC::CPriceTQuickOrderWidget again(nullptr);
    again.setParam(QStringLiteral("10000011.SH$7"));
    EXPECT_EQ(again.currentCode(), QStringLiteral("10000011.SH"));
    EXPECT_EQ(again.getVolumeCell()->toInt(), 7);
}

}  // namespace
