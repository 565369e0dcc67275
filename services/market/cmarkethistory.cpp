#include "services/market/cmarkethistory.h"

#include "services/market/csessionclock.h"
#include "services/market/cuniversebuilder.h"
#include "services/trading/cexchangerules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>

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
constexpr double kTradingDaysPerYear = 250.0;
constexpr double kCalendarDaysPerYear = 365.0;
constexpr double kPi = 3.14159265358979323846;
// Daily pull of the price paths towards their typical price.
constexpr double kEtfReversion = 1.0 / 500.0;
constexpr double kMealReversion = 1.0 / 120.0;
// The exchanges list at least this many strikes either side of the money.
constexpr int kStrikesAroundTheMoney = 4;
constexpr int kMealStrikesAroundTheMoney = 6;

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
constexpr int kEtfCount = static_cast<int>(sizeof(kEtfs) / sizeof(kEtfs[0]));
// The soybean meal price path follows the ETFs' in the table of paths.
constexpr int kMealPath = kEtfCount;
constexpr int kPathCount = kEtfCount + 1;

// Soybean meal on the DCE: futures of these delivery months carry options.
const int kMealMonths[] = {1, 3, 5, 7, 8, 9, 11, 12};
constexpr double kMealPrice = 3200.0;
constexpr double kMealVolatility = 0.20;
constexpr double kMealUnit = 10.0;
constexpr double kMealFutureTick = 1.0;
constexpr double kMealOptionTick = 0.5;
constexpr double kMealMarginParameter = 0.08;
constexpr int kMealMaxOrderVolume = 1000;

// Option codes are serials of eight digits, dealt out by each exchange in the
// order of listing; they come round again after this many, long after the
// contracts that had them expired.
constexpr int kSseFirstCode = 10000001;
constexpr int kSzseFirstCode = 90000001;
constexpr int kCodeCycle = 9999;

// What a seeded draw is for, so that no two uses share a number.
enum Purpose : std::uint64_t {
    kDrawBasePrice = 1,
    kDrawVolatility,
    kDrawDailyReturn,
    kDrawFirstCode,
    kDrawCarry,
    kDrawOptionClose,
    kDrawFutureSettle,
    kDrawLadder,
};

// splitmix64: a counter-based draw, so that any day's number needs no replay of
// a generator.
std::uint64_t mix(std::uint64_t x)
{
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31U);
}

std::uint64_t textHash(const std::string& text)
{
    std::uint64_t h = 1469598103934665603ULL;  // FNV-1a: the same on every platform
    for (unsigned char c : text) {
        h = (h ^ c) * 1099511628211ULL;
    }
    return h;
}

int dateInt(const QDate& date)
{
    return date.year() * 10000 + date.month() * 100 + date.day();
}

double normalCdf(double x)
{
    return 0.5 * std::erfc(-x / std::sqrt(2.0));
}

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

