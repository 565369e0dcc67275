// One leg of the strategy pages' quick order: account, price type, price,
// super price, what is available and the volume of one stock option. The
// dialog around it sends the legs; the widget fills a leg's order parameter.
// GUI thread only: the dialog hands quotes over on that thread.
#pragma once

#include "seam/cpricedata.h"
#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"
#include "seam/userrecords.h"
#include "toolkit/cbasewidget.h"

#include <QString>

#include <boost/shared_ptr.hpp>

class QTimer;

namespace WG {
class CComboBox;
class CLineEdit;
class CParameterCell;
class CSimpleTextWidget;
}  // namespace WG

namespace TC {

class CStkOptionOrderWidget : public WG::CBaseWidget {
    Q_OBJECT
public:
    enum EWidgetId {
        ID_ACCOUNT_COMBO = 0,
        ID_PRICE_TYPE_COMBO = 1,
        ID_PRICE_EDIT = 2,
        ID_SUPER_PRICE_CELL = 3,
        ID_AVAILABLE_CELL = 4,
        ID_VOLUME_CELL = 5,
    };
    static constexpr int kWidth = 262;
    static constexpr int kTimerMs = 500;

    explicit CStkOptionOrderWidget(QWidget* parent);
    ~CStkOptionOrderWidget() override;

    void setLeg(const CStrategyStockData& leg);
    // The leg's order parameter; false with error set when it can't go. No
    // message is shown here except the limit's box.
    bool fillStockParams(boost::shared_ptr<nqservice::CCodeOrderParam>& param, QString& error, QString& remark);
    // Tips at the control for what is missing; true when the leg may be filled.
    bool validate();
    // The selected account's key, "" when none.
    QString currentAccount() const;
    // A new quote of the leg, on the GUI thread.
    void updatePrice(const boost::shared_ptr<TC::CPriceData>& price);

    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    // Read access for the dialog and tests.
    WG::CComboBox* getAccountCombo() const { return accountCombo; }
    WG::CComboBox* getPriceTypeCombo() const { return priceTypeCombo; }
    WG::CLineEdit* getPriceEdit() const { return priceEdit; }
    WG::CParameterCell* getSuperPriceCell() const { return superPriceCell; }
    WG::CParameterCell* getAvailableCell() const { return availableCell; }
    WG::CParameterCell* getVolumeCell() const { return volumeCell; }
    WG::CSimpleTextWidget* getPercentVolumeText() const { return percentVolumeText; }
    WG::CSimpleTextWidget* getTitleText() const { return titleText; }
    QString getStockCode() const { return stockCode; }
    double getRatio() const { return ratio; }
    long long getAvailableVolume() const { return availableVolume; }
    int getOrderCount() const { return orderCount; }
    nqservice::EOperationType getOperationType() const { return operationType; }
    boost::shared_ptr<TC::CPriceData> getPriceData() const { return priceData; }
    QTimer* getTimer() const { return timer; }

public slots:
    void slotUnitClicked(QString unit);
    void slotCanOrderNum();

private:
    void createUi();
    void loadAccounts();
    void priceTypeChanged();
    void updateOrderCount();
    int selectedPriceType() const;
    void setPriceText(double price);

    WG::CComboBox* accountCombo = nullptr;
    WG::CComboBox* priceTypeCombo = nullptr;
    WG::CLineEdit* priceEdit = nullptr;
    WG::CParameterCell* superPriceCell = nullptr;
    WG::CParameterCell* availableCell = nullptr;
    WG::CParameterCell* volumeCell = nullptr;
    WG::CSimpleTextWidget* percentVolumeText = nullptr;
    WG::CSimpleTextWidget* titleText = nullptr;
    QString stockCode;
    double ratio = 0.0;
    long long availableVolume = 0;
    int orderCount = 0;
    nqservice::EOperationType operationType = nqservice::OT_NONE;
    boost::shared_ptr<TC::CPriceData> priceData;

    QTimer* timer = nullptr;
    QString unitContracts;
    QString unitPercent;
};

}  // namespace TC
