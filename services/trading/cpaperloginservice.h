// The login state of the paper accounts, as the panels ask for it.
#pragma once

#include "seam/trading.h"

namespace trading {

class CPaperBroker;

class CPaperLoginService : public nqservice::TradeLogicInterface {
public:
    explicit CPaperLoginService(CPaperBroker* broker) : m_broker(broker) {}
    nqservice::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) override;

private:
    CPaperBroker* const m_broker;
};

}  // namespace trading
