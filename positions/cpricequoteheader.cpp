#include "positions/cpricequoteheader.h"

#include "positions/cpricequoteheadercell.h"
#include "positions/cpricequoteschema.h"
#include "seam/cexchangeclient.h"
#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace TC {

CPriceQuoteHeader::CPriceQuoteHeader(QWidget* parent) : WG::CBaseWidget(QStringLiteral("price_quote_header"), false, parent)
{
    fixedCell = new CPriceQuoteHeaderCell(this);
    fixedCell->resize(90, height());
    fixedCell->raise();
}

CPriceQuoteHeader::~CPriceQuoteHeader() = default;

void CPriceQuoteHeader::setMonths(const QStringList& months)
{
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    monthCount = months.size();
    for (int i = 0; i < months.size(); ++i) {
        const int days = exchange != nullptr ? exchange->getRemainDays(months.at(i)) : 0;
        const QString text = CPriceQuoteSchema::monthCellText(months.at(i), days);
        if (i < monthCells.size()) {
            monthCells[i]->setText(text);
            monthCells[i]->show();
        } else {
            auto* cell = new CPriceQuoteHeaderCell(this);
            cell->setText(text);
            cell->resize(0, height());
            cell->lower();
            cell->show();
            monthCells.append(cell);
        }
    }
    for (int i = months.size(); i < monthCells.size(); ++i) {
        monthCells[i]->hide();
    }
    layoutCells();
}

void CPriceQuoteHeader::setMonthWidth(int month, int width)
{
    if (month < 0 || month >= monthCells.size()) {
        return;
    }
    monthCells[month]->resize(std::max(0, width), height());
    layoutCells();
}

void CPriceQuoteHeader::setScrollOffset(int offset)
{
    scrollOffset = offset;
    layoutCells();
}

void CPriceQuoteHeader::setFirstColumnWidth(int width)
{
    firstColumnWidth = width;
    fixedCell->resize(std::max(width, 90), fixedCell->height());
    layoutCells();
}

void CPriceQuoteHeader::layoutCells()
{
    int x = firstColumnWidth + scrollOffset;
    for (CPriceQuoteHeaderCell* cell : monthCells) {
        if (cell->isHidden()) {
            continue;
        }
        cell->move(x, 0);
        cell->lower();
        x += cell->width();
    }
    // Scrolled cells slip beneath the fixed cell.
    fixedCell->raise();
}

void CPriceQuoteHeader::resizeEvent(QResizeEvent* event)
{
    WG::CBaseWidget::resizeEvent(event);
    fixedCell->resize(fixedCell->width(), height());
    for (CPriceQuoteHeaderCell* cell : monthCells) {
        cell->resize(cell->width(), height());
    }
    layoutCells();
}

void CPriceQuoteHeader::paintEvent(QPaintEvent*)
{
    WG::CUiResource* resources = WG::CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *resources->getColor(QStringLiteral("clr_table_background")));
    painter.setPen(QPen(*resources->getColor(QStringLiteral("clr_table_split_line")), 1, Qt::SolidLine, Qt::SquareCap,
                        Qt::BevelJoin));
    painter.drawLine(0, 0, width() - 1, 0);
}

}  // namespace TC
