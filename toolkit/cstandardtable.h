// The normal table with the terminal's look: compact rows, grid lines and
// colours of the theme, the built-in context menu of the given menu flags.
#pragma once

#include "toolkit/cbasenormaltable.h"

namespace WG {

class CStandardTable : public CBaseNormalTable {
    Q_OBJECT
public:
    CStandardTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags = BTMF_ALL);
    ~CStandardTable() override;
};

}  // namespace WG
