// The price quote panel's widget-free logic on Qt Core alone: the columns of
// the month blocks and the views, what a cell of a row shows and in which
// colour, and what an instrument and a quote write into a month.
#include "board/boardfixture.h"
#include "positions/cpricequoterow.h"
#include "positions/cpricequoterowbuilder.h"
#include "positions/cpricequoteschema.h"

#include <gtest/gtest.h>

#include <QVariant>

namespace {

using TC::CPriceQuoteRow;
using TC::CPriceQuoteRowBuilder;
using S = TC::CPriceQuoteSchema;

TEST(PriceQuoteSchema, NoMonthLeavesTheStrikeColumnAlone)
{
    EXPECT_EQ(S::columnCount(0), 1);
    EXPECT_EQ(S::columnCount(3), 64);
}

TEST(PriceQuoteSchema, Column22IsTheFirstColumnOfMonthOne)
{
    EXPECT_EQ(S::monthOf(22), 1);
    EXPECT_EQ(S::subIndexOf(22), 0);
    EXPECT_EQ(S::monthOf(21), 0);
    EXPECT_EQ(S::subIndexOf(21), 20);
    EXPECT_EQ(S::monthOf(0), -1);
    EXPECT_EQ(S::columnOf(1, 0), 22);
    EXPECT_EQ(S::header(22), QStringLiteral("最新"));
    EXPECT_EQ(S::header(0), QStringLiteral("行权价格"));
}

TEST(PriceQuoteSchema, HeadersAndTypesRepeatForEveryMonth)
{
    const QStringList expected = {"最新",  "幅度%", "总量",  "持仓量", "涨跌",     "买价",       "内在价值",
                                  "溢价%", "杠杆",  "隐波%", "历波%",  "DelTa",    "Gamma",      "Theta",
                                  "Vega",  "Rho",   "代码",  "合约单位", "期权到期日", "行权方式", "行权终止日"};
    for (int month = 0; month < 3; ++month) {
        for (int sub = 0; sub < S::kMonthColumns; ++sub) {
            const int column = S::columnOf(month, sub);
            EXPECT_EQ(S::header(column), expected.at(sub)) << column;
        }
    }
    EXPECT_EQ(S::columnType(0), int(QVariant::String));
    for (int sub : {0, 1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}) {
        EXPECT_EQ(S::columnType(S::columnOf(2, sub)), int(QVariant::Double)) << sub;
    }
    for (int sub : {2, 3, 17, 18, 20}) {
        EXPECT_EQ(S::columnType(S::columnOf(2, sub)), int(QVariant::Int)) << sub;
    }
    for (int sub : {16, 19}) {
        EXPECT_EQ(S::columnType(S::columnOf(2, sub)), int(QVariant::String)) << sub;
    }
}

struct ViewCase {
    int view;
    int first;
    int last;
};

class PriceQuoteViews : public ::testing::TestWithParam<ViewCase> {};

TEST_P(PriceQuoteViews, EachViewShowsItsSubIndexesInEveryMonth)
{
    const ViewCase c = GetParam();
    EXPECT_TRUE(S::visibleInView(0, c.view));
    for (int month = 0; month < 2; ++month) {
        for (int sub = 0; sub < S::kMonthColumns; ++sub) {
            EXPECT_EQ(S::visibleInView(S::columnOf(month, sub), c.view), sub >= c.first && sub <= c.last)
                << "view " << c.view << " month " << month << " sub " << sub;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, PriceQuoteViews,
                         ::testing::Values(ViewCase{0, 0, 5}, ViewCase{1, 6, 10}, ViewCase{2, 11, 15},
                                           ViewCase{3, 16, 20}));

TEST(PriceQuoteSchema, OnlyTheStyleColumnIsNotBoldAndFourSubIndexesFlash)
{
    EXPECT_TRUE(S::boldColumn(0));
    EXPECT_FALSE(S::boldColumn(S::columnOf(1, S::PQ_STYLE)));
    EXPECT_TRUE(S::boldColumn(S::columnOf(1, S::PQ_CODE)));
    for (int sub = 0; sub < S::kMonthColumns; ++sub) {
        EXPECT_EQ(S::flashSubIndex(sub), sub == 0 || sub == 1 || sub == 4 || sub == 5) << sub;
    }
}

TEST(PriceQuoteSchema, MonthCellText)
{
    EXPECT_EQ(S::monthCellText(QStringLiteral("20261223"), 33), QStringLiteral("2026年12月(33天)"));
}

TEST(PriceQuoteSchema, AdjustedContractsKeyTheirOwnRowsAndStrikesSortAsNumbers)
{
    EXPECT_EQ(S::rowKey(QStringLiteral("2.9500"), false), QStringLiteral("2.9500"));
    EXPECT_EQ(S::rowKey(QStringLiteral("2.9500"), true), QStringLiteral("2.9500A"));
    EXPECT_EQ(S::rowKey(QString(), true), QString());
    EXPECT_LT(S::compareRowKeys(QStringLiteral("9.5000"), QStringLiteral("10.0000")), 0);
    EXPECT_GT(S::compareRowKeys(QStringLiteral("10.0000"), QStringLiteral("9.5000")), 0);
    EXPECT_LT(S::compareRowKeys(QStringLiteral("2.9500"), QStringLiteral("2.9500A")), 0);
    EXPECT_LT(S::compareRowKeys(QStringLiteral("2.9500A"), QStringLiteral("3.0000")), 0);
    EXPECT_EQ(S::compareRowKeys(QStringLiteral("2.9500"), QStringLiteral("2.9500")), 0);
}

TEST(PriceQuoteRow, StartsAbsentInEveryMonth)
{
    const CPriceQuoteRow row(QStringLiteral("3.0000"), 2);
    EXPECT_EQ(row.monthCount, 2);
    EXPECT_EQ(row.lastPrices.size(), 2);
    EXPECT_EQ(row.lastPrices.at(1), utils::kAbsentDouble);
    EXPECT_EQ(row.volumes.at(1), utils::kAbsentInt);
    EXPECT_TRUE(row.stockKeys.at(0).isEmpty());
    EXPECT_EQ(row.cellText(0, 0), QStringLiteral("3.0000"));
    EXPECT_EQ(row.cellTextValue(0), QStringLiteral("3.0000"));
    EXPECT_EQ(row.cellInt(S::columnOf(0, S::PQ_VOLUME)), utils::kAbsentInt);
    EXPECT_EQ(row.cellDouble(S::columnOf(0, S::PQ_LAST)), utils::kAbsentDouble);
    EXPECT_EQ(row.cellDouble(S::columnOf(0, S::PQ_VOLUME)), utils::kAbsentDouble) << "an integer column";
}

TEST(PriceQuoteRow, AMonthWithoutThisStrikeIsEmptyAndOneWithoutDataShowsADash)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 2);
    row.stockKeys[1] = QStringLiteral("10000041.SH");
    for (int sub : {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20}) {
        EXPECT_EQ(row.cellText(S::columnOf(0, sub), 0), QString()) << sub;
        EXPECT_EQ(row.cellText(S::columnOf(1, sub), 0), QStringLiteral("-")) << sub;
    }
    // An absent ratio times 100 is no longer the absent marker: it shows the
    // invalid text, with or without an instrument.
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_CHANGE_RATIO), 0), QStringLiteral("非法值"));
    EXPECT_EQ(row.cellText(S::columnOf(1, S::PQ_CHANGE_RATIO), 0), QStringLiteral("非法值"));
    EXPECT_EQ(row.cellText(S::columnOf(1, S::PQ_CODE), 0), QStringLiteral("10000041.SH"));
    EXPECT_EQ(row.cellText(S::columnOf(2, S::PQ_LAST), 0), QString()) << "a month beyond the row";
    EXPECT_EQ(row.cellInt(S::columnOf(5, S::PQ_VOLUME)), utils::kAbsentInt);
}

