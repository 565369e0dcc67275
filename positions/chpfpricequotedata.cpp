#include "positions/chpfpricequotedata.h"

#include "seam/common.h"
#include "seam/user.h"
#include "toolkit/cuiresource.h"

namespace TC {

CHpfPriceQuoteData::CHpfPriceQuoteData(const QString& strikeKey, int monthCount)
    : CPriceQuoteRow(strikeKey, monthCount)
{
}

CHpfPriceQuoteData::~CHpfPriceQuoteData() = default;

QString CHpfPriceQuoteData::displayText(int column) const
{
    CUserConfig* config = getUserConfig();
    const int flags = config != nullptr ? static_cast<int>(config->getSegmentedFormatFlag()) : 0;
    return cellText(column, flags);
}

QString CHpfPriceQuoteData::textValue(int column) const { return cellTextValue(column); }

int CHpfPriceQuoteData::intValue(int column) const { return cellInt(column); }

double CHpfPriceQuoteData::doubleValue(int column) const { return cellDouble(column); }

long long CHpfPriceQuoteData::longLongValue(int) const { return utils::kAbsentLongLong; }

const QColor* CHpfPriceQuoteData::textColor(int column) const
{
    return WG::CUiResource::get()->getColor(textColorKey(column));
}

std::string CHpfPriceQuoteData::keyString() const { return strikeKey.toStdString(); }

const QColor* CHpfPriceQuoteData::getBackgroundColor(int column) const
{
    const QString* key = backgroundKey(column);
    return key != nullptr ? WG::CUiResource::get()->getColor(*key) : nullptr;
}

bool CHpfPriceQuoteData::isFlashChange(int column) const { return cellFlashes(column); }

}  // namespace TC
