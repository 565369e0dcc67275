// The board's position overlay, "全撤" and the Greeks table, on fakes of the
// data centre: nets by selection, the snapshot's key rule, sums of position
// Greeks by expiry and the termination of the user's running tasks.
#include "board/boardfixture.h"
#include "board/coptionpricetgreekstable.h"
#include "board/coptionpricetpanel.h"
#include "board/coptionpricettable.h"
#include "order/cpricetquickorderwidget.h"
#include "order/orderfakes.h"
#include "seam/trading.h"
#include "seam/uievents.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "toolkit/caccountscombobox.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>

namespace {

// Account data that keeps its subscribers and a snapshot the test fills.
class CLiveAccountData : public ordertest::CFakeAccountData {
public:
    void getVector(int type, std::vector<boost::shared_ptr<nqservice::IData>>& out) override
    {
        if (type == nqservice::VQ_DATA_TYPE_POSITION_STATICS) {
            out = snapshot;
        }
    }
    boost::shared_ptr<nqservice::SubRequest> subscribe(int type, const std::string&,
                                                       const nqservice::DataCallback& callback) override
    {
        if (type == nqservice::VQ_DATA_TYPE_POSITION_STATICS) {
            callbacks.push_back(callback);
            ++subscriptions;
        }
        return boost::shared_ptr<nqservice::SubRequest>();
    }
    void push(const boost::shared_ptr<nqservice::IData>& record)
    {
        for (auto& callback : callbacks) {
            callback(record);
        }
    }
    std::vector<boost::shared_ptr<nqservice::IData>> snapshot;
    std::vector<nqservice::DataCallback> callbacks;
    int subscriptions = 0;
};

class CTaskTable : public nqservice::IDataTable {
public:
    void getVector(int type, std::vector<boost::shared_ptr<nqservice::IData>>& out) override
    {
        if (type == nqservice::VQ_DATA_TYPE_TASK) {
            out = tasks;
        }
    }
    std::vector<boost::shared_ptr<nqservice::IData>> tasks;
};

class CTaskControl : public nqservice::ITaskControl {
public:
    bool operate(const boost::shared_ptr<nqservice::CTaskOpRecord>& op) override
    {
        ops.push_back(op);
        return true;
    }
    std::vector<boost::shared_ptr<nqservice::CTaskOpRecord>> ops;
};

class CTaskCenter : public nqservice::ITaskCenter {
public:
    boost::shared_ptr<nqservice::ITaskControl> getTask(int taskId, int accountId) override
    {
        asked.push_back({taskId, accountId});
        return control;
    }
    boost::shared_ptr<CTaskControl> control = boost::make_shared<CTaskControl>();
    std::vector<std::pair<int, int>> asked;
};

class CDataCenter : public ordertest::CFakeDataCenter {
public:
    boost::shared_ptr<nqservice::IDataTable> getAllAccountsTable() override { return tasks; }
    boost::shared_ptr<CTaskTable> tasks = boost::make_shared<CTaskTable>();
};

class CTraderCenter : public ordertest::CFakeTraderCenter {
public:
    boost::shared_ptr<nqservice::ITaskCenter> getTaskCenter() override { return taskCenter; }
    boost::shared_ptr<CTaskCenter> taskCenter = boost::make_shared<CTaskCenter>();
};

// A command centre that keeps the server's callbacks for the test to answer.
class CServerTasks : public ordertest::CRecordingCommandCenter {
public:
    void operateServerTask(const std::string& key, const boost::shared_ptr<nqservice::CTaskOpRecord>& op,
                           const boost::shared_ptr<nqservice::CAccountInfo>& account,
                           const boost::function<void(const utils::NQError&, bson::BSONObj)>& callback) override
    {
        keys.push_back(key);
        ops.push_back(op);
        accounts.push_back(account);
        callbacks.push_back(callback);
    }
    std::vector<std::string> keys;
    std::vector<boost::shared_ptr<nqservice::CTaskOpRecord>> ops;
    std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accounts;
    std::vector<boost::function<void(const utils::NQError&, bson::BSONObj)>> callbacks;
};

// Fixed Greeks per stock key, so sums can be worked out by hand.
class CFixedGreeks : public pricing::CGreekAndOptionsCalculator {
public:
    bool calcGreeks(const std::string& key, nqservice::CGreeksValue& out, bool, bool) const override
    {
        auto it = greeks.find(key);
        if (it == greeks.end()) {
            return false;
        }
        out = it->second;
        return true;
    }
    std::map<std::string, nqservice::CGreeksValue> greeks;
};

nqservice::CGreeksValue greeks(double delta, double gamma, double theta, double vega)
{
    nqservice::CGreeksValue value;
    value.delta = delta;
    value.gamma = gamma;
    value.theta = theta;
    value.vega = vega;
    value.rho = 0.0;
    return value;
}

boost::shared_ptr<nqservice::CPositionStatics> position(const std::string& account, const std::string& code,
                                                        long long size, bool isLong)
{
    auto record = boost::make_shared<nqservice::CPositionStatics>();
    record->account = boost::make_shared<nqservice::CAccountInfo>();
    record->account->accountId = account;
    record->market = "SH";
    record->code = code;
    record->position = size;
    record->direction = isLong ? 48 : 49;
    return record;
}

class PositionOverlay : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        center = boost::make_shared<CTraderCenter>();
        auto data = boost::make_shared<CDataCenter>();
        dataCenter = data;
        center->data = data;
        for (const char* key : {"SO001", "SO002"}) {
            auto account = boost::make_shared<CLiveAccountData>();
            account->info = boost::make_shared<nqservice::CAccountInfo>();
            account->info->accountId = key;
            data->accounts[utils::hash(key)] = account;
            accounts[key] = account;
        }
        nqservice::TraderCenter::install(center);
        commands = utils::CManualSingletonT<TC::COvCommandCenter>::create<CServerTasks>();
        calculator = boost::make_shared<CFixedGreeks>();
        nqservice::GreekAndOptionsCalculator::setInstance(calculator);
        for (const char* code : {"10000010", "10000011", "10000020", "10000021", "10000041", "10000042"}) {
            publish(quote(code, 0.1, 0.1));
        }
        panel = std::make_unique<TC::COptionPriceTPanel>(7, nullptr);
        panel->resize(1600, 900);
        panel->show();
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        selectGroup();
    }
    void TearDown() override
    {
        panel.reset();
        utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
        nqservice::TraderCenter::destroy();
        BoardTest::TearDown();
    }
    void selectGroup() { ASSERT_TRUE(panel->getAccountCombo()->setSelection(TC::SAT_GROUP, QStringLiteral("默认组"))); }
    void selectAccount(const QString& key) { ASSERT_TRUE(panel->getAccountCombo()->setSelection(TC::SAT_ACCOUNT, key)); }
    QString net(const QString& code, int column)
    {
        const int row = chain()->rowOfCode(code);
        return row < 0 ? QStringLiteral("<no row>") : chain()->itemText(row, column);
    }
    TC::COptionPriceTTable* chain() { return panel->getChainTable(); }
    TC::COptionPriceTGreeksTable* greeksTable() { return panel->getGreeksTable(); }
    QString sumCell(int row, int column) { return greeksTable()->itemText(row, column); }

    boost::shared_ptr<CTraderCenter> center;
    boost::shared_ptr<CDataCenter> dataCenter;
    std::map<std::string, boost::shared_ptr<CLiveAccountData>> accounts;
    CServerTasks* commands = nullptr;
    boost::shared_ptr<CFixedGreeks> calculator;
    std::unique_ptr<TC::COptionPriceTPanel> panel;
};

