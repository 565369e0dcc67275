// The high-performance table with the terminal's look: compact rows, the
// theme's grid and colours, the built-in context menu of the given menu flags.
#pragma once

#include "toolkit/cbasehighperformancetable.h"

namespace WG {

class CStandardHpfTable : public CBaseHighPerformanceTable {
    Q_OBJECT
public:
    CStandardHpfTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags = BTMF_ALL);
    ~CStandardHpfTable() override;
};

}  // namespace WG
