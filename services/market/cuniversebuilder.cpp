#include "services/market/cuniversebuilder.h"

#include "services/market/csessionclock.h"
#include "services/trading/cexchangerules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace market {

namespace {

using nqservice::CInstrumentDetail;

constexpr double kEtfOptionTick = 0.0001;
constexpr double kEtfTick = 0.001;
constexpr double kEtfOptionUnit = 10000.0;
constexpr double kRiskFreeRate = 0.02;
constexpr double kFutureOptionRate = 0.0;
// SSE limit orders since 2019-12-23 (上证发〔2019〕119号).
constexpr int kEtfMaxOrderVolume = 50;
constexpr double kStrikeEpsilon = 1e-9;

struct EtfSpec {
    const char* market;
    const char* code;
    const char* name;        // name of the fund
    const char* optionName;  // prefix of its options' names
    double price;            // typical price, moved by the seed
    double volatility;       // typical historical volatility
    double adjustedUnit;     // unit of its adjusted contracts, 0 when it has none
};

const EtfSpec kEtfs[] = {
    {nqservice::kMarketSSE, "510050", "上证50ETF", "50ETF", 2.60, 0.17, 10265.0},
    {nqservice::kMarketSSE, "510300", "沪深300ETF", "300ETF", 3.90, 0.16, 10129.0},
    {nqservice::kMarketSSE, "510500", "中证500ETF", "500ETF", 5.80, 0.21, 0.0},
    {nqservice::kMarketSSE, "588000", "科创50ETF", "科创50", 0.95, 0.30, 0.0},
    {nqservice::kMarketSSE, "588080", "科创板50ETF", "科创板50", 0.93, 0.30, 0.0},
    {nqservice::kMarketSZSE, "159919", "嘉实沪深300ETF", "300ETF", 4.00, 0.16, 10150.0},
    {nqservice::kMarketSZSE, "159915", "创业板ETF", "创业板ETF", 2.00, 0.26, 0.0},
    {nqservice::kMarketSZSE, "159922", "嘉实中证500ETF", "500ETF", 5.90, 0.21, 0.0},
    {nqservice::kMarketSZSE, "159901", "深证100ETF", "深100ETF", 3.00, 0.22, 0.0},
};

// Soybean meal on the DCE: futures of these delivery months carry options.
const int kMealMonths[] = {1, 3, 5, 7, 8, 9, 11, 12};
constexpr double kMealPrice = 3200.0;
constexpr double kMealVolatility = 0.20;
constexpr double kMealUnit = 10.0;
constexpr double kMealFutureTick = 1.0;
constexpr double kMealOptionTick = 0.5;
constexpr double kMealMarginParameter = 0.08;
constexpr int kMealMaxOrderVolume = 1000;

int dateInt(const QDate& date) { return date.year() * 10000 + date.month() * 100 + date.day(); }

double normalCdf(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

// A rough value at the previous close, only to give the options plausible
// previous prices; the market model prices the day's quotes.
double blackValue(bool call, double forward, double strike, double years, double volatility, double discount)
{
    if (years <= 0.0 || volatility <= 0.0) {
        return discount * std::max(0.0, call ? forward - strike : strike - forward);
    }
    const double stdDev = volatility * std::sqrt(years);
    const double d1 = std::log(forward / strike) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    return call ? discount * (forward * normalCdf(d1) - strike * normalCdf(d2))
                : discount * (strike * normalCdf(-d2) - forward * normalCdf(-d1));
}

double smileVolatility(double atm, double forward, double strike, double years)
{
    const double k = std::log(strike / forward) / std::sqrt(std::max(years, 1.0 / 365.0));
    return std::clamp(atm * (1.0 - 0.08 * k + 0.06 * k * k), 0.05, 1.2);
}

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

class Builder {
public:
    Builder(unsigned seed, const QDate& date) : m_random(seed), m_date(date) {}

    TInstrumentList run()
    {
        int sseSerial = 10006001 + static_cast<int>(uniform(0, 900)) * 10;
        int szseSerial = 90002001 + static_cast<int>(uniform(0, 900)) * 10;
        for (const EtfSpec& def : kEtfs) {
            const bool sse = std::string(def.market) == nqservice::kMarketSSE;
            addEtf(def, sse ? sseSerial : szseSerial);
        }
        addSoybeanMeal();
        return std::move(m_list);
    }

private:
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    int uniformInt(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    void addEtf(const EtfSpec& def, int& serial)
    {
        auto fund = std::make_shared<CInstrumentDetail>();
        fund->market = def.market;
        fund->code = def.code;
        fund->name = def.name;
        fund->kind = nqservice::IK_FUND;
        fund->priceTick = kEtfTick;
        fund->tradingCode = def.code;
        fund->contractUnit = 1.0;
        fund->riskFreeRate = kRiskFreeRate;
        fund->historyVolatility = CUniverseBuilder::roundToTick(def.volatility * uniform(0.85, 1.2), 0.0001);
        const double price = CUniverseBuilder::roundToTick(def.price * std::exp(uniform(-0.08, 0.08)), kEtfTick);
        fund->preClosePrice = price;
        fund->preSettlementPrice = price;
        m_list.push_back(fund);

        const std::vector<QDate> months = CUniverseBuilder::listedMonths(m_date);
        for (std::size_t m = 0; m < months.size(); ++m) {
            const QDate expiry = CUniverseBuilder::etfOptionExpiry(months[m].year(), months[m].month());
            // Far months were listed long ago and the price has wandered since:
            // their ladders reach further. A month first listed today is newly listed.
            const int extraUp = uniformInt(0, 2 + static_cast<int>(m));
            const int extraDown = uniformInt(0, 2 + static_cast<int>(m));
            const double atm = CUniverseBuilder::nearestStrike(price);
            std::vector<double> strikes{atm};
            double strike = atm;
            for (int i = 0; i < 4 + extraUp; ++i) {
                strike = CUniverseBuilder::nextStrikeUp(strike);
                strikes.push_back(strike);
            }
            strike = atm;
            for (int i = 0; i < 4 + extraDown; ++i) {
                strike = CUniverseBuilder::nextStrikeDown(strike);
                if (strike <= kStrikeEpsilon) {
                    break;
                }
                strikes.insert(strikes.begin(), strike);
            }
            // A month is listed on the trading day after the expiry that makes room
            // for it; quarter months were listed long before.
            QDate listed = expiry.addMonths(-6 - uniformInt(0, 3));
            if (m < 2) {
                const QDate previous = months[0].addMonths(static_cast<int>(m) - 2);
                listed = CSessionClock::nextTradingDay(
                    CUniverseBuilder::etfOptionExpiry(previous.year(), previous.month()));
            }
            const double years = std::max(1.0, static_cast<double>(m_date.daysTo(expiry)) + 1.0) / 365.0;
            const double atmVol = fund->historyVolatility * uniform(0.95, 1.15);
            for (double k : strikes) {
                for (bool call : {true, false}) {
                    addEtfOption(def, *fund, expiry, listed, k, call, false, kEtfOptionUnit, years, atmVol, serial);
                }
            }
            // Adjusted contracts of the two nearest months: a dividend changed their
            // unit while the strike stayed on the grid.
            if (def.adjustedUnit > 0.0 && m < 2) {
                const std::size_t first = strikes.size() / 2 >= 3 ? strikes.size() / 2 - 3 : 0;
                for (std::size_t i = first; i < std::min(strikes.size(), first + 4); ++i) {
                    for (bool call : {true, false}) {
                        addEtfOption(def, *fund, expiry, expiry.addMonths(-6), strikes[i], call, true,
                                     def.adjustedUnit, years, atmVol, serial);
                    }
                }
            }
        }
    }

    void addEtfOption(const EtfSpec& def, const CInstrumentDetail& fund, const QDate& expiry, const QDate& listed,
                      double strike, bool call, bool adjusted, double unit, double years, double atmVol, int& serial)
    {
        auto option = std::make_shared<CInstrumentDetail>();
        option->market = def.market;
        option->code = std::to_string(serial++);
        const int strikeMilli = static_cast<int>(std::lround(strike * 1000.0));
        option->name = fmt::format(FMT_STRING("{0}{1}{2}月{3}{4}"), def.optionName, call ? "购" : "沽",
                                   expiry.month(), strikeMilli, adjusted ? "A" : "");
        option->tradingCode = fmt::format(FMT_STRING("{0}{1}{2:02d}{3:02d}{4}{5:05d}"), def.code, call ? "C" : "P",
                                          expiry.year() % 100, expiry.month(), adjusted ? "A" : "M", strikeMilli);
        option->kind = nqservice::IK_STOCK_OPTION;
        option->exerciseStyle = nqservice::ES_EUROPEAN;
        option->call = call;
        option->adjusted = adjusted;
        option->underlyingCode = fund.code;
        option->underlyingMarket = fund.market;
        option->expireDate = dateInt(expiry);
        option->lastExerciseDate = dateInt(expiry);
        option->listDate = dateInt(listed);
        option->priceTick = kEtfOptionTick;
        option->contractUnit = unit;
        option->exercisePrice = strike;
        option->riskFreeRate = kRiskFreeRate;
        option->historyVolatility = fund.historyVolatility;
        option->maxOrderVolume = kEtfMaxOrderVolume;
        const double spot = fund.preClosePrice;
        const double discount = std::exp(-kRiskFreeRate * years);
        const double forward = spot / discount;
        const double vol = smileVolatility(atmVol, forward, strike, years);
        const double value = std::max(blackValue(call, forward, strike, years, vol, discount),
                                      std::max(0.0, call ? spot - strike : strike - spot));
        // Adjusted contracts are quoted per 10000 units of the old terms.
        const double scaled = value * unit / kEtfOptionUnit;
        option->preSettlementPrice = std::max(kEtfOptionTick, CUniverseBuilder::roundToTick(scaled, kEtfOptionTick));
        option->preClosePrice = std::max(
            kEtfOptionTick,
            CUniverseBuilder::roundToTick(option->preSettlementPrice * (1.0 + uniform(-0.02, 0.02)), kEtfOptionTick));
        // Field 3007: the exchange margin of one short contract at the previous settlement.
        option->marginParameter =
            trading::CExchangeRules::shortOptionMargin(*option, option->preSettlementPrice, fund.preClosePrice);
        m_list.push_back(option);
    }

    void addSoybeanMeal()
    {
        // Futures whose options have not expired yet; the four nearest.
        int added = 0;
        for (int year = m_date.year(); added < 4 && year <= m_date.year() + 2; ++year) {
            for (int month : kMealMonths) {
                if (added >= 4) {
                    break;
                }
                const QDate optionExpiry = CUniverseBuilder::futureOptionExpiry(year, month);
                if (optionExpiry < m_date) {
                    continue;
                }
                addMealFuture(year, month, optionExpiry);
                ++added;
            }
        }
    }

    void addMealFuture(int year, int month, const QDate& optionExpiry)
    {
        const std::string futureCode = fmt::format(FMT_STRING("m{0:02d}{1:02d}"), year % 100, month);
        auto future = std::make_shared<CInstrumentDetail>();
        future->market = nqservice::kMarketDCE;
        future->code = futureCode;
        future->name = fmt::format(FMT_STRING("豆粕{0:02d}{1:02d}"), year % 100, month);
        future->kind = nqservice::IK_FUTURE;
        future->tradingCode = futureCode;
        future->priceTick = kMealFutureTick;
        future->contractUnit = kMealUnit;
        future->marginParameter = kMealMarginParameter;
        future->riskFreeRate = kRiskFreeRate;
        future->historyVolatility = CUniverseBuilder::roundToTick(kMealVolatility * uniform(0.85, 1.2), 0.0001);
        future->expireDate = dateInt(nthTradingDay(year, month, 10));
        future->lastExerciseDate = future->expireDate;
        future->maxOrderVolume = kMealMaxOrderVolume;
        const double price = CUniverseBuilder::roundToTick(kMealPrice * std::exp(uniform(-0.1, 0.1)), kMealFutureTick);
        future->preClosePrice = price;
        future->preSettlementPrice = CUniverseBuilder::roundToTick(price * (1.0 + uniform(-0.004, 0.004)), 1.0);
        m_list.push_back(future);

        const double step = CUniverseBuilder::futureStrikeStep(price);
        const double atm = CUniverseBuilder::roundToTick(price / step, 1.0) * step;
        const double years = std::max(1.0, static_cast<double>(m_date.daysTo(optionExpiry)) + 1.0) / 365.0;
        const double atmVol = future->historyVolatility * uniform(0.95, 1.1);
        const int wings = 6 + uniformInt(0, 3);
        for (int i = -wings; i <= wings; ++i) {
            const double strike = atm + i * step;
            for (bool call : {true, false}) {
                auto option = std::make_shared<CInstrumentDetail>();
                option->market = nqservice::kMarketDCE;
                option->code = fmt::format(FMT_STRING("{0}-{1}-{2}"), futureCode, call ? "C" : "P",
                                           static_cast<int>(std::lround(strike)));
                option->name = fmt::format(FMT_STRING("豆粕{0:02d}{1:02d}{2}{3}"), year % 100, month,
                                           call ? "购" : "沽", static_cast<int>(std::lround(strike)));
                option->tradingCode = option->code;
                option->kind = nqservice::IK_FUTURE_OPTION;
                option->exerciseStyle = nqservice::ES_AMERICAN;
                option->call = call;
                option->underlyingCode = future->code;
                option->underlyingMarket = future->market;
                option->expireDate = dateInt(optionExpiry);
                option->lastExerciseDate = dateInt(optionExpiry);
                option->listDate = dateInt(optionExpiry.addMonths(-10));
                option->priceTick = kMealOptionTick;
                option->contractUnit = kMealUnit;
                option->exercisePrice = strike;
                // Futures options are priced undiscounted: with rate 0 the board's
                // Black-Scholes on the futures price is Black-76, so a price made
                // at one volatility reads back that volatility for calls and puts.
                option->riskFreeRate = kFutureOptionRate;
                option->historyVolatility = future->historyVolatility;
                option->maxOrderVolume = kMealMaxOrderVolume;
                const double discount = std::exp(-kFutureOptionRate * years);
                const double vol = smileVolatility(atmVol, price, strike, years);
                // American exercise: worth at least the intrinsic value.
                const double value = std::max(blackValue(call, price, strike, years, vol, discount),
                                              std::max(0.0, call ? price - strike : strike - price));
                option->preSettlementPrice =
                    std::max(kMealOptionTick, CUniverseBuilder::roundToTick(value, kMealOptionTick));
                option->preClosePrice = std::max(
                    kMealOptionTick, CUniverseBuilder::roundToTick(value * (1.0 + uniform(-0.02, 0.02)), kMealOptionTick));
                option->marginParameter = trading::CExchangeRules::shortOptionMargin(
                    *option, option->preSettlementPrice, future->preSettlementPrice, kMealMarginParameter);
                m_list.push_back(option);
            }
        }
    }

    std::mt19937 m_random;
    QDate m_date;
    TInstrumentList m_list;
};

}  // namespace

TInstrumentList CUniverseBuilder::build(unsigned seed, const QDate& tradingDate)
{
    return Builder(seed, tradingDate).run();
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
