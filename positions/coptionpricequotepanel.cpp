#include "positions/coptionpricequotepanel.h"

#include "positions/chpfpricequotedatamodel.h"
#include "positions/chpfpricequotedatatable.h"
#include "positions/cpricequoteheader.h"
#include "positions/cpricequoteheadercell.h"
#include "positions/cpricequoterowbuilder.h"
#include "positions/cpricequoteschema.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/formatters.h"
#include "seam/paramstring.h"
#include "seam/stockcolor.h"
#include "seam/user.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cuiresource.h"
#include "toolkit/cwidgetlist.h"

#include <QResizeEvent>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace TC {

namespace {

using S = CPriceQuoteSchema;

const char* const kInvalidText = "非法值";

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }

int segmentedFlags()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? static_cast<int>(config->getSegmentedFormatFlag()) : 0;
}

}  // namespace

COptionPriceQuotePanel::COptionPriceQuotePanel(int widgetID, QWidget* parent)
    : ITradeDockableWidget(false, QStringLiteral("pricequote"), widgetID,
                           TraderTypeFlags(nqservice::VQ_TRADER_TYPE_STOCK_OPTION) |
                               nqservice::VQ_TRADER_TYPE_FUTURE_OPTION,
                           parent)
{
    createUi();
}

COptionPriceQuotePanel::~COptionPriceQuotePanel()
{
    doClearRequest();
    // The table lets go of the model before the model goes.
    delete table;
    table = nullptr;
    model = nullptr;
    ownedModel.reset();
}

WG::CSimpleTextWidget* COptionPriceQuotePanel::addFigure(const QString& caption, int id, int height)
{
    auto* label = new WG::CSimpleTextWidget(false, -1, caption, toolBar);
    label->setFixedHeight(height);
    auto* value = new WG::CSimpleTextWidget(false, id, QString(), toolBar);
    value->setFixedHeight(height);
    value->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
    toolBar->addToolItem(label);
    toolBar->addToolItem(value);
    toolBar->addFixedSpace(15);
    return value;
}

WG::CSimpleTextWidget* COptionPriceQuotePanel::valueLabel(int id) const
{
    switch (id) {
    case PQC_NAME:
        return nameLabel;
    case PQC_PRICE:
        return priceLabel;
    case PQC_CHANGE:
        return changeLabel;
    case PQC_RATIO:
        return ratioLabel;
    case PQC_VOLUME:
        return volumeLabel;
    default:
        return nullptr;
    }
}

