// The strategy workbench ("ops"): the basket tree beside either the basket
// face (tool strip with the code entry and the strategy table) or the winner
// face (option winner and its analysis), with the payoff curve below when the
// client uses a web view. A frame and a dispatcher: it builds the widgets,
// receives every event they deliver and moves the selection between them.
#pragma once

#include "seam/userrecords.h"
#include "toolkit/itradedockablewidget.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QString>

class QResizeEvent;

namespace WG {
class CAutoExpandToolBar;
class CSmallNoNormalButton;
class CSplitContainer;
class CWidgetList;
}  // namespace WG

namespace TC {

class CProfitAndLossWebView;
class COptionWinnerWidget;
class CProfitLossAnalysisWidget;
class CQuotesAddInstrumentWidget;
class CStrategyManageTable;
class CStrategyManageTree;

class COptionStrategyPanel : public ITradeDockableWidget {
    Q_OBJECT
public:
    // Ids of the tool strip.
    enum EToolId {
        ID_CODE_ENTRY = 2,
        ID_DELETE = 4,
        ID_CHECK_ALL = 5,
        ID_INVERT = 6,
        ID_QUICK_ORDER = 9,
    };

    COptionStrategyPanel(int widgetID, QWidget* parent);
    ~COptionStrategyPanel() override;

    void setParam(const QString& param) override;
    QString param() override;
    bool handleEvent(int type, int id, int value, QString text, void* data) override;
    void themeChanged() override;
    // Margin and Greeks of the table afresh; the host calls it.
    void updateGreek();

    CStrategyManageTree* getTree() const { return tree; }
    CStrategyManageTable* getTable() const { return table; }
    CQuotesAddInstrumentWidget* getCodeEntry() const { return codeEntry; }
    CProfitAndLossWebView* getCurve() const { return curve; }
    WG::CSplitContainer* getOuterSplit() const { return outerSplit; }
    WG::CAutoExpandToolBar* getToolBar() const { return toolBar; }
    COptionWinnerWidget* getWinner() const { return winner; }
    CProfitLossAnalysisWidget* getAnalysis() const { return analysis; }
    WG::CSmallNoNormalButton* getToolButton(int id) const;
    // The order dialog the last quick order opened; null once it has closed.
    QDialog* getLastOrderDialog() const { return lastOrderDialog.data(); }
    // Whether the winner face shows.
    bool isWinnerFace() const;

signals:
    // A leg enters (true) or leaves (false) the curve.
    void sigSelected(bool selected, QString code);
    // A leg's side changed: 18 buy, 19 sell.
    void sigBSChanged(int side, QString code);

protected:
    void createUi();
    void resizeEvent(QResizeEvent* event) override;

private:
    void quickOrder();
    // Opens the order dialog for the legs; the legs stay the caller's.
    void openOrderDialog(const QList<CStrategyStockData*>& legs);
    void addCode(const QString& key);
    void switchFace(int itemType, const QString& name);
    void clearCurve();
    void reemitWinnerSelection();
    void widthStep();
    void updateBottomVisibility();

    CStrategyManageTree* tree = nullptr;
    CStrategyManageTable* table = nullptr;
    CQuotesAddInstrumentWidget* codeEntry = nullptr;
    CProfitAndLossWebView* curve = nullptr;  // the one member that may stay null
    WG::CSplitContainer* outerSplit = nullptr;
    WG::CAutoExpandToolBar* toolBar = nullptr;
    COptionWinnerWidget* winner = nullptr;
    CProfitLossAnalysisWidget* analysis = nullptr;

    WG::CSplitContainer* innerSplit = nullptr;
    WG::CWidgetList* bottomList = nullptr;
    QList<WG::CSmallNoNormalButton*> toolButtons;
    QPointer<QDialog> lastOrderDialog;
};

}  // namespace TC
