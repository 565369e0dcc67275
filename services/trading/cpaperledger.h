// The paper broker's ledger: every record it published, kept in SQLite (WAL,
// synchronous=NORMAL) so that what a subscriber has seen survives a kill of the
// process. One transaction per input of the broker. A file that is not a sound
// ledger is set aside under a timestamped name and a fresh one started; it is
// never overwritten in silence.
#pragma once

#include "services/trading/cpaperbrokercore.h"

#include <QString>

#include <functional>
#include <map>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace trading {

class CPaperLedger {
public:
    using RecordVisitor =
        std::function<void(int dataType, const std::string& accountKey, const bson::BSONObj& record,
                           const bson::BSONObj& extra)>;

    explicit CPaperLedger(const QString& path);
    ~CPaperLedger();
    CPaperLedger(const CPaperLedger&) = delete;
    CPaperLedger& operator=(const CPaperLedger&) = delete;

    // Opens the ledger, creating it when missing. A damaged file is renamed
    // "<path>.damaged-<yyyyMMdd-HHmmss>" and report tells the user so; false
    // only when no ledger can be opened at all.
    bool open(QString* report);
    // Writes the changes and the meta values in one transaction.
    bool commit(const std::vector<PaperChange>& changes, const std::map<std::string, long long>& meta,
                std::string* error);
    // Every stored record in the order it was last written, then the meta values.
    bool load(const RecordVisitor& visit, std::map<std::string, long long>& meta, std::string* error);
    QString path() const { return m_path; }
    // The name a damaged file was set aside under; empty when none was.
    QString setAsidePath() const { return m_setAside; }

private:
    bool openFile(std::string* error);
    bool verify(std::string* error);
    void close();
    bool exec(const char* sql, std::string* error);

    QString m_path;
    QString m_setAside;
    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_upsert = nullptr;
    sqlite3_stmt* m_delete = nullptr;
    sqlite3_stmt* m_meta = nullptr;
    long long m_seq = 0;
};

}  // namespace trading
