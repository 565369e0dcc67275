#include "services/trading/cpapertradercenter.h"

#include "seam/common.h"
#include "seam/ctimeservice.h"
#include "services/market/csessionclock.h"
#include "services/trading/cexchangerules.h"
#include "services/trading/cpaperaccountdata.h"
#include "services/trading/cpaperbroker.h"

#include <boost/make_shared.hpp>

#include <QDateTime>

#include <algorithm>

namespace trading {

namespace {
// The tasks of all accounts, as the broker has published them.
class CTaskTable : public nqservice::IDataTable {
public:
    explicit CTaskTable(CPaperBroker* broker) : m_broker(broker) {}
    void getVector(int dataType, std::vector<boost::shared_ptr<nqservice::IData>>& out) override
    {
        out.clear();
        if (dataType == nqservice::VQ_DATA_TYPE_TASK) {
            m_broker->getTasks(out);
        }
    }

private:
    CPaperBroker* const m_broker;
};

// A task as the local task engine holds it: a stop reaches the broker.
class CTaskControl : public nqservice::ITaskControl {
public:
    CTaskControl(CPaperBroker* broker, int accountId, int taskId)
        : m_broker(broker), m_accountId(accountId), m_taskId(taskId)
    {
    }
    bool operate(const boost::shared_ptr<nqservice::CTaskOpRecord>& op) override
    {
        if (!op || op->operation != nqservice::TOP_STOP) {
            return false;  // paper tasks are stopped, never paused
        }
        m_broker->terminateTask(m_accountId, m_taskId, op->userName);
        return true;
    }

private:
    CPaperBroker* const m_broker;
    const int m_accountId;
    const int m_taskId;
};
}  // namespace

CPaperTraderCenter::CPaperTraderCenter(CPaperBroker* broker, std::set<std::string> brokerAnswered)
    : m_broker(broker), m_brokerAnswered(std::move(brokerAnswered))
{
}

boost::shared_ptr<nqservice::IDataCenter> CPaperTraderCenter::getDataCenter()
{
    return boost::shared_ptr<nqservice::IDataCenter>(shared_from_this(), static_cast<nqservice::IDataCenter*>(this));
}

boost::shared_ptr<nqservice::ICalculator> CPaperTraderCenter::getCalculator()
{
    return boost::shared_ptr<nqservice::ICalculator>(shared_from_this(), static_cast<nqservice::ICalculator*>(this));
}

boost::shared_ptr<nqservice::ITaskCenter> CPaperTraderCenter::getTaskCenter()
{
    return boost::shared_ptr<nqservice::ITaskCenter>(shared_from_this(), static_cast<nqservice::ITaskCenter*>(this));
}

boost::shared_ptr<nqservice::CAccountData> CPaperTraderCenter::getAccountData(unsigned long long accountHash)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_accounts.find(accountHash);
    if (it != m_accounts.end()) {
        return it->second;
    }
    for (const std::string& key : m_broker->accountKeys()) {
        if (utils::hash(key) == accountHash) {
            // No tables before the account has logged in, as at a real gateway.
            if (!m_broker->isLoggedIn(key)) {
                return boost::shared_ptr<nqservice::CAccountData>();
            }
            auto data = boost::make_shared<CPaperAccountData>(m_broker, key);
            m_accounts[accountHash] = data;
            return data;
        }
    }
    return boost::shared_ptr<nqservice::CAccountData>();
}

boost::shared_ptr<nqservice::IDataTable> CPaperTraderCenter::getAllAccountsTable()
{
    return boost::make_shared<CTaskTable>(m_broker);
}

int CPaperTraderCenter::getTradingPhase(const std::string& market, const std::string&)
{
    const auto now = TC::getTimeService();
    return market::CSessionClock::phaseAt(market, TC::exchangeDateTime(now != nullptr ? now->currentTime()
                                                                                      : QDateTime::currentMSecsSinceEpoch()));
}

bool CPaperTraderCenter::isVolumeQueryByBroker(const std::string& accountKey)
{
    return m_brokerAnswered.count(accountKey) != 0;
}

long long CPaperTraderCenter::calcAvailableVolume(const boost::shared_ptr<nqservice::CAccountData>& account,
                                                  const std::string& market, const std::string& code,
                                                  int operationType, int, const int*, const int*, double price,
                                                  long long maxVolume, int, bool, const boost::shared_ptr<nqservice::IData>&)
{
    const auto paper = boost::dynamic_pointer_cast<CPaperAccountData>(account);
    if (!paper) {
        return 0;
    }
    long long volume = m_broker->availableVolume(paper->accountKey(), market, code, operationType,
                                                 utils::isUsable(price) && price > 0.0 ? nqservice::PT_FIX
                                                                                       : nqservice::PT_OPPONENT,
                                                 price);
    if (maxVolume > 0) {
        volume = std::min(volume, maxVolume);
    }
    return volume;
}

boost::shared_ptr<nqservice::CInstrumentFee> CPaperTraderCenter::getInstrumentFee(
    const boost::shared_ptr<nqservice::CAccountInfo>& account, const std::string& market, const std::string& code)
{
    const auto detail = m_broker->instrument(utils::vqStockKey(market, code));
    if (!account || !detail) {
        return boost::shared_ptr<nqservice::CInstrumentFee>();
    }
    return CExchangeRules::paperFee(account->getKey(), *detail);
}

boost::shared_ptr<nqservice::ITaskControl> CPaperTraderCenter::getTask(int taskId, int accountId)
{
    if (!m_broker->hasTask(accountId, taskId)) {
        return boost::shared_ptr<nqservice::ITaskControl>();
    }
    return boost::make_shared<CTaskControl>(m_broker, accountId, taskId);
}

}  // namespace trading
