// The generated instrument universe: listed months, expiry days, strike ladders,
// adjusted contracts, names, codes and every field the panels read.
#include "services/market/csimexchangeclient.h"
#include "services/market/cuniversebuilder.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <cmath>
#include <map>
#include <set>

using market::CSimExchangeClient;
using market::CUniverseBuilder;
using nqservice::CInstrumentDetail;

namespace {

const QDate kTradingDate(2024, 12, 10);

struct WednesdayCase {
    int year;
    int month;
    QDate expected;
};

class FourthWednesday : public ::testing::TestWithParam<WednesdayCase> {};

TEST_P(FourthWednesday, IsTheExpiryOfTheMonth)
{
    const auto& c = GetParam();
    EXPECT_EQ(CUniverseBuilder::fourthWednesday(c.year, c.month), c.expected) << c.year << "-" << c.month;
}

INSTANTIATE_TEST_SUITE_P(Months, FourthWednesday,
                         ::testing::Values(WednesdayCase{2024, 12, QDate(2024, 12, 25)},
                                           WednesdayCase{2024, 1, QDate(2024, 1, 24)},
                                           WednesdayCase{2023, 6, QDate(2023, 6, 28)},
                                           WednesdayCase{2025, 3, QDate(2025, 3, 26)},
                                           WednesdayCase{2025, 10, QDate(2025, 10, 22)},
                                           WednesdayCase{2026, 2, QDate(2026, 2, 25)}));

struct MonthsCase {
    QDate date;
    std::vector<QDate> months;
};

class ListedMonths : public ::testing::TestWithParam<MonthsCase> {};

TEST_P(ListedMonths, AreThisNextAndTwoQuarterMonths)
{
    const auto& c = GetParam();
    const auto months = CUniverseBuilder::listedMonths(c.date);
    ASSERT_EQ(months.size(), c.months.size()) << c.date.toString().toStdString();
    for (std::size_t i = 0; i < months.size(); ++i) {
        EXPECT_EQ(months[i], c.months[i]) << "date " << c.date.toString(Qt::ISODate).toStdString() << " month " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Dates, ListedMonths,
    ::testing::Values(
        MonthsCase{QDate(2024, 12, 10), {QDate(2024, 12, 1), QDate(2025, 1, 1), QDate(2025, 3, 1), QDate(2025, 6, 1)}},
        // On the expiry day the month is still listed; the day after it rolls.
        MonthsCase{QDate(2024, 12, 25), {QDate(2024, 12, 1), QDate(2025, 1, 1), QDate(2025, 3, 1), QDate(2025, 6, 1)}},
        MonthsCase{QDate(2024, 12, 26), {QDate(2025, 1, 1), QDate(2025, 2, 1), QDate(2025, 3, 1), QDate(2025, 6, 1)}},
        MonthsCase{QDate(2024, 11, 5), {QDate(2024, 11, 1), QDate(2024, 12, 1), QDate(2025, 3, 1), QDate(2025, 6, 1)}},
        MonthsCase{QDate(2025, 2, 3), {QDate(2025, 2, 1), QDate(2025, 3, 1), QDate(2025, 6, 1), QDate(2025, 9, 1)}}));

struct StepCase {
    double price;
    double step;
};

class StrikeStep : public ::testing::TestWithParam<StepCase> {};

TEST_P(StrikeStep, FollowsTheExchangeIntervals)
{
    EXPECT_DOUBLE_EQ(CUniverseBuilder::strikeStep(GetParam().price), GetParam().step) << "price " << GetParam().price;
}

INSTANTIATE_TEST_SUITE_P(Prices, StrikeStep,
                         ::testing::Values(StepCase{0.9, 0.05}, StepCase{2.95, 0.05}, StepCase{3.0, 0.1},
                                           StepCase{4.9, 0.1}, StepCase{5.0, 0.25}, StepCase{9.75, 0.25},
                                           StepCase{10.0, 0.5}, StepCase{20.0, 1.0}, StepCase{50.0, 2.5},
                                           StepCase{100.0, 5.0}, StepCase{150.0, 5.0}));

TEST(StrikeGrid, StepsChangeAtTheBoundaries)
{
    EXPECT_NEAR(CUniverseBuilder::nextStrikeUp(2.95), 3.0, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nextStrikeUp(3.0), 3.1, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nextStrikeDown(3.0), 2.95, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nextStrikeDown(5.0), 4.9, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nextStrikeUp(5.0), 5.25, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nearestStrike(2.61), 2.6, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nearestStrike(2.99), 3.0, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nearestStrike(3.04), 3.0, 1e-9);
    EXPECT_NEAR(CUniverseBuilder::nearestStrike(5.9), 6.0, 1e-9);
}

TEST(FutureOptionExpiry, IsTheFifthTradingDayOfTheMonthBeforeDelivery)
{
    // m2501: December 2024 starts on a Sunday; its fifth weekday is Friday the 6th.
    EXPECT_EQ(CUniverseBuilder::futureOptionExpiry(2025, 1), QDate(2024, 12, 6));
    // m2505: April 2025 starts on a Tuesday; the fifth weekday is Monday the 7th.
    EXPECT_EQ(CUniverseBuilder::futureOptionExpiry(2025, 5), QDate(2025, 4, 7));
}

class Universe : public ::testing::Test {
protected:
    CSimExchangeClient client{7, kTradingDate};
};

TEST_F(Universe, ListsTheEtfOptionUnderlyingsOfBothExchanges)
{
    QMap<QString, QMap<QString, QStringList>> chains;
    client.getStockOptionMap(chains);
    for (const char* key : {"510050.SH", "510300.SH", "510500.SH", "159919.SZ"}) {
        EXPECT_TRUE(chains.contains(key)) << key;
        const auto fund = client.getCodeInfo(key);
        ASSERT_NE(fund, nullptr) << key;
        EXPECT_EQ(fund->kind, nqservice::IK_FUND);
        EXPECT_TRUE(utils::isUsable(fund->preClosePrice)) << key;
        EXPECT_GT(fund->preClosePrice, 0.0) << key;
    }
    EXPECT_GE(chains.size(), 5);
}

TEST_F(Universe, EachUnderlyingHasTheFourListedMonthsExpiringOnTheFourthWednesday)
{
    QMap<QString, QMap<QString, QStringList>> chains;
    client.getStockOptionMap(chains);
    QStringList expected;
    for (const QDate& month : CUniverseBuilder::listedMonths(kTradingDate)) {
        expected << CUniverseBuilder::fourthWednesday(month.year(), month.month()).toString("yyyyMMdd");
    }
    for (auto it = chains.cbegin(); it != chains.cend(); ++it) {
        EXPECT_EQ(it.value().keys(), expected) << it.key().toStdString();
        for (auto month = it.value().cbegin(); month != it.value().cend(); ++month) {
            for (const QString& key : month.value()) {
                const auto detail = client.getCodeInfo(key);
                ASSERT_NE(detail, nullptr) << key.toStdString();
                EXPECT_EQ(QString::number(detail->expireDate), month.key()) << key.toStdString();
                EXPECT_EQ(QString::fromStdString(detail->underlyingKey()), it.key()) << key.toStdString();
            }
        }
    }
}

TEST_F(Universe, StrikeLaddersFollowTheIntervalsAroundTheMoney)
{
    QMap<QString, QMap<QString, QStringList>> chains;
    client.getStockOptionMap(chains);
    for (auto it = chains.cbegin(); it != chains.cend(); ++it) {
        const double spot = client.getCodeInfo(it.key())->preClosePrice;
        for (auto month = it.value().cbegin(); month != it.value().cend(); ++month) {
            std::map<long, std::set<bool>> callPutByStrike;  // normal contracts only
            for (const QString& key : month.value()) {
                const auto detail = client.getCodeInfo(key);
                if (!detail->adjusted) {
                    callPutByStrike[std::lround(detail->exercisePrice * 1000)].insert(detail->call);
                }
            }
            std::vector<double> strikes;
            for (const auto& entry : callPutByStrike) {
                EXPECT_EQ(entry.second.size(), 2U) << "a call and a put at " << entry.first << " in " << it.key().toStdString();
                strikes.push_back(entry.first / 1000.0);
            }
            for (std::size_t i = 1; i < strikes.size(); ++i) {
                EXPECT_NEAR(strikes[i] - strikes[i - 1], CUniverseBuilder::strikeStep(strikes[i - 1]), 1e-9)
                    << it.key().toStdString() << " " << month.key().toStdString() << " after " << strikes[i - 1];
            }
            const double atm = CUniverseBuilder::nearestStrike(spot);
            const auto below = std::count_if(strikes.begin(), strikes.end(), [&](double k) { return k < atm - 1e-9; });
            const auto above = std::count_if(strikes.begin(), strikes.end(), [&](double k) { return k > atm + 1e-9; });
            EXPECT_GE(below, 4) << it.key().toStdString() << " spot " << spot;
            EXPECT_GE(above, 4) << it.key().toStdString() << " spot " << spot;
            EXPECT_EQ(callPutByStrike.count(std::lround(atm * 1000)), 1U) << it.key().toStdString();
        }
    }
}

TEST_F(Universe, NamesAndCodesHaveTheExchangesForms)
{
    const QRegularExpression name(QStringLiteral("^(50ETF|300ETF|500ETF|科创50|科创板50|创业板ETF|深100ETF)(购|沽)(\\d{1,2})月(\\d+)(A?)$"));
    const QRegularExpression sseCode(QStringLiteral("^1000\\d{4}$"));
    const QRegularExpression szseCode(QStringLiteral("^9000\\d{4}$"));
    int options = 0;
    for (const auto& detail : client.instruments()) {
        if (detail->kind != nqservice::IK_STOCK_OPTION) {
            continue;
        }
        ++options;
        const QString text = QString::fromStdString(detail->name);
        const auto match = name.match(text);
        ASSERT_TRUE(match.hasMatch()) << detail->name;
        EXPECT_EQ(match.captured(2) == QStringLiteral("购"), detail->call) << detail->name;
        EXPECT_EQ(match.captured(3).toInt(), detail->expireDate / 100 % 100) << detail->name;
        EXPECT_EQ(match.captured(4).toLong(), std::lround(detail->exercisePrice * 1000)) << detail->name;
        EXPECT_EQ(match.captured(5) == QStringLiteral("A"), detail->adjusted) << detail->name;
        const QString code = QString::fromStdString(detail->code);
        if (detail->market == nqservice::kMarketSSE) {
            EXPECT_TRUE(sseCode.match(code).hasMatch()) << detail->code;
        } else {
            EXPECT_EQ(detail->market, nqservice::kMarketSZSE);
            EXPECT_TRUE(szseCode.match(code).hasMatch()) << detail->code;
        }
    }
    EXPECT_GT(options, 400);
    EXPECT_NE(client.getCodeInfo("510050.SH"), nullptr);
}

TEST_F(Universe, AdjustedContractsShareAStrikeWithANormalOne)
{
    int adjusted = 0;
    std::set<std::string> adjustedUnderlyings;
    for (const auto& detail : client.instruments()) {
        if (!detail->adjusted) {
            continue;
        }
        ++adjusted;
        adjustedUnderlyings.insert(detail->underlyingCode);
        EXPECT_NE(std::lround(detail->contractUnit), 10000) << detail->name;
        EXPECT_NE(detail->name.find('A'), std::string::npos) << detail->name;
        bool twin = false;
        for (const auto& other : client.instruments()) {
            if (!other->adjusted && other->isOption() && other->underlyingKey() == detail->underlyingKey() &&
                other->expireDate == detail->expireDate && other->call == detail->call &&
                utils::isPriceEqual(other->exercisePrice, detail->exercisePrice)) {
                twin = true;
                EXPECT_EQ(client.getExercisePrice(other), client.getExercisePrice(detail)) << detail->name;
                EXPECT_EQ(std::lround(other->contractUnit), 10000) << other->name;
            }
        }
        EXPECT_TRUE(twin) << detail->name;
    }
    EXPECT_GT(adjusted, 0);
    EXPECT_TRUE(adjustedUnderlyings.count("510050")) << "50ETF carries adjusted contracts";
}

TEST_F(Universe, EveryFieldThePanelsReadIsFilled)
{
    for (const auto& detail : client.instruments()) {
        if (!detail->isOption()) {
            continue;
        }
        const std::string& who = detail->name;
        EXPECT_FALSE(detail->getTextField(2).empty()) << who;
        EXPECT_FALSE(detail->getTextField(9).empty()) << who;
        EXPECT_FALSE(detail->getTextField(10).empty()) << who;
        EXPECT_NE(client.getCodeInfo(QString::fromStdString(
                      utils::vqStockKey(detail->getTextField(10), detail->getTextField(9)))),
                  nullptr)
            << who;
        EXPECT_FALSE(utils::isAbsent(detail->getIntField(2001))) << who;
        EXPECT_EQ(detail->getIntField(2001), std::lround(detail->contractUnit)) << who;
        EXPECT_GT(detail->getIntField(2008), 0) << who;
        EXPECT_FALSE(utils::isAbsent(detail->getIntField(2008))) << who;
        for (int id : {3002, 3006, 3007, 3008, 3011, 3012}) {
            EXPECT_TRUE(utils::isUsable(detail->getDoubleField(id))) << who << " field " << id;
            // Futures options are priced undiscounted: their rate is 0.
            if (id == 3011 && detail->kind == nqservice::IK_FUTURE_OPTION) {
                EXPECT_EQ(detail->getDoubleField(id), 0.0) << who;
                continue;
            }
            EXPECT_GT(detail->getDoubleField(id), 0.0) << who << " field " << id;
        }
        EXPECT_TRUE(QDate::fromString(QString::number(detail->getCodeField(4000)), "yyyyMMdd").isValid()) << who;
        EXPECT_GE(detail->getCodeField(4000), detail->expireDate) << who;
        EXPECT_TRUE(utils::isUsable(detail->preClosePrice)) << who;
        EXPECT_GT(detail->preClosePrice, 0.0) << who;
        EXPECT_TRUE(utils::isUsable(detail->priceTick)) << who;
        EXPECT_TRUE(QDate::fromString(QString::number(detail->expireDate), "yyyyMMdd").isValid()) << who;
        EXPECT_FALSE(client.getExercisePrice(detail).isEmpty()) << who;
    }
}

TEST_F(Universe, UnknownFieldIdsGiveTheAbsentMarkers)
{
    const auto detail = client.getCodeInfo(client.getAllCodes().last());
    ASSERT_NE(detail, nullptr);
    EXPECT_TRUE(detail->getTextField(1).empty());
    EXPECT_TRUE(utils::isAbsent(detail->getIntField(2002)));
    EXPECT_TRUE(utils::isAbsent(detail->getDoubleField(3001)));
    EXPECT_TRUE(utils::isAbsent(detail->getCodeField(4001)));
}

TEST_F(Universe, HasAnAmericanFutureOptionFamilyWithItsFutures)
{
    QMap<QString, QMap<QString, QStringList>> chains;
    client.getFutureOptionMap(chains);
    ASSERT_GE(chains.size(), 2);
    for (auto it = chains.cbegin(); it != chains.cend(); ++it) {
        const auto future = client.getCodeInfo(it.key());
        ASSERT_NE(future, nullptr) << it.key().toStdString();
        EXPECT_EQ(future->kind, nqservice::IK_FUTURE);
        EXPECT_EQ(it.value().size(), 1) << "one expiry per future";
        for (const QString& key : it.value().first()) {
            const auto option = client.getCodeInfo(key);
            ASSERT_NE(option, nullptr);
            EXPECT_EQ(option->kind, nqservice::IK_FUTURE_OPTION);
            EXPECT_EQ(option->exerciseStyle, nqservice::ES_AMERICAN);
            EXPECT_LT(option->expireDate, future->expireDate) << option->code;
            EXPECT_GE(QDate::fromString(QString::number(option->expireDate), "yyyyMMdd"), kTradingDate);
            const double step = CUniverseBuilder::futureStrikeStep(future->preClosePrice);
            EXPECT_NEAR(std::fmod(option->exercisePrice, step), 0.0, 1e-9) << option->code;
        }
    }
}

TEST(UniverseSeed, SameSeedSameUniverseOtherSeedOtherPrices)
{
    const auto first = CUniverseBuilder::build(11, kTradingDate);
    const auto second = CUniverseBuilder::build(11, kTradingDate);
    const auto other = CUniverseBuilder::build(12, kTradingDate);
    ASSERT_EQ(first.size(), second.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i]->key(), second[i]->key());
        EXPECT_EQ(first[i]->name, second[i]->name);
        EXPECT_EQ(first[i]->preClosePrice, second[i]->preClosePrice) << first[i]->name;
        EXPECT_EQ(first[i]->preSettlementPrice, second[i]->preSettlementPrice) << first[i]->name;
    }
    EXPECT_NE(first.front()->preClosePrice, other.front()->preClosePrice);
}

}  // namespace

