// The quote service: the newest snapshot of every instrument it knows, the
// subscriptions that CQuoteRequest makes, and the trading phase of an
// instrument. Process-wide, reached by utils::CManualSingletonT<TC::CQuoteClient>::instance().
#pragma once

#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <string>

namespace TC {

class CQuoteClient {
public:
    virtual ~CQuoteClient() = default;

    // The newest snapshot of a key; null when none is known. Never blocks on a
    // feed: at most a short lock around a table lookup.
    virtual boost::shared_ptr<CPriceData> getStockPrice(QString key) = 0;
    // Registers a subscription made by CQuoteRequest. The client delivers every
    // new snapshot of the key (and the newest one it already has, soon after the
    // call, never inside it) until the subscription ends.
    virtual void subscribe(const boost::shared_ptr<CQuoteSubscription>& subscription) = 0;
    // The trading phase of an instrument now (TC::ETradingPhase); the data
    // centre's getTradingPhase(market, code) answers with it.
    virtual int getTradingPhase(const std::string& market, const std::string& code) const = 0;
};

}  // namespace TC
