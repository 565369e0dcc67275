// What the strategy order dialogs' tests run on: the board's instrument
// universe with quotes that a new subscriber gets at once, two stock option
// accounts with funds and fee data, a futures account, the desk's splitting
// and a command centre and message area that record what reaches them.
#pragma once

#include "board/boardfixture.h"
#include "order/commandexpectations.h"
#include "order/orderfakes.h"
#include "seam/cinstrumentdetail.h"
#include "seam/trading.h"
#include "services/trading/cdesktradeclient.h"
#include "toolkit/cmessagetip.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

namespace ordertest {

class StrategyOrderTest : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, true);
        center = boost::make_shared<CFakeTraderCenter>();
        so1 = center->data->addAccount("SO001");
        so2 = center->data->addAccount("SO002");
        center->data->addAccount("FO001");
        so1->detail = boost::make_shared<nqservice::CAccountDetail>();
        so1->detail->availableFunds = 100000.0;
        so2->detail = boost::make_shared<nqservice::CAccountDetail>();
        so2->detail->availableFunds = 20000.0;
        nqservice::TraderCenter::install(center);
        login = new CAllReadyLogin();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(login);
        utils::CManualSingletonT<TC::CTradeClient>::create<trading::CDeskTradeClient>();
        commands = utils::CManualSingletonT<TC::COvCommandCenter>::create<CRecordingCommandCenter>();
        messages = utils::CManualSingletonT<TC::CMsgService>::create<CRecordingMessages>();
        QVector<boost::shared_ptr<TC::CAccount>> users;
        for (const char* key : {"SO001", "SO002", "FO001"}) {
            auto account = boost::make_shared<TC::CAccount>();
            account->accountId = QString::fromLatin1(key);
            account->displayName = QString::fromLatin1(key);
            account->accountType = key[0] == 'S' ? nqservice::VQ_BROKER_TYPE_STOCK_OPTION
                                                 : nqservice::VQ_BROKER_TYPE_FUTURE_OPTION;
            users << account;
        }
        store->setAccounts(users);
        // The November calls and puts 2.9 to 3.2: 10000 units, a short margin of 3,000 元, at most 50 an order.
        for (const char* code : {"10000010", "10000011", "10000012", "10000013", "10000020", "10000021", "10000022",
                                 "10000023"}) {
            const auto detail = exchange->getCodeInfo(QString::fromLatin1(code) + QStringLiteral(".SH"));
            detail->marginParameter = 3000.0;
            detail->maxOrderVolume = 50;
            for (const char* account : {"SO001", "SO002"}) {
                center->fees.set(account, detail->key(), 1.6, 0.0, 0.1);
            }
        }
        book("10000010", 0.1600, 0.1590, 0.1610);
        book("10000011", 0.1200, 0.1190, 0.1210);
        book("10000012", 0.0800, 0.0790, 0.0810);
        book("10000013", 0.0500, 0.0490, 0.0510);
        book("10000020", 0.0300, 0.0290, 0.0310);
        book("10000021", 0.0600, 0.0590, 0.0610);
        book("10000022", 0.1000, 0.0990, 0.1010);
        book("10000023", 0.1500, 0.1490, 0.1510);
        WG::CMessageTip::resetRecord();
    }
    void TearDown() override
    {
        utils::CManualSingletonT<TC::CMsgService>::destroy();
        utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
        utils::CManualSingletonT<TC::CTradeClient>::destroy();
        utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(nullptr);
        nqservice::TraderCenter::destroy();
        BoardTest::TearDown();
    }
    boost::shared_ptr<TC::CPriceData> book(const std::string& code, double last, double bid, double ask)
    {
        auto data = quote(code, last, last);
        data->setBid(1, bid, 20);
        data->setAsk(1, ask, 30);
        data->upStopPrice = last * 2;
        data->downStopPrice = 0.0001;
        publish(data);
        return data;
    }
    static TC::CStrategyStockData leg(const char* code, nqservice::EOperationType operation, long long quantity)
    {
        TC::CStrategyStockData data;
        data.code = QString::fromLatin1(code) + QStringLiteral(".SH");
        data.name = QStringLiteral("腿") + QString::fromLatin1(code);
        data.market = QStringLiteral("SH");
        data.quantity = quantity;
        data.operation = operation;
        return data;
    }

    boost::shared_ptr<CFakeTraderCenter> center;
    boost::shared_ptr<CFakeAccountData> so1;
    boost::shared_ptr<CFakeAccountData> so2;
    CAllReadyLogin* login = nullptr;
    CRecordingCommandCenter* commands = nullptr;
    CRecordingMessages* messages = nullptr;
};

}  // namespace ordertest
