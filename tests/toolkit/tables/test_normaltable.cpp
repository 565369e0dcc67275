// Normal tables: cells in a model, coalesced repaint, sorting with ids, layout
// strings, cell events, statistics row, flashing, item widgets, column visibility.
#include "seam/uievents.h"
#include "support/testsupport.h"
#include "toolkit/coddevenrowtable.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <cstdio>
#include <vector>

namespace {

struct SeenEvent {
    int code;
    int id;
    int arg;
    QString text;
    void* data;
};

// A parent that records what reaches it.
class CRecordingParent : public WG::CBaseWidget {
public:
    CRecordingParent() : WG::CBaseWidget(QStringLiteral("parent"), false, nullptr) {}
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        events.push_back({code, id, arg, text, data});
        return consume;
    }
    std::vector<SeenEvent> events;
    bool consume = false;
    std::vector<SeenEvent> ofCode(int code) const
    {
        std::vector<SeenEvent> found;
        for (const SeenEvent& event : events) {
            if (event.code == code) {
                found.push_back(event);
            }
        }
        return found;
    }
};

class NormalTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        parent.resize(600, 300);
        table = new WG::COddEvenRowTable(1000, &parent, WG::BTMF_ALL);
        table->setGeometry(0, 0, 600, 300);
        table->setColumnCount(4);
        table->setColumnHeader(0, QStringLiteral("合约代码"));
        table->setColumnHeader(1, QStringLiteral("最新价"));
        table->setColumnHeader(2, QStringLiteral("购<行权价>沽"));
        table->setColumnHeader(3, QStringLiteral("总量"));
    }
    CRecordingParent parent;
    WG::COddEvenRowTable* table = nullptr;
};

