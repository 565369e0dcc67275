// The records that cross the trading seam: accounts, orders and their
// parameters, positions, tasks, funds, fees and imported Greeks. Plain public
// fields; each lists its fields once in describe() for BSON and descriptors.
#pragma once

#include "seam/common.h"
#include "seam/idata.h"
#include "seam/tradingenums.h"

#include <map>
#include <string>
#include <vector>

namespace nqservice {

// An account of the user at a broker.
class CAccountInfo : public TData<CAccountInfo> {
public:
    static constexpr const char* kStructName = "nqservice::CAccountInfo";

    int accountType = VQ_BROKER_TYPE_NONE;  // EVQBrokerType: 6 stock option, 5 future option
    int brokerId = 0;                       // the broker's number
    std::string accountId;                  // the account's key
    std::string displayName;                // text of account combos; empty names are skipped
    std::string userName;
    std::string brokerName;

    std::string getKey() const override { return accountId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("accountType", "账号类型", self.accountType, 0, "nqservice::EVQBrokerType");
        visit("brokerId", "券商编号", self.brokerId);
        visit("accountId", "资金账号", self.accountId, fieldProps({FP_KEY, FP_DISPLAY, FP_ALIGN_LEFT}));
        visit("displayName", "账号名称", self.displayName, fieldProps({FP_DISPLAY, FP_ALIGN_LEFT}));
        visit("userName", "用户名", self.userName);
        visit("brokerName", "券商名称", self.brokerName);
    }
};
typedef boost::shared_ptr<CAccountInfo> CAccountInfoPtr;

// The instrument of an order.
class CStockInfo : public TData<CStockInfo> {
public:
    static constexpr const char* kStructName = "nqservice::CStockInfo";

    std::string market;
    std::string textField2;  // the instrument's text field 2
    std::string code;
    std::string name;

    std::string getKey() const override { return utils::vqStockKey(market, code); }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("market", "市场", self.market);
        visit("textField2", "交易代码", self.textField2);
        visit("code", "合约代码", self.code, fieldProps({FP_KEY}));
        visit("name", "合约名称", self.name);
    }
};

// One order of a command.
class CCodeOrderParam : public TData<CCodeOrderParam> {
public:
    static constexpr const char* kStructName = "nqservice::CCodeOrderParam";

    boost::shared_ptr<CAccountInfo> account;
    EHedge_Flag_Type hedgeFlag = HF_SPECULATION;
    EOperationType operationType = OT_NONE;
    int orderKind = OK_NORMAL;
    CStockInfo stockInfo;
    EPriceType priceType = PT_NONE;
    double price = 0.0;
    long long volume = 0;
    double superPrice = 0.0;  // per-order price excess, a money amount
    std::string userName;
    bson::BSONObj extraParams;
    int extraFlags = 0;  // VQ_EXTRA_PARAM_* bits: which extra parameters extraParams holds
    std::string combPositionKey;

    std::string getKey() const override
    {
        return (account ? account->getKey() : std::string()) + "|" + stockInfo.getKey() + "|" +
               std::to_string(static_cast<int>(operationType));
    }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "账号", self.account);
        visit("hedgeFlag", "投保", self.hedgeFlag, 0, "nqservice::EHedge_Flag_Type");
        visit("operationType", "操作", self.operationType, 0, "nqservice::EOperationType");
        visit("orderKind", "委托类型", self.orderKind);
        visit("stockInfo", "合约", self.stockInfo);
        visit("priceType", "报价方式", self.priceType, 0, "nqservice::EPriceType");
        visit("price", "委托价", self.price);
        visit("volume", "委托量", self.volume);
        visit("superPrice", "超价", self.superPrice);
        visit("userName", "用户名", self.userName);
        visit("extraParams", "附加参数", self.extraParams);
        visit("extraFlags", "附加标志", self.extraFlags);
        visit("combPositionKey", "组合持仓", self.combPositionKey);
    }
};

// A command made of several orders.
class COrderComandParam : public TData<COrderComandParam> {
public:
    static constexpr const char* kStructName = "nqservice::COrderComandParam";

    EVqTraderType traderType = VQ_TRADER_TYPE_STOCK_OPTION;
    int stopLossType = 0;
    std::vector<boost::shared_ptr<CCodeOrderParam>> params;
    int orderFlag = 1;
    int modeSetting = 0;
    std::string warningText;  // UTF-8
    unsigned char confirmFlag = 1;
    int extra = 0;
    std::string commandId;  // given by the command centre

