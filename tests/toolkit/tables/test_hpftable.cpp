// High-performance tables: rows asked at paint, model changes reach the view at
// updateTable or the end of the turn, sorting by key text with rows kept.
#include "seam/common.h"
#include "support/testsupport.h"
#include "toolkit/cbasehpftablepanel.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/cstandardexhpftable.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <boost/make_shared.hpp>

#include <map>

namespace {

// A strike row: column 0 the strike text, 1 a price, 2 a volume.
class CStrikeRow : public WG::IBaseHpfTableData {
public:
    CStrikeRow(const QString& strike, double price, int volume) : strike(strike), price(price), volume(volume) {}
    QString displayText(int column) const override
    {
        switch (column) {
        case 0:
            return strike;
        case 1:
            return utils::isUsable(price) ? QString::number(price, 'f', 4) : QStringLiteral("-");
        case 2:
            return QString::number(volume);
        default:
            return QString();
        }
    }
    double doubleValue(int column) const override { return column == 1 ? price : utils::kAbsentDouble; }
    int intValue(int column) const override { return column == 2 ? volume : utils::kAbsentInt; }
    std::string keyString() const override { return strike.toStdString(); }
    const QColor* textColor(int column) const override { return column == 1 ? &priceColor : nullptr; }
    bool isFlashChange(int column) const override { return flashStamps.count(column) != 0; }
    double getChangedValue(int column) const override
    {
        auto it = flashStamps.find(column);
        return it != flashStamps.end() ? it->second : utils::kAbsentDouble;
    }

    QString strike;
    double price;
    int volume;
    QColor priceColor{Qt::red};
    std::map<int, double> flashStamps;
};

class CStrikeModel : public WG::IBaseHpfTableModel {
public:
    CStrikeModel() : WG::IBaseHpfTableModel(true) {}
    int columnCount() const override { return 3; }
    QString columnHeader(int column) const override
    {
        static const QStringList headers = {QStringLiteral("行权价格"), QStringLiteral("最新"),
                                            QStringLiteral("总量")};
        return headers.value(column);
    }
    int columnType(int column) const override
    {
        return column == 1 ? QVariant::Double : (column == 2 ? QVariant::Int : QVariant::String);
    }
    bool columnFlashChange(int column) const override { return column == 1; }
    const QColor* getBackgroundColor(int column) const override { return column == 2 ? &volumeBackground : nullptr; }
    QString getStatDispalyQString(int column) const override { return column == 2 ? stat : QString(); }
    int customSort(const WG::IBaseHpfTableDataPtr& left, const WG::IBaseHpfTableDataPtr& right) const override
    {
        if (!reverseVolume || sortColumn() != 2) {
            return 0;
        }
        return right->intValue(2) - left->intValue(2);
    }
    QString stat;
    bool reverseVolume = false;
    QColor volumeBackground{Qt::darkBlue};
};

WG::IBaseHpfTableDataPtr row(const QString& strike, double price, int volume)
{
    return boost::make_shared<CStrikeRow>(strike, price, volume);
}

class HpfTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        table = new WG::CStandardExHpfTable(5, nullptr, WG::BTMF_ALL);
        table->setDataModel(&model);
    }
    void TearDown() override { delete table; }
    CStrikeModel model;
    WG::CStandardExHpfTable* table = nullptr;
};

TEST_F(HpfTableTest, AdapterPassesTheModelTesterThroughAddsUpdatesAndRemovals)
{
    QAbstractItemModelTester tester(table->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.addData(row(QStringLiteral("2.800"), 0.1, 10));
    model.addData(row(QStringLiteral("2.900"), 0.05, 20));
    table->updateTable();
    EXPECT_EQ(table->rowCount(), 2);
    model.addData(row(QStringLiteral("2.800"), 0.12, 11));
    model.removeDataByKey("2.900");
    table->updateTable();
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("0.1200"));
    table->clear();
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(table->columnCount(), 3);
    EXPECT_NE(table->getPanel(), nullptr);
}

