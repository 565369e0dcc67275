#include "services/market/csimmarket.h"

#include "seam/marketenums.h"
#include "services/market/cmarkethistory.h"
#include "services/market/csessionclock.h"
#include "services/market/csimquoteclient.h"

#include <boost/make_shared.hpp>

#include <QDate>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>

namespace market {

namespace {

using nqservice::CInstrumentDetail;

// Trading days of a year, for the variance of the underlying paths.
constexpr double kTradingDaysPerYear = 250.0;
constexpr double kCalendarDaysPerYear = 365.0;
constexpr double kShortestYears = 1e-6;
// Days before expiry from which a contract carries the near-expiry status.
constexpr int kNearExpiryDays = 7;
constexpr double kStandardUnit = 10000.0;
// How long the bridge's deviation remembers itself, in simulated milliseconds.
constexpr double kBridgeMemoryMs = 20.0 * 60.0 * 1000.0;

double normalCdf(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

// Black's formula on the forward, discounted; the feed's own small pricer.
double blackValue(bool call, double forward, double strike, double years, double volatility, double discount)
{
    const double intrinsic = std::max(0.0, call ? forward - strike : strike - forward);
    if (years <= 0.0 || volatility <= 0.0 || forward <= 0.0 || strike <= 0.0) {
        return discount * intrinsic;
    }
    const double stdDev = volatility * std::sqrt(years);
    const double d1 = std::log(forward / strike) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    return call ? discount * (forward * normalCdf(d1) - strike * normalCdf(d2))
                : discount * (strike * normalCdf(-d2) - forward * normalCdf(-d1));
}

double floorToTick(double value, double tick) { return std::floor(value / tick + 1e-9) * tick; }
double ceilToTick(double value, double tick) { return std::ceil(value / tick - 1e-9) * tick; }
double roundToTick(double value, double tick) { return std::round(value / tick) * tick; }

int dateInt(const QDate& date) { return date.year() * 10000 + date.month() * 100 + date.day(); }
QDate fromDateInt(int value) { return QDate(value / 10000, value / 100 % 100, value % 100); }

int clampToInt(long long value) { return static_cast<int>(std::min<long long>(value, INT_MAX - 1)); }

}  // namespace

struct CSimMarket::Clock {
    long long epochMs = 0;
    QDate date;
    int stockPhase = TC::TP_NOT_TRADING;
    int futurePhase = TC::TP_NOT_TRADING;
    double stockDayLeft = 0.0;   // fraction of the day's trading still ahead
    double futureDayLeft = 0.0;
};

struct CSimMarket::Contract {
    std::shared_ptr<const CInstrumentDetail> detail;
    QString key;
    Contract* underlying = nullptr;
    bool stockMarket = true;
    bool option = false;
    std::mt19937_64 random;
    double tick = 0.01;
    double unitFactor = 1.0;  // adjusted contracts hold more of the underlying
    QDate expiry;

    // Underlyings: the price now, read by their options on other threads.
    std::atomic<double> spot{0.0};
    double atmVolatility = 0.2;
    double skew = 0.0;
    double curvature = 0.0;

