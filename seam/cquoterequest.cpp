#include "seam/cquoterequest.h"

#include "seam/common.h"
#include "seam/cquoteclient.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace TC {

namespace {

// Subscriptions whose callbacks run on this thread right now, innermost last,
// so that end() called from inside a callback does not wait for itself.
thread_local std::vector<const CQuoteSubscription*> t_delivering;

}  // namespace

CQuoteSubscription::CQuoteSubscription(QString key, TQuoteCallback callback, ESubscribeType type, bool withLevels)
    : m_key(std::move(key)), m_callback(std::move(callback)), m_type(type), m_withLevels(withLevels)
{
}

bool CQuoteSubscription::isActive() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_active;
}

bool CQuoteSubscription::deliver(const boost::shared_ptr<CPriceData>& data)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_active) {
            return false;
        }
        ++m_inFlight;
    }
    t_delivering.push_back(this);
    // The callback takes its argument by reference: give it its own pointer.
    boost::shared_ptr<CPriceData> copy = data;
    try {
        m_callback(copy);
    } catch (...) {
        // A subscriber's exception must not unwind through the feed thread.
    }
    t_delivering.pop_back();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (--m_inFlight == 0) {
            m_idle.notify_all();
        }
    }
    return true;
}

void CQuoteSubscription::end()
{
    const int own = static_cast<int>(std::count(t_delivering.begin(), t_delivering.end(), this));
    std::unique_lock<std::mutex> lock(m_mutex);
    m_active = false;
    m_idle.wait(lock, [this, own] { return m_inFlight <= own; });
}

CQuoteRequest::CQuoteRequest(boost::shared_ptr<CQuoteSubscription> subscription)
    : m_subscription(std::move(subscription))
{
}

CQuoteRequest::~CQuoteRequest()
{
    m_subscription->end();
}

boost::shared_ptr<CQuoteRequest> CQuoteRequest::makeHandicapRequest(QString key, const TQuoteCallback& callback,
                                                                    ESubscribeType type)
{
    return make(key, callback, type, true);
}

boost::shared_ptr<CQuoteRequest> CQuoteRequest::makeRequest(QString key, const TQuoteCallback& callback,
                                                            ESubscribeType type)
{
    return make(key, callback, type, false);
}

boost::shared_ptr<CQuoteRequest> CQuoteRequest::make(const QString& key, const TQuoteCallback& callback,
                                                     ESubscribeType type, bool withLevels)
{
    CQuoteClient* client = utils::CManualSingletonT<CQuoteClient>::instance();
    if (client == nullptr || callback.empty()) {
        return boost::shared_ptr<CQuoteRequest>();
    }
    auto subscription = boost::shared_ptr<CQuoteSubscription>(new CQuoteSubscription(key, callback, type, withLevels));
    client->subscribe(subscription);
    return boost::shared_ptr<CQuoteRequest>(new CQuoteRequest(subscription));
}

}  // namespace TC
