// Item widgets of a normal table under replacement: a replaced widget leaves the
// screen and is destroyed, none leaks however many ticks replace them, the new
// one shows in its cell, and alignment numbers place it as the panels expect.
#include "toolkit/cstandardtable.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTest>

#include <cstdlib>
#include <functional>
#include <ostream>
#include <string>

namespace {

constexpr int kRows = 12;
constexpr int kColumns = 8;
constexpr int kWidgetColumns[] = {1, 3, 4, 6, 7};

// Counts the widgets it makes and the ones destroyed since.
struct CWidgetCounter {
    int made = 0;
    int destroyed = 0;
    int live() const { return made - destroyed; }
    template <class T>
    T* track(T* widget)
    {
        ++made;
        QObject::connect(widget, &QObject::destroyed, [this] { ++destroyed; });
        return widget;
    }
};

// A widget that paints its whole area in one colour, whatever the style sheet.
class CSolidWidget : public QWidget {
public:
    CSolidWidget(const QColor& colour, QSize size) : m_colour(colour) { setFixedSize(size); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), m_colour); }

private:
    QColor m_colour;
};

QWidget* solidWidget(const QColor& colour, QSize size) { return new CSolidWidget(colour, size); }

class ItemWidgetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        window.resize(700, 400);
        table = new WG::CStandardTable(7, &window);
        table->setGeometry(0, 0, 700, 400);
        table->setColumnCount(kColumns);
        for (int column = 0; column < kColumns; ++column) {
            table->setColumnWidth(column, 70);
        }
        table->setRowCount(kRows);
    }

    // What a tick leaves behind once the event loop has had its turn.
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    // The cell's area in the viewport's coordinates.
    QRect cellRect(int row, int column) const
    {
        return table->tableView()->visualRect(table->tableView()->model()->index(row, column));
    }

    // What the screen shows of the window (the backing store, stale pixels included).
    QImage screenImage() const
    {
        return QGuiApplication::primaryScreen()->grabWindow(window.winId()).toImage();
    }

    QPoint onScreen(int row, int column, QPoint inCell) const
    {
        return table->tableView()->viewport()->mapTo(&window, cellRect(row, column).topLeft() + inCell);
    }

    CWidgetCounter counter;  // outlives the window, whose widgets report to it as they go
    QWidget window;
    WG::CStandardTable* table = nullptr;
};

TEST_F(ItemWidgetTest, ManyReplacementsLeakNoWidget)
{
    window.show();
    for (int tick = 0; tick < 60; ++tick) {
        for (int row = 0; row < kRows; ++row) {
            for (int column : kWidgetColumns) {
                // Parented to the table, as the board makes its buttons.
                table->setItemWidget(row, column, counter.track(new QPushButton(QStringLiteral("开"), table)),
                                     WG::AL_CENTER, true);
            }
        }
        table->updateTable();
        settle();
        if (tick == 0) {
            continue;
        }
        ASSERT_EQ(counter.live(), kRows * 5) << "after tick " << tick << ": only the shown widgets live";
    }
    const int widgetsAfterFirstRounds = QApplication::allWidgets().size();
    for (int tick = 0; tick < 40; ++tick) {
        for (int row = 0; row < kRows; ++row) {
            for (int column : kWidgetColumns) {
                table->setItemWidget(row, column, counter.track(new QPushButton(QStringLiteral("平"))), WG::AL_CENTER,
                                     true);
            }
        }
        table->updateTable();
        settle();
    }
    EXPECT_EQ(counter.made, 100 * kRows * 5);
    EXPECT_EQ(counter.live(), kRows * 5);
    EXPECT_EQ(QApplication::allWidgets().size(), widgetsAfterFirstRounds);
    EXPECT_EQ(table->findChildren<QPushButton*>().size(), kRows * 5);
}

TEST_F(ItemWidgetTest, ReplacementWithoutUpdateTableCommitsAtTheEndOfTheTurn)
{
    window.show();
    for (int tick = 0; tick < 20; ++tick) {
        for (int row = 0; row < kRows; ++row) {
            table->setItemWidget(row, 3, counter.track(new QPushButton(QStringLiteral("开"))), WG::AL_CENTER, true);
        }
        settle();  // no updateTable(): the end of the turn commits
        for (int row = 0; row < kRows; ++row) {
            ASSERT_NE(table->itemWidget(row, 3), nullptr);
            ASSERT_TRUE(table->itemWidget(row, 3)->isVisible()) << "tick " << tick << " row " << row;
        }
    }
    EXPECT_EQ(counter.live(), kRows);
}

