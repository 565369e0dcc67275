// Trading phases by the session clock, the seconds left in the day, and the
// exchange client's calendar.
#include "seam/marketenums.h"
#include "services/market/csessionclock.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimquoteclient.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using market::CSessionClock;
using market::CSimClock;
using market::CSimExchangeClient;

namespace {

const QDate kTuesday(2024, 12, 10);

struct PhaseCase {
    const char* market;
    QDate date;
    QTime time;
    int phase;
};

void PrintTo(const PhaseCase& c, std::ostream* os)
{
    *os << c.market << " " << c.date.toString(Qt::ISODate).toStdString() << " "
        << c.time.toString("HH:mm:ss").toStdString() << " -> " << c.phase;
}

class TradingPhase : public ::testing::TestWithParam<PhaseCase> {};

TEST_P(TradingPhase, FollowsTheSessions)
{
    const auto& c = GetParam();
    EXPECT_EQ(CSessionClock::phaseAt(c.market, QDateTime(c.date, c.time)), c.phase);
}

INSTANTIATE_TEST_SUITE_P(
    Stock, TradingPhase,
    ::testing::Values(PhaseCase{"SH", kTuesday, QTime(0, 30), TC::TP_BEFORE_OPEN},
                      PhaseCase{"SH", kTuesday, QTime(9, 14, 59), TC::TP_BEFORE_OPEN},
                      PhaseCase{"SH", kTuesday, QTime(9, 15), TC::TP_OPEN_CALL_AUCTION},
                      PhaseCase{"SZ", kTuesday, QTime(9, 24, 59), TC::TP_OPEN_CALL_AUCTION},
                      PhaseCase{"SH", kTuesday, QTime(9, 25), TC::TP_AUCTION_MATCHED},
                      PhaseCase{"SH", kTuesday, QTime(9, 30), TC::TP_CONTINUOUS},
                      PhaseCase{"SH", kTuesday, QTime(11, 29, 59), TC::TP_CONTINUOUS},
                      PhaseCase{"SH", kTuesday, QTime(11, 30), TC::TP_NOT_TRADING},
                      PhaseCase{"SZ", kTuesday, QTime(13, 0), TC::TP_CONTINUOUS},
                      PhaseCase{"SH", kTuesday, QTime(14, 56, 59), TC::TP_CONTINUOUS},
                      PhaseCase{"SH", kTuesday, QTime(14, 57), TC::TP_CLOSE_CALL_AUCTION},
                      PhaseCase{"SH", kTuesday, QTime(15, 0), TC::TP_CLOSED},
                      PhaseCase{"SH", kTuesday, QTime(22, 0), TC::TP_CLOSED},
                      PhaseCase{"SH", QDate(2024, 12, 14), QTime(10, 0), TC::TP_NOT_TRADING}));

INSTANTIATE_TEST_SUITE_P(
    Future, TradingPhase,
    ::testing::Values(PhaseCase{"DCE", kTuesday, QTime(8, 0), TC::TP_BEFORE_OPEN},
                      PhaseCase{"DCE", kTuesday, QTime(8, 56), TC::TP_OPEN_CALL_AUCTION},
                      PhaseCase{"DCE", kTuesday, QTime(9, 0), TC::TP_CONTINUOUS},
                      PhaseCase{"DCE", kTuesday, QTime(10, 20), TC::TP_NOT_TRADING},
                      PhaseCase{"DCE", kTuesday, QTime(13, 0), TC::TP_NOT_TRADING},
                      PhaseCase{"DCE", kTuesday, QTime(14, 0), TC::TP_CONTINUOUS},
                      PhaseCase{"DCE", kTuesday, QTime(16, 0), TC::TP_CLOSED},
                      PhaseCase{"DCE", kTuesday, QTime(21, 30), TC::TP_CONTINUOUS},
                      PhaseCase{"DCE", kTuesday, QTime(23, 30), TC::TP_CLOSED}));

struct RemainCase {
    QTime time;
    int seconds;
};

class RemainSecond : public ::testing::TestWithParam<RemainCase> {};

TEST_P(RemainSecond, CountsTheTradingTimeLeft)
{
    CSimClock clock(QDateTime(kTuesday, GetParam().time), 0.0);
    CSimExchangeClient client(market::TInstrumentList{}, kTuesday, &clock);
    EXPECT_EQ(client.getRemainSecond(), GetParam().seconds) << GetParam().time.toString().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Times, RemainSecond,
                         ::testing::Values(RemainCase{QTime(8, 0), 14400}, RemainCase{QTime(9, 30), 14400},
                                           RemainCase{QTime(10, 0), 12600}, RemainCase{QTime(12, 0), 7200},
                                           RemainCase{QTime(14, 0), 3600}, RemainCase{QTime(14, 59, 30), 30},
                                           RemainCase{QTime(15, 30), 0}));

TEST(RemainSecond, IsZeroOnceTheTradingDateHasPassed)
{
    CSimClock clock(QDateTime(kTuesday.addDays(1), QTime(10, 0)), 0.0);
    CSimExchangeClient client(market::TInstrumentList{}, kTuesday, &clock);
    EXPECT_EQ(client.getRemainSecond(), 0);
}

TEST(RemainDays, CountsCalendarDaysFromTheTradingDate)
{
    CSimExchangeClient client(market::TInstrumentList{}, kTuesday);
    EXPECT_EQ(client.getRemainDays("20241210"), 0);
    EXPECT_EQ(client.getRemainDays("20241211"), 1);
    EXPECT_EQ(client.getRemainDays("20241225"), 15);
    EXPECT_EQ(client.getRemainDays("20250326"), 106);
    EXPECT_EQ(client.getRemainDays("20241209"), -1);
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays("2024121")));
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays("20241332")));
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays(QString())));
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays("2024121x")));
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays("+2024121")));
    EXPECT_TRUE(utils::isAbsent(client.getRemainDays("20240230")));
    EXPECT_EQ(client.getRemainDays("20240229"), -285);
    EXPECT_EQ(client.getTradingDate(), "20241210");
}

