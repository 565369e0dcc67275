#include "toolkit/chpftableadaptermodel.h"

#include "seam/common.h"
#include "toolkit/ctablecellmodel.h"

#include <algorithm>

namespace WG {

CHpfTableAdapterModel::CHpfTableAdapterModel(QObject* parent) : QAbstractTableModel(parent)
{
    m_syncTimer.setSingleShot(true);
    m_syncTimer.setInterval(0);
    connect(&m_syncTimer, &QTimer::timeout, this, [this] { sync(); });
}

CHpfTableAdapterModel::~CHpfTableAdapterModel()
{
    if (m_source != nullptr) {
        m_source->removeObserver(this);
    }
}

void CHpfTableAdapterModel::setSource(IBaseHpfTableModel* source)
{
    if (source == m_source) {
        sync();
        return;
    }
    beginResetModel();
    if (m_source != nullptr) {
        m_source->removeObserver(this);
    }
    m_source = source;
    if (m_source != nullptr) {
        m_source->addObserver(this);
        m_rows = m_source->size();
        m_columns = m_source->columnCount();
        m_structureRevision = m_source->structureRevision();
        m_dataRevision = m_source->dataRevision();
    } else {
        m_rows = 0;
        m_columns = 0;
    }
    endResetModel();
}

bool CHpfTableAdapterModel::sync()
{
    m_syncTimer.stop();
    if (m_source == nullptr) {
        return false;
    }
    const int rows = m_source->size();
    const int columns = m_source->columnCount();
    const unsigned structure = m_source->structureRevision();
    const unsigned data = m_source->dataRevision();
    if (rows == m_rows && columns == m_columns && structure == m_structureRevision && data == m_dataRevision) {
        return false;
    }
    if (columns != m_columns || structure != m_structureRevision || rows < m_rows) {
        beginResetModel();
        m_rows = rows;
        m_columns = columns;
        m_structureRevision = structure;
        m_dataRevision = data;
        endResetModel();
        emit sigSynced();
        return true;
    }
    const int before = m_rows;
    if (rows > m_rows) {
        beginInsertRows(QModelIndex(), m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    }
    // Values may have changed in any old row: one ranged signal for all of
    // them. Rows only appended leave the old ones alone, and with them a
    // sorting proxy's look at every row.
    const bool valuesChanged = data != m_dataRevision;
    m_dataRevision = data;
    if (valuesChanged && before > 0 && m_columns > 0) {
        emit dataChanged(index(0, 0), index(before - 1, m_columns - 1));
    }
    emit sigSynced();
    return true;
}

void CHpfTableAdapterModel::cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn)
{
    firstRow = std::max(firstRow, 0);
    firstColumn = std::max(firstColumn, 0);
    lastRow = std::min(lastRow, m_rows - 1);
    lastColumn = std::min(lastColumn, m_columns - 1);
    if (firstRow > lastRow || firstColumn > lastColumn) {
        return;
    }
    emit dataChanged(index(firstRow, firstColumn), index(lastRow, lastColumn));
}

int CHpfTableAdapterModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_rows; }

int CHpfTableAdapterModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant CHpfTableAdapterModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || m_source == nullptr || index.row() >= m_rows || index.column() >= m_columns) {
        return QVariant();
    }
    const IBaseHpfTableDataPtr row = m_source->getData(index.row());
    if (!row) {
        return QVariant();
    }
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return row->displayText(column);
    case Qt::TextAlignmentRole:
        return alignmentOf(column);
    case CTableCellModel::SortRole: {
        switch (m_source->columnType(column)) {
        case QVariant::Double:
            return row->doubleValue(column);
        case QVariant::Int: {
            const int value = row->intValue(column);
            return utils::isAbsent(value) ? utils::kAbsentDouble : static_cast<double>(value);
        }
        case QVariant::LongLong: {
            const long long value = row->longLongValue(column);
            return utils::isAbsent(value) ? utils::kAbsentDouble : static_cast<double>(value);
        }
        default:
            return row->displayText(column);
        }
    }
    case CTableCellModel::TextColorRole: {
        const QColor* color = row->textColor(column);
        return color != nullptr ? QVariant(*color) : QVariant();
    }
    case CTableCellModel::BackgroundColorRole: {
        const QColor* color = backgroundOf(*row, column);
        return color != nullptr ? QVariant(*color) : QVariant();
    }
    case CTableCellModel::FlashingRole:
        return row->isFlashChange(column) || m_source->isFlashChange(index.row(), column);
    case CTableCellModel::ChangedAtRole: {
        const double at = row->getChangedValue(column);
        return utils::isUsable(at) ? at : 0.0;
    }
    case CTableCellModel::RowKeyRole:
        return row->qsKey();
    case CTableCellModel::ValueTypeRole:
        return m_source->columnType(column);
    case Qt::ToolTipRole: {
        const QString tip = row->getItemIconTip(column);
        return tip.isEmpty() ? QVariant() : QVariant(tip);
    }
    default:
        return QVariant();
    }
}

bool CHpfTableAdapterModel::cellPaint(int row, int column, CellPaint& paint) const
{
    if (m_source == nullptr || row < 0 || row >= m_rows || column < 0 || column >= m_columns) {
        return false;
    }
    const IBaseHpfTableDataPtr data = m_source->getData(row);
    if (!data) {
        return false;
    }
    paint.text = data->displayText(column);
    paint.alignment = alignmentOf(column);
    const QColor* text = data->textColor(column);
    paint.textColor = text != nullptr ? *text : QColor();
    const QColor* background = backgroundOf(*data, column);
    paint.background = background != nullptr ? *background : QColor();
    return true;
}

int CHpfTableAdapterModel::alignmentOf(int column) const
{
    const int type = m_source->columnType(column);
    const bool number = type == QVariant::Double || type == QVariant::Int || type == QVariant::LongLong;
    return static_cast<int>((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

const QColor* CHpfTableAdapterModel::backgroundOf(const IBaseHpfTableData& row, int column) const
{
    const QColor* color = row.getBackgroundColor(column);
    return color != nullptr ? color : m_source->getBackgroundColor(column);
}

QVariant CHpfTableAdapterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || m_source == nullptr || section < 0 ||
        section >= m_columns) {
        return QVariant();
    }
    return m_source->columnHeader(section);
}

Qt::ItemFlags CHpfTableAdapterModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

void CHpfTableAdapterModel::hpfModelChanged()
{
    if (!m_syncTimer.isActive()) {
        m_syncTimer.start();
    }
}

void CHpfTableAdapterModel::hpfModelDestroyed()
{
    beginResetModel();
    m_source = nullptr;
    m_rows = 0;
    m_columns = 0;
    endResetModel();
}

}  // namespace WG
