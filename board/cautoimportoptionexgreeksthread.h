// Takes in the Greeks files that an outside program drops into the user's
// directory, once a second on a thread of its own, and replaces the user's
// imported Greeks (member 153) with each pass's harvest. A file is taken only
// once its writer has closed it. It touches no widget: the chain panel hears
// of a new import only through the queued sigReadFinish().
#pragma once

#include "board/cclosedfilewatch.h"
#include "seam/user.h"

#include <QString>
#include <QThread>


class QTimer;

namespace TC {

class CAutoImportOptionExGreeksThread : public QThread {
    Q_OBJECT
public:
    static constexpr int kImportIntervalMs = 1000;
    // Of a bad file, the log line shows at most this much text.
    static constexpr int kLoggedTextBytes = 64 * 1024;

    // Starts watching the directory of the user's trade setting, so that a file
    // written from now on is known to be complete once its writer closes it.
    explicit CAutoImportOptionExGreeksThread(QObject* parent = nullptr);
    // Stops the thread if it still runs.
    ~CAutoImportOptionExGreeksThread() override;

    // Ends the thread cleanly: a pass under way stops before its next file and
    // still hands over what it took. Call it from the owning thread.
    void stop();

    // One pass over the directory, on the calling thread. The thread's timer
    // runs it; a caller of its own must not run it while the thread runs.
    void handleImport();

    // The user's trade setting as a pass reads it: afresh each time, so that
    // switching the import or its directory needs no restart and no signal.
    CTradeSetting tradeSetting() const;

signals:
    // A pass took at least one good file. Emitted on the import thread.
    void sigReadFinish();

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

    CClosedFileWatch m_watch;  // used by one pass at a time
};

}  // namespace TC
