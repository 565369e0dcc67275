#include "strategy/coptionwinnerwidget.h"

#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/uievents.h"
#include "order/cstkoptionorderdialog.h"
#include "seam/user.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "strategy/cwinnercandidatebuilder.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/cuiresource.h"
#include "toolkit/cwidgetlist.h"

#include <QVBoxLayout>

#include <vector>

namespace TC {

namespace {

const int kRoleNoOrder[] = {200, 102};

}  // namespace

COptionWinnerWidget::COptionWinnerWidget(QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("option_winner_widget"), false, parent)
{
    createUi();
    // Filling the combo chooses the first forecast, which builds the first candidates.
    const QStringList forecasts = {QStringLiteral("看涨"), QStringLiteral("看跌"), QStringLiteral("突破"),
                                   QStringLiteral("盘整")};
    for (int direction = 0; direction < forecasts.size(); ++direction) {
        forecastCombo->addItem(forecasts.at(direction), direction);
    }
    timer.setInterval(1000);
    connect(&timer, &QTimer::timeout, this, &COptionWinnerWidget::slotTimeOut);
    timer.start();
    if (CUserConfig* config = getUserConfig()) {
        connect(config, &CUserConfig::sigWinnerSettingChanged, this, &COptionWinnerWidget::slotWinnerSettingChanged);
    }
}

COptionWinnerWidget::~COptionWinnerWidget()
{
    timer.stop();
    // Handles first, outside the lock: a callback in flight finishes before they go.
    quoteRequests.clear();
}

void COptionWinnerWidget::createUi()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    list = new WG::CWidgetList(Qt::Vertical, this);
    list->setMargin(0, 0, 0, 0);
    list->setSpacing(0);
    layout->addWidget(list);

    const int barHeight = WG::CUiResource::get()->getSize(QStringLiteral("siz_tool_bar_size"));
    toolBar = new WG::CAutoExpandToolBar("tc_img_op_hedge_type_bg", 2, 4, 2, 4, list);
    auto* undlText = new WG::CSimpleTextWidget(false, -1, QStringLiteral("期权标的: "), toolBar);
    undlText->setFixedHeight(barHeight);
    toolBar->addToolItem(undlText);
    underlyingCombo = new COptionUndlCodeComboBox(WID_UNDERLYING, toolBar);
    underlyingCombo->setMinimumWidth(82);
    underlyingCombo->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    toolBar->addToolItem(underlyingCombo);
    auto* forecastText = new WG::CSimpleTextWidget(false, -1, QStringLiteral("涨跌预测: "), toolBar);
    forecastText->setFixedHeight(barHeight);
    toolBar->addToolItem(forecastText);
    forecastCombo = new WG::CComboBox(WID_FORECAST, toolBar);
    forecastCombo->setFixedWidth(82);
    toolBar->addToolItem(forecastCombo);
    orderButton = new WG::CSmallNoNormalButton(WID_QUICK_ORDER, false, WG::NBT_NORMAL, QStringLiteral("快速下单"),
                                               toolBar);
    orderButton->setFixedSize(60, 20);
    toolBar->addToolItem(orderButton);
    list->addFixedWidget(toolBar, WG::WA_FILL, false);

    table = new COptionWinnerTable(list);
    // Columns stay where the two sets put them: the column numbers are the table's meaning.
    table->setFlag(table->flag() & ~WG::EBaseTableFlags(QFlag(8)));
    list->addStretchWidget(table, 1, WG::WA_FILL, false);
    list->updateWidgetLength();
}

int COptionWinnerWidget::getPredictDirection() const
{
    return forecastCombo != nullptr ? forecastCombo->currentData().toInt() : 0;
}

QString COptionWinnerWidget::currentUnderlying() const
{
    return underlyingCombo != nullptr ? underlyingCombo->currentData().toString() : QString();
}

COptionWinnerTableDataPtr COptionWinnerWidget::checkedRecord() const
{
    return table != nullptr ? table->record(table->checkedRow()) : COptionWinnerTableDataPtr();
}

