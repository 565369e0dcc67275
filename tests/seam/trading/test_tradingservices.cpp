#include "seam/trading.h"
#include "seam/user.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace nqservice;

namespace {

class NullCenter : public TraderCenter {
public:
    explicit NullCenter(std::atomic<int>* destroyed) : m_destroyed(destroyed) {}
    ~NullCenter() override { ++*m_destroyed; }
    boost::shared_ptr<IDataCenter> getDataCenter() override { return {}; }
    boost::shared_ptr<ICalculator> getCalculator() override { return {}; }
    boost::shared_ptr<ITaskCenter> getTaskCenter() override { return {}; }
    IFeeService* getFeeService() override { return nullptr; }

private:
    std::atomic<int>* m_destroyed;
};

}  // namespace

TEST(TraderCenter, InstanceIsWhatTheHostInstalled)
{
    TraderCenter::destroy();
    EXPECT_FALSE(TraderCenter::instance());
    EXPECT_FALSE(DataHelper::isEnabledRequestByBrokerAccount("SO001"));
    std::atomic<int> destroyed{0};
    auto center = boost::make_shared<NullCenter>(&destroyed);
    TraderCenter::install(center);
    EXPECT_EQ(center.get(), TraderCenter::instance().get());
    // No data centre: no broker answers volumes.
    EXPECT_FALSE(DataHelper::isEnabledRequestByBrokerAccount("SO001"));
    center.reset();
    EXPECT_EQ(0, destroyed.load());
    TraderCenter::destroy();
    EXPECT_EQ(1, destroyed.load());
    EXPECT_FALSE(TraderCenter::instance());
}

TEST(SubRequest, DroppingTheHandleEndsCallbacks)
{
    auto gate = std::make_shared<CSubscriptionGate>();
    int calls = 0;
    auto handle = boost::make_shared<SubRequest>(gate);
    EXPECT_TRUE(gate->invoke([&] { ++calls; }));
    handle.reset();
    EXPECT_FALSE(gate->isOpen());
    EXPECT_FALSE(gate->invoke([&] { ++calls; }));
    EXPECT_EQ(1, calls);
}

TEST(SubRequest, DropWaitsForTheCallbackInFlight)
{
    auto gate = std::make_shared<CSubscriptionGate>();
    auto handle = boost::make_shared<SubRequest>(gate);
    std::atomic<bool> entered{false};
    std::atomic<bool> finished{false};
    std::thread publisher([&] {
        gate->invoke([&] {
            entered = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            finished = true;
        });
    });
    while (!entered) {
        std::this_thread::yield();
    }
    handle.reset();
    // The drop returned only after the running callback ended.
    EXPECT_TRUE(finished.load());
    publisher.join();
}

TEST(SubRequest, CallbackMayDropItsOwnHandle)
{
    auto gate = std::make_shared<CSubscriptionGate>();
    auto handle = boost::make_shared<SubRequest>(gate);
    bool ran = false;
    EXPECT_TRUE(gate->invoke([&] {
        handle.reset();
        ran = true;
    }));
    EXPECT_TRUE(ran);
    EXPECT_FALSE(gate->isOpen());
}

TEST(StockSubTable, VolumesAndRequest)
{
    auto table = boost::make_shared<TC::StockSubTable>();
    table->setStockKey("10004001.SH");
    long long volume = 0;
    EXPECT_FALSE(table->getVolume("SO00132", volume));
    table->setVolume("SO00132", 15);
    ASSERT_TRUE(table->getVolume("SO00132", volume));
    EXPECT_EQ(15, volume);
    table->clearVolumes();
    EXPECT_FALSE(table->getVolume("SO00132", volume));
    auto gate = std::make_shared<CSubscriptionGate>();
    table->setRequest(boost::make_shared<SubRequest>(gate));
    EXPECT_TRUE(gate->isOpen());
    table.reset();
    EXPECT_FALSE(gate->isOpen());
}

TEST(StockRequest, ValidityAndNoTradeClient)
{
    TC::CStockRequestParam param;
    EXPECT_FALSE(param.isValid());
    param.accounts.push_back("SO001");
    param.market = "SH";
    param.code = "10004001";
    param.operationType = OT_BUY_OPEN;
    EXPECT_FALSE(param.isValid());  // no callback
    param.callback = [](std::string, long long) {};
    EXPECT_TRUE(param.isValid());
    utils::CManualSingletonT<TC::CTradeClient>::destroy();
    boost::shared_ptr<TC::StockSubTable> table;
    EXPECT_FALSE(TC::makeStockRequest(param, table));
}

