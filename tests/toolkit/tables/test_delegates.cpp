// Column delegates: check boxes (exclusive mode, event 232), push buttons (event
// 235), combos, spin boxes and texts, all named by row key.
#include "seam/uievents.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumncomboxdelegate.h"
#include "toolkit/cbasetablecolumndoublespinboxdelegate.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/cbasetablecolumnsimpletextdelegate.h"
#include "toolkit/cstandardtable.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <vector>

namespace {

struct Seen {
    int code;
    int id;
    int arg;
    QString text;
};

// A table that records what reaches its own handler, as the strategy table does.
class CRecordingTable : public WG::CStandardTable {
public:
    CRecordingTable() : WG::CStandardTable(0, nullptr, WG::BTMF_NONE) {}
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        seen.push_back({code, id, arg, text});
        return WG::CStandardTable::handleEvent(code, id, arg, text, data);
    }
    std::vector<Seen> ofCode(int code) const
    {
        std::vector<Seen> found;
        for (const Seen& event : seen) {
            if (event.code == code) {
                found.push_back(event);
            }
        }
        return found;
    }
    std::vector<Seen> seen;
};

class DelegateTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        table.resize(500, 200);
        table.setColumnCount(4);
        table.setRowCount(3);
        check = new WG::CBaseTableColumnCheckBoxDelegate(0, nullptr);
        button = new WG::CBaseTableColumnPushButtonDelegate(1, nullptr);
        table.setColumnDelegate(0, check);
        table.setColumnDelegate(1, button);
        for (int row = 0; row < 3; ++row) {
            const std::string key = std::to_string(row);
            check->setItemVisible(key, true, false);
            check->setItemEnabled(key, true, false);
            button->setItemText(key, QStringLiteral("买入"), WG::UT_NONE);
            button->setItemType(key, WG::NBT_CRITICAL, WG::UT_NONE);
        }
        table.show();
    }
    QPoint cellCenter(int row, int column)
    {
        QTableView* view = table.tableView();
        return view->visualRect(view->model()->index(table.rowPosition(row), column)).center();
    }
    CRecordingTable table;
    WG::CBaseTableColumnCheckBoxDelegate* check = nullptr;
    WG::CBaseTableColumnPushButtonDelegate* button = nullptr;
};

TEST_F(DelegateTest, ClickingACheckBoxTicksItAndDelivers232WithTheRowKey)
{
    QSignalSpy spy(check, &WG::CBaseTableColumnCheckBoxDelegate::sigItemCheckChanged);
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cellCenter(1, 0));
    EXPECT_TRUE(check->itemChecked("1"));
    ASSERT_EQ(spy.count(), 1);
    auto events = table.ofCode(WG::UE_DELEGATE_CHECK_CHANGED);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 0) << "the column";
    EXPECT_EQ(events[0].arg, 2);
    EXPECT_EQ(events[0].text, QStringLiteral("1"));
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cellCenter(1, 0));
    EXPECT_FALSE(check->itemChecked("1"));
    EXPECT_EQ(table.ofCode(WG::UE_DELEGATE_CHECK_CHANGED).back().arg, 0);
}

TEST_F(DelegateTest, SilentTicksDeliverNothingAndExclusiveModeKeepsOneRow)
{
    check->setItemChecked("0", true, false);
    check->setItemChecked("2", true, false);
    EXPECT_TRUE(table.ofCode(WG::UE_DELEGATE_CHECK_CHANGED).empty());
    EXPECT_EQ(check->checkedKeys().size(), 2u);
    check->setExclusive(true);
    EXPECT_EQ(check->checkedKeys().size(), 1u);
    check->setItemChecked("1", true, true, true);
    EXPECT_TRUE(check->itemChecked("1"));
    EXPECT_FALSE(check->itemChecked("0"));
    EXPECT_FALSE(check->itemChecked("2"));
    auto events = table.ofCode(WG::UE_DELEGATE_CHECK_CHANGED);
    ASSERT_EQ(events.size(), 2u) << "the untick of the other row, then the tick";
    EXPECT_EQ(events[0].arg, 0);
    EXPECT_EQ(events[1].arg, 2);
    EXPECT_EQ(events[1].text, QStringLiteral("1"));
}

TEST_F(DelegateTest, DisabledOrHiddenCheckBoxesIgnoreClicks)
{
    check->setItemEnabled("2", false);
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cellCenter(2, 0));
    EXPECT_FALSE(check->itemChecked("2"));
    EXPECT_TRUE(table.ofCode(WG::UE_DELEGATE_CHECK_CHANGED).empty());
    EXPECT_FALSE(check->itemChecked("unknown"));
}

