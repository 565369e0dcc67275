// The arithmetic of the expiry payoff curve, without a widget: the legs as the
// services know them, the anchor and strikes, the price grid around the
// anchor, the payoff at each price, and the script that hands the series to
// the chart page. The curve works per unit of the underlying: quantities,
// weights and multipliers of the legs do not enter.
#pragma once

#include "seam/common.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

#include <string>
#include <vector>

namespace TC {

// One leg of the curve as the services answer for it at one moment.
struct CProfitAndLossLeg {
    QString key;                              // the text the leg came with
    int direction = 18;                       // 18 buy; anything else counts as a sale
    bool hasInstrument = false;
    bool hasPrice = false;                    // the quote service had a record
    bool call = false;                        // by the instrument's name
    double strike = utils::kAbsentDouble;     // field 3008
    double last = utils::kAbsentDouble;       // latest price of the option
};

class CProfitAndLossCurve {
public:
    static constexpr int kBuy = 18;
    static constexpr int kSell = 19;
    static constexpr int kDefaultWidth = 750;
    static constexpr double kGridStep = 0.05;
    // The grid reaches this far beyond the outer strikes.
    static constexpr double kGridMargin = 1.0;

    enum EOutcome {
        OC_NO_STRIKE,       // no leg with a valid strike and price: nothing to draw
        OC_LENGTH_MISMATCH, // prices and values differ in length: nothing to draw
        OC_DRAWN,           // the script is ready
    };

    struct SSeries {
        EOutcome outcome = OC_NO_STRIKE;
        double anchor = 0.0;
        std::vector<double> strikes;  // ascending
        std::vector<double> prices;   // ascending
        std::vector<double> values;
        QString script;               // "loadChart('{...}')" when drawn
    };

    // A call when the UTF-8 name holds "购" or the letter "C".
    static bool isCallByName(const std::string& name);
    // The legs of the map in key order, asked of the exchange and quote services
    // by their keys as they stand.
    static std::vector<CProfitAndLossLeg> collectLegs(const QMap<QString, int>& legOperations);

    // The anchor: per leg with a new, valid strike and a valid latest price,
    // K + L for a call either way, K - L for a bought put, L - K for a sold put.
    // Fills strikes in leg order (not sorted).
    static double anchorAndStrikes(const std::vector<CProfitAndLossLeg>& legs, std::vector<double>& strikes);
    // Prices from the anchor outwards in steps of 0.05 while within [low, high],
    // the anchor itself always included; ascending.
    static std::vector<double> priceGrid(double anchor, double low, double high);
    // The position's expiry payoff at one price: every leg with an instrument
    // and a price record, valid or not.
    static double payoffAt(const std::vector<CProfitAndLossLeg>& legs, double price);
    // The chart page's call for a series of equal length, else an empty text.
    static QString chartScript(int width, const std::vector<double>& prices, const std::vector<double>& values);
    // The page's theme call: setTheme('dark', {"rise":"#ff3b30",...}) with the
    // colours by role (rise, fall, background, text, grid, mark), in their order.
    static QString themeScript(const QString& themeName, const QList<QPair<QString, QString>>& colours);
    // One point as the page takes it: "[price,value]", four decimals, "非法值" for a value that can't show.
    static QString formatPoint(double price, double value);

    // Strikes, anchor, grid, payoff and script for the legs; a length mismatch
    // is logged on behalf of owner (the widget).
    static SSeries build(int width, const std::vector<CProfitAndLossLeg>& legs, const void* owner);
    // The script for a series, or OC_LENGTH_MISMATCH with the log line on behalf of owner.
    static SSeries fromSeries(int width, std::vector<double> prices, std::vector<double> values, const void* owner);
    // The error line of a series whose lengths differ, as the log shows it.
    static void logLengthMismatch(const void* owner);
};

}  // namespace TC
