// The deals of the accounts dock ("成交"): one row per fill of every ready
// account, newest first.
#pragma once

#include "app/caccountrecordmodel.h"

namespace desk {

class CDealsTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn { COL_ACCOUNT, COL_TIME, COL_CODE, COL_NAME, COL_OPERATION, COL_PRICE, COL_VOLUME, COL_FEE, COL_COUNT };

    explicit CDealsTableModel(QObject* parent = nullptr);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
    long long recency(const nqservice::IData& record) const override;
};

}  // namespace desk
