// The market history of a seed: a day continues the one before (codes, strikes,
// closes and settlements), new months and strikes are listed as the exchanges
// list them, and a day reached directly equals the one reached day by day,
// whatever the quote rate of the feed that ran those days.
#include "seam/common.h"
#include "services/market/cmarkethistory.h"
#include "services/market/csessionclock.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/market/cuniversebuilder.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>
#include <map>
#include <set>
#include <string>

using market::CMarketDay;
using market::CMarketHistory;
using market::CSessionClock;
using market::CUniverseBuilder;
using nqservice::CInstrumentDetail;

namespace {

constexpr unsigned kSeed = 20261122U;
// 30 trading days across the November 2026 expiry (25th) and the December one (23rd).
const QDate kFirstDay(2026, 11, 16);

std::vector<CMarketDay> thirtyDays(unsigned seed)
{
    std::vector<CMarketDay> days;
    QDate day = kFirstDay;
    CMarketHistory history(seed);
    for (int i = 0; i < 30; ++i) {
        days.push_back(history.day(day));
        day = CSessionClock::nextTradingDay(day);
    }
    return days;
}

std::map<std::string, std::shared_ptr<CInstrumentDetail>> byKey(const CMarketDay& day)
{
    std::map<std::string, std::shared_ptr<CInstrumentDetail>> map;
    for (const auto& detail : day.instruments) {
        map[detail->key()] = detail;
    }
    return map;
}

QDate dateOf(int value) { return QDate(value / 10000, value / 100 % 100, value % 100); }

class ThirtyDays : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_days = new std::vector<CMarketDay>(thirtyDays(kSeed)); }
    static void TearDownTestSuite()
    {
        delete s_days;
        s_days = nullptr;
    }
    static const std::vector<CMarketDay>& days() { return *s_days; }
    static std::vector<CMarketDay>* s_days;
};

std::vector<CMarketDay>* ThirtyDays::s_days = nullptr;

}  // namespace

TEST_F(ThirtyDays, AnUnexpiredContractKeepsItsCodeStrikeUnitAndName)
{
    for (std::size_t i = 1; i < days().size(); ++i) {
        const auto yesterday = byKey(days()[i - 1]);
        const auto today = byKey(days()[i]);
        const QDate date = days()[i].date;
        for (const auto& entry : yesterday) {
            const CInstrumentDetail& before = *entry.second;
            if (!before.isOption()) {
                continue;
            }
            const auto found = today.find(entry.first);
            if (dateOf(before.expireDate) < date) {
                EXPECT_EQ(found, today.end()) << before.name << " expired on " << before.expireDate << " but is listed on "
                                              << date.toString(Qt::ISODate).toStdString();
                continue;
            }
            ASSERT_NE(found, today.end()) << before.name << " " << entry.first << " left before its expiry, on "
                                          << date.toString(Qt::ISODate).toStdString();
            const CInstrumentDetail& after = *found->second;
            EXPECT_EQ(after.name, before.name) << entry.first;
            EXPECT_EQ(after.exercisePrice, before.exercisePrice) << entry.first;
            EXPECT_EQ(after.contractUnit, before.contractUnit) << entry.first;
            EXPECT_EQ(after.expireDate, before.expireDate) << entry.first;
            EXPECT_EQ(after.listDate, before.listDate) << entry.first;
            EXPECT_EQ(after.tradingCode, before.tradingCode) << entry.first;
        }
    }
}