TEST(PriceQuoteRow, NumbersByTheirSubIndex)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 1);
    row.stockKeys[0] = QStringLiteral("10000011.SH");
    row.lastPrices[0] = 1234.56789;
    row.changeRatios[0] = 0.0123;
    row.premiumRates[0] = 0.04567;
    row.impliedVolatilities[0] = 0.2;
    row.volumes[0] = 1234567;
    row.contractUnits[0] = 10000;
    row.expireDate[0] = 20261223;
    row.lastExerciseDates[0] = 20261223;
    row.deltas[0] = -0.51234;
    const int grouped = utils::FNF_SEGMENTED;
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_LAST), 0), QStringLiteral("1234.5679"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_LAST), grouped), QStringLiteral("1,234.5679"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_CHANGE_RATIO), 0), QStringLiteral("1.23"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_PREMIUM), 0), QStringLiteral("0.05"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_IMPLIED_VOL), 0), QStringLiteral("0.20"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_DELTA), 0), QStringLiteral("-0.5123"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_VOLUME), grouped), QStringLiteral("1,234,567"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_UNIT), grouped), QStringLiteral("10,000"));
    // A date is not grouped, even with grouping on.
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_EXPIRE), grouped), QStringLiteral("20261223"));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_LAST_EXERCISE), grouped), QStringLiteral("20261223"));
    EXPECT_EQ(row.cellInt(S::columnOf(0, S::PQ_EXPIRE)), 20261223);
    EXPECT_DOUBLE_EQ(row.cellDouble(S::columnOf(0, S::PQ_DELTA)), -0.51234);
}

