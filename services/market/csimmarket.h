// The simulated market model and its feed: underlying prices on seeded random
// paths, option prices from a volatility smile and the time to expiry, five
// levels with volumes, deals, open interest and the trading phase of the
// session clock. Service threads publish snapshots into a CSimQuoteClient at a
// set rate per contract. Each contract belongs to one thread and draws from its
// own seeded generator, so a round of snapshots under a standing clock is the
// same for the same seed. Given the day's closes, an underlying's path is a
// bridge that ends on its close whatever the rate or the clock's speed.
#pragma once

#include "seam/cpricedata.h"
#include "seam/ctimeservice.h"
#include "services/market/cuniversebuilder.h"

#include <QDate>
#include <QHash>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace market {

class CSimQuoteClient;

struct CSimMarketConfig {
    unsigned seed = 1;
    // Snapshots per second of each contract; the feed spreads them evenly.
    double snapshotsPerSecond = 2.0;
    // Service threads of the feed; contracts are dealt out among them.
    int threads = 1;
    // How often a service thread wakes to publish its share.
    int batchIntervalMs = 10;
    // Time of the model and the phases; null means TC::getTimeService().
    TC::CTimeService* clock = nullptr;
    // The trading day the instruments belong to, and how it ends by instrument
    // key: an underlying's path runs from its previous close to its close, and
    // at the close every contract's last price is its close. Without them the
    // paths wander freely from the previous close.
    QDate tradingDate;
    QHash<QString, double> closes;
};

class CSimMarket {
public:
    // The sink must outlive the market (CSimQuoteClient::attachFeed arranges it).
    CSimMarket(const TInstrumentList& instruments, CSimQuoteClient* sink, const CSimMarketConfig& config);
    ~CSimMarket();
    CSimMarket(const CSimMarket&) = delete;
    CSimMarket& operator=(const CSimMarket&) = delete;

    void start();
    // Ends the service threads and waits for them.
    void stop();
    bool isRunning() const { return !m_threads.empty(); }

    // Publishes one snapshot of every contract, underlyings first, on the calling
    // thread. Only while the feed is stopped.
    void publishRound();
    // The snapshot of one contract now, without publishing it. Only while stopped.
    boost::shared_ptr<TC::CPriceData> makeSnapshot(const QString& key);

    void setSnapshotsPerSecond(double rate) { m_rate.store(rate); }
    double snapshotsPerSecond() const { return m_rate.load(); }
    std::size_t contractCount() const { return m_contracts.size(); }
    // Snapshots published since construction.
    long long publishedCount() const { return m_published.load(std::memory_order_relaxed); }

private:
    struct Contract;
    struct Clock;

    void initialiseDay(const Clock& clock);
    boost::shared_ptr<TC::CPriceData> advance(Contract& contract, const Clock& clock);
    void advanceUnderlying(Contract& contract, const Clock& clock, TC::CPriceData& out);
    void advanceOption(Contract& contract, const Clock& clock, TC::CPriceData& out);
    void fillCommon(const Contract& contract, const Clock& clock, TC::CPriceData& out) const;
    void trade(Contract& contract, TC::CPriceData& out, double probability, int maxSize);
    void markClose(Contract& contract, TC::CPriceData& out);
    double dayDone(const Contract& contract, const Clock& clock) const;
    Clock readClock() const;
    void run(int worker);

    std::vector<std::unique_ptr<Contract>> m_contracts;
    CSimQuoteClient* const m_sink;
    const CSimMarketConfig m_config;
    std::atomic<double> m_rate;
    std::atomic<long long> m_published{0};

    std::mutex m_stopMutex;
    std::condition_variable m_stopWake;
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};

}  // namespace market
