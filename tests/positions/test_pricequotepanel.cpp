// The price quote panel as the host drives it: selection of underlying and
// side, the rows and month blocks, the header strip, the buffered quotes and
// the tick, flashing, views and the parameter string.
#include "positions/cpricequoteheader.h"
#include "positions/cpricequoteheadercell.h"
#include "positions/cpricequoteschema.h"
#include "positionsfixture.h"
#include "support/testsupport.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/csimpletextwidget.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>

#include <thread>

namespace {

using positionstest::PriceQuoteTest;
using S = TC::CPriceQuoteSchema;

class PriceQuotePanel : public PriceQuoteTest {};

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

TEST_F(PriceQuotePanel, NameFlagsAndControls)
{
    EXPECT_EQ(panel->name(), QStringLiteral("pricequote"));
    EXPECT_EQ(panel->widgetID(), 9);
    EXPECT_EQ(static_cast<int>(panel->supportedTraderTypes()), 1056);
    EXPECT_EQ(panel->getSideGroup()->checkedButton(), 4);
    EXPECT_EQ(panel->getSideGroup()->button(4)->text(), QStringLiteral("认购"));
    EXPECT_EQ(panel->getSideGroup()->button(5)->text(), QStringLiteral("认沽"));
    EXPECT_EQ(panel->getViewGroup()->checkedButton(), 0);
    QStringList views;
    for (WG::CPushButton* button : panel->getViewGroup()->buttons()) {
        views << button->text();
    }
    EXPECT_EQ(views, (QStringList{"行情", "指标", "风险", "信息"}));
    EXPECT_EQ(panel->getViewConfigs().keys(), (QList<int>{0, 1, 2, 3}));
    // 82 by 18 asked; the theme's combo style may keep it a little higher.
    EXPECT_EQ(panel->getUnderlyingCombo()->width(), 82);
    EXPECT_LE(panel->getUnderlyingCombo()->height(), panel->getHeader()->height());
    EXPECT_EQ(panel->getUnderlyingCombo()->parentWidget(), panel->getHeader()->getFixedCell());
    EXPECT_EQ(panel->getHeader()->objectName(), QStringLiteral("price_quote_header"));
    EXPECT_EQ(panel->getHeader()->getFixedCell()->objectName(), QStringLiteral("price_quote_header_cell"));
    EXPECT_FALSE(table()->flag() & WG::BTF_SORTABLE);
    EXPECT_FALSE(table()->flag() & WG::BTF_COLUMN_MOVABLE);
    EXPECT_TRUE(table()->flag() & WG::BTF_NO_ROW_SELECTION);
    EXPECT_EQ(table()->id(), 12);
    EXPECT_EQ(table()->columnCount(), 1);
}

TEST_F(PriceQuotePanel, ReloadMakesARowPerStrikeAndABlockPerMonth)
{
    QAbstractItemModelTester tester(table()->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    start();
    EXPECT_EQ(panel->getUnderlyingCombo()->currentText(), QStringLiteral("510050.SH"));
    EXPECT_EQ(model()->monthCount, 3);
    EXPECT_EQ(table()->columnCount(), 64);
    EXPECT_EQ(panel->getMonthColumns().keys(), (QList<int>{20261125, 20261127, 20261223}));
    EXPECT_EQ(shownStrikes(), (QStringList{"2.9000", "3.0000", "3.1000", "3.2000"}));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_NAME)->getText(), QStringLiteral("50ETF"));
    // Calls only, and the underlying.
    EXPECT_EQ(sorted(panel->requestedKeys()),
              (QStringList{"10000010.SH", "10000011.SH", "10000012.SH", "10000013.SH", "10000031.SH", "10000041.SH",
                           "510050.SH"}));
    EXPECT_EQ(quotes->subscriberCount("10000041.SH"), 1);
    EXPECT_EQ(quotes->subscriberCount("10000042.SH"), 0);
    const TC::CHpfPriceQuoteDataPtr atTheMoney = row(QStringLiteral("3.0000"));
    ASSERT_TRUE(atTheMoney);
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_CODE)), QStringLiteral("10000041.SH"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_LAST)), QStringLiteral("-"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_EXPIRE)), QStringLiteral("20261223"));
}

