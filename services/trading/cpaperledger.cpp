#include "services/trading/cpaperledger.h"

#include <QDateTime>
#include <QFile>

#include <sqlite3.h>

#include <cstring>

namespace trading {

namespace {
constexpr int kSchemaVersion = 1;

const char* kSchema =
    "CREATE TABLE IF NOT EXISTS records(type INTEGER NOT NULL, key TEXT NOT NULL, account TEXT NOT NULL,"
    " seq INTEGER NOT NULL, body BLOB NOT NULL, extra BLOB, PRIMARY KEY(type, key));"
    "CREATE TABLE IF NOT EXISTS meta(name TEXT PRIMARY KEY, value INTEGER NOT NULL);";

bool readBson(const void* blob, int size, bson::BSONObj& out)
{
    if (blob == nullptr || size == 0) {
        out = bson::BSONObj();
        return true;
    }
    if (size < 5) {
        return false;
    }
    int declared = 0;
    std::memcpy(&declared, blob, sizeof(declared));
    if (declared != size || static_cast<const char*>(blob)[size - 1] != 0) {
        return false;
    }
    out = bson::BSONObj(static_cast<const char*>(blob)).getOwned();
    return out.valid();
}
}  // namespace

CPaperLedger::CPaperLedger(const QString& path) : m_path(path) {}

CPaperLedger::~CPaperLedger() { close(); }

void CPaperLedger::close()
{
    for (sqlite3_stmt** stmt : {&m_upsert, &m_delete, &m_meta}) {
        if (*stmt != nullptr) {
            sqlite3_finalize(*stmt);
            *stmt = nullptr;
        }
    }
    if (m_db != nullptr) {
        sqlite3_close(m_db);
        m_db = nullptr;
    }
}

bool CPaperLedger::exec(const char* sql, std::string* error)
{
    char* message = nullptr;
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, &message) != SQLITE_OK) {
        if (error != nullptr) {
            *error = message != nullptr ? message : sqlite3_errmsg(m_db);
        }
        sqlite3_free(message);
        return false;
    }
    return true;
}

