// One candidate of the option winner: a single option or a put-call pair, with
// the figures of its last repricing. A plain record held by boost::shared_ptr;
// the winner widget writes it on the GUI thread only.
#pragma once

#include "seam/common.h"

#include <QString>

#include <boost/shared_ptr.hpp>

namespace TC {

class COptionWinnerTableData {
public:
    QString rowKey;   // the option's key, or "put|call" for a pair
    QString codeOne;  // key of contract one; the put in a pair
    QString codeTwo;  // key of contract two; the call in a pair, "" for one leg
    QString nameOne;
    QString nameTwo;
    QString maxProfitText;  // "" until known
    QString maxLossText;
    double lastOne = utils::kAbsentDouble;
    double lastTwo = utils::kAbsentDouble;
    double changeOne = utils::kAbsentDouble;
    double changeTwo = utils::kAbsentDouble;
    double netPremium = utils::kAbsentDouble;  // paid (negative) or received
    int operationOne = 0;
    int operationTwo = 0;
    int quantityOne = 1;
    int quantityTwo = 1;
    int volumeOne = 0;
    int volumeTwo = 0;
    int expireDate = 0;  // yyyymmdd

    bool isPair() const { return !codeTwo.isEmpty(); }
};

typedef boost::shared_ptr<COptionWinnerTableData> COptionWinnerTableDataPtr;

}  // namespace TC
