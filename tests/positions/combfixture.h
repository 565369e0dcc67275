// The combination panel on fakes of the trading services: the board tests'
// market and user store, three paper accounts (two of stock options, one of
// future options) whose tables are fakes, a login service, a trade client that
// records refresh requests, a recording command centre and message service.
#pragma once

#include "app/accountsfakes.h"
#include "board/boardfixture.h"
#include "order/orderfakes.h"
#include "positions/combfakes.h"
#include "positions/coptionstrategypositionpanel.h"
#include "positions/coptionstrategypositiontable.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cmessagebox.h"

#include <memory>
#include <string>
#include <vector>

namespace positionstest {

class CRefreshRecordingTradeClient : public accountsfakes::CRecordingTradeClient {
public:
    void checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>& account) override
    {
        refreshed.push_back(account ? account->getKey() : std::string());
    }
    std::vector<std::string> refreshed;
};

class CombPanelTest : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        QVector<boost::shared_ptr<TC::CAccount>> accounts;
        for (const auto& info : {infoOne, infoTwo, infoFuture}) {
            auto account = boost::make_shared<TC::CAccount>();
            account->accountId = QString::fromStdString(info->accountId);
            account->displayName = QString::fromStdString(info->displayName);
            account->accountType = info->accountType;
            account->brokerId = info->brokerId;
            accounts << account;
        }
        store->setAccounts(accounts);
        store->setUserDataString(TC::UM_USER_NAME, QStringLiteral("交易员甲"));
        login = new accountsfakes::CFakeLogin;
        for (const auto& info : {infoOne, infoTwo, infoFuture}) {
            login->set(info->accountId, nqservice::BLS_READY);
        }
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(login);
        center = boost::make_shared<accountsfakes::CFakeTraderCenter>();
        one = center->data->addAccount(infoOne);
        two = center->data->addAccount(infoTwo);
        future = center->data->addAccount(infoFuture);
        nqservice::TraderCenter::install(center);
        client = new CRefreshRecordingTradeClient;
        utils::CManualSingletonT<TC::CTradeClient>::install(client);
        commands = utils::CManualSingletonT<TC::COvCommandCenter>::create<ordertest::CRecordingCommandCenter>();
        messages = utils::CManualSingletonT<TC::CMsgService>::create<ordertest::CRecordingMessages>();
        publish(quote("510050", 3.05, 3.0));
        for (const char* code : {"10000010", "10000011", "10000012", "10000013"}) {
            publish(quote(code, 0.2, 0.18));
        }
    }
    void TearDown() override
    {
        panel.reset();
        utils::CManualSingletonT<TC::CMsgService>::destroy();
        utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        nqservice::TraderCenter::destroy();
        utils::CSingletonT<TC::SingletonManager>::destroy();
        nqservice::ConfigCollector::instance()->clear();
        BoardTest::TearDown();
    }

    // The host's hand-over: the panel, its trade type and the accounts.
    void start(bool loadAccounts = true)
    {
        panel = std::make_unique<TC::COptionStrategyPositionPanel>(5, nullptr);
        panel->resize(1400, 400);
        panel->show();
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        if (loadAccounts) {
            panel->loadAccounts();
        }
        settle();
    }
    TC::COptionStrategyPositionTable* table() { return panel->getTable(); }
    TC::CHpfOptionStrategyPositionModel* model() { return table()->getModel(); }
    // Lets the worker and the queued updates finish, and brings the screen up to date.
    void settle()
    {
        ASSERT_TRUE(model()->waitForIdle(5000));
        table()->updateTable();
    }
    // The combination numbers in the order the table shows them.
    QStringList shownCombs()
    {
        QStringList ids;
        for (int position = 0; position < table()->realRowCount(); ++position) {
            const auto detail = table()->detailOfRow(table()->rowID(position));
            ids << (detail ? QString::fromStdString(detail->combId) : QStringLiteral("?"));
        }
        ids.sort();
        return ids;
    }
    // The text of a cell of the row of a record key.
    QString cell(const std::string& key, int column)
    {
        const int row = table()->rowOfKey(key);
        return row < 0 ? QStringLiteral("<none>") : table()->itemText(row, column);
    }
    // Ticks a row as a click does.
    void tick(const std::string& key)
    {
        ASSERT_NE(model()->checkDelegate(), nullptr);
        model()->checkDelegate()->setItemChecked(key, true, true, true);
    }
    bool clickButton(int id) { return panel->handleEvent(WG::UE_BUTTON_CLICKED, id, 0, QString(), nullptr); }

    boost::shared_ptr<nqservice::CAccountInfo> infoOne = combAccount("A1", 7);
    boost::shared_ptr<nqservice::CAccountInfo> infoTwo = combAccount("A2", 8);
    boost::shared_ptr<nqservice::CAccountInfo> infoFuture =
        combAccount("F1", 9, nqservice::VQ_BROKER_TYPE_FUTURE_OPTION);
    accountsfakes::CFakeLogin* login = nullptr;
    boost::shared_ptr<accountsfakes::CFakeTraderCenter> center;
    boost::shared_ptr<accountsfakes::CFakeAccountData> one;
    boost::shared_ptr<accountsfakes::CFakeAccountData> two;
    boost::shared_ptr<accountsfakes::CFakeAccountData> future;
    CRefreshRecordingTradeClient* client = nullptr;
    ordertest::CRecordingCommandCenter* commands = nullptr;
    ordertest::CRecordingMessages* messages = nullptr;
    std::unique_ptr<TC::COptionStrategyPositionPanel> panel;
};

}  // namespace positionstest