TEST_F(HpfTableTest, RowsAreAskedNotCopiedAndNewRowsArriveByInsertion)
{
    model.addData(row(QStringLiteral("3.000"), 0.2, 5));
    table->updateTable();
    QSignalSpy inserted(table->adapter(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(table->adapter(), &QAbstractItemModel::dataChanged);
    QSignalSpy reset(table->adapter(), &QAbstractItemModel::modelReset);
    for (int i = 0; i < 50; ++i) {
        model.addData(row(QStringLiteral("%1").arg(3.1 + i * 0.1, 0, 'f', 3), 0.1, i));
    }
    EXPECT_EQ(table->rowCount(), 1) << "the view's row count changes only at a sync";
    table->updateTable();
    EXPECT_EQ(table->rowCount(), 51);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(changed.count(), 0) << "rows only appended leave the old ones unasked";
    EXPECT_EQ(reset.count(), 0);
    // A known key replaced in place changes an old row: the old rows are reported.
    model.addData(row(QStringLiteral("3.000"), 0.25, 6));
    table->updateTable();
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).value<QModelIndex>().row(), 0);
    EXPECT_EQ(changed.at(0).at(1).value<QModelIndex>().row(), 50);
    // A value changed inside a row the model holds shows at the next paint; the
    // table learns of it from notifyChanged and repaints once.
    auto* first = static_cast<CStrikeRow*>(model.getData(0).get());
    first->price = 0.3;
    model.notifyChanged();
    EXPECT_TRUE(testsupport::waitUntil([&] { return changed.count() == 2; }, 1000));
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("0.3000"));
}

