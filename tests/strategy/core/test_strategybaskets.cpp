// Baskets in the user settings: names, writes as a whole, a restart of the
// store, a damaged file, and the quote buffer of the table.
#include "seam/user.h"
#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategyquotebuffer.h"
#include "services/user/cusersettingsstore.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <thread>
#include <vector>

namespace {

class BasketStoreTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        open();
    }
    void TearDown() override { utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr); }
    // A store on the directory, installed as the user configuration; the last one goes.
    void open()
    {
        store = new TC::CUserSettingsStore(dir.path());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
    }
    static TC::CStrategySetting basket(const QString& name, std::initializer_list<const char*> codes)
    {
        TC::CStrategySetting out;
        out.name = name;
        for (const char* code : codes) {
            TC::CStrategyStockData leg;
            leg.code = QString::fromLatin1(code);
            leg.market = QStringLiteral("SH");
            leg.name = QStringLiteral("50ETF购12月3000");
            leg.quantity = 2;
            leg.weight = 1.5;
            leg.operation = nqservice::OT_SELL;
            leg.checked = false;
            out.addLeg(leg);
        }
        return out;
    }

    QTemporaryDir dir;
    TC::CUserSettingsStore* store = nullptr;
};

}  // namespace

TEST_F(BasketStoreTest, NewNameFillsTheFirstGap)
{
    TC::TStrategyMap baskets;
    EXPECT_EQ(TC::CStrategyBaskets::newBasketName(baskets), QStringLiteral("我的组合"));
    baskets.insert(QStringLiteral("我的组合"), TC::CStrategySetting());
    baskets.insert(QStringLiteral("我的组合2"), TC::CStrategySetting());
    EXPECT_EQ(TC::CStrategyBaskets::newBasketName(baskets), QStringLiteral("我的组合1"));
    baskets.insert(QStringLiteral("我的组合1"), TC::CStrategySetting());
    EXPECT_EQ(TC::CStrategyBaskets::newBasketName(baskets), QStringLiteral("我的组合3"));
}

TEST_F(BasketStoreTest, LegsAreFoundByCodeAloneTheFirstWins)
{
    TC::CStrategySetting setting = basket(QStringLiteral("a"), {"10000011"});
    TC::CStrategyStockData other;
    other.code = QStringLiteral("10000011");
    other.market = QStringLiteral("SZ");
    setting.addLeg(other);
    TC::CStrategyStockData* leg = TC::CStrategyBaskets::findLegByCode(setting, QStringLiteral("10000011"));
    ASSERT_NE(leg, nullptr);
    EXPECT_EQ(leg->market, QStringLiteral("SH"));
    EXPECT_EQ(TC::CStrategyBaskets::findLegByCode(setting, QStringLiteral("1")), nullptr);
    EXPECT_TRUE(TC::CStrategyBaskets::hasKey(setting, QStringLiteral("10000011.SZ")));
    EXPECT_FALSE(TC::CStrategyBaskets::hasKey(setting, QStringLiteral("10000012.SH")));
}

