#include "seam/tradinghelpers.h"

#include "seam/cexchangeclient.h"
#include "seam/cpricedata.h"
#include "seam/marketenums.h"
#include "seam/trading.h"
#include "seam/user.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace nqservice {

namespace {

struct OperationNames {
    const char* shortName;
    const char* valueName;
};

const std::map<int, OperationNames>& operationNames()
{
    static const std::map<int, OperationNames> s_names = {
        {OT_OPEN_LONG, {"买开", "买入开仓"}},
        {OT_CLOSE_LONG, {"卖平", "卖出平仓"}},
        {OT_CLOSE_LONG_TODAY, {"卖平今", "卖出平今"}},
        {OT_OPEN_SHORT, {"卖开", "卖出开仓"}},
        {OT_CLOSE_SHORT, {"买平", "买入平仓"}},
        {OT_CLOSE_SHORT_TODAY, {"买平今", "买入平今"}},
        {OT_BUY, {"买", "买入"}},
        {OT_SELL, {"卖", "卖出"}},
        {OT_BUY_OPEN, {"买开", "买入开仓"}},
        {OT_SELL_CLOSE, {"卖平", "卖出平仓"}},
        {OT_SELL_OPEN, {"卖开", "卖出开仓"}},
        {OT_BUY_CLOSE, {"买平", "买入平仓"}},
        {OT_COVERED_OPEN, {"备兑开", "备兑开仓"}},
        {OT_COVERED_CLOSE, {"备兑平", "备兑平仓"}},
        {OT_COMB_STRATEGY_BUILD, {"组合", "构建组合"}},
        {OT_COMB_STRATEGY_RELEASE, {"解组合", "解除组合"}},
    };
    return s_names;
}

std::string lookup(const std::map<int, const char*>& names, int value)
{
    auto it = names.find(value);
    return it == names.end() ? std::to_string(value) : std::string(it->second);
}

std::string priceTypeName(int value, int traderType)
{
    const bool future = traderType == VQ_TRADER_TYPE_FUTURE_OPTION;
    static const std::map<int, const char*> s_names = {
        {PT_ASK5, "卖⑤价"}, {PT_ASK4, "卖④价"}, {PT_ASK3, "卖③价"}, {PT_ASK2, "卖②价"},
        {PT_ASK1, "卖①价"}, {PT_LAST, "最新价"}, {PT_BID1, "买①价"}, {PT_BID2, "买②价"},
        {PT_BID3, "买③价"}, {PT_BID4, "买④价"}, {PT_BID5, "买⑤价"}, {PT_QUEUE, "挂单价"},
        {PT_OPPONENT, "对手价"}, {PT_FIX_FOK, "限价即全成否则撤"}, {PT_MARKET_FAK, "市价即成剩撤"},
        {PT_MARKET_FOK, "市价即全成否则撤"}, {PT_MARKET_TO_LIMIT, "市价剩转限价"},
    };
    if (value == PT_FIX) {
        return future ? "指定价" : "限价";
    }
    if (value == PT_LIMIT_UP_DOWN) {
        return future ? "市价" : "涨跌停价";
    }
    return lookup(s_names, value);
}

}  // namespace

TypeManager* TypeManager::instance()
{
    static TypeManager s_instance;
    return &s_instance;
}

