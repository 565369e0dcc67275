// Black-Scholes-Merton and Black-76 against Haug's published values, parity,
// and the analytic Greeks against finite differences of the price.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <ostream>

#include "services/pricing/blackscholes.h"

using pricing::OptionType;

namespace {

struct HaugCase {
    OptionType type;
    double strike;
    double spot;
    double dividend;
    double rate;
    double years;
    double volatility;
    double expected;
};

std::ostream& operator<<(std::ostream& out, const HaugCase& c)
{
    return out << (c.type == OptionType::Call ? "call" : "put") << " K=" << c.strike << " S=" << c.spot
               << " q=" << c.dividend << " r=" << c.rate << " T=" << c.years << " vol=" << c.volatility
               << " expected=" << c.expected;
}

// "The Complete Guide to Option Pricing Formulas" (Haug), pages 2-8, 24 and 27.
const HaugCase kHaugValues[] = {
    {OptionType::Call, 65.00, 60.00, 0.00, 0.08, 0.25, 0.30, 2.1334},
    {OptionType::Put, 95.00, 100.00, 0.05, 0.10, 0.50, 0.20, 2.4648},
    {OptionType::Put, 19.00, 19.00, 0.10, 0.10, 0.75, 0.28, 1.7011},
    {OptionType::Call, 19.00, 19.00, 0.10, 0.10, 0.75, 0.28, 1.7011},
    {OptionType::Call, 1.60, 1.56, 0.08, 0.06, 0.50, 0.12, 0.0291},
    {OptionType::Put, 70.00, 75.00, 0.05, 0.10, 0.50, 0.35, 4.0870},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.15, 0.0205},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.15, 1.8734},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.15, 9.9413},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.25, 0.3150},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.25, 3.1217},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.25, 10.3556},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.35, 0.9474},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.35, 4.3693},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.35, 11.1381},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.15, 0.8069},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.15, 4.0232},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.15, 10.5769},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.25, 2.7026},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.25, 6.6997},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.25, 12.7857},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.35, 4.9329},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.35, 9.3679},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.35, 15.3086},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.15, 9.9210},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.15, 1.8734},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.15, 0.0408},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.25, 10.2155},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.25, 3.1217},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.25, 0.4551},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.35, 10.8479},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.35, 4.3693},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.35, 1.2376},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.15, 10.3192},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.15, 4.0232},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.15, 1.0646},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.25, 12.2149},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.25, 6.6997},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.25, 3.2734},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.35, 14.4452},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.35, 9.3679},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.35, 5.7963},
    {OptionType::Call, 40.00, 42.00, 0.08, 0.04, 0.75, 0.35, 5.0975},
};

class HaugEuropeanValues : public ::testing::TestWithParam<HaugCase> {};

TEST_P(HaugEuropeanValues, PriceMatchesTheTable)
{
    const HaugCase& c = GetParam();
    const double price = pricing::blackScholesMertonPrice(c.type, c.spot, c.strike, c.years, c.rate,
                                                          c.rate - c.dividend, c.volatility);
    EXPECT_NEAR(price, c.expected, 1e-4) << c;
    // The analytic Greeks routine prices identically.
    const pricing::OptionGreeks g = pricing::blackScholesMertonGreeks(
        c.type, c.spot, c.strike, c.years, c.rate, c.rate - c.dividend, c.volatility, pricing::Underlying::Spot);
    EXPECT_NEAR(g.price, price, 1e-12 * price) << c;
}

INSTANTIATE_TEST_SUITE_P(Haug, HaugEuropeanValues, ::testing::ValuesIn(kHaugValues));

// Where dividend yield equals rate the carry is zero: these rows are Black-76
// with the spot read as the futures price (Haug's Black-76 example is the
// 19 / 19 pair, 1.7011).
TEST(HaugEuropeanZeroCarry, RowsAreBlack76)
{
    int rows = 0;
    for (const HaugCase& c : kHaugValues) {
        if (c.dividend != c.rate) {
            continue;
        }
        ++rows;
        const double price = pricing::black76Price(c.type, c.spot, c.strike, c.years, c.rate, c.volatility);
        EXPECT_NEAR(price, c.expected, 1e-4) << c;
    }
    EXPECT_GE(rows, 5);
}

