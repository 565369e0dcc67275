// The simulated market model and feed: consistent books, determinism by seed,
// phases by the clock, and callbacks on service threads.
#include "seam/cquoterequest.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>

using market::CSimClock;
using market::CSimExchangeClient;
using market::CSimMarket;
using market::CSimMarketConfig;
using market::CSimQuoteClient;
using TC::CPriceData;

namespace {

const QDate kTradingDate(2024, 12, 10);

class SimMarket : public ::testing::Test {
protected:
    explicit SimMarket(QTime time = QTime(10, 0)) : clock(QDateTime(kTradingDate, time), 0.0) {}

    std::unique_ptr<CSimMarket> makeMarket(unsigned seed, CSimQuoteClient* sink)
    {
        CSimMarketConfig config;
        config.seed = seed;
        config.clock = &clock;
        return std::make_unique<CSimMarket>(exchange.instruments(), sink, config);
    }

    CSimClock clock;
    CSimExchangeClient exchange{3, kTradingDate, &clock};
    CSimQuoteClient quotes{&clock, false};
};

TEST_F(SimMarket, BooksAreConsistentWithTheOptionsValue)
{
    auto market = makeMarket(1, &quotes);
    market->publishRound();
    int options = 0;
    for (const auto& detail : exchange.instruments()) {
        const auto data = quotes.getStockPrice(QString::fromStdString(detail->key()));
        ASSERT_NE(data, nullptr) << detail->name;
        const std::string& who = detail->name;
        EXPECT_EQ(data->market, detail->market);
        EXPECT_EQ(data->code, detail->code);
        EXPECT_EQ(data->tradingPhase, TC::TP_CONTINUOUS) << who;
        ASSERT_TRUE(utils::isUsable(data->bidPrice1)) << who;
        ASSERT_TRUE(utils::isUsable(data->askPrice1)) << who;
        EXPECT_LT(data->bidPrice1, data->askPrice1) << who;
        for (int level = 2; level <= 5; ++level) {
            if (utils::isUsable(data->askPrice(level))) {
                EXPECT_GT(data->askPrice(level), data->askPrice(level - 1)) << who << " ask " << level;
                EXPECT_GT(data->askVolume(level), 0) << who;
            }
            if (utils::isUsable(data->bidPrice(level))) {
                EXPECT_LT(data->bidPrice(level), data->bidPrice(level - 1)) << who << " bid " << level;
                EXPECT_GT(data->bidVolume(level), 0) << who;
            }
        }
        EXPECT_GT(data->askVolume1, 0) << who;
        EXPECT_GT(data->bidVolume1, 0) << who;
        // A session under way: the day has traded.
        ASSERT_TRUE(utils::isUsable(data->lastPrice)) << who;
        EXPECT_GT(data->volume, 0) << who;
        EXPECT_GT(data->amount, 0.0) << who;
        EXPECT_NEAR(data->changeAmount, data->lastPrice - data->preClose, 1e-9) << who;
        EXPECT_NEAR(data->changeRatio, data->changeAmount / data->preClose, 1e-12) << who;
        EXPECT_NEAR(data->quoteMarkA, 0.5 * (data->bidPrice1 + data->askPrice1), 1e-12) << who;
        EXPECT_TRUE(utils::isAbsent(data->quoteMarkB)) << who;
        EXPECT_LE(data->askPrice1, data->upStopPrice + 1e-9) << who;
        EXPECT_GE(data->bidPrice1, data->downStopPrice - 1e-9) << who;
        EXPECT_DOUBLE_EQ(data->preClose, detail->preClosePrice) << who;
        EXPECT_DOUBLE_EQ(data->referencePrice, detail->preSettlementPrice) << who;
        if (!detail->isOption()) {
            continue;
        }
        ++options;
        const auto underlying = quotes.getStockPrice(QString::fromStdString(detail->underlyingKey()));
        ASSERT_NE(underlying, nullptr) << who;
        const double spot = 0.5 * (underlying->bidPrice1 + underlying->askPrice1);
        const double intrinsic = std::max(0.0, detail->call ? spot - detail->exercisePrice : detail->exercisePrice - spot);
        const double unitFactor = detail->kind == nqservice::IK_STOCK_OPTION ? detail->contractUnit / 10000.0 : 1.0;
        // The model prices on the underlying's value; its book sits within a tick of it.
        const double slack = underlying->askPrice1 - underlying->bidPrice1 + detail->priceTick;
        EXPECT_GE(data->askPrice1, intrinsic * unitFactor - slack) << who << " spot " << spot;
        EXPECT_GE(data->lastPrice, intrinsic * unitFactor - slack - (data->askPrice1 - data->bidPrice1)) << who;
        EXPECT_GT(data->openInterest, 0.0) << who;
        EXPECT_GE(data->optionStatus, nqservice::SOS_NORMAL);
        EXPECT_LE(data->optionStatus, nqservice::SOS_NEWLY_LISTED);
        const int days = static_cast<int>(kTradingDate.daysTo(QDate::fromString(QString::number(detail->expireDate), "yyyyMMdd")));
        if (detail->kind == nqservice::IK_STOCK_OPTION && days <= 7 && detail->listDate != 20241210) {
            EXPECT_EQ(data->optionStatus, nqservice::SOS_NEAR_EXPIRY) << who;
        }
    }
    EXPECT_GT(options, 400);
}

TEST_F(SimMarket, CallsAreWorthMoreAtLowerStrikesAndPutsAtHigher)
{
    auto market = makeMarket(2, &quotes);
    market->publishRound();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange.getStockOptionMap(chains);
    const auto month = chains.value("510050.SH").first();
    std::map<double, double> calls;
    std::map<double, double> puts;
    for (const QString& key : month) {
        const auto detail = exchange.getCodeInfo(key);
        if (detail->adjusted) {
            continue;
        }
        const auto data = quotes.getStockPrice(key);
        (detail->call ? calls : puts)[detail->exercisePrice] = 0.5 * (data->bidPrice1 + data->askPrice1);
    }
    ASSERT_GE(calls.size(), 9U);
    double previous = 1e9;
    for (const auto& [strike, mid] : calls) {
        EXPECT_LE(mid, previous + 2e-4) << "call at " << strike;
        previous = mid;
    }
    previous = 0.0;
    for (const auto& [strike, mid] : puts) {
        EXPECT_GE(mid, previous - 2e-4) << "put at " << strike;
        previous = mid;
    }
}

TEST_F(SimMarket, SameSeedGivesTheSameQuotes)
{
    CSimQuoteClient otherQuotes(&clock, false);
    CSimQuoteClient thirdQuotes(&clock, false);
    auto first = makeMarket(42, &quotes);
    auto second = makeMarket(42, &otherQuotes);
    auto third = makeMarket(43, &thirdQuotes);
    int differ = 0;
    for (int round = 0; round < 3; ++round) {
        first->publishRound();
        second->publishRound();
        third->publishRound();
        for (const QString& key : exchange.getAllCodes()) {
            const auto a = quotes.getStockPrice(key);
            const auto b = otherQuotes.getStockPrice(key);
            const auto c = thirdQuotes.getStockPrice(key);
            ASSERT_TRUE(a && b && c);
            EXPECT_EQ(a->lastPrice, b->lastPrice) << key.toStdString() << " round " << round;
            EXPECT_EQ(a->bidPrice1, b->bidPrice1) << key.toStdString();
            EXPECT_EQ(a->askVolume3, b->askVolume3) << key.toStdString();
            EXPECT_EQ(a->volume, b->volume) << key.toStdString();
            EXPECT_EQ(a->openInterest, b->openInterest) << key.toStdString();
            differ += a->bidPrice1 != c->bidPrice1 || a->volume != c->volume;
        }
        clock.advance(500);
    }
    EXPECT_GT(differ, 100);
}

TEST_F(SimMarket, UnderlyingsMoveOnlyWhileTrading)
{
    auto market = makeMarket(5, &quotes);
    market->publishRound();
    const double before = quotes.getStockPrice("510050.SH")->quoteMarkA;
    bool moved = false;
    for (int i = 0; i < 200 && !moved; ++i) {
        clock.advance(60 * 1000);
        market->publishRound();
        moved = !utils::isPriceEqual(quotes.getStockPrice("510050.SH")->quoteMarkA, before);
    }
    EXPECT_TRUE(moved);
    clock.setDateTime(QDateTime(kTradingDate, QTime(12, 0)));
    market->publishRound();
    const auto lunch = quotes.getStockPrice("510050.SH");
    EXPECT_EQ(lunch->tradingPhase, TC::TP_NOT_TRADING);
    clock.advance(10 * 60 * 1000);
    market->publishRound();
    const auto later = quotes.getStockPrice("510050.SH");
    EXPECT_EQ(later->bidPrice1, lunch->bidPrice1);
    EXPECT_EQ(later->volume, lunch->volume);
    EXPECT_GT(later->time, lunch->time);
}

class SimMarketBeforeOpen : public SimMarket {
protected:
    SimMarketBeforeOpen() : SimMarket(QTime(8, 30)) {}
};

TEST_F(SimMarketBeforeOpen, NothingTradedAndNoBookBeforeTheAuction)
{
    auto market = makeMarket(1, &quotes);
    market->publishRound();
    const auto data = quotes.getStockPrice(exchange.getAllCodes().at(20));
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->tradingPhase, TC::TP_BEFORE_OPEN);
    EXPECT_TRUE(utils::isAbsent(data->lastPrice));
    EXPECT_TRUE(utils::isAbsent(data->bidPrice1));
    EXPECT_EQ(data->volume, 0);
    // The call auction posts a book and an indicative price, still without deals.
    clock.setDateTime(QDateTime(kTradingDate, QTime(9, 20)));
    market->publishRound();
    const auto auction = quotes.getStockPrice(exchange.getAllCodes().at(20));
    EXPECT_EQ(auction->tradingPhase, TC::TP_OPEN_CALL_AUCTION);
    EXPECT_TRUE(utils::isUsable(auction->bidPrice1));
    EXPECT_TRUE(utils::isUsable(auction->quoteMarkB));
    EXPECT_TRUE(utils::isAbsent(auction->lastPrice));
    EXPECT_EQ(auction->volume, 0);
}

