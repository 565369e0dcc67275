// The trading services as the panels see them: the data centre with the live
// tables of each account, the calculator of available volumes, tasks, fees,
// login state, the command centre, the trade client and the message service.
// All are abstract here; a host installs implementations. No exception crosses
// them: null, absent or false is the signal.
#pragma once

#include "seam/bson.h"
#include "seam/common.h"
#include "seam/idata.h"
#include "seam/nqerror.h"
#include "seam/subrequest.h"
#include "seam/tradingenums.h"
#include "seam/tradinghelpers.h"
#include "seam/tradingrecords.h"

#include <QMetaType>
#include <QObject>
#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <climits>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace nqservice {

class CAccountData;
class ICalculator;
class IDataCenter;
class ITaskCenter;

typedef boost::function<void(const boost::shared_ptr<IData>&)> DataCallback;

// A holder of tables: a snapshot of a table by data type.
class IDataTable {
public:
    virtual ~IDataTable() = default;
    virtual void getVector(int dataType, std::vector<boost::shared_ptr<IData>>& out) = 0;
};

// The live tables of one account.
class CAccountData : public IDataTable {
public:
    // Calls back for each new or changed record of the table, on any thread.
    // filter "" takes all records. Dropping the handle ends the subscription.
    virtual boost::shared_ptr<SubRequest> subscribe(int dataType, const std::string& filter,
                                                    const DataCallback& callback) = 0;
    virtual boost::shared_ptr<CAccountInfo> getAccountInfo() = 0;
    virtual boost::shared_ptr<CAccountDetail> getAccountDetail() = 0;
    // Orderable volume of an operation at a price.
    virtual double getCanOrderVolume(const std::string& market, const std::string& code, int operationType,
                                     int hedgeFlag, double price, long long maxVolume, EPriceType priceType,
                                     long long reserved) = 0;
};

class IDataCenter {
public:
    virtual ~IDataCenter() = default;
    // The tables of an account by utils::hash(accountKey); null while it has none.
    virtual boost::shared_ptr<CAccountData> getAccountData(unsigned long long accountHash) = 0;
    // The tables over all accounts (tasks, 541).
    virtual boost::shared_ptr<IDataTable> getAllAccountsTable() = 0;
    // The trading phase of an instrument (TC::ETradingPhase).
    virtual int getTradingPhase(const std::string& market, const std::string& code) = 0;
    // Whether the account's broker answers available-volume requests itself.
    virtual bool isVolumeQueryByBroker(const std::string& accountKey) = 0;
};

class ICalculator {
public:
    virtual ~ICalculator() = default;
    // Volume that an account can order: operation, hedge flag, offset and cover
    // flags (the panels pass 48 for both), price, a ceiling. 0 when nothing can go.
    virtual long long calcAvailableVolume(const boost::shared_ptr<CAccountData>& account, const std::string& market,
                                          const std::string& code, int operationType, int hedgeFlag,
                                          const int* offsetFlag, const int* coverFlag, double price,
                                          long long maxVolume, int level, bool strict,
                                          const boost::shared_ptr<IData>& extra) = 0;
};

// A task of the local task engine.
class ITaskControl {
public:
    virtual ~ITaskControl() = default;
    // Applies an operation (pause, resume, stop); false when the task refuses it.
    virtual bool operate(const boost::shared_ptr<CTaskOpRecord>& op) = 0;
};

class ITaskCenter {
public:
    virtual ~ITaskCenter() = default;
    // The local task of (task id, account id); null when there is none.
    virtual boost::shared_ptr<ITaskControl> getTask(int taskId, int accountId) = 0;
};

// Fee data of accounts and instruments.
class IFeeService {
public:
    virtual ~IFeeService() = default;
    // Null when the account or instrument has no fee data.
    virtual boost::shared_ptr<CInstrumentFee> getInstrumentFee(const boost::shared_ptr<CAccountInfo>& account,
                                                               const std::string& market,
                                                               const std::string& code) = 0;
};

