// Greeks of an American option by central differences of any pricer: the
// analytic forms stop at the early-exercise boundary. Futures keep their zero
// carry as the rate moves; a spot's carry moves with the rate (the dividend
// yield is held). Theta is one-sided near expiry so that T stays positive.
#pragma once

#include <algorithm>

#include "services/pricing/blackscholes.h"

namespace pricing {

// priceAt(S, T, rate, carry, volatility) gives the option's price.
template <typename Pricer>
OptionGreeks finiteDifferenceGreeks(const Pricer& priceAt, double S, double T, double rate, double carry, double sigma,
                                    Underlying underlying)
{
    auto price = [&](double s, double t, double r, double v) {
        const double b = underlying == Underlying::Spot ? carry + (r - rate) : carry;
        return priceAt(s, t, r, b, v);
    };
    OptionGreeks g;
    g.price = price(S, T, rate, sigma);
    const double dS = 1e-4 * S;
    const double up = price(S + dS, T, rate, sigma);
    const double down = price(S - dS, T, rate, sigma);
    g.delta = (up - down) / (2.0 * dS);
    g.gamma = (up - 2.0 * g.price + down) / (dS * dS);
    const double dV = 1e-4;
    g.vega = (price(S, T, rate, sigma + dV) - price(S, T, rate, std::max(sigma - dV, 0.0))) /
             (sigma + dV - std::max(sigma - dV, 0.0));
    const double dR = 1e-5;
    g.rho = (price(S, T, rate + dR, sigma) - price(S, T, rate - dR, sigma)) / (2.0 * dR);
    const double dT = std::min(1e-5, 0.5 * T);
    if (dT > 0.0) {
        g.theta = -(price(S, T + dT, rate, sigma) - price(S, T - dT, rate, sigma)) / (2.0 * dT);
    }
    return g;
}

}  // namespace pricing
