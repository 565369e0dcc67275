// The rules of the twelve order buttons of a chain row and of the option order
// dialog, on Qt Core alone.
#include "order/coptionorderrules.h"
#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

using TC::COptionOrderRules;

const int kStock = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
const int kFuture = nqservice::VQ_TRADER_TYPE_FUTURE_OPTION;

struct ButtonCase {
    int index;
    int stockOperation;
    int futureOperation;
    int futureCloseToday;
    const char* text;
    const char* available;
    const char* futureText;
    const char* colour;
    bool closeToday;
};

class OrderButton : public ::testing::TestWithParam<ButtonCase> {};

TEST_P(OrderButton, OperationCaptionsAndColourForBothTraderTypes)
{
    const ButtonCase& c = GetParam();
    EXPECT_EQ(COptionOrderRules::operationType(c.index, kStock, false), c.stockOperation);
    EXPECT_EQ(COptionOrderRules::operationType(c.index, kStock, true), c.stockOperation) << "平今 is for commodities";
    EXPECT_EQ(COptionOrderRules::operationType(c.index, kFuture, false), c.futureOperation);
    EXPECT_EQ(COptionOrderRules::operationType(c.index, kFuture, true), c.futureCloseToday);
    EXPECT_EQ(COptionOrderRules::operationText(c.index), QString::fromUtf8(c.text));
    EXPECT_EQ(COptionOrderRules::availableText(c.index), QString::fromUtf8(c.available));
    EXPECT_EQ(COptionOrderRules::futureButtonText(c.index), QString::fromUtf8(c.futureText));
    EXPECT_STREQ(COptionOrderRules::buttonColorKey(c.index), c.colour);
    EXPECT_EQ(COptionOrderRules::showsCloseToday(c.index, kFuture), c.closeToday);
    EXPECT_FALSE(COptionOrderRules::showsCloseToday(c.index, kStock));
}

INSTANTIATE_TEST_SUITE_P(
    TwelveButtons, OrderButton,
    ::testing::Values(ButtonCase{0, 36, 36, 36, "备兑开仓", "可备兑", "-", "clr_global_fall", false},
                      ButtonCase{1, 37, 37, 37, "备兑平仓", "可备兑", "-", "clr_global_rise", false},
                      ButtonCase{2, 34, 3, 3, "卖出开仓", "可卖开", "开空", "clr_global_fall", false},
                      ButtonCase{3, 33, 4, 5, "卖出平仓", "可卖平", "平空", "clr_global_fall", true},
                      ButtonCase{4, 32, 0, 0, "买入开仓", "可买开", "开多", "clr_global_rise", false},
                      ButtonCase{5, 35, 1, 2, "买入平仓", "可买平", "平多", "clr_global_rise", true},
                      ButtonCase{6, 32, 0, 0, "买入开仓", "可买开", "开多", "clr_global_rise", false},
                      ButtonCase{7, 35, 1, 2, "买入平仓", "可买平", "平多", "clr_global_rise", true},
                      ButtonCase{8, 34, 3, 3, "卖出开仓", "可卖开", "开空", "clr_global_fall", false},
                      ButtonCase{9, 33, 4, 5, "卖出平仓", "可卖平", "平空", "clr_global_fall", true},
                      ButtonCase{10, 36, 36, 36, "备兑开仓", "可备兑", "-", "clr_global_fall", false},
                      ButtonCase{11, 37, 37, 37, "备兑平仓", "可备兑", "-", "clr_global_rise", false}),
    [](const ::testing::TestParamInfo<ButtonCase>& info) { return "Index" + std::to_string(info.param.index); });

TEST(OrderRules, AnIndexBeyondTheButtonsIsACoveredOpenInRise)
{
    EXPECT_EQ(COptionOrderRules::operationType(12, kStock, false), 36);
    EXPECT_EQ(COptionOrderRules::operationType(-1, kFuture, false), 36);
    EXPECT_STREQ(COptionOrderRules::buttonColorKey(11), "clr_global_rise");
    EXPECT_STREQ(COptionOrderRules::buttonColorKey(12), "clr_global_rise");
    EXPECT_EQ(COptionOrderRules::operationText(12), QString());
}

