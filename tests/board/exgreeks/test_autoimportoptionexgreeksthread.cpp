// The import thread over a real directory: which files a pass takes and in
// which order, what becomes of bad ones, what reaches the user's settings, the
// queued signal, the log line, and how the thread ends.
#include "board/cautoimportoptionexgreeksthread.h"
#include "board/exgreeksparser.h"
#include "board/core/exgreekstestdata.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "services/user/cusersettingsstore.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <log4cxx/fileappender.h>
#include <log4cxx/patternlayout.h>

#include <boost/make_shared.hpp>

#include <atomic>
#include <memory>

using namespace TC;
using exgreekstest::nestedArrays;
using exgreekstest::nestedObjects;
using exgreekstest::recordText;
using exgreekstest::validFileText;

namespace {

#if defined(__SANITIZE_THREAD__)
constexpr bool kThreadSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
constexpr bool kThreadSanitizer = true;
#else
constexpr bool kThreadSanitizer = false;
#endif
#else
constexpr bool kThreadSanitizer = false;
#endif

// A trade client that does nothing but carry the settings signal.
class CSignalOnlyTradeClient : public CTradeClient {
public:
    std::vector<long long> splitEntrusts(long long, double, nqservice::EPriceType,
                                         const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>&,
                                         const std::vector<double>&, nqservice::EPositionType, std::string,
                                         std::string, nqservice::EOperationType, nqservice::EHedge_Flag_Type,
                                         boost::shared_ptr<utils::NQError>, bool, bool,
                                         const std::map<std::string, long long>&,
                                         const std::vector<long long>&) override
    {
        return {};
    }
    void cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>&, QString&, int, QString,
                     const boost::shared_ptr<COrderAuxInfo>&) override
    {
    }
    void checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>&) override {}
    bool requestStockVolume(const CStockRequestParam&, boost::shared_ptr<StockSubTable>&) override { return false; }
};

class AutoImportThreadTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(configDir.isValid());
        ASSERT_TRUE(watchDir.isValid());
        tradeClient = utils::CManualSingletonT<CTradeClient>::create<CSignalOnlyTradeClient>();
        store = new CUserSettingsStore(configDir.path());
        utils::CSingletonT<CUserManager>::instance()->setUserConfig(store);
        setImport(true, watchDir.path());
    }

    void TearDown() override
    {
        stopLogCapture();
        utils::CSingletonT<CUserManager>::instance()->setUserConfig(nullptr);
        utils::CManualSingletonT<CTradeClient>::destroy();
    }

    void setImport(bool on, const QString& dir)
    {
        CTradeSetting setting = store->tradeSetting();
        setting.autoImportExGreeks = on;
        setting.autoImportExGreeksDir = dir;
        store->setTradeSetting(setting);
        emit tradeClient->sigAutoImportExGreeksChanged();
    }

    QString path(const QString& name) const { return QDir(watchDir.path()).filePath(name); }

    // Writes a file and sets its modification time to secondsAgo before now.
    void writeFile(const QString& name, const std::string& text, int secondsAgo = 0)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(static_cast<qint64>(text.size()), file.write(text.data(), static_cast<qint64>(text.size())));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-secondsAgo),
                                     QFileDevice::FileModificationTime));
    }

    // Puts a first good import into the settings: one record of 10009999.
    void importEarlier()
    {
        OptionExGreeksMap greeks;
        auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
        record->code = "10009999";
        record->exDelta = 0.125;
        greeks.insert(QStringLiteral("10009999"), record);
        store->replaceOptionExGreeks(greeks);
    }

    void expectEarlierImportKept(const std::string& what)
    {
        const auto record = store->getOptionExGreeks(QStringLiteral("10009999"));
        ASSERT_TRUE(record) << what;
        EXPECT_EQ(0.125, record->exDelta) << what;
        EXPECT_FALSE(store->getOptionExGreeks(QStringLiteral("10004001"))) << what;
    }

    QStringList filesLeft() const { return QDir(watchDir.path()).entryList(QDir::Files | QDir::Hidden); }

    void startLogCapture()
    {
        logPath = QDir(configDir.path()).filePath(QStringLiteral("import.log"));
        appender = log4cxx::AppenderPtr(new log4cxx::FileAppender(
            log4cxx::LayoutPtr(new log4cxx::PatternLayout("%p %m%n")), logPath.toStdString(), false));
        g_NQStdLogger->addAppender(appender);
    }
    void stopLogCapture()
    {
        if (appender) {
            g_NQStdLogger->removeAppender(appender);
            appender->close();
            appender = log4cxx::AppenderPtr();
        }
    }
    QString logText()
    {
        stopLogCapture();
        QFile log(logPath);
        if (!log.open(QIODevice::ReadOnly)) {
            return QString();
        }
        return QString::fromUtf8(log.readAll());
    }
    QStringList logLines() { return logText().split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

    QTemporaryDir configDir;
    QTemporaryDir watchDir;
    CUserSettingsStore* store = nullptr;
    CTradeClient* tradeClient = nullptr;
    QString logPath;
    log4cxx::AppenderPtr appender;
};

}  // namespace

