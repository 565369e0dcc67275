#include "toolkit/ibasetable.h"

#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/ctableview.h"
#include "toolkit/cuiresource.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTextStream>
#include <QVBoxLayout>

#include <algorithm>

namespace WG {

namespace {

constexpr int kMaxAutoWidth = 400;
constexpr int kMinAutoWidth = 36;
constexpr int kRowsMeasured = 500;
constexpr int kMaxWidth = 10000;

QString csvField(const QString& text)
{
    if (text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\n'))) {
        QString quoted = text;
        quoted.replace(QLatin1String("\""), QLatin1String("\"\""));
        return QLatin1Char('"') + quoted + QLatin1Char('"');
    }
    return text;
}

}  // namespace

IBaseTable::IBaseTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags, CTableView* view)
    : CBaseWidget(QStringLiteral("table"), false, parent),
      m_id(id),
      m_menuFlags(menuFlags),
      m_invalidText(QStringLiteral("-"))
{
    m_view = view != nullptr ? view : new CTableView(this, this);
    m_view->setParent(this);
    m_header = new CTableHeaderView(this, m_view);
    m_view->setHorizontalHeader(m_header);
    m_painter = new CTableItemPainter(this, m_view);
    m_view->setItemDelegate(m_painter);
    m_proxy = new CTableSortProxy(this);
    m_statRow = new CTableStatRow(this, this);
    m_statRow->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_statRow);

    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->setShowGrid(false);  // the cell painter draws the theme's grid
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->setWordWrap(false);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setMouseTracking(true);
    m_view->viewport()->setAutoFillBackground(false);
    m_header->setDefaultAlignment(Qt::AlignCenter);
    m_header->setHighlightSections(false);
    m_header->setMinimumSectionSize(16);
    m_header->setContextMenuPolicy(Qt::CustomContextMenu);

    connect(m_view, &CTableView::sigRightClicked, this, &IBaseTable::onRightClicked);
    connect(m_view, &QAbstractItemView::pressed, this, &IBaseTable::onPressed);
    connect(m_view, &QAbstractItemView::doubleClicked, this, &IBaseTable::onDoubleClicked);
    connect(m_header, &QHeaderView::sectionResized, this, &IBaseTable::onSectionResized);
    connect(m_header, &QHeaderView::sectionMoved, this, &IBaseTable::onSectionMoved);
    connect(m_header, &QHeaderView::sectionClicked, this, &IBaseTable::onHeaderClicked);
    connect(m_header, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        if (!(m_flags & BTF_CONTEXT_MENU) || m_menuFlags == BTMF_NONE) {
            return;
        }
        auto* menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        buildContextMenu(menu, m_header->logicalIndexAt(position));
        menu->popup(m_header->mapToGlobal(position));
    });
    connect(m_view->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        m_statRow->update();
        handleEvent(UE_TABLE_HSCROLL, 0, value, QString(), nullptr);
    });
    connect(m_view->horizontalScrollBar(), &QScrollBar::rangeChanged, m_statRow, [this] { m_statRow->update(); });

    m_flashTimer.setInterval(50);
    connect(&m_flashTimer, &QTimer::timeout, this, &IBaseTable::onFlashTick);

    applyFlags();
    themeChanged();
}

IBaseTable::~IBaseTable()
{
    for (ColumnState& column : m_columns) {
        delete column.delegate;
        column.delegate = nullptr;
    }
}

void IBaseTable::attachModel(QAbstractItemModel* model)
{
    m_model = model;
    m_cells = qobject_cast<CTableCellModel*>(model);
    m_hpfCells = qobject_cast<CHpfTableAdapterModel*>(model);
    m_proxy->setSourceModel(model);
    m_view->setModel(m_proxy);
    auto resync = [this] {
        ensureColumnStates();
        m_statRow->update();
    };
    connect(model, &QAbstractItemModel::columnsInserted, this, resync);
    connect(model, &QAbstractItemModel::columnsRemoved, this, resync);
    connect(model, &QAbstractItemModel::modelReset, this, resync);
    ensureColumnStates();
    applyFlags();
}

QTableView* IBaseTable::tableView() const { return m_view; }

void IBaseTable::ensureColumnStates()
{
    const int count = m_model != nullptr ? m_model->columnCount() : 0;
    while (m_columns.size() < count) {
        insertColumnState(m_columns.size());
    }
    for (int column = 0; column < count; ++column) {
        applyColumnVisibility(column);
    }
}

void IBaseTable::insertColumnState(int column)
{
    column = std::clamp(column, 0, m_columns.size());
    m_columns.insert(column, ColumnState());
    for (int c = column + 1; c < m_columns.size(); ++c) {
        if (m_columns[c].delegate != nullptr) {
            m_columns[c].delegate->setColumn(c);
        }
    }
}

