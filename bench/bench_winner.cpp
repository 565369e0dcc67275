// The option winner on the generated market: building the range candidates of
// 50ETF over all months (every put with every call of its expiry, the window
// and levels letting every option pass), in the builder alone and in the shown
// widget with its table; and the one-second repricing after a quote for every
// contract, the work outside painting.
#include "bench/marketrig.h"
#include "bench/widgetbench.h"
#include "seam/userrecords.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "strategy/cwinnercandidatebuilder.h"
#include "toolkit/ccombobox.h"
#include "toolkit/coptionundlcodecombobox.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <memory>

namespace {

const QString kUnderlying = QStringLiteral("510050.SH");

// Levels and a window that every 50ETF option passes for a range.
TC::CWinnerSetting everyOption()
{
    TC::CWinnerSetting setting;
    setting.levelOne = 1000.0;  // every put lies below
    setting.levelTwo = 0.0;     // every call lies above
    setting.startTime = 0;
    setting.endTime = 4000000000u;
    return setting;
}

// The rig with the range setting stored and a shown winner on 50ETF's range.
class CWinnerRig : public benchrig::CMarketRig {
public:
    CWinnerRig()
    {
        TC::getUserConfig()->setWinnerSetting(kUnderlying, TC::WPD_RANGE, everyOption());
        analysis = std::make_unique<TC::CProfitLossAnalysisWidget>(nullptr);
        winner = std::make_unique<TC::COptionWinnerWidget>(nullptr);
        winner->setAnalysisWidget(analysis.get());
        winner->resize(1400, 800);
        winner->show();
        TC::COptionUndlCodeComboBox* combo = winner->getUnderlyingCombo();
        combo->setCurrentIndex(combo->findData(kUnderlying));
        winner->getForecastCombo()->setCurrentIndex(TC::WPD_RANGE);
        QCoreApplication::processEvents();
        codes = optionsOf50Etf(false);
        makeRounds();
    }
    ~CWinnerRig() override
    {
        winner.reset();
        analysis.reset();
    }
    void publish(bool first)
    {
        for (const boost::shared_ptr<TC::CPriceData>& data : first ? setA : setB) {
            quotes->publish(data);
        }
    }

    std::unique_ptr<TC::CProfitLossAnalysisWidget> analysis;
    std::unique_ptr<TC::COptionWinnerWidget> winner;
};

// The candidates alone: the filter over every 50ETF option and the pairs.
void BM_BuildRangeCandidates(benchmark::State& state)
{
    benchrig::CMarketRig rig;
    int rows = 0;
    for (auto _ : state) {
        const TC::CWinnerCandidates out =
            TC::CWinnerCandidateBuilder::build(rig.exchange, kUnderlying, TC::WPD_RANGE, everyOption());
        rows = out.rows.size();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = rows;
}
BENCHMARK(BM_BuildRangeCandidates)->Unit(benchmark::kMillisecond);

// What a trader waits for on choosing 盘整: subscriptions dropped and made
// again, the candidates built, the table filled with its radio buttons and
// its columns fitted. Painting runs untimed.
void BM_WinnerRebuildRange(benchmark::State& state)
{
    CWinnerRig rig;
    for (auto _ : state) {
        rig.winner->rebuild();
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["rows"] = rig.winner->getTable()->rowCount();
    state.counters["contracts"] = rig.winner->subscribedKeys().size();
    std::printf("range candidates of 50ETF over all months: %d rows, %d contracts\n",
                rig.winner->getTable()->rowCount(), static_cast<int>(rig.winner->subscribedKeys().size()));
}
BENCHMARK(BM_WinnerRebuildRange)->Unit(benchmark::kMillisecond);

// One tick after a fresh quote of every 50ETF contract: every row repriced and
// rewritten, the checked row's analysis filled. Painting runs untimed.
void BM_WinnerRepriceEveryContract(benchmark::State& state)
{
    CWinnerRig rig;
    bool first = true;
    for (auto _ : state) {
        state.PauseTiming();
        rig.publish(first);
        first = !first;
        state.ResumeTiming();
        rig.winner->slotTimeOut();
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["rows"] = rig.winner->getTable()->rowCount();
    state.counters["quotes"] = static_cast<double>(rig.codes.size());
}
BENCHMARK(BM_WinnerRepriceEveryContract)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
