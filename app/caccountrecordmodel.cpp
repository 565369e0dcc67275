#include "app/caccountrecordmodel.h"

#include "seam/common.h"
#include "seam/ctimeservice.h"
#include "seam/formatters.h"
#include "toolkit/ctablecellmodel.h"

#include <QDateTime>

namespace desk {

CAccountRecordModel::CAccountRecordModel(const QStringList& headers, QObject* parent)
    : QAbstractTableModel(parent), m_headers(headers)
{
}

CAccountRecordModel::~CAccountRecordModel() = default;

long long CAccountRecordModel::recency(const nqservice::IData&) const { return 0; }

bool CAccountRecordModel::keeps(const nqservice::IData&) const { return true; }

bool CAccountRecordModel::isStale(const nqservice::IData&, const nqservice::IData&) const { return false; }

void CAccountRecordModel::apply(const std::vector<nqservice::IDataPtr>& records)
{
    // New records newer than every row gather here and enter with one signal:
    // a burst of orders costs the views one insertion, not one per order.
    std::vector<Row> top;
    std::unordered_map<std::string, std::size_t> topIndex;
    for (const nqservice::IDataPtr& record : records) {
        if (!record) {
            continue;
        }
        const std::string key = record->getKey();
        auto pending = topIndex.find(key);
        auto stored = m_index.find(key);
        if (!keeps(*record)) {
            if (pending != topIndex.end()) {
                top.erase(top.begin() + static_cast<std::ptrdiff_t>(pending->second));
                topIndex.clear();
                for (std::size_t i = 0; i < top.size(); ++i) {
                    topIndex[top[i].key] = i;
                }
            } else if (stored != m_index.end()) {
                flushTop(top);
                topIndex.clear();
                removeStoredAt(m_index.at(key));
            }
            continue;
        }
        if (pending != topIndex.end()) {
            Row& row = top[pending->second];
            if (!isStale(*record, *row.record)) {
                row.record = record;
            }
            continue;
        }
        if (stored != m_index.end()) {
            Row& row = m_rows[static_cast<std::size_t>(stored->second)];
            if (isStale(*record, *row.record)) {
                continue;
            }
            // Recency decides a row's place only when it arrives: an update stays put.
            row.record = record;
            const int at = rowOfStored(stored->second);
            emit dataChanged(index(at, 0), index(at, columnCount() - 1));
            continue;
        }
        Row row{record, key, recency(*record)};
        const bool onTop = !top.empty() ? row.recency >= top.back().recency
                                        : (m_rows.empty() || row.recency >= m_rows.back().recency);
        if (onTop) {
            topIndex[key] = top.size();
            top.push_back(std::move(row));
        } else {
            flushTop(top);
            topIndex.clear();
            insertSorted(std::move(row));
        }
    }
    flushTop(top);
}

void CAccountRecordModel::flushTop(std::vector<Row>& top)
{
    if (top.empty()) {
        return;
    }
    beginInsertRows(QModelIndex(), 0, static_cast<int>(top.size()) - 1);
    for (Row& row : top) {
        m_index[row.key] = static_cast<int>(m_rows.size());
        m_rows.push_back(std::move(row));
    }
    endInsertRows();
    top.clear();
}

void CAccountRecordModel::insertSorted(Row row)
{
    // Among equal recency the later arrival shows above: it goes after them in store.
    int stored = static_cast<int>(m_rows.size());
    while (stored > 0 && m_rows[static_cast<std::size_t>(stored - 1)].recency > row.recency) {
        --stored;
    }
    const int at = static_cast<int>(m_rows.size()) - stored;
    beginInsertRows(QModelIndex(), at, at);
    m_rows.insert(m_rows.begin() + stored, std::move(row));
    reindexFrom(stored);
    endInsertRows();
}

void CAccountRecordModel::removeStoredAt(int stored)
{
    const int at = rowOfStored(stored);
    beginRemoveRows(QModelIndex(), at, at);
    m_index.erase(m_rows[static_cast<std::size_t>(stored)].key);
    m_rows.erase(m_rows.begin() + stored);
    reindexFrom(stored);
    endRemoveRows();
}

void CAccountRecordModel::reindexFrom(int stored)
{
    for (std::size_t i = static_cast<std::size_t>(stored); i < m_rows.size(); ++i) {
        m_index[m_rows[i].key] = static_cast<int>(i);
    }
}

void CAccountRecordModel::removeAccount(const std::string& accountKey)
{
    for (int stored = static_cast<int>(m_rows.size()) - 1; stored >= 0; --stored) {
        if (accountOf(*m_rows[static_cast<std::size_t>(stored)].record) == accountKey) {
            removeStoredAt(stored);
        }
    }
}

void CAccountRecordModel::clear()
{
    if (m_rows.empty()) {
        return;
    }
    beginResetModel();
    m_rows.clear();
    m_index.clear();
    endResetModel();
}

const CAccountRecordModel::Row* CAccountRecordModel::rowAt(int row) const
{
    if (row < 0 || row >= static_cast<int>(m_rows.size())) {
        return nullptr;
    }
    return &m_rows[static_cast<std::size_t>(storedOf(row))];
}

nqservice::IDataPtr CAccountRecordModel::record(int row) const
{
    const Row* found = rowAt(row);
    return found != nullptr ? found->record : nqservice::IDataPtr();
}

std::string CAccountRecordModel::keyOf(int row) const
{
    const Row* found = rowAt(row);
    return found != nullptr ? found->key : std::string();
}

int CAccountRecordModel::rowOfKey(const std::string& key) const
{
    auto it = m_index.find(key);
    return it == m_index.end() ? -1 : rowOfStored(it->second);
}

void CAccountRecordModel::setAccountNames(const QHash<QString, QString>& names)
{
    m_accountNames = names;
    if (!m_rows.empty()) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
}

QString CAccountRecordModel::accountText(const std::string& accountKey) const
{
    const QString key = QString::fromStdString(accountKey);
    const QString name = m_accountNames.value(key);
    return name.isEmpty() ? key : name;
}

int CAccountRecordModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CAccountRecordModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_headers.size();
}

