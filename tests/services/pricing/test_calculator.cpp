// The desk's calculator behind nqservice::GreekAndOptionsCalculator: the
// simple formulas, the time convention, the Greeks map and its units, the
// benchmark setting, and calcGreeks from the exchange's instrument and the
// quote client's prices (small fakes of both).
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "seam/calculator.h"
#include "seam/common.h"
#include "seam/market.h"
#include "services/pricing/americanfixedpoint.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/pricing/impliedvolatility.h"

using pricing::OptionType;

namespace {

constexpr double kAbsent = utils::kAbsentDouble;

// ---- fakes of the market services ----

class FakeExchange : public TC::CExchangeClient {
public:
    std::map<QString, std::shared_ptr<nqservice::CInstrumentDetail>> instruments;
    int remainDays = 30;
    int remainSeconds = 0;

    std::shared_ptr<nqservice::CInstrumentDetail> getCodeInfo(const QString& key) const override
    {
        auto it = instruments.find(key);
        return it == instruments.end() ? nullptr : it->second;
    }
    bool isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) override { return detail && detail->call; }
    QString getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>&) override { return {}; }
    void getStockOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    void getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    int getRemainDays(QString) override { return remainDays; }
    int getRemainSecond() override { return remainSeconds; }
    QStringList getAllCodes() const override { return {}; }
    std::string getTradingDate() const override { return "20240102"; }
};

class FakeQuotes : public TC::CQuoteClient {
public:
    std::map<QString, boost::shared_ptr<TC::CPriceData>> prices;

    boost::shared_ptr<TC::CPriceData> getStockPrice(QString key) override
    {
        auto it = prices.find(key);
        return it == prices.end() ? nullptr : it->second;
    }
    void subscribe(const boost::shared_ptr<TC::CQuoteSubscription>&) override {}
    int getTradingPhase(const std::string&, const std::string&) const override { return 0; }

    void setLast(const std::string& key, double last)
    {
        auto quote = boost::make_shared<TC::CPriceData>();
        quote->lastPrice = last;
        prices[QString::fromStdString(key)] = quote;
    }
};

std::shared_ptr<nqservice::CInstrumentDetail> makeOption(const std::string& market, const std::string& code,
                                                         const std::string& underlyingMarket,
                                                         const std::string& underlyingCode, bool call, double strike,
                                                         nqservice::EInstrumentKind kind)
{
    auto detail = std::make_shared<nqservice::CInstrumentDetail>();
    detail->market = market;
    detail->code = code;
    detail->kind = kind;
    detail->call = call;
    detail->exercisePrice = strike;
    detail->underlyingMarket = underlyingMarket;
    detail->underlyingCode = underlyingCode;
    detail->riskFreeRate = 0.02;
    detail->historyVolatility = 0.22;
    detail->expireDate = 20240124;
    return detail;
}

class CalculatorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        exchange = utils::CManualSingletonT<TC::CExchangeClient>::create<FakeExchange>();
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<FakeQuotes>();
    }
    void TearDown() override
    {
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
    }

    pricing::CGreekAndOptionsCalculator calc;
    FakeExchange* exchange = nullptr;
    FakeQuotes* quotes = nullptr;
};

// ---- installation ----

TEST_F(CalculatorTest, InstanceIsNullUntilInstalled)
{
    EXPECT_FALSE(nqservice::GreekAndOptionsCalculator::instance());
    auto installed = boost::make_shared<pricing::CGreekAndOptionsCalculator>();
    nqservice::GreekAndOptionsCalculator::setInstance(installed);
    EXPECT_EQ(nqservice::GreekAndOptionsCalculator::instance().get(), installed.get());
    nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
    EXPECT_FALSE(nqservice::GreekAndOptionsCalculator::instance());
}

TEST(GreeksValue, ConstructorLeavesEveryGreekAbsent)
{
    const nqservice::CGreeksValue value;
    EXPECT_TRUE(utils::isAbsent(value.delta));
    EXPECT_TRUE(utils::isAbsent(value.gamma));
    EXPECT_TRUE(utils::isAbsent(value.theta));
    EXPECT_TRUE(utils::isAbsent(value.vega));
    EXPECT_TRUE(utils::isAbsent(value.rho));
}

// ---- simple formulas ----

