// The combination position panel ("opsp"): the combination positions of the
// user's stock-option accounts, a search by combination number, and "解除",
// which releases the ticked combination through one command. A double click
// hands a row to the host for closing (sigCloseOptionCombPosition).
// Subscription callbacks go straight to the table's model, which is locked.
#pragma once

#include "positions/coptionstrategypositiontable.h"
#include "seam/subrequest.h"
#include "seam/trading.h"
#include "toolkit/itradedockablewidget.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <functional>
#include <string>
#include <vector>

namespace WG {
class CAutoExpandToolBar;
class CSearchTextLineEdit;
class CSmallNoNormalButton;
}  // namespace WG

namespace TC {

class CAutoButton;

class COptionStrategyPositionPanel : public ITradeDockableWidget {
    Q_OBJECT
public:
    // Control ids.
    enum EControlId { OSP_TABLE = 0, OSP_RELEASE = 2, OSP_REFRESH = 3 };

    COptionStrategyPositionPanel(int widgetID, QWidget* parent);
    ~COptionStrategyPositionPanel() override;

    void setParam(const QString& param) override;
    QString param() override;
    void requestAccount(const nqservice::CAccountInfo& info) override;
    void loadAccountGroupSettings() override;
    void refreshAccounts() override;
    void loadAccounts() override;
    void clear() override;
    void onTimer(QFlags<TC::ETimerUpdateFlag> flags) override;
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;
    virtual void emptyStringChange();

    // Read access for the host's tests and tools.
    COptionStrategyPositionTable* getTable() const { return table; }
    WG::CSearchTextLineEdit* getSearchEdit() const { return searchEdit; }
    WG::CSmallNoNormalButton* getReleaseButton() const { return releaseButton; }
    CAutoButton* getRefreshButton() const { return refreshButton; }
    WG::CAutoExpandToolBar* getToolBar() const { return toolBar; }
    QStringList subscribedAccounts() const { return subscriptions.keys(); }
    std::vector<std::string> requestedAccountKeys() const;

signals:
    void sigCloseOptionCombPosition(boost::shared_ptr<nqservice::CStkOptCombPositionDetail> detail);

public slots:
    void slotLoginStatus(const nqservice::CAccountInfoPtr& account, nqservice::EBROKER_LOGIN_STATUS status,
                         std::string message);
    void slotNewTradingDay(const std::string& date);

protected:
    void createUi();
    void refreshDatas();
    void reloadData();
    void onPositionDetail(const boost::shared_ptr<nqservice::IData>& data);
    void doCheckAndReleaseComb(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details);
    void doOperation(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details);
    bool fillStockParams(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details,
                         std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& out,
                         nqservice::EOperationType operation, QString& message, QString& warning);

private:
    // The user's stock-option accounts whose login is ready and that the
    // broker-type test (and, when asked, the user's filter) let through.
    void forEachReadyAccount(bool testFilter, const std::function<void(const nqservice::CAccountInfo&)>& visit);
    nqservice::EVqTraderType effectiveTradeType() const;

    QMap<std::string, boost::shared_ptr<nqservice::SubRequest>> requestedAccounts;
    CAutoButton* refreshButton = nullptr;
    WG::CSearchTextLineEdit* searchEdit = nullptr;
    WG::CSmallNoNormalButton* releaseButton = nullptr;
    COptionStrategyPositionTable* table = nullptr;
    WG::CAutoExpandToolBar* toolBar = nullptr;
    QMap<QString, boost::shared_ptr<nqservice::SubRequest>> subscriptions;
};

}  // namespace TC

Q_DECLARE_METATYPE(boost::shared_ptr<nqservice::CStkOptCombPositionDetail>)
