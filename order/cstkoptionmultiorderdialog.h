// The quick order of a basket of three or more stock option legs: one price
// type for all legs, a number of copies ("份"), a price and an account per row;
// each leg goes out with copies times its quantity, all in one command. It
// shows the copies the money on the chosen accounts pays for.
//
// Quotes arrive on service threads: onPrice only stores the newest per code
// under priceMutex; the 500 ms timer applies them to the table on the GUI thread.
#pragma once

#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/tradingrecords.h"
#include "seam/userrecords.h"
#include "toolkit/ccommondialog.h"

#include <QList>
#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class QTimer;

namespace WG {
class CBaseTableColumnComboxDelegate;
class CBaseTableColumnDoubleSpinBoxDelegate;
class CComboBox;
class CParameterCell;
class CStandardExHpfTable;
class CWidgetList;
}  // namespace WG

namespace TC {

class CColorKeyButton;
class CHpfOptionMultiOrderData;
class CHpfOptionMultiOrderDataModel;

class CStkOptionMultiOrderDialog : public WG::CCommonDialog {
    Q_OBJECT
public:
    enum EWidgetId {
        ID_PRICE_TYPE_COMBO = 1,
        ID_AVAILABLE_CELL = 3,
        ID_SUPER_PRICE_CELL = 4,
        ID_COPIES_CELL = 5,
        ID_CANCEL_BUTTON = 6,
        ID_ORDER_BUTTON = 7,
        ID_LEG_TABLE = 8,
    };
    // Account events of the host that make the copies count again.
    enum EAccountEvent {
        UE_ACCOUNT_DATA = 91,
        UE_ACCOUNT_FUNDS = 239,
        UE_ACCOUNT_LOGIN = 278,
    };
    static constexpr int kTimerMs = 500;

    explicit CStkOptionMultiOrderDialog(QWidget* parent);
    ~CStkOptionMultiOrderDialog() override;

    // One row per leg; subscribes each code's quotes.
    void setLegs(const QList<CStrategyStockData>& legs);
    // Any thread: stores the newest quote of its code; nothing else.
    void onPrice(boost::shared_ptr<TC::CPriceData>& price);
    // The copies the funds of the rows' accounts pay for.
    void calcAvailableCopies();
    // The parameters of all legs; false with error when one can't go.
    bool fillStockParams(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                         std::map<std::string, double>& weights, QString& error, QString& remark);

    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    // Read access for tests and callers.
    WG::CComboBox* getPriceTypeCombo() const { return priceTypeCombo; }
    WG::CParameterCell* getAvailableCell() const { return availableCell; }
    WG::CParameterCell* getSuperPriceCell() const { return superPriceCell; }
    WG::CParameterCell* getCopiesCell() const { return copiesCell; }
    WG::CStandardExHpfTable* getLegTable() const { return legTable; }
    CHpfOptionMultiOrderDataModel* getLegModel() const { return legModel.get(); }
    WG::CWidgetList* getTopRow() const { return topRow; }
    WG::CBaseTableColumnDoubleSpinBoxDelegate* getPriceDelegate() const { return priceDelegate; }
    WG::CBaseTableColumnComboxDelegate* getAccountDelegate() const { return accountDelegate; }
    CColorKeyButton* getOrderButton() const { return orderButton; }
    long long getAvailableCopies() const { return availableCopies; }
    int queuedPrices() const;
    int subscriptionCount() const { return subscriptions.size(); }
    QTimer* getTimer() const { return timer; }
    // The text the price column shows for a row ("市价" or the price).
    QString priceText(const QString& code) const;
    // Selects the account of a row (as the trader does in the account column).
    void setRowAccount(const QString& code, const QString& accountKey);
    // Row updates done by quotes since the dialog was made.
    long long rowUpdates() const { return rowUpdateCount; }

public slots:
    void slotTimeOut();

private:
    void createUi();
    void priceTypeChanged();
    void updateRow(const boost::shared_ptr<TC::CPriceData>& price);
    void setRowPrice(const QString& code, int buySell, const boost::shared_ptr<TC::CPriceData>& price);
    boost::shared_ptr<CHpfOptionMultiOrderData> rowOf(const QString& code) const;
    int selectedPriceType() const;
    bool validate();
    void confirm();

    WG::CComboBox* priceTypeCombo = nullptr;
    WG::CParameterCell* availableCell = nullptr;
    WG::CParameterCell* superPriceCell = nullptr;
    WG::CParameterCell* copiesCell = nullptr;
    WG::CStandardExHpfTable* legTable = nullptr;
    std::unique_ptr<CHpfOptionMultiOrderDataModel> legModel;
    WG::CWidgetList* topRow = nullptr;
    mutable std::mutex priceMutex;
    QMap<QString, boost::shared_ptr<TC::CPriceData>> priceQueue;
    QMap<QString, boost::shared_ptr<CQuoteRequest>> subscriptions;
    long long availableCopies = 0;

    WG::CBaseTableColumnDoubleSpinBoxDelegate* priceDelegate = nullptr;  // owned by the table
    WG::CBaseTableColumnComboxDelegate* accountDelegate = nullptr;        // owned by the table
    CColorKeyButton* cancelButton = nullptr;
    CColorKeyButton* orderButton = nullptr;
    QTimer* timer = nullptr;
    long long rowUpdateCount = 0;
    QString unitCopies;
};

}  // namespace TC
