#include "strategy/coptionstrategypanel.h"

#include "seam/tradingenums.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "order/cstkoptionmultiorderdialog.h"
#include "order/cstkoptionorderdialog.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitandlosswebview.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategymanagetable.h"
#include "strategy/cstrategymanagetree.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cquotesaddinstrumentwidget.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/csplitcontainer.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/cwidgetlist.h"

#include <QCursor>
#include <QGuiApplication>
#include <QResizeEvent>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

namespace TC {

namespace {
constexpr int kTreeWidth = 150;
}  // namespace

COptionStrategyPanel::COptionStrategyPanel(int widgetID, QWidget* parent)
    : ITradeDockableWidget(false, QStringLiteral("ops"), widgetID,
                           TraderTypeFlags(nqservice::VQ_TRADER_TYPE_STOCK_OPTION), parent)
{
    setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    createUi();
}

COptionStrategyPanel::~COptionStrategyPanel() = default;

void COptionStrategyPanel::createUi()
{
    outerSplit = new WG::CSplitContainer(Qt::Vertical, 1, this);
    innerSplit = new WG::CSplitContainer(Qt::Horizontal, 1, outerSplit);

    auto* left = new WG::CWidgetList(Qt::Vertical, innerSplit);
    left->setMargin(0, 0, 0, 0);
    left->setSpacing(0);
    tree = new CStrategyManageTree(left);
    left->addStretchWidget(tree, 1, WG::WA_FILL);

    auto* right = new WG::CWidgetList(Qt::Vertical, innerSplit);
    right->setMargin(0, 0, 0, 0);
    right->setSpacing(0);
    toolBar = new WG::CAutoExpandToolBar("", 4, 4, 4, 4, right);
    codeEntry = new CQuotesAddInstrumentWidget(ID_CODE_ENTRY, toolBar);
    codeEntry->setStockCodeLineEditEmptyHintFontColor(QStringLiteral("clr_opselectcodewidget_color"));
    codeEntry->setStockCodeLineEditEmptyHintFontKey(QStringLiteral("fnt_default_normal_fix"));
    codeEntry->setStcokCodeLineEditTextFontKey(QStringLiteral("fnt_default_normal_fix"));
    codeEntry->setMinimumWidth(180);
    codeEntry->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    toolBar->addToolItem(codeEntry);
    toolBar->addSeperator();
    const struct {
        int id;
        const char* text;
        int width;
    } buttons[] = {{ID_DELETE, "删除", 35}, {ID_CHECK_ALL, "全选", 35}, {ID_INVERT, "反选", 35},
                   {ID_QUICK_ORDER, "快速下单", 60}};
    for (const auto& def : buttons) {
        auto* button = new WG::CSmallNoNormalButton(def.id, false, WG::NBT_NORMAL, QString::fromUtf8(def.text), toolBar);
        button->setFixedSize(def.width, 20);
        toolBar->addToolItem(button);
        toolButtons << button;
    }
    right->addFixedWidget(toolBar, WG::WA_FILL);
    table = new CStrategyManageTable(8, right);
    right->addStretchWidget(table, 1, WG::WA_FILL);
    winner = new COptionWinnerWidget(right);
    right->addStretchWidget(winner, 1, WG::WA_FILL);
    winner->hide();

    // The tree keeps its width; the table takes the rest.
    innerSplit->setWidgets(left, right, false, 0);
    innerSplit->splitter()->setStretchFactor(0, 0);
    innerSplit->splitter()->setStretchFactor(1, 1);
    innerSplit->splitter()->setSizes({kTreeWidth, 800});

    bottomList = new WG::CWidgetList(Qt::Vertical, outerSplit);
    bottomList->setMargin(0, 0, 0, 0);
    bottomList->setSpacing(0);
    analysis = new CProfitLossAnalysisWidget(bottomList);
    bottomList->addFixedWidget(analysis, WG::WA_FILL);
    analysis->hide();
    winner->setAnalysisWidget(analysis);
    if (getConfig()->useWebView()) {
        // Parentless until the bottom list takes it.
        curve = new CProfitAndLossWebView();
        curve->setObjectName(QStringLiteral("profitAndLossWebView"));
        connect(this, &COptionStrategyPanel::sigSelected, curve, &CProfitAndLossWebView::slotSelected);
        connect(this, &COptionStrategyPanel::sigBSChanged, curve, &CProfitAndLossWebView::slotBSChanged);
        bottomList->addStretchWidget(curve, 1, WG::WA_FILL);
    }

    outerSplit->setSpliterVisible(true);
    outerSplit->setWidgets(innerSplit, bottomList, true, 260);
    updateBottomVisibility();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(outerSplit);
}

WG::CSmallNoNormalButton* COptionStrategyPanel::getToolButton(int id) const
{
    for (WG::CSmallNoNormalButton* button : toolButtons) {
        if (button->id() == id) {
            return button;
        }
    }
    return nullptr;
}

bool COptionStrategyPanel::isWinnerFace() const { return winner != nullptr && !winner->isHidden(); }

void COptionStrategyPanel::setParam(const QString& param)
{
    const QStringList parts = param.split(QLatin1Char('|'), Qt::KeepEmptyParts);
    QString basket;
    if (tree != nullptr) {
        tree->reload(QString());
        basket = tree->currentBasketName();
    }
    if (!parts.isEmpty() && table != nullptr) {
        table->loadConfigStr(parts.at(0));
        if (!basket.isEmpty()) {
            table->loadBasket(basket);
        }
        table->adjustColumnWidth();
    }
    if (curve != nullptr && outerSplit != nullptr) {
        curve->chartWidth = 750;
        curve->loadData();
    }
    if (parts.size() >= 2 && winner != nullptr && winner->getTable() != nullptr) {
        winner->getTable()->loadConfigStr(parts.at(1));
    }
}

QString COptionStrategyPanel::param()
{
    QStringList parts;
    if (table != nullptr) {
        parts << table->saveConfigStr();
    }
    if (winner != nullptr) {
        parts << (winner->getTable() != nullptr ? winner->getTable()->saveConfigStr() : QString());
    }
    return parts.join(QLatin1Char('|'));
}

void COptionStrategyPanel::updateGreek()
{
    if (table != nullptr) {
        table->updateGreek();
    }
}

void COptionStrategyPanel::resizeEvent(QResizeEvent* event)
{
    ITradeDockableWidget::resizeEvent(event);
    if (curve != nullptr) {
        curve->loadData();
    }
}

void COptionStrategyPanel::themeChanged()
{
    if (tree != nullptr) {
        tree->setStyleSheet(WG::CStyleSheetCenter::getStyle(WG::SS_TREEWIDGET));
    }
}

void COptionStrategyPanel::clearCurve()
{
    if (curve != nullptr) {
        curve->legOperations.clear();
        curve->hide();
    }
}

void COptionStrategyPanel::reemitWinnerSelection()
{
    if (winner == nullptr) {
        return;
    }
    const bool sold = winner->getPredictDirection() == WPD_RANGE;
    for (const QString& key : winner->getCheckedRowKeys()) {
        emit sigSelected(true, key);
        if (sold) {
            emit sigBSChanged(nqservice::OT_SELL, key);
        }
    }
}

void COptionStrategyPanel::updateBottomVisibility()
{
    // Without a curve the bottom holds only the winner's analysis: it shows with that face.
    if (bottomList != nullptr) {
        bottomList->setVisible(curve != nullptr || (analysis != nullptr && !analysis->isHidden()));
    }
}

void COptionStrategyPanel::widthStep()
{
    if (curve == nullptr || outerSplit == nullptr) {
        return;
    }
    const int width = outerSplit->getSecondWidth();
    if (width >= 0) {
        curve->chartWidth = width;
        curve->loadData();
    }
}

bool COptionStrategyPanel::handleEvent(int type, int id, int value, QString text, void* data)
{
    switch (type) {
    case WG::UE_BUTTON_CLICKED:
        if (table != nullptr) {
            if (id == ID_DELETE) {
                table->deleteChecked();
            } else if (id == ID_CHECK_ALL) {
                table->checkAll();
            } else if (id == ID_INVERT) {
                table->invertChecked();
            }
        }
        if (id == ID_QUICK_ORDER) {
            quickOrder();
        }
        return true;
    case 73:
    case 100:
        clearCurve();
        reemitWinnerSelection();
        return true;
    case 271:
        widthStep();
        return ITradeDockableWidget::handleEvent(type, id, value, text, data);
    case WG::UE_ADD_INSTRUMENT:
        addCode(text);
        return true;
    case CStrategyManageTree::UE_STRATEGY_CHOSEN:
        switchFace(value, text);
        return true;
    case CStrategyManageTree::UE_STRATEGY_REMOVED:
    case CStrategyManageTree::UE_STRATEGY_RENAMED:
        if (table != nullptr) {
            table->clear();
        }
        if (tree != nullptr) {
            tree->reload(text);
        }
        clearCurve();
        return true;
    case CStrategyManageTree::UE_STRATEGY_CREATED:
        if (tree != nullptr) {
            tree->reload(text);
            tree->select(text);
        }
        clearCurve();
        return true;
    case CStrategyManageTable::UE_LEGS_CHANGED:
        return true;
    case CStrategyManageTable::UE_LEG_SELECTED:
        if (curve != nullptr && !text.isEmpty()) {
            emit sigSelected(value == 2, text);
        }
        return true;
    case CStrategyManageTable::UE_LEG_BS_CHANGED:
        if (curve == nullptr) {
            return ITradeDockableWidget::handleEvent(type, id, value, text, data);
        }
        if (!text.isEmpty()) {
            emit sigBSChanged(value, text);
        }
        widthStep();
        return ITradeDockableWidget::handleEvent(type, id, value, text, data);
    default:
        return ITradeDockableWidget::handleEvent(type, id, value, text, data);
    }
}

void COptionStrategyPanel::addCode(const QString& key)
{
    const QString basket = tree != nullptr ? tree->currentBasketName() : QString();
    if (!basket.isEmpty()) {
        if (table != nullptr) {
            table->addKey(key);
        }
        return;
    }
    if (codeEntry != nullptr) {
        WG::CMessageTip::showTip(codeEntry, 64, QStringLiteral("请选择已存在篮子或者新建篮子"), 3, 300);
    }
}

void COptionStrategyPanel::switchFace(int itemType, const QString& name)
{
    if (table == nullptr || toolBar == nullptr || winner == nullptr || analysis == nullptr) {
        return;
    }
    if (itemType == CStrategyManageTree::IT_WINNER_BRANCH) {
        toolBar->hide();
        table->hide();
        winner->show();
        analysis->show();
        updateBottomVisibility();
        clearCurve();
        reemitWinnerSelection();
        return;
    }
    toolBar->show();
    table->show();
    winner->hide();
    analysis->hide();
    updateBottomVisibility();
    clearCurve();
    const TStrategyMap baskets = CStrategyBaskets::copy();
    if (name.isEmpty()) {
        table->clearRowByKey();
        table->clear();
        table->setCurrentBasket(QString());
    } else if (baskets.contains(name)) {
        table->loadBasket(name);
    }
    // The table's load ticked the legs into the curve: draw them.
    if (curve != nullptr) {
        curve->loadData();
    }
}

void COptionStrategyPanel::quickOrder()
{
    if (table == nullptr) {
        return;
    }
    CUserConfig* config = getUserConfig();
    const int role = config != nullptr ? config->getUserDataInt(UM_USER_ROLE) : 0;
    if (role == 200 || role == 102) {
        return;  // these roles place no orders here, and are told nothing
    }
    QList<CStrategyStockData*> legs;
    table->getCheckedLegs(legs);
    if (legs.isEmpty()) {
        WG::CMessageBox::warning(nullptr, this, QStringLiteral("提示"), QStringLiteral("请选择策略"),
                                 QMessageBox::StandardButtons(1024));
        return;
    }
    openOrderDialog(legs);
    qDeleteAll(legs);
}

void COptionStrategyPanel::openOrderDialog(const QList<CStrategyStockData*>& legs)
{
    QList<CStrategyStockData> copies;
    for (const CStrategyStockData* leg : legs) {
        // The order dialogs look a leg's instrument up by its code field, which they take as the stock key.
        CStrategyStockData copy = *leg;
        copy.code = CStrategyBaskets::legKey(*leg);
        copies << copy;
    }
    QDialog* dialog = nullptr;
    if (copies.size() <= 2) {
        auto* stockDialog = new CStkOptionOrderDialog(copies.size(), this);
        stockDialog->setLegs(copies);
        // The dialog stays where the window system puts it, where traders are used to finding it.
        dialog = stockDialog;
    } else {
        auto* multiDialog = new CStkOptionMultiOrderDialog(this);
        multiDialog->setLegs(copies);
        dialog = multiDialog;
    }
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    lastOrderDialog = dialog;
    dialog->show();
    dialog->raise();
}

}  // namespace TC
