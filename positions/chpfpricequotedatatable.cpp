#include "positions/chpfpricequotedatatable.h"

#include "positions/cpricequoteschema.h"
#include "seam/uievents.h"
#include "toolkit/chpftableadaptermodel.h"

#include <algorithm>

namespace TC {

CHpfPriceQuoteDataTable::CHpfPriceQuoteDataTable(int id, QWidget* parent, WG::EBaseTableMenuFlags menuFlags)
    : WG::CStandardHpfTable(id, parent, menuFlags)
{
}

CHpfPriceQuoteDataTable::~CHpfPriceQuoteDataTable() = default;

void CHpfPriceQuoteDataTable::setColumnWidth(int column, int width)
{
    WG::CStandardHpfTable::setColumnWidth(column, width);
    deliverEvent(WG::UE_COLUMN_RESIZED, id(), column, QString(), nullptr);
}

void CHpfPriceQuoteDataTable::setView(int value)
{
    view = value;
    applyView();
}

void CHpfPriceQuoteDataTable::applyView()
{
    for (int column = 1; column < columnCount(); ++column) {
        setColListVisible(column, CPriceQuoteSchema::visibleInView(column, view));
    }
}

void CHpfPriceQuoteDataTable::updateCells(std::vector<CPriceQuoteCellSpan>& spans)
{
    constexpr std::size_t kMaxRuns = 8;
    if (spans.empty()) {
        return;
    }
    std::sort(spans.begin(), spans.end(),
              [](const CPriceQuoteCellSpan& a, const CPriceQuoteCellSpan& b) { return a.row < b.row; });
    struct Run {
        int top, bottom, left, right;
    };
    std::vector<Run> runs;
    for (const CPriceQuoteCellSpan& span : spans) {
        if (!runs.empty() && runs.back().bottom >= span.row - 1) {
            Run& run = runs.back();
            run.bottom = std::max(run.bottom, span.row);
            run.left = std::min(run.left, span.first);
            run.right = std::max(run.right, span.last);
        } else {
            runs.push_back({span.row, span.row, span.first, span.last});
        }
    }
    spans.clear();
    if (runs.size() > kMaxRuns) {
        Run all = runs.front();
        for (const Run& run : runs) {
            all.bottom = std::max(all.bottom, run.bottom);
            all.left = std::min(all.left, run.left);
            all.right = std::max(all.right, run.right);
        }
        runs.assign(1, all);
    }
    for (const Run& run : runs) {
        adapter()->cellsChanged(run.top, run.bottom, run.left, run.right);
    }
}

}  // namespace TC
