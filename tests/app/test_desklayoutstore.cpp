#include "app/cdesklayoutstore.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

desk::DeskLayout sampleLayout()
{
    desk::DeskLayout layout;
    layout.geometry = QByteArray("\x01\x02geometry", 10);
    layout.dockState = QByteArray("\x00\xffstate", 7);
    layout.theme = QStringLiteral("light");
    layout.panels = QStringList{QStringLiteral("pricet"), QStringLiteral("ops")};
    layout.panelParams.insert(QStringLiteral("pricet"), QStringLiteral("510050.SH|20261223||a;b"));
    layout.panelParams.insert(QStringLiteral("ops"), QString());
    layout.underlyings.insert(QStringLiteral("pricet"), QStringLiteral("510300.SH"));
    layout.splitters.insert(QStringLiteral("pricet"), {QByteArray("\x00\xff\x01split", 8)});
    layout.splitters.insert(QStringLiteral("ops"), {QByteArray("a"), QByteArray("b\x00", 2)});
    return layout;
}

QStringList filesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files | QDir::Hidden); }

}  // namespace

TEST(DeskLayoutStore, RoundTrip)
{
    QTemporaryDir dir;
    desk::CDeskLayoutStore store(dir.path());
    desk::DeskLayout loaded;
    EXPECT_EQ(store.load(loaded), desk::CDeskLayoutStore::LoadResult::Missing);
    ASSERT_TRUE(store.save(sampleLayout()));
    ASSERT_EQ(store.load(loaded), desk::CDeskLayoutStore::LoadResult::Loaded);
    const desk::DeskLayout expected = sampleLayout();
    EXPECT_EQ(loaded.geometry, expected.geometry);
    EXPECT_EQ(loaded.dockState, expected.dockState);
    EXPECT_EQ(loaded.theme, expected.theme);
    EXPECT_EQ(loaded.panels, expected.panels);
    EXPECT_EQ(loaded.panelParams, expected.panelParams);
    EXPECT_EQ(loaded.underlyings, expected.underlyings);
    EXPECT_EQ(loaded.splitters, expected.splitters);
    // Atomic writes leave no temporary files behind.
    EXPECT_EQ(filesIn(dir.path()), QStringList{QStringLiteral("layout.json")});
}

class DamagedLayout : public testing::TestWithParam<const char*> {};

TEST_P(DamagedLayout, IsSetAsideAndNeverOverwritten)
{
    QTemporaryDir dir;
    desk::CDeskLayoutStore store(dir.path());
    const QByteArray damaged(GetParam());
    {
        QFile file(store.filePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(damaged);
    }
    desk::DeskLayout loaded;
    loaded.theme = QStringLiteral("untouched");
    QString aside;
    ASSERT_EQ(store.load(loaded, &aside), desk::CDeskLayoutStore::LoadResult::Damaged) << GetParam();
    EXPECT_EQ(loaded.theme, QStringLiteral("untouched"));
    EXPECT_FALSE(QFile::exists(store.filePath()));
    QFile kept(aside);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly)) << aside.toStdString();
    EXPECT_EQ(kept.readAll(), damaged);
    // A later save writes a fresh file and keeps the damaged one.
    ASSERT_TRUE(store.save(sampleLayout()));
    EXPECT_TRUE(QFile::exists(aside));
    EXPECT_EQ(store.load(loaded), desk::CDeskLayoutStore::LoadResult::Loaded);
}

INSTANTIATE_TEST_SUITE_P(Cases, DamagedLayout,
                         testing::Values("", "{", "not json at all", "[1,2,3]", "{\"version\": 99}",
                                         "{\"version\":1,\"panels\":\"pricet\",\"params\":{}}",
                                         "{\"version\":1,\"panels\":[1],\"params\":{}}",
                                         "{\"version\":1,\"panels\":[],\"params\":{\"a\":3}}",
                                         "{\"version\":1,\"panels\":[],\"params\":{},\"splitters\":3}",
                                         "{\"version\":1,\"panels\":[],\"params\":{},\"splitters\":{\"a\":[1]}}",
                                         "{\"version\":1,\"panels\":[],\"params\":{},\"splitters\":{\"a\":\"x\"}}"));

TEST(DeskLayoutStore, WritableDirIsCreatedAndProved)
{
    QTemporaryDir dir;
    QString error;
    const QString nested = QDir(dir.path()).filePath(QStringLiteral("a/b/c"));
    EXPECT_TRUE(desk::CDeskLayoutStore::ensureWritableDir(nested, &error)) << error.toStdString();
    EXPECT_TRUE(QDir(nested).exists());
    EXPECT_TRUE(filesIn(nested).isEmpty());
}

TEST(DeskLayoutStore, AFileIsNoDirectory)
{
    QTemporaryDir dir;
    const QString file = QDir(dir.path()).filePath(QStringLiteral("plain"));
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    QString error;
    EXPECT_FALSE(desk::CDeskLayoutStore::ensureWritableDir(file, &error));
    EXPECT_FALSE(error.isEmpty());
}