TEST_F(DelegateTest, PressingAButtonDelivers235WithColumnAndRowKey)
{
    table.setItemText(0, 2, QStringLiteral("b"), true);
    table.setItemText(2, 2, QStringLiteral("a"), true);
    table.setItemText(1, 2, QStringLiteral("c"), true);
    table.sortByColumn(2, 0);  // row 2 shows first: keys stay row ids
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cellCenter(2, 1));
    auto events = table.ofCode(WG::UE_DELEGATE_BUTTON_CLICKED);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 1);
    EXPECT_EQ(events[0].text, QStringLiteral("2"));
    EXPECT_EQ(button->itemType("2"), WG::NBT_CRITICAL);
    button->setItemVisible("0", false);
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cellCenter(0, 1));
    EXPECT_EQ(table.ofCode(WG::UE_DELEGATE_BUTTON_CLICKED).size(), 1u) << "a hidden button takes no press";
    EXPECT_EQ(table.itemTextFromAll(2, 1), QStringLiteral("买入"));
}

TEST_F(DelegateTest, RemovingARowDropsItsDelegateState)
{
    check->setItemChecked("1", true);
    table.removeRow(1);
    EXPECT_FALSE(check->itemChecked("1"));
    table.clear();
    EXPECT_EQ(check->itemCount(), 0u);
}

TEST(ComboDelegate, ItemsAndDatasPerKeyAndAChoiceDelivers236)
{
    CRecordingTable table;
    table.setColumnCount(2);
    table.setRowCount(2);
    auto* combo = new WG::CBaseTableColumnComboxDelegate(1, nullptr);
    table.setColumnDelegate(1, combo);
    combo->setItems("0", {QStringLiteral("限价"), QStringLiteral("市价")}, {11, 27});
    EXPECT_EQ(combo->currentIndex("0"), 0);
    EXPECT_EQ(combo->currentData("0").toInt(), 11);
    EXPECT_EQ(combo->items("1"), QStringList());
    combo->setCurrentIndex("0", 1, true);
    EXPECT_EQ(combo->currentData("0").toInt(), 27);
    EXPECT_EQ(table.itemTextFromAll(0, 1), QStringLiteral("市价"));
    auto events = table.ofCode(WG::UE_DELEGATE_COMBO_CHANGED);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 1);
    EXPECT_EQ(events[0].arg, 1);
    EXPECT_EQ(events[0].text, QStringLiteral("0"));
    table.show();
    const QRect cell = table.tableView()->visualRect(table.tableView()->model()->index(0, 1));
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, cell.center());
    ASSERT_NE(combo->popup(), nullptr);
    combo->popup()->actions().at(0)->trigger();
    EXPECT_EQ(combo->currentIndex("0"), 0);
}

TEST(SpinDelegate, ArrowsStepWithinTheRangeAndDeliver237)
{
    CRecordingTable table;
    table.resize(400, 200);
    table.setColumnCount(1);
    table.setRowCount(1);
    table.setColumnWidth(0, 120);
    auto* spin = new WG::CBaseTableColumnDoubleSpinBoxDelegate(0, nullptr);
    table.setColumnDelegate(0, spin);
    spin->setDoubleSpinBoxRange(0.0, 1.0);
    spin->setDoubleSpinBoxSingelStep(0.25);
    spin->setDoubleSpinBoxDecimals(2);
    spin->setItemText("0", QStringLiteral("0.9"));
    EXPECT_DOUBLE_EQ(spin->itemValue("0"), 0.9);
    spin->setItemText("0", QStringLiteral("abc"));
    EXPECT_DOUBLE_EQ(spin->itemValue("0"), 0.9);
    table.show();
    const QRect cell = table.tableView()->visualRect(table.tableView()->model()->index(0, 0));
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {}, QPoint(cell.right() - 4, cell.top() + 3));
    EXPECT_DOUBLE_EQ(spin->itemValue("0"), 1.0) << "clamped at the maximum";
    QTest::mouseClick(table.tableView()->viewport(), Qt::LeftButton, {},
                      QPoint(cell.right() - 4, cell.bottom() - 3));
    EXPECT_DOUBLE_EQ(spin->itemValue("0"), 0.75);
    EXPECT_EQ(table.itemTextFromAll(0, 0), QStringLiteral("0.75"));
    auto events = table.ofCode(WG::UE_DELEGATE_SPIN_CHANGED);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].text, QStringLiteral("0"));
}

TEST(SimpleTextDelegate, KeyedTextWinsOverTheCellsText)
{
    CRecordingTable table;
    table.setColumnCount(1);
    table.setRowCount(2);
    auto* text = new WG::CBaseTableColumnSimpleTextDelegate(0, nullptr);
    table.setColumnDelegate(0, text);
    table.setItemText(1, 0, QStringLiteral("cell"), true);
    text->setItemText("0", QStringLiteral("0.5123"));
    EXPECT_EQ(table.itemTextFromAll(0, 0), QStringLiteral("0.5123"));
    EXPECT_EQ(table.itemTextFromAll(1, 0), QStringLiteral("cell"));
}

}  // namespace
