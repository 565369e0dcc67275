// The paper broker behind its queue: the ledger, subscriptions, restarts, a
// damaged ledger, and the trading seam it answers.
#include "services/trading/paperfixture.h"

#include "seam/tradinghelpers.h"
#include "services/trading/cdesktradeclient.h"
#include "services/trading/cpaperaccountdata.h"
#include "services/trading/cpaperbroker.h"
#include "services/trading/cpapercommandcenter.h"
#include "services/trading/cpaperledger.h"
#include "services/trading/cpapertradercenter.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <atomic>
#include <mutex>
#include <random>
#include <thread>

using namespace paperfixture;

namespace {

class PaperBroker : public ::testing::Test {
protected:
    std::unique_ptr<trading::CPaperBroker> makeBroker(QString* report = nullptr)
    {
        trading::PaperBrokerConfig config;
        config.ledgerPath = dir.filePath(QStringLiteral("paper.sqlite"));
        config.instruments = market.lookup();
        config.accounts = {so, fo};
        auto broker = std::make_unique<trading::CPaperBroker>(config);
        QString localReport;
        EXPECT_TRUE(broker->start(report != nullptr ? report : &localReport));
        broker->setLoggedIn(so.info->getKey(), true);
        broker->setLoggedIn(fo.info->getKey(), true);
        broker->step(at(10, 0));
        broker->feedQuote(quote(kCall, 0.1000, 0.1002));
        broker->feedQuote(quote(kMealCall, 100.0, 101.0, 10, 0.5, 300.0, 0.5));
        broker->flush();
        return broker;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> table(trading::CPaperBroker& broker, int type,
                                                          const trading::PaperAccountTerms& terms)
    {
        std::vector<boost::shared_ptr<nqservice::IData>> out;
        broker.getVector(terms.info->getKey(), type, out);
        return out;
    }

    QTemporaryDir dir;
    Market market;
    trading::PaperAccountTerms so = stockAccount();
    trading::PaperAccountTerms fo = futureAccount();
};

TEST_F(PaperBroker, SubscribersGetEveryChangeOnceAndInOrder)
{
    auto broker = makeBroker();
    std::mutex mutex;
    std::vector<std::string> seen;
    auto orders = broker->subscribe(so.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER, "",
                                    [&](const boost::shared_ptr<nqservice::IData>& record) {
                                        const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
                                        std::lock_guard<std::mutex> lock(mutex);
                                        seen.push_back(order->orderId + ":" + std::to_string(order->status) + ":" +
                                                       std::to_string(order->tradedVolume));
                                    });
    std::atomic<int> deals{0};
    auto dealHandle = broker->subscribe(so.info->getKey(), nqservice::VQ_DATA_TYPE_QUICK_ORDER, "",
                                        [&](const boost::shared_ptr<nqservice::IData>&) { ++deals; });
    broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0990, 3)}));
    broker->flush();
    broker->feedQuote(quote(kCall, 0.0985, 0.0989));
    broker->flush();
    std::vector<std::string> expected = {"O00000001:2:0", "O00000001:4:3"};
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(deals.load(), 1);
    const auto positions = table(*broker, nqservice::VQ_DATA_TYPE_POSITION_STATICS, so);
    EXPECT_EQ(positions.size(), 2u);  // the ETF and the call
}

TEST_F(PaperBroker, ARefusalReachesTheHandlerAndTheCallbackAndLeavesNoRecord)
{
    auto broker = makeBroker();
    std::mutex mutex;
    std::vector<std::string> refusals;
    broker->setRefusalHandler([&](const std::string&, const std::string& text) {
        std::lock_guard<std::mutex> lock(mutex);
        refusals.push_back(text);
    });
    std::string answered;
    broker->submit(command({order(so, kCall, nqservice::OT_SELL_CLOSE, nqservice::PT_FIX, 0.1000, 1)}),
                   [&](const std::string&, const std::string& refusal) { answered = refusal; });
    broker->setHalted(true);
    broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 1)}));
    broker->flush();
    ASSERT_EQ(refusals.size(), 2u);
    EXPECT_EQ(refusals[0], "委托被拒绝: 10000001 可平仓数量不足");
    EXPECT_EQ(refusals[1], "委托被拒绝: 交易已暂停");
    EXPECT_EQ(answered, "委托被拒绝: 10000001 可平仓数量不足");
    EXPECT_TRUE(table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so).empty());
    broker->setHalted(false);
    broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 1)}));
    broker->flush();
    EXPECT_EQ(table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so).size(), 1u);
}

