#include "toolkit/cbasehighperformancetable.h"

#include "seam/common.h"
#include "toolkit/cbasehpftablepanel.h"
#include "toolkit/cbasetablecolumnwidgetdelegate.h"
#include "toolkit/chpftableadaptermodel.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"

namespace WG {

CBaseHighPerformanceTable::CBaseHighPerformanceTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags)
    : IBaseTable(id, parent, menuFlags, new CBaseHpfTablePanel(this)),
      m_panel(static_cast<CBaseHpfTablePanel*>(tableView())),
      m_adapter(new CHpfTableAdapterModel(this))
{
    attachModel(m_adapter);
    connect(m_adapter, &CHpfTableAdapterModel::sigSynced, this, [this] { refreshStatistics(); });
    proxy()->setCustomCompare([this](int left, int right, int column) {
        if (m_dataModel == nullptr) {
            return 0;
        }
        m_dataModel->setSortColumn(column);
        return m_dataModel->customSort(m_dataModel->getData(left), m_dataModel->getData(right));
    });
}

CBaseHighPerformanceTable::~CBaseHighPerformanceTable()
{
    m_adapter->setSource(nullptr);
}

QAbstractItemModel* CBaseHighPerformanceTable::cellModel() const { return m_adapter; }

void CBaseHighPerformanceTable::setDataModel(IBaseHpfTableModel* model)
{
    m_dataModel = model;
    m_adapter->setSource(model);
    ensureColumnStates();
    refreshStatistics();
}

void CBaseHighPerformanceTable::clear()
{
    if (m_dataModel != nullptr) {
        m_dataModel->clear();
    }
    m_adapter->sync();
}

void CBaseHighPerformanceTable::clearColumns()
{
    resetColumnStates();
    ensureColumnStates();
}

void CBaseHighPerformanceTable::setColumnCount(int) { ensureColumnStates(); }

int CBaseHighPerformanceTable::addColumn()
{
    m_adapter->sync();
    ensureColumnStates();
    return columnCount() - 1;
}

void CBaseHighPerformanceTable::removeColumn(int) {}

void CBaseHighPerformanceTable::removeRow(int row)
{
    const IBaseHpfTableDataPtr data = rowData(row);
    if (data && m_dataModel != nullptr) {
        m_dataModel->removeDataByKey(data->keyString());
        m_adapter->sync();
    }
}

void CBaseHighPerformanceTable::updateUiData()
{
    if (m_dataModel != nullptr) {
        m_dataModel->notifyChanged();
    }
    m_adapter->sync();
    IBaseTable::updateUiData();
}

void CBaseHighPerformanceTable::updateTable()
{
    m_adapter->sync();
    // Rows that flash need repaints until their flash is over.
    if (m_dataModel != nullptr && m_adapter->rowCount() > 0) {
        for (int column = 0; column < m_adapter->columnCount(); ++column) {
            if (m_dataModel->columnFlashChange(column) || columnFlashChange(column)) {
                startFlashTimer();
                break;
            }
        }
    }
}

void CBaseHighPerformanceTable::onModelFlushNeeded() { m_adapter->sync(); }

void CBaseHighPerformanceTable::refreshStatistics()
{
    ensureColumnStates();
    if (m_dataModel == nullptr) {
        return;
    }
    for (int column = 0; column < m_columns.size(); ++column) {
        const QString stat = m_dataModel->getStatDispalyQString(column);
        if (stat != statText(column)) {
            setStatText(column, stat);
        }
    }
}

IBaseHpfTableDataPtr CBaseHighPerformanceTable::rowData(int row) const
{
    if (m_dataModel == nullptr || row < 0 || row >= m_adapter->rowCount()) {
        return IBaseHpfTableDataPtr();
    }
    return m_dataModel->getData(row);
}

int CBaseHighPerformanceTable::rowOfKey(const std::string& key) const
{
    if (m_dataModel == nullptr) {
        return -1;
    }
    const int row = m_dataModel->rowOfKey(key);
    return row < m_adapter->rowCount() ? row : -1;
}

std::string CBaseHighPerformanceTable::rowKey(int row) const
{
    const IBaseHpfTableDataPtr data = rowData(row);
    return data ? data->keyString() : std::string();
}

bool CBaseHighPerformanceTable::cellFlashing(const QModelIndex& sourceIndex, double now) const
{
    const int column = sourceIndex.column();
    const bool columnFlashes = columnFlashChange(column) ||
                               (m_dataModel != nullptr && m_dataModel->columnFlashChange(column));
    if (!columnFlashes || !sourceIndex.data(CTableCellModel::FlashingRole).toBool()) {
        return false;
    }
    const double changedAt = sourceIndex.data(CTableCellModel::ChangedAtRole).toDouble();
    return changedAt <= 0.0 || now - changedAt < flashDuration();
}

}  // namespace WG