bool CPaperLedger::openFile(std::string* error)
{
    const QByteArray path = QFile::encodeName(m_path);
    if (sqlite3_open_v2(path.constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        if (error != nullptr) {
            *error = m_db != nullptr ? sqlite3_errmsg(m_db) : "cannot open";
        }
        return false;
    }
    sqlite3_busy_timeout(m_db, 2000);
    // WAL with synchronous=NORMAL: a commit survives a kill of the process; a
    // power cut may lose the last moments.
    if (!exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", error) || !verify(error) ||
        !exec(kSchema, error)) {
        return false;
    }
    const char* upsert =
        "INSERT INTO records(type, key, account, seq, body, extra) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"
        " ON CONFLICT(type, key) DO UPDATE SET account = excluded.account, seq = excluded.seq,"
        " body = excluded.body, extra = excluded.extra";
    if (sqlite3_prepare_v2(m_db, upsert, -1, &m_upsert, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(m_db, "DELETE FROM records WHERE type = ?1 AND key = ?2", -1, &m_delete, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(m_db, "INSERT OR REPLACE INTO meta(name, value) VALUES(?1, ?2)", -1, &m_meta, nullptr) !=
            SQLITE_OK) {
        if (error != nullptr) {
            *error = sqlite3_errmsg(m_db);
        }
        return false;
    }
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT COALESCE(MAX(seq), 0) FROM records", -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
        m_seq = sqlite3_column_int64(stmt, 0);
    }
    sqlite3_finalize(stmt);
    return exec(("PRAGMA user_version=" + std::to_string(kSchemaVersion)).c_str(), error);
}

bool CPaperLedger::verify(std::string* error)
{
    // A file of another kind, a torn page or a foreign schema is not a ledger.
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, "PRAGMA quick_check", -1, &stmt, nullptr) != SQLITE_OK) {
        if (error != nullptr) {
            *error = sqlite3_errmsg(m_db);
        }
        return false;
    }
    bool ok = sqlite3_step(stmt) == SQLITE_ROW &&
              std::strcmp(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)), "ok") == 0;
    sqlite3_finalize(stmt);
    if (!ok) {
        if (error != nullptr) {
            *error = "integrity check failed";
        }
        return false;
    }
    int version = 0;
    if (sqlite3_prepare_v2(m_db, "PRAGMA user_version", -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
        version = sqlite3_column_int(stmt, 0);
    }
    sqlite3_finalize(stmt);
    int tables = 0;
    if (sqlite3_prepare_v2(m_db, "SELECT COUNT(*) FROM sqlite_master", -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
        tables = sqlite3_column_int(stmt, 0);
    }
    sqlite3_finalize(stmt);
    if (tables > 0 && version != kSchemaVersion) {
        if (error != nullptr) {
            *error = "not a ledger of this version";
        }
        return false;
    }
    return true;
}

bool CPaperLedger::open(QString* report)
{
    std::string error;
    const bool opened = openFile(&error);
    if (!opened && m_db != nullptr &&
        (sqlite3_errcode(m_db) == SQLITE_BUSY || sqlite3_errcode(m_db) == SQLITE_LOCKED)) {
        // Another desk holds it: that is no damage, and it is not ours to set aside.
        close();
        if (report != nullptr) {
            *report = QStringLiteral("模拟交易账本 %1 正被另一个程序使用").arg(m_path);
        }
        return false;
    }
    if (opened) {
        // Records that do not read back make the file as unusable as a torn page.
        std::map<std::string, long long> meta;
        if (load([](int, const std::string&, const bson::BSONObj&, const bson::BSONObj&) {}, meta, &error)) {
            return true;
        }
    }
    close();
    if (QFile::exists(m_path)) {
        m_setAside = m_path + QStringLiteral(".damaged-") +
                     QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
        QFile::rename(m_path, m_setAside);
        for (const char* suffix : {"-wal", "-shm"}) {
            const QString side = m_path + QLatin1String(suffix);
            if (QFile::exists(side)) {
                QFile::rename(side, m_setAside + QLatin1String(suffix));
            }
        }
        if (report != nullptr) {
            *report = QStringLiteral("模拟交易账本已损坏(%1), 已另存为 %2, 已新建账本")
                          .arg(QString::fromStdString(error), m_setAside);
        }
    }
    error.clear();
    if (openFile(&error)) {
        return true;
    }
    close();
    if (report != nullptr) {
        *report = QStringLiteral("无法打开模拟交易账本 %1: %2").arg(m_path, QString::fromStdString(error));
    }
    return false;
}

bool CPaperLedger::commit(const std::vector<PaperChange>& changes, const std::map<std::string, long long>& meta,
                          std::string* error)
{
    if (m_db == nullptr) {
        if (error != nullptr) {
            *error = "ledger not open";
        }
        return false;
    }
    if (!exec("BEGIN", error)) {
        return false;
    }
    bool ok = true;
    for (const PaperChange& change : changes) {
        if (!change.record) {
            continue;
        }
        const std::string key = change.record->getKey();
        if (change.removed) {
            sqlite3_bind_int(m_delete, 1, change.dataType);
            sqlite3_bind_text(m_delete, 2, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
            ok = sqlite3_step(m_delete) == SQLITE_DONE;
            sqlite3_reset(m_delete);
        } else {
            const bson::BSONObj body = change.record->toBsonWithBson();
            sqlite3_bind_int(m_upsert, 1, change.dataType);
            sqlite3_bind_text(m_upsert, 2, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
            sqlite3_bind_text(m_upsert, 3, change.accountKey.data(), static_cast<int>(change.accountKey.size()),
                              SQLITE_TRANSIENT);
            sqlite3_bind_int64(m_upsert, 4, ++m_seq);
            sqlite3_bind_blob(m_upsert, 5, body.objdata(), body.objsize(), SQLITE_TRANSIENT);
            if (change.extra.isEmpty()) {
                sqlite3_bind_null(m_upsert, 6);
            } else {
                sqlite3_bind_blob(m_upsert, 6, change.extra.objdata(), change.extra.objsize(), SQLITE_TRANSIENT);
            }
            ok = sqlite3_step(m_upsert) == SQLITE_DONE;
            sqlite3_reset(m_upsert);
        }
        if (!ok) {
            break;
        }
    }
    for (auto it = meta.begin(); ok && it != meta.end(); ++it) {
        sqlite3_bind_text(m_meta, 1, it->first.data(), static_cast<int>(it->first.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int64(m_meta, 2, it->second);
        ok = sqlite3_step(m_meta) == SQLITE_DONE;
        sqlite3_reset(m_meta);
    }
    if (!ok) {
        if (error != nullptr) {
            *error = sqlite3_errmsg(m_db);
        }
        exec("ROLLBACK", nullptr);
        return false;
    }
    return exec("COMMIT", error);
}

bool CPaperLedger::load(const RecordVisitor& visit, std::map<std::string, long long>& meta, std::string* error)
{
    if (m_db == nullptr) {
        return false;
    }
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT type, account, body, extra FROM records ORDER BY seq", -1, &stmt, nullptr) !=
        SQLITE_OK) {
        if (error != nullptr) {
            *error = sqlite3_errmsg(m_db);
        }
        return false;
    }
    bool ok = true;
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        bson::BSONObj body;
        bson::BSONObj extra;
        const char* account = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1));
        if (!readBson(sqlite3_column_blob(stmt, 2), sqlite3_column_bytes(stmt, 2), body) ||
            !readBson(sqlite3_column_blob(stmt, 3), sqlite3_column_bytes(stmt, 3), extra) || body.isEmpty()) {
            ok = false;
            if (error != nullptr) {
                *error = "a record does not read back";
            }
            break;
        }
        visit(sqlite3_column_int(stmt, 0), account != nullptr ? account : "", body, extra);
    }
    if (ok && rc != SQLITE_DONE) {
        ok = false;
        if (error != nullptr) {
            *error = sqlite3_errmsg(m_db);
        }
    }
    sqlite3_finalize(stmt);
    if (!ok) {
        return false;
    }
    if (sqlite3_prepare_v2(m_db, "SELECT name, value FROM meta", -1, &stmt, nullptr) == SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            meta[reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))] = sqlite3_column_int64(stmt, 1);
        }
    }
    sqlite3_finalize(stmt);
    return true;
}

}  // namespace trading