    std::string getKey() const override { return commandId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("traderType", "交易类型", self.traderType, 0, "nqservice::EVqTraderType");
        visit("stopLossType", "止损类型", self.stopLossType);
        visit("params", "委托", self.params);
        visit("orderFlag", "委托标志", self.orderFlag);
        visit("modeSetting", "模式", self.modeSetting);
        visit("warningText", "提示", self.warningText);
        visit("confirmFlag", "确认", self.confirmFlag);
        visit("extra", "附加", self.extra);
        visit("commandId", "指令编号", self.commandId);
    }
};

// The legs of a combination to release, carried in an order's extra parameters.
class COptionCombStrategyParam : public TData<COptionCombStrategyParam> {
public:
    static constexpr const char* kStructName = "nqservice::COptionCombStrategyParam";

    std::string marketName;
    std::string legOneCode;
    int legOneType = 0;
    std::string legTwoCode;
    int legTwoType = 0;
    int legOneExtra = 0;
    int legTwoExtra = 0;

    std::string getKey() const override { return marketName + "|" + legOneCode + "|" + legTwoCode; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("marketName", "市场", self.marketName);
        visit("legOneCode", "合约一代码", self.legOneCode);
        visit("legOneType", "合约一类型", self.legOneType);
        visit("legTwoCode", "合约二代码", self.legTwoCode);
        visit("legTwoType", "合约二类型", self.legTwoType);
        visit("legOneExtra", "合约一附加", self.legOneExtra);
        visit("legTwoExtra", "合约二附加", self.legTwoExtra);
    }
};

// A combination position of a stock-option account (table 1030).
class CStkOptCombPositionDetail : public TData<CStkOptCombPositionDetail, VQ_DATA_TYPE_STK_OPT_COMB_POSITION> {
public:
    static constexpr const char* kStructName = "nqservice::CStkOptCombPositionDetail";

    boost::shared_ptr<CAccountInfo> account;
    std::string market;
    std::string combId;        // the exchange's combination number
    std::string strategyCode;  // e.g. "CNSJC", "PXSJC", "KS", "ZBD"
    std::string name;
    int volume = 0;
    int releaseVolume = 0;
    std::string legOneCode;
    int legOneType = 0;
    int legOneExtra = 0;
    std::string legTwoCode;  // empty for a one-leg combination
    int legTwoType = 0;
    int legTwoExtra = 0;

    std::string getKey() const override { return (account ? account->getKey() : std::string()) + "|" + combId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        const unsigned left = fieldProps({FP_DISPLAY, FP_ALIGN_LEFT});
        const unsigned centre = fieldProps({FP_DISPLAY, FP_ALIGN_CENTER});
        const unsigned number = fieldProps({FP_DISPLAY, FP_STAT});
        visit("account", "资金账号", self.account, left);
        visit("market", "市场", self.market, centre);
        visit("combId", "组合编号", self.combId, fieldProps({FP_DISPLAY, FP_ALIGN_LEFT, FP_KEY}));
        visit("strategyCode", "策略代码", self.strategyCode, left);
        visit("name", "策略名称", self.name, left);
        visit("volume", "组合数量", self.volume, number);
        visit("releaseVolume", "可解除数量", self.releaseVolume, number);
        visit("legOneCode", "合约一代码", self.legOneCode, left);
        visit("legOneType", "合约一持仓类型", self.legOneType, centre, "nqservice::EPositionDirection");
        visit("legOneExtra", "合约一数量", self.legOneExtra, fieldProps({FP_DISPLAY}));
        visit("legTwoCode", "合约二代码", self.legTwoCode, left);
        visit("legTwoType", "合约二持仓类型", self.legTwoType, centre, "nqservice::EPositionDirection");
        visit("legTwoExtra", "合约二数量", self.legTwoExtra, fieldProps({FP_DISPLAY}));
    }
};

// A working or finished order (table 542).
class COrderDetail : public TData<COrderDetail, VQ_DATA_TYPE_ORDER> {
public:
    static constexpr const char* kStructName = "nqservice::COrderDetail";

    boost::shared_ptr<CAccountInfo> account;
    std::string code;  // instrument key
    EEntrustBS side = EBS_BUY;
    double price = 0.0;
    int remaining = utils::kAbsentInt;  // volume still working
    std::string orderId;
    std::string market;
    int volume = 0;
    int tradedVolume = 0;
    EOrderStatus status = OS_UNKNOWN;
    EOperationType operationType = OT_NONE;
    EPriceType priceType = PT_NONE;
    long long insertTime = 0;  // ms since 1970
    std::string name;           // the instrument's name
    std::string commandId;      // the command the order came with
    double tradedAmount = 0.0;  // money of the fills, premium only
    double fee = 0.0;           // fees charged so far
    std::string message;        // why the order was refused or cancelled, UTF-8; empty otherwise
    long long updateTime = 0;   // ms since 1970 of the last change