TEST_F(CalculatorTest, IntrinsicValues)
{
    EXPECT_DOUBLE_EQ(calc.calcCallIntrinsicValue(3.2, 3.0), 3.2 - 3.0);
    EXPECT_DOUBLE_EQ(calc.calcCallIntrinsicValue(2.8, 3.0), 0.0);
    EXPECT_DOUBLE_EQ(calc.calcPutIntrinsicValue(2.8, 3.0), 3.0 - 2.8);
    EXPECT_DOUBLE_EQ(calc.calcPutIntrinsicValue(3.2, 3.0), 0.0);
    EXPECT_TRUE(utils::isAbsent(calc.calcCallIntrinsicValue(kAbsent, 3.0)));
    EXPECT_TRUE(utils::isAbsent(calc.calcPutIntrinsicValue(3.0, kAbsent)));
}

TEST_F(CalculatorTest, PremiumRates)
{
    // Call: break-even K + P over S; put: S over break-even K - P.
    EXPECT_NEAR(calc.calcCallPremiumRate(3.0, 0.1, 10000.0, 2.9), (3.0 + 0.1 - 2.9) / 2.9, 1e-15);
    EXPECT_NEAR(calc.calcPutPremiumRate(3.0, 0.15, 10000.0, 2.9), (2.9 + 0.15 - 3.0) / 2.9, 1e-15);
    // The contract unit cancels: the absent integer gives the same figure.
    EXPECT_DOUBLE_EQ(calc.calcCallPremiumRate(3.0, 0.1, 2147483647.0, 2.9),
                     calc.calcCallPremiumRate(3.0, 0.1, 10000.0, 2.9));
    EXPECT_TRUE(utils::isAbsent(calc.calcCallPremiumRate(3.0, 0.1, 10000.0, 0.0)));
    EXPECT_TRUE(utils::isAbsent(calc.calcPutPremiumRate(3.0, kAbsent, 10000.0, 2.9)));
}

TEST_F(CalculatorTest, LeverageAndTimeValue)
{
    EXPECT_DOUBLE_EQ(calc.calcLeverageRatio(0.1, 3.0, 1.0), 30.0);
    EXPECT_DOUBLE_EQ(calc.calcLeverageRatio(0.1, 3.0, 2.0), 15.0);
    EXPECT_TRUE(utils::isAbsent(calc.calcLeverageRatio(0.0, 3.0, 1.0)));
    EXPECT_TRUE(utils::isAbsent(calc.calcLeverageRatio(kAbsent, 3.0, 1.0)));
    EXPECT_DOUBLE_EQ(calc.calcRealLeverageRatio(0.5, 30.0), 15.0);
    EXPECT_DOUBLE_EQ(calc.calcRealLeverageRatio(-0.4, 30.0), -12.0);
    EXPECT_TRUE(utils::isAbsent(calc.calcRealLeverageRatio(kAbsent, 30.0)));
    EXPECT_DOUBLE_EQ(calc.calcTimeValue(0.25, 0.2), 0.25 - 0.2);
    EXPECT_TRUE(utils::isAbsent(calc.calcTimeValue(0.25, kAbsent)));
}

TEST_F(CalculatorTest, TheoreticalValues)
{
    // Three arguments: intrinsic plus the cash (the negated price the chain passes).
    EXPECT_NEAR(calc.calcCallTheroticalValue(3.2, 3.0, -0.25), 3.2 - 3.0 - 0.25, 1e-15);
    EXPECT_DOUBLE_EQ(calc.calcPutTheroticalValue(3.2, 3.0, -0.05), -0.05);
    EXPECT_TRUE(utils::isAbsent(calc.calcCallTheroticalValue(kAbsent, 3.0, -0.25)));
    // Six arguments: the Black-Scholes value on the calendar-day clock.
    const double T = 30.0 / 365.0;
    EXPECT_DOUBLE_EQ(calc.calcCallTheroticalValue(3.0, 3.1, 30, 0, 0.02, 0.2),
                     pricing::blackScholesPrice(OptionType::Call, 3.0, 3.1, T, 0.02, 0.2));
    EXPECT_DOUBLE_EQ(calc.calcPutTheroticalValue(3.0, 3.1, 30, 0, 0.02, 0.2),
                     pricing::blackScholesPrice(OptionType::Put, 3.0, 3.1, T, 0.02, 0.2));
    EXPECT_TRUE(utils::isAbsent(calc.calcPutTheroticalValue(3.0, 3.1, -1, 0, 0.02, 0.2)));
}

// ---- time ----

