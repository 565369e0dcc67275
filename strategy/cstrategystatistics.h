// The arithmetic of the strategy table: a leg's margin, the absolute weights and
// the statistics row that adds the legs up. Plain numbers in, plain numbers
// out, with the absent markers of the seam; no table, no widget.
#pragma once

#include "seam/common.h"

#include <QVector>

namespace TC {

// What the statistics row reads of one leg's row.
struct CStrategyRowValues {
    int quantity = utils::kAbsentInt;  // "数量", an integer cell
    int volume = utils::kAbsentInt;    // "成交量"
    double margin = utils::kAbsentDouble;   // "保证金"
    double weight = utils::kAbsentDouble;   // "相对权重"
    double greeks[5] = {utils::kAbsentDouble, utils::kAbsentDouble, utils::kAbsentDouble, utils::kAbsentDouble,
                        utils::kAbsentDouble};  // delta, gamma, theta, vega, rho
};

// The statistics row: sums, or the absent marker once any part was absent.
struct CStrategyStatRow {
    int quantity = 0;
    int volume = 0;
    double margin = 0.0;
    double weight = 0.0;
    double greeks[5] = {0.0, 0.0, 0.0, 0.0, 0.0};  // each the sum of quantity times the leg's Greek
};

class CStrategyStatistics {
public:
    // The exchange's margin of one short contract is quoted per contract: a leg
    // needs it times its contracts, with a fifth on top as the broker's cushion.
    static constexpr double kMarginCushion = 1.2;

    // A value counts when it lies more than 1e-5 from the absent marker.
    static bool isValid(double value) { return !utils::isAbsent(value); }
    // Field 3007 times the quantity times 1.2; absent when the field is.
    // A sold leg's margin is computed the same way as a bought one's.
    static double legMargin(double marginParameter, long long quantity);
    // Each weight's share of their total; every share 0 when the total is 0.
    static QVector<double> absoluteWeights(const QVector<double>& weights);
    // The statistics row. The direction of a leg does not enter: a sold leg adds
    // its Greeks with a positive sign, as a bought one does.
    static CStrategyStatRow sum(const QVector<CStrategyRowValues>& rows);
};

}  // namespace TC
