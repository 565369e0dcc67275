// European option prices and Greeks under Black-Scholes-Merton with a cost
// of carry: Black-Scholes on a spot (carry = rate), Black-76 on a futures
// price (carry 0), or a spot with a dividend yield (carry = rate - yield).
//
// Units here are the raw derivatives, per year and per unit of volatility
// or rate: theta is dV/dt per year (t calendar time, so -dV/dT), vega is
// dV/dsigma, rho dV/dr. The calculator scales them for display.
//
// No allocation, no exception; inputs are expected finite with S, K > 0,
// T >= 0, sigma >= 0. At T = 0 or sigma = 0 the option is worth its
// discounted forward intrinsic value and the Greeks are the limits.
#pragma once

namespace pricing {

enum class OptionType { Call, Put };

struct OptionGreeks {
    double price = 0.0;
    double delta = 0.0;
    double gamma = 0.0;
    double theta = 0.0;  // dV/dt per year
    double vega = 0.0;   // dV/dsigma
    double rho = 0.0;    // dV/dr
};

// How rho moves the forward: with a spot the carry follows the rate (rho
// holds the dividend yield), with a futures price the forward stays.
enum class Underlying { Spot, Future };

// Generalized Black-Scholes-Merton: forward S * exp(carry * T), discount
// exp(-rate * T). For Underlying::Spot the dividend yield is rate - carry.
double blackScholesMertonPrice(OptionType type, double S, double K, double T, double rate, double carry,
                               double sigma);
OptionGreeks blackScholesMertonGreeks(OptionType type, double S, double K, double T, double rate, double carry,
                                      double sigma, Underlying underlying);

// Black-Scholes on a non-paying spot (ETF options).
inline double blackScholesPrice(OptionType type, double S, double K, double T, double rate, double sigma)
{
    return blackScholesMertonPrice(type, S, K, T, rate, rate, sigma);
}
inline OptionGreeks blackScholesGreeks(OptionType type, double S, double K, double T, double rate, double sigma)
{
    return blackScholesMertonGreeks(type, S, K, T, rate, rate, sigma, Underlying::Spot);
}

// Black-76 on a futures price F (futures options, European exercise).
inline double black76Price(OptionType type, double F, double K, double T, double rate, double sigma)
{
    return blackScholesMertonPrice(type, F, K, T, rate, 0.0, sigma);
}
inline OptionGreeks black76Greeks(OptionType type, double F, double K, double T, double rate, double sigma)
{
    return blackScholesMertonGreeks(type, F, K, T, rate, 0.0, sigma, Underlying::Future);
}

}  // namespace pricing
