// The answer of the option order dialog: what the trader chose, copied by the
// chain table into the order it sends. An empty stockCode means cancelled.
#pragma once

#include "seam/tradingenums.h"

#include <QString>

namespace TC {

struct orderValue {
    QString accountKey;
    QString stockCode;
    nqservice::EPriceType priceType = static_cast<nqservice::EPriceType>(-1);
    nqservice::EOperationType operationType = static_cast<nqservice::EOperationType>(-1);
    double price = -1.0;
    double ratio = -1.0;
    int volume = -1;
};

}  // namespace TC
