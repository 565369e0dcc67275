#include "toolkit/ctablesortproxy.h"

#include "seam/common.h"
#include "toolkit/ctablecellmodel.h"

namespace WG {

CTableSortProxy::CTableSortProxy(QObject* parent) : QSortFilterProxyModel(parent)
{
    setSortRole(CTableCellModel::SortRole);
    setDynamicSortFilter(true);
}

void CTableSortProxy::setValueFilter(int column, const QPair<EFilterType, QSet<QString>>& filter)
{
    if (filter.first == FLT_NONE) {
        m_valueFilters.remove(column);
    } else {
        m_valueFilters[column] = filter;
    }
    invalidateFilter();
}

void CTableSortProxy::setRangeFilter(int column, double minimum, double maximum)
{
    m_rangeFilters[column] = qMakePair(minimum, maximum);
    invalidateFilter();
}

void CTableSortProxy::clearFilters()
{
    if (!hasFilters()) {
        return;
    }
    m_valueFilters.clear();
    m_rangeFilters.clear();
    invalidateFilter();
}

bool CTableSortProxy::parseNumber(const QString& text, double& value)
{
    QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return false;
    }
    if (trimmed.endsWith(QLatin1Char('%'))) {
        trimmed.chop(1);
    }
    trimmed.remove(QLatin1Char(','));
    bool ok = false;
    value = trimmed.toDouble(&ok);
    return ok && utils::isUsable(value);
}

int CTableSortProxy::compareValues(const QVariant& left, const QVariant& right)
{
    double a = 0.0;
    double b = 0.0;
    bool leftNumber = false;
    bool rightNumber = false;
    if (left.type() == QVariant::Double) {
        a = left.toDouble();
        leftNumber = utils::isUsable(a);
    } else {
        leftNumber = parseNumber(left.toString(), a);
    }
    if (right.type() == QVariant::Double) {
        b = right.toDouble();
        rightNumber = utils::isUsable(b);
    } else {
        rightNumber = parseNumber(right.toString(), b);
    }
    if (leftNumber && rightNumber) {
        return a < b ? -1 : (b < a ? 1 : 0);
    }
    // Numbers before texts; empty or absent values after everything.
    if (leftNumber != rightNumber) {
        return leftNumber ? -1 : 1;
    }
    const QString l = left.type() == QVariant::Double ? QString() : left.toString();
    const QString r = right.type() == QVariant::Double ? QString() : right.toString();
    if (l.isEmpty() != r.isEmpty()) {
        return l.isEmpty() ? 1 : -1;
    }
    const int order = QString::localeAwareCompare(l, r);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

bool CTableSortProxy::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (m_custom) {
        const int custom = m_custom(left.row(), right.row(), left.column());
        if (custom != 0) {
            return custom < 0;
        }
    }
    const int order = compareValues(left.data(sortRole()), right.data(sortRole()));
    if (order != 0) {
        return order < 0;
    }
    // Equal values keep the order of their ids, so a sort is stable and repeatable.
    return left.row() < right.row();
}

bool CTableSortProxy::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const QAbstractItemModel* source = sourceModel();
    if (source == nullptr) {
        return true;
    }
    for (auto it = m_valueFilters.constBegin(); it != m_valueFilters.constEnd(); ++it) {
        const QString text = source->index(sourceRow, it.key(), sourceParent).data(Qt::DisplayRole).toString();
        const bool inSet = it.value().second.contains(text);
        if ((it.value().first == FLT_INCLUDE && !inSet) || (it.value().first == FLT_EXCLUDE && inSet)) {
            return false;
        }
    }
    for (auto it = m_rangeFilters.constBegin(); it != m_rangeFilters.constEnd(); ++it) {
        const QVariant value = source->index(sourceRow, it.key(), sourceParent).data(sortRole());
        double number = 0.0;
        const bool isNumber = value.type() == QVariant::Double ? (number = value.toDouble(), utils::isUsable(number))
                                                               : parseNumber(value.toString(), number);
        if (!isNumber || number < it.value().first || number > it.value().second) {
            return false;
        }
    }
    return true;
}

}  // namespace WG
