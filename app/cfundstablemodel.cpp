#include "app/cfundstablemodel.h"

#include "seam/tradingrecords.h"

namespace desk {

namespace {
const nqservice::CAccountDetail& asFunds(const nqservice::IData& record)
{
    return static_cast<const nqservice::CAccountDetail&>(record);
}
}  // namespace

CFundsTableModel::CFundsTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("总资产"), QStringLiteral("可用资金"),
                           QStringLiteral("冻结资金"), QStringLiteral("占用保证金"), QStringLiteral("手续费"),
                           QStringLiteral("浮动盈亏"), QStringLiteral("市值")},
                          parent)
{
}

CAccountRecordModel::Cell CFundsTableModel::cell(const nqservice::IData& record, int column) const
{
    const nqservice::CAccountDetail& funds = asFunds(record);
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(funds.accountId));
    case COL_BALANCE:
        return numberCell(funds.balance, 2, true);
    case COL_AVAILABLE:
        return numberCell(funds.availableFunds, 2, true);
    case COL_FROZEN:
        return numberCell(funds.frozenFunds, 2, true);
    case COL_MARGIN:
        return numberCell(funds.margin, 2, true);
    case COL_FEE:
        return numberCell(funds.fee, 2, true);
    case COL_FLOAT_PROFIT:
        return numberCell(funds.floatProfit, 2, true, signColorKey(funds.floatProfit));
    case COL_MARKET_VALUE:
        return numberCell(funds.marketValue, 2, true);
    default:
        return Cell();
    }
}

std::string CFundsTableModel::accountOf(const nqservice::IData& record) const { return asFunds(record).accountId; }

}  // namespace desk
