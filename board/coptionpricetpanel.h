// The T-form chain board ("pricet"): one underlying, one expiry at a time. It
// asks the exchange client which options exist, subscribes all of them at
// selection, buffers what arrives and moves the buffer into its tables on the
// host's tick. It owns nothing of the market and places no order itself.
#pragma once

#include "board/cpricettableschema.h"
#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/bson.h"
#include "seam/common.h"
#include "seam/idata.h"
#include "seam/nqerror.h"
#include "seam/tradingrecords.h"
#include "seam/subrequest.h"
#include "seam/tradingenums.h"
#include "toolkit/itradedockablewidget.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <map>
#include <mutex>
#include <string>

class QWidget;

namespace WG {
class CAutoExpandToolBar;
class CCheckBox;
class CPushButton;
class CPushButtonGroup;
class CSimpleTextWidget;
class CSplitContainer;
class CWidgetList;
}  // namespace WG

namespace TC {

class CAccountsComboBox;
class CAutoImportOptionExGreeksThread;
class COptionPriceTGreeksTable;
class CPriceTQuickOrderWidget;
class COptionPriceTTable;
class COptionUndlCodeComboBox;

class COptionPriceTPanel : public ITradeDockableWidget {
    Q_OBJECT
public:
    COptionPriceTPanel(int widgetID, QWidget* parent);
    ~COptionPriceTPanel() override;

    void setParam(const QString& param) override;
    QString param() override;
    void onTimer(QFlags<TC::ETimerUpdateFlag> flags) override;
    bool handleEvent(int event, int id, int value, QString text, void* data) override;
    void setTradeType(nqservice::EVqTraderType type) override;
    void loadAccounts() override;
    void requestAccount(const nqservice::CAccountInfo& info) override;

    // The position overlay: one account's subscription and snapshot, the
    // callback that buffers a record, and its application on the tick.
    void subPositionStatics(const std::string& accountKey);
    void onPositionStatics(const boost::shared_ptr<nqservice::IData>& record);
    void updatePositionStatics(const boost::shared_ptr<nqservice::IData>& record);
    // The server's answer to a termination of one of the user's tasks.
    void onOperateBztTask(const utils::NQError& error, bson::BSONObj reply,
                          const boost::shared_ptr<nqservice::CTaskDetail>& task,
                          const boost::shared_ptr<nqservice::CTaskOpRecord>& op);

    // Quote callback, on any thread: keeps the newest record of its code.
    void onTablePriceData(boost::shared_ptr<TC::CPriceData> data);
    // Redraws the chain from the quote client's present records.
    void updateGreek();

    // Read access for the host's tests and tools.
    COptionPriceTTable* getChainTable() const { return chainTable; }
    COptionPriceTGreeksTable* getGreeksTable() const { return greeksTable; }
    CPriceTQuickOrderWidget* getQuickOrderWidget() const { return quickOrderWidget; }
    int pendingPositionCount() const;
    int positionSubscriptionCount() const { return positionSubs.size(); }
    COptionUndlCodeComboBox* getUndlCombo() const { return undlCombo; }
    WG::CPushButtonGroup* getDateTabs() const { return dateTabs; }
    WG::CPushButtonGroup* getModeGroup() const { return modeGroup; }
    WG::CCheckBox* getQuickOrderCheck() const { return quickOrderCheck; }
    CAccountsComboBox* getAccountCombo() const { return accountCombo; }
    WG::CAutoExpandToolBar* getToolBar() const { return toolBar; }
    WG::CSplitContainer* getSplitter() const { return splitter; }
    QString getCurrentDate() const { return currentDate; }
    const QMap<int, QString>& getTabDates() const { return tabDates; }
    const QMap<int, QString>& getTableConfigs() const { return tableConfigs; }
    nqservice::EVqTraderType getTraderType() const { return traderType; }
    // The captions and values of the tool bar by widget id (7 to 20), null for other ids.
    WG::CSimpleTextWidget* figureWidget(int id) const;
    int pendingQuoteCount() const;
    int quoteRequestCount() const { return quoteRequests.size(); }
    bool hasUndlRequest() const { return undlRequest != nullptr; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private slots:
    // A pass of the Greeks import took new files.
    void slotReadFinished();
    // The user switched the Greeks import on or off.
    void slotAutoImportExGreeksChanged();

private:
    void createUi();
    void setDate(const QMap<QString, QStringList>& dates);
    void setDateInfo();
    void setInstrumentInfo();
    void requestInstrumentMapQuote();
    void queryStockPrice();
    void doClearTitle();
    void doClearExpire();
    void doClearRequest();
    void resizeLayout();
    void updateAccounts();
    void undlChanged();
    void changeTableMode(int type);
    void quickOrderToggled(bool checked);
    // The requested accounts as the ladder takes them.
    std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>> requestedAccountInfos() const;
    // "全撤": terminates the user's running tasks.
    void cancelAllTasks();
    // The option map of the present trader type.
    QMap<QString, QMap<QString, QStringList>> optionMap() const;
    // The combo's current underlying key, empty without combo or item.
    QString currentUndl() const;
    bool hasUndlText() const;
    WG::CSimpleTextWidget* addFigure(int captionId, const QString& caption, int valueId, int height);

    WG::CAutoExpandToolBar* toolBar = nullptr;
    WG::CPushButtonGroup* modeGroup = nullptr;
    COptionUndlCodeComboBox* undlCombo = nullptr;
    WG::CSimpleTextWidget* remainDaysText = nullptr;
    WG::CSimpleTextWidget* undlNameText = nullptr;
    WG::CSimpleTextWidget* lastPriceText = nullptr;
    WG::CSimpleTextWidget* changeText = nullptr;
    WG::CSimpleTextWidget* volumeText = nullptr;
    WG::CSimpleTextWidget* openInterestLabel = nullptr;
    WG::CSimpleTextWidget* openInterestText = nullptr;
    WG::CSimpleTextWidget* amountText = nullptr;
    COptionPriceTTable* chainTable = nullptr;
    COptionPriceTGreeksTable* greeksTable = nullptr;
    QMap<QString, boost::shared_ptr<TC::CPriceData>> priceCache;
    QMap<QString, boost::shared_ptr<TC::CQuoteRequest>> quoteRequests;
    QMap<int, QString> tabDates;
    boost::shared_ptr<TC::CQuoteRequest> undlRequest;
    nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    CPriceTQuickOrderWidget* quickOrderWidget = nullptr;
    CAccountsComboBox* accountCombo = nullptr;
    mutable std::recursive_mutex dataMutex;
    WG::CCheckBox* quickOrderCheck = nullptr;
    CAutoImportOptionExGreeksThread* exGreeksThread = nullptr;
    WG::CPushButtonGroup* dateTabs = nullptr;
    QString currentDate;
    QMap<int, QString> tableConfigs;
    // The layouts of the trader type not shown, by trader type.
    QMap<int, QMap<int, QString>> layoutsByTraderType;
    WG::CSplitContainer* splitter = nullptr;
    QMap<std::string, boost::shared_ptr<nqservice::SubRequest>> positionSubs;
    std::map<std::string, boost::shared_ptr<nqservice::IData>> positionCache;

    // Layout helpers of our own: the panel's vertical list and the strip that holds the month tabs.
    WG::CWidgetList* mainList = nullptr;
    QWidget* dateTabsHolder = nullptr;
    QMap<int, WG::CSimpleTextWidget*> figures;
};

}  // namespace TC