TEST_F(NormalTableTest, ModelPassesTheModelTesterThroughWritesAndStructureChanges)
{
    QAbstractItemModelTester tester(table->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QVector<int> ids = table->setRowCount(5);
    ASSERT_EQ(ids, (QVector<int>{0, 1, 2, 3, 4}));
    for (int row = 0; row < 5; ++row) {
        table->setItemText(row, 0, QStringLiteral("1000%1").arg(row), true);
        table->setItemDouble(row, 1, 0.1 * row, 4, utils::FNF_NONE, true);
    }
    table->updateTable();
    table->appendRow();
    table->removeRow(2);
    table->addColumn();
    table->removeColumn(1);
    table->clear();
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(table->columnCount(), 4);
}

TEST_F(NormalTableTest, ManyWritesInOneTickGiveOneRangedDataChangedPerRunOfRows)
{
    table->setRowCount(60);
    table->updateTable();
    QSignalSpy spy(table->model(), &QAbstractItemModel::dataChanged);
    for (int row = 3; row < 40; ++row) {
        for (int column = 1; column < 4; ++column) {
            table->setItemDouble(row, column, row * 1.5 + column, 2, utils::FNF_SEGMENTED, true);
        }
    }
    table->setItemTextColorKey(50, 2, "clr_global_rise", true);
    table->setItemText(40, 0, QStringLiteral("x"), true);  // joins the run of rows 3 to 39
    EXPECT_EQ(spy.count(), 0) << "writes are held until the end of the turn";
    table->updateTable();
    ASSERT_EQ(spy.count(), 2) << "rows 3 to 40, then row 50 on its own";
    auto range = [&](int i) {
        const QModelIndex topLeft = spy.at(i).at(0).value<QModelIndex>();
        const QModelIndex bottomRight = spy.at(i).at(1).value<QModelIndex>();
        return QRect(QPoint(topLeft.column(), topLeft.row()), QPoint(bottomRight.column(), bottomRight.row()));
    };
    EXPECT_EQ(range(0), QRect(QPoint(0, 3), QPoint(3, 40)));
    EXPECT_EQ(range(1), QRect(QPoint(2, 50), QPoint(2, 50)));
    // Writing the same values again changes nothing and signals nothing.
    for (int row = 3; row < 40; ++row) {
        for (int column = 1; column < 4; ++column) {
            table->setItemDouble(row, column, row * 1.5 + column, 2, utils::FNF_SEGMENTED, true);
        }
    }
    table->updateTable();
    EXPECT_EQ(spy.count(), 2);

    // Rows changed far apart from each other: past a few runs, one range covers them all.
    spy.clear();
    for (int row = 0; row < 60; row += 3) {
        table->setItemInt(row, 1 + (row / 3) % 3, row, utils::FNF_NONE, true);
    }
    table->updateTable();
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(range(0), QRect(QPoint(1, 0), QPoint(3, 57)));
}

TEST_F(NormalTableTest, PendingWritesFlushOnTheNextTurnOfTheEventLoop)
{
    table->setRowCount(3);
    table->updateTable();
    QSignalSpy spy(table->model(), &QAbstractItemModel::dataChanged);
    table->setItemText(0, 0, QStringLiteral("a"), true);
    table->setItemText(1, 3, QStringLiteral("b"), true);
    EXPECT_TRUE(testsupport::waitUntil([&] { return spy.count() > 0; }, 1000));
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(NormalTableTest, NumbersFormatAndAbsentValuesShowTheInvalidText)
{
    table->setRowCount(2);
    table->setItemDouble(0, 1, 12345.678, 2, utils::FNF_SEGMENTED, true);
    table->setItemDouble(1, 1, utils::kAbsentDouble, 2, utils::FNF_NONE, true);
    table->setItemInt(0, 3, 1234567, utils::FNF_SEGMENTED, true);
    table->setItemInt(1, 3, utils::kAbsentInt, utils::FNF_NONE, true);
    table->setItemDouble(0, 2, 0.1234, 2, utils::FNF_PERCENT, true);
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("12,345.68"));
    EXPECT_EQ(table->itemText(1, 1), table->invalidText());
    EXPECT_EQ(table->itemText(0, 3), QStringLiteral("1,234,567"));
    EXPECT_EQ(table->itemText(1, 3), table->invalidText());
    EXPECT_EQ(table->itemText(0, 2), QStringLiteral("12.34%"));
    EXPECT_DOUBLE_EQ(table->itemDouble(0, 1), 12345.678);
    EXPECT_EQ(table->itemInt(0, 3), 1234567);
    EXPECT_TRUE(utils::isAbsent(table->itemDouble(1, 1)));
    table->setNumberTextInfo(QStringLiteral("非法值"), 0);
    table->setItemDouble(1, 2, utils::kAbsentDouble, 2, utils::FNF_NONE, true);
    EXPECT_EQ(table->itemText(1, 2), QStringLiteral("非法值"));
    // Numbers stand right, plain text left.
    table->setItemText(1, 0, QStringLiteral("认购"), true);
    EXPECT_TRUE(table->model()->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    EXPECT_TRUE(table->model()->index(1, 0).data(Qt::TextAlignmentRole).toInt() & Qt::AlignLeft);
}

TEST_F(NormalTableTest, StrikeTextsSortNumericallyAndRowsKeepTheirIds)
{
    const QStringList strikes = {QStringLiteral("2.800"), QStringLiteral("10.000"), QStringLiteral("2.750"),
                                 QStringLiteral("3.100"), QStringLiteral("2.900")};
    table->setRowCount(strikes.size());
    for (int row = 0; row < strikes.size(); ++row) {
        table->setItemText(row, 2, strikes[row], true);
        table->setItemText(row, 0, QStringLiteral("code%1").arg(row), true);
    }
    table->sortByColumn(2, 0);
    EXPECT_EQ(table->getSortOrder(), 0);
    QStringList shown;
    QVector<int> ids;
    for (int position = 0; position < table->rowCount(); ++position) {
        ids << table->rowID(position);
        shown << table->itemText(table->rowID(position), 2);
    }
    EXPECT_EQ(shown, (QStringList{"2.750", "2.800", "2.900", "3.100", "10.000"}));
    EXPECT_EQ(ids, (QVector<int>{2, 0, 4, 3, 1}));
    // A row is still addressed by its id after the sort.
    EXPECT_EQ(table->itemText(1, 0), QStringLiteral("code1"));
    table->sortByColumn(2, 1);
    EXPECT_EQ(table->rowID(0), 1);
    EXPECT_EQ(table->getSortOrder(), 1);
    // 2 and 3 sort afresh on the current column when the column is none of ours.
    table->sortByColumn(54228, 2);
    EXPECT_EQ(table->getSortColumn(), 2);
    EXPECT_EQ(table->getSortOrder(), 0);
    EXPECT_EQ(table->rowID(0), 2);
    // A later write moves the row to its place.
    table->setItemText(1, 2, QStringLiteral("1.000"), true);
    table->updateTable();
    EXPECT_EQ(table->rowID(0), 1);
}

TEST_F(NormalTableTest, LayoutStringRoundTripsAndIsFreeOfSeparators)
{
    table->setRowCount(3);
    table->setColumnWidth(0, 90);
    table->setColumnWidth(1, 55);
    table->moveColumn(3, 0);
    table->setColumnVisible(1, false);
    table->sortByColumn(3, 1);
    const QString saved = table->saveConfigStr();
    EXPECT_FALSE(saved.contains(QLatin1Char('|')));
    EXPECT_FALSE(saved.contains(QLatin1Char(';')));

    WG::CStandardTable other(7, nullptr, WG::BTMF_NONE);
    other.setColumnCount(4);
    other.setRowCount(3);
    other.loadConfigStr(saved);
    EXPECT_EQ(other.columnID(0), 3);
    EXPECT_EQ(other.columnWidth(0), 90);
    EXPECT_EQ(other.columnWidth(1), 55) << "a hidden column keeps its width";
    EXPECT_FALSE(other.columnVisible(1));
    EXPECT_TRUE(other.columnVisible(2));
    EXPECT_EQ(other.getSortColumn(), 3);
    EXPECT_EQ(other.getSortOrder(), 1);
    EXPECT_EQ(other.saveConfigStr(), saved);
}

class GarbageLayout : public ::testing::TestWithParam<QString> {};

TEST_P(GarbageLayout, IsIgnoredAndLeavesTheLayoutAsItWas)
{
    WG::CStandardTable table(1, nullptr, WG::BTMF_NONE);
    table.setColumnCount(3);
    table.setColumnWidth(0, 70);
    const QString before = table.saveConfigStr();
    table.loadConfigStr(GetParam());
    EXPECT_EQ(table.saveConfigStr(), before) << "input: " << GetParam().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Inputs, GarbageLayout,
                         ::testing::Values(QString(), QStringLiteral("garbage"), QStringLiteral("v1"),
                                           QStringLiteral("v1,x,0"), QStringLiteral("v1,0,7"),
                                           QStringLiteral("v1,0,0,0:50"), QStringLiteral("v1,0,0,0:50:1,0:60:1"),
                                           QStringLiteral("v1,0,0,-1:50:1"), QStringLiteral("v1,0,0,0:99999:1"),
                                           QStringLiteral("v1,0,0,0:50:2"), QStringLiteral("v2,0,0,0:50:1"),
                                           QStringLiteral("v1,0,0,0:50:1,,"),
                                           QStringLiteral("\xe4\xb8\xad:\x01,;|")));

TEST_F(NormalTableTest, LayoutOfAWiderTableAppliesToTheColumnsThatExist)
{
    table->loadConfigStr(QStringLiteral("v1,-1,-1,9:40:1,2:66:1,0:70:0"));
    EXPECT_EQ(table->columnID(0), 2);
    EXPECT_EQ(table->columnWidth(2), 66);
    EXPECT_FALSE(table->columnVisible(0));
}

TEST_F(NormalTableTest, CellClicksDeliverTheirEventsWithRowAndColumn)
{
    parent.show();
    table->setRowCount(3);
    for (int row = 0; row < 3; ++row) {
        table->setItemText(row, 2, QString::number(3 - row), true);
    }
    table->sortByColumn(2, 0);  // row 2 now shows first
    table->updateTable();
    QTableView* view = table->tableView();
    const QRect cell = view->visualRect(view->model()->index(0, 1));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    auto primary = parent.ofCode(WG::UE_CELL_PRIMARY);
    ASSERT_EQ(primary.size(), 1u);
    EXPECT_EQ(primary[0].id, 1000);
    EXPECT_EQ(primary[0].arg, 2);
    EXPECT_EQ(primary[0].text, QStringLiteral("1"));

    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    auto activated = parent.ofCode(WG::UE_CELL_ACTIVATED);
    ASSERT_EQ(activated.size(), 1u);
    EXPECT_EQ(activated[0].arg, 2);
    EXPECT_EQ(activated[0].text, QStringLiteral("1"));

    parent.consume = true;  // the owner takes the right click, so no built-in menu opens
    const QRect other = view->visualRect(view->model()->index(2, 3));
    QTest::mouseClick(view->viewport(), Qt::RightButton, {}, other.center());
    auto secondary = parent.ofCode(WG::UE_CELL_SECONDARY);
    ASSERT_EQ(secondary.size(), 1u);
    EXPECT_EQ(secondary[0].id, 1000);
    EXPECT_EQ(secondary[0].arg, 0);
    EXPECT_EQ(secondary[0].text, QStringLiteral("3"));

    table->setItemDblClickEnabled(1, false);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(parent.ofCode(WG::UE_CELL_ACTIVATED).size(), 1u) << "double click is off for column 1";
}

TEST_F(NormalTableTest, HorizontalScrollReportsTheNegatedOffsetAndZeroWithoutABar)
{
    parent.show();
    table->setRowCount(2);
    table->handleEvent(WG::UE_TABLE_HSCROLL, 0, 0, QString(), nullptr);
    auto first = parent.ofCode(WG::UE_TABLE_HSCROLL);
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].id, 1000);
    EXPECT_EQ(first[0].arg, 0);

    for (int column = 0; column < 4; ++column) {
        table->setColumnWidth(column, 400);
    }
    QScrollBar* bar = table->tableView()->horizontalScrollBar();
    ASSERT_TRUE(testsupport::waitUntil([&] { return bar->maximum() > 0; }, 2000));
    bar->setValue(120);
    auto events = parent.ofCode(WG::UE_TABLE_HSCROLL);
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events.back().id, 1000);
    EXPECT_EQ(events.back().arg, -120);
}

