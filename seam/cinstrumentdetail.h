// One instrument of the exchange: an underlying, a future or an option. Held by
// std::shared_ptr and never changed once the exchange client has published it.
// Besides the plain members, the record answers the system's numeric field ids.
#pragma once

#include "seam/common.h"

#include <string>

namespace nqservice {

// Market ids of this code base, the first argument of utils::vqStockKey.
inline const char* const kMarketSSE = "SH";   // Shanghai Stock Exchange
inline const char* const kMarketSZSE = "SZ";  // Shenzhen Stock Exchange
inline const char* const kMarketDCE = "DCE";  // Dalian Commodity Exchange
inline const char* const kMarketCZCE = "CZCE";  // Zhengzhou Commodity Exchange

enum EInstrumentKind {
    IK_UNKNOWN = 0,
    IK_FUND = 1,           // exchange-traded fund, underlying of stock options
    IK_FUTURE = 2,         // commodity future, underlying of future options
    IK_STOCK_OPTION = 3,   // trader type 32
    IK_FUTURE_OPTION = 4,  // trader type 1024
};

enum EExerciseStyle {
    ES_NONE = 0,
    ES_EUROPEAN = 1,
    ES_AMERICAN = 2,
};

// Field ids that the lookups answer.
enum EInstrumentField {
    IF_TRADING_CODE = 2,          // text: the exchange's trading code of the contract
    IF_UNDERLYING_CODE = 9,       // text
    IF_UNDERLYING_MARKET = 10,    // text
    IF_PREMIUM_BASE = 2001,       // int: contract unit, the base of the premium rate
    IF_MAX_ORDER_VOLUME = 2008,   // int: most contracts of one limit order
    IF_PRE_SETTLEMENT = 3002,     // double: previous settlement price
    IF_CONTRACT_UNIT = 3006,      // double: "合约单位"
    IF_MARGIN_PARAMETER = 3007,   // double: exchange margin of one short contract in 元 at the previous settlement
    IF_EXERCISE_PRICE = 3008,     // double: strike
    IF_RISK_FREE_RATE = 3011,     // double: annual, continuously compounded, e.g. 0.02
    IF_HISTORY_VOLATILITY = 3012, // double: annual, as a fraction ("历波%" shows it times 100)
    IF_LAST_EXERCISE_DATE = 4000, // code field: yyyymmdd, "行权终止日"
};

class CInstrumentDetail {
public:
    std::string market;
    std::string code;
    std::string name;
    double preClosePrice = utils::kAbsentDouble;
    double priceTick = utils::kAbsentDouble;
    int expireDate = utils::kAbsentInt;  // yyyymmdd; also the key of an underlying's months

    // Further members, read through the lookups below or directly by the services.
    EInstrumentKind kind = IK_UNKNOWN;
    EExerciseStyle exerciseStyle = ES_NONE;
    bool call = false;                     // options only
    std::string tradingCode;               // field 2
    std::string underlyingCode;            // field 9
    std::string underlyingMarket;          // field 10
    int maxOrderVolume = utils::kAbsentInt;  // field 2008
    double preSettlementPrice = utils::kAbsentDouble;  // field 3002
    double contractUnit = utils::kAbsentDouble;        // field 3006
    double marginParameter = utils::kAbsentDouble;     // field 3007
    double exercisePrice = utils::kAbsentDouble;       // field 3008
    double riskFreeRate = utils::kAbsentDouble;        // field 3011
    double historyVolatility = utils::kAbsentDouble;   // field 3012
    int lastExerciseDate = utils::kAbsentInt;          // field 4000
    int listDate = utils::kAbsentInt;                  // yyyymmdd
    bool adjusted = false;  // terms changed by a dividend: unit other than 10000, "A" in the name

    CInstrumentDetail() = default;
    CInstrumentDetail(const CInstrumentDetail&) = default;
    CInstrumentDetail& operator=(const CInstrumentDetail&) = default;
    virtual ~CInstrumentDetail() = default;

    bool isOption() const { return kind == IK_STOCK_OPTION || kind == IK_FUTURE_OPTION; }
    std::string key() const { return utils::vqStockKey(market, code); }
    std::string underlyingKey() const { return utils::vqStockKey(underlyingMarket, underlyingCode); }

    // Lookups by field id; an unknown id, or a field the instrument lacks, gives
    // the empty text or the absent marker.
    virtual std::string getTextField(int id) const;
    virtual int getIntField(int id) const;
    virtual double getDoubleField(int id) const;
    virtual int getCodeField(int id) const;
};

}  // namespace nqservice
