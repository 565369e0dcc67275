// Which combination positions the combination table shows: the visibility
// test (a stock-option account, a volume, or a broker that keeps empty
// combinations) and the search by combination number.
#pragma once

#include "seam/tradingrecords.h"

#include <QString>

#include <string>

namespace TC {

class CCombPositionRules {
public:
    // Shown when the account is a stock-option account and the volume is at
    // least 1, or its broker keeps combinations of volume 0.
    static bool isVisible(const nqservice::CStkOptCombPositionDetail& detail);
    // An empty search lets everything pass; otherwise the lower-cased
    // combination number must contain it. A null record passes.
    static bool passesSearch(const nqservice::CStkOptCombPositionDetail* detail, const std::string& lowerSearch);
    // The search text as the table keeps it: lower case, UTF-8.
    static std::string searchKey(const QString& text);
};

}  // namespace TC
