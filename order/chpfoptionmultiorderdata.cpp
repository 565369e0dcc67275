#include "order/chpfoptionmultiorderdata.h"

#include "seam/formatters.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "toolkit/cuiresource.h"

#include <cfloat>
#include <climits>

namespace TC {

CHpfOptionMultiOrderData::~CHpfOptionMultiOrderData() = default;

QString CHpfOptionMultiOrderData::textValue(int column) const
{
    switch (column) {
    case COL_CODE:
        return code;
    case COL_NAME:
        return name;
    case COL_KIND:
        return optionKind;
    case COL_OFFSET:
        return QString::fromStdString(
            nqservice::TypeManager::instance()->getEnumItemName("nqservice::EOffset_Flag_Type", offsetFlag, 32));
    case COL_SIDE:
        return QString::fromStdString(
            nqservice::TypeManager::instance()->getEnumItemName("nqservice::EOperationType", buySell, 32));
    default:
        return QString();
    }
}

QString CHpfOptionMultiOrderData::displayText(int column) const
{
    if (column >= COL_CODE && column <= COL_SIDE) {
        return textValue(column);
    }
    if (column == COL_QUANTITY) {
        if (quantity == 0x7fffffff) {
            return QStringLiteral("-");
        }
        CUserConfig* config = getUserConfig();
        const WG::FormatFlags flags = config != nullptr ? WG::FormatFlags(config->getSegmentedFormatFlag())
                                                        : WG::FormatFlags();
        return WG::formatIntNumber(quantity, 0, flags);
    }
    return QString();
}

int CHpfOptionMultiOrderData::intValue(int column) const { return column == COL_QUANTITY ? quantity : 0x7fffffff; }

double CHpfOptionMultiOrderData::doubleValue(int) const { return DBL_MAX; }

long long CHpfOptionMultiOrderData::longLongValue(int) const { return LLONG_MAX; }

const QColor* CHpfOptionMultiOrderData::textColor(int) const
{
    return WG::CUiResource::get()->getColor(QStringLiteral("clr_text_default"));
}

std::string CHpfOptionMultiOrderData::keyString() const { return code.toUtf8().toStdString(); }

}  // namespace TC
