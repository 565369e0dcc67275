// Kills a process that streams orders into a paper broker at random moments
// (kill -9), and checks after each kill that every order and deal its
// subscriber had been handed is in the ledger, and that the restored funds and
// positions agree with the deals.
#include "services/trading/paperfixture.h"

#include "services/trading/cpaperbrokercore.h"
#include "services/trading/cpaperledger.h"
#include "services/trading/cpapersettlementrecord.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <chrono>
#include <thread>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace paperfixture;

namespace {

int rounds()
{
    const QByteArray value = qgetenv("PAPER_KILL_ROUNDS");
    return value.isEmpty() ? 200 : value.toInt();
}

TEST(PaperKill, WhatASubscriberSawSurvivesKillNine)
{
    QTemporaryDir dir;
    const QString ledgerPath = dir.filePath(QStringLiteral("paper.sqlite"));
    std::mt19937 random(424242U);
    const int total = rounds();
    long long seenOrders = 0;
    long long seenDeals = 0;
    for (int round = 0; round < total; ++round) {
        QProcess process;
        process.setProgram(QStringLiteral(PAPER_SOAK_PATH));
        process.setArguments({ledgerPath, QString::number(round + 1)});
        process.start();
        ASSERT_TRUE(process.waitForStarted(10000));
        // Killed at a random moment once it streams: between 0 and 120 ms after it is ready.
        QByteArray out;
        while (!out.contains("READY") && process.state() == QProcess::Running) {
            process.waitForReadyRead(1000);
            out += process.readAllStandardOutput();
        }
        ASSERT_TRUE(out.contains("READY")) << process.readAllStandardError().toStdString();
        const int delay = static_cast<int>(random() % 120);
        if (delay > 0) {
            process.waitForFinished(delay);
        }
        process.kill();
        ASSERT_TRUE(process.waitForFinished(10000));
        out += process.readAllStandardOutput();

        std::map<std::string, int> orders;  // account|orderId -> traded as seen
        std::set<std::string> deals;
        for (const QByteArray& line : out.split('\n')) {
            const QList<QByteArray> parts = line.split(' ');
            if (parts.size() == 3 && parts[0] == "O") {
                int& traded = orders[parts[1].toStdString()];
                traded = std::max(traded, parts[2].toInt());
            } else if (parts.size() == 2 && parts[0] == "D") {
                deals.insert(parts[1].toStdString());
            }
        }
        seenOrders += static_cast<long long>(orders.size());
        seenDeals += static_cast<long long>(deals.size());

        trading::CPaperLedger ledger(ledgerPath);
        QString report;
        ASSERT_TRUE(ledger.open(&report));
        ASSERT_TRUE(report.isEmpty()) << "round " << round << ": " << report.toStdString();
        Market market;
        trading::CPaperBrokerCore core(market.lookup());
        std::map<std::string, int> storedOrders;
        std::set<std::string> storedDeals;
        std::map<std::string, double> cash = {{"SO001", 1000000.0}, {"FO001", 500000.0}};
        std::map<std::string, long long> fromDeals = {{"SO001|" + kEtf + "|48", 100000}};
        std::map<std::string, long long> meta;
        ASSERT_TRUE(ledger.load(
            [&](int type, const std::string& account, const bson::BSONObj& record, const bson::BSONObj& extra) {
                core.restore(type, account, record, extra);
                if (type == nqservice::VQ_DATA_TYPE_ORDER) {
                    nqservice::COrderDetail order;
                    order.bsonValueFromObj(record, true, nullptr);
                    storedOrders[account + "|" + order.orderId] = order.tradedVolume;
                } else if (type == nqservice::VQ_DATA_TYPE_QUICK_ORDER) {
                    nqservice::CDealDetail deal;
                    deal.bsonValueFromObj(record, true, nullptr);
                    storedDeals.insert(account + "|" + deal.dealId);
                    const double unit = market.find(utils::vqStockKey(deal.market, deal.code))->contractUnit;
                    const double premium = std::round(deal.price * unit * deal.volume * 100.0) / 100.0;
                    const bool buy = deal.side == nqservice::EBS_BUY;
                    cash[account] += buy ? -(premium + deal.fee) : premium - deal.fee;
                    const int op = deal.operationType;
                    const bool open = op == 32 || op == 34 || op == 36 || op == 0 || op == 3;
                    const int direction = (op == 34 || op == 35 || op == 3 || op == 4 || op == 5) ? '1'
                                          : (op == 36 || op == 37)                                ? '2'
                                                                                                  : '0';
                    fromDeals[account + "|" + utils::vqStockKey(deal.market, deal.code) + "|" +
                              std::to_string(direction)] += open ? deal.volume : -deal.volume;
                }
            },
            meta, nullptr));
        core.setMeta(meta);
        core.finishRestore();
        for (const auto& entry : orders) {
            auto it = storedOrders.find(entry.first);
            ASSERT_NE(it, storedOrders.end()) << "round " << round << ": order " << entry.first << " was seen, not kept";
            ASSERT_GE(it->second, entry.second) << "round " << round << ": " << entry.first;
        }
        for (const std::string& deal : deals) {
            ASSERT_TRUE(storedDeals.count(deal)) << "round " << round << ": deal " << deal << " was seen, not kept";
        }
        for (const std::string account : {"SO001", "FO001"}) {
            const auto funds = core.funds(account);
            ASSERT_TRUE(funds);
            ASSERT_NEAR(funds->availableFunds + funds->frozenFunds + funds->margin, cash[account], 0.05)
                << "round " << round << " " << account;
            for (const auto& record : core.table(account, nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
                const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(record);
                const std::string key =
                    account + "|" + utils::vqStockKey(pos->market, pos->code) + "|" + std::to_string(pos->direction);
                ASSERT_EQ(pos->position, fromDeals[key]) << "round " << round << " " << key;
            }
        }
    }
    // The kills landed while records streamed, not only before the first.
    EXPECT_GT(seenOrders, total);
    EXPECT_GT(seenDeals, 0);
    std::printf("%d kills; orders seen %lld, deals seen %lld, all found in the ledger\n", total, seenOrders, seenDeals);
    RecordProperty("rounds", total);
    RecordProperty("ordersSeen", static_cast<int>(seenOrders));
    RecordProperty("dealsSeen", static_cast<int>(seenDeals));
}

}  // namespace

namespace {

// The books of many accounts, each long and short four options, for a close.
constexpr int kCloseAccounts = 100;
constexpr int kCloseDay = 20261124;

std::vector<std::string> closeOptions() { return {kCall, kPut, kCall31, kPut31}; }

void buildBooks(trading::CPaperBrokerCore& core, trading::PaperResult& out)
{
    for (int a = 0; a < kCloseAccounts; ++a) {
        core.openAccount(stockAccount("SO" + std::to_string(1000 + a)), out);
        core.setLoggedIn("SO" + std::to_string(1000 + a), true);
    }
    auto keep = [&out](const trading::PaperResult& result) {
        out.changes.insert(out.changes.end(), result.changes.begin(), result.changes.end());
    };
    keep(core.onClock(at(10, 0)));
    for (const std::string& key : closeOptions()) {
        keep(core.onQuote(quote(key, 0.0500, 0.0502, 100000)));
    }
    for (int a = 0; a < kCloseAccounts; ++a) {
        const auto terms = stockAccount("SO" + std::to_string(1000 + a));
        for (const std::string& key : closeOptions()) {
            keep(core.submit(command({order(terms, key, nqservice::OT_BUY_OPEN, nqservice::PT_FIX, 0.0502, 1),
                                      order(terms, key, nqservice::OT_SELL_OPEN, nqservice::PT_FIX, 0.0500, 1)})));
        }
    }
}

}  // namespace

TEST(PaperKill, AKillDuringTheCloseLeavesItWhollyDoneOrNotDoneAtAll)
{
    std::mt19937 random(777U);
    int done = 0;
    int notDone = 0;
    long long commitUs = 0;  // how long the close's commit takes, from the first round
    for (int round = 0; round < 10; ++round) {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("paper.sqlite"));
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // The books committed, then the close: one settle, one commit.
            Market market;
            trading::CPaperBrokerCore core(market.lookup());
            trading::CPaperLedger ledger(path);
            QString report;
            trading::PaperResult books;
            if (!ledger.open(&report)) {
                _exit(2);
            }
            buildBooks(core, books);
            std::string error;
            if (!ledger.commit(books.changes, core.meta(), &error)) {
                _exit(3);
            }
            trading::PaperSettlement day;
            day.tradingDay = kCloseDay;
            for (const std::string& key : closeOptions()) {
                day.prices[key] = 0.0700;
            }
            const trading::PaperResult close = core.settle(day);
            if (write(ready[1], "R", 1) != 1) {
                _exit(4);
            }
            ledger.commit(close.changes, core.meta(), &error);
            _exit(write(ready[1], "D", 1) == 1 ? 0 : 5);
        }
        close(ready[1]);
        char byte = 0;
        ASSERT_EQ(read(ready[0], &byte, 1), 1);
        int status = 0;
        if (round == 0) {
            // The first round runs to its end: it tells how long the commit takes.
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(read(ready[0], &byte, 1), 1);
            commitUs = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start)
                           .count();
            waitpid(child, &status, 0);
        } else {
            // Killed while it commits the close, or just before or after.
            std::this_thread::sleep_for(
                std::chrono::microseconds(random() % static_cast<unsigned long long>(std::max(1LL, commitUs * 2))));
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
        }
        close(ready[0]);

        Market market;
        trading::CPaperBrokerCore restored(market.lookup());
        trading::CPaperLedger ledger(path);
        QString report;
        ASSERT_TRUE(ledger.open(&report)) << report.toStdString();
        std::map<std::string, long long> meta;
        std::string error;
        ASSERT_TRUE(ledger.load(
            [&](int type, const std::string& account, const bson::BSONObj& record, const bson::BSONObj& extra) {
                restored.restore(type, account, record, extra);
            },
            meta, &error))
            << error;
        restored.setMeta(meta);
        restored.finishRestore();
        const bool settled = restored.settledDay() == kCloseDay;
        settled ? ++done : ++notDone;
        int marked = 0;
        int records = 0;
        for (const std::string& account : restored.accountKeys()) {
            records += static_cast<int>(restored.table(account, trading::kPaperSettlementDataType).size());
            for (const auto& row : restored.table(account, nqservice::VQ_DATA_TYPE_POSITION_STATICS)) {
                const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(row);
                if (pos->code != "510050" && std::fabs(pos->avgPrice - 0.0700) < 1e-9) {
                    ++marked;
                }
            }
        }
        ASSERT_EQ(static_cast<int>(restored.accountKeys().size()), kCloseAccounts);
        // All or nothing: every position marked and every account's record, or none.
        EXPECT_EQ(marked, settled ? kCloseAccounts * 8 : 0) << "round " << round;
        EXPECT_EQ(records, settled ? kCloseAccounts : 0) << "round " << round;
    }
    std::printf("close killed: %d done, %d not done (commit %lld us)\n", done, notDone, commitUs);
    EXPECT_GE(done, 1) << "the close that ran to its end is in the ledger";
}