TEST_F(NormalTableTest, ColumnResizeDeliversTheColumn)
{
    table->setColumnWidth(2, 123);
    auto resized = parent.ofCode(WG::UE_COLUMN_RESIZED);
    ASSERT_FALSE(resized.empty());
    EXPECT_EQ(resized.back().id, 1000);
    EXPECT_EQ(resized.back().arg, 2);
}

TEST_F(NormalTableTest, StatisticsRowShowsOnlyWithText)
{
    EXPECT_FALSE(table->statRowVisible());
    table->setStatText(3, QStringLiteral("1,234"));
    EXPECT_TRUE(table->statRowVisible());
    EXPECT_EQ(table->statText(3), QStringLiteral("1,234"));
    EXPECT_EQ(table->statText(2), QString());
    table->setStatText(3, QString());
    EXPECT_FALSE(table->statRowVisible());
}

TEST_F(NormalTableTest, AChangedCellOfAFlashingColumnFlashesBriefly)
{
    table->setRowCount(2);
    table->setColumnFlashChange(1, true);
    table->setFlashDuration(150);
    table->setItemDouble(0, 1, 1.0, 2, utils::FNF_NONE, true);
    table->setItemDouble(0, 3, 1.0, 2, utils::FNF_NONE, true);
    EXPECT_FALSE(table->isCellFlashing(0, 1)) << "a first value is no change";
    table->setItemDouble(0, 1, 1.5, 2, utils::FNF_NONE, true);
    table->setItemDouble(0, 3, 1.5, 2, utils::FNF_NONE, true);
    EXPECT_TRUE(table->isCellFlashing(0, 1));
    EXPECT_FALSE(table->isCellFlashing(0, 3)) << "column 3 doesn't flash";
    EXPECT_FALSE(table->isCellFlashing(1, 1));
    EXPECT_TRUE(testsupport::waitUntil([&] { return !table->isCellFlashing(0, 1); }, 2000));
}

