#include "services/market/csessionclock.h"

#include "seam/cinstrumentdetail.h"
#include "seam/marketenums.h"

#include <algorithm>

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

}  // namespace

bool CSessionClock::isStockMarket(const std::string& market)
{
    return market == nqservice::kMarketSSE || market == nqservice::kMarketSZSE;
}

bool CSessionClock::isTradingDay(const QDate& date)
{
    return date.isValid() && date.dayOfWeek() <= 5;
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
