#include "toolkit/ctableview.h"

#include "seam/common.h"

#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/cuiresource.h"
#include "toolkit/ibasetable.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <climits>

namespace WG {

namespace {

QColor themeColor(const char* key) { return *CUiResource::get()->getColor(QString::fromLatin1(key)); }

}  // namespace

// ---- CTableView ----

// The viewport is not marked opaque although it paints every pixel: Qt
// repaints an opaque widget's own updates in a pass of their own, and the
// area of item widgets shown in the same tick a second time with the window.
CTableView::CTableView(IBaseTable* table, QWidget* parent) : QTableView(parent), m_table(table) {}

void CTableView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles)
{
    // QTableView repaints its whole viewport for any range of more than one
    // cell; a tick that changed two rows of a chain repaints those rows. Open
    // editors take their data from the base class, and moved rows would make
    // the range's rows lie apart.
    if (topLeft == bottomRight || !topLeft.isValid() || !bottomRight.isValid() || state() == EditingState ||
        verticalHeader()->sectionsMoved()) {
        QTableView::dataChanged(topLeft, bottomRight, roles);
        return;
    }
    if (isVisible()) {
        viewport()->update(rangeRect(topLeft, bottomRight));
    }
#ifndef QT_NO_ACCESSIBILITY
    if (QAccessible::isActive()) {
        QAccessibleTableModelChangeEvent event(this, QAccessibleTableModelChangeEvent::DataChanged);
        event.setFirstRow(topLeft.row());
        event.setFirstColumn(topLeft.column());
        event.setLastRow(bottomRight.row());
        event.setLastColumn(bottomRight.column());
        QAccessible::updateAccessibility(&event);
    }
#endif
}

QRect CTableView::rangeRect(const QModelIndex& topLeft, const QModelIndex& bottomRight) const
{
    const int grid = showGrid() ? 1 : 0;
    const int top = rowViewportPosition(topLeft.row());
    const int bottom = rowViewportPosition(bottomRight.row()) + rowHeight(bottomRight.row()) + grid;
    int left = INT_MAX;
    int right = INT_MIN;
    for (int column = topLeft.column(); column <= bottomRight.column(); ++column) {
        if (isColumnHidden(column)) {
            continue;
        }
        const int x = columnViewportPosition(column);
        left = std::min(left, x);
        right = std::max(right, x + columnWidth(column) + grid);
    }
    if (left > right || bottom <= top) {
        return QRect();
    }
    return QRect(QPoint(left, top), QPoint(right - 1, bottom - 1));
}

void CTableView::paintEvent(QPaintEvent* event)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    m_table->m_paintClock = utils::clockMSec();
    const QRegion& region = event->region();
    if (region.rectCount() <= 1) {
        m_table->paintCells(&painter, region);
    } else {
        // Rows changed apart from each other come as a region of several
        // rectangles. Clipped to such a region, every glyph and fill takes the
        // raster engine's slow path; clipped to one rectangle at a time, none does.
        for (const QRect& rect : region) {
            painter.setClipRect(rect);
            m_table->paintCells(&painter, QRegion(rect));
        }
    }
    m_table->m_paintClock = 0.0;
}

void CTableView::mousePressEvent(QMouseEvent* event)
{
    m_lastButton = event->button();
    const QModelIndex index = indexAt(event->pos());
    QTableView::mousePressEvent(event);
    if (event->button() == Qt::RightButton) {
        emit sigRightClicked(index, event->globalPos());
    }
}

void CTableView::mouseDoubleClickEvent(QMouseEvent* event)
{
    m_lastButton = event->button();
    QTableView::mouseDoubleClickEvent(event);
}

void CTableView::mouseMoveEvent(QMouseEvent* event)
{
    const int row = rowAt(event->pos().y());
    if (row != m_hoverRow) {
        m_hoverRow = row;
        viewport()->update();
    }
    QTableView::mouseMoveEvent(event);
}

void CTableView::leaveEvent(QEvent* event)
{
    if (m_hoverRow != -1) {
        m_hoverRow = -1;
        viewport()->update();
    }
    QTableView::leaveEvent(event);
}

// ---- CTableHeaderView ----

CTableHeaderView::CTableHeaderView(IBaseTable* table, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), m_table(table)
{
}

void CTableHeaderView::paintEvent(QPaintEvent* event)
{
    QHeaderView::paintEvent(event);
    // The style paints the strip after the last column; give it the theme's colour.
    int right = 0;
    for (int visual = count() - 1; visual >= 0; --visual) {
        const int logical = logicalIndex(visual);
        if (!isSectionHidden(logical)) {
            right = sectionViewportPosition(logical) + sectionSize(logical);
            break;
        }
    }
    if (right < viewport()->width()) {
        QPainter painter(viewport());
        const QRect rest(right, 0, viewport()->width() - right, viewport()->height());
        painter.fillRect(rest, themeColor("clr_table_header_background"));
        painter.setPen(themeColor("clr_table_grid_line"));
        painter.drawLine(rest.bottomLeft(), rest.bottomRight());
    }
}

void CTableHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const
{
    if (!rect.isValid()) {
        return;
    }
    painter->save();
    painter->fillRect(rect, themeColor("clr_table_header_background"));
    painter->setPen(themeColor("clr_table_grid_line"));
    painter->drawLine(rect.topRight(), rect.bottomRight());
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    painter->setFont(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    painter->setPen(themeColor("clr_table_header_text"));
    QRect textRect = rect.adjusted(4, 0, -4, 0);
    const bool sorted = m_table->getSortColumn() == logicalIndex && m_table->getSortOrder() >= 0;
    if (sorted) {
        textRect.adjust(0, 0, -8, 0);
    }
    const QString text = model() != nullptr ? model()->headerData(logicalIndex, Qt::Horizontal).toString() : QString();
    painter->drawText(textRect, Qt::AlignCenter, fontMetrics().elidedText(text, Qt::ElideRight, textRect.width()));
    if (sorted) {
        // A small triangle: up for ascending, down for descending.
        const int x = rect.right() - 9;
        const int y = rect.center().y();
        QPainterPath arrow;
        if (m_table->getSortOrder() == TSO_ASCENDING) {
            arrow.moveTo(x, y + 2);
            arrow.lineTo(x + 6, y + 2);
            arrow.lineTo(x + 3, y - 2);
        } else {
            arrow.moveTo(x, y - 2);
            arrow.lineTo(x + 6, y - 2);
            arrow.lineTo(x + 3, y + 2);
        }
        arrow.closeSubpath();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->fillPath(arrow, themeColor("clr_table_header_text"));
    }
    painter->restore();
}

QSize CTableHeaderView::sectionSizeFromContents(int logicalIndex) const
{
    const QString text = model() != nullptr ? model()->headerData(logicalIndex, Qt::Horizontal).toString() : QString();
    const QFontMetrics metrics(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    return QSize(metrics.horizontalAdvance(text) + 18, height());
}

// ---- CTableItemPainter ----

CTableItemPainter::CTableItemPainter(IBaseTable* table, QObject* parent) : QStyledItemDelegate(parent), m_table(table)
{
}

void CTableItemPainter::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    m_table->paintCell(painter, option, index);
}

QSize CTableItemPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_heavy_fix")));
    Q_UNUSED(option);
    return QSize(metrics.horizontalAdvance(index.data(Qt::DisplayRole).toString()) + 12,
                 m_table->tableView()->verticalHeader()->defaultSectionSize());
}

QWidget* CTableItemPainter::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const int column = m_table->sourceIndex(index).column();
    QLineEdit* editor = m_table->columnEditor(column);
    if (editor != nullptr) {
        // The column's own editor keeps its look and validator.
        editor->setParent(parent);
        editor->show();
        return editor;
    }
    editor = new QLineEdit(parent);
    editor->setFrame(false);
    const QColor text = themeColor("clr_text_default");
    const QColor background = themeColor("clr_table_background_selected");
    editor->setStyleSheet(QStringLiteral("QLineEdit{color:%1;background:%2;border:1px solid %3;padding:0 2px;}")
                              .arg(text.name(), background.name(), themeColor("clr_table_header_text").name()));
    return editor;
}

void CTableItemPainter::destroyEditor(QWidget* editor, const QModelIndex& index) const
{
    const int column = m_table->sourceIndex(index).column();
    if (editor != nullptr && editor == m_table->columnEditor(column)) {
        // A column's editor belongs to the table and serves every edit of the column.
        editor->hide();
        editor->setParent(m_table);
        return;
    }
    QStyledItemDelegate::destroyEditor(editor, index);
}

void CTableItemPainter::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(index.data(Qt::DisplayRole).toString());
        line->selectAll();
    }
}

void CTableItemPainter::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        const QModelIndex source = m_table->sourceIndex(index);
        m_table->commitEdit(source.row(), source.column(), line->text());
    }
}

bool CTableItemPainter::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                    const QModelIndex& index)
{
    if (event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton) {
            const QModelIndex source = m_table->sourceIndex(index);
            if (CBaseTableColumnWidgetDelegate* delegate = m_table->columnDelegate(source.column())) {
                if (delegate->mousePress(m_table->rowKey(source.row()), option.rect, mouse->pos())) {
                    return false;  // still let the view select the row and report the click
                }
            }
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

// ---- CTableStatRow ----

CTableStatRow::CTableStatRow(IBaseTable* table, QWidget* parent) : QWidget(parent), m_table(table) {}

void CTableStatRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), themeColor("clr_table_stat_background"));
    painter.setPen(themeColor("clr_table_grid_line"));
    painter.drawLine(rect().topLeft(), rect().topRight());
    const QHeaderView* header = m_table->tableView()->horizontalHeader();
    const int offset = m_table->tableView()->viewport()->x();
    painter.setFont(*CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_heavy_fix")));
    const QColor text = themeColor("clr_table_stat_text");
    for (int column = 0; column < m_table->columnCount(); ++column) {
        const QString stat = m_table->statText(column);
        if (stat.isEmpty() || header->isSectionHidden(column)) {
            continue;
        }
        const QRect cell(header->sectionViewportPosition(column) + offset, 0, header->sectionSize(column), height());
        painter.setPen(text);
        int alignment = m_table->m_columns.value(column).alignment;
        if (alignment == 0) {
            double number = 0.0;
            alignment = CTableSortProxy::parseNumber(stat, number) ? Qt::AlignRight : Qt::AlignLeft;
        }
        painter.drawText(cell.adjusted(4, 0, -4, 0), (alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(stat, Qt::ElideRight, cell.width() - 8));
    }
}

}  // namespace WG
