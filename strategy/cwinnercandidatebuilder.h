// The option winner's logic without widgets: which options fit a forecast's
// levels and expiry window, the candidates they make (single options, or every
// put with every call of the same expiry), and the figures of a candidate at
// given prices. The winner widget shows what this builds and reprices.
#pragma once

#include "seam/formatters.h"
#include "seam/userrecords.h"
#include "strategy/coptionwinnertabledata.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace nqservice {
class CInstrumentDetail;
}

namespace TC {

class CExchangeClient;
class CPriceData;

// What one build gives: the rows in the order the table shows them, and every
// option that passed the filter (each is subscribed, paired or not).
struct CWinnerCandidates {
    QList<COptionWinnerTableDataPtr> rows;
    QStringList passedKeys;
};

class CWinnerCandidateBuilder {
public:
    // How far a strike may stand on the wrong side of a level and still pass.
    static constexpr double kLevelTolerance = 0.001;

    // 19 (sell) for a range forecast, 18 (buy) for the others.
    static int operationOf(int direction);
    // The date yyyymmdd of seconds since 1970, in local time.
    static int dateOfTime(unsigned seconds);
    // Whether an option with this strike and expiry fits the setting; the
    // window is open at its start and closed at its end.
    static bool passes(int direction, bool isCall, double strike, int expireDate, int startDate, int endDate,
                       const CWinnerSetting& setting);
    // The candidates of an underlying for a forecast; empty when the exchange
    // lists no options for it.
    static CWinnerCandidates build(CExchangeClient* exchange, const QString& underlying, int direction,
                                   const CWinnerSetting& setting);

    // Reprices a candidate: the first leg's price figures, then (for a pair,
    // when the second leg has a price and instrument too) the net premium and
    // the maximum profit and loss texts. False when the first leg lacks its
    // price or instrument and nothing was written.
    static bool reprice(COptionWinnerTableData& row, int direction, const CPriceData* priceOne,
                        const nqservice::CInstrumentDetail* detailOne, const CPriceData* priceTwo,
                        const nqservice::CInstrumentDetail* detailTwo, WG::FormatFlags flags);
    // The same with the newest prices and instruments of the services.
    static bool reprice(COptionWinnerTableData& row, int direction, WG::FormatFlags flags);

    // The user's number grouping, for every figure of the winner.
    static WG::FormatFlags segmentedFlags();
    // A money figure of the table: 4 decimals, "非法值" when not a number.
    static QString moneyText(double value, WG::FormatFlags flags);
};

}  // namespace TC
