// The combination panel's widget-free logic on Qt Core alone: which records the
// table shows, the search by combination number, the figures of a leg and the
// release orders of every combination type, field by field.
#include "board/boardfixture.h"
#include "positions/ccomblegfigures.h"
#include "positions/ccombpositionrules.h"
#include "positions/ccombreleaseparams.h"
#include "positions/combfakes.h"
#include "seam/tradinghelpers.h"

#include <gtest/gtest.h>

namespace {

using positionstest::combAccount;
using positionstest::combPosition;
using TC::CCombPositionRules;

class CombRulesTest : public ::testing::Test {
protected:
    void TearDown() override { nqservice::ConfigCollector::instance()->clear(); }
};

TEST_F(CombRulesTest, AStockOptionAccountWithVolumeShows)
{
    EXPECT_TRUE(CCombPositionRules::isVisible(*combPosition(combAccount("A1"), "c1", 1)));
}

TEST_F(CombRulesTest, AnAccountOfAnotherTypeNeverShows)
{
    const auto future = combAccount("F1", 7, nqservice::VQ_BROKER_TYPE_FUTURE_OPTION);
    EXPECT_FALSE(CCombPositionRules::isVisible(*combPosition(future, "c1", 5)));
    nqservice::ConfigCollector::instance()->setShowAllCombPositions(7, true);
    EXPECT_FALSE(CCombPositionRules::isVisible(*combPosition(future, "c1", 0)));
}

TEST_F(CombRulesTest, ARecordWithoutAccountNeverShows)
{
    EXPECT_FALSE(CCombPositionRules::isVisible(*combPosition(nullptr, "c1", 5)));
}

TEST_F(CombRulesTest, VolumeZeroShowsOnlyWhereTheBrokerKeepsEmptyCombinations)
{
    const auto detail = combPosition(combAccount("A1", 7), "c1", 0);
    EXPECT_FALSE(CCombPositionRules::isVisible(*detail));
    nqservice::ConfigCollector::instance()->setShowAllCombPositions(8, true);
    EXPECT_FALSE(CCombPositionRules::isVisible(*detail)) << "another broker's switch";
    nqservice::ConfigCollector::instance()->setShowAllCombPositions(7, true);
    EXPECT_TRUE(CCombPositionRules::isVisible(*detail));
    detail->volume = -1;
    EXPECT_TRUE(CCombPositionRules::isVisible(*detail));
}

TEST_F(CombRulesTest, SearchIsACaseBlindPartOfTheCombinationNumber)
{
    const auto detail = combPosition(combAccount("A1"), "ZH20261120AbC", 1);
    EXPECT_TRUE(CCombPositionRules::passesSearch(detail.get(), ""));
    EXPECT_TRUE(CCombPositionRules::passesSearch(detail.get(), CCombPositionRules::searchKey("abc")));
    EXPECT_TRUE(CCombPositionRules::passesSearch(detail.get(), CCombPositionRules::searchKey("1120A")));
    EXPECT_FALSE(CCombPositionRules::passesSearch(detail.get(), CCombPositionRules::searchKey("abd")));
    EXPECT_TRUE(CCombPositionRules::passesSearch(nullptr, "zzz")) << "a null record passes";
    EXPECT_EQ(CCombPositionRules::searchKey(QStringLiteral("ZH组合A")), std::string("zh组合a"));
}

// ---- leg figures ----

class CombLegFiguresTest : public boardtest::BoardTest {};

TEST_F(CombLegFiguresTest, GreeksAndTimeValueOfALegComeFromTheMarket)
{
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000010", 0.2, 0.18));  // call 2.9: intrinsic 0.15
    const TC::CCombLegFigures figures = TC::CCombLegFigures::of("10000010.SH");
    ASSERT_TRUE(figures.hasGreeks);
    nqservice::CGreeksValue expected;
    ASSERT_TRUE(nqservice::GreekAndOptionsCalculator::instance()->calcGreeks("10000010.SH", expected, false, true));
    EXPECT_DOUBLE_EQ(figures.delta, expected.delta);
    EXPECT_DOUBLE_EQ(figures.gamma, expected.gamma);
    EXPECT_DOUBLE_EQ(figures.theta, expected.theta);
    EXPECT_DOUBLE_EQ(figures.vega, expected.vega);
    EXPECT_DOUBLE_EQ(figures.rho, expected.rho);
    EXPECT_GT(figures.delta, 0.0);
    EXPECT_NEAR(figures.timeValue, 0.05, 1e-9);
}

TEST_F(CombLegFiguresTest, APutsTimeValueIsAgainstItsOwnIntrinsicValue)
{
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000023", 0.19, 0.18));  // put 3.2: intrinsic 0.15
    EXPECT_NEAR(TC::CCombLegFigures::of("10000023.SH").timeValue, 0.04, 1e-9);
}

TEST_F(CombLegFiguresTest, WithoutQuotesNothingIsKnown)
{
    const TC::CCombLegFigures figures = TC::CCombLegFigures::of("10000010.SH");
    EXPECT_FALSE(figures.hasGreeks);
    EXPECT_FALSE(utils::isUsable(figures.timeValue));
    EXPECT_FALSE(TC::CCombLegFigures::of("99999999.SH").hasGreeks);
    EXPECT_FALSE(TC::CCombLegFigures::of("").hasGreeks);
}

TEST(CombLegTexts, GreeksShowFourDecimalsOrTheInvalidText)
{
    EXPECT_EQ(TC::CCombLegFigures::greekText(0.512345, 0), QStringLiteral("0.5123"));
    EXPECT_EQ(TC::CCombLegFigures::greekText(-0.0421, 0), QStringLiteral("-0.0421"));
    EXPECT_EQ(TC::CCombLegFigures::greekText(utils::kAbsentDouble, 0), QStringLiteral("非法值"));
}

TEST(CombLegTexts, ATimeValueAtOrBelowTheToleranceIsADash)
{
    EXPECT_EQ(TC::CCombLegFigures::timeValueText(0.0, 0), QStringLiteral("-"));
    EXPECT_EQ(TC::CCombLegFigures::timeValueText(0.00001, 0), QStringLiteral("-"));
    EXPECT_EQ(TC::CCombLegFigures::timeValueText(-0.02, 0), QStringLiteral("-"));
    EXPECT_EQ(TC::CCombLegFigures::timeValueText(utils::kAbsentDouble, 0), QStringLiteral("-"));
    EXPECT_EQ(TC::CCombLegFigures::timeValueText(0.01236, 0), QStringLiteral("0.0124"));
}

// ---- release orders ----

class CombReleaseTest : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        store->setUserDataString(TC::UM_USER_NAME, QStringLiteral("交易员甲"));
    }
    using Details = QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>;
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> out;
    QString message;
    QString warning;
};