void COptionPriceQuotePanel::createUi()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    mainList = new WG::CWidgetList(Qt::Vertical, this);
    mainList->setMargin(0, 0, 0, 0);
    mainList->setSpacing(0);
    layout->addWidget(mainList);

    WG::CUiResource* resources = WG::CUiResource::get();
    const int barHeight = resources->getSize(QStringLiteral("siz_tool_bar_size"));

    toolBar = new WG::CAutoExpandToolBar("tc_img_op_hedge_type_bg", 2, 8, 2, 8, mainList, -1);

    // The toolkit's button draws an image as an icon beside its text, so the
    // faces of the buttons are theme colours, as on the chain board.
    WG::CButtonColor face;
    face.normal = QStringLiteral("clr_order_operation_background");
    face.hover = QStringLiteral("clr_button_hover");
    face.active = QStringLiteral("clr_button_checked");

    sideGroup = new WG::CPushButtonGroup(Qt::Horizontal, 0, QStringLiteral("clr_order_operation_background"), toolBar);
    sideGroup->setFixedWidth(80);
    const QStringList sideTexts = {QStringLiteral("认购"), QStringLiteral("认沽")};
    for (int i = 0; i < sideTexts.size(); ++i) {
        auto* button = new WG::CPushButton(QString(), PQC_CALL + i, 1, 1, 40, barHeight, 0, sideGroup);
        button->setButtonColor(face);
        button->setText(sideTexts.at(i));
        button->setHorizontalText(true);
        button->setTextColorKey(QStringLiteral("clr_text_default"), QStringLiteral("clr_text_default"),
                                QStringLiteral("clr_param_table_order_mode_active"),
                                QStringLiteral("clr_simple_text_disable"));
        sideGroup->addPushButton(button, i == 0);
    }
    toolBar->addToolItem(sideGroup);

    viewGroup = new WG::CPushButtonGroup(Qt::Horizontal, 0, QStringLiteral("clr_order_operation_background"), toolBar);
    viewGroup->setFixedWidth(160);
    const QStringList viewTexts = {QStringLiteral("行情"), QStringLiteral("指标"), QStringLiteral("风险"),
                                   QStringLiteral("信息")};
    for (int id = 0; id < viewTexts.size(); ++id) {
        viewGroup->addModeButton(viewTexts.at(id), id, barHeight, id == 0);
        viewConfigs[id] = QString();
    }
    toolBar->addToolItem(viewGroup);
    toolBar->addSeperator();

    nameLabel = addFigure(QStringLiteral("标的名称: "), PQC_NAME, barHeight);
    priceLabel = addFigure(QStringLiteral("最新价: "), PQC_PRICE, barHeight);
    changeLabel = addFigure(QStringLiteral("涨跌: "), PQC_CHANGE, barHeight);
    ratioLabel = addFigure(QStringLiteral("涨幅: "), PQC_RATIO, barHeight);
    volumeLabel = addFigure(QStringLiteral("成交量: "), PQC_VOLUME, barHeight);
    mainList->addFixedWidget(toolBar, WG::WA_FILL, false);

    header = new CPriceQuoteHeader(mainList);
    header->setFixedHeight(barHeight);
    underlyingCombo = new COptionUndlCodeComboBox(PQC_UNDERLYING, header);
    underlyingCombo->setFixedSize(82, 18);
    header->getFixedCell()->setChild(underlyingCombo);
    mainList->addFixedWidget(header, WG::WA_FILL, false);

    table = new CHpfPriceQuoteDataTable(PQC_TABLE, mainList, WG::EBaseTableMenuFlags(495));
    // No sorting by the user, no moving of columns, no hover or selection colour:
    // the rows stay in strike order and the month blocks under their header cells.
    table->setFlag((table->flag() & ~WG::EBaseTableFlags(QFlag(41))) | WG::EBaseTableFlags(QFlag(64)));
    ownedModel = std::make_unique<CHpfPriceQuoteDataModel>();
    model = ownedModel.get();
    table->setDataModel(model);
    mainList->addStretchWidget(table, 1, WG::WA_FILL, false);
    mainList->updateWidgetLength();
}

// ---- parameter string ----

int COptionPriceQuotePanel::currentView() const { return table != nullptr ? table->getView() : 0; }

QString COptionPriceQuotePanel::param()
{
    QStringList layouts;
    for (int view = 0; view < S::PQV_COUNT; ++view) {
        layouts << (table != nullptr && view == currentView() ? table->saveConfigStr() : viewConfigs.value(view));
    }
    return CParamString::joinList(layouts);
}

void COptionPriceQuotePanel::setParam(const QString& param)
{
    const QStringList sections = CParamString::sections(param);
    if (sections.isEmpty() || table == nullptr) {
        return;
    }
    const QStringList layouts = sections.at(0).split(CParamString::kListSeparator, Qt::KeepEmptyParts);
    for (int i = 0; i < layouts.size(); ++i) {
        viewConfigs[i] = layouts.at(i);
    }
    // A panel is in its first view when the host hands the string over.
    table->loadConfigStr(viewConfigs.value(0));
}

// ---- selection ----

