// Fakes of the trading services for the order entry's tests: accounts that
// are logged in, a calculator of available volumes that records what it was
// asked, a command centre and a message service that record what reaches them.
#pragma once

#include "seam/trading.h"

#include <boost/make_shared.hpp>

#include <climits>
#include <map>
#include <string>
#include <vector>

namespace ordertest {

class CAllReadyLogin : public nqservice::TradeLogicInterface {
public:
    nqservice::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& key) override
    {
        return loggedOut.count(key) != 0 ? nqservice::BLS_DISCONNECTED : nqservice::BLS_READY;
    }
    std::map<std::string, bool> loggedOut;
};

class CFakeAccountData : public nqservice::CAccountData {
public:
    void getVector(int, std::vector<boost::shared_ptr<nqservice::IData>>&) override {}
    boost::shared_ptr<nqservice::SubRequest> subscribe(int, const std::string&, const nqservice::DataCallback&) override
    {
        return boost::shared_ptr<nqservice::SubRequest>();
    }
    boost::shared_ptr<nqservice::CAccountInfo> getAccountInfo() override { return info; }
    boost::shared_ptr<nqservice::CAccountDetail> getAccountDetail() override { return detail; }
    double getCanOrderVolume(const std::string&, const std::string&, int, int, double, long long,
                             nqservice::EPriceType, long long) override
    {
        return 0.0;
    }
    boost::shared_ptr<nqservice::CAccountInfo> info;
    boost::shared_ptr<nqservice::CAccountDetail> detail;  // null: funds unknown
};

// Fee data by account and stock key; null for what was not set.
class CFakeFeeService : public nqservice::IFeeService {
public:
    boost::shared_ptr<nqservice::CInstrumentFee> getInstrumentFee(const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                                                  const std::string& market,
                                                                  const std::string& code) override
    {
        if (!account) {
            return boost::shared_ptr<nqservice::CInstrumentFee>();
        }
        const auto it = fees.find(account->getKey() + "|" + utils::vqStockKey(market, code));
        return it == fees.end() ? boost::shared_ptr<nqservice::CInstrumentFee>() : it->second;
    }
    void set(const std::string& account, const std::string& stockKey, double openBuy, double openSell,
             double marginRatio)
    {
        auto fee = boost::make_shared<nqservice::CInstrumentFee>();
        fee->accountId = account;
        fee->openBuyFee = openBuy;
        fee->openSellFee = openSell;
        fee->marginRatio = marginRatio;
        fees[account + "|" + stockKey] = fee;
    }
    std::map<std::string, boost::shared_ptr<nqservice::CInstrumentFee>> fees;
};

struct CVolumeAsk {
    std::string code;
    int operation = 0;
    int hedge = 0;
    int offset = 0;
    int cover = 0;
    double price = 0.0;
    long long ceiling = 0;
};

class CRecordingCalculator : public nqservice::ICalculator {
public:
    long long calcAvailableVolume(const boost::shared_ptr<nqservice::CAccountData>&, const std::string&,
                                  const std::string& code, int operationType, int hedgeFlag, const int* offsetFlag,
                                  const int* coverFlag, double price, long long maxVolume, int, bool,
                                  const boost::shared_ptr<nqservice::IData>&) override
    {
        asks.push_back({code, operationType, hedgeFlag, offsetFlag != nullptr ? *offsetFlag : -1,
                        coverFlag != nullptr ? *coverFlag : -1, price, maxVolume});
        return volume;
    }
    long long volume = 37;
    std::vector<CVolumeAsk> asks;
};

class CFakeDataCenter : public nqservice::IDataCenter {
public:
    boost::shared_ptr<nqservice::CAccountData> getAccountData(unsigned long long hash) override
    {
        auto it = accounts.find(hash);
        return it == accounts.end() ? boost::shared_ptr<nqservice::CAccountData>() : it->second;
    }
    boost::shared_ptr<nqservice::IDataTable> getAllAccountsTable() override
    {
        return boost::shared_ptr<nqservice::IDataTable>();
    }
    int getTradingPhase(const std::string&, const std::string&) override { return 0; }
    bool isVolumeQueryByBroker(const std::string& key) override { return byBroker.count(key) != 0; }

