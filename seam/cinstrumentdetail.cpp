#include "seam/cinstrumentdetail.h"

namespace nqservice {

std::string CInstrumentDetail::getTextField(int id) const
{
    switch (id) {
    case IF_TRADING_CODE:
        return tradingCode;
    case IF_UNDERLYING_CODE:
        return underlyingCode;
    case IF_UNDERLYING_MARKET:
        return underlyingMarket;
    default:
        return std::string();
    }
}

int CInstrumentDetail::getIntField(int id) const
{
    switch (id) {
    case IF_PREMIUM_BASE:
        return utils::isUsable(contractUnit) ? static_cast<int>(std::lround(contractUnit)) : utils::kAbsentInt;
    case IF_MAX_ORDER_VOLUME:
        return maxOrderVolume;
    default:
        return utils::kAbsentInt;
    }
}

double CInstrumentDetail::getDoubleField(int id) const
{
    switch (id) {
    case IF_PRE_SETTLEMENT:
        return preSettlementPrice;
    case IF_CONTRACT_UNIT:
        return contractUnit;
    case IF_MARGIN_PARAMETER:
        return marginParameter;
    case IF_EXERCISE_PRICE:
        return exercisePrice;
    case IF_RISK_FREE_RATE:
        return riskFreeRate;
    case IF_HISTORY_VOLATILITY:
        return historyVolatility;
    default:
        return utils::kAbsentDouble;
    }
}

int CInstrumentDetail::getCodeField(int id) const
{
    return id == IF_LAST_EXERCISE_DATE ? lastExerciseDate : utils::kAbsentInt;
}

}  // namespace nqservice