TEST_F(PositionOverlay, AGroupOfTwoAccountsNetsTheirRecordsOnTheTick)
{
    EXPECT_EQ(panel->positionSubscriptionCount(), 2);
    EXPECT_EQ(panel->requestedAccounts(), (std::set<std::string>{"SO001", "SO002"}));
    accounts["SO001"]->push(position("SO001", "10000011", 5, true));
    accounts["SO002"]->push(position("SO002", "10000011", 3, false));
    accounts["SO002"]->push(position("SO002", "10000021", 4, false));
    EXPECT_EQ(panel->pendingPositionCount(), 3) << "buffered, no widget touched";
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("0"));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->pendingPositionCount(), 0);
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("2")) << "long 5, short 3";
    EXPECT_EQ(net(QStringLiteral("10000021.SH"), 18), QStringLiteral("-4")) << "a short position is negative";
    // Closed to zero: that record's share becomes 0.
    accounts["SO001"]->push(position("SO001", "10000011", 0, true));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("-3"));
}

TEST_F(PositionOverlay, ASingleAccountCountsAloneAndARecordOutsideTheSelectionIsIgnored)
{
    selectAccount(QStringLiteral("SO001"));
    EXPECT_EQ(panel->requestedAccounts(), (std::set<std::string>{"SO001"}));
    accounts["SO001"]->push(position("SO001", "10000011", 5, true));
    // Still subscribed from before the change? Its record reaches the buffer and is dropped on the tick.
    panel->onPositionStatics(position("SO002", "10000011", 7, true));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("5"));
}

TEST_F(PositionOverlay, TheSnapshotKeysByTheBareCodeSoTheRowWaitsForAChange)
{
    accounts["SO001"]->snapshot.push_back(position("SO001", "10000011", 4, true));
    panel->loadAccounts();
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("0")) << "filed under the bare code";
    EXPECT_EQ(chain()->netOf(QStringLiteral("10000011")), 4);
    accounts["SO001"]->push(position("SO001", "10000011", 4, true));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("4"));
}