TEST_F(NormalTableTest, ItemWidgetsLiveInTheirCellsAndFollowRemoval)
{
    parent.show();
    table->setRowCount(3);
    auto* first = new QPushButton(QStringLiteral("开"));
    table->setItemWidget(1, 2, first, WG::AL_CENTER, true);
    EXPECT_EQ(table->itemWidget(1, 2), first);
    QPointer<QPushButton> replaced = first;
    auto* second = new QPushButton(QStringLiteral("平"));
    table->setItemWidget(1, 2, second, WG::AL_CENTER, true);
    EXPECT_EQ(table->itemWidget(1, 2), second);
    table->updateTable();  // the tick's end: the old widget makes way and waits for the event loop
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(replaced.isNull()) << "the old widget is deleted";
    table->removeRow(0);
    EXPECT_EQ(table->itemWidget(0, 2), second) << "row 1 became row 0";
    EXPECT_EQ(table->itemWidget(1, 2), nullptr);
    table->clear();
    EXPECT_EQ(table->itemWidget(0, 2), nullptr);
}

TEST_F(NormalTableTest, ColumnVisibilityInViewAndInTheColumnList)
{
    table->setColumnVisible(1, false);
    EXPECT_FALSE(table->columnVisible(1));
    EXPECT_TRUE(table->colListVisible(1));
    EXPECT_TRUE(table->tableView()->isColumnHidden(1));
    table->setColumnVisible(1, true);
    EXPECT_FALSE(table->tableView()->isColumnHidden(1));
    table->setColListVisible(3, false);
    EXPECT_FALSE(table->columnVisible(3));
    EXPECT_FALSE(table->colListVisible(3));
    EXPECT_TRUE(table->tableView()->isColumnHidden(3));
    table->setColListVisible(3, true);
    EXPECT_TRUE(table->columnVisible(3));
}

