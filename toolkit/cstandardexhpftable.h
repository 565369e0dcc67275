// A standard high-performance table with alternating row colours, counted by
// position on screen so that the stripes stay under sorting.
#pragma once

#include "toolkit/cstandardhpftable.h"

namespace WG {

class CStandardExHpfTable : public CStandardHpfTable {
    Q_OBJECT
public:
    CStandardExHpfTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags = BTMF_ALL);
    ~CStandardExHpfTable() override;
};

}  // namespace WG
