// The rise-and-fall colour key of a value against its reference (rise red, fall green).
#pragma once

namespace TC {

// "tc_clr_priceT_equal" when either side is absent or they differ by at most the
// price tolerance; "tc_clr_priceT_rise" above; "tc_clr_priceT_fall" below.
const char* getStockColorKey(double value, double reference);

}  // namespace TC
