// American options by the quadratic approximation of Barone-Adesi and Whaley
// (1987), with a cost of carry: on a futures price (carry 0, the Black-76
// case) both calls and puts may be exercised early.
//
// Units as in blackscholes.h. Greeks are central differences of the price,
// with the early-exercise boundary solved to 1e-12 so that they are smooth.
#pragma once

#include "services/pricing/blackscholes.h"

namespace pricing {

double baroneAdesiWhaleyPrice(OptionType type, double S, double K, double T, double rate, double carry,
                              double sigma);

OptionGreeks baroneAdesiWhaleyGreeks(OptionType type, double S, double K, double T, double rate, double carry,
                                     double sigma, Underlying underlying);

// The volatility in (0, ceiling] whose American price is `price`; absent when
// none is (at or below the exercise value, above the price at the ceiling,
// T <= 0, non-finite input).
double baroneAdesiWhaleyImpliedVolatility(OptionType type, double S, double K, double T, double rate,
                                          double carry, double price, double ceiling);

}  // namespace pricing
