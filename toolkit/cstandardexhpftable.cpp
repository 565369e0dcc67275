#include "toolkit/cstandardexhpftable.h"

namespace WG {

CStandardExHpfTable::CStandardExHpfTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : CStandardHpfTable(id, parent, menuFlags)
{
    setBackgroundColorKey("clr_table_even_row", "clr_table_odd_row");
}

CStandardExHpfTable::~CStandardExHpfTable() = default;

}  // namespace WG
