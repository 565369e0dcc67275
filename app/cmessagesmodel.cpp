#include "app/cmessagesmodel.h"

#include "seam/ctimeservice.h"
#include "seam/tradinghelpers.h"
#include "toolkit/ctablecellmodel.h"

#include <QDateTime>

#include <algorithm>

namespace desk {

CMessagesModel::CMessagesModel(int capacity, QObject* parent)
    : QAbstractTableModel(parent), m_capacity(std::max(1, capacity))
{
}

QString CMessagesModel::levelText(int level)
{
    return QString::fromStdString(nqservice::TypeManager::instance()->getEnumItemName(
        "nqservice::MsgLevel", level, nqservice::VQ_TRADER_TYPE_STOCK_OPTION));
}

void CMessagesModel::addMessage(const nqservice::CMessage& message)
{
    if (static_cast<int>(m_messages.size()) >= m_capacity) {
        const int last = static_cast<int>(m_messages.size()) - 1;
        beginRemoveRows(QModelIndex(), last, last);
        m_messages.pop_back();
        endRemoveRows();
    }
    beginInsertRows(QModelIndex(), 0, 0);
    m_messages.push_front(message);
    endInsertRows();
}

void CMessagesModel::clear()
{
    beginResetModel();
    m_messages.clear();
    endResetModel();
}

int CMessagesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_messages.size());
}

int CMessagesModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : COL_COUNT; }

QString CMessagesModel::levelColorKey(int level)
{
    if (level == nqservice::ML_WARNING) {
        return QStringLiteral("clr_text_warning");
    }
    return level == nqservice::ML_ERROR ? QStringLiteral("clr_text_error") : QString();
}

QString CMessagesModel::cellText(const nqservice::CMessage& message, int column)
{
    switch (column) {
    case COL_TIME:
        return TC::exchangeDateTime(message.time).toString(QStringLiteral("HH:mm:ss"));
    case COL_LEVEL:
        return levelText(message.level);
    default:
        return QString::fromStdString(message.text);
    }
}

QVariant CMessagesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= COL_COUNT) {
        return QVariant();
    }
    const nqservice::CMessage& message = m_messages[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return cellText(message, index.column());
    case WG::CTableCellModel::SortRole:
        return index.column() == COL_TIME ? QVariant(static_cast<double>(message.time))
                                          : QVariant(cellText(message, index.column()));
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    case WG::CTableCellModel::TextColorKeyRole:
        return index.column() == COL_TIME ? QString() : levelColorKey(message.level);
    case WG::CTableCellModel::RowKeyRole:
        return QString::fromStdString(message.messageId);
    default:
        return QVariant();
    }
}

QVariant CMessagesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QVariant();
    }
    switch (section) {
    case COL_TIME:
        return QStringLiteral("时间");
    case COL_LEVEL:
        return QStringLiteral("级别");
    case COL_TEXT:
        return QStringLiteral("内容");
    default:
        return QVariant();
    }
}

Qt::ItemFlags CMessagesModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

}  // namespace desk
