// The positions of the accounts dock ("持仓"): one row per instrument and
// direction of every ready account (an account's ETF holdings are long rows of
// the fund); a position that falls to volume 0 leaves the table.
#pragma once

#include "app/caccountrecordmodel.h"

namespace desk {

class CPositionsTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn {
        COL_ACCOUNT,
        COL_CODE,
        COL_NAME,
        COL_DIRECTION,
        COL_VOLUME,
        COL_TODAY,
        COL_AVAILABLE,
        COL_AVG_PRICE,
        COL_LAST_PRICE,
        COL_FLOAT_PROFIT,
        COL_MARGIN,
        COL_COUNT
    };

    explicit CPositionsTableModel(QObject* parent = nullptr);

    // "权利仓", "义务仓" or "备兑仓" for directions 48, 49 and 50.
    static QString directionText(int direction);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
    bool keeps(const nqservice::IData& record) const override;
};

}  // namespace desk
