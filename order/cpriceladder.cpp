#include "order/cpriceladder.h"

#include "seam/common.h"
#include "seam/formatters.h"

#include <cmath>
#include <limits>

namespace TC {

namespace {

bool isCallAuction(int phase) { return phase == 51 || phase == 52 || phase == 53; }

// A level's price on the tick grid, as the ladder's rows stand.
double onTick(double price, double tick) { return static_cast<double>(static_cast<long long>(price / tick + 0.5)) * tick; }

int volumeAt(double rowPrice, double tick, const CPriceData& price, bool bid, bool& levelOne)
{
    levelOne = false;
    for (int level = 1; level <= 5; ++level) {
        const double levelPrice = bid ? price.bidPrice(level) : price.askPrice(level);
        if (CPriceLadder::unusable(levelPrice)) {
            continue;  // an empty level matches no row
        }
        if (std::fabs(onTick(levelPrice, tick) - rowPrice) <= utils::kPriceTolerance) {
            levelOne = level == 1;
            return bid ? price.bidVolume(level) : price.askVolume(level);
        }
    }
    return 0x7fffffff;
}

}  // namespace

bool CPriceLadder::unusable(double value)
{
    if (!std::isfinite(value) || utils::isAbsent(value)) {
        return true;
    }
    if (std::fabs(value) >= 2147483648.0) {
        return static_cast<long long>(value) == 0x7fffffff;
    }
    return static_cast<int>(value) == 0x7fffffff;
}

double CPriceLadder::centre(const CPriceData& price, int tradingPhase)
{
    double centre = price.lastPrice;
    const bool twoSided = !(std::fabs(price.bidPrice1) <= utils::kPriceTolerance &&
                            std::fabs(price.askPrice1) <= utils::kPriceTolerance);
    if (isCallAuction(tradingPhase) && twoSided) {
        centre = (price.bidPrice1 + price.askPrice1) * 0.5;
    } else if (unusable(centre)) {
        centre = (price.askPrice1 + price.bidPrice1) * 0.5;
    }
    if (unusable(centre)) {
        centre = price.preClose;
    }
    if (unusable(centre)) {
        centre = price.referencePrice;
    }
    return centre;
}

QVector<CLadderRow> CPriceLadder::rows(const CPriceData& price, double tick, int tradingPhase, int rowCount)
{
    QVector<CLadderRow> out(rowCount);
    if (!(tick > 0.0) || unusable(tick)) {
        return out;
    }
    const double top = (rowCount / 2) * tick + centre(price, tradingPhase);
    for (int i = 0; i < rowCount; ++i) {
        double p = top - i * tick;
        if (!(p - 0.0 > utils::kPriceTolerance)) {
            break;  // rows under a price of 0 stay empty
        }
        CLadderRow& row = out[i];
        row.priceText = WG::formatPriceDoubleNumber(p, tick);
        p = row.priceText.toDouble();
        row.price = p;
        bool best = false;
        row.bidVolume = volumeAt(p, tick, price, true, best);
        row.bestBid = best;
        row.askVolume = volumeAt(p, tick, price, false, best);
    }
    return out;
}

}  // namespace TC
