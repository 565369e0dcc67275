#include "positions/chpfpricequotedatamodel.h"

#include "positions/cpricequoteschema.h"

namespace TC {

CHpfPriceQuoteDataModel::CHpfPriceQuoteDataModel() : WG::IBaseHpfTableModel(true) {}

CHpfPriceQuoteDataModel::~CHpfPriceQuoteDataModel() = default;

int CHpfPriceQuoteDataModel::columnCount() const { return CPriceQuoteSchema::columnCount(monthCount); }

QString CHpfPriceQuoteDataModel::columnHeader(int column) const { return CPriceQuoteSchema::header(column); }

int CHpfPriceQuoteDataModel::columnType(int column) const { return CPriceQuoteSchema::columnType(column); }

QString CHpfPriceQuoteDataModel::getStatDispalyQString(int) const { return QString(); }

bool CHpfPriceQuoteDataModel::columnFlashChange(int) const { return false; }

const QColor* CHpfPriceQuoteDataModel::getBackgroundColor(int) const { return nullptr; }

int CHpfPriceQuoteDataModel::columnFlag(int) const { return 0; }

int CHpfPriceQuoteDataModel::customSort(const WG::IBaseHpfTableDataPtr& left,
                                        const WG::IBaseHpfTableDataPtr& right) const
{
    if (sortColumn() != 0 || !left || !right) {
        return 0;
    }
    // The key is a display text ("2.9500", "10.0000", "2.9500A"): compared as numbers.
    return CPriceQuoteSchema::compareRowKeys(left->textValue(0), right->textValue(0));
}

CHpfPriceQuoteDataPtr CHpfPriceQuoteDataModel::rowOfStrike(const QString& key) const
{
    return boost::dynamic_pointer_cast<CHpfPriceQuoteData>(getDataByKey(key));
}

}  // namespace TC