std::string TypeManager::getEnumItemName(const std::string& enumName, int value, int traderType) const
{
    if (enumName == "nqservice::EOperationType") {
        return operationValueToString(value);
    }
    if (enumName == "nqservice::EOffset_Flag_Type") {
        static const std::map<int, const char*> s_names = {
            {OF_OPEN, "开仓"}, {OF_CLOSE, "平仓"}, {OF_FORCE_CLOSE, "强平"},
            {OF_CLOSE_TODAY, "平今"}, {OF_CLOSE_YESTERDAY, "平昨"},
        };
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EStockOptionStatus") {
        return stockOptionStatusName(value);
    }
    if (enumName == "nqservice::EPriceType") {
        return priceTypeName(value, traderType);
    }
    if (enumName == "nqservice::EPositionDirection") {
        // A position's side: 48 long, 49 ordinary short, 50 covered short.
        static const std::map<int, const char*> s_names = {{'0', "权利仓"}, {'1', "义务仓"}, {'2', "备兑仓"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EEntrustBS") {
        static const std::map<int, const char*> s_names = {{EBS_BUY, "买入"}, {EBS_SELL, "卖出"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EHedge_Flag_Type") {
        static const std::map<int, const char*> s_names = {
            {HF_SPECULATION, "投机"}, {HF_ARBITRAGE, "套利"}, {HF_HEDGE, "套保"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EVqTraderType") {
        static const std::map<int, const char*> s_names = {
            {VQ_TRADER_TYPE_STOCK, "股票"}, {VQ_TRADER_TYPE_FUTURE, "期货"},
            {VQ_TRADER_TYPE_STOCK_OPTION, "股票期权"}, {VQ_TRADER_TYPE_FUTURE_OPTION, "期货期权"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EVQBrokerType") {
        static const std::map<int, const char*> s_names = {
            {VQ_BROKER_TYPE_STOCK, "股票账号"}, {VQ_BROKER_TYPE_FUTURE, "期货账号"},
            {VQ_BROKER_TYPE_FUTURE_OPTION, "期货期权账号"}, {VQ_BROKER_TYPE_STOCK_OPTION, "股票期权账号"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::EOrderStatus") {
        static const std::map<int, const char*> s_names = {
            {OS_UNKNOWN, "未知"}, {OS_PENDING, "待报"}, {OS_WORKING, "已报"}, {OS_PARTIAL, "部成"},
            {OS_FILLED, "已成"}, {OS_CANCELLED, "已撤"}, {OS_REJECTED, "废单"}, {OS_CANCEL_PENDING, "待撤"}};
        return lookup(s_names, value);
    }
    if (enumName == "nqservice::MsgLevel") {
        static const std::map<int, const char*> s_names = {{ML_INFO, "信息"}, {ML_WARNING, "警告"}, {ML_ERROR, "错误"}};
        return lookup(s_names, value);
    }
    return std::to_string(value);
}

const StructDes* TypeManager::getStructDes(int dataType) const
{
    switch (dataType) {
    case VQ_DATA_TYPE_TASK:
        return CTaskDetail::staticStructDes();
    case VQ_DATA_TYPE_ORDER:
        return COrderDetail::staticStructDes();
    case VQ_DATA_TYPE_ACCOUNT_DETAIL:
        return CAccountDetail::staticStructDes();
    case VQ_DATA_TYPE_POSITION_STATICS:
        return CPositionStatics::staticStructDes();
    case VQ_DATA_TYPE_STK_OPT_COMB_POSITION:
        return CStkOptCombPositionDetail::staticStructDes();
    case VQ_DATA_TYPE_QUICK_ORDER:
        return CDealDetail::staticStructDes();
    default:
        return nullptr;
    }
}

std::vector<FieldDes> TypeManager::getAllFields(const std::vector<int>& dataTypes, int /*traderType*/) const
{
    std::vector<FieldDes> fields;
    for (int dataType : dataTypes) {
        if (const StructDes* des = getStructDes(dataType)) {
            fields.insert(fields.end(), des->fields.begin(), des->fields.end());
        }
    }
    return fields;
}

std::string TypeManager::getFieldChsNameByType(const FieldDes& field, int /*traderType*/) const
{
    return field.chsName.empty() ? field.name : field.chsName;
}

double CPriceDataHelper::getPriceForOrder(const boost::shared_ptr<TC::CPriceData>& price, EPriceType type,
                                          EOperationType operation, int level,
                                          boost::shared_ptr<CAutoPriceParam> autoParam, bool strict, bool /*reserved*/)
{
    if (!price) {
        return utils::kAbsentDouble;
    }
    return price->getPriceForOrder(type, operation, level, autoParam, strict);
}

double CPriceDataHelper::getPriceForCalc(const boost::shared_ptr<TC::CPriceData>& price, EPriceType type,
                                         EOperationType operation, int level,
                                         boost::shared_ptr<CAutoPriceParam> autoParam, bool strict, bool reserved)
{
    if (!price) {
        return utils::kAbsentDouble;
    }
    double value = utils::kAbsentDouble;
    if (!isRealMarketPrice(type)) {
        value = getPriceForOrder(price, type, operation, level, autoParam, strict, reserved);
    }
    if (utils::isUsable(value)) {
        return value;
    }
    // A market order can cost at most the limit price of its side; failing that,
    // the other side's best, failing that the last price.
    const bool buy = DataHelper::isBuy(operation);
    const double candidates[] = {buy ? price->upStopPrice : price->downStopPrice,
                                 buy ? price->askPrice1 : price->bidPrice1, price->lastPrice};
    for (double candidate : candidates) {
        if (utils::isUsable(candidate) && candidate > utils::kPriceTolerance) {
            return candidate;
        }
    }
    return utils::kAbsentDouble;
}

bool isFixPriceType(EPriceType type) { return type == PT_FIX || type == PT_FIX_FOK; }

bool isRealMarketPrice(EPriceType type)
{
    return type == PT_MARKET_FAK || type == PT_MARKET_FOK || type == PT_MARKET_TO_LIMIT;
}

bool isMarketPrice(EPriceType type) { return type == PT_LIMIT_UP_DOWN || isRealMarketPrice(type); }

bool isSupportMarketPrice(const std::string& market, const std::string& code, EPriceType type)
{
    if (market.empty() || code.empty()) {
        return false;
    }
    return isRealMarketPrice(type);
}

int getTradeMinUnit(const std::string& market, const std::string& code)
{
    const TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    if (exchange == nullptr) {
        return 1;
    }
    const auto detail = exchange->getCodeInfo(QString::fromStdString(utils::vqStockKey(market, code)));
    if (detail && detail->kind == IK_FUND) {
        return 100;
    }
    return 1;
}

std::string operationValueToString(int operation)
{
    auto it = operationNames().find(operation);
    return it == operationNames().end() ? std::to_string(operation) : std::string(it->second.valueName);
}

bool DataHelper::isEnabledRequestByBrokerAccount(const std::string& accountKey)
{
    if (accountKey.empty()) {
        return false;
    }
    const boost::shared_ptr<TraderCenter> center = TraderCenter::instance();
    if (!center) {
        return false;
    }
    const boost::shared_ptr<IDataCenter> data = center->getDataCenter();
    return data && data->isVolumeQueryByBroker(accountKey);
}

EPriceType DataHelper::getOptionCombStrategyPriceType(const std::string& strategyCode)
{
    // The exchanges' combination strategies (spreads, straddles, strangles,
    // covered conversions) all go out as limit orders without a price.
    static const char* const s_codes[] = {"CNSJC", "PXSJC", "PNSJC", "CXSJC", "KS", "KKS", "ZBD", "ZXJ"};
    for (const char* code : s_codes) {
        if (strategyCode == code) {
            return PT_FIX;
        }
    }
    return PT_NONE;
}

namespace {
const char* const kCombStrategyParamField = "optionCombStrategyParam";
}

bool DataHelper::fillExtraParam(bson::BSONObj& extraParams, EVqExtraOrderParamType type,
                                const boost::shared_ptr<IData>& data)
{
    if (type != VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY) {
        return false;
    }
    const auto param = boost::dynamic_pointer_cast<COptionCombStrategyParam>(data);
    if (!param) {
        return false;
    }
    try {
        bson::BSONObjBuilder builder;
        bson::BSONObjIterator it(extraParams);
        while (it.more()) {
            bson::BSONElement element = it.next();
            if (std::string(element.fieldName()) != kCombStrategyParamField) {
                builder.append(element);
            }
        }
        builder.append(kCombStrategyParamField, param->toBsonWithBson());
        extraParams = builder.obj();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

boost::shared_ptr<COptionCombStrategyParam> DataHelper::getOptionCombStrategyParam(const bson::BSONObj& extraParams)
{
    bson::BSONElement element = extraParams.getField(kCombStrategyParamField);
    if (element.eoo() || element.type() != bson::Object) {
        return boost::shared_ptr<COptionCombStrategyParam>();
    }
    auto param = boost::make_shared<COptionCombStrategyParam>();
    param->bsonValueFromObj(element.embeddedObject(), true, nullptr);
    return param;
}

bool DataHelper::isBuy(EOperationType operation) { return TC::getBuyOrSellType(operation) == OT_BUY; }

double StockOptionFeeDataHelper::getUnitFee(const boost::shared_ptr<CInstrumentFee>& fee, EOffset_Flag_Type offset,
                                            EEntrustBS side)
{
    if (!fee) {
        return 0.0;
    }
    const bool buy = side == EBS_BUY;
    switch (offset) {
    case OF_OPEN:
        return buy ? fee->openBuyFee : fee->openSellFee;
    case OF_CLOSE_TODAY:
        return buy ? fee->closeTodayBuyFee : fee->closeTodaySellFee;
    case OF_CLOSE:
    case OF_FORCE_CLOSE:
    case OF_CLOSE_YESTERDAY:
        return buy ? fee->closeBuyFee : fee->closeSellFee;
    }
    return 0.0;
}

bool COrderDetailHelper::completed(const COrderDetail& order)
{
    return order.status == OS_FILLED || order.status == OS_CANCELLED || order.status == OS_REJECTED;
}

std::string CTaskHelper::genServerTaskKey(const CTaskDetail& task)
{
    if (!task.serverTaskId.empty()) {
        return task.serverTaskId;
    }
    const std::string owner = task.owner ? task.owner->userName : std::string();
    return fmt::format(FMT_STRING("{0}.{1}.{2}"), owner, task.accountId, task.taskId);
}

std::string CTaskHelper::genServerTaskKey(const boost::shared_ptr<CTaskDetail>& task)
{
    return task ? genServerTaskKey(*task) : std::string();
}

ConfigCollector* ConfigCollector::instance()
{
    static ConfigCollector s_instance;
    return &s_instance;
}

bool ConfigCollector::needShowAllCombPositions(int brokerId) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_showAllBrokers.count(brokerId) != 0;
}

void ConfigCollector::setShowAllCombPositions(int brokerId, bool show)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (show) {
        m_showAllBrokers.insert(brokerId);
    } else {
        m_showAllBrokers.erase(brokerId);
    }
}

void ConfigCollector::clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_showAllBrokers.clear();
}

}  // namespace nqservice

namespace TC {

using namespace nqservice;

bool isBrokerTypeMatchTradeType(int brokerType, EVqTraderType traderType)
{
    switch (brokerType) {
    case VQ_BROKER_TYPE_STOCK_OPTION:
        return traderType == VQ_TRADER_TYPE_STOCK_OPTION;
    case VQ_BROKER_TYPE_FUTURE_OPTION:
        return traderType == VQ_TRADER_TYPE_FUTURE_OPTION;
    case VQ_BROKER_TYPE_STOCK:
        return traderType == VQ_TRADER_TYPE_STOCK;
    case VQ_BROKER_TYPE_FUTURE:
        return traderType == VQ_TRADER_TYPE_FUTURE;
    default:
        return false;
    }
}

EOperationType getBuyOrSellType(EOperationType operation)
{
    switch (operation) {
    case OT_OPEN_LONG:
    case OT_CLOSE_SHORT:
    case OT_CLOSE_SHORT_TODAY:
    case OT_BUY:
    case OT_BUY_OPEN:
    case OT_BUY_CLOSE:
    case OT_COVERED_CLOSE:
        return OT_BUY;
    case OT_CLOSE_LONG:
    case OT_CLOSE_LONG_TODAY:
    case OT_OPEN_SHORT:
    case OT_SELL:
    case OT_SELL_CLOSE:
    case OT_SELL_OPEN:
    case OT_COVERED_OPEN:
        return OT_SELL;
    default:
        return OT_NONE;
    }
}

EOperationType swapOperationType(EOperationType operation)
{
    // Same offset, other side.
    static const std::pair<EOperationType, EOperationType> s_twins[] = {
        {OT_BUY, OT_SELL},
        {OT_BUY_OPEN, OT_SELL_OPEN},
        {OT_BUY_CLOSE, OT_SELL_CLOSE},
        {OT_OPEN_LONG, OT_OPEN_SHORT},
        {OT_CLOSE_SHORT, OT_CLOSE_LONG},
        {OT_CLOSE_SHORT_TODAY, OT_CLOSE_LONG_TODAY},
        {OT_COVERED_CLOSE, OT_COVERED_OPEN},
    };
    for (const auto& twin : s_twins) {
        if (operation == twin.first) {
            return twin.second;
        }
        if (operation == twin.second) {
            return twin.first;
        }
    }
    return operation;
}

bool canCancelOrder(const boost::shared_ptr<COrderDetail>& order)
{
    if (!order || COrderDetailHelper::completed(*order) || order->status == OS_CANCEL_PENDING) {
        return false;
    }
    return !utils::isAbsent(order->remaining) && order->remaining > 0;
}

std::string operationToString(int operation)
{
    auto it = operationNames().find(operation);
    return it == operationNames().end() ? std::to_string(operation) : std::string(it->second.shortName);
}

std::string getFixOrderNumWarnMsg(const CStockInfo& stock, const std::vector<long long>& volumes, long long total,
                                  bool& split, EOperationType /*operation*/)
{
    split = false;
    int instrumentLimit = utils::kAbsentInt;
    if (const CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance()) {
        const auto detail = exchange->getCodeInfo(QString::fromStdString(stock.getKey()));
        if (detail) {
            instrumentLimit = detail->getIntField(IF_MAX_ORDER_VOLUME);
        }
    }
    int configured = 0;
    if (CUserConfig* config = getUserConfig()) {
        if (const auto permissions = config->getPermissionInfoPtr()) {
            configured = permissions->getInt(kPermStkOptFixPriceMaxOrderLimit);
        }
    }
    // The user's limit caps the instrument's; what the exchange does not list
    // as one instrument (a combination "A/B") has no limit on one order.
    if (utils::isAbsent(instrumentLimit) || instrumentLimit <= 0) {
        return std::string();
    }
    long long limit = instrumentLimit;
    if (configured > 0) {
        limit = std::min<long long>(limit, configured);
    }
    long long largest = total;
    for (long long volume : volumes) {
        largest = std::max(largest, volume);
    }
    if (largest <= limit) {
        return std::string();
    }
    split = true;
    return fmt::format(FMT_STRING("{0} 单笔委托量{1}超过最大下单量{2}, 将自动拆单"), stock.code, largest, limit);
}

}  // namespace TC
