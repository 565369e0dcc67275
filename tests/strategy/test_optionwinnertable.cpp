// The winner table on its own: the two column sets, a record's cells and
// colours, replacing a record by its key, the radio buttons kept exclusive,
// and the model checked by QAbstractItemModelTester throughout.
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnertabledata.h"

#include "seam/uievents.h"
#include "seam/userrecords.h"
#include "toolkit/cbasewidget.h"
#include "toolkit/cradiobutton.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

#include <boost/make_shared.hpp>

namespace {

using TC::COptionWinnerTable;
using TC::COptionWinnerTableDataPtr;

// Stands for the winner widget: records the rows the table says were chosen.
class CRecorder : public WG::CBaseWidget {
public:
    CRecorder() : WG::CBaseWidget(QStringLiteral("recorder"), false, nullptr) {}
    bool handleEvent(int code, int id, int, QString, void*) override
    {
        if (code == COptionWinnerTable::kRowChosenEvent) {
            events << qMakePair(code, id);
        }
        return true;
    }
    QList<QPair<int, int>> events;
};

COptionWinnerTableDataPtr single(const QString& key, int operation)
{
    auto row = boost::make_shared<TC::COptionWinnerTableData>();
    row->rowKey = key;
    row->codeOne = key;
    row->nameOne = QStringLiteral("50ETF购11月3000");
    row->operationOne = operation;
    row->maxProfitText = QStringLiteral("无限");
    row->expireDate = 20261125;
    return row;
}

COptionWinnerTableDataPtr pair(const QString& put, const QString& call, int operation)
{
    auto row = single(put, operation);
    row->rowKey = put + "|" + call;
    row->nameOne = QStringLiteral("50ETF沽11月2900");
    row->codeTwo = call;
    row->nameTwo = QStringLiteral("50ETF购11月3100");
    row->operationTwo = operation;
    row->maxProfitText.clear();
    row->maxLossText = QStringLiteral("无限");
    return row;
}

QStringList headers(const COptionWinnerTable& table)
{
    QStringList out;
    for (int column = 0; column < table.columnCount(); ++column) {
        out << table.columnHeader(column);
    }
    return out;
}

class OptionWinnerTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        table = new COptionWinnerTable(&recorder);
        tester = std::make_unique<QAbstractItemModelTester>(table->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override { tester.reset(); }

    CRecorder recorder;
    COptionWinnerTable* table = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(OptionWinnerTableTest, NineColumnsForASingleOption)
{
    EXPECT_EQ(table->id(), 3);
    EXPECT_EQ(table->getMode(), 0);
    EXPECT_EQ(headers(*table), (QStringList{"选择", "名称", "最新价", "买卖", "数量", "权利金净值", "最大盈利",
                                            "最大亏损", "成交量"}));
    EXPECT_EQ(table->getTotalColumns(), (QSet<int>{4, 8}));
    EXPECT_EQ(table->getProfitColumn(), 6);
    EXPECT_EQ(table->getLossColumn(), 7);
}

TEST_F(OptionWinnerTableTest, FourteenColumnsForAPair)
{
    table->setMode(TC::WPD_RANGE);
    EXPECT_EQ(headers(*table), (QStringList{"选择", "合约一名称", "合约一最新价", "合约一买卖", "合约一数量",
                                            "合约二名称", "合约二最新价", "合约二买卖", "合约二数量", "权利金净值",
                                            "最大盈利", "最大亏损", "合约一成交量", "合约二成交量"}));
    EXPECT_EQ(table->getTotalColumns(), (QSet<int>{4, 8, 12, 13}));
    EXPECT_EQ(table->getProfitColumn(), 10);
    EXPECT_EQ(table->getLossColumn(), 11);
    table->setMode(TC::WPD_FALL);
    EXPECT_EQ(table->columnCount(), 9);
}

TEST_F(OptionWinnerTableTest, TheFirstRowIsCheckedAsItIsAdded)
{
    EXPECT_EQ(table->checkedRow(), -1);
    EXPECT_EQ(table->addRecord(single(QStringLiteral("10000010.SH"), 18)), 0);
    ASSERT_NE(table->radioOf(0), nullptr);
    EXPECT_TRUE(table->radioOf(0)->isChecked());
    EXPECT_EQ(table->checkedRow(), 0);
    EXPECT_EQ(table->addRecord(single(QStringLiteral("10000011.SH"), 18)), 1);
    EXPECT_FALSE(table->radioOf(1)->isChecked());
    EXPECT_EQ(table->checkedRow(), 0);
}

TEST_F(OptionWinnerTableTest, ASingleOptionsCellsAndColours)
{
    auto row = single(QStringLiteral("10000010.SH"), 18);
    table->addRecord(row);
    table->updateTable();
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("50ETF购11月3000"));
    EXPECT_EQ(table->itemText(0, 3), QStringLiteral("买"));
    EXPECT_EQ(table->itemText(0, 4), QStringLiteral("1"));
    EXPECT_EQ(table->itemText(0, 6), QStringLiteral("无限"));
    // Not priced yet: its numbers are empty.
    EXPECT_EQ(table->itemText(0, 2), QString());
    EXPECT_EQ(table->itemText(0, 5), QString());
    EXPECT_EQ(table->itemText(0, 8), QString());
    WG::CTableCellModel* cells = table->model();
    EXPECT_EQ(cells->cellTextColorKey(0, 4), QStringLiteral("tc_clr_priceT_total"));
    EXPECT_EQ(cells->cellTextColorKey(0, 8), QStringLiteral("tc_clr_priceT_total"));
    EXPECT_EQ(cells->cellTextColorKey(0, 6), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(cells->cellTextColorKey(0, 7), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(cells->cellTextColorKey(0, 3), QStringLiteral("tc_clr_priceT_rise"));

    row->lastOne = 0.0812;
    row->changeOne = -0.002;
    row->netPremium = -812.0;
    row->volumeOne = 12345;
    row->maxLossText = QStringLiteral("-812.0000");
    table->updateRow(0);
    table->updateTable();
    EXPECT_EQ(table->itemText(0, 2), QStringLiteral("0.0812"));
    EXPECT_EQ(table->itemText(0, 5), QStringLiteral("-812.00"));
    EXPECT_EQ(table->itemText(0, 7), QStringLiteral("-812.0000"));
    EXPECT_EQ(table->itemText(0, 8), QStringLiteral("12345"));
    EXPECT_EQ(cells->cellTextColorKey(0, 2), QStringLiteral("tc_clr_priceT_fall"));
}

TEST_F(OptionWinnerTableTest, APairSellsBothLegsAndColoursThemAsSales)
{
    table->setMode(TC::WPD_RANGE);
    table->addRecord(pair(QStringLiteral("10000020.SH"), QStringLiteral("10000012.SH"), 19));
    table->updateTable();
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("50ETF沽11月2900"));
    EXPECT_EQ(table->itemText(0, 5), QStringLiteral("50ETF购11月3100"));
    EXPECT_EQ(table->itemText(0, 3), QStringLiteral("卖"));
    EXPECT_EQ(table->itemText(0, 7), QStringLiteral("卖"));
    EXPECT_EQ(table->itemText(0, 8), QStringLiteral("1"));
    EXPECT_EQ(table->itemText(0, 11), QStringLiteral("无限"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 3), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 7), QStringLiteral("tc_clr_priceT_fall"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 13), QStringLiteral("tc_clr_priceT_total"));
    EXPECT_EQ(table->rowsOfCode(QStringLiteral("10000020.SH")), QSet<int>{0});
    EXPECT_EQ(table->rowsOfCode(QStringLiteral("10000012.SH")), QSet<int>{0});
}

TEST_F(OptionWinnerTableTest, ARecordOfAKnownKeyReplacesItsRow)
{
    table->addRecord(single(QStringLiteral("10000010.SH"), 18));
    auto again = single(QStringLiteral("10000010.SH"), 18);
    again->nameOne = QStringLiteral("renamed");
    EXPECT_EQ(table->addRecord(again), 0);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->record(0), again);
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("renamed"));
    EXPECT_EQ(table->rowOfKey(QStringLiteral("10000010.SH")), 0);
}