QStringList COptionWinnerWidget::getCheckedRowKeys() const
{
    const COptionWinnerTableDataPtr record = checkedRecord();
    if (!record) {
        return {};
    }
    if (table->getMode() < 2) {
        return {record->rowKey};
    }
    return record->rowKey.split(QLatin1Char('|'));
}

QList<CStrategyStockData> COptionWinnerWidget::checkedLegs() const
{
    QList<CStrategyStockData> legs;
    const COptionWinnerTableDataPtr record = checkedRecord();
    if (!record) {
        return legs;
    }
    const auto leg = [](const QString& code, const QString& name, int operation, int quantity) {
        CStrategyStockData out;
        out.code = code;
        out.name = name;
        out.operation = static_cast<nqservice::EOperationType>(operation);
        out.quantity = quantity;
        return out;
    };
    legs << leg(record->codeOne, record->nameOne, record->operationOne, record->quantityOne);
    const int direction = getPredictDirection();
    if (direction == WPD_BREAK || direction == WPD_RANGE) {
        legs << leg(record->codeTwo, record->nameTwo, record->operationTwo, record->quantityTwo);
    }
    return legs;
}

QString COptionWinnerWidget::param() const { return table != nullptr ? table->saveConfigStr() : QString(); }

void COptionWinnerWidget::setParam(const QString& param)
{
    if (table != nullptr) {
        table->loadConfigStr(param);
    }
}

void COptionWinnerWidget::setAnalysisWidget(CProfitLossAnalysisWidget* widget)
{
    analysisWidget = widget;
    fillAnalysis(checkedRecord());
}

CStkOptionOrderDialog* COptionWinnerWidget::lastOrderDialog() const
{
    return qobject_cast<CStkOptionOrderDialog*>(orderDialog.data());
}

int COptionWinnerWidget::dirtyKeyCount() const
{
    std::lock_guard<std::recursive_mutex> guard(lock);
    return dirtyKeys.size();
}

// ---- building ----

void COptionWinnerWidget::subscribe(const QString& key)
{
    const TQuoteCallback callback = [this](boost::shared_ptr<CPriceData>& data) { onQuote(data); };
    quoteRequests[key] = CQuoteRequest::makeHandicapRequest(key, callback, ST_DEFAULT);
}

void COptionWinnerWidget::onQuote(const boost::shared_ptr<CPriceData>& data)
{
    if (!data) {
        return;
    }
    const QString key = QString::fromStdString(utils::vqStockKey(data->market, data->code));
    std::lock_guard<std::recursive_mutex> guard(lock);
    dirtyKeys.insert(key);
}

void COptionWinnerWidget::buildCandidates()
{
    if (table == nullptr) {
        return;
    }
    table->clear();
    const int direction = getPredictDirection();
    const QString undl = currentUnderlying();
    if (undl.isEmpty()) {
        return;
    }
    CWinnerSetting setting;
    if (CUserConfig* config = getUserConfig()) {
        config->getWinnerSetting(undl, static_cast<EWinnerPredictDirection>(direction), setting);
    }
    const CWinnerCandidates candidates = CWinnerCandidateBuilder::build(
        utils::CManualSingletonT<CExchangeClient>::instance(), undl, direction, setting);
    for (const QString& key : candidates.passedKeys) {
        subscribe(key);
    }
    for (const COptionWinnerTableDataPtr& row : candidates.rows) {
        table->addRecord(row);
    }
    table->updateTable();
    table->fitColumns();
}

void COptionWinnerWidget::rebuild()
{
    // Dropped outside the lock: a callback in flight takes it.
    QMap<QString, boost::shared_ptr<CQuoteRequest>> old;
    old.swap(quoteRequests);
    old.clear();
    {
        std::lock_guard<std::recursive_mutex> guard(lock);
        dirtyKeys.clear();
    }
    buildCandidates();
}

// ---- events ----

void COptionWinnerWidget::choiceChanged(int id)
{
    if (underlyingCombo == nullptr || forecastCombo == nullptr || table == nullptr) {
        return;
    }
    if (id == WID_FORECAST) {
        table->setMode(getPredictDirection());
    }
    rebuild();
    if (isVisible()) {
        announceChoice(checkedRecord());
    }
}

