// Values of the columns that are no fields of a record (computed Greeks, a
// check box), by row key and column. Filled from any thread, read at paint.
#pragma once

#include <QColor>
#include <QHash>
#include <QSet>
#include <QString>
#include <QVariant>

#include <mutex>

namespace WG {
class CBaseTableColumnWidgetDelegate;
}

namespace TC {

class CHpfExtraDataModel {
public:
    CHpfExtraDataModel();
    ~CHpfExtraDataModel();

    // Forgets every extra column and its values.
    void clearColumn();
    void addColumn(int column);
    bool exist(int column) const;
    // The colour is a theme colour, resolved by the caller through WG::CUiResource.
    void addData(const QString& key, int column, const QVariant& value, WG::CBaseTableColumnWidgetDelegate* delegate,
                 const QColor* color);
    QVariant value(const QString& key, int column) const;
    // Null when the cell has no colour of its own. Valid while the theme lives.
    const QColor* color(const QString& key, int column) const;
    WG::CBaseTableColumnWidgetDelegate* delegate(const QString& key, int column) const;
    void removeKey(const QString& key);

private:
    struct Cell {
        QVariant value;
        WG::CBaseTableColumnWidgetDelegate* delegate = nullptr;
        const QColor* color = nullptr;
    };
    mutable std::mutex m_mutex;
    QSet<int> m_columns;
    QHash<QString, QHash<int, Cell>> m_cells;
};

}  // namespace TC
