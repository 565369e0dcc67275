// The standard normal distribution as the pricing formulas need it: density,
// cumulative distribution accurate in both tails, and its inverse.
#pragma once

#include <cmath>

namespace pricing {

constexpr double kInvSqrt2 = 0.70710678118654752440;
constexpr double kInvSqrt2Pi = 0.39894228040143267794;
constexpr double kSqrt2Pi = 2.50662827463100050242;

inline double normPdf(double z) { return kInvSqrt2Pi * std::exp(-0.5 * z * z); }

// erfc keeps full relative precision deep in the lower tail, where
// 1 - Phi(-z) would lose it.
inline double normCdf(double z) { return 0.5 * std::erfc(-z * kInvSqrt2); }

// Inverse of normCdf on (0, 1) to about 1e-16 relative (Wichura's AS 241);
// -inf at 0, +inf at 1, NaN outside [0, 1].
double inverseNormCdf(double p);

}  // namespace pricing
