#include "toolkit/itradedockablewidget.h"

#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "seam/userrecords.h"

namespace TC {

ITradeDockableWidget::ITradeDockableWidget(bool paintsBackground, const QString& name, int widgetID,
                                           TraderTypeFlags flags, QWidget* parent)
    : WG::IDockableWidget(name, paintsBackground, parent), m_widgetID(widgetID), m_supported(flags)
{
}

ITradeDockableWidget::~ITradeDockableWidget() = default;

void ITradeDockableWidget::acquire() { ++m_references; }

void ITradeDockableWidget::release()
{
    if (m_references > 0) {
        --m_references;
    }
}

bool ITradeDockableWidget::needRequestAccount(std::string key) const
{
    if (key.empty()) {
        return false;
    }
    CUserConfig* config = getUserConfig();
    if (config == nullptr) {
        return false;
    }
    const boost::shared_ptr<CAccount> account = config->getAccountData(QString::fromStdString(key));
    if (!account) {
        return false;
    }
    // Before a host sets a trade type, any type the panel supports will do.
    if (m_tradeType != 0) {
        return isBrokerTypeMatchTradeType(account->accountType, static_cast<nqservice::EVqTraderType>(m_tradeType));
    }
    for (nqservice::EVqTraderType type : {nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_TRADER_TYPE_FUTURE_OPTION}) {
        if (m_supported.testFlag(type) && isBrokerTypeMatchTradeType(account->accountType, type)) {
            return true;
        }
    }
    return false;
}

}  // namespace TC
