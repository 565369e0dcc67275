// The seven lines of the profit and loss analysis of a winner candidate:
// expiry, maximum profit and loss, the price ranges of profit and loss, and
// the net premium, composed from the candidate and the legs' newest prices.
// Widget-free; the analysis widget only paints what this composes.
#pragma once

#include "seam/formatters.h"
#include "strategy/coptionwinnertabledata.h"

#include <QString>

namespace nqservice {
class CInstrumentDetail;
}

namespace TC {

class CPriceData;

class CProfitLossAnalysisTexts {
public:
    QString title = QStringLiteral("损益分析");
    QString expiry = QStringLiteral("行权到期日:-");
    QString maxProfit = QStringLiteral("最大盈利:-");
    QString profitRange = QStringLiteral("盈利区间:-");
    QString maxLoss = QStringLiteral("最大亏损:-");
    QString lossRange = QStringLiteral("亏损区间:-");
    QString netPremium = QStringLiteral("权利金净值:-");

    // Fills every line but the title from the candidate of a forecast; the
    // ranges need the strikes and latest prices of the legs (both, for a
    // pair) and stay "-" without them.
    void fill(const COptionWinnerTableData& row, int direction, const CPriceData* priceOne,
              const nqservice::CInstrumentDetail* detailOne, const CPriceData* priceTwo,
              const nqservice::CInstrumentDetail* detailTwo, WG::FormatFlags flags);
    // The same with the newest prices and instruments of the services.
    void fill(const COptionWinnerTableData& row, int direction, WG::FormatFlags flags);

    // The lines in painting order.
    QStringList lines() const;
};

}  // namespace TC