TEST_F(AutoImportThreadTest, PassTakesAFileIntoTheSettingsRemovesItAndSignals)
{
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("greeks.json"), validFileText());
    thread.handleImport();
    EXPECT_EQ(1, finished.count());
    const auto record = store->getOptionExGreeks(QStringLiteral("10004001"));
    ASSERT_TRUE(record);
    EXPECT_DOUBLE_EQ(0.5321, record->exDelta);
    EXPECT_DOUBLE_EQ(-0.0011, record->exTheta);
    ASSERT_TRUE(store->getOptionExGreeks(QStringLiteral("10004002")));
    EXPECT_TRUE(filesLeft().isEmpty()) << filesLeft().join(QLatin1Char(' ')).toStdString();
}

TEST_F(AutoImportThreadTest, EachPassReplacesEverythingImportedBefore)
{
    CAutoImportOptionExGreeksThread thread;
    writeFile(QStringLiteral("a.json"), validFileText());
    thread.handleImport();
    ASSERT_TRUE(store->getOptionExGreeks(QStringLiteral("10004002")));
    writeFile(QStringLiteral("b.json"), "[" + recordText("10004001", "0.61") + "]");
    thread.handleImport();
    EXPECT_DOUBLE_EQ(0.61, store->getOptionExGreeks(QStringLiteral("10004001"))->exDelta);
    EXPECT_FALSE(store->getOptionExGreeks(QStringLiteral("10004002")));
}

TEST_F(AutoImportThreadTest, EmptyArrayEmptiesTheImportAndSignals)
{
    importEarlier();
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("empty.json"), "[]");
    thread.handleImport();
    EXPECT_EQ(1, finished.count());
    EXPECT_FALSE(store->getOptionExGreeks(QStringLiteral("10009999")));
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(AutoImportThreadTest, NewestFileFirstSoTheOlderFileWinsACode)
{
    CAutoImportOptionExGreeksThread thread;
    writeFile(QStringLiteral("z-old.json"), "[" + recordText("10004001", "0.11") + "]", 300);
    writeFile(QStringLiteral("a-new.json"), "[" + recordText("10004001", "0.22") + "," +
                                                 recordText("10004002", "-0.33") + "]",
              10);
    writeFile(QStringLiteral("m-mid.json"), "[" + recordText("10004001", "0.44") + "]", 100);
    thread.handleImport();
    EXPECT_DOUBLE_EQ(0.11, store->getOptionExGreeks(QStringLiteral("10004001"))->exDelta);
    EXPECT_DOUBLE_EQ(-0.33, store->getOptionExGreeks(QStringLiteral("10004002"))->exDelta);
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(AutoImportThreadTest, BadFileIsLoggedRemovedAndTheOthersGoOn)
{
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("bad.json"), "[1, 2", 5);
    writeFile(QStringLiteral("good.json"), validFileText(), 50);
    startLogCapture();
    thread.handleImport();
    const QStringList lines = logLines();
    EXPECT_EQ(1, finished.count());
    EXPECT_TRUE(store->getOptionExGreeks(QStringLiteral("10004001")));
    EXPECT_TRUE(filesLeft().isEmpty()) << filesLeft().join(QLatin1Char(' ')).toStdString();
    const QRegularExpression frame(QStringLiteral(
        R"(^ERROR \[TC::CAutoImportOptionExGreeksThread::handleImport\] \[\d+\] Json:\{ "content" : \[1, 2 \} parse error\.$)"));
    int errors = 0;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("ERROR"))) {
            ++errors;
            EXPECT_TRUE(frame.match(line).hasMatch()) << line.toStdString();
        }
    }
    EXPECT_EQ(1, errors) << lines.join(QLatin1Char('\n')).toStdString();
}

