// The price quote table: strikes down, a block of columns per expiry month
// across, of which the current view shows a part. Reports its column widths
// upward, and (through the toolkit's table) its horizontal scroll offset under
// its own id, so that the panel's header strip follows it.
#pragma once

#include "toolkit/cstandardhpftable.h"

namespace TC {

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

private:
    int view = 0;
};

}  // namespace TC
