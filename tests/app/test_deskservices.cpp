#include "app/cchartpages.h"
#include "app/cdeskservices.h"
#include "app/cmarketstatestore.h"
#include "seam/calculator.h"
#include "seam/common.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/cquoterequest.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "seam/userrecords.h"
#include "services/market/cmarkethistory.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimquoteclient.h"
#include "support/testsupport.h"
#include "toolkit/itradedockablewidget.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>

namespace {

struct StartCase {
    const char* now;
    const char* expected;
};

class LiveMarketStart : public testing::TestWithParam<StartCase> {};

// A panel of one trade type, to ask needRequestAccount.
class Panel : public TC::ITradeDockableWidget {
public:
    explicit Panel(TC::TraderTypeFlags flags)
        : TC::ITradeDockableWidget(false, QStringLiteral("p"), 1, flags, nullptr)
    {
    }
};

}  // namespace

TEST_P(LiveMarketStart, IsInASessionWhateverTheHour)
{
    const QDateTime now = QDateTime::fromString(QString::fromLatin1(GetParam().now), Qt::ISODate);
    const QDateTime expected = QDateTime::fromString(QString::fromLatin1(GetParam().expected), Qt::ISODate);
    EXPECT_EQ(desk::CDeskServices::liveMarketStart(now), expected) << GetParam().now;
}

INSTANTIATE_TEST_SUITE_P(Cases, LiveMarketStart,
                         testing::Values(StartCase{"2026-11-23T10:15:00", "2026-11-23T10:15:00"},   // Monday morning
                                         StartCase{"2026-11-23T14:00:00", "2026-11-23T14:00:00"},   // Monday afternoon
                                         StartCase{"2026-11-23T08:00:00", "2026-11-23T10:00:00"},   // before the open
                                         StartCase{"2026-11-23T12:00:00", "2026-11-24T10:00:00"},   // lunch
                                         StartCase{"2026-11-23T20:00:00", "2026-11-24T10:00:00"},   // evening
                                         StartCase{"2026-11-27T16:00:00", "2026-11-30T10:00:00"},   // Friday after close
                                         StartCase{"2026-11-22T09:00:00", "2026-11-23T10:00:00"},   // Sunday
                                         StartCase{"2026-09-30T16:00:00", "2026-10-08T10:00:00"})); // National Day

TEST(DeskServices, InstallsTheServicesAndRemovesThemAtTheEnd)
{
    QTemporaryDir dir;
    {
        desk::DeskServicesConfig config;
        config.configDir = dir.path();
        config.seed = 7;
        config.quoteRate = 20.0;
        config.marketStart = QDateTime(QDate(2026, 11, 23), QTime(10, 0));
        desk::CDeskServices services(config);
        ASSERT_NE(utils::CManualSingletonT<TC::CExchangeClient>::instance(), nullptr);
        ASSERT_NE(utils::CManualSingletonT<TC::CQuoteClient>::instance(), nullptr);
        ASSERT_NE(nqservice::GreekAndOptionsCalculator::instance(), nullptr);
        ASSERT_NE(TC::getUserConfig(), nullptr);
        // The panels look below <config-dir>/config; their chart pages stand in <config-dir>/charts.
        EXPECT_EQ(TC::getConfigDir(), dir.path() + QStringLiteral("/config"));
        EXPECT_EQ(services.tradingDate(), QDate(2026, 11, 23));

        QMap<QString, QMap<QString, QStringList>> chains;
        services.exchange()->getStockOptionMap(chains);
        EXPECT_TRUE(chains.contains(QString::fromStdString(utils::vqStockKey("SH", "510050"))));

        // The feed publishes on its own threads; a subscription hears it.
        std::atomic<int> heard{0};
        auto request = TC::CQuoteRequest::makeHandicapRequest(
            QString::fromStdString(utils::vqStockKey("SH", "510050")),
            [&heard](boost::shared_ptr<TC::CPriceData>& quote) {
                if (quote) {
                    ++heard;
                }
            },
            TC::ST_DEFAULT);
        ASSERT_TRUE(request);
        EXPECT_TRUE(testsupport::waitUntil([&] { return heard.load() >= 2; }, 10000));
        request.reset();
        EXPECT_TRUE(services.statusText().startsWith(QStringLiteral("模拟行情  2026-11-23 10:0")))
            << services.statusText().toStdString();
        EXPECT_TRUE(services.statusText().contains(QStringLiteral("连续竞价")));
    }
    EXPECT_EQ(utils::CManualSingletonT<TC::CExchangeClient>::instance(), nullptr);
    EXPECT_EQ(utils::CManualSingletonT<TC::CQuoteClient>::instance(), nullptr);
    EXPECT_EQ(nqservice::GreekAndOptionsCalculator::instance(), nullptr);
    EXPECT_EQ(TC::getUserConfig(), nullptr);
    EXPECT_EQ(utils::CManualSingletonT<TC::CTimeService>::instance(), nullptr);
}