TEST_F(AutoImportThreadTest, PassWithoutAGoodFileLeavesTheImportAndSaysNothing)
{
    importEarlier();
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("one.json"), "{ broken");
    writeFile(QStringLiteral("two.json"), "[{\"code\": \"10004001\", \"exDelta\": NaN}]");
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    expectEarlierImportKept("two bad files");
    EXPECT_TRUE(filesLeft().isEmpty());
}

struct HostileFile {
    const char* name;
    std::string (*text)();
};

void PrintTo(const HostileFile& file, std::ostream* out) { *out << file.name; }

class AutoImportHostileFiles : public AutoImportThreadTest, public ::testing::WithParamInterface<HostileFile> {};

TEST_P(AutoImportHostileFiles, NeitherCrashNorChangeTheLastGoodImport)
{
    importEarlier();
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("hostile.json"), GetParam().text());
    startLogCapture();
    thread.handleImport();
    const QString log = logText();
    EXPECT_EQ(0, finished.count());
    expectEarlierImportKept(GetParam().name);
    EXPECT_TRUE(filesLeft().isEmpty()) << filesLeft().join(QLatin1Char(' ')).toStdString();
    // The text of the file may hold line breaks: the error entry runs up to " parse error.".
    EXPECT_TRUE(log.startsWith(QStringLiteral("ERROR [TC::CAutoImportOptionExGreeksThread::handleImport] [")))
        << log.left(300).toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("] Json:{ \"content\" : "))) << log.left(300).toStdString();
    const int end = log.indexOf(QStringLiteral(" } parse error.\n"));
    ASSERT_GE(end, 0) << log.right(300).toStdString();
    // The entry stays readable in size however large the file.
    EXPECT_LT(log.left(end).toUtf8().size(), CAutoImportOptionExGreeksThread::kLoggedTextBytes + 300);
    EXPECT_EQ(1, log.count(QStringLiteral("ERROR ")));
}

INSTANTIATE_TEST_SUITE_P(
    Files, AutoImportHostileFiles,
    ::testing::Values(
        HostileFile{"MillionArraysClosed", [] { return nestedArrays(1000000, true); }},
        HostileFile{"MillionArraysOpen", [] { return nestedArrays(1000000, false); }},
        HostileFile{"MillionObjectsClosed", [] { return nestedObjects(1000000, true); }},
        HostileFile{"MillionObjectsOpen", [] { return nestedObjects(1000000, false); }},
        HostileFile{"Huge", [] { return "[" + std::string(kMaxExGreeksTextBytes + 1024, ' ') + "]"; }},
        HostileFile{"HugeOfRecords",
                    [] {
                        std::string text = "[";
                        while (text.size() <= kMaxExGreeksTextBytes) {
                            text += recordText("10004001", "0.5") + ",";
                        }
                        return text + recordText("10004001", "0.5") + "]";
                    }},
        HostileFile{"Latin1", [] { return std::string("[{\"code\": \"10004001\", \"note\": \"caf\xe9\"}]"); }},
        HostileFile{"DuplicateKeys",
                    [] { return std::string("[{\"code\": \"10004001\", \"exDelta\": 1, \"exDelta\": 2}]"); }},
        HostileFile{"WronglyTyped", [] { return std::string("[{\"code\": \"10004001\", \"exDelta\": \"0.5\"}]"); }},
        HostileFile{"NaN", [] { return std::string("[{\"code\": \"10004001\", \"exDelta\": NaN}]"); }},
        HostileFile{"Infinity", [] { return std::string("[{\"code\": \"10004001\", \"exVega\": -Infinity}]"); }},
        HostileFile{"Hex", [] { return std::string("[{\"code\": \"10004001\", \"exGamma\": 0x1F}]"); }},
        HostileFile{"TrailingGarbage", [] { return validFileText() + "} trailing"; }},
        HostileFile{"Empty", [] { return std::string(); }}),
    [](const ::testing::TestParamInfo<HostileFile>& info) { return std::string(info.param.name); });

