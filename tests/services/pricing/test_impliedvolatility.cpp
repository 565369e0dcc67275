// Implied volatility: round trips over strikes, expiries and volatilities,
// the edges where no volatility gives the price, and the search ceiling.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

#include "seam/common.h"
#include "services/pricing/impliedvolatility.h"
#include "services/pricing/normaldistribution.h"

using pricing::OptionType;

namespace {

struct RoundTrip {
    OptionType type;
    bool future;
    double logMoneyness;  // ln(S / K)
    double years;
    double volatility;
};

std::ostream& operator<<(std::ostream& out, const RoundTrip& c)
{
    return out << (c.type == OptionType::Call ? "call" : "put") << (c.future ? " Black-76" : " Black-Scholes")
               << " ln(S/K)=" << c.logMoneyness << " T=" << c.years << " vol=" << c.volatility;
}

class ImpliedVolatilityRoundTrip : public ::testing::TestWithParam<RoundTrip> {};

TEST_P(ImpliedVolatilityRoundTrip, RecoversTheVolatility)
{
    const RoundTrip& c = GetParam();
    const double S = 3.0;
    const double K = S * std::exp(-c.logMoneyness);
    const double r = 0.02;
    const double carry = c.future ? 0.0 : r;
    const double price = pricing::blackScholesMertonPrice(c.type, S, K, c.years, r, carry, c.volatility);
    const double vega = pricing::blackScholesMertonGreeks(c.type, S, K, c.years, r, carry, c.volatility,
                                                          pricing::Underlying::Spot)
                            .vega;
    const double iv = pricing::impliedVolatility(c.type, S, K, c.years, r, carry, price, 1.5);
    // The price carries a few roundings; where its time value is too small
    // for that, it determines the volatility only to price rounding / vega.
    const double determined = 64.0 * DBL_EPSILON * price / vega;
    if (!(price > DBL_MIN) || determined > 1e-4) {
        // Nothing meaningful to recover; the answer must still be finite.
        EXPECT_TRUE(std::isfinite(iv)) << c << " price=" << price;
        return;
    }
    ASSERT_FALSE(utils::isAbsent(iv)) << c << " price=" << price << " K=" << K;
    EXPECT_NEAR(iv, c.volatility, std::max(1e-10, determined)) << c << " price=" << price << " K=" << K;
}

std::vector<RoundTrip> roundTripGrid()
{
    std::vector<RoundTrip> cases;
    for (OptionType type : {OptionType::Call, OptionType::Put}) {
        for (bool future : {false, true}) {
            for (double x = -1.0; x <= 1.0 + 1e-9; x += 0.125) {
                for (double T : {1.0 / 365.0, 7.0 / 365.0, 30.0 / 365.0, 0.25, 1.0, 2.0}) {
                    for (double v : {0.01, 0.05, 0.15, 0.3, 0.6, 1.0, 1.5}) {
                        cases.push_back({type, future, x, T, v});
                    }
                }
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Grid, ImpliedVolatilityRoundTrip, ::testing::ValuesIn(roundTripGrid()));

TEST(ImpliedVolatility, AbsentBelowIntrinsic)
{
    // A call on 3.2 struck at 3.0, one month: the discounted forward
    // intrinsic value is 0.2 + 3.0 (1 - exp(-rT)) ~ 0.205.
    const double T = 30.0 / 365.0;
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, 3.2, 3.0, T, 0.03, 0.19, 1.5)));
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, 3.2, 3.0, T, 0.03, 0.2, 1.5)));
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Put, 2.8, 3.0, T, 0.03, 0.15, 1.5)));
    // Just above it there is an answer.
    EXPECT_FALSE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, 3.2, 3.0, T, 0.03, 0.21, 1.5)));
}

TEST(ImpliedVolatility, AbsentAtOrAboveTheUpperBound)
{
    const double T = 0.5;
    // A call is worth less than the spot, a put less than the discounted strike.
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, 3.0, 3.0, T, 0.03, 3.0, 1.5)));
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, 3.0, 3.0, T, 0.03, 3.5, 1.5)));
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Put, 3.0, 3.0, T, 0.03, 3.0, 1.5)));
}

