// One leg of the multi-leg order dialog as a row of its table: code, name,
// call or put, open, side and the contracts of one copy. The price (column 6)
// and the account (column 7) live in the table's delegates.
#pragma once

#include "seam/tradingenums.h"
#include "toolkit/ibasehpftabledata.h"

#include <QString>

namespace TC {

class CHpfOptionMultiOrderData : public WG::IBaseHpfTableData {
public:
    enum EColumn {
        COL_CODE = 0,
        COL_NAME = 1,
        COL_KIND = 2,
        COL_OFFSET = 3,
        COL_SIDE = 4,
        COL_QUANTITY = 5,
        COL_PRICE = 6,
        COL_ACCOUNT = 7,
        COL_COUNT = 8,
    };

    QString code;
    QString name;
    QString optionKind;  // "认购" or "认沽"
    nqservice::EOffset_Flag_Type offsetFlag = nqservice::OF_OPEN;
    int buySell = nqservice::OT_BUY;  // 18 buy, 19 sell
    int quantity = 0x7fffffff;        // contracts per copy; 0x7fffffff until the leg is known

    ~CHpfOptionMultiOrderData() override;
    QString displayText(int column) const override;
    QString textValue(int column) const override;
    int intValue(int column) const override;
    double doubleValue(int column) const override;
    long long longLongValue(int column) const override;
    const QColor* textColor(int column) const override;
    std::string keyString() const override;
};

}  // namespace TC
