// The price ladder beside the chain ("启用价格快速下单"): a click on a price row
// places a limit order at that price at once, spread over the accounts of the
// panel's group by their weights, buying to close first; the other click
// cancels what works at that price. It shows the group's long, short and net
// position in the option and the working volume at each price.
//
// Quote and account callbacks come on service threads; they only emit signals
// to the widget's own slots, so its maps and cells are touched on the GUI thread.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/common.h"
#include "seam/idata.h"
#include "seam/subrequest.h"
#include "seam/tradingrecords.h"
#include "toolkit/cbasewidget.h"

#include <QMap>
#include <QMetaType>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace WG {
class CParameterCell;
class CRadioButtonGroup;
class CSimpleTextWidget;
}  // namespace WG

namespace TC {

class CPriceTQuickOrderTable;
class CQuotesPricesList;

using CPriceDataPtr = boost::shared_ptr<TC::CPriceData>;

class CPriceTQuickOrderWidget : public WG::CBaseWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 267;
    // The event that hands the ladder a code from elsewhere.
    static constexpr int kSetCodeEvent = 1084;

    explicit CPriceTQuickOrderWidget(QWidget* parent);
    ~CPriceTQuickOrderWidget() override;

    void setStockCode(QString code);
    void setAccounts(const std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>>& accounts,
                     const QString& group);
    // The code and the volume, joined by "$".
    QString param() const;
    void setParam(const QString& param);

    // A click on a row: an order at its price, or a cancel of what works there.
    void doOperition(int row, bool isBuy);
    void cancelOrder(int row, bool isBuy);

    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    // Read access for the panel and the tests.
    CPriceTQuickOrderTable* getPriceTable() const { return priceTable; }
    CQuotesPricesList* getPricesList() const { return pricesList; }
    WG::CParameterCell* getVolumeCell() const { return volumeCell; }
    WG::CRadioButtonGroup* getSellModeGroup() const { return sellModeGroup; }
    QString positionText(int which) const;  // 0 long, 1 short, 2 net
    QString currentCode() const;
    long long workingVolume(const QString& priceText, bool isBuy) const;
    const std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>>& getAccounts() const { return accounts; }
    QString getAccountGroup() const { return accountGroup; }

signals:
    void sigLatestPrice(const TC::CPriceDataPtr& price);
    void sigPositionStatics(const nqservice::IDataPtr& record);
    void sigOrderDetail(const nqservice::IDataPtr& record);

private slots:
    void slotLatestPrice(const TC::CPriceDataPtr& price);
    void slotPositionStatics(const nqservice::IDataPtr& record);
    void slotOrderDetail(const nqservice::IDataPtr& record);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    using OrderMap = QMap<quint64, boost::shared_ptr<nqservice::COrderDetail>>;

    void createUi();
    void subscribeAccount(const std::string& key);
    void applyOrder(const QString& priceText, const boost::shared_ptr<nqservice::COrderDetail>& order);
    void refreshWorkingVolumes();
    void rebuildPositions();
    void takePosition(const nqservice::CPositionStatics& record);
    void showPositions();
    // The limit per order at a fixed price, with the question of a larger one; false stops the order.
    bool checkLimit(const std::shared_ptr<nqservice::CInstrumentDetail>& detail, long long volume);
    void warn(const QString& text);

    CPriceTQuickOrderTable* priceTable = nullptr;
    CQuotesPricesList* pricesList = nullptr;
    WG::CParameterCell* volumeCell = nullptr;
    WG::CRadioButtonGroup* sellModeGroup = nullptr;
    QMap<int, WG::CSimpleTextWidget*> positionLabels;
    boost::shared_ptr<TC::CQuoteRequest> quoteRequest;
    std::vector<boost::shared_ptr<nqservice::SubRequest>> accountSubscriptions;
    std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>> accounts;
    QString accountGroup;
    std::map<std::string, utils::TStringMapSum<long long>> longByAccount;
    std::map<std::string, utils::TStringMapSum<long long>> shortByAccount;
    std::map<QString, QMap<QString, utils::TStringMapSum<long long>>> buyVolumes;
    std::map<QString, QMap<QString, utils::TStringMapSum<long long>>> sellVolumes;
    std::map<QString, QMap<QString, OrderMap>> buyOrders;
    std::map<QString, QMap<QString, OrderMap>> sellOrders;
};

}  // namespace TC

Q_DECLARE_METATYPE(TC::CPriceDataPtr)
Q_DECLARE_METATYPE(nqservice::IDataPtr)
