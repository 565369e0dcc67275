#include "seam/trading.h"

#include <gtest/gtest.h>

using namespace nqservice;

namespace {

boost::shared_ptr<CAccountInfo> makeAccount(const std::string& id)
{
    auto account = boost::make_shared<CAccountInfo>();
    account->accountId = id;
    account->accountType = VQ_BROKER_TYPE_STOCK_OPTION;
    account->brokerId = 12;
    account->displayName = "模拟账号";
    return account;
}

}  // namespace

TEST(IData, OrderParameterRoundTrip)
{
    CCodeOrderParam param;
    param.account = makeAccount("SO001");
    param.operationType = OT_SELL_OPEN;
    param.orderKind = OK_SINGLE;
    param.stockInfo.market = "SH";
    param.stockInfo.code = "10004001";
    param.stockInfo.name = "50ETF购12月2800";
    param.priceType = PT_FIX;
    param.price = 0.1234;
    param.volume = 12345678901LL;
    param.userName = "paper";
    param.extraFlags = 64;
    bson::BSONObjBuilder extra;
    extra.append("a", 1);
    param.extraParams = extra.obj();

    const bson::BSONObj obj = param.toBsonWithBson();
    CCodeOrderParam back;
    back.bsonValueFromObj(obj, true, nullptr);
    EXPECT_TRUE(back.isEqual(&param)) << obj.jsonString();
    ASSERT_TRUE(back.account);
    EXPECT_EQ("SO001", back.account->getKey());
    EXPECT_EQ(12, back.account->brokerId);
    EXPECT_EQ("50ETF购12月2800", back.stockInfo.name);
    EXPECT_EQ(12345678901LL, back.volume);
    EXPECT_EQ(OT_SELL_OPEN, back.operationType);
    EXPECT_EQ(1, back.extraParams.getIntField("a"));

    back.price = 0.1235;
    EXPECT_FALSE(back.isEqual(&param));
    EXPECT_FALSE(param.isEqual(param.account.get()));
    EXPECT_FALSE(param.isEqual(nullptr));
}

TEST(IData, CopyIsIndependentForValues)
{
    auto order = boost::make_shared<CCodeOrderParam>();
    order->account = makeAccount("SO002");
    order->volume = 4;
    order->operationType = OT_BUY_CLOSE;
    boost::shared_ptr<IData> copied = order->copy();
    auto typed = boost::dynamic_pointer_cast<CCodeOrderParam>(copied);
    ASSERT_TRUE(typed);
    EXPECT_TRUE(typed->isEqual(order.get()));
    typed->volume = 6;
    typed->operationType = OT_BUY_OPEN;
    EXPECT_EQ(4, order->volume);
    EXPECT_EQ(OT_BUY_CLOSE, order->operationType);
    EXPECT_FALSE(typed->isEqual(order.get()));
}

TEST(IData, ResetTakesBaseOrDefaults)
{
    COrderDetail base;
    base.code = "10004001.SH";
    base.price = 0.5;
    base.remaining = 3;

    bson::BSONObjBuilder builder;
    builder.append("price", 0.25);
    const bson::BSONObj partial = builder.obj();

    COrderDetail keep = base;
    keep.bsonValueFromObj(partial, false, nullptr);
    EXPECT_DOUBLE_EQ(0.25, keep.price);
    EXPECT_EQ("10004001.SH", keep.code);  // untouched without reset

    COrderDetail reset = base;
    reset.bsonValueFromObj(partial, true, nullptr);
    EXPECT_DOUBLE_EQ(0.25, reset.price);
    EXPECT_EQ("", reset.code);
    EXPECT_EQ(utils::kAbsentInt, reset.remaining);  // the default marks absent

    COrderDetail fromBase;
    fromBase.bsonValueFromObj(partial, true, &base);
    EXPECT_DOUBLE_EQ(0.25, fromBase.price);
    EXPECT_EQ("10004001.SH", fromBase.code);
    EXPECT_EQ(3, fromBase.remaining);
}

TEST(IData, WrongKindsOfValuesAreIgnored)
{
    COptionExGreeksVolatility greeks;
    greeks.bsonValueFromObj(bson::fromjson("{ \"code\" : 12, \"exDelta\" : \"x\", \"exGamma\" : 2 }"), true, nullptr);
    EXPECT_EQ("", greeks.code);
    EXPECT_TRUE(utils::isAbsent(greeks.exDelta));
    EXPECT_DOUBLE_EQ(2.0, greeks.exGamma);  // an integer is a number
}

