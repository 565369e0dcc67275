#include "services/pricing/cgreekandoptionscalculator.h"

#include <algorithm>
#include <cmath>

#include <QString>

#include "seam/common.h"
#include "seam/market.h"
#include "services/pricing/americanfixedpoint.h"
#include "services/pricing/impliedvolatility.h"

namespace pricing {

namespace {

constexpr double kAbsent = utils::kAbsentDouble;

bool usable(double value) { return utils::isUsable(value); }

bool positive(double value) { return usable(value) && value > 0.0; }

// The model of an option the exchange lists: futures options are American on
// Black-76, stock options European Black-Scholes, unless the record says
// otherwise about exercise.
bool modelOfInstrument(const nqservice::CInstrumentDetail& detail, PricingModel& model)
{
    if (!detail.isOption()) {
        return false;
    }
    model.underlying = detail.kind == nqservice::IK_FUTURE_OPTION ? Underlying::Future : Underlying::Spot;
    if (detail.exerciseStyle == nqservice::ES_AMERICAN) {
        model.american = true;
    } else if (detail.exerciseStyle == nqservice::ES_EUROPEAN) {
        model.american = false;
    } else {
        model.american = model.underlying == Underlying::Future;
    }
    return true;
}

std::shared_ptr<nqservice::CInstrumentDetail> instrumentOf(const std::string& key)
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    if (exchange == nullptr || key.empty()) {
        return nullptr;
    }
    return exchange->getCodeInfo(QString::fromStdString(key));
}

// The price a quote stands at now: the last trade, else the reference close.
double currentPrice(TC::CQuoteClient& quotes, const std::string& key)
{
    const boost::shared_ptr<TC::CPriceData> quote = quotes.getStockPrice(QString::fromStdString(key));
    if (!quote) {
        return kAbsent;
    }
    if (positive(quote->lastPrice)) {
        return quote->lastPrice;
    }
    return positive(quote->preClose) ? quote->preClose : kAbsent;
}

double carryOf(const PricingModel& model, double rate) { return model.underlying == Underlying::Spot ? rate : 0.0; }

const char* const kCallKeys[] = {"C_Delta", "C_Gamma", "C_Theta", "C_Vega", "C_Rho"};
const char* const kPutKeys[] = {"P_Delta", "P_Gamma", "P_Theta", "P_Vega", "P_Rho"};

}  // namespace

double yearFraction(double days, double seconds)
{
    if (!usable(days) || !usable(seconds) || days < 0.0 || seconds < 0.0 ||
        days >= static_cast<double>(utils::kAbsentInt) || seconds >= static_cast<double>(utils::kAbsentInt)) {
        return kAbsent;
    }
    return (days + std::min(seconds / kTradingSecondsPerDay, 1.0)) / kDaysPerYear;
}

double CGreekAndOptionsCalculator::calcCallIntrinsicValue(double S, double K) const
{
    return usable(S) && usable(K) ? std::max(S - K, 0.0) : kAbsent;
}

double CGreekAndOptionsCalculator::calcPutIntrinsicValue(double S, double K) const
{
    return usable(S) && usable(K) ? std::max(K - S, 0.0) : kAbsent;
}

double CGreekAndOptionsCalculator::calcCallPremiumRate(double K, double price, double /*premiumBase*/,
                                                       double S) const
{
    if (!usable(K) || !usable(price) || !positive(S)) {
        return kAbsent;
    }
    return (K + price - S) / S;
}

double CGreekAndOptionsCalculator::calcPutPremiumRate(double K, double price, double /*premiumBase*/,
                                                      double S) const
{
    if (!usable(K) || !usable(price) || !positive(S)) {
        return kAbsent;
    }
    return (S + price - K) / S;
}

double CGreekAndOptionsCalculator::calcLeverageRatio(double price, double S, double multiplier) const
{
    if (!positive(price) || !usable(S) || !positive(multiplier)) {
        return kAbsent;
    }
    return S / (price * multiplier);
}

double CGreekAndOptionsCalculator::calcRealLeverageRatio(double delta, double leverage) const
{
    return usable(delta) && usable(leverage) ? delta * leverage : kAbsent;
}

double CGreekAndOptionsCalculator::calcTimeValue(double price, double intrinsic) const
{
    return usable(price) && usable(intrinsic) ? price - intrinsic : kAbsent;
}

