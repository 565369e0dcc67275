// The options calculator the boards call: intrinsic value, premium, leverage,
// theoretical value, implied volatility and Greeks.
//
// Conventions every implementation keeps:
//
// * Time to expiry is a calendar-day year:
//   T = (days + min(seconds / 14400, 1)) / 365.
//   `days` is what TC::CExchangeClient::getRemainDays gives (calendar days),
//   `seconds` is 0 unless days is 0, then the seconds left in today's
//   trading (a full session is 4 hours, 14400 s). The last day thus counts as
//   one day, spread over its trading seconds, and T runs down without a jump
//   from the eve of expiry to the close. Negative days, or days of the absent
//   integer 2147483647, have no answer; at T = 0 prices are intrinsic values. Calendar days are used because that
//   is what the callers count, and a trading calendar with the exchanges'
//   holidays is not known to the calculator; theta follows the same clock.
// * Volatility and rates are fractions per year (0.25 is 25 %, 0.03 is 3 %).
// * Greeks are per one unit of the option's price (one share of the
//   underlying), not per contract:
//     delta  dV/dS                      (benchmark OGB_UNIT), or the change of
//            V for a 1 % move of S     (OGB_PERCENT: delta * S / 100)
//     gamma  d2V/dS2                    (OGB_UNIT), or the change of the
//            1 %-delta for a 1 % move  (OGB_PERCENT: gamma * S^2 / 10000)
//     theta  change of V over one calendar day, dV/dt / 365 (negative for a
//            long option as a rule)
//     vega   change of V for one volatility point, dV/dsigma / 100
//     rho    change of V for one rate point, dV/dr / 100
//   Theta, vega and rho do not depend on the benchmark.
// * Anything without an answer (unusable input, no volatility in the
//   search range, an expired option) is utils::kAbsentDouble. Nothing throws.
#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

namespace nqservice {

// How delta and gamma are scaled (user setting 77). Unknown values count as
// OGB_UNIT.
enum EOptionGreekBenchmark {
    OGB_UNIT = 0,     // per one unit of the underlying's price
    OGB_PERCENT = 1,  // per one per cent move of the underlying's price
};

// Greeks of one option; the units are those above.
class CGreeksValue {
public:
    CGreeksValue();

    double delta;
    double gamma;
    double theta;
    double vega;
    double rho;
};

class GreekAndOptionsCalculator {
public:
    virtual ~GreekAndOptionsCalculator();

    // The calculator a host installed; null until then. Safe from any thread.
    static boost::shared_ptr<GreekAndOptionsCalculator> instance();
    static void setInstance(boost::shared_ptr<GreekAndOptionsCalculator> calculator);

    // max(S - K, 0) and max(K - S, 0).
    virtual double calcCallIntrinsicValue(double S, double K) const = 0;
    virtual double calcPutIntrinsicValue(double S, double K) const = 0;

    // Premium over the underlying as a ratio (0.05 is 5 %): how far the
    // underlying must move for the holder to break even at expiry,
    //   call (K + P - S) / S,   put (S + P - K) / S.
    // `premiumBase` is the contract unit (instrument field 2001): premium and
    // underlying value scale alike with it, so it cancels from the ratio and
    // any value, the absent 2147483647 too, gives the same result.
    virtual double calcCallPremiumRate(double K, double price, double premiumBase, double S) const = 0;
    virtual double calcPutPremiumRate(double K, double price, double premiumBase, double S) const = 0;

    // Leverage S / (price * multiplier); callers pass multiplier 1.0.
    virtual double calcLeverageRatio(double price, double S, double multiplier) const = 0;
    // Real leverage (elasticity) delta * leverage; negative for puts.
    virtual double calcRealLeverageRatio(double delta, double leverage) const = 0;
    // price - intrinsic.
    virtual double calcTimeValue(double price, double intrinsic) const = 0;

    // Theoretical value. Three arguments: the value at expiry if the
    // underlying stays at S, plus a cash amount: intrinsic + cash. The chain
    // passes the option's price negated, so the cell shows what a buyer at
    // that price would have at expiry with the underlying unchanged
    // (intrinsic minus premium, the negated time value).
    virtual double calcCallTheroticalValue(double S, double K, double cash) const = 0;
    virtual double calcPutTheroticalValue(double S, double K, double cash) const = 0;
    // Six arguments: the model value (European Black-Scholes on a spot).
    virtual double calcCallTheroticalValue(double S, double K, double days, double seconds, double rate,
                                           double volatility) const = 0;
    virtual double calcPutTheroticalValue(double S, double K, double days, double seconds, double rate,
                                          double volatility) const = 0;

    // Implied volatility of a European option on a spot (Black-Scholes), in
    // (0, ceiling]; absent when no volatility in that range gives the price
    // (price at or below the intrinsic value of the forward, above the bound,
    // no time left, non-finite input). Callers pass ceiling 1.5.
    virtual double calcCallImpliedVolatility(double S, double K, double days, double seconds, double rate,
                                             double price, double ceiling) const = 0;
    virtual double calcPutImpliedVolatility(double S, double K, double days, double seconds, double rate,
                                            double price, double ceiling) const = 0;

    // Fills "C_Delta", "C_Gamma", "C_Theta", "C_Vega", "C_Rho" (calls) or
    // "P_Delta" ... "P_Rho" (puts), all five always; each absent when there
    // is no answer. The model: when `key` names an instrument the exchange
    // knows, the instrument's (European Black-Scholes for stock options,
    // American Black-76 for futures options); otherwise `underlyingIsFuture`
    // selects Black-76 over Black-Scholes and `american` American exercise.
    // Callers pass "", false, false.
    virtual void calcCallGreeks(std::map<std::string, double>& out, double S, double K, double days,
                                double seconds, double rate, double volatility,
                                EOptionGreekBenchmark benchmark, const std::string& key,
                                bool underlyingIsFuture, bool american) const = 0;
    virtual void calcPutGreeks(std::map<std::string, double>& out, double S, double K, double days,
                               double seconds, double rate, double volatility,
                               EOptionGreekBenchmark benchmark, const std::string& key,
                               bool underlyingIsFuture, bool american) const = 0;

    // Greeks of an option by its stock key, from the exchange's instrument
    // and the quote client's current prices (OGB_UNIT). The volatility is the
    // implied volatility of the option's last price, unless
    // `useHistoricalVolatility`; where the implied volatility has no answer
    // and `fallBackToHistorical`, the instrument's historical volatility
    // (field 3012). Callers pass false, true. False, with `out` untouched,
    // when the instrument, a price, the rate or a volatility is missing or
    // the option has expired.
    virtual bool calcGreeks(const std::string& key, CGreeksValue& out, bool useHistoricalVolatility,
                            bool fallBackToHistorical) const = 0;
};

}  // namespace nqservice
