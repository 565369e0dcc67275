#include "seam/cpricedata.h"
#include "seam/trading.h"

#include <gtest/gtest.h>

using namespace nqservice;

namespace {

boost::shared_ptr<TC::CPriceData> makePrice()
{
    auto price = boost::make_shared<TC::CPriceData>();
    price->lastPrice = 0.1500;
    price->setBid(1, 0.1490, 10);
    price->setAsk(1, 0.1510, 12);
    price->upStopPrice = 0.2500;
    price->downStopPrice = 0.0500;
    return price;
}

}  // namespace

TEST(PriceDataHelper, OrderPriceFollowsTheSnapshot)
{
    const auto price = makePrice();
    EXPECT_DOUBLE_EQ(0.1510, CPriceDataHelper::getPriceForOrder(price, PT_ASK1, OT_BUY_OPEN, 0, nullptr, false, false));
    EXPECT_DOUBLE_EQ(0.1500, CPriceDataHelper::getPriceForOrder(price, PT_LAST, OT_BUY_OPEN, 0, nullptr, false, false));
    EXPECT_TRUE(utils::isAbsent(CPriceDataHelper::getPriceForOrder(nullptr, PT_LAST, OT_BUY_OPEN, 0, nullptr, false, false)));
}

TEST(PriceDataHelper, CalcPriceOfMarketOrdersIsTheLimitOfTheirSide)
{
    auto price = makePrice();
    EXPECT_DOUBLE_EQ(0.2500, CPriceDataHelper::getPriceForCalc(price, PT_MARKET_FAK, OT_BUY_OPEN, 0, nullptr, false, false));
    EXPECT_DOUBLE_EQ(0.0500, CPriceDataHelper::getPriceForCalc(price, PT_MARKET_FOK, OT_SELL_OPEN, 0, nullptr, false, false));
    // Without limits: the other side's best, then the last price.
    price->upStopPrice = utils::kAbsentDouble;
    EXPECT_DOUBLE_EQ(0.1510, CPriceDataHelper::getPriceForCalc(price, PT_MARKET_FAK, OT_BUY_OPEN, 0, nullptr, false, false));
    price->setAsk(1, utils::kAbsentDouble, 0);
    EXPECT_DOUBLE_EQ(0.1500, CPriceDataHelper::getPriceForCalc(price, PT_MARKET_FAK, OT_BUY_OPEN, 0, nullptr, false, false));
    price->lastPrice = utils::kAbsentDouble;
    EXPECT_TRUE(utils::isAbsent(CPriceDataHelper::getPriceForCalc(price, PT_MARKET_FAK, OT_BUY_OPEN, 0, nullptr, false, false)));
}

TEST(PriceDataHelper, CalcPriceOfPricedTypesIsTheOrderPrice)
{
    auto price = makePrice();
    EXPECT_DOUBLE_EQ(0.1490, CPriceDataHelper::getPriceForCalc(price, PT_BID1, OT_SELL_OPEN, 0, nullptr, false, false));
    // An empty level falls back like a market order.
    price->setBid(1, utils::kAbsentDouble, 0);
    EXPECT_DOUBLE_EQ(0.0500, CPriceDataHelper::getPriceForCalc(price, PT_BID1, OT_SELL_OPEN, 0, nullptr, false, false));
}