TEST_F(NormalTableTest, LockedColumnsStandFirst)
{
    table->setColumnLocked(2, true);
    EXPECT_EQ(table->columnID(0), 2);
    table->moveColumn(2, 3);
    EXPECT_EQ(table->columnID(0), 2) << "a locked column can't be moved away";
}

TEST_F(NormalTableTest, EditedCellsPassThroughTheEditEvents)
{
    table->setRowCount(2);
    table->setColumnEditable(1, true);
    table->setItemText(0, 1, QStringLiteral("1"), true);
    parent.show();
    table->updateTable();
    QTableView* view = table->tableView();
    const QModelIndex index = view->model()->index(0, 1);
    view->edit(index);
    auto* editor = view->indexWidget(index);
    ASSERT_NE(editor, nullptr);
    auto* line = qobject_cast<QLineEdit*>(editor);
    ASSERT_NE(line, nullptr);
    line->setText(QStringLiteral("42"));
    QTest::keyClick(line, Qt::Key_Return);
    testsupport::waitUntil([&] { return !parent.ofCode(WG::UE_CELL_EDIT_COMMITTED).empty(); }, 1000);
    auto editing = parent.ofCode(WG::UE_CELL_EDITING);
    auto committed = parent.ofCode(WG::UE_CELL_EDIT_COMMITTED);
    ASSERT_EQ(editing.size(), 1u);
    ASSERT_EQ(committed.size(), 1u);
    EXPECT_EQ(committed[0].arg, 0);
    EXPECT_EQ(committed[0].text, QStringLiteral("1"));
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("42"));
}

TEST_F(NormalTableTest, ExportWritesVisibleColumnsInViewOrder)
{
    table->setRowCount(2);
    table->setItemText(0, 0, QStringLiteral("10001"), true);
    table->setItemText(1, 0, QStringLiteral("a,b"), true);
    table->setColumnVisible(3, false);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.csv"));
    ASSERT_TRUE(table->exportData(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll()).remove(QChar(0xFEFF));
    const QStringList lines = text.trimmed().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], QStringLiteral("合约代码,最新价,购<行权价>沽"));
    EXPECT_EQ(lines[2], QStringLiteral("\"a,b\",,"));
}

