// The arithmetic of a basket: margin per leg, absolute weights, the statistics row.
#include "strategy/cstrategystatistics.h"

#include <gtest/gtest.h>

namespace {

using TC::CStrategyRowValues;
using TC::CStrategyStatistics;

CStrategyRowValues row(int quantity, int volume, double margin, double weight, std::initializer_list<double> greeks)
{
    CStrategyRowValues values;
    values.quantity = quantity;
    values.volume = volume;
    values.margin = margin;
    values.weight = weight;
    int i = 0;
    for (double greek : greeks) {
        values.greeks[i++] = greek;
    }
    return values;
}

}  // namespace

TEST(StrategyStatistics, MarginIsFieldTimesQuantityTimesOnePointTwo)
{
    EXPECT_DOUBLE_EQ(CStrategyStatistics::legMargin(2500.0, 3), 2500.0 * 3 * 1.2);
    EXPECT_DOUBLE_EQ(CStrategyStatistics::legMargin(2500.0, 0), 0.0);
    EXPECT_TRUE(utils::isAbsent(CStrategyStatistics::legMargin(utils::kAbsentDouble, 3)));
    // Within 1e-5 of the marker is absent too.
    EXPECT_TRUE(utils::isAbsent(CStrategyStatistics::legMargin(utils::kAbsentDouble, 1)));
}

TEST(StrategyStatistics, AllWeightsZeroGiveZeroShares)
{
    const QVector<double> shares = CStrategyStatistics::absoluteWeights({0.0, 0.0, 0.0});
    ASSERT_EQ(shares.size(), 3);
    for (double share : shares) {
        EXPECT_EQ(share, 0.0);
    }
}

TEST(StrategyStatistics, SharesOfTheTotal)
{
    const QVector<double> shares = CStrategyStatistics::absoluteWeights({1.0, 3.0});
    ASSERT_EQ(shares.size(), 2);
    EXPECT_DOUBLE_EQ(shares[0], 0.25);
    EXPECT_DOUBLE_EQ(shares[1], 0.75);
}

// Three legs worked out by hand; the third is sold, and its Greeks still add
// with a positive sign.
//   leg   qty  vol  margin  weight  delta   gamma  theta    vega   rho
//   1     2    10   100     1       0.5     0.1    -0.01    0.2    0.03
//   2     1    5    200     2       -0.4    0.2    -0.02    0.1    -0.02
//   3s    3    7    300     0.5     0.25    0.05   -0.005   0.15   0.01
TEST(StrategyStatistics, ThreeLegsWithASoldLeg)
{
    QVector<CStrategyRowValues> rows;
    rows << row(2, 10, 100.0, 1.0, {0.5, 0.1, -0.01, 0.2, 0.03});
    rows << row(1, 5, 200.0, 2.0, {-0.4, 0.2, -0.02, 0.1, -0.02});
    rows << row(3, 7, 300.0, 0.5, {0.25, 0.05, -0.005, 0.15, 0.01});
    const TC::CStrategyStatRow stat = CStrategyStatistics::sum(rows);
    EXPECT_EQ(stat.quantity, 6);
    EXPECT_EQ(stat.volume, 22);
    EXPECT_DOUBLE_EQ(stat.margin, 600.0);
    EXPECT_DOUBLE_EQ(stat.weight, 3.5);
    EXPECT_NEAR(stat.greeks[0], 2 * 0.5 + 1 * -0.4 + 3 * 0.25, 1e-12);     // 1.35
    EXPECT_NEAR(stat.greeks[1], 2 * 0.1 + 1 * 0.2 + 3 * 0.05, 1e-12);      // 0.55
    EXPECT_NEAR(stat.greeks[2], 2 * -0.01 + 1 * -0.02 + 3 * -0.005, 1e-12);  // -0.055
    EXPECT_NEAR(stat.greeks[3], 2 * 0.2 + 1 * 0.1 + 3 * 0.15, 1e-12);      // 0.95
    EXPECT_NEAR(stat.greeks[4], 2 * 0.03 + 1 * -0.02 + 3 * 0.01, 1e-12);   // 0.07
    EXPECT_NEAR(stat.greeks[0], 1.35, 1e-12);
}

TEST(StrategyStatistics, AnAbsentCellMakesItsSumAbsentAndItStaysSo)
{
    QVector<CStrategyRowValues> rows;
    rows << row(1, 2, 10.0, 1.0, {0.1, 0.1, 0.1, 0.1, 0.1});
    rows << row(utils::kAbsentInt, utils::kAbsentInt, utils::kAbsentDouble, 1.0, {utils::kAbsentDouble, 0.1, 0.1, 0.1, 0.1});
    rows << row(1, 2, 10.0, 1.0, {0.1, 0.1, 0.1, 0.1, 0.1});
    const TC::CStrategyStatRow stat = CStrategyStatistics::sum(rows);
    EXPECT_TRUE(utils::isAbsent(stat.quantity));
    EXPECT_TRUE(utils::isAbsent(stat.volume));
    EXPECT_TRUE(utils::isAbsent(stat.margin));
    EXPECT_DOUBLE_EQ(stat.weight, 3.0);
    // An absent quantity leaves no product to add: every Greek sum is absent.
    for (double greek : stat.greeks) {
        EXPECT_TRUE(utils::isAbsent(greek));
    }
}

TEST(StrategyStatistics, AnIntegerSumThatReachesTheMarkerStaysAbsent)
{
    QVector<CStrategyRowValues> rows;
    rows << row(0x7ffffff0, 0, 0.0, 0.0, {0, 0, 0, 0, 0});
    rows << row(0x20, 0, 0.0, 0.0, {0, 0, 0, 0, 0});
    rows << row(1, 0, 0.0, 0.0, {0, 0, 0, 0, 0});
    EXPECT_TRUE(utils::isAbsent(CStrategyStatistics::sum(rows).quantity));
}

TEST(StrategyStatistics, NoRowsGiveZeros)
{
    const TC::CStrategyStatRow stat = CStrategyStatistics::sum({});
    EXPECT_EQ(stat.quantity, 0);
    EXPECT_EQ(stat.margin, 0.0);
    EXPECT_EQ(stat.greeks[0], 0.0);
}
