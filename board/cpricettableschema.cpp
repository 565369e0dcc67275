#include "board/cpricettableschema.h"

#include <QStringList>

#include "seam/tradingenums.h"

#include <initializer_list>
#include <utility>

namespace TC {

namespace {

using TEntry = std::pair<const char*, const char*>;  // header, properties

QVector<CPriceTColumn> makeSet(std::initializer_list<TEntry> entries)
{
    QVector<CPriceTColumn> set;
    set.reserve(static_cast<int>(entries.size()));
    for (const TEntry& entry : entries) {
        CPriceTColumn column;
        column.column = set.size();
        column.header = QString::fromUtf8(entry.first);
        const QString properties = QString::fromLatin1(entry.second);
        column.bold = properties.contains(QLatin1Char('B'));
        column.flash = properties.contains(QLatin1Char('F'));
        column.number = properties.contains(QLatin1Char('N'));
        column.total = properties.contains(QLatin1Char('T'));
        set.append(column);
    }
    return set;
}

const char* const kStrike = "购<行权价>沽";

const QVector<CPriceTColumn>& quoteStockSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"预估保证金", "B"}, {"状态", ""}, {"期权理论价值", "BN"}, {"隐含波动率", "BN"}, {"持仓量", "BN"},
        {"总量", "BT"}, {"买价", "BF"}, {"卖价", "BF"}, {"涨幅", "BF"}, {"涨跌", "BF"}, {"最新价", "BF"},
        {"备兑", ""}, {"卖出", ""}, {"买入", ""}, {"仓差", "BN"}, {"合约代码", "B"}, {kStrike, "B"},
        {"合约代码", "B"}, {"仓差", "BN"}, {"买入", ""}, {"卖出", ""}, {"最新价", "BF"}, {"涨跌", "BF"},
        {"涨幅", "BF"}, {"卖价", "BF"}, {"买价", "BF"}, {"总量", "BT"}, {"持仓量", "BN"}, {"隐含波动率", "BN"},
        {"期权理论价值", "BN"}, {"状态", ""}, {"预估保证金", "B"},
    });
    return s_set;
}

const QVector<CPriceTColumn>& quoteOtherSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"期权理论价值", "B"}, {"隐含波动率", "B"}, {"持仓量", "B"}, {"总量", "B"}, {"买价", "BF"},
        {"卖价", "BF"}, {"涨幅", "BF"}, {"涨跌", "BF"}, {"最新价", "BF"}, {"备兑", ""}, {"卖出", ""},
        {"买入", ""}, {"仓差", "B"}, {"合约代码", "B"}, {kStrike, "B"}, {"合约代码", "B"}, {"仓差", "B"},
        {"买入", ""}, {"卖出", ""}, {"最新价", "BF"}, {"涨跌", "BF"}, {"涨幅", "BF"}, {"卖价", "BF"},
        {"买价", "BF"}, {"总量", "B"}, {"持仓量", "B"}, {"隐含波动率", "B"}, {"期权理论价值", "B"},
    });
    return s_set;
}

const QVector<CPriceTColumn>& targetSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"状态", ""}, {"真实杠杆率", "BN"}, {"杠杆比率", "BN"}, {"溢价率", "BN"}, {"隐含波动率", "BN"},
        {"历史波动率", "BN"}, {"时间价值", "BN"}, {"内在价值", "BN"}, {"涨幅", "BF"}, {"最新价", "BF"},
        {"合约代码", "B"}, {"备兑", ""}, {"卖出", ""}, {"买入", ""}, {"仓差", "BN"}, {kStrike, "B"},
        {"仓差", "BN"}, {"买入", ""}, {"卖出", ""}, {"合约代码", "B"}, {"最新价", "BF"}, {"涨幅", "BF"},
        {"内在价值", "BN"}, {"时间价值", "BN"}, {"历史波动率", "BN"}, {"隐含波动率", "BN"}, {"溢价率", "BN"},
        {"杠杆比率", "BN"}, {"真实杠杆率", "BN"}, {"状态", ""},
    });
    return s_set;
}