TEST_F(PriceQuotePanel, AStrikeOfSomeMonthsShowsEmptyBlocksWithoutBackgroundInTheOthers)
{
    start();
    const TC::CHpfPriceQuoteDataPtr low = row(QStringLiteral("2.9000"));
    ASSERT_TRUE(low);
    EXPECT_NE(low->getBackgroundColor(S::columnOf(0, S::PQ_LAST)), nullptr);
    for (int month : {1, 2}) {
        for (int sub = 0; sub < S::kMonthColumns; ++sub) {
            const int column = S::columnOf(month, sub);
            if (sub != S::PQ_CHANGE_RATIO) {  // an absent ratio reads "非法值" everywhere
                EXPECT_EQ(low->displayText(column), QString()) << column;
            }
            EXPECT_EQ(low->getBackgroundColor(column), nullptr) << column;
        }
    }
}

TEST_F(PriceQuotePanel, ChangingToPutsDropsEveryRequestAndRebuildsThePutSide)
{
    start();
    publish(quote("10000011", 0.1, 0.1));
    EXPECT_EQ(panel->pendingPriceCount(), 1);
    panel->getSideGroup()->button(5)->click();
    EXPECT_EQ(panel->getSideGroup()->checkedButton(), 5);
    EXPECT_EQ(panel->pendingPriceCount(), 0) << "the calls' buffered quote went with their requests";
    EXPECT_EQ(sorted(panel->requestedKeys()),
              (QStringList{"10000020.SH", "10000021.SH", "10000022.SH", "10000023.SH", "10000032.SH", "10000042.SH",
                           "510050.SH"}));
    EXPECT_EQ(quotes->subscriberCount("10000011.SH"), 0);
    EXPECT_EQ(quotes->subscriberCount("10000021.SH"), 1);
    EXPECT_EQ(model()->size(), 4);
    EXPECT_EQ(row(QStringLiteral("3.0000"))->displayText(S::columnOf(0, S::PQ_CODE)), QStringLiteral("10000021.SH"));
    EXPECT_EQ(row(QStringLiteral("3.0000"))->displayText(S::columnOf(2, S::PQ_CODE)), QStringLiteral("10000042.SH"));
}

TEST_F(PriceQuotePanel, HeaderHasACellPerMonthAsWideAsItsVisibleColumns)
{
    start();
    TC::CPriceQuoteHeader* header = panel->getHeader();
    ASSERT_EQ(header->getMonthCells().size(), 3);
    EXPECT_EQ(header->getMonthCount(), 3);
    QStringList texts;
    for (TC::CPriceQuoteHeaderCell* cell : header->getMonthCells()) {
        texts << cell->getText();
        EXPECT_FALSE(cell->isHidden());
    }
    EXPECT_EQ(texts, (QStringList{"2026年11月(5天)", "2026年11月(7天)", "2026年12月(33天)"}));
    EXPECT_EQ(header->getFirstColumnWidth(), table()->columnWidth(0));
    EXPECT_GE(header->getFixedCell()->width(), 90);
    int x = header->getFirstColumnWidth();
    for (int month = 0; month < 3; ++month) {
        int expected = 0;
        for (int sub = 0; sub <= S::PQ_BID; ++sub) {
            expected += table()->columnWidth(S::columnOf(month, sub));
        }
        EXPECT_EQ(panel->getPriceQuoteHeaderWidth(month), expected);
        EXPECT_GT(expected, 0);
        TC::CPriceQuoteHeaderCell* cell = header->getMonthCells().at(month);
        EXPECT_EQ(cell->width(), expected) << month;
        EXPECT_EQ(cell->x(), x) << month;
        // Over its block: where the month's first column begins in the table.
        EXPECT_EQ(cell->x(), table()->tableView()->columnViewportPosition(S::columnOf(month, 0))) << month;
        x += cell->width();
    }
}

