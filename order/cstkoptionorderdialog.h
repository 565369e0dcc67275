// The quick order of the strategy pages for one or two stock option legs:
// each leg with its order widget and quote picture, "下单" sends both legs as
// one command. Made anew for each press; the caller moves, shows and raises it.
// Quotes come on service threads and reach the widgets on the GUI thread only,
// the newest per code.
#pragma once

#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/userrecords.h"
#include "toolkit/ccommondialog.h"

#include <QList>
#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <mutex>

namespace TC {

class CColorKeyButton;
class CQuotesGraphWidget;
class CStkOptionOrderWidget;

class CStkOptionOrderDialog : public WG::CCommonDialog {
    Q_OBJECT
public:
    enum EWidgetId {
        ID_CANCEL_BUTTON = 6,
        ID_ORDER_BUTTON = 7,
    };

    CStkOptionOrderDialog(int legCount, QWidget* parent);
    ~CStkOptionOrderDialog() override;

    // The first leg to the first widget, the second (if any) to the second; subscribes their quotes.
    void setLegs(const QList<CStrategyStockData>& legs);

    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    int getLegCount() const { return legCount; }
    CStkOptionOrderWidget* getOrderWidget(int leg) const { return leg == 0 ? firstWidget : secondWidget; }
    CQuotesGraphWidget* getQuotesWidget(int leg) const { return leg == 0 ? firstQuotes : secondQuotes; }
    CColorKeyButton* getCancelButton() const { return cancelButton; }
    CColorKeyButton* getOrderButton() const { return orderButton; }

signals:
    // A quote reached the widgets (GUI thread).
    void sigPriceApplied(QString key);

private slots:
    void applyPending();

private:
    void createUi();
    // Any thread.
    void onPrice(boost::shared_ptr<TC::CPriceData>& price);
    void applyPrice(const boost::shared_ptr<TC::CPriceData>& price);
    void confirm();

    int legCount = 1;
    boost::shared_ptr<CQuoteRequest> firstRequest;
    boost::shared_ptr<CQuoteRequest> secondRequest;
    CStkOptionOrderWidget* firstWidget = nullptr;
    CStkOptionOrderWidget* secondWidget = nullptr;
    CQuotesGraphWidget* firstQuotes = nullptr;
    CQuotesGraphWidget* secondQuotes = nullptr;
    CColorKeyButton* cancelButton = nullptr;
    CColorKeyButton* orderButton = nullptr;

    // What came on other threads, the newest per code, waiting for the GUI thread.
    std::mutex pendingMutex;
    QMap<QString, boost::shared_ptr<TC::CPriceData>> pendingPrices;
    bool pendingPosted = false;
};

}  // namespace TC
