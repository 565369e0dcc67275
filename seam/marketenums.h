// Enumerations of the market side: subscription kinds, trading phases of an
// instrument, and the exchange's status of a stock option with its display names.
#pragma once

#include <string>

namespace TC {

// How a quote subscription is made; every panel passes 0.
enum ESubscribeType {
    ST_DEFAULT = 0,
};

// Trading phase of an instrument, as the data centre reports it. The values are
// the character codes of the exchanges' gateways ('0' = 48 ...); panels know
// 48, 49, 51 to 53, 54 and 64 and show "-" for any other, so continuous trading
// uses 50 on purpose.
enum ETradingPhase {
    TP_BEFORE_OPEN = 48,         // '0' before the opening call auction
    TP_NOT_TRADING = 49,         // '1' breaks (lunch, between sessions), non-trading days
    TP_CONTINUOUS = 50,          // '2' continuous trading
    TP_OPEN_CALL_AUCTION = 51,   // '3' opening call auction, orders accepted and cancellable
    TP_AUCTION_MATCHED = 52,     // '4' opening auction matched, waiting for continuous trading
    TP_CLOSE_CALL_AUCTION = 53,  // '5' closing call auction
    TP_CLOSED = 54,              // '6' the day's trading is over
    TP_AFTER_HOURS = 64,         // '@' after-hours fixed-price trading
};

inline bool isCallAuctionPhase(int phase) { return phase >= TP_OPEN_CALL_AUCTION && phase <= TP_CLOSE_CALL_AUCTION; }
// Phases in which deals happen and prices move.
inline bool isContinuousPhase(int phase) { return phase == TP_CONTINUOUS; }

}  // namespace TC

namespace nqservice {

// Status flags of a stock-option contract as the exchange publishes them. Normal
// contracts carry SOS_NORMAL, whose name "-" lets the board show the trading
// phase instead.
enum EStockOptionStatus : int {
    SOS_NORMAL = 0,
    SOS_SUSPENDED = 1,          // trading halted
    SOS_VOLATILITY_BREAK = 2,   // volatility interruption: a call auction inside the session
    SOS_NEAR_EXPIRY = 3,        // within the last days before expiry
    SOS_RECENTLY_ADJUSTED = 4,  // terms changed recently (dividend adjustment)
    SOS_NEWLY_LISTED = 5,       // listed today
};

// Display name of a status value: "-", "停牌", "波动性中断", "临近到期", "近期调整", "新挂牌".
// Unknown values give "-" like a normal contract.
std::string stockOptionStatusName(int value);

}  // namespace nqservice
