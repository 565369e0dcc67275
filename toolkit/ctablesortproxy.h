// The sorted and filtered view of a table's rows. Rows keep their source numbers
// (their ids); only the order on screen changes. Texts that read as numbers
// ("2.800", "1,234", "12.5%") sort by value, so a strike column sorts numerically.
#pragma once

#include "toolkit/tableenums.h"

#include <QMap>
#include <QPair>
#include <QSet>
#include <QSortFilterProxyModel>

#include <functional>

namespace WG {

class CTableSortProxy : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit CTableSortProxy(QObject* parent = nullptr);

    // A comparison of two source rows that wins over the default when it is not 0.
    using CustomCompare = std::function<int(int leftRow, int rightRow, int column)>;
    void setCustomCompare(CustomCompare compare) { m_custom = std::move(compare); }

    void setValueFilter(int column, const QPair<EFilterType, QSet<QString>>& filter);
    void setRangeFilter(int column, double minimum, double maximum);
    void clearFilters();
    bool hasFilters() const { return !m_valueFilters.isEmpty() || !m_rangeFilters.isEmpty(); }
    QMap<int, QPair<EFilterType, QSet<QString>>> valueFilters() const { return m_valueFilters; }

    // The number a text stands for; false for text that is no number.
    static bool parseNumber(const QString& text, double& value);
    // -1, 0, 1 by the rules above, for two sort values.
    static int compareValues(const QVariant& left, const QVariant& right);

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    CustomCompare m_custom;
    QMap<int, QPair<EFilterType, QSet<QString>>> m_valueFilters;
    QMap<int, QPair<double, double>> m_rangeFilters;
};

}  // namespace WG
