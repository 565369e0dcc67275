// The desk's services trading on paper: an order sent through the command
// centre fills against the simulated market, shows in the account's tables,
// and is there again after the desk is started anew.
#include "app/cdeskservices.h"
#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "services/trading/cpaperbroker.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>

namespace {

boost::shared_ptr<nqservice::CAccountData> accountData(const std::string& key)
{
    const auto center = nqservice::TraderCenter::instance();
    return center ? center->getDataCenter()->getAccountData(utils::hash(key)) : nullptr;
}

boost::shared_ptr<nqservice::CPositionStatics> positionOf(const std::string& account, const std::string& code, int direction)
{
    const auto data = accountData(account);
    if (!data) {
        return nullptr;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> rows;
    data->getVector(nqservice::VQ_DATA_TYPE_POSITION_STATICS, rows);
    for (const auto& row : rows) {
        const auto pos = boost::dynamic_pointer_cast<nqservice::CPositionStatics>(row);
        if (pos && pos->code == code && pos->direction == direction) {
            return pos;
        }
    }
    return nullptr;
}

// The at-the-money 50ETF call of the nearest month.
std::shared_ptr<nqservice::CInstrumentDetail> atTheMoneyCall()
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange->getStockOptionMap(chains);
    const auto months = chains.value(QStringLiteral("510050.SH"));
    const auto etf = exchange->getCodeInfo(QStringLiteral("510050.SH"));
    std::shared_ptr<nqservice::CInstrumentDetail> best;
    for (const QString& key : months.first()) {
        const auto detail = exchange->getCodeInfo(key);
        if (detail && detail->call && !detail->adjusted &&
            (!best || std::fabs(detail->exercisePrice - etf->preClosePrice) <
                          std::fabs(best->exercisePrice - etf->preClosePrice))) {
            best = detail;
        }
    }
    return best;
}

std::unique_ptr<desk::CDeskServices> startDesk(const QString& dir)
{
    desk::DeskServicesConfig config;
    config.configDir = dir;
    config.seed = 11;
    config.quoteRate = 4.0;
    config.marketStart = QDateTime(QDate(2026, 11, 23), QTime(10, 0));
    return std::make_unique<desk::CDeskServices>(config);
}

TEST(PaperDesk, AnOrderFillsShowsAndSurvivesARestart)
{
    QTemporaryDir dir;
    std::string code;
    double available = 0.0;
    double avgPrice = 0.0;
    {
        auto services = startDesk(dir.path());
        ASSERT_NE(services->broker(), nullptr);
        EXPECT_TRUE(services->notices().isEmpty());
        // The accounts are logged in as the desk starts.
        nqservice::TradeLogicInterface* logic =
            utils::CSingletonT<TC::SingletonManager>::instance()->getTradeLogicInterface();
        ASSERT_NE(logic, nullptr);
        EXPECT_TRUE(nqservice::isLoginStatusReady(logic->getLoginStatus("SO001")));
        ASSERT_TRUE(accountData("SO001"));
        const auto call = atTheMoneyCall();
        ASSERT_TRUE(call);
        code = call->code;
        // Field 3007 is the margin of one short contract: about 3,000 元 at the money.
        EXPECT_GT(call->getDoubleField(3007), 2000.0);
        EXPECT_LT(call->getDoubleField(3007), 6000.0);

        auto param = boost::make_shared<nqservice::CCodeOrderParam>();
        param->account = accountData("SO001")->getAccountInfo();
        param->operationType = nqservice::OT_BUY_OPEN;
        param->stockInfo.market = call->market;
        param->stockInfo.code = call->code;
        param->priceType = nqservice::PT_OPPONENT;
        param->volume = 3;
        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {param};
        TC::COvCommandCenter* commands = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
        ASSERT_NE(commands, nullptr);
        ASSERT_TRUE(commands->createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE,
                                            params, {{"SO001", 1.0}}, nqservice::VQ_STOP_LOSS_NONE, false, true,
                                            TC::COvCommandCenter::CommandCallback(), bson::BSONObj(), ""));
        // The opposite side's best shows at least a few contracts: it fills at once, or with the next quotes.
        ASSERT_TRUE(testsupport::waitUntil(
            [&] {
                const auto pos = positionOf("SO001", code, '0');
                return pos && pos->position == 3;
            },
            10000));
        const auto pos = positionOf("SO001", code, '0');
        avgPrice = pos->avgPrice;
        available = accountData("SO001")->getAccountDetail()->availableFunds;
        EXPECT_LT(available, desk::CDeskServices::openingCash(nqservice::VQ_BROKER_TYPE_STOCK_OPTION));
        std::vector<boost::shared_ptr<nqservice::IData>> deals;
        accountData("SO001")->getVector(nqservice::VQ_DATA_TYPE_QUICK_ORDER, deals);
        EXPECT_FALSE(deals.empty());
    }
    EXPECT_FALSE(nqservice::TraderCenter::instance());
    {
        auto services = startDesk(dir.path());
        ASSERT_TRUE(accountData("SO001"));
        const auto pos = positionOf("SO001", code, '0');
        ASSERT_TRUE(pos) << "the position is kept across a restart";
        EXPECT_EQ(pos->position, 3);
        EXPECT_DOUBLE_EQ(pos->avgPrice, avgPrice);
        EXPECT_NEAR(accountData("SO001")->getAccountDetail()->availableFunds, available, 1e-6);
    }
}

TEST(PaperDesk, TheKillSwitchRefusesNewCommands)
{
    QTemporaryDir dir;
    auto services = startDesk(dir.path());
    services->setTradingHalted(true);
    const auto call = atTheMoneyCall();
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = accountData("SO001")->getAccountInfo();
    param->operationType = nqservice::OT_BUY_OPEN;
    param->stockInfo.market = call->market;
    param->stockInfo.code = call->code;
    param->priceType = nqservice::PT_OPPONENT;
    param->volume = 1;
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->params = {param};
    std::string refusal;
    std::atomic<bool> answered{false};
    services->broker()->submit(*command, [&](const std::string&, const std::string& why) {
        refusal = why;
        answered = true;
    });
    services->broker()->flush();
    ASSERT_TRUE(answered.load());
    EXPECT_EQ(refusal, "委托被拒绝: 交易已暂停");
    services->setTradingHalted(false);
    answered = false;
    services->broker()->submit(*command, [&](const std::string&, const std::string& why) {
        refusal = why;
        answered = true;
    });
    services->broker()->flush();
    ASSERT_TRUE(answered.load());
    EXPECT_EQ(refusal, "");
}

}  // namespace
