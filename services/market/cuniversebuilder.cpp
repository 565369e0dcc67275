#include "services/market/cuniversebuilder.h"

#include "services/market/cmarkethistory.h"
#include "services/market/csessionclock.h"

#include <cmath>

namespace market {

namespace {

constexpr double kStrikeEpsilon = 1e-9;

QDate nthTradingDay(int year, int month, int n)
{
    QDate day(year, month, 1);
    int count = 0;
    while (true) {
        if (CSessionClock::isTradingDay(day) && ++count == n) {
            return day;
        }
        day = day.addDays(1);
    }
}

}  // namespace

TInstrumentList CUniverseBuilder::build(unsigned seed, const QDate& tradingDate)
{
    return CMarketHistory(seed).day(tradingDate).instruments;
}

QDate CUniverseBuilder::fourthWednesday(int year, int month)
{
    QDate day(year, month, 1);
    const int toWednesday = (3 - day.dayOfWeek() + 7) % 7;
    return day.addDays(toWednesday + 21);
}

QDate CUniverseBuilder::etfOptionExpiry(int year, int month)
{
    const QDate wednesday = fourthWednesday(year, month);
    return CSessionClock::isTradingDay(wednesday) ? wednesday : CSessionClock::nextTradingDay(wednesday);
}

std::vector<QDate> CUniverseBuilder::listedMonths(const QDate& tradingDate)
{
    QDate first(tradingDate.year(), tradingDate.month(), 1);
    if (tradingDate > etfOptionExpiry(first.year(), first.month())) {
        first = first.addMonths(1);
    }
    std::vector<QDate> months{first, first.addMonths(1)};
    QDate quarter = first.addMonths(2);
    while (months.size() < 4) {
        if (quarter.month() % 3 == 0) {
            months.push_back(quarter);
        }
        quarter = quarter.addMonths(1);
    }
    return months;
}

double CUniverseBuilder::strikeStep(double price)
{
    const double p = price + kStrikeEpsilon;
    if (p < 3.0) {
        return 0.05;
    }
    if (p < 5.0) {
        return 0.1;
    }
    if (p < 10.0) {
        return 0.25;
    }
    if (p < 20.0) {
        return 0.5;
    }
    if (p < 50.0) {
        return 1.0;
    }
    if (p < 100.0) {
        return 2.5;
    }
    return 5.0;
}

double CUniverseBuilder::nearestStrike(double price)
{
    const double step = strikeStep(price);
    const double below = std::floor((price + kStrikeEpsilon) / step) * step;
    const double up = nextStrikeUp(roundToTick(below, 0.001));
    const double down = roundToTick(below, 0.001);
    return price - down <= up - price ? down : up;
}

double CUniverseBuilder::nextStrikeUp(double strike)
{
    return roundToTick(strike + strikeStep(strike), 0.001);
}

double CUniverseBuilder::nextStrikeDown(double strike)
{
    return roundToTick(strike - strikeStep(strike - 2 * kStrikeEpsilon - 1e-6), 0.001);
}

double CUniverseBuilder::futureStrikeStep(double price)
{
    if (price <= 2000.0) {
        return 25.0;
    }
    if (price <= 5000.0) {
        return 50.0;
    }
    return 100.0;
}

QDate CUniverseBuilder::futureOptionExpiry(int deliveryYear, int deliveryMonth)
{
    const QDate before = QDate(deliveryYear, deliveryMonth, 1).addMonths(-1);
    return nthTradingDay(before.year(), before.month(), 5);
}

double CUniverseBuilder::roundToTick(double value, double tick)
{
    return std::round(value / tick) * tick;
}

}  // namespace market
