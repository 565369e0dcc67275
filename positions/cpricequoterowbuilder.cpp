#include "positions/cpricequoterowbuilder.h"

#include "positions/cpricequoteschema.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"

#include <algorithm>
#include <cmath>

namespace TC {

namespace {

using S = CPriceQuoteSchema;

bool valid(double value) { return !utils::isAbsent(value); }

// Stores a new value; stamps its column when an earlier value differs from it.
bool store(CPriceQuoteRow& row, QVector<double>& values, int month, double value, int column, double now)
{
    double& old = values[month];
    bool flashed = false;
    if (column >= 0 && valid(old) && std::fabs(old - value) > utils::kPriceTolerance) {
        row.flashStamps[column] = now;
        flashed = true;
    }
    old = value;
    return flashed;
}

int truncated(double value)
{
    if (!utils::isUsable(value) || std::fabs(value) >= 2147483647.0) {
        return utils::kAbsentInt;
    }
    return static_cast<int>(value);
}

}  // namespace

void CPriceQuoteRowBuilder::initMonth(CPriceQuoteRow& row, int month, const nqservice::CInstrumentDetail& detail)
{
    if (month < 0 || month >= row.monthCount || month >= row.stockKeys.size()) {
        return;
    }
    row.historicalVolatility[month] = detail.getDoubleField(nqservice::IF_HISTORY_VOLATILITY);
    row.expireDate[month] = detail.expireDate;
    row.stockKeys[month] = WG::sToQs(utils::vqStockKey(detail.market, detail.code));
    // The exchanges' stock options are all European.
    row.exerciseStyles[month] = QStringLiteral("欧式");
    row.contractUnits[month] = truncated(detail.getDoubleField(nqservice::IF_CONTRACT_UNIT));
    row.lastExerciseDates[month] = detail.getCodeField(nqservice::IF_LAST_EXERCISE_DATE);
}

bool CPriceQuoteRowBuilder::applyQuote(CPriceQuoteRow& row, int m, const CPriceData& price,
                                       const std::shared_ptr<nqservice::CInstrumentDetail>& detail, double now)
{
    if (!detail || m < 0 || m >= row.monthCount || m >= row.lastPrices.size()) {
        return false;
    }
    bool flashed = false;
    flashed |= store(row, row.lastPrices, m, price.lastPrice, S::columnOf(m, S::PQ_LAST), now);
    flashed |= store(row, row.changeRatios, m, price.changeRatio, S::columnOf(m, S::PQ_CHANGE_RATIO), now);
    row.preCloses[m] = price.preClose;
    row.volumes[m] = price.volume;
    row.openInterests[m] = truncated(price.openInterest);
    flashed |= store(row, row.changeAmounts, m, price.changeAmount, S::columnOf(m, S::PQ_CHANGE), now);
    flashed |= store(row, row.bidPrices, m, price.bidPrice1, S::columnOf(m, S::PQ_BID), now);

    const std::string key = utils::vqStockKey(price.market, price.code);
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();
    if (!calculator) {
        return flashed;
    }
    nqservice::CGreeksValue greeks;
    if (calculator->calcGreeks(key, greeks, false, true)) {
        row.deltas[m] = greeks.delta;
        row.gammas[m] = greeks.gamma;
        row.thetas[m] = greeks.theta;
        row.vegas[m] = greeks.vega;
        row.rhos[m] = greeks.rho;
    }

    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    if (exchange == nullptr || quotes == nullptr) {
        return flashed;
    }
    const bool call = exchange->isCall(detail);
    const QString underlyingKey = WG::sToQs(utils::vqStockKey(detail->getTextField(nqservice::IF_UNDERLYING_MARKET),
                                                              detail->getTextField(nqservice::IF_UNDERLYING_CODE)));
    const boost::shared_ptr<CPriceData> under = quotes->getStockPrice(underlyingKey);
    const double K = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const double P = price.lastPrice;
    if (!under || !valid(under->lastPrice) || !valid(K) || !valid(P)) {
        return flashed;
    }
    const double S0 = under->lastPrice;
    // The contract unit cancels from the ratio: an absent field is passed on as it is.
    const double premiumBase = static_cast<double>(detail->getIntField(nqservice::IF_PREMIUM_BASE));
    if (call) {
        row.inTheMoney = (K - S0) < -utils::kPriceTolerance;
        row.intrinsicValues[m] = calculator->calcCallIntrinsicValue(S0, K);
        row.premiumRates[m] = calculator->calcCallPremiumRate(K, P, premiumBase, S0);
    } else {
        row.inTheMoney = (K - S0) > utils::kPriceTolerance;
        row.intrinsicValues[m] = calculator->calcPutIntrinsicValue(S0, K);
        row.premiumRates[m] = calculator->calcPutPremiumRate(K, P, premiumBase, S0);
    }
    if (row.intrinsicValues[m] <= utils::kPriceTolerance) {
        row.intrinsicValues[m] = utils::kAbsentDouble;  // out of the money: a blank cell
    }
    row.leverages[m] = calculator->calcLeverageRatio(P, S0, 1.0);
    const int days = exchange->getRemainDays(QString::number(detail->expireDate));
    const double rate = detail->getDoubleField(nqservice::IF_RISK_FREE_RATE);
    if (!utils::isAbsent(days) && days >= 0 && valid(rate)) {
        const double seconds = days == 0 ? static_cast<double>(exchange->getRemainSecond()) : 0.0;
        row.impliedVolatilities[m] =
            call ? calculator->calcCallImpliedVolatility(S0, K, days, seconds, rate, P, 1.5)
                 : calculator->calcPutImpliedVolatility(S0, K, days, seconds, rate, P, 1.5);
    }
    return flashed;
}

bool CPriceQuoteRowBuilder::clearFlashStamps(CPriceQuoteRow& row, double now, int* firstColumn, int* lastColumn)
{
    bool removed = false;
    for (auto it = row.flashStamps.begin(); it != row.flashStamps.end();) {
        if (now - it->second - kFlashMs > utils::kPriceTolerance) {
            if (firstColumn != nullptr && lastColumn != nullptr) {
                *firstColumn = std::min(*firstColumn, it->first);
                *lastColumn = std::max(*lastColumn, it->first);
            }
            it = row.flashStamps.erase(it);
            removed = true;
        } else {
            ++it;
        }
    }
    return removed;
}

}  // namespace TC