QVariant CAccountRecordModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= columnCount()) {
        return QVariant();
    }
    const Row& row = *rowAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return cell(*row.record, index.column()).text;
    case Qt::TextAlignmentRole:
        return static_cast<int>((cell(*row.record, index.column()).number ? Qt::AlignRight : Qt::AlignLeft) |
                                Qt::AlignVCenter);
    case WG::CTableCellModel::SortRole: {
        const Cell c = cell(*row.record, index.column());
        return c.sort.isValid() ? c.sort : QVariant(c.text);
    }
    case WG::CTableCellModel::TextColorKeyRole:
        return cell(*row.record, index.column()).colorKey;
    case WG::CTableCellModel::RowKeyRole:
        return QString::fromStdString(row.key);
    case WG::CTableCellModel::ValueTypeRole:
        return static_cast<int>(cell(*row.record, index.column()).number ? QVariant::Double : QVariant::String);
    default:
        return QVariant();
    }
}

QVariant CAccountRecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= m_headers.size()) {
        return QVariant();
    }
    return m_headers.at(section);
}

Qt::ItemFlags CAccountRecordModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

CAccountRecordModel::Cell CAccountRecordModel::textCell(const QString& text, const QString& colorKey)
{
    Cell c;
    c.text = text;
    c.colorKey = colorKey;
    return c;
}

CAccountRecordModel::Cell CAccountRecordModel::numberCell(double value, int decimals, bool segmented,
                                                          const QString& colorKey)
{
    Cell c;
    c.number = true;
    c.colorKey = colorKey;
    if (!utils::isUsable(value)) {
        c.text = QStringLiteral("-");
        c.sort = utils::kAbsentDouble;
        return c;
    }
    c.text = WG::formatDoubleNumber(value, decimals, segmented ? utils::FNF_SEGMENTED : utils::FNF_NONE, false,
                                    QStringLiteral("-"));
    c.sort = value;
    return c;
}

CAccountRecordModel::Cell CAccountRecordModel::integerCell(long long value, const QString& colorKey)
{
    Cell c;
    c.number = true;
    c.colorKey = colorKey;
    if (utils::isAbsent(value) || value == utils::kAbsentInt) {
        c.text = QStringLiteral("-");
        c.sort = utils::kAbsentDouble;
        return c;
    }
    c.text = QString::number(value);
    c.sort = static_cast<double>(value);
    return c;
}

CAccountRecordModel::Cell CAccountRecordModel::timeCell(long long msSinceEpoch)
{
    Cell c;
    if (msSinceEpoch <= 0) {
        c.text = QStringLiteral("-");
        c.sort = 0.0;
        return c;
    }
    c.text = TC::exchangeDateTime(msSinceEpoch).toString(QStringLiteral("HH:mm:ss"));
    c.sort = static_cast<double>(msSinceEpoch);
    return c;
}

QString CAccountRecordModel::signColorKey(double value)
{
    if (!utils::isUsable(value) || utils::isPriceEqual(value, 0.0)) {
        return QString();
    }
    return value > 0.0 ? QStringLiteral("clr_global_rise") : QStringLiteral("clr_global_fall");
}

}  // namespace desk
