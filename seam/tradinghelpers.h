// Pure helpers of the trading seam: operation and price-type rules, names of
// enum items and record fields, fees, order states. None of them holds state
// except TypeManager's descriptor table and ConfigCollector's switches.
#pragma once

#include "seam/tradingrecords.h"

#include <boost/shared_ptr.hpp>

#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace TC {
class CPriceData;
}

namespace nqservice {

// Names of enum items and fields for display.
class TypeManager {
public:
    static TypeManager* instance();

    // Display name of an enum item; enumName is the full name ("nqservice::EOperationType").
    // Some names depend on the trader type (a price type of future options). An
    // unknown enum or value gives the value in decimal.
    std::string getEnumItemName(const std::string& enumName, int value, int traderType) const;
    // Fields of the records of the given data types, in record order, each type in turn.
    std::vector<FieldDes> getAllFields(const std::vector<int>& dataTypes, int traderType) const;
    // Column header of a field.
    std::string getFieldChsNameByType(const FieldDes& field, int traderType) const;
    // Descriptor of the record of a data type; null for an unknown type.
    const StructDes* getStructDes(int dataType) const;

private:
    TypeManager() = default;
};

// The price that a price type means for a snapshot.
class CPriceDataHelper {
public:
    // The price an order of this type goes out with; absent when the snapshot lacks it.
    static double getPriceForOrder(const boost::shared_ptr<TC::CPriceData>& price, EPriceType type,
                                   EOperationType operation, int level, boost::shared_ptr<CAutoPriceParam> autoParam,
                                   bool strict, bool reserved);
    // The price to reckon with (funds, available volume): the order price, or
    // for a market order the limit price of its side, else the other side's
    // best, else the last price.
    static double getPriceForCalc(const boost::shared_ptr<TC::CPriceData>& price, EPriceType type,
                                  EOperationType operation, int level, boost::shared_ptr<CAutoPriceParam> autoParam,
                                  bool strict, bool reserved);
};

// The user types the price: limit (11) and limit all-or-cancel (26).
bool isFixPriceType(EPriceType type);
// An exchange market order without a price: 27, 28, 29.
bool isRealMarketPrice(EPriceType type);
// A type whose price follows the market by itself: the limit price (12) and the real market types.
bool isMarketPrice(EPriceType type);
// Whether an order of this type goes to the exchange as a market order for this instrument.
bool isSupportMarketPrice(const std::string& market, const std::string& code, EPriceType type);
// The smallest volume step of an instrument: 1 for options and futures, 100 for
// funds and stocks, 1 when the instrument is unknown.
int getTradeMinUnit(const std::string& market, const std::string& code);

// The value text of an operation, e.g. "买入开仓"; the decimal value when unknown.
std::string operationValueToString(int operation);

class DataHelper {
public:
    // Whether the account's broker answers available-volume requests itself.
    static bool isEnabledRequestByBrokerAccount(const std::string& accountKey);
    // Price type of the order that releases a combination of this strategy code;
    // PT_NONE for an unknown code.
    static EPriceType getOptionCombStrategyPriceType(const std::string& strategyCode);
    // Adds the parameter record of a kind to an order's extra parameters; false
    // when the record is null or not of the kind.
    static bool fillExtraParam(bson::BSONObj& extraParams, EVqExtraOrderParamType type,
                               const boost::shared_ptr<IData>& data);
    // Reads back what fillExtraParam stored; null when absent.
    static boost::shared_ptr<COptionCombStrategyParam> getOptionCombStrategyParam(const bson::BSONObj& extraParams);
    static bool isBuy(EOperationType operation);
};

class StockOptionFeeDataHelper {
public:
    // Fee of one contract for an offset and a side; 0 without fee data.
    static double getUnitFee(const boost::shared_ptr<CInstrumentFee>& fee, EOffset_Flag_Type offset, EEntrustBS side);
};

class COrderDetailHelper {
public:
    // Filled, cancelled or rejected: nothing of it works any more.
    static bool completed(const COrderDetail& order);
};

class CTaskHelper {
public:
    // Key of a task at the server: its server id, else owner, account and task numbers.
    static std::string genServerTaskKey(const CTaskDetail& task);
    static std::string genServerTaskKey(const boost::shared_ptr<CTaskDetail>& task);
};

// Switches of the client's configuration that the position tables ask.
class ConfigCollector {
public:
    static ConfigCollector* instance();

    // Whether combination positions of volume 0 stay in the table, per broker.
    bool needShowAllCombPositions(int brokerId) const;
    void setShowAllCombPositions(int brokerId, bool show);
    void clear();

private:
    ConfigCollector() = default;
    mutable std::mutex m_mutex;
    std::set<int> m_showAllBrokers;
};

}  // namespace nqservice

namespace TC {

// Whether an account of the broker type serves the trader type (6 with 32, 5 with 1024).
bool isBrokerTypeMatchTradeType(int brokerType, nqservice::EVqTraderType traderType);
// The operation reduced to its side: OT_BUY (18) or OT_SELL (19); OT_NONE when unknown.
nqservice::EOperationType getBuyOrSellType(nqservice::EOperationType operation);
// The same operation on the other side (buy to open <-> sell to open, 18 <-> 19 ...);
// an operation without such a twin is returned unchanged.
nqservice::EOperationType swapOperationType(nqservice::EOperationType operation);
// Whether a cancel makes sense: the order still works and no cancel is pending.
bool canCancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order);
// Short display text of an operation ("买开", "卖平", "买", "卖"); the decimal value when unknown.
std::string operationToString(int operation);
// Checks wanted volumes against the instrument's and the user's limit on one
// order. split is set when a volume passes the limit; the text tells the user,
// empty when all is well.
std::string getFixOrderNumWarnMsg(const nqservice::CStockInfo& stock, const std::vector<long long>& volumes,
                                  long long total, bool& split, nqservice::EOperationType operation);

}  // namespace TC