void IBaseTable::dropColumnState(int column)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    delete m_columns[column].delegate;
    m_columns.remove(column);
    for (int c = column; c < m_columns.size(); ++c) {
        if (m_columns[c].delegate != nullptr) {
            m_columns[c].delegate->setColumn(c);
        }
    }
    if (m_sortColumn == column) {
        m_sortColumn = -1;
        m_sortOrder = TSO_NONE;
    } else if (m_sortColumn > column) {
        --m_sortColumn;
    }
}

void IBaseTable::resetColumnStates()
{
    for (ColumnState& column : m_columns) {
        delete column.delegate;
    }
    m_columns.clear();
    m_sortColumn = -1;
    m_sortOrder = TSO_NONE;
    m_proxy->sort(-1);
    m_proxy->clearFilters();
    m_statRow->hide();
}

QModelIndex IBaseTable::sourceIndex(const QModelIndex& viewIndex) const
{
    return m_proxy->mapToSource(viewIndex);
}

QModelIndex IBaseTable::viewIndex(int row, int column) const
{
    if (m_model == nullptr) {
        return QModelIndex();
    }
    return m_proxy->mapFromSource(m_model->index(row, column));
}

// ---- virtual operations ----

void IBaseTable::loadConfigStr(QString config)
{
    // Accept only a whole, well-formed layout; anything else leaves the table as it is.
    const QStringList parts = config.trimmed().split(QLatin1Char(','));
    if (parts.size() < 3 || parts.at(0) != QLatin1String("v1")) {
        return;
    }
    bool okColumn = false;
    bool okOrder = false;
    const int sortColumn = parts.at(1).toInt(&okColumn);
    const int sortOrder = parts.at(2).toInt(&okOrder);
    if (!okColumn || !okOrder || sortOrder < TSO_NONE || sortOrder > TSO_DESCENDING) {
        return;
    }
    struct Entry {
        int column;
        int width;
        bool visible;
    };
    QVector<Entry> entries;
    QSet<int> seen;
    for (int i = 3; i < parts.size(); ++i) {
        const QStringList fields = parts.at(i).split(QLatin1Char(':'));
        if (fields.size() != 3) {
            return;
        }
        bool ok1 = false;
        bool ok2 = false;
        bool ok3 = false;
        const int column = fields.at(0).toInt(&ok1);
        const int width = fields.at(1).toInt(&ok2);
        const int visible = fields.at(2).toInt(&ok3);
        if (!ok1 || !ok2 || !ok3 || column < 0 || width < 0 || width > kMaxWidth || (visible != 0 && visible != 1) ||
            seen.contains(column)) {
            return;
        }
        seen.insert(column);
        entries.push_back({column, width, visible == 1});
    }
    const int count = columnCount();
    int target = 0;
    for (const Entry& entry : entries) {
        if (entry.column >= count) {
            continue;  // a layout saved with more columns
        }
        const int from = m_header->visualIndex(entry.column);
        if (from != target) {
            m_movingLocked = true;
            m_header->moveSection(from, target);
            m_movingLocked = false;
        }
        ++target;
        if (entry.width > 0) {
            m_columns[entry.column].width = entry.width;
            m_header->resizeSection(entry.column, entry.width);
        }
        m_columns[entry.column].visible = entry.visible;
        applyColumnVisibility(entry.column);
    }
    keepLockedColumnsInFront();
    if (sortColumn >= 0 && sortColumn < count && sortOrder >= 0) {
        sortByColumn(sortColumn, sortOrder);
    } else if (sortColumn == -1) {
        m_sortColumn = -1;
        m_sortOrder = TSO_NONE;
        m_proxy->sort(-1);
        m_header->update();
    }
}

void IBaseTable::loadDefaulfConfigStr(QString config)
{
    m_defaultConfig = config;
    loadConfigStr(config);
}

QString IBaseTable::saveConfigStr() const
{
    QStringList parts;
    parts << QStringLiteral("v1") << QString::number(m_sortColumn) << QString::number(m_sortOrder);
    const int count = columnCount();
    for (int visual = 0; visual < count; ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (column < 0 || column >= m_columns.size()) {
            continue;
        }
        const int shown = m_header->isSectionHidden(column) ? 0 : m_header->sectionSize(column);
        const int width = shown > 0 ? shown : m_columns[column].width;
        parts << QStringLiteral("%1:%2:%3").arg(column).arg(width).arg(m_columns[column].visible ? 1 : 0);
    }
    return parts.join(QLatin1Char(','));
}