TEST_F(PositionOverlay, TheAccountCombosChoiceRebuildsTheSubscriptions)
{
    const int before = accounts["SO002"]->subscriptions;
    selectAccount(QStringLiteral("SO002"));
    EXPECT_EQ(panel->positionSubscriptionCount(), 1);
    EXPECT_EQ(accounts["SO002"]->subscriptions, before + 2) << "the board's overlay and the ladder's figures";
    EXPECT_EQ(panel->requestedAccounts(), (std::set<std::string>{"SO002"}));
}

TEST_F(PositionOverlay, ThePriceSetKeepsTheNetForWhenTheSetChanges)
{
    chain()->setTableType(TC::PTT_PRICE);
    chain()->updatePositionStatics(QStringLiteral("10000011.SH"), "k", 6);
    EXPECT_EQ(chain()->netOf(QStringLiteral("10000011.SH")), 6);
    chain()->setTableType(TC::PTT_QUOTE);
    chain()->updateAllTable();
    EXPECT_EQ(net(QStringLiteral("10000011.SH"), 14), QStringLiteral("6"));
    for (auto set : {TC::PTT_TARGET, TC::PTT_RISK, TC::PTT_INFO}) {
        chain()->setTableType(set);
        chain()->updateAllTable();
        chain()->updatePositionStatics(QStringLiteral("10000021.SH"), "p", -2);
        const int column = set == TC::PTT_TARGET ? 16 : (set == TC::PTT_RISK ? 20 : 14);
        EXPECT_EQ(net(QStringLiteral("10000021.SH"), column), QStringLiteral("-2")) << set;
    }
}

