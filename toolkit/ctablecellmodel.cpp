#include "toolkit/ctablecellmodel.h"

#include "seam/common.h"

#include <algorithm>

namespace WG {

CTableCellModel::Cell::Cell() : number(utils::kAbsentDouble) {}

CTableCellModel::CTableCellModel(QObject* parent) : QAbstractTableModel(parent)
{
    // One signal per turn of the event loop, whatever the number of writes.
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(0);
    connect(&m_flushTimer, &QTimer::timeout, this, &CTableCellModel::flush);
}

CTableCellModel::~CTableCellModel() = default;

int CTableCellModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CTableCellModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

bool CTableCellModel::valid(int row, int column) const
{
    return row >= 0 && row < static_cast<int>(m_rows.size()) && column >= 0 && column < m_columns.size();
}

bool CTableCellModel::looksNumeric(const QString& text)
{
    if (text.isEmpty()) {
        return false;
    }
    const QChar first = text.at(0);
    if (first.isDigit()) {
        return true;
    }
    return (first == QLatin1Char('-') || first == QLatin1Char('+')) && text.size() > 1 && text.at(1).isDigit();
}

int CTableCellModel::alignmentOf(const Cell& cell, const Column& column)
{
    if (column.alignment != 0) {
        return column.alignment;
    }
    const bool number = cell.type == QVariant::Double || cell.type == QVariant::Int || cell.type == QVariant::LongLong ||
                        looksNumeric(cell.text);
    return static_cast<int>((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

bool CTableCellModel::cellPaint(int row, int column, CellPaint& paint) const
{
    if (!valid(row, column)) {
        return false;
    }
    const Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    const Column& properties = m_columns[column];
    paint.text = &cell.text;
    paint.textColorKey = &cell.textColorKey;
    paint.backgroundKey = &cell.backgroundKey;
    paint.changedAt = cell.changedAt;
    paint.alignment = alignmentOf(cell, properties);
    paint.bold = properties.bold;
    return true;
}

QVariant CTableCellModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !valid(index.row(), index.column())) {
        return QVariant();
    }
    const Cell& cell = m_rows[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
    const Column& column = m_columns[index.column()];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return cell.text;
    case Qt::TextAlignmentRole:
        return alignmentOf(cell, column);
    case SortRole:
        if (cell.type == QVariant::Double || cell.type == QVariant::Int || cell.type == QVariant::LongLong) {
            return cell.number;
        }
        return cell.text;
    case TextColorKeyRole:
        return cell.textColorKey;
    case BackgroundKeyRole:
        return cell.backgroundKey;
    case ChangedAtRole:
        return cell.changedAt;
    case BoldRole:
        return column.bold;
    case RowKeyRole:
        return QString::number(index.row());
    case ValueTypeRole:
        return cell.type;
    default:
        return QVariant();
    }
}

QVariant CTableCellModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal) {
        if (section < 0 || section >= m_columns.size()) {
            return QVariant();
        }
        if (role == Qt::DisplayRole) {
            return m_columns[section].header;
        }
        return QVariant();
    }
    if (role == Qt::DisplayRole && section >= 0 && section < static_cast<int>(m_rows.size())) {
        return section;
    }
    return QVariant();
}

Qt::ItemFlags CTableCellModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (index.column() < m_columns.size() && m_columns[index.column()].editable) {
        result |= Qt::ItemIsEditable;
    }
    return result;
}

void CTableCellModel::setColumnCount(int count)
{
    count = std::max(0, count);
    flush();
    const int old = m_columns.size();
    if (count > old) {
        beginInsertColumns(QModelIndex(), old, count - 1);
        m_columns.resize(count);
        for (auto& row : m_rows) {
            row.resize(static_cast<std::size_t>(count));
        }
        endInsertColumns();
    } else if (count < old) {
        beginRemoveColumns(QModelIndex(), count, old - 1);
        m_columns.resize(count);
        for (auto& row : m_rows) {
            row.resize(static_cast<std::size_t>(count));
        }
        endRemoveColumns();
    }
}

