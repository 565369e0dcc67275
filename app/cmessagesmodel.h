// The notes of the message area ("消息"): time, level and text of each message,
// newest first, the oldest dropped beyond a capacity. GUI thread only.
#pragma once

#include "seam/tradingrecords.h"

#include <QAbstractTableModel>

#include <deque>

namespace desk {

class CMessagesModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum EColumn { COL_TIME, COL_LEVEL, COL_TEXT, COL_COUNT };

    explicit CMessagesModel(int capacity = 500, QObject* parent = nullptr);

    void addMessage(const nqservice::CMessage& message);
    void clear();
    int capacity() const { return m_capacity; }
    const nqservice::CMessage& message(int row) const { return m_messages.at(static_cast<std::size_t>(row)); }
    // "信息", "警告", "错误" as the type manager names them.
    static QString levelText(int level);
    // The theme's colour key of a level's text: warnings and errors stand out.
    static QString levelColorKey(int level);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    static QString cellText(const nqservice::CMessage& message, int column);

    int m_capacity;
    std::deque<nqservice::CMessage> m_messages;  // newest first
};

}  // namespace desk
