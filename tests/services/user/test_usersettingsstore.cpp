#include "services/user/cusersettingsstore.h"

#include "seam/logger.h"
#include "support/testsupport.h"

#include <log4cxx/fileappender.h>
#include <log4cxx/simplelayout.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace TC;

namespace {

class UserSettingsStoreTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        utils::CSingletonT<CUserManager>::destroy();
    }
    void TearDown() override { utils::CSingletonT<CUserManager>::destroy(); }

    QString dir() const { return m_dir.path(); }
    QString mainFile() const { return QDir(dir()).filePath(CUserSettingsStore::settingsFileName()); }
    QString backupFile() const { return QDir(dir()).filePath(CUserSettingsStore::backupFileName()); }

    void writeRaw(const QString& path, const QByteArray& text)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    }
    QStringList setAsideFiles() const
    {
        return QDir(dir()).entryList({QStringLiteral("*.damaged-*")}, QDir::Files);
    }

    QTemporaryDir m_dir;
};

CStrategyStockData makeLeg(const QString& code, nqservice::EOperationType operation, long long quantity)
{
    CStrategyStockData leg;
    leg.code = code;
    leg.name = QStringLiteral("50ETF购12月2800");
    leg.market = QStringLiteral("SH");
    leg.weight = 0.5;
    leg.quantity = quantity;
    leg.operation = operation;
    leg.checked = false;
    return leg;
}

}  // namespace

TEST_F(UserSettingsStoreTest, DefaultPaperUser)
{
    CUserSettingsStore store(dir());
    EXPECT_TRUE(QFile::exists(mainFile()));
    EXPECT_EQ("paper", store.getUserDataString(UM_USER_NAME));
    EXPECT_EQ(90, store.getUserDataInt(UM_USER_ROLE));
    EXPECT_EQ(utils::FNF_SEGMENTED, store.getSegmentedFormatFlag());
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<CAccount>>*>(store.getUserDataAddress(UM_ACCOUNT_LIST));
    ASSERT_NE(nullptr, accounts);
    int stockOption = 0;
    int futureOption = 0;
    for (const auto& account : *accounts) {
        ASSERT_TRUE(account);
        EXPECT_FALSE(account->displayName.isEmpty());
        stockOption += account->accountType == 6 ? 1 : 0;
        futureOption += account->accountType == 5 ? 1 : 0;
    }
    EXPECT_GE(stockOption, 2);
    EXPECT_GE(futureOption, 1);
    EXPECT_EQ(nullptr, store.getUserDataAddress(static_cast<EUserMember>(9999)));
    const CTradeSetting trade(*static_cast<const CTradeSetting*>(store.getUserDataAddress(UM_TRADE_SETTING)));
    EXPECT_FALSE(trade.autoImportExGreeks);
}

