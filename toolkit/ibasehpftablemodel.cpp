#include "toolkit/ibasehpftablemodel.h"

#include <QVariant>

#include <algorithm>

namespace WG {

IBaseHpfTableModel::IBaseHpfTableModel(bool keepOrder) : m_keepOrder(keepOrder) {}

IBaseHpfTableModel::~IBaseHpfTableModel()
{
    const std::vector<IHpfModelObserver*> observers = m_observers;
    for (IHpfModelObserver* observer : observers) {
        observer->hpfModelDestroyed();
    }
}

int IBaseHpfTableModel::columnType(int) const { return QVariant::String; }

QString IBaseHpfTableModel::getStatDispalyQString(int) const { return QString(); }

bool IBaseHpfTableModel::columnFlashChange(int) const { return false; }

const QColor* IBaseHpfTableModel::getBackgroundColor(int) const { return nullptr; }

int IBaseHpfTableModel::columnFlag(int) const { return 0; }

bool IBaseHpfTableModel::removeDataByKey(const std::string& key)
{
    {
        std::lock_guard<std::mutex> lock(m_rowsMutex);
        auto it = m_index.find(key);
        if (it == m_index.end()) {
            return false;
        }
        m_rows.erase(m_rows.begin() + it->second);
        rebuildIndex();
    }
    notifyStructureChanged();
    return true;
}

int IBaseHpfTableModel::removeDatasByKeys(const std::vector<std::string>& keys)
{
    int removed = 0;
    {
        std::lock_guard<std::mutex> lock(m_rowsMutex);
        std::vector<char> drop(m_rows.size(), 0);
        for (const std::string& key : keys) {
            auto it = m_index.find(key);
            if (it != m_index.end() && drop[static_cast<std::size_t>(it->second)] == 0) {
                drop[static_cast<std::size_t>(it->second)] = 1;
                ++removed;
            }
        }
        if (removed == 0) {
            return 0;
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            if (drop[i] == 0) {
                m_rows[kept++] = m_rows[i];
            }
        }
        m_rows.resize(kept);
        rebuildIndex();
    }
    notifyStructureChanged();
    return removed;
}

void IBaseHpfTableModel::clear()
{
    {
        std::lock_guard<std::mutex> lock(m_rowsMutex);
        m_rows.clear();
        m_index.clear();
    }
    notifyStructureChanged();
}

void IBaseHpfTableModel::filterColumn(int column, QPair<EFilterType, QSet<QString>>& filter)
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    if (filter.first == FLT_NONE) {
        m_filters.remove(column);
    } else {
        m_filters[column] = filter;
    }
}

void IBaseHpfTableModel::filterColumnCombin(QMap<int, QPair<EFilterType, QSet<QString>>>& filters)
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    m_filters = filters;
}

QMap<int, QPair<EFilterType, QSet<QString>>> IBaseHpfTableModel::filters() const
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    return m_filters;
}

bool IBaseHpfTableModel::passesFilter(const IBaseHpfTableDataPtr& row) const
{
    if (!row) {
        return false;
    }
    const auto filters = this->filters();
    for (auto it = filters.constBegin(); it != filters.constEnd(); ++it) {
        const bool inSet = it.value().second.contains(row->getFilterQString(it.key()));
        if ((it.value().first == FLT_INCLUDE && !inSet) || (it.value().first == FLT_EXCLUDE && inSet)) {
            return false;
        }
    }
    return true;
}

bool IBaseHpfTableModel::isFlashChange(int, int) const { return false; }

int IBaseHpfTableModel::customSort(const IBaseHpfTableDataPtr&, const IBaseHpfTableDataPtr&) const { return 0; }

bool IBaseHpfTableModel::_addData(const IBaseHpfTableDataPtr& row)
{
    const std::string key = row->keyString();
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    auto it = m_index.find(key);
    if (it != m_index.end()) {
        m_rows[static_cast<std::size_t>(it->second)] = row;
        return true;
    }
    m_index.emplace(key, static_cast<int>(m_rows.size()));
    m_rows.push_back(row);
    return true;
}