TEST(YearFraction, CalendarDaysAndTheLastDaysSeconds)
{
    EXPECT_DOUBLE_EQ(pricing::yearFraction(30, 0), 30.0 / 365.0);
    EXPECT_DOUBLE_EQ(pricing::yearFraction(1, 0), 1.0 / 365.0);
    // The last day: its trading seconds make up one day.
    EXPECT_DOUBLE_EQ(pricing::yearFraction(0, 14400), 1.0 / 365.0);
    EXPECT_DOUBLE_EQ(pricing::yearFraction(0, 7200), 0.5 / 365.0);
    EXPECT_DOUBLE_EQ(pricing::yearFraction(0, 20000), 1.0 / 365.0);
    EXPECT_DOUBLE_EQ(pricing::yearFraction(0, 0), 0.0);
    EXPECT_TRUE(utils::isAbsent(pricing::yearFraction(-1, 0)));
    EXPECT_TRUE(utils::isAbsent(pricing::yearFraction(2147483647.0, 0)));
    EXPECT_TRUE(utils::isAbsent(pricing::yearFraction(kAbsent, 0)));
    EXPECT_TRUE(utils::isAbsent(pricing::yearFraction(0, std::nan(""))));
}

// ---- implied volatility through the interface ----

TEST_F(CalculatorTest, ImpliedVolatilityUsesTheSameClock)
{
    const double price = calc.calcCallTheroticalValue(3.0, 3.1, 12, 0, 0.02, 0.27);
    EXPECT_NEAR(calc.calcCallImpliedVolatility(3.0, 3.1, 12, 0, 0.02, price, 1.5), 0.27, 1e-10);
    const double lastDay = pricing::blackScholesPrice(OptionType::Put, 3.0, 3.1, 0.5 / 365.0, 0.02, 0.4);
    EXPECT_NEAR(calc.calcPutImpliedVolatility(3.0, 3.1, 0, 7200, 0.02, lastDay, 1.5), 0.4, 1e-10);
    EXPECT_TRUE(utils::isAbsent(calc.calcCallImpliedVolatility(3.0, 3.1, 0, 0, 0.02, 0.05, 1.5)));
    EXPECT_TRUE(utils::isAbsent(calc.calcCallImpliedVolatility(3.0, 3.1, -1, 0, 0.02, 0.05, 1.5)));
    EXPECT_TRUE(utils::isAbsent(calc.calcCallImpliedVolatility(kAbsent, 3.1, 12, 0, 0.02, 0.05, 1.5)));
    EXPECT_TRUE(utils::isAbsent(calc.calcCallImpliedVolatility(3.0, 3.1, 12, 0, kAbsent, 0.05, 1.5)));
}

// ---- the Greeks map and its units ----

TEST_F(CalculatorTest, GreeksMapHoldsDisplayUnits)
{
    const double S = 2.95;
    const double K = 3.0;
    const double r = 0.02;
    const double v = 0.25;
    const double T = 20.0 / 365.0;
    std::map<std::string, double> out;
    calc.calcCallGreeks(out, S, K, 20, 0, r, v, nqservice::OGB_UNIT, "", false, false);
    const pricing::OptionGreeks raw = pricing::blackScholesGreeks(OptionType::Call, S, K, T, r, v);
    ASSERT_EQ(out.size(), 5u);
    EXPECT_DOUBLE_EQ(out["C_Delta"], raw.delta);
    EXPECT_DOUBLE_EQ(out["C_Gamma"], raw.gamma);
    EXPECT_DOUBLE_EQ(out["C_Theta"], raw.theta / 365.0);
    EXPECT_DOUBLE_EQ(out["C_Vega"], raw.vega / 100.0);
    EXPECT_DOUBLE_EQ(out["C_Rho"], raw.rho / 100.0);

    // Theta is the change of the price over one calendar day; vega over one
    // volatility point.
    const double today = calc.calcCallTheroticalValue(S, K, 20, 0, r, v);
    const double tomorrow = calc.calcCallTheroticalValue(S, K, 19, 0, r, v);
    EXPECT_NEAR(out["C_Theta"], tomorrow - today, 0.05 * std::fabs(out["C_Theta"]));
    const double bumped = calc.calcCallTheroticalValue(S, K, 20, 0, r, v + 0.01);
    EXPECT_NEAR(out["C_Vega"], bumped - today, 0.02 * out["C_Vega"]);

    std::map<std::string, double> put;
    calc.calcPutGreeks(put, S, K, 20, 0, r, v, nqservice::OGB_UNIT, "", false, false);
    ASSERT_EQ(put.size(), 5u);
    EXPECT_NEAR(put["P_Delta"], out["C_Delta"] - 1.0, 1e-12);  // no carry over the discount
    EXPECT_DOUBLE_EQ(put["P_Gamma"], out["C_Gamma"]);
    EXPECT_DOUBLE_EQ(put["P_Vega"], out["C_Vega"]);
    EXPECT_LT(put["P_Rho"], 0.0);
}

