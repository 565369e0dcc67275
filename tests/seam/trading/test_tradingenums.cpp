#include "seam/trading.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace nqservice;

TEST(TradingEnums, ValuesThePanelsRelyOn)
{
    EXPECT_EQ(32, VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(1024, VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(1056, VQ_TRADER_TYPE_STOCK_OPTION | VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(6, VQ_BROKER_TYPE_STOCK_OPTION);
    EXPECT_EQ(5, VQ_BROKER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(49, HF_SPECULATION);
    EXPECT_EQ(48, OF_OPEN);
    EXPECT_EQ(48, EBS_BUY);
    EXPECT_EQ(49, EBS_SELL);
    EXPECT_EQ(541, VQ_DATA_TYPE_TASK);
    EXPECT_EQ(542, VQ_DATA_TYPE_ORDER);
    EXPECT_EQ(547, VQ_DATA_TYPE_POSITION_STATICS);
    EXPECT_EQ(570, VQ_DATA_TYPE_QUICK_ORDER);
    EXPECT_EQ(1030, VQ_DATA_TYPE_STK_OPT_COMB_POSITION);
    EXPECT_EQ(64, VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY);
}

TEST(TradingEnums, OperationValues)
{
    const int expected[][2] = {{OT_OPEN_LONG, 0},   {OT_CLOSE_LONG, 1},  {OT_CLOSE_LONG_TODAY, 2},
                               {OT_OPEN_SHORT, 3},  {OT_CLOSE_SHORT, 4}, {OT_CLOSE_SHORT_TODAY, 5},
                               {OT_BUY, 18},        {OT_SELL, 19},       {OT_BUY_OPEN, 32},
                               {OT_SELL_CLOSE, 33}, {OT_SELL_OPEN, 34},  {OT_BUY_CLOSE, 35},
                               {OT_COVERED_OPEN, 36}, {OT_COVERED_CLOSE, 37}, {OT_COMB_STRATEGY_RELEASE, 1091}};
    for (const auto& pair : expected) {
        EXPECT_EQ(pair[1], pair[0]);
    }
}

TEST(TradingEnums, PriceTypeValues)
{
    EXPECT_EQ(0, PT_ASK5);
    EXPECT_EQ(4, PT_ASK1);
    EXPECT_EQ(5, PT_LAST);
    EXPECT_EQ(6, PT_BID1);
    EXPECT_EQ(10, PT_BID5);
    EXPECT_EQ(11, PT_FIX);
    EXPECT_EQ(12, PT_LIMIT_UP_DOWN);
    EXPECT_EQ(13, PT_QUEUE);
    EXPECT_EQ(14, PT_OPPONENT);
    EXPECT_EQ(26, PT_FIX_FOK);
    EXPECT_EQ(27, PT_MARKET_FAK);
    EXPECT_EQ(28, PT_MARKET_FOK);
    EXPECT_EQ(29, PT_MARKET_TO_LIMIT);
}

TEST(TradingEnums, OnlyTheReadyLoginStatusIsReady)
{
    for (int status = BLS_NONE; status <= BLS_LOGOUT; ++status) {
        EXPECT_EQ(status == BLS_READY, isLoginStatusReady(static_cast<EBROKER_LOGIN_STATUS>(status))) << status;
    }
}

// broker type, trader type, match
class BrokerMatch : public ::testing::TestWithParam<std::tuple<int, int, bool>> {};

TEST_P(BrokerMatch, ServesTraderType)
{
    const auto [broker, trader, match] = GetParam();
    EXPECT_EQ(match, TC::isBrokerTypeMatchTradeType(broker, static_cast<EVqTraderType>(trader)))
        << "broker " << broker << " trader " << trader;
}

INSTANTIATE_TEST_SUITE_P(TradingHelpers, BrokerMatch,
                         ::testing::Values(std::make_tuple(6, 32, true), std::make_tuple(5, 1024, true),
                                           std::make_tuple(6, 1024, false), std::make_tuple(5, 32, false),
                                           std::make_tuple(0, 32, false), std::make_tuple(6, 0, false),
                                           std::make_tuple(7, 32, false), std::make_tuple(1, 1, true)));