struct CombCase {
    const char* strategy;
    const char* legOne;
    const char* legTwo;
    int legOneType;
    int legTwoType;
};

TEST_F(CombReleaseTest, EveryCombinationTypeGoesOutFieldByField)
{
    const CombCase cases[] = {
        {"CNSJC", "10000010", "10000011", 1, 2}, {"PXSJC", "10000023", "10000022", 1, 2},
        {"PNSJC", "10000020", "10000021", 1, 2}, {"CXSJC", "10000013", "10000012", 1, 2},
        {"KS", "10000011", "10000021", 2, 2},    {"KKS", "10000012", "10000020", 2, 2},
        {"ZBD", "10000011", "", 3, 0},           {"ZXJ", "10000011", "", 2, 0},
    };
    const auto account = combAccount("A1");
    int index = 0;
    for (const CombCase& c : cases) {
        SCOPED_TRACE(c.strategy);
        auto detail = combPosition(account, "ZH" + std::to_string(index), 3 + index, c.strategy, c.legOne, c.legTwo);
        detail->releaseVolume = 2 + index;
        detail->legOneType = c.legOneType;
        detail->legTwoType = c.legTwoType;
        detail->legOneExtra = 10 + index;
        detail->legTwoExtra = 20 + index;
        detail->name = std::string("组合") + c.strategy;
        out.push_back(nullptr);  // cleared by fill
        ASSERT_TRUE(TC::CCombReleaseParams::fill(Details{detail}, out, nqservice::OT_COMB_STRATEGY_RELEASE, message,
                                                 warning));
        ASSERT_EQ(out.size(), 1u);
        const nqservice::CCodeOrderParam& order = *out.front();
        EXPECT_EQ(order.operationType, nqservice::OT_COMB_STRATEGY_RELEASE);
        EXPECT_EQ(static_cast<int>(order.operationType), 1091);
        EXPECT_EQ(order.userName, "交易员甲");
        EXPECT_EQ(static_cast<int>(order.hedgeFlag), 49);
        EXPECT_EQ(order.stockInfo.market, "SH");
        EXPECT_EQ(order.stockInfo.code, std::string(c.legTwo).empty()
                                            ? std::string(c.legOne)
                                            : std::string(c.legOne) + "/" + c.legTwo);
        EXPECT_EQ(order.stockInfo.name, detail->name);
        EXPECT_EQ(order.account, account);
        EXPECT_EQ(order.volume, 2 + index);
        EXPECT_EQ(order.priceType, nqservice::DataHelper::getOptionCombStrategyPriceType(c.strategy));
        EXPECT_EQ(order.priceType, nqservice::PT_FIX);
        EXPECT_EQ(order.price, 0.0);
        EXPECT_EQ(order.extraFlags & 64, 64);
        EXPECT_EQ(order.combPositionKey, "ZH" + std::to_string(index));
        const auto legs = nqservice::DataHelper::getOptionCombStrategyParam(order.extraParams);
        ASSERT_TRUE(legs);
        EXPECT_EQ(legs->marketName, "SH");
        EXPECT_EQ(legs->legOneCode, c.legOne);
        EXPECT_EQ(legs->legOneType, c.legOneType);
        EXPECT_EQ(legs->legOneExtra, 10 + index);
        EXPECT_EQ(legs->legTwoCode, c.legTwo);
        EXPECT_EQ(legs->legTwoType, c.legTwoType);
        EXPECT_EQ(legs->legTwoExtra, 20 + index);
        EXPECT_TRUE(message.isEmpty());
        ++index;
    }
}

