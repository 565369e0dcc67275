#include "services/trading/cexchangerules.h"

#include "seam/common.h"
#include "seam/tradinghelpers.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace trading {

double CExchangeRules::shortOptionMargin(const nqservice::CInstrumentDetail& option, double optionSettle,
                                         double underlyingPrice, double futuresMarginRatio)
{
    const double unit = option.contractUnit;
    const double strike = option.exercisePrice;
    if (!utils::isUsable(unit) || !utils::isUsable(strike) || !utils::isUsable(optionSettle) ||
        !utils::isUsable(underlyingPrice) || underlyingPrice <= 0.0) {
        return utils::kAbsentDouble;
    }
    if (option.kind == nqservice::IK_FUTURE_OPTION) {
        const double premium = optionSettle * unit;
        const double futuresMargin = futuresMarginRatio * underlyingPrice * unit;
        const double otm = (option.call ? std::max(strike - underlyingPrice, 0.0)
                                        : std::max(underlyingPrice - strike, 0.0)) *
                           unit;
        return std::max(premium + futuresMargin - 0.5 * otm, premium + 0.5 * futuresMargin);
    }
    const double s = underlyingPrice;
    if (option.call) {
        const double otm = std::max(strike - s, 0.0);
        return (optionSettle + std::max(0.12 * s - otm, 0.07 * s)) * unit;
    }
    const double otm = std::max(s - strike, 0.0);
    return std::min(optionSettle + std::max(0.12 * s - otm, 0.07 * strike), strike) * unit;
}

int CExchangeRules::maxOrderVolume(const nqservice::CInstrumentDetail& instrument, nqservice::EPriceType priceType)
{
    if (instrument.kind == nqservice::IK_STOCK_OPTION) {
        return nqservice::isRealMarketPrice(priceType) ? kStockOptionMarketOrderLimit : kStockOptionLimitOrderLimit;
    }
    return utils::isUsable(instrument.maxOrderVolume) && instrument.maxOrderVolume > 0 ? instrument.maxOrderVolume
                                                                                      : 1000;
}

boost::shared_ptr<nqservice::CInstrumentFee> CExchangeRules::paperFee(const std::string& accountId,
                                                                    const nqservice::CInstrumentDetail& instrument)
{
    auto fee = boost::make_shared<nqservice::CInstrumentFee>();
    fee->accountId = accountId;
    fee->market = instrument.market;
    fee->code = instrument.code;
    fee->marginRatio = kBrokerMarginMarkup;
    if (instrument.kind == nqservice::IK_FUTURE_OPTION) {
        const double lot = 1.0 + 0.5;
        fee->openBuyFee = fee->openSellFee = lot;
        fee->closeBuyFee = fee->closeSellFee = lot;
        fee->closeTodayBuyFee = fee->closeTodaySellFee = lot;
        return fee;
    }
    const double commission = 2.0;
    const double full = commission + 1.3 + 0.3;
    fee->openBuyFee = full;
    fee->openSellFee = commission;  // handling and clearing are waived for a sell to open
    fee->closeBuyFee = fee->closeSellFee = full;
    fee->closeTodayBuyFee = fee->closeTodaySellFee = full;
    return fee;
}

}  // namespace trading