TEST_F(PriceQuotePanel, AWiderColumnWidensItsMonthsCell)
{
    start();
    const int before = panel->getHeader()->getMonthCells().at(1)->width();
    table()->setColumnWidth(S::columnOf(1, S::PQ_VOLUME), table()->columnWidth(S::columnOf(1, S::PQ_VOLUME)) + 40);
    EXPECT_EQ(panel->getHeader()->getMonthCells().at(1)->width(), before + 40);
    EXPECT_EQ(panel->getHeader()->getMonthCells().at(2)->x(),
              panel->getHeader()->getMonthCells().at(1)->x() + before + 40);
    table()->setColumnWidth(0, 120);
    EXPECT_EQ(panel->getHeader()->getFirstColumnWidth(), 120);
    EXPECT_EQ(panel->getHeader()->getFixedCell()->width(), 120);
    EXPECT_EQ(panel->getHeader()->getMonthCells().at(0)->x(), 120);
}

TEST_F(PriceQuotePanel, TheHeaderScrollsWithTheTable)
{
    panel->resize(500, 400);
    start();
    QScrollBar* bar = table()->tableView()->horizontalScrollBar();
    ASSERT_GT(bar->maximum(), 100);
    bar->setValue(100);
    TC::CPriceQuoteHeader* header = panel->getHeader();
    EXPECT_EQ(header->getScrollOffset(), -100);
    EXPECT_EQ(header->getMonthCells().at(0)->x(), header->getFirstColumnWidth() - 100);
    EXPECT_EQ(header->getMonthCells().at(1)->x(), table()->tableView()->columnViewportPosition(S::columnOf(1, 0)));
    // Scrolled cells slip beneath the fixed cell, which stays on top.
    EXPECT_EQ(header->children().last(), header->getFixedCell());
    bar->setValue(0);
    EXPECT_EQ(header->getMonthCells().at(0)->x(), header->getFirstColumnWidth());
}

TEST_F(PriceQuotePanel, MonthCellsGrowNeverShrinkAndSpareOnesHide)
{
    start();
    TC::CPriceQuoteHeader* header = panel->getHeader();
    ASSERT_EQ(header->getMonthCells().size(), 3);
    TC::CPriceQuoteHeaderCell* first = header->getMonthCells().at(0);
    panel->getUnderlyingCombo()->setCurrentIndex(panel->getUnderlyingCombo()->findData(QStringLiteral("510300.SH")));
    EXPECT_EQ(model()->monthCount, 1);
    EXPECT_EQ(table()->columnCount(), 22);
    ASSERT_EQ(header->getMonthCells().size(), 3);
    EXPECT_EQ(header->getMonthCells().at(0), first) << "cells are reused";
    EXPECT_EQ(first->getText(), QStringLiteral("2026年12月(33天)"));
    EXPECT_FALSE(header->getMonthCells().at(0)->isHidden());
    EXPECT_TRUE(header->getMonthCells().at(1)->isHidden());
    EXPECT_TRUE(header->getMonthCells().at(2)->isHidden());
    // The adjusted call of the same strike keeps a row of its own.
    EXPECT_EQ(shownStrikes(), (QStringList{"4.0000", "4.0000A"}));
    EXPECT_EQ(row(QStringLiteral("4.0000"))->displayText(S::columnOf(0, S::PQ_CODE)), QStringLiteral("10000051.SH"));
    EXPECT_EQ(row(QStringLiteral("4.0000A"))->displayText(S::columnOf(0, S::PQ_CODE)), QStringLiteral("10000053.SH"));
    EXPECT_EQ(row(QStringLiteral("4.0000A"))->displayText(S::columnOf(0, S::PQ_UNIT)), QStringLiteral("10265"));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_NAME)->getText(), QStringLiteral("300ETF"));
    panel->getUnderlyingCombo()->setCurrentIndex(panel->getUnderlyingCombo()->findData(QStringLiteral("510050.SH")));
    EXPECT_EQ(header->getMonthCells().size(), 3);
    for (TC::CPriceQuoteHeaderCell* cell : header->getMonthCells()) {
        EXPECT_FALSE(cell->isHidden());
    }
}

