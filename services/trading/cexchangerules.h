// The exchanges' rules that the paper broker and the instrument tables share:
// the margin of a short option, the largest order, the fees a paper account
// pays. Pure functions of instrument terms and prices; no state.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"

#include <boost/shared_ptr.hpp>

namespace trading {

class CExchangeRules {
public:
    // Exchange minimum margin of one short contract in 元.
    // SSE/SZSE call: [settle + max(12% S - OTM, 7% S)] x unit, OTM = max(K - S, 0);
    // put: min[settle + max(12% S - OTM, 7% K), K] x unit, OTM = max(S - K, 0).
    // DCE: max(premium + futures margin - OTM/2, premium + futures margin/2), the
    // futures margin being futuresMarginRatio x F x unit.
    // Absent when an input is missing.
    static double shortOptionMargin(const nqservice::CInstrumentDetail& option, double optionSettle,
                                    double underlyingPrice, double futuresMarginRatio = kDceFuturesMarginRatio);

    // Largest volume of one order: SSE/SZSE limit orders 50 (上证发〔2019〕119号),
    // market orders 10; DCE the instrument's own figure for both.
    static int maxOrderVolume(const nqservice::CInstrumentDetail& instrument, nqservice::EPriceType priceType);

    // The fees of a paper account per contract, with the broker's margin markup:
    // stock options pay commission 2.0 + exchange handling 1.3 + clearing 0.3 元,
    // a sell to open (and a covered open) only the commission; commodity options
    // 1.0 元 a lot plus 0.5 元 commission, closing today's lots at the same rate.
    static boost::shared_ptr<nqservice::CInstrumentFee> paperFee(const std::string& accountId,
                                                                const nqservice::CInstrumentDetail& instrument);

    // The broker's margin over the exchange's minimum, as a fraction.
    static constexpr double kBrokerMarginMarkup = 0.10;
    // The soybean meal futures' exchange margin rate.
    static constexpr double kDceFuturesMarginRatio = 0.08;
    // Position limits per underlying (SZSE notice; SSE the same): long 5,000, all 10,000.
    static constexpr long long kLongPositionLimit = 5000;
    static constexpr long long kTotalPositionLimit = 10000;
    static constexpr int kStockOptionMarketOrderLimit = 10;
    // Exercise fee of a stock option per contract (exchange and clearing).
    static constexpr double kStockOptionExerciseFee = 0.6;
    static constexpr int kStockOptionLimitOrderLimit = 50;
};

}  // namespace trading
