// The rows of a high-performance table and what the table asks of its columns.
// Rows are kept in insertion order and found by key. Rows change on the GUI
// thread only; getAllDatas() and getDatas() may be called from any thread (a
// worker that prepares a reload), and copy the row handles under the lock.
// The table brings the screen up to date at updateTable(), or at the end of the
// turn of the event loop in which rows changed.
#pragma once

#include "toolkit/ibasehpftabledata.h"
#include "toolkit/tableenums.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace WG {

class CBaseTableColumnWidgetDelegate;

// Told of row changes by a model; the tables' adapters implement it.
class IHpfModelObserver {
public:
    virtual ~IHpfModelObserver() = default;
    virtual void hpfModelChanged() = 0;
    virtual void hpfModelDestroyed() = 0;
};

class IBaseHpfTableModel {
public:
    // keepOrder: rows stay in insertion order (a row updated in place keeps its
    // place); false lets an update move its row to the end.
    explicit IBaseHpfTableModel(bool keepOrder = true);
    virtual ~IBaseHpfTableModel();
    IBaseHpfTableModel(const IBaseHpfTableModel&) = delete;
    IBaseHpfTableModel& operator=(const IBaseHpfTableModel&) = delete;

    virtual int columnCount() const = 0;
    virtual QString columnHeader(int column) const = 0;
    virtual int columnType(int column) const;              // QVariant::Type, String by default
    virtual QString getStatDispalyQString(int column) const;  // "" : no statistic for the column
    virtual bool columnFlashChange(int column) const;
    virtual const QColor* getBackgroundColor(int column) const;
    virtual int columnFlag(int column) const;
    virtual bool removeDataByKey(const std::string& key);
    // Removes the rows of many keys at once (one pass over the rows); the number removed.
    virtual int removeDatasByKeys(const std::vector<std::string>& keys);
    virtual void clear();
    virtual void filterColumn(int column, QPair<EFilterType, QSet<QString>>& filter);
    virtual void filterColumnCombin(QMap<int, QPair<EFilterType, QSet<QString>>>& filters);
    virtual bool isFlashChange(int row, int column) const;
    // <0, 0, >0 as left sorts before, with, after right on the current sort
    // column; 0 leaves the order to the table's default comparison.
    virtual int customSort(const IBaseHpfTableDataPtr& left, const IBaseHpfTableDataPtr& right) const;
    // Store a new row, or replace the row of the same key. Overrides call the base.
    virtual bool _addData(const IBaseHpfTableDataPtr& row);
    virtual bool _updateData(const IBaseHpfTableDataPtr& row);

    // Adds a row, or replaces the row with its key.
    bool addData(const IBaseHpfTableDataPtr& row);
    bool updateData(const IBaseHpfTableDataPtr& row);
    IBaseHpfTableDataPtr getData(int row) const;
    IBaseHpfTableDataPtr getDataByKey(const QString& key) const;
    IBaseHpfTableDataPtr getDataByKey(const std::string& key) const;
    int rowOfKey(const std::string& key) const;
    void getDatas(QList<IBaseHpfTableDataPtr>& rows) const;
    QList<IBaseHpfTableDataPtr> getAllDatas() const;
    int size() const;
    CBaseTableColumnWidgetDelegate* columnDelegate(int column) const;
    void setColumnDelegate(int column, CBaseTableColumnWidgetDelegate* delegate);  // not owned

    // Whether a row passes the column filters set on the model.
    bool passesFilter(const IBaseHpfTableDataPtr& row) const;
    QMap<int, QPair<EFilterType, QSet<QString>>> filters() const;
    void setSortColumn(int column) { m_sortColumn = column; }
    int sortColumn() const { return m_sortColumn; }

    // For the tables: a change of the row set (not only of values) since a revision.
    unsigned structureRevision() const { return m_structureRevision; }
    unsigned dataRevision() const { return m_dataRevision; }
    void addObserver(IHpfModelObserver* observer);
    void removeObserver(IHpfModelObserver* observer);
    // Tells the tables that rows changed in a way they can't see (values inside a row).
    void notifyChanged();

protected:
    void notifyStructureChanged();
    // Rows were added after the last one, and no other row changed.
    void notifyAppended();
    mutable std::mutex m_rowsMutex;

private:
    void rebuildIndex();

    bool m_keepOrder;
    std::vector<IBaseHpfTableDataPtr> m_rows;
    std::unordered_map<std::string, int> m_index;
    std::unordered_map<int, CBaseTableColumnWidgetDelegate*> m_delegates;
    QMap<int, QPair<EFilterType, QSet<QString>>> m_filters;
    std::vector<IHpfModelObserver*> m_observers;
    unsigned m_structureRevision = 0;
    unsigned m_dataRevision = 0;
    int m_sortColumn = -1;
};

}  // namespace WG