TEST(ImpliedVolatility, CeilingIsRespected)
{
    const double S = 3.0;
    const double K = 3.1;
    const double T = 0.25;
    const double r = 0.02;
    // Priced at exactly the ceiling: found.
    const double atCeiling = pricing::blackScholesPrice(OptionType::Call, S, K, T, r, 1.5);
    EXPECT_NEAR(pricing::blackScholesImpliedVolatility(OptionType::Call, S, K, T, r, atCeiling, 1.5), 1.5, 1e-10);
    // Priced at 1.6: beyond a 1.5 ceiling, but found under a 2.0 one.
    const double above = pricing::blackScholesPrice(OptionType::Call, S, K, T, r, 1.6);
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Call, S, K, T, r, above, 1.5)));
    EXPECT_NEAR(pricing::blackScholesImpliedVolatility(OptionType::Call, S, K, T, r, above, 2.0), 1.6, 1e-10);
    // A lower ceiling cuts lower.
    const double mid = pricing::blackScholesPrice(OptionType::Put, S, K, T, r, 0.4);
    EXPECT_TRUE(utils::isAbsent(pricing::blackScholesImpliedVolatility(OptionType::Put, S, K, T, r, mid, 0.3)));
    EXPECT_NEAR(pricing::blackScholesImpliedVolatility(OptionType::Put, S, K, T, r, mid, 0.5), 0.4, 1e-10);
}

TEST(ImpliedVolatility, NoTimeOrBadInputIsAbsent)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    auto iv = [](double S, double K, double T, double r, double price, double ceiling) {
        return pricing::blackScholesImpliedVolatility(OptionType::Call, S, K, T, r, price, ceiling);
    };
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.0, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, -0.1, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(nan, 3.0, 0.1, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, nan, 0.1, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, nan, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, nan, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, nan, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, 0.1, nan)));
    EXPECT_TRUE(utils::isAbsent(iv(inf, 3.0, 0.1, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, inf, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, inf, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, utils::kAbsentDouble, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(0.0, 3.0, 0.1, 0.02, 0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, 0.0, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, -0.1, 1.5)));
    EXPECT_TRUE(utils::isAbsent(iv(3.0, 3.0, 0.1, 0.02, 0.1, 0.0)));
}

TEST(ImpliedVolatility, NormalizedFormInvertsNormalizedPrice)
{
    for (double x : {-2.0, -0.5, -0.01, 0.0, 0.01, 0.5, 2.0}) {
        for (double s : {0.001, 0.05, 0.3, 1.0, 2.5}) {
            for (OptionType type : {OptionType::Call, OptionType::Put}) {
                const double b = pricing::normalizedBlackPrice(type, x, s);
                const double found = pricing::normalizedImpliedStdDev(type, b, x, 3.0);
                if (b - pricing::normalizedBlackPrice(type, x, 0.0) < 1e-12) {
                    continue;  // no time value left to read
                }
                EXPECT_NEAR(found, s, 1e-9 * s) << "x=" << x << " s=" << s << " price=" << b;
            }
        }
    }
}

TEST(NormalDistribution, InverseIsInverse)
{
    for (double p : {1e-300, 1e-100, 1e-20, 1e-8, 1e-3, 0.02425, 0.1, 0.3, 0.5, 0.7, 0.9, 0.97575, 0.999, 1 - 1e-10}) {
        const double z = pricing::inverseNormCdf(p);
        EXPECT_NEAR(pricing::normCdf(z), p, 1e-12 * std::min(p, 1 - p)) << "p=" << p;
    }
    EXPECT_TRUE(std::isinf(pricing::inverseNormCdf(0.0)));
    EXPECT_TRUE(std::isnan(pricing::inverseNormCdf(-0.1)));
}

}  // namespace