CBaseTableSettingParam IBaseTable::getTableSetting() { return m_setting; }

void IBaseTable::setTableSetting(const CBaseTableSettingParam& setting)
{
    m_setting = setting;
    themeChanged();
}

void IBaseTable::setInnerEnabled(bool enabled)
{
    m_view->setEnabled(enabled);
}

void IBaseTable::setFlag(EBaseTableFlags flags)
{
    m_flags = flags;
    applyFlags();
}

void IBaseTable::applyFlags()
{
    m_header->setVisible(m_flags & BTF_HEADER_VISIBLE);
    m_header->setSectionsMovable(m_flags & BTF_COLUMN_MOVABLE);
    m_header->setSectionResizeMode((m_flags & BTF_COLUMN_RESIZABLE) ? QHeaderView::Interactive : QHeaderView::Fixed);
    m_header->setSectionsClickable(true);
    m_header->setStretchLastSection(m_flags & BTF_STRETCH_LAST);
    if (m_flags & BTF_NO_ROW_SELECTION) {
        m_view->setSelectionMode(QAbstractItemView::NoSelection);
    } else {
        m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    }
    m_view->setSelectionBehavior((m_flags & BTF_SELECT_ROW) ? QAbstractItemView::SelectRows
                                                            : QAbstractItemView::SelectItems);
    m_view->viewport()->update();
}

void IBaseTable::setNumberTextInfo(const QString& invalidText, int defaultFormatFlags)
{
    m_invalidText = invalidText;
    m_invalidFlags = defaultFormatFlags;
}

int IBaseTable::realRowCount() { return m_proxy->rowCount(); }

void IBaseTable::setColumnVisible(int column, bool visible)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    m_columns[column].visible = visible;
    applyColumnVisibility(column);
}

void IBaseTable::setColListVisible(int column, bool visible)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    m_columns[column].colListVisible = visible;
    applyColumnVisibility(column);
}

void IBaseTable::applyColumnVisibility(int column)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    const bool shown = m_columns[column].visible && m_columns[column].colListVisible;
    if (m_view->isColumnHidden(column) == !shown) {
        return;
    }
    if (!shown) {
        const int size = m_header->sectionSize(column);
        if (size > 0) {
            m_columns[column].width = size;
        }
    }
    m_view->setColumnHidden(column, !shown);
    if (shown && m_columns[column].width > 0) {
        m_header->resizeSection(column, m_columns[column].width);
    }
    m_statRow->update();
}

bool IBaseTable::columnVisible(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].visible && m_columns[column].colListVisible;
}

bool IBaseTable::colListVisible(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].colListVisible;
}

void IBaseTable::setColumnLocked(int column, bool locked)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    m_columns[column].locked = locked;
    keepLockedColumnsInFront();
}

bool IBaseTable::columnLocked(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].locked;
}

void IBaseTable::keepLockedColumnsInFront()
{
    // Locked columns stand first, in their own order, and the user can't drag them away.
    int target = 0;
    for (int column = 0; column < m_columns.size(); ++column) {
        if (!m_columns[column].locked) {
            continue;
        }
        const int from = m_header->visualIndex(column);
        if (from != target && from >= 0) {
            m_movingLocked = true;
            m_header->moveSection(from, target);
            m_movingLocked = false;
        }
        ++target;
    }
}

void IBaseTable::moveColumn(int from, int to)
{
    if (from < 0 || from >= columnCount() || to < 0 || to >= columnCount()) {
        return;
    }
    m_movingLocked = true;
    m_header->moveSection(m_header->visualIndex(from), to);
    m_movingLocked = false;
    keepLockedColumnsInFront();
}

void IBaseTable::onSectionMoved(int logical, int, int)
{
    if (m_movingLocked) {
        return;
    }
    Q_UNUSED(logical);
    keepLockedColumnsInFront();
    m_statRow->update();
}

void IBaseTable::setColumnWidth(int column, int width)
{
    if (column < 0 || column >= m_columns.size() || width < 0) {
        return;
    }
    m_columns[column].width = width;
    m_header->resizeSection(column, width);
}

int IBaseTable::columnWidth(int column) const
{
    if (column < 0 || column >= m_columns.size()) {
        return 0;
    }
    const int shown = m_header->sectionSize(column);
    return shown > 0 ? shown : m_columns[column].width;
}

void IBaseTable::onSectionResized(int logical, int, int newSize)
{
    if (logical >= 0 && logical < m_columns.size() && newSize > 0) {
        m_columns[logical].width = newSize;
    }
    m_statRow->update();
    deliverEvent(UE_COLUMN_RESIZED, m_id, logical, QString(), nullptr);
}