TEST_F(CalculatorTest, PercentBenchmarkScalesDeltaAndGamma)
{
    std::map<std::string, double> unit;
    std::map<std::string, double> percent;
    calc.calcPutGreeks(unit, 2.95, 3.0, 20, 0, 0.02, 0.25, nqservice::OGB_UNIT, "", false, false);
    calc.calcPutGreeks(percent, 2.95, 3.0, 20, 0, 0.02, 0.25, nqservice::OGB_PERCENT, "", false, false);
    EXPECT_DOUBLE_EQ(percent["P_Delta"], unit["P_Delta"] * 2.95 / 100.0);
    EXPECT_DOUBLE_EQ(percent["P_Gamma"], unit["P_Gamma"] * 2.95 * 2.95 / 10000.0);
    EXPECT_DOUBLE_EQ(percent["P_Theta"], unit["P_Theta"]);
    EXPECT_DOUBLE_EQ(percent["P_Vega"], unit["P_Vega"]);
    EXPECT_DOUBLE_EQ(percent["P_Rho"], unit["P_Rho"]);
    // An unknown setting counts as per unit.
    std::map<std::string, double> unknown;
    calc.calcPutGreeks(unknown, 2.95, 3.0, 20, 0, 0.02, 0.25, static_cast<nqservice::EOptionGreekBenchmark>(7), "",
                       false, false);
    EXPECT_DOUBLE_EQ(unknown["P_Delta"], unit["P_Delta"]);
}

TEST_F(CalculatorTest, GreeksWithoutAnAnswerAreAbsent)
{
    std::map<std::string, double> out;
    calc.calcCallGreeks(out, kAbsent, 3.0, 20, 0, 0.02, 0.25, nqservice::OGB_UNIT, "", false, false);
    ASSERT_EQ(out.size(), 5u);
    for (const auto& entry : out) {
        EXPECT_TRUE(utils::isAbsent(entry.second)) << entry.first;
    }
    out.clear();
    calc.calcPutGreeks(out, 2.9, 3.0, -1, 0, 0.02, 0.25, nqservice::OGB_UNIT, "", false, false);
    EXPECT_TRUE(utils::isAbsent(out["P_Delta"]));
    out.clear();
    calc.calcPutGreeks(out, 2.9, 3.0, 20, 0, 0.02, kAbsent, nqservice::OGB_UNIT, "", false, false);
    EXPECT_TRUE(utils::isAbsent(out["P_Vega"]));
}

TEST_F(CalculatorTest, GreeksModelFollowsTheInstrumentKey)
{
    auto future = makeOption("DCE", "m2405-C-3000", "DCE", "m2405", true, 3000.0, nqservice::IK_FUTURE_OPTION);
    exchange->instruments[QString::fromStdString(future->key())] = future;
    std::map<std::string, double> byKey;
    std::map<std::string, double> byFlags;
    std::map<std::string, double> european;
    calc.calcCallGreeks(byKey, 3100, 3000, 60, 0, 0.05, 0.3, nqservice::OGB_UNIT, future->key(), false, false);
    calc.calcCallGreeks(byFlags, 3100, 3000, 60, 0, 0.05, 0.3, nqservice::OGB_UNIT, "", true, true);
    calc.calcCallGreeks(european, 3100, 3000, 60, 0, 0.05, 0.3, nqservice::OGB_UNIT, "", false, false);
    EXPECT_DOUBLE_EQ(byKey["C_Delta"], byFlags["C_Delta"]);
    EXPECT_DOUBLE_EQ(byKey["C_Rho"], byFlags["C_Rho"]);
    const pricing::OptionGreeks american = pricing::americanGreeks(
        OptionType::Call, 3100, 3000, 60.0 / 365.0, 0.05, 0.0, 0.3, pricing::Underlying::Future);
    EXPECT_NEAR(byKey["C_Delta"], american.delta, 1e-12);
    // On a future the forward does not grow with the rate: delta differs from
    // the spot model's.
    EXPECT_GT(std::fabs(byKey["C_Delta"] - european["C_Delta"]), 1e-3);
}

// ---- calcGreeks from the services' own values ----