TEST_F(PriceQuotePanel, AFlashStartsOnAChangeAndEndsOnTheFirstTickAfterItsTime)
{
    start();
    publish(quote("10000011", utils::kAbsentDouble, 0.1));
    panel->onTimer(TC::TUF_QUOTE);
    publish(quote("10000011", 1.0, 0.9));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->flashingRowCount(), 0) << "absent to 1.0 does not flash";
    publish(quote("10000011", 1.1, 0.9));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->flashingRowCount(), 1);
    const TC::CHpfPriceQuoteDataPtr changed = row(QStringLiteral("3.0000"));
    EXPECT_TRUE(changed->isFlashChange(1));
    EXPECT_TRUE(changed->isFlashChange(S::columnOf(0, S::PQ_BID)));
    EXPECT_FALSE(changed->isFlashChange(S::columnOf(0, S::PQ_VOLUME)));
    EXPECT_EQ(changed->displayText(1), QStringLiteral("1.1000"));
    const int shown = table()->rowPosition(table()->rowOfKey("3.0000"));
    EXPECT_TRUE(table()->isCellFlashing(table()->rowOfKey("3.0000"), 1)) << shown;

    // A tick within the time keeps the flash.
    for (auto& stamp : changed->flashStamps) {
        stamp.second = utils::clockMSec();
    }
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->flashingRowCount(), 1);
    // Stamps older than the flash time go at the next tick, which repaints.
    for (auto& stamp : changed->flashStamps) {
        stamp.second = utils::clockMSec() - 501.0;
    }
    QSignalSpy repaints(table()->adapter(), &QAbstractItemModel::dataChanged);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->flashingRowCount(), 0);
    EXPECT_TRUE(changed->flashStamps.empty());
    EXPECT_FALSE(table()->isCellFlashing(table()->rowOfKey("3.0000"), 1));
    // Only the cells whose flash ended repaint: columns 1 to 6 of that row.
    ASSERT_EQ(repaints.size(), 1);
    const QModelIndex from = repaints.at(0).at(0).toModelIndex();
    const QModelIndex to = repaints.at(0).at(1).toModelIndex();
    EXPECT_EQ(from.row(), table()->rowOfKey("3.0000"));
    EXPECT_EQ(to.row(), from.row());
    EXPECT_EQ(from.column(), 1);
    EXPECT_EQ(to.column(), 6);
}

TEST_F(PriceQuotePanel, AHiddenPanelDoesNoWorkAndKeepsTheNewestPerKey)
{
    start(false);
    ASSERT_FALSE(panel->isVisible());
    ASSERT_FALSE(panel->isActive());
    for (int i = 1; i <= 3; ++i) {
        publish(quote("10000011", 0.1 + 0.01 * i, 0.1));
    }
    publish(quote("10000012", 0.05, 0.05));
    EXPECT_EQ(panel->pendingPriceCount(), 2);
    const unsigned revision = model()->dataRevision();
    QSignalSpy repaints(table()->adapter(), &QAbstractItemModel::dataChanged);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->pendingPriceCount(), 2);
    EXPECT_EQ(model()->dataRevision(), revision);
    EXPECT_EQ(repaints.size(), 0);
    EXPECT_EQ(row(QStringLiteral("3.0000"))->displayText(1), QStringLiteral("-"));
    panel->show();
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->pendingPriceCount(), 0);
    EXPECT_EQ(row(QStringLiteral("3.0000"))->displayText(1), QStringLiteral("0.1300"));
    EXPECT_EQ(row(QStringLiteral("3.1000"))->displayText(1), QStringLiteral("0.0500"));
}