TEST(PriceQuoteRow, ColoursRiseRedFallGreenAndTheBidAgainstThePreviousClose)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 1);
    row.stockKeys[0] = QStringLiteral("10000011.SH");
    EXPECT_EQ(row.textColorKey(0), QStringLiteral("tc_clr_pricet_exercise_price"));
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_LAST)), QStringLiteral("tc_clr_priceT_equal"));
    row.changeAmounts[0] = 0.01;
    for (int sub : {0, 1, 4}) {
        EXPECT_EQ(row.textColorKey(S::columnOf(0, sub)), QStringLiteral("tc_clr_priceT_rise")) << sub;
    }
    row.changeAmounts[0] = -0.01;
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_LAST)), QStringLiteral("tc_clr_priceT_fall"));
    row.bidPrices[0] = 0.11;
    row.preCloses[0] = 0.10;
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_BID)), QStringLiteral("tc_clr_priceT_rise"));
    row.bidPrices[0] = 0.09;
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_BID)), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_VOLUME)), QStringLiteral("tc_clr_priceT_total"));
    for (int sub : {3, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 19, 20}) {
        EXPECT_EQ(row.textColorKey(S::columnOf(0, sub)), QStringLiteral("tc_clr_priceT_number")) << sub;
    }
    EXPECT_EQ(row.textColorKey(S::columnOf(0, S::PQ_CODE)), QStringLiteral("tc_clr_priceT_equal"));
    EXPECT_EQ(row.textColorKey(S::columnOf(3, S::PQ_LAST)), QStringLiteral("tc_clr_priceT_equal"));
}

TEST(PriceQuoteRow, BackgroundOnlyWhereTheMonthHasThisStrike)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 2);
    row.stockKeys[0] = QStringLiteral("10000011.SH");
    EXPECT_EQ(row.backgroundKey(0), nullptr);
    EXPECT_EQ(row.backgroundKey(S::columnOf(1, S::PQ_LAST)), nullptr) << "no option of this strike";
    EXPECT_EQ(row.backgroundKey(S::columnOf(2, S::PQ_LAST)), nullptr) << "beyond the months";
    ASSERT_NE(row.backgroundKey(S::columnOf(0, S::PQ_LAST)), nullptr);
    EXPECT_EQ(*row.backgroundKey(S::columnOf(0, S::PQ_LAST)), QStringLiteral("tc_clr_priceT_null_value_background"));
    row.inTheMoney = true;
    EXPECT_EQ(*row.backgroundKey(S::columnOf(0, S::PQ_RHO)), QStringLiteral("tc_clr_priceT_actual_value_background"));
}

