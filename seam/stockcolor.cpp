#include "seam/stockcolor.h"

#include "seam/common.h"

#include <cmath>

namespace TC {

const char* getStockColorKey(double value, double reference)
{
    if (utils::isAbsent(value) || utils::isAbsent(reference) || std::isnan(value) || std::isnan(reference)) {
        return "tc_clr_priceT_equal";
    }
    if (utils::isWithinTolerance(value, reference)) {
        return "tc_clr_priceT_equal";
    }
    return value > reference ? "tc_clr_priceT_rise" : "tc_clr_priceT_fall";
}

}  // namespace TC