const QVector<CPriceTColumn>& riskSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"状态", ""}, {"rho", "BN"}, {"vega", "BN"}, {"外部导入vega", "B"}, {"theta", "BN"},
        {"外部导入theta", "B"}, {"gamma", "BN"}, {"外部导入gamma", "B"}, {"delta", "BN"},
        {"外部导入delta", "B"}, {"买隐波", "B"}, {"卖隐波", "B"}, {"涨幅", "BF"}, {"最新价", "BF"},
        {"合约代码", "B"}, {"备兑", ""}, {"卖出", ""}, {"买入", ""}, {"仓差", "BN"}, {kStrike, "B"},
        {"仓差", "BN"}, {"买入", ""}, {"卖出", ""}, {"合约代码", "B"}, {"最新价", "BF"}, {"涨幅", "BF"},
        {"卖隐波", "B"}, {"买隐波", "B"}, {"外部导入delta", "B"}, {"delta", "BN"}, {"外部导入gamma", "B"},
        {"gamma", "BN"}, {"外部导入theta", "B"}, {"theta", "BN"}, {"外部导入vega", "B"}, {"vega", "BN"},
        {"rho", "BN"}, {"状态", ""},
    });
    return s_set;
}

const QVector<CPriceTColumn>& infoSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"预估保证金", "B"}, {"行权价格", "BN"}, {"合约单位", "BN"}, {"行权方式", "N"}, {"行权终止日", "BN"},
        {"期权到期日", "BN"}, {"涨幅", "BF"}, {"最新价", "BF"}, {"合约代码", "B"}, {"备兑", ""}, {"卖出", ""},
        {"买入", ""}, {"仓差", "BN"}, {kStrike, "B"}, {"仓差", "BN"}, {"买入", ""}, {"卖出", ""},
        {"合约代码", "B"}, {"最新价", "BF"}, {"涨幅", "BF"}, {"期权到期日", "BN"}, {"行权终止日", "BN"},
        {"行权方式", "N"}, {"合约单位", "BN"}, {"行权价格", "BN"}, {"预估保证金", "B"},
    });
    return s_set;
}

const QVector<CPriceTColumn>& priceSet()
{
    static const QVector<CPriceTColumn> s_set = makeSet({
        {"买价", "BF"}, {"卖价", "BF"}, {"最新价", "BF"}, {"合约代码", "B"}, {kStrike, "B"}, {"合约代码", "B"},
        {"最新价", "BF"}, {"卖价", "BF"}, {"买价", "BF"},
    });
    return s_set;
}

bool isStockTrader(int traderType) { return traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION; }

}  // namespace

const QVector<CPriceTColumn>& CPriceTTableSchema::columns(int tableType, int traderType)
{
    static const QVector<CPriceTColumn> s_none;
    switch (tableType) {
    case PTT_QUOTE:
        return isStockTrader(traderType) ? quoteStockSet() : quoteOtherSet();
    case PTT_TARGET:
        return targetSet();
    case PTT_RISK:
        return riskSet();
    case PTT_INFO:
        return infoSet();
    case PTT_PRICE:
        return priceSet();
    default:
        return s_none;
    }
}

int CPriceTTableSchema::strikeColumn(int tableType, int traderType)
{
    switch (tableType) {
    case PTT_QUOTE:
        return isStockTrader(traderType) ? 16 : 14;
    case PTT_TARGET:
        return 15;
    case PTT_RISK:
        return 19;
    case PTT_INFO:
        return 13;
    case PTT_PRICE:
        return 4;
    default:
        return -1;
    }
}

int CPriceTTableSchema::codeColumn(int tableType, int traderType, bool call)
{
    switch (tableType) {
    case PTT_QUOTE:
        if (isStockTrader(traderType)) {
            return call ? 15 : 17;
        }
        return call ? 13 : 15;
    case PTT_TARGET:
        return call ? 10 : 19;
    case PTT_RISK:
        return call ? 14 : 23;
    case PTT_INFO:
        return call ? 8 : 17;
    case PTT_PRICE:
        return call ? 3 : 5;
    default:
        return -1;
    }
}