TEST(HaugEuropeanGreeks, PublishedGreekValues)
{
    using pricing::Underlying;
    // Haug, pages 11-16. Theta is per year; Haug's "per day" figure divides by 365.
    pricing::OptionGreeks g =
        pricing::blackScholesMertonGreeks(OptionType::Call, 105, 100, 0.5, 0.10, 0.0, 0.36, Underlying::Spot);
    EXPECT_NEAR(g.delta, 0.5946, 1e-4);
    g = pricing::blackScholesMertonGreeks(OptionType::Put, 105, 100, 0.5, 0.10, 0.0, 0.36, Underlying::Spot);
    EXPECT_NEAR(g.delta, -0.3566, 1e-4);
    EXPECT_NEAR(g.delta * 105 / g.price, -4.8775, 1e-4) << "elasticity";
    g = pricing::blackScholesMertonGreeks(OptionType::Call, 55, 60, 0.75, 0.10, 0.10, 0.30, Underlying::Spot);
    EXPECT_NEAR(g.gamma, 0.0278, 1e-4);
    EXPECT_NEAR(g.vega, 18.9358, 1e-4);
    g = pricing::blackScholesMertonGreeks(OptionType::Put, 55, 60, 0.75, 0.10, 0.10, 0.30, Underlying::Spot);
    EXPECT_NEAR(g.gamma, 0.0278, 1e-4);
    EXPECT_NEAR(g.vega, 18.9358, 1e-4);
    g = pricing::blackScholesMertonGreeks(OptionType::Put, 430, 405, 1.0 / 12.0, 0.07, 0.02, 0.20, Underlying::Spot);
    EXPECT_NEAR(g.theta, -31.1924, 1e-4);
    EXPECT_NEAR(g.theta / 365.0, -0.0855, 1e-4);
    g = pricing::blackScholesMertonGreeks(OptionType::Call, 72, 75, 1.0, 0.09, 0.09, 0.19, Underlying::Spot);
    EXPECT_NEAR(g.rho, 38.7325, 1e-4);
}

TEST(BlackScholes, PutCallParity)
{
    for (double K : {2.0, 2.5, 2.8, 3.0, 3.5}) {
        for (double T : {1.0 / 365.0, 0.1, 0.5, 2.0}) {
            for (double v : {0.05, 0.2, 0.8}) {
                const double S = 2.85;
                const double r = 0.025;
                const double call = pricing::blackScholesPrice(OptionType::Call, S, K, T, r, v);
                const double put = pricing::blackScholesPrice(OptionType::Put, S, K, T, r, v);
                EXPECT_NEAR(call - put, S - K * std::exp(-r * T), 1e-12)
                    << "S=" << S << " K=" << K << " T=" << T << " r=" << r << " vol=" << v;
                const double fcall = pricing::black76Price(OptionType::Call, S, K, T, r, v);
                const double fput = pricing::black76Price(OptionType::Put, S, K, T, r, v);
                EXPECT_NEAR(fcall - fput, (S - K) * std::exp(-r * T), 1e-12)
                    << "F=" << S << " K=" << K << " T=" << T << " r=" << r << " vol=" << v;
            }
        }
    }
}

TEST(BlackScholes, ZeroTimeIsIntrinsic)
{
    EXPECT_DOUBLE_EQ(pricing::blackScholesPrice(OptionType::Call, 3.1, 3.0, 0.0, 0.03, 0.2), 3.1 - 3.0);
    EXPECT_DOUBLE_EQ(pricing::blackScholesPrice(OptionType::Put, 3.1, 3.0, 0.0, 0.03, 0.2), 0.0);
    const pricing::OptionGreeks g = pricing::blackScholesGreeks(OptionType::Put, 2.9, 3.0, 0.0, 0.03, 0.2);
    EXPECT_NEAR(g.price, 0.1, 1e-15);
    EXPECT_DOUBLE_EQ(g.delta, -1.0);
    EXPECT_DOUBLE_EQ(g.gamma, 0.0);
    EXPECT_DOUBLE_EQ(g.vega, 0.0);
}

// ---- Greeks against central differences of the price ----

struct GreekCase {
    OptionType type;
    bool future;
    double spot;
    double strike;
    double years;
    double rate;
    double volatility;
};

std::ostream& operator<<(std::ostream& out, const GreekCase& c)
{
    return out << (c.type == OptionType::Call ? "call" : "put") << (c.future ? " on future" : " on spot")
               << " S=" << c.spot << " K=" << c.strike << " T=" << c.years << " r=" << c.rate
               << " vol=" << c.volatility;
}

