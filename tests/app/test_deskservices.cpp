#include "app/cdeskservices.h"
#include "seam/calculator.h"
#include "seam/common.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/cquoterequest.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "seam/userrecords.h"
#include "services/market/csimexchangeclient.h"
#include "support/testsupport.h"
#include "toolkit/itradedockablewidget.h"

#include <gtest/gtest.h>

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
                                         StartCase{"2026-11-22T09:00:00", "2026-11-23T10:00:00"})); // Sunday

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
        EXPECT_EQ(TC::getConfigDir(), dir.path());
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