// The row builder on the simulated exchange and quote client of the board tests.
class PriceQuoteBuilder : public boardtest::BoardTest {
protected:
    std::shared_ptr<nqservice::CInstrumentDetail> detail(const QString& key) { return exchange->getCodeInfo(key); }
};

TEST_F(PriceQuoteBuilder, InitMonthTakesTheInstrumentsFacts)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 3);
    CPriceQuoteRowBuilder::initMonth(row, 2, *detail(QStringLiteral("10000041.SH")));
    EXPECT_EQ(row.stockKeys.at(2), QStringLiteral("10000041.SH"));
    EXPECT_EQ(row.exerciseStyles.at(2), QStringLiteral("欧式"));
    EXPECT_EQ(row.contractUnits.at(2), 10000);
    EXPECT_EQ(row.expireDate.at(2), 20261223);
    EXPECT_EQ(row.lastExerciseDates.at(2), 20261223);
    EXPECT_DOUBLE_EQ(row.historicalVolatility.at(2), 0.2);
    EXPECT_TRUE(row.stockKeys.at(0).isEmpty());
    CPriceQuoteRowBuilder::initMonth(row, 3, *detail(QStringLiteral("10000041.SH")));  // out of range: nothing
    EXPECT_EQ(row.stockKeys.size(), 3);
}

TEST_F(PriceQuoteBuilder, TheFirstPriceNeverFlashesAChangeDoesAtItsColumn)
{
    publish(quote("510050", 3.05, 3.0));
    CPriceQuoteRow row(QStringLiteral("3.0000"), 3);
    const auto option = detail(QStringLiteral("10000041.SH"));
    const int m = 2;
    EXPECT_FALSE(CPriceQuoteRowBuilder::applyQuote(row, m, *quote("10000041", 1.0, 0.9), option, 1000.0));
    EXPECT_TRUE(row.flashStamps.empty());
    EXPECT_TRUE(CPriceQuoteRowBuilder::applyQuote(row, m, *quote("10000041", 1.1, 0.9), option, 2000.0));
    ASSERT_EQ(row.flashStamps.count(m * 21 + 1), 1u);
    EXPECT_DOUBLE_EQ(row.flashStamps.at(m * 21 + 1), 2000.0);
    EXPECT_EQ(row.flashStamps.count(m * 21 + 2), 1u) << "the ratio changed too";
    EXPECT_EQ(row.flashStamps.count(m * 21 + 5), 1u) << "and the change";
    EXPECT_EQ(row.flashStamps.count(m * 21 + 6), 1u) << "and the bid";
    EXPECT_EQ(row.flashStamps.count(m * 21 + 3), 0u) << "the volume never flashes";
    // The same price again stamps nothing new.
    row.flashStamps.clear();
    EXPECT_FALSE(CPriceQuoteRowBuilder::applyQuote(row, m, *quote("10000041", 1.1, 0.9), option, 3000.0));
    EXPECT_TRUE(row.flashStamps.empty());
}

