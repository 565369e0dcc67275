#include "services/trading/cpaperaccountdata.h"

#include "services/trading/cpaperbroker.h"

#include <algorithm>

namespace trading {

CPaperAccountData::CPaperAccountData(CPaperBroker* broker, std::string accountKey)
    : m_broker(broker), m_accountKey(std::move(accountKey))
{
}

void CPaperAccountData::getVector(int dataType, std::vector<boost::shared_ptr<nqservice::IData>>& out)
{
    m_broker->getVector(m_accountKey, dataType, out);
}

boost::shared_ptr<nqservice::SubRequest> CPaperAccountData::subscribe(int dataType, const std::string& filter,
                                                                      const nqservice::DataCallback& callback)
{
    return m_broker->subscribe(m_accountKey, dataType, filter, callback);
}

boost::shared_ptr<nqservice::CAccountInfo> CPaperAccountData::getAccountInfo()
{
    return m_broker->accountInfo(m_accountKey);
}

boost::shared_ptr<nqservice::CAccountDetail> CPaperAccountData::getAccountDetail()
{
    return m_broker->accountDetail(m_accountKey);
}

double CPaperAccountData::getCanOrderVolume(const std::string& market, const std::string& code, int operationType,
                                            int, double price, long long maxVolume, nqservice::EPriceType priceType,
                                            long long)
{
    long long volume = m_broker->availableVolume(m_accountKey, market, code, operationType, priceType, price);
    if (maxVolume > 0) {
        volume = std::min(volume, maxVolume);
    }
    return static_cast<double>(volume);
}

}  // namespace trading
