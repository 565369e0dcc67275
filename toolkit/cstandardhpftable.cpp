#include "toolkit/cstandardhpftable.h"

namespace WG {

CStandardHpfTable::CStandardHpfTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : CBaseHighPerformanceTable(id, parent, menuFlags)
{
    setBackgroundColorKey("clr_table_background", nullptr);
}

CStandardHpfTable::~CStandardHpfTable() = default;

}  // namespace WG
