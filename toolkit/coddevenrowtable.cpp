#include "toolkit/coddevenrowtable.h"

namespace WG {

COddEvenRowTable::COddEvenRowTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : CStandardTable(id, parent, menuFlags)
{
    setBackgroundColorKey("clr_table_even_row", "clr_table_odd_row");
}

COddEvenRowTable::~COddEvenRowTable() = default;

}  // namespace WG
