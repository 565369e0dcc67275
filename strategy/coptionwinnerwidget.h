// The option winner: an underlying and a forecast give every option or
// put-call pair that fits the levels and expiry window stored for them, kept
// priced by a one-second timer while the widget is shown. The checked row
// fills the analysis widget, names the legs for the curve and goes to a quick
// order. Quote callbacks only note the key under the lock; the timer applies.
#pragma once

#include "seam/cquoterequest.h"
#include "strategy/coptionwinnertabledata.h"
#include "toolkit/cbasewidget.h"

#include <QMap>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <boost/shared_ptr.hpp>

#include <mutex>

namespace WG {
class CAutoExpandToolBar;
class CComboBox;
class CSmallNoNormalButton;
class CWidgetList;
}

namespace TC {

class COptionUndlCodeComboBox;
class COptionWinnerTable;
class CProfitLossAnalysisWidget;
class CStkOptionOrderDialog;
class CStrategyStockData;

class COptionWinnerWidget : public WG::CBaseWidget {
    Q_OBJECT
public:
    // Ids of the controls.
    enum EControlId { WID_UNDERLYING = 0, WID_FORECAST = 1, WID_QUICK_ORDER = 2 };
    // Delivered upward when the choice changed: arg the forecast, text the
    // underlying's key, data a QString* holding the row key. Nothing here listens.
    static constexpr int kChoiceChangedEvent = 1275;

    explicit COptionWinnerWidget(QWidget* parent);
    ~COptionWinnerWidget() override;

    // The forecast chosen (TC::EWinnerPredictDirection); 0 without a combo.
    int getPredictDirection() const;
    // The option keys of the checked row, the put first in a pair; empty when none is checked.
    QStringList getCheckedRowKeys() const;
    // The table's layout only; the underlying and forecast are not kept.
    QString param() const;
    void setParam(const QString& param);
    // The analysis widget is the panel's; when a row is checked it is filled at once.
    void setAnalysisWidget(CProfitLossAnalysisWidget* widget);
    CProfitLossAnalysisWidget* getAnalysisWidget() const { return analysisWidget; }

    COptionWinnerTable* getTable() const { return table; }
    COptionUndlCodeComboBox* getUnderlyingCombo() const { return underlyingCombo; }
    WG::CComboBox* getForecastCombo() const { return forecastCombo; }
    // The record of the checked row; null when none.
    COptionWinnerTableDataPtr checkedRecord() const;
    // The legs of the checked row as a quick order takes them; empty when none.
    QList<CStrategyStockData> checkedLegs() const;
    // Contracts subscribed for the shown candidates.
    QStringList subscribedKeys() const { return quoteRequests.keys(); }
    // The quick order dialog of the last press; null when none is open.
    CStkOptionOrderDialog* lastOrderDialog() const;
    // Keys with a quote since the last tick.
    int dirtyKeyCount() const;

    // Drops subscriptions and pending keys and builds the candidates afresh
    // (steps 1 and 2 of a changed choice).
    void rebuild();

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

signals:
    // The checked candidate's option keys (put first in a pair) and their
    // operation (18 buy, 19 sell): what the payoff curve draws.
    void sigSelectedLegs(const QStringList& keys, int operation);

public slots:
    void slotTimeOut();
    void slotWinnerSettingChanged(const QString& underlying, int direction);

private:
    void createUi();
    void buildCandidates();
    void subscribe(const QString& key);
    void onQuote(const boost::shared_ptr<CPriceData>& data);
    void choiceChanged(int id);
    void rowChosen(int row);
    // Delivers 1275, fills the analysis widget and names the legs for the curve.
    void announceChoice(const COptionWinnerTableDataPtr& record);
    void fillAnalysis(const COptionWinnerTableDataPtr& record);
    void quickOrder();
    QString currentUnderlying() const;

    WG::CWidgetList* list = nullptr;
    WG::CAutoExpandToolBar* toolBar = nullptr;
    COptionUndlCodeComboBox* underlyingCombo = nullptr;
    WG::CComboBox* forecastCombo = nullptr;
    WG::CSmallNoNormalButton* orderButton = nullptr;
    COptionWinnerTable* table = nullptr;
    CProfitLossAnalysisWidget* analysisWidget = nullptr;  // not owned
    QPointer<QWidget> orderDialog;

    // Declared before the handles: the handles go first, so no callback runs
    // into a lock or set already gone.
    mutable std::recursive_mutex lock;
    QSet<QString> dirtyKeys;  // guarded by lock
    QMap<QString, boost::shared_ptr<CQuoteRequest>> quoteRequests;
    QTimer timer;
};

}  // namespace TC
