// Fakes of the trading services behind the accounts dock: account tables that
// record their subscriptions and publish records on whatever thread calls them,
// a login service the test switches, and a trade client that records cancels.
#pragma once

#include "seam/common.h"
#include "seam/subrequest.h"
#include "seam/trading.h"
#include "seam/tradingrecords.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace accountsfakes {

class CFakeAccountData : public nqservice::CAccountData {
public:
    void getVector(int dataType, std::vector<boost::shared_ptr<nqservice::IData>>& out) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        out.clear();
        for (const auto& entry : m_tables[dataType]) {
            out.push_back(entry.second);
        }
    }
    boost::shared_ptr<nqservice::SubRequest> subscribe(int dataType, const std::string&,
                                                       const nqservice::DataCallback& callback) override
    {
        auto gate = std::make_shared<nqservice::CSubscriptionGate>();
        std::lock_guard<std::mutex> lock(m_mutex);
        m_subscribers.push_back(Subscriber{dataType, gate, callback});
        return boost::make_shared<nqservice::SubRequest>(gate);
    }
    boost::shared_ptr<nqservice::CAccountInfo> getAccountInfo() override { return info; }
    boost::shared_ptr<nqservice::CAccountDetail> getAccountDetail() override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return detail;
    }
    double getCanOrderVolume(const std::string&, const std::string&, int, int, double, long long,
                             nqservice::EPriceType, long long) override
    {
        return 0.0;
    }

    // Keeps a record in its table without telling anyone (what getVector finds).
    void store(int dataType, const nqservice::IDataPtr& record)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_tables[dataType][record->getKey()] = record;
    }
    // Stores the record and calls every open subscriber of its table on the calling thread.
    void publish(int dataType, const nqservice::IDataPtr& record)
    {
        std::vector<Subscriber> subscribers;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_tables[dataType][record->getKey()] = record;
            subscribers = m_subscribers;
        }
        for (const Subscriber& subscriber : subscribers) {
            if (subscriber.dataType == dataType &&
                subscriber.gate->invoke([&] { subscriber.callback(record); })) {
                ++delivered;
            }
        }
    }
    // Subscriptions whose handle is still held, of one table or (0) of all.
    int openSubscriptions(int dataType = 0) const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        int open = 0;
        for (const Subscriber& subscriber : m_subscribers) {
            if ((dataType == 0 || subscriber.dataType == dataType) && subscriber.gate->isOpen()) {
                ++open;
            }
        }
        return open;
    }
    int subscriptionsMade() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return static_cast<int>(m_subscribers.size());
    }

    boost::shared_ptr<nqservice::CAccountInfo> info;
    boost::shared_ptr<nqservice::CAccountDetail> detail;
    std::atomic<int> delivered{0};

private:
    struct Subscriber {
        int dataType;
        std::shared_ptr<nqservice::CSubscriptionGate> gate;
        nqservice::DataCallback callback;
    };
    mutable std::mutex m_mutex;
    std::map<int, std::map<std::string, nqservice::IDataPtr>> m_tables;
    std::vector<Subscriber> m_subscribers;
};

class CFakeDataCenter : public nqservice::IDataCenter {
public:
    boost::shared_ptr<nqservice::CAccountData> getAccountData(unsigned long long accountHash) override
    {
        auto it = accounts.find(accountHash);
        return it == accounts.end() ? boost::shared_ptr<nqservice::CAccountData>() : it->second;
    }
    boost::shared_ptr<nqservice::IDataTable> getAllAccountsTable() override
    {
        return boost::shared_ptr<nqservice::IDataTable>();
    }
    int getTradingPhase(const std::string&, const std::string&) override { return 0; }
    bool isVolumeQueryByBroker(const std::string&) override { return false; }

    boost::shared_ptr<CFakeAccountData> addAccount(const boost::shared_ptr<nqservice::CAccountInfo>& info)
    {
        auto data = boost::make_shared<CFakeAccountData>();
        data->info = info;
        accounts[utils::hash(info->getKey())] = data;
        return data;
    }
    std::map<unsigned long long, boost::shared_ptr<CFakeAccountData>> accounts;
};

class CFakeTraderCenter : public nqservice::TraderCenter {
public:
    boost::shared_ptr<nqservice::IDataCenter> getDataCenter() override { return data; }
    boost::shared_ptr<nqservice::ICalculator> getCalculator() override
    {
        return boost::shared_ptr<nqservice::ICalculator>();
    }
    boost::shared_ptr<nqservice::ITaskCenter> getTaskCenter() override
    {
        return boost::shared_ptr<nqservice::ITaskCenter>();
    }
    nqservice::IFeeService* getFeeService() override { return nullptr; }
    boost::shared_ptr<CFakeDataCenter> data = boost::make_shared<CFakeDataCenter>();
};

