// The board's widget-free logic on Qt Core alone: the column sets, the fit of
// a saved layout to a set, the margin formula and the texts of the row builder.
#include "board/cpricetrowbuilder.h"
#include "board/cpricettableschema.h"
#include "seam/cinstrumentdetail.h"
#include "seam/tradingenums.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

const int kStock = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
const int kFuture = nqservice::VQ_TRADER_TYPE_FUTURE_OPTION;

QString layoutOf(int count, int skip = -1, int duplicate = -1)
{
    QStringList parts{QStringLiteral("v1"), QStringLiteral("-1"), QStringLiteral("-1")};
    for (int c = 0; c < count; ++c) {
        if (c == skip) {
            continue;
        }
        parts << QStringLiteral("%1:50:1").arg(c == duplicate ? 0 : c);
    }
    return parts.join(QLatin1Char(','));
}

TEST(BoardCore, EverySetHasItsStrikeBetweenTheTwoSides)
{
    for (int traderType : {kStock, kFuture}) {
        for (int type = TC::PTT_QUOTE; type <= TC::PTT_PRICE; ++type) {
            const int count = TC::CPriceTTableSchema::columns(type, traderType).size();
            const int strike = TC::CPriceTTableSchema::strikeColumn(type, traderType);
            ASSERT_GT(count, 0) << type << " " << traderType;
            EXPECT_GT(strike, 0) << type;
            EXPECT_LT(strike, count - 1) << type;
            EXPECT_LT(TC::CPriceTTableSchema::codeColumn(type, traderType, true), strike) << type;
            EXPECT_GT(TC::CPriceTTableSchema::codeColumn(type, traderType, false), strike) << type;
        }
    }
}

TEST(BoardCore, TheTwoTraderTypesQuoteSetsDifferInWidth)
{
    // What makes a layout of one type unfit for the other.
    EXPECT_NE(TC::CPriceTTableSchema::columns(TC::PTT_QUOTE, kStock).size(),
              TC::CPriceTTableSchema::columns(TC::PTT_QUOTE, kFuture).size());
}

TEST(BoardCore, ALayoutBelongsOnlyToTheTraderTypeWhoseSetItNamesExactly)
{
    const int stock = TC::CPriceTTableSchema::columns(TC::PTT_QUOTE, kStock).size();
    const int future = TC::CPriceTTableSchema::columns(TC::PTT_QUOTE, kFuture).size();
    const int risk = TC::CPriceTTableSchema::columns(TC::PTT_RISK, kStock).size();
    EXPECT_TRUE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(stock), kStock));
    EXPECT_TRUE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(future), kFuture));
    EXPECT_TRUE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(risk), kStock));
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(future), kStock));
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(stock), kFuture));
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(stock, 3), kStock)) << "a column missing";
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(layoutOf(stock, -1, 4), kStock)) << "a column named twice";
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(QString(), kStock));
    EXPECT_FALSE(TC::CPriceTTableSchema::layoutBelongsTo(QStringLiteral("v1,-1,-1,x:50:1"), kStock));
}

TEST(BoardCore, MarginFormulaByHand)
{
    // Call, 1,000 out of the money per unit: K 3.0, S 2.8, Z 0.05, U 10000.
    // base = max(0.07*2.8, 0.12*2.8 - 0.2) = max(0.196, 0.136) = 0.196; 10000 * (0.05 + 0.196) * 1.2 = 2952.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(true, 3.0, 10000, 0.05, 2.8), 2952.0, 1e-6);
    // Call in the money: K 2.6, S 2.8: base = max(0.196, 0.336) = 0.336; 10000 * (0.25 + 0.336) * 1.2 = 7032.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(true, 2.6, 10000, 0.25, 2.8), 7032.0, 1e-6);
    // Put out of the money: K 2.6, S 2.8: base = max(0.07*2.6, 0.336 - 0.2) = 0.182; 10000 * (0.03 + 0.182) * 1.2.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(false, 2.6, 10000, 0.03, 2.8), 2544.0, 1e-6);
    // A put never asks more than its strike: Z + base above K is cut to K.
    EXPECT_NEAR(TC::CPriceTRowBuilder::forecastMargin(false, 0.5, 10000, 0.6, 2.8), 10000 * 0.5 * 1.2, 1e-6);
}

TEST(BoardCore, StrikeAndChangeTexts)
{
    nqservice::CInstrumentDetail detail;
    detail.exercisePrice = 2.85;
    detail.name = "50ETF购12月2850";
    EXPECT_EQ(TC::CPriceTRowBuilder::strikeText(detail, 0), QStringLiteral("2.8500"));
    detail.name = "50ETF购12月2850A";
    EXPECT_TRUE(TC::CPriceTRowBuilder::isAdjusted(detail));
    EXPECT_EQ(TC::CPriceTRowBuilder::strikeText(detail, 0), QStringLiteral("2.8500A"));
    EXPECT_EQ(TC::CPriceTRowBuilder::changeText(-0.0786), QStringLiteral("-7.86%"));
    EXPECT_EQ(TC::CPriceTRowBuilder::changeText(1.7976931348623157e308), QString());
}

}  // namespace
