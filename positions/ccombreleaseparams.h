// The orders that release combination positions: one order per combination,
// operation 1091 as a rule, carrying the legs in its extra parameters
// (COptionCombStrategyParam under flag 64) and the combination number.
#pragma once

#include "seam/tradingrecords.h"

#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <vector>

namespace TC {

class CCombReleaseParams {
public:
    // Clears out, then fills it with one order per detail, in order. False with
    // message set at the first detail that can't be released; warning carries
    // the limit-per-order text of the last detail.
    static bool fill(const QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details,
                     std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& out,
                     nqservice::EOperationType operation, QString& message, QString& warning);
    // The command that carries orders of the stock-option desk: trader type 32,
    // confirmed, in the user's order mode, with the warning text as UTF-8.
    static boost::shared_ptr<nqservice::COrderComandParam> command(
        const std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params, const QString& warning);
    // The instrument of a combination's order: market, the leg codes joined by "/", name.
    static nqservice::CStockInfo stockInfo(const nqservice::CStkOptCombPositionDetail& detail);
};

}  // namespace TC
