#include "accountsfakes.h"

#include "app/caccountsdock.h"
#include "app/caccountsfeed.h"
#include "app/cdealstablemodel.h"
#include "app/cdeskmessageservice.h"
#include "app/cfundstablemodel.h"
#include "app/cmessagesmodel.h"
#include "app/corderstablemodel.h"
#include "app/cpositionstablemodel.h"
#include "app/crecordtable.h"
#include "seam/user.h"
#include "seam/userrecords.h"
#include "services/user/cusersettingsstore.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetrics>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <thread>

using namespace accountsfakes;

namespace {

class AccountsDockTest : public testing::Test {
protected:
    void SetUp() override
    {
        utils::CSingletonT<WG::CUiResource>::destroy();
        auto* store = new TC::CUserSettingsStore(dir.path());
        QVector<boost::shared_ptr<TC::CAccount>> accounts;
        for (const auto& entry : {std::make_pair("A1", "模拟一"), std::make_pair("A2", "模拟二")}) {
            auto account = boost::make_shared<TC::CAccount>();
            account->accountId = QString::fromUtf8(entry.first);
            account->displayName = QString::fromUtf8(entry.second);
            account->accountType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
            accounts << account;
        }
        store->setAccounts(accounts);
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
        login = new CFakeLogin;
        login->set("A1", nqservice::BLS_READY);
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(login);
        center = boost::make_shared<CFakeTraderCenter>();
        infoOne = makeAccount("A1", "模拟一");
        infoTwo = makeAccount("A2", "模拟二");
        one = center->data->addAccount(infoOne);
        two = center->data->addAccount(infoTwo);
        nqservice::TraderCenter::install(center);
        client = new CRecordingTradeClient;
        utils::CManualSingletonT<TC::CTradeClient>::install(client);
        messages = new desk::CDeskMessageService;
        utils::CManualSingletonT<TC::CMsgService>::install(messages);
    }
    void TearDown() override
    {
        utils::CManualSingletonT<TC::CMsgService>::destroy();
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        nqservice::TraderCenter::destroy();
        utils::CSingletonT<TC::SingletonManager>::destroy();
        utils::CSingletonT<TC::CUserManager>::destroy();
        utils::CSingletonT<WG::CUiResource>::destroy();
    }

    // Publishes on a thread of its own, as a broker does, and waits for it.
    void publishFromThread(const boost::shared_ptr<CFakeAccountData>& data, int dataType,
                           std::vector<nqservice::IDataPtr> records)
    {
        std::thread broker([&] {
            for (const auto& record : records) {
                data->publish(dataType, record);
            }
        });
        broker.join();
    }

    QTemporaryDir dir;
    CFakeLogin* login = nullptr;
    boost::shared_ptr<CFakeTraderCenter> center;
    boost::shared_ptr<nqservice::CAccountInfo> infoOne;
    boost::shared_ptr<nqservice::CAccountInfo> infoTwo;
    boost::shared_ptr<CFakeAccountData> one;
    boost::shared_ptr<CFakeAccountData> two;
    CRecordingTradeClient* client = nullptr;
    desk::CDeskMessageService* messages = nullptr;
};

}  // namespace

TEST_F(AccountsDockTest, FollowsTheFiveTablesOfEveryReadyAccountOnly)
{
    desk::CAccountsDock dock;
    EXPECT_EQ(dock.feed()->followedAccounts(), std::vector<std::string>{"A1"});
    EXPECT_EQ(one->openSubscriptions(), 5);
    for (int type : {542, 570, 547, 544, 1030}) {
        EXPECT_EQ(one->openSubscriptions(type), 1) << type;
    }
    EXPECT_EQ(two->subscriptionsMade(), 0) << "an account that is not logged in is not asked";
    ASSERT_EQ(dock.tabs()->count(), 5);
    EXPECT_EQ(dock.tabs()->tabText(0), QStringLiteral("委托"));
    EXPECT_EQ(dock.tabs()->tabText(1), QStringLiteral("成交"));
    EXPECT_EQ(dock.tabs()->tabText(2), QStringLiteral("持仓"));
    EXPECT_EQ(dock.tabs()->tabText(3), QStringLiteral("资金"));
    EXPECT_EQ(dock.tabs()->tabText(4), QStringLiteral("组合持仓"));
    EXPECT_EQ(dock.table(desk::CAccountsDock::TAB_ORDERS)->columnHeader(desk::COrdersTableModel::COL_CANCEL),
              QStringLiteral("撤单"));
}