TEST_F(OptionWinnerTableTest, ARadioClickChecksItsRowAloneAndTellsTheWidget)
{
    for (const char* code : {"10000010.SH", "10000011.SH", "10000012.SH"}) {
        table->addRecord(single(QString::fromLatin1(code), 18));
    }
    table->radioOf(2)->click();
    EXPECT_EQ(table->checkedRow(), 2);
    EXPECT_TRUE(table->radioOf(2)->isChecked());
    EXPECT_FALSE(table->radioOf(0)->isChecked());
    EXPECT_FALSE(table->radioOf(1)->isChecked());
    ASSERT_EQ(recorder.events.size(), 1);
    EXPECT_EQ(recorder.events.at(0), qMakePair(COptionWinnerTable::kRowChosenEvent, 2));
    // A click on the checked one keeps it checked.
    table->radioOf(2)->click();
    EXPECT_TRUE(table->radioOf(2)->isChecked());
    EXPECT_EQ(table->checkedRow(), 2);
}

TEST_F(OptionWinnerTableTest, ClearDropsRowsMapsAndTheCheck)
{
    table->addRecord(single(QStringLiteral("10000010.SH"), 18));
    table->clear();
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(table->candidateCount(), 0);
    EXPECT_EQ(table->checkedRow(), -1);
    EXPECT_TRUE(table->rowsOfCode(QStringLiteral("10000010.SH")).isEmpty());
    EXPECT_EQ(table->rowOfKey(QStringLiteral("10000010.SH")), -1);
    // Ids start again at 0, checked.
    EXPECT_EQ(table->addRecord(single(QStringLiteral("10000011.SH"), 18)), 0);
    EXPECT_EQ(table->checkedRow(), 0);
}

TEST_F(OptionWinnerTableTest, AThemeChangeSetsTheColourKeysAgain)
{
    table->addRecord(single(QStringLiteral("10000010.SH"), 19));
    table->setItemTextColorKey(0, 6, "");
    table->themeChanged();
    EXPECT_EQ(table->model()->cellTextColorKey(0, 6), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(table->model()->cellTextColorKey(0, 3), QStringLiteral("tc_clr_priceT_fall"));
}

}  // namespace