int CTableCellModel::insertColumnAt(int column)
{
    flush();
    column = std::clamp(column, 0, m_columns.size());
    beginInsertColumns(QModelIndex(), column, column);
    m_columns.insert(column, Column());
    for (auto& row : m_rows) {
        row.insert(row.begin() + column, Cell());
    }
    endInsertColumns();
    return column;
}

void CTableCellModel::removeColumnAt(int column)
{
    if (column < 0 || column >= m_columns.size()) {
        return;
    }
    flush();
    beginRemoveColumns(QModelIndex(), column, column);
    m_columns.remove(column);
    for (auto& row : m_rows) {
        row.erase(row.begin() + column);
    }
    endRemoveColumns();
}

void CTableCellModel::setRowCountTo(int count)
{
    count = std::max(0, count);
    flush();
    const int old = static_cast<int>(m_rows.size());
    if (count > old) {
        beginInsertRows(QModelIndex(), old, count - 1);
        m_rows.resize(static_cast<std::size_t>(count), std::vector<Cell>(static_cast<std::size_t>(m_columns.size())));
        endInsertRows();
    } else if (count < old) {
        beginRemoveRows(QModelIndex(), count, old - 1);
        m_rows.resize(static_cast<std::size_t>(count));
        endRemoveRows();
    }
}

int CTableCellModel::appendRowAt()
{
    const int row = static_cast<int>(m_rows.size());
    setRowCountTo(row + 1);
    return row;
}

void CTableCellModel::removeRowAt(int row)
{
    if (row < 0 || row >= static_cast<int>(m_rows.size())) {
        return;
    }
    flush();
    beginRemoveRows(QModelIndex(), row, row);
    m_rows.erase(m_rows.begin() + row);
    endRemoveRows();
}

void CTableCellModel::clearRows()
{
    m_flushTimer.stop();
    dropPending();
    if (m_rows.empty()) {
        return;
    }
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

void CTableCellModel::setHeaderText(int column, const QString& text)
{
    if (column < 0 || column >= m_columns.size() || m_columns[column].header == text) {
        return;
    }
    m_columns[column].header = text;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

QString CTableCellModel::headerText(int column) const
{
    return column >= 0 && column < m_columns.size() ? m_columns[column].header : QString();
}

void CTableCellModel::setColumnFlash(int column, bool flash)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].flash = flash;
    }
}

bool CTableCellModel::columnFlash(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].flash;
}

void CTableCellModel::setColumnBold(int column, bool bold)
{
    if (column >= 0 && column < m_columns.size() && m_columns[column].bold != bold) {
        m_columns[column].bold = bold;
        for (int row = 0; row < static_cast<int>(m_rows.size()); ++row) {
            markChanged(row, column);
        }
    }
}

bool CTableCellModel::columnBold(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].bold;
}

void CTableCellModel::setColumnEditable(int column, bool editable)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].editable = editable;
    }
}

bool CTableCellModel::columnEditable(int column) const
{
    return column >= 0 && column < m_columns.size() && m_columns[column].editable;
}

void CTableCellModel::setColumnAlignment(int column, int alignment)
{
    if (column >= 0 && column < m_columns.size()) {
        m_columns[column].alignment = alignment;
    }
}

void CTableCellModel::markChanged(int row, int column)
{
    if (m_dirtyRows.empty()) {
        m_flushTimer.start();
    }
    if (static_cast<std::size_t>(row) >= m_dirtySpan.size()) {
        m_dirtySpan.resize(std::max(m_rows.size(), static_cast<std::size_t>(row) + 1), {-1, -1});
    }
    std::pair<int, int>& span = m_dirtySpan[static_cast<std::size_t>(row)];
    if (span.first < 0) {
        m_dirtyRows.push_back(row);
        span = {column, column};
        return;
    }
    span.first = std::min(span.first, column);
    span.second = std::max(span.second, column);
}

void CTableCellModel::dropPending()
{
    for (int row : m_dirtyRows) {
        m_dirtySpan[static_cast<std::size_t>(row)] = {-1, -1};
    }
    m_dirtyRows.clear();
}