int IBaseTable::itemInt(int row, int column)
{
    const double value = itemDouble(row, column);
    return utils::isUsable(value) ? static_cast<int>(value) : utils::kAbsentInt;
}

long long IBaseTable::itemLonglong(int row, int column)
{
    const double value = itemDouble(row, column);
    return utils::isUsable(value) ? static_cast<long long>(value) : utils::kAbsentLongLong;
}

double IBaseTable::itemDouble(int row, int column)
{
    if (m_model == nullptr) {
        return utils::kAbsentDouble;
    }
    const QVariant value = m_model->index(row, column).data(CTableCellModel::SortRole);
    if (value.type() == QVariant::Double) {
        return value.toDouble();
    }
    double number = 0.0;
    return CTableSortProxy::parseNumber(value.toString(), number) ? number : utils::kAbsentDouble;
}

QString IBaseTable::itemText(int row, int column)
{
    return m_model != nullptr ? m_model->index(row, column).data(Qt::DisplayRole).toString() : QString();
}

QString IBaseTable::itemTextFromAll(int row, int column)
{
    return cellTextForCopy(row, column);
}

int IBaseTable::itemType(int row, int column)
{
    return m_model != nullptr ? m_model->index(row, column).data(CTableCellModel::ValueTypeRole).toInt() : 0;
}

int IBaseTable::itemFlag(int row, int column)
{
    return m_model != nullptr ? static_cast<int>(m_model->flags(m_model->index(row, column))) : 0;
}

QString IBaseTable::cellTextForCopy(int row, int column)
{
    if (column >= 0 && column < m_columns.size() && m_columns[column].delegate != nullptr) {
        const QString text = m_columns[column].delegate->itemText(rowKey(row));
        if (!text.isEmpty()) {
            return text;
        }
    }
    return itemText(row, column);
}

QVector<int> IBaseTable::rowsInViewOrder() const
{
    QVector<int> rows;
    const int count = m_proxy->rowCount();
    rows.reserve(count);
    for (int position = 0; position < count; ++position) {
        rows.push_back(rowID(position));
    }
    return rows;
}

QString IBaseTable::rowsAsText(const QVector<int>& rows, QChar separator, bool quote)
{
    QStringList lines;
    QStringList header;
    QVector<int> columns;
    for (int visual = 0; visual < columnCount(); ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (columnVisible(column)) {
            columns.push_back(column);
            header << (quote ? csvField(columnHeader(column)) : columnHeader(column));
        }
    }
    lines << header.join(separator);
    for (int row : rows) {
        QStringList fields;
        for (int column : columns) {
            const QString text = cellTextForCopy(row, column);
            fields << (quote ? csvField(text) : text);
        }
        lines << fields.join(separator);
    }
    return lines.join(QLatin1Char('\n'));
}

bool IBaseTable::exportData(QString path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return false;
    }
    // With a byte order mark so that spreadsheet programs read the Chinese texts as UTF-8.
    QByteArray bytes("\xEF\xBB\xBF");
    bytes += rowsAsText(rowsInViewOrder(), QLatin1Char(','), true).toUtf8();
    bytes += '\n';
    return file.write(bytes) == bytes.size();
}

void IBaseTable::copyData()
{
    QVector<int> rows;
    if (m_view->selectionModel() != nullptr) {
        const QModelIndexList selected = m_view->selectionModel()->selectedRows();
        for (const QModelIndex& index : selected) {
            rows.push_back(sourceIndex(index).row());
        }
        if (rows.isEmpty()) {
            const QModelIndex current = m_view->selectionModel()->currentIndex();
            if (current.isValid() && m_view->selectionModel()->isSelected(current)) {
                rows.push_back(sourceIndex(current).row());
            }
        }
    }
    if (rows.isEmpty()) {
        rows = rowsInViewOrder();
    }
    QApplication::clipboard()->setText(rowsAsText(rows, QLatin1Char('\t'), false));
}

void IBaseTable::filterColumn(int column, const QPair<EFilterType, QSet<QString>>& filter)
{
    if (column < 0 || column >= columnCount()) {
        return;
    }
    m_proxy->setValueFilter(column, filter);
}

void IBaseTable::filterColumnRange(int column, double minimum, double maximum)
{
    if (column < 0 || column >= columnCount()) {
        return;
    }
    m_proxy->setRangeFilter(column, minimum, maximum);
}

void IBaseTable::clearFilter() { m_proxy->clearFilters(); }

