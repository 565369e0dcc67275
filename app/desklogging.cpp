#include "app/desklogging.h"

#include "seam/logger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <log4cxx/helpers/pool.h>
#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/fileappender.h>

namespace desk {

namespace {
const char* const kAppenderName = "optdesk-file";
}

void rollLogFiles(const QString& configDir)
{
    // log4cxx 1.0's own rolling appender frees its policy with the wrong size
    // (AddressSanitizer sees it); the desk rolls its file at start instead.
    const QString path = logFilePath(configDir);
    if (QFileInfo(path).size() < kLogRollBytes) {
        return;
    }
    QFile::remove(path + QStringLiteral(".%1").arg(kLogBackups));
    for (int index = kLogBackups - 1; index >= 1; --index) {
        QFile::rename(path + QStringLiteral(".%1").arg(index), path + QStringLiteral(".%1").arg(index + 1));
    }
    QFile::rename(path, path + QStringLiteral(".1"));
}

QString logFilePath(const QString& configDir) { return QDir(configDir).filePath(QStringLiteral("optdesk.log")); }

bool startFileLogging(const QString& configDir, QString* error)
{
    try {
        stopFileLogging();
        auto layout = std::make_shared<log4cxx::PatternLayout>(LOG4CXX_STR("%d{yyyy-MM-dd HH:mm:ss.SSS} %-5p %m%n"));
        rollLogFiles(configDir);
        auto appender = std::make_shared<log4cxx::FileAppender>();
        LOG4CXX_DECODE_CHAR(name, std::string(kAppenderName));
        LOG4CXX_DECODE_CHAR(path, logFilePath(configDir).toStdString());
        appender->setName(name);
        appender->setLayout(layout);
        appender->setFile(path);
        appender->setAppend(true);
        log4cxx::helpers::Pool pool;
        appender->activateOptions(pool);
        auto root = log4cxx::Logger::getRootLogger();
        root->addAppender(appender);
        root->setLevel(log4cxx::Level::getInfo());
        return true;
    } catch (const std::exception& e) {
        if (error != nullptr) {
            *error = QString::fromLocal8Bit(e.what());
        }
        return false;
    }
}

void stopFileLogging()
{
    auto root = log4cxx::Logger::getRootLogger();
    LOG4CXX_DECODE_CHAR(name, std::string(kAppenderName));
    if (auto appender = root->getAppender(name)) {
        root->removeAppender(appender);
        appender->close();
    }
}

}  // namespace desk