TEST(TradingDate, RollsOverWithSignals)
{
    CSimClock clock(QDateTime(kTuesday, QTime(10, 0)), 0.0);
    CSimExchangeClient client(5, kTuesday, &clock);
    std::vector<std::string> dates;
    QObject::connect(&client, &TC::CExchangeClient::sigNewTradingDate,
                     [&dates](const std::string& date) { dates.push_back(date); });
    QSignalSpy ready(&client, &TC::CExchangeClient::sigInitDataFinish);
    EXPECT_FALSE(client.checkTradingDate());
    clock.setDateTime(QDateTime(kTuesday.addDays(1), QTime(8, 0)));
    EXPECT_TRUE(client.checkTradingDate());
    ASSERT_EQ(dates.size(), 1U);
    EXPECT_EQ(dates.front(), "20241211");
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(client.getRemainDays("20241211"), 0);
    // A Saturday is no trading day.
    clock.setDateTime(QDateTime(QDate(2024, 12, 14), QTime(10, 0)));
    EXPECT_FALSE(client.checkTradingDate());
}

TEST(TradingDate, FixedUniverseStaysAcrossDays)
{
    auto detail = std::make_shared<nqservice::CInstrumentDetail>();
    detail->market = "SH";
    detail->code = "510050";
    CSimExchangeClient client(market::TInstrumentList{detail}, kTuesday);
    client.setTradingDate(kTuesday.addDays(1));
    EXPECT_EQ(client.getCodeInfo("510050.SH"), detail);
    EXPECT_EQ(client.getAllCodes(), QStringList{"510050.SH"});
}

TEST(QuoteClientPhase, FollowsItsClockAndOverrides)
{
    CSimClock clock(QDateTime(kTuesday, QTime(9, 20)), 0.0);
    market::CSimQuoteClient quotes(&clock, false);
    EXPECT_EQ(quotes.getTradingPhase("SH", "10007001"), TC::TP_OPEN_CALL_AUCTION);
    EXPECT_EQ(quotes.getTradingPhase("DCE", "m2505"), TC::TP_CONTINUOUS);
    clock.advance(20 * 60 * 1000);
    EXPECT_EQ(quotes.getTradingPhase("SH", "10007001"), TC::TP_CONTINUOUS);
    quotes.setTradingPhase("10007001.SH", TC::TP_CLOSED);
    EXPECT_EQ(quotes.getTradingPhase("SH", "10007001"), TC::TP_CLOSED);
    EXPECT_EQ(quotes.getTradingPhase("SH", "10007002"), TC::TP_CONTINUOUS);
    quotes.setTradingPhase("10007001.SH", utils::kAbsentInt);
    EXPECT_EQ(quotes.getTradingPhase("SH", "10007001"), TC::TP_CONTINUOUS);
}

