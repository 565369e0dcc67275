// The Greeks of one leg of a basket, from its instrument, the option's and the
// underlying's prices, the day and the user's choices (benchmark, Kelvan mode,
// stored volatilities). Widget-free: the strategy table calls it per row.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"

#include <QDateTime>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <memory>

namespace TC {

struct CStrategyLegInput {
    std::shared_ptr<nqservice::CInstrumentDetail> instrument;
    double optionLastPrice = utils::kAbsentDouble;  // the option's current price (Kelvan mode only)
    boost::shared_ptr<CPriceData> underlying;      // the underlying's price record; null when none
    QDateTime now;                                  // exchange local time
    int benchmark = 0;                              // nqservice::EOptionGreekBenchmark
    bool kelvanMode = false;                        // volatility implied from the price, not field 3012
};

struct CStrategyLegGreeks {
    bool valid = false;  // false: the row is left as it is
    double values[5] = {utils::kAbsentDouble, utils::kAbsentDouble, utils::kAbsentDouble, utils::kAbsentDouble,
                        utils::kAbsentDouble};  // delta, gamma, theta, vega, rho
    double days = 0.0;
    double seconds = 0.0;
    double volatility = utils::kAbsentDouble;
};

class CStrategyLegFigures {
public:
    // "购" or the letter C in the name marks a call.
    static bool isCallByName(const QString& name);
    // Days from now's date to the expiry yyyymmdd; 0x7fffffff for a text that is no date.
    static double daysToExpiry(int expireDate, const QDateTime& now);
    // The seconds left until 23:59:59 of now's day.
    static double secondsToDayEnd(const QDateTime& now);
    // The leg's Greeks by the installed calculator; the stored volatility of the
    // user's configuration (getHistoryRate) wins over the computed one.
    static CStrategyLegGreeks compute(const CStrategyLegInput& input);
    // The same input filled from the installed services: the underlying's price
    // from the quote client, now from the time service, the mode from the user.
    static CStrategyLegInput inputFor(const std::shared_ptr<nqservice::CInstrumentDetail>& instrument,
                                      double optionLastPrice, int benchmark);
};

}  // namespace TC