TEST_F(ThirtyDays, EveryDayOpensOnTheDayBeforesCloseAndSettlement)
{
    int checked = 0;
    for (std::size_t i = 1; i < days().size(); ++i) {
        const CMarketDay& yesterday = days()[i - 1];
        for (const auto& detail : days()[i].instruments) {
            const QString key = QString::fromStdString(detail->key());
            if (!yesterday.closes.contains(key)) {
                // Only a newly listed option is new (or a future whose options are).
                EXPECT_TRUE(detail->isOption() || detail->kind == nqservice::IK_FUTURE) << detail->name;
                if (detail->isOption()) {
                    EXPECT_EQ(dateOf(detail->listDate), days()[i].date) << detail->name;
                }
                continue;
            }
            EXPECT_DOUBLE_EQ(detail->preClosePrice, yesterday.closes.value(key)) << detail->name;
            EXPECT_DOUBLE_EQ(detail->preSettlementPrice, yesterday.settlements.value(key)) << detail->name;
            ++checked;
        }
    }
    EXPECT_GT(checked, 29 * 1000);
    // The underlyings move from day to day: no day restarts from the same price.
    std::set<double> closes;
    for (const CMarketDay& day : days()) {
        closes.insert(day.closes.value(QStringLiteral("510050.SH")));
    }
    EXPECT_GT(closes.size(), 20U);
}

TEST_F(ThirtyDays, TheNewMonthIsListedTheTradingDayAfterAnExpiry)
{
    int expiries = 0;
    for (std::size_t i = 1; i < days().size(); ++i) {
        const QDate yesterday = days()[i - 1].date;
        const QDate today = days()[i].date;
        const std::vector<QDate> before = CUniverseBuilder::listedMonths(yesterday);
        const std::vector<QDate> after = CUniverseBuilder::listedMonths(today);
        std::set<int> newExpiries;
        for (const QDate& month : after) {
            if (std::find(before.begin(), before.end(), month) == before.end()) {
                newExpiries.insert(std::stoi(
                    CUniverseBuilder::etfOptionExpiry(month.year(), month.month()).toString("yyyyMMdd").toStdString()));
            }
        }
        const bool expiredYesterday =
            CUniverseBuilder::etfOptionExpiry(yesterday.year(), yesterday.month()) == yesterday;
        EXPECT_EQ(!newExpiries.empty(), expiredYesterday) << today.toString(Qt::ISODate).toStdString();
        if (!expiredYesterday) {
            continue;
        }
        ++expiries;
        // Every underlying lists the new month today, with codes never seen before.
        std::set<std::string> underlyings;
        const auto old = byKey(days()[i - 1]);
        for (const auto& detail : days()[i].instruments) {
            if (detail->kind == nqservice::IK_STOCK_OPTION && newExpiries.count(detail->expireDate) != 0) {
                underlyings.insert(detail->underlyingCode);
                EXPECT_EQ(dateOf(detail->listDate), today) << detail->name;
                EXPECT_EQ(old.count(detail->key()), 0U) << detail->name << " took a code alive yesterday";
            }
            EXPECT_GE(detail->expireDate, std::stoi(today.toString("yyyyMMdd").toStdString())) << detail->name;
        }
        EXPECT_EQ(underlyings.size(), 9U) << today.toString(Qt::ISODate).toStdString();
    }
    EXPECT_EQ(expiries, 2) << "November's and December's";
}

