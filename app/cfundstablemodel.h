// The funds of the accounts dock ("资金"): one row per ready account with its
// balance, available and frozen funds, margin, fees, float profit and market value.
#pragma once

#include "app/caccountrecordmodel.h"

namespace desk {

class CFundsTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn {
        COL_ACCOUNT,
        COL_BALANCE,
        COL_AVAILABLE,
        COL_FROZEN,
        COL_MARGIN,
        COL_FEE,
        COL_FLOAT_PROFIT,
        COL_MARKET_VALUE,
        COL_COUNT
    };

    explicit CFundsTableModel(QObject* parent = nullptr);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
};

}  // namespace desk
