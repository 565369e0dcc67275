#include "services/trading/cpaperloginservice.h"

#include "services/trading/cpaperbroker.h"

namespace trading {

nqservice::EBROKER_LOGIN_STATUS CPaperLoginService::getLoginStatus(const std::string& accountKey)
{
    if (!m_broker->accountInfo(accountKey)) {
        return nqservice::BLS_NONE;
    }
    return m_broker->isLoggedIn(accountKey) ? nqservice::BLS_READY : nqservice::BLS_LOGOUT;
}

}  // namespace trading
