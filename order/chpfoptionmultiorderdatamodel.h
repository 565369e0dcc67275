// The columns of the multi-leg order table: "代码" to "账号". Columns 6 (price)
// and 7 (account) show through the table's delegates.
#pragma once

#include "toolkit/ibasehpftablemodel.h"

namespace TC {

class CHpfOptionMultiOrderDataModel : public WG::IBaseHpfTableModel {
public:
    CHpfOptionMultiOrderDataModel();
    ~CHpfOptionMultiOrderDataModel() override;

    int columnCount() const override;
    QString columnHeader(int column) const override;
    // 10 (text) for columns 0 to 4, 2 (integer) for column 5, 0 for the rest.
    int columnType(int column) const override;
};

}  // namespace TC