TEST_F(CalculatorTest, CalcGreeksFromCurrentQuotes)
{
    auto option = makeOption("SH", "10006001", "SH", "510050", true, 2.9, nqservice::IK_STOCK_OPTION);
    exchange->instruments[QString::fromStdString(option->key())] = option;
    exchange->remainDays = 22;
    const double S = 2.95;
    const double T = 22.0 / 365.0;
    const double price = pricing::blackScholesPrice(OptionType::Call, S, 2.9, T, 0.02, 0.31);
    quotes->setLast(utils::vqStockKey("SH", "510050"), S);
    quotes->setLast(option->key(), price);

    nqservice::CGreeksValue value;
    ASSERT_TRUE(calc.calcGreeks(option->key(), value, false, true));
    // At the implied volatility of the last price, 0.31.
    const pricing::OptionGreeks raw = pricing::blackScholesGreeks(OptionType::Call, S, 2.9, T, 0.02, 0.31);
    EXPECT_NEAR(value.delta, raw.delta, 1e-9);
    EXPECT_NEAR(value.gamma, raw.gamma, 1e-8);
    EXPECT_NEAR(value.theta, raw.theta / 365.0, 1e-10);
    EXPECT_NEAR(value.vega, raw.vega / 100.0, 1e-10);
    EXPECT_NEAR(value.rho, raw.rho / 100.0, 1e-10);

    // Historical volatility on request.
    nqservice::CGreeksValue historical;
    ASSERT_TRUE(calc.calcGreeks(option->key(), historical, true, false));
    EXPECT_NEAR(historical.vega, pricing::blackScholesGreeks(OptionType::Call, S, 2.9, T, 0.02, 0.22).vega / 100.0,
                1e-12);
}

TEST_F(CalculatorTest, CalcGreeksFallsBackToHistoricalVolatility)
{
    auto option = makeOption("SH", "10006002", "SH", "510050", false, 3.0, nqservice::IK_STOCK_OPTION);
    exchange->instruments[QString::fromStdString(option->key())] = option;
    quotes->setLast(utils::vqStockKey("SH", "510050"), 2.9);
    quotes->setLast(option->key(), 0.05);  // below intrinsic: no implied volatility
    nqservice::CGreeksValue value;
    EXPECT_FALSE(calc.calcGreeks(option->key(), value, false, false));
    EXPECT_TRUE(utils::isAbsent(value.delta)) << "a false result leaves out untouched";
    ASSERT_TRUE(calc.calcGreeks(option->key(), value, false, true));
    const double T = 30.0 / 365.0;
    EXPECT_NEAR(value.delta, pricing::blackScholesGreeks(OptionType::Put, 2.9, 3.0, T, 0.02, 0.22).delta, 1e-12);
}

TEST_F(CalculatorTest, CalcGreeksOfAFuturesOptionIsAmerican)
{
    auto option = makeOption("DCE", "m2405-P-3000", "DCE", "m2405", false, 3000.0, nqservice::IK_FUTURE_OPTION);
    exchange->instruments[QString::fromStdString(option->key())] = option;
    exchange->remainDays = 90;
    const double T = 90.0 / 365.0;
    const double price = pricing::americanPrice(OptionType::Put, 2900.0, 3000.0, T, 0.02, 0.0, 0.2);
    quotes->setLast(utils::vqStockKey("DCE", "m2405"), 2900.0);
    quotes->setLast(option->key(), price);
    nqservice::CGreeksValue value;
    ASSERT_TRUE(calc.calcGreeks(option->key(), value, false, true));
    const pricing::OptionGreeks raw = pricing::americanGreeks(OptionType::Put, 2900.0, 3000.0, T, 0.02,
                                                                       0.0, 0.2, pricing::Underlying::Future);
    EXPECT_NEAR(value.delta, raw.delta, 1e-6);
    EXPECT_NEAR(value.vega, raw.vega / 100.0, 1e-4);
}

TEST_F(CalculatorTest, CalcGreeksIsFalseWithoutItsInputs)
{
    auto option = makeOption("SH", "10006003", "SH", "510050", true, 2.9, nqservice::IK_STOCK_OPTION);
    exchange->instruments[QString::fromStdString(option->key())] = option;
    nqservice::CGreeksValue value;
    EXPECT_FALSE(calc.calcGreeks("nothing.SH", value, false, true));
    EXPECT_FALSE(calc.calcGreeks(option->key(), value, false, true)) << "no underlying quote";
    quotes->setLast(utils::vqStockKey("SH", "510050"), 2.95);
    quotes->setLast(option->key(), 0.08);
    ASSERT_TRUE(calc.calcGreeks(option->key(), value, false, true));
    exchange->remainDays = -1;
    EXPECT_FALSE(calc.calcGreeks(option->key(), value, false, true)) << "expired";
    exchange->remainDays = 0;
    exchange->remainSeconds = 0;
    EXPECT_FALSE(calc.calcGreeks(option->key(), value, false, true)) << "the last day's trading is over";
    exchange->remainSeconds = 3600;
    EXPECT_TRUE(calc.calcGreeks(option->key(), value, false, true));
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
    quotes = nullptr;
    EXPECT_FALSE(calc.calcGreeks(option->key(), value, false, true)) << "no quote client";
}

}  // namespace
