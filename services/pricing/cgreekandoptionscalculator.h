// The desk's options calculator: Black-Scholes for options on a spot (the
// exchanges' ETF options, European), the boundary-integral American price
// (americanfixedpoint.h) on Black-76 for options on futures (American). Units and conventions are those of
// seam/calculator.h; the maths lives in the pricing functions beside it.
#pragma once

#include <string>

#include "seam/calculator.h"
#include "services/pricing/blackscholes.h"

namespace pricing {

// Seconds of trading in a full stock-option day (09:30-11:30, 13:00-15:00).
constexpr double kTradingSecondsPerDay = 14400.0;
constexpr double kDaysPerYear = 365.0;
// The search ceiling of the implied volatility in calcGreeks, as the boards
// pass it to the implied-volatility operations.
constexpr double kImpliedVolatilityCeiling = 1.5;

// Years to expiry from the days and seconds the boards pass; absent when they
// are unusable or negative.
double yearFraction(double days, double seconds);

// How one option is priced.
struct PricingModel {
    Underlying underlying = Underlying::Spot;
    bool american = false;
};

class CGreekAndOptionsCalculator : public nqservice::GreekAndOptionsCalculator {
public:
    double calcCallIntrinsicValue(double S, double K) const override;
    double calcPutIntrinsicValue(double S, double K) const override;
    double calcCallPremiumRate(double K, double price, double premiumBase, double S) const override;
    double calcPutPremiumRate(double K, double price, double premiumBase, double S) const override;
    double calcLeverageRatio(double price, double S, double multiplier) const override;
    double calcRealLeverageRatio(double delta, double leverage) const override;
    double calcTimeValue(double price, double intrinsic) const override;
    double calcCallTheroticalValue(double S, double K, double cash) const override;
    double calcPutTheroticalValue(double S, double K, double cash) const override;
    double calcCallTheroticalValue(double S, double K, double days, double seconds, double rate,
                                   double volatility) const override;
    double calcPutTheroticalValue(double S, double K, double days, double seconds, double rate,
                                  double volatility) const override;
    double calcCallImpliedVolatility(double S, double K, double days, double seconds, double rate, double price,
                                     double ceiling) const override;
    double calcPutImpliedVolatility(double S, double K, double days, double seconds, double rate, double price,
                                    double ceiling) const override;
    void calcCallGreeks(std::map<std::string, double>& out, double S, double K, double days, double seconds,
                        double rate, double volatility, nqservice::EOptionGreekBenchmark benchmark,
                        const std::string& key, bool underlyingIsFuture, bool american) const override;
    void calcPutGreeks(std::map<std::string, double>& out, double S, double K, double days, double seconds,
                       double rate, double volatility, nqservice::EOptionGreekBenchmark benchmark,
                       const std::string& key, bool underlyingIsFuture, bool american) const override;
    bool calcGreeks(const std::string& key, nqservice::CGreeksValue& out, bool useHistoricalVolatility,
                    bool fallBackToHistorical) const override;

    // The Greeks of one option in the display units, or false without an
    // answer (out untouched). The common path of the Greeks operations.
    static bool displayGreeks(OptionType type, const PricingModel& model, double S, double K, double T,
                              double rate, double volatility, nqservice::EOptionGreekBenchmark benchmark,
                              nqservice::CGreeksValue& out);
    // The implied volatility under a model; absent without an answer.
    static double modelImpliedVolatility(OptionType type, const PricingModel& model, double S, double K, double T,
                                         double rate, double price, double ceiling);

private:
    void fillGreeks(OptionType type, std::map<std::string, double>& out, double S, double K, double days,
                    double seconds, double rate, double volatility, nqservice::EOptionGreekBenchmark benchmark,
                    const std::string& key, bool underlyingIsFuture, bool american) const;
};

}  // namespace pricing
