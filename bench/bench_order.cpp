// Order entry under load: a press of a chain button to the order dialog shown
// with its price types (the first press makes the dialog, the second reuses
// it), and the price ladder's work per quote and its repaint.
#include "bench/widgetbench.h"
#include "board/coptionpricettable.h"
#include "order/coptionorderdialog.h"
#include "order/chpfoptionmultiorderdatamodel.h"
#include "order/cstkoptionmultiorderdialog.h"
#include "order/cpricetquickordertable.h"
#include "order/cpricetquickorderwidget.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/trading/cdesktradeclient.h"
#include "services/user/cusersettingsstore.h"
#include "tests/order/orderfakes.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cparametercell.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTimeZone>

#include <memory>

namespace {

class CFixedClock : public TC::CTimeService {
public:
    explicit CFixedClock(long long ms) : m_ms(ms) {}
    long long currentTime() const override { return m_ms; }

private:
    long long m_ms;
};

// The desk's market and a logged-in paper user with fakes of the trading services.
class COrderRig {
public:
    COrderRig()
    {
        const QDate date(2026, 11, 20);
        clock = new CFixedClock(QDateTime(date, QTime(10, 30), QTimeZone(8 * 3600)).toMSecsSinceEpoch());
        utils::CManualSingletonT<TC::CTimeService>::install(clock);
        exchange = utils::CManualSingletonT<TC::CExchangeClient>::create<market::CSimExchangeClient>(7u, date, clock);
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, true);
        market::CSimMarketConfig config;
        config.seed = 7;
        config.clock = clock;
        quotes->attachFeed(std::make_unique<market::CSimMarket>(exchange->instruments(), quotes, config));
        quotes->feed()->publishRound();
        nqservice::GreekAndOptionsCalculator::setInstance(boost::make_shared<pricing::CGreekAndOptionsCalculator>());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(new TC::CUserSettingsStore(configDir.path()));
        center = boost::make_shared<ordertest::CFakeTraderCenter>();
        center->data->addAccount("SO001");
        center->data->addAccount("SO002");
        nqservice::TraderCenter::install(center);
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(new ordertest::CAllReadyLogin());
        utils::CManualSingletonT<TC::CTradeClient>::create<trading::CDeskTradeClient>();

        QMap<QString, QMap<QString, QStringList>> map;
        exchange->getStockOptionMap(map);
        codes = map.value(QStringLiteral("510050.SH")).first();
    }
    ~COrderRig()
    {
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(nullptr);
        nqservice::TraderCenter::destroy();
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
        nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        utils::CManualSingletonT<TC::CTimeService>::destroy();
    }

    QTemporaryDir configDir;
    CFixedClock* clock = nullptr;
    market::CSimExchangeClient* exchange = nullptr;
    market::CSimQuoteClient* quotes = nullptr;
    boost::shared_ptr<ordertest::CFakeTraderCenter> center;
    QStringList codes;
};

