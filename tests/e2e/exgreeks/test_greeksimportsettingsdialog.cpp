// The desk's settings dialog of the Greeks import: what it shows, what it
// writes into the user's trade settings, the signal it sends, and that a
// running import thread follows it.
#include "app/cgreeksimportsettingsdialog.h"
#include "board/cautoimportoptionexgreeksthread.h"
#include "seam/trading.h"
#include "services/user/cusersettingsstore.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace TC;

namespace {

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

class GreeksImportSettingsDialogTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(configDir.isValid());
        ASSERT_TRUE(watchDir.isValid());
        tradeClient = utils::CManualSingletonT<CTradeClient>::create<CSignalOnlyTradeClient>();
        store = new CUserSettingsStore(configDir.path());
        utils::CSingletonT<CUserManager>::instance()->setUserConfig(store);
    }
    void TearDown() override
    {
        utils::CSingletonT<CUserManager>::instance()->setUserConfig(nullptr);
        utils::CManualSingletonT<CTradeClient>::destroy();
    }

    QTemporaryDir configDir;
    QTemporaryDir watchDir;
    CUserSettingsStore* store = nullptr;
    CTradeClient* tradeClient = nullptr;
};

}  // namespace

TEST_F(GreeksImportSettingsDialogTest, ShowsThePresentSettings)
{
    CTradeSetting setting = store->tradeSetting();
    setting.autoImportExGreeks = true;
    setting.autoImportExGreeksDir = watchDir.path();
    store->setTradeSetting(setting);
    desk::CGreeksImportSettingsDialog dialog;
    EXPECT_TRUE(dialog.importEnabled());
    EXPECT_EQ(watchDir.path(), dialog.directory());
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("directoryEdit"));
    ASSERT_NE(nullptr, edit);
    EXPECT_TRUE(edit->isEnabled());
}

TEST_F(GreeksImportSettingsDialogTest, AcceptWritesTheTradeSettingsSavesThemAndSignals)
{
    QSignalSpy changed(tradeClient, &CTradeClient::sigAutoImportExGreeksChanged);
    desk::CGreeksImportSettingsDialog dialog;
    auto* box = dialog.findChild<QCheckBox*>(QStringLiteral("enableBox"));
    ASSERT_NE(nullptr, box);
    box->setChecked(true);
    dialog.setDirectory(watchDir.path());
    dialog.accept();
    EXPECT_EQ(QDialog::Accepted, dialog.result());
    EXPECT_EQ(1, changed.count());
    const auto* written = static_cast<const CTradeSetting*>(store->getUserDataAddress(UM_TRADE_SETTING));
    ASSERT_NE(nullptr, written);
    EXPECT_TRUE(written->autoImportExGreeks);
    EXPECT_EQ(watchDir.path(), written->autoImportExGreeksDir);
    // Saved: a store reading the same directory finds the choice.
    CUserSettingsStore again(configDir.path());
    EXPECT_TRUE(again.tradeSetting().autoImportExGreeks);
    EXPECT_EQ(watchDir.path(), again.tradeSetting().autoImportExGreeksDir);

    desk::CGreeksImportSettingsDialog second;
    second.setImportEnabled(false);
    second.accept();
    EXPECT_EQ(2, changed.count());
    EXPECT_FALSE(store->tradeSetting().autoImportExGreeks);
    EXPECT_EQ(watchDir.path(), store->tradeSetting().autoImportExGreeksDir);
}

TEST_F(GreeksImportSettingsDialogTest, SwitchedOnWithoutADirectoryStaysOpenAndWritesNothing)
{
    QSignalSpy changed(tradeClient, &CTradeClient::sigAutoImportExGreeksChanged);
    const CTradeSetting before = store->tradeSetting();
    desk::CGreeksImportSettingsDialog dialog;
    dialog.setImportEnabled(true);
    dialog.setDirectory(QStringLiteral("   "));
    dialog.accept();
    EXPECT_NE(QDialog::Accepted, dialog.result());
    EXPECT_EQ(0, changed.count());
    EXPECT_EQ(before.autoImportExGreeks, store->tradeSetting().autoImportExGreeks);
    EXPECT_EQ(before.autoImportExGreeksDir, store->tradeSetting().autoImportExGreeksDir);
}

TEST_F(GreeksImportSettingsDialogTest, CancelWritesNothing)
{
    QSignalSpy changed(tradeClient, &CTradeClient::sigAutoImportExGreeksChanged);
    desk::CGreeksImportSettingsDialog dialog;
    dialog.setImportEnabled(true);
    dialog.setDirectory(watchDir.path());
    dialog.reject();
    EXPECT_EQ(0, changed.count());
    EXPECT_FALSE(store->tradeSetting().autoImportExGreeks);
}

TEST_F(GreeksImportSettingsDialogTest, WithoutUserSettingsApplyFails)
{
    utils::CSingletonT<CUserManager>::instance()->setUserConfig(nullptr);
    store = nullptr;
    QSignalSpy changed(tradeClient, &CTradeClient::sigAutoImportExGreeksChanged);
    desk::CGreeksImportSettingsDialog dialog;
    EXPECT_FALSE(dialog.importEnabled());
    dialog.setImportEnabled(true);
    dialog.setDirectory(watchDir.path());
    EXPECT_FALSE(dialog.apply());
    EXPECT_EQ(0, changed.count());
}

TEST_F(GreeksImportSettingsDialogTest, RunningImportThreadFollowsTheDialog)
{
    CAutoImportOptionExGreeksThread thread;
    int received = 0;
    QObject receiver;
    QObject::connect(&thread, &CAutoImportOptionExGreeksThread::sigReadFinish, &receiver, [&] { ++received; });
    thread.start();
    const QString file = QDir(watchDir.path()).filePath(QStringLiteral("greeks.json"));
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("[{\"code\": \"10004001\", \"exDelta\": 0.5}]");
    }
    desk::CGreeksImportSettingsDialog dialog;
    dialog.setImportEnabled(true);
    dialog.setDirectory(watchDir.path());
    dialog.accept();
    ASSERT_TRUE(testsupport::waitUntil([&] { return received > 0; }, 10000));
    EXPECT_FALSE(QFile::exists(file));
    const auto record = store->getOptionExGreeks(QStringLiteral("10004001"));
    ASSERT_TRUE(record);
    EXPECT_DOUBLE_EQ(0.5, record->exDelta);
    thread.stop();
}
