#include "services/trading/cdesktradeclient.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <numeric>

namespace {

std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accounts(std::size_t n)
{
    std::vector<boost::shared_ptr<nqservice::CAccountInfo>> list;
    for (std::size_t i = 0; i < n; ++i) {
        auto info = boost::make_shared<nqservice::CAccountInfo>();
        info->accountId = "SO00" + std::to_string(i + 1);
        list.push_back(info);
    }
    return list;
}

struct SplitCase {
    long long volume;
    std::vector<double> weights;
    std::vector<long long> expected;
};

class SplitEntrusts : public testing::TestWithParam<SplitCase> {};

std::vector<long long> split(trading::CDeskTradeClient& client, long long volume, const std::vector<double>& weights,
                             const boost::shared_ptr<utils::NQError>& error)
{
    return client.splitEntrusts(volume, 0.1, nqservice::EPriceType(11), accounts(weights.size()), weights,
                                nqservice::EPositionType(1), "SH", "10004567", nqservice::OT_BUY_OPEN,
                                nqservice::HF_SPECULATION, error, false, true, {}, {});
}

}  // namespace

TEST_P(SplitEntrusts, ByWeightWithLargestRemainders)
{
    trading::CDeskTradeClient client;
    auto error = boost::make_shared<utils::NQError>();
    const SplitCase& c = GetParam();
    const std::vector<long long> result = split(client, c.volume, c.weights, error);
    EXPECT_EQ(result, c.expected) << "volume " << c.volume;
    EXPECT_TRUE(error->isSuccess());
    EXPECT_EQ(std::accumulate(result.begin(), result.end(), 0LL), c.volume);
}

INSTANTIATE_TEST_SUITE_P(Cases, SplitEntrusts,
                         testing::Values(SplitCase{10, {1, 1}, {5, 5}},
                                         SplitCase{10, {1, 2}, {3, 7}},
                                         SplitCase{1, {1, 1, 1}, {1, 0, 0}},
                                         SplitCase{7, {1, 0, 1}, {4, 0, 3}},
                                         SplitCase{100, {0.2, 0.3, 0.5}, {20, 30, 50}},
                                         SplitCase{5, {3}, {5}}));

TEST(SplitEntrustsRefused, ImpossibleSplitsSayWhy)
{
    trading::CDeskTradeClient client;
    auto error = boost::make_shared<utils::NQError>();
    EXPECT_TRUE(split(client, 0, {1, 1}, error).empty());
    EXPECT_FALSE(error->isSuccess());
    error->clear();
    EXPECT_TRUE(split(client, 10, {0, 0}, error).empty());
    EXPECT_FALSE(error->isSuccess());
    error->clear();
    EXPECT_TRUE(split(client, 10, {1, -1}, error).empty());
    EXPECT_FALSE(error->isSuccess());
    error->clear();
    EXPECT_TRUE(client
                    .splitEntrusts(10, 0.1, nqservice::EPriceType(11), accounts(2), {1.0}, nqservice::EPositionType(1),
                                   "SH", "1", nqservice::OT_BUY_OPEN, nqservice::HF_SPECULATION, error, false, true, {}, {})
                    .empty());
    EXPECT_FALSE(error->isSuccess());
}

TEST(DeskTradeClient, CancelSaysNothingIsConnected)
{
    trading::CDeskTradeClient client;
    QString message;
    client.cancelOrder(boost::make_shared<nqservice::COrderDetail>(), message, 0, QString(), nullptr);
    EXPECT_EQ(message, trading::CDeskTradeClient::notConnectedText());
    boost::shared_ptr<TC::StockSubTable> table;
    EXPECT_FALSE(client.requestStockVolume(TC::CStockRequestParam(), table));
}

TEST(DeskTradeClient, RelaysTheSettingChangeSignal)
{
    trading::CDeskTradeClient client;
    QSignalSpy spy(&client, &TC::CTradeClient::sigAutoImportExGreeksChanged);
    emit client.sigAutoImportExGreeksChanged();
    EXPECT_EQ(spy.count(), 1);
}
