// The enumerations that trading records and commands carry. Values the panels
// rely on are fixed; the rest are this code base's own and never stored by
// number outside the process.
#pragma once

namespace nqservice {

// Trader types are single bits so that panels can hold a set of them as flags
// (1056 is both option traders).
enum EVqTraderType {
    VQ_TRADER_TYPE_NONE = 0,
    VQ_TRADER_TYPE_STOCK = 1,
    VQ_TRADER_TYPE_FUTURE = 2,
    VQ_TRADER_TYPE_STOCK_OPTION = 32,
    VQ_TRADER_TYPE_FUTURE_OPTION = 1024,
};

// The kind of an account, by its broker gateway.
enum EVQBrokerType {
    VQ_BROKER_TYPE_NONE = 0,
    VQ_BROKER_TYPE_STOCK = 1,
    VQ_BROKER_TYPE_FUTURE = 2,
    VQ_BROKER_TYPE_FUTURE_OPTION = 5,
    VQ_BROKER_TYPE_STOCK_OPTION = 6,
};

// Character codes, as the exchanges' gateways spell them.
enum EHedge_Flag_Type {
    HF_SPECULATION = '1',  // 49
    HF_ARBITRAGE = '2',
    HF_HEDGE = '3',
};

enum EOperationType {
    OT_NONE = -1,
    // Commodity (future) options.
    OT_OPEN_LONG = 0,
    OT_CLOSE_LONG = 1,
    OT_CLOSE_LONG_TODAY = 2,
    OT_OPEN_SHORT = 3,
    OT_CLOSE_SHORT = 4,
    OT_CLOSE_SHORT_TODAY = 5,
    // The two sides of a strategy leg.
    OT_BUY = 18,
    OT_SELL = 19,
    // Stock options.
    OT_BUY_OPEN = 32,
    OT_SELL_CLOSE = 33,
    OT_SELL_OPEN = 34,
    OT_BUY_CLOSE = 35,
    OT_COVERED_OPEN = 36,
    OT_COVERED_CLOSE = 37,
    // Combination positions of stock-option accounts.
    OT_COMB_STRATEGY_BUILD = 1090,
    OT_COMB_STRATEGY_RELEASE = 1091,
};

enum EPriceType {
    PT_NONE = -1,
    PT_ASK5 = 0,
    PT_ASK4 = 1,
    PT_ASK3 = 2,
    PT_ASK2 = 3,
    PT_ASK1 = 4,
    PT_LAST = 5,
    PT_BID1 = 6,
    PT_BID2 = 7,
    PT_BID3 = 8,
    PT_BID4 = 9,
    PT_BID5 = 10,
    PT_FIX = 11,          // the typed price
    PT_LIMIT_UP_DOWN = 12,  // the limit price; the market price for future options
    PT_QUEUE = 13,        // the best price of one's own side
    PT_OPPONENT = 14,     // the best price of the other side
    PT_FIX_FOK = 26,      // limit, all or cancel
    PT_MARKET_FAK = 27,   // market, fill and cancel the rest
    PT_MARKET_FOK = 28,   // market, all or cancel
    PT_MARKET_TO_LIMIT = 29,  // market, the rest turns into a limit order
};

enum EOffset_Flag_Type {
    OF_OPEN = '0',  // 48
    OF_CLOSE = '1',
    OF_FORCE_CLOSE = '2',
    OF_CLOSE_TODAY = '3',
    OF_CLOSE_YESTERDAY = '4',
};

enum EEntrustBS {
    EBS_BUY = '0',   // 48
    EBS_SELL = '1',  // 49
};

// The tables of an account.
enum EVQ_DATA_TYPE {
    VQ_DATA_TYPE_NONE = 0,
    VQ_DATA_TYPE_DEAL = 540,
    VQ_DATA_TYPE_TASK = 541,
    VQ_DATA_TYPE_ORDER = 542,
    VQ_DATA_TYPE_POSITION = 543,
    VQ_DATA_TYPE_ACCOUNT_DETAIL = 544,
    VQ_DATA_TYPE_POSITION_STATICS = 547,
    VQ_DATA_TYPE_QUICK_ORDER = 570,
    VQ_DATA_TYPE_STK_OPT_COMB_POSITION = 1030,
};

enum EBROKER_LOGIN_STATUS {
    BLS_NONE = 0,
    BLS_CONNECTING = 1,
    BLS_LOGINING = 2,
    BLS_LOGIN_FAILED = 3,
    BLS_INIT_DATA = 4,
    BLS_READY = 5,
    BLS_DISCONNECTED = 6,
    BLS_LOGOUT = 7,
};

enum EVqHedgeType {
    VQ_HEDGE_TYPE_NONE = 0,
    VQ_HEDGE_TYPE_DELTA = 1,
};

enum EVqStopLossType {
    VQ_STOP_LOSS_NONE = 0,
    VQ_STOP_LOSS_PRICE = 1,
};

enum EPositionType {
    PT_POSITION_NONE = 0,
    PT_POSITION_LONG = 1,
    PT_POSITION_SHORT = 2,
};

// Kinds of extra parameters an order may carry; they are bits of the order's
// extra flag word.
enum EVqExtraOrderParamType {
    VQ_EXTRA_PARAM_NONE = 0,
    VQ_EXTRA_PARAM_OPTION_COMB_STRATEGY = 64,
};

// Level of a message shown in the client's message area.
enum MsgLevel {
    ML_INFO = 0,
    ML_WARNING = 1,
    ML_ERROR = 2,
};

// The order of a command: single orders or a basket.
enum EOrderKind {
    OK_NORMAL = 0,
    OK_SINGLE = 5,
};

// Life of an order.
enum EOrderStatus {
    OS_UNKNOWN = 0,
    OS_PENDING = 1,         // accepted by the gateway, not yet at the exchange
    OS_WORKING = 2,         // in the book, nothing traded
    OS_PARTIAL = 3,         // in the book, partly traded
    OS_FILLED = 4,
    OS_CANCELLED = 5,       // the rest cancelled; a part may have traded
    OS_REJECTED = 6,
    OS_CANCEL_PENDING = 7,  // cancel asked, not yet confirmed
};

// Further choices of a command that the panels leave at their first value.
enum ETradePlatform {
    TP_DEFAULT = 0,
};

enum EVqLimitedPriceType {
    VQ_LIMITED_PRICE_NONE = 0,
};

enum EtfHedgeStatus {
    ETF_HEDGE_STATUS_NONE = -1,
    ETF_HEDGE_STATUS_OFF = 0,
    ETF_HEDGE_STATUS_ON = 1,
};

// Whether an account may be asked for its tables.
inline bool isLoginStatusReady(EBROKER_LOGIN_STATUS status) { return status == BLS_READY; }

}  // namespace nqservice

namespace TC {

// Kinds of messages shown through the message service.
enum EMsgTypeDef {
    MTD_NONE = 0,
    MTD_TRADE = 1,
    MTD_ORDER = 2,
    MTD_SYSTEM = 3,
    MTD_OPERATION = 4,
};

}  // namespace TC
