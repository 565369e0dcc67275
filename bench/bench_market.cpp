// Building the universe of a day from the seed's market history: the desk waits
// for it at start and at every new trading day, so it must stay well under 100 ms
// for any day within two years of the epoch (and beyond).
#include "services/market/cmarkethistory.h"
#include "services/market/csessionclock.h"

#include <benchmark/benchmark.h>

namespace {

// Days after the epoch (2023-01-03): a month, a year, two years, and the desk's present.
const int kDaysAfterEpoch[] = {30, 365, 730, 1420};

void BM_BuildDay(benchmark::State& state)
{
    const QDate date = market::CMarketHistory::epoch().addDays(state.range(0));
    const market::CMarketHistory history(20261122U);
    std::size_t instruments = 0;
    for (auto _ : state) {
        const market::CMarketDay day = history.day(date);
        instruments = day.instruments.size();
        benchmark::DoNotOptimize(instruments);
    }
    state.counters["instruments"] = static_cast<double>(instruments);
    state.SetLabel(date.toString(Qt::ISODate).toStdString());
}

}  // namespace

BENCHMARK(BM_BuildDay)
    ->Arg(kDaysAfterEpoch[0])
    ->Arg(kDaysAfterEpoch[1])
    ->Arg(kDaysAfterEpoch[2])
    ->Arg(kDaysAfterEpoch[3])
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
