// What a tick repaints: the cells it changed, not the whole table. A quote for
// a few rows must not make the view paint sixty rows again.
#include "toolkit/cstandardtable.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QPaintEvent>
#include <QRegion>
#include <QTableView>

namespace {

constexpr int kRows = 40;
constexpr int kColumns = 10;

// Collects the region of every paint of the watched widget.
class CPaintRecorder : public QObject {
public:
    QRegion painted;
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
            ++paints;
        }
        return false;
    }
};

class TableRepaint : public ::testing::Test {
protected:
    void SetUp() override
    {
        window.resize(900, 1200);
        table = new WG::CStandardTable(3, &window);
        table->setGeometry(0, 0, 900, 1200);
        table->setColumnCount(kColumns);
        for (int column = 0; column < kColumns; ++column) {
            table->setColumnWidth(column, 80);
        }
        table->setRowCount(kRows);
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                table->setItemDouble(row, column, row + column * 0.01, 2, utils::FNF_NONE, true);
            }
        }
        table->updateTable();
        window.show();
        settle();
        table->tableView()->viewport()->installEventFilter(&recorder);
    }

    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
        }
    }

    QRect cellRect(int row, int column) const
    {
        return table->tableView()->visualRect(table->tableView()->model()->index(row, column));
    }

    QWidget window;
    WG::CStandardTable* table = nullptr;
    CPaintRecorder recorder;
};

TEST_F(TableRepaint, ATickRepaintsTheRowsItChangedAndNoOthers)
{
    ASSERT_TRUE(table->tableView()->viewport()->rect().contains(cellRect(kRows - 1, kColumns - 1)))
        << "every cell is meant to be in view";
    // Two quotes: row 4 changes in three columns, row 30 in one.
    for (int column = 2; column < 5; ++column) {
        table->setItemDouble(4, column, 99.0 + column, 2, utils::FNF_NONE, true);
    }
    table->setItemDouble(30, 7, 77.0, 2, utils::FNF_NONE, true);
    table->updateTable();
    settle();
    ASSERT_GT(recorder.paints, 0);
    for (int column = 2; column < 5; ++column) {
        EXPECT_TRUE(recorder.painted.contains(cellRect(4, column))) << "changed cell 4," << column;
    }
    EXPECT_TRUE(recorder.painted.contains(cellRect(30, 7)));
    for (int row : {0, 5, 12, 29, 31, kRows - 1}) {
        EXPECT_FALSE(recorder.painted.intersects(cellRect(row, 3))) << "row " << row << " did not change";
    }
    EXPECT_FALSE(recorder.painted.intersects(cellRect(30, 2))) << "nor did row 30 left of its quote";
}

TEST_F(TableRepaint, WhatATickRepaintsMatchesTheWholeTablePaintedAfresh)
{
    // Rows apart from each other, in two ticks, with new colours and backgrounds.
    for (int tick = 0; tick < 2; ++tick) {
        for (int row : {2 + tick, 9, 17 + tick, 30}) {
            for (int column = 1; column < 8; column += 2) {
                table->setItemDouble(row, column, 1000.0 * tick + row + column * 0.5, 3, utils::FNF_SEGMENTED, true);
                table->setItemTextColorKey(row, column, tick == 0 ? "clr_global_rise" : "clr_global_fall", true);
                table->setItemBackgroundColorKey(row, column, tick == 0 ? "clr_table_background_selected" : "", true);
            }
        }
        table->updateTable();
        settle();
    }
    ASSERT_GT(recorder.paints, 0);
    EXPECT_GT(recorder.painted.rectCount(), 1) << "the ticks repainted rows apart from each other";
    QWidget* viewport = table->tableView()->viewport();
    const QRect area(viewport->mapTo(&window, QPoint(0, 0)), viewport->size());
    const QImage onScreen = QGuiApplication::primaryScreen()->grabWindow(window.winId()).toImage().copy(area);
    const QImage afresh = viewport->grab().toImage().convertToFormat(onScreen.format());
    ASSERT_EQ(onScreen.size(), afresh.size());
    EXPECT_TRUE(onScreen == afresh) << "the screen after the ticks shows what a full paint shows";
}

TEST_F(TableRepaint, AColumnOfTheModelMadeBoldRepaintsTheWholeColumn)
{
    table->model()->setColumnBold(6, true);
    table->updateTable();
    settle();
    for (int row = 0; row < kRows; ++row) {
        EXPECT_TRUE(recorder.painted.contains(cellRect(row, 6))) << "row " << row;
    }
    EXPECT_FALSE(recorder.painted.intersects(cellRect(10, 2)));
}

TEST_F(TableRepaint, AFlashRepaintsItsCellWhenItEndsAndNothingElse)
{
    table->setColumnFlashChange(5, true);
    table->setFlashDuration(120);
    table->setItemDouble(3, 5, 55.5, 2, utils::FNF_NONE, true);
    table->updateTable();
    settle();
    ASSERT_TRUE(table->isCellFlashing(3, 5));
    recorder.painted = QRegion();
    recorder.paints = 0;
    // Until the flash has ended and a tick after it has run; a loaded machine may take its time.
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 5000 && (table->isCellFlashing(3, 5) || !recorder.painted.contains(cellRect(3, 5)))) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    EXPECT_FALSE(table->isCellFlashing(3, 5));
    EXPECT_TRUE(recorder.painted.contains(cellRect(3, 5))) << "the end of the flash shows";
    EXPECT_FALSE(recorder.painted.intersects(cellRect(3, 4))) << "the flash ticks repaint no other cell";
    EXPECT_FALSE(recorder.painted.intersects(cellRect(20, 5)));
}

}  // namespace
