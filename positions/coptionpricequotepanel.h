// The price quote panel ("pricequote"): every option of one side of an
// underlying in one table, a row per strike and a block of columns per expiry
// month, with a switch of four views, the underlying's figures in the tool bar
// and a header strip that names each month over its block. Quote callbacks only
// store the newest quote per key; all screen work happens on the host's tick.
// It reads no account data and places no order.
#pragma once

#include "seam/cpricedata.h"
#include "positions/chpfpricequotedatatable.h"
#include "seam/cquoterequest.h"
#include "toolkit/itradedockablewidget.h"

#include <QHash>
#include <QMap>
#include <QSize>
#include <QString>

#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <memory>
#include <vector>

namespace nqservice {
class CInstrumentDetail;
}

namespace WG {
class CAutoExpandToolBar;
class CPushButtonGroup;
class CSimpleTextWidget;
class CWidgetList;
}  // namespace WG

namespace TC {

class CHpfPriceQuoteDataModel;
class COptionUndlCodeComboBox;
class CPriceQuoteHeader;

class COptionPriceQuotePanel : public ITradeDockableWidget {
    Q_OBJECT
public:
    // Control ids of the panel's own widgets.
    enum EControlId {
        PQC_VIEW_QUOTE = 0,  // "行情" .. "信息" are 0 to 3
        PQC_VIEW_INFO = 3,
        PQC_CALL = 4,        // "认购"
        PQC_PUT = 5,         // "认沽"
        PQC_NAME = 6,
        PQC_PRICE = 7,
        PQC_CHANGE = 8,
        PQC_RATIO = 9,
        PQC_VOLUME = 10,
        PQC_UNDERLYING = 11,
        PQC_TABLE = 12,
    };

    COptionPriceQuotePanel(int widgetID, QWidget* parent);
    ~COptionPriceQuotePanel() override;

    void setParam(const QString& param) override;
    QString param() override;
    void onTimer(QFlags<TC::ETimerUpdateFlag> flags) override;
    void setTradeType(nqservice::EVqTraderType type) override;
    bool handleEvent(int event, int id, int arg, QString text, void* data) override;

    // Quote callback, on any thread: keeps the newest quote of its key for the next tick.
    void onPriceData(boost::shared_ptr<TC::CPriceData>& price);

    // Read access for the host's tests and tools.
    CHpfPriceQuoteDataTable* getTable() const { return table; }
    CHpfPriceQuoteDataModel* getModel() const { return model; }
    CPriceQuoteHeader* getHeader() const { return header; }
    COptionUndlCodeComboBox* getUnderlyingCombo() const { return underlyingCombo; }
    WG::CPushButtonGroup* getSideGroup() const { return sideGroup; }
    WG::CPushButtonGroup* getViewGroup() const { return viewGroup; }
    WG::CAutoExpandToolBar* getToolBar() const { return toolBar; }
    // The value labels by id (PQC_NAME to PQC_VOLUME), null for other ids.
    WG::CSimpleTextWidget* valueLabel(int id) const;
    const QMap<int, QString>& getViewConfigs() const { return viewConfigs; }
    const QMap<int, int>& getMonthColumns() const { return monthColumns; }
    int flashingRowCount() const { return flashingRows.size(); }
    int pendingPriceCount() const;
    QStringList requestedKeys() const { return quoteRequests.keys(); }
    int currentView() const;
    int getPriceQuoteHeaderWidth(int month) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    virtual void resetLayout(QSize size);

    void createUi();
    void clearUi();
    void doClearRequest();
    // Ends the flashes older than their time; true when one ended and a repaint is due.
    bool clearFlashDataOnTimer();
    void initTableData(const std::shared_ptr<nqservice::CInstrumentDetail>& detail);
    // Rebuilds rows, months and subscriptions for the chosen underlying and side.
    void reloadTableData();
    void updateInstrumentInfo(const boost::shared_ptr<TC::CPriceData>& price);
    void updateTableData(const boost::shared_ptr<TC::CPriceData>& price);

private:
    WG::CSimpleTextWidget* addFigure(const QString& caption, int id, int height);
    void switchView(int view);
    void sizeHeaderCells();
    void dropRequests(QMap<QString, boost::shared_ptr<TC::CQuoteRequest>>& requests);

    WG::CAutoExpandToolBar* toolBar = nullptr;
    WG::CSimpleTextWidget* nameLabel = nullptr;
    WG::CSimpleTextWidget* priceLabel = nullptr;
    WG::CSimpleTextWidget* changeLabel = nullptr;
    WG::CSimpleTextWidget* ratioLabel = nullptr;
    WG::CSimpleTextWidget* volumeLabel = nullptr;
    WG::CPushButtonGroup* sideGroup = nullptr;
    CHpfPriceQuoteDataTable* table = nullptr;
    CHpfPriceQuoteDataModel* model = nullptr;
    COptionUndlCodeComboBox* underlyingCombo = nullptr;
    CPriceQuoteHeader* header = nullptr;
    QMap<QString, boost::shared_ptr<TC::CPriceData>> pendingPrices;
    QMap<QString, boost::shared_ptr<TC::CQuoteRequest>> quoteRequests;
    mutable boost::mutex priceMutex;
    QMap<int, QString> viewConfigs;
    QMap<int, int> monthColumns;
    QHash<QString, bool> flashingRows;

    // Of our own: the view switch and the vertical list that holds the three parts.
    WG::CPushButtonGroup* viewGroup = nullptr;
    WG::CWidgetList* mainList = nullptr;
    // Cells changed in place since the last repaint.
    std::vector<CPriceQuoteCellSpan> changedCells;
    // The model outlives the table that shows it.
    std::unique_ptr<CHpfPriceQuoteDataModel> ownedModel;
};

}  // namespace TC