TEST_F(AccountsDockTest, TablesStartFromWhatTheAccountHoldsAndFollowItsChanges)
{
    one->store(542, makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0));
    one->store(547, makePosition(infoOne, "510050", '0', 10000));
    one->detail = makeFunds("A1", 1000.0);
    desk::CAccountsDock dock;
    ASSERT_EQ(dock.ordersModel()->rowCount(), 1) << "the snapshot shows at once";
    EXPECT_EQ(dock.positionsModel()->rowCount(), 1);
    ASSERT_EQ(dock.fundsModel()->rowCount(), 1);
    EXPECT_EQ(dock.fundsModel()->index(0, desk::CFundsTableModel::COL_ACCOUNT).data().toString(),
              QStringLiteral("模拟一"));

    std::vector<QThread*> threads;
    QObject::connect(dock.ordersModel(), &QAbstractItemModel::rowsInserted,
                     [&] { threads.push_back(QThread::currentThread()); });
    QObject::connect(dock.ordersModel(), &QAbstractItemModel::dataChanged,
                     [&] { threads.push_back(QThread::currentThread()); });
    auto filled = makeOrder(infoOne, "o1", 1000, nqservice::OS_FILLED, 5, 5);
    filled->updateTime = 3000;
    publishFromThread(one, 542, {makeOrder(infoOne, "o2", 2000, nqservice::OS_WORKING, 1, 0), filled});
    publishFromThread(one, 570, {makeDeal(infoOne, "d1", 3000, nqservice::EBS_BUY)});
    publishFromThread(one, 547, {makePosition(infoOne, "10007821", '0', 5)});
    publishFromThread(one, 544, {makeFunds("A1", 400.0)});
    EXPECT_EQ(dock.ordersModel()->rowCount(), 1) << "records reach the tables on the GUI thread only";

    ASSERT_TRUE(testsupport::waitUntil([&] {
        return dock.ordersModel()->rowCount() == 2 && dock.dealsModel()->rowCount() == 1 &&
               dock.positionsModel()->rowCount() == 2;
    }));
    EXPECT_EQ(dock.ordersModel()->keyOf(0), "A1|o2") << "newest first";
    EXPECT_EQ(dock.ordersModel()->index(1, desk::COrdersTableModel::COL_STATUS).data().toString(),
              QStringLiteral("已成"));
    EXPECT_EQ(dock.fundsModel()->index(0, desk::CFundsTableModel::COL_AVAILABLE).data().toString(),
              QStringLiteral("400.00"));
    ASSERT_FALSE(threads.empty());
    for (QThread* thread : threads) {
        EXPECT_EQ(thread, qApp->thread());
    }
    EXPECT_FALSE(dock.cancelButtons()->itemVisible("A1|o1")) << "a filled order cannot be cancelled";
    EXPECT_TRUE(dock.cancelButtons()->itemVisible("A1|o2"));
}

TEST_F(AccountsDockTest, ABurstOfVersionsOfOneOrderEndsInItsNewestInOneUpdate)
{
    desk::CAccountsDock dock;
    std::vector<nqservice::IDataPtr> versions;
    for (int traded = 0; traded <= 50; ++traded) {
        auto order = makeOrder(infoOne, "o1", 1000, nqservice::OS_PARTIAL, 50, traded);
        order->updateTime = 1000 + traded;
        versions.push_back(order);
    }
    publishFromThread(one, 542, {versions.front()});
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock.ordersModel()->rowCount() == 1; }));
    QSignalSpy changed(dock.ordersModel(), &QAbstractItemModel::dataChanged);
    publishFromThread(one, 542, std::vector<nqservice::IDataPtr>(versions.begin() + 1, versions.end()));
    ASSERT_TRUE(testsupport::waitUntil([&] {
        return dock.ordersModel()->index(0, desk::COrdersTableModel::COL_TRADED).data().toString() ==
               QStringLiteral("50");
    }));
    EXPECT_EQ(changed.count(), 1) << "the newest per key wins before the GUI thread looks";
    EXPECT_EQ(dock.ordersModel()->rowCount(), 1);
}

