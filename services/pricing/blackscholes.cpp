#include "services/pricing/blackscholes.h"

#include <algorithm>
#include <cmath>

#include "services/pricing/normaldistribution.h"

namespace pricing {

double blackScholesMertonPrice(OptionType type, double S, double K, double T, double rate, double carry,
                               double sigma)
{
    const double discount = std::exp(-rate * T);
    const double forward = S * std::exp(carry * T);
    const double stdDev = sigma * std::sqrt(T);
    if (!(stdDev > 0.0)) {
        const double intrinsic = type == OptionType::Call ? forward - K : K - forward;
        return discount * std::max(intrinsic, 0.0);
    }
    const double d1 = std::log(forward / K) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    // Far out of the money the difference may round below zero.
    const double undiscounted = type == OptionType::Call ? forward * normCdf(d1) - K * normCdf(d2)
                                                         : K * normCdf(-d2) - forward * normCdf(-d1);
    return undiscounted > 0.0 ? discount * undiscounted : 0.0;
}

OptionGreeks blackScholesMertonGreeks(OptionType type, double S, double K, double T, double rate, double carry,
                                      double sigma, Underlying underlying)
{
    OptionGreeks g;
    const double discount = std::exp(-rate * T);
    // exp((carry - rate) T): the forward discounted back, per unit of spot.
    const double carryDiscount = std::exp((carry - rate) * T);
    const double forward = S * carryDiscount / discount;
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

    const double d1 = std::log(forward / K) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    const double pdf = normPdf(d1);
    const double spotPdf = S * carryDiscount * pdf;
    // One side's probabilities; the other side's follow by symmetry.
    const double nd1 = normCdf(isCall ? d1 : -d1);
    const double nd2 = normCdf(isCall ? d2 : -d2);
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
