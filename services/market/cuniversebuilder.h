// The instrument universe of a trading day: ETF options of the SSE and SZSE on
// their listed months and strike ladders, adjusted contracts, and a commodity
// futures option family with its futures, as the market history of the seed
// has them on that date. Also the exchanges' listing rules the history follows.
#pragma once

#include "services/market/cmarkethistory.h"

#include <QDate>

#include <vector>

namespace market {

class CUniverseBuilder {
public:
    static TInstrumentList build(unsigned seed, const QDate& tradingDate);

    // The exchanges' rules, public for tests and for the market model.
    // Expiry of an ETF option month: its fourth Wednesday.
    static QDate fourthWednesday(int year, int month);
    // Last trading day of an ETF option month: its fourth Wednesday, or the next
    // trading day when a holiday closes the exchange on it.
    static QDate etfOptionExpiry(int year, int month);
    // The four listed months of ETF options on a date: this month (the next one
    // once this month's contracts have expired), the next month, and the next two
    // quarter months after it. Each entry is the first day of the month.
    static std::vector<QDate> listedMonths(const QDate& tradingDate);
    // Strike interval for a strike at or above `price` on the ETF option grid.
    static double strikeStep(double price);
    // The grid strike nearest to a price, and the neighbours of a grid strike.
    static double nearestStrike(double price);
    static double nextStrikeUp(double strike);
    static double nextStrikeDown(double strike);
    // Strike interval of the soybean meal option.
    static double futureStrikeStep(double price);
    // Last trading day of a future option: the fifth trading day of the month
    // before the future's delivery month.
    static QDate futureOptionExpiry(int deliveryYear, int deliveryMonth);
    // Rounds to a multiple of the tick, avoiding binary noise.
    static double roundToTick(double value, double tick);
};

}  // namespace market