TEST_F(PriceQuotePanel, QuotesFromAServiceThreadMeetTheTickUnderTheLock)
{
    start();
    std::thread feed([this] {
        for (int i = 1; i <= 2000; ++i) {
            publish(quote("10000011", 0.1 + 0.0001 * i, 0.1));
            publish(quote("10000012", 0.05 + 0.0001 * i, 0.05));
        }
    });
    for (int tick = 0; tick < 200; ++tick) {
        panel->onTimer(TC::TUF_QUOTE);
        EXPECT_LE(panel->pendingPriceCount(), 2) << "one entry per key at most";
    }
    feed.join();
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->pendingPriceCount(), 0);
    EXPECT_EQ(row(QStringLiteral("3.0000"))->displayText(1), QStringLiteral("0.3000")) << "the newest wins";
    EXPECT_EQ(row(QStringLiteral("3.1000"))->displayText(1), QStringLiteral("0.2500"));
}

TEST_F(PriceQuotePanel, WithAnEmptyUnderlyingATickClearsTheLabelsAndNothingElse)
{
    start();
    publish(quote("510050", 3.1, 3.0));
    panel->onTimer(TC::TUF_QUOTE);
    ASSERT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_PRICE)->getText(), QStringLiteral("3.1000"));
    {
        // The selector empties as it does before the instrument tables are complete.
        const QSignalBlocker quiet(panel->getUnderlyingCombo());
        panel->getUnderlyingCombo()->clear();
    }
    publish(quote("10000011", 0.2, 0.1));
    const unsigned revision = model()->dataRevision();
    QSignalSpy repaints(table()->adapter(), &QAbstractItemModel::dataChanged);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(repaints.size(), 0);
    for (int id = TC::COptionPriceQuotePanel::PQC_NAME; id <= TC::COptionPriceQuotePanel::PQC_VOLUME; ++id) {
        EXPECT_EQ(panel->valueLabel(id)->getText(), QString()) << id;
    }
    EXPECT_EQ(panel->pendingPriceCount(), 1) << "the buffer is not touched";
    EXPECT_EQ(model()->dataRevision(), revision);
}

TEST_F(PriceQuotePanel, AQuoteOfTheUnderlyingAloneRepaintsTheLabelsNotTheTable)
{
    start();
    panel->onTimer(TC::TUF_QUOTE);
    auto underlying = quote("510050", 3.1, 3.0);
    underlying->volume = 1234567;
    publish(underlying);
    const unsigned revision = model()->dataRevision();
    QSignalSpy repaints(table()->adapter(), &QAbstractItemModel::dataChanged);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(model()->dataRevision(), revision);
    EXPECT_EQ(repaints.size(), 0) << "no cell of the table repaints";
    WG::CSimpleTextWidget* price = panel->valueLabel(TC::COptionPriceQuotePanel::PQC_PRICE);
    EXPECT_EQ(price->getText(), QStringLiteral("3.1000"));
    EXPECT_EQ(price->colorKey(), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_CHANGE)->getText(), QStringLiteral("0.100"));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_RATIO)->getText(), QStringLiteral("3.33%"));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_VOLUME)->getText(), QStringLiteral("1234567"));
    EXPECT_EQ(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_VOLUME)->colorKey(),
              QStringLiteral("tc_clr_priceT_total"));
    publish(quote("510050", 2.9, 3.0));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(price->colorKey(), QStringLiteral("tc_clr_priceT_fall"));
}

