// Tells which files of a directory their writers have closed, so that a reader
// never takes a file that is still being written. On Linux a file can be
// renamed while another program writes it, so renaming is no such proof.
//
// It follows the directory with inotify: a file created or modified since it
// was last closed is still being written; one closed after writing, or moved
// in whole, is ready. A file it has no event of (there before the watch, or
// inotify unavailable or overflowed) is ready once its size and modification
// time are unchanged since the previous look. Not thread-safe: one owner.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

class QFileInfo;

namespace TC {

class CClosedFileWatch {
public:
    CClosedFileWatch();
    ~CClosedFileWatch();
    CClosedFileWatch(const CClosedFileWatch&) = delete;
    CClosedFileWatch& operator=(const CClosedFileWatch&) = delete;

    // Watches this directory from now on; what was known of another is forgotten.
    void setDirectory(const QString& directory);
    QString directory() const { return m_directory; }
    // Whether the file's writer is done with it. Reads the events that came since the last call.
    bool isReady(const QFileInfo& file);
    // The file was taken: what is known of its name is dropped.
    void forget(const QString& fileName);
    // Whether inotify follows the directory (false: the size and time rule alone).
    bool isWatching() const { return m_watch >= 0; }

private:
    enum EState { FS_WRITING, FS_CLOSED };
    struct Look {
        qint64 size = -1;
        QDateTime modified;
    };
    void readEvents();

    int m_fd = -1;
    int m_watch = -1;
    QString m_directory;
    QHash<QString, EState> m_states;  // by file name, from the events
    QHash<QString, Look> m_looks;     // by file name, the previous look
};

}  // namespace TC