void COptionPriceQuotePanel::reloadTableData()
{
    if (model == nullptr || table == nullptr || sideGroup == nullptr || header == nullptr || toolBar == nullptr) {
        return;
    }
    table->clear();
    monthColumns.clear();
    flashingRows.clear();
    changedCells.clear();
    header->setMonths(QStringList());

    const QString key = underlyingCombo != nullptr ? underlyingCombo->currentData(Qt::UserRole).toString() : QString();
    if (key.isEmpty()) {
        return;
    }
    CExchangeClient* client = exchange();
    if (client == nullptr) {
        return;
    }
    if (const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(key)) {
        nameLabel->setText(WG::sToQs(detail->name));
        toolBar->updateItemLength();
    }
    const TQuoteCallback callback = [this](boost::shared_ptr<CPriceData>& price) { onPriceData(price); };
    quoteRequests[key] = CQuoteRequest::makeHandicapRequest(key, callback, ST_DEFAULT);

    // Stock options, whatever the trade type: the panel is the stock-option desk's.
    QMap<QString, QMap<QString, QStringList>> options;
    client->getStockOptionMap(options);
    auto found = options.constFind(key);
    if (found == options.constEnd()) {
        return;
    }
    const QMap<QString, QStringList>& months = found.value();
    model->monthCount = months.size();
    table->setDataModel(model);
    table->applyView();
    table->setColumnLocked(0, true);
    for (int column = 0; column < table->columnCount(); ++column) {
        table->setColumnFilterable(column, true);
        if (S::boldColumn(column)) {
            table->setColumnBoldFont(column, true);
        }
        // The row keeps the stamps; the table paints a stamped cell as changed.
        table->setColumnFlashChange(column, column > 0 && S::flashSubIndex(S::subIndexOf(column)));
    }
    table->sortByColumn(0, 0);

    const QStringList monthTexts = months.keys();
    header->setMonths(monthTexts);
    for (int i = 0; i < monthTexts.size(); ++i) {
        monthColumns[monthTexts.at(i).toInt()] = i;
        header->setMonthWidth(i, getPriceQuoteHeaderWidth(i));
    }

    const int side = sideGroup->checkedButton();
    for (auto month = months.constBegin(); month != months.constEnd(); ++month) {
        for (const QString& code : month.value()) {
            const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(code);
            if (!detail) {
                continue;
            }
            const bool call = client->isCall(detail);
            if (!((side == PQC_CALL && call) || (side == PQC_PUT && !call))) {
                continue;
            }
            quoteRequests[code] = CQuoteRequest::makeHandicapRequest(code, callback, ST_DEFAULT);
            initTableData(detail);
        }
    }
    table->updateTable();
    resetLayout(size());
}

void COptionPriceQuotePanel::initTableData(const std::shared_ptr<nqservice::CInstrumentDetail>& detail)
{
    CExchangeClient* client = exchange();
    if (!detail || client == nullptr || model == nullptr) {
        return;
    }
    const QString rowKey = S::rowKey(client->getExercisePrice(detail), detail->adjusted);
    CHpfPriceQuoteDataPtr row = model->rowOfStrike(rowKey);
    const bool existed = row != nullptr;
    if (!existed) {
        row = boost::make_shared<CHpfPriceQuoteData>(rowKey, model->monthCount);
    }
    auto month = monthColumns.constFind(detail->expireDate);
    if (month != monthColumns.constEnd() && month.value() < model->monthCount) {
        CPriceQuoteRowBuilder::initMonth(*row, month.value(), *detail);
    }
    if (existed) {
        model->updateData(row);
    } else {
        model->addData(row);
    }
}

// ---- quotes ----

void COptionPriceQuotePanel::onPriceData(boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price) {
        return;
    }
    const QString key = WG::sToQs(utils::vqStockKey(price->market, price->code));
    boost::mutex::scoped_lock lock(priceMutex);
    pendingPrices[key] = price;
}

int COptionPriceQuotePanel::pendingPriceCount() const
{
    boost::mutex::scoped_lock lock(priceMutex);
    return pendingPrices.size();
}

void COptionPriceQuotePanel::onTimer(QFlags<TC::ETimerUpdateFlag>)
{
    if (!isActive() && !isVisible()) {
        return;  // the buffer keeps the newest quote per key until the panel shows
    }
    if (underlyingCombo == nullptr || table == nullptr || model == nullptr) {
        return;
    }
    if (underlyingCombo->currentText().isEmpty()) {
        clearUi();
        return;
    }
    const bool flashEnded = clearFlashDataOnTimer();
    QMap<QString, boost::shared_ptr<CPriceData>> prices;
    {
        boost::mutex::scoped_lock lock(priceMutex);
        prices.swap(pendingPrices);
    }
    const QString underlying = underlyingCombo->currentData(Qt::UserRole).toString();
    auto found = prices.find(underlying);
    if (found != prices.end()) {
        updateInstrumentInfo(found.value());
        prices.erase(found);
    }
    if (!prices.isEmpty()) {
        for (auto it = prices.constBegin(); it != prices.constEnd(); ++it) {
            updateTableData(it.value());
        }
        table->updateTable();
    } else if (flashEnded) {
        table->updateTable();
    }
    // Rows change in place: only the cells that a quote or a flash's end touched repaint.
    table->updateCells(changedCells);
}