QStringList labels(const QVector<QPair<QString, int>>& types)
{
    QStringList out;
    for (const auto& type : types) {
        out << QStringLiteral("%1=%2").arg(type.first).arg(type.second);
    }
    return out;
}

TEST(OrderRules, PriceTypesOfEachTraderType)
{
    EXPECT_EQ(labels(COptionOrderRules::priceTypes(kFuture, true)),
              (QStringList{"卖①价=4", "最新价=5", "买①价=6", "市价=12", "挂单价=13", "对手价=14", "指定价=11"}));
    EXPECT_EQ(labels(COptionOrderRules::priceTypes(kFuture, false)),
              (QStringList{"卖①价=4", "最新价=5", "买①价=6", "挂单价=13", "对手价=14", "指定价=11"}));
    EXPECT_EQ(labels(COptionOrderRules::priceTypes(kStock, true)),
              (QStringList{"涨跌停价=12", "限价即全成否则撤=26", "市价即成剩撤=27", "市价即全成否则撤=28", "市价剩转限价=29",
                           "限价=11", "卖①价=4", "最新价=5", "买①价=6", "对手价=14"}));
    EXPECT_FALSE(labels(COptionOrderRules::priceTypes(kStock, false)).contains(QStringLiteral("涨跌停价=12")));
    EXPECT_EQ(COptionOrderRules::defaultPriceType(kFuture), 5);
    EXPECT_EQ(COptionOrderRules::defaultPriceType(kStock), 11);
    EXPECT_EQ(COptionOrderRules::pricedTypes(kFuture), (QVector<int>{4, 5, 6, 12, 13, 14, 11}));
    EXPECT_EQ(COptionOrderRules::pricedTypes(kStock).size(), 19);
    EXPECT_TRUE(COptionOrderRules::pricedTypes(3001).isEmpty());
}

std::map<std::string, int> permissions(int fixedLimit, int fixedSplit, int marketLimit, int marketSplit)
{
    return {{nqservice::kPermStkOptFixPriceMaxOrderLimit, fixedLimit},
            {nqservice::kPermStkOptFixPriceSplitAllowance, fixedSplit},
            {nqservice::kPermStkOptMarketPriceMaxOrderLimit, marketLimit},
            {nqservice::kPermStkOptMarketPriceSplitAllowance, marketSplit}};
}

TEST(OrderRules, TheLimitOnOneOrder)
{
    // Nothing configured: 10 for a market price, the instrument's own for a fixed one.
    EXPECT_EQ(COptionOrderRules::orderLimit(50, permissions(0, 1, 0, 1), true).limit, 10);
    EXPECT_EQ(COptionOrderRules::orderLimit(8, permissions(0, 1, 0, 1), true).limit, 8);
    EXPECT_EQ(COptionOrderRules::orderLimit(50, permissions(0, 1, 0, 1), false).limit, 50);
    // Configured above the instrument's limit: capped by it.
    EXPECT_EQ(COptionOrderRules::orderLimit(50, permissions(80, 1, 0, 1), false).limit, 50);
    EXPECT_EQ(COptionOrderRules::orderLimit(50, permissions(20, 1, 0, 1), false).limit, 20);
    EXPECT_EQ(COptionOrderRules::orderLimit(50, permissions(20, 0, 5, 1), true).limit, 5);
    // The allowance follows the branch.
    EXPECT_FALSE(COptionOrderRules::orderLimit(50, permissions(20, 0, 5, 1), false).allowance);
    EXPECT_TRUE(COptionOrderRules::orderLimit(50, permissions(20, 0, 5, 1), true).allowance);
    EXPECT_FALSE(COptionOrderRules::orderLimit(50, {}, true).allowance);
}

TEST(OrderRules, VolumeOfAShare)
{
    EXPECT_EQ(COptionOrderRules::volumeOfRatio(37, 0.5), 18);
    EXPECT_EQ(COptionOrderRules::volumeOfRatio(0, 1.0), 0);
    EXPECT_EQ(COptionOrderRules::volumeOfRatio(5000000000LL, 1.0), 0x7fffffff);
    EXPECT_EQ(COptionOrderRules::volumeOfRatio(2147483647LL, 1.0), 0x7fffffff);
}

}  // namespace
