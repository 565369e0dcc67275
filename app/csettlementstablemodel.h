// The close of the day and expiry of the accounts dock ("交割"): one row per
// step the paper broker took (settlement, a combination released by the
// exchange, exercise, assignment, lapse, cash settlement, a delivery arriving).
#pragma once

#include "app/caccountrecordmodel.h"

namespace desk {

class CSettlementsTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn {
        COL_ACCOUNT,
        COL_DAY,
        COL_KIND,
        COL_CODE,
        COL_NAME,
        COL_VOLUME,
        COL_PRICE,
        COL_AMOUNT,
        COL_VALUE_DAY,
        COL_NOTE,
        COL_COUNT
    };

    explicit CSettlementsTableModel(QObject* parent = nullptr);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
    // Later steps above earlier ones: by their number.
    long long recency(const nqservice::IData& record) const override;
};

}  // namespace desk
