// The in-process services that the desk runs its panels on: the simulated
// exchange and quote feed, the pricing calculator, the user's settings, the
// paper broker with its trading services and the message service (first
// installed, last removed). It
// installs them as the process's singletons at start and removes them at exit,
// in the reverse order, after the feed's threads have ended.
#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

namespace market {
class CSimClock;
class CSimExchangeClient;
class CSimQuoteClient;
}  // namespace market

namespace TC {
class CUserConfig;
class CUserSettingsStore;
}  // namespace TC

namespace trading {
class CPaperBroker;
class CDeskTradeClient;
}  // namespace trading

namespace desk {

struct DeskServicesConfig {
    QString configDir;
    unsigned seed = 20261122U;
    double quoteRate = 2.0;  // snapshots per second per contract
    int feedThreads = 2;
    // When set, the Greeks import is switched on for this directory.
    QString greeksImportDir;
    // The market's clock starts here (exchange local time) and runs at clockSpeed
    // times the wall clock.
    QDateTime marketStart;
    double clockSpeed = 1.0;
    // The trading date this directory's market has reached: the clock never starts
    // before it. It is kept in market.json when configDir is set.
    QDate reachedDate;
    // The paper broker's ledger; empty: "paper.sqlite" in the configuration directory.
    QString ledgerPath;
};

class CDeskServices {
public:
    explicit CDeskServices(const DeskServicesConfig& config);
    ~CDeskServices();
    CDeskServices(const CDeskServices&) = delete;
    CDeskServices& operator=(const CDeskServices&) = delete;

    // A live market whatever the hour: in a trading session the wall clock, else
    // 10:00 of the next trading day (exchange local time).
    static QDateTime liveMarketStart(const QDateTime& exchangeNow);

    // Ends the trading day once the clock is past its close (15:05, after the
    // closing snapshots), or has reached a later day: the market moves on to the
    // next trading day's pre-open.
    void checkTradingDate();
    // The menu's jump: to the close of the trading day, its closing snapshots
    // published, then on to the next trading day's open.
    void closeAndAdvance();
    // When the next trading day begins after a close, and when the automatic roll-over
    // comes (exchange local times of their days).
    static QTime preOpenTime() { return QTime(9, 14); }
    static QTime openTime() { return QTime(9, 30); }
    static QTime rollOverTime() { return QTime(15, 5); }
    // "模拟行情 2026-11-23 10:00:05 连续竞价 | 50ETF 2.950 +0.35%": what the status bar shows.
    QString statusText() const;
    // The name of a trading phase as the status bar shows it.
    static QString phaseName(int phase);

    // Sets the panels' configuration directory to <configDir>/config and copies
    // the chart pages to <configDir>/charts, from the build or install tree.
    static void installChartPages(const QString& configDir);

    market::CSimClock* clock() const { return m_clock; }
    market::CSimExchangeClient* exchange() const { return m_exchange; }
    market::CSimQuoteClient* quotes() const { return m_quotes; }
    QDate tradingDate() const { return m_tradingDate; }
    trading::CPaperBroker* broker() const { return m_broker.get(); }
    // What the user must be told of the start (a damaged ledger set aside).
    QStringList notices() const { return m_notices; }
    // The kill switch: while halted the broker refuses every new command.
    void setTradingHalted(bool halted);

    // What the paper accounts hold when the broker opens them.
    static double openingCash(int brokerType);
    // The demo user's option winner on 50ETF: levels around its close for each
    // forecast and a window of the next hundred days from the trading date.
    // Stores nothing when the user has a winner setting of 50ETF already or the
    // exchange has no close of it; true when it stored them.
    static bool seedDemoWinnerSettings(TC::CUserConfig* settings, double close, const QDate& tradingDate);

private:
    void startBroker(const DeskServicesConfig& config, TC::CUserConfig* settings);
    // The demo user's first basket: a bull call spread on 50ETF.
    void seedExampleBasket(TC::CUserSettingsStore* settings);
    void startFeed();
    void stopFeed();
    // Moves the market to a later trading day and the clock to `startsAt` on it
    // when the clock is earlier.
    void rollTo(const QDate& date, const QTime& startsAt);
    // Settles the paper broker's day at the market's settlement prices.
    void settleBroker();
    void saveState();

    market::CSimClock* m_clock = nullptr;
    market::CSimExchangeClient* m_exchange = nullptr;
    market::CSimQuoteClient* m_quotes = nullptr;
    QDate m_tradingDate;
    QString m_configDir;
    unsigned m_seed = 0;
    double m_quoteRate = 2.0;
    int m_feedThreads = 2;
    trading::CDeskTradeClient* m_tradeClient = nullptr;
    std::unique_ptr<trading::CPaperBroker> m_broker;
    QStringList m_notices;
};

}  // namespace desk