TEST_F(PriceQuoteBuilder, AbsentToAPriceDoesNotFlash)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 1);
    const auto option = detail(QStringLiteral("10000011.SH"));
    EXPECT_FALSE(CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000011", utils::kAbsentDouble, 0.9), option, 1.0));
    EXPECT_FALSE(CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000011", 1.0, 0.9), option, 2.0));
    EXPECT_TRUE(row.flashStamps.empty());
    EXPECT_DOUBLE_EQ(row.lastPrices.at(0), 1.0);
}

TEST_F(PriceQuoteBuilder, FlashStampsEndAfterTheirTime)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 1);
    row.flashStamps[1] = 1000.0;
    row.flashStamps[5] = 1400.0;
    EXPECT_FALSE(CPriceQuoteRowBuilder::clearFlashStamps(row, 1500.0)) << "exactly 500 ms is not over";
    EXPECT_EQ(row.flashStamps.size(), 2u);
    EXPECT_TRUE(CPriceQuoteRowBuilder::clearFlashStamps(row, 1500.5));
    EXPECT_EQ(row.flashStamps.size(), 1u);
    EXPECT_EQ(row.flashStamps.count(5), 1u);
    EXPECT_TRUE(CPriceQuoteRowBuilder::clearFlashStamps(row, 2000.0));
    EXPECT_TRUE(row.flashStamps.empty());
}

TEST_F(PriceQuoteBuilder, CallFiguresAgainstTheUnderlying)
{
    publish(quote("510050", 3.05, 3.0));
    CPriceQuoteRow row(QStringLiteral("2.9000"), 1);
    const auto call = detail(QStringLiteral("10000010.SH"));  // strike 2.9, in the money
    CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000010", 0.17, 0.15), call, 1.0);
    EXPECT_TRUE(row.inTheMoney);
    EXPECT_NEAR(row.intrinsicValues.at(0), 0.15, 1e-9);
    EXPECT_NEAR(row.premiumRates.at(0), (2.9 + 0.17 - 3.05) / 3.05, 1e-9);
    EXPECT_NEAR(row.leverages.at(0), 3.05 / 0.17, 1e-9);
    EXPECT_FALSE(utils::isAbsent(row.impliedVolatilities.at(0)));
    EXPECT_GT(row.impliedVolatilities.at(0), 0.0);
    EXPECT_FALSE(utils::isAbsent(row.deltas.at(0)));
    EXPECT_GT(row.deltas.at(0), 0.5);
}

TEST_F(PriceQuoteBuilder, AnOutOfTheMoneyCallShowsNoIntrinsicValue)
{
    publish(quote("510050", 3.05, 3.0));
    CPriceQuoteRow row(QStringLiteral("3.2000"), 1);
    row.stockKeys[0] = QStringLiteral("10000013.SH");
    const auto call = detail(QStringLiteral("10000013.SH"));  // strike 3.2
    CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000013", 0.02, 0.02), call, 1.0);
    EXPECT_FALSE(row.inTheMoney);
    EXPECT_TRUE(utils::isAbsent(row.intrinsicValues.at(0)));
    EXPECT_EQ(row.cellText(S::columnOf(0, S::PQ_INTRINSIC), 0), QStringLiteral("-"));
}

TEST_F(PriceQuoteBuilder, APutIsInTheMoneyAboveTheUnderlying)
{
    publish(quote("510050", 3.05, 3.0));
    CPriceQuoteRow row(QStringLiteral("3.2000"), 1);
    const auto put = detail(QStringLiteral("10000023.SH"));  // put, strike 3.2
    CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000023", 0.2, 0.2), put, 1.0);
    EXPECT_TRUE(row.inTheMoney);
    EXPECT_NEAR(row.intrinsicValues.at(0), 0.15, 1e-9);
    EXPECT_LT(row.deltas.at(0), 0.0);
}

TEST_F(PriceQuoteBuilder, WithoutAnUnderlyingPriceOnlyThePricesMove)
{
    CPriceQuoteRow row(QStringLiteral("3.0000"), 1);
    const auto call = detail(QStringLiteral("10000011.SH"));
    CPriceQuoteRowBuilder::applyQuote(row, 0, *quote("10000011", 0.1, 0.09), call, 1.0);
    EXPECT_DOUBLE_EQ(row.lastPrices.at(0), 0.1);
    EXPECT_TRUE(utils::isAbsent(row.leverages.at(0)));
    EXPECT_TRUE(utils::isAbsent(row.impliedVolatilities.at(0)));
    EXPECT_FALSE(row.inTheMoney);
}

}  // namespace