TEST_F(NormalTableTest, FilterHidesRowsAndKeepsIds)
{
    table->setRowCount(4);
    for (int row = 0; row < 4; ++row) {
        table->setItemText(row, 0, row % 2 == 0 ? QStringLiteral("认购") : QStringLiteral("认沽"), true);
        table->setItemDouble(row, 1, row * 10.0, 1, utils::FNF_NONE, true);
    }
    table->filterColumn(0, qMakePair(WG::FLT_INCLUDE, QSet<QString>{QStringLiteral("认沽")}));
    EXPECT_EQ(table->realRowCount(), 2);
    EXPECT_EQ(table->rowID(0), 1);
    EXPECT_EQ(table->rowID(1), 3);
    table->clearFilter();
    table->filterColumnRange(1, 5.0, 25.0);
    EXPECT_EQ(table->realRowCount(), 2);
    table->clearFilter();
    EXPECT_EQ(table->realRowCount(), 4);
}

TEST_F(NormalTableTest, SelectedRowFollowsItsIdUnderSorting)
{
    table->setRowCount(3);
    for (int row = 0; row < 3; ++row) {
        table->setItemText(row, 2, QString::number(3 - row), true);
    }
    table->sortByColumn(2, 0);
    table->setSelectedRow(0);
    EXPECT_EQ(table->selectedRow(), 0);
    EXPECT_EQ(table->rowPosition(0), 2);
}

}  // namespace

namespace {

// Colour keys come as C strings; one written from a buffer that is then
// rewritten in place must still give the new key.
TEST_F(NormalTableTest, ColourKeysFromAReusedBufferKeepTheirNewText)
{
    table->setRowCount(1);
    const auto keyOf = [this](int role) {
        return table->tableView()->model()->index(0, 1).data(role).toString();
    };
    char buffer[32] = "clr_global_rise";
    table->setItemTextColorKey(0, 1, buffer, true);
    table->setItemBackgroundColorKey(0, 1, buffer, true);
    EXPECT_EQ(keyOf(WG::CTableCellModel::TextColorKeyRole), QStringLiteral("clr_global_rise"));
    std::snprintf(buffer, sizeof buffer, "%s", "clr_global_fall");
    table->setItemTextColorKey(0, 1, buffer, true);
    table->setItemBackgroundColorKey(0, 1, buffer, true);
    EXPECT_EQ(keyOf(WG::CTableCellModel::TextColorKeyRole), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(keyOf(WG::CTableCellModel::BackgroundKeyRole), QStringLiteral("clr_global_fall"));
    table->setItemTextColorKey(0, 1, nullptr, true);
    EXPECT_TRUE(keyOf(WG::CTableCellModel::TextColorKeyRole).isEmpty());
}

}  // namespace

TEST_F(NormalTableTest, HeadersTakeRoomForTheSortArrowOnlyWhereItShows)
{
    table->setRowCount(2);
    table->setItemText(0, 0, QStringLiteral("1"), true);  // content narrower than the header
    table->updateTable();
    table->adjustColumnWidth();
    const int unsorted = table->columnWidth(0);
    table->sortByColumn(0, WG::TSO_ASCENDING);
    const int sorted = table->columnWidth(0);
    EXPECT_EQ(sorted - unsorted, 8) << "the arrow's room comes with the sort";
    table->sortByColumn(3, WG::TSO_ASCENDING);
    table->adjustColumnWidth();
    EXPECT_EQ(table->columnWidth(0), unsorted) << "and goes when the next fit finds another sorted column";
    // The header text still fits: its advance in the bold cell font plus the padding of both sides.
    const QFontMetrics bold(*WG::CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_heavy_fix")));
    EXPECT_GE(unsorted, bold.horizontalAdvance(QStringLiteral("合约代码")) + 8);
}