double CGreekAndOptionsCalculator::calcCallTheroticalValue(double S, double K, double cash) const
{
    const double intrinsic = calcCallIntrinsicValue(S, K);
    return usable(intrinsic) && usable(cash) ? intrinsic + cash : kAbsent;
}

double CGreekAndOptionsCalculator::calcPutTheroticalValue(double S, double K, double cash) const
{
    const double intrinsic = calcPutIntrinsicValue(S, K);
    return usable(intrinsic) && usable(cash) ? intrinsic + cash : kAbsent;
}

double CGreekAndOptionsCalculator::calcCallTheroticalValue(double S, double K, double days, double seconds,
                                                           double rate, double volatility) const
{
    const double T = yearFraction(days, seconds);
    if (!positive(S) || !positive(K) || utils::isAbsent(T) || !usable(rate) || !usable(volatility) ||
        volatility < 0.0) {
        return kAbsent;
    }
    return blackScholesPrice(OptionType::Call, S, K, T, rate, volatility);
}

double CGreekAndOptionsCalculator::calcPutTheroticalValue(double S, double K, double days, double seconds,
                                                          double rate, double volatility) const
{
    const double T = yearFraction(days, seconds);
    if (!positive(S) || !positive(K) || utils::isAbsent(T) || !usable(rate) || !usable(volatility) ||
        volatility < 0.0) {
        return kAbsent;
    }
    return blackScholesPrice(OptionType::Put, S, K, T, rate, volatility);
}

double CGreekAndOptionsCalculator::calcCallImpliedVolatility(double S, double K, double days, double seconds,
                                                             double rate, double price, double ceiling) const
{
    const double T = yearFraction(days, seconds);
    if (utils::isAbsent(T) || !usable(S) || !usable(K) || !usable(rate) || !usable(price) || !usable(ceiling)) {
        return kAbsent;
    }
    return blackScholesImpliedVolatility(OptionType::Call, S, K, T, rate, price, ceiling);
}

double CGreekAndOptionsCalculator::calcPutImpliedVolatility(double S, double K, double days, double seconds,
                                                            double rate, double price, double ceiling) const
{
    const double T = yearFraction(days, seconds);
    if (utils::isAbsent(T) || !usable(S) || !usable(K) || !usable(rate) || !usable(price) || !usable(ceiling)) {
        return kAbsent;
    }
    return blackScholesImpliedVolatility(OptionType::Put, S, K, T, rate, price, ceiling);
}

double CGreekAndOptionsCalculator::modelImpliedVolatility(OptionType type, const PricingModel& model, double S,
                                                          double K, double T, double rate, double price,
                                                          double ceiling)
{
    if (!positive(T) || !usable(S) || !usable(K) || !usable(rate) || !usable(price) || !usable(ceiling)) {
        return kAbsent;
    }
    const double carry = carryOf(model, rate);
    if (model.american) {
        return americanImpliedVolatility(type, S, K, T, rate, carry, price, ceiling);
    }
    return impliedVolatility(type, S, K, T, rate, carry, price, ceiling);
}

bool CGreekAndOptionsCalculator::displayGreeks(OptionType type, const PricingModel& model, double S, double K,
                                               double T, double rate, double volatility,
                                               nqservice::EOptionGreekBenchmark benchmark,
                                               nqservice::CGreeksValue& out)
{
    if (!positive(S) || !positive(K) || !usable(T) || T < 0.0 || !usable(rate) || !positive(volatility)) {
        return false;
    }
    const double carry = carryOf(model, rate);
    const OptionGreeks g = model.american
                               ? americanGreeks(type, S, K, T, rate, carry, volatility, model.underlying)
                               : blackScholesMertonGreeks(type, S, K, T, rate, carry, volatility, model.underlying);
    if (!(std::isfinite(g.delta) && std::isfinite(g.gamma) && std::isfinite(g.theta) && std::isfinite(g.vega) &&
          std::isfinite(g.rho))) {
        return false;
    }
    if (benchmark == nqservice::OGB_PERCENT) {
        out.delta = g.delta * S / 100.0;
        out.gamma = g.gamma * S * S / 10000.0;
    } else {
        out.delta = g.delta;
        out.gamma = g.gamma;
    }
    out.theta = g.theta / kDaysPerYear;
    out.vega = g.vega / 100.0;
    out.rho = g.rho / 100.0;
    return true;
}