// The root of the trading services. instance() is what the host installed,
// null before; safe from any thread.
class TraderCenter {
public:
    virtual ~TraderCenter() = default;

    static boost::shared_ptr<TraderCenter> instance();
    static void install(const boost::shared_ptr<TraderCenter>& center);
    static void destroy() { install(boost::shared_ptr<TraderCenter>()); }

    virtual boost::shared_ptr<IDataCenter> getDataCenter() = 0;
    virtual boost::shared_ptr<ICalculator> getCalculator() = 0;
    virtual boost::shared_ptr<ITaskCenter> getTaskCenter() = 0;
    virtual IFeeService* getFeeService() = 0;
};

// The login state of accounts.
class TradeLogicInterface {
public:
    virtual ~TradeLogicInterface() = default;
    virtual EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) = 0;
};

}  // namespace nqservice

namespace TC {

// Holds the services that have no other home; reached through
// utils::CSingletonT<TC::SingletonManager>::instance().
class SingletonManager {
public:
    nqservice::TradeLogicInterface* getTradeLogicInterface() const;
    // Takes ownership; replaces the previous one.
    void setTradeLogicInterface(nqservice::TradeLogicInterface* logic);

private:
    mutable std::mutex m_mutex;
    std::unique_ptr<nqservice::TradeLogicInterface> m_tradeLogic;
};

// Sends commands. utils::CManualSingletonT<TC::COvCommandCenter>::instance().
class COvCommandCenter {
public:
    typedef boost::function<void(utils::NQError, int)> CommandCallback;
    virtual ~COvCommandCenter() = default;

    // Sends a command of several orders.
    virtual bool createCommand(const boost::shared_ptr<nqservice::COrderComandParam>& command,
                               const CommandCallback& callback, bool confirmed, int flags) = 0;
    // Sends orders as one command, with account weights (key -> weight).
    virtual bool createCommand(nqservice::EVqTraderType traderType, nqservice::EVqHedgeType hedgeType,
                               std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                               const std::map<std::string, double>& weights,
                               nqservice::EVqStopLossType stopLossType, bool autoHedge, bool confirmed,
                               CommandCallback callback, bson::BSONObj hedgeParams, const std::string& strategyName,
                               nqservice::ETradePlatform platform = nqservice::TP_DEFAULT,
                               bson::BSONObj platformParams = bson::BSONObj(),
                               nqservice::EVqLimitedPriceType limitedPriceType = nqservice::VQ_LIMITED_PRICE_NONE,
                               bson::BSONObj limitedPriceParams = bson::BSONObj(), QString remark = QString(),
                               bool algorithmic = false, bson::BSONObj algorithmParams = bson::BSONObj(),
                               int extra = 0, nqservice::EtfHedgeStatus etfHedge = nqservice::ETF_HEDGE_STATUS_NONE,
                               bson::BSONObj etfHedgeParams = bson::BSONObj(),
                               bson::BSONObj reserved = bson::BSONObj()) = 0;
    // Pauses, resumes or stops a task at the server; the reply comes through the callback.
    virtual void operateServerTask(const std::string& taskKey, const boost::shared_ptr<nqservice::CTaskOpRecord>& op,
                                   const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                   const boost::function<void(const utils::NQError&, bson::BSONObj)>& callback) = 0;
};

// The server's answer of available volumes for one instrument: entries under
// account key followed by the decimal operation type. Answers may arrive on a
// service thread; the table guards itself.
class StockSubTable {
public:
    StockSubTable() = default;
    StockSubTable(const StockSubTable&) = delete;
    StockSubTable& operator=(const StockSubTable&) = delete;
    virtual ~StockSubTable() = default;

