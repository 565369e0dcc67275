// Takes in the Greeks files that an outside program drops into the user's
// directory, once a second on a thread of its own, and replaces the user's
// imported Greeks (member 153) with each pass's harvest. It touches no widget:
// the chain panel hears of a new import only through the queued sigReadFinish().
#pragma once

#include "seam/user.h"

#include <QString>
#include <QThread>

#include <mutex>

class QTimer;

namespace TC {

class CAutoImportOptionExGreeksThread : public QThread {
    Q_OBJECT
public:
    static constexpr int kImportIntervalMs = 1000;
    // Of a bad file, the log line shows at most this much text.
    static constexpr int kLoggedTextBytes = 64 * 1024;

    // Takes a copy of the user's trade settings and follows the trade client's
    // sigAutoImportExGreeksChanged, when one is installed.
    explicit CAutoImportOptionExGreeksThread(QObject* parent = nullptr);
    // Stops the thread if it still runs.
    ~CAutoImportOptionExGreeksThread() override;

    // Ends the thread cleanly: a pass under way stops before its next file and
    // still hands over what it took. Call it from the owning thread.
    void stop();

    // One pass over the directory, on the calling thread. The thread's timer
    // runs it; a caller of its own must not run it while the thread runs.
    void handleImport();

    // The copy of the trade settings the passes work from.
    CTradeSetting tradeSetting() const;

signals:
    // A pass took at least one good file. Emitted on the import thread.
    void sigReadFinish();

public slots:
    // Copies the user's trade settings (member 160) again. Runs on the thread
    // this object lives on, where the settings belong; the passes never read
    // the settings store themselves.
    void slotTradeSettingChanged();

protected:
    void run() override;

private slots:
    void slotTimeout();

private:
    // Reads, checks and parses one working file; 2 good, 1 bad, 0 not opened.
    int importFile(const QString& workingPath, OptionExGreeksMap& harvest);
    void logBadFile(const QString& path, const QByteArray& text, qint64 fileSize, const std::string& reason);

    QTimer* timer = nullptr;  // made in run(), lives on the import thread
    bool importing = false;   // touched on the import thread only

    mutable std::mutex m_settingMutex;
    CTradeSetting m_setting;  // guarded by m_settingMutex
};

}  // namespace TC
