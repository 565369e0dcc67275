// The painting half of IBaseTable, kept apart from its data and events. A
// chain table repaints well over a thousand cells a tick, so the view does not
// go through QTableView's per-cell style options and item delegate: it walks
// the visible rows and columns itself, resolves the theme once per paint,
// reads a normal table's cells without variants, and draws the grid as one
// line per row and column.
#include "seam/common.h"
#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/ctextlinepainter.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/ctableview.h"
#include "toolkit/cuiresource.h"
#include "toolkit/ibasetable.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPainter>
#include <QRegion>
#include <QStyleOptionViewItem>
#include <QVarLengthArray>

namespace WG {

// One cell as the painter sees it: a high-performance row gives resolved
// colours, a normal table's cell gives resource keys.
struct IBaseTable::CellLook {
    QString text;
    QString backgroundKey;
    QString textColorKey;
    QColor background;  // given; invalid when the key decides
    QColor textColor;   // likewise
    int alignment = 0;
    bool bold = false;
};

// What a paint resolves once for all its cells.
struct IBaseTable::PaintState {
    explicit PaintState(double clock)
        : resource(CUiResource::get()),
          now(clock),
          hover(resource->getColor(QStringLiteral("clr_table_background_hover"))),
          selected(resource->getColor(QStringLiteral("clr_table_background_selected"))),
          flash(resource->getColor(QStringLiteral("clr_flash_background"))),
          grid(resource->getColor(QStringLiteral("clr_table_grid_line"))),
          text(resource->getColor(QStringLiteral("clr_text_default"))),
          normalFont(resource->getFont(cellFontKey(false))),
          boldFont(resource->getFont(cellFontKey(true)))
    {
    }
    const CUiResource* resource;
    double now;
    const QColor* hover;
    const QColor* selected;
    const QColor* flash;
    const QColor* grid;
    const QColor* text;
    const QFont* normalFont;
    const QFont* boldFont;
};

const QString& IBaseTable::cellFontKey(bool bold)
{
    static const QString normal = QStringLiteral("fnt_default_normal_fix");
    static const QString heavy = QStringLiteral("fnt_default_normal_heavy_fix");
    return bold ? heavy : normal;
}

void IBaseTable::readCell(int sourceRow, int sourceColumn, CellLook& look) const
{
    if (m_cells != nullptr) {
        CTableCellModel::CellPaint cell;
        if (m_cells->cellPaint(sourceRow, sourceColumn, cell)) {
            look.text = *cell.text;
            look.backgroundKey = *cell.backgroundKey;
            look.textColorKey = *cell.textColorKey;
            look.alignment = cell.alignment;
            look.bold = cell.bold;
        }
        return;
    }
    if (m_hpfCells != nullptr) {
        CHpfTableAdapterModel::CellPaint cell;
        if (m_hpfCells->cellPaint(sourceRow, sourceColumn, cell)) {
            look.text = std::move(cell.text);
            look.textColor = cell.textColor;
            look.background = cell.background;
            look.alignment = cell.alignment;
        }
        return;
    }
    const QModelIndex source = m_model->index(sourceRow, sourceColumn);
    look.text = source.data(Qt::DisplayRole).toString();
    look.alignment = source.data(Qt::TextAlignmentRole).toInt();
    look.bold = source.data(CTableCellModel::BoldRole).toBool();
    const QVariant background = source.data(CTableCellModel::BackgroundColorRole);
    if (background.isValid()) {
        look.background = background.value<QColor>();
    }
    if (!look.background.isValid()) {
        look.backgroundKey = source.data(CTableCellModel::BackgroundKeyRole).toString();
    }
    const QVariant text = source.data(CTableCellModel::TextColorRole);
    if (text.isValid()) {
        look.textColor = text.value<QColor>();
    }
    if (!look.textColor.isValid()) {
        look.textColorKey = source.data(CTableCellModel::TextColorKeyRole).toString();
    }
}

void IBaseTable::paintCellBackground(QPainter* painter, const QRect& rect, const CellLook& look,
                                     const QColor& rowBackground, bool hover, bool selected, bool flashing,
                                     const PaintState& state) const
{
    if (look.background.isValid()) {
        painter->fillRect(rect, look.background);
    } else if (!look.backgroundKey.isEmpty()) {
        painter->fillRect(rect, *state.resource->getColor(look.backgroundKey));
    } else {
        painter->fillRect(rect, rowBackground);
    }
    if (hover) {
        painter->fillRect(rect, *state.hover);
    }
    if (selected && !(m_flags & BTF_NO_ROW_SELECTION)) {
        painter->fillRect(rect, *state.selected);
    }
    if (flashing) {
        if (m_flashBorderOnly) {
            painter->setPen(state.flash->lighter(160));
            painter->drawRect(rect.adjusted(0, 0, -1, -1));
        } else {
            painter->fillRect(rect, *state.flash);
        }
    }
}

void IBaseTable::paintCellContent(QPainter* painter, const QRect& rect, int sourceRow, int sourceColumn, bool selected,
                                  const CellLook& look, const PaintState& state) const
{
    const bool columnBold = sourceColumn >= 0 && sourceColumn < m_columns.size() && m_columns[sourceColumn].bold;
    const QFont& font = (columnBold || look.bold) ? *state.boldFont : *state.normalFont;
    const QColor& textColor = look.textColor.isValid()        ? look.textColor
                              : look.textColorKey.isEmpty() ? *state.text
                                                            : *state.resource->getColor(look.textColorKey);
    int alignment = sourceColumn >= 0 && sourceColumn < m_columns.size() ? m_columns[sourceColumn].alignment : 0;
    if (alignment == 0) {
        alignment = look.alignment;
    }
    alignment = (alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter;

    if (CBaseTableColumnWidgetDelegate* delegate = columnDelegate(sourceColumn)) {
        CCellPaintContext context;
        context.rect = rect;
        context.font = font;
        context.text = look.text;
        context.textColor = textColor;
        context.alignment = alignment;
        context.selected = selected;
        painter->save();
        delegate->paintCell(painter, rowKey(sourceRow), context);
        painter->restore();
        return;
    }
    if (look.text.isEmpty()) {
        return;
    }
    painter->setPen(textColor);
    CTextLinePainter::draw(painter, rect.adjusted(kCellPadding, 0, -kCellPadding, 0), alignment, look.text, font);
}

void IBaseTable::paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const PaintState state(m_paintClock > 0.0 ? m_paintClock : utils::clockMSec());
    const QModelIndex source = sourceIndex(index);
    CellLook look;
    readCell(source.row(), source.column(), look);
    const bool selected = option.state & QStyle::State_Selected;
    const bool hover = (m_flags & BTF_HOVER_ROW) && m_view->hoverRow() == index.row();
    paintCellBackground(painter, option.rect, look, *state.resource->getColor(rowBackgroundKey(index.row())), hover,
                        selected, cellFlashing(source, state.now), state);
    if (m_flags & BTF_GRID_LINES) {
        painter->fillRect(QRect(option.rect.right(), option.rect.top(), 1, option.rect.height()), *state.grid);
        painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), *state.grid);
    }
    paintCellContent(painter, option.rect, source.row(), source.column(), selected, look, state);
}