bool IBaseHpfTableModel::_updateData(const IBaseHpfTableDataPtr& row)
{
    const std::string key = row->keyString();
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    auto it = m_index.find(key);
    if (it == m_index.end()) {
        m_index.emplace(key, static_cast<int>(m_rows.size()));
        m_rows.push_back(row);
        return true;
    }
    if (m_keepOrder) {
        m_rows[static_cast<std::size_t>(it->second)] = row;
    } else {
        m_rows.erase(m_rows.begin() + it->second);
        m_rows.push_back(row);
        rebuildIndex();
    }
    return true;
}

bool IBaseHpfTableModel::addData(const IBaseHpfTableDataPtr& row)
{
    if (!row) {
        return false;
    }
    const int before = size();
    const bool known = rowOfKey(row->keyString()) >= 0;
    const bool done = known ? _updateData(row) : _addData(row);
    if (done) {
        if (size() < before || (!m_keepOrder && known)) {
            notifyStructureChanged();
        } else if (known) {
            notifyChanged();
        } else {
            notifyAppended();
        }
    }
    return done;
}

bool IBaseHpfTableModel::updateData(const IBaseHpfTableDataPtr& row) { return addData(row); }

IBaseHpfTableDataPtr IBaseHpfTableModel::getData(int row) const
{
    if (row < 0 || row >= static_cast<int>(m_rows.size())) {
        return IBaseHpfTableDataPtr();
    }
    return m_rows[static_cast<std::size_t>(row)];
}

IBaseHpfTableDataPtr IBaseHpfTableModel::getDataByKey(const QString& key) const
{
    return getDataByKey(key.toStdString());
}

IBaseHpfTableDataPtr IBaseHpfTableModel::getDataByKey(const std::string& key) const
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    auto it = m_index.find(key);
    return it != m_index.end() ? m_rows[static_cast<std::size_t>(it->second)] : IBaseHpfTableDataPtr();
}

int IBaseHpfTableModel::rowOfKey(const std::string& key) const
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    auto it = m_index.find(key);
    return it != m_index.end() ? it->second : -1;
}

void IBaseHpfTableModel::getDatas(QList<IBaseHpfTableDataPtr>& rows) const
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    rows.clear();
    rows.reserve(static_cast<int>(m_rows.size()));
    for (const auto& row : m_rows) {
        rows.append(row);
    }
}

QList<IBaseHpfTableDataPtr> IBaseHpfTableModel::getAllDatas() const
{
    QList<IBaseHpfTableDataPtr> rows;
    getDatas(rows);
    return rows;
}

int IBaseHpfTableModel::size() const
{
    std::lock_guard<std::mutex> lock(m_rowsMutex);
    return static_cast<int>(m_rows.size());
}

CBaseTableColumnWidgetDelegate* IBaseHpfTableModel::columnDelegate(int column) const
{
    auto it = m_delegates.find(column);
    return it != m_delegates.end() ? it->second : nullptr;
}

void IBaseHpfTableModel::setColumnDelegate(int column, CBaseTableColumnWidgetDelegate* delegate)
{
    if (delegate == nullptr) {
        m_delegates.erase(column);
    } else {
        m_delegates[column] = delegate;
    }
}

void IBaseHpfTableModel::addObserver(IHpfModelObserver* observer)
{
    if (std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end()) {
        m_observers.push_back(observer);
    }
}

void IBaseHpfTableModel::removeObserver(IHpfModelObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer), m_observers.end());
}

void IBaseHpfTableModel::notifyChanged()
{
    ++m_dataRevision;
    notifyAppended();
}

void IBaseHpfTableModel::notifyAppended()
{
    // Without a new data revision: a table shows the new rows without asking
    // every old row again.
    for (IHpfModelObserver* observer : m_observers) {
        observer->hpfModelChanged();
    }
}

void IBaseHpfTableModel::notifyStructureChanged()
{
    ++m_structureRevision;
    notifyChanged();
}

void IBaseHpfTableModel::rebuildIndex()
{
    m_index.clear();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_index[m_rows[i]->keyString()] = static_cast<int>(i);
    }
}

}  // namespace WG