TEST_F(SimMarket, FeedCallsBackOnServiceThreadsAtTheRate)
{
    utils::CManualSingletonT<TC::CQuoteClient>::install(nullptr);
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<CSimQuoteClient>(&clock, true);
    CSimMarketConfig config;
    config.seed = 9;
    config.clock = &clock;
    config.threads = 2;
    config.snapshotsPerSecond = 20.0;
    client->attachFeed(std::make_unique<CSimMarket>(exchange.instruments(), client, config));
    std::atomic<int> calls{0};
    std::atomic<bool> offMain{true};
    const auto main = std::this_thread::get_id();
    const QString key = exchange.getAllCodes().at(30);
    auto handle = TC::CQuoteRequest::makeHandicapRequest(
        key,
        [&](boost::shared_ptr<CPriceData>& data) {
            if (std::this_thread::get_id() == main || QString::fromStdString(utils::vqStockKey(data->market, data->code)) != key) {
                offMain.store(false);
            }
            calls.fetch_add(1);
        },
        TC::ST_DEFAULT);
    client->feed()->start();
    EXPECT_TRUE(testsupport::waitUntil([&] { return calls.load() >= 10; }, 5000));
    EXPECT_TRUE(offMain.load());
    EXPECT_GT(client->feed()->publishedCount(), static_cast<long long>(exchange.getAllCodes().size()));
    handle.reset();
    const int atDrop = calls.load();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(calls.load(), atDrop);
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}

