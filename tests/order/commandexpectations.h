// What every manual stock option command from an order dialog carries besides
// its legs and weights.
#pragma once

#include "order/orderfakes.h"

#include <gtest/gtest.h>

namespace ordertest {

// The arguments of a manual stock option command besides its legs and weights, one by one.
inline void expectManualStockOptionCommand(const CCommandCall& call)
{
    EXPECT_EQ(call.traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(call.hedgeType, 0);
    EXPECT_EQ(call.stopLossType, 0);
    EXPECT_FALSE(call.autoHedge);
    EXPECT_TRUE(call.confirmed);
    EXPECT_TRUE(call.callbackEmpty);
    EXPECT_TRUE(call.hedgeParamsEmpty);
    EXPECT_EQ(call.strategyName, "");
    EXPECT_EQ(call.platform, 0);
    EXPECT_TRUE(call.platformParamsEmpty);
    EXPECT_EQ(call.limitedPriceType, 0);
    EXPECT_TRUE(call.limitedPriceParamsEmpty);
    EXPECT_TRUE(call.remark.isEmpty());
    EXPECT_FALSE(call.algorithmic);
    EXPECT_TRUE(call.algorithmParamsEmpty);
    EXPECT_EQ(call.extra, 0);
    EXPECT_EQ(call.etfHedge, -1);
    EXPECT_TRUE(call.etfHedgeParamsEmpty);
    EXPECT_TRUE(call.reservedEmpty);
}

}  // namespace ordertest