TEST(UserRecords, StrategySettingCopiesLegsDeeply)
{
    TC::CStrategySetting basket;
    basket.name = "跨式";
    TC::CStrategyStockData leg;
    leg.code = "10004001";
    leg.market = "SH";
    leg.operation = OT_SELL;
    basket.addLeg(leg);
    TC::CStrategySetting copy(basket);
    ASSERT_EQ(1, copy.legs.size());
    EXPECT_NE(copy.legs[0], basket.legs[0]);
    EXPECT_TRUE(copy == basket);
    copy.legs[0]->quantity = 5;
    EXPECT_EQ(1, basket.legs[0]->quantity);
    EXPECT_FALSE(copy == basket);
    TC::CStrategySetting assigned;
    assigned = basket;
    EXPECT_TRUE(assigned == basket);
    assigned = assigned;  // self-assignment keeps the legs
    EXPECT_EQ(1, assigned.legs.size());
}

TEST(UserRecords, AccountToInfoAndGroupWeights)
{
    TC::CAccount account;
    account.accountId = "SO001";
    account.displayName = "股票期权一";
    account.accountType = 6;
    account.brokerId = 3;
    const auto info = account.toInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ("SO001", info->getKey());
    EXPECT_EQ(6, info->accountType);
    EXPECT_EQ(3, info->brokerId);
    EXPECT_EQ("股票期权一", info->displayName);
    TC::CAccountGroup group;
    group.weights.insert("SO001", 2);
    int weight = 0;
    EXPECT_TRUE(group.getWeight("SO001", weight));
    EXPECT_EQ(2, weight);
    EXPECT_FALSE(group.getWeight("SO009", weight));
    EXPECT_TRUE(group.contains("SO001"));
}

TEST(UserSeam, NoConfigurationUntilInstalled)
{
    utils::CSingletonT<TC::CUserManager>::destroy();
    EXPECT_EQ(nullptr, TC::getUserConfig());
    utils::CSingletonT<TC::CUserManager>::destroy();
}

TEST(UserSeam, ConfigDirHasNoTrailingSeparator)
{
    utils::CSingletonT<TC::CConfig>::destroy();
    TC::getConfig()->setConfigDir("/tmp/optdesk-config/");
    EXPECT_EQ("/tmp/optdesk-config", TC::getConfigDir());
    EXPECT_TRUE(TC::getConfig()->useWebView());
    TC::getConfig()->setUseWebView(false);
    EXPECT_FALSE(TC::getConfig()->useWebView());
    utils::CSingletonT<TC::CConfig>::destroy();
}

namespace {

class SilentTradeClient : public TC::CTradeClient {
public:
    std::vector<long long> splitEntrusts(long long, double, EPriceType, const std::vector<boost::shared_ptr<CAccountInfo>>&,
                                         const std::vector<double>&, EPositionType, std::string, std::string,
                                         EOperationType, EHedge_Flag_Type, boost::shared_ptr<utils::NQError>, bool,
                                         bool, const std::map<std::string, long long>&,
                                         const std::vector<long long>&) override
    {
        return {};
    }
    void cancelOrder(const boost::shared_ptr<COrderDetail>&, QString&, int, QString,
                     const boost::shared_ptr<TC::COrderAuxInfo>&) override
    {
    }
    void checkStkOptCombPosition_async(const boost::shared_ptr<CAccountInfo>&) override {}
    bool requestStockVolume(const TC::CStockRequestParam& param, boost::shared_ptr<TC::StockSubTable>& table) override
    {
        table = boost::make_shared<TC::StockSubTable>();
        table->setStockKey(utils::vqStockKey(param.market, param.code));
        ++requests;
        return true;
    }
    int requests = 0;
};

}  // namespace

TEST(TradeClient, LoginSignalCrossesThreads)
{
    auto* client = utils::CManualSingletonT<TC::CTradeClient>::create<SilentTradeClient>();
    QObject receiver;
    std::string seenKey;
    EBROKER_LOGIN_STATUS seenStatus = BLS_NONE;
    QObject::connect(client, &TC::CTradeClient::sigLoginStatus, &receiver,
                     [&](const CAccountInfoPtr& account, EBROKER_LOGIN_STATUS status, std::string) {
                         seenKey = account ? account->getKey() : std::string();
                         seenStatus = status;
                     }, Qt::QueuedConnection);
    auto account = boost::make_shared<CAccountInfo>();
    account->accountId = "SO001";
    std::thread sender([&] { emit client->sigLoginStatus(account, BLS_READY, "ok"); });
    sender.join();
    EXPECT_TRUE(testsupport::waitUntil([&] { return seenStatus == BLS_READY; }, 2000));
    EXPECT_EQ("SO001", seenKey);

    TC::CStockRequestParam param;
    param.accounts.push_back("SO001");
    param.market = "SH";
    param.code = "10004001";
    param.operationType = OT_BUY_OPEN;
    param.callback = [](std::string, long long) {};
    boost::shared_ptr<TC::StockSubTable> table;
    EXPECT_TRUE(TC::makeStockRequest(param, table));
    ASSERT_TRUE(table);
    EXPECT_EQ(utils::vqStockKey("SH", "10004001"), table->stockKey());
    EXPECT_EQ(1, static_cast<SilentTradeClient*>(client)->requests);
    utils::CManualSingletonT<TC::CTradeClient>::destroy();
}