TEST_F(AutoImportThreadTest, EveryCutOfAValidFileLeavesTheLastGoodImport)
{
    const std::string text = validFileText();
    const std::size_t lastSignificant = text.find_last_not_of(" \n");
    CAutoImportOptionExGreeksThread thread;
    for (std::size_t length = 0; length <= lastSignificant; ++length) {
        importEarlier();
        writeFile(QStringLiteral("cut.json"), text.substr(0, length));
        thread.handleImport();
        expectEarlierImportKept("cut at " + std::to_string(length));
        ASSERT_TRUE(filesLeft().isEmpty()) << "cut at " << length;
    }
}

TEST_F(AutoImportThreadTest, WorkingFilesAndOtherNamesAreNeverPickedUp)
{
    importEarlier();
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("left.tmp"), validFileText());
    writeFile(QStringLiteral("greeks.json.part"), validFileText());
    writeFile(QStringLiteral("greeks.txt"), validFileText());
    ASSERT_TRUE(QDir(watchDir.path()).mkdir(QStringLiteral("folder.json")));
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    expectEarlierImportKept("no json file");
    EXPECT_EQ(3, filesLeft().size());
}

TEST_F(AutoImportThreadTest, WorkingFileLeftByACrashIsReplacedNotRead)
{
    CAutoImportOptionExGreeksThread thread;
    writeFile(QStringLiteral("greeks.tmp"), "[" + recordText("10004001", "0.99") + "]");
    writeFile(QStringLiteral("greeks.json"), "[" + recordText("10004001", "0.42") + "]");
    thread.handleImport();
    ASSERT_TRUE(store->getOptionExGreeks(QStringLiteral("10004001")));
    EXPECT_DOUBLE_EQ(0.42, store->getOptionExGreeks(QStringLiteral("10004001"))->exDelta);
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(AutoImportThreadTest, FileThatAppearsAfterAPassIsTakenByTheNext)
{
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    writeFile(QStringLiteral("late.json"), validFileText());
    thread.handleImport();
    EXPECT_EQ(1, finished.count());
    EXPECT_TRUE(store->getOptionExGreeks(QStringLiteral("10004001")));
}

TEST_F(AutoImportThreadTest, EmptyOrMissingDirectoryDoesNothing)
{
    importEarlier();
    writeFile(QStringLiteral("greeks.json"), validFileText());
    setImport(true, QString());
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    thread.handleImport();
    setImport(true, path(QStringLiteral("absent")));
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    expectEarlierImportKept("no directory");
    EXPECT_EQ(1, filesLeft().size());
}

TEST_F(AutoImportThreadTest, WithoutUserSettingsAPassTakesNothing)
{
    CAutoImportOptionExGreeksThread thread;
    utils::CSingletonT<CUserManager>::instance()->setUserConfig(nullptr);  // deletes the store
    store = nullptr;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("greeks.json"), validFileText());
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    EXPECT_EQ(1, filesLeft().size()) << "the file waits for settings that name the directory";
}

