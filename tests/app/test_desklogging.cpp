#include "app/desklogging.h"
#include "seam/logger.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}
QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}  // namespace

TEST(DeskLogging, ASmallLogIsKept)
{
    QTemporaryDir dir;
    const QString log = desk::logFilePath(dir.path());
    writeFile(log, "short");
    desk::rollLogFiles(dir.path());
    EXPECT_EQ(readFile(log), QByteArray("short"));
    EXPECT_FALSE(QFile::exists(log + QStringLiteral(".1")));
}

TEST(DeskLogging, ALargeLogRollsAndTheOldestIsDropped)
{
    QTemporaryDir dir;
    const QString log = desk::logFilePath(dir.path());
    writeFile(log, QByteArray(static_cast<int>(desk::kLogRollBytes), 'x'));
    writeFile(log + QStringLiteral(".1"), "one");
    writeFile(log + QStringLiteral(".2"), "two");
    writeFile(log + QStringLiteral(".3"), "three");
    desk::rollLogFiles(dir.path());
    EXPECT_FALSE(QFile::exists(log));
    EXPECT_EQ(readFile(log + QStringLiteral(".1")).size(), desk::kLogRollBytes);
    EXPECT_EQ(readFile(log + QStringLiteral(".2")), QByteArray("one"));
    EXPECT_EQ(readFile(log + QStringLiteral(".3")), QByteArray("two"));
    EXPECT_FALSE(QFile::exists(log + QStringLiteral(".4")));
}

TEST(DeskLogging, LinesReachTheFileInTheSystemsFrame)
{
    QTemporaryDir dir;
    QString error;
    ASSERT_TRUE(desk::startFileLogging(dir.path(), &error)) << error.toStdString();
    utils::writeLog(utils::kLogLevelError, "CWhere", "42", "something failed");
    utils::writeLog(utils::kLogLevelInfo, "CWhere", "43", "something happened");
    desk::stopFileLogging();
    const QByteArray text = readFile(desk::logFilePath(dir.path()));
    EXPECT_TRUE(text.contains("ERROR [CWhere] [42] something failed")) << text.toStdString();
    EXPECT_TRUE(text.contains("INFO  [CWhere] [43] something happened")) << text.toStdString();
}
