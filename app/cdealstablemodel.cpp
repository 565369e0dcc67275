#include "app/cdealstablemodel.h"

#include "seam/tradinghelpers.h"
#include "seam/tradingrecords.h"

namespace desk {

namespace {
const nqservice::CDealDetail& asDeal(const nqservice::IData& record)
{
    return static_cast<const nqservice::CDealDetail&>(record);
}
}  // namespace

CDealsTableModel::CDealsTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("成交时间"), QStringLiteral("合约代码"),
                           QStringLiteral("合约名称"), QStringLiteral("操作"), QStringLiteral("成交价"),
                           QStringLiteral("成交量"), QStringLiteral("手续费")},
                          parent)
{
}

CAccountRecordModel::Cell CDealsTableModel::cell(const nqservice::IData& record, int column) const
{
    const nqservice::CDealDetail& deal = asDeal(record);
    const bool future = deal.account && deal.account->accountType == nqservice::VQ_BROKER_TYPE_FUTURE_OPTION;
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(accountOf(record)));
    case COL_TIME:
        return timeCell(deal.time);
    case COL_CODE:
        return textCell(QString::fromStdString(deal.code));
    case COL_NAME:
        return textCell(QString::fromStdString(deal.name));
    case COL_OPERATION:
        return textCell(QString::fromStdString(nqservice::operationValueToString(deal.operationType)),
                        deal.side == nqservice::EBS_BUY ? QStringLiteral("clr_global_rise")
                                                        : QStringLiteral("clr_global_fall"));
    case COL_PRICE:
        return numberCell(deal.price, future ? 1 : 4);
    case COL_VOLUME:
        return integerCell(deal.volume);
    case COL_FEE:
        return numberCell(deal.fee, 2);
    default:
        return Cell();
    }
}

std::string CDealsTableModel::accountOf(const nqservice::IData& record) const
{
    const nqservice::CDealDetail& deal = asDeal(record);
    return deal.account ? deal.account->getKey() : std::string();
}

long long CDealsTableModel::recency(const nqservice::IData& record) const { return asDeal(record).time; }

}  // namespace desk
