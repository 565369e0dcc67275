// The American approximation against Haug's table for Barone-Adesi and
// Whaley, its bounds against the European price and the exercise value, and
// the implied volatility of American prices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <vector>

#include "seam/common.h"
#include "services/pricing/baroneadesiwhaley.h"

using pricing::OptionType;

namespace {

struct AmericanCase {
    OptionType type;
    double strike;
    double spot;
    double dividend;
    double rate;
    double years;
    double volatility;
    double expected;
};

std::ostream& operator<<(std::ostream& out, const AmericanCase& c)
{
    return out << (c.type == OptionType::Call ? "call" : "put") << " K=" << c.strike << " S=" << c.spot
               << " q=" << c.dividend << " r=" << c.rate << " T=" << c.years << " vol=" << c.volatility
               << " expected=" << c.expected;
}

// Haug, "The Complete Guide to Option Pricing Formulas", page 24: q = r, so
// the carry is zero, as for an option on a future.
const AmericanCase kHaugBaw[] = {
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.15, 0.0206},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.15, 1.8771},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.15, 10.0089},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.25, 0.3159},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.25, 3.1280},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.25, 10.3919},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.10, 0.35, 0.9495},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.10, 0.35, 4.3777},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.10, 0.35, 11.1679},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.15, 0.8208},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.15, 4.0842},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.15, 10.8087},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.25, 2.7437},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.25, 6.8015},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.25, 13.0170},
    {OptionType::Call, 100.00, 90.00, 0.10, 0.10, 0.50, 0.35, 5.0063},
    {OptionType::Call, 100.00, 100.00, 0.10, 0.10, 0.50, 0.35, 9.5106},
    {OptionType::Call, 100.00, 110.00, 0.10, 0.10, 0.50, 0.35, 15.5689},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.15, 10.0000},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.15, 1.8770},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.15, 0.0410},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.25, 10.2533},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.25, 3.1277},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.25, 0.4562},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.10, 0.35, 10.8787},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.10, 0.35, 4.3777},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.10, 0.35, 1.2402},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.15, 10.5595},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.15, 4.0842},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.15, 1.0822},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.25, 12.4419},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.25, 6.8014},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.25, 3.3226},
    {OptionType::Put, 100.00, 90.00, 0.10, 0.10, 0.50, 0.35, 14.6945},
    {OptionType::Put, 100.00, 100.00, 0.10, 0.10, 0.50, 0.35, 9.5104},
    {OptionType::Put, 100.00, 110.00, 0.10, 0.10, 0.50, 0.35, 5.8823},
    {OptionType::Put, 100.00, 100.00, 0.00, 0.00, 0.50, 0.15, 4.2294},
};

class HaugAmericanValues : public ::testing::TestWithParam<AmericanCase> {};

TEST_P(HaugAmericanValues, PriceMatchesTheTable)
{
    const AmericanCase& c = GetParam();
    const double price = pricing::baroneAdesiWhaleyPrice(c.type, c.spot, c.strike, c.years, c.rate,
                                                         c.rate - c.dividend, c.volatility);
    // Haug's own code reproduces the table to the second decimal only.
    EXPECT_NEAR(price, c.expected, 3e-3) << c;
}

TEST_P(HaugAmericanValues, BoundedByEuropeanAndExercise)
{
    const AmericanCase& c = GetParam();
    const double carry = c.rate - c.dividend;
    const double american = pricing::baroneAdesiWhaleyPrice(c.type, c.spot, c.strike, c.years, c.rate, carry,
                                                            c.volatility);
    const double european = pricing::blackScholesMertonPrice(c.type, c.spot, c.strike, c.years, c.rate, carry,
                                                             c.volatility);
    const double exercise = std::max(c.type == OptionType::Call ? c.spot - c.strike : c.strike - c.spot, 0.0);
    EXPECT_GE(american, european - 1e-12) << c;
    EXPECT_GE(american, exercise - 1e-12) << c;
}

INSTANTIATE_TEST_SUITE_P(Haug, HaugAmericanValues, ::testing::ValuesIn(kHaugBaw));

TEST(BaroneAdesiWhaley, CallOnNonPayingSpotIsEuropean)
{
    for (double K : {2.5, 3.0, 3.5}) {
        const double american = pricing::baroneAdesiWhaleyPrice(OptionType::Call, 3.0, K, 0.5, 0.03, 0.03, 0.25);
        const double european = pricing::blackScholesPrice(OptionType::Call, 3.0, K, 0.5, 0.03, 0.25);
        EXPECT_DOUBLE_EQ(american, european) << "K=" << K;
    }
}

TEST(BaroneAdesiWhaley, DeepInTheMoneyPutIsExercised)
{
    // Far below the boundary the put is worth its exercise value.
    EXPECT_DOUBLE_EQ(pricing::baroneAdesiWhaleyPrice(OptionType::Put, 50.0, 100.0, 0.5, 0.08, 0.0, 0.2), 50.0);
}

TEST(BaroneAdesiWhaley, GreeksHaveTheRightSignsAndSizes)
{
    const pricing::OptionGreeks call = pricing::baroneAdesiWhaleyGreeks(OptionType::Call, 4000, 4000, 0.25, 0.02,
                                                                        0.0, 0.2, pricing::Underlying::Future);
    const pricing::OptionGreeks euro =
        pricing::black76Greeks(OptionType::Call, 4000, 4000, 0.25, 0.02, 0.2);
    // Near the money with a small rate the early exercise premium is small:
    // the Greeks sit close to the European ones.
    EXPECT_NEAR(call.delta, euro.delta, 5e-3);
    EXPECT_NEAR(call.gamma, euro.gamma, 0.02 * euro.gamma);
    EXPECT_NEAR(call.vega, euro.vega, 0.01 * euro.vega);
    EXPECT_NEAR(call.theta, euro.theta, 0.02 * std::fabs(euro.theta));
    EXPECT_LT(call.theta, 0.0);
    EXPECT_LT(call.rho, 0.0);  // a futures option loses by a higher discount rate
}

TEST(BaroneAdesiWhaley, ImpliedVolatilityRoundTrip)
{
    for (OptionType type : {OptionType::Call, OptionType::Put}) {
        for (double K : {3400.0, 3800.0, 4000.0, 4200.0, 4600.0}) {
            for (double T : {10.0 / 365.0, 0.25, 1.0}) {
                for (double v : {0.1, 0.25, 0.6}) {
                    const double F = 4000.0;
                    const double r = 0.05;
                    const double price = pricing::baroneAdesiWhaleyPrice(type, F, K, T, r, 0.0, v);
                    const double exercise = std::max(type == OptionType::Call ? F - K : K - F, 0.0);
                    if (price - exercise < 1e-6 * F) {
                        continue;  // too little time value to read a volatility from
                    }
                    const double iv = pricing::baroneAdesiWhaleyImpliedVolatility(type, F, K, T, r, 0.0, price, 1.5);
                    EXPECT_NEAR(iv, v, 1e-8) << (type == OptionType::Call ? "call" : "put") << " F=" << F
                                             << " K=" << K << " T=" << T << " vol=" << v << " price=" << price;
                }
            }
        }
    }
    EXPECT_TRUE(utils::isAbsent(
        pricing::baroneAdesiWhaleyImpliedVolatility(OptionType::Put, 4000, 4400, 0.25, 0.05, 0.0, 399.0, 1.5)));
}

}  // namespace