bool CTableCellModel::setCellText(int row, int column, const QString& text)
{
    if (!valid(row, column)) {
        return false;
    }
    Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    if (cell.type == QVariant::String && cell.text == text) {
        return false;
    }
    const bool textChanged = cell.text != text;
    if (textChanged && m_columns[column].flash && !cell.text.isEmpty()) {
        cell.changedAt = utils::clockMSec();
        m_lastFlashAt = cell.changedAt;
    }
    cell.text = text;
    cell.type = QVariant::String;
    cell.number = utils::kAbsentDouble;
    markChanged(row, column);
    return true;
}

bool CTableCellModel::setCellNumber(int row, int column, const QString& text, double value, int type)
{
    if (!valid(row, column)) {
        return false;
    }
    Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    if (cell.type == type && cell.text == text && cell.number == value) {
        return false;
    }
    // A first value is no change to flash about; neither is a new value with the same text.
    if (cell.text != text && m_columns[column].flash && !cell.text.isEmpty()) {
        cell.changedAt = utils::clockMSec();
        m_lastFlashAt = cell.changedAt;
    }
    cell.text = text;
    cell.number = value;
    cell.type = type;
    markChanged(row, column);
    return true;
}

bool CTableCellModel::setCellTextColorKey(int row, int column, const QString& key)
{
    if (!valid(row, column)) {
        return false;
    }
    Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    if (cell.textColorKey.isSharedWith(key) || cell.textColorKey == key) {
        return false;
    }
    cell.textColorKey = key;
    markChanged(row, column);
    return true;
}

bool CTableCellModel::setCellBackgroundKey(int row, int column, const QString& key)
{
    if (!valid(row, column)) {
        return false;
    }
    Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    if (cell.backgroundKey.isSharedWith(key) || cell.backgroundKey == key) {
        return false;
    }
    cell.backgroundKey = key;
    markChanged(row, column);
    return true;
}

void CTableCellModel::clearCell(int row, int column)
{
    if (!valid(row, column)) {
        return;
    }
    Cell& cell = m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    if (cell.type == 0 && cell.text.isEmpty()) {
        return;
    }
    cell.text.clear();
    cell.type = 0;
    cell.number = utils::kAbsentDouble;
    cell.changedAt = 0.0;
    markChanged(row, column);
}

QString CTableCellModel::cellText(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].text : QString();
}

double CTableCellModel::cellNumber(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].number
                              : utils::kAbsentDouble;
}

int CTableCellModel::cellType(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].type : 0;
}

QString CTableCellModel::cellTextColorKey(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].textColorKey
                              : QString();
}

QString CTableCellModel::cellBackgroundKey(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].backgroundKey
                              : QString();
}

double CTableCellModel::cellChangedAt(int row, int column) const
{
    return valid(row, column) ? m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)].changedAt
                              : 0.0;
}

void CTableCellModel::flush()
{
    m_flushTimer.stop();
    if (m_dirtyRows.empty()) {
        return;
    }
    // A view repaints what a range covers: a tick that touches rows 3 and 50
    // repaints those two rows, not the 46 between them. Past a few runs one
    // range for all costs less than the signals.
    constexpr std::size_t kMaxRuns = 8;
    struct Run {
        int top, bottom, left, right;
    };
    std::sort(m_dirtyRows.begin(), m_dirtyRows.end());
    std::vector<Run> runs;
    const int rows = static_cast<int>(m_rows.size());
    const int lastColumn = m_columns.size() - 1;
    for (int row : m_dirtyRows) {
        const std::pair<int, int> span = m_dirtySpan[static_cast<std::size_t>(row)];
        if (row >= rows || span.first > lastColumn) {
            continue;
        }
        const int right = std::min(span.second, lastColumn);
        if (!runs.empty() && runs.back().bottom == row - 1) {
            Run& run = runs.back();
            run.bottom = row;
            run.left = std::min(run.left, span.first);
            run.right = std::max(run.right, right);
        } else {
            runs.push_back({row, row, span.first, right});
        }
    }
    dropPending();
    if (runs.size() > kMaxRuns) {
        Run all = runs.front();
        for (const Run& run : runs) {
            all.bottom = run.bottom;
            all.left = std::min(all.left, run.left);
            all.right = std::max(all.right, run.right);
        }
        runs.assign(1, all);
    }
    for (const Run& run : runs) {
        emit dataChanged(index(run.top, run.left), index(run.bottom, run.right));
    }
}

}  // namespace WG
