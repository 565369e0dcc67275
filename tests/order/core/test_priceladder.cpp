// The ladder's rows from one quote: the centre rules, the tick grid, the
// levels on their rows, a call auction, absent levels and a price near zero.
#include "order/cpriceladder.h"
#include "seam/common.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

namespace {

using TC::CLadderRow;
using TC::CPriceData;
using TC::CPriceLadder;

CPriceData book(double last, double bid1, double ask1)
{
    CPriceData data;
    data.lastPrice = last;
    data.setBid(1, bid1, 11);
    data.setAsk(1, ask1, 21);
    return data;
}

TEST(PriceLadder, CentredOnTheLastPriceTwentyTicksEachWay)
{
    CPriceData data = book(0.1200, 0.1199, 0.1201);
    data.setBid(2, 0.1198, 12);
    data.setAsk(2, 0.1202, 22);
    const QVector<CLadderRow> rows = CPriceLadder::rows(data, 0.0001, 0, 41);
    ASSERT_EQ(rows.size(), 41);
    EXPECT_EQ(rows.at(0).priceText, QStringLiteral("0.1220"));
    EXPECT_EQ(rows.at(20).priceText, QStringLiteral("0.1200"));
    EXPECT_EQ(rows.at(40).priceText, QStringLiteral("0.1180"));
    EXPECT_EQ(rows.at(21).bidVolume, 11);
    EXPECT_TRUE(rows.at(21).bestBid);
    EXPECT_EQ(rows.at(22).bidVolume, 12);
    EXPECT_FALSE(rows.at(22).bestBid);
    EXPECT_EQ(rows.at(19).askVolume, 21);
    EXPECT_EQ(rows.at(18).askVolume, 22);
    EXPECT_EQ(rows.at(20).bidVolume, 0x7fffffff) << "no level on the last price's row";
}

TEST(PriceLadder, LevelsOffTheTickGridStandOnTheirRoundedRow)
{
    // 0.11995 lies half a tick down: rounded to 0.1200.
    CPriceData data = book(0.1200, 0.11995, 0.1201);
    const QVector<CLadderRow> rows = CPriceLadder::rows(data, 0.0001, 0, 41);
    EXPECT_EQ(rows.at(20).bidVolume, 11);
    EXPECT_TRUE(rows.at(20).bestBid);
}

TEST(PriceLadder, AbsentLastPriceCentresOnTheMiddleOfTheBook)
{
    const CPriceData data = book(DBL_MAX, 0.1190, 0.1210);
    EXPECT_NEAR(CPriceLadder::centre(data, 0), 0.1200, 1e-12);
    CPriceData none = book(DBL_MAX, DBL_MAX, DBL_MAX);
    none.preClose = 0.1100;
    EXPECT_NEAR(CPriceLadder::centre(none, 0), 0.1100, 1e-12) << "then the previous close";
    none.preClose = DBL_MAX;
    none.referencePrice = 0.1050;
    EXPECT_NEAR(CPriceLadder::centre(none, 0), 0.1050, 1e-12) << "then the reference price";
}

TEST(PriceLadder, ACallAuctionCentresOnTheBookUnlessItIsEmpty)
{
    const CPriceData data = book(0.1300, 0.1190, 0.1210);
    EXPECT_NEAR(CPriceLadder::centre(data, 51), 0.1200, 1e-12);
    EXPECT_NEAR(CPriceLadder::centre(data, 52), 0.1200, 1e-12);
    EXPECT_NEAR(CPriceLadder::centre(data, 0), 0.1300, 1e-12) << "continuous trading takes the last";
    const CPriceData empty = book(0.1300, 0.0, 0.0);
    EXPECT_NEAR(CPriceLadder::centre(empty, 53), 0.1300, 1e-12) << "both sides 0: as in normal trading";
}

TEST(PriceLadder, UnusableValues)
{
    EXPECT_TRUE(CPriceLadder::unusable(DBL_MAX));
    EXPECT_TRUE(CPriceLadder::unusable(std::nan("")));
    EXPECT_TRUE(CPriceLadder::unusable(INFINITY));
    EXPECT_TRUE(CPriceLadder::unusable(2147483647.5));
    EXPECT_FALSE(CPriceLadder::unusable(0.1));
    EXPECT_FALSE(CPriceLadder::unusable(0.0));
}

TEST(PriceLadder, RowsStopAtAPriceOfZero)
{
    const CPriceData data = book(0.0005, 0.0004, 0.0006);
    const QVector<CLadderRow> rows = CPriceLadder::rows(data, 0.0001, 0, 41);
    EXPECT_EQ(rows.at(0).priceText, QStringLiteral("0.0025"));
    EXPECT_EQ(rows.at(24).priceText, QStringLiteral("0.0001"));
    EXPECT_TRUE(rows.at(25).priceText.isEmpty()) << "a price of 0 and below stays blank";
    EXPECT_TRUE(rows.at(40).priceText.isEmpty());
    EXPECT_TRUE(rows.at(21).bestBid);
}

TEST(PriceLadder, ABidOffTheLadderMarksNoRow)
{
    const CPriceData data = book(0.2000, 0.1000, 0.2001);
    for (const CLadderRow& row : CPriceLadder::rows(data, 0.0001, 0, 41)) {
        EXPECT_FALSE(row.bestBid) << row.priceText.toStdString();
    }
}

TEST(PriceLadder, CommodityTicksAndTheirText)
{
    // A soybean meal option: tick 0.5, prices as the exchange writes them.
    CPriceData data = book(150.0, 149.5, 150.5);
    const QVector<CLadderRow> rows = CPriceLadder::rows(data, 0.5, 0, 41);
    EXPECT_EQ(rows.at(0).priceText.toDouble(), 160.0);
    EXPECT_EQ(rows.at(21).price, 149.5);
    EXPECT_TRUE(rows.at(21).bestBid);
}

}  // namespace
