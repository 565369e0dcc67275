// The payoff curve's arithmetic on Qt Core alone: anchor and strikes, the price
// grid, the payoff table, the script for the chart page and the log line of a
// length mismatch. The scripts of hand-computed legs are compared as text.
#include "board/boardfixture.h"
#include "seam/logger.h"
#include "strategy/cprofitandlosscurve.h"

#include <gtest/gtest.h>

#include <log4cxx/fileappender.h>
#include <log4cxx/level.h>
#include <log4cxx/patternlayout.h>

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cfloat>
#include <cmath>
#include <functional>

namespace {

using TC::CProfitAndLossCurve;
using TC::CProfitAndLossLeg;
using Curve = TC::CProfitAndLossCurve;

CProfitAndLossLeg leg(const QString& key, bool call, double strike, double last, int direction = 18)
{
    CProfitAndLossLeg result;
    result.key = key;
    result.call = call;
    result.strike = strike;
    result.last = last;
    result.direction = direction;
    result.hasInstrument = true;
    result.hasPrice = true;
    return result;
}

int cents(double price) { return static_cast<int>(std::lround(price * 100.0)); }

// The script the page should get for prices from startCents to endCents in
// steps of 5 cents, with the value of each price in ten-thousandths, worked
// out in whole numbers here.
QString expectedScript(int width, int startCents, int endCents, const std::function<int(int)>& valueOf)
{
    QStringList items;
    for (int c = startCents; c <= endCents; c += 5) {
        items << QString::asprintf("[%.4f,%.4f]", c / 100.0, valueOf(c) / 10000.0);
    }
    return QStringLiteral("loadChart('{\"width\":%1,\"data\":[%2]}')").arg(width).arg(items.join(QLatin1Char(',')));
}

// The grid's ends come from repeated addition: the outermost step may fall just
// short of the bound or just reach it.
void expectEnds(const std::vector<double>& prices, int lowCents, int highCents, int* start, int* end)
{
    ASSERT_FALSE(prices.empty());
    *start = cents(prices.front());
    *end = cents(prices.back());
    EXPECT_TRUE(*start == lowCents || *start == lowCents + 5) << *start;
    EXPECT_TRUE(*end == highCents || *end == highCents - 5) << *end;
}

TEST(ProfitAndLossCurve, CallOrPutByName)
{
    EXPECT_TRUE(Curve::isCallByName("50ETF购11月2900"));
    EXPECT_FALSE(Curve::isCallByName("50ETF沽11月2900"));
    EXPECT_TRUE(Curve::isCallByName("m2601-C-3000"));
    EXPECT_FALSE(Curve::isCallByName("m2601-P-3000"));
}

TEST(ProfitAndLossCurve, OneBoughtCallAnchorsAtStrikePlusPremiumAndDrawsItsPayoff)
{
    const std::vector<CProfitAndLossLeg> legs = {leg("10000010.SH", true, 2.5, 0.1)};
    const Curve::SSeries series = Curve::build(750, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_NEAR(series.anchor, 2.6, 1e-12);
    EXPECT_EQ(series.strikes, std::vector<double>{2.5});
    int start = 0;
    int end = 0;
    expectEnds(series.prices, 150, 350, &start, &end);
    // The anchor itself is a grid point, and the steps are 0.05.
    EXPECT_NE(std::find(series.prices.begin(), series.prices.end(), series.anchor), series.prices.end());
    for (std::size_t i = 1; i < series.prices.size(); ++i) {
        EXPECT_NEAR(series.prices[i] - series.prices[i - 1], 0.05, 1e-9);
    }
    // -0.1 up to the strike, then rising to 0.0 at the anchor.
    const auto valueOf = [](int c) { return c <= 250 ? -1000 : (c - 260) * 100; };
    EXPECT_EQ(series.script, expectedScript(750, start, end, valueOf));
    EXPECT_TRUE(series.script.contains(QStringLiteral("[2.5000,-0.1000],[2.5500,-0.0500],[2.6000,0.0000]")))
        << series.script.toStdString();
}

TEST(ProfitAndLossCurve, StraddleCountsTheSecondLegOfAStrikeOnlyInThePayoff)
{
    // Call first in key order: the put on the same strike adds nothing to the anchor.
    const std::vector<CProfitAndLossLeg> legs = {leg("A-call", true, 2.5, 0.1), leg("B-put", false, 2.5, 0.08)};
    const Curve::SSeries series = Curve::build(600, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_NEAR(series.anchor, 2.6, 1e-12);
    EXPECT_EQ(series.strikes, std::vector<double>{2.5});
    int start = 0;
    int end = 0;
    expectEnds(series.prices, 150, 350, &start, &end);
    // Both premiums paid: -0.18 at the strike, V-shaped around it.
    const auto valueOf = [](int c) { return c <= 250 ? (250 - c - 18) * 100 : (c - 268) * 100; };
    EXPECT_EQ(series.script, expectedScript(600, start, end, valueOf));

    // Put first: the anchor is the put's K - L instead.
    const std::vector<CProfitAndLossLeg> putFirst = {leg("A-put", false, 2.5, 0.08), leg("B-call", true, 2.5, 0.1)};
    std::vector<double> strikes;
    EXPECT_NEAR(Curve::anchorAndStrikes(putFirst, strikes), 2.42, 1e-12);
    EXPECT_EQ(strikes, std::vector<double>{2.5});
}

TEST(ProfitAndLossCurve, TwoLegsAddBothToTheAnchorAndTheGridReachesIt)
{
    // A bull call spread: the anchor is (2.45 + 0.10) + (2.55 + 0.05), near 5,
    // far beyond the upper bound 3.55; the grid runs down from it.
    const std::vector<CProfitAndLossLeg> legs = {leg("a", true, 2.45, 0.10), leg("b", true, 2.55, 0.05, 19)};
    const Curve::SSeries series = Curve::build(750, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_NEAR(series.anchor, 5.15, 1e-12);
    EXPECT_EQ(series.strikes, (std::vector<double>{2.45, 2.55}));
    EXPECT_NEAR(series.prices.back(), 5.15, 1e-12);
    EXPECT_GT(series.prices.back(), 2.55 + Curve::kGridMargin);
    const int start = cents(series.prices.front());
    EXPECT_TRUE(start == 145 || start == 150) << start;
    const auto valueOf = [](int c) {
        const int bought = c <= 245 ? -1000 : (c - 245) * 100 - 1000;
        const int sold = c <= 255 ? 500 : (255 - c) * 100 + 500;
        return bought + sold;
    };
    EXPECT_EQ(series.script, expectedScript(750, start, 515, valueOf));
}

TEST(ProfitAndLossCurve, TheSellColumnOfTheAnchorIsNotTheMirrorOfTheBuyColumn)
{
    std::vector<double> strikes;
    EXPECT_NEAR(Curve::anchorAndStrikes({leg("c", true, 2.5, 0.1, 18)}, strikes), 2.6, 1e-12);
    EXPECT_NEAR(Curve::anchorAndStrikes({leg("c", true, 2.5, 0.1, 19)}, strikes), 2.6, 1e-12);
    EXPECT_NEAR(Curve::anchorAndStrikes({leg("p", false, 2.5, 0.08, 18)}, strikes), 2.42, 1e-12);
    EXPECT_NEAR(Curve::anchorAndStrikes({leg("p", false, 2.5, 0.08, 19)}, strikes), -2.42, 1e-12);
}

TEST(ProfitAndLossCurve, AnyDirectionOtherThanBuyIsASale)
{
    for (int direction : {19, 0, 7, -1}) {
        const std::vector<CProfitAndLossLeg> legs = {leg("c", true, 2.5, 0.1, direction),
                                                     leg("p", false, 2.7, 0.2, direction)};
        // Sold call: +L below the strike, K - P + L above; sold put: P - K + L below, +L above.
        EXPECT_NEAR(Curve::payoffAt(legs, 2.0), 0.1 + (2.0 - 2.7) + 0.2, 1e-12) << direction;
        EXPECT_NEAR(Curve::payoffAt(legs, 3.0), (2.5 - 3.0) + 0.1 + 0.2, 1e-12) << direction;
        std::vector<double> strikes;
        EXPECT_NEAR(Curve::anchorAndStrikes(legs, strikes), (2.5 + 0.1) + (0.2 - 2.7), 1e-12) << direction;
    }
}

TEST(ProfitAndLossCurve, AtTheStrikeAPutPaysNothingAndACallIsOutOfTheMoney)
{
    EXPECT_DOUBLE_EQ(Curve::payoffAt({leg("p", false, 2.5, 0.08)}, 2.5), -0.08);
    EXPECT_DOUBLE_EQ(Curve::payoffAt({leg("c", true, 2.5, 0.1)}, 2.5), -0.1);
    EXPECT_DOUBLE_EQ(Curve::payoffAt({leg("p", false, 2.5, 0.08, 19)}, 2.5), 0.08);
    EXPECT_DOUBLE_EQ(Curve::payoffAt({leg("c", true, 2.5, 0.1, 19)}, 2.5), 0.1);
}

TEST(ProfitAndLossCurve, GridSteps005FromTheAnchorWithinTheBounds)
{
    const std::vector<double> grid = Curve::priceGrid(2.0, 1.9, 2.1);
    ASSERT_GE(grid.size(), 3u);
    EXPECT_TRUE(std::is_sorted(grid.begin(), grid.end()));
    EXPECT_NE(std::find(grid.begin(), grid.end(), 2.0), grid.end());
    EXPECT_NEAR(grid.front(), 1.9, 0.05 + 1e-9);
    EXPECT_NEAR(grid.back(), 2.1, 0.05 + 1e-9);
    // The anchor above the bounds: the grid runs down from it to the lower bound.
    const std::vector<double> above = Curve::priceGrid(3.0, 1.0, 2.0);
    EXPECT_EQ(above.back(), 3.0);
    EXPECT_EQ(cents(above[above.size() - 2]), 295);
    EXPECT_NEAR(above.front(), 1.0, 0.05 + 1e-9);
    EXPECT_EQ(above.size(), 41u);
    // Below them: it starts at the anchor and runs up to the upper bound.
    const std::vector<double> below = Curve::priceGrid(0.5, 1.0, 2.0);
    EXPECT_EQ(below.front(), 0.5);
    EXPECT_EQ(cents(below[1]), 55);
    EXPECT_NEAR(below.back(), 2.0, 0.05 + 1e-9);
}

TEST(ProfitAndLossCurve, LegsWithoutInstrumentOrPriceAreLeftOut)
{
    CProfitAndLossLeg unknown = leg("unknown", true, 2.0, 0.3);
    unknown.hasInstrument = false;
    CProfitAndLossLeg noQuote = leg("noquote", false, 2.2, 0.3);
    noQuote.hasPrice = false;
    const std::vector<CProfitAndLossLeg> legs = {leg("c", true, 2.5, 0.1), unknown, noQuote};
    const Curve::SSeries series = Curve::build(750, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_EQ(series.strikes, std::vector<double>{2.5});
    EXPECT_NEAR(series.anchor, 2.6, 1e-12);
    EXPECT_EQ(series.script, Curve::build(750, {legs.front()}, nullptr).script);
}

TEST(ProfitAndLossCurve, NoValidStrikeDrawsNothing)
{
    const Curve::SSeries series =
        Curve::build(750, {leg("k", true, utils::kAbsentDouble, 0.1), leg("l", true, 2.5, utils::kAbsentDouble)}, nullptr);
    EXPECT_EQ(series.outcome, Curve::OC_NO_STRIKE);
    EXPECT_TRUE(series.script.isEmpty());
    EXPECT_EQ(Curve::build(750, {}, nullptr).outcome, Curve::OC_NO_STRIKE);
}

TEST(ProfitAndLossCurve, AnInvalidLatestPriceReachesThePayoffAndShowsAsInvalid)
{
    // The sold call's latest is the absent marker: not among the strikes, but
    // summed all the same, so every value holds it and can't be shown.
    const std::vector<CProfitAndLossLeg> legs = {leg("a", true, 2.5, 0.1), leg("b", true, 2.8, utils::kAbsentDouble, 19)};
    const Curve::SSeries series = Curve::build(750, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_EQ(series.strikes, std::vector<double>{2.5});
    EXPECT_TRUE(series.script.contains(QStringLiteral("[2.6000,非法值]"))) << series.script.toStdString();
    EXPECT_EQ(Curve::formatPoint(2.5, DBL_MAX), QStringLiteral("[2.5000,非法值]"));
    EXPECT_EQ(Curve::formatPoint(2.5, -0.12), QStringLiteral("[2.5000,-0.1200]"));
}

TEST(ProfitAndLossCurve, ScriptJoinsWidthAndData)
{
    EXPECT_EQ(Curve::chartScript(750, {2.35, 2.4}, {-0.12, -0.07}),
              QStringLiteral("loadChart('{\"width\":750,\"data\":[[2.3500,-0.1200],[2.4000,-0.0700]]}')"));
    EXPECT_EQ(Curve::chartScript(320, {}, {}), QStringLiteral("loadChart('{\"width\":320,\"data\":[]}')"));
    EXPECT_TRUE(Curve::chartScript(750, {2.35}, {}).isEmpty());
}

TEST(ProfitAndLossCurve, ThemeScriptNamesTheThemeAndItsColours)
{
    EXPECT_EQ(Curve::themeScript(QStringLiteral("light"), {{"rise", "#d9281e"}, {"fall", "#0a8a3c"}}),
              QStringLiteral("setTheme('light',{\"rise\":\"#d9281e\",\"fall\":\"#0a8a3c\"})"));
    // A quote can't break out of the call.
    EXPECT_EQ(Curve::themeScript(QStringLiteral("da'rk"), {}), QStringLiteral("setTheme('dark',{})"));
}

class LogCapture {
public:
    LogCapture()
    {
        m_path = QDir(m_dir.path()).filePath(QStringLiteral("curve.log"));
        m_appender = log4cxx::AppenderPtr(new log4cxx::FileAppender(
            log4cxx::LayoutPtr(new log4cxx::PatternLayout("%p %m%n")), m_path.toStdString(), false));
        g_NQStdLogger->addAppender(m_appender);
    }
    ~LogCapture() { stop(); }
    QStringList lines()
    {
        stop();
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    void stop()
    {
        if (m_appender) {
            g_NQStdLogger->removeAppender(m_appender);
            m_appender->close();
            m_appender = log4cxx::AppenderPtr();
        }
    }
    QTemporaryDir m_dir;
    QString m_path;
    log4cxx::AppenderPtr m_appender;
};

TEST(ProfitAndLossCurve, LengthMismatchLogsOneErrorLineAndDrawsNothing)
{
    const log4cxx::LevelPtr level = g_NQStdLogger->getLevel();
    g_NQStdLogger->setLevel(log4cxx::Level::getInfo());
    int owner = 0;
    LogCapture capture;
    const Curve::SSeries series = Curve::fromSeries(750, {2.35, 2.4}, {-0.12}, &owner);
    EXPECT_EQ(series.outcome, Curve::OC_LENGTH_MISMATCH);
    EXPECT_TRUE(series.script.isEmpty());
    const QString address = QStringLiteral("0x%1").arg(reinterpret_cast<quintptr>(&owner), 0, 16);
    EXPECT_EQ(capture.lines(), QStringList{QStringLiteral("ERROR [%1] [TC::CProfitAndLossWebView::loadData] "
                                                          "dPriceList.size() != dValueList.size()")
                                               .arg(address)});
    g_NQStdLogger->setLevel(level);
}

TEST(ProfitAndLossCurve, LengthMismatchLogsNothingWhenErrorsAreNotEnabled)
{
    const log4cxx::LevelPtr level = g_NQStdLogger->getLevel();
    g_NQStdLogger->setLevel(log4cxx::Level::getFatal());
    LogCapture capture;
    EXPECT_EQ(Curve::fromSeries(750, {2.35}, {}, nullptr).outcome, Curve::OC_LENGTH_MISMATCH);
    EXPECT_TRUE(capture.lines().isEmpty());
    g_NQStdLogger->setLevel(level);
}

// The legs as the services answer for them: keys find instruments, bare codes don't.
class ProfitAndLossLegs : public boardtest::BoardTest {};

TEST_F(ProfitAndLossLegs, KeysFindInstrumentsAndQuotesAndCodesDoNot)
{
    publish(quote("10000010", 0.12, 0.11));
    QMap<QString, int> map;
    map.insert(QStringLiteral("10000010.SH"), 19);
    map.insert(QStringLiteral("10000010"), 18);
    map.insert(QStringLiteral("10000021.SH"), 18);
    const std::vector<CProfitAndLossLeg> legs = Curve::collectLegs(map);
    ASSERT_EQ(legs.size(), 3u);
    // Text order: the bare code sorts first.
    EXPECT_EQ(legs[0].key, QStringLiteral("10000010"));
    EXPECT_FALSE(legs[0].hasInstrument);
    EXPECT_FALSE(legs[0].hasPrice);
    EXPECT_EQ(legs[1].key, QStringLiteral("10000010.SH"));
    EXPECT_TRUE(legs[1].hasInstrument);
    EXPECT_TRUE(legs[1].call);
    EXPECT_DOUBLE_EQ(legs[1].strike, 2.9);
    EXPECT_TRUE(legs[1].hasPrice);
    EXPECT_DOUBLE_EQ(legs[1].last, 0.12);
    EXPECT_EQ(legs[1].direction, 19);
    // The put has no quote yet: it is left out of strikes and payoff.
    EXPECT_TRUE(legs[2].hasInstrument);
    EXPECT_FALSE(legs[2].call);
    EXPECT_DOUBLE_EQ(legs[2].strike, 3.0);
    EXPECT_FALSE(legs[2].hasPrice);
    const Curve::SSeries series = Curve::build(750, legs, nullptr);
    ASSERT_EQ(series.outcome, Curve::OC_DRAWN);
    EXPECT_EQ(series.strikes, std::vector<double>{2.9});
    EXPECT_NEAR(series.anchor, 3.02, 1e-12);
}

}  // namespace
