#include "toolkit/cstandardtable.h"

namespace WG {

CStandardTable::CStandardTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : CBaseNormalTable(id, parent, menuFlags)
{
    setBackgroundColorKey("clr_table_background", nullptr);
}

CStandardTable::~CStandardTable() = default;

}  // namespace WG