TEST_F(BasketStoreTest, CreateRenameDeleteSurviveARestartOfTheStore)
{
    TC::TStrategyMap baskets;
    baskets.insert(QStringLiteral("b"), basket(QStringLiteral("b"), {"10000011", "10000012"}));
    baskets.insert(QStringLiteral("a"), basket(QStringLiteral("a"), {"10000021"}));
    ASSERT_TRUE(TC::CStrategyBaskets::write(baskets));

    open();  // a restart: the old store is replaced by one that reads the file
    TC::TStrategyMap loaded = TC::CStrategyBaskets::copy();
    ASSERT_EQ(loaded.keys(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    const TC::CStrategySetting b = loaded.value(QStringLiteral("b"));
    ASSERT_EQ(b.legs.size(), 2);
    const TC::CStrategyStockData* leg = b.legs.at(1);
    EXPECT_EQ(leg->code, QStringLiteral("10000012"));
    EXPECT_EQ(leg->quantity, 2);
    EXPECT_DOUBLE_EQ(leg->weight, 1.5);
    EXPECT_EQ(leg->operation, nqservice::OT_SELL);
    EXPECT_FALSE(leg->checked);

    // Rename a to c, delete b.
    TC::CStrategySetting renamed = loaded.value(QStringLiteral("a"));
    loaded.remove(QStringLiteral("a"));
    renamed.name = QStringLiteral("c");
    loaded.insert(QStringLiteral("c"), renamed);
    loaded.remove(QStringLiteral("b"));
    ASSERT_TRUE(TC::CStrategyBaskets::write(loaded));

    open();
    const TC::TStrategyMap again = TC::CStrategyBaskets::copy();
    ASSERT_EQ(again.keys(), QStringList{QStringLiteral("c")});
    EXPECT_EQ(again.value(QStringLiteral("c")).name, QStringLiteral("c"));
    const TC::CStrategySetting c = again.value(QStringLiteral("c"));
    ASSERT_EQ(c.legs.size(), 1);
    EXPECT_EQ(c.legs.at(0)->code, QStringLiteral("10000021"));
}

TEST_F(BasketStoreTest, ACopyIsPrivateUntilWritten)
{
    TC::TStrategyMap baskets;
    baskets.insert(QStringLiteral("a"), basket(QStringLiteral("a"), {"10000011"}));
    TC::CStrategyBaskets::write(baskets);
    TC::TStrategyMap copy = TC::CStrategyBaskets::copy();
    copy[QStringLiteral("a")].legs.at(0)->quantity = 99;
    const TC::CStrategySetting stored = TC::CStrategyBaskets::copy().value(QStringLiteral("a"));
    EXPECT_EQ(stored.legs.at(0)->quantity, 2);
}

TEST_F(BasketStoreTest, ADamagedFileKeepsTheLastGoodBaskets)
{
    TC::TStrategyMap baskets;
    baskets.insert(QStringLiteral("good"), basket(QStringLiteral("good"), {"10000011"}));
    ASSERT_TRUE(TC::CStrategyBaskets::write(baskets));
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
    // A write cut off half way, as if by a crash of a non-atomic writer.
    QFile file(dir.filePath(TC::CUserSettingsStore::settingsFileName()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(whole.left(whole.size() / 2));
    file.close();

    open();
    const TC::TStrategyMap loaded = TC::CStrategyBaskets::copy();
    ASSERT_EQ(loaded.keys(), QStringList{QStringLiteral("good")});
    EXPECT_EQ(loaded.value(QStringLiteral("good")).legs.size(), 1);
    EXPECT_FALSE(store->lastSetAsidePath().isEmpty()) << "the damaged file is kept aside";
}

TEST_F(BasketStoreTest, WithoutAConfigurationNothingIsWritten)
{
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
    store = nullptr;
    EXPECT_FALSE(TC::CStrategyBaskets::write(TC::TStrategyMap()));
    EXPECT_TRUE(TC::CStrategyBaskets::copy().isEmpty());
    EXPECT_FALSE(TC::CStrategyBaskets::contains(QStringLiteral("a")));
}

TEST(StrategyQuoteBuffer, NewestPerKeyAndOnePostPerBurst)
{
    TC::CStrategyQuoteBuffer buffer;
    auto quote = [](const char* code, double last) {
        auto data = boost::make_shared<TC::CPriceData>();
        data->market = "SH";
        data->code = code;
        data->lastPrice = last;
        return data;
    };
    EXPECT_TRUE(buffer.store(quote("10000011", 0.1)));
    EXPECT_FALSE(buffer.store(quote("10000011", 0.2)));
    EXPECT_FALSE(buffer.store(quote("10000012", 0.3)));
    EXPECT_FALSE(buffer.store(nullptr));
    EXPECT_EQ(buffer.pendingCount(), 2);
    const auto pending = buffer.take();
    ASSERT_EQ(pending.size(), 2);
    EXPECT_DOUBLE_EQ(pending.value(QStringLiteral("10000011.SH"))->lastPrice, 0.2);
    EXPECT_EQ(buffer.pendingCount(), 0);
    EXPECT_TRUE(buffer.store(quote("10000011", 0.4))) << "an emptied buffer asks for a post again";
}

TEST(StrategyQuoteBuffer, ManyThreadsLoseNoKey)
{
    TC::CStrategyQuoteBuffer buffer;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&buffer, t] {
            for (int i = 0; i < 500; ++i) {
                auto data = boost::make_shared<TC::CPriceData>();
                data->market = "SH";
                data->code = std::to_string(t * 1000 + i % 50);
                data->lastPrice = i;
                buffer.store(data);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    const auto pending = buffer.take();
    EXPECT_EQ(pending.size(), 200);
    for (const auto& data : pending) {
        EXPECT_GE(data->lastPrice, 450.0) << "the newest of each key is kept";
    }
}

TEST_F(BasketStoreTest, OnlyAnEmptyDirectoryStartsFresh)
{
    EXPECT_TRUE(store->startedFresh()) << "the desk gives a new user the example basket";
    open();
    EXPECT_FALSE(store->startedFresh()) << "a returning user keeps what they made, baskets deleted or not";
}
