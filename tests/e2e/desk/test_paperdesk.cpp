// The desk's services trading on paper: an order sent through the command
// centre fills against the simulated market, shows in the account's tables,
// and is there again after the desk is started anew.
#include "app/cdeskservices.h"
#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "services/market/cmarkethistory.h"
#include "services/trading/cpaperbroker.h"
#include "services/trading/cpapersettlementrecord.h"
#include "e2e/desk/deskfixture.h"
#include "e2e/desk/paperdesk.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>

namespace {

using namespace paperdesk;

std::unique_ptr<desk::CDeskServices> startDesk(const QString& dir)
{
    return std::make_unique<desk::CDeskServices>(deskfixture::config(dir));
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

        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {
            opponentOrder("SO001", *call, nqservice::OT_BUY_OPEN, 3)};
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
        EXPECT_FALSE(rows<nqservice::CDealDetail>("SO001", nqservice::VQ_DATA_TYPE_QUICK_ORDER).empty());
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

// The desk was closed before Monday's close and started again on Tuesday: the
// close it missed settles at Monday's settlement prices of the market's history.
TEST(PaperDesk, ACloseMissedWhileClosedSettlesAtThatDaysSettlement)
{
    QTemporaryDir dir;
    std::string code;
    std::string stockKey;
    {
        auto services = startDesk(dir.path());
        const auto call = atTheMoneyCall();
        ASSERT_TRUE(call);
        code = call->code;
        stockKey = utils::vqStockKey(call->market, call->code);
        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {
            opponentOrder("SO001", *call, nqservice::OT_BUY_OPEN, 2)};
        ASSERT_TRUE(utils::CManualSingletonT<TC::COvCommandCenter>::instance()->createCommand(
            nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE, params, {{"SO001", 1.0}},
            nqservice::VQ_STOP_LOSS_NONE, false, true, TC::COvCommandCenter::CommandCallback(), bson::BSONObj(), ""));
        ASSERT_TRUE(testsupport::waitUntil(
            [&] {
                const auto pos = positionOf("SO001", code, '0');
                return pos && pos->position == 2;
            },
            10000));
    }
    const double settlement =
        market::CMarketHistory(deskfixture::config(dir.path()).seed).day(QDate(2026, 11, 23)).settlements.value(
            QString::fromStdString(stockKey), -1.0);
    ASSERT_GT(settlement, 0.0);
    desk::DeskServicesConfig tuesday = deskfixture::config(dir.path());
    tuesday.marketStart = QDateTime(QDate(2026, 11, 24), QTime(10, 0));
    desk::CDeskServices services(tuesday);
    const auto pos = positionOf("SO001", code, '0');
    ASSERT_TRUE(pos);
    EXPECT_EQ(pos->position, 2);
    EXPECT_NEAR(pos->avgPrice, settlement, 1e-9) << "marked at Monday's settlement";
    bool marked = false;
    for (const auto& record : rows<trading::CPaperSettlementRecord>("SO001", trading::kPaperSettlementDataType)) {
        marked = marked || (record->kind == "结算" && record->tradingDay == 20261123);
    }
    EXPECT_TRUE(marked) << "Monday's settlement is a row of the 交割 tab";
}

TEST(PaperDesk, TheKillSwitchRefusesNewCommands)
{
    QTemporaryDir dir;
    auto services = startDesk(dir.path());
    services->setTradingHalted(true);
    const auto call = atTheMoneyCall();
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->params = {opponentOrder("SO001", *call, nqservice::OT_BUY_OPEN, 1)};
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

namespace {

TEST(PaperDesk, APositionCarriesIntoTheNextTradingDay)
{
    QTemporaryDir dir;
    auto services = startDesk(dir.path());
    // A contract of the second month: it is still listed tomorrow.
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange->getStockOptionMap(chains);
    const auto months = chains.value(QStringLiteral("510050.SH"));
    ASSERT_GE(months.size(), 2);
    std::shared_ptr<nqservice::CInstrumentDetail> contract;
    const QStringList second = *std::next(months.begin());
    for (const QString& key : second) {
        const auto detail = exchange->getCodeInfo(key);
        if (detail && detail->call && !detail->adjusted) {
            contract = detail;
            break;
        }
    }
    ASSERT_TRUE(contract);
    auto command = boost::make_shared<nqservice::COrderComandParam>();
    command->params = {opponentOrder("SO001", *contract, nqservice::OT_BUY_OPEN, 2)};
    utils::CManualSingletonT<TC::COvCommandCenter>::instance()->createCommand(command, TC::COvCommandCenter::CommandCallback(),
                                                                            true, 0);
    ASSERT_TRUE(testsupport::waitUntil([&] { return volumeOf("SO001", contract->code) == 2; }, 10000));
    EXPECT_EQ(positionOf("SO001", contract->code)->todayPosition, 2);
    const QDate before = services->tradingDate();

    services->closeAndAdvance();
    ASSERT_GT(services->tradingDate(), before);
    // The broker starts the new day as its clock crosses into it: today's volume
    // becomes yesterday's, yesterday's orders and deals leave the day's tables.
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            const auto pos = positionOf("SO001", contract->code);
            return pos && pos->todayPosition == 0 &&
                   rows<nqservice::COrderDetail>("SO001", nqservice::VQ_DATA_TYPE_ORDER).empty();
        },
        10000));
    EXPECT_EQ(volumeOf("SO001", contract->code), 2);
    EXPECT_EQ(exchange->getCodeInfo(QString::fromStdString(contract->key()))->exercisePrice, contract->exercisePrice)
        << "the code names the same contract on the new day";
    // And it can be closed on the new day.
    command->params = {opponentOrder("SO001", *contract, nqservice::OT_SELL_CLOSE, 2)};
    utils::CManualSingletonT<TC::COvCommandCenter>::instance()->createCommand(command, TC::COvCommandCenter::CommandCallback(),
                                                                            true, 0);
    EXPECT_TRUE(testsupport::waitUntil([&] { return volumeOf("SO001", contract->code) == 0; }, 10000));
}

}  // namespace
