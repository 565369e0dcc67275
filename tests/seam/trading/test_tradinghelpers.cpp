#include "seam/marketenums.h"
#include "seam/trading.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace nqservice;

// operation, its side (18 buy, 19 sell, -1 none), its twin
class OperationRule : public ::testing::TestWithParam<std::tuple<int, int, int>> {};

TEST_P(OperationRule, SideAndTwin)
{
    const auto [operation, side, twin] = GetParam();
    const auto op = static_cast<EOperationType>(operation);
    EXPECT_EQ(side, TC::getBuyOrSellType(op)) << "operation " << operation;
    EXPECT_EQ(side == OT_BUY, DataHelper::isBuy(op)) << "operation " << operation;
    EXPECT_EQ(twin, TC::swapOperationType(op)) << "operation " << operation;
    // Swapping twice gives the operation back.
    EXPECT_EQ(operation, TC::swapOperationType(TC::swapOperationType(op))) << "operation " << operation;
}

INSTANTIATE_TEST_SUITE_P(
    TradingHelpers, OperationRule,
    ::testing::Values(std::make_tuple(0, 18, 3), std::make_tuple(1, 19, 4), std::make_tuple(2, 19, 5),
                      std::make_tuple(3, 19, 0), std::make_tuple(4, 18, 1), std::make_tuple(5, 18, 2),
                      std::make_tuple(18, 18, 19), std::make_tuple(19, 19, 18), std::make_tuple(32, 18, 34),
                      std::make_tuple(33, 19, 35), std::make_tuple(34, 19, 32), std::make_tuple(35, 18, 33),
                      std::make_tuple(36, 19, 37), std::make_tuple(37, 18, 36), std::make_tuple(1091, -1, 1091),
                      std::make_tuple(-1, -1, -1)));

TEST(TradingHelpers, PriceTypeClasses)
{
    for (int type = -1; type <= 30; ++type) {
        const auto t = static_cast<EPriceType>(type);
        EXPECT_EQ(type == 11 || type == 26, isFixPriceType(t)) << type;
        EXPECT_EQ(type >= 27 && type <= 29, isRealMarketPrice(t)) << type;
        EXPECT_EQ(type == 12 || (type >= 27 && type <= 29), isMarketPrice(t)) << type;
        EXPECT_EQ(type >= 27 && type <= 29, isSupportMarketPrice("SH", "10004001", t)) << type;
    }
    EXPECT_FALSE(isSupportMarketPrice("", "", PT_MARKET_FAK));
}

TEST(TradingHelpers, OperationTexts)
{
    EXPECT_EQ("买开", TC::operationToString(32));
    EXPECT_EQ("卖平", TC::operationToString(33));
    EXPECT_EQ("买", TC::operationToString(18));
    EXPECT_EQ("卖", TC::operationToString(19));
    EXPECT_EQ("卖出开仓", operationValueToString(34));
    EXPECT_EQ("备兑平仓", operationValueToString(37));
    EXPECT_EQ("77", operationValueToString(77));
    EXPECT_EQ("77", TC::operationToString(77));
}

TEST(TypeManager, EnumItemNames)
{
    TypeManager* types = TypeManager::instance();
    ASSERT_NE(nullptr, types);
    EXPECT_EQ("买入开仓", types->getEnumItemName("nqservice::EOperationType", 32, 1));
    EXPECT_EQ("买入", types->getEnumItemName("nqservice::EOperationType", 18, 32));
    EXPECT_EQ("权利仓", types->getEnumItemName("nqservice::EPositionDirection", '0', 32));
    EXPECT_EQ("义务仓", types->getEnumItemName("nqservice::EPositionDirection", '1', 32));
    EXPECT_EQ("备兑仓", types->getEnumItemName("nqservice::EPositionDirection", '2', 32));
    EXPECT_EQ("卖出", types->getEnumItemName("nqservice::EOperationType", 19, 32));
    EXPECT_EQ("开仓", types->getEnumItemName("nqservice::EOffset_Flag_Type", 0x30, 32));
    EXPECT_EQ("平今", types->getEnumItemName("nqservice::EOffset_Flag_Type", '3', 32));
    EXPECT_EQ("-", types->getEnumItemName("nqservice::EStockOptionStatus", SOS_NORMAL, 32));
    EXPECT_EQ("停牌", types->getEnumItemName("nqservice::EStockOptionStatus", SOS_SUSPENDED, 32));
    EXPECT_EQ("涨跌停价", types->getEnumItemName("nqservice::EPriceType", 12, 32));
    EXPECT_EQ("市价", types->getEnumItemName("nqservice::EPriceType", 12, 1024));
    EXPECT_EQ("限价", types->getEnumItemName("nqservice::EPriceType", 11, 32));
    EXPECT_EQ("指定价", types->getEnumItemName("nqservice::EPriceType", 11, 1024));
    EXPECT_EQ("42", types->getEnumItemName("nqservice::ENoSuchEnum", 42, 32));
}

TEST(TypeManager, FieldsOfCombinationPositions)
{
    const std::vector<FieldDes> fields = TypeManager::instance()->getAllFields({1030}, 32);
    ASSERT_EQ(13u, fields.size());
    EXPECT_EQ("account", fields[0].name);
    EXPECT_EQ("combId", fields[2].name);
    EXPECT_EQ("legTwoExtra", fields[12].name);
    EXPECT_EQ("组合编号", TypeManager::instance()->getFieldChsNameByType(fields[2], 32));
    EXPECT_EQ(FT_OBJECT, fields[0].type);
    EXPECT_EQ(FT_INT, fields[5].type);
    EXPECT_TRUE(fields[5].getProperty(FP_STAT));
    EXPECT_TRUE(fields[2].getProperty(FP_ALIGN_LEFT));
    EXPECT_FALSE(fields[2].getProperty(FP_ALIGN_CENTER));
    EXPECT_TRUE(TypeManager::instance()->getAllFields({999}, 32).empty());
    // Two types list the fields of both, in turn.
    EXPECT_EQ(13u + COrderDetail::staticStructDes()->fields.size(),
              TypeManager::instance()->getAllFields({1030, 542}, 32).size());
}