TEST_F(CombReleaseTest, OneOrderPerCombinationInOrder)
{
    const auto account = combAccount("A1");
    const auto other = combAccount("A2");
    ASSERT_TRUE(TC::CCombReleaseParams::fill(Details{combPosition(account, "c1", 1), combPosition(other, "c2", 4)},
                                             out, nqservice::OT_COMB_STRATEGY_RELEASE, message, warning));
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0]->combPositionKey, "c1");
    EXPECT_EQ(out[1]->combPositionKey, "c2");
    EXPECT_EQ(out[1]->account, other);
    EXPECT_EQ(out[1]->volume, 4);
    EXPECT_TRUE(warning.isEmpty()) << "a pair of legs is no instrument with a limit";
}

TEST_F(CombReleaseTest, ANullDetailStopsWithItsMessage)
{
    EXPECT_FALSE(TC::CCombReleaseParams::fill(Details{combPosition(combAccount("A1"), "c1", 1), nullptr}, out,
                                              nqservice::OT_COMB_STRATEGY_RELEASE, message, warning));
    EXPECT_EQ(message, QStringLiteral("存在为空的组合持仓信息"));
    EXPECT_EQ(out.size(), 1u) << "the orders made before the null one stay";
}

TEST_F(CombReleaseTest, NoCombinationNumberStopsWithItsMessage)
{
    EXPECT_FALSE(TC::CCombReleaseParams::fill(Details{combPosition(combAccount("A1"), "", 1)}, out,
                                              nqservice::OT_COMB_STRATEGY_RELEASE, message, warning));
    EXPECT_EQ(message, QStringLiteral("未找到对应的组合策略持仓！"));
    EXPECT_TRUE(out.empty());
}

// The legs travel as an encoded parameter of the order, whose buffers stop at
// 64 MiB: a leg code beyond that cannot be encoded, and the release says so
// instead of sending an order without its legs.
TEST_F(CombReleaseTest, LegsThatCannotBeEncodedStopWithTheirMessage)
{
    auto detail = combPosition(combAccount("A1"), "c1", 1);
    detail->legTwoCode.assign(65u * 1024u * 1024u, '9');
    EXPECT_FALSE(TC::CCombReleaseParams::fill(Details{combPosition(combAccount("A1"), "c0", 1), detail}, out,
                                              nqservice::OT_COMB_STRATEGY_RELEASE, message, warning));
    EXPECT_EQ(message, QStringLiteral("组合策略参数填充失败"));
    EXPECT_EQ(out.size(), 1u) << "only the order before the failing one";
}

TEST_F(CombReleaseTest, NothingToReleaseMakesNoOrder)
{
    auto detail = combPosition(combAccount("A1"), "c1", 2);
    detail->releaseVolume = 0;
    EXPECT_TRUE(TC::CCombReleaseParams::fill(Details{detail}, out, nqservice::OT_COMB_STRATEGY_RELEASE, message,
                                             warning));
    EXPECT_TRUE(out.empty());
    detail->releaseVolume = 2;
    detail->account.reset();
    EXPECT_TRUE(TC::CCombReleaseParams::fill(Details{detail}, out, nqservice::OT_COMB_STRATEGY_RELEASE, message,
                                             warning));
    EXPECT_TRUE(out.empty()) << "no account, no order";
}

TEST_F(CombReleaseTest, AnEmptyListClearsTheOutput)
{
    out.push_back(nullptr);
    EXPECT_TRUE(TC::CCombReleaseParams::fill(Details{}, out, nqservice::OT_COMB_STRATEGY_RELEASE, message, warning));
    EXPECT_TRUE(out.empty());
}

}  // namespace
