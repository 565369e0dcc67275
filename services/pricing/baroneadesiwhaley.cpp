#include "services/pricing/baroneadesiwhaley.h"

#include <algorithm>
#include <cmath>

#include "seam/common.h"
#include "services/pricing/bracketedimpliedvolatility.h"
#include "services/pricing/finitedifferencegreeks.h"
#include "services/pricing/impliedvolatility.h"
#include "services/pricing/normaldistribution.h"

namespace pricing {

namespace {

constexpr double kBoundaryTolerance = 1e-12;
constexpr int kMaxBoundaryIterations = 200;

struct EuropeanAt {
    double price;
    double nd1;  // N(d1) for a call, N(-d1) for a put
    double pdf;  // phi(d1)
};

EuropeanAt europeanAt(OptionType type, double S, double K, double T, double rate, double carry, double sigma)
{
    const double stdDev = sigma * std::sqrt(T);
    const double carryDiscount = std::exp((carry - rate) * T);
    const double discount = std::exp(-rate * T);
    const double d1 = (std::log(S / K) + carry * T) / stdDev + 0.5 * stdDev;
    const double d2 = d1 - stdDev;
    EuropeanAt e;
    e.pdf = normPdf(d1);
    if (type == OptionType::Call) {
        e.nd1 = normCdf(d1);
        e.price = S * carryDiscount * e.nd1 - K * discount * normCdf(d2);
    } else {
        e.nd1 = normCdf(-d1);
        e.price = K * discount * normCdf(-d2) - S * carryDiscount * e.nd1;
    }
    return e;
}

}  // namespace

double baroneAdesiWhaleyPrice(OptionType type, double S, double K, double T, double rate, double carry,
                              double sigma)
{
    const bool isCall = type == OptionType::Call;
    const double exercise = std::max(isCall ? S - K : K - S, 0.0);
    const double stdDev = sigma * std::sqrt(T);
    if (!(stdDev > 0.0)) {
        return std::max(exercise, blackScholesMertonPrice(type, S, K, T, rate, carry, sigma));
    }
    // Without a rate to earn, or a call whose carry is at least the rate,
    // early exercise is worth nothing.
    if (!(rate > 0.0) || (isCall && carry >= rate)) {
        return blackScholesMertonPrice(type, S, K, T, rate, carry, sigma);
    }
    const double sigma2 = sigma * sigma;
    const double m = 2.0 * rate / sigma2;
    const double n = 2.0 * carry / sigma2;
    const double k = 1.0 - std::exp(-rate * T);
    const double carryDiscount = std::exp((carry - rate) * T);
    const double root = std::sqrt((n - 1.0) * (n - 1.0) + 4.0 * m / k);
    const double rootInf = std::sqrt((n - 1.0) * (n - 1.0) + 4.0 * m);

    if (isCall) {
        const double q2 = 0.5 * (-(n - 1.0) + root);
        const double q2Inf = 0.5 * (-(n - 1.0) + rootInf);
        const double sInf = K / (1.0 - 1.0 / q2Inf);
        const double h2 = -(carry * T + 2.0 * stdDev) * K / (sInf - K);
        double si = K + (sInf - K) * (1.0 - std::exp(h2));
        // Newton on the boundary condition of the call.
        for (int i = 0; i < kMaxBoundaryIterations; ++i) {
            const EuropeanAt e = europeanAt(type, si, K, T, rate, carry, sigma);
            const double lhs = si - K;
            const double rhs = e.price + (1.0 - carryDiscount * e.nd1) * si / q2;
            if (std::fabs(lhs - rhs) <= kBoundaryTolerance * K) {
                break;
            }
            const double slope =
                carryDiscount * e.nd1 * (1.0 - 1.0 / q2) + (1.0 - carryDiscount * e.pdf / stdDev) / q2;
            const double next = (K + rhs - slope * si) / (1.0 - slope);
            if (!std::isfinite(next) || next <= 0.0) {
                break;
            }
            si = next;
        }
        if (S >= si) {
            return exercise;
        }
        const EuropeanAt e = europeanAt(type, si, K, T, rate, carry, sigma);
        const double a2 = (si / q2) * (1.0 - carryDiscount * e.nd1);
        return blackScholesMertonPrice(type, S, K, T, rate, carry, sigma) + a2 * std::pow(S / si, q2);
    }

    const double q1 = 0.5 * (-(n - 1.0) - root);
    const double q1Inf = 0.5 * (-(n - 1.0) - rootInf);
    const double sInf = K / (1.0 - 1.0 / q1Inf);
    const double h1 = (carry * T - 2.0 * stdDev) * K / (K - sInf);
    double si = sInf + (K - sInf) * std::exp(h1);
    for (int i = 0; i < kMaxBoundaryIterations; ++i) {
        const EuropeanAt e = europeanAt(type, si, K, T, rate, carry, sigma);
        const double lhs = K - si;
        const double rhs = e.price - (1.0 - carryDiscount * e.nd1) * si / q1;
        if (std::fabs(lhs - rhs) <= kBoundaryTolerance * K) {
            break;
        }
        const double slope =
            -carryDiscount * e.nd1 * (1.0 - 1.0 / q1) - (1.0 + carryDiscount * e.pdf / stdDev) / q1;
        const double next = (K - rhs + slope * si) / (1.0 + slope);
        if (!std::isfinite(next) || next <= 0.0) {
            break;
        }
        si = next;
    }
    if (S <= si) {
        return exercise;
    }
    const EuropeanAt e = europeanAt(type, si, K, T, rate, carry, sigma);
    const double a1 = -(si / q1) * (1.0 - carryDiscount * e.nd1);
    return blackScholesMertonPrice(type, S, K, T, rate, carry, sigma) + a1 * std::pow(S / si, q1);
}

OptionGreeks baroneAdesiWhaleyGreeks(OptionType type, double S, double K, double T, double rate, double carry,
                                     double sigma, Underlying underlying)
{
    const auto priceAt = [&](double s, double t, double r, double b, double v) { return baroneAdesiWhaleyPrice(type, s, K, t, r, b, v); };
    return finiteDifferenceGreeks(priceAt, S, T, rate, carry, sigma, underlying);
}

double baroneAdesiWhaleyImpliedVolatility(OptionType type, double S, double K, double T, double rate,
                                          double carry, double price, double ceiling)
{
    const auto priceAt = [&](double v) { return baroneAdesiWhaleyPrice(type, S, K, T, rate, carry, v); };
    return bracketedImpliedVolatility(priceAt, type, S, K, T, rate, carry, price, ceiling);
}

}  // namespace pricing