TEST_F(ThirtyDays, LaddersCoverTheMoneyAndGrowWhenTheUnderlyingMoves)
{
    int added = 0;
    for (std::size_t i = 0; i < days().size(); ++i) {
        const auto map = byKey(days()[i]);
        // Months trading yesterday, by underlying and expiry.
        std::set<std::pair<std::string, int>> trading;
        if (i > 0) {
            for (const auto& detail : days()[i - 1].instruments) {
                if (detail->kind == nqservice::IK_STOCK_OPTION) {
                    trading.insert({detail->underlyingKey(), detail->expireDate});
                }
            }
        }
        std::map<std::pair<std::string, int>, std::set<long>> ladders;  // (underlying, expiry) -> strikes
        for (const auto& detail : days()[i].instruments) {
            if (detail->kind != nqservice::IK_STOCK_OPTION || detail->adjusted) {
                continue;
            }
            ladders[{detail->underlyingKey(), detail->expireDate}].insert(std::lround(detail->exercisePrice * 1000));
            if (i > 0 && dateOf(detail->listDate) == days()[i].date &&
                trading.count({detail->underlyingKey(), detail->expireDate}) != 0) {
                ++added;  // listed today in a month already trading: a strike added on a move
            }
        }
        for (const auto& ladder : ladders) {
            const double spot = map.at(ladder.first.first)->preClosePrice;
            const long atm = std::lround(CUniverseBuilder::nearestStrike(spot) * 1000);
            const auto below = std::count_if(ladder.second.begin(), ladder.second.end(), [&](long k) { return k < atm; });
            const auto above = std::count_if(ladder.second.begin(), ladder.second.end(), [&](long k) { return k > atm; });
            EXPECT_GE(below, 4) << ladder.first.first << " " << ladder.first.second;
            EXPECT_GE(above, 4) << ladder.first.first << " " << ladder.first.second;
            EXPECT_EQ(ladder.second.count(atm), 1U) << ladder.first.first << " " << ladder.first.second;
            // The ladder stays whole on the exchange's grid.
            for (auto it = std::next(ladder.second.begin()); it != ladder.second.end(); ++it) {
                const double lower = *std::prev(it) / 1000.0;
                EXPECT_EQ(*it, std::lround(CUniverseBuilder::nextStrikeUp(lower) * 1000)) << ladder.first.first;
            }
        }
    }
    EXPECT_GT(added, 0) << "in 30 days some underlying moves beyond its ladder";
}

TEST_F(ThirtyDays, NoTwoContractsAliveTogetherShareACode)
{
    std::map<std::string, std::string> contractOfKey;  // key -> what it names
    for (const CMarketDay& day : days()) {
        std::set<std::string> keys;
        for (const auto& detail : day.instruments) {
            EXPECT_TRUE(keys.insert(detail->key()).second) << detail->key() << " twice on "
                                                           << day.date.toString(Qt::ISODate).toStdString();
            const std::string what = detail->name + "/" + std::to_string(detail->expireDate) + "/" +
                                     std::to_string(detail->contractUnit);
            const auto known = contractOfKey.emplace(detail->key(), what);
            EXPECT_EQ(known.first->second, what) << detail->key() << " named another contract before";
        }
    }
}

TEST(MarketHistory, ADayBuiltDirectlyEqualsTheOneReachedDayByDay)
{
    const QDate start(2026, 11, 20);
    market::CSimExchangeClient stepping(kSeed, start);
    QSignalSpy newDays(&stepping, &TC::CExchangeClient::sigInitDataFinish);
    QDate day = start;
    for (int i = 0; i < 6; ++i) {
        day = CSessionClock::nextTradingDay(day);
        stepping.setTradingDate(day);
    }
    EXPECT_EQ(newDays.count(), 6);
    market::CSimExchangeClient direct(kSeed, day);
    const auto a = stepping.instruments();
    const auto b = direct.instruments();
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i]->key(), b[i]->key());
        EXPECT_EQ(a[i]->name, b[i]->name);
        EXPECT_EQ(a[i]->preClosePrice, b[i]->preClosePrice) << a[i]->name;
        EXPECT_EQ(a[i]->preSettlementPrice, b[i]->preSettlementPrice) << a[i]->name;
        EXPECT_EQ(a[i]->marginParameter, b[i]->marginParameter) << a[i]->name;
    }
    EXPECT_EQ(stepping.closePrices(), direct.closePrices());
}

TEST(MarketHistory, TheSameSeedGivesTheSameHistoryAnotherSeedAnother)
{
    const QDate day(2026, 12, 1);
    const CMarketDay a = CMarketHistory(3).day(day);
    const CMarketDay b = CMarketHistory(3).day(day);
    const CMarketDay c = CMarketHistory(4).day(day);
    EXPECT_EQ(a.closes, b.closes);
    EXPECT_NE(a.closes.value(QStringLiteral("510050.SH")), c.closes.value(QStringLiteral("510050.SH")));
}

