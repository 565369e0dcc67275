#include "services/pricing/impliedvolatility.h"

#include <cmath>

#include "seam/common.h"
#include "services/pricing/normaldistribution.h"

namespace pricing {

namespace {

// Out-of-the-money call of log-moneyness x <= 0 at total deviation s > 0,
// with the exponentials of x / 2 computed once per solve, and its vega
// db/ds. One exponential serves the vega and both probabilities:
// exp(-(h -+ t)^2 / 2) = exp(-(h^2 + t^2) / 2) exp(+-x / 2), since 2 h t = x.
struct PriceAndVega {
    double price;
    double vega;
};

inline PriceAndVega otmCall(double x, double s, double halfForward, double halfStrike)
{
    const double h = x / s;
    const double t = 0.5 * s;
    const double gauss = std::exp(-0.5 * (h * h + t * t));
    return {halfForward * normCdfWithGauss(h + t, gauss * halfStrike) -
                halfStrike * normCdfWithGauss(h - t, gauss * halfForward),
            kInvSqrt2Pi * gauss};
}

// A Householder step of this relative size or less ends the search: the step
// is of fourth order, so the error left after it is of the order of its
// fourth power times a constant near one (1e-12 and below), far under what
// the price itself determines. Bisection steps never end it this way.
constexpr double kStepTolerance = 1e-3;
constexpr int kMaxIterations = 100;
constexpr double kCeilingTolerance = 1e-11;

// The search proper: an out-of-the-money call of x <= 0 at normalized price
// beta; quotedBeta is the price before parity, the scale of its rounding.
// halfForward is exp(x / 2), which a caller with the forward and the strike
// has without an exponential: sqrt(min(F, K) / max(F, K)).
double otmImpliedStdDev(double beta, double x, double halfForward, double maxStdDev, double quotedBeta);

}  // namespace

double normalizedBlackPrice(OptionType type, double x, double stdDev)
{
    const double halfForward = std::exp(0.5 * x);
    const double halfStrike = 1.0 / halfForward;
    if (!(stdDev > 0.0)) {
        const double intrinsic = type == OptionType::Call ? halfForward - halfStrike : halfStrike - halfForward;
        return intrinsic > 0.0 ? intrinsic : 0.0;
    }
    const double h = x / stdDev;
    const double t = 0.5 * stdDev;
    if (type == OptionType::Call) {
        return halfForward * normCdf(h + t) - halfStrike * normCdf(h - t);
    }
    return halfStrike * normCdf(t - h) - halfForward * normCdf(-h - t);
}

double normalizedImpliedStdDev(OptionType type, double beta, double x, double maxStdDev)
{
    if (!(std::isfinite(beta) && std::isfinite(x))) {
        return utils::kAbsentDouble;
    }
    // Turn an in-the-money option into the out-of-the-money one of the other
    // side (parity), then a put of x into a call of -x: one case remains, a
    // call with x <= 0.
    const bool isCall = type == OptionType::Call;
    const bool inTheMoney = (isCall && x > 0.0) || (!isCall && x < 0.0);
    double otm = beta;
    if (inTheMoney) {
        const double halfForward = std::exp(-0.5 * std::fabs(x));
        otm -= 1.0 / halfForward - halfForward;
    }
    return otmImpliedStdDev(otm, -std::fabs(x), std::exp(-0.5 * std::fabs(x)), maxStdDev, beta);
}

namespace {

double otmImpliedStdDev(double beta, double x, double halfForward, double maxStdDev, double quotedBeta)
{
    constexpr double kAbsent = utils::kAbsentDouble;
    if (!(std::isfinite(beta) && std::isfinite(maxStdDev) && maxStdDev > 0.0)) {
        return kAbsent;
    }
    const double halfStrike = 1.0 / halfForward;
    const double maxPrice = halfForward;
    if (!(beta > 0.0) || !(beta < maxPrice)) {
        return kAbsent;
    }

    // Regions and initial guesses. Below the inflection point sc the price
    // falls off like exp(-x^2 / (2 s^2)), so the lower region solves on
    // ln(price); above it the distance to the upper bound falls off like
    // Phi(-s / 2). At sc the first argument of the price is 0, so its price
    // takes one distribution value only.
    const double absX = -x;
    const double sc = std::sqrt(2.0 * absX);
    // exp(-sc^2 / 2) = exp(x) = halfForward^2.
    const double bc = 0.5 * halfForward - halfStrike * normCdfWithGauss(-sc, halfForward * halfForward);
    const bool lower = beta < bc;
    double s;
    if (lower) {
        s = std::sqrt(2.0 * x * x / (absX - 4.0 * std::log(beta / bc)));
    } else {
        const double tail = (maxPrice - beta) / (maxPrice - bc) * normCdf(-0.5 * sc);
        s = -2.0 * inverseNormCdf(tail);
    }
    const double logBeta = lower ? std::log(beta) : 0.0;

    double lo = 0.0;
    double hi = maxStdDev;
    bool hiBracketed = false;
    if (!(s > 0.0) || !std::isfinite(s)) {
        s = 0.5 * maxStdDev;
    }
    if (s >= maxStdDev) {
        s = maxStdDev;
    }
    for (int i = 0; i < kMaxIterations; ++i) {
        const PriceAndVega pv = otmCall(x, s, halfForward, halfStrike);
        const double b = pv.price;
        if (b < beta) {
            lo = s;
            if (s >= maxStdDev) {
                // Even the ceiling does not reach the price, unless only by
                // the rounding of a price computed at the ceiling itself.
                return beta - b <= kCeilingTolerance * quotedBeta ? maxStdDev : kAbsent;
            }
        } else {
            hi = s;
            hiBracketed = true;
        }
        double next;
        const double vega = pv.vega;
        const double h2u = x * x / (s * s * s) - 0.25 * s;  // b'' / b'
        const double h3u = h2u * h2u - 3.0 * x * x / (s * s * s * s) - 0.25;  // b''' / b'
        double nu;
        double h2;
        double h3;
        if (lower && b > 0.0) {
            const double q = vega / b;
            nu = -(std::log(b) - logBeta) / q;
            h2 = h2u - q;
            h3 = h3u - 3.0 * h2u * q + 2.0 * q * q;
        } else {
            nu = -(b - beta) / vega;
            h2 = h2u;
            h3 = h3u;
        }
        double step = nu * (1.0 + 0.5 * h2 * nu) / (1.0 + nu * (h2 + h3 * nu / 6.0));
        if (!std::isfinite(step)) {
            step = nu;
        }
        next = s + step;
        if (std::fabs(step) <= kStepTolerance * s && next >= lo && next <= hi) {
            return next;
        }
        if (!(next > lo && next < hi)) {
            if (!hiBracketed && next >= hi) {
                next = maxStdDev;  // try the ceiling before bisecting towards it
            } else {
                next = 0.5 * (lo + hi);
                if (hi - lo <= 4.0 * DBL_EPSILON * hi) {
                    return next;
                }
            }
        }
        s = next;
    }
    return s;
}

}  // namespace

double impliedVolatility(OptionType type, double S, double K, double T, double rate, double carry, double price,
                         double ceiling)
{
    constexpr double kAbsent = utils::kAbsentDouble;
    if (!(std::isfinite(S) && std::isfinite(K) && std::isfinite(T) && std::isfinite(rate) &&
          std::isfinite(carry) && std::isfinite(price) && std::isfinite(ceiling))) {
        return kAbsent;
    }
    if (!(S > 0.0 && K > 0.0 && T > 0.0 && price > 0.0 && ceiling > 0.0)) {
        return kAbsent;
    }
    const double sqrtT = std::sqrt(T);
    const double forward = carry == 0.0 ? S : S * std::exp(carry * T);
    const double undiscounted = price * std::exp(rate * T);
    // The intrinsic value is taken off before normalizing, where the
    // difference of the forward and the strike is exact to one rounding.
    double otm = undiscounted;
    if (type == OptionType::Call && forward > K) {
        otm -= forward - K;
    } else if (type == OptionType::Put && forward < K) {
        otm -= K - forward;
    }
    const double scale = 1.0 / std::sqrt(forward * K);
    const double halfForward = forward < K ? std::sqrt(forward / K) : std::sqrt(K / forward);
    const double s = otmImpliedStdDev(otm * scale, -std::fabs(std::log(forward / K)), halfForward, ceiling * sqrtT,
                                      undiscounted * scale);
    if (utils::isAbsent(s)) {
        return kAbsent;
    }
    const double sigma = s / sqrtT;
    return sigma <= ceiling ? sigma : ceiling;
}

}  // namespace pricing