double smileVolatility(double atm, double forward, double strike, double years, bool stockMarket)
{
    const double k = std::log(strike / forward) / std::sqrt(std::max(years, 1.0 / kCalendarDaysPerYear));
    return std::clamp(
        atm * (1.0 + CMarketHistory::smileSkew(stockMarket) * k + CMarketHistory::smileCurvature() * k * k), 0.05, 1.2);
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

int toMilli(double strike)
{
    return static_cast<int>(std::lround(strike * 1000.0));
}

// One listed strike of an ETF option month: its call and its put.
struct EtfStrike {
    int milli = 0;
    int listDate = 0;
    std::string callCode;
    std::string putCode;
};

struct EtfMonth {
    QDate month;  // first day
    QDate expiry;
    std::vector<EtfStrike> strikes;   // normal contracts, ascending and contiguous on the grid
    std::vector<EtfStrike> adjusted;  // adjusted contracts, listed with the month
};

struct MealFuture {
    int year = 0;
    int month = 0;
    QDate optionExpiry;
    std::map<int, int> strikes;  // strike -> listing date
};

class Replay {
public:
    Replay(unsigned seed, const QDate& target) : m_seed(seed), m_target(target) {}

    CMarketDay run()
    {
        setUpPaths();
        // Every trading day from the epoch up to the target is replayed for its
        // listings; the target is the last day, trading or not.
        QDate day = CMarketHistory::epoch();
        int index = 0;
        while (day < m_target) {
            list(day, index);
            m_previousDay = day;
            day = CSessionClock::nextTradingDay(day);
            ++index;
        }
        const bool trading = CSessionClock::isTradingDay(m_target) || m_target <= CMarketHistory::epoch();
        list(m_target, index);
        return publish(index, trading);
    }

private:
    double uniform(std::uint64_t purpose, std::uint64_t a, std::uint64_t b, double low, double high) const
    {
        const std::uint64_t h = mix(mix(mix(mix(m_seed) ^ purpose) ^ a) ^ b);
        return low + (high - low) * static_cast<double>(h >> 11U) * 0x1.0p-53;
    }
    int uniformInt(std::uint64_t purpose, std::uint64_t a, std::uint64_t b, int low, int high) const
    {
        return std::min(high, low + static_cast<int>(uniform(purpose, a, b, 0.0, 1.0) * (high - low + 1)));
    }
    double normal(std::uint64_t purpose, std::uint64_t a, std::uint64_t b) const
    {
        const double u1 = std::max(uniform(purpose, a, 2 * b, 0.0, 1.0), 1e-300);
        const double u2 = uniform(purpose, a, 2 * b + 1, 0.0, 1.0);
        return std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * kPi * u2);
    }

    void setUpPaths()
    {
        for (int p = 0; p < kPathCount; ++p) {
            const bool meal = p == kMealPath;
            const double typical = meal ? kMealPrice : kEtfs[p].price;
            const double spread = meal ? 0.1 : 0.08;
            const double tick = meal ? kMealFutureTick : kEtfTick;
            const double volatility = meal ? kMealVolatility : kEtfs[p].volatility;
            m_volatility[p] =
                CUniverseBuilder::roundToTick(volatility * uniform(kDrawVolatility, p, 0, 0.85, 1.2), 0.0001);
            // The close before the epoch.
            m_paths[p].push_back(CUniverseBuilder::roundToTick(
                typical * std::exp(uniform(kDrawBasePrice, p, 0, -spread, spread)), tick));
        }
    }

    // The close of trading day `index` follows from the one before by a daily
    // draw, kept inside the price limits.
    void extendPaths(int index)
    {
        for (int p = 0; p < kPathCount; ++p) {
            auto& path = m_paths[p];
            while (static_cast<int>(path.size()) <= index + 1) {
                const int day = static_cast<int>(path.size()) - 1;
                const bool meal = p == kMealPath;
                const double sigma = m_volatility[p] / std::sqrt(kTradingDaysPerYear);
                const double limit = meal ? 0.065 : 0.095;
                // A slow pull towards the typical price keeps years of history in the
                // range the exchanges' contracts are made for (a commodity reverts faster).
                const double pull = (meal ? kMealReversion : kEtfReversion) * std::log(path.front() / path.back());
                const double move = std::clamp(pull - 0.5 * sigma * sigma + sigma * normal(kDrawDailyReturn, p, day),
                                               std::log(1.0 - limit), std::log(1.0 + limit));
                const double tick = meal ? kMealFutureTick : kEtfTick;
                path.push_back(
                    std::max(10.0 * tick, CUniverseBuilder::roundToTick(path.back() * std::exp(move), tick)));
            }
        }
    }

    // The previous close of a path on day `index`: the close of the day before.
    double previousClose(int p, int index) const { return m_paths[p][static_cast<std::size_t>(index)]; }

    std::string nextCode(bool sse)
    {
        if (!m_codesStarted) {
            m_codesStarted = true;
            m_sseCount = uniformInt(kDrawFirstCode, 0, 0, 0, 600) * 10;
            m_szseCount = uniformInt(kDrawFirstCode, 1, 0, 0, 600) * 10;
        }
        int& count = sse ? m_sseCount : m_szseCount;
        const int code = (sse ? kSseFirstCode : kSzseFirstCode) + count % kCodeCycle;
        ++count;
        return std::to_string(code);
    }

    EtfStrike makeStrike(int milli, const QDate& day, bool sse)
    {
        EtfStrike strike;
        strike.milli = milli;
        strike.listDate = dateInt(day);
        strike.callCode = nextCode(sse);
        strike.putCode = nextCode(sse);
        return strike;
    }

    // The listings of one day: expired months leave, new months come with a
    // ladder around the money, and live ladders grow to keep the money covered.
    void list(const QDate& day, int index)
    {
        extendPaths(index);
        const std::vector<QDate> months = CUniverseBuilder::listedMonths(day);
        for (int e = 0; e < kEtfCount; ++e) {
            const bool sse = std::string(kEtfs[e].market) == nqservice::kMarketSSE;
            auto& book = m_etfMonths[e];
            book.erase(std::remove_if(book.begin(), book.end(), [&](const EtfMonth& m) { return m.expiry < day; }),
                       book.end());
            const double spot = previousClose(e, index);
            const int atm = toMilli(CUniverseBuilder::nearestStrike(spot));
            for (std::size_t m = 0; m < months.size(); ++m) {
                auto found =
                    std::find_if(book.begin(), book.end(), [&](const EtfMonth& x) { return x.month == months[m]; });
                if (found == book.end()) {
                    EtfMonth fresh;
                    fresh.month = months[m];
                    fresh.expiry = CUniverseBuilder::etfOptionExpiry(months[m].year(), months[m].month());
                    // The months found listed at the epoch have lived a while: their
                    // ladders reach further.
                    const int extra = index == 0 ? static_cast<int>(m) + 2 : 0;
                    extendLadder(fresh, atm, kStrikesAroundTheMoney + uniformInt(kDrawLadder, e, m, 0, extra),
                                 kStrikesAroundTheMoney + uniformInt(kDrawLadder, e, m + 8, 0, extra), day, sse);
                    // Adjusted contracts stand for those a dividend changed: they come
                    // with a month listed as the next month, on their own unit, so that
                    // their terms never change while they live.
                    if (kEtfs[e].adjustedUnit > 0.0 && (m == 1 || (index == 0 && m == 0))) {
                        const std::size_t first = fresh.strikes.size() / 2 >= 3 ? fresh.strikes.size() / 2 - 3 : 0;
                        for (std::size_t i = first; i < std::min(fresh.strikes.size(), first + 4); ++i) {
                            fresh.adjusted.push_back(makeStrike(fresh.strikes[i].milli, day, sse));
                        }
                    }
                    book.push_back(std::move(fresh));
                } else {
                    extendLadder(*found, atm, kStrikesAroundTheMoney, kStrikesAroundTheMoney, day, sse);
                }
            }
            std::sort(book.begin(), book.end(), [](const EtfMonth& a, const EtfMonth& b) { return a.month < b.month; });
        }
        listMeal(day, index);
    }

    void extendLadder(EtfMonth& month, int atmMilli, int below, int above, const QDate& day, bool sse)
    {
        int low = atmMilli;
        for (int i = 0; i < below; ++i) {
            const int next = toMilli(CUniverseBuilder::nextStrikeDown(low / 1000.0));
            if (next <= 0) {
                break;
            }
            low = next;
        }
        int high = atmMilli;
        for (int i = 0; i < above; ++i) {
            high = toMilli(CUniverseBuilder::nextStrikeUp(high / 1000.0));
        }
        auto& strikes = month.strikes;
        if (strikes.empty()) {
            for (int k = low; k <= high; k = toMilli(CUniverseBuilder::nextStrikeUp(k / 1000.0))) {
                strikes.push_back(makeStrike(k, day, sse));
            }
            return;
        }
        // New strikes join the ladder's ends, so it stays whole.
        while (strikes.front().milli > low) {
            const int next = toMilli(CUniverseBuilder::nextStrikeDown(strikes.front().milli / 1000.0));
            if (next <= 0) {
                break;
            }
            strikes.insert(strikes.begin(), makeStrike(next, day, sse));
        }
        while (strikes.back().milli < high) {
            strikes.push_back(
                makeStrike(toMilli(CUniverseBuilder::nextStrikeUp(strikes.back().milli / 1000.0)), day, sse));
        }
    }

    // A future's price: the meal path with the carry of its delivery month.
    double futurePrice(double spot, int year, int month) const
    {
        const double carry = uniform(kDrawCarry, static_cast<std::uint64_t>(year * 100 + month), 0, -0.03, 0.03);
        return CUniverseBuilder::roundToTick(spot * std::exp(carry), kMealFutureTick);
    }

    void listMeal(const QDate& day, int index)
    {
        m_meal.erase(
            std::remove_if(m_meal.begin(), m_meal.end(), [&](const MealFuture& f) { return f.optionExpiry < day; }),
            m_meal.end());
        // Futures whose options have not expired yet; the four nearest.
        std::vector<MealFuture> live;
        for (int year = day.year(); live.size() < 4 && year <= day.year() + 2; ++year) {
            for (int month : kMealMonths) {
                if (live.size() >= 4) {
                    break;
                }
                const QDate optionExpiry = CUniverseBuilder::futureOptionExpiry(year, month);
                if (optionExpiry < day) {
                    continue;
                }
                auto found = std::find_if(m_meal.begin(), m_meal.end(),
                                          [&](const MealFuture& f) { return f.year == year && f.month == month; });
                MealFuture future;
                if (found != m_meal.end()) {
                    future = std::move(*found);
                } else {
                    future.year = year;
                    future.month = month;
                    future.optionExpiry = optionExpiry;
                }
                const double price = futurePrice(previousClose(kMealPath, index), year, month);
                const double step = CUniverseBuilder::futureStrikeStep(price);
                const double atm = CUniverseBuilder::roundToTick(price / step, 1.0) * step;
                const int wings =
                    kMealStrikesAroundTheMoney +
                    (index == 0 ? uniformInt(kDrawLadder, 100, static_cast<std::uint64_t>(month), 0, 3) : 0);
                for (int i = -wings; i <= wings; ++i) {
                    const int strike = static_cast<int>(std::lround(atm + i * step));
                    if (strike > 0) {
                        future.strikes.emplace(strike, dateInt(day));
                    }
                }
                live.push_back(std::move(future));
            }
        }
        m_meal = std::move(live);
    }

    // What a contract settles at on a day: its value at the close of the day.
    double optionValue(int p, bool call, double spot, double strike, const QDate& day, const QDate& expiry,
                       bool stockOption) const
    {
        const double years = std::max(0.0, static_cast<double>(day.daysTo(expiry))) / kCalendarDaysPerYear;
        const double rate = stockOption ? kRiskFreeRate : kFutureOptionRate;
        const double discount = std::exp(-rate * years);
        const double forward = spot / discount;
        const double vol = smileVolatility(m_volatility[p], forward, strike, years, stockOption);
        return std::max(blackValue(call, forward, strike, years, vol, discount),
                        std::max(0.0, call ? spot - strike : strike - spot));
    }

    double closeAround(double settle, const std::string& key, int index, double tick) const
    {
        const double noisy =
            settle * (1.0 + uniform(kDrawOptionClose, textHash(key), static_cast<std::uint64_t>(index), -0.02, 0.02));
        return std::max(tick, CUniverseBuilder::roundToTick(noisy, tick));
    }

    CMarketDay publish(int index, bool trading)
    {
        CMarketDay day;
        day.date = m_target;
        // The prices the day opens with are the last trading day's; the close is
        // today's (a day without trading closes where it opened).
        const QDate previousDay = index > 0 ? m_previousDay : m_target.addDays(-1);
        const int closeIndex = trading ? index + 1 : index;
        for (int e = 0; e < kEtfCount; ++e) {
            publishEtf(day, e, index, closeIndex, previousDay);
        }
        publishMeal(day, index, closeIndex, previousDay);
        return day;
    }

    void publishEtf(CMarketDay& day, int e, int index, int closeIndex, const QDate& previousDay)
    {
        const EtfSpec& def = kEtfs[e];
        auto fund = std::make_shared<CInstrumentDetail>();
        fund->market = def.market;
        fund->code = def.code;
        fund->name = def.name;
        fund->kind = nqservice::IK_FUND;
        fund->priceTick = kEtfTick;
        fund->tradingCode = def.code;
        fund->contractUnit = 1.0;
        fund->riskFreeRate = kRiskFreeRate;
        fund->historyVolatility = m_volatility[e];
        const double previous = m_paths[e][static_cast<std::size_t>(index)];
        const double close = m_paths[e][static_cast<std::size_t>(closeIndex)];
        fund->preClosePrice = previous;
        fund->preSettlementPrice = previous;
        day.instruments.push_back(fund);
        const QString fundKey = QString::fromStdString(fund->key());
        day.closes.insert(fundKey, close);
        day.settlements.insert(fundKey, close);

        for (const EtfMonth& month : m_etfMonths[e]) {
            for (const EtfStrike& strike : month.strikes) {
                for (bool call : {true, false}) {
                    addEtfOption(day, e, *fund, month, strike, call, false, kEtfOptionUnit, index, closeIndex,
                                 previousDay, close);
                }
            }
            for (const EtfStrike& strike : month.adjusted) {
                for (bool call : {true, false}) {
                    addEtfOption(day, e, *fund, month, strike, call, true, def.adjustedUnit, index, closeIndex,
                                 previousDay, close);
                }
            }
        }
    }

    void addEtfOption(CMarketDay& day, int e, const CInstrumentDetail& fund, const EtfMonth& month,
                      const EtfStrike& listed, bool call, bool adjusted, double unit, int index, int closeIndex,
                      const QDate& previousDay, double close)
    {
        const EtfSpec& def = kEtfs[e];
        const double strike = listed.milli / 1000.0;
        auto option = std::make_shared<CInstrumentDetail>();
        option->market = def.market;
        option->code = call ? listed.callCode : listed.putCode;
        option->name = fmt::format(FMT_STRING("{0}{1}{2}月{3}{4}"), def.optionName, call ? "购" : "沽",
                                   month.expiry.month(), listed.milli, adjusted ? "A" : "");
        option->tradingCode =
            fmt::format(FMT_STRING("{0}{1}{2:02d}{3:02d}{4}{5:05d}"), def.code, call ? "C" : "P",
                        month.expiry.year() % 100, month.expiry.month(), adjusted ? "A" : "M", listed.milli);
        option->kind = nqservice::IK_STOCK_OPTION;
        option->exerciseStyle = nqservice::ES_EUROPEAN;
        option->call = call;
        option->adjusted = adjusted;
        option->underlyingCode = fund.code;
        option->underlyingMarket = fund.market;
        option->expireDate = dateInt(month.expiry);
        option->lastExerciseDate = dateInt(month.expiry);
        option->listDate = listed.listDate;
        option->priceTick = kEtfOptionTick;
        option->contractUnit = unit;
        option->exercisePrice = strike;
        option->riskFreeRate = kRiskFreeRate;
        option->historyVolatility = fund.historyVolatility;
        option->maxOrderVolume = kEtfMaxOrderVolume;
        // Adjusted contracts are quoted per 10000 units of the old terms.
        const double scale = unit / kEtfOptionUnit;
        const auto settleAt = [&](double spot, const QDate& at) {
            return std::max(kEtfOptionTick,
                            CUniverseBuilder::roundToTick(
                                optionValue(e, call, spot, strike, at, month.expiry, true) * scale, kEtfOptionTick));
        };
        const std::string key = option->key();
        option->preSettlementPrice = settleAt(fund.preClosePrice, previousDay);
        option->preClosePrice = closeAround(option->preSettlementPrice, key, index - 1, kEtfOptionTick);
        // Field 3007: the exchange margin of one short contract at the previous settlement.
        option->marginParameter =
            trading::CExchangeRules::shortOptionMargin(*option, option->preSettlementPrice, fund.preClosePrice);
        const QString qkey = QString::fromStdString(key);
        if (closeIndex > index) {
            const double settle = settleAt(close, day.date);
            day.settlements.insert(qkey, settle);
            day.closes.insert(qkey, closeAround(settle, key, index, kEtfOptionTick));
        } else {
            day.settlements.insert(qkey, option->preSettlementPrice);
            day.closes.insert(qkey, option->preClosePrice);
        }
        day.instruments.push_back(option);
    }

    double futureSettlement(const std::string& code, double price, int index) const
    {
        const double noise =
            uniform(kDrawFutureSettle, textHash(code), static_cast<std::uint64_t>(index), -0.004, 0.004);
        return CUniverseBuilder::roundToTick(price * (1.0 + noise), kMealFutureTick);
    }

    void publishMeal(CMarketDay& day, int index, int closeIndex, const QDate& previousDay)
    {
        const double previousSpot = m_paths[kMealPath][static_cast<std::size_t>(index)];
        const double closeSpot = m_paths[kMealPath][static_cast<std::size_t>(closeIndex)];
        for (const MealFuture& listed : m_meal) {
            const int year = listed.year;
            const int month = listed.month;
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
            future->historyVolatility = m_volatility[kMealPath];
            future->expireDate = dateInt(nthTradingDay(year, month, 10));
            future->lastExerciseDate = future->expireDate;
            future->maxOrderVolume = kMealMaxOrderVolume;
            const double price = futurePrice(previousSpot, year, month);
            const double closePrice = futurePrice(closeSpot, year, month);
            future->preClosePrice = price;
            future->preSettlementPrice = futureSettlement(futureCode, price, index - 1);
            day.instruments.push_back(future);
            const QString futureKey = QString::fromStdString(future->key());
            const bool closes = closeIndex > index;
            day.closes.insert(futureKey, closePrice);
            day.settlements.insert(
                futureKey, closes ? futureSettlement(futureCode, closePrice, index) : future->preSettlementPrice);

            for (const auto& entry : listed.strikes) {
                const double strike = entry.first;
                for (bool call : {true, false}) {
                    auto option = std::make_shared<CInstrumentDetail>();
                    option->market = nqservice::kMarketDCE;
                    option->code = fmt::format(FMT_STRING("{0}-{1}-{2}"), futureCode, call ? "C" : "P", entry.first);
                    option->name = fmt::format(FMT_STRING("豆粕{0:02d}{1:02d}{2}{3}"), year % 100, month,
                                               call ? "购" : "沽", entry.first);
                    option->tradingCode = option->code;
                    option->kind = nqservice::IK_FUTURE_OPTION;
                    option->exerciseStyle = nqservice::ES_AMERICAN;
                    option->call = call;
                    option->underlyingCode = future->code;
                    option->underlyingMarket = future->market;
                    option->expireDate = dateInt(listed.optionExpiry);
                    option->lastExerciseDate = option->expireDate;
                    option->listDate = entry.second;
                    option->priceTick = kMealOptionTick;
                    option->contractUnit = kMealUnit;
                    option->exercisePrice = strike;
                    // Futures options are priced undiscounted: with rate 0 the board's
                    // Black-Scholes on the futures price is Black-76, so a price made
                    // at one volatility reads back that volatility for calls and puts.
                    option->riskFreeRate = kFutureOptionRate;
                    option->historyVolatility = future->historyVolatility;
                    option->maxOrderVolume = kMealMaxOrderVolume;
                    const auto settleAt = [&](double spot, const QDate& at) {
                        return std::max(kMealOptionTick,
                                        CUniverseBuilder::roundToTick(
                                            optionValue(kMealPath, call, spot, strike, at, listed.optionExpiry, false),
                                            kMealOptionTick));
                    };
                    const std::string key = option->key();
                    option->preSettlementPrice = settleAt(price, previousDay);
                    option->preClosePrice = closeAround(option->preSettlementPrice, key, index - 1, kMealOptionTick);
                    option->marginParameter = trading::CExchangeRules::shortOptionMargin(
                        *option, option->preSettlementPrice, future->preSettlementPrice, kMealMarginParameter);
                    const QString qkey = QString::fromStdString(key);
                    if (closes) {
                        const double settle = settleAt(closePrice, day.date);
                        day.settlements.insert(qkey, settle);
                        day.closes.insert(qkey, closeAround(settle, key, index, kMealOptionTick));
                    } else {
                        day.settlements.insert(qkey, option->preSettlementPrice);
                        day.closes.insert(qkey, option->preClosePrice);
                    }
                    day.instruments.push_back(option);
                }
            }
        }
    }

    const unsigned m_seed;
    const QDate m_target;
    QDate m_previousDay;
    std::vector<double> m_paths[kPathCount];  // [0] the close before the epoch, [n + 1] the close of day n
    double m_volatility[kPathCount] = {};
    std::vector<EtfMonth> m_etfMonths[kEtfCount];
    std::vector<MealFuture> m_meal;
    bool m_codesStarted = false;
    int m_sseCount = 0;
    int m_szseCount = 0;
};

}  // namespace

QDate CMarketHistory::epoch()
{
    return QDate(2023, 1, 3);
}

CMarketDay CMarketHistory::day(const QDate& date) const
{
    return Replay(m_seed, date.isValid() ? date : epoch()).run();
}

}  // namespace market
