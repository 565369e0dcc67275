#include "board/cautoimportoptionexgreeksthread.h"

#include "board/exgreeksparser.h"
#include "seam/logger.h"

#include <fmt/format.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTimer>

#include <cstdio>
#include <pthread.h>
#include <memory>

namespace TC {

namespace {

constexpr const char* kLogWhere = "TC::CAutoImportOptionExGreeksThread::handleImport";

CTradeSetting readTradeSetting()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? config->publishedTradeSetting() : CTradeSetting();
}

}  // namespace

CAutoImportOptionExGreeksThread::CAutoImportOptionExGreeksThread(QObject* parent) : QThread(parent)
{
    m_watch.setDirectory(readTradeSetting().autoImportExGreeksDir);
}

CAutoImportOptionExGreeksThread::~CAutoImportOptionExGreeksThread()
{
    if (isRunning()) {
        stop();
    }
}

void CAutoImportOptionExGreeksThread::stop()
{
    requestInterruption();
    quit();
    wait();
}

CTradeSetting CAutoImportOptionExGreeksThread::tradeSetting() const { return readTradeSetting(); }

void CAutoImportOptionExGreeksThread::run()
{
    // An owner may terminate() the thread; it may do so only while the thread
    // waits for its timer, never inside a pass, which may hold the settings'
    // lock or a half-renamed file.
    QThread::setTerminationEnabled(false);
    std::unique_ptr<QTimer> ownTimer(new QTimer());
    timer = ownTimer.get();
    // Direct: this object lives on the owner's thread, the pass belongs here.
    connect(timer, &QTimer::timeout, this, &CAutoImportOptionExGreeksThread::slotTimeout, Qt::DirectConnection);
    timer->start(kImportIntervalMs);
    QThread::setTerminationEnabled(true);
    if (!isInterruptionRequested()) {
        exec();
    }
    QThread::setTerminationEnabled(false);
    timer = nullptr;
    ownTimer.reset();
}

void CAutoImportOptionExGreeksThread::slotTimeout()
{
    if (importing) {
        return;
    }
    if (!tradeSetting().autoImportExGreeks) {
        return;
    }
    QThread::setTerminationEnabled(false);
    handleImport();
    // Not QThread::setTerminationEnabled(true): that would act on a pending
    // terminate() here, unwinding through the timer's dispatch in Qt and GLib.
    // Enabled this way it acts at the event loop's next wait, as when idle.
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr);
}

void CAutoImportOptionExGreeksThread::handleImport()
{
    const QString directory = tradeSetting().autoImportExGreeksDir;
    if (directory.isEmpty()) {
        return;
    }
    m_watch.setDirectory(directory);
    importing = true;
    OptionExGreeksMap harvest;
    bool anyGood = false;
    try {
        QDir dir(directory);
        const QStringList nameFilters{QStringLiteral("*.json")};
        const QFileInfoList entries = dir.entryInfoList(nameFilters, QDir::Files, QDir::Time);
        for (const QFileInfo& entry : entries) {
            if (isInterruptionRequested()) {
                break;  // the files not yet taken wait for the next start
            }
            if (!m_watch.isReady(entry)) {
                continue;  // its writer is still at it: a later pass takes it whole
            }
            m_watch.forget(entry.fileName());
            const QString path = entry.filePath();
            const QString workingPath =
                entry.absolutePath() + QDir::separator() + entry.baseName() + QStringLiteral(".tmp");
            // Renamed before it is read, so that a writer cannot replace it under
            // the reader and no file is read twice. The system call, unlike
            // QFile::rename, replaces a working file left by a crash, which is
            // thus never read; a file another reader took first fails here and
            // is left to that reader.
            if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(workingPath).constData()) != 0) {
                continue;
            }
            if (importFile(workingPath, harvest) == EGPR_GOOD) {
                anyGood = true;
            }
            QFile::remove(workingPath);  // a bad file is not kept either
        }
    } catch (const std::exception& error) {
        utils::writeLog(utils::kLogLevelError, kLogWhere, std::to_string(__LINE__),
                        fmt::format(FMT_STRING("Greeks import pass failed: {0}"), error.what()));
    }
    importing = false;
    if (!anyGood) {
        return;
    }
    if (CUserConfig* config = getUserConfig()) {
        config->replaceOptionExGreeks(harvest);
        config->setModifyFlag();  // the import is kept with the settings and survives a restart
    }
    emit sigReadFinish();
}

int CAutoImportOptionExGreeksThread::importFile(const QString& workingPath, OptionExGreeksMap& harvest)
{
    QFile file(workingPath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return 0;
    }
    // One byte beyond the limit is enough to know that the file is too large.
    const qint64 fileSize = file.size();
    const QByteArray text = file.read(static_cast<qint64>(kMaxExGreeksTextBytes) + 1);
    file.close();
    std::string reason;
    const int result = parseOptionExGreeksText(text.constData(), static_cast<std::size_t>(text.size()), harvest,
                                               &reason);
    if (result != EGPR_GOOD) {
        logBadFile(workingPath, text, fileSize, reason);
    }
    return result;
}

void CAutoImportOptionExGreeksThread::logBadFile(const QString& path, const QByteArray& text, qint64 fileSize,
                                                 const std::string& reason)
{
    // The text as the reader would have been given it, cut to a readable size
    // and with invalid UTF-8 replaced so that the log stays valid text.
    std::string content = QString::fromUtf8(text.left(kLoggedTextBytes)).toStdString();
    if (fileSize > kLoggedTextBytes) {
        content += fmt::format(FMT_STRING(" ...[{0} bytes in all]"), fileSize);
    }
    utils::writeLog(utils::kLogLevelError, kLogWhere, std::to_string(__LINE__),
                    fmt::format(FMT_STRING("Json:{0} parse error."), wrapExGreeksText(content)));
    utils::writeLog(utils::kLogLevelInfo, kLogWhere, std::to_string(__LINE__),
                    fmt::format(FMT_STRING("Greeks file {0} rejected: {1}"), path.toStdString(), reason));
}

}  // namespace TC
