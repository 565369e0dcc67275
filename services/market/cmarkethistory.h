// The history of the simulated market of one seed: every underlying's daily
// close on a seeded path from a fixed epoch, the contracts the exchanges list
// along it (months, strikes added as the price moves, codes dealt out in listing
// order) and each day's settlement. Any day is built by replaying the listings
// from the epoch, so a day reached directly equals the one reached day by day.
// It holds no state between calls and is safe to use from any thread.
#pragma once

#include "seam/cinstrumentdetail.h"

#include <QDate>
#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace market {

using TInstrumentList = std::vector<std::shared_ptr<nqservice::CInstrumentDetail>>;

// One trading day of the market: the instruments as they open (previous close
// and settlement are the last trading day's), and how the day ends.
struct CMarketDay {
    QDate date;
    TInstrumentList instruments;
    // By instrument key: the day's closing price of every instrument, and the
    // settlement price (options and futures; for the funds their close).
    QHash<QString, double> closes;
    QHash<QString, double> settlements;
};

class CMarketHistory {
public:
    explicit CMarketHistory(unsigned seed) : m_seed(seed) {}

    // The first trading day of every history; dates before it give its universe.
    static QDate epoch();

    // The market of a date (a day without trading gives the universe of that date
    // with the last trading day's prices).
    CMarketDay day(const QDate& date) const;

    // The volatility smile the settlements are made with, around an underlying's
    // historical volatility: vol = hv (1 + skew k + curvature k^2), k the log
    // moneyness per square root of the years left. The feed prices with it too,
    // so that its book at the close stands on the settlement.
    static double smileSkew(bool stockMarket) { return stockMarket ? -0.08 : 0.02; }
    static double smileCurvature() { return 0.06; }

private:
    const unsigned m_seed;
};

}  // namespace market