TEST_F(PositionOverlay, TheGreeksTableSumsNetTimesGreekPerExpiry)
{
    QAbstractItemModelTester tester(greeksTable()->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    calculator->greeks["10000011.SH"] = greeks(0.5, 2.0, -0.01, 0.003);
    calculator->greeks["10000021.SH"] = greeks(-0.4, 1.5, -0.02, 0.002);
    calculator->greeks["10000041.SH"] = greeks(0.6, 1.0, -0.005, 0.004);
    greeksTable()->refreshAll();
    // No position: zeros everywhere, "合计" too.
    const int total = greeksTable()->getTotalRow();
    ASSERT_EQ(greeksTable()->rowCount(), 4) << "three dates and 合计";
    EXPECT_EQ(sumCell(total, 0), QStringLiteral("合计"));
    EXPECT_EQ(sumCell(0, 1), QStringLiteral("0.0000"));
    EXPECT_EQ(sumCell(total, 1), QStringLiteral("0.0000"));

    accounts["SO001"]->push(position("SO001", "10000011", 10, true));
    accounts["SO001"]->push(position("SO001", "10000021", 10, false));
    accounts["SO002"]->push(position("SO002", "10000041", 3, false));
    panel->onTimer(TC::TUF_QUOTE);
    // November: 10 * 0.5 + (-10) * (-0.4) = 9; gamma 10 * 2 - 10 * 1.5 = 5.
    EXPECT_EQ(sumCell(0, 1), QStringLiteral("9.0000"));
    EXPECT_EQ(sumCell(0, 3), QStringLiteral("5.0000"));
    EXPECT_EQ(sumCell(0, 5), QStringLiteral("0.1000")) << "10 * -0.01 - 10 * -0.02";
    // December (row 2): -3 * 0.6.
    EXPECT_EQ(sumCell(2, 1), QStringLiteral("-1.8000"));
    EXPECT_EQ(sumCell(total, 1), QStringLiteral("7.2000"));
    EXPECT_EQ(sumCell(total, 7), QStringLiteral("-0.0020")) << "10 * 0.003 - 10 * 0.002 - 3 * 0.004";

    // Imported Greeks beside the calculated ones.
    TC::OptionExGreeksMap imported;
    auto ex = boost::make_shared<nqservice::COptionExGreeksVolatility>();
    ex->code = "10000011.SH";
    ex->exDelta = 0.55;
    imported.insert(QStringLiteral("10000011.SH"), ex);
    store->replaceOptionExGreeks(imported);
    greeksTable()->refreshAll();
    EXPECT_EQ(sumCell(0, 2), QStringLiteral("5.5000"));
    EXPECT_EQ(sumCell(total, 2), QStringLiteral("5.5000"));
    EXPECT_EQ(sumCell(total, 0), QStringLiteral("合计")) << "the total row survives refreshAll";
    // The import is off: its columns hide but still add up.
    EXPECT_FALSE(greeksTable()->columnVisible(2));

    // A position goes flat: its shares become 0.
    accounts["SO001"]->push(position("SO001", "10000011", 0, true));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(sumCell(0, 1), QStringLiteral("4.0000"));
    EXPECT_EQ(sumCell(0, 2), QStringLiteral("0.0000"));
}

TEST_F(PositionOverlay, AQuoteForACodeOnNoRowStillShowsTheSums)
{
    greeksTable()->updatePositionStatics(QStringLiteral("10000011.SH"), "x", 2);
    calculator->greeks["10000011.SH"] = greeks(0.5, 0, 0, 0);
    greeksTable()->updateTableByPrice(quote("10000011", 0.1, 0.1));
    EXPECT_EQ(sumCell(0, 1), QStringLiteral("1.0000"));
    greeksTable()->updateTableByPrice(quote("99999999", 0.1, 0.1));  // unknown: nothing breaks
    EXPECT_EQ(sumCell(greeksTable()->getTotalRow(), 1), QStringLiteral("1.0000"));
}

TEST_F(PositionOverlay, TheSavedStringCarriesTheGreeksTableAndTheQuickOrderCheck)
{
    panel->getQuickOrderCheck()->setChecked(true);
    const QStringList sections = panel->param().split(QLatin1Char('|'));
    ASSERT_EQ(sections.size(), 4);
    EXPECT_EQ(sections.at(1), greeksTable()->saveConfigStr());
    EXPECT_EQ(sections.at(2), QStringLiteral("1"));
    EXPECT_EQ(sections.at(3), panel->getQuickOrderWidget()->param());
    TC::COptionPriceTPanel again(8, nullptr);
    again.setParam(panel->param());
    EXPECT_TRUE(again.getQuickOrderCheck()->isChecked());
    EXPECT_EQ(again.getGreeksTable()->saveConfigStr(), greeksTable()->saveConfigStr());
}

boost::shared_ptr<nqservice::CTaskDetail> task(int id, const std::string& user, int traderType, int status,
                                               bool onServer)
{
    auto detail = boost::make_shared<nqservice::CTaskDetail>();
    detail->taskId = id;
    detail->accountId = 100 + id;
    detail->status = status;
    detail->onServer = onServer;
    detail->owner = boost::make_shared<nqservice::CTaskOwner>();
    detail->owner->userName = user;
    detail->owner->traderType = traderType;
    nqservice::CTaskAccount account;
    account.account = boost::make_shared<nqservice::CAccountInfo>();
    account.account->accountId = "SO001";
    detail->accounts.push_back(account);
    return detail;
}

TEST_F(PositionOverlay, CancelAllTerminatesTheUsersRunningTasks)
{
    auto& tasks = dataCenter->tasks->tasks;
    tasks.push_back(task(1, "paper", 32, 3, false));   // terminated here
    tasks.push_back(task(2, "paper", 32, 3, true));    // at the server
    tasks.push_back(task(3, "other", 32, 3, false));   // another user's
    tasks.push_back(task(4, "paper", 1024, 3, false)); // another trader type
    tasks.push_back(task(5, "paper", 32, 5, false));   // not running
    tasks.push_back(boost::shared_ptr<nqservice::IData>());
    panel->handleEvent(WG::UE_BUTTON_CLICKED, 23, 0, QString(), nullptr);
    const auto& asked = center->taskCenter->asked;
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked.front(), std::make_pair(1, 101));
    ASSERT_EQ(center->taskCenter->control->ops.size(), 1u);
    const auto op = center->taskCenter->control->ops.front();
    EXPECT_EQ(op->operation, 3);
    EXPECT_EQ(op->userName, "paper");
    EXPECT_EQ(op->remark, "paper终止任务");
    ASSERT_EQ(commands->keys.size(), 1u);
    EXPECT_EQ(commands->keys.front(), nqservice::CTaskHelper::genServerTaskKey(
                                          boost::dynamic_pointer_cast<nqservice::CTaskDetail>(tasks[1])));
    EXPECT_EQ(commands->ops.front(), op) << "one operation shared by all";
    EXPECT_EQ(commands->accounts.front()->getKey(), "SO001");
    // The server refuses: nothing more happens.
    utils::NQError refused;
    refused.setError(1, "refused");
    commands->callbacks.front()(refused, bson::BSONObj());
    EXPECT_EQ(center->taskCenter->control->ops.size(), 1u);
    // It agrees: the same local call follows.
    commands->callbacks.front()(utils::NQError(), bson::BSONObj());
    EXPECT_EQ(center->taskCenter->control->ops.size(), 2u);
    EXPECT_EQ(center->taskCenter->asked.back(), std::make_pair(2, 102));
}

TEST_F(PositionOverlay, CancelAllWithoutTasksDoesNothing)
{
    panel->handleEvent(WG::UE_BUTTON_CLICKED, 23, 0, QString(), nullptr);
    EXPECT_TRUE(center->taskCenter->asked.empty());
    EXPECT_TRUE(commands->keys.empty());
}

}  // namespace