TEST_F(PriceQuotePanel, AQuoteRepaintsItsMonthsBlockAndATurnOfShadingTheWholeRow)
{
    start();
    panel->onTimer(TC::TUF_QUOTE);
    const int position = table()->rowOfKey("3.0000");
    QSignalSpy repaints(table()->adapter(), &QAbstractItemModel::dataChanged);
    // The first quote turns the row in the money (3.05 above 3.0): every month repaints.
    publish(quote("10000041", 0.12, 0.1));
    panel->onTimer(TC::TUF_QUOTE);
    ASSERT_EQ(repaints.size(), 1);
    EXPECT_EQ(repaints.at(0).at(0).toModelIndex(), table()->adapter()->index(position, 1));
    EXPECT_EQ(repaints.at(0).at(1).toModelIndex(), table()->adapter()->index(position, 63));
    repaints.clear();
    // The next one repaints month 2's block of that row only.
    publish(quote("10000041", 0.13, 0.1));
    panel->onTimer(TC::TUF_QUOTE);
    ASSERT_EQ(repaints.size(), 1);
    EXPECT_EQ(repaints.at(0).at(0).toModelIndex(), table()->adapter()->index(position, S::columnOf(2, 0)));
    EXPECT_EQ(repaints.at(0).at(1).toModelIndex(), table()->adapter()->index(position, S::columnOf(2, 20)));
    repaints.clear();
    // A tick with nothing new repaints nothing (the flashes are made fresh, so none ends).
    for (auto& stamp : row(QStringLiteral("3.0000"))->flashStamps) {
        stamp.second = utils::clockMSec();
    }
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(repaints.size(), 0);
}

TEST_F(PriceQuotePanel, OptionQuotesFillTheirMonthAndComputeAgainstTheUnderlying)
{
    start();
    panel->onTimer(TC::TUF_QUOTE);
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000041", 0.12, 0.1));
    panel->onTimer(TC::TUF_QUOTE);
    const TC::CHpfPriceQuoteDataPtr atTheMoney = row(QStringLiteral("3.0000"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_LAST)), QStringLiteral("0.1200"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_CHANGE_RATIO)), QStringLiteral("20.00"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(2, S::PQ_INTRINSIC)), QStringLiteral("0.0500"));
    EXPECT_TRUE(atTheMoney->inTheMoney);
    EXPECT_NE(atTheMoney->displayText(S::columnOf(2, S::PQ_DELTA)), QStringLiteral("-"));
    EXPECT_NE(atTheMoney->displayText(S::columnOf(2, S::PQ_IMPLIED_VOL)), QStringLiteral("-"));
    EXPECT_EQ(atTheMoney->displayText(S::columnOf(0, S::PQ_LAST)), QStringLiteral("-")) << "another month";
}

TEST_F(PriceQuotePanel, ViewsShowTheirColumnsAndKeepTheirOwnLayouts)
{
    start();
    const int column = S::columnOf(0, S::PQ_LAST);
    table()->setColumnWidth(column, 111);
    panel->getViewGroup()->button(1)->click();
    EXPECT_EQ(table()->getView(), 1);
    EXPECT_FALSE(panel->getViewConfigs().value(0).isEmpty());
    for (int sub = 0; sub < S::kMonthColumns; ++sub) {
        EXPECT_EQ(table()->colListVisible(S::columnOf(1, sub)), sub >= 6 && sub <= 10) << sub;
    }
    EXPECT_TRUE(table()->colListVisible(0));
    EXPECT_EQ(panel->getHeader()->getMonthCells().at(0)->width(), panel->getPriceQuoteHeaderWidth(0));
    panel->getViewGroup()->button(3)->click();
    EXPECT_TRUE(table()->colListVisible(S::columnOf(2, S::PQ_STYLE)));
    EXPECT_FALSE(table()->columnBoldFont(S::columnOf(2, S::PQ_STYLE)));
    EXPECT_TRUE(table()->columnBoldFont(S::columnOf(2, S::PQ_CODE)));
    panel->getViewGroup()->button(0)->click();
    EXPECT_EQ(table()->columnWidth(column), 111);
}

