#include "toolkit/chpfextradatamodel.h"

namespace TC {

CHpfExtraDataModel::CHpfExtraDataModel() = default;

CHpfExtraDataModel::~CHpfExtraDataModel() = default;

void CHpfExtraDataModel::clearColumn()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_columns.clear();
    m_cells.clear();
}

void CHpfExtraDataModel::addColumn(int column)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_columns.insert(column);
}

bool CHpfExtraDataModel::exist(int column) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_columns.contains(column);
}

void CHpfExtraDataModel::addData(const QString& key, int column, const QVariant& value,
                                 WG::CBaseTableColumnWidgetDelegate* delegate, const QColor* color)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_columns.insert(column);
    Cell& cell = m_cells[key][column];
    cell.value = value;
    cell.delegate = delegate;
    cell.color = color;
}

QVariant CHpfExtraDataModel::value(const QString& key, int column) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto row = m_cells.constFind(key);
    if (row == m_cells.constEnd()) {
        return QVariant();
    }
    auto cell = row->constFind(column);
    return cell != row->constEnd() ? cell->value : QVariant();
}

const QColor* CHpfExtraDataModel::color(const QString& key, int column) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto row = m_cells.constFind(key);
    if (row == m_cells.constEnd()) {
        return nullptr;
    }
    auto cell = row->constFind(column);
    return cell != row->constEnd() ? cell->color : nullptr;
}

WG::CBaseTableColumnWidgetDelegate* CHpfExtraDataModel::delegate(const QString& key, int column) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto row = m_cells.constFind(key);
    if (row == m_cells.constEnd()) {
        return nullptr;
    }
    auto cell = row->constFind(column);
    return cell != row->constEnd() ? cell->delegate : nullptr;
}

void CHpfExtraDataModel::removeKey(const QString& key)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_cells.remove(key);
}

}  // namespace TC
