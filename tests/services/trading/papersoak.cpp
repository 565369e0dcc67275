// Streams orders into a paper broker until it is killed, printing every order
// and deal its subscriber is handed, so that a test can kill it at any moment
// and check that the ledger holds all of them.
//   paper_soak <ledger path> <seed>
#include "services/trading/paperfixture.h"

#include "services/trading/cpaperbroker.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <thread>

using namespace paperfixture;

namespace {
void say(const std::string& line)
{
    // Unbuffered: a line on stdout is a line the subscriber had before any kill.
    const std::string text = line + "\n";
    ssize_t ignored = ::write(STDOUT_FILENO, text.data(), text.size());
    (void)ignored;
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: paper_soak <ledger path> <seed>\n");
        return 2;
    }
    Market market;
    trading::PaperBrokerConfig config;
    config.ledgerPath = QString::fromLocal8Bit(argv[1]);
    config.instruments = market.lookup();
    const auto so = stockAccount();
    const auto fo = futureAccount();
    config.accounts = {so, fo};
    trading::CPaperBroker broker(config);
    QString report;
    if (!broker.start(&report)) {
        std::fprintf(stderr, "cannot start: %s\n", report.toLocal8Bit().constData());
        return 1;
    }
    std::vector<boost::shared_ptr<nqservice::SubRequest>> handles;
    for (const auto& terms : {so, fo}) {
        handles.push_back(broker.subscribe(terms.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER, "",
                                           [](const boost::shared_ptr<nqservice::IData>& record) {
                                               const auto order =
                                                   boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
                                               say("O " + order->getKey() + " " + std::to_string(order->tradedVolume));
                                           }));
        handles.push_back(broker.subscribe(terms.info->getKey(), nqservice::VQ_DATA_TYPE_QUICK_ORDER, "",
                                           [](const boost::shared_ptr<nqservice::IData>& record) {
                                               say("D " + record->getKey());
                                           }));
    }
    broker.setLoggedIn(so.info->getKey(), true);
    broker.setLoggedIn(fo.info->getKey(), true);
    broker.step(at(10, 0));
    say("READY");
    std::mt19937 random(static_cast<unsigned>(std::stoul(argv[2])));
    auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (long long i = 0;; ++i) {
        if (i % 5 == 0) {
            broker.feedQuote(quote(kCall, 0.0996 + 0.0001 * pick(5), 0.1002 + 0.0001 * pick(2)));
            broker.feedQuote(quote(kMealCall, 98.0 + pick(4), 101.0, 10, 0.5, 300.0, 0.5));
        }
        const bool meal = pick(3) == 0;
        const auto& terms = meal ? fo : so;
        const int op = meal ? pick(6) : 32 + pick(4);
        const double price = meal ? 99.0 + 0.5 * pick(6) : 0.0997 + 0.0001 * pick(7);
        broker.submit(command({order(terms, meal ? kMealCall : kCall, op, nqservice::PT_FIX, price, 1 + pick(5))}));
        if (i % 7 == 0) {
            std::vector<boost::shared_ptr<nqservice::IData>> orders;
            broker.getVector(terms.info->getKey(), nqservice::VQ_DATA_TYPE_ORDER, orders);
            if (!orders.empty()) {
                const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(orders[static_cast<std::size_t>(pick(static_cast<int>(orders.size())))]);
                broker.cancel(terms.info->getKey(), order->orderId);
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
}