void IBaseTable::paintCells(QPainter* painter, const QRegion& region) const
{
    const PaintState state(m_paintClock > 0.0 ? m_paintClock : utils::clockMSec());
    const QRect dirty = region.boundingRect();
    const QHeaderView* rows = m_view->verticalHeader();
    const QHeaderView* columns = m_view->horizontalHeader();
    const QRect viewport = m_view->viewport()->rect();

    // The theme's background where no cell is: right of the last column and
    // below the last row.
    const int cellsRight = columns->length() - columns->offset();
    const int cellsBottom = rows->length() - rows->offset();
    const QColor& empty = *state.resource->getColor(QStringLiteral("clr_table_background"));
    if (cellsRight < viewport.right() + 1) {
        painter->fillRect(QRect(cellsRight, 0, viewport.width() - cellsRight, viewport.height()), empty);
    }
    if (cellsBottom < viewport.bottom() + 1) {
        painter->fillRect(QRect(0, cellsBottom, qMin(cellsRight, viewport.width()), viewport.height() - cellsBottom),
                          empty);
    }
    if (m_model == nullptr) {
        return;
    }

    // The columns, in view order, that meet the dirty area. The proxy sorts
    // and filters rows only, so a view column is the model's column.
    struct Span {
        int column;
        int x;
        int width;
    };
    QVarLengthArray<Span, 64> spans;
    for (int visual = 0; visual < columns->count(); ++visual) {
        const int logical = columns->logicalIndex(visual);
        if (columns->isSectionHidden(logical)) {
            continue;
        }
        const int x = columns->sectionViewportPosition(logical);
        const int width = columns->sectionSize(logical);
        if (width > 0 && x + width > dirty.left() && x <= dirty.right()) {
            spans.append({logical, x, width});
        }
    }
    int firstRow = rows->visualIndexAt(dirty.top());
    int lastRow = rows->visualIndexAt(dirty.bottom());
    if (firstRow < 0) {
        // Above the first row there is nothing; below the last, no row to paint.
        firstRow = dirty.top() >= cellsBottom ? rows->count() : 0;
    }
    if (lastRow < 0) {
        lastRow = rows->count() - 1;
    }
    if (spans.isEmpty() || firstRow > lastRow || rows->count() == 0) {
        return;
    }

    const QItemSelectionModel* selection = m_view->selectionModel();
    const bool hoverRows = (m_flags & BTF_HOVER_ROW) != 0;
    struct Row {
        int viewRow;
        int sourceRow;
        int y;
        int height;
        bool selectionTouches;  // whether any of its cells is selected
    };
    QVarLengthArray<Row, 128> painted;
    for (int visual = firstRow; visual <= lastRow; ++visual) {
        const int viewRow = rows->logicalIndex(visual);
        const int height = rows->sectionSize(viewRow);
        if (rows->isSectionHidden(viewRow) || height <= 0) {
            continue;
        }
        // A tick repaints the rows it changed; those between them are not in the region.
        const int y = rows->sectionViewportPosition(viewRow);
        if (!region.intersects(QRect(dirty.left(), y, dirty.width(), height))) {
            continue;
        }
        const int sourceRow = m_proxy->mapToSource(m_proxy->index(viewRow, 0)).row();
        const bool touched = selection != nullptr && selection->rowIntersectsSelection(viewRow, QModelIndex());
        painted.append({viewRow, sourceRow, y, height, touched});
    }

    if (painted.isEmpty()) {
        return;
    }
    // Backgrounds first, then the grid over them, then the contents: the
    // order of one cell at a time, in three sweeps.
    const auto cellSelected = [&](const Row& row, int column) {
        return row.selectionTouches && selection->isSelected(m_proxy->index(row.viewRow, column));
    };
    CellLook look;
    for (const Row& row : painted) {
        const QColor& rowBackground = *state.resource->getColor(rowBackgroundKey(row.viewRow));
        const bool hover = hoverRows && m_view->hoverRow() == row.viewRow;
        for (const Span& span : spans) {
            look = CellLook();
            readCell(row.sourceRow, span.column, look);
            const bool flashing = cellFlashing(m_model->index(row.sourceRow, span.column), state.now);
            paintCellBackground(painter, QRect(span.x, row.y, span.width, row.height), look, rowBackground, hover,
                                cellSelected(row, span.column), flashing, state);
        }
    }
    if (m_flags & BTF_GRID_LINES) {
        const int top = painted.front().y;
        const int bottom = painted.back().y + painted.back().height;
        const int left = spans.front().x;
        const int right = spans.back().x + spans.back().width;
        for (const Span& span : spans) {
            painter->fillRect(QRect(span.x + span.width - 1, top, 1, bottom - top), *state.grid);
        }
        for (const Row& row : painted) {
            painter->fillRect(QRect(left, row.y + row.height - 1, right - left, 1), *state.grid);
        }
    }
    for (const Row& row : painted) {
        for (const Span& span : spans) {
            look = CellLook();
            readCell(row.sourceRow, span.column, look);
            paintCellContent(painter, QRect(span.x, row.y, span.width, row.height), row.sourceRow, span.column,
                             cellSelected(row, span.column), look, state);
        }
    }
}

}  // namespace WG
