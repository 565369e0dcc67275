// American options with a cost of carry by the integral equation of the
// early-exercise boundary, solved as in Andersen, Lake and Offengenden, "High
// performance American option pricing" (2016): the boundary B(tau) of the put
// is collocated on Chebyshev nodes in sqrt(tau), improved by fixed-point
// iterations of the smooth-pasting form of its equation (their FP-B), and the
// price is the European one plus the early-exercise premium integrated along
// the boundary. Calls are the puts of the symmetry
// C(S, K, r, q) = P(K, S, q, r), so on a futures price (carry 0) both sides
// may be exercised early.
//
// Unlike the quadratic approximations (Barone-Adesi-Whaley, Bjerksund-
// Stensland) the error does not grow with the expiry or the volatility: on
// log-moneyness -1..1, 1 day..2 years, volatility 1%..150% the price stays
// within 1e-4 relative of a fine binomial tree (tests hold it to that).
//
// Units as in blackscholes.h. Greeks are central differences of the price.
#pragma once

#include "services/pricing/blackscholes.h"

namespace pricing {

double americanPrice(OptionType type, double S, double K, double T, double rate, double carry, double sigma);

// The early-exercise boundary at time to expiry tau <= T of an option of
// expiry T: the spot below which a put (above which a call) is exercised.
// Absent without early exercise. Exposed for tests.
double americanExerciseBoundary(OptionType type, double K, double T, double rate, double carry, double sigma,
                                double tau);

OptionGreeks americanGreeks(OptionType type, double S, double K, double T, double rate, double carry, double sigma,
                            Underlying underlying);

// The volatility in (0, ceiling] whose American price is `price`; absent when
// none is (at or below the exercise value, above the price at the ceiling,
// T <= 0, non-finite input).
double americanImpliedVolatility(OptionType type, double S, double K, double T, double rate, double carry,
                                 double price, double ceiling);

}  // namespace pricing
