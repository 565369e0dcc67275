// The live tables of one paper account, as the panels subscribe to them.
#pragma once

#include "seam/trading.h"

namespace trading {

class CPaperBroker;

class CPaperAccountData : public nqservice::CAccountData {
public:
    CPaperAccountData(CPaperBroker* broker, std::string accountKey);

    void getVector(int dataType, std::vector<boost::shared_ptr<nqservice::IData>>& out) override;
    boost::shared_ptr<nqservice::SubRequest> subscribe(int dataType, const std::string& filter,
                                                       const nqservice::DataCallback& callback) override;
    boost::shared_ptr<nqservice::CAccountInfo> getAccountInfo() override;
    boost::shared_ptr<nqservice::CAccountDetail> getAccountDetail() override;
    double getCanOrderVolume(const std::string& market, const std::string& code, int operationType, int hedgeFlag,
                             double price, long long maxVolume, nqservice::EPriceType priceType,
                             long long reserved) override;

    const std::string& accountKey() const { return m_accountKey; }

private:
    CPaperBroker* const m_broker;
    const std::string m_accountKey;
};

}  // namespace trading