TEST_F(AccountsDockTest, TheCancelButtonOfAWorkingOrderAsksTheTradeClientAndShowsItsAnswer)
{
    one->store(542, makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0));
    one->store(542, makeOrder(infoOne, "o2", 2000, nqservice::OS_FILLED, 5, 5));
    client->answer = QStringLiteral("集合竞价阶段不可撤单");
    desk::CAccountsDock dock;
    dock.resize(2400, 400);
    dock.show();
    desk::CRecordTable* table = dock.table(desk::CAccountsDock::TAB_ORDERS);
    ASSERT_EQ(dock.ordersModel()->rowCount(), 2);
    auto clickCancel = [&](const std::string& key) {
        const int row = dock.ordersModel()->rowOfKey(key);
        table->tableView()->scrollTo(table->tableView()->model()->index(row, desk::COrdersTableModel::COL_CANCEL));
        const QRect cell = table->cellRect(row, desk::COrdersTableModel::COL_CANCEL);
        ASSERT_FALSE(cell.isEmpty());
        QTest::mouseClick(table->tableView()->viewport(), Qt::LeftButton, {}, cell.center());
    };
    clickCancel("A1|o2");
    EXPECT_TRUE(client->cancelled.empty()) << "a filled order has no button";
    clickCancel("A1|o1");
    ASSERT_EQ(client->cancelled.size(), 1u);
    ASSERT_TRUE(client->cancelled[0]);
    EXPECT_EQ(client->cancelled[0]->orderId, "o1");
    EXPECT_EQ(client->cancelFlags[0], 0);
    EXPECT_TRUE(client->remarksEmpty);
    EXPECT_TRUE(client->auxNull);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("集合竞价阶段不可撤单"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return messages->model()->rowCount() == 1; }));
    EXPECT_EQ(messages->model()->index(0, desk::CMessagesModel::COL_TEXT).data().toString(),
              QStringLiteral("集合竞价阶段不可撤单"));

    // Once the broker reports the cancel, the button goes.
    auto cancelled = makeOrder(infoOne, "o1", 1000, nqservice::OS_CANCELLED, 5, 0);
    cancelled->updateTime = 5000;
    publishFromThread(one, 542, {cancelled});
    ASSERT_TRUE(testsupport::waitUntil([&] { return !dock.cancelButtons()->itemVisible("A1|o1"); }));
    EXPECT_FALSE(dock.cancelOrder("A1|o1"));
    EXPECT_EQ(client->cancelled.size(), 1u);
}

TEST_F(AccountsDockTest, ALoginChangeReportedOnAServiceThreadSubscribesAfreshOrLetsGo)
{
    one->store(542, makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0));
    two->store(542, makeOrder(infoTwo, "p1", 1500, nqservice::OS_WORKING, 2, 0));
    desk::CAccountsDock dock;
    ASSERT_EQ(dock.ordersModel()->rowCount(), 1);

    login->set("A2", nqservice::BLS_READY);
    std::thread([&] { emit client->sigLoginStatus(infoTwo, nqservice::BLS_READY, std::string()); }).join();
    ASSERT_TRUE(testsupport::waitUntil([&] { return two->openSubscriptions() == 5; }));
    EXPECT_EQ(dock.ordersModel()->rowCount(), 2);
    EXPECT_EQ(dock.ordersModel()->index(0, desk::COrdersTableModel::COL_ACCOUNT).data().toString(),
              QStringLiteral("模拟二"));

    login->set("A1", nqservice::BLS_DISCONNECTED);
    std::thread([&] { emit client->sigLoginStatus(infoOne, nqservice::BLS_DISCONNECTED, std::string()); }).join();
    ASSERT_TRUE(testsupport::waitUntil([&] { return one->openSubscriptions() == 0; }));
    EXPECT_EQ(dock.ordersModel()->rowCount(), 1);
    EXPECT_EQ(dock.ordersModel()->keyOf(0), "A2|p1");
    EXPECT_EQ(dock.feed()->followedAccounts(), std::vector<std::string>{"A2"});

    // Back again: a fresh subscription, the rows read anew.
    login->set("A1", nqservice::BLS_READY);
    std::thread([&] { emit client->sigLoginStatus(infoOne, nqservice::BLS_READY, std::string()); }).join();
    ASSERT_TRUE(testsupport::waitUntil([&] { return one->openSubscriptions() == 5; }));
    EXPECT_EQ(one->subscriptionsMade(), 10);
    EXPECT_EQ(dock.ordersModel()->rowCount(), 2);
}

TEST_F(AccountsDockTest, DestroyingTheDockDropsEverySubscription)
{
    auto* dock = new desk::CAccountsDock;
    ASSERT_EQ(one->openSubscriptions(), 5);
    publishFromThread(one, 542, {makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0)});
    EXPECT_EQ(one->delivered.load(), 1);
    delete dock;
    EXPECT_EQ(one->openSubscriptions(), 0);
    publishFromThread(one, 542, {makeOrder(infoOne, "o2", 2000, nqservice::OS_WORKING, 5, 0)});
    EXPECT_EQ(one->delivered.load(), 1) << "no callback after the drop";
    QCoreApplication::processEvents();
}