TEST(DeskServices, PutsTheChartPagesWhereThePanelsLookForThem)
{
    QTemporaryDir dir;
    const QString before = TC::getConfigDir();
    // This program runs from the build tree: its pages are in <build>/charts.
    const QString source = desk::CChartPages::sourceDir();
    ASSERT_FALSE(source.isEmpty()) << "no chart pages beside the test program: was optdesk_charts built?";
    desk::CDeskServices::installChartPages(dir.path());
    EXPECT_EQ(TC::getConfigDir(), dir.path() + QStringLiteral("/config"));
    EXPECT_TRUE(QFileInfo(TC::getConfigDir()).isDir());
    const QString page = TC::getConfigDir() + QStringLiteral("/../charts/profitAndLossChart/profitAndLossIndex.html");
    const QString echarts = TC::getConfigDir() + QStringLiteral("/../charts/profitAndLossChart/echarts.min.js");
    EXPECT_TRUE(QFileInfo::exists(page));
    EXPECT_GT(QFileInfo(echarts).size(), 100000);
    // Only the pages: nothing of CMake's beside them.
    EXPECT_EQ(QDir(dir.filePath(QStringLiteral("charts"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("profitAndLossChart")});

    // A page left from an older build is replaced at the next start.
    {
        QFile stale(page);
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stale.write("old");
    }
    QString error;
    ASSERT_TRUE(desk::CChartPages::install(source, dir.path(), &error)) << error.toStdString();
    QFile fresh(page);
    ASSERT_TRUE(fresh.open(QIODevice::ReadOnly));
    EXPECT_TRUE(fresh.readAll().contains("function loadChart("));

    // Nowhere to copy from: a reason, not a crash.
    EXPECT_FALSE(desk::CChartPages::install(QString(), dir.path(), &error));
    EXPECT_FALSE(error.isEmpty());
    TC::getConfig()->setConfigDir(before);
}

TEST(DeskServices, PhaseNames)
{
    EXPECT_EQ(desk::CDeskServices::phaseName(48), QStringLiteral("开盘前"));
    EXPECT_EQ(desk::CDeskServices::phaseName(54), QStringLiteral("已收盘"));
    EXPECT_EQ(desk::CDeskServices::phaseName(64), QStringLiteral("盘后定价"));
    EXPECT_EQ(desk::CDeskServices::phaseName(12345), QStringLiteral("-"));
}

TEST(DeskServices, PanelsRequestOnlyAccountsOfTheirTradeType)
{
    QTemporaryDir dir;
    desk::DeskServicesConfig config;
    config.configDir = dir.path();
    config.marketStart = QDateTime(QDate(2026, 11, 23), QTime(10, 0));
    desk::CDeskServices services(config);
    TC::CUserConfig* user = TC::getUserConfig();
    ASSERT_NE(user, nullptr);
    const auto* accounts = static_cast<const QVector<boost::shared_ptr<TC::CAccount>>*>(
        user->getUserDataAddress(TC::UM_ACCOUNT_LIST));
    ASSERT_NE(accounts, nullptr);
    QString stockAccount;
    QString futureAccount;
    for (const auto& account : *accounts) {
        if (account->accountType == nqservice::VQ_BROKER_TYPE_STOCK_OPTION) {
            stockAccount = account->key();
        } else if (account->accountType == nqservice::VQ_BROKER_TYPE_FUTURE_OPTION) {
            futureAccount = account->key();
        }
    }
    ASSERT_FALSE(stockAccount.isEmpty());
    ASSERT_FALSE(futureAccount.isEmpty());

    Panel stockOnly(TC::TraderTypeFlags(32));
    EXPECT_TRUE(stockOnly.needRequestAccount(stockAccount.toStdString()));
    EXPECT_FALSE(stockOnly.needRequestAccount(futureAccount.toStdString()));
    EXPECT_FALSE(stockOnly.needRequestAccount("no-such-account"));
    EXPECT_FALSE(stockOnly.needRequestAccount(""));

    Panel both(TC::TraderTypeFlags(1056));
    EXPECT_TRUE(both.needRequestAccount(futureAccount.toStdString()));
    both.setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_FALSE(both.needRequestAccount(futureAccount.toStdString()));
    both.setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_TRUE(both.needRequestAccount(futureAccount.toStdString()));
}

namespace {

desk::DeskServicesConfig marketConfig(const QString& dir, const QDateTime& start)
{
    desk::DeskServicesConfig config;
    config.configDir = dir;
    config.seed = 7;
    config.quoteRate = 4.0;
    config.marketStart = start;
    config.clockSpeed = 0.0;  // the test moves the clock itself
    return config;
}

QStringList monthsOf(desk::CDeskServices& services, const char* underlying)
{
    QMap<QString, QMap<QString, QStringList>> chains;
    services.exchange()->getStockOptionMap(chains);
    return chains.value(QString::fromLatin1(underlying)).keys();
}

}  // namespace

TEST(DeskServices, AfterTheCloseTheMarketMovesOnToTheNextTradingDayOnce)
{
    QTemporaryDir dir;
    // The November month expires on Wednesday the 25th.
    desk::CDeskServices services(marketConfig(dir.path(), QDateTime(QDate(2026, 11, 25), QTime(14, 50))));
    std::vector<std::string> newDates;
    QObject::connect(services.exchange(), &TC::CExchangeClient::sigNewTradingDate,
                     [&newDates](const std::string& date) { newDates.push_back(date); });
    QSignalSpy ready(services.exchange(), &TC::CExchangeClient::sigInitDataFinish);
    EXPECT_TRUE(monthsOf(services, "510050.SH").contains(QStringLiteral("20261125")));
    const int daysToDecember = services.exchange()->getRemainDays(QStringLiteral("20261223"));

    services.clock()->setDateTime(QDateTime(QDate(2026, 11, 25), QTime(15, 1)));
    services.checkTradingDate();
    EXPECT_EQ(newDates.size(), 0U) << "the closing snapshots stand a while first";

    services.clock()->setDateTime(QDateTime(QDate(2026, 11, 25), QTime(15, 6)));
    services.checkTradingDate();
    services.checkTradingDate();
    ASSERT_EQ(newDates.size(), 1U);
    EXPECT_EQ(newDates.front(), "20261126");
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(services.tradingDate(), QDate(2026, 11, 26));
    EXPECT_EQ(services.clock()->currentDateTime().date(), QDate(2026, 11, 26));
    EXPECT_EQ(services.clock()->currentDateTime().time(), desk::CDeskServices::preOpenTime());
    const QStringList months = monthsOf(services, "510050.SH");
    EXPECT_FALSE(months.contains(QStringLiteral("20261125"))) << "the expired month has left";
    EXPECT_TRUE(months.contains(QStringLiteral("20270127"))) << "January is listed";
    EXPECT_EQ(services.exchange()->getRemainDays(QStringLiteral("20261223")), daysToDecember - 1);
    // The day opens on the history's close of the day before.
    const market::CMarketDay closed = market::CMarketHistory(7).day(QDate(2026, 11, 25));
    EXPECT_EQ(services.exchange()->getCodeInfo(QStringLiteral("510050.SH"))->preClosePrice,
              closed.closes.value(QStringLiteral("510050.SH")));

    desk::MarketState state;
    ASSERT_EQ(desk::CMarketStateStore(dir.path()).load(state), desk::CMarketStateStore::LoadResult::Loaded);
    EXPECT_EQ(state.seed, 7U);
    EXPECT_EQ(state.tradingDate, QDate(2026, 11, 26));
}

TEST(DeskServices, TheJumpClosesTheDayAndARestartStartsOnTheLaterDay)
{
    QTemporaryDir dir;
    {
        desk::CDeskServices services(marketConfig(dir.path(), QDateTime(QDate(2026, 11, 27), QTime(10, 0))));
        QSignalSpy ready(services.exchange(), &TC::CExchangeClient::sigInitDataFinish);
        services.closeAndAdvance();
        EXPECT_EQ(ready.count(), 1);
        // Friday's close leads to Monday's open.
        EXPECT_EQ(services.tradingDate(), QDate(2026, 11, 30));
        EXPECT_EQ(services.clock()->currentDateTime(), QDateTime(QDate(2026, 11, 30), desk::CDeskServices::openTime(),
                                                                  Qt::OffsetFromUTC, 8 * 3600));
        // The feed of the new day publishes its contracts.
        EXPECT_TRUE(services.quotes()->getStockPrice(QStringLiteral("510050.SH")));
    }
    desk::MarketState state;
    ASSERT_EQ(desk::CMarketStateStore(dir.path()).load(state), desk::CMarketStateStore::LoadResult::Loaded);
    EXPECT_EQ(state.tradingDate, QDate(2026, 11, 30));
    // A restart asked for an earlier day continues where the market was.
    desk::DeskServicesConfig again = marketConfig(dir.path(), QDateTime(QDate(2026, 11, 27), QTime(10, 0)));
    again.reachedDate = state.tradingDate;
    desk::CDeskServices restarted(again);
    EXPECT_EQ(restarted.tradingDate(), QDate(2026, 11, 30));
    EXPECT_EQ(restarted.exchange()->tradingDate(), QDate(2026, 11, 30));
}
