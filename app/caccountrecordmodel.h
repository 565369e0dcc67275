// The base of the accounts dock's tables: trading records of one table kept by
// their key, newest first, a changed record updated in place with one ranged
// dataChanged over its row. It lives on the GUI thread and is handed copies;
// subclasses name the columns and say what a record shows.
#pragma once

#include "seam/idata.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <string>
#include <unordered_map>
#include <vector>

namespace desk {

class CAccountRecordModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // What one cell shows: its text, the value it sorts by (a double for numbers)
    // and the theme's colour key of its text, "" for the default.
    struct Cell {
        QString text;
        QVariant sort;
        QString colorKey;
        bool number = false;
    };

    CAccountRecordModel(const QStringList& headers, QObject* parent);
    ~CAccountRecordModel() override;

    // Adds new records, replaces known ones in place, and removes the rows of
    // records the model does not keep (a position of volume 0).
    void apply(const std::vector<nqservice::IDataPtr>& records);
    // Removes every row of an account.
    void removeAccount(const std::string& accountKey);
    void clear();

    nqservice::IDataPtr record(int row) const;
    std::string keyOf(int row) const;
    // -1 when no row has the key.
    int rowOfKey(const std::string& key) const;
    // Names shown for account keys; a key without one shows itself.
    void setAccountNames(const QHash<QString, QString>& names);
    QString accountText(const std::string& accountKey) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    virtual Cell cell(const nqservice::IData& record, int column) const = 0;
    // The account a record belongs to.
    virtual std::string accountOf(const nqservice::IData& record) const = 0;
    // Rows of larger recency show higher; among equal ones the newest arrival is on top.
    virtual long long recency(const nqservice::IData& record) const;
    // False for a record whose row should go (and never come).
    virtual bool keeps(const nqservice::IData& record) const;
    // True when incoming is older than the row's record and must not replace it.
    virtual bool isStale(const nqservice::IData& incoming, const nqservice::IData& current) const;

    // Helpers for subclasses.
    static Cell textCell(const QString& text, const QString& colorKey = QString());
    static Cell numberCell(double value, int decimals, bool segmented = false, const QString& colorKey = QString());
    static Cell integerCell(long long value, const QString& colorKey = QString());
    static Cell timeCell(long long msSinceEpoch);
    // The theme's rise colour for a positive value, fall for a negative one.
    static QString signColorKey(double value);

private:
    struct Row {
        nqservice::IDataPtr record;
        std::string key;
        long long recency = 0;
    };
    // Rows are stored oldest first, so the usual newest record is an append that
    // moves no index; row r of the model is stored at size - 1 - r.
    int storedOf(int row) const { return static_cast<int>(m_rows.size()) - 1 - row; }
    int rowOfStored(int stored) const { return static_cast<int>(m_rows.size()) - 1 - stored; }
    const Row* rowAt(int row) const;
    // Inserts in recency order a row that cannot go on top.
    void insertSorted(Row row);
    // Puts the rows gathered for the top into the model with one signal.
    void flushTop(std::vector<Row>& top);
    void removeStoredAt(int stored);
    void reindexFrom(int stored);

    QStringList m_headers;
    std::vector<Row> m_rows;
    std::unordered_map<std::string, int> m_index;  // key -> stored position
    QHash<QString, QString> m_accountNames;
};

}  // namespace desk
