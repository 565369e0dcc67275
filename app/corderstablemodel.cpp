#include "app/corderstablemodel.h"

#include "seam/tradinghelpers.h"

#include <algorithm>

namespace desk {

namespace {
const nqservice::COrderDetail& asOrder(const nqservice::IData& record)
{
    return static_cast<const nqservice::COrderDetail&>(record);
}

int traderTypeOf(const nqservice::CAccountInfoPtr& account)
{
    return account && account->accountType == nqservice::VQ_BROKER_TYPE_FUTURE_OPTION
               ? nqservice::VQ_TRADER_TYPE_FUTURE_OPTION
               : nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
}
}  // namespace

COrdersTableModel::COrdersTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("委托时间"), QStringLiteral("合约代码"),
                           QStringLiteral("合约名称"), QStringLiteral("操作"), QStringLiteral("报价方式"),
                           QStringLiteral("委托价"), QStringLiteral("委托量"), QStringLiteral("成交量"),
                           QStringLiteral("未成交量"), QStringLiteral("状态"), QStringLiteral("说明"),
                           QStringLiteral("撤单")},
                          parent)
{
}

boost::shared_ptr<nqservice::COrderDetail> COrdersTableModel::order(int row) const
{
    return boost::dynamic_pointer_cast<nqservice::COrderDetail>(record(row));
}

int COrdersTableModel::remainingOf(const nqservice::COrderDetail& order)
{
    if (!utils::isAbsent(order.remaining)) {
        return order.remaining;
    }
    return std::max(0, order.volume - order.tradedVolume);
}

CAccountRecordModel::Cell COrdersTableModel::cell(const nqservice::IData& record, int column) const
{
    const nqservice::COrderDetail& order = asOrder(record);
    const int traderType = traderTypeOf(order.account);
    const int decimals = traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION ? 1 : 4;
    // The Chinese convention: a buy shows red, a sell green.
    const QString sideKey =
        order.side == nqservice::EBS_BUY ? QStringLiteral("clr_global_rise") : QStringLiteral("clr_global_fall");
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(accountOf(record)));
    case COL_TIME:
        return timeCell(order.insertTime);
    case COL_CODE:
        return textCell(QString::fromStdString(order.code));
    case COL_NAME:
        return textCell(QString::fromStdString(order.name));
    case COL_OPERATION:
        return textCell(QString::fromStdString(nqservice::operationValueToString(order.operationType)), sideKey);
    case COL_PRICE_TYPE:
        return textCell(QString::fromStdString(
            nqservice::TypeManager::instance()->getEnumItemName("nqservice::EPriceType", order.priceType, traderType)));
    case COL_PRICE:
        return numberCell(order.price, decimals);
    case COL_VOLUME:
        return integerCell(order.volume);
    case COL_TRADED:
        return integerCell(order.tradedVolume);
    case COL_REMAINING:
        return integerCell(remainingOf(order));
    case COL_STATUS:
        return textCell(QString::fromStdString(
            nqservice::TypeManager::instance()->getEnumItemName("nqservice::EOrderStatus", order.status, traderType)),
                        order.status == nqservice::OS_REJECTED ? QStringLiteral("clr_text_warning") : QString());
    case COL_MESSAGE:
        return textCell(QString::fromStdString(order.message), QStringLiteral("clr_text_warning"));
    default:
        return Cell();
    }
}

std::string COrdersTableModel::accountOf(const nqservice::IData& record) const
{
    const nqservice::COrderDetail& order = asOrder(record);
    return order.account ? order.account->getKey() : std::string();
}

long long COrdersTableModel::recency(const nqservice::IData& record) const { return asOrder(record).insertTime; }

bool COrdersTableModel::isStale(const nqservice::IData& incoming, const nqservice::IData& current) const
{
    return asOrder(incoming).updateTime < asOrder(current).updateTime;
}

}  // namespace desk