TEST_F(ItemWidgetTest, ReplacedWidgetLeavesTheScreenAndTheNewOneShowsInTheCell)
{
    window.show();
    settle();
    // The old widget fills most of the cell in red; the new one is a small blue square.
    QPointer<QWidget> old = solidWidget(Qt::red, QSize(60, 16));
    table->setItemWidget(2, 4, old, WG::AL_CENTER, true);
    table->updateTable();
    settle();
    ASSERT_TRUE(old->isVisible());
    const QPoint corner(8, cellRect(2, 4).height() / 2 - 6);  // inside the red area, outside the blue square
    ASSERT_EQ(screenImage().pixelColor(onScreen(2, 4, corner)), QColor(Qt::red)) << "the red widget shows at first";

    // A tick that replaces the widget and writes no cell: only the replacement repaints.
    QWidget* fresh = solidWidget(Qt::blue, QSize(8, 8));
    table->setItemWidget(2, 4, fresh, WG::AL_CENTER, true);
    EXPECT_EQ(table->itemWidget(2, 4), fresh) << "the cell answers with the new widget at once";
    table->updateTable();
    ASSERT_FALSE(old.isNull()) << "deletion waits for the event loop";
    EXPECT_FALSE(old->isVisible());
    EXPECT_TRUE(fresh->isVisible());
    settle();
    EXPECT_TRUE(old.isNull()) << "the replaced widget is destroyed";
    // The new widget sits in the middle of its cell.
    const QRect placed(fresh->mapTo(table->tableView()->viewport(), QPoint(0, 0)), fresh->size());
    EXPECT_TRUE(cellRect(2, 4).contains(placed)) << "cell " << cellRect(2, 4).x() << "," << cellRect(2, 4).y();
    EXPECT_EQ(placed.center().x(), cellRect(2, 4).center().x());
    const QImage image = screenImage();
    EXPECT_NE(image.pixelColor(onScreen(2, 4, corner)), QColor(Qt::red)) << "no stale pixel of the old widget";
    EXPECT_EQ(image.pixelColor(onScreen(2, 4, cellRect(2, 4).center() - cellRect(2, 4).topLeft())),
              QColor(Qt::blue));
}

// Whether any part of the cell lies in the viewport.
bool cellInView(WG::CStandardTable* table, int row, int column)
{
    QTableView* view = table->tableView();
    return view->visualRect(view->model()->index(row, column)).intersects(view->viewport()->rect());
}

TEST_F(ItemWidgetTest, WidgetOfACellOutOfViewShowsWhenTheCellScrollsIn)
{
    window.resize(700, 160);  // a few rows in view, the last ones below
    table->setGeometry(0, 0, 700, 160);
    window.show();
    for (int row = 0; row < kRows; ++row) {
        table->setItemWidget(row, 3, counter.track(new QPushButton(QStringLiteral("开"))), WG::AL_CENTER, true);
    }
    table->updateTable();
    settle();
    const int last = kRows - 1;
    ASSERT_FALSE(cellInView(table, last, 3)) << "the window is meant to leave the last row out of view";
    ASSERT_TRUE(cellInView(table, 0, 3));

    // A tick replaces every widget: those in view show, the last row's waits.
    for (int row = 0; row < kRows; ++row) {
        table->setItemWidget(row, 3, counter.track(new QPushButton(QStringLiteral("平"))), WG::AL_CENTER, true);
    }
    table->updateTable();
    settle();
    EXPECT_TRUE(table->itemWidget(0, 3)->isVisible());
    QPointer<QWidget> waiting = table->itemWidget(last, 3);
    ASSERT_FALSE(waiting.isNull()) << "the cell answers with its widget in or out of view";
    EXPECT_FALSE(waiting->isVisible());
    EXPECT_EQ(counter.live(), kRows) << "the widgets shown before were replaced and destroyed all the same";

    table->tableView()->scrollToBottom();
    settle();
    ASSERT_TRUE(cellInView(table, last, 3));
    ASSERT_FALSE(waiting.isNull());
    EXPECT_TRUE(waiting->isVisible()) << "the cell scrolled in, and its widget with it";
    const QRect placed(waiting->mapTo(table->tableView()->viewport(), QPoint(0, 0)), waiting->size());
    EXPECT_TRUE(cellRect(last, 3).contains(placed)) << "and it sits in its cell";
    EXPECT_EQ(counter.live(), kRows);
}

TEST_F(ItemWidgetTest, WidgetOfACellOutOfViewShowsWhenTheViewGrows)
{
    window.resize(700, 160);
    table->setGeometry(0, 0, 700, 160);
    window.show();
    for (int tick = 0; tick < 2; ++tick) {
        for (int row = 0; row < kRows; ++row) {
            table->setItemWidget(row, 3, counter.track(new QPushButton(QStringLiteral("开"))), WG::AL_CENTER, true);
        }
        table->updateTable();
        settle();
    }
    const int last = kRows - 1;
    ASSERT_FALSE(cellInView(table, last, 3));
    EXPECT_FALSE(table->itemWidget(last, 3)->isVisible());

    window.resize(700, 600);
    table->setGeometry(0, 0, 700, 600);
    settle();
    ASSERT_TRUE(cellInView(table, last, 3));
    for (int row = 0; row < kRows; ++row) {
        EXPECT_TRUE(table->itemWidget(row, 3)->isVisible()) << "row " << row;
    }
}

