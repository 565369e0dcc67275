// The column sets of the chain table against their published lists: number,
// header and the bold, flash, number and total properties of every column, for
// every set and trader type, both in the schema and in a live table.
#include "board/coptionpricettable.h"
#include "board/cpricettableschema.h"
#include "boardfixture.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QStringList>

namespace {

struct LayoutCase {
    const char* name;
    int tableType;
    int traderType;
    int strikeColumn;
    // "number header properties" entries joined by "; ", as the lists are written.
    const char* list;
};

const LayoutCase kLayouts[] = {
    {"quote_stock", TC::PTT_QUOTE, 32, 16,
     "0 预估保证金 B; 1 状态; 2 期权理论价值 BN; 3 隐含波动率 BN; 4 持仓量 BN; 5 总量 BT; 6 买价 BF; 7 卖价 BF; "
     "8 涨幅 BF; 9 涨跌 BF; 10 最新价 BF; 11 备兑; 12 卖出; 13 买入; 14 仓差 BN; 15 合约代码 B; 16 购<行权价>沽 B; "
     "17 合约代码 B; 18 仓差 BN; 19 买入; 20 卖出; 21 最新价 BF; 22 涨跌 BF; 23 涨幅 BF; 24 卖价 BF; 25 买价 BF; "
     "26 总量 BT; 27 持仓量 BN; 28 隐含波动率 BN; 29 期权理论价值 BN; 30 状态; 31 预估保证金 B"},
    {"quote_future", TC::PTT_QUOTE, 1024, 14,
     "0 期权理论价值 B; 1 隐含波动率 B; 2 持仓量 B; 3 总量 B; 4 买价 BF; 5 卖价 BF; 6 涨幅 BF; 7 涨跌 BF; "
     "8 最新价 BF; 9 备兑; 10 卖出; 11 买入; 12 仓差 B; 13 合约代码 B; 14 购<行权价>沽 B; 15 合约代码 B; 16 仓差 B; "
     "17 买入; 18 卖出; 19 最新价 BF; 20 涨跌 BF; 21 涨幅 BF; 22 卖价 BF; 23 买价 BF; 24 总量 B; 25 持仓量 B; "
     "26 隐含波动率 B; 27 期权理论价值 B"},
    {"quote_other", TC::PTT_QUOTE, 2, 14,
     "0 期权理论价值 B; 1 隐含波动率 B; 2 持仓量 B; 3 总量 B; 4 买价 BF; 5 卖价 BF; 6 涨幅 BF; 7 涨跌 BF; "
     "8 最新价 BF; 9 备兑; 10 卖出; 11 买入; 12 仓差 B; 13 合约代码 B; 14 购<行权价>沽 B; 15 合约代码 B; 16 仓差 B; "
     "17 买入; 18 卖出; 19 最新价 BF; 20 涨跌 BF; 21 涨幅 BF; 22 卖价 BF; 23 买价 BF; 24 总量 B; 25 持仓量 B; "
     "26 隐含波动率 B; 27 期权理论价值 B"},
    {"target", TC::PTT_TARGET, 32, 15,
     "0 状态; 1 真实杠杆率 BN; 2 杠杆比率 BN; 3 溢价率 BN; 4 隐含波动率 BN; 5 历史波动率 BN; 6 时间价值 BN; "
     "7 内在价值 BN; 8 涨幅 BF; 9 最新价 BF; 10 合约代码 B; 11 备兑; 12 卖出; 13 买入; 14 仓差 BN; "
     "15 购<行权价>沽 B; 16 仓差 BN; 17 买入; 18 卖出; 19 合约代码 B; 20 最新价 BF; 21 涨幅 BF; 22 内在价值 BN; "
     "23 时间价值 BN; 24 历史波动率 BN; 25 隐含波动率 BN; 26 溢价率 BN; 27 杠杆比率 BN; 28 真实杠杆率 BN; 29 状态"},
    {"risk", TC::PTT_RISK, 32, 19,
     "0 状态; 1 rho BN; 2 vega BN; 3 外部导入vega B; 4 theta BN; 5 外部导入theta B; 6 gamma BN; "
     "7 外部导入gamma B; 8 delta BN; 9 外部导入delta B; 10 买隐波 B; 11 卖隐波 B; 12 涨幅 BF; 13 最新价 BF; "
     "14 合约代码 B; 15 备兑; 16 卖出; 17 买入; 18 仓差 BN; 19 购<行权价>沽 B; 20 仓差 BN; 21 买入; 22 卖出; "
     "23 合约代码 B; 24 最新价 BF; 25 涨幅 BF; 26 卖隐波 B; 27 买隐波 B; 28 外部导入delta B; 29 delta BN; "
     "30 外部导入gamma B; 31 gamma BN; 32 外部导入theta B; 33 theta BN; 34 外部导入vega B; 35 vega BN; 36 rho BN; "
     "37 状态"},
    {"info", TC::PTT_INFO, 32, 13,
     "0 预估保证金 B; 1 行权价格 BN; 2 合约单位 BN; 3 行权方式 N; 4 行权终止日 BN; 5 期权到期日 BN; 6 涨幅 BF; "
     "7 最新价 BF; 8 合约代码 B; 9 备兑; 10 卖出; 11 买入; 12 仓差 BN; 13 购<行权价>沽 B; 14 仓差 BN; 15 买入; "
     "16 卖出; 17 合约代码 B; 18 最新价 BF; 19 涨幅 BF; 20 期权到期日 BN; 21 行权终止日 BN; 22 行权方式 N; "
     "23 合约单位 BN; 24 行权价格 BN; 25 预估保证金 B"},
    {"price", TC::PTT_PRICE, 32, 4,
     "0 买价 BF; 1 卖价 BF; 2 最新价 BF; 3 合约代码 B; 4 购<行权价>沽 B; 5 合约代码 B; 6 最新价 BF; 7 卖价 BF; "
     "8 买价 BF"},
};

struct Expected {
    int column;
    QString header;
    QString properties;
};

QVector<Expected> parse(const char* list)
{
    QVector<Expected> out;
    for (const QString& entry : QString::fromUtf8(list).split(QStringLiteral("; "))) {
        const QStringList parts = entry.split(QLatin1Char(' '));
        Expected expected;
        expected.column = parts.value(0).toInt();
        expected.header = parts.value(1);
        expected.properties = parts.value(2);
        out.append(expected);
    }
    return out;
}

class ColumnLayout : public boardtest::BoardTest, public ::testing::WithParamInterface<LayoutCase> {};

TEST_P(ColumnLayout, SchemaMatchesTheList)
{
    const LayoutCase& layout = GetParam();
    const QVector<Expected> expected = parse(layout.list);
    const QVector<TC::CPriceTColumn>& columns = TC::CPriceTTableSchema::columns(layout.tableType, layout.traderType);
    ASSERT_EQ(columns.size(), expected.size()) << layout.name;
    for (int i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(testing::Message() << layout.name << " column " << i);
        EXPECT_EQ(expected[i].column, i);
        EXPECT_EQ(columns[i].column, i);
        EXPECT_EQ(columns[i].header, expected[i].header);
        EXPECT_EQ(columns[i].bold, expected[i].properties.contains('B'));
        EXPECT_EQ(columns[i].flash, expected[i].properties.contains('F'));
        EXPECT_EQ(columns[i].number, expected[i].properties.contains('N'));
        EXPECT_EQ(columns[i].total, expected[i].properties.contains('T'));
    }
    EXPECT_EQ(TC::CPriceTTableSchema::strikeColumn(layout.tableType, layout.traderType), layout.strikeColumn);
}

TEST_P(ColumnLayout, LiveTableMatchesTheList)
{
    const LayoutCase& layout = GetParam();
    const QVector<Expected> expected = parse(layout.list);
    TC::COptionPriceTTable table(nullptr);
    QAbstractItemModelTester tester(table.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    table.setTradeType(static_cast<nqservice::EVqTraderType>(layout.traderType));
    table.setTableType(static_cast<TC::EPriceTTableType>(layout.tableType));
    ASSERT_EQ(table.columnCount(), expected.size()) << layout.name;
    EXPECT_EQ(table.getStrikeColumn(), layout.strikeColumn);
    for (const Expected& column : expected) {
        SCOPED_TRACE(testing::Message() << layout.name << " column " << column.column);
        EXPECT_EQ(table.columnHeader(column.column), column.header);
        EXPECT_EQ(table.columnBoldFont(column.column), column.properties.contains('B'));
        EXPECT_EQ(table.columnFlashChange(column.column), column.properties.contains('F'));
        EXPECT_EQ(table.getBoldColumns().contains(column.column), column.properties.contains('B'));
        EXPECT_EQ(table.getFlashColumns().contains(column.column), column.properties.contains('F'));
        EXPECT_EQ(table.getNumberColumns().contains(column.column), column.properties.contains('N'));
        EXPECT_EQ(table.getTotalColumns().contains(column.column), column.properties.contains('T'));
    }
}

INSTANTIATE_TEST_SUITE_P(AllSets, ColumnLayout, ::testing::ValuesIn(kLayouts),
                         [](const ::testing::TestParamInfo<LayoutCase>& info) { return std::string(info.param.name); });

struct SelectCase {
    int tableType;
    int traderType;
    int boundary;  // columns below it (and the strike) are the call's
    int callColumn;
    int putColumn;
};

TEST(PriceTTableSchema, SelectCodeColumnBySide)
{
    const SelectCase cases[] = {
        {TC::PTT_QUOTE, 32, 17, 15, 17}, {TC::PTT_QUOTE, 1024, 15, 13, 15}, {TC::PTT_TARGET, 32, 16, 10, 19},
        {TC::PTT_RISK, 32, 20, 14, 23},  {TC::PTT_INFO, 32, 14, 8, 17},     {TC::PTT_PRICE, 32, 5, 3, 5},
    };
    for (const SelectCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "type " << c.tableType << " trader " << c.traderType);
        EXPECT_EQ(TC::CPriceTTableSchema::selectCodeColumn(c.tableType, c.traderType, 0), c.callColumn);
        EXPECT_EQ(TC::CPriceTTableSchema::selectCodeColumn(c.tableType, c.traderType, c.boundary - 1), c.callColumn);
        EXPECT_EQ(TC::CPriceTTableSchema::selectCodeColumn(c.tableType, c.traderType, c.boundary), c.putColumn);
        const int strike = TC::CPriceTTableSchema::strikeColumn(c.tableType, c.traderType);
        EXPECT_EQ(TC::CPriceTTableSchema::selectCodeColumn(c.tableType, c.traderType, strike), c.callColumn);
    }
}

TEST(PriceTTableSchema, ShadingBlocksLeaveTheStrikeOut)
{
    struct Block {
        int tableType;
        int traderType;
        int leftLast;
        int rightFirst;
        int rightLast;
    };
    const Block blocks[] = {{TC::PTT_QUOTE, 32, 15, 17, 31}, {TC::PTT_QUOTE, 1024, 13, 15, 27},
                            {TC::PTT_TARGET, 32, 14, 16, 29}, {TC::PTT_RISK, 32, 18, 20, 37},
                            {TC::PTT_INFO, 32, 12, 14, 25},   {TC::PTT_PRICE, 32, 3, 5, 8}};
    for (const Block& b : blocks) {
        int first = -1;
        int last = -1;
        ASSERT_TRUE(TC::CPriceTTableSchema::leftBlock(b.tableType, b.traderType, first, last));
        EXPECT_EQ(first, 0);
        EXPECT_EQ(last, b.leftLast);
        ASSERT_TRUE(TC::CPriceTTableSchema::rightBlock(b.tableType, b.traderType, first, last));
        EXPECT_EQ(first, b.rightFirst);
        EXPECT_EQ(last, b.rightLast);
    }
    int first = 0;
    int last = 0;
    EXPECT_FALSE(TC::CPriceTTableSchema::leftBlock(7, 32, first, last));
    EXPECT_TRUE(TC::CPriceTTableSchema::columns(7, 32).isEmpty());
}

}  // namespace
