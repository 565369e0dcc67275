// The chain board under load: the cost of one quote on the service thread
// (onTablePriceData), of one tick that applies a buffered quote for every
// contract of 50ETF with the shown expiry painted afterwards, and whether ten
// thousand ticks make widgets or memory grow.
#include "board/coptionpricetpanel.h"
#include "board/coptionpricettable.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "seam/tradingrecords.h"
#include "toolkit/caccountscombobox.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/user/cusersettingsstore.h"
#include "bench/marketrig.h"
#include "bench/widgetbench.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTimeZone>

#include <boost/make_shared.hpp>

#include <memory>
#include <vector>

namespace {

// The desk's services on the generated universe, a shown board on 50ETF with
// every expiry subscribed, and two rounds of snapshots of every 50ETF option.
class CBoardRig : public benchrig::CMarketRig {
public:
    CBoardRig()
    {
        panel = std::make_unique<TC::COptionPriceTPanel>(1, nullptr);
        panel->resize(1900, 900);
        panel->show();
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        panel->getUndlCombo()->setCurrentIndex(panel->getUndlCombo()->findText(QStringLiteral("510050.SH")));
        QCoreApplication::processEvents();

        codes = optionsOf50Etf(false);
        makeRounds();
        // Drain what the subscriptions delivered while setting up.
        panel->onTimer(TC::TUF_QUOTE);
        QCoreApplication::processEvents();
    }
    ~CBoardRig() override { panel.reset(); }
    void buffer(bool first)
    {
        for (const auto& data : first ? setA : setB) {
            panel->onTablePriceData(data);
        }
    }

    std::unique_ptr<TC::COptionPriceTPanel> panel;
};

// One quote into the panel's buffer, as the quote client's thread delivers it:
// the key, the lock, the newest-per-code replace. Codes cycle over all of 50ETF.
void BM_OnTablePriceData(benchmark::State& state)
{
    CBoardRig rig;
    const std::vector<boost::shared_ptr<TC::CPriceData>>& set = rig.setA;
    std::size_t i = 0;
    for (auto _ : state) {
        rig.panel->onTablePriceData(set[i]);
        if (++i == set.size()) {
            i = 0;
        }
    }
    state.counters["codes"] = static_cast<double>(set.size());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_OnTablePriceData);

// One tick with a fresh buffered quote of every 50ETF contract (all expiries;
// the shown expiry's rows are written). The argument: 0 paints afterwards,
// untimed; 1 times the repaint of the board too, for reference.
void BM_TickAllContracts(benchmark::State& state)
{
    CBoardRig rig;
    const bool timePaint = state.range(0) != 0;
    bool first = true;
    for (auto _ : state) {
        state.PauseTiming();
        rig.buffer(first);
        first = !first;
        state.ResumeTiming();
        rig.panel->onTimer(TC::TUF_QUOTE);
        if (timePaint) {
            rig.panel->repaint();
            QCoreApplication::processEvents();
            continue;
        }
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["contracts"] = static_cast<double>(rig.codes.size());
    state.counters["shownRows"] = static_cast<double>(rig.panel->getChainTable()->getRowCodes().size());
}
BENCHMARK(BM_TickAllContracts)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// A tick with N buffered position records of the paper group over 50ETF's
// contracts and a quote for every contract, the Greeks table included: each
// quote and each position rewrites its sums. Work outside painting.
void BM_TickWithPositions(benchmark::State& state)
{
    CBoardRig rig;
    rig.panel->getAccountCombo()->setSelection(TC::SAT_GROUP, QStringLiteral("默认组"));
    const int records = static_cast<int>(state.range(0));
    std::vector<boost::shared_ptr<nqservice::IData>> positions;
    for (int i = 0; i < records; ++i) {
        auto record = boost::make_shared<nqservice::CPositionStatics>();
        record->account = boost::make_shared<nqservice::CAccountInfo>();
        record->account->accountId = i % 2 == 0 ? "SO001" : "SO002";
        const QString key = rig.codes.at(i % rig.codes.size());
        record->market = "SH";
        record->code = key.section(QLatin1Char('.'), 0, 0).toStdString();
        record->position = 1 + i % 7;
        record->direction = i % 3 == 0 ? 49 : 48;
        positions.push_back(record);
    }
    bool first = true;
    for (auto _ : state) {
        state.PauseTiming();
        rig.buffer(first);
        first = !first;
        for (const auto& record : positions) {
            rig.panel->onPositionStatics(record);
        }
        state.ResumeTiming();
        rig.panel->onTimer(TC::TUF_QUOTE);
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["records"] = records;
    state.counters["contracts"] = static_cast<double>(rig.codes.size());
}
BENCHMARK(BM_TickWithPositions)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

// Ten thousand ticks, each with fresh quotes of every contract: the widget
// count, the button lists made and the resident memory must not grow.
void BM_TenThousandTicks(benchmark::State& state)
{
    CBoardRig rig;
    for (int warm = 0; warm < 50; ++warm) {
        rig.buffer(warm % 2 == 0);
        rig.panel->onTimer(TC::TUF_QUOTE);
        QCoreApplication::processEvents();
    }
    const int widgetsBefore = QApplication::allWidgets().size();
    const int buttonsBefore = rig.panel->getChainTable()->buttonListsMade();
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
    state.counters["buttonListsMade"] = rig.panel->getChainTable()->buttonListsMade() - buttonsBefore;
    state.counters["rssBeforeKb"] = static_cast<double>(memoryBefore);
    state.counters["rssAfterKb"] = static_cast<double>(widgetbench::statusKb("VmRSS"));
}
BENCHMARK(BM_TenThousandTicks)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