    // The day so far.
    double lastPrice = utils::kAbsentDouble;
    double openPrice = utils::kAbsentDouble;
    double highPrice = utils::kAbsentDouble;
    double lowPrice = utils::kAbsentDouble;
    long long volume = 0;
    double amount = 0.0;
    double openInterest = 0.0;
    double upStop = utils::kAbsentDouble;
    double downStop = utils::kAbsentDouble;
    long long lastUpdate = 0;
    // The day's close, absent when the feed was not given one; the bridge's
    // deviation from the straight line to it, in standard deviations.
    double close = utils::kAbsentDouble;
    double bridge = 0.0;
    bool closed = false;
    // Share of the day already traded when the feed started: the first
    // snapshot makes up for it so a board opened mid-session looks lived in.
    double replay = 0.0;
    boost::shared_ptr<TC::CPriceData> previous;

    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); }
    int uniformInt(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    double normal() { return std::normal_distribution<double>(0.0, 1.0)(random); }
};

CSimMarket::CSimMarket(const TInstrumentList& instruments, CSimQuoteClient* sink, const CSimMarketConfig& config)
    : m_sink(sink), m_config(config), m_rate(config.snapshotsPerSecond)
{
    QHash<QString, Contract*> byKey;
    // Underlyings first, so that options find them and a round prices them first.
    std::vector<std::shared_ptr<const CInstrumentDetail>> ordered;
    for (const auto& detail : instruments) {
        if (!detail->isOption()) {
            ordered.push_back(detail);
        }
    }
    for (const auto& detail : instruments) {
        if (detail->isOption()) {
            ordered.push_back(detail);
        }
    }
    for (const auto& detail : ordered) {
        auto contract = std::make_unique<Contract>();
        contract->detail = detail;
        contract->key = QString::fromStdString(detail->key());
        contract->stockMarket = CSessionClock::isStockMarket(detail->market);
        contract->option = detail->isOption();
        contract->random.seed(static_cast<unsigned long long>(config.seed) * 0x9E3779B97F4A7C15ULL ^
                              utils::hash(detail->key()));
        contract->tick = utils::isUsable(detail->priceTick) && detail->priceTick > 0.0 ? detail->priceTick : 0.0001;
        if (contract->option) {
            contract->underlying = byKey.value(QString::fromStdString(detail->underlyingKey()), nullptr);
            if (utils::isUsable(detail->contractUnit) && contract->stockMarket) {
                contract->unitFactor = detail->contractUnit / kStandardUnit;
            }
            if (utils::isUsable(detail->expireDate)) {
                contract->expiry = fromDateInt(detail->expireDate);
            }
        } else if (config.closes.isEmpty()) {
            const double hv = utils::isUsable(detail->historyVolatility) ? detail->historyVolatility : 0.2;
            contract->atmVolatility = hv * contract->uniform(0.95, 1.15);
            contract->skew = contract->stockMarket ? contract->uniform(-0.12, -0.04) : contract->uniform(0.0, 0.05);
            contract->curvature = contract->uniform(0.04, 0.10);
        } else {
            // On the market history's day: its smile, so the close lands on the settlement.
            contract->atmVolatility = utils::isUsable(detail->historyVolatility) ? detail->historyVolatility : 0.2;
            contract->skew = CMarketHistory::smileSkew(contract->stockMarket);
            contract->curvature = CMarketHistory::smileCurvature();
        }
        const auto close = config.closes.constFind(contract->key);
        if (close != config.closes.constEnd() && utils::isUsable(close.value()) && close.value() > 0.0 &&
            utils::isUsable(detail->preClosePrice) && detail->preClosePrice > 0.0) {
            contract->close = close.value();
            contract->bridge = contract->normal();
        }
        byKey.insert(contract->key, contract.get());
        m_contracts.push_back(std::move(contract));
    }
    initialiseDay(readClock());
}

CSimMarket::~CSimMarket()
{
    stop();
}

CSimMarket::Clock CSimMarket::readClock() const
{
    TC::CTimeService* service = m_config.clock != nullptr ? m_config.clock : TC::getTimeService();
    Clock clock;
    clock.epochMs = service->currentTime();
    const QDateTime local = TC::exchangeDateTime(clock.epochMs);
    clock.date = local.date();
    clock.stockPhase = CSessionClock::phaseAt(nqservice::kMarketSSE, local);
    clock.futurePhase = CSessionClock::phaseAt(nqservice::kMarketDCE, local);
    const bool tradingDay = CSessionClock::isTradingDay(clock.date);
    clock.stockDayLeft = tradingDay ? double(CSessionClock::remainingSeconds(nqservice::kMarketSSE, local)) /
                                          CSessionClock::sessionSeconds(nqservice::kMarketSSE)
                                    : 0.0;
    clock.futureDayLeft = tradingDay ? double(CSessionClock::remainingSeconds(nqservice::kMarketDCE, local)) /
                                           CSessionClock::sessionSeconds(nqservice::kMarketDCE)
                                     : 0.0;
    return clock;
}

void CSimMarket::initialiseDay(const Clock& clock)
{
    for (auto& pointer : m_contracts) {
        Contract& contract = *pointer;
        const CInstrumentDetail& detail = *contract.detail;
        contract.lastUpdate = clock.epochMs;
        contract.replay = 1.0 - (contract.stockMarket ? clock.stockDayLeft : clock.futureDayLeft);
        const double preClose = utils::isUsable(detail.preClosePrice) ? detail.preClosePrice : 1.0;
        const double settle = utils::isUsable(detail.preSettlementPrice) ? detail.preSettlementPrice : preClose;
        if (!contract.option) {
            contract.spot.store(preClose);
            const double limit = contract.stockMarket ? 0.10 : 0.07;
            contract.upStop = roundToTick(settle * (1.0 + limit), contract.tick);
            contract.downStop = roundToTick(settle * (1.0 - limit), contract.tick);
            contract.openInterest = contract.stockMarket ? utils::kAbsentDouble : contract.uniformInt(100000, 800000);
            continue;
        }
        // Price limits: the exchanges' rules on the previous settlement and the
        // underlying's previous close.
        const Contract* underlying = contract.underlying;
        const double underlyingClose = underlying != nullptr && utils::isUsable(underlying->detail->preClosePrice)
                                           ? underlying->detail->preClosePrice
                                           : preClose;
        const double strike = detail.exercisePrice;
        const double factor = contract.unitFactor;
        if (contract.stockMarket) {
            const double basis = detail.call ? underlyingClose : strike;
            const double room = detail.call ? std::min(2.0 * underlyingClose - strike, underlyingClose)
                                            : std::min(2.0 * strike - underlyingClose, underlyingClose);
            contract.upStop = ceilToTick(settle + factor * std::max(basis * 0.005, room * 0.1), contract.tick);
            contract.downStop = std::max(contract.tick, floorToTick(settle - factor * underlyingClose * 0.1, contract.tick));
        } else {
            contract.upStop = ceilToTick(settle + underlyingClose * 0.07, contract.tick);
            contract.downStop = std::max(contract.tick, floorToTick(settle - underlyingClose * 0.07, contract.tick));
        }
        // Most of the open interest sits near the money.
        const double moneyness = std::fabs(std::log(std::max(strike, 1e-9) / std::max(underlyingClose, 1e-9)));
        contract.openInterest =
            std::round(contract.uniformInt(2000, 60000) * std::exp(-moneyness * 8.0)) + contract.uniformInt(10, 300);
    }
}

void CSimMarket::trade(Contract& contract, TC::CPriceData& out, double probability, int maxSize)
{
    if (contract.uniform(0.0, 1.0) >= probability) {
        return;
    }
    const bool buyerInitiated = contract.uniform(0.0, 1.0) < 0.5;
    const double price = buyerInitiated ? out.askPrice1 : out.bidPrice1;
    if (!utils::isUsable(price)) {
        return;
    }
    const int size = contract.uniformInt(1, maxSize);
    contract.lastPrice = price;
    contract.volume += size;
    const double unit = utils::isUsable(contract.detail->contractUnit) ? contract.detail->contractUnit : 1.0;
    contract.amount += size * price * unit;
    if (utils::isUsable(contract.openInterest)) {
        contract.openInterest = std::max(0.0, contract.openInterest + contract.uniformInt(-size, size));
    }
    if (!utils::isUsable(contract.openPrice)) {
        contract.openPrice = price;
        contract.highPrice = price;
        contract.lowPrice = price;
    }
    contract.highPrice = std::max(contract.highPrice, price);
    contract.lowPrice = std::min(contract.lowPrice, price);
}

void CSimMarket::markClose(Contract& contract, TC::CPriceData& out)
{
    contract.closed = true;
    contract.lastPrice = contract.close;
    if (!utils::isUsable(contract.openPrice)) {
        contract.openPrice = contract.close;
        contract.highPrice = contract.close;
        contract.lowPrice = contract.close;
    }
    contract.highPrice = std::max(contract.highPrice, contract.close);
    contract.lowPrice = std::min(contract.lowPrice, contract.close);
    out.quoteMarkB = utils::kAbsentDouble;
}

double CSimMarket::dayDone(const Contract& contract, const Clock& clock) const
{
    if (m_config.tradingDate.isValid() && clock.date != m_config.tradingDate) {
        return clock.date > m_config.tradingDate ? 1.0 : 0.0;
    }
    if (!CSessionClock::isTradingDay(clock.date)) {
        return 0.0;
    }
    return std::clamp(1.0 - (contract.stockMarket ? clock.stockDayLeft : clock.futureDayLeft), 0.0, 1.0);
}

void CSimMarket::fillCommon(const Contract& contract, const Clock& clock, TC::CPriceData& out) const
{
    const CInstrumentDetail& detail = *contract.detail;
    out.market = detail.market;
    out.code = detail.code;
    out.time = clock.epochMs;
    out.tradingPhase = contract.stockMarket ? clock.stockPhase : clock.futurePhase;
    out.preClose = detail.preClosePrice;
    out.referencePrice = detail.preSettlementPrice;
    out.lastPrice = contract.lastPrice;
    if (utils::isUsable(out.lastPrice) && utils::isUsable(out.preClose) && out.preClose > 0.0) {
        out.changeAmount = out.lastPrice - out.preClose;
        out.changeRatio = out.changeAmount / out.preClose;
    }
    out.volume = clampToInt(contract.volume);
    out.amount = contract.amount;
    out.openInterest = contract.openInterest;
    out.openPrice = contract.openPrice;
    out.highPrice = contract.highPrice;
    out.lowPrice = contract.lowPrice;
    out.upStopPrice = contract.upStop;
    out.downStopPrice = contract.downStop;
    if (utils::isUsable(out.bidPrice1) && utils::isUsable(out.askPrice1)) {
        out.quoteMarkA = 0.5 * (out.bidPrice1 + out.askPrice1);
    }
    if (contract.option && detail.kind == nqservice::IK_STOCK_OPTION) {
        const int days = contract.expiry.isValid() ? static_cast<int>(clock.date.daysTo(contract.expiry)) : INT_MAX;
        if (utils::isUsable(detail.listDate) && detail.listDate == dateInt(clock.date)) {
            out.optionStatus = nqservice::SOS_NEWLY_LISTED;
        } else if (days >= 0 && days <= kNearExpiryDays) {
            out.optionStatus = nqservice::SOS_NEAR_EXPIRY;
        }
    }
}

// Quotes of a contract around a fair value: `half` ticks either side, five levels
// one tick apart, inside the day's price limits.
static void setLevels(TC::CPriceData& out, double fair, double floorPrice, int half, double tick, double up,
                      double down, std::mt19937_64& random, int maxVolume)
{
    std::uniform_int_distribution<int> volumes(1, maxVolume);
    double ask = ceilToTick(std::max(fair + half * tick, floorPrice), tick);
    ask = std::max(ask, 2.0 * tick);
    if (utils::isUsable(up)) {
        ask = std::min(ask, up);
    }
    double bid = std::max(tick, ask - 2.0 * half * tick);
    if (bid >= ask - 0.5 * tick) {
        bid = ask - tick;
    }
    for (int level = 1; level <= 5; ++level) {
        const double a = ask + (level - 1) * tick;
        const double b = bid - (level - 1) * tick;
        if (!utils::isUsable(up) || a <= up + 0.5 * tick) {
            out.setAsk(level, roundToTick(a, tick), volumes(random));
        }
        if (b >= tick - 1e-12 && (!utils::isUsable(down) || b >= down - 0.5 * tick)) {
            out.setBid(level, roundToTick(b, tick), volumes(random));
        }
    }
}

void CSimMarket::advanceUnderlying(Contract& contract, const Clock& clock, TC::CPriceData& out)
{
    const int phase = contract.stockMarket ? clock.stockPhase : clock.futurePhase;
    const double volatility = contract.atmVolatility;
    double spot = contract.spot.load(std::memory_order_relaxed);
    const long long elapsedMs = std::max(0LL, clock.epochMs - contract.lastUpdate);
    const double sessionYears = CSessionClock::sessionSeconds(contract.detail->market) * kTradingDaysPerYear;
    double years = TC::isContinuousPhase(phase) ? elapsedMs / 1000.0 / sessionYears : 0.0;
    if (contract.replay > 0.0) {
        years += contract.replay / kTradingDaysPerYear;
    }
    if (utils::isUsable(contract.close)) {
        // A Brownian bridge from the previous close to the close: the straight line
        // in log price plus a mean-reverting deviation scaled by sqrt(t (1 - t)).
        const double done = dayDone(contract, clock);
        if (years > 0.0) {
            const double keep = std::exp(-elapsedMs / kBridgeMemoryMs);
            contract.bridge = keep * contract.bridge + std::sqrt(1.0 - keep * keep) * contract.normal();
        }
        const double preClose = contract.detail->preClosePrice;
        const double dayStdDev = volatility / std::sqrt(kTradingDaysPerYear);
        const double logPrice = std::log(preClose) + done * std::log(contract.close / preClose) +
                                dayStdDev * std::sqrt(done * (1.0 - done)) * contract.bridge;
        spot = std::clamp(std::exp(logPrice), contract.downStop, contract.upStop);
        if (done >= 1.0) {
            spot = contract.close;
        }
        contract.spot.store(spot, std::memory_order_relaxed);
    } else if (years > 0.0) {
        spot *= std::exp(-0.5 * volatility * volatility * years + volatility * std::sqrt(years) * contract.normal());
        spot = std::clamp(spot, contract.downStop, contract.upStop);
        contract.spot.store(spot, std::memory_order_relaxed);
    }
    const bool stock = contract.stockMarket;
    const int maxLevel = stock ? 5000 : 300;
    if (phase != TC::TP_BEFORE_OPEN || utils::isUsable(contract.lastPrice)) {
        setLevels(out, spot - 0.5 * contract.tick, 0.0, 1, contract.tick, contract.upStop, contract.downStop,
                  contract.random, maxLevel);
    }
    if (contract.replay > 0.0) {
        const double share = contract.replay;
        contract.replay = 0.0;
        trade(contract, out, 1.0, 1);
        contract.volume += static_cast<long long>(share * (stock ? 3.0e8 : 8.0e5) * contract.uniform(0.5, 1.5));
        const double unit = utils::isUsable(contract.detail->contractUnit) ? contract.detail->contractUnit : 1.0;
        contract.amount = contract.volume * spot * unit;
        contract.openPrice = contract.detail->preClosePrice;
        contract.highPrice = std::max({contract.openPrice, contract.lastPrice, spot * (1.0 + 0.004 * share)});
        contract.lowPrice = std::min({contract.openPrice, contract.lastPrice, spot * (1.0 - 0.004 * share)});
        contract.highPrice = roundToTick(contract.highPrice, contract.tick);
        contract.lowPrice = roundToTick(contract.lowPrice, contract.tick);
    } else if (TC::isContinuousPhase(phase)) {
        trade(contract, out, 0.9, stock ? 500 * 100 : 200);
    }
    if (TC::isCallAuctionPhase(phase)) {
        out.quoteMarkB = roundToTick(spot, contract.tick);
    }
}

void CSimMarket::advanceOption(Contract& contract, const Clock& clock, TC::CPriceData& out)
{
    const CInstrumentDetail& detail = *contract.detail;
    const int phase = contract.stockMarket ? clock.stockPhase : clock.futurePhase;
    const Contract* underlying = contract.underlying;
    const int days = contract.expiry.isValid() ? static_cast<int>(clock.date.daysTo(contract.expiry)) : -1;
    if (underlying == nullptr || days < 0 || !utils::isUsable(detail.exercisePrice)) {
        return;  // an expired or orphaned contract keeps its last state
    }
    const double spot = underlying->spot.load(std::memory_order_relaxed);
    const double dayLeft = contract.stockMarket ? clock.stockDayLeft : clock.futureDayLeft;
    const double years = std::max(kShortestYears, (days + dayLeft) / kCalendarDaysPerYear);
    const double rate = utils::isUsable(detail.riskFreeRate) ? detail.riskFreeRate : 0.0;
    const double discount = std::exp(-rate * years);
    // ETF options price on the forward of the fund, future options on the future itself.
    const double forward = contract.stockMarket ? spot / discount : spot;
    const double strike = detail.exercisePrice;
    const double k = std::log(strike / forward) / std::sqrt(std::max(years, 1.0 / kCalendarDaysPerYear));
    const double volatility = std::clamp(
        underlying->atmVolatility * (1.0 + underlying->skew * k + underlying->curvature * k * k), 0.05, 1.2);
    const double intrinsic = std::max(0.0, detail.call ? spot - strike : strike - spot) * contract.unitFactor;
    const double fair =
        std::max(blackValue(detail.call, forward, strike, years, volatility, discount) * contract.unitFactor, intrinsic);

    if (phase != TC::TP_BEFORE_OPEN || utils::isUsable(contract.lastPrice)) {
        const double noisy = fair * (1.0 + 0.002 * contract.normal());
        const int half = std::clamp(static_cast<int>(std::lround(fair * 0.004 / contract.tick)), 1, 10);
        setLevels(out, noisy, ceilToTick(intrinsic, contract.tick), half, contract.tick, contract.upStop,
                  contract.downStop, contract.random, contract.stockMarket ? 300 : 100);
    }
    if (contract.replay > 0.0) {
        const double share = contract.replay;
        contract.replay = 0.0;
        trade(contract, out, 1.0, 1);
        if (utils::isUsable(contract.lastPrice)) {
            const int extra = static_cast<int>(share * contract.openInterest * contract.uniform(0.05, 0.3));
            contract.volume += extra;
            const double unit = utils::isUsable(detail.contractUnit) ? detail.contractUnit : 1.0;
            contract.amount += extra * contract.lastPrice * unit;
        }
    } else if (TC::isContinuousPhase(phase)) {
        trade(contract, out, 0.3, 20);
    }
    if (TC::isCallAuctionPhase(phase)) {
        out.quoteMarkB = std::max(contract.tick, roundToTick(fair, contract.tick));
    }
}

boost::shared_ptr<TC::CPriceData> CSimMarket::advance(Contract& contract, const Clock& clock)
{
    auto out = boost::make_shared<TC::CPriceData>();
    const int phase = contract.stockMarket ? clock.stockPhase : clock.futurePhase;
    // Between sessions and after the close nothing moves: the book stands as it was.
    const bool quiet = phase == TC::TP_NOT_TRADING || phase == TC::TP_CLOSED || phase == TC::TP_AFTER_HOURS;
    // The first snapshot after the close carries the day's closing price.
    const bool closing = phase == TC::TP_CLOSED && utils::isUsable(contract.close) && !contract.closed &&
                         dayDone(contract, clock) >= 1.0;
    if (closing) {
        contract.replay = 0.0;
        if (contract.option) {
            advanceOption(contract, clock, *out);
        } else {
            advanceUnderlying(contract, clock, *out);
        }
        markClose(contract, *out);
        fillCommon(contract, clock, *out);
    } else if (quiet && contract.previous != nullptr && contract.replay <= 0.0) {
        *out = *contract.previous;
        out->time = clock.epochMs;
        out->tradingPhase = phase;
        out->quoteMarkB = utils::kAbsentDouble;
    } else {
        if (contract.option) {
            advanceOption(contract, clock, *out);
        } else {
            advanceUnderlying(contract, clock, *out);
        }
        fillCommon(contract, clock, *out);
    }
    contract.lastUpdate = clock.epochMs;
    contract.previous = out;
    return out;
}

void CSimMarket::publishRound()
{
    if (isRunning()) {
        return;
    }
    const Clock clock = readClock();
    for (auto& contract : m_contracts) {
        auto snapshot = advance(*contract, clock);
        m_sink->publish(contract->key, snapshot);
        m_published.fetch_add(1, std::memory_order_relaxed);
    }
}

boost::shared_ptr<TC::CPriceData> CSimMarket::makeSnapshot(const QString& key)
{
    if (isRunning()) {
        return boost::shared_ptr<TC::CPriceData>();
    }
    for (auto& contract : m_contracts) {
        if (contract->key == key) {
            return advance(*contract, readClock());
        }
    }
    return boost::shared_ptr<TC::CPriceData>();
}

void CSimMarket::start()
{
    if (isRunning() || m_sink == nullptr) {
        return;
    }
    {
        std::lock_guard<std::mutex> lock(m_stopMutex);
        m_stopping = false;
    }
    const int count = std::max(1, std::min<int>(m_config.threads, static_cast<int>(m_contracts.size())));
    for (int worker = 0; worker < count; ++worker) {
        m_threads.emplace_back([this, worker] { run(worker); });
    }
}

void CSimMarket::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_stopMutex);
        m_stopping = true;
    }
    m_stopWake.notify_all();
    for (auto& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

void CSimMarket::run(int worker)
{
    using SteadyClock = std::chrono::steady_clock;
    const int count = std::max(1, std::min<int>(m_config.threads, static_cast<int>(m_contracts.size())));
    std::vector<Contract*> own;
    for (std::size_t i = static_cast<std::size_t>(worker); i < m_contracts.size(); i += static_cast<std::size_t>(count)) {
        own.push_back(m_contracts[i].get());
    }
    if (own.empty()) {
        return;
    }
    const auto interval = std::chrono::milliseconds(std::max(1, m_config.batchIntervalMs));
    auto next = SteadyClock::now();
    auto previous = next;
    double quota = 0.0;
    std::size_t cursor = 0;
    while (true) {
        next += interval;
        {
            std::unique_lock<std::mutex> lock(m_stopMutex);
            if (m_stopWake.wait_until(lock, next, [this] { return m_stopping; })) {
                return;
            }
        }
        const auto now = SteadyClock::now();
        const double seconds = std::chrono::duration<double>(now - previous).count();
        previous = now;
        const double perSecond = m_rate.load() * static_cast<double>(own.size());
        // A late wake-up catches up at most one second of quotes.
        quota = std::min(quota + perSecond * seconds, std::max(1.0, perSecond));
        const long long due = static_cast<long long>(quota);
        if (due <= 0) {
            continue;
        }
        quota -= static_cast<double>(due);
        const Clock clock = readClock();
        for (long long i = 0; i < due; ++i) {
            Contract& contract = *own[cursor];
            cursor = (cursor + 1) % own.size();
            auto snapshot = advance(contract, clock);
            m_sink->publish(contract.key, snapshot);
        }
        m_published.fetch_add(due, std::memory_order_relaxed);
        if (next < now - interval * 10) {
            next = now;  // fell far behind: do not try to make up every batch
        }
    }
}

}  // namespace market
