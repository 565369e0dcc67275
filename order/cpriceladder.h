// The rows of the one-click price ladder, worked out from one quote: a centre
// on the market, prices a tick apart down from the top row, and the market's
// bid and ask volumes on the rows of their prices. No widget: the ladder table
// writes what this gives.
#pragma once

#include "seam/cpricedata.h"

#include <QString>
#include <QVector>

namespace TC {

struct CLadderRow {
    QString priceText;      // empty: the row stays blank (its price would not be above 0)
    double price = 0.0;     // the price as the text reads
    int bidVolume = 0x7fffffff;  // 0x7fffffff: no level on this price
    int askVolume = 0x7fffffff;
    bool bestBid = false;
};

class CPriceLadder {
public:
    // An infinity, a NaN, the absent marker, or a value whose 32-bit truncation is 0x7fffffff.
    static bool unusable(double value);
    // The ladder's centre: the last price; in a call auction with a two-sided
    // book the middle of bid 1 and ask 1; else, while unusable, that middle,
    // the previous close, the reference price.
    static double centre(const CPriceData& price, int tradingPhase);
    // rowCount rows from the top (rowCount / 2 ticks above the centre) down.
    static QVector<CLadderRow> rows(const CPriceData& price, double tick, int tradingPhase, int rowCount);
};

}  // namespace TC
