// The payoff curve's loadData for four legs of 50ETF's front month (an iron
// condor): the services asked for every leg, the anchor, the 0.05 grid, the
// payoff table and the script, without a page. Budget: 0.5 ms per loadData.
#include "bench/marketrig.h"
#include "bench/widgetbench.h"
#include "strategy/cprofitandlosscurve.h"
#include "strategy/cprofitandlosswebview.h"

#include <benchmark/benchmark.h>

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

class CCurveRig : public benchrig::CMarketRig {
public:
    CCurveRig()
    {
        TC::getConfig()->setUseWebView(false);
        // The front month of 50ETF, its strikes in order: puts and calls of the same rank.
        QMap<QString, QMap<QString, QStringList>> map;
        exchange->getStockOptionMap(map);
        const QStringList front = map.value(QStringLiteral("510050.SH")).first();
        QStringList calls;
        QStringList puts;
        for (const QString& key : front) {
            (exchange->isCall(exchange->getCodeInfo(key)) ? calls : puts) << key;
        }
        const auto byStrike = [this](const QString& a, const QString& b) {
            return exchange->getCodeInfo(a)->exercisePrice < exchange->getCodeInfo(b)->exercisePrice;
        };
        std::sort(calls.begin(), calls.end(), byStrike);
        std::sort(puts.begin(), puts.end(), byStrike);
        const int middle = static_cast<int>(calls.size()) / 2;
        curve = std::make_unique<TC::CProfitAndLossWebView>();
        curve->slotLoadFinished(true);
        curve->slotSelected(true, puts.value(middle - 2));
        curve->slotSelected(true, puts.value(middle - 1));
        curve->slotBSChanged(19, puts.value(middle - 1));
        curve->slotSelected(true, calls.value(middle + 1));
        curve->slotBSChanged(19, calls.value(middle + 1));
        curve->slotSelected(true, calls.value(middle + 2));
    }
    ~CCurveRig() override { curve.reset(); }

    std::unique_ptr<TC::CProfitAndLossWebView> curve;
};

void BM_LoadDataFourLegs(benchmark::State& state)
{
    CCurveRig rig;
    if (rig.curve->legOperations.size() != 4 || rig.curve->lastScript().isEmpty()) {
        state.SkipWithError("the four legs did not draw");
        return;
    }
    for (auto _ : state) {
        rig.curve->loadData();
        benchmark::DoNotOptimize(rig.curve->lastScript().size());
    }
    state.counters["points"] = static_cast<double>(rig.curve->lastScript().count(QStringLiteral("],[")) + 1);
}
BENCHMARK(BM_LoadDataFourLegs)->Unit(benchmark::kMicrosecond);

// The arithmetic alone, the legs already asked of the services.
void BM_BuildFourLegs(benchmark::State& state)
{
    CCurveRig rig;
    const std::vector<TC::CProfitAndLossLeg> legs = TC::CProfitAndLossCurve::collectLegs(rig.curve->legOperations);
    for (auto _ : state) {
        benchmark::DoNotOptimize(TC::CProfitAndLossCurve::build(750, legs, nullptr).script.size());
    }
}
BENCHMARK(BM_BuildFourLegs)->Unit(benchmark::kMicrosecond);

void printSummary()
{
    CCurveRig rig;
    constexpr int rounds = 2000;
    std::vector<double> micros;
    micros.reserve(rounds);
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        rig.curve->loadData();
        micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(micros.begin(), micros.end());
    const double median = micros[rounds / 2];
    const double p99 = micros[rounds * 99 / 100];
    std::printf("\n== bench_strategy_curve summary\n");
    std::printf("loadData, four legs, %d rounds: median %.1f us, p99 %.1f us (budget 500 us): %s\n", rounds, median,
                p99, median <= 500.0 ? "within" : "OVER");
}

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv, printSummary); }
