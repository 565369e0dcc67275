#include "positions/cpricequoteschema.h"

#include <QVariant>

namespace TC {

const QString& CPriceQuoteSchema::header(int column)
{
    static const QString strike = QStringLiteral("行权价格");
    static const QString empty;
    static const QString headers[kMonthColumns] = {
        QStringLiteral("最新"),     QStringLiteral("幅度%"),     QStringLiteral("总量"),
        QStringLiteral("持仓量"),   QStringLiteral("涨跌"),      QStringLiteral("买价"),
        QStringLiteral("内在价值"), QStringLiteral("溢价%"),     QStringLiteral("杠杆"),
        QStringLiteral("隐波%"),    QStringLiteral("历波%"),     QStringLiteral("DelTa"),
        QStringLiteral("Gamma"),    QStringLiteral("Theta"),     QStringLiteral("Vega"),
        QStringLiteral("Rho"),      QStringLiteral("代码"),      QStringLiteral("合约单位"),
        QStringLiteral("期权到期日"), QStringLiteral("行权方式"), QStringLiteral("行权终止日"),
    };
    if (column == 0) {
        return strike;
    }
    const int sub = subIndexOf(column);
    return sub >= 0 ? headers[sub] : empty;
}

int CPriceQuoteSchema::columnType(int column)
{
    switch (subIndexOf(column)) {
    case PQ_VOLUME:
    case PQ_OPEN_INTEREST:
    case PQ_UNIT:
    case PQ_EXPIRE:
    case PQ_LAST_EXERCISE:
        return QVariant::Int;
    case PQ_CODE:
    case PQ_STYLE:
    case -1:
        return QVariant::String;
    default:
        return QVariant::Double;
    }
}

int CPriceQuoteSchema::viewOfSubIndex(int subIndex)
{
    if (subIndex < 0 || subIndex >= kMonthColumns) {
        return -1;
    }
    if (subIndex <= PQ_BID) {
        return PQV_QUOTE;
    }
    if (subIndex <= PQ_HISTORICAL_VOL) {
        return PQV_TARGET;
    }
    if (subIndex <= PQ_RHO) {
        return PQV_RISK;
    }
    return PQV_INFO;
}

bool CPriceQuoteSchema::visibleInView(int column, int view)
{
    if (column == 0) {
        return true;
    }
    return column > 0 && viewOfSubIndex(subIndexOf(column)) == view;
}

bool CPriceQuoteSchema::flashSubIndex(int subIndex)
{
    return subIndex == PQ_LAST || subIndex == PQ_CHANGE_RATIO || subIndex == PQ_CHANGE || subIndex == PQ_BID;
}

QString CPriceQuoteSchema::rowKey(const QString& strikeText, bool adjusted)
{
    return adjusted && !strikeText.isEmpty() ? strikeText + QLatin1Char('A') : strikeText;
}

int CPriceQuoteSchema::compareRowKeys(const QString& left, const QString& right)
{
    auto split = [](const QString& key, double& number, bool& adjusted) {
        adjusted = key.endsWith(QLatin1Char('A'));
        bool ok = false;
        number = (adjusted ? key.left(key.size() - 1) : key).toDouble(&ok);
        return ok;
    };
    double a = 0.0;
    double b = 0.0;
    bool leftAdjusted = false;
    bool rightAdjusted = false;
    if (!split(left, a, leftAdjusted) || !split(right, b, rightAdjusted)) {
        return QString::compare(left, right);
    }
    if (a != b) {
        return a < b ? -1 : 1;
    }
    return int(leftAdjusted) - int(rightAdjusted);
}

QString CPriceQuoteSchema::monthCellText(const QString& month, int remainDays)
{
    return QStringLiteral("%1年%2月(%3天)").arg(month.left(4), month.mid(4, 2)).arg(remainDays);
}

}  // namespace TC
