// The quote client of the simulated market: the newest snapshot of each key,
// the subscriptions on it, and the trading phase by the session clock. A feed
// (CSimMarket, or a test) hands snapshots to publish(), which stores them and
// calls the key's subscribers on the publishing thread. It makes no quotes itself.
#pragma once

#include "seam/cquoteclient.h"
#include "seam/ctimeservice.h"

#include <QHash>
#include <QString>

#include <array>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace market {

class CSimMarket;

class CSimQuoteClient : public TC::CQuoteClient {
public:
    // `clock` gives the time of the trading phases (null: TC::getTimeService()).
    // With `initialImage`, a new subscription receives the newest snapshot of its
    // key at once, on the subscribing thread, before subscribe() returns.
    explicit CSimQuoteClient(TC::CTimeService* clock = nullptr, bool initialImage = true);
    // Stops an attached feed first.
    ~CSimQuoteClient() override;
    CSimQuoteClient(const CSimQuoteClient&) = delete;
    CSimQuoteClient& operator=(const CSimQuoteClient&) = delete;

    boost::shared_ptr<TC::CPriceData> getStockPrice(QString key) override;
    void subscribe(const boost::shared_ptr<TC::CQuoteSubscription>& subscription) override;
    int getTradingPhase(const std::string& market, const std::string& code) const override;

    // Stores the snapshot as the newest of its key and calls the key's
    // subscribers on the calling thread. Callable from any thread.
    void publish(const boost::shared_ptr<TC::CPriceData>& data);
    // The same with the key already made (the feed's hot path).
    void publish(const QString& key, const boost::shared_ptr<TC::CPriceData>& data);

    // Subscriptions registered on a key that have not ended.
    int subscriberCount(const QString& key) const;
    // Forces the phase of one instrument (tests, a halted contract); the absent
    // marker removes the override.
    void setTradingPhase(const QString& key, int phase);

    // Takes the feed; it is stopped and destroyed before this client.
    void attachFeed(std::unique_ptr<CSimMarket> feed);
    CSimMarket* feed() const { return m_feed.get(); }

private:
    using TSubscriptionList = std::vector<boost::shared_ptr<TC::CQuoteSubscription>>;
    struct Entry {
        boost::shared_ptr<TC::CPriceData> latest;
        boost::shared_ptr<const TSubscriptionList> subscriptions;  // replaced, never changed
    };
    struct Shard {
        mutable std::mutex mutex;
        QHash<QString, Entry> entries;
    };
    static constexpr std::size_t kShardCount = 16;

    Shard& shardOf(const QString& key) const;
    void prune(const QString& key);

    TC::CTimeService* const m_clock;
    mutable std::array<Shard, kShardCount> m_shards;

    mutable std::mutex m_phaseMutex;
    QHash<QString, int> m_phaseOverrides;

    // Initial images: subscriptions waiting for the newest snapshot of their key.
    const bool m_initialImage;

    std::unique_ptr<CSimMarket> m_feed;
};

}  // namespace market