void IBaseTable::showFilterMenu(int column, QRect anchor)
{
    if (column < 0 || column >= columnCount() || m_model == nullptr) {
        return;
    }
    QStringList values;
    QSet<QString> seen;
    for (int row = 0; row < m_model->rowCount() && values.size() < 200; ++row) {
        const QString text = itemText(row, column);
        if (!seen.contains(text)) {
            seen.insert(text);
            values << text;
        }
    }
    std::sort(values.begin(), values.end(),
              [](const QString& a, const QString& b) { return CTableSortProxy::compareValues(a, b) < 0; });
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("全部"), this, [this, column] {
        filterColumn(column, qMakePair(FLT_NONE, QSet<QString>()));
    });
    menu->addSeparator();
    for (const QString& value : values) {
        menu->addAction(value.isEmpty() ? QStringLiteral("(空白)") : value, this, [this, column, value] {
            filterColumn(column, qMakePair(FLT_INCLUDE, QSet<QString>{value}));
        });
    }
    menu->popup(m_view->mapToGlobal(anchor.bottomLeft()));
}

void IBaseTable::setColumnDelegate(int column, CBaseTableColumnWidgetDelegate* delegate)
{
    if (column < 0 || column >= m_columns.size()) {
        delete delegate;
        return;
    }
    if (m_columns[column].delegate == delegate) {
        return;
    }
    delete m_columns[column].delegate;
    m_columns[column].delegate = delegate;
    if (delegate != nullptr) {
        delegate->setColumn(column);
        delegate->setHostView(m_view);
        if (delegate->parentDeliverer() == nullptr) {
            delegate->setParentDeliverer(this);
        }
        connect(delegate, &CBaseTableColumnWidgetDelegate::sigRepaint, m_view->viewport(),
                QOverload<>::of(&QWidget::update));
    }
    m_view->viewport()->update();
}

CBaseTableColumnWidgetDelegate* IBaseTable::columnDelegate(int column) const
{
    return column >= 0 && column < m_columns.size() ? m_columns[column].delegate : nullptr;
}

void IBaseTable::updateUiData()
{
    onModelFlushNeeded();
    m_view->viewport()->update();
    m_statRow->update();
}

void IBaseTable::updateTable()
{
    onModelFlushNeeded();
}

// ---- non-virtual ----

int IBaseTable::rowCount() const { return m_model != nullptr ? m_model->rowCount() : 0; }

int IBaseTable::columnCount() const { return m_model != nullptr ? m_model->columnCount() : 0; }

int IBaseTable::rowID(int viewRow) const
{
    if (viewRow < 0 || viewRow >= m_proxy->rowCount()) {
        return -1;
    }
    return m_proxy->mapToSource(m_proxy->index(viewRow, 0)).row();
}

int IBaseTable::rowPosition(int row) const
{
    const QModelIndex index = viewIndex(row, 0);
    return index.isValid() ? index.row() : -1;
}

int IBaseTable::columnID(int viewColumn) const
{
    if (viewColumn < 0 || viewColumn >= columnCount()) {
        return -1;
    }
    return m_header->logicalIndex(viewColumn);
}

QString IBaseTable::columnHeader(int column) const
{
    return m_model != nullptr ? m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString() : QString();
}

void IBaseTable::setColumnHeader(int column, QString text)
{
    if (auto* cells = qobject_cast<CTableCellModel*>(m_model)) {
        cells->setHeaderText(column, text);
    }
}

void IBaseTable::setColumnFilterable(int column, bool filterable)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].filterable = filterable;
    }
}

void IBaseTable::setColumnBoldFont(int column, bool bold)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].bold = bold;
        m_view->viewport()->update();
    }
}

bool IBaseTable::columnBoldFont(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].bold;
}

void IBaseTable::setColumnFlashChange(int column, bool flash)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].flash = flash;
    }
    if (auto* cells = qobject_cast<CTableCellModel*>(m_model)) {
        cells->setColumnFlash(column, flash);
    }
}

bool IBaseTable::columnFlashChange(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].flash;
}

void IBaseTable::setColumnAlignment(int column, int alignment)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].alignment = alignment;
        m_view->viewport()->update();
    }
}