// From the press of a row's "开" to the dialog shown with its price types.
// Argument 0: the first press, which makes the dialog; 1: a press while it is open.
void BM_OrderButtonToDialog(benchmark::State& state)
{
    COrderRig rig;
    TC::COptionPriceTTable table(nullptr);
    table.resize(1400, 700);
    table.setInstrument(rig.codes);
    table.show();
    QCoreApplication::processEvents();
    const bool reuse = state.range(0) != 0;
    int types = 0;
    for (auto _ : state) {
        if (!reuse && table.getOrderDialog() != nullptr) {
            state.PauseTiming();
            table.getOrderDialog()->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            state.ResumeTiming();
        }
        table.handleEvent(WG::UE_BUTTON_CLICKED, 4, 0, QString(), nullptr);
        QCoreApplication::processEvents();
        types = table.getOrderDialog()->getPriceTypeCombo()->count();
    }
    state.counters["priceTypes"] = types;
}
BENCHMARK(BM_OrderButtonToDialog)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One quote into the ladder: its rows rebuilt around the market and the working
// volumes written again, as the ladder's slot does on the GUI thread.
void BM_LadderQuote(benchmark::State& state)
{
    COrderRig rig;
    TC::CPriceTQuickOrderWidget ladder(nullptr);
    ladder.resize(267, 900);
    ladder.show();
    ladder.setStockCode(rig.codes.first());
    ladder.setAccounts({{"SO001", boost::make_shared<nqservice::CAccountInfo>()}}, QString());
    std::vector<boost::shared_ptr<TC::CPriceData>> snapshots;
    for (int i = 0; i < 64; ++i) {
        snapshots.push_back(rig.quotes->feed()->makeSnapshot(rig.codes.first()));
    }
    const bool paint = state.range(0) != 0;
    std::size_t i = 0;
    for (auto _ : state) {
        emit ladder.sigLatestPrice(snapshots[i]);  // the slot, directly: the rows and the working volumes
        ladder.getPriceTable()->updateTable();
        if (paint) {
            ladder.getPriceTable()->repaint();
        }
        i = (i + 1) % snapshots.size();
    }
    state.counters["rows"] = ladder.getPriceTable()->rowCount();
}
BENCHMARK(BM_LadderQuote)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// The multi-leg dialog of four legs priced at the opponent's best (the type
// that reads the queue), its quotes taken from the simulated feed.
struct CMultiLegRig {
    CMultiLegRig()
    {
        QList<TC::CStrategyStockData> legs;
        for (int i = 0; i < 4; ++i) {
            TC::CStrategyStockData leg;
            leg.code = rig.codes.at(i);
            leg.operation = i % 2 == 0 ? nqservice::OT_BUY : nqservice::OT_SELL;
            leg.quantity = 1;
            legs << leg;
            for (int k = 0; k < 16; ++k) {
                snapshots.push_back(rig.quotes->feed()->makeSnapshot(leg.code));
            }
        }
        dialog.setLegs(legs);
        dialog.getPriceTypeCombo()->addItem(QStringLiteral("对手价"), 14);
        dialog.getPriceTypeCombo()->setCurrentIndex(dialog.getPriceTypeCombo()->findData(14));
        dialog.getTimer()->stop();  // the benchmark runs the tick itself
        dialog.show();
        QCoreApplication::processEvents();
    }
    COrderRig rig;
    TC::CStkOptionMultiOrderDialog dialog{nullptr};
    std::vector<boost::shared_ptr<TC::CPriceData>> snapshots;
};

// One quote on a service thread: what onPrice costs (one map write under the lock).
void BM_MultiLegQuoteWrite(benchmark::State& state)
{
    CMultiLegRig rig;
    std::size_t i = 0;
    for (auto _ : state) {
        rig.dialog.onPrice(rig.snapshots[i]);
        i = (i + 1) % rig.snapshots.size();
    }
    state.counters["legs"] = rig.dialog.getLegModel()->size();
}
BENCHMARK(BM_MultiLegQuoteWrite)->Unit(benchmark::kNanosecond);

// A burst of 10,000 quotes on the legs, then the 500 ms tick: the table
// updates at most once per leg however many quotes came.
void BM_MultiLegBurstThenTick(benchmark::State& state)
{
    CMultiLegRig rig;
    long long updates = 0;
    long long ticks = 0;
    for (auto _ : state) {
        for (int q = 0; q < 10000; ++q) {
            rig.dialog.onPrice(rig.snapshots[static_cast<std::size_t>(q) % rig.snapshots.size()]);
        }
        const long long before = rig.dialog.rowUpdates();
        rig.dialog.slotTimeOut();
        updates += rig.dialog.rowUpdates() - before;
        ++ticks;
    }
    const double legs = rig.dialog.getLegModel()->size();
    state.counters["updatesPerLegPerTick"] = ticks > 0 ? static_cast<double>(updates) / ticks / legs : 0.0;
    state.counters["quotesPerTick"] = 10000;
}
BENCHMARK(BM_MultiLegBurstThenTick)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