TEST(MarketHistory, ADayWithoutTradingKeepsTheLastTradingDaysPrices)
{
    CMarketHistory history(kSeed);
    const CMarketDay friday = history.day(QDate(2026, 11, 27));
    const CMarketDay saturday = history.day(QDate(2026, 11, 28));
    const CMarketDay monday = history.day(QDate(2026, 11, 30));
    const QString key = QStringLiteral("510300.SH");
    const auto fund = [&](const CMarketDay& day) {
        for (const auto& detail : day.instruments) {
            if (detail->key() == key.toStdString()) {
                return detail->preClosePrice;
            }
        }
        return 0.0;
    };
    EXPECT_EQ(fund(saturday), friday.closes.value(key));
    EXPECT_EQ(saturday.closes.value(key), fund(saturday));
    EXPECT_EQ(fund(monday), friday.closes.value(key));
}

namespace {

// Runs the feed of one day from the open to after the close under a standing
// clock moved in steps, and returns the last snapshot of every key.
std::map<QString, boost::shared_ptr<TC::CPriceData>> runDay(const QDate& date, int stepSeconds)
{
    market::CSimExchangeClient exchange(kSeed, date);
    market::CSimClock clock(QDateTime(date, QTime(9, 14)), 0.0);
    market::CSimQuoteClient quotes(&clock, true);
    market::CSimMarketConfig config;
    config.seed = kSeed;
    config.clock = &clock;
    config.tradingDate = date;
    config.closes = exchange.closePrices();
    market::CSimMarket feed(exchange.instruments(), &quotes, config);
    while (clock.currentDateTime().time() < QTime(15, 0, 30)) {
        feed.publishRound();
        clock.advance(stepSeconds * 1000LL);
    }
    feed.publishRound();
    std::map<QString, boost::shared_ptr<TC::CPriceData>> last;
    for (const QString& key : exchange.getAllCodes()) {
        last[key] = quotes.getStockPrice(key);
    }
    return last;
}

}  // namespace

TEST(MarketHistory, TheFeedsDayEndsOnTheHistorysCloseAtAnyQuoteRate)
{
    const QDate date(2026, 11, 24);
    const auto fast = runDay(date, 20);
    const auto slow = runDay(date, 420);
    const CMarketDay today = CMarketHistory(kSeed).day(date);
    const auto tomorrow = byKey(CMarketHistory(kSeed).day(CSessionClock::nextTradingDay(date)));
    int checked = 0;
    for (const auto& entry : fast) {
        ASSERT_TRUE(entry.second) << entry.first.toStdString();
        ASSERT_TRUE(slow.at(entry.first)) << entry.first.toStdString();
        const double close = today.closes.value(entry.first);
        EXPECT_DOUBLE_EQ(entry.second->lastPrice, close) << entry.first.toStdString();
        EXPECT_DOUBLE_EQ(slow.at(entry.first)->lastPrice, close) << entry.first.toStdString();
        const auto next = tomorrow.find(entry.first.toStdString());
        if (next != tomorrow.end()) {
            EXPECT_DOUBLE_EQ(next->second->preClosePrice, entry.second->lastPrice) << entry.first.toStdString();
            ++checked;
        }
    }
    EXPECT_GT(checked, 1000);
    // The book at the close stands on the settlement: the feed prices with the
    // history's smile.
    int books = 0;
    for (const auto& entry : fast) {
        const double settlement = today.settlements.value(entry.first);
        const auto& quote = *entry.second;
        const auto detail = tomorrow.find(entry.first.toStdString());
        if (detail == tomorrow.end() || !detail->second->isOption() || settlement < 100 * detail->second->priceTick ||
            !utils::isUsable(quote.quoteMarkA)) {
            continue;
        }
        EXPECT_NEAR(quote.quoteMarkA, settlement, 0.02 * settlement) << entry.first.toStdString();
        ++books;
    }
    EXPECT_GT(books, 300);
}
