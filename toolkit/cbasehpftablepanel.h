// The drawing surface of a high-performance table: the view whose cells are
// painted from the rows of the table's model at paint time.
#pragma once

#include "toolkit/ctableview.h"

namespace WG {

class CBaseHpfTablePanel : public CTableView {
    Q_OBJECT
public:
    explicit CBaseHpfTablePanel(IBaseTable* table);
    ~CBaseHpfTablePanel() override;
};

}  // namespace WG