void IBaseTable::sortByColumn(int column, int order)
{
    if (order >= 2) {
        order -= 2;
        if (column < 0 || column >= columnCount()) {
            column = m_sortColumn;
        }
    }
    if (column < 0 || column >= columnCount() || order < 0 || order > 1) {
        return;
    }
    onModelFlushNeeded();
    const bool same = m_sortColumn == column && m_sortOrder == order;
    m_sortColumn = column;
    m_sortOrder = order;
    if (same) {
        m_proxy->invalidate();  // the proxy skips a sort it believes done; values may have changed
    } else {
        m_proxy->sort(column, order == TSO_DESCENDING ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
    // The arrow takes room beside the header text; a column narrowed to its text gets it back.
    const QFontMetrics bold(*CUiResource::get()->getFont(cellFontKey(true)));
    const int needed = headerWidth(bold, column);
    if (!m_view->isColumnHidden(column) && m_header->sectionSize(column) < needed) {
        m_columns[column].width = needed;
        m_header->resizeSection(column, needed);
    }
    m_header->viewport()->update();
}

int IBaseTable::headerWidth(const QFontMetrics& bold, int column) const
{
    const int arrow = column == m_sortColumn && m_sortOrder != TSO_NONE ? 10 : 2;
    return bold.horizontalAdvance(columnHeader(column)) + 2 * kCellPadding + arrow;
}

void IBaseTable::onHeaderClicked(int logical)
{
    if (!(m_flags & BTF_SORTABLE) || logical < 0) {
        return;
    }
    const int order = (m_sortColumn == logical && m_sortOrder == TSO_ASCENDING) ? TSO_DESCENDING : TSO_ASCENDING;
    sortByColumn(logical, order);
}

void IBaseTable::adjustColumnWidth()
{
    if (m_model == nullptr) {
        return;
    }
    const CUiResource* resource = CUiResource::get();
    const QFontMetrics normal(*resource->getFont(cellFontKey(false)));
    const QFontMetrics bold(*resource->getFont(cellFontKey(true)));
    const int rows = std::min(m_model->rowCount(), kRowsMeasured);
    for (int column = 0; column < columnCount(); ++column) {
        const QFontMetrics& metrics = columnBoldFont(column) ? bold : normal;
        // Room for the sort arrow only where it shows: sortByColumn widens a column that gets it.
        int width = headerWidth(bold, column);
        for (int row = 0; row < rows; ++row) {
            width = std::max(width, metrics.horizontalAdvance(itemText(row, column)) + 2 * kCellPadding + 4);
            if (QWidget* widget = m_view->indexWidget(viewIndex(row, column))) {
                width = std::max(width, widget->sizeHint().width() + 2);
            }
        }
        if (m_columns[column].delegate != nullptr) {
            width = std::max(width, 40);
        }
        width = std::clamp(width, kMinAutoWidth, kMaxAutoWidth);
        m_columns[column].width = width;
        if (!m_view->isColumnHidden(column)) {
            m_header->resizeSection(column, width);
        }
    }
}

void IBaseTable::setBackgroundColorKey(const char* backgroundKey, const char* alternateKey)
{
    m_backgroundKey = backgroundKey != nullptr ? QString::fromUtf8(backgroundKey) : QString();
    m_alternateKey = alternateKey != nullptr ? QString::fromUtf8(alternateKey) : QString();
    m_view->viewport()->update();
}

QString IBaseTable::rowBackgroundKey(int viewRow) const
{
    if (!m_alternateKey.isEmpty() && (viewRow % 2) == 1) {
        return m_alternateKey;
    }
    return m_backgroundKey.isEmpty() ? QStringLiteral("clr_table_background") : m_backgroundKey;
}

void IBaseTable::setSelectedRow(int row)
{
    if (m_view->selectionModel() == nullptr) {
        return;
    }
    const int position = rowPosition(row);
    if (position < 0) {
        m_view->clearSelection();
        return;
    }
    // Selection by call works whatever the built-in mouse selection allows.
    const QModelIndex index = m_proxy->index(position, 0);
    m_view->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_view->scrollTo(index);
}

int IBaseTable::selectedRow() const
{
    if (m_view->selectionModel() == nullptr) {
        return -1;
    }
    const QModelIndexList rows = m_view->selectionModel()->selectedIndexes();
    return rows.isEmpty() ? -1 : sourceIndex(rows.first()).row();
}

void IBaseTable::setStatText(int column, QString text)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    m_columns[column].stat = text;
    m_statRow->setVisible(statRowVisible());
    m_statRow->update();
}

QString IBaseTable::statText(int column) const
{
    return column >= 0 && column < m_columns.size() ? m_columns[column].stat : QString();
}

bool IBaseTable::statRowVisible() const
{
    return std::any_of(m_columns.begin(), m_columns.end(), [](const ColumnState& c) { return !c.stat.isEmpty(); });
}

bool IBaseTable::isCellFlashing(int row, int column) const
{
    if (m_model == nullptr) {
        return false;
    }
    return cellFlashing(m_model->index(row, column), utils::clockMSec());
}

bool IBaseTable::cellFlashing(const QModelIndex& sourceIndex, double now) const
{
    const int column = sourceIndex.column();
    if (column < 0 || column >= m_columns.size() || !m_columns[column].flash) {
        return false;
    }
    const double changedAt = sourceIndex.data(CTableCellModel::ChangedAtRole).toDouble();
    return changedAt > 0.0 && now - changedAt < m_flashDuration;
}

void IBaseTable::startFlashTimer()
{
    m_lastFlashAt = utils::clockMSec();
    if (!m_flashTimer.isActive()) {
        m_flashTimer.start();
    }
}

void IBaseTable::onFlashTick()
{
    // A flashing cell changes its look twice: when its value changes, which the
    // write repaints, and when the flash ends. Only the cells in view whose
    // flash ended since the last tick are repainted here.
    const double now = utils::clockMSec();
    const double since = m_flashTickAt > 0.0 ? m_flashTickAt : now - m_flashDuration - m_flashTimer.interval();
    m_flashTickAt = now;
    const QRect area = m_view->viewport()->rect();
    const int rows = m_view->model() != nullptr ? m_view->model()->rowCount() : 0;
    int firstRow = m_view->rowAt(area.top());
    int lastRow = m_view->rowAt(area.bottom());
    if (firstRow < 0) {
        firstRow = 0;
    }
    if (lastRow < 0) {
        lastRow = rows - 1;
    }
    QRegion ended;
    for (int column = 0; column < m_columns.size() && m_model != nullptr; ++column) {
        if (!m_columns[column].flash || m_view->isColumnHidden(column)) {
            continue;
        }
        for (int row = firstRow; row <= lastRow; ++row) {
            const QModelIndex shown = m_view->model()->index(row, column);
            const double changedAt = sourceIndex(shown).data(CTableCellModel::ChangedAtRole).toDouble();
            const double end = changedAt + m_flashDuration;
            if (changedAt > 0.0 && end > since && end <= now) {
                ended += m_view->visualRect(shown).adjusted(0, 0, 1, 1);  // with its grid lines
            }
        }
    }
    if (!ended.isEmpty()) {
        m_view->viewport()->update(ended);
    }
    if (now - m_lastFlashAt > m_flashDuration + m_flashTimer.interval()) {
        m_flashTimer.stop();
        m_flashTickAt = 0.0;
    }
}

int IBaseTable::horizontalScrollArg() const
{
    const QScrollBar* bar = m_view->horizontalScrollBar();
    if (bar == nullptr || bar->maximum() <= bar->minimum() ||
        m_view->horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff) {
        return 0;
    }
    return -bar->value();
}

bool IBaseTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == UE_TABLE_HSCROLL && id == 0) {
        // The table's own scroll bar: report the offset under the table's id.
        return deliverEvent(UE_TABLE_HSCROLL, m_id, horizontalScrollArg(), QString(), nullptr);
    }
    return CBaseWidget::handleEvent(code, id, arg, text, data);
}

