// The trade-aware dockable panel as the host sees it: widget id, trade type,
// supported trader types, and the account and tick notifications.
#pragma once

#include "seam/tradingenums.h"
#include "seam/uievents.h"
#include "toolkit/idockablewidget.h"
#include "toolkit/invokehelper.h"

#include <QFlags>
#include <QSize>

#include <set>
#include <string>

namespace nqservice {
struct CAccountInfo;
}

namespace TC {

using TraderTypeFlags = QFlags<nqservice::EVqTraderType>;

class ITradeDockableWidget : public WG::IDockableWidget, public InvokeHelper {
    Q_OBJECT
public:
    ITradeDockableWidget(bool paintsBackground, const QString& name, int widgetID, TraderTypeFlags flags, QWidget* parent);
    ~ITradeDockableWidget() override;

    void acquire() override;
    void release() override;
    WG::IDockableWidget* getCopy(int) override { return nullptr; }
    bool isSimpleHeaderTitle() override { return false; }
    int widgetID() const override { return m_widgetID; }
    int getTradeType() const override { return m_tradeType; }

    virtual void requestAccount(const nqservice::CAccountInfo&) {}
    virtual void loadAccountGroupSettings() {}
    virtual void refreshAccounts() {}
    virtual void loadAccounts() {}
    virtual void clear() {}
    virtual void onTimer(QFlags<TC::ETimerUpdateFlag>) {}
    virtual void prepareActive() {}
    virtual void setTradeType(nqservice::EVqTraderType type) { m_tradeType = type; }
    virtual void adjustTableWidth() {}
    virtual void operationAccount(int, std::string) {}
    virtual void handHomePageRequest(int, int, QString, void*) {}
    virtual void moneyUnitChange() {}
    virtual void quoteLevelChange(std::string, int) {}
    virtual void setFirstParam(const QString&) {}
    virtual void applyFirstParam() {}
    virtual void updateAuthWidget() {}
    virtual QSize getDefaultSize() { return QSize(900, 560); }

    // Whether this panel should subscribe to the account's data: the user knows
    // the account and its broker type serves the panel's trade type.
    bool needRequestAccount(std::string key) const;

    TraderTypeFlags supportedTraderTypes() const { return m_supported; }

    // The accounts whose data the panel asked for since it last rebuilt its selection.
    const std::set<std::string>& requestedAccounts() const { return m_requestedAccounts; }
    void addRequestedAccount(const std::string& key) { m_requestedAccounts.insert(key); }
    void clearRequestedAccounts() { m_requestedAccounts.clear(); }
    int referenceCount() const { return m_references; }

private:
    int m_widgetID = 0;
    TraderTypeFlags m_supported;
    int m_tradeType = 0;
    int m_references = 0;
    std::set<std::string> m_requestedAccounts;
};

}  // namespace TC