TEST_F(UserSettingsStoreTest, PersistenceRoundTrip)
{
    {
        CUserSettingsStore store(dir());
        store.setUserDataInt(UM_USER_ROLE, 400);
        store.setUserDataInt(UM_SEGMENTED_FORMAT, 0);
        store.setUserDataInt(UM_GREEK_BENCHMARK, 1);
        store.setUserDataString(UM_USER_NAME, QStringLiteral("张三"));
        store.setUserDataString(static_cast<EUserMember>(200), QStringLiteral("备注"));
        store.setAccountFilter(QStringLiteral("SO002"), true);
        store.setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), 30);
        store.setHistoryRate(QStringLiteral("20261223"), QStringLiteral("510050.SH"), 0.33);

        // Baskets through the address, as the strategy tree writes them.
        auto* baskets = static_cast<QMap<QString, CStrategySetting>*>(store.getUserDataAddress(UM_STRATEGY_SETTINGS));
        ASSERT_NE(nullptr, baskets);
        QMap<QString, CStrategySetting> copy = *baskets;
        CStrategySetting basket;
        basket.name = QStringLiteral("跨式");
        basket.addLeg(makeLeg(QStringLiteral("10004001"), nqservice::OT_SELL, 0x100000001LL));
        basket.addLeg(makeLeg(QStringLiteral("10004002"), nqservice::OT_BUY, 2));
        copy.insert(basket.name, basket);
        store.setModifyFlag();
        *baskets = copy;
        store.setModifyFlag();

        CTradeSetting trade;
        trade.autoImportExGreeks = true;
        trade.autoImportExGreeksDir = QStringLiteral("/data/希腊值");
        trade.modeSetting = 3;
        store.setTradeSetting(trade);

        CWinnerSetting winner;
        winner.levelOne = 2.8;
        winner.levelTwo = 3.1;
        winner.startTime = 1700000000u;
        winner.endTime = 4000000000u;
        store.setWinnerSetting(QStringLiteral("510050.SH"), WPD_BREAK, winner);
        EXPECT_FALSE(store.isModified());
    }
    CUserSettingsStore store(dir());
    EXPECT_EQ(400, store.getUserDataInt(UM_USER_ROLE));
    EXPECT_EQ(utils::FNF_NONE, store.getSegmentedFormatFlag());
    EXPECT_EQ(1, store.getUserDataInt(UM_GREEK_BENCHMARK));
    EXPECT_EQ(QStringLiteral("张三"), store.getUserDataString(UM_USER_NAME));
    EXPECT_EQ(QStringLiteral("备注"), store.getUserDataString(static_cast<EUserMember>(200)));
    EXPECT_TRUE(store.isAccountFilter(QStringLiteral("SO002")));
    EXPECT_FALSE(store.isAccountFilter(QStringLiteral("SO001")));
    ASSERT_TRUE(store.getPermissionInfoPtr());
    EXPECT_EQ(30, store.getPermissionInfoPtr()->getInt(nqservice::kPermStkOptFixPriceMaxOrderLimit));
    double rate = 0.2;
    store.getHistoryRate(rate, QStringLiteral("20261223"), QStringLiteral("510050.SH"));
    EXPECT_DOUBLE_EQ(0.33, rate);
    rate = 0.2;
    store.getHistoryRate(rate, QStringLiteral("20270101"), QStringLiteral("510050.SH"));
    EXPECT_DOUBLE_EQ(0.2, rate);

    const auto baskets = store.strategySettings();
    ASSERT_EQ(1, baskets.size());
    const CStrategySetting& basket = baskets.first();
    EXPECT_EQ(QStringLiteral("跨式"), basket.name);
    ASSERT_EQ(2, basket.legs.size());
    EXPECT_EQ(QStringLiteral("10004001"), basket.legs[0]->code);
    EXPECT_EQ(0x100000001LL, basket.legs[0]->quantity);
    EXPECT_EQ(nqservice::OT_SELL, basket.legs[0]->operation);
    EXPECT_FALSE(basket.legs[0]->checked);
    EXPECT_DOUBLE_EQ(0.5, basket.legs[0]->weight);
    EXPECT_EQ(QStringLiteral("50ETF购12月2800"), basket.legs[1]->name);

    const CTradeSetting trade = store.tradeSetting();
    EXPECT_TRUE(trade.autoImportExGreeks);
    EXPECT_EQ(QStringLiteral("/data/希腊值"), trade.autoImportExGreeksDir);
    EXPECT_EQ(3, trade.modeSetting);

    CWinnerSetting winner;
    store.getWinnerSetting(QStringLiteral("510050.SH"), WPD_BREAK, winner);
    EXPECT_DOUBLE_EQ(2.8, winner.levelOne);
    EXPECT_DOUBLE_EQ(3.1, winner.levelTwo);
    EXPECT_EQ(1700000000u, winner.startTime);
    EXPECT_EQ(4000000000u, winner.endTime);
    CWinnerSetting other;
    store.getWinnerSetting(QStringLiteral("510050.SH"), WPD_RISE, other);
    EXPECT_TRUE(other == CWinnerSetting());
}

TEST_F(UserSettingsStoreTest, WinnerSettingChangeIsAnnounced)
{
    CUserSettingsStore store(dir());
    QSignalSpy spy(&store, &CUserConfig::sigWinnerSettingChanged);
    CWinnerSetting winner;
    winner.levelOne = 3.0;
    store.setWinnerSetting(QStringLiteral("510300.SH"), WPD_RANGE, winner);
    ASSERT_EQ(1, spy.count());
    EXPECT_EQ(QStringLiteral("510300.SH"), spy.at(0).at(0).toString());
    EXPECT_EQ(3, spy.at(0).at(1).toInt());
}