TEST(StockOptionStatus, HasChineseItemNames)
{
    EXPECT_EQ(nqservice::stockOptionStatusName(nqservice::SOS_NORMAL), "-");
    EXPECT_EQ(nqservice::stockOptionStatusName(nqservice::SOS_SUSPENDED), "停牌");
    EXPECT_EQ(nqservice::stockOptionStatusName(nqservice::SOS_NEAR_EXPIRY), "临近到期");
    EXPECT_EQ(nqservice::stockOptionStatusName(nqservice::SOS_NEWLY_LISTED), "新挂牌");
    EXPECT_EQ(nqservice::stockOptionStatusName(99), "-");
}

}  // namespace

TEST(TradingCalendar, SpringFestivalWeekHasNoSession)
{
    // 2026: closed from Monday 16 to Monday 23 February, open again on the 24th.
    for (QDate day(2026, 2, 16); day <= QDate(2026, 2, 23); day = day.addDays(1)) {
        EXPECT_FALSE(CSessionClock::isTradingDay(day)) << day.toString(Qt::ISODate).toStdString();
        EXPECT_EQ(CSessionClock::phaseAt("SH", QDateTime(day, QTime(10, 0))), TC::TP_NOT_TRADING);
        EXPECT_EQ(CSessionClock::remainingSeconds("SH", QDateTime(day, QTime(9, 0))), 0);
    }
    EXPECT_TRUE(CSessionClock::isTradingDay(QDate(2026, 2, 13)));
    EXPECT_EQ(CSessionClock::nextTradingDay(QDate(2026, 2, 13)), QDate(2026, 2, 24));
}

TEST(TradingCalendar, NationalDayAndOrdinaryWeekends)
{
    EXPECT_EQ(CSessionClock::nextTradingDay(QDate(2026, 9, 30)), QDate(2026, 10, 8));
    EXPECT_EQ(CSessionClock::nextTradingDay(QDate(2027, 9, 30)), QDate(2027, 10, 8));
    EXPECT_EQ(CSessionClock::nextTradingDay(QDate(2026, 11, 20)), QDate(2026, 11, 23));
    EXPECT_TRUE(CSessionClock::isTradingDay(QDate(2026, 11, 25)));
    EXPECT_FALSE(CSessionClock::isTradingDay(QDate(2026, 11, 22)));
    EXPECT_FALSE(CSessionClock::isHoliday(QDate(2026, 11, 22)));
    EXPECT_TRUE(CSessionClock::isHoliday(QDate(2027, 2, 10)));
}

TEST(TradingCalendar, NightSessionBelongsToTheNextTradingDay)
{
    // A Friday night's quote is dated Monday; before a holiday, the day after it.
    EXPECT_EQ(CSessionClock::tradingDayOf("DCE", QDateTime(QDate(2026, 11, 20), QTime(21, 30))), QDate(2026, 11, 23));
    EXPECT_EQ(CSessionClock::tradingDayOf("DCE", QDateTime(QDate(2026, 11, 24), QTime(20, 55))), QDate(2026, 11, 25));
    EXPECT_EQ(CSessionClock::tradingDayOf("DCE", QDateTime(QDate(2026, 11, 24), QTime(14, 0))), QDate(2026, 11, 24));
    EXPECT_EQ(CSessionClock::tradingDayOf("DCE", QDateTime(QDate(2026, 9, 30), QTime(22, 0))), QDate(2026, 10, 8));
    // The stock exchanges have no night session.
    EXPECT_EQ(CSessionClock::tradingDayOf("SH", QDateTime(QDate(2026, 11, 24), QTime(21, 30))), QDate(2026, 11, 24));
}