void CGreekAndOptionsCalculator::fillGreeks(OptionType type, std::map<std::string, double>& out, double S,
                                            double K, double days, double seconds, double rate, double volatility,
                                            nqservice::EOptionGreekBenchmark benchmark, const std::string& key,
                                            bool underlyingIsFuture, bool american) const
{
    PricingModel model;
    model.underlying = underlyingIsFuture ? Underlying::Future : Underlying::Spot;
    model.american = american;
    if (!key.empty()) {
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = instrumentOf(key);
        if (detail) {
            modelOfInstrument(*detail, model);
        }
    }
    nqservice::CGreeksValue greeks;
    displayGreeks(type, model, S, K, yearFraction(days, seconds), rate, volatility, benchmark, greeks);
    const char* const* keys = type == OptionType::Call ? kCallKeys : kPutKeys;
    out[keys[0]] = greeks.delta;
    out[keys[1]] = greeks.gamma;
    out[keys[2]] = greeks.theta;
    out[keys[3]] = greeks.vega;
    out[keys[4]] = greeks.rho;
}

void CGreekAndOptionsCalculator::calcCallGreeks(std::map<std::string, double>& out, double S, double K,
                                                double days, double seconds, double rate, double volatility,
                                                nqservice::EOptionGreekBenchmark benchmark, const std::string& key,
                                                bool underlyingIsFuture, bool american) const
{
    fillGreeks(OptionType::Call, out, S, K, days, seconds, rate, volatility, benchmark, key, underlyingIsFuture,
               american);
}

void CGreekAndOptionsCalculator::calcPutGreeks(std::map<std::string, double>& out, double S, double K,
                                               double days, double seconds, double rate, double volatility,
                                               nqservice::EOptionGreekBenchmark benchmark, const std::string& key,
                                               bool underlyingIsFuture, bool american) const
{
    fillGreeks(OptionType::Put, out, S, K, days, seconds, rate, volatility, benchmark, key, underlyingIsFuture,
               american);
}

bool CGreekAndOptionsCalculator::calcGreeks(const std::string& key, nqservice::CGreeksValue& out,
                                            bool useHistoricalVolatility, bool fallBackToHistorical) const
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    TC::CQuoteClient* quotes = utils::CManualSingletonT<TC::CQuoteClient>::instance();
    if (exchange == nullptr || quotes == nullptr || key.empty()) {
        return false;
    }
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = exchange->getCodeInfo(QString::fromUtf8(key.c_str()));
    PricingModel model;
    if (!detail || !modelOfInstrument(*detail, model)) {
        return false;
    }
    const double K = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const double rate = detail->getDoubleField(nqservice::IF_RISK_FREE_RATE);
    if (!positive(K) || !usable(rate) || utils::isAbsent(detail->expireDate)) {
        return false;
    }
    const int days = exchange->getRemainDays(QString::number(detail->expireDate));
    if (utils::isAbsent(days) || days < 0) {
        return false;
    }
    const int seconds = days == 0 ? exchange->getRemainSecond() : 0;
    const double T = yearFraction(days, seconds);
    if (!positive(T)) {
        return false;  // trading is over for good: the option has no Greeks left
    }
    const std::string underlyingKey = utils::vqStockKey(detail->getTextField(nqservice::IF_UNDERLYING_MARKET),
                                                        detail->getTextField(nqservice::IF_UNDERLYING_CODE));
    const double S = currentPrice(*quotes, underlyingKey);
    if (!positive(S)) {
        return false;
    }
    const OptionType type = exchange->isCall(detail) ? OptionType::Call : OptionType::Put;
    const double historical = detail->getDoubleField(nqservice::IF_HISTORY_VOLATILITY);
    double volatility = kAbsent;
    if (useHistoricalVolatility) {
        volatility = historical;
    } else {
        const double price = currentPrice(*quotes, key);
        volatility = modelImpliedVolatility(type, model, S, K, T, rate, price, kImpliedVolatilityCeiling);
        if (!positive(volatility) && fallBackToHistorical) {
            volatility = historical;
        }
    }
    nqservice::CGreeksValue greeks;
    if (!displayGreeks(type, model, S, K, T, rate, volatility, nqservice::OGB_UNIT, greeks)) {
        return false;
    }
    out = greeks;
    return true;
}

}  // namespace pricing
