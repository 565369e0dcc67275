#include "strategy/cstrategystatistics.h"

namespace TC {

namespace {

// An integer sum stays absent once a cell or the running sum is.
void addInt(int& sum, int value)
{
    if (utils::isAbsent(sum) || utils::isAbsent(value)) {
        sum = utils::kAbsentInt;
        return;
    }
    const long long next = static_cast<long long>(sum) + value;
    sum = next >= utils::kAbsentInt || next < -static_cast<long long>(utils::kAbsentInt) ? utils::kAbsentInt
                                                                                          : static_cast<int>(next);
}

// A double sum stays absent once a cell or the running sum is invalid.
void addDouble(double& sum, double value)
{
    if (!CStrategyStatistics::isValid(sum) || !CStrategyStatistics::isValid(value)) {
        sum = utils::kAbsentDouble;
        return;
    }
    sum += value;
    if (!CStrategyStatistics::isValid(sum)) {
        sum = utils::kAbsentDouble;
    }
}

}  // namespace

double CStrategyStatistics::legMargin(double marginParameter, long long quantity)
{
    if (!isValid(marginParameter) || utils::isAbsent(quantity)) {
        return utils::kAbsentDouble;
    }
    return marginParameter * static_cast<double>(quantity) * kMarginCushion;
}

QVector<double> CStrategyStatistics::absoluteWeights(const QVector<double>& weights)
{
    double total = 0.0;
    for (double weight : weights) {
        total += weight;
    }
    QVector<double> shares;
    shares.reserve(weights.size());
    for (double weight : weights) {
        shares.push_back(total == 0.0 ? 0.0 : weight / total);
    }
    return shares;
}

CStrategyStatRow CStrategyStatistics::sum(const QVector<CStrategyRowValues>& rows)
{
    CStrategyStatRow stat;
    for (const CStrategyRowValues& row : rows) {
        addInt(stat.quantity, row.quantity);
        addInt(stat.volume, row.volume);
        addDouble(stat.margin, row.margin);
        addDouble(stat.weight, row.weight);
        for (int i = 0; i < 5; ++i) {
            const double product = utils::isAbsent(row.quantity) || !isValid(row.greeks[i])
                                       ? utils::kAbsentDouble
                                       : row.quantity * row.greeks[i];
            addDouble(stat.greeks[i], product);
        }
    }
    return stat;
}

}  // namespace TC
