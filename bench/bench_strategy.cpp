// The strategy table under a burst of quotes: 50 legs spread over 5 live
// tables, each leg with a fresh snapshot, applied on the GUI thread (prices,
// margin, Greeks, statistics). Nothing is shown, so no painting is counted.
#include "bench/marketrig.h"
#include "bench/widgetbench.h"
#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategymanagetable.h"

#include <QCoreApplication>
#include <QEvent>

#include <memory>
#include <vector>

namespace {

class CStrategyRig : public benchrig::CMarketRig {
public:
    static constexpr int kTables = 5;
    static constexpr int kLegsPerTable = 10;

    CStrategyRig()
    {
        const QStringList options = optionsOf50Etf(false);
        TC::TStrategyMap baskets;
        for (int t = 0; t < kTables; ++t) {
            TC::CStrategySetting basket;
            basket.name = QStringLiteral("basket%1").arg(t);
            for (int leg = 0; leg < kLegsPerTable; ++leg) {
                const QString key = options.at(t * kLegsPerTable + leg);
                codes << key;
                const auto detail = exchange->getCodeInfo(key);
                TC::CStrategyStockData data;
                data.code = QString::fromStdString(detail->code);
                data.market = QString::fromStdString(detail->market);
                data.name = QString::fromStdString(detail->name);
                data.quantity = 1 + leg % 3;
                data.operation = leg % 2 == 0 ? nqservice::OT_BUY : nqservice::OT_SELL;
                basket.addLeg(data);
            }
            baskets.insert(basket.name, basket);
        }
        TC::CStrategyBaskets::write(baskets);
        for (int t = 0; t < kTables; ++t) {
            auto table = std::make_unique<TC::CStrategyManageTable>(8, nullptr);
            table->resize(1200, 400);
            table->loadBasket(QStringLiteral("basket%1").arg(t));
            tables.push_back(std::move(table));
        }
        QCoreApplication::sendPostedEvents();
        makeRounds();
    }
    ~CStrategyRig() override { tables.clear(); }

    std::vector<std::unique_ptr<TC::CStrategyManageTable>> tables;
};

// One burst: every leg's snapshot arrives (the callbacks only buffer them),
// then the GUI thread applies what the tables hold.
void BM_QuoteBurst50LegsFiveTables(benchmark::State& state)
{
    CStrategyRig rig;
    bool flip = false;
    for (auto _ : state) {
        const auto& set = flip ? rig.setB : rig.setA;
        flip = !flip;
        for (const auto& snapshot : set) {
            rig.quotes->publish(snapshot);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        for (auto& table : rig.tables) {
            table->updateTable();
        }
    }
    state.counters["legs"] = static_cast<double>(rig.codes.size());
    state.counters["tables"] = static_cast<double>(rig.tables.size());
    state.counters["last0"] = rig.tables.front()->itemDouble(0, TC::CStrategyManageTable::COL_LAST);
}
BENCHMARK(BM_QuoteBurst50LegsFiveTables)->Unit(benchmark::kMillisecond);

// The callbacks' share alone: storing 50 snapshots on the feed's side.
void BM_QuoteBurstBufferingOnly(benchmark::State& state)
{
    CStrategyRig rig;
    for (auto _ : state) {
        for (const auto& snapshot : rig.setA) {
            rig.quotes->publish(snapshot);
        }
        state.PauseTiming();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_QuoteBurstBufferingOnly)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
