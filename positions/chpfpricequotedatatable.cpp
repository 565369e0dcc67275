#include "positions/chpfpricequotedatatable.h"

#include "positions/cpricequoteschema.h"
#include "seam/uievents.h"

namespace TC {

CHpfPriceQuoteDataTable::CHpfPriceQuoteDataTable(int id, QWidget* parent, WG::EBaseTableMenuFlags menuFlags)
    : WG::CStandardHpfTable(id, parent, menuFlags)
{
}

CHpfPriceQuoteDataTable::~CHpfPriceQuoteDataTable() = default;

void CHpfPriceQuoteDataTable::setColumnWidth(int column, int width)
{
    WG::CStandardHpfTable::setColumnWidth(column, width);
    deliverEvent(WG::UE_COLUMN_RESIZED, id(), column, QString(), nullptr);
}

void CHpfPriceQuoteDataTable::setView(int value)
{
    view = value;
    applyView();
}

void CHpfPriceQuoteDataTable::applyView()
{
    for (int column = 1; column < columnCount(); ++column) {
        setColListVisible(column, CPriceQuoteSchema::visibleInView(column, view));
    }
}

}  // namespace TC