bool COptionPriceQuotePanel::clearFlashDataOnTimer()
{
    if (model == nullptr) {
        return false;
    }
    bool ended = false;
    const double now = utils::clockMSec();
    for (auto it = flashingRows.begin(); it != flashingRows.end();) {
        const CHpfPriceQuoteDataPtr row = model->rowOfStrike(it.key());
        if (!row) {
            it = flashingRows.erase(it);
            continue;
        }
        int first = model->columnCount();
        int last = -1;
        if (CPriceQuoteRowBuilder::clearFlashStamps(*row, now, &first, &last)) {
            ended = true;
            const int position = model->rowOfKey(row->keyString());
            if (position >= 0) {
                changedCells.push_back(CPriceQuoteCellSpan{position, first, last});
            }
        }
        if (row->flashStamps.empty()) {
            it = flashingRows.erase(it);
        } else {
            ++it;
        }
    }
    return ended;
}

void COptionPriceQuotePanel::updateInstrumentInfo(const boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price) {
        return;
    }
    const int flags = segmentedFlags();
    const QString invalid = QString::fromUtf8(kInvalidText);
    const QString riseKey = QString::fromLatin1(getStockColorKey(price->changeAmount, 0));
    if (priceLabel != nullptr && !utils::isAbsent(price->lastPrice)) {
        priceLabel->setText(WG::formatDoubleNumber(price->lastPrice, 4, flags, false, invalid));
        priceLabel->setColorKey(riseKey);
    }
    if (changeLabel != nullptr && !utils::isAbsent(price->changeAmount)) {
        changeLabel->setText(WG::formatDoubleNumber(price->changeAmount, 3, flags, false, invalid));
        changeLabel->setColorKey(riseKey);
    }
    if (ratioLabel != nullptr && !utils::isAbsent(price->changeRatio)) {
        ratioLabel->setText(WG::formatDoubleNumber(price->changeRatio, 2, utils::FNF_PERCENT, false, invalid));
        ratioLabel->setColorKey(riseKey);
    }
    if (volumeLabel != nullptr && price->volume != utils::kAbsentInt) {
        volumeLabel->setText(WG::formatIntNumber(price->volume, 0, flags));
        volumeLabel->setColorKey(QStringLiteral("tc_clr_priceT_total"));
    }
    if (toolBar != nullptr) {
        toolBar->updateItemLength();
    }
}

void COptionPriceQuotePanel::updateTableData(const boost::shared_ptr<TC::CPriceData>& price)
{
    CExchangeClient* client = exchange();
    if (!price || model == nullptr || client == nullptr) {
        return;
    }
    const QString key = WG::sToQs(utils::vqStockKey(price->market, price->code));
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(key);
    if (!detail) {
        return;
    }
    const CHpfPriceQuoteDataPtr row = model->rowOfStrike(S::rowKey(client->getExercisePrice(detail), detail->adjusted));
    if (!row) {
        return;
    }
    auto month = monthColumns.constFind(detail->expireDate);
    if (month == monthColumns.constEnd() || month.value() >= model->monthCount) {
        return;
    }
    const bool wasInTheMoney = row->inTheMoney;
    if (CPriceQuoteRowBuilder::applyQuote(*row, month.value(), *price, detail, utils::clockMSec())) {
        flashingRows.insert(row->strikeKey, true);
    }
    // The row changed in place. Its month's block repaints; the whole row when
    // its in-the-money shading, which all its months share, turned.
    const int position = model->rowOfKey(row->keyString());
    if (position >= 0) {
        if (row->inTheMoney != wasInTheMoney) {
            changedCells.push_back(CPriceQuoteCellSpan{position, 1, model->columnCount() - 1});
        } else {
            changedCells.push_back(CPriceQuoteCellSpan{position, S::columnOf(month.value(), 0),
                                                       S::columnOf(month.value(), S::kMonthColumns - 1)});
        }
    }
}