// The painter reads a row once per cell; what it reads must be what the roles give.
TEST_F(HpfTableTest, ThePaintersDirectReadAgreesWithTheRoles)
{
    model.addData(row(QStringLiteral("2.800"), 0.1, 10));
    model.addData(row(QStringLiteral("2.900"), utils::kAbsentDouble, 20));
    table->updateTable();
    WG::CHpfTableAdapterModel* adapter = table->adapter();
    for (int r = 0; r < adapter->rowCount(); ++r) {
        for (int c = 0; c < adapter->columnCount(); ++c) {
            const QModelIndex index = adapter->index(r, c);
            WG::CHpfTableAdapterModel::CellPaint cell;
            ASSERT_TRUE(adapter->cellPaint(r, c, cell));
            EXPECT_EQ(cell.text, index.data(Qt::DisplayRole).toString());
            EXPECT_EQ(cell.alignment, index.data(Qt::TextAlignmentRole).toInt());
            EXPECT_EQ(cell.textColor, index.data(WG::CTableCellModel::TextColorRole).value<QColor>());
            EXPECT_EQ(cell.background, index.data(WG::CTableCellModel::BackgroundColorRole).value<QColor>());
        }
    }
    EXPECT_EQ(adapter->index(0, 1).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
    WG::CHpfTableAdapterModel::CellPaint price;
    WG::CHpfTableAdapterModel::CellPaint volume;
    ASSERT_TRUE(adapter->cellPaint(0, 1, price));
    ASSERT_TRUE(adapter->cellPaint(0, 2, volume));
    EXPECT_EQ(price.textColor, QColor(Qt::red)) << "the row's own colour";
    EXPECT_EQ(volume.background, QColor(Qt::darkBlue)) << "the model's column colour where the row has none";
    EXPECT_FALSE(volume.textColor.isValid());
    WG::CHpfTableAdapterModel::CellPaint outside;
    EXPECT_FALSE(adapter->cellPaint(2, 0, outside)) << "a row the view has not been told of";
    EXPECT_FALSE(adapter->cellPaint(0, 3, outside));
}

TEST_F(HpfTableTest, CellsChangedInPlaceReportJustTheirRangeCutToWhatIsShown)
{
    QAbstractItemModelTester tester(table->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.addData(row(QStringLiteral("2.800"), 0.1, 10));
    model.addData(row(QStringLiteral("2.900"), 0.05, 20));
    table->updateTable();
    QSignalSpy changed(table->adapter(), &QAbstractItemModel::dataChanged);
    table->adapter()->cellsChanged(1, 1, 1, 2);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex(), table->adapter()->index(1, 1));
    EXPECT_EQ(changed.at(0).at(1).toModelIndex(), table->adapter()->index(1, 2));
    table->adapter()->cellsChanged(0, 9, 2, 9);  // cut to two rows and three columns
    ASSERT_EQ(changed.count(), 2);
    EXPECT_EQ(changed.at(1).at(1).toModelIndex(), table->adapter()->index(1, 2));
    table->adapter()->cellsChanged(5, 6, 0, 1);  // rows not shown: nothing
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(HpfTableTest, StrikeKeysSortNumericallyAndRowsKeepTheirIds)
{
    for (const char* strike : {"2.800", "10.000", "2.750", "3.100"}) {
        model.addData(row(QString::fromLatin1(strike), 0.1, 1));
    }
    table->updateTable();
    table->sortByColumn(0, 0);
    QStringList shown;
    for (int position = 0; position < table->rowCount(); ++position) {
        shown << table->itemText(table->rowID(position), 0);
    }
    EXPECT_EQ(shown, (QStringList{"2.750", "2.800", "3.100", "10.000"}));
    EXPECT_EQ(table->rowID(0), 2);
    EXPECT_EQ(table->rowData(1)->qsKey(), QStringLiteral("10.000"));
}

TEST_F(HpfTableTest, NumericColumnsSortByValueAndCustomSortWins)
{
    model.addData(row(QStringLiteral("a"), 1.0, 30));
    model.addData(row(QStringLiteral("b"), 1.0, 4));
    model.addData(row(QStringLiteral("c"), 1.0, 200));
    table->updateTable();
    table->sortByColumn(2, 0);
    EXPECT_EQ(table->rowID(0), 1);
    EXPECT_EQ(table->rowID(2), 2);
    model.reverseVolume = true;
    table->sortByColumn(2, 0);
    EXPECT_EQ(table->rowID(0), 2) << "the model's own order: largest volume first";
}

TEST_F(HpfTableTest, FlashFollowsTheRowsChangeTime)
{
    auto data = boost::make_shared<CStrikeRow>(QStringLiteral("2.800"), 0.1, 1);
    model.addData(data);
    table->setFlashDuration(100);
    table->updateTable();
    EXPECT_FALSE(table->isCellFlashing(0, 1));
    data->flashStamps[1] = utils::clockMSec();
    data->flashStamps[2] = utils::clockMSec();
    EXPECT_TRUE(table->isCellFlashing(0, 1));
    EXPECT_FALSE(table->isCellFlashing(0, 2)) << "the model says column 2 doesn't flash";
    EXPECT_TRUE(testsupport::waitUntil([&] { return !table->isCellFlashing(0, 1); }, 2000));
}

TEST_F(HpfTableTest, StatisticsComeFromTheModel)
{
    model.stat = QStringLiteral("12,345");
    model.addData(row(QStringLiteral("2.800"), 0.1, 1));
    table->updateTable();
    EXPECT_EQ(table->statText(2), QStringLiteral("12,345"));
    EXPECT_TRUE(table->statRowVisible());
}

TEST_F(HpfTableTest, RemoveRowRemovesByKeyAndAModelThatDiesFirstLeavesAnEmptyTable)
{
    model.addData(row(QStringLiteral("x"), 0.1, 1));
    model.addData(row(QStringLiteral("y"), 0.1, 1));
    table->updateTable();
    table->removeRow(0);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->rowData(0)->qsKey(), QStringLiteral("y"));
    EXPECT_EQ(table->rowOfKey("y"), 0);
    {
        CStrikeModel shortLived;
        shortLived.addData(row(QStringLiteral("z"), 0.1, 1));
        table->setDataModel(&shortLived);
        EXPECT_EQ(table->rowCount(), 1);
    }
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(table->columnCount(), 0);
}

}  // namespace
