// The standard normal distribution as the pricing formulas need it: density,
// cumulative distribution accurate in both tails, and its inverse.
//
// The cumulative distribution uses W. J. Cody's rational approximations of
// erf and erfc (Math. Comp. 23, 1969), accurate to double rounding: erf by a
// rational function near zero, erfc(y) = exp(-y^2) R(y) beyond. The Gaussian
// factor exp(-z^2 / 2) can be handed in by a caller that already has it (the
// density of d1 gives those of d2 and of the other side by a ratio), so a
// price with its Greeks takes one exponential for all its probabilities.
#pragma once

#include <cmath>

namespace pricing {

constexpr double kInvSqrt2 = 0.70710678118654752440;
constexpr double kInvSqrt2Pi = 0.39894228040143267794;
constexpr double kSqrt2Pi = 2.50662827463100050242;
constexpr double kInvSqrtPi = 0.56418958354775628695;

// |z| at or below this: erf's own rational function, no exponential needed.
constexpr double kNormCdfCentral = 0.46875 / kInvSqrt2;

namespace detail {

// erf(y) for |y| <= 0.46875.
inline double erfCentral(double y)
{
    const double q = y * y;
    const double num = (((1.85777706184603153e-1 * q + 3.16112374387056560e00) * q + 1.13864154151050156e02) * q +
                        3.77485237685302021e02) * q + 3.20937758913846947e03;
    const double den = (((q + 2.36012909523441209e01) * q + 2.44024637934444173e02) * q + 1.28261652607737228e03) *
                           q + 2.84423683343917062e03;
    return y * num / den;
}

// erfc(y) exp(y^2) for y > 0.46875.
inline double scaledErfcTail(double y)
{
    if (y <= 4.0) {
        // Estrin's scheme: the terms are all positive, so the shorter
        // dependency chain costs no accuracy.
        const double y2 = y * y;
        const double y4 = y2 * y2;
        const double num = (1.23033935479799725e03 + 2.05107837782607147e03 * y) +
                           (1.71204761263407058e03 + 8.81952221241769090e02 * y) * y2 +
                           ((2.98635138197400131e02 + 6.61191906371416295e01 * y) +
                            (8.88314979438837594e00 + 5.64188496988670089e-1 * y) * y2) * y4 +
                           2.15311535474403846e-8 * (y4 * y4);
        const double den = (1.23033935480374942e03 + 3.43936767414372164e03 * y) +
                           (4.36261909014324716e03 + 3.29079923573345963e03 * y) * y2 +
                           ((1.62138957456669019e03 + 5.37181101862009858e02 * y) +
                            (1.17693950891312499e02 + 1.57449261107098347e01 * y) * y2) * y4 +
                           y4 * y4;
        return num / den;
    }
    const double q = 1.0 / (y * y);
    const double num = ((((1.63153871373020978e-2 * q + 3.05326634961232344e-1) * q + 3.60344899949804439e-1) * q +
                         1.25781726111229246e-1) * q + 1.60837851487422766e-2) * q + 6.58749161529837803e-4;
    const double den = ((((q + 2.56852019228982242e00) * q + 1.87295284992346047e00) * q + 5.27905102951428412e-1) *
                            q + 6.05183413124413191e-2) * q + 2.33520497626869185e-3;
    return (kInvSqrtPi - q * num / den) / y;
}

}  // namespace detail

inline double normPdf(double z) { return kInvSqrt2Pi * std::exp(-0.5 * z * z); }

// Phi(z) given gauss = exp(-z^2 / 2), which only |z| > kNormCdfCentral reads.
// Both tails keep full relative precision: the lower one is computed as such,
// never as 1 - Phi(-z).
inline double normCdfWithGauss(double z, double gauss)
{
    const double y = std::fabs(z) * kInvSqrt2;
    if (y <= 0.46875) {
        return 0.5 + 0.5 * detail::erfCentral(z * kInvSqrt2);
    }
    const double lower = 0.5 * gauss * detail::scaledErfcTail(y);  // Phi(-|z|)
    return z < 0.0 ? lower : 1.0 - lower;
}

inline double normCdf(double z)
{
    if (std::fabs(z) <= kNormCdfCentral) {
        return 0.5 + 0.5 * detail::erfCentral(z * kInvSqrt2);
    }
    return normCdfWithGauss(z, std::exp(-0.5 * z * z));
}

// Inverse of normCdf on (0, 1) to about 1e-16 relative (Wichura's AS 241);
// -inf at 0, +inf at 1, NaN outside [0, 1].
double inverseNormCdf(double p);

}  // namespace pricing