namespace {
// Whether some pixel of the area has exactly the colour (the core of a glyph does).
bool hasColour(const QImage& image, const QRect& area, const QColor& colour)
{
    const QRect inside = area.intersected(image.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (QColor(image.pixel(x, y)).rgb() == colour.rgb()) {
                return true;
            }
        }
    }
    return false;
}
}  // namespace

TEST_F(AccountsDockTest, BuysArePaintedInTheThemesRiseColourAndSellsInItsFallColour)
{
    one->store(542, makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0, nqservice::OT_BUY_OPEN));
    one->store(542, makeOrder(infoOne, "o2", 2000, nqservice::OS_PARTIAL, 5, 1, nqservice::OT_SELL_OPEN));
    one->store(570, makeDeal(infoOne, "d1", 1500, nqservice::EBS_BUY));
    one->store(547, makePosition(infoOne, "10007821", '0', 3));
    one->store(547, makePosition(infoOne, "10007821", '1', 2));
    one->store(547, makePosition(infoOne, "510050", '0', 10000));
    one->detail = makeFunds("A1", 99000.5);
    for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
        ASSERT_TRUE(WG::CUiResource::get()->setTheme(theme));
        desk::CAccountsDock dock;
        dock.resize(1400, 260);
        dock.show();
        desk::CRecordTable* table = dock.table(desk::CAccountsDock::TAB_ORDERS);
        ASSERT_TRUE(testsupport::waitUntil([&] { return table->isVisible(); }));
        const QImage image = table->tableView()->viewport()->grab().toImage();
        const QColor rise = *WG::CUiResource::get()->getColor(QStringLiteral("clr_global_rise"));
        const QColor fall = *WG::CUiResource::get()->getColor(QStringLiteral("clr_global_fall"));
        const int buy = dock.ordersModel()->rowOfKey("A1|o1");
        const int sell = dock.ordersModel()->rowOfKey("A1|o2");
        const int column = desk::COrdersTableModel::COL_OPERATION;
        EXPECT_TRUE(hasColour(image, table->cellRect(buy, column), rise)) << theme.toStdString();
        EXPECT_FALSE(hasColour(image, table->cellRect(buy, column), fall)) << theme.toStdString();
        EXPECT_TRUE(hasColour(image, table->cellRect(sell, column), fall)) << theme.toStdString();
        EXPECT_FALSE(hasColour(image, table->cellRect(sell, column), rise)) << theme.toStdString();
        // Where the tables are worth a look: OPTDESK_SHOT_DIR keeps a picture of each tab.
        const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
        if (!shots.isEmpty()) {
            for (int tab = 0; tab < desk::CAccountsDock::TAB_COUNT; ++tab) {
                dock.tabs()->setCurrentIndex(tab);
                dock.grab().save(QStringLiteral("%1/accounts-%2-%3.png").arg(shots, theme).arg(tab));
            }
        }
    }
}

TEST_F(AccountsDockTest, AColumnGrowsToALongerTextThatArrivesLater)
{
    one->store(542, makeOrder(infoOne, "o1", 1000, nqservice::OS_WORKING, 5, 0));
    desk::CAccountsDock dock;
    desk::CRecordTable* table = dock.table(desk::CAccountsDock::TAB_ORDERS);
    const int before = table->columnWidth(desk::COrdersTableModel::COL_MESSAGE);
    auto refused = makeOrder(infoOne, "o2", 2000, nqservice::OS_REJECTED, 5, 0);
    refused->message = "委托被拒绝: 委托价格超出涨跌停范围, 可用资金不足";
    publishFromThread(one, 542, {refused});
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock.ordersModel()->rowCount() == 2; }));
    const QFontMetrics metrics(*WG::CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    const int needed = metrics.horizontalAdvance(QString::fromStdString(refused->message));
    EXPECT_GT(table->columnWidth(desk::COrdersTableModel::COL_MESSAGE), before);
    EXPECT_GE(table->columnWidth(desk::COrdersTableModel::COL_MESSAGE), needed);
    // A narrower text later takes nothing back.
    const int grown = table->columnWidth(desk::COrdersTableModel::COL_MESSAGE);
    auto other = makeOrder(infoOne, "o3", 3000, nqservice::OS_REJECTED, 5, 0);
    other->message = "账户未登录";
    publishFromThread(one, 542, {other});
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock.ordersModel()->rowCount() == 3; }));
    EXPECT_EQ(table->columnWidth(desk::COrdersTableModel::COL_MESSAGE), grown);
}