TEST(IData, ExternalGreeksFromJson)
{
    const bson::BSONObj obj = bson::fromjson(
        "{ \"code\" : \"10004001\", \"exSellImpliedVolatility\" : 0.21, \"exBuyImpliedVolatility\" : 0.19,"
        " \"exDelta\" : 0.5, \"exGamma\" : 1.7, \"exVega\" : 0.03, \"exTheta\" : -0.001 }");
    COptionExGreeksVolatility greeks;
    greeks.bsonValueFromObj(obj, true, nullptr);
    EXPECT_EQ("10004001", greeks.getKey());
    EXPECT_DOUBLE_EQ(0.21, greeks.exSellImpliedVolatility);
    EXPECT_DOUBLE_EQ(0.19, greeks.exBuyImpliedVolatility);
    EXPECT_DOUBLE_EQ(0.5, greeks.exDelta);
    EXPECT_DOUBLE_EQ(1.7, greeks.exGamma);
    EXPECT_DOUBLE_EQ(0.03, greeks.exVega);
    EXPECT_DOUBLE_EQ(-0.001, greeks.exTheta);
    // Field names come from the record's own fields.
    const StructDes* des = greeks.getStructDes();
    ASSERT_NE(nullptr, des);
    ASSERT_EQ(7u, des->fields.size());
    EXPECT_EQ("exSellImpliedVolatility", des->fields[1].name);
    EXPECT_EQ("卖隐波", des->fields[1].chsName);
}

TEST(IData, TaskWithAccountsAndOwner)
{
    CTaskDetail task;
    task.accountId = 2;
    task.taskId = 9;
    task.status = TS_RUNNING;
    task.onServer = true;
    CTaskAccount first;
    first.account = makeAccount("SO001");
    first.volume = 10;
    task.accounts.push_back(first);
    task.owner = boost::make_shared<CTaskOwner>();
    task.owner->userName = "paper";
    task.owner->traderType = VQ_TRADER_TYPE_STOCK_OPTION;

    CTaskDetail back;
    back.bsonValueFromObj(task.toBsonWithBson(), true, nullptr);
    EXPECT_TRUE(back.isEqual(&task));
    ASSERT_EQ(1u, back.accounts.size());
    ASSERT_TRUE(back.accounts[0].account);
    EXPECT_EQ("SO001", back.accounts[0].account->getKey());
    ASSERT_TRUE(back.owner);
    EXPECT_EQ(32, back.owner->traderType);
    EXPECT_TRUE(back.onServer);
    EXPECT_EQ(VQ_DATA_TYPE_TASK, back.getStructDes()->dataType);
}

TEST(IData, PermissionMapRoundTrip)
{
    CGlobalFeaturePermissionInfo permissions;
    permissions.userName = "paper";
    permissions.intMap[kPermStkOptFixPriceMaxOrderLimit] = 50;
    permissions.intMap[kPermStkOptMarketPriceSplitAllowance] = 1;
    CGlobalFeaturePermissionInfo back;
    back.bsonValueFromObj(permissions.toBsonWithBson(), true, nullptr);
    EXPECT_TRUE(back.isEqual(&permissions));
    EXPECT_EQ(50, back.getInt(kPermStkOptFixPriceMaxOrderLimit));
    EXPECT_EQ(1, back.getInt(kPermStkOptMarketPriceSplitAllowance));
    EXPECT_EQ(0, back.getInt(kPermStkOptMarketPriceMaxOrderLimit));
}

TEST(IData, NullAccountSurvivesRoundTrip)
{
    CStkOptCombPositionDetail detail;
    detail.combId = "C1";
    detail.volume = 2;
    CStkOptCombPositionDetail back;
    back.account = makeAccount("stale");
    back.bsonValueFromObj(detail.toBsonWithBson(), true, nullptr);
    EXPECT_FALSE(back.account);
    EXPECT_TRUE(back.isEqual(&detail));
    EXPECT_EQ("|C1", back.getKey());
    EXPECT_NE(std::string::npos, back.toString().find("CStkOptCombPositionDetail"));
}

TEST(IData, KeysOfRecords)
{
    CPositionStatics position;
    position.account = makeAccount("SO001");
    position.market = "SH";
    position.code = "10004001";
    position.direction = '0';
    CPositionStatics shortPosition = position;
    shortPosition.direction = '1';
    EXPECT_NE(position.getKey(), shortPosition.getKey());
    CStockInfo stock;
    stock.market = "SH";
    stock.code = "510050";
    EXPECT_EQ(utils::vqStockKey("SH", "510050"), stock.getKey());
}