    std::string getKey() const override { return (account ? account->getKey() : std::string()) + "|" + orderId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "资金账号", self.account);
        visit("code", "合约", self.code);
        visit("side", "买卖", self.side, 0, "nqservice::EEntrustBS");
        visit("price", "委托价", self.price);
        visit("remaining", "未成交量", self.remaining);
        visit("orderId", "委托编号", self.orderId, fieldProps({FP_KEY}));
        visit("market", "市场", self.market);
        visit("volume", "委托量", self.volume);
        visit("tradedVolume", "成交量", self.tradedVolume);
        visit("status", "状态", self.status, 0, "nqservice::EOrderStatus");
        visit("operationType", "操作", self.operationType, 0, "nqservice::EOperationType");
        visit("priceType", "报价方式", self.priceType, 0, "nqservice::EPriceType");
        visit("insertTime", "委托时间", self.insertTime);
        visit("name", "合约名称", self.name);
        visit("commandId", "指令编号", self.commandId);
        visit("tradedAmount", "成交金额", self.tradedAmount);
        visit("fee", "手续费", self.fee);
        visit("message", "说明", self.message);
        visit("updateTime", "更新时间", self.updateTime);
    }
};

// One fill of an order (table 570).
class CDealDetail : public TData<CDealDetail, VQ_DATA_TYPE_QUICK_ORDER> {
public:
    static constexpr const char* kStructName = "nqservice::CDealDetail";

    boost::shared_ptr<CAccountInfo> account;
    std::string dealId;
    std::string orderId;
    std::string market;
    std::string code;
    std::string name;
    EEntrustBS side = EBS_BUY;
    EOperationType operationType = OT_NONE;
    double price = 0.0;
    int volume = 0;
    double fee = 0.0;
    long long time = 0;  // ms since 1970

    std::string getKey() const override { return (account ? account->getKey() : std::string()) + "|" + dealId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "资金账号", self.account);
        visit("dealId", "成交编号", self.dealId, fieldProps({FP_KEY}));
        visit("orderId", "委托编号", self.orderId);
        visit("market", "市场", self.market);
        visit("code", "合约代码", self.code);
        visit("name", "合约名称", self.name);
        visit("side", "买卖", self.side, 0, "nqservice::EEntrustBS");
        visit("operationType", "操作", self.operationType, 0, "nqservice::EOperationType");
        visit("price", "成交价", self.price);
        visit("volume", "成交量", self.volume);
        visit("fee", "手续费", self.fee);
        visit("time", "成交时间", self.time);
    }
};

// A position of one instrument and direction (table 547).
class CPositionStatics : public TData<CPositionStatics, VQ_DATA_TYPE_POSITION_STATICS> {
public:
    static constexpr const char* kStructName = "nqservice::CPositionStatics";

    boost::shared_ptr<CAccountInfo> account;
    std::string market;
    std::string code;
    long long position = 0;  // size, unsigned by itself
    int direction = '0';     // 48 long, anything else short: 49 ordinary short, 50 covered short
    std::string name;
    long long available = 0;  // closable
    long long todayPosition = 0;
    double avgPrice = 0.0;
    long long frozen = 0;      // held by working close orders (or, for an ETF, locked by covered shorts)
    double lastPrice = 0.0;    // price the position was last valued at
    double floatProfit = 0.0;  // (last - average) x volume x unit, signed by direction
    double margin = 0.0;       // margin held for a short position

    std::string getKey() const override
    {
        return (account ? account->getKey() : std::string()) + "|" + utils::vqStockKey(market, code) + "|" +
               std::to_string(direction);
    }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "资金账号", self.account);
        visit("market", "市场", self.market);
        visit("code", "合约代码", self.code);
        visit("position", "持仓量", self.position);
        visit("direction", "方向", self.direction);
        visit("name", "合约名称", self.name);
        visit("available", "可平量", self.available);
        visit("todayPosition", "今仓", self.todayPosition);
        visit("avgPrice", "持仓均价", self.avgPrice);
        visit("frozen", "冻结量", self.frozen);
        visit("lastPrice", "最新价", self.lastPrice);
        visit("floatProfit", "浮动盈亏", self.floatProfit);
        visit("margin", "保证金", self.margin);
    }
};