void IBaseTable::themeChanged()
{
    const CUiResource* resource = CUiResource::get();
    int rowHeight = m_setting.rowHeight > 0 ? m_setting.rowHeight
                                            : resource->getSize(QStringLiteral("siz_table_row_height"));
    rowHeight = std::max(rowHeight, 16);
    m_view->verticalHeader()->setMinimumSectionSize(rowHeight);
    m_view->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_header->setFixedHeight(std::max(resource->getSize(QStringLiteral("siz_table_header_height")), 18));
    m_view->setFont(*resource->getFont(m_setting.fontKey.isEmpty() ? cellFontKey(false) : m_setting.fontKey));
    m_header->setFont(*resource->getFont(cellFontKey(false)));
    m_statRow->setFixedHeight(rowHeight);
    // The platform's scroll bars are light whatever the theme; the theme's own replace them.
    const QString scrollStyle = CStyleSheetCenter::getStyle(SS_SCROLLBAR);
    m_view->horizontalScrollBar()->setStyleSheet(scrollStyle);
    m_view->verticalScrollBar()->setStyleSheet(scrollStyle);
    m_view->viewport()->update();
    m_header->viewport()->update();
    m_statRow->update();
}

std::string IBaseTable::rowKey(int row) const { return std::to_string(row); }

void IBaseTable::applyEditedText(int, int, const QString&) {}

QLineEdit* IBaseTable::columnEditor(int column) const
{
    return column >= 0 && column < m_columns.size() ? m_columns[column].editor.data() : nullptr;
}

void IBaseTable::setColumnEditorWidget(int column, QLineEdit* editor)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    if (editor != nullptr) {
        editor->hide();
        if (editor->parent() == nullptr) {
            editor->setParent(this);
        }
    }
    m_columns[column].editor = editor;
}

void IBaseTable::setColumnDblClick(int column, bool enabled)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].dblClick = enabled;
    }
}

