// What an instrument and a quote write into one month of a price quote row:
// the instrument's facts when the row is built, and on each quote the prices
// (stamping the cells whose value changed), Greeks, intrinsic value, premium,
// leverage and implied volatility. Reads the exchange client, the quote client
// and the calculator through the seam; touches no widget.
#pragma once

#include "positions/cpricequoterow.h"
#include "seam/cpricedata.h"

#include <memory>

namespace nqservice {
class CInstrumentDetail;
}

namespace TC {

class CPriceQuoteRowBuilder {
public:
    // The instrument facts of one month: key, style, unit, dates, historical volatility.
    // Nothing happens for a month out of the row's range.
    static void initMonth(CPriceQuoteRow& row, int month, const nqservice::CInstrumentDetail& detail);
    // Applies one quote of the option `detail` to its month; `now` stamps the
    // cells whose value changed. True when a cell got a flash stamp. A value
    // that arrives for the first time never flashes.
    static bool applyQuote(CPriceQuoteRow& row, int month, const CPriceData& price,
                           const std::shared_ptr<nqservice::CInstrumentDetail>& detail, double now);
    // Removes the stamps older than the flash time; true when any went. The
    // columns of the removed stamps widen [firstColumn, lastColumn] when given.
    static bool clearFlashStamps(CPriceQuoteRow& row, double now, int* firstColumn = nullptr,
                                 int* lastColumn = nullptr);
    // How long a changed cell stays lit at least, in milliseconds.
    static constexpr double kFlashMs = 500.0;
};

}  // namespace TC
