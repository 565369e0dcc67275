#include "strategy/cstrategylegfigures.h"

#include "seam/calculator.h"
#include "seam/cquoteclient.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"

#include <cmath>
#include <map>
#include <string>

namespace TC {

bool CStrategyLegFigures::isCallByName(const QString& name)
{
    return name.contains(QStringLiteral("购")) || name.contains(QLatin1Char('C'));
}

double CStrategyLegFigures::daysToExpiry(int expireDate, const QDateTime& now)
{
    const QString text = QString::number(expireDate);
    if (utils::isAbsent(expireDate) || text.size() != 8) {
        return utils::kAbsentInt;
    }
    // Left four the year, then the month, right two the day.
    const QDate expiry(text.left(4).toInt(), text.mid(4, 2).toInt(), text.right(2).toInt());
    if (!expiry.isValid() || !now.isValid()) {
        return utils::kAbsentInt;
    }
    return static_cast<double>(now.date().daysTo(expiry));
}

double CStrategyLegFigures::secondsToDayEnd(const QDateTime& now)
{
    return static_cast<double>(now.time().secsTo(QTime(23, 59, 59)));
}

CStrategyLegGreeks CStrategyLegFigures::compute(const CStrategyLegInput& input)
{
    CStrategyLegGreeks out;
    const auto& instrument = input.instrument;
    const auto calculator = nqservice::GreekAndOptionsCalculator::instance();
    if (!instrument || !calculator) {
        return out;
    }
    const double days = daysToExpiry(instrument->expireDate, input.now);
    double seconds = 0.0;
    if (std::fabs(days) <= 1e-5) {
        const double left = secondsToDayEnd(input.now);
        if (left != utils::kAbsentInt) {
            seconds = left;
        }
    }
    const double strike = instrument->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    const double rate = instrument->getDoubleField(nqservice::IF_RISK_FREE_RATE);
    const double history = instrument->getDoubleField(nqservice::IF_HISTORY_VOLATILITY);
    if (!input.underlying || days == utils::kAbsentInt || utils::isAbsent(seconds) ||
        utils::isAbsent(input.underlying->lastPrice) || utils::isAbsent(strike) || utils::isAbsent(rate) ||
        (utils::isAbsent(history) && !input.kelvanMode)) {
        return out;
    }
    const double spot = input.underlying->lastPrice;
    const bool call = isCallByName(QString::fromStdString(instrument->name));
    double volatility = history;
    if (input.kelvanMode) {
        volatility = call ? calculator->calcCallImpliedVolatility(spot, strike, days, seconds, rate,
                                                                  input.optionLastPrice, 1.5)
                          : calculator->calcPutImpliedVolatility(spot, strike, days, seconds, rate,
                                                                 input.optionLastPrice, 1.5);
    }
    if (CUserConfig* config = getUserConfig()) {
        config->getHistoryRate(volatility, QString::number(instrument->expireDate),
                               QString::fromStdString(utils::vqStockKey(instrument->getTextField(nqservice::IF_UNDERLYING_MARKET),
                                                                        instrument->getTextField(nqservice::IF_UNDERLYING_CODE))));
    }
    std::map<std::string, double> result;
    const auto benchmark = static_cast<nqservice::EOptionGreekBenchmark>(input.benchmark);
    if (call) {
        calculator->calcCallGreeks(result, spot, strike, days, seconds, rate, volatility, benchmark, "", false, false);
    } else {
        calculator->calcPutGreeks(result, spot, strike, days, seconds, rate, volatility, benchmark, "", false, false);
    }
    static const char* const callKeys[5] = {"C_Delta", "C_Gamma", "C_Theta", "C_Vega", "C_Rho"};
    static const char* const putKeys[5] = {"P_Delta", "P_Gamma", "P_Theta", "P_Vega", "P_Rho"};
    for (int i = 0; i < 5; ++i) {
        auto it = result.find(call ? callKeys[i] : putKeys[i]);
        out.values[i] = it != result.end() ? it->second : utils::kAbsentDouble;
    }
    out.valid = true;
    out.days = days;
    out.seconds = seconds;
    out.volatility = volatility;
    return out;
}

CStrategyLegInput CStrategyLegFigures::inputFor(const std::shared_ptr<nqservice::CInstrumentDetail>& instrument,
                                                double optionLastPrice, int benchmark)
{
    CStrategyLegInput input;
    input.instrument = instrument;
    input.optionLastPrice = optionLastPrice;
    input.benchmark = benchmark;
    input.now = getTimeService()->currentDateTime();
    if (CUserConfig* config = getUserConfig()) {
        input.kelvanMode = config->isKelvanClientMode();
    }
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    if (instrument && quotes != nullptr) {
        input.underlying = quotes->getStockPrice(QString::fromStdString(
            utils::vqStockKey(instrument->getTextField(nqservice::IF_UNDERLYING_MARKET),
                              instrument->getTextField(nqservice::IF_UNDERLYING_CODE))));
        if (input.kelvanMode && utils::isAbsent(optionLastPrice)) {
            if (const auto own = quotes->getStockPrice(QString::fromStdString(instrument->key()))) {
                input.optionLastPrice = own->lastPrice;
            }
        }
    }
    return input;
}

}  // namespace TC