TEST_F(PaperBroker, ARestartFindsTheSamePositionsFundsAndWorkingOrders)
{
    std::string fundsBefore;
    std::string positionsBefore;
    {
        auto broker = makeBroker();
        broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 4)}));
        broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 2)}));
        broker->submit(command({order(fo, kMealCall, nqservice::OT_OPEN_SHORT, nqservice::PT_FIX, 100.0, 3)}));
        broker->flush();
        fundsBefore = broker->accountDetail(so.info->getKey())->toString();
        for (const auto& record : table(*broker, nqservice::VQ_DATA_TYPE_POSITION_STATICS, so)) {
            positionsBefore += record->toString();
        }
        EXPECT_EQ(broker->workingOrderCount(), 1);
    }
    auto broker = makeBroker();
    EXPECT_EQ(broker->accountDetail(so.info->getKey())->toString(), fundsBefore);
    std::string positionsAfter;
    for (const auto& record : table(*broker, nqservice::VQ_DATA_TYPE_POSITION_STATICS, so)) {
        positionsAfter += record->toString();
    }
    EXPECT_EQ(positionsAfter, positionsBefore);
    EXPECT_EQ(broker->workingOrderCount(), 1);
    EXPECT_EQ(table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so).size(), 2u);
    // Ids go on from where they stopped.
    broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 1)}));
    broker->flush();
    std::set<std::string> ids;
    for (const auto& record : table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so)) {
        ids.insert(boost::dynamic_pointer_cast<nqservice::COrderDetail>(record)->orderId);
    }
    EXPECT_EQ(ids.size(), 3u);
    EXPECT_EQ(table(*broker, nqservice::VQ_DATA_TYPE_POSITION_STATICS, fo).size(), 1u);
}

TEST_F(PaperBroker, ADamagedLedgerIsSetAsideAndAFreshOneStarted)
{
    const QString path = dir.filePath(QStringLiteral("paper.sqlite"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("this is not a ledger, but it is the user's file").repeated(200));
    }
    QString report;
    auto broker = makeBroker(&report);
    EXPECT_TRUE(report.contains(QStringLiteral("已另存为"))) << report.toStdString();
    const QStringList aside = QDir(dir.path()).entryList({QStringLiteral("paper.sqlite.damaged-*")});
    ASSERT_EQ(aside.size(), 1);
    QFile kept(dir.filePath(aside.front()));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_TRUE(kept.readAll().startsWith("this is not a ledger"));
    EXPECT_NEAR(broker->accountDetail(so.info->getKey())->availableFunds, so.cash, 1e-6);
}

TEST_F(PaperBroker, AForeignDatabaseIsSetAsideNotOverwritten)
{
    const QString path = dir.filePath(QStringLiteral("paper.sqlite"));
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE notes(text TEXT); INSERT INTO notes VALUES('keep me');", nullptr, nullptr,
                           nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    trading::CPaperLedger ledger(path);
    QString report;
    ASSERT_TRUE(ledger.open(&report));
    EXPECT_FALSE(report.isEmpty());
    ASSERT_FALSE(ledger.setAsidePath().isEmpty());
    ASSERT_EQ(sqlite3_open(QFile::encodeName(ledger.setAsidePath()).constData(), &db), SQLITE_OK);
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db, "SELECT text FROM notes", -1, &stmt, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)), "keep me");
    sqlite3_finalize(stmt);
    sqlite3_close(db);
}

TEST_F(PaperBroker, NoCallbackAfterTheHandleIsDroppedDuringABurst)
{
    auto broker = makeBroker();
    std::atomic<bool> dropped{false};
    std::atomic<int> late{0};
    std::atomic<int> calls{0};
    auto handle = broker->subscribe(so.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER, "",
                                    [&](const boost::shared_ptr<nqservice::IData>&) {
                                        ++calls;
                                        if (dropped.load()) {
                                            ++late;
                                        }
                                        std::this_thread::sleep_for(std::chrono::microseconds(200));
                                    });
    std::thread burst([&] {
        for (int i = 0; i < 400; ++i) {
            broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 1)}));
        }
    });
    while (calls.load() < 20) {
        std::this_thread::yield();
    }
    handle.reset();  // returns once a callback in flight has finished
    dropped = true;
    burst.join();
    broker->flush();
    EXPECT_EQ(late.load(), 0);
    EXPECT_LT(calls.load(), 400);
}

