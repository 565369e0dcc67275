// One quote snapshot of an instrument, as the quote feed delivers it. A plain
// record shared by boost::shared_ptr: once published it is never written again,
// so any thread may read it.
#pragma once

#include "seam/common.h"
#include "seam/marketenums.h"
#include "seam/tradingenums.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace nqservice {
// Parameters of automatic order pricing; no feed of this code base fills one.
class CAutoPriceParam;
}  // namespace nqservice

namespace TC {

class CPriceData {
public:
    std::string market;
    std::string code;
    double lastPrice = utils::kAbsentDouble;     // absent while nothing traded today
    double changeAmount = utils::kAbsentDouble;  // lastPrice - preClose
    double changeRatio = utils::kAbsentDouble;   // changeAmount / preClose, 0.01 is one per cent
    int volume = 0;                              // contracts (or shares) traded today
    double amount = 0.0;                         // money traded today
    double preClose = utils::kAbsentDouble;      // reference of the rise and fall colours
    double openInterest = utils::kAbsentDouble;
    double referencePrice = utils::kAbsentDouble;  // previous settlement: the base of the price limits
    // Two marks the feed computes: A the midpoint of the best bid and ask, B the
    // indicative price of a call auction. Either is absent when it has no meaning.
    double quoteMarkA = utils::kAbsentDouble;
    double quoteMarkB = utils::kAbsentDouble;
    // Five levels, each side in turn; an empty level is absent.
    double bidPrice1 = utils::kAbsentDouble;
    double askPrice1 = utils::kAbsentDouble;
    double bidPrice2 = utils::kAbsentDouble;
    double askPrice2 = utils::kAbsentDouble;
    double bidPrice3 = utils::kAbsentDouble;
    double askPrice3 = utils::kAbsentDouble;
    double bidPrice4 = utils::kAbsentDouble;
    double askPrice4 = utils::kAbsentDouble;
    double bidPrice5 = utils::kAbsentDouble;
    double askPrice5 = utils::kAbsentDouble;
    int optionStatus = nqservice::SOS_NORMAL;  // nqservice::EStockOptionStatus
    // Volumes of the five levels, 0 where the level is empty.
    int bidVolume1 = 0;
    int askVolume1 = 0;
    int bidVolume2 = 0;
    int askVolume2 = 0;
    int bidVolume3 = 0;
    int askVolume3 = 0;
    int bidVolume4 = 0;
    int askVolume4 = 0;
    int bidVolume5 = 0;
    int askVolume5 = 0;
    double openPrice = utils::kAbsentDouble;
    double highPrice = utils::kAbsentDouble;
    double lowPrice = utils::kAbsentDouble;
    double upStopPrice = utils::kAbsentDouble;    // highest price allowed today
    double downStopPrice = utils::kAbsentDouble;  // lowest price allowed today
    int tradingPhase = TP_NOT_TRADING;            // TC::ETradingPhase at the time of the snapshot
    long long time = 0;                           // milliseconds since the epoch of the snapshot

    // Price level by number 1..5; absent for other numbers.
    double bidPrice(int level) const;
    double askPrice(int level) const;
    int bidVolume(int level) const;
    int askVolume(int level) const;
    void setBid(int level, double price, int volume);
    void setAsk(int level, double price, int volume);

    // The price a price type means for an order of the given operation: levels
    // and last by number (0-4 ask 5..1, 5 last, 6-10 bid 1..5), 11 the last price
    // (falling back to the other side's best), 12 the limit price of the order's
    // side, 13 the best price of its own side, 14 and 26-29 the best price of the
    // other side. Absent when the snapshot has no such price.
    double getPriceForOrder(nqservice::EPriceType type, nqservice::EOperationType operation, int level,
                            boost::shared_ptr<nqservice::CAutoPriceParam> autoParam, bool strict) const;
};

// True for the operations that buy (open long, close short, buy legs, buy to
// open or close, covered close).
bool isBuyOperation(int operation);

}  // namespace TC

namespace nqservice {
// The service layer names the same record in its own namespace.
using CPriceData = TC::CPriceData;
}  // namespace nqservice
