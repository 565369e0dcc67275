// The winner's candidates for each forecast on a small fixed universe, their
// repricing into net premium and maximum profit and loss, and the edges of the
// filter: the strict test of a rise, the open start and closed end of the window.
#include "strategy/winnerfixture.h"

#include "seam/cexchangeclient.h"
#include "strategy/cwinnercandidatebuilder.h"

#include <gtest/gtest.h>

namespace {

using TC::CWinnerCandidateBuilder;
using TC::CWinnerCandidates;
using winnertest::key;
using winnertest::setting;

class WinnerCandidatesTest : public winnertest::WinnerTest {
protected:
    CWinnerCandidates build(int direction, const TC::CWinnerSetting& winner)
    {
        return CWinnerCandidateBuilder::build(exchange, QStringLiteral("510050.SH"), direction, winner);
    }
    static QStringList rowKeys(const CWinnerCandidates& candidates)
    {
        QStringList keys;
        for (const auto& row : candidates.rows) {
            keys << row->rowKey;
        }
        return keys;
    }
    bool reprice(TC::COptionWinnerTableData& row, int direction)
    {
        return CWinnerCandidateBuilder::reprice(row, direction, WG::FormatFlags());
    }
};

TEST(WinnerFilter, ADifferenceOfExactlyTheToleranceFailsARiseAndPassesTheOthers)
{
    // 3.001 - 3.0 and 3.0 - 2.999 are the tolerance in decimal.
    const TC::CWinnerSetting rise = setting(3.001, 0.0);
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 3.0, 20261125, 20261120, 20261125, rise));
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 2.999, 20261125, 20261120, 20261125, rise));
    const TC::CWinnerSetting fall = setting(0.0, 2.999);
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_FALL, false, 2.998, 20261125, 20261120, 20261125, fall));
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_FALL, false, 2.997, 20261125, 20261120, 20261125, fall));
    const TC::CWinnerSetting breakout = setting(3.001, 2.999);
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_BREAK, true, 3.0, 20261125, 20261120, 20261125, breakout));
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_BREAK, false, 3.0, 20261125, 20261120, 20261125, breakout));
    const TC::CWinnerSetting range = setting(2.999, 3.001);
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_RANGE, true, 3.0, 20261125, 20261120, 20261125, range));
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_RANGE, false, 3.0, 20261125, 20261120, 20261125, range));
    // A step further fails them all.
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_BREAK, true, 2.99, 20261125, 20261120, 20261125, breakout));
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_RANGE, false, 3.01, 20261125, 20261120, 20261125, range));
}

TEST(WinnerFilter, RiseTakesCallsOnlyAndFallPutsOnly)
{
    const TC::CWinnerSetting winner = setting(3.5, 2.5);
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, false, 3.0, 20261125, 20261120, 20261125, winner));
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_FALL, true, 3.0, 20261125, 20261120, 20261125, winner));
}

TEST(WinnerFilter, TheWindowIsOpenAtItsStartAndClosedAtItsEnd)
{
    const TC::CWinnerSetting winner = setting(3.5, 0.0);
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 3.0, 20261120, 20261120, 20261125, winner));
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 3.0, 20261121, 20261120, 20261125, winner));
    EXPECT_TRUE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 3.0, 20261125, 20261120, 20261125, winner));
    EXPECT_FALSE(CWinnerCandidateBuilder::passes(TC::WPD_RISE, true, 3.0, 20261126, 20261120, 20261125, winner));
}

TEST(WinnerFilter, DatesOfTheWindowAreLocalDays)
{
    EXPECT_EQ(CWinnerCandidateBuilder::dateOfTime(winnertest::noonOf(20261125)), 20261125);
    EXPECT_EQ(CWinnerCandidateBuilder::operationOf(TC::WPD_RANGE), 19);
    EXPECT_EQ(CWinnerCandidateBuilder::operationOf(TC::WPD_BREAK), 18);
    EXPECT_EQ(CWinnerCandidateBuilder::operationOf(TC::WPD_RISE), 18);
}

