// The combination positions of the accounts dock ("组合持仓"): one row per
// combination of table 1030; a combination released to volume 0 leaves the table.
#pragma once

#include "app/caccountrecordmodel.h"

namespace desk {

class CCombinationsTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn {
        COL_ACCOUNT,
        COL_COMB_ID,
        COL_STRATEGY,
        COL_NAME,
        COL_VOLUME,
        COL_RELEASE_VOLUME,
        COL_LEG_ONE,
        COL_LEG_ONE_TYPE,
        COL_LEG_TWO,
        COL_LEG_TWO_TYPE,
        COL_COUNT
    };

    explicit CCombinationsTableModel(QObject* parent = nullptr);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
    bool keeps(const nqservice::IData& record) const override;
};

}  // namespace desk
