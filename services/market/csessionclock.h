// The exchanges' trading sessions: the phase of a market at a local exchange
// time, and the trading seconds left in a day. Stateless; the time comes from
// whichever clock the caller holds (the desk's simulated clock or the system's).
#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>

#include <string>

namespace market {

class CSessionClock {
public:
    // Stock exchanges (SH, SZ): 9:15-9:25 opening call auction, 9:25-9:30 matched,
    // 9:30-11:30 and 13:00-14:57 continuous, 14:57-15:00 closing call auction.
    // Commodity exchanges: 8:55-9:00 and 20:55-21:00 call auction, continuous
    // 9:00-10:15, 10:30-11:30, 13:30-15:00 and the night 21:00-23:00.
    // Weekends give TP_NOT_TRADING.
    static int phaseAt(const std::string& market, const QDateTime& exchangeLocal);
    // Seconds of trading (continuous and closing auction) left in the day session
    // after the time; the whole day before the open, 0 after the close and on
    // non-trading days.
    static int remainingSeconds(const std::string& market, const QDateTime& exchangeLocal);
    // Trading seconds of a full day session.
    static int sessionSeconds(const std::string& market);

    static bool isStockMarket(const std::string& market);
    // Weekdays that are not the exchanges' public holidays (tables for 2023,
    // 2026 and 2027; other years close only at weekends).
    static bool isTradingDay(const QDate& date);
    static bool isHoliday(const QDate& date);
    static QDate nextTradingDay(const QDate& date);
    // The trading day a time belongs to: the commodity exchanges' night session
    // (from the 20:55 call auction on) counts for the next trading day.
    static QDate tradingDayOf(const std::string& market, const QDateTime& exchangeLocal);
};

}  // namespace market