TEST_F(WinnerCandidatesTest, RiseBuysTheCallsBelowLevelOne)
{
    const CWinnerCandidates out = build(TC::WPD_RISE, setting(3.05, 0.0));
    EXPECT_EQ(rowKeys(out), (QStringList{key("10000010"), key("10000011")}));
    EXPECT_EQ(out.passedKeys, rowKeys(out));
    const auto& row = out.rows.at(1);
    EXPECT_EQ(row->codeOne, key("10000011"));
    EXPECT_EQ(row->codeTwo, QString());
    EXPECT_EQ(row->nameOne, QStringLiteral("50ETF购11月3000"));
    EXPECT_EQ(row->operationOne, 18);
    EXPECT_EQ(row->quantityOne, 1);
    EXPECT_EQ(row->expireDate, 20261125);
    EXPECT_EQ(row->maxProfitText, QStringLiteral("无限"));
    EXPECT_EQ(row->maxLossText, QString());

    // 10000 x 0.08 paid: the most it can lose.
    quoteAt("10000011", 0.08, 0.06, 120);
    ASSERT_TRUE(reprice(*row, TC::WPD_RISE));
    EXPECT_DOUBLE_EQ(row->lastOne, 0.08);
    EXPECT_EQ(row->volumeOne, 120);
    EXPECT_NEAR(row->changeOne, 0.02, 1e-12);
    EXPECT_NEAR(row->netPremium, -800.0, 1e-9);
    EXPECT_EQ(row->maxLossText, QStringLiteral("-800.0000"));
    EXPECT_EQ(row->maxProfitText, QStringLiteral("无限"));
}

TEST_F(WinnerCandidatesTest, FallBuysThePutsFromLevelTwoUp)
{
    const CWinnerCandidates out = build(TC::WPD_FALL, setting(0.0, 3.0));
    EXPECT_EQ(rowKeys(out), (QStringList{key("10000021"), key("10000022")}));
    const auto& row = out.rows.at(1);
    EXPECT_EQ(row->maxProfitText, QString());
    quoteAt("10000022", 0.13);
    ASSERT_TRUE(reprice(*row, TC::WPD_FALL));
    // Paid 1300; at a price of zero the put is worth 10000 x 3.1.
    EXPECT_NEAR(row->netPremium, -1300.0, 1e-9);
    EXPECT_EQ(row->maxProfitText, QStringLiteral("29700.0000"));
    EXPECT_EQ(row->maxLossText, QStringLiteral("-1300.0000"));
}

TEST_F(WinnerCandidatesTest, BreakoutBuysEveryPutBelowWithEveryCallAboveOfOneExpiry)
{
    const CWinnerCandidates out = build(TC::WPD_BREAK, setting(3.0, 2.95));
    EXPECT_EQ(rowKeys(out), (QStringList{key("10000020") + "|" + key("10000011"),
                                         key("10000020") + "|" + key("10000012")}));
    EXPECT_EQ(out.passedKeys, (QStringList{key("10000011"), key("10000012"), key("10000020")}));
    const auto& row = out.rows.at(0);
    EXPECT_EQ(row->codeOne, key("10000020"));
    EXPECT_EQ(row->codeTwo, key("10000011"));
    EXPECT_EQ(row->nameOne, QStringLiteral("50ETF沽11月2900"));
    EXPECT_EQ(row->nameTwo, QStringLiteral("50ETF购11月3000"));
    EXPECT_EQ(row->operationOne, 18);
    EXPECT_EQ(row->operationTwo, 18);
    EXPECT_EQ(row->quantityTwo, 1);
    EXPECT_EQ(row->maxProfitText, QStringLiteral("无限"));

    quoteAt("10000020", 0.04);
    quoteAt("10000011", 0.08);
    ASSERT_TRUE(reprice(*row, TC::WPD_BREAK));
    EXPECT_NEAR(row->netPremium, -1200.0, 1e-9);
    EXPECT_EQ(row->maxLossText, QStringLiteral("-1200.0000"));
    EXPECT_EQ(row->maxProfitText, QStringLiteral("无限"));
}

TEST_F(WinnerCandidatesTest, RangeSellsEveryPutBelowWithEveryCallAboveOfOneExpiry)
{
    const CWinnerCandidates out = build(TC::WPD_RANGE, setting(3.0, 3.0));
    const QString p29 = key("10000020");
    const QString p30 = key("10000021");
    const QString c30 = key("10000011");
    const QString c31 = key("10000012");
    EXPECT_EQ(rowKeys(out), (QStringList{p29 + "|" + c30, p29 + "|" + c31, p30 + "|" + c30, p30 + "|" + c31}));
    for (const auto& row : out.rows) {
        EXPECT_EQ(row->operationOne, 19);
        EXPECT_EQ(row->operationTwo, 19);
        EXPECT_EQ(row->maxLossText, QStringLiteral("无限"));
    }
    const auto& row = out.rows.at(3);
    quoteAt("10000021", 0.07);
    quoteAt("10000012", 0.05);
    ASSERT_TRUE(reprice(*row, TC::WPD_RANGE));
    // Received 700 + 500: the most it can earn.
    EXPECT_NEAR(row->netPremium, 1200.0, 1e-9);
    EXPECT_EQ(row->maxProfitText, QStringLiteral("1200.0000"));
    EXPECT_EQ(row->maxLossText, QStringLiteral("无限"));
}

