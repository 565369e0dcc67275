// The implied volatility of an American option under any pricer whose price
// rises with volatility: a bracket in (0, ceiling], started at the European
// volatility of the same price (at or above the American one), refined by
// Illinois regula falsi. The absent marker when no volatility gives the price.
#pragma once

#include <cmath>

#include "seam/common.h"
#include "services/pricing/impliedvolatility.h"

namespace pricing {

// priceAt(volatility) gives the option's price at that volatility.
template <typename Pricer>
double bracketedImpliedVolatility(const Pricer& priceAt, OptionType type, double S, double K, double T, double rate,
                                  double carry, double price, double ceiling)
{
    constexpr double kAbsent = utils::kAbsentDouble;
    if (!(std::isfinite(S) && std::isfinite(K) && std::isfinite(T) && std::isfinite(rate) &&
          std::isfinite(carry) && std::isfinite(price) && std::isfinite(ceiling))) {
        return kAbsent;
    }
    if (!(S > 0.0 && K > 0.0 && T > 0.0 && price > 0.0 && ceiling > 0.0)) {
        return kAbsent;
    }
    auto excess = [&](double v) { return priceAt(v) - price; };
    // The price rises with volatility; bracket the root in (0, ceiling].
    double lo = 1e-8 * ceiling;
    double hi = ceiling;
    double fLo = excess(lo);
    double fHi = excess(hi);
    if (!(fLo < 0.0) || fHi < 0.0) {
        return kAbsent;
    }
    if (fHi == 0.0) {
        return hi;
    }
    // Start from the European volatility of the same price, which lies at or
    // above the American one, and refine by Illinois regula falsi.
    double guess = impliedVolatility(type, S, K, T, rate, carry, price, ceiling);
    if (!utils::isAbsent(guess) && guess > lo && guess < hi) {
        const double f = excess(guess);
        if (f == 0.0) {
            return guess;
        }
        if (f < 0.0) {
            lo = guess;
            fLo = f;
        } else {
            hi = guess;
            fHi = f;
        }
    }
    int side = 0;
    double v = 0.5 * (lo + hi);
    for (int i = 0; i < 200 && hi - lo > 1e-14 * hi; ++i) {
        v = (lo * fHi - hi * fLo) / (fHi - fLo);
        if (!(v > lo && v < hi)) {
            v = 0.5 * (lo + hi);
        }
        const double f = excess(v);
        if (f == 0.0) {
            return v;
        }
        if (f < 0.0) {
            lo = v;
            fLo = f;
            if (side == -1) {
                fHi *= 0.5;
            }
            side = -1;
        } else {
            hi = v;
            fHi = f;
            if (side == 1) {
                fLo *= 0.5;
            }
            side = 1;
        }
        if (std::fabs(f) <= 1e-15 * price) {
            return v;
        }
    }
    return v;
}


}  // namespace pricing
