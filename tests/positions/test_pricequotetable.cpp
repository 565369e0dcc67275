// The price quote table and its model on their own: columns per month, the
// numeric order of strikes, colours resolved from the theme, the views, and
// the events that the header strip follows.
#include "positions/chpfpricequotedata.h"
#include "positions/chpfpricequotedatamodel.h"
#include "positions/chpfpricequotedatatable.h"
#include "positions/cpricequoteschema.h"
#include "seam/common.h"
#include "seam/uievents.h"
#include "support/testsupport.h"
#include "toolkit/ceventwidgett.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QTableView>

#include <boost/make_shared.hpp>

#include <memory>
#include <vector>

namespace {

using S = TC::CPriceQuoteSchema;

// Records the events that reach it from below.
class CRecorder : public WG::CEventWidgetT<QWidget> {
public:
    struct Event {
        int code;
        int id;
        int arg;
    };
    bool handleEvent(int code, int id, int arg, QString, void*) override
    {
        events.push_back({code, id, arg});
        return true;
    }
    bool has(int code, int id, int arg) const
    {
        for (const Event& event : events) {
            if (event.code == code && event.id == id && event.arg == arg) {
                return true;
            }
        }
        return false;
    }
    std::vector<Event> events;
};

class PriceQuoteTable : public ::testing::Test {
protected:
    void SetUp() override
    {
        host = std::make_unique<CRecorder>();
        host->resize(600, 300);
        table = new TC::CHpfPriceQuoteDataTable(12, host.get(), WG::EBaseTableMenuFlags(495));
        table->resize(600, 300);
        table->setDataModel(&model);
    }
    void TearDown() override
    {
        delete table;
        host.reset();
    }
    TC::CHpfPriceQuoteDataPtr addRow(const QString& strike)
    {
        auto row = boost::make_shared<TC::CHpfPriceQuoteData>(strike, model.monthCount);
        for (int m = 0; m < model.monthCount; ++m) {
            row->stockKeys[m] = QStringLiteral("1000%1.SH").arg(m);
        }
        model.addData(row);
        return row;
    }

    TC::CHpfPriceQuoteDataModel model;
    std::unique_ptr<CRecorder> host;
    TC::CHpfPriceQuoteDataTable* table = nullptr;
};

TEST_F(PriceQuoteTable, WithNoMonthTheModelHasOneColumn)
{
    EXPECT_EQ(model.columnCount(), 1);
    EXPECT_EQ(model.columnHeader(0), QStringLiteral("行权价格"));
    EXPECT_EQ(table->columnCount(), 1);
    EXPECT_EQ(model.getStatDispalyQString(0), QString());
    EXPECT_FALSE(model.columnFlashChange(1));
    EXPECT_EQ(model.getBackgroundColor(1), nullptr);
    EXPECT_EQ(model.columnFlag(1), 0);
}

TEST_F(PriceQuoteTable, ModelPassesTheTesterAsRowsAndMonthsChange)
{
    QAbstractItemModelTester tester(table->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.monthCount = 2;
    table->setDataModel(&model);
    EXPECT_EQ(table->columnCount(), 43);
    EXPECT_EQ(table->columnHeader(22), QStringLiteral("最新"));
    const TC::CHpfPriceQuoteDataPtr row = addRow(QStringLiteral("3.0000"));
    addRow(QStringLiteral("2.9000"));
    table->updateTable();
    EXPECT_EQ(table->adapter()->rowCount(), 2);
    row->lastPrices[1] = 0.1234;
    model.updateData(row);
    table->updateTable();
    EXPECT_EQ(table->itemText(table->rowOfKey("3.0000"), 22), QStringLiteral("0.1234"));
    table->clear();
    EXPECT_EQ(table->adapter()->rowCount(), 0);
    model.monthCount = 1;
    table->setDataModel(&model);
    EXPECT_EQ(table->columnCount(), 22);
}

TEST_F(PriceQuoteTable, StrikesSortAsNumbers)
{
    model.monthCount = 1;
    table->setDataModel(&model);
    for (const char* strike : {"10.0000", "9.5000", "2.9000A", "2.9000", "12.5000"}) {
        addRow(QString::fromLatin1(strike));
    }
    table->sortByColumn(0, 0);
    QStringList order;
    for (int position = 0; position < table->realRowCount(); ++position) {
        order << table->itemText(table->rowID(position), 0);
    }
    EXPECT_EQ(order, (QStringList{"2.9000", "2.9000A", "9.5000", "10.0000", "12.5000"}));
}

TEST_F(PriceQuoteTable, ColoursComeFromTheTheme)
{
    model.monthCount = 1;
    table->setDataModel(&model);
    const TC::CHpfPriceQuoteDataPtr row = addRow(QStringLiteral("3.0000"));
    row->changeAmounts[0] = 0.01;
    WG::CUiResource* resources = WG::CUiResource::get();
    EXPECT_EQ(row->textColor(0), resources->getColor(QStringLiteral("tc_clr_pricet_exercise_price")));
    EXPECT_EQ(row->textColor(1), resources->getColor(QStringLiteral("tc_clr_priceT_rise")));
    EXPECT_EQ(row->getBackgroundColor(1), resources->getColor(QStringLiteral("tc_clr_priceT_null_value_background")));
    row->inTheMoney = true;
    EXPECT_EQ(row->getBackgroundColor(1), resources->getColor(QStringLiteral("tc_clr_priceT_actual_value_background")));
    EXPECT_EQ(row->getBackgroundColor(0), nullptr);
    EXPECT_EQ(row->keyString(), "3.0000");
    EXPECT_EQ(row->longLongValue(3), utils::kAbsentLongLong);
    EXPECT_EQ(row->textValue(S::columnOf(0, S::PQ_CODE)), QStringLiteral("10000.SH"));
}

TEST_F(PriceQuoteTable, SetViewShowsOnlyItsSubIndexes)
{
    model.monthCount = 2;
    table->setDataModel(&model);
    for (int view = 0; view < 4; ++view) {
        table->setView(view);
        EXPECT_EQ(table->getView(), view);
        for (int column = 0; column < table->columnCount(); ++column) {
            EXPECT_EQ(table->colListVisible(column), S::visibleInView(column, view)) << view << " " << column;
        }
    }
}

TEST_F(PriceQuoteTable, SetColumnWidthAndScrollingAreReportedUnderTheTablesId)
{
    model.monthCount = 3;
    table->setDataModel(&model);
    addRow(QStringLiteral("3.0000"));
    table->updateTable();
    host->show();
    table->setColumnWidth(5, 77);
    EXPECT_TRUE(host->has(WG::UE_COLUMN_RESIZED, 12, 5));
    QScrollBar* bar = table->tableView()->horizontalScrollBar();
    ASSERT_TRUE(testsupport::waitUntil([&] { return bar->maximum() > 40; }));
    bar->setValue(40);
    EXPECT_TRUE(host->has(WG::UE_TABLE_HSCROLL, 12, -40));
}

}  // namespace
