// The options calculator side by side with QuantLib: European price with five
// Greeks, the American approximation, and implied volatility, on a grid of
// log-moneyness -1..1, 1 day..2 years, volatility 1%..150%. Each pair runs the
// same cases; the summary prints accuracy against QuantLib and time ratios.
#include <benchmark/benchmark.h>

#include <ql/quantlib.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "seam/common.h"
#include "services/pricing/baroneadesiwhaley.h"
#include "services/pricing/blackscholes.h"
#include "services/pricing/impliedvolatility.h"

namespace ql = QuantLib;
using pricing::OptionType;

namespace {

constexpr double kSpot = 3.0;
constexpr double kRate = 0.02;

struct Case {
    OptionType type;
    double strike;
    double years;
    double volatility;
    double price;  // Black-Scholes price at the volatility
};

// The grid: 17 moneyness points x 8 expiries x 16 volatilities x 2 sides.
const std::vector<Case>& grid()
{
    static const std::vector<Case> cases = [] {
        std::vector<Case> out;
        const double years[] = {1.0 / 365, 7.0 / 365, 30.0 / 365, 0.25, 0.5, 1.0, 1.5, 2.0};
        const double vols[] = {0.01, 0.02, 0.05, 0.08, 0.1, 0.15, 0.2, 0.25, 0.3, 0.4, 0.5, 0.6, 0.8, 1.0, 1.2, 1.5};
        for (int i = 0; i <= 16; ++i) {
            const double x = -1.0 + i / 8.0;
            for (double T : years) {
                for (double v : vols) {
                    for (OptionType type : {OptionType::Call, OptionType::Put}) {
                        const double K = kSpot * std::exp(-x);
                        out.push_back({type, K, T, v, pricing::blackScholesPrice(type, kSpot, K, T, kRate, v)});
                    }
                }
            }
        }
        return out;
    }();
    return cases;
}

// Cases whose price determines the volatility: a time value above rounding.
const std::vector<Case>& solvableGrid()
{
    static const std::vector<Case> cases = [] {
        std::vector<Case> out;
        for (const Case& c : grid()) {
            const pricing::OptionGreeks g = pricing::blackScholesGreeks(c.type, kSpot, c.strike, c.years, kRate,
                                                                        c.volatility);
            if (c.price > 1e-12 && 64.0 * DBL_EPSILON * c.price / g.vega < 1e-10) {
                out.push_back(c);
            }
        }
        return out;
    }();
    return cases;
}

ql::Option::Type qlType(OptionType type) { return type == OptionType::Call ? ql::Option::Call : ql::Option::Put; }

// ---- European price and five Greeks ----

void BM_Ours_EuropeanGreeks(benchmark::State& state)
{
    const auto& cases = grid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        benchmark::DoNotOptimize(
            pricing::blackScholesGreeks(c.type, kSpot, c.strike, c.years, kRate, c.volatility));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Ours_EuropeanGreeks);

// QuantLib's closed form: BlackCalculator gives price and every Greek from
// one set of inputs, the lightest QuantLib path (AnalyticEuropeanEngine uses it).
void BM_QuantLib_BlackCalculatorGreeks(benchmark::State& state)
{
    const auto& cases = grid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        const double discount = std::exp(-kRate * c.years);
        const double forward = kSpot / discount;
        ql::BlackCalculator calc(qlType(c.type), c.strike, forward, c.volatility * std::sqrt(c.years), discount);
        double sum = calc.value() + calc.delta(kSpot) + calc.gamma(kSpot) + calc.theta(kSpot, c.years) +
                     calc.vega(c.years) + calc.rho(c.years);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QuantLib_BlackCalculatorGreeks);

// The full instrument path: VanillaOption with AnalyticEuropeanEngine.
struct QlEuropean {
    ql::Date today = ql::Date(2, ql::January, 2024);
    ql::ext::shared_ptr<ql::SimpleQuote> spot = ql::ext::make_shared<ql::SimpleQuote>(kSpot);
    ql::ext::shared_ptr<ql::SimpleQuote> vol = ql::ext::make_shared<ql::SimpleQuote>(0.2);
    ql::ext::shared_ptr<ql::BlackScholesMertonProcess> process;
    QlEuropean()
    {
        ql::Settings::instance().evaluationDate() = today;
        ql::DayCounter dc = ql::Actual365Fixed();
        process = ql::ext::make_shared<ql::BlackScholesMertonProcess>(
            ql::Handle<ql::Quote>(spot), ql::Handle<ql::YieldTermStructure>(ql::ext::make_shared<ql::FlatForward>(today, 0.0, dc)),
            ql::Handle<ql::YieldTermStructure>(ql::ext::make_shared<ql::FlatForward>(today, kRate, dc)),
            ql::Handle<ql::BlackVolTermStructure>(
                ql::ext::make_shared<ql::BlackConstantVol>(today, ql::NullCalendar(), ql::Handle<ql::Quote>(vol), dc)));
    }
    ql::VanillaOption option(const Case& c, bool american) const
    {
        const int days = std::max(1, static_cast<int>(std::lround(c.years * 365.0)));
        ql::ext::shared_ptr<ql::Exercise> exercise;
        if (american) {
            exercise = ql::ext::make_shared<ql::AmericanExercise>(today, today + days);
        } else {
            exercise = ql::ext::make_shared<ql::EuropeanExercise>(today + days);
        }
        return ql::VanillaOption(ql::ext::make_shared<ql::PlainVanillaPayoff>(qlType(c.type), c.strike), exercise);
    }
};

void BM_QuantLib_AnalyticEuropeanEngine(benchmark::State& state)
{
    QlEuropean q;
    auto engine = ql::ext::make_shared<ql::AnalyticEuropeanEngine>(q.process);
    const auto& cases = grid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        q.vol->setValue(c.volatility);
        ql::VanillaOption option = q.option(c, false);
        option.setPricingEngine(engine);
        double sum = option.NPV() + option.delta() + option.gamma() + option.theta() + option.vega() + option.rho();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QuantLib_AnalyticEuropeanEngine);

// ---- American approximation ----

void BM_Ours_BaroneAdesiWhaley(benchmark::State& state)
{
    const auto& cases = grid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        benchmark::DoNotOptimize(
            pricing::baroneAdesiWhaleyPrice(c.type, kSpot, c.strike, c.years, kRate, 0.0, c.volatility));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Ours_BaroneAdesiWhaley);

// ---- Implied volatility ----

void BM_Ours_ImpliedVolatility(benchmark::State& state)
{
    const auto& cases = solvableGrid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        benchmark::DoNotOptimize(
            pricing::blackScholesImpliedVolatility(c.type, kSpot, c.strike, c.years, kRate, c.price, 1.5));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Ours_ImpliedVolatility);

void BM_QuantLib_BlackFormulaImpliedStdDev(benchmark::State& state)
{
    const auto& cases = solvableGrid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        const double discount = std::exp(-kRate * c.years);
        double v = 0.0;
        try {
            v = ql::blackFormulaImpliedStdDev(qlType(c.type), c.strike, kSpot / discount, c.price, discount, 0.0,
                                              ql::Null<ql::Real>(), 1e-12, 100) /
                std::sqrt(c.years);
        } catch (const std::exception&) {
            v = -1.0;
        }
        benchmark::DoNotOptimize(v);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QuantLib_BlackFormulaImpliedStdDev);

void BM_QuantLib_VanillaImpliedVolatility(benchmark::State& state)
{
    QlEuropean q;
    const auto& cases = solvableGrid();
    std::size_t i = 0;
    for (auto _ : state) {
        const Case& c = cases[i++ % cases.size()];
        ql::VanillaOption option = q.option(c, false);
        double v = 0.0;
        try {
            v = option.impliedVolatility(c.price, q.process, 1e-12, 100, 1e-7, 4.0);
        } catch (const std::exception&) {
            v = -1.0;
        }
        benchmark::DoNotOptimize(v);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QuantLib_VanillaImpliedVolatility);

// ---- accuracy summary, printed once after the timings ----

template <typename F>
double medianNanos(const std::vector<Case>& cases, F f)
{
    std::vector<double> samples;
    samples.reserve(cases.size());
    for (const Case& c : cases) {
        const auto start = std::chrono::steady_clock::now();
        for (int r = 0; r < 8; ++r) {
            benchmark::DoNotOptimize(f(c));
        }
        samples.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / 8);
    }
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2];
}

