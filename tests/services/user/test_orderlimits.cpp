// The limit on one order as the trading helpers read it from the instrument
// and the user's permissions.
#include "seam/cexchangeclient.h"
#include "seam/trading.h"
#include "services/user/cusersettingsstore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace TC;

namespace {

class FixedExchange : public CExchangeClient {
public:
    std::shared_ptr<nqservice::CInstrumentDetail> getCodeInfo(const QString& key) const override
    {
        return m_details.value(key);
    }
    bool isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) override { return detail && detail->call; }
    QString getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>&) override { return QString(); }
    void getStockOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    void getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    int getRemainDays(QString) override { return 0; }
    int getRemainSecond() override { return 0; }
    QStringList getAllCodes() const override { return m_details.keys(); }
    std::string getTradingDate() const override { return "20261120"; }

    void add(const std::string& market, const std::string& code, nqservice::EInstrumentKind kind, int maxVolume)
    {
        auto detail = std::make_shared<nqservice::CInstrumentDetail>();
        detail->market = market;
        detail->code = code;
        detail->kind = kind;
        detail->maxOrderVolume = maxVolume;
        m_details.insert(QString::fromStdString(utils::vqStockKey(market, code)), detail);
    }

private:
    QMap<QString, std::shared_ptr<nqservice::CInstrumentDetail>> m_details;
};

class OrderLimitsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_exchange = utils::CManualSingletonT<CExchangeClient>::create<FixedExchange>();
        m_exchange->add("SH", "10004001", nqservice::IK_STOCK_OPTION, 30);
        m_exchange->add("SH", "510050", nqservice::IK_FUND, utils::kAbsentInt);
        m_store = new CUserSettingsStore(m_dir.path());
        utils::CSingletonT<CUserManager>::instance()->setUserConfig(m_store);
    }
    void TearDown() override
    {
        utils::CSingletonT<CUserManager>::destroy();
        utils::CManualSingletonT<CExchangeClient>::destroy();
    }

    nqservice::CStockInfo stock(const std::string& code) const
    {
        nqservice::CStockInfo info;
        info.market = "SH";
        info.code = code;
        return info;
    }

    QTemporaryDir m_dir;
    FixedExchange* m_exchange = nullptr;
    CUserSettingsStore* m_store = nullptr;
};

}  // namespace

TEST_F(OrderLimitsTest, WithinTheInstrumentLimitNoWarning)
{
    bool split = true;
    EXPECT_EQ("", getFixOrderNumWarnMsg(stock("10004001"), {30}, 30, split, nqservice::OT_BUY_OPEN));
    EXPECT_FALSE(split);
}

TEST_F(OrderLimitsTest, OverTheInstrumentLimitWarns)
{
    bool split = false;
    const std::string text = getFixOrderNumWarnMsg(stock("10004001"), {31}, 31, split, nqservice::OT_BUY_OPEN);
    EXPECT_TRUE(split);
    EXPECT_NE(std::string::npos, text.find("31")) << text;
    EXPECT_NE(std::string::npos, text.find("30")) << text;
}

TEST_F(OrderLimitsTest, TheUsersLimitCapsFurther)
{
    m_store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), 10);
    bool split = false;
    const std::string text = getFixOrderNumWarnMsg(stock("10004001"), {11}, 11, split, nqservice::OT_SELL_OPEN);
    EXPECT_TRUE(split);
    EXPECT_NE(std::string::npos, text.find("10")) << text;
    EXPECT_EQ("", getFixOrderNumWarnMsg(stock("10004001"), {10}, 10, split, nqservice::OT_SELL_OPEN));
    EXPECT_FALSE(split);
}

TEST_F(OrderLimitsTest, UnknownInstrumentHasNoLimit)
{
    bool split = true;
    EXPECT_EQ("", getFixOrderNumWarnMsg(stock("10004001/10004002"), {500}, 500, split,
                                        nqservice::OT_COMB_STRATEGY_RELEASE));
    EXPECT_FALSE(split);
}

TEST_F(OrderLimitsTest, TradeMinUnit)
{
    EXPECT_EQ(1, nqservice::getTradeMinUnit("SH", "10004001"));
    EXPECT_EQ(100, nqservice::getTradeMinUnit("SH", "510050"));
    EXPECT_EQ(1, nqservice::getTradeMinUnit("SH", "999999"));
}
