#include "positions/cpricequoteheadercell.h"

#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QPen>

namespace TC {

CPriceQuoteHeaderCell::CPriceQuoteHeaderCell(QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("price_quote_header_cell"), false, parent)
{
}

CPriceQuoteHeaderCell::~CPriceQuoteHeaderCell() = default;

void CPriceQuoteHeaderCell::setText(const QString& value)
{
    if (text != value) {
        text = value;
        update();
    }
}

void CPriceQuoteHeaderCell::setChild(QWidget* widget)
{
    child = widget;
    if (child != nullptr) {
        child->setParent(this);
        placeChild();
        child->show();
    }
}

void CPriceQuoteHeaderCell::placeChild()
{
    if (child != nullptr) {
        child->move(8, (height() - child->height()) / 2);
    }
}

void CPriceQuoteHeaderCell::resizeEvent(QResizeEvent* event)
{
    WG::CBaseWidget::resizeEvent(event);
    placeChild();
}

void CPriceQuoteHeaderCell::paintEvent(QPaintEvent*)
{
    WG::CUiResource* resources = WG::CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *resources->getColor(QStringLiteral("clr_table_background")));
    QPen pen(*resources->getColor(QStringLiteral("clr_table_split_line")), 1, Qt::SolidLine, Qt::SquareCap,
             Qt::BevelJoin);
    painter.setPen(pen);
    painter.drawLine(0, 0, width() - 1, 0);
    painter.drawLine(width() - 1, 0, width() - 1, height() - 1);
    if (!text.isEmpty()) {
        painter.setFont(*resources->getFont(QStringLiteral("fnt_default_normal_fix")));
        painter.setPen(*resources->getColor(QStringLiteral("clr_text_default")));
        painter.drawText(rect(), Qt::AlignCenter, text);
    }
}

}  // namespace TC