bool IBaseTable::commitEdit(int row, int column, const QString& text)
{
    CTableEditRecord record;
    record.row = row;
    record.column = column;
    record.text = text;
    // The table's own handler (and a subclass's) sees the edit first, then its parent.
    handleEvent(UE_CELL_EDITING, m_id, row, QString::number(column), &record);
    applyEditedText(row, column, record.text);
    handleEvent(UE_CELL_EDIT_COMMITTED, m_id, row, QString::number(column), &record);
    return true;
}

void IBaseTable::onPressed(const QModelIndex& index)
{
    if (m_view->lastButton() != Qt::LeftButton || !index.isValid()) {
        return;
    }
    const QModelIndex source = sourceIndex(index);
    handleEvent(UE_CELL_PRIMARY, m_id, source.row(), QString::number(source.column()), nullptr);
}

void IBaseTable::onDoubleClicked(const QModelIndex& index)
{
    if (m_view->lastButton() != Qt::LeftButton || !index.isValid()) {
        return;
    }
    const QModelIndex source = sourceIndex(index);
    const int column = source.column();
    if (column >= 0 && column < m_columns.size() && !m_columns[column].dblClick) {
        return;
    }
    if (m_model->flags(source) & Qt::ItemIsEditable) {
        m_view->edit(index);
        return;
    }
    handleEvent(UE_CELL_ACTIVATED, m_id, source.row(), QString::number(column), nullptr);
}

void IBaseTable::onRightClicked(const QModelIndex& index, const QPoint& globalPosition)
{
    int column = -1;
    if (index.isValid()) {
        const QModelIndex source = sourceIndex(index);
        column = source.column();
        if (handleEvent(UE_CELL_SECONDARY, m_id, source.row(), QString::number(column), nullptr)) {
            return;  // the owner shows its own menu
        }
    }
    if (!(m_flags & BTF_CONTEXT_MENU) || m_menuFlags == BTMF_NONE) {
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    buildContextMenu(menu, column);
    menu->popup(globalPosition);
}

void IBaseTable::buildContextMenu(QMenu* menu, int column)
{
    if (m_menuFlags & BTMF_EXPORT) {
        menu->addAction(QStringLiteral("导出..."), this, [this] {
            const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("导出"), QString(),
                                                              QStringLiteral("CSV (*.csv)"));
            if (!path.isEmpty()) {
                exportData(path);
            }
        });
    }
    if (m_menuFlags & BTMF_COPY) {
        menu->addAction(QStringLiteral("复制"), this, [this] { copyData(); });
    }
    if (m_menuFlags & BTMF_COPY_ALL) {
        menu->addAction(QStringLiteral("复制全部"), this, [this] {
            QApplication::clipboard()->setText(rowsAsText(rowsInViewOrder(), QLatin1Char('\t'), false));
        });
    }
    if (m_menuFlags & BTMF_SELECT_ALL) {
        menu->addAction(QStringLiteral("全选"), m_view, [this] { m_view->selectAll(); });
    }
    if ((m_menuFlags & BTMF_FILTER) && column >= 0) {
        menu->addAction(QStringLiteral("筛选..."), this, [this, column] {
            showFilterMenu(column, m_view->visualRect(m_proxy->index(0, m_proxy->mapFromSource(m_model->index(0, column)).column())));
        });
    }
    if ((m_menuFlags & BTMF_CLEAR_FILTER) && m_proxy->hasFilters()) {
        menu->addAction(QStringLiteral("清除筛选"), this, [this] { clearFilter(); });
    }
    if ((m_menuFlags & BTMF_RESET_SORT) && m_sortColumn >= 0) {
        menu->addAction(QStringLiteral("取消排序"), this, [this] {
            m_sortColumn = -1;
            m_sortOrder = TSO_NONE;
            m_proxy->sort(-1);
            m_header->viewport()->update();
        });
    }
    if (m_menuFlags & BTMF_AUTO_WIDTH) {
        menu->addAction(QStringLiteral("自动列宽"), this, [this] { adjustColumnWidth(); });
    }
    if (m_menuFlags & BTMF_COLUMN_LIST) {
        QMenu* list = menu->addMenu(QStringLiteral("显示列"));
        for (int visual = 0; visual < columnCount(); ++visual) {
            const int logical = m_header->logicalIndex(visual);
            if (!colListVisible(logical) || columnLocked(logical)) {
                continue;
            }
            QAction* action = list->addAction(columnHeader(logical));
            action->setCheckable(true);
            action->setChecked(m_columns[logical].visible);
            connect(action, &QAction::toggled, this, [this, logical](bool on) { setColumnVisible(logical, on); });
        }
    }
}

}  // namespace WG