TEST_F(UserSettingsStoreTest, DamagedFileIsSetAsideAndGoodStateKept)
{
    {
        CUserSettingsStore store(dir());
        store.setUserDataInt(UM_USER_ROLE, 101);
    }
    writeRaw(mainFile(), "{ \"version\": 1, \"accounts\": [ {\"accountId\": ");
    CUserSettingsStore store(dir());
    // The last good state came back from the backup, and the broken file is kept aside.
    EXPECT_EQ(101, store.getUserDataInt(UM_USER_ROLE));
    const QStringList aside = setAsideFiles();
    ASSERT_EQ(1, aside.size()) << aside.join(",").toStdString();
    EXPECT_TRUE(aside.first().startsWith(CUserSettingsStore::settingsFileName() + ".damaged-"));
    EXPECT_FALSE(store.lastSetAsidePath().isEmpty());
    // The main file is good again.
    CUserSettingsStore again(dir());
    EXPECT_EQ(101, again.getUserDataInt(UM_USER_ROLE));
    EXPECT_EQ(1, setAsideFiles().size());
}

TEST_F(UserSettingsStoreTest, DamagedFileIsReportedInTheLog)
{
    const QString logPath = QDir(dir()).filePath(QStringLiteral("test.log"));
    log4cxx::AppenderPtr appender(new log4cxx::FileAppender(
        log4cxx::LayoutPtr(new log4cxx::SimpleLayout()), logPath.toStdString(), false));
    g_NQStdLogger->addAppender(appender);
    writeRaw(mainFile(), "{ broken");
    {
        CUserSettingsStore store(dir());
    }
    g_NQStdLogger->removeAppender(appender);
    appender->close();
    QFile log(logPath);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(text.contains(QStringLiteral("ERROR"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("is damaged"))) << text.toStdString();
    EXPECT_TRUE(text.contains(CUserSettingsStore::settingsFileName() + QStringLiteral(".damaged-")))
        << text.toStdString();
}

TEST_F(UserSettingsStoreTest, ReloadOfDamagedFileKeepsStateInMemory)
{
    CUserSettingsStore store(dir());
    store.setUserDataInt(UM_USER_ROLE, 80);
    writeRaw(mainFile(), "[1, 2, 3]");
    EXPECT_FALSE(store.reload());
    EXPECT_EQ(80, store.getUserDataInt(UM_USER_ROLE));
    EXPECT_EQ(1, setAsideFiles().size());
    EXPECT_FALSE(QFile::exists(mainFile()));
    // The next save writes the good state back.
    ASSERT_TRUE(store.save());
    CUserSettingsStore again(dir());
    EXPECT_EQ(80, again.getUserDataInt(UM_USER_ROLE));
}

TEST_F(UserSettingsStoreTest, BothFilesDamagedGivesDefaults)
{
    writeRaw(mainFile(), "not json");
    writeRaw(backupFile(), "{\"version\": 99}");
    CUserSettingsStore store(dir());
    EXPECT_EQ(90, store.getUserDataInt(UM_USER_ROLE));
    EXPECT_EQ(2, setAsideFiles().size());
    EXPECT_TRUE(QFile::exists(mainFile()));
}

TEST_F(UserSettingsStoreTest, AccountsAndFilter)
{
    CUserSettingsStore store(dir());
    const auto account = store.getAccountData(QStringLiteral("SO001"));
    ASSERT_TRUE(account);
    EXPECT_EQ(6, account->toInfo()->accountType);
    EXPECT_FALSE(store.getAccountData(QStringLiteral("nobody")));
    EXPECT_FALSE(store.isAccountFilter(QStringLiteral("SO001")));
    store.setAccountFilter(QStringLiteral("SO001"), true);
    EXPECT_TRUE(store.isAccountFilter(QStringLiteral("SO001")));
    store.setAccountFilter(QStringLiteral("SO001"), false);
    EXPECT_FALSE(store.isAccountFilter(QStringLiteral("SO001")));
}

TEST_F(UserSettingsStoreTest, GroupsAndWeights)
{
    CUserSettingsStore store(dir());
    const CAccountGroup* group = store.getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, "默认组");
    ASSERT_NE(nullptr, group);
    int weight = 0;
    ASSERT_TRUE(group->getWeight("SO002", weight));
    EXPECT_EQ(2, weight);
    EXPECT_EQ(nullptr, store.getAccountGroupConst(nqservice::VQ_BROKER_TYPE_FUTURE_OPTION, "默认组"));
    EXPECT_EQ(nullptr, store.getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, "无此组"));

    CAccountGroup mixed;
    mixed.name = QStringLiteral("组二");
    mixed.weights.insert(QStringLiteral("SO002"), 3);
    mixed.weights.insert(QStringLiteral("gone"), 5);  // an account that no longer exists
    mixed.weights.insert(QStringLiteral("SO001"), 1);
    QVector<CAccountGroup> groups = store.accountGroups();
    groups.append(mixed);
    store.setAccountGroups(groups);

    const auto accounts = store.getGroupAccounts(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, QStringLiteral("组二"));
    ASSERT_EQ(2, accounts.size());  // in key order, the unknown key left out
    EXPECT_EQ(QStringLiteral("SO001"), accounts[0]->key());
    EXPECT_EQ(QStringLiteral("SO002"), accounts[1]->key());
    EXPECT_TRUE(store.getGroupAccounts(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, QStringLiteral("无此组")).isEmpty());

    CUserSettingsStore reloaded(dir());
    const CAccountGroup* back = reloaded.getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, "组二");
    ASSERT_NE(nullptr, back);
    ASSERT_TRUE(back->getWeight("gone", weight));
    EXPECT_EQ(5, weight);
    ASSERT_TRUE(back->getWeight("SO002", weight));
    EXPECT_EQ(3, weight);
}