TEST_F(PaperBroker, EverythingASubscriberSawIsInTheLedger)
{
    std::map<std::string, std::string> seen;  // type|key -> newest record text
    std::mutex mutex;
    so.cash = 1e9;
    fo.cash = 1e9;
    {
        auto broker = makeBroker();
        std::vector<boost::shared_ptr<nqservice::SubRequest>> handles;
        for (const auto& terms : {so, fo}) {
            for (int type : {nqservice::VQ_DATA_TYPE_ORDER, nqservice::VQ_DATA_TYPE_QUICK_ORDER}) {
                handles.push_back(broker->subscribe(terms.info->getKey(), type, "",
                                                    [&, type](const boost::shared_ptr<nqservice::IData>& record) {
                                                        std::lock_guard<std::mutex> lock(mutex);
                                                        seen[std::to_string(type) + "|" + record->getKey()] =
                                                            record->toBsonWithBson().jsonString();
                                                    }));
            }
        }
        std::mt19937 random(7);
        for (int i = 0; i < 3000; ++i) {
            const bool meal = random() % 3 == 0;
            const auto& terms = meal ? fo : so;
            // Opens twice as often as closes, so that closes find something to close.
            const int pick = static_cast<int>(random() % 9);
            const int op = meal ? (pick < 6 ? (pick % 2 == 0 ? 0 : 3) : 1 + 3 * (pick % 2))
                                : (pick < 6 ? (pick % 2 == 0 ? 32 : 34) : 33 + 2 * (pick % 2));
            const double price = meal ? 100.0 + 0.5 * static_cast<int>(random() % 5) - 1.0
                                      : 0.0998 + 0.0001 * static_cast<int>(random() % 6);
            broker->submit(command({order(terms, meal ? kMealCall : kCall, op, nqservice::PT_FIX, price,
                                          1 + static_cast<int>(random() % 20))}));
            if (i % 10 == 0) {
                broker->feedQuote(meal ? quote(kMealCall, 99.0 + static_cast<int>(random() % 4), 101.0, 10, 0.5, 300.0, 0.5)
                                       : quote(kCall, 0.0996 + 0.0001 * static_cast<int>(random() % 4), 0.1002));
            }
        }
        broker->flush();
        EXPECT_EQ(broker->failedCommits(), 0);
    }
    trading::CPaperLedger ledger(dir.filePath(QStringLiteral("paper.sqlite")));
    ASSERT_TRUE(ledger.open(nullptr));
    std::map<std::string, std::string> stored;
    std::map<std::string, long long> meta;
    ASSERT_TRUE(ledger.load(
        [&](int type, const std::string&, const bson::BSONObj& record, const bson::BSONObj&) {
            if (type == nqservice::VQ_DATA_TYPE_ORDER) {
                nqservice::COrderDetail order;
                order.bsonValueFromObj(record, true, nullptr);
                stored[std::to_string(type) + "|" + order.getKey()] = record.jsonString();
            } else if (type == nqservice::VQ_DATA_TYPE_QUICK_ORDER) {
                nqservice::CDealDetail deal;
                deal.bsonValueFromObj(record, true, nullptr);
                stored[std::to_string(type) + "|" + deal.getKey()] = record.jsonString();
            }
        },
        meta, nullptr));
    ASSERT_GT(seen.size(), 1000u);
    for (const auto& entry : seen) {
        auto it = stored.find(entry.first);
        ASSERT_NE(it, stored.end()) << entry.first;
        EXPECT_EQ(it->second, entry.second) << entry.first;
    }
}