    boost::shared_ptr<CFakeAccountData> addAccount(const std::string& key)
    {
        auto data = boost::make_shared<CFakeAccountData>();
        data->info = boost::make_shared<nqservice::CAccountInfo>();
        data->info->accountId = key;
        accounts[utils::hash(key)] = data;
        return data;
    }
    std::map<unsigned long long, boost::shared_ptr<nqservice::CAccountData>> accounts;
    std::map<std::string, bool> byBroker;
};

class CFakeTraderCenter : public nqservice::TraderCenter {
public:
    boost::shared_ptr<nqservice::IDataCenter> getDataCenter() override { return data; }
    boost::shared_ptr<nqservice::ICalculator> getCalculator() override { return calculator; }
    boost::shared_ptr<nqservice::ITaskCenter> getTaskCenter() override
    {
        return boost::shared_ptr<nqservice::ITaskCenter>();
    }
    nqservice::IFeeService* getFeeService() override { return &fees; }
    CFakeFeeService fees;
    boost::shared_ptr<CFakeDataCenter> data = boost::make_shared<CFakeDataCenter>();
    boost::shared_ptr<CRecordingCalculator> calculator = boost::make_shared<CRecordingCalculator>();
};

// One call of the weighted createCommand, every argument kept.
struct CCommandCall {
    nqservice::EVqTraderType traderType;
    nqservice::EVqHedgeType hedgeType;
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    std::map<std::string, double> weights;
    nqservice::EVqStopLossType stopLossType;
    bool autoHedge;
    bool confirmed;
    bool callbackEmpty;
    bool hedgeParamsEmpty;
    std::string strategyName;
    nqservice::ETradePlatform platform;
    bool platformParamsEmpty;
    nqservice::EVqLimitedPriceType limitedPriceType;
    bool limitedPriceParamsEmpty;
    QString remark;
    bool algorithmic;
    bool algorithmParamsEmpty;
    int extra;
    nqservice::EtfHedgeStatus etfHedge;
    bool etfHedgeParamsEmpty;
    bool reservedEmpty;
};

class CRecordingCommandCenter : public TC::COvCommandCenter {
public:
    bool createCommand(const boost::shared_ptr<nqservice::COrderComandParam>&, const CommandCallback&, bool,
                       int) override
    {
        ++commandCalls;
        return true;
    }
    bool createCommand(nqservice::EVqTraderType traderType, nqservice::EVqHedgeType hedgeType,
                       std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                       const std::map<std::string, double>& weights, nqservice::EVqStopLossType stopLossType,
                       bool autoHedge, bool confirmed, CommandCallback callback, bson::BSONObj hedgeParams,
                       const std::string& strategyName, nqservice::ETradePlatform platform,
                       bson::BSONObj platformParams, nqservice::EVqLimitedPriceType limitedPriceType,
                       bson::BSONObj limitedPriceParams, QString remark, bool algorithmic,
                       bson::BSONObj algorithmParams, int extra, nqservice::EtfHedgeStatus etfHedge,
                       bson::BSONObj etfHedgeParams, bson::BSONObj reserved) override
    {
        calls.push_back({traderType, hedgeType, params, weights, stopLossType, autoHedge, confirmed, callback.empty(),
                         hedgeParams.isEmpty(), strategyName, platform, platformParams.isEmpty(), limitedPriceType,
                         limitedPriceParams.isEmpty(), remark, algorithmic, algorithmParams.isEmpty(), extra, etfHedge,
                         etfHedgeParams.isEmpty(), reserved.isEmpty()});
        return true;
    }
    void operateServerTask(const std::string&, const boost::shared_ptr<nqservice::CTaskOpRecord>&,
                           const boost::shared_ptr<nqservice::CAccountInfo>&,
                           const boost::function<void(const utils::NQError&, bson::BSONObj)>&) override
    {
    }
    std::vector<CCommandCall> calls;
    int commandCalls = 0;
};

class CRecordingMessages : public TC::CMsgService {
public:
    boost::shared_ptr<nqservice::CMessage> showQsMsg(const QString& text, TC::EMsgTypeDef type,
                                                     nqservice::MsgLevel level, bool modal, bool sound) override
    {
        texts << text;
        types.push_back(static_cast<int>(type));
        levels.push_back(static_cast<int>(level));
        modals.push_back(modal || sound);
        return boost::shared_ptr<nqservice::CMessage>();
    }
    QStringList texts;
    std::vector<int> types;
    std::vector<int> levels;
    std::vector<bool> modals;
};

}  // namespace ordertest