// Login states the test sets; unknown accounts are not logged in.
class CFakeLogin : public nqservice::TradeLogicInterface {
public:
    nqservice::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& key) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_states.find(key);
        return it == m_states.end() ? nqservice::BLS_NONE : it->second;
    }
    void set(const std::string& key, nqservice::EBROKER_LOGIN_STATUS status)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_states[key] = status;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, nqservice::EBROKER_LOGIN_STATUS> m_states;
};

// Records cancels and answers each with a set text.
class CRecordingTradeClient : public TC::CTradeClient {
public:
    std::vector<long long> splitEntrusts(long long, double, nqservice::EPriceType,
                                         const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>&,
                                         const std::vector<double>&, nqservice::EPositionType, std::string,
                                         std::string, nqservice::EOperationType, nqservice::EHedge_Flag_Type,
                                         boost::shared_ptr<utils::NQError>, bool, bool,
                                         const std::map<std::string, long long>&,
                                         const std::vector<long long>&) override
    {
        return {};
    }
    void cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order, QString& message, int flags,
                     QString remark, const boost::shared_ptr<TC::COrderAuxInfo>& aux) override
    {
        cancelled.push_back(order);
        cancelFlags.push_back(flags);
        remarksEmpty = remarksEmpty && remark.isEmpty();
        auxNull = auxNull && !aux;
        message = answer;
    }
    void checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>&) override {}
    bool requestStockVolume(const TC::CStockRequestParam&, boost::shared_ptr<TC::StockSubTable>&) override
    {
        return false;
    }

    std::vector<boost::shared_ptr<nqservice::COrderDetail>> cancelled;
    std::vector<int> cancelFlags;
    bool remarksEmpty = true;
    bool auxNull = true;
    QString answer;
};

inline boost::shared_ptr<nqservice::CAccountInfo> makeAccount(const std::string& key, const std::string& name,
                                                             int type = nqservice::VQ_BROKER_TYPE_STOCK_OPTION)
{
    auto info = boost::make_shared<nqservice::CAccountInfo>();
    info->accountId = key;
    info->displayName = name;
    info->accountType = type;
    return info;
}

inline boost::shared_ptr<nqservice::COrderDetail> makeOrder(const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                                           const std::string& id, long long insertTime,
                                                           nqservice::EOrderStatus status, int volume, int traded,
                                                           nqservice::EOperationType operation = nqservice::OT_BUY_OPEN)
{
    auto order = boost::make_shared<nqservice::COrderDetail>();
    order->account = account;
    order->orderId = id;
    order->market = "SH";
    order->code = "10007821";
    order->name = "50ETF购12月2800";
    order->operationType = operation;
    order->side = (operation == nqservice::OT_BUY_OPEN || operation == nqservice::OT_BUY_CLOSE) ? nqservice::EBS_BUY
                                                                                               : nqservice::EBS_SELL;
    order->priceType = nqservice::PT_FIX;
    order->price = 0.1234;
    order->volume = volume;
    order->tradedVolume = traded;
    order->remaining = status == nqservice::OS_WORKING || status == nqservice::OS_PARTIAL ? volume - traded : 0;
    order->status = status;
    order->insertTime = insertTime;
    order->updateTime = insertTime;
    return order;
}

inline boost::shared_ptr<nqservice::CPositionStatics> makePosition(
    const boost::shared_ptr<nqservice::CAccountInfo>& account, const std::string& code, int direction,
    long long volume)
{
    auto position = boost::make_shared<nqservice::CPositionStatics>();
    position->account = account;
    position->market = "SH";
    position->code = code;
    position->name = code == "510050" ? "50ETF" : "50ETF购12月2800";
    position->direction = direction;
    position->position = volume;
    position->available = volume;
    position->todayPosition = volume;
    position->avgPrice = 0.1;
    position->lastPrice = 0.12;
    position->floatProfit = 200.0 * static_cast<double>(volume);
    return position;
}

inline boost::shared_ptr<nqservice::CDealDetail> makeDeal(const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                                         const std::string& id, long long time,
                                                         nqservice::EEntrustBS side)
{
    auto deal = boost::make_shared<nqservice::CDealDetail>();
    deal->account = account;
    deal->dealId = id;
    deal->orderId = "o" + id;
    deal->market = "SH";
    deal->code = "10007821";
    deal->name = "50ETF购12月2800";
    deal->side = side;
    deal->operationType = side == nqservice::EBS_BUY ? nqservice::OT_BUY_OPEN : nqservice::OT_SELL_CLOSE;
    deal->price = 0.1234;
    deal->volume = 2;
    deal->fee = 3.4;
    deal->time = time;
    return deal;
}

inline boost::shared_ptr<nqservice::CAccountDetail> makeFunds(const std::string& key, double available)
{
    auto funds = boost::make_shared<nqservice::CAccountDetail>();
    funds->accountId = key;
    funds->availableFunds = available;
    funds->balance = 1000000.0;
    funds->margin = 3000.0;
    funds->frozenFunds = 500.0;
    funds->fee = 12.5;
    funds->floatProfit = -150.0;
    funds->marketValue = 25000.0;
    return funds;
}

}  // namespace accountsfakes
