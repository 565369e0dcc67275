// Implied volatility of European options (Black-Scholes-Merton with a cost of
// carry, so Black-76 too): the volatility in (0, ceiling] whose price is the
// given one, or utils::kAbsentDouble when there is none.
//
// The solver works on the normalized out-of-the-money price (the in-the-money
// option is turned into the other side by parity), picks its objective by the
// region of the price against the inflection point sqrt(2|x|) of the price in
// total deviation, starts from the asymptotic guesses of those regions and
// takes third-order Householder steps kept inside a bracket (bisection where a
// step leaves it). Three or four price evaluations are usual.
#pragma once

#include "services/pricing/blackscholes.h"

namespace pricing {

// The volatility in (0, ceiling] that gives `price`; absent when the price is
// at or below the discounted intrinsic value of the forward, at or above the
// upper bound, above the price at the ceiling, when T <= 0, or when any input
// is not finite or not positive where it must be.
double impliedVolatility(OptionType type, double S, double K, double T, double rate, double carry, double price,
                         double ceiling);

inline double blackScholesImpliedVolatility(OptionType type, double S, double K, double T, double rate,
                                            double price, double ceiling)
{
    return impliedVolatility(type, S, K, T, rate, rate, price, ceiling);
}

inline double black76ImpliedVolatility(OptionType type, double F, double K, double T, double rate, double price,
                                       double ceiling)
{
    return impliedVolatility(type, F, K, T, rate, 0.0, price, ceiling);
}

// The core: total deviation s = sigma sqrt(T) in (0, maxStdDev] of an
// undiscounted price normalized by sqrt(F K), with x = ln(F / K). Absent when
// there is none. Exposed for tests of the regions.
double normalizedImpliedStdDev(OptionType type, double normalizedPrice, double x, double maxStdDev);

// The normalized undiscounted price that normalizedImpliedStdDev inverts.
double normalizedBlackPrice(OptionType type, double x, double stdDev);

}  // namespace pricing
