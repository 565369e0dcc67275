#include "order/coptionorderrules.h"

#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"

#include <QStringList>

#include <algorithm>
#include <climits>

namespace TC {

namespace {

// Split once per process.
const QStringList& table(int which)
{
    static const QStringList operations =
        QStringLiteral("备兑开仓|备兑平仓|卖出开仓|卖出平仓|买入开仓|买入平仓|买入开仓|买入平仓|卖出开仓|卖出平仓|备兑开仓|备兑平仓")
            .split(QLatin1Char('|'));
    static const QStringList available =
        QStringLiteral("可备兑|可备兑|可卖开|可卖平|可买开|可买平|可买开|可买平|可卖开|可卖平|可备兑|可备兑")
            .split(QLatin1Char('|'));
    static const QStringList future = QStringLiteral("-|-|开空|平空|开多|平多|开多|平多|开空|平空|-|-").split(QLatin1Char('|'));
    return which == 0 ? operations : (which == 1 ? available : future);
}

QString textOf(int which, int index)
{
    const QStringList& texts = table(which);
    return index >= 0 && index < texts.size() ? texts.at(index) : QString();
}

int entry(const std::map<std::string, int>& permissions, const char* key)
{
    const auto it = permissions.find(key);
    return it == permissions.end() ? 0 : it->second;
}

}  // namespace

QString COptionOrderRules::operationText(int operationIndex) { return textOf(0, operationIndex); }
QString COptionOrderRules::availableText(int operationIndex) { return textOf(1, operationIndex); }
QString COptionOrderRules::futureButtonText(int operationIndex) { return textOf(2, operationIndex); }

int COptionOrderRules::operationType(int operationIndex, int traderType, bool closeToday)
{
    const bool future = traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION;
    switch (operationIndex) {
    case 0:
    case 10:
        return nqservice::OT_COVERED_OPEN;
    case 1:
    case 11:
        return nqservice::OT_COVERED_CLOSE;
    case 2:
    case 8:
        return future ? nqservice::OT_OPEN_SHORT : nqservice::OT_SELL_OPEN;
    case 3:
    case 9:
        return future ? (closeToday ? nqservice::OT_CLOSE_SHORT_TODAY : nqservice::OT_CLOSE_SHORT)
                      : nqservice::OT_SELL_CLOSE;
    case 4:
    case 6:
        return future ? nqservice::OT_OPEN_LONG : nqservice::OT_BUY_OPEN;
    case 5:
    case 7:
        return future ? (closeToday ? nqservice::OT_CLOSE_LONG_TODAY : nqservice::OT_CLOSE_LONG)
                      : nqservice::OT_BUY_CLOSE;
    default:
        return nqservice::OT_COVERED_OPEN;
    }
}

const char* COptionOrderRules::buttonColorKey(int operationIndex)
{
    const bool fall = operationIndex >= 0 && operationIndex <= 10 && ((0x70D >> operationIndex) & 1) != 0;
    return fall ? "clr_global_fall" : "clr_global_rise";
}

bool COptionOrderRules::showsCloseToday(int operationIndex, int traderType)
{
    return traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION &&
           (operationIndex == 3 || operationIndex == 5 || operationIndex == 7 || operationIndex == 9);
}

QVector<QPair<QString, int>> COptionOrderRules::priceTypes(int traderType, bool hasUpStopPrice)
{
    QVector<QPair<QString, int>> types;
    if (traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        types << qMakePair(QStringLiteral("卖①价"), 4) << qMakePair(QStringLiteral("最新价"), 5)
              << qMakePair(QStringLiteral("买①价"), 6);
        if (hasUpStopPrice) {
            types << qMakePair(QStringLiteral("市价"), 12);
        }
        types << qMakePair(QStringLiteral("挂单价"), 13) << qMakePair(QStringLiteral("对手价"), 14)
              << qMakePair(QStringLiteral("指定价"), 11);
        return types;
    }
    if (hasUpStopPrice) {
        types << qMakePair(QStringLiteral("涨跌停价"), 12);
    }
    types << qMakePair(QStringLiteral("限价即全成否则撤"), 26) << qMakePair(QStringLiteral("市价即成剩撤"), 27)
          << qMakePair(QStringLiteral("市价即全成否则撤"), 28) << qMakePair(QStringLiteral("市价剩转限价"), 29)
          << qMakePair(QStringLiteral("限价"), 11) << qMakePair(QStringLiteral("卖①价"), 4)
          << qMakePair(QStringLiteral("最新价"), 5) << qMakePair(QStringLiteral("买①价"), 6)
          << qMakePair(QStringLiteral("对手价"), 14);
    return types;
}

int COptionOrderRules::defaultPriceType(int traderType)
{
    return traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION ? 5 : 11;
}

QVector<int> COptionOrderRules::pricedTypes(int traderType)
{
    if (traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        return {4, 5, 6, 12, 13, 14, 11};
    }
    if (traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION) {
        return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 26, 27, 28, 29};
    }
    return {};
}

COrderLimit COptionOrderRules::orderLimit(long long instrumentLimit, const std::map<std::string, int>& permissions,
                                          bool marketPriceBranch)
{
    COrderLimit result;
    long long configured = 0;
    long long fallback = 0;
    if (marketPriceBranch) {
        result.allowance = entry(permissions, nqservice::kPermStkOptMarketPriceSplitAllowance) != 0;
        configured = entry(permissions, nqservice::kPermStkOptMarketPriceMaxOrderLimit);
        fallback = 10;
    } else {
        result.allowance = entry(permissions, nqservice::kPermStkOptFixPriceSplitAllowance) != 0;
        configured = entry(permissions, nqservice::kPermStkOptFixPriceMaxOrderLimit);
        fallback = instrumentLimit;
    }
    result.limit = std::min(configured != 0 ? configured : fallback, instrumentLimit);
    return result;
}

int COptionOrderRules::volumeOfRatio(long long available, double ratio)
{
    const double count = static_cast<double>(available) * ratio;
    if (!(count < 2147483648.0)) {
        return 0x7fffffff;
    }
    return count > 0.0 ? static_cast<int>(count) : 0;
}

}  // namespace TC
