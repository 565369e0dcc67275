// The strip above the price quote table: a fixed cell over the strike column
// with the underlying selector, then one cell per expiry month as wide as the
// month's visible columns, moved with the table's horizontal scroll so that it
// stays over its block. Cells are kept for reuse: the list grows and never
// shrinks, and cells beyond the months hide.
#pragma once

#include "toolkit/cbasewidget.h"

#include <QStringList>
#include <QVector>

namespace TC {

class CPriceQuoteHeaderCell;

class CPriceQuoteHeader : public WG::CBaseWidget {
    Q_OBJECT
public:
    explicit CPriceQuoteHeader(QWidget* parent);
    ~CPriceQuoteHeader() override;

    // One cell per month text (yyyymmdd), captioned with its remaining days.
    void setMonths(const QStringList& months);
    // Width of month i's cell; the strip lays itself out again.
    void setMonthWidth(int month, int width);
    // The table's offset: 0 or negative, as UE_TABLE_HSCROLL reports it.
    void setScrollOffset(int offset);
    // The strike column's width; the fixed cell is at least 90 wide.
    void setFirstColumnWidth(int width);
    // Puts the cells at their places: month cells from the strike column on, shifted by the offset.
    void layoutCells();

    int getScrollOffset() const { return scrollOffset; }
    int getMonthCount() const { return monthCount; }
    int getFirstColumnWidth() const { return firstColumnWidth; }
    CPriceQuoteHeaderCell* getFixedCell() const { return fixedCell; }
    const QVector<CPriceQuoteHeaderCell*>& getMonthCells() const { return monthCells; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int scrollOffset = 0;
    int monthCount = 0;
    int firstColumnWidth = 0;
    CPriceQuoteHeaderCell* fixedCell = nullptr;
    QVector<CPriceQuoteHeaderCell*> monthCells;
};

}  // namespace TC
