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
// Tasks of all accounts: the paper broker has none to list.
class CEmptyTable : public nqservice::IDataTable {
public:
    void getVector(int, std::vector<boost::shared_ptr<nqservice::IData>>& out) override { out.clear(); }
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
    static const boost::shared_ptr<nqservice::IDataTable> empty = boost::make_shared<CEmptyTable>();
    return empty;
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

boost::shared_ptr<nqservice::ITaskControl> CPaperTraderCenter::getTask(int, int)
{
    return boost::shared_ptr<nqservice::ITaskControl>();
}

}  // namespace trading
