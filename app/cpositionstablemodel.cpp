#include "app/cpositionstablemodel.h"

#include "seam/tradingrecords.h"
#include "seam/tradinghelpers.h"

namespace desk {

namespace {
const nqservice::CPositionStatics& asPosition(const nqservice::IData& record)
{
    return static_cast<const nqservice::CPositionStatics&>(record);
}
}  // namespace

CPositionsTableModel::CPositionsTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("合约代码"), QStringLiteral("合约名称"),
                           QStringLiteral("方向"), QStringLiteral("持仓量"), QStringLiteral("今仓"),
                           QStringLiteral("可平量"), QStringLiteral("持仓均价"), QStringLiteral("最新价"),
                           QStringLiteral("浮动盈亏"), QStringLiteral("保证金")},
                          parent)
{
}

QString CPositionsTableModel::directionText(int direction)
{
    // Any side but long and covered is an ordinary short.
    const int side = direction == '0' || direction == '2' ? direction : '1';
    return QString::fromStdString(
        nqservice::TypeManager::instance()->getEnumItemName("nqservice::EPositionDirection", side, 32));
}

CAccountRecordModel::Cell CPositionsTableModel::cell(const nqservice::IData& record, int column) const
{
    const nqservice::CPositionStatics& position = asPosition(record);
    const bool future = position.account && position.account->accountType == nqservice::VQ_BROKER_TYPE_FUTURE_OPTION;
    const int decimals = future ? 1 : 4;
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(accountOf(record)));
    case COL_CODE:
        return textCell(QString::fromStdString(position.code));
    case COL_NAME:
        return textCell(QString::fromStdString(position.name));
    case COL_DIRECTION:
        // Long red, short green, as a buy and a sell show.
        return textCell(directionText(position.direction), position.direction == '0'
                                                               ? QStringLiteral("clr_global_rise")
                                                               : QStringLiteral("clr_global_fall"));
    case COL_VOLUME:
        return integerCell(position.position);
    case COL_TODAY:
        return integerCell(position.todayPosition);
    case COL_AVAILABLE:
        return integerCell(position.available);
    case COL_AVG_PRICE:
        return numberCell(position.avgPrice, decimals);
    case COL_LAST_PRICE:
        return numberCell(position.lastPrice, decimals);
    case COL_FLOAT_PROFIT:
        return numberCell(position.floatProfit, 2, true, signColorKey(position.floatProfit));
    case COL_MARGIN:
        return numberCell(position.margin, 2, true);
    default:
        return Cell();
    }
}

std::string CPositionsTableModel::accountOf(const nqservice::IData& record) const
{
    const nqservice::CPositionStatics& position = asPosition(record);
    return position.account ? position.account->getKey() : std::string();
}

bool CPositionsTableModel::keeps(const nqservice::IData& record) const { return asPosition(record).position != 0; }

}  // namespace desk
