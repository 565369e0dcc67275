// The price quote table: strikes down, a block of columns per expiry month
// across, of which the current view shows a part. Reports its column widths
// upward, and (through the toolkit's table) its horizontal scroll offset under
// its own id, so that the panel's header strip follows it.
#pragma once

#include "toolkit/cstandardhpftable.h"

#include <vector>

namespace TC {

// Cells of one row, columns first to last, that changed in place.
struct CPriceQuoteCellSpan {
    int row = 0;
    int first = 0;
    int last = 0;
};

class CHpfPriceQuoteDataTable : public WG::CStandardHpfTable {
    Q_OBJECT
public:
    CHpfPriceQuoteDataTable(int id, QWidget* parent, WG::EBaseTableMenuFlags menuFlags);
    ~CHpfPriceQuoteDataTable() override;

    // Also tells the panel, whose month cell takes the block's width.
    void setColumnWidth(int column, int width) override;

    // Stores the view (CPriceQuoteSchema::EView) and shows its columns.
    void setView(int view);
    // Shows the columns of the stored view again, after the columns changed.
    void applyView();
    int getView() const { return view; }
    // Repaints just these cells of rows changed in place; the list is emptied.
    // Adjacent rows merge into runs, and past a few runs one range covers them
    // all, which costs less than the signals.
    void updateCells(std::vector<CPriceQuoteCellSpan>& spans);

private:
    int view = 0;
};

}  // namespace TC
