// The seven lines of the profit and loss analysis: the worked cases of a call,
// a put and a pair under breakout and range, lines that stand when a quote is
// missing, and the figures read from the services for a built candidate.
#include "strategy/winnerfixture.h"

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "strategy/cprofitlossanalysistexts.h"
#include "strategy/cwinnercandidatebuilder.h"

#include <gtest/gtest.h>

namespace {

using TC::CProfitLossAnalysisTexts;
using TC::COptionWinnerTableData;

nqservice::CInstrumentDetail strikeAt(double strike)
{
    nqservice::CInstrumentDetail detail;
    detail.kind = nqservice::IK_STOCK_OPTION;
    detail.exercisePrice = strike;
    detail.contractUnit = 10000.0;
    return detail;
}

TC::CPriceData lastAt(double last)
{
    TC::CPriceData price;
    price.lastPrice = last;
    return price;
}

COptionWinnerTableData candidate(bool pair)
{
    COptionWinnerTableData row;
    row.codeOne = QStringLiteral("10000020.SH");
    row.codeTwo = pair ? QStringLiteral("10000012.SH") : QString();
    row.expireDate = 20261125;
    row.maxProfitText = QStringLiteral("无限");
    row.maxLossText = QStringLiteral("-1000.0000");
    row.netPremium = -1000.0;
    return row;
}

TEST(ProfitLossAnalysisTexts, StartWithDashes)
{
    const CProfitLossAnalysisTexts texts;
    EXPECT_EQ(texts.lines(), (QStringList{"损益分析", "行权到期日:-", "最大盈利:-", "盈利区间:-", "最大亏损:-",
                                          "亏损区间:-", "权利金净值:-"}));
}

TEST(ProfitLossAnalysisTexts, ACallAtPointOneOnTwoAndAHalfUnderARise)
{
    const auto detail = strikeAt(2.5);
    const auto price = lastAt(0.1);
    CProfitLossAnalysisTexts texts;
    texts.fill(candidate(false), TC::WPD_RISE, &price, &detail, nullptr, nullptr, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:2.600以上"));
    EXPECT_EQ(texts.lossRange, QStringLiteral("亏损区间:2.600以下"));
    EXPECT_EQ(texts.expiry, QStringLiteral("行权到期日:2026-11-25"));
    EXPECT_EQ(texts.maxProfit, QStringLiteral("最大盈利:无限"));
    EXPECT_EQ(texts.maxLoss, QStringLiteral("最大亏损:-1000.0000"));
    EXPECT_EQ(texts.netPremium, QStringLiteral("权利金净值:-1000.00"));
    EXPECT_EQ(texts.title, QStringLiteral("损益分析"));
}

TEST(ProfitLossAnalysisTexts, APutAtPointOneOnTwoAndAHalfUnderAFall)
{
    const auto detail = strikeAt(2.5);
    const auto price = lastAt(0.1);
    CProfitLossAnalysisTexts texts;
    texts.fill(candidate(false), TC::WPD_FALL, &price, &detail, nullptr, nullptr, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:2.400以下"));
    EXPECT_EQ(texts.lossRange, QStringLiteral("亏损区间:2.400以上"));
}

TEST(ProfitLossAnalysisTexts, APairUnderABreakoutAndARange)
{
    const auto put = strikeAt(2.4);
    const auto call = strikeAt(2.6);
    const auto putPrice = lastAt(0.05);
    const auto callPrice = lastAt(0.06);
    CProfitLossAnalysisTexts texts;
    texts.fill(candidate(true), TC::WPD_BREAK, &putPrice, &put, &callPrice, &call, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:2.290以下或2.710以上"));
    EXPECT_EQ(texts.lossRange, QStringLiteral("亏损区间:2.290与2.710之间"));
    texts.fill(candidate(true), TC::WPD_RANGE, &putPrice, &put, &callPrice, &call, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:2.290与2.710之间"));
    EXPECT_EQ(texts.lossRange, QStringLiteral("亏损区间:2.290以下或2.710以上"));
}

TEST(ProfitLossAnalysisTexts, AMissingQuoteLeavesTheRangesDashedAndTheOtherLinesStand)
{
    const auto put = strikeAt(2.4);
    const auto putPrice = lastAt(0.05);
    CProfitLossAnalysisTexts texts;
    texts.profitRange = QStringLiteral("盈利区间:old");
    texts.fill(candidate(true), TC::WPD_BREAK, &putPrice, &put, nullptr, nullptr, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:-"));
    EXPECT_EQ(texts.lossRange, QStringLiteral("亏损区间:-"));
    EXPECT_EQ(texts.maxLoss, QStringLiteral("最大亏损:-1000.0000"));
    EXPECT_EQ(texts.expiry, QStringLiteral("行权到期日:2026-11-25"));
    texts.fill(candidate(false), TC::WPD_RISE, nullptr, &put, nullptr, nullptr, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:-"));
    EXPECT_EQ(texts.maxProfit, QStringLiteral("最大盈利:无限"));
}

TEST(ProfitLossAnalysisTexts, AnInvalidLastPricePassesThroughAsSuch)
{
    const auto detail = strikeAt(2.5);
    const auto price = lastAt(utils::kAbsentDouble);
    COptionWinnerTableData row = candidate(false);
    row.netPremium = utils::kAbsentDouble;
    CProfitLossAnalysisTexts texts;
    texts.fill(row, TC::WPD_RISE, &price, &detail, nullptr, nullptr, WG::FormatFlags());
    EXPECT_EQ(texts.profitRange, QStringLiteral("盈利区间:非法值以上"));
    EXPECT_EQ(texts.netPremium, QStringLiteral("权利金净值:非法值"));
}

TEST(ProfitLossAnalysisTexts, GroupsThousandsWhenTheUserDoes)
{
    COptionWinnerTableData row = candidate(false);
    row.netPremium = -12345.0;
    CProfitLossAnalysisTexts texts;
    texts.fill(row, TC::WPD_RISE, nullptr, nullptr, nullptr, nullptr, WG::FormatFlags(utils::FNF_SEGMENTED));
    EXPECT_EQ(texts.netPremium, QStringLiteral("权利金净值:-12,345.00"));
}

class ProfitLossAnalysisOnServicesTest : public winnertest::WinnerTest {};

TEST_F(ProfitLossAnalysisOnServicesTest, ARangePairReadsItsLegsFromTheServices)
{
    // Sell the 3.0 put at 0.07 and the 3.1 call at 0.05: 1200 received.
    const TC::CWinnerCandidates out = TC::CWinnerCandidateBuilder::build(
        exchange, QStringLiteral("510050.SH"), TC::WPD_RANGE, winnertest::setting(3.0, 3.0));
    ASSERT_EQ(out.rows.size(), 4);
    auto row = out.rows.at(3);
    quoteAt("10000021", 0.07);
    quoteAt("10000012", 0.05);
    ASSERT_TRUE(TC::CWinnerCandidateBuilder::reprice(*row, TC::WPD_RANGE, WG::FormatFlags()));
    CProfitLossAnalysisTexts texts;
    texts.fill(*row, TC::WPD_RANGE, WG::FormatFlags());
    EXPECT_EQ(texts.lines(), (QStringList{"损益分析", "行权到期日:2026-11-25", "最大盈利:1200.0000",
                                          "盈利区间:2.880与3.220之间", "最大亏损:无限",
                                          "亏损区间:2.880以下或3.220以上", "权利金净值:1200.00"}));
}

TEST_F(ProfitLossAnalysisOnServicesTest, ARiseCallReadsItsLegFromTheServices)
{
    const TC::CWinnerCandidates out = TC::CWinnerCandidateBuilder::build(
        exchange, QStringLiteral("510050.SH"), TC::WPD_RISE, winnertest::setting(3.05, 0.0));
    ASSERT_EQ(out.rows.size(), 2);
    auto row = out.rows.at(1);
    quoteAt("10000011", 0.08);
    ASSERT_TRUE(TC::CWinnerCandidateBuilder::reprice(*row, TC::WPD_RISE, WG::FormatFlags()));
    CProfitLossAnalysisTexts texts;
    texts.fill(*row, TC::WPD_RISE, WG::FormatFlags());
    EXPECT_EQ(texts.lines(), (QStringList{"损益分析", "行权到期日:2026-11-25", "最大盈利:无限", "盈利区间:3.080以上",
                                          "最大亏损:-800.0000", "亏损区间:3.080以下", "权利金净值:-800.00"}));
}

}  // namespace
