// The price quote panel under load: one tick that applies a quote for every
// option of one side of 50ETF over all its months (work outside painting, and
// with the repaint for reference), the cell operations a paint makes and the
// heap allocations they cost, and whether ten thousand ticks make widgets or
// memory grow. The combination table: a reload of 2,000 combinations over ten
// accounts on the model's worker, the longest stretch the GUI thread spends
// applying and showing it, and what one repaint of the full table costs.
#include "bench/marketrig.h"
#include "bench/widgetbench.h"
#include "tests/app/accountsfakes.h"
#include "positions/chpfpricequotedata.h"
#include "positions/chpfpricequotedatamodel.h"
#include "positions/chpfpricequotedatatable.h"
#include "positions/coptionpricequotepanel.h"
#include "positions/coptionstrategypositiontable.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/user/cusersettingsstore.h"
#include "toolkit/coptionundlcodecombobox.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimeZone>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <cstdlib>
#include <memory>
#include <vector>

// Every heap allocation of the process is counted, Qt's own (which go to
// malloc directly) as well as operator new's, so that a benchmark can tell what
// a stretch of code allocated. The executable's malloc stands before glibc's.
namespace {
std::atomic<long long> g_allocations{0};
}  // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* pointer, std::size_t size);

void* malloc(std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}
void* realloc(void* pointer, std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(pointer, size);
}
}

namespace {

// The desk's services on the generated universe, a shown quote panel on
// 50ETF's calls, and two rounds of snapshots of every 50ETF call.
class CQuoteRig : public benchrig::CMarketRig {
public:
    CQuoteRig()
    {
        panel = std::make_unique<TC::COptionPriceQuotePanel>(1, nullptr);
        panel->resize(1900, 900);
        panel->show();
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        TC::COptionUndlCodeComboBox* combo = panel->getUnderlyingCombo();
        combo->setCurrentIndex(combo->findText(QStringLiteral("510050.SH")));
        QCoreApplication::processEvents();

        codes = optionsOf50Etf(true);
        makeRounds();
        panel->onTimer(TC::TUF_QUOTE);
        QCoreApplication::processEvents();
    }
    ~CQuoteRig() override { panel.reset(); }
    void buffer(bool first)
    {
        for (boost::shared_ptr<TC::CPriceData> data : first ? setA : setB) {
            panel->onPriceData(data);
        }
    }

