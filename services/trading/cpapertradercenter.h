// The trading seam answered by the paper broker: the data centre with each
// account's tables, the calculator of available volumes, fees, the (empty)
// local task centre. A host installs it with nqservice::TraderCenter::install.
#pragma once

#include "seam/trading.h"

#include <boost/enable_shared_from_this.hpp>

#include <map>
#include <mutex>
#include <set>
#include <string>

namespace trading {

class CPaperBroker;

class CPaperTraderCenter : public nqservice::TraderCenter,
                           public nqservice::IDataCenter,
                           public nqservice::ICalculator,
                           public nqservice::IFeeService,
                           public nqservice::ITaskCenter,
                           public boost::enable_shared_from_this<CPaperTraderCenter> {
public:
    // The broker outlives the centre. Accounts named in brokerAnswered answer
    // available-volume requests through the trade client (as a broker gateway
    // would); the others are reckoned by the calculator.
    CPaperTraderCenter(CPaperBroker* broker, std::set<std::string> brokerAnswered);

    // TraderCenter
    boost::shared_ptr<nqservice::IDataCenter> getDataCenter() override;
    boost::shared_ptr<nqservice::ICalculator> getCalculator() override;
    boost::shared_ptr<nqservice::ITaskCenter> getTaskCenter() override;
    nqservice::IFeeService* getFeeService() override { return this; }

    // IDataCenter
    boost::shared_ptr<nqservice::CAccountData> getAccountData(unsigned long long accountHash) override;
    boost::shared_ptr<nqservice::IDataTable> getAllAccountsTable() override;
    int getTradingPhase(const std::string& market, const std::string& code) override;
    bool isVolumeQueryByBroker(const std::string& accountKey) override;

    // ICalculator
    long long calcAvailableVolume(const boost::shared_ptr<nqservice::CAccountData>& account, const std::string& market,
                                  const std::string& code, int operationType, int hedgeFlag, const int* offsetFlag,
                                  const int* coverFlag, double price, long long maxVolume, int level, bool strict,
                                  const boost::shared_ptr<nqservice::IData>& extra) override;

    // IFeeService
    boost::shared_ptr<nqservice::CInstrumentFee> getInstrumentFee(const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                                                  const std::string& market,
                                                                  const std::string& code) override;

    // ITaskCenter: the paper broker runs no local tasks.
    boost::shared_ptr<nqservice::ITaskControl> getTask(int taskId, int accountId) override;

private:
    CPaperBroker* const m_broker;
    const std::set<std::string> m_brokerAnswered;
    std::mutex m_mutex;
    std::map<unsigned long long, boost::shared_ptr<nqservice::CAccountData>> m_accounts;
};

}  // namespace trading
