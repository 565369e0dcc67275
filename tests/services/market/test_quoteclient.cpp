// Quote snapshots, the newest-value store and subscription handles: a dropped
// handle ends its subscription, no callback starts after the drop returns, and
// a callback in flight finishes first.
#include "seam/cquoterequest.h"
#include "services/market/csimquoteclient.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <atomic>
#include <chrono>
#include <thread>

using market::CSimQuoteClient;
using TC::CPriceData;
using TC::CQuoteRequest;

namespace {

boost::shared_ptr<CPriceData> snapshot(const std::string& code, double last)
{
    auto data = boost::make_shared<CPriceData>();
    data->market = "SH";
    data->code = code;
    data->lastPrice = last;
    return data;
}

class QuoteClient : public ::testing::Test {
protected:
    void SetUp() override { client = utils::CManualSingletonT<TC::CQuoteClient>::create<CSimQuoteClient>(nullptr, false); }
    void TearDown() override { utils::CManualSingletonT<TC::CQuoteClient>::destroy(); }
    CSimQuoteClient* client = nullptr;
};

TEST_F(QuoteClient, UnknownKeyGivesNull)
{
    EXPECT_EQ(client->getStockPrice("510050.SH"), nullptr);
    client->publish(snapshot("510050", 2.6));
    EXPECT_EQ(client->getStockPrice("510300.SH"), nullptr);
    ASSERT_NE(client->getStockPrice("510050.SH"), nullptr);
    EXPECT_DOUBLE_EQ(client->getStockPrice("510050.SH")->lastPrice, 2.6);
}

TEST_F(QuoteClient, NewestSnapshotWins)
{
    client->publish(snapshot("510050", 2.6));
    client->publish(snapshot("510050", 2.7));
    EXPECT_DOUBLE_EQ(client->getStockPrice("510050.SH")->lastPrice, 2.7);
}

TEST_F(QuoteClient, SynchronousPublishCallsBackOnThePublishingThread)
{
    std::vector<double> seen;
    std::thread::id thread;
    auto handle = CQuoteRequest::makeHandicapRequest(
        "510050.SH",
        [&](boost::shared_ptr<CPriceData>& data) {
            seen.push_back(data->lastPrice);
            thread = std::this_thread::get_id();
        },
        TC::ST_DEFAULT);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(client->subscriberCount("510050.SH"), 1);
    client->publish(snapshot("510050", 2.6));
    client->publish(snapshot("510300", 3.9));
    client->publish(snapshot("510050", 2.61));
    EXPECT_EQ(seen, (std::vector<double>{2.6, 2.61}));
    EXPECT_EQ(thread, std::this_thread::get_id());
    handle.reset();
    EXPECT_EQ(client->subscriberCount("510050.SH"), 0);
    client->publish(snapshot("510050", 2.62));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(QuoteClient, HandleLivesAsLongAsItsLastReference)
{
    int calls = 0;
    auto handle = CQuoteRequest::makeRequest(
        "510050.SH", [&](boost::shared_ptr<CPriceData>&) { ++calls; }, TC::ST_DEFAULT);
    auto copy = handle;
    handle.reset();
    client->publish(snapshot("510050", 2.6));
    EXPECT_EQ(calls, 1);
    copy.reset();
    client->publish(snapshot("510050", 2.6));
    EXPECT_EQ(calls, 1);
}

TEST_F(QuoteClient, NoClientOrNoCallbackGivesNoHandle)
{
    EXPECT_EQ(CQuoteRequest::makeRequest("510050.SH", TC::TQuoteCallback(), TC::ST_DEFAULT), nullptr);
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
    EXPECT_EQ(CQuoteRequest::makeHandicapRequest(
                  "510050.SH", [](boost::shared_ptr<CPriceData>&) {}, TC::ST_DEFAULT),
              nullptr);
}

TEST_F(QuoteClient, HandleDroppedInsideItsOwnCallbackEndsWithoutWaiting)
{
    boost::shared_ptr<CQuoteRequest> handle;
    int calls = 0;
    handle = CQuoteRequest::makeRequest(
        "510050.SH",
        [&](boost::shared_ptr<CPriceData>&) {
            ++calls;
            handle.reset();
        },
        TC::ST_DEFAULT);
    client->publish(snapshot("510050", 2.6));
    client->publish(snapshot("510050", 2.6));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(QuoteClient, NoCallbackStartsAfterTheDropReturnsUnderLoad)
{
    for (int round = 0; round < 20; ++round) {
        std::atomic<bool> dropped{false};
        std::atomic<int> late{0};
        std::atomic<int> calls{0};
        auto handle = CQuoteRequest::makeHandicapRequest(
            "510050.SH",
            [&](boost::shared_ptr<CPriceData>&) {
                if (dropped.load()) {
                    late.fetch_add(1);
                }
                calls.fetch_add(1);
            },
            TC::ST_DEFAULT);
        std::atomic<bool> stop{false};
        std::vector<std::thread> publishers;
        for (int t = 0; t < 2; ++t) {
            publishers.emplace_back([&] {
                while (!stop.load()) {
                    client->publish("510050.SH", snapshot("510050", 2.6));
                }
            });
        }
        while (calls.load() < 100) {
            std::this_thread::yield();
        }
        handle.reset();
        dropped.store(true);
        const int atDrop = calls.load();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        stop.store(true);
        for (auto& thread : publishers) {
            thread.join();
        }
        EXPECT_EQ(late.load(), 0) << "round " << round;
        EXPECT_EQ(calls.load(), atDrop) << "round " << round;
    }
}

TEST_F(QuoteClient, CallbackInFlightFinishesBeforeTheDropReturns)
{
    std::atomic<bool> started{false};
    std::atomic<bool> finished{false};
    auto handle = CQuoteRequest::makeHandicapRequest(
        "510050.SH",
        [&](boost::shared_ptr<CPriceData>&) {
            started.store(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            finished.store(true);
        },
        TC::ST_DEFAULT);
    std::thread publisher([&] { client->publish("510050.SH", snapshot("510050", 2.6)); });
    while (!started.load()) {
        std::this_thread::yield();
    }
    handle.reset();
    EXPECT_TRUE(finished.load());
    publisher.join();
}

TEST(QuoteClientImage, NewSubscriptionReceivesTheNewestSnapshotBeforeTheRequestReturns)
{
    auto* client = utils::CManualSingletonT<TC::CQuoteClient>::create<CSimQuoteClient>(nullptr, true);
    client->publish(snapshot("510050", 2.5));
    client->publish(snapshot("510050", 2.6));
    int calls = 0;
    bool onSubscribingThread = false;
    double price = 0.0;
    const auto main = std::this_thread::get_id();
    auto handle = CQuoteRequest::makeHandicapRequest(
        "510050.SH",
        [&](boost::shared_ptr<CPriceData>& data) {
            onSubscribingThread = std::this_thread::get_id() == main;
            price = data->lastPrice;
            ++calls;
        },
        TC::ST_DEFAULT);
    // Nothing to wait for: the image came inside the call, on this thread.
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(onSubscribingThread);
    EXPECT_TRUE(utils::isPriceEqual(price, 2.6)) << "the newest snapshot";
    // A key without a snapshot yet gives nothing until the feed publishes one.
    int other = 0;
    auto none = CQuoteRequest::makeHandicapRequest(
        "510300.SH", [&](boost::shared_ptr<CPriceData>&) { ++other; }, TC::ST_DEFAULT);
    EXPECT_EQ(other, 0);
    client->publish(snapshot("510300", 4.0));
    EXPECT_EQ(other, 1);
    handle.reset();
    none.reset();
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
}

struct PriceTypeCase {
    int type;
    int operation;
    double expected;
};

class PriceForOrder : public ::testing::TestWithParam<PriceTypeCase> {};

TEST_P(PriceForOrder, PicksTheLevelOfTheType)
{
    CPriceData data;
    for (int level = 1; level <= 5; ++level) {
        data.setBid(level, 1.0 - 0.01 * level, level);
        data.setAsk(level, 1.0 + 0.01 * level, level);
    }
    data.lastPrice = 1.005;
    data.upStopPrice = 1.5;
    data.downStopPrice = 0.5;
    const auto& c = GetParam();
    const double price = data.getPriceForOrder(static_cast<nqservice::EPriceType>(c.type),
                                               static_cast<nqservice::EOperationType>(c.operation), 0,
                                               boost::shared_ptr<nqservice::CAutoPriceParam>(), false);
    EXPECT_NEAR(price, c.expected, 1e-12) << "type " << c.type << " operation " << c.operation;
}

INSTANTIATE_TEST_SUITE_P(
    Types, PriceForOrder,
    ::testing::Values(PriceTypeCase{0, 32, 1.05}, PriceTypeCase{4, 32, 1.01}, PriceTypeCase{5, 32, 1.005},
                      PriceTypeCase{6, 32, 0.99}, PriceTypeCase{10, 34, 0.95}, PriceTypeCase{11, 32, 1.005},
                      PriceTypeCase{12, 32, 1.5}, PriceTypeCase{12, 34, 0.5}, PriceTypeCase{13, 32, 0.99},
                      PriceTypeCase{13, 34, 1.01}, PriceTypeCase{14, 32, 1.01}, PriceTypeCase{14, 33, 0.99},
                      PriceTypeCase{14, 18, 1.01}, PriceTypeCase{14, 19, 0.99}, PriceTypeCase{28, 0, 1.01},
                      PriceTypeCase{28, 3, 0.99}, PriceTypeCase{14, 37, 1.01}));

TEST(PriceForOrderAbsent, UnknownTypeOrEmptyLevelGivesTheMarker)
{
    CPriceData data;
    EXPECT_TRUE(utils::isAbsent(data.getPriceForOrder(static_cast<nqservice::EPriceType>(99), nqservice::OT_BUY_OPEN,
                                                      0, {}, false)));
    EXPECT_TRUE(utils::isAbsent(data.getPriceForOrder(nqservice::PT_OPPONENT, nqservice::OT_BUY_OPEN, 0, {}, false)));
    EXPECT_TRUE(utils::isAbsent(data.bidPrice(6)));
    EXPECT_EQ(data.askVolume(0), 0);
}

}  // namespace
