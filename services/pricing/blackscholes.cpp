#include "services/pricing/blackscholes.h"

#include <algorithm>
#include <cmath>

#include "services/pricing/normaldistribution.h"

namespace pricing {

double blackScholesMertonPrice(OptionType type, double S, double K, double T, double rate, double carry,
                               double sigma)
{
    const double discount = std::exp(-rate * T);
    const double forward = carry == 0.0 ? S : S * std::exp(carry * T);
    const double stdDev = sigma * std::sqrt(T);
    if (!(stdDev > 0.0)) {
        const double intrinsic = type == OptionType::Call ? forward - K : K - forward;
        return discount * std::max(intrinsic, 0.0);
    }
    const double d1 = (std::log(S / K) + carry * T) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    // One exponential for both probabilities: phi(d2) = phi(d1) F / K.
    const double gauss1 = std::exp(-0.5 * d1 * d1);
    const double gauss2 = gauss1 * (forward / K);
    // Far out of the money the difference may round below zero.
    const double undiscounted = type == OptionType::Call
                                    ? forward * normCdfWithGauss(d1, gauss1) - K * normCdfWithGauss(d2, gauss2)
                                    : K * normCdfWithGauss(-d2, gauss2) - forward * normCdfWithGauss(-d1, gauss1);
    return undiscounted > 0.0 ? discount * undiscounted : 0.0;
}

OptionGreeks blackScholesMertonGreeks(OptionType type, double S, double K, double T, double rate, double carry,
                                      double sigma, Underlying underlying)
{
    OptionGreeks g;
    const double discount = std::exp(-rate * T);
    // exp((carry - rate) T): the forward discounted back, per unit of spot.
    // Black-Scholes on a spot has it at one, Black-76 at the discount.
    const double carryDiscount = carry == rate ? 1.0 : carry == 0.0 ? discount : std::exp((carry - rate) * T);
    const double forward = carry == 0.0 ? S : S * carryDiscount / discount;
    const double sqrtT = std::sqrt(T);
    const double stdDev = sigma * sqrtT;
    const bool isCall = type == OptionType::Call;

    if (!(stdDev > 0.0)) {
        // The option is worth its discounted forward intrinsic value.
        const double intrinsic = isCall ? forward - K : K - forward;
        if (intrinsic > 0.0) {
            g.price = discount * intrinsic;
            g.delta = isCall ? carryDiscount : -carryDiscount;
            // V = sign * (S exp((b-r)T) - K exp(-rT)); dV/dt = -dV/dT.
            const double spotTheta = (carry - rate) * S * carryDiscount;
            const double strikeTheta = rate * K * discount;
            g.theta = isCall ? -spotTheta - strikeTheta : spotTheta + strikeTheta;
            g.rho = underlying == Underlying::Spot ? (isCall ? K * T * discount : -K * T * discount)
                                                   : -T * g.price;
        }
        return g;
    }

    // ln(F / K) as ln(S / K) + carry T: the logarithm need not wait for the
    // forward's exponential.
    const double d1 = (std::log(S / K) + carry * T) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    // One exponential for the density and all probabilities: the Gaussian
    // factor is even, and phi(d2) = phi(d1) F / K.
    const double gauss1 = std::exp(-0.5 * d1 * d1);
    const double gauss2 = gauss1 * (forward / K);
    const double pdf = kInvSqrt2Pi * gauss1;
    const double spotPdf = S * carryDiscount * pdf;
    // One side's probabilities; the other side's follow by symmetry.
    const double nd1 = normCdfWithGauss(isCall ? d1 : -d1, gauss1);
    const double nd2 = normCdfWithGauss(isCall ? d2 : -d2, gauss2);
    const double decay = -spotPdf * sigma / (2.0 * sqrtT);

    g.gamma = carryDiscount * pdf / (S * stdDev);
    g.vega = spotPdf * sqrtT;
    if (isCall) {
        g.price = S * carryDiscount * nd1 - K * discount * nd2;
        g.delta = carryDiscount * nd1;
        g.theta = decay - (carry - rate) * S * carryDiscount * nd1 - rate * K * discount * nd2;
        g.rho = underlying == Underlying::Spot ? K * T * discount * nd2 : -T * g.price;
    } else {
        g.price = K * discount * nd2 - S * carryDiscount * nd1;
        g.delta = -carryDiscount * nd1;
        g.theta = decay + (carry - rate) * S * carryDiscount * nd1 + rate * K * discount * nd2;
        g.rho = underlying == Underlying::Spot ? -K * T * discount * nd2 : -T * g.price;
    }
    return g;
}

}  // namespace pricing