// An account taking part in a task.
class CTaskAccount : public TData<CTaskAccount> {
public:
    static constexpr const char* kStructName = "nqservice::CTaskAccount";

    boost::shared_ptr<CAccountInfo> account;
    long long volume = 0;

    std::string getKey() const override { return account ? account->getKey() : std::string(); }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "资金账号", self.account);
        visit("volume", "数量", self.volume);
    }
};

// Who started a task.
class CTaskOwner : public TData<CTaskOwner> {
public:
    static constexpr const char* kStructName = "nqservice::CTaskOwner";

    std::string userName;
    int traderType = VQ_TRADER_TYPE_NONE;

    std::string getKey() const override { return userName; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("userName", "用户名", self.userName);
        visit("traderType", "交易类型", self.traderType, 0, "nqservice::EVqTraderType");
    }
};

// States of a task.
enum ETaskStatus {
    TS_CREATED = 0,
    TS_PAUSED = 2,
    TS_RUNNING = 3,
    TS_FINISHED = 4,
    TS_STOPPED = 5,
};

// Operations on a task.
enum ETaskOperation {
    TOP_PAUSE = 1,
    TOP_RESUME = 2,
    TOP_STOP = 3,
};

// A trading task (table 541).
class CTaskDetail : public TData<CTaskDetail, VQ_DATA_TYPE_TASK> {
public:
    static constexpr const char* kStructName = "nqservice::CTaskDetail";

    int accountId = 0;
    int status = TS_CREATED;  // ETaskStatus; 3 runs and may be stopped
    std::vector<CTaskAccount> accounts;
    boost::shared_ptr<CTaskOwner> owner;
    bool onServer = false;
    int taskId = 0;
    std::string taskName;
    std::string serverTaskId;
    std::vector<std::string> orderIds;  // the orders it sent, "account|orderId"
    std::string message;                // how it ended, UTF-8

    std::string getKey() const override { return std::to_string(accountId) + "|" + std::to_string(taskId); }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("accountId", "账号编号", self.accountId);
        visit("status", "状态", self.status);
        visit("accounts", "账号", self.accounts);
        visit("owner", "创建者", self.owner);
        visit("onServer", "服务端任务", self.onServer);
        visit("taskId", "任务编号", self.taskId, fieldProps({FP_KEY}));
        visit("taskName", "任务名称", self.taskName);
        visit("serverTaskId", "服务端编号", self.serverTaskId);
        visit("orderIds", "委托", self.orderIds);
        visit("message", "说明", self.message);
    }
};

// One operation on a task.
class CTaskOpRecord : public TData<CTaskOpRecord> {
public:
    static constexpr const char* kStructName = "nqservice::CTaskOpRecord";

    int operation = 0;  // ETaskOperation
    long long time = 0;
    std::string userName;
    std::string remark;

    std::string getKey() const override { return userName + "|" + std::to_string(time); }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("operation", "操作", self.operation);
        visit("time", "时间", self.time);
        visit("userName", "用户名", self.userName);
        visit("remark", "备注", self.remark);
    }
};

// Funds of an account.
class CAccountDetail : public TData<CAccountDetail, VQ_DATA_TYPE_ACCOUNT_DETAIL> {
public:
    static constexpr const char* kStructName = "nqservice::CAccountDetail";

    std::string accountId;
    double availableFunds = 0.0;
    double balance = 0.0;
    double margin = 0.0;
    double frozenFunds = 0.0;
    double fee = 0.0;          // fees charged today
    double floatProfit = 0.0;  // of all positions at their last prices
    double marketValue = 0.0;  // long options less short options at their last prices, ETF holdings included

    std::string getKey() const override { return accountId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("accountId", "资金账号", self.accountId);
        visit("availableFunds", "可用资金", self.availableFunds);
        visit("balance", "总资产", self.balance);
        visit("margin", "占用保证金", self.margin);
        visit("frozenFunds", "冻结资金", self.frozenFunds);
        visit("fee", "手续费", self.fee);
        visit("floatProfit", "浮动盈亏", self.floatProfit);
        visit("marketValue", "市值", self.marketValue);
    }
};

// The option fees of an account and instrument, per contract, and its margin rate.
class CInstrumentFee : public TData<CInstrumentFee> {
public:
    static constexpr const char* kStructName = "nqservice::CInstrumentFee";

