#include "app/csettlementstablemodel.h"

#include "services/trading/cpapersettlementrecord.h"

#include <cstdlib>

namespace desk {

namespace {
const trading::CPaperSettlementRecord& asSettlement(const nqservice::IData& record)
{
    return static_cast<const trading::CPaperSettlementRecord&>(record);
}

QString dayText(int yyyymmdd)
{
    if (yyyymmdd <= 0) {
        return QString();
    }
    return QStringLiteral("%1-%2-%3")
        .arg(yyyymmdd / 10000)
        .arg(yyyymmdd / 100 % 100, 2, 10, QLatin1Char('0'))
        .arg(yyyymmdd % 100, 2, 10, QLatin1Char('0'));
}
}  // namespace

CSettlementsTableModel::CSettlementsTableModel(QObject* parent)
    : CAccountRecordModel({QStringLiteral("资金账号"), QStringLiteral("交易日"), QStringLiteral("类别"),
                           QStringLiteral("代码"), QStringLiteral("名称"), QStringLiteral("数量"), QStringLiteral("价格"),
                           QStringLiteral("发生金额"), QStringLiteral("到账日"), QStringLiteral("说明")},
                          parent)
{
}

CAccountRecordModel::Cell CSettlementsTableModel::cell(const nqservice::IData& record, int column) const
{
    const trading::CPaperSettlementRecord& step = asSettlement(record);
    switch (column) {
    case COL_ACCOUNT:
        return textCell(accountText(accountOf(record)));
    case COL_DAY:
        return textCell(dayText(step.tradingDay));
    case COL_KIND:
        return textCell(QString::fromStdString(step.kind));
    case COL_CODE:
        return textCell(QString::fromStdString(step.code));
    case COL_NAME:
        return textCell(QString::fromStdString(step.name));
    case COL_VOLUME:
        return step.volume == 0 ? textCell(QString()) : integerCell(step.volume);
    case COL_PRICE:
        return step.price == 0.0 ? textCell(QString()) : numberCell(step.price, 4);
    case COL_AMOUNT:
        return numberCell(step.amount, 2, true, signColorKey(step.amount));
    case COL_VALUE_DAY:
        return textCell(dayText(step.valueDay));
    case COL_NOTE:
        return textCell(QString::fromStdString(step.note));
    default:
        return Cell();
    }
}

std::string CSettlementsTableModel::accountOf(const nqservice::IData& record) const
{
    const trading::CPaperSettlementRecord& step = asSettlement(record);
    return step.account ? step.account->getKey() : std::string();
}

long long CSettlementsTableModel::recency(const nqservice::IData& record) const
{
    const std::string& id = asSettlement(record).recordId;
    return id.size() > 1 ? std::atoll(id.c_str() + 1) : 0;
}

}  // namespace desk
