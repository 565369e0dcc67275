// The small frameless dialog "期权下单" that opens at the mouse when a trader
// presses an order button of the chain: account, price type, price, volume and
// what is available, with a quote picture. It sends no order: its answer goes
// back to its parent as an orderValue through sigDoOperation().
//
// Its parent must offer the slots slotSetDefaultAccount(QString) and
// slotDoOperation(). Quotes and available volumes may arrive on service
// threads; they reach the widgets on the GUI thread only, newest first.
#pragma once

#include "order/ordervalue.h"
#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/tradingenums.h"
#include "toolkit/ccommondialog.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <mutex>
#include <string>

class QKeyEvent;

namespace WG {
class CCheckBox;
class CComboBox;
class CLineEdit;
class CParameterCell;
class CPushButton;
class CSimpleTextWidget;
class CSmallNormalButton;
}  // namespace WG

namespace TC {

class CQuotesGraphWidget;
class StockSubTable;

class COptionOrderDialog : public WG::CCommonDialog {
    Q_OBJECT
public:
    // Widget ids inside the dialog.
    enum EWidgetId {
        ID_ACCOUNT_COMBO = 0,
        ID_PRICE_TYPE_COMBO = 1,
        ID_DEFAULT_BUTTON = 0,
        ID_ORDER_BUTTON = 1,
        ID_CLOSE_TODAY = 2,
        ID_VOLUME_CELL = 3,
        ID_AVAILABLE_CELL = 4,
        ID_PRICE_EDIT = 12,
        ID_CLOSE = 101,
    };

    explicit COptionOrderDialog(QWidget* parent);
    ~COptionOrderDialog() override;

    TC::orderValue& getResult() { return result; }
    // Loads the dialog for one press of button `id` (row * 100 + operationIndex).
    void setViewInfo(int id, const QMap<int, QStringList>& rowCodes, nqservice::EVqTraderType traderType,
                     const std::string& defaultAccount);
    void setInterface(int id, const QMap<int, QStringList>& rowCodes, nqservice::EVqTraderType traderType);
    // The logged-in accounts of the trader type, the default one selected.
    void loadAccounts(nqservice::EVqTraderType traderType, const std::string& defaultAccount);

    // Quote and volume callbacks; any thread.
    void onTablePriceData(boost::shared_ptr<TC::CPriceData> price);
    void onQueryVolume(std::string key, long long volume);

    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    // Read access for tests and the host.
    WG::CComboBox* getAccountCombo() const { return accountCombo; }
    WG::CComboBox* getPriceTypeCombo() const { return priceTypeCombo; }
    WG::CPushButton* getDefaultButton() const { return defaultButton; }
    WG::CLineEdit* getPriceEdit() const { return priceEdit; }
    WG::CParameterCell* getAvailableCell() const { return availableCell; }
    WG::CParameterCell* getVolumeCell() const { return volumeCell; }
    WG::CSmallNormalButton* getOrderButton() const { return orderButton; }
    WG::CCheckBox* getCloseTodayCheck() const { return closeTodayCheck; }
    WG::CSimpleTextWidget* getTitleText() const { return titleText; }
    WG::CSimpleTextWidget* getPercentVolumeText() const { return percentVolumeText; }
    CQuotesGraphWidget* getQuotesWidget() const { return quotesWidget; }
    QString getStockCode() const { return stockCode; }
    int getOperationIndex() const { return operationIndex; }
    int getOperationType() const { return operationType; }
    long long getAvailableVolume() const { return availableVolume; }
    int getOrderCount() const { return orderCount; }
    double getRatio() const { return ratio; }
    QString getDefaultAccount() const { return defaultAccount; }
    double priceOfType(int type) const { return priceByType ? priceByType->value(type, 0.0) : 0.0; }
    bool hasPriceData() const { return priceData != nullptr; }
    // The order button's colour key.
    QString orderButtonColorKey() const { return buttonColorKey; }

signals:
    void sigDoOperation();
    void sigSetDefaultAccount(QString accountKey);
    void sigUpdateCellPrice();

public slots:
    void slotUnitClicked(QString unit);
    void slotUpdateCellPrice();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    // Applies the newest quote and volumes that came on other threads.
    void applyPending();

private:
    void createUi();
    void setQuote();
    void setOperationType();
    void resetPrice();
    void requestOpVolume();
    void setAvailable();
    void updateOrderCount();
    void confirm();
    void finish();
    void refreshDefaultButton();
    void priceTypeChanged();
    void applyPrice(const boost::shared_ptr<TC::CPriceData>& price);
    int selectedPriceType() const;
    QString selectedAccount() const;
    // The edit's price, or the price of the type for calculation when it is 0.
    double calcPrice() const;
    void setPriceText(double price);
    void postPending();

    WG::CSimpleTextWidget* titleText = nullptr;
    WG::CComboBox* accountCombo = nullptr;
    WG::CComboBox* priceTypeCombo = nullptr;
    WG::CPushButton* defaultButton = nullptr;
    WG::CLineEdit* priceEdit = nullptr;
    WG::CParameterCell* availableCell = nullptr;
    WG::CSmallNormalButton* orderButton = nullptr;
    WG::CParameterCell* volumeCell = nullptr;
    WG::CSimpleTextWidget* percentVolumeText = nullptr;
    WG::CCheckBox* closeTodayCheck = nullptr;
    CQuotesGraphWidget* quotesWidget = nullptr;
    boost::shared_ptr<TC::CQuoteRequest> quoteRequest;
    QString stockCode;
    double ratio = 0.0;
    int operationIndex = 0;
    long long availableVolume = 0;
    int orderCount = 0;
    int operationType = -1;
    nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    boost::shared_ptr<QMap<int, double>> priceByType;
    boost::shared_ptr<TC::CPriceData> priceData;
    TC::orderValue result;
    QString defaultAccount;
    boost::shared_ptr<TC::StockSubTable> volumeTable;

    // What came on other threads, waiting for the GUI thread.
    std::mutex pendingMutex;
    boost::shared_ptr<TC::CPriceData> pendingPrice;
    bool pendingVolume = false;
    bool pendingPosted = false;
    QString buttonColorKey;
    QString unitContracts;
    QString unitPercent;
};

}  // namespace TC
