// Quote subscriptions. A CQuoteRequest is the handle a panel keeps: the
// subscription lasts as long as the handle, and dropping the last reference
// ends it. Once the drop returns no callback of it starts; a callback already
// running on another thread finishes first. Never drop a handle while holding a
// lock that its callback takes.
#pragma once

#include "seam/cpricedata.h"
#include "seam/marketenums.h"

#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <condition_variable>
#include <mutex>

namespace TC {

using TQuoteCallback = boost::function<void(boost::shared_ptr<CPriceData>&)>;

// The live part of a subscription, shared by the handle and the quote client
// that delivers to it. Quote clients call deliver() from any thread.
class CQuoteSubscription {
public:
    CQuoteSubscription(QString key, TQuoteCallback callback, ESubscribeType type, bool withLevels);
    CQuoteSubscription(const CQuoteSubscription&) = delete;
    CQuoteSubscription& operator=(const CQuoteSubscription&) = delete;

    const QString& key() const { return m_key; }
    ESubscribeType type() const { return m_type; }
    // Whether the subscriber asked for the five price levels (makeHandicapRequest).
    bool withLevels() const { return m_withLevels; }
    bool isActive() const;

    // Runs the callback with the snapshot unless the subscription has ended.
    // False when it has ended: the client may forget it.
    bool deliver(const boost::shared_ptr<CPriceData>& data);
    // Ends the subscription: no callback starts after this returns, and a callback
    // running on another thread is waited for. Called from inside its own
    // callback it does not wait for itself.
    void end();

private:
    const QString m_key;
    const TQuoteCallback m_callback;
    const ESubscribeType m_type;
    const bool m_withLevels;
    mutable std::mutex m_mutex;
    std::condition_variable m_idle;
    bool m_active = true;
    int m_inFlight = 0;
};

class CQuoteRequest {
public:
    // Subscribes to one instrument with its price levels. The callback may come on
    // any thread. Null when no quote client is installed or the callback is empty.
    static boost::shared_ptr<CQuoteRequest> makeHandicapRequest(QString key, const TQuoteCallback& callback,
                                                                ESubscribeType type);
    // The same for a subscriber that does not need the price levels.
    static boost::shared_ptr<CQuoteRequest> makeRequest(QString key, const TQuoteCallback& callback,
                                                        ESubscribeType type);

    explicit CQuoteRequest(boost::shared_ptr<CQuoteSubscription> subscription);
    CQuoteRequest(const CQuoteRequest&) = delete;
    CQuoteRequest& operator=(const CQuoteRequest&) = delete;
    // Ends the subscription with the guarantee above.
    ~CQuoteRequest();

    const QString& key() const { return m_subscription->key(); }
    const boost::shared_ptr<CQuoteSubscription>& subscription() const { return m_subscription; }

private:
    static boost::shared_ptr<CQuoteRequest> make(const QString& key, const TQuoteCallback& callback,
                                                 ESubscribeType type, bool withLevels);
    boost::shared_ptr<CQuoteSubscription> m_subscription;
};

}  // namespace TC
