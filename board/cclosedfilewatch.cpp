#include "board/cclosedfilewatch.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace TC {

CClosedFileWatch::CClosedFileWatch() { m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC); }

CClosedFileWatch::~CClosedFileWatch()
{
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

void CClosedFileWatch::setDirectory(const QString& directory)
{
    if (directory == m_directory) {
        return;
    }
    if (m_fd >= 0 && m_watch >= 0) {
        inotify_rm_watch(m_fd, m_watch);
    }
    readEvents();  // what is left belongs to the old directory
    m_watch = -1;
    m_states.clear();
    m_looks.clear();
    m_directory = directory;
    if (m_fd >= 0 && !directory.isEmpty()) {
        m_watch = inotify_add_watch(m_fd, QFile::encodeName(directory).constData(),
                                    IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM);
    }
}

void CClosedFileWatch::readEvents()
{
    if (m_fd < 0) {
        return;
    }
    alignas(inotify_event) char buffer[16 * (sizeof(inotify_event) + NAME_MAX + 1)];
    for (;;) {
        const ssize_t length = ::read(m_fd, buffer, sizeof buffer);
        if (length <= 0) {
            return;  // EAGAIN: nothing more for now
        }
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            if ((event->mask & IN_Q_OVERFLOW) != 0) {
                m_states.clear();  // events were lost: every file falls back on its looks
                continue;
            }
            if (event->wd != m_watch || event->len == 0) {
                continue;
            }
            const QString name = QFile::decodeName(event->name);
            if ((event->mask & (IN_DELETE | IN_MOVED_FROM)) != 0) {
                m_states.remove(name);
                m_looks.remove(name);
            } else if ((event->mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) != 0) {
                m_states.insert(name, FS_CLOSED);
            } else if ((event->mask & (IN_CREATE | IN_MODIFY)) != 0) {
                m_states.insert(name, FS_WRITING);
            }
        }
    }
}

bool CClosedFileWatch::isReady(const QFileInfo& file)
{
    readEvents();
    const QString name = file.fileName();
    auto state = m_states.constFind(name);
    if (state != m_states.constEnd()) {
        return state.value() == FS_CLOSED;
    }
    // No event of it: ready once it has stood still between two looks.
    QFileInfo fresh(file.filePath());
    const Look now{fresh.size(), fresh.lastModified()};
    auto previous = m_looks.find(name);
    if (previous == m_looks.end()) {
        m_looks.insert(name, now);
        return false;
    }
    const bool still = previous->size == now.size && previous->modified == now.modified;
    *previous = now;
    return still;
}

void CClosedFileWatch::forget(const QString& fileName)
{
    m_states.remove(fileName);
    m_looks.remove(fileName);
}

}  // namespace TC
