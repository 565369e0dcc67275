#include "seam/marketenums.h"

namespace nqservice {

std::string stockOptionStatusName(int value)
{
    switch (value) {
    case SOS_SUSPENDED:
        return "停牌";
    case SOS_VOLATILITY_BREAK:
        return "波动性中断";
    case SOS_NEAR_EXPIRY:
        return "临近到期";
    case SOS_RECENTLY_ADJUSTED:
        return "近期调整";
    case SOS_NEWLY_LISTED:
        return "新挂牌";
    case SOS_NORMAL:
    default:
        return "-";
    }
}

}  // namespace nqservice