TEST_F(UserSettingsStoreTest, OptionExGreeksAreCopies)
{
    CUserSettingsStore store(dir());
    EXPECT_FALSE(store.getOptionExGreeks(QStringLiteral("10004001")));
    OptionExGreeksMap greeks;
    auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
    record->code = "10004001";
    record->exDelta = 0.55;
    greeks.insert(QStringLiteral("10004001"), record);
    store.replaceOptionExGreeks(greeks);
    record->exDelta = 0.1;  // the caller's record is not the stored one
    const auto first = store.getOptionExGreeks(QStringLiteral("10004001"));
    ASSERT_TRUE(first);
    EXPECT_DOUBLE_EQ(0.55, first->exDelta);
    first->exDelta = 0.9;  // nor is the reader's
    EXPECT_DOUBLE_EQ(0.55, store.getOptionExGreeks(QStringLiteral("10004001"))->exDelta);
    // A new harvest replaces everything.
    store.replaceOptionExGreeks(OptionExGreeksMap());
    EXPECT_FALSE(store.getOptionExGreeks(QStringLiteral("10004001")));
}

TEST_F(UserSettingsStoreTest, OptionExGreeksAcrossThreads)
{
    CUserSettingsStore store(dir());
    std::atomic<bool> stop{false};
    std::thread importer([&] {
        for (int pass = 0; pass < 500; ++pass) {
            OptionExGreeksMap harvest;
            for (int i = 0; i < 20; ++i) {
                auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
                record->code = std::to_string(10004000 + i);
                record->exDelta = pass;
                record->exGamma = pass;
                harvest.insert(QString::fromStdString(record->code), record);
            }
            store.replaceOptionExGreeks(harvest);
        }
        stop = true;
    });
    int reads = 0;
    while (!stop) {
        const auto record = store.getOptionExGreeks(QStringLiteral("10004007"));
        if (record) {
            // One pass writes both fields alike: a torn record would differ.
            EXPECT_DOUBLE_EQ(record->exDelta, record->exGamma);
            ++reads;
        }
    }
    importer.join();
    ASSERT_TRUE(store.getOptionExGreeks(QStringLiteral("10004007")));
    EXPECT_DOUBLE_EQ(499.0, store.getOptionExGreeks(QStringLiteral("10004007"))->exDelta);
}

TEST_F(UserSettingsStoreTest, ModifyFlagFromAnotherThreadSavesOnStoreThread)
{
    CUserSettingsStore store(dir());
    auto* trade = static_cast<CTradeSetting*>(store.getUserDataAddress(UM_TRADE_SETTING));
    trade->modeSetting = 7;
    std::thread writer([&] { store.setModifyFlag(); });
    writer.join();
    EXPECT_TRUE(store.isModified());
    EXPECT_TRUE(testsupport::waitUntil([&] { return !store.isModified(); }, 2000));
    CUserSettingsStore again(dir());
    EXPECT_EQ(7, again.tradeSetting().modeSetting);
}

TEST_F(UserSettingsStoreTest, ReachedThroughTheUserManager)
{
    auto* store = new CUserSettingsStore(dir());
    utils::CSingletonT<CUserManager>::instance()->setUserConfig(store);
    EXPECT_EQ(store, getUserConfig());
    EXPECT_EQ(store, utils::CSingletonT<CUserManager>::instance()->getUserConfig());
    EXPECT_EQ(QStringLiteral("paper"), getUserConfig()->getUserDataString(UM_USER_NAME));
    EXPECT_EQ(QStringLiteral("张"), getUserConfig()->getStockUnitText(QStringLiteral("张")));
}