TEST_F(SimMarket, HandlesEndUnderAStressFeed)
{
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<CSimQuoteClient>(&clock, true);
    CSimMarketConfig config;
    config.clock = &clock;
    config.threads = 2;
    config.snapshotsPerSecond = 100000.0 / static_cast<double>(exchange.getAllCodes().size());
    client->attachFeed(std::make_unique<CSimMarket>(exchange.instruments(), client, config));
    client->feed()->start();
    const QStringList keys = exchange.getAllCodes();
    std::atomic<int> late{0};
    for (int round = 0; round < 10; ++round) {
        std::vector<boost::shared_ptr<TC::CQuoteRequest>> handles;
        auto dropped = std::make_shared<std::atomic<bool>>(false);
        std::atomic<int> calls{0};
        for (int i = 0; i < 100; ++i) {
            handles.push_back(TC::CQuoteRequest::makeHandicapRequest(
                keys.at((round * 100 + i) % keys.size()),
                [&, dropped](boost::shared_ptr<CPriceData>&) {
                    if (dropped->load()) {
                        late.fetch_add(1);
                    }
                    calls.fetch_add(1);
                },
                TC::ST_DEFAULT));
        }
        testsupport::waitUntil([&] { return calls.load() > 200; }, 3000);
        handles.clear();
        dropped->store(true);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(late.load(), 0);
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}

}  // namespace