void COptionWinnerWidget::rowChosen(int row)
{
    if (underlyingCombo == nullptr || forecastCombo == nullptr || table == nullptr) {
        return;
    }
    if (const COptionWinnerTableDataPtr record = table->record(row)) {
        announceChoice(record);
    }
}

void COptionWinnerWidget::announceChoice(const COptionWinnerTableDataPtr& record)
{
    QString rowKey = record ? record->rowKey : QString();
    deliverEvent(kChoiceChangedEvent, 0, getPredictDirection(), currentUnderlying(), &rowKey);
    fillAnalysis(record);
    emit sigSelectedLegs(getCheckedRowKeys(), CWinnerCandidateBuilder::operationOf(getPredictDirection()));
}

void COptionWinnerWidget::fillAnalysis(const COptionWinnerTableDataPtr& record)
{
    if (analysisWidget == nullptr || !record) {
        return;
    }
    analysisWidget->texts.fill(*record, getPredictDirection(), CWinnerCandidateBuilder::segmentedFlags());
    analysisWidget->update();
}

void COptionWinnerWidget::slotWinnerSettingChanged(const QString& underlying, int direction)
{
    if (underlyingCombo == nullptr || forecastCombo == nullptr) {
        return;
    }
    if (underlying == currentUnderlying() && direction == getPredictDirection()) {
        rebuild();
    }
}

void COptionWinnerWidget::slotTimeOut()
{
    if (!isActive() && !isVisible()) {
        return;
    }
    if (underlyingCombo == nullptr || table == nullptr || underlyingCombo->currentText().isEmpty()) {
        return;
    }
    QSet<int> rows;
    {
        std::lock_guard<std::recursive_mutex> guard(lock);
        for (const QString& key : qAsConst(dirtyKeys)) {
            rows.unite(table->rowsOfCode(key));
        }
        dirtyKeys.clear();
    }
    if (rows.isEmpty()) {
        return;
    }
    const int checked = table->checkedRow();
    const int direction = getPredictDirection();
    const WG::FormatFlags flags = CWinnerCandidateBuilder::segmentedFlags();
    for (int row : qAsConst(rows)) {
        const COptionWinnerTableDataPtr record = table->record(row);
        if (!record || !CWinnerCandidateBuilder::reprice(*record, direction, flags)) {
            continue;
        }
        table->updateRow(row);
        if (row == checked) {
            fillAnalysis(record);
        }
    }
    table->updateTable();
}

void COptionWinnerWidget::quickOrder()
{
    if (table == nullptr) {
        return;
    }
    if (CUserConfig* config = getUserConfig()) {
        const int role = config->getUserDataInt(UM_USER_ROLE);
        for (int refused : kRoleNoOrder) {
            if (role == refused) {
                return;
            }
        }
    }
    const QList<CStrategyStockData> legs = checkedLegs();
    if (legs.isEmpty()) {
        WG::CMessageBox::warning(nullptr, this, QStringLiteral("提示"), QStringLiteral("请选择合约"),
                                 QMessageBox::StandardButton(1024));
        return;
    }
    // A dialog per press, the widget its parent; it stays where the window system puts it.
    auto* dialog = new CStkOptionOrderDialog(legs.size(), this);
    dialog->setLegs(legs);
    dialog->show();
    dialog->raise();
    orderDialog = dialog;
}

bool COptionWinnerWidget::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == WG::UE_BUTTON_CLICKED && id == WID_QUICK_ORDER) {
        quickOrder();
        return true;
    }
    if (code == WG::UE_COMBO_CHANGED && id < 2) {
        choiceChanged(id);
        // Handled here, and on to the panel, which redraws the curve from the new choice.
        WG::CBaseWidget::handleEvent(code, id, arg, text, data);
        return false;
    }
    if (code == COptionWinnerTable::kRowChosenEvent) {
        rowChosen(id);
        WG::CBaseWidget::handleEvent(code, id, arg, text, data);
        return false;
    }
    return WG::CBaseWidget::handleEvent(code, id, arg, text, data);
}

}  // namespace TC
