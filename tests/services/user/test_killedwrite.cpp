// A writer killed in the middle of a save leaves the last good settings.
#include "seam/userrecords.h"
#include "services/user/cusersettingsstore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <random>

TEST(UserSettingsKilledWrite, KilledWriterNeverLosesTheLastGoodState)
{
    QTemporaryDir dir;
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int> pause(5, 120);
    const QRegularExpression written(QStringLiteral("^writer-\\d+$"));
    for (int attempt = 0; attempt < 12; ++attempt) {
        QProcess writer;
        writer.start(QStringLiteral(SETTINGS_WRITER), {dir.path()});
        ASSERT_TRUE(writer.waitForStarted(10000));
        ASSERT_TRUE(writer.waitForReadyRead(20000)) << "the writer never saved";
        QThread::msleep(static_cast<unsigned long>(pause(random)));
        writer.kill();  // SIGKILL: no chance to finish the write
        writer.waitForFinished(10000);

        TC::CUserSettingsStore store(dir.path());
        const QString name = store.getUserDataString(TC::UM_USER_NAME);
        EXPECT_TRUE(written.match(name).hasMatch()) << "attempt " << attempt << ": " << name.toStdString();
        EXPECT_TRUE(store.lastSetAsidePath().isEmpty()) << "attempt " << attempt << ": a damaged file was found";
    }
    // Nothing but the settings and their backup remain: no half-written temporary files pile up.
    const QStringList files = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
    for (const QString& file : files) {
        EXPECT_TRUE(file.startsWith(QStringLiteral("usersettings.json"))) << file.toStdString();
    }
}
