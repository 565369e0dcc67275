// Runs the optdesk program itself, as a user would.
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace {

struct DeskRun {
    int exitCode = -1;
    QString stdErr;
    QString stdOut;
};

DeskRun runDesk(const QStringList& args, const QProcessEnvironment& env)
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(OPTDESK_BINARY), args);
    DeskRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    run.stdErr = QString::fromLocal8Bit(process.readAllStandardError());
    run.stdOut = QString::fromLocal8Bit(process.readAllStandardOutput());
    return run;
}

QProcessEnvironment offscreen()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return env;
}

}  // namespace

TEST(DeskProcess, ScreenshotOffscreenThenExit)
{
    QTemporaryDir dir;
    const QString config = QDir(dir.path()).filePath(QStringLiteral("cfg"));
    const QString shot = QDir(config).filePath(QStringLiteral("desk.png"));
    const DeskRun run = runDesk({"--config-dir", config, "--screenshot", shot, "--quit-after", "1"}, offscreen());
    ASSERT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    QImage image(shot);
    ASSERT_FALSE(image.isNull());
    EXPECT_GE(image.width(), 800);
    EXPECT_TRUE(QFile::exists(QDir(config).filePath(QStringLiteral("layout.json"))));
    QFile log(QDir(config).filePath(QStringLiteral("optdesk.log")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("optdesk starts"));
}

TEST(DeskProcess, HelpAndVersionNeedNoDisplay)
{
    QProcessEnvironment noDisplay = QProcessEnvironment::systemEnvironment();
    noDisplay.remove(QStringLiteral("DISPLAY"));
    noDisplay.remove(QStringLiteral("QT_QPA_PLATFORM"));
    const DeskRun help = runDesk({"--help"}, noDisplay);
    ASSERT_EQ(help.exitCode, 0) << help.stdErr.toStdString();
    EXPECT_TRUE(help.stdOut.contains(QStringLiteral("--config-dir"))) << help.stdOut.toStdString();
    EXPECT_TRUE(help.stdOut.contains(QStringLiteral("--quit-after")));
    EXPECT_TRUE(help.stdOut.contains(QStringLiteral("optdesk")));
    const DeskRun version = runDesk({"--version"}, noDisplay);
    ASSERT_EQ(version.exitCode, 0) << version.stdErr.toStdString();
    EXPECT_TRUE(version.stdOut.startsWith(QStringLiteral("optdesk "))) << version.stdOut.toStdString();
}

TEST(DeskProcess, UnknownOptionIsAClearError)
{
    const DeskRun run = runDesk({"--no-such-option"}, offscreen());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("no-such-option"))) << run.stdErr.toStdString();
}

TEST(DeskProcess, UnusableConfigDirIsAClearError)
{
    const DeskRun run = runDesk({"--config-dir", "/proc/optdesk-cannot-be", "--quit-after", "0"}, offscreen());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("configuration directory"))) << run.stdErr.toStdString();
}

TEST(DeskProcess, NoDisplaySaysHowToRunOffscreen)
{
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    const DeskRun run = runDesk({"--config-dir", dir.path()}, env);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("QT_QPA_PLATFORM=offscreen"))) << run.stdErr.toStdString();
}

TEST(DeskProcess, DamagedLayoutIsReportedAndTheDeskStillStarts)
{
    QTemporaryDir dir;
    {
        QFile file(QDir(dir.path()).filePath(QStringLiteral("layout.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("\x00\x01garbage", 9);
    }
    const DeskRun run = runDesk({"--config-dir", dir.path(), "--quit-after", "0.5"}, offscreen());
    EXPECT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("损坏"))) << run.stdErr.toStdString();
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral("layout.json.damaged-*")}, QDir::Files).size(), 1);
}

namespace {

void writeMarketState(const QString& dir, const QByteArray& json)
{
    QFile file(QDir(dir).filePath(QStringLiteral("market.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(json);
}

QByteArray readMarketState(const QString& dir)
{
    QFile file(QDir(dir).filePath(QStringLiteral("market.json")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

TEST(DeskProcess, ADirectoryOfAnotherSeedIsRefusedWithAFreshDirectorySuggested)
{
    QTemporaryDir dir;
    const QByteArray state = R"({"version": 1, "seed": 5, "tradingDate": "2026-11-25"})";
    writeMarketState(dir.path(), state);
    const DeskRun run = runDesk({"--config-dir", dir.path(), "--seed", "6", "--quit-after", "0"}, offscreen());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("种子 5"))) << run.stdErr.toStdString();
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("--config-dir"))) << run.stdErr.toStdString();
    EXPECT_EQ(readMarketState(dir.path()), state) << "the directory's market is left as it was";
    EXPECT_FALSE(QFile::exists(QDir(dir.path()).filePath(QStringLiteral("paper.sqlite"))));
}

TEST(DeskProcess, ADirectoryKeepsItsSeedAndNeverGoesBackInDate)
{
    QTemporaryDir dir;
    // A market that has run ahead of the wall clock, on seed 5.
    writeMarketState(dir.path(), R"({"version": 1, "seed": 5, "tradingDate": "2027-03-02"})");
    const DeskRun run = runDesk({"--config-dir", dir.path(), "--quit-after", "0.5"}, offscreen());
    ASSERT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    const QByteArray state = readMarketState(dir.path());
    EXPECT_TRUE(state.contains("\"seed\": 5")) << state.toStdString();
    EXPECT_TRUE(state.contains("\"tradingDate\": \"2027-03-02\"")) << state.toStdString();
    // The same seed given again is no conflict.
    const DeskRun same = runDesk({"--config-dir", dir.path(), "--seed", "5", "--quit-after", "0.5"}, offscreen());
    EXPECT_EQ(same.exitCode, 0) << same.stdErr.toStdString();
}

TEST(DeskProcess, ADamagedMarketFileIsRefusedNotOverwritten)
{
    QTemporaryDir dir;
    writeMarketState(dir.path(), "{\"seed\": ");
    const DeskRun run = runDesk({"--config-dir", dir.path(), "--quit-after", "0"}, offscreen());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("market.json"))) << run.stdErr.toStdString();
    EXPECT_EQ(readMarketState(dir.path()), QByteArray("{\"seed\": "));
}