    std::unique_ptr<TC::COptionPriceQuotePanel> panel;
};

// One tick with a fresh buffered quote of every 50ETF call, all months. The
// argument: 0 times the work outside painting (the repaint runs untimed); 1
// times the repaint too, for reference.
void BM_TickOneSideAllMonths(benchmark::State& state)
{
    CQuoteRig rig;
    const bool timePaint = state.range(0) != 0;
    bool first = true;
    long long allocations = 0;
    long long ticks = 0;
    for (auto _ : state) {
        state.PauseTiming();
        rig.buffer(first);
        first = !first;
        state.ResumeTiming();
        const long long before = g_allocations.load(std::memory_order_relaxed);
        rig.panel->onTimer(TC::TUF_QUOTE);
        allocations += g_allocations.load(std::memory_order_relaxed) - before;
        ++ticks;
        if (timePaint) {
            rig.panel->repaint();
            QCoreApplication::processEvents();
            continue;
        }
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["quotes"] = static_cast<double>(rig.codes.size());
    state.counters["allocsPerTick"] = static_cast<double>(allocations) / static_cast<double>(ticks);
    state.counters["months"] = rig.panel->getModel()->monthCount;
    state.counters["rows"] = rig.panel->getModel()->size();
}
BENCHMARK(BM_TickOneSideAllMonths)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// What a paint asks of the rows: text, colour, background and flash state of
// every cell of every row (more than a screen shows), and the allocations that
// costs per cell. A cell's text is its one allowed allocation; colours,
// backgrounds and flash states allocate nothing.
void BM_CellOperations(benchmark::State& state)
{
    CQuoteRig rig;
    rig.buffer(true);
    rig.panel->onTimer(TC::TUF_QUOTE);
    rig.buffer(false);
    rig.panel->onTimer(TC::TUF_QUOTE);
    TC::CHpfPriceQuoteDataModel* model = rig.panel->getModel();
    const int columns = model->columnCount();
    std::vector<TC::CHpfPriceQuoteDataPtr> rows;
    for (int r = 0; r < model->size(); ++r) {
        rows.push_back(boost::dynamic_pointer_cast<TC::CHpfPriceQuoteData>(model->getData(r)));
    }
    long long textAllocations = 0;
    long long otherAllocations = 0;
    long long cells = 0;
    std::size_t sink = 0;
    for (auto _ : state) {
        for (const TC::CHpfPriceQuoteDataPtr& row : rows) {
            for (int column = 0; column < columns; ++column) {
                const long long before = g_allocations.load(std::memory_order_relaxed);
                const QColor* colour = row->textColor(column);
                const QColor* background = row->getBackgroundColor(column);
                const bool flash = row->isFlashChange(column);
                const long long middle = g_allocations.load(std::memory_order_relaxed);
                const QString text = row->displayText(column);
                const long long after = g_allocations.load(std::memory_order_relaxed);
                otherAllocations += middle - before;
                textAllocations += after - middle;
                sink += static_cast<std::size_t>(text.size()) + (colour != nullptr) + (background != nullptr) + flash;
                ++cells;
            }
        }
    }
    benchmark::DoNotOptimize(sink);
    state.SetItemsProcessed(cells);
    state.counters["cellsPerPass"] = static_cast<double>(rows.size()) * columns;
    state.counters["textAllocsPerCell"] = static_cast<double>(textAllocations) / static_cast<double>(cells);
    state.counters["otherAllocs"] = static_cast<double>(otherAllocations);
}
BENCHMARK(BM_CellOperations)->Unit(benchmark::kMicrosecond);

// Ten thousand ticks, each with fresh quotes of every 50ETF call: the widget
// count and the resident memory must not grow.
void BM_TenThousandTicks(benchmark::State& state)
{
    CQuoteRig rig;
    for (int warm = 0; warm < 50; ++warm) {
        rig.buffer(warm % 2 == 0);
        rig.panel->onTimer(TC::TUF_QUOTE);
        QCoreApplication::processEvents();
    }
    const int widgetsBefore = QApplication::allWidgets().size();
    const long memoryBefore = widgetbench::statusKb("VmRSS");
    for (auto _ : state) {
        for (int tick = 0; tick < 10000; ++tick) {
            rig.buffer(tick % 2 == 0);
            rig.panel->onTimer(TC::TUF_QUOTE);
            QCoreApplication::processEvents();
        }
    }
    state.counters["widgetsBefore"] = widgetsBefore;
    state.counters["widgetsAfter"] = QApplication::allWidgets().size();
    state.counters["rssBeforeKb"] = static_cast<double>(memoryBefore);
    state.counters["rssAfterKb"] = static_cast<double>(widgetbench::statusKb("VmRSS"));
    state.counters["flashingRows"] = rig.panel->flashingRowCount();
}
BENCHMARK(BM_TenThousandTicks)->Iterations(1)->Unit(benchmark::kSecond);

// ---- the combination table ----

// Ten accounts of 200 combinations each, their legs pairs of neighbouring
// 50ETF options, and a shown combination table.
class CCombRig : public benchrig::CMarketRig {
public:
    static constexpr int kAccounts = 10;
    static constexpr int kPerAccount = 200;

    CCombRig(int width, int height)
    {
        const QStringList options = optionsOf50Etf(false);
        auto center = boost::make_shared<accountsfakes::CFakeTraderCenter>();
        for (int a = 0; a < kAccounts; ++a) {
            const auto data =
                center->data->addAccount(accountsfakes::makeAccount("B" + std::to_string(a), "模拟" + std::to_string(a)));
            for (int c = 0; c < kPerAccount; ++c) {
                auto detail = boost::make_shared<nqservice::CStkOptCombPositionDetail>();
                detail->account = data->info;
                detail->market = "SH";
                detail->combId = "Z" + std::to_string(a * kPerAccount + c);
                detail->strategyCode = "CNSJC";
                detail->name = "认购牛市价差";
                detail->volume = 1 + c % 9;
                detail->releaseVolume = detail->volume;
                const int leg = (a * 7 + c) % (options.size() - 1);
                detail->legOneCode = options.at(leg).section(QLatin1Char('.'), 0, 0).toStdString();
                detail->legOneType = '0';
                detail->legTwoCode = options.at(leg + 1).section(QLatin1Char('.'), 0, 0).toStdString();
                detail->legTwoType = '1';
                data->store(nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, detail);
            }
            keys.push_back(data->info->accountId);
        }
        nqservice::TraderCenter::install(center);
        table = std::make_unique<TC::COptionStrategyPositionTable>(0, nullptr);
        table->resize(width, height);
        table->show();
        QCoreApplication::processEvents();
    }
    ~CCombRig() override
    {
        table.reset();
        nqservice::TraderCenter::destroy();
    }

    std::vector<std::string> keys;
    std::unique_ptr<TC::COptionStrategyPositionTable> table;
};

// A reload of every account, from the requests to the rows on screen. The
// wall time is manual: the worker's span (first job start to last job end),
// with counters for the whole reload and the longest GUI stretch (one turn of
// the event loop that applies queued rows and repaints, or the tick's update
// of the table). The arguments are the table's size: the band a trader gives
// the panel below the boards of a 1440x900 desk, and a full-HD screen of it,
// where one repaint of forty rows of twenty-six columns is most of a turn.
void BM_ReloadTwoThousandCombinations(benchmark::State& state)
{
    CCombRig rig(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    TC::CHpfOptionStrategyPositionModel* model = rig.table->getModel();
    double longestTurnMs = 0.0;
    double longestUpdateMs = 0.0;
    double longestWorkerMs = 0.0;
    double longestWallMs = 0.0;
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::microseconds>(
                   std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };
    // One reload; returns the worker's span in ms.
    const auto reload = [&](bool measured) {
        rig.table->clear();
        rig.table->updateTable();
        QCoreApplication::processEvents();
        std::atomic<long long> workerStart{0};
        std::atomic<long long> workerEnd{0};
        QElapsedTimer wall;
        wall.start();
        model->postJob([&] { workerStart = now(); });
        for (const std::string& key : rig.keys) {
            rig.table->requestAccount(key);
        }
        model->postJob([&] { workerEnd = now(); });
        QElapsedTimer turn;
        double turnMs = 0.0;
        while (model->pendingUpdates() > 0) {
            turn.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            turnMs = std::max(turnMs, static_cast<double>(turn.nsecsElapsed()) / 1e6);
        }
        turn.start();
        rig.table->updateTable();
        const double updateMs = static_cast<double>(turn.nsecsElapsed()) / 1e6;
        const double workerMs = static_cast<double>(workerEnd - workerStart) / 1e3;
        if (measured) {
            longestTurnMs = std::max(longestTurnMs, turnMs);
            longestUpdateMs = std::max(longestUpdateMs, updateMs);
            longestWallMs = std::max(longestWallMs, static_cast<double>(wall.nsecsElapsed()) / 1e6);
            longestWorkerMs = std::max(longestWorkerMs, workerMs);
        }
        return workerMs;
    };
    // The session's first reload warms the pricing caches; it is not what a reload costs.
    reload(false);
    for (auto _ : state) {
        state.SetIterationTime(reload(true) / 1e3);
    }
    // A full repaint of the loaded table, the median of many.
    std::vector<double> repaints;
    QElapsedTimer paint;
    for (int i = 0; i < 51; ++i) {
        paint.start();
        rig.table->repaint();
        repaints.push_back(static_cast<double>(paint.nsecsElapsed()) / 1e6);
    }
    std::nth_element(repaints.begin(), repaints.begin() + 25, repaints.end());
    state.counters["medianRepaintMs"] = repaints[25];
    state.counters["rows"] = model->size();
    state.counters["maxWorkerMs"] = longestWorkerMs;
    state.counters["maxReloadWallMs"] = longestWallMs;
    state.counters["maxGuiBlockMs"] = std::max(longestTurnMs, longestUpdateMs);
    state.counters["maxTurnMs"] = longestTurnMs;
    state.counters["maxUpdateMs"] = longestUpdateMs;
}
BENCHMARK(BM_ReloadTwoThousandCombinations)
    ->Args({1440, 300})
    ->Args({1900, 900})
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