    std::string accountId;
    std::string market;
    std::string code;
    double openBuyFee = 0.0;
    double openSellFee = 0.0;
    double closeBuyFee = 0.0;
    double closeSellFee = 0.0;
    double closeTodayBuyFee = 0.0;
    double closeTodaySellFee = 0.0;
    double marginRatio = 0.0;  // the margin record: extra margin over the exchange's minimum

    std::string getKey() const override { return accountId + "|" + utils::vqStockKey(market, code); }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("accountId", "资金账号", self.accountId);
        visit("market", "市场", self.market);
        visit("code", "合约代码", self.code);
        visit("openBuyFee", "买开手续费", self.openBuyFee);
        visit("openSellFee", "卖开手续费", self.openSellFee);
        visit("closeBuyFee", "买平手续费", self.closeBuyFee);
        visit("closeSellFee", "卖平手续费", self.closeSellFee);
        visit("closeTodayBuyFee", "买平今手续费", self.closeTodayBuyFee);
        visit("closeTodaySellFee", "卖平今手续费", self.closeTodaySellFee);
        visit("marginRatio", "保证金比例", self.marginRatio);
    }
};

// Greeks and volatilities of an option computed outside the client. The JSON
// of an import file names the fields as here.
class COptionExGreeksVolatility : public TData<COptionExGreeksVolatility> {
public:
    static constexpr const char* kStructName = "nqservice::COptionExGreeksVolatility";

    std::string code;
    double exSellImpliedVolatility = utils::kAbsentDouble;
    double exBuyImpliedVolatility = utils::kAbsentDouble;
    double exDelta = utils::kAbsentDouble;
    double exGamma = utils::kAbsentDouble;
    double exVega = utils::kAbsentDouble;
    double exTheta = utils::kAbsentDouble;

    std::string getKey() const override { return code; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("code", "合约代码", self.code, fieldProps({FP_KEY}));
        visit("exSellImpliedVolatility", "卖隐波", self.exSellImpliedVolatility);
        visit("exBuyImpliedVolatility", "买隐波", self.exBuyImpliedVolatility);
        visit("exDelta", "外部导入delta", self.exDelta);
        visit("exGamma", "外部导入gamma", self.exGamma);
        visit("exVega", "外部导入vega", self.exVega);
        visit("exTheta", "外部导入theta", self.exTheta);
    }
};

// Keys of the user's permission record.
constexpr const char* kPermStkOptMarketPriceSplitAllowance = "global_stk_option_market_price_order_split_allowance";
constexpr const char* kPermStkOptMarketPriceMaxOrderLimit = "global_stk_option_market_price_max_order_limit";
constexpr const char* kPermStkOptFixPriceSplitAllowance = "global_stk_option_fix_price_order_split_allowance";
constexpr const char* kPermStkOptFixPriceMaxOrderLimit = "global_stk_option_fix_price_max_order_limit";
// The largest volume of one order, as the instrument's integer field of the same id.
constexpr const char* kPermMaxOrderVolume = "2008";

// The user's feature permissions: integers by key.
class CGlobalFeaturePermissionInfo : public TData<CGlobalFeaturePermissionInfo> {
public:
    static constexpr const char* kStructName = "nqservice::CGlobalFeaturePermissionInfo";

    std::string userName;
    std::map<std::string, int> intMap;

    // The value of a key, 0 when the key is not set.
    int getInt(const std::string& key) const
    {
        auto it = intMap.find(key);
        return it == intMap.end() ? 0 : it->second;
    }

    std::string getKey() const override { return userName; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("userName", "用户名", self.userName);
        visit("intMap", "权限", self.intMap);
    }
};

// A note shown in the client's message area.
class CMessage : public TData<CMessage> {
public:
    static constexpr const char* kStructName = "nqservice::CMessage";

    std::string messageId;
    std::string text;  // UTF-8
    int type = 0;      // TC::EMsgTypeDef
    int level = ML_INFO;
    long long time = 0;

    std::string getKey() const override { return messageId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("messageId", "编号", self.messageId);
        visit("text", "内容", self.text);
        visit("type", "类型", self.type);
        visit("level", "级别", self.level, 0, "nqservice::MsgLevel");
        visit("time", "时间", self.time);
    }
};

// The price a price type stands for may be adjusted by the caller; the panels
// pass none.
class CAutoPriceParam {
public:
    int tickOffset = 0;  // ticks added in the order's favour of execution
};

}  // namespace nqservice

namespace TC {

// Extra information of a cancel request.
struct COrderAuxInfo {
    std::string remark;
};

}  // namespace TC