TEST_F(ItemWidgetTest, WidgetReplacedTwiceBeforeTheCommitNeverShows)
{
    window.show();
    QPointer<QWidget> first = counter.track(new QPushButton(QStringLiteral("一")));
    QPointer<QWidget> second = counter.track(new QPushButton(QStringLiteral("二")));
    QPointer<QWidget> third = counter.track(new QPushButton(QStringLiteral("三")));
    table->setItemWidget(0, 1, first, WG::AL_CENTER, true);
    table->setItemWidget(0, 1, second, WG::AL_CENTER, true);
    table->setItemWidget(0, 1, third, WG::AL_CENTER, true);
    EXPECT_EQ(table->itemWidget(0, 1), third);
    EXPECT_FALSE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
    table->updateTable();
    settle();
    EXPECT_TRUE(first.isNull());
    EXPECT_TRUE(second.isNull());
    ASSERT_FALSE(third.isNull());
    EXPECT_TRUE(third->isVisible());
    EXPECT_EQ(counter.live(), 1);
}

TEST_F(ItemWidgetTest, ButtonMayReplaceItselfFromItsOwnClick)
{
    window.show();
    int clicks = 0;
    std::function<void()> place;
    place = [&] {
        auto* button = counter.track(new QPushButton(QStringLiteral("开"), table));
        QObject::connect(button, &QPushButton::clicked, [&] {
            ++clicks;
            place();  // the clicked button is replaced while its signal runs
            table->updateTable();
        });
        table->setItemWidget(1, 3, button, WG::AL_CENTER, true);
    };
    place();
    table->updateTable();
    settle();
    for (int i = 0; i < 3; ++i) {
        QWidget* shown = table->itemWidget(1, 3);
        ASSERT_NE(shown, nullptr);
        QTest::mouseClick(shown, Qt::LeftButton);
        settle();
    }
    EXPECT_EQ(clicks, 3);
    EXPECT_EQ(counter.live(), 1);
}

TEST_F(ItemWidgetTest, RemovingACellWidgetAndDestroyingTheTableLeaveNothing)
{
    window.show();
    table->setItemWidget(0, 1, counter.track(new QPushButton), WG::AL_CENTER, true);
    table->setItemWidget(1, 1, counter.track(new QPushButton), WG::AL_CENTER, true);
    table->updateTable();
    settle();
    table->setItemWidget(0, 1, nullptr, WG::AL_CENTER, true);
    EXPECT_EQ(table->itemWidget(0, 1), nullptr);
    settle();
    EXPECT_EQ(counter.live(), 1);
    // Staged and retired widgets still pending when the table goes are destroyed with it.
    table->setItemWidget(1, 1, counter.track(new QPushButton), WG::AL_CENTER, true);
    table->setItemWidget(2, 1, counter.track(new QPushButton), WG::AL_CENTER, true);
    delete table;
    table = nullptr;
    settle();
    EXPECT_EQ(counter.live(), 0);
}

// The panels pass alignments as numbers: vertical centre with left, right or centre.
struct AlignCase {
    int value;
    const char* name;
    int expectedX;  // -1: centred, 0: left, 1: right
};

void PrintTo(const AlignCase& c, std::ostream* out) { *out << c.name << " (" << c.value << ")"; }

class ItemWidgetAlignTest : public ItemWidgetTest, public ::testing::WithParamInterface<AlignCase> {};

TEST_P(ItemWidgetAlignTest, PanelAlignmentNumbersPlaceTheWidget)
{
    const AlignCase& c = GetParam();
    window.show();
    QWidget* widget = solidWidget(Qt::green, QSize(20, 10));
    table->setItemWidget(3, 2, widget, WG::EAligns(QFlag(c.value)), true);
    table->updateTable();
    settle();
    const QRect cell = cellRect(3, 2);
    const QRect placed(widget->mapTo(table->tableView()->viewport(), QPoint(0, 0)), widget->size());
    ASSERT_TRUE(cell.contains(placed)) << c.name;
    EXPECT_LE(std::abs(placed.center().y() - cell.center().y()), 1) << c.name << ": vertically centred";
    if (c.expectedX < 0) {
        EXPECT_LE(std::abs(placed.center().x() - cell.center().x()), 1) << c.name;
    } else if (c.expectedX == 0) {
        EXPECT_EQ(placed.left(), cell.left()) << c.name;
    } else {
        EXPECT_GE(placed.right(), cell.right() - 1) << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(PanelNumbers, ItemWidgetAlignTest,
                         ::testing::Values(AlignCase{132, "centre", -1}, AlignCase{129, "left", 0},
                                           AlignCase{130, "right", 1}),
                         [](const ::testing::TestParamInfo<AlignCase>& info) {
                             return std::string(info.param.name);
                         });

TEST(ItemWidgetAlign, VerticalCentreIsItsOwnBit)
{
    EXPECT_EQ(static_cast<int>(WG::AL_VCENTER), 0x80);
    EXPECT_EQ(static_cast<int>(WG::AL_CENTER), 132);
    EXPECT_EQ(static_cast<int>(WG::AL_VCENTER | WG::AL_LEFT), 129);
    EXPECT_EQ(static_cast<int>(WG::AL_VCENTER | WG::AL_RIGHT), 130);
}

}  // namespace