// ---- clearing ----

void COptionPriceQuotePanel::dropRequests(QMap<QString, boost::shared_ptr<TC::CQuoteRequest>>& requests)
{
    // Dropped outside the lock: a callback in flight may be waiting for it.
    QMap<QString, boost::shared_ptr<CQuoteRequest>> dropped;
    dropped.swap(requests);
    dropped.clear();
}

void COptionPriceQuotePanel::doClearRequest()
{
    dropRequests(quoteRequests);
    boost::mutex::scoped_lock lock(priceMutex);
    pendingPrices.clear();
}

void COptionPriceQuotePanel::clearUi()
{
    for (WG::CSimpleTextWidget* label : {nameLabel, priceLabel, changeLabel, ratioLabel, volumeLabel}) {
        if (label != nullptr) {
            label->setText(QString());
        }
    }
    if (toolBar != nullptr) {
        toolBar->updateItemLength();
    }
}

// ---- layout ----

int COptionPriceQuotePanel::getPriceQuoteHeaderWidth(int month) const
{
    if (table == nullptr || table->getPanel() == nullptr) {
        return 0;
    }
    int width = 0;
    const int first = S::columnOf(month, 0);
    for (int column = first; column < first + S::kMonthColumns && column < table->columnCount(); ++column) {
        if (table->columnVisible(column) && table->colListVisible(column)) {
            // The toolkit's columns lie side by side, each with its own grid line, so
            // the cell is exactly as wide as its visible columns and stays over them.
            width += table->columnWidth(column);
        }
    }
    return width;
}

void COptionPriceQuotePanel::sizeHeaderCells()
{
    if (header == nullptr) {
        return;
    }
    for (int month = 0; month < header->getMonthCount(); ++month) {
        header->setMonthWidth(month, getPriceQuoteHeaderWidth(month));
    }
}

void COptionPriceQuotePanel::resetLayout(QSize)
{
    if (header == nullptr || table == nullptr) {
        return;
    }
    header->setFirstColumnWidth(table->columnWidth(0));
}

void COptionPriceQuotePanel::resizeEvent(QResizeEvent* event)
{
    ITradeDockableWidget::resizeEvent(event);
    resetLayout(size());
}

// ---- events ----

void COptionPriceQuotePanel::switchView(int view)
{
    viewConfigs[currentView()] = table->saveConfigStr();
    table->setView(view);
    table->loadConfigStr(viewConfigs.value(view));
    sizeHeaderCells();
    table->sortByColumn(0, 0);
    resetLayout(size());
}

bool COptionPriceQuotePanel::handleEvent(int event, int id, int arg, QString text, void* data)
{
    if (event == WG::UE_BUTTON_CLICKED) {
        if (id >= PQC_VIEW_QUOTE && id <= PQC_VIEW_INFO) {
            if (table != nullptr) {
                switchView(id);
            }
        } else if (id == PQC_CALL || id == PQC_PUT) {
            doClearRequest();
            reloadTableData();
        }
        return true;
    }
    if (event == WG::UE_TABLE_HSCROLL) {
        if (id == PQC_TABLE && header != nullptr) {
            header->setScrollOffset(arg);
        }
        return true;
    }
    if (event == WG::UE_COLUMN_RESIZED && id == PQC_TABLE) {
        if (arg == 0) {
            resetLayout(size());
        } else if (header != nullptr) {
            const int month = S::monthOf(arg);
            header->setMonthWidth(month, getPriceQuoteHeaderWidth(month));
        }
        return true;
    }
    if (event == WG::UE_COMBO_CHANGED && id == PQC_UNDERLYING) {
        doClearRequest();
        clearUi();
        reloadTableData();
        return true;
    }
    return ITradeDockableWidget::handleEvent(event, id, arg, text, data);
}

void COptionPriceQuotePanel::setTradeType(nqservice::EVqTraderType type)
{
    ITradeDockableWidget::setTradeType(type);
    // The selector refills itself and reports the change; nothing reloads here.
    if (underlyingCombo != nullptr) {
        underlyingCombo->setTradeType(type);
    }
}

}  // namespace TC
