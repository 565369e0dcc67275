#include "services/market/csessionclock.h"

#include "seam/cinstrumentdetail.h"
#include "seam/marketenums.h"

#include <algorithm>
#include <iterator>

namespace market {

namespace {

struct Span {
    int from;  // seconds of the day, inclusive
    int to;    // exclusive
    int phase;
};

constexpr int hm(int hour, int minute) { return hour * 3600 + minute * 60; }

// Times not covered by a span are breaks inside the day, or before the first span.
const Span kStockSpans[] = {
    {hm(9, 15), hm(9, 25), TC::TP_OPEN_CALL_AUCTION},   {hm(9, 25), hm(9, 30), TC::TP_AUCTION_MATCHED},
    {hm(9, 30), hm(11, 30), TC::TP_CONTINUOUS},         {hm(11, 30), hm(13, 0), TC::TP_NOT_TRADING},
    {hm(13, 0), hm(14, 57), TC::TP_CONTINUOUS},         {hm(14, 57), hm(15, 0), TC::TP_CLOSE_CALL_AUCTION},
    {hm(15, 0), hm(24, 0), TC::TP_CLOSED},
};
const Span kFutureSpans[] = {
    {hm(8, 55), hm(9, 0), TC::TP_OPEN_CALL_AUCTION},   {hm(9, 0), hm(10, 15), TC::TP_CONTINUOUS},
    {hm(10, 15), hm(10, 30), TC::TP_NOT_TRADING},      {hm(10, 30), hm(11, 30), TC::TP_CONTINUOUS},
    {hm(11, 30), hm(13, 30), TC::TP_NOT_TRADING},      {hm(13, 30), hm(15, 0), TC::TP_CONTINUOUS},
    {hm(15, 0), hm(20, 55), TC::TP_CLOSED},            {hm(20, 55), hm(21, 0), TC::TP_OPEN_CALL_AUCTION},
    {hm(21, 0), hm(23, 0), TC::TP_CONTINUOUS},         {hm(23, 0), hm(24, 0), TC::TP_CLOSED},
};

// Trading spans of the day session, for the seconds left.
const Span kStockTrading[] = {{hm(9, 30), hm(11, 30), 0}, {hm(13, 0), hm(15, 0), 0}};
const Span kFutureTrading[] = {{hm(9, 0), hm(10, 15), 0}, {hm(10, 30), hm(11, 30), 0}, {hm(13, 30), hm(15, 0), 0}};

template <std::size_t N>
int phaseOf(const Span (&spans)[N], int second)
{
    for (const Span& span : spans) {
        if (second >= span.from && second < span.to) {
            return span.phase;
        }
    }
    return TC::TP_BEFORE_OPEN;
}

template <std::size_t N>
int secondsLeft(const Span (&spans)[N], int second)
{
    int total = 0;
    for (const Span& span : spans) {
        total += std::max(0, span.to - std::max(span.from, second));
    }
    return total;
}

int secondOfDay(const QDateTime& time) { return time.time().msecsSinceStartOfDay() / 1000; }

// Weekdays the SSE, SZSE and DCE stay closed, as yyyymmdd, sorted. 2023 and 2026
// follow the State Council's holiday notices; 2027 is laid out from the lunar
// calendar the same way until its notice is out.
const int kHolidays[] = {
    // 2023: New Year, Spring Festival, Qingming, Labour Day, Dragon Boat, Mid-Autumn and National Day
    20230102, 20230123, 20230124, 20230125, 20230126, 20230127, 20230405, 20230501, 20230502, 20230503,
    20230622, 20230623, 20230929, 20231002, 20231003, 20231004, 20231005, 20231006,
    // 2026
    20260101, 20260102, 20260216, 20260217, 20260218, 20260219, 20260220, 20260223, 20260406, 20260501,
    20260504, 20260505, 20260619, 20260925, 20261001, 20261002, 20261005, 20261006, 20261007,
    // 2027 (Spring Festival on 6 February)
    20270101, 20270205, 20270208, 20270209, 20270210, 20270211, 20270405, 20270503, 20270504, 20270505,
    20270609, 20270915, 20271001, 20271004, 20271005, 20271006, 20271007,
};

constexpr int kNightAuctionStart = hm(20, 55);

}  // namespace

bool CSessionClock::isStockMarket(const std::string& market)
{
    return market == nqservice::kMarketSSE || market == nqservice::kMarketSZSE;
}

bool CSessionClock::isTradingDay(const QDate& date)
{
    return date.isValid() && date.dayOfWeek() <= 5 && !isHoliday(date);
}

bool CSessionClock::isHoliday(const QDate& date)
{
    const int key = date.year() * 10000 + date.month() * 100 + date.day();
    return std::binary_search(std::begin(kHolidays), std::end(kHolidays), key);
}

QDate CSessionClock::tradingDayOf(const std::string& market, const QDateTime& exchangeLocal)
{
    const QDate date = exchangeLocal.date();
    if (!isStockMarket(market) && secondOfDay(exchangeLocal) >= kNightAuctionStart) {
        return nextTradingDay(date);
    }
    return date;
}

QDate CSessionClock::nextTradingDay(const QDate& date)
{
    QDate next = date.addDays(1);
    while (!isTradingDay(next)) {
        next = next.addDays(1);
    }
    return next;
}

int CSessionClock::phaseAt(const std::string& market, const QDateTime& exchangeLocal)
{
    if (!isTradingDay(exchangeLocal.date())) {
        return TC::TP_NOT_TRADING;
    }
    const int second = secondOfDay(exchangeLocal);
    return isStockMarket(market) ? phaseOf(kStockSpans, second) : phaseOf(kFutureSpans, second);
}

int CSessionClock::remainingSeconds(const std::string& market, const QDateTime& exchangeLocal)
{
    if (!isTradingDay(exchangeLocal.date())) {
        return 0;
    }
    const int second = secondOfDay(exchangeLocal);
    return isStockMarket(market) ? secondsLeft(kStockTrading, second) : secondsLeft(kFutureTrading, second);
}

int CSessionClock::sessionSeconds(const std::string& market)
{
    return isStockMarket(market) ? secondsLeft(kStockTrading, 0) : secondsLeft(kFutureTrading, 0);
}

}  // namespace market
