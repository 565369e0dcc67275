#include "seam/calculator.h"

#include <mutex>

#include "seam/common.h"

namespace nqservice {

CGreeksValue::CGreeksValue()
    : delta(utils::kAbsentDouble),
      gamma(utils::kAbsentDouble),
      theta(utils::kAbsentDouble),
      vega(utils::kAbsentDouble),
      rho(utils::kAbsentDouble)
{
}

GreekAndOptionsCalculator::~GreekAndOptionsCalculator() = default;

namespace {

// The installed calculator. A plain mutex: readers copy the pointer out, so
// the lock is held for a reference count only.
struct InstalledCalculator {
    std::mutex mutex;
    boost::shared_ptr<GreekAndOptionsCalculator> calculator;
};

InstalledCalculator& installed()
{
    static InstalledCalculator s_installed;
    return s_installed;
}

}  // namespace

boost::shared_ptr<GreekAndOptionsCalculator> GreekAndOptionsCalculator::instance()
{
    InstalledCalculator& slot = installed();
    std::lock_guard<std::mutex> lock(slot.mutex);
    return slot.calculator;
}

void GreekAndOptionsCalculator::setInstance(boost::shared_ptr<GreekAndOptionsCalculator> calculator)
{
    InstalledCalculator& slot = installed();
    boost::shared_ptr<GreekAndOptionsCalculator> previous;
    {
        std::lock_guard<std::mutex> lock(slot.mutex);
        previous.swap(slot.calculator);
        slot.calculator = std::move(calculator);
    }
    // The previous one is released outside the lock: its destructor may be long.
}

}  // namespace nqservice