TEST(EtfOptionExpiry, MovesToTheNextTradingDayWhenAHolidayFallsOnIt)
{
    // The fourth Wednesday of January 2023 fell in the Spring Festival closure.
    EXPECT_EQ(CUniverseBuilder::fourthWednesday(2023, 1), QDate(2023, 1, 25));
    EXPECT_EQ(CUniverseBuilder::etfOptionExpiry(2023, 1), QDate(2023, 1, 30));
    EXPECT_EQ(CUniverseBuilder::etfOptionExpiry(2026, 11), QDate(2026, 11, 25));
    // The January month stays listed until its moved expiry has passed.
    const std::vector<QDate> months = CUniverseBuilder::listedMonths(QDate(2023, 1, 30));
    ASSERT_FALSE(months.empty());
    EXPECT_EQ(months.front(), QDate(2023, 1, 1));
    EXPECT_EQ(CUniverseBuilder::listedMonths(QDate(2023, 1, 31)).front(), QDate(2023, 2, 1));
}

namespace {

TEST(UniverseMargin, FieldThreeThousandSevenIsTheMarginOfOneShortContract)
{
    // An at-the-money 50ETF option needs about 3,000 元 of exchange margin; the
    // field follows the SSE formula at the previous settlement and close.
    const auto list = CUniverseBuilder::build(1U, kTradingDate);
    std::map<std::string, std::shared_ptr<CInstrumentDetail>> byKey;
    for (const auto& detail : list) {
        byKey[detail->key()] = detail;
    }
    int checked = 0;
    for (const auto& detail : list) {
        if (detail->kind != nqservice::IK_STOCK_OPTION || detail->underlyingCode != "510050" || detail->adjusted) {
            continue;
        }
        const double s = byKey.at(detail->underlyingKey())->preClosePrice;
        const double k = detail->exercisePrice;
        const double settle = detail->preSettlementPrice;
        const double expected = detail->call ? (settle + std::max(0.12 * s - std::max(k - s, 0.0), 0.07 * s)) * 10000.0
                                             : std::min(settle + std::max(0.12 * s - std::max(s - k, 0.0), 0.07 * k), k) *
                                                   10000.0;
        EXPECT_NEAR(detail->getDoubleField(3007), expected, 1e-6) << detail->code;
        EXPECT_EQ(detail->getIntField(2008), 50) << detail->code;
        if (std::fabs(k - s) / s < 0.02) {
            EXPECT_GT(detail->getDoubleField(3007), 2000.0) << detail->code;
            EXPECT_LT(detail->getDoubleField(3007), 6000.0) << detail->code;
        }
        ++checked;
    }
    EXPECT_GT(checked, 40);
    // Soybean meal options carry the DCE seller margin, at least the premium.
    for (const auto& detail : list) {
        if (detail->kind == nqservice::IK_FUTURE_OPTION) {
            EXPECT_GT(detail->getDoubleField(3007), detail->preSettlementPrice * 10.0) << detail->code;
        }
    }
}

}  // namespace
