#include "positions/ccombpositionrules.h"

#include "seam/tradinghelpers.h"

namespace TC {

bool CCombPositionRules::isVisible(const nqservice::CStkOptCombPositionDetail& detail)
{
    if (!detail.account || detail.account->accountType != nqservice::VQ_BROKER_TYPE_STOCK_OPTION) {
        return false;
    }
    return detail.volume >= 1 || nqservice::ConfigCollector::instance()->needShowAllCombPositions(detail.account->brokerId);
}

bool CCombPositionRules::passesSearch(const nqservice::CStkOptCombPositionDetail* detail, const std::string& lowerSearch)
{
    if (detail == nullptr || lowerSearch.empty()) {
        return true;
    }
    const std::string number = QString::fromStdString(detail->combId).toLower().toStdString();
    return number.find(lowerSearch) != std::string::npos;
}

std::string CCombPositionRules::searchKey(const QString& text) { return text.toLower().toUtf8().toStdString(); }

}  // namespace TC