TEST_F(AutoImportThreadTest, TheSettingIsReadAfreshAtEveryPassWithoutASignal)
{
    CAutoImportOptionExGreeksThread thread;
    EXPECT_TRUE(thread.tradeSetting().autoImportExGreeks);
    EXPECT_EQ(watchDir.path(), thread.tradeSetting().autoImportExGreeksDir);
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    // Written in place and marked, as the settings dialog does; no signal goes out.
    QTemporaryDir other;
    auto* setting = static_cast<CTradeSetting*>(store->getUserDataAddress(UM_TRADE_SETTING));
    setting->autoImportExGreeksDir = other.path();
    store->setModifyFlag();
    EXPECT_EQ(other.path(), thread.tradeSetting().autoImportExGreeksDir);
    writeFile(QStringLiteral("greeks.json"), validFileText());  // in the old directory
    {
        QFile file(QDir(other.path()).filePath(QStringLiteral("other.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(validFileText().data(), static_cast<qint64>(validFileText().size()));
    }
    thread.handleImport();  // a file there before the watch moved stands still over two looks
    thread.handleImport();
    EXPECT_EQ(1, finished.count());
    EXPECT_EQ(1, filesLeft().size()) << "the old directory is no longer read";
    EXPECT_TRUE(QDir(other.path()).entryList(QDir::Files).isEmpty());
}

TEST_F(AutoImportThreadTest, AFileStillBeingWrittenIsTakenOnlyWhenItsWriterClosesIt)
{
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    // A slow writer: one open file, a piece per pass, closed after the last.
    std::string text = "[";
    const int records = 40;
    for (int i = 0; i < records; ++i) {
        text += (i > 0 ? ", " : "") + recordText(std::to_string(10005000 + i), "0.25");
    }
    text += "]";
    QFile file(path(QStringLiteral("slow.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const std::size_t piece = text.size() / 5 + 1;
    for (std::size_t offset = 0; offset < text.size(); offset += piece) {
        const std::string part = text.substr(offset, piece);
        ASSERT_EQ(static_cast<qint64>(part.size()), file.write(part.data(), static_cast<qint64>(part.size())));
        ASSERT_TRUE(file.flush());
        thread.handleImport();
        thread.handleImport();  // even a look that finds it unchanged does not take an open file
        EXPECT_EQ(0, finished.count()) << "after " << offset + part.size() << " of " << text.size() << " bytes";
        EXPECT_EQ(1, filesLeft().size());
    }
    file.close();
    thread.handleImport();
    ASSERT_EQ(1, finished.count());
    EXPECT_TRUE(filesLeft().isEmpty());
    for (int i = 0; i < records; ++i) {
        EXPECT_TRUE(store->getOptionExGreeks(QString::number(10005000 + i))) << i;
    }
}

TEST_F(AutoImportThreadTest, AFileRenamedIntoPlaceWholeIsTakenAtOnce)
{
    CAutoImportOptionExGreeksThread thread;
    QSignalSpy finished(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish);
    writeFile(QStringLiteral("greeks.json.part"), validFileText());
    thread.handleImport();
    EXPECT_EQ(0, finished.count());
    ASSERT_TRUE(QFile::rename(path(QStringLiteral("greeks.json.part")), path(QStringLiteral("greeks.json"))));
    thread.handleImport();
    EXPECT_EQ(1, finished.count());
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(AutoImportThreadTest, AGoodPassIsSavedWithTheSettingsAndSurvivesARestart)
{
    CAutoImportOptionExGreeksThread thread;
    writeFile(QStringLiteral("greeks.json"), validFileText());
    thread.handleImport();
    ASSERT_TRUE(store->getOptionExGreeks(QStringLiteral("10004001")));
    EXPECT_FALSE(store->isModified()) << "marked and saved on the store's thread";
    CUserSettingsStore again(configDir.path());
    const auto record = again.getOptionExGreeks(QStringLiteral("10004001"));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->exDelta, store->getOptionExGreeks(QStringLiteral("10004001"))->exDelta);
    EXPECT_EQ(record->exTheta, store->getOptionExGreeks(QStringLiteral("10004001"))->exTheta);
}

TEST_F(AutoImportThreadTest, RunningThreadImportsOnItsTickAndSignalsTheGuiThreadQueued)
{
    CAutoImportOptionExGreeksThread thread;
    std::atomic<QThread*> emittedOn{nullptr};
    QThread* receivedOn = nullptr;
    int received = 0;
    QObject receiver;  // lives on the GUI thread, as the panel does
    QObject::connect(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish, &receiver, [&] {
        receivedOn = QThread::currentThread();
        ++received;
    });
    QObject::connect(
        &thread, &CAutoImportOptionExGreeksThread::sigReadFinish, &thread,
        [&] { emittedOn = QThread::currentThread(); }, Qt::DirectConnection);
    thread.start(QThread::InheritPriority);
    writeFile(QStringLiteral("greeks.json"), validFileText());
    ASSERT_TRUE(testsupport::waitUntil([&] { return received > 0; }, 10000));
    EXPECT_EQ(QCoreApplication::instance()->thread(), receivedOn);
    EXPECT_EQ(&thread, emittedOn.load());
    EXPECT_TRUE(store->getOptionExGreeks(QStringLiteral("10004001")));
    EXPECT_TRUE(filesLeft().isEmpty());
    thread.stop();
    EXPECT_TRUE(thread.isFinished());
}

TEST_F(AutoImportThreadTest, SwitchedOffTheTicksTakeNothingUntilSwitchedOn)
{
    setImport(false, watchDir.path());
    CAutoImportOptionExGreeksThread thread;
    int received = 0;
    QObject receiver;
    QObject::connect(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish, &receiver, [&] { ++received; });
    thread.start();
    writeFile(QStringLiteral("greeks.json"), validFileText());
    // Two ticks go by with the import off: the file stays.
    EXPECT_FALSE(testsupport::waitUntil([&] { return received > 0; }, 2500));
    EXPECT_EQ(1, filesLeft().size());
    setImport(true, watchDir.path());
    EXPECT_TRUE(testsupport::waitUntil([&] { return received > 0; }, 10000));
    EXPECT_TRUE(filesLeft().isEmpty());
    thread.stop();
}

TEST_F(AutoImportThreadTest, RunningThreadSurvivesAMillionLevelsOnItsOwnStack)
{
    importEarlier();
    CAutoImportOptionExGreeksThread thread;
    thread.setStackSize(1024 * 1024);  // where the reader itself would fail at some 5,000 levels
    thread.start();
    writeFile(QStringLiteral("deep.json"), nestedArrays(1000000, false));
    writeFile(QStringLiteral("deeper.json"), nestedObjects(1000000, true));
    ASSERT_TRUE(testsupport::waitUntil([&] { return filesLeft().isEmpty(); }, 15000));
    thread.stop();
    expectEarlierImportKept("million levels on the thread");
}

TEST_F(AutoImportThreadTest, StopEndsTheThreadPromptlyAndTheDestructorStopsARunningThread)
{
    auto thread = std::make_unique<CAutoImportOptionExGreeksThread>();
    thread->start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return thread->isRunning(); }, 5000));
    thread->stop();
    EXPECT_TRUE(thread->isFinished());
    EXPECT_FALSE(thread->isRunning());

    auto another = std::make_unique<CAutoImportOptionExGreeksThread>();
    another->start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return another->isRunning(); }, 5000));
    another.reset();  // must neither hang nor leave a running QThread behind (Qt would abort)
    SUCCEED();
}

