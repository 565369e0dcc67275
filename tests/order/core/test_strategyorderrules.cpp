// The arithmetic of the strategy order dialogs on Qt Core alone: the operation
// of a leg, what one copy costs, the copies the funds allow, a leg's volume and
// the parameter a leg goes out with.
#include "order/cstrategyorderrules.h"
#include "seam/common.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <climits>

namespace {

using TC::CLegMoney;
using TC::CStrategyOrderRules;

// A leg of a 50ETF option of 10000 units with a short margin of 3,000 元.
CLegMoney leg(bool buy, double price, int quantity)
{
    CLegMoney money;
    money.buy = buy;
    money.price = price;
    money.multiplier = 10000.0;
    money.marginPrice = 3000.0;
    money.openBuyFee = 1.6;
    money.openSellFee = 0.0;
    money.marginRatio = 0.1;
    money.quantity = quantity;
    return money;
}

TEST(StrategyOrderRules, BuyAndSellBecomeOpeningsAndOtherOperationsStand)
{
    EXPECT_EQ(CStrategyOrderRules::legOperationType(nqservice::OT_BUY), nqservice::OT_BUY_OPEN);
    EXPECT_EQ(CStrategyOrderRules::legOperationType(nqservice::OT_SELL), nqservice::OT_SELL_OPEN);
    EXPECT_EQ(CStrategyOrderRules::legOperationType(nqservice::OT_SELL_CLOSE), nqservice::OT_SELL_CLOSE);
    EXPECT_EQ(CStrategyOrderRules::legOperationType(nqservice::OT_BUY_OPEN), nqservice::OT_BUY_OPEN);
}

TEST(StrategyOrderRules, TheQuantityIsItsLow32Bits)
{
    EXPECT_EQ(CStrategyOrderRules::legQuantity(3), 3);
    EXPECT_EQ(CStrategyOrderRules::legQuantity((1LL << 32) + 5), 5);
    EXPECT_EQ(CStrategyOrderRules::legQuantity(0xffffffffLL), -1);
}

TEST(StrategyOrderRules, ABuyCostsFeeAndPremiumASellFeeAndMarginPerContract)
{
    // 1.6 + 0.0500 * 10000 = 501.6 a contract, two contracts a copy.
    EXPECT_NEAR(CStrategyOrderRules::legNeed(leg(true, 0.0500, 2)), 1003.2, 1e-9);
    // 0 + 3000 * (0.1 + 1) = 3300 a contract, whatever the price.
    EXPECT_NEAR(CStrategyOrderRules::legNeed(leg(false, 0.0300, 1)), 3300.0, 1e-9);
    EXPECT_NEAR(CStrategyOrderRules::legNeed(leg(false, utils::kAbsentDouble, 3)), 9900.0, 1e-9);
    // The multiplier counts as a whole number.
    CLegMoney odd = leg(true, 0.1, 1);
    odd.multiplier = 10000.9;
    EXPECT_NEAR(CStrategyOrderRules::legNeed(odd), 1.6 + 1000.0, 1e-9);
}

TEST(StrategyOrderRules, AnUnpricedBuyCostsItsFeeOnly)
{
    EXPECT_NEAR(CStrategyOrderRules::legNeed(leg(true, utils::kAbsentDouble, 2)), 3.2, 1e-12);
    EXPECT_NEAR(CStrategyOrderRules::legNeed(leg(true, 0.0, 1)), 1.6, 1e-12);
}

TEST(StrategyOrderRules, CopiesAreTheSmallestShareOfFundsOverNeeds)
{
    // A bull call spread on one account: 501.6 + 3300 = 3801.6 a copy; 100,000 元 pay for 26.
    const double spread = CStrategyOrderRules::legNeed(leg(true, 0.05, 1)) + CStrategyOrderRules::legNeed(leg(false, 0.02, 1));
    EXPECT_NEAR(spread, 3801.6, 1e-9);
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", spread}}, {{"A", 100000.0}}), 26);
    // Two accounts: the poorer one decides.
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", spread}, {"B", 3300.0}}, {{"A", 100000.0}, {"B", 10000.0}}), 3);
    // An account whose funds are unknown has no say.
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", spread}, {"B", 3300.0}}, {{"A", 100000.0}}), 26);
}

TEST(StrategyOrderRules, NoAccountThatCountsLeavesTheLargestNumber)
{
    EXPECT_EQ(CStrategyOrderRules::availableCopies({}, {}), LLONG_MAX);
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", 0.000001}}, {{"A", 1000.0}}), LLONG_MAX)
        << "a sum of almost nothing does not count";
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", 100.0}}, {{"A", 0.0}}), 0);
    EXPECT_EQ(CStrategyOrderRules::availableCopies({{"A", 100.0}}, {{"A", -50.0}}), 0) << "a debt pays for nothing";
}

TEST(StrategyOrderRules, TheVolumeRangeStopsAtTheLargestInt)
{
    EXPECT_EQ(CStrategyOrderRules::volumeRangeTop(37), 37);
    EXPECT_EQ(CStrategyOrderRules::volumeRangeTop(-4), 0);
    EXPECT_EQ(CStrategyOrderRules::volumeRangeTop(2147483647LL), 0x7fffffff);
    EXPECT_EQ(CStrategyOrderRules::volumeRangeTop(2147483648LL), 0x7fffffff);
    EXPECT_EQ(CStrategyOrderRules::volumeRangeTop(LLONG_MAX), 0x7fffffff);
}

TEST(StrategyOrderRules, AnAvailableCellShowsTheLargestNumberAsSuch)
{
    EXPECT_EQ(CStrategyOrderRules::availableText(LLONG_MAX), QStringLiteral("9223372036854775807"));
    EXPECT_EQ(CStrategyOrderRules::availableText(37), QStringLiteral("37"));
    EXPECT_EQ(CStrategyOrderRules::availableText(0), QStringLiteral("0"));
}

TEST(StrategyOrderRules, ALegsVolumeIsCopiesTimesQuantityIn32Bits)
{
    EXPECT_EQ(CStrategyOrderRules::legVolume(3, 2), 6);
    EXPECT_EQ(CStrategyOrderRules::legVolume(0, 5), 0);
    EXPECT_EQ(CStrategyOrderRules::legVolume(65536, 65536), 0) << "the product wraps in 32 bits";
    EXPECT_EQ(CStrategyOrderRules::legVolume(65536, 32768), INT_MIN);
}

TEST(StrategyOrderRules, TheParameterOfALegFieldByField)
{
    TC::CLegOrder order;
    order.stock.market = "SH";
    order.stock.code = "10000011";
    order.stock.name = "50ETF购11月3000";
    order.account = boost::make_shared<nqservice::CAccountInfo>();
    order.account->accountId = "SO001";
    order.operationType = nqservice::OT_SELL_OPEN;
    order.priceType = static_cast<nqservice::EPriceType>(14);
    order.price = 0.0500;
    order.volume = 4;
    order.superPricePercent = 2.0;
    order.userName = "trader";
    const auto param = CStrategyOrderRules::makeParam(order);
    ASSERT_TRUE(param);
    EXPECT_EQ(param->operationType, nqservice::OT_SELL_OPEN);
    EXPECT_EQ(param->hedgeFlag, 49);
    EXPECT_EQ(param->orderKind, 5);
    EXPECT_EQ(param->stockInfo.getKey(), "10000011.SH");
    EXPECT_EQ(param->stockInfo.name, "50ETF购11月3000");
    EXPECT_EQ(param->account->getKey(), "SO001");
    EXPECT_EQ(param->priceType, 14);
    EXPECT_DOUBLE_EQ(param->price, 0.05);
    EXPECT_EQ(param->volume, 4);
    EXPECT_NEAR(param->superPrice, 0.001, 1e-12) << "2 % of the price, as money";
    EXPECT_EQ(param->userName, "trader");

    order.superPricePercent = -1.0;
    EXPECT_DOUBLE_EQ(CStrategyOrderRules::makeParam(order)->superPrice, 0.0) << "a hidden cell adds nothing";
}

TEST(StrategyOrderRules, RolesThatSendAndTheTextsOfRefusals)
{
    for (int role : {90, 91, 101, 100, 400, 80}) {
        EXPECT_TRUE(CStrategyOrderRules::roleSends(role)) << role;
    }
    for (int role : {0, 102, 200, 81}) {
        EXPECT_FALSE(CStrategyOrderRules::roleSends(role)) << role;
    }
    EXPECT_EQ(CStrategyOrderRules::priceErrorText(0.0), QStringLiteral("委托价 0 错误, 无法下单"));
    EXPECT_EQ(CStrategyOrderRules::codeErrorText(QStringLiteral("10009999.SH")),
              QStringLiteral("合约 10009999.SH 错误, 无法下单"));
}

}  // namespace