void printSummary()
{
    const auto& cases = grid();
    const auto& solvable = solvableGrid();

    // Implied volatility accuracy on the whole grid.
    double worstVolError = 0.0;
    int nonFinite = 0;
    int absentSolvable = 0;
    for (const Case& c : cases) {
        const double iv = pricing::blackScholesImpliedVolatility(c.type, kSpot, c.strike, c.years, kRate, c.price, 1.5);
        if (!std::isfinite(iv)) {
            ++nonFinite;
        }
    }
    for (const Case& c : solvable) {
        const double iv = pricing::blackScholesImpliedVolatility(c.type, kSpot, c.strike, c.years, kRate, c.price, 1.5);
        if (utils::isAbsent(iv)) {
            ++absentSolvable;
            continue;
        }
        worstVolError = std::max(worstVolError, std::fabs(iv - c.volatility));
    }

    // Price and Greeks against QuantLib's BlackCalculator.
    double worstGreekRel = 0.0;
    double worstGreekAbs = 0.0;
    for (const Case& c : cases) {
        const pricing::OptionGreeks g = pricing::blackScholesGreeks(c.type, kSpot, c.strike, c.years, kRate, c.volatility);
        const double discount = std::exp(-kRate * c.years);
        ql::BlackCalculator calc(qlType(c.type), c.strike, kSpot / discount, c.volatility * std::sqrt(c.years), discount);
        const double ours[] = {g.price, g.delta, g.gamma, g.theta, g.vega, g.rho};
        const double theirs[] = {calc.value(), calc.delta(kSpot), calc.gamma(kSpot), calc.theta(kSpot, c.years),
                                 calc.vega(c.years), calc.rho(c.years)};
        for (int k = 0; k < 6; ++k) {
            // Relative where the Greek is material, absolute everywhere.
            const double diff = std::fabs(ours[k] - theirs[k]);
            worstGreekAbs = std::max(worstGreekAbs, diff);
            if (std::fabs(theirs[k]) > 1e-6) {
                worstGreekRel = std::max(worstGreekRel, diff / std::fabs(theirs[k]));
            }
        }
    }

    // American: ours against QuantLib's BAW and a 2000-step binomial tree, on a
    // sub-grid (the tree is slow): futures options, carry 0.
    QlEuropean q;
    auto baw = ql::ext::make_shared<ql::BaroneAdesiWhaleyApproximationEngine>(q.process);
    auto tree = ql::ext::make_shared<ql::BinomialVanillaEngine<ql::CoxRossRubinstein>>(q.process, 2000);
    // Carry 0 on QuantLib's process: dividend yield = rate.
    ql::DayCounter dc = ql::Actual365Fixed();
    auto futProcess = ql::ext::make_shared<ql::BlackScholesMertonProcess>(
        ql::Handle<ql::Quote>(q.spot), ql::Handle<ql::YieldTermStructure>(ql::ext::make_shared<ql::FlatForward>(q.today, kRate, dc)),
        ql::Handle<ql::YieldTermStructure>(ql::ext::make_shared<ql::FlatForward>(q.today, kRate, dc)),
        ql::Handle<ql::BlackVolTermStructure>(
            ql::ext::make_shared<ql::BlackConstantVol>(q.today, ql::NullCalendar(), ql::Handle<ql::Quote>(q.vol), dc)));
    baw = ql::ext::make_shared<ql::BaroneAdesiWhaleyApproximationEngine>(futProcess);
    tree = ql::ext::make_shared<ql::BinomialVanillaEngine<ql::CoxRossRubinstein>>(futProcess, 2000);
    double worstVsBaw = 0.0;
    double worstVsTree = 0.0;
    double worstVsTreeAbs = 0.0;
    int americanCases = 0;
    for (std::size_t i = 0; i < cases.size(); i += 7) {
        const Case& c = cases[i];
        const int days = std::max(1, static_cast<int>(std::lround(c.years * 365.0)));
        const double T = days / 365.0;
        q.vol->setValue(c.volatility);
        ql::VanillaOption option = q.option(c, true);
        option.setPricingEngine(baw);
        const double theirBaw = option.NPV();
        option.setPricingEngine(tree);
        const double theirTree = option.NPV();
        const double ours = pricing::baroneAdesiWhaleyPrice(c.type, kSpot, c.strike, T, kRate, 0.0, c.volatility);
        if (theirTree < 1e-4 * kSpot) {
            continue;  // relative error of a price of nothing says nothing
        }
        ++americanCases;
        worstVsBaw = std::max(worstVsBaw, std::fabs(ours - theirBaw) / theirBaw);
        worstVsTree = std::max(worstVsTree, std::fabs(ours - theirTree) / theirTree);
        worstVsTreeAbs = std::max(worstVsTreeAbs, std::fabs(ours - theirTree));
    }

    // Median times per call, measured case by case.
    const double oursIv = medianNanos(solvable, [](const Case& c) {
        return pricing::blackScholesImpliedVolatility(c.type, kSpot, c.strike, c.years, kRate, c.price, 1.5);
    });
    const double qlIv = medianNanos(solvable, [](const Case& c) {
        const double discount = std::exp(-kRate * c.years);
        try {
            return ql::blackFormulaImpliedStdDev(qlType(c.type), c.strike, kSpot / discount, c.price, discount, 0.0,
                                                 ql::Null<ql::Real>(), 1e-12, 100);
        } catch (const std::exception&) {
            return -1.0;
        }
    });
    const double oursGreeks = medianNanos(cases, [](const Case& c) {
        return pricing::blackScholesGreeks(c.type, kSpot, c.strike, c.years, kRate, c.volatility).rho;
    });
    const double qlGreeks = medianNanos(cases, [](const Case& c) {
        const double discount = std::exp(-kRate * c.years);
        ql::BlackCalculator calc(qlType(c.type), c.strike, kSpot / discount, c.volatility * std::sqrt(c.years), discount);
        return calc.value() + calc.delta(kSpot) + calc.gamma(kSpot) + calc.theta(kSpot, c.years) + calc.vega(c.years) +
               calc.rho(c.years);
    });

    std::printf("\n== pricing summary (grid: %zu cases, %zu with a volatility the price determines)\n", cases.size(),
                solvable.size());
    std::printf("implied volatility: median %.0f ns ours, %.0f ns blackFormulaImpliedStdDev, ratio %.1fx\n", oursIv,
                qlIv, qlIv / oursIv);
    std::printf("implied volatility: worst error %.2e where determined, %d absent there, %d non-finite on the grid\n",
                worstVolError, absentSolvable, nonFinite);
    std::printf("price + 5 Greeks: median %.0f ns ours, %.0f ns BlackCalculator, ratio %.1fx; worst relative "
                "difference %.2e (Greeks above 1e-6), worst absolute %.2e\n",
                oursGreeks, qlGreeks, qlGreeks / oursGreeks, worstGreekRel, worstGreekAbs);
    std::printf("American (carry 0), %d cases worth at least 1e-4 S: worst relative difference %.3f%% vs QuantLib BAW, "
                "%.3f%% vs CRR binomial 2000 steps (worst absolute %.2e)\n",
                americanCases, 100.0 * worstVsBaw, 100.0 * worstVsTree, worstVsTreeAbs);
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    printSummary();
    return 0;
}