TEST_F(AutoImportThreadTest, StopBeforeTheThreadGetsGoingStillEnds)
{
    CAutoImportOptionExGreeksThread thread;
    thread.start();
    thread.stop();
    EXPECT_TRUE(thread.isFinished());
}

// The chain panel ends the thread with terminate(); the settings' lock must not
// be left held, so that the GUI thread can still read the imported Greeks.
TEST_F(AutoImportThreadTest, TerminateWhilePassesRunLeavesTheSettingsUsable)
{
    if (kThreadSanitizer) {
        GTEST_SKIP() << "ThreadSanitizer cannot follow a cancelled thread";
    }
    for (int i = 0; i < 200; ++i) {
        writeFile(QStringLiteral("file%1.json").arg(i), validFileText());
    }
    auto thread = std::make_unique<CAutoImportOptionExGreeksThread>();
    int received = 0;
    QObject receiver;
    QObject::connect(thread.get(), &CAutoImportOptionExGreeksThread::sigReadFinish, &receiver, [&] { ++received; });
    thread->start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return filesLeft().size() < 200; }, 10000));
    thread->terminate();
    thread->wait();
    EXPECT_FALSE(thread->isRunning());
    thread.reset();
    // The lock is free: a read and a write go through.
    store->getOptionExGreeks(QStringLiteral("10004001"));
    importEarlier();
    expectEarlierImportKept("after terminate");
}

TEST_F(AutoImportThreadTest, TerminateWhileIdleEndsTheThread)
{
    if (kThreadSanitizer) {
        GTEST_SKIP() << "ThreadSanitizer cannot follow a cancelled thread";
    }
    CAutoImportOptionExGreeksThread thread;
    thread.start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return thread.isRunning(); }, 5000));
    thread.terminate();
    thread.wait();
    EXPECT_TRUE(thread.isFinished());
}