int CPriceTTableSchema::selectCodeColumn(int tableType, int traderType, int column)
{
    // The first column of the put side: everything before it belongs to the call.
    int putStart = -1;
    switch (tableType) {
    case PTT_QUOTE:
        putStart = isStockTrader(traderType) ? 17 : 15;
        break;
    case PTT_TARGET:
        putStart = 16;
        break;
    case PTT_RISK:
        putStart = 20;
        break;
    case PTT_INFO:
        putStart = 14;
        break;
    case PTT_PRICE:
        putStart = 5;
        break;
    default:
        return -1;
    }
    return codeColumn(tableType, traderType, column < putStart);
}

bool CPriceTTableSchema::leftBlock(int tableType, int traderType, int& first, int& last)
{
    const int strike = strikeColumn(tableType, traderType);
    if (strike < 0) {
        return false;
    }
    first = 0;
    last = strike - 1;
    return true;
}

bool CPriceTTableSchema::rightBlock(int tableType, int traderType, int& first, int& last)
{
    const int strike = strikeColumn(tableType, traderType);
    if (strike < 0) {
        return false;
    }
    first = strike + 1;
    last = columns(tableType, traderType).size() - 1;
    return true;
}

QVector<int> CPriceTTableSchema::hiddenColumns(int tableType, int traderType, bool& fromList)
{
    fromList = false;
    if (tableType == PTT_PRICE) {
        return {3, 5};
    }
    if (traderType != nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        return {};
    }
    fromList = true;
    switch (tableType) {
    case PTT_QUOTE:
    case PTT_INFO:
        return {9};
    case PTT_TARGET:
        return {11};
    case PTT_RISK:
        return {15};
    default:
        fromList = false;
        return {};
    }
}

QVector<int> CPriceTTableSchema::externalGreekColumns() { return {3, 5, 7, 9, 10, 11, 34, 32, 30, 28, 27, 26}; }

CPriceTSideColours CPriceTTableSchema::themeColours(int tableType, int traderType, bool call)
{
    CPriceTSideColours colours;
    switch (tableType) {
    case PTT_QUOTE:
        if (isStockTrader(traderType)) {
            colours = call ? CPriceTSideColours{6, 7, {8, 9, 10}} : CPriceTSideColours{25, 24, {23, 22, 21}};
        } else {
            colours = call ? CPriceTSideColours{4, 5, {6, 7, 8}} : CPriceTSideColours{23, 22, {21, 20, 19}};
        }
        break;
    case PTT_TARGET:
        colours.riseColumns = call ? QVector<int>{8, 9} : QVector<int>{21, 20};
        break;
    case PTT_RISK:
        colours.riseColumns = call ? QVector<int>{12, 13} : QVector<int>{25, 24};
        break;
    case PTT_INFO:
        colours.riseColumns = call ? QVector<int>{6, 7} : QVector<int>{19, 18};
        break;
    case PTT_PRICE:
        colours.riseColumns = call ? QVector<int>{2} : QVector<int>{6};
        break;
    default:
        break;
    }
    return colours;
}

bool CPriceTTableSchema::layoutBelongsTo(const QString& layout, int traderType)
{
    // "v1,<sort column>,<sort order>,<column>:<width>:<visible>,..."
    const QStringList parts = layout.trimmed().split(QLatin1Char(','));
    const int count = parts.size() - 3;
    bool known = false;
    for (int type = PTT_QUOTE; type <= PTT_PRICE; ++type) {
        known = known || (count > 0 && columns(type, traderType).size() == count);
    }
    if (!known) {
        return false;
    }
    QVector<bool> seen(count, false);
    for (int i = 3; i < parts.size(); ++i) {
        bool ok = false;
        const int column = parts.at(i).section(QLatin1Char(':'), 0, 0).toInt(&ok);
        if (!ok || column < 0 || column >= count || seen.at(column)) {
            return false;
        }
        seen[column] = true;
    }
    return true;
}

}  // namespace TC
