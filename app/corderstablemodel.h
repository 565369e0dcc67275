// The orders of the accounts dock ("委托"): working and finished orders of every
// ready account, newest first, each updated in place as it fills or ends.
#pragma once

#include "app/caccountrecordmodel.h"

#include "seam/tradingrecords.h"

namespace desk {

class COrdersTableModel : public CAccountRecordModel {
    Q_OBJECT
public:
    enum EColumn {
        COL_ACCOUNT,
        COL_TIME,
        COL_CODE,
        COL_NAME,
        COL_OPERATION,
        COL_PRICE_TYPE,
        COL_PRICE,
        COL_VOLUME,
        COL_TRADED,
        COL_REMAINING,
        COL_STATUS,
        COL_MESSAGE,
        COL_CANCEL,  // the cancel button's column; the model shows nothing there
        COL_COUNT
    };

    explicit COrdersTableModel(QObject* parent = nullptr);

    boost::shared_ptr<nqservice::COrderDetail> order(int row) const;
    // Volume still working: remaining when the record gives it, else volume less traded.
    static int remainingOf(const nqservice::COrderDetail& order);

protected:
    Cell cell(const nqservice::IData& record, int column) const override;
    std::string accountOf(const nqservice::IData& record) const override;
    long long recency(const nqservice::IData& record) const override;
    bool isStale(const nqservice::IData& incoming, const nqservice::IData& current) const override;
};

}  // namespace desk