TEST_F(WinnerCandidatesTest, PairsMeetOnlyWithinTheirExpiryAcrossMonthsOfTheWindow)
{
    const CWinnerCandidates out = build(TC::WPD_RANGE, setting(3.0, 3.0, 20261120, 20261223));
    const QStringList keys = rowKeys(out);
    ASSERT_EQ(keys.size(), 5);
    EXPECT_EQ(keys.last(), key("10000042") + "|" + key("10000041"));
    EXPECT_EQ(out.rows.last()->expireDate, 20261223);
}

TEST_F(WinnerCandidatesTest, AnOptionExpiringOnTheStartIsOutAndOnTheEndIn)
{
    EXPECT_TRUE(build(TC::WPD_RISE, setting(3.05, 0.0, 20261125, 20261222)).rows.isEmpty());
    const CWinnerCandidates dec = build(TC::WPD_RISE, setting(3.05, 0.0, 20261125, 20261223));
    EXPECT_EQ(rowKeys(dec), QStringList{key("10000041")});
}

TEST_F(WinnerCandidatesTest, BreakoutWithoutAPutYieldsNoRowsThoughCallsPassed)
{
    const CWinnerCandidates out = build(TC::WPD_BREAK, setting(3.0, 2.8));
    EXPECT_TRUE(out.rows.isEmpty());
    EXPECT_EQ(out.passedKeys, (QStringList{key("10000011"), key("10000012")}));
}

TEST_F(WinnerCandidatesTest, AnUnknownUnderlyingOrNoExchangeGivesNothing)
{
    EXPECT_TRUE(CWinnerCandidateBuilder::build(exchange, QStringLiteral("510300.SH"), 0, setting(3.05, 0.0))
                    .passedKeys.isEmpty());
    EXPECT_TRUE(CWinnerCandidateBuilder::build(exchange, QString(), 0, setting(3.05, 0.0)).rows.isEmpty());
    EXPECT_TRUE(CWinnerCandidateBuilder::build(nullptr, QStringLiteral("510050.SH"), 0, setting(3.05, 0.0))
                    .rows.isEmpty());
}

TEST_F(WinnerCandidatesTest, AFirstLegWithoutPriceWritesNothing)
{
    CWinnerCandidates out = build(TC::WPD_RISE, setting(3.05, 0.0));
    EXPECT_FALSE(reprice(*out.rows.at(0), TC::WPD_RISE));
    EXPECT_FALSE(utils::isUsable(out.rows.at(0)->netPremium));
    EXPECT_EQ(out.rows.at(0)->maxLossText, QString());
}

TEST_F(WinnerCandidatesTest, APairWithoutTheSecondPriceGetsTheFirstLegsFiguresOnly)
{
    CWinnerCandidates out = build(TC::WPD_RANGE, setting(3.0, 3.0));
    auto& row = *out.rows.at(0);
    quoteAt("10000020", 0.04, 0.05, 7);
    ASSERT_TRUE(reprice(row, TC::WPD_RANGE));
    EXPECT_DOUBLE_EQ(row.lastOne, 0.04);
    EXPECT_EQ(row.volumeOne, 7);
    EXPECT_FALSE(utils::isUsable(row.lastTwo));
    EXPECT_FALSE(utils::isUsable(row.netPremium));
    EXPECT_EQ(row.maxProfitText, QString());
}

TEST_F(WinnerCandidatesTest, AnInvalidLastPriceIsFormattedAsSuch)
{
    CWinnerCandidates out = build(TC::WPD_RISE, setting(3.05, 0.0));
    quoteAt("10000010", utils::kAbsentDouble, 0.05);
    ASSERT_TRUE(reprice(*out.rows.at(0), TC::WPD_RISE));
    EXPECT_EQ(out.rows.at(0)->maxLossText, QStringLiteral("非法值"));
}

TEST_F(WinnerCandidatesTest, FiguresFollowTheContractUnitOfEachLeg)
{
    market::TInstrumentList list = winnertest::winnerUniverse();
    boardtest::OptionSpec adjusted;
    adjusted.code = "10000099";
    adjusted.call = false;
    adjusted.strike = 3.2;
    adjusted.unit = 10200.0;
    adjusted.adjusted = true;
    list.push_back(boardtest::option(adjusted));
    installUniverse(list);
    CWinnerCandidates out = build(TC::WPD_FALL, setting(0.0, 3.15));
    ASSERT_EQ(rowKeys(out), QStringList{key("10000099")});
    quoteAt("10000099", 0.25);
    ASSERT_TRUE(reprice(*out.rows.at(0), TC::WPD_FALL));
    // 10200 x 0.25 paid; 10200 x 3.2 at most back.
    EXPECT_EQ(out.rows.at(0)->maxLossText, QStringLiteral("-2550.0000"));
    EXPECT_EQ(out.rows.at(0)->maxProfitText, QStringLiteral("30090.0000"));
}

}  // namespace