class GreeksAgainstDifferences : public ::testing::TestWithParam<GreekCase> {};

TEST_P(GreeksAgainstDifferences, EveryGreekMatches)
{
    const GreekCase& c = GetParam();
    const double carry = c.future ? 0.0 : c.rate;
    const pricing::Underlying underlying = c.future ? pricing::Underlying::Future : pricing::Underlying::Spot;
    auto price = [&](double S, double T, double r, double v) {
        return pricing::blackScholesMertonPrice(c.type, S, c.strike, T, r, c.future ? 0.0 : r, v);
    };
    const pricing::OptionGreeks g = pricing::blackScholesMertonGreeks(c.type, c.spot, c.strike, c.years, c.rate,
                                                                      carry, c.volatility, underlying);
    // Five-point stencils with steps scaled to the option's own deviation,
    // so that truncation and rounding both stay near 1e-10 of the Greek.
    auto first = [](const auto& f, double x, double h) {
        return (-f(x + 2 * h) + 8 * f(x + h) - 8 * f(x - h) + f(x - 2 * h)) / (12 * h);
    };
    auto second = [](const auto& f, double x, double h) {
        return (-f(x + 2 * h) + 16 * f(x + h) - 30 * f(x) + 16 * f(x - h) - f(x - 2 * h)) / (12 * h * h);
    };
    // The price varies on the scale of the deviation divided by the distance
    // from the money in deviations.
    const double deviation = c.volatility * std::sqrt(c.years);
    const double width = c.spot * deviation / (1.0 + std::fabs(std::log(c.spot / c.strike)) / deviation);
    auto bySpot = [&](double S) { return price(S, c.years, c.rate, c.volatility); };
    auto byVol = [&](double v) { return price(c.spot, c.years, c.rate, v); };
    auto byRate = [&](double r) { return price(c.spot, c.years, r, c.volatility); };
    auto byTime = [&](double T) { return price(c.spot, T, c.rate, c.volatility); };
    // Agreement to 1e-7 relative, or to what rounding of the prices lets the
    // stencil see (about 10 ulps of the price over the step, squared for
    // gamma), with 1e-12 absolute for Greeks of options worth next to nothing.
    const double p = std::max(bySpot(c.spot), 1e-300);
    auto close = [&](double a, double b, double noise) {
        return 1e-7 * std::max(std::fabs(a), std::fabs(b)) + 10.0 * noise + 1e-12;
    };
    const double ulp = 2.0 * DBL_EPSILON * p;
    EXPECT_NEAR(g.price, bySpot(c.spot), 1e-14 * c.spot) << c;
    const double hS = 1e-3 * width;
    const double delta = first(bySpot, c.spot, hS);
    EXPECT_NEAR(g.delta, delta, close(g.delta, delta, ulp / hS)) << c;
    const double hG = 2e-2 * width;
    const double gamma = second(bySpot, c.spot, hG);
    EXPECT_NEAR(g.gamma, gamma, close(g.gamma, gamma, 6.0 * ulp / (hG * hG))) << c;
    const double hV = 1e-3 * c.volatility;
    const double vega = first(byVol, c.volatility, hV);
    EXPECT_NEAR(g.vega, vega, close(g.vega, vega, ulp / hV)) << c;
    const double hR = 1e-3;
    const double rho = first(byRate, c.rate, hR);
    EXPECT_NEAR(g.rho, rho, close(g.rho, rho, ulp / hR)) << c;
    const double hT = 1e-3 * c.years;
    const double theta = -first(byTime, c.years, hT);
    EXPECT_NEAR(g.theta, theta, close(g.theta, theta, ulp / hT)) << c;
}

std::vector<GreekCase> greekGrid()
{
    std::vector<GreekCase> cases;
    for (OptionType type : {OptionType::Call, OptionType::Put}) {
        for (bool future : {false, true}) {
            for (double K : {2.4, 2.9, 3.0, 3.4}) {
                for (double T : {7.0 / 365.0, 0.25, 1.5}) {
                    for (double v : {0.1, 0.3, 0.9}) {
                        cases.push_back({type, future, 2.95, K, T, 0.025, v});
                    }
                }
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Grid, GreeksAgainstDifferences, ::testing::ValuesIn(greekGrid()));

}  // namespace
