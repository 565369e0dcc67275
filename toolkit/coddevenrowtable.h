// A standard table whose rows alternate between the theme's even and odd row
// colours, counted by position on screen, so the stripes stay under sorting.
#pragma once

#include "toolkit/cstandardtable.h"

namespace WG {

class COddEvenRowTable : public CStandardTable {
    Q_OBJECT
public:
    COddEvenRowTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags = BTMF_ALL);
    ~COddEvenRowTable() override;
};

}  // namespace WG
