// Quote ingestion: the cost of one quote from publish to the subscriber's
// callback, the model's cost per snapshot, and the quotes per second the feed
// sustains across all contracts of the universe.
#include "seam/cquoterequest.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace {

const QDate kTradingDate(2024, 12, 10);

// What a panel's callback does: keep the newest snapshot per key under its lock.
struct PanelBuffer {
    std::mutex mutex;
    std::unordered_map<std::string, boost::shared_ptr<TC::CPriceData>> newest;
    std::atomic<long long> received{0};
    void store(const boost::shared_ptr<TC::CPriceData>& data)
    {
        {
            std::lock_guard<std::mutex> lock(mutex);
            newest[data->code] = data;
        }
        received.fetch_add(1, std::memory_order_relaxed);
    }
};

boost::shared_ptr<TC::CPriceData> makeQuote(const std::string& code)
{
    auto data = boost::make_shared<TC::CPriceData>();
    data->market = "SH";
    data->code = code;
    data->lastPrice = 0.1234;
    for (int level = 1; level <= 5; ++level) {
        data->setBid(level, 0.1234 - 0.0001 * level, 10 * level);
        data->setAsk(level, 0.1234 + 0.0001 * level, 10 * level);
    }
    return data;
}

// One quote, publish to callback, with one subscriber on the key.
void BM_PublishToCallback(benchmark::State& state)
{
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(nullptr, false);
    PanelBuffer buffer;
    auto handle = TC::CQuoteRequest::makeHandicapRequest(
        "10007001.SH", [&buffer](boost::shared_ptr<TC::CPriceData>& data) { buffer.store(data); }, TC::ST_DEFAULT);
    const QString key = QStringLiteral("10007001.SH");
    const auto quote = makeQuote("10007001");
    for (auto _ : state) {
        client->publish(key, quote);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["received"] = static_cast<double>(buffer.received.load());
    handle.reset();
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}
BENCHMARK(BM_PublishToCallback);

// The same over 1,000 keys, each with its subscriber, a fresh snapshot each time
// as the feed makes them.
void BM_PublishToCallbackFreshSnapshot(benchmark::State& state)
{
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(nullptr, false);
    PanelBuffer buffer;
    std::vector<QString> keys;
    std::vector<std::string> codes;
    std::vector<boost::shared_ptr<TC::CQuoteRequest>> handles;
    for (int i = 0; i < 1000; ++i) {
        codes.push_back(std::to_string(10007001 + i));
        keys.push_back(QString::fromStdString(codes.back() + ".SH"));
        handles.push_back(TC::CQuoteRequest::makeHandicapRequest(
            keys.back(), [&buffer](boost::shared_ptr<TC::CPriceData>& data) { buffer.store(data); },
            TC::ST_DEFAULT));
    }
    std::size_t i = 0;
    for (auto _ : state) {
        auto quote = boost::make_shared<TC::CPriceData>();
        quote->market = "SH";
        quote->code = codes[i];
        quote->lastPrice = 0.1;
        client->publish(keys[i], quote);
        i = (i + 1) % keys.size();
    }
    state.SetItemsProcessed(state.iterations());
    handles.clear();
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}
BENCHMARK(BM_PublishToCallbackFreshSnapshot);

void BM_GetStockPrice(benchmark::State& state)
{
    market::CSimQuoteClient client(nullptr, false);
    client.publish(makeQuote("10007001"));
    const QString key = QStringLiteral("10007001.SH");
    for (auto _ : state) {
        benchmark::DoNotOptimize(client.getStockPrice(key));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetStockPrice);

// The model: one snapshot of every contract per iteration, published to a
// client without subscribers.
void BM_ModelRound(benchmark::State& state)
{
    market::CSimClock clock(QDateTime(kTradingDate, QTime(10, 0)), 0.0);
    market::CSimExchangeClient exchange(1, kTradingDate, &clock);
    market::CSimQuoteClient client(&clock, false);
    market::CSimMarketConfig config;
    config.clock = &clock;
    market::CSimMarket model(exchange.instruments(), &client, config);
    for (auto _ : state) {
        model.publishRound();
        clock.advance(500);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(model.contractCount()));
    state.counters["contracts"] = static_cast<double>(model.contractCount());
}
BENCHMARK(BM_ModelRound)->Unit(benchmark::kMicrosecond);

// The feed on its service threads at a set total rate across the first 1,000
// contracts, every one subscribed by a panel-like buffer: quotes per second delivered.
void BM_FeedSustained(benchmark::State& state)
{
    const double wanted = static_cast<double>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    market::CSimClock clock(QDateTime(kTradingDate, QTime(10, 0)), 1.0);
    market::CSimExchangeClient exchange(1, kTradingDate, &clock);
    auto instruments = exchange.instruments();
    if (instruments.size() > 1000) {
        instruments.resize(1000);
    }
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(&clock, false);
    PanelBuffer buffer;
    std::vector<boost::shared_ptr<TC::CQuoteRequest>> handles;
    for (const auto& detail : instruments) {
        handles.push_back(TC::CQuoteRequest::makeHandicapRequest(
            QString::fromStdString(detail->key()),
            [&buffer](boost::shared_ptr<TC::CPriceData>& data) { buffer.store(data); }, TC::ST_DEFAULT));
    }
    market::CSimMarketConfig config;
    config.clock = &clock;
    config.threads = threads;
    config.snapshotsPerSecond = wanted / static_cast<double>(instruments.size());
    client->attachFeed(std::make_unique<market::CSimMarket>(instruments, client, config));
    for (auto _ : state) {
        client->feed()->start();
        const long long before = buffer.received.load();
        const auto start = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(std::chrono::seconds(2));
        const long long delivered = buffer.received.load() - before;
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        client->feed()->stop();
        state.SetIterationTime(seconds);
        state.counters["contracts"] = static_cast<double>(instruments.size());
        state.counters["wanted_per_s"] = wanted;
        state.counters["delivered_per_s"] = static_cast<double>(delivered) / seconds;
        state.counters["ratio"] = static_cast<double>(delivered) / seconds / wanted;
    }
    handles.clear();
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}
BENCHMARK(BM_FeedSustained)
    ->Args({2000, 1})
    ->Args({100000, 1})
    ->Args({100000, 2})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