TEST_F(PaperBroker, TheTradingSeamAnswersFromTheBooks)
{
    auto broker = makeBroker();
    auto center = boost::make_shared<trading::CPaperTraderCenter>(broker.get(), std::set<std::string>{"SO001"});
    EXPECT_TRUE(center->isVolumeQueryByBroker("SO001"));
    EXPECT_FALSE(center->isVolumeQueryByBroker("FO001"));
    const auto data = center->getDataCenter()->getAccountData(utils::hash("SO001"));
    ASSERT_TRUE(data);
    EXPECT_FALSE(center->getDataCenter()->getAccountData(utils::hash("nobody")));
    EXPECT_EQ(data->getAccountInfo()->getKey(), "SO001");
    EXPECT_NEAR(data->getAccountDetail()->availableFunds, so.cash, 1e-6);
    EXPECT_EQ(data->getCanOrderVolume("SH", "10000001", nqservice::OT_COVERED_OPEN, 49, 0.1, 0, nqservice::PT_FIX, 0),
              10.0);
    const int flag = 48;
    EXPECT_EQ(center->getCalculator()->calcAvailableVolume(data, "SH", "10000001", nqservice::OT_BUY_OPEN, 49, &flag,
                                                           &flag, 0.1002, 7, 0, false, nullptr),
              7);
    const auto fee = center->getInstrumentFee(so.info, "SH", "10000001");
    ASSERT_TRUE(fee);
    EXPECT_DOUBLE_EQ(nqservice::StockOptionFeeDataHelper::getUnitFee(fee, nqservice::OF_OPEN, nqservice::EBS_BUY), 3.6);
    EXPECT_DOUBLE_EQ(nqservice::StockOptionFeeDataHelper::getUnitFee(fee, nqservice::OF_OPEN, nqservice::EBS_SELL), 2.0);
    EXPECT_GT(fee->marginRatio, 0.0);

    trading::CPaperCommandCenter commands(broker.get());
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {
        order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.1002, 2)};
    std::atomic<int> answered{-1};
    EXPECT_TRUE(commands.createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE, params,
                                       {{"SO001", 1.0}}, nqservice::VQ_STOP_LOSS_NONE, false, true,
                                       [&](utils::NQError error, int) { answered = error.isSuccess() ? 1 : 0; },
                                       bson::BSONObj(), "", nqservice::TP_DEFAULT, bson::BSONObj(),
                                       nqservice::VQ_LIMITED_PRICE_NONE, bson::BSONObj(), QString(), false,
                                       bson::BSONObj(), 0, nqservice::ETF_HEDGE_STATUS_NONE, bson::BSONObj(),
                                       bson::BSONObj()));
    broker->flush();
    EXPECT_EQ(answered.load(), 1);
    std::vector<boost::shared_ptr<nqservice::IData>> positions;
    data->getVector(nqservice::VQ_DATA_TYPE_POSITION_STATICS, positions);
    EXPECT_EQ(positions.size(), 2u);
    EXPECT_EQ(data->getCanOrderVolume("SH", "10000001", nqservice::OT_SELL_CLOSE, 49, 0.1, 0, nqservice::PT_FIX, 0), 2.0);
}

}  // namespace

namespace {

TEST_F(PaperBroker, TheTradeClientCancelsAndAnswersVolumeRequestsThroughTheBroker)
{
    auto broker = makeBroker();
    trading::CDeskTradeClient client;
    client.setBroker(broker.get());
    broker->submit(command({order(so, kCall, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0900, 2)}));
    broker->flush();
    auto orders = table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so);
    ASSERT_EQ(orders.size(), 1u);
    const auto working = boost::dynamic_pointer_cast<nqservice::COrderDetail>(orders.front());
    QString message;
    client.cancelOrder(working, message, 0, QString(), nullptr);
    EXPECT_TRUE(message.isEmpty()) << message.toStdString();
    broker->flush();
    orders = table(*broker, nqservice::VQ_DATA_TYPE_ORDER, so);
    const auto cancelled = boost::dynamic_pointer_cast<nqservice::COrderDetail>(orders.front());
    EXPECT_EQ(cancelled->status, nqservice::OS_CANCELLED);
    client.cancelOrder(cancelled, message, 0, QString(), nullptr);
    EXPECT_EQ(message, QStringLiteral("委托已完成, 无法撤单"));

    // A volume request answers on the broker's thread, into the table the caller keeps.
    TC::CStockRequestParam param;
    param.accounts = {"SO001"};
    param.market = "SH";
    param.code = "10000001";
    param.priceType = nqservice::PT_FIX;
    param.price = 0.1000;
    param.operationType = nqservice::OT_COVERED_OPEN;
    std::atomic<long long> answered{-1};
    param.callback = [&](std::string account, long long volume) {
        EXPECT_EQ(account, "SO001");
        answered = volume;
    };
    boost::shared_ptr<TC::StockSubTable> volumes;
    ASSERT_TRUE(client.requestStockVolume(param, volumes));
    broker->flush();
    EXPECT_EQ(answered.load(), 10) << "100,000 shares of 50ETF cover ten calls";
    EXPECT_EQ(volumes->stockKey(), kCall);
}

}  // namespace