    std::string stockKey() const;
    void setStockKey(const std::string& key);
    void clearVolumes();
    void setVolume(const std::string& key, long long volume);
    // False when the entry is missing.
    bool getVolume(const std::string& key, long long& volume) const;
    // The subscription that feeds the table; dropped with it.
    void setRequest(const boost::shared_ptr<nqservice::SubRequest>& request);

private:
    mutable std::mutex m_mutex;
    std::string m_stockKey;
    std::map<std::string, long long> m_volumes;
    boost::shared_ptr<nqservice::SubRequest> m_request;
};

// A request for available volumes answered by the broker.
class CStockRequestParam {
public:
    std::vector<std::string> accounts;
    std::string market;
    std::string code;
    nqservice::EPriceType priceType = nqservice::PT_NONE;
    double price = 0.0;
    nqservice::EOperationType operationType = nqservice::OT_NONE;
    // (account key, volume); LLONG_MAX when the broker sets no bound.
    boost::function<void(std::string, long long)> callback;

    bool isValid() const
    {
        return !accounts.empty() && !market.empty() && !code.empty() && operationType != nqservice::OT_NONE &&
               !callback.empty();
    }
};

// The trade client: login state, instrument readiness, splitting, cancels.
// utils::CManualSingletonT<TC::CTradeClient>::instance().
class CTradeClient : public QObject {
    Q_OBJECT
public:
    // Registers the types of its signals for queued connections.
    explicit CTradeClient(QObject* parent = nullptr);
    ~CTradeClient() override;

    // Volumes per account (in the order of accounts) for a wanted volume split
    // by weights; empty on failure, with error telling why.
    virtual std::vector<long long> splitEntrusts(
        long long volume, double price, nqservice::EPriceType priceType,
        const std::vector<boost::shared_ptr<nqservice::CAccountInfo>>& accounts, const std::vector<double>& weights,
        nqservice::EPositionType positionType, std::string market, std::string code,
        nqservice::EOperationType operation, nqservice::EHedge_Flag_Type hedgeFlag,
        boost::shared_ptr<utils::NQError> error, bool byAvailable, bool roundToUnit,
        const std::map<std::string, long long>& fixedVolumes = std::map<std::string, long long>(),
        const std::vector<long long>& lots = std::vector<long long>()) = 0;
    virtual void cancelOrder(const boost::shared_ptr<nqservice::COrderDetail>& order, QString& message, int flags,
                             QString remark, const boost::shared_ptr<TC::COrderAuxInfo>& aux) = 0;
    // Asks the server, without waiting, to refresh the account's combination positions.
    virtual void checkStkOptCombPosition_async(const boost::shared_ptr<nqservice::CAccountInfo>& account) = 0;
    // Subscribes the broker's answers of available volume; false when the request is refused.
    virtual bool requestStockVolume(const CStockRequestParam& param, boost::shared_ptr<StockSubTable>& table) = 0;

signals:
    void sigLoginStatus(const nqservice::CAccountInfoPtr& account, nqservice::EBROKER_LOGIN_STATUS status,
                        std::string message);
    void sigInitDataFinish();
    void sigAutoImportExGreeksChanged();
};

// Subscribes the broker's available volumes through the installed trade client.
// False without a trade client or with an invalid request.
bool makeStockRequest(const CStockRequestParam& param, boost::shared_ptr<StockSubTable>& table);

// Notes in the client's message area. utils::CManualSingletonT<TC::CMsgService>::instance().
class CMsgService {
public:
    virtual ~CMsgService() = default;
    virtual boost::shared_ptr<nqservice::CMessage> showQsMsg(const QString& text, EMsgTypeDef type,
                                                             nqservice::MsgLevel level, bool modal,
                                                             bool sound) = 0;
};

// Registers the seam's types for queued signals; idempotent.
void registerTradingMetaTypes();

}  // namespace TC

Q_DECLARE_METATYPE(nqservice::CAccountInfoPtr)
Q_DECLARE_METATYPE(nqservice::EBROKER_LOGIN_STATUS)
Q_DECLARE_METATYPE(std::string)