TEST_F(PriceQuotePanel, ParamHoldsFourLayoutsWithTheCurrentTakenFresh)
{
    start();
    table()->setColumnWidth(S::columnOf(0, S::PQ_LAST), 97);
    const QStringList parts = panel->param().split(QLatin1Char(';'));
    ASSERT_EQ(parts.size(), 4);
    EXPECT_EQ(parts.at(0), table()->saveConfigStr());
    EXPECT_FALSE(panel->param().contains(QLatin1Char('|')));

    TC::COptionPriceQuotePanel other(10, nullptr);
    other.resize(1600, 600);
    other.setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    other.setParam(panel->param());
    EXPECT_EQ(other.getViewConfigs().value(0), parts.at(0));
    EXPECT_EQ(other.getTable()->columnWidth(S::columnOf(0, S::PQ_LAST)), 97);
}

TEST_F(PriceQuotePanel, FewerThanFourLayoutsLeaveTheOthersEmpty)
{
    start();
    panel->setParam(QStringLiteral("x;y"));
    EXPECT_EQ(panel->getViewConfigs().value(0), QStringLiteral("x"));
    EXPECT_EQ(panel->getViewConfigs().value(1), QStringLiteral("y"));
    EXPECT_EQ(panel->getViewConfigs().value(2), QString());
    EXPECT_EQ(panel->getViewConfigs().value(3), QString());
    panel->setParam(QString());  // no part: nothing changes
    EXPECT_EQ(panel->getViewConfigs().value(1), QStringLiteral("y"));
}

TEST_F(PriceQuotePanel, EventsItDoesNotKnowGoOn)
{
    start();
    EXPECT_TRUE(panel->handleEvent(WG::UE_BUTTON_CLICKED, 77, 0, QString(), nullptr));
    EXPECT_FALSE(panel->handleEvent(WG::UE_CELL_PRIMARY, 12, 0, QString(), nullptr));
    EXPECT_TRUE(panel->handleEvent(WG::UE_TABLE_HSCROLL, 99, -50, QString(), nullptr));
    EXPECT_EQ(panel->getHeader()->getScrollOffset(), 0) << "another id moves nothing";
}

// A new trading day on a generated market: the selector refills, and the panel
// rebuilds its months from the new day's option map.
class PriceQuoteNewDay : public boardtest::BoardTest {};

TEST_F(PriceQuoteNewDay, ANewTradingDayRebuildsTheMonths)
{
    auto* generated = utils::CManualSingletonT<TC::CExchangeClient>::create<market::CSimExchangeClient>(
        7u, QDate(2026, 11, 20), clock);
    publish(quote("510050", 3.05, 3.0));
    TC::COptionPriceQuotePanel panel(11, nullptr);
    panel.resize(1600, 600);
    panel.show();
    panel.setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    const QString key = panel.getUnderlyingCombo()->currentData(Qt::UserRole).toString();
    ASSERT_FALSE(key.isEmpty());
    auto monthsOf = [&]() {
        QMap<QString, QMap<QString, QStringList>> map;
        generated->getStockOptionMap(map);
        return map.value(key).keys();
    };
    const QStringList before = monthsOf();
    ASSERT_FALSE(before.isEmpty());
    EXPECT_EQ(panel.getModel()->monthCount, before.size());

    generated->setTradingDate(QDate(2026, 11, 26));  // past the November expiry
    const QStringList after = monthsOf();
    ASSERT_NE(after, before);
    EXPECT_EQ(panel.getUnderlyingCombo()->currentData(Qt::UserRole).toString(), key);
    EXPECT_EQ(panel.getModel()->monthCount, after.size());
    QList<int> expected;
    for (const QString& month : after) {
        expected << month.toInt();
    }
    EXPECT_EQ(panel.getMonthColumns().keys(), expected);
    int shown = 0;
    for (TC::CPriceQuoteHeaderCell* cell : panel.getHeader()->getMonthCells()) {
        shown += cell->isHidden() ? 0 : 1;
    }
    EXPECT_EQ(shown, after.size());
    EXPECT_TRUE(panel.getHeader()->getMonthCells().at(0)->getText().startsWith(after.first().left(4) + "年"));
}

}  // namespace