TEST(TradingHelpers, UnitFeeBySideAndOffset)
{
    auto fee = boost::make_shared<CInstrumentFee>();
    fee->openBuyFee = 1.5;
    fee->openSellFee = 0.5;
    fee->closeBuyFee = 1.2;
    fee->closeSellFee = 1.3;
    fee->closeTodayBuyFee = 2.0;
    fee->closeTodaySellFee = 2.1;
    EXPECT_DOUBLE_EQ(1.5, StockOptionFeeDataHelper::getUnitFee(fee, OF_OPEN, EBS_BUY));
    EXPECT_DOUBLE_EQ(0.5, StockOptionFeeDataHelper::getUnitFee(fee, OF_OPEN, EBS_SELL));
    EXPECT_DOUBLE_EQ(1.2, StockOptionFeeDataHelper::getUnitFee(fee, OF_CLOSE, EBS_BUY));
    EXPECT_DOUBLE_EQ(1.3, StockOptionFeeDataHelper::getUnitFee(fee, OF_CLOSE, EBS_SELL));
    EXPECT_DOUBLE_EQ(2.1, StockOptionFeeDataHelper::getUnitFee(fee, OF_CLOSE_TODAY, EBS_SELL));
    EXPECT_DOUBLE_EQ(0.0, StockOptionFeeDataHelper::getUnitFee(nullptr, OF_OPEN, EBS_BUY));
}

TEST(TradingHelpers, OrderCompletionAndCancel)
{
    auto order = boost::make_shared<COrderDetail>();
    order->status = OS_WORKING;
    order->remaining = 3;
    EXPECT_FALSE(COrderDetailHelper::completed(*order));
    EXPECT_TRUE(TC::canCancelOrder(order));
    order->status = OS_CANCEL_PENDING;
    EXPECT_FALSE(TC::canCancelOrder(order));
    order->status = OS_PARTIAL;
    order->remaining = utils::kAbsentInt;
    EXPECT_FALSE(TC::canCancelOrder(order));
    for (EOrderStatus done : {OS_FILLED, OS_CANCELLED, OS_REJECTED}) {
        order->status = done;
        order->remaining = 1;
        EXPECT_TRUE(COrderDetailHelper::completed(*order)) << done;
        EXPECT_FALSE(TC::canCancelOrder(order)) << done;
    }
    EXPECT_FALSE(TC::canCancelOrder(nullptr));
}

TEST(TradingHelpers, CombinationParameterGoesIntoExtraParams)
{
    auto param = boost::make_shared<COptionCombStrategyParam>();
    param->marketName = "SH";
    param->legOneCode = "10004001";
    param->legOneType = 1;
    param->legTwoCode = "10004002";
    param->legTwoType = 2;
    param->legTwoExtra = 7;
    bson::BSONObjBuilder seed;
    seed.append("kept", 5);
    bson::BSONObj extra = seed.obj();
    ASSERT_TRUE(DataHelper::fillExtraParam(extra, VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY, param));
    EXPECT_EQ(5, extra.getIntField("kept"));
    const auto back = DataHelper::getOptionCombStrategyParam(extra);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isEqual(param.get()));
    // Wrong kind or wrong record: refused, extra untouched.
    const bson::BSONObj before = extra.getOwned();
    EXPECT_FALSE(DataHelper::fillExtraParam(extra, VQ_EXTRA_PARAM_NONE, param));
    EXPECT_FALSE(DataHelper::fillExtraParam(extra, VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY,
                                            boost::make_shared<CAccountInfo>()));
    EXPECT_TRUE(before.binaryEqual(extra));
}

TEST(TradingHelpers, CombinationStrategyPriceType)
{
    EXPECT_EQ(PT_FIX, DataHelper::getOptionCombStrategyPriceType("CNSJC"));
    EXPECT_EQ(PT_FIX, DataHelper::getOptionCombStrategyPriceType("KS"));
    EXPECT_EQ(PT_NONE, DataHelper::getOptionCombStrategyPriceType(""));
    EXPECT_EQ(PT_NONE, DataHelper::getOptionCombStrategyPriceType("XYZ"));
}

TEST(TradingHelpers, ServerTaskKey)
{
    CTaskDetail task;
    task.accountId = 3;
    task.taskId = 17;
    task.owner = boost::make_shared<CTaskOwner>();
    task.owner->userName = "paper";
    EXPECT_EQ("paper.3.17", CTaskHelper::genServerTaskKey(task));
    task.serverTaskId = "S-99";
    EXPECT_EQ("S-99", CTaskHelper::genServerTaskKey(task));
    EXPECT_EQ("", CTaskHelper::genServerTaskKey(boost::shared_ptr<CTaskDetail>()));
}

TEST(TradingHelpers, ConfigCollectorSwitches)
{
    ConfigCollector* config = ConfigCollector::instance();
    config->clear();
    EXPECT_FALSE(config->needShowAllCombPositions(7));
    config->setShowAllCombPositions(7, true);
    EXPECT_TRUE(config->needShowAllCombPositions(7));
    EXPECT_FALSE(config->needShowAllCombPositions(8));
    config->clear();
    EXPECT_FALSE(config->needShowAllCombPositions(7));
}
