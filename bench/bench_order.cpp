// Order entry under load: a press of a chain button to the order dialog shown
// with its price types (the first press makes the dialog, the second reuses
// it), and the price ladder's work per quote and its repaint.
#include "bench/widgetbench.h"
#include "board/coptionpricettable.h"
#include "order/coptionorderdialog.h"
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

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
