#include "services/market/csimquoteclient.h"

#include "seam/common.h"
#include "services/market/csessionclock.h"
#include "services/market/csimmarket.h"

#include <QHashFunctions>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace market {

CSimQuoteClient::CSimQuoteClient(TC::CTimeService* clock, bool initialImage)
    : m_clock(clock), m_initialImage(initialImage)
{
}

CSimQuoteClient::~CSimQuoteClient() { m_feed.reset(); }

CSimQuoteClient::Shard& CSimQuoteClient::shardOf(const QString& key) const
{
    return m_shards[qHash(key) % kShardCount];
}

boost::shared_ptr<TC::CPriceData> CSimQuoteClient::getStockPrice(QString key)
{
    Shard& shard = shardOf(key);
    std::lock_guard<std::mutex> lock(shard.mutex);
    const auto it = shard.entries.constFind(key);
    return it == shard.entries.constEnd() ? boost::shared_ptr<TC::CPriceData>() : it->latest;
}

void CSimQuoteClient::subscribe(const boost::shared_ptr<TC::CQuoteSubscription>& subscription)
{
    if (subscription == nullptr) {
        return;
    }
    boost::shared_ptr<TC::CPriceData> image;
    {
        Shard& shard = shardOf(subscription->key());
        std::lock_guard<std::mutex> lock(shard.mutex);
        Entry& entry = shard.entries[subscription->key()];
        auto list = boost::make_shared<TSubscriptionList>();
        if (entry.subscriptions) {
            list->reserve(entry.subscriptions->size() + 1);
            for (const auto& existing : *entry.subscriptions) {
                if (existing->isActive()) {
                    list->push_back(existing);
                }
            }
        }
        list->push_back(subscription);
        entry.subscriptions = list;
        image = entry.latest;
    }
    // The image reaches the subscriber at once, on this thread and outside the
    // lock, before the request returns: an order dialog builds its price types
    // from it. A snapshot the feed publishes meanwhile may come before it on
    // the feed's thread; a subscriber keeping the newest per key takes the next.
    if (image != nullptr && m_initialImage) {
        subscription->deliver(image);
    }
}

int CSimQuoteClient::getTradingPhase(const std::string& market, const std::string& code) const
{
    {
        std::lock_guard<std::mutex> lock(m_phaseMutex);
        if (!m_phaseOverrides.isEmpty()) {
            const auto it = m_phaseOverrides.constFind(QString::fromStdString(utils::vqStockKey(market, code)));
            if (it != m_phaseOverrides.constEnd()) {
                return it.value();
            }
        }
    }
    TC::CTimeService* clock = m_clock != nullptr ? m_clock : TC::getTimeService();
    return CSessionClock::phaseAt(market, clock->currentDateTime());
}

void CSimQuoteClient::setTradingPhase(const QString& key, int phase)
{
    std::lock_guard<std::mutex> lock(m_phaseMutex);
    if (utils::isAbsent(phase)) {
        m_phaseOverrides.remove(key);
    } else {
        m_phaseOverrides.insert(key, phase);
    }
}

void CSimQuoteClient::publish(const boost::shared_ptr<TC::CPriceData>& data)
{
    if (data != nullptr) {
        publish(QString::fromStdString(utils::vqStockKey(data->market, data->code)), data);
    }
}

void CSimQuoteClient::publish(const QString& key, const boost::shared_ptr<TC::CPriceData>& data)
{
    if (data == nullptr) {
        return;
    }
    boost::shared_ptr<const TSubscriptionList> subscriptions;
    {
        Shard& shard = shardOf(key);
        std::lock_guard<std::mutex> lock(shard.mutex);
        Entry& entry = shard.entries[key];
        entry.latest = data;
        subscriptions = entry.subscriptions;
    }
    if (!subscriptions) {
        return;
    }
    // Callbacks run outside every lock of this client: they may ask for prices
    // or subscribe again.
    bool ended = false;
    for (const auto& subscription : *subscriptions) {
        ended = !subscription->deliver(data) || ended;
    }
    if (ended) {
        prune(key);
    }
}

void CSimQuoteClient::prune(const QString& key)
{
    Shard& shard = shardOf(key);
    std::lock_guard<std::mutex> lock(shard.mutex);
    const auto it = shard.entries.find(key);
    if (it == shard.entries.end() || !it->subscriptions) {
        return;
    }
    auto list = boost::make_shared<TSubscriptionList>();
    for (const auto& subscription : *it->subscriptions) {
        if (subscription->isActive()) {
            list->push_back(subscription);
        }
    }
    if (list->empty()) {
        it->subscriptions.reset();
    } else {
        it->subscriptions = list;
    }
}

int CSimQuoteClient::subscriberCount(const QString& key) const
{
    Shard& shard = shardOf(key);
    std::lock_guard<std::mutex> lock(shard.mutex);
    const auto it = shard.entries.constFind(key);
    if (it == shard.entries.constEnd() || !it->subscriptions) {
        return 0;
    }
    return static_cast<int>(std::count_if(it->subscriptions->begin(), it->subscriptions->end(),
                                          [](const auto& subscription) { return subscription->isActive(); }));
}

void CSimQuoteClient::attachFeed(std::unique_ptr<CSimMarket> feed)
{
    m_feed = std::move(feed);
}

}  // namespace market
