#include "board/coptionpricetpanel.h"

#include "board/cautoimportoptionexgreeksthread.h"
#include "board/coptionpricetgreekstable.h"
#include "board/coptionpricettable.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "board/cpricetrowbuilder.h"
#include "order/cpricetquickorderwidget.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/ctimeservice.h"
#include "seam/formatters.h"
#include "seam/paramstring.h"
#include "seam/stockcolor.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "toolkit/caccountscombobox.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/csplitcontainer.h"
#include "toolkit/cuiresource.h"
#include "toolkit/cwidgetlist.h"

#include <QDate>
#include <QHBoxLayout>
#include <QPainter>
#include <QResizeEvent>
#include <QSet>
#include <QPointer>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>


#include <algorithm>
#include <functional>

namespace TC {

namespace {

const int kUndlComboId = 5;
const int kQuickOrderCheckId = 21;
const int kAccountComboId = 22;
const int kCancelAllId = 23;
const int kFirstTabId = 24;
const int kChainTableId = 1000;

const char* const kInvalidText = "非法值";

bool valid(double value) { return !utils::isAbsent(value); }

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }
CQuoteClient* quotes() { return utils::CManualSingletonT<CQuoteClient>::instance(); }

// The strip under the tool bar that holds the month tabs, in the table's colour of the theme.
class CDateStrip : public QWidget {
public:
    explicit CDateStrip(QWidget* parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), *WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background")));
    }
};

QString formatNumber(double value, int decimals)
{
    return WG::formatDoubleNumber(value, decimals, CPriceTRowBuilder::segmentedFlags(), false,
                                  QString::fromUtf8(kInvalidText));
}

}  // namespace

COptionPriceTPanel::COptionPriceTPanel(int widgetID, QWidget* parent)
    : ITradeDockableWidget(false, QStringLiteral("pricet"), widgetID,
                           TraderTypeFlags(nqservice::VQ_TRADER_TYPE_STOCK_OPTION) |
                               nqservice::VQ_TRADER_TYPE_FUTURE_OPTION,
                           parent)
{
    traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    createUi();
    exGreeksThread = new CAutoImportOptionExGreeksThread();
    connect(exGreeksThread, &CAutoImportOptionExGreeksThread::sigReadFinish, this,
            &COptionPriceTPanel::slotReadFinished);
    exGreeksThread->start(QThread::InheritPriority);
    if (CTradeClient* client = utils::CManualSingletonT<CTradeClient>::instance()) {
        connect(client, &CTradeClient::sigAutoImportExGreeksChanged, this,
                &COptionPriceTPanel::slotAutoImportExGreeksChanged);
    }
}

COptionPriceTPanel::~COptionPriceTPanel()
{
    if (exGreeksThread != nullptr) {
        // Ended cleanly rather than killed: a pass under way hands over what it took.
        exGreeksThread->stop();
        delete exGreeksThread;
        exGreeksThread = nullptr;
    }
    doClearRequest();
    undlRequest.reset();
}

WG::CSimpleTextWidget* COptionPriceTPanel::addFigure(int captionId, const QString& caption, int valueId, int height)
{
    auto* label = new WG::CSimpleTextWidget(false, captionId, caption, toolBar);
    label->setFixedHeight(height);
    auto* value = new WG::CSimpleTextWidget(false, valueId, QString(), toolBar);
    value->setFixedHeight(height);
    value->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
    toolBar->addToolItem(label);
    toolBar->addToolItem(value);
    figures.insert(captionId, label);
    figures.insert(valueId, value);
    return value;
}

WG::CSimpleTextWidget* COptionPriceTPanel::figureWidget(int id) const { return figures.value(id, nullptr); }

void COptionPriceTPanel::createUi()
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

    toolBar = new WG::CAutoExpandToolBar("tc_img_op_hedge_type_bg", 2, 8, 2, 8, mainList);

    modeGroup = new WG::CPushButtonGroup(Qt::Horizontal, 0, QStringLiteral("clr_order_operation_background"), toolBar);
    modeGroup->setFixedWidth(160);
    const QStringList modeTexts = {QStringLiteral("行情"), QStringLiteral("指标"), QStringLiteral("风险"),
                                   QStringLiteral("信息")};
    for (int id = 0; id < modeTexts.size(); ++id) {
        modeGroup->addModeButton(modeTexts.at(id), id, barHeight, id == 0);
        tableConfigs[id] = QString();
    }
    toolBar->addToolItem(modeGroup);
    toolBar->addSeperator();

    auto* undlCaption = new WG::CSimpleTextWidget(false, -1, QStringLiteral("合约选择: "), toolBar);
    undlCaption->setFixedHeight(barHeight);
    toolBar->addToolItem(undlCaption);
    undlCombo = new COptionUndlCodeComboBox(kUndlComboId, toolBar);
    undlCombo->setFixedWidth(110);
    toolBar->addToolItem(undlCombo);

    remainDaysText = addFigure(7, QStringLiteral("剩余到期天数: "), 8, barHeight);
    toolBar->addFixedSpace(15);
    undlNameText = addFigure(9, QStringLiteral("标的名称: "), 10, barHeight);
    toolBar->addFixedSpace(15);
    lastPriceText = addFigure(11, QStringLiteral("最新价: "), 12, barHeight);
    toolBar->addFixedSpace(15);
    changeText = addFigure(13, QStringLiteral("涨跌: "), 14, barHeight);
    toolBar->addFixedSpace(15);
    volumeText = addFigure(15, QStringLiteral("成交量: "), 16, barHeight);
    toolBar->addFixedSpace(15);
    openInterestText = addFigure(17, QStringLiteral("持仓量: "), 18, barHeight);
    openInterestLabel = figures.value(17);
    toolBar->addFixedSpace(15);
    amountText = addFigure(19, QStringLiteral("金额: "), 20, barHeight);
    toolBar->addSeperator();

    quickOrderCheck = new WG::CCheckBox(kQuickOrderCheckId, QStringLiteral("启用价格快速下单"), toolBar);
    toolBar->addToolItem(quickOrderCheck);
    accountCombo = new CAccountsComboBox(kAccountComboId, toolBar);
    accountCombo->setTraderType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, true);
    toolBar->addToolItem(accountCombo);
    accountCombo->setVisible(false);  // shown with the quick order ladder
    auto* cancelAll = new WG::CPushButton(QString(), kCancelAllId, 1, 1, 44, 20, 0, toolBar);
    WG::CButtonColor cancelFace;
    cancelFace.normal = QStringLiteral("clr_small_btn_critical_normal");
    cancelFace.hover = QStringLiteral("clr_small_btn_critical_hover");
    cancelFace.active = QStringLiteral("clr_small_btn_critical_hover");
    cancelAll->setButtonColor(cancelFace);
    const QString white = QStringLiteral("clr_global_white");
    cancelAll->setTextColorKey(white, white, white, white);
    cancelAll->setText(QStringLiteral("全撤"));
    cancelAll->setHorizontalText(true);
    toolBar->addToolItem(cancelAll);
    quickOrderWidget = new CPriceTQuickOrderWidget(this);
    quickOrderWidget->setVisible(false);
    mainList->addFixedWidget(toolBar, WG::WA_FILL, false);

    // The month tabs are rebuilt per underlying inside a strip of their own.
    dateTabsHolder = new CDateStrip(mainList);
    dateTabsHolder->setFixedHeight(24);
    auto* tabsLayout = new QHBoxLayout(dateTabsHolder);
    tabsLayout->setContentsMargins(0, 0, 0, 0);
    tabsLayout->setSpacing(0);
    dateTabs = new WG::CPushButtonGroup(Qt::Horizontal, 0, QString(), dateTabsHolder);
    dateTabs->setFixedHeight(24);
    tabsLayout->addWidget(dateTabs);
    tabsLayout->addStretch(1);
    mainList->addFixedWidget(dateTabsHolder, WG::WA_FILL, false);

    splitter = new WG::CSplitContainer(Qt::Vertical, 2, mainList);
    chainTable = new COptionPriceTTable(splitter);
    chainTable->setFlag(chainTable->flag() & ~WG::EBaseTableFlags(WG::BTF_COLUMN_MOVABLE));
    chainTable->adjustColumnWidth();
    chainTable->setFlashOnlyUpdateBorderAndText();
    greeksTable = new COptionPriceTGreeksTable(splitter);
    greeksTable->setFlag(greeksTable->flag() & ~WG::EBaseTableFlags(QFlag(0x48)));
    greeksTable->adjustColumnWidth();
    splitter->setWidgets(chainTable, greeksTable, true, 400);
    mainList->addStretchWidget(splitter, 1, WG::WA_FILL, false);
    mainList->updateWidgetLength();
}

QMap<QString, QMap<QString, QStringList>> COptionPriceTPanel::optionMap() const
{
    QMap<QString, QMap<QString, QStringList>> map;
    if (CExchangeClient* client = exchange()) {
        if (traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION) {
            client->getStockOptionMap(map);
        } else {
            client->getFutureOptionMap(map);
        }
    }
    return map;
}

QString COptionPriceTPanel::currentUndl() const
{
    if (undlCombo == nullptr) {
        return QString();
    }
    return undlCombo->currentData(Qt::UserRole).toString();
}

bool COptionPriceTPanel::hasUndlText() const { return undlCombo != nullptr && !undlCombo->currentText().isEmpty(); }

// ---- parameter string ----

QString COptionPriceTPanel::param()
{
    QStringList sections;
    if (chainTable != nullptr) {
        QStringList layouts;
        for (auto it = tableConfigs.constBegin(); it != tableConfigs.constEnd(); ++it) {
            layouts << (it.key() == chainTable->getTableType() ? chainTable->saveConfigStr() : it.value());
        }
        sections << CParamString::joinList(layouts);
    }
    if (greeksTable != nullptr) {
        sections << greeksTable->saveConfigStr();
    }
    if (quickOrderCheck != nullptr) {
        sections << QString::number(quickOrderCheck->isChecked() ? 1 : 0);
    }
    if (quickOrderWidget != nullptr) {
        sections << quickOrderWidget->param();
    }
    return CParamString::joinSections(sections);
}

void COptionPriceTPanel::setParam(const QString& param)
{
    const QStringList sections = CParamString::sections(param);
    if (sections.isEmpty()) {
        return;
    }
    if (sections.size() > 0 && chainTable != nullptr) {
        // Split as it stands: an empty field is one empty layout, which resets the quote layout.
        const QStringList layouts = sections.at(0).split(CParamString::kListSeparator, Qt::KeepEmptyParts);
        for (int i = 0; i < layouts.size(); ++i) {
            tableConfigs[i] = layouts.at(i);
        }
        // The quote layout is the one loaded, whatever mode the string was saved in.
        chainTable->loadConfigStr(tableConfigs[0]);
    }
    if (sections.size() > 1 && greeksTable != nullptr) {
        greeksTable->loadConfigStr(sections.at(1));
    }
    if (sections.size() > 2 && quickOrderCheck != nullptr) {
        quickOrderCheck->setChecked(sections.at(2).toInt() != 0);
    }
    if (sections.size() > 3 && quickOrderWidget != nullptr) {
        quickOrderWidget->setParam(sections.at(3));
    }
}

// ---- selection ----

void COptionPriceTPanel::undlChanged()
{
    const QString undl = currentUndl();
    const QMap<QString, QMap<QString, QStringList>> map = optionMap();
    if (undl.isEmpty() || !map.contains(undl)) {
        return;
    }
    // The underlying's figures are read from the quote client on each tick, so its
    // callback has nothing to do; the seam refuses an empty one.
    undlRequest = CQuoteRequest::makeHandicapRequest(undl, [](boost::shared_ptr<CPriceData>&) {}, ST_DEFAULT);
    doClearTitle();
    const QMap<QString, QStringList> dates = map.value(undl);
    setDate(dates);
    if (greeksTable != nullptr) {
        greeksTable->setInstrument(dates);
    }
    requestInstrumentMapQuote();
}

void COptionPriceTPanel::setDate(const QMap<QString, QStringList>& dates)
{
    if (dateTabs == nullptr) {
        return;
    }
    // The group keeps its buttons for life, so a new strip replaces the old one.
    auto* fresh = new WG::CPushButtonGroup(Qt::Horizontal, 0, QString(), dateTabsHolder);
    fresh->setFixedHeight(24);
    if (auto* layout = qobject_cast<QBoxLayout*>(dateTabsHolder->layout())) {
        layout->replaceWidget(dateTabs, fresh);
    }
    dateTabs->hide();
    dateTabs->deleteLater();
    dateTabs = fresh;
    dateTabs->show();
    tabDates.clear();

    QSet<QString> seen;
    int i = 0;
    for (auto it = dates.constBegin(); it != dates.constEnd(); ++it, ++i) {
        const QString& date = it.key();
        const QString text = QStringLiteral("%1年%2月").arg(date.left(4), date.mid(4, 2));
        if (date.isEmpty() || seen.contains(text)) {
            continue;  // the first date of a month has the tab
        }
        seen.insert(text);
        auto* tab = new WG::CPushButton(QString(), i + kFirstTabId, 1, 1, 0, 24, 0, dateTabs);
        // The themes give "clr_tab_header" the colour of a tab's face, so the face takes
        // it and the text the theme's text colours.
        WG::CButtonColor tabFace;
        tabFace.normal = QStringLiteral("clr_tab_header");
        tabFace.hover = QStringLiteral("clr_button_hover");
        tabFace.active = QStringLiteral("clr_button_checked");
        tab->setButtonColor(tabFace);
        tab->setText(text);
        tab->setHorizontalText(true);
        tab->setTextColorKey(QStringLiteral("clr_text_default"), QStringLiteral("clr_text_default"),
                             QStringLiteral("clr_param_table_order_mode_active"),
                             QStringLiteral("clr_simple_text_disable"));
        tab->setMinimumWidth(84);
        dateTabs->addPushButton(tab, false);
        tab->show();
        tabDates[i + kFirstTabId] = date;
    }
    dateTabs->setCheckedByID(kFirstTabId);
    currentDate = tabDates.value(kFirstTabId);
    if (remainDaysText != nullptr) {
        remainDaysText->setText(QString());
    }
    if (chainTable != nullptr) {
        chainTable->doClear();
    }
    setDateInfo();
    queryStockPrice();
}

void COptionPriceTPanel::setDateInfo()
{
    if (currentDate.isEmpty()) {
        return;
    }
    const QDate date(currentDate.left(4).toInt(), currentDate.mid(4, 2).toInt(), currentDate.right(2).toInt());
    const QDate today = getTimeService()->currentDateTime().date();
    // An invalid date gives the value the guard screens out.
    const qint64 span = date.isValid() ? today.daysTo(date) : utils::kAbsentInt;
    const int days = static_cast<int>(span);
    if (remainDaysText != nullptr && days != utils::kAbsentInt) {
        remainDaysText->setText(WG::formatIntNumber(days, 0, CPriceTRowBuilder::segmentedFlags()));
    }
}

void COptionPriceTPanel::queryStockPrice()
{
    if (!hasUndlText() || currentDate.isEmpty() || chainTable == nullptr) {
        return;
    }
    const QString undl = currentUndl();
    const QMap<QString, QMap<QString, QStringList>> map = optionMap();
    if (undl.isEmpty() || !map.contains(undl)) {
        return;
    }
    const QMap<QString, QStringList>& dates = map[undl];
    auto it = dates.constFind(currentDate);
    if (it == dates.constEnd() || it.value().isEmpty()) {
        return;
    }
    setDateInfo();
    chainTable->doClear();
    chainTable->setInstrument(it.value());
    chainTable->updateAllTable();
}

void COptionPriceTPanel::requestInstrumentMapQuote()
{
    if (!hasUndlText() || chainTable == nullptr) {
        return;
    }
    const QString undl = currentUndl();
    const QMap<QString, QMap<QString, QStringList>> map = optionMap();
    if (undl.isEmpty() || !map.contains(undl)) {
        return;
    }
    QStringList codes;
    const QMap<QString, QStringList>& dates = map[undl];
    for (auto it = dates.constBegin(); it != dates.constEnd(); ++it) {
        codes << it.value();
    }
    if (codes.isEmpty()) {
        return;
    }
    const TQuoteCallback callback = [this](boost::shared_ptr<CPriceData>& data) { onTablePriceData(data); };
    for (const QString& code : codes) {
        // Every expiry at once: a month tab costs no new request.
        quoteRequests[code] = CQuoteRequest::makeHandicapRequest(code, callback, ST_DEFAULT);
    }
    if (greeksTable != nullptr) {
        greeksTable->refreshAll();
    }
}

// ---- one update ----

void COptionPriceTPanel::onTablePriceData(boost::shared_ptr<TC::CPriceData> data)
{
    if (!data) {
        return;
    }
    const QString key = WG::sToQs(utils::vqStockKey(data->market, data->code));
    std::lock_guard<std::recursive_mutex> lock(dataMutex);
    priceCache[key] = std::move(data);
}

int COptionPriceTPanel::pendingQuoteCount() const
{
    std::lock_guard<std::recursive_mutex> lock(dataMutex);
    return priceCache.size();
}

void COptionPriceTPanel::onTimer(QFlags<TC::ETimerUpdateFlag>)
{
    if (!isActive() && !isVisible()) {
        return;  // the buffers keep filling and wait for the panel to show
    }
    if (undlCombo == nullptr || chainTable == nullptr) {
        return;
    }
    if (undlCombo->currentText().isEmpty()) {
        doClearTitle();
        return;
    }
    if (currentDate.isEmpty()) {
        doClearExpire();
        return;
    }
    setInstrumentInfo();
    setDateInfo();

    std::lock_guard<std::recursive_mutex> lock(dataMutex);
    for (const auto& entry : positionCache) {
        updatePositionStatics(entry.second);
    }
    positionCache.clear();
    if (!priceCache.isEmpty()) {
        for (auto it = priceCache.constBegin(); it != priceCache.constEnd(); ++it) {
            chainTable->updateTableByPrice(it.value());
            if (greeksTable != nullptr) {
                greeksTable->updateTableByPrice(it.value());
            }
        }
        priceCache.clear();
    }
    chainTable->updateTable();
}

void COptionPriceTPanel::setInstrumentInfo()
{
    if (hasUndlText()) {
        const QString undl = currentUndl();
        CExchangeClient* client = exchange();
        CQuoteClient* quoteClient = quotes();
        const std::shared_ptr<nqservice::CInstrumentDetail> detail =
            client != nullptr ? client->getCodeInfo(undl) : nullptr;
        const boost::shared_ptr<CPriceData> price =
            quoteClient != nullptr ? quoteClient->getStockPrice(undl) : boost::shared_ptr<CPriceData>();
        if (detail && price) {
            const QString riseKey = QString::fromLatin1(getStockColorKey(price->changeAmount, 0));
            if (undlNameText != nullptr && !detail->name.empty()) {
                undlNameText->setText(WG::sToQs(detail->name));
            }
            if (lastPriceText != nullptr && valid(price->lastPrice)) {
                lastPriceText->setText(formatNumber(price->lastPrice, 4));
                lastPriceText->setColorKey(riseKey);
            }
            if (changeText != nullptr && valid(price->changeAmount)) {
                changeText->setText(formatNumber(price->changeAmount, 3));
                changeText->setColorKey(riseKey);
            }
            if (volumeText != nullptr && price->volume != utils::kAbsentInt) {
                volumeText->setText(WG::formatIntNumber(price->volume, 0, CPriceTRowBuilder::segmentedFlags()));
            }
            if (valid(price->openInterest) && openInterestText != nullptr && openInterestLabel != nullptr) {
                const bool shown = traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION;
                openInterestLabel->setVisible(shown);
                openInterestText->setVisible(shown);
                openInterestText->setText(formatNumber(price->openInterest, 0));
            }
            if (amountText != nullptr && valid(price->amount)) {
                amountText->setText(formatNumber(price->amount, 0));
            }
        }
    }
    if (toolBar != nullptr) {
        toolBar->updateItemLength();
    }
}

// ---- clearing ----

void COptionPriceTPanel::doClearExpire()
{
    if (remainDaysText != nullptr) {
        remainDaysText->setText(QString());
    }
    if (chainTable != nullptr) {
        chainTable->doClear();
    }
}

void COptionPriceTPanel::doClearRequest()
{
    {
        std::lock_guard<std::recursive_mutex> lock(dataMutex);
        priceCache.clear();
    }
    // Dropped outside the lock: a callback in flight may wait for it.
    QMap<QString, boost::shared_ptr<CQuoteRequest>> dropped;
    dropped.swap(quoteRequests);
    dropped.clear();
}

void COptionPriceTPanel::doClearTitle()
{
    for (WG::CSimpleTextWidget* text : {undlNameText, lastPriceText, changeText, volumeText, amountText}) {
        if (text != nullptr) {
            text->setText(QString());
        }
    }
    // The open interest keeps its number until the next tick writes it.
    if (toolBar != nullptr) {
        toolBar->updateItemLength();
    }
    if (chainTable != nullptr) {
        chainTable->doClear();
    }
    doClearExpire();
    doClearRequest();
}

// ---- layout ----

void COptionPriceTPanel::resizeEvent(QResizeEvent* event)
{
    ITradeDockableWidget::resizeEvent(event);
    resizeLayout();
}

void COptionPriceTPanel::resizeLayout()
{
    const int top = toolBar != nullptr ? toolBar->height() : 20;
    if (quickOrderWidget == nullptr) {
        return;
    }
    // The ladder stands on the right edge; the tables keep the rest.
    quickOrderWidget->move(width() - quickOrderWidget->width(), top);
    quickOrderWidget->setFixedHeight(std::max(0, height() - top));
    const int reserved = quickOrderWidget->isHidden() ? 0 : quickOrderWidget->width() - 2;
    if (splitter != nullptr) {
        splitter->setFixedWidth(std::max(0, width() - reserved));
    }
}

// ---- events ----

void COptionPriceTPanel::changeTableMode(int type)
{
    tableConfigs[chainTable->getTableType()] = chainTable->saveConfigStr();
    if (chainTable->getTableType() != type) {
        chainTable->setTableType(static_cast<EPriceTTableType>(type));
    }
    chainTable->loadConfigStr(tableConfigs[type]);
}

void COptionPriceTPanel::quickOrderToggled(bool checked)
{
    if (quickOrderWidget == nullptr) {
        quickOrderWidget = new CPriceTQuickOrderWidget(this);
    }
    quickOrderWidget->setVisible(checked);
    quickOrderWidget->raise();
    resizeLayout();
    if (accountCombo != nullptr) {
        accountCombo->setVisible(checked);
    }
    if (toolBar != nullptr) {
        toolBar->updateItemLength();
    }
}

bool COptionPriceTPanel::handleEvent(int event, int id, int value, QString text, void* data)
{
    if (event == WG::UE_BUTTON_CLICKED) {
        if (chainTable == nullptr) {
            return true;
        }
        if (id >= 0 && id <= 3) {
            changeTableMode(id);
            return true;
        }
        if (id == kCancelAllId) {
            cancelAllTasks();
            return true;
        }
        if (tabDates.contains(id)) {
            currentDate = tabDates.value(id);
            doClearExpire();
            setDateInfo();
            queryStockPrice();
        }
        return true;
    }
    if ((event == WG::UE_CELL_PRIMARY || event == WG::UE_CELL_ACTIVATED || event == WG::UE_CELL_SECONDARY) &&
        id == kChainTableId) {
        if (quickOrderWidget != nullptr && chainTable != nullptr) {
            quickOrderWidget->setStockCode(chainTable->getSelectStockCode(value, text.toInt()));
        }
        return true;
    }
    if (event == WG::UE_CHECK_TOGGLED && id == kQuickOrderCheckId) {
        quickOrderToggled(value != 0);
        return true;
    }
    if (event == WG::UE_COMBO_CHANGED && id == kUndlComboId) {
        undlChanged();
        return true;
    }
    if (event == WG::UE_ACCOUNTS_CHANGED) {
        updateAccounts();
        return true;
    }
    if (event == WG::UE_ACCOUNT_SELECTED && id == kAccountComboId) {
        // The combo's choice is the panel's account change.
        return handleEvent(WG::UE_ACCOUNTS_CHANGED, id, value, text, data);
    }
    return ITradeDockableWidget::handleEvent(event, id, value, text, data);
}

// ---- host notifications ----

void COptionPriceTPanel::setTradeType(nqservice::EVqTraderType type)
{
    ITradeDockableWidget::setTradeType(type);
    // Column layouts belong to a trader type: the two types' sets differ in
    // width. The present type's are put aside and the new type's taken up.
    const bool switching = chainTable != nullptr && type != chainTable->getTradeType();
    if (switching) {
        QMap<int, QString>& aside = layoutsByTraderType[chainTable->getTradeType()];
        aside = tableConfigs;
        aside[chainTable->getTableType()] = chainTable->saveConfigStr();
        tableConfigs = layoutsByTraderType.value(type);
        for (int mode = PTT_QUOTE; mode <= PTT_INFO; ++mode) {
            if (!tableConfigs.contains(mode)) {
                tableConfigs[mode] = QString();
            }
        }
    }
    if (chainTable != nullptr) {
        chainTable->setTradeType(type);
        if (switching) {
            chainTable->loadConfigStr(tableConfigs.value(chainTable->getTableType()));
        }
    }
    if (greeksTable != nullptr) {
        greeksTable->setTradeType(type);
        greeksTable->refreshAll();
    }
    if (undlCombo != nullptr &&
        (type == nqservice::VQ_TRADER_TYPE_STOCK_OPTION || type == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION)) {
        traderType = type;
        undlCombo->setTradeType(type);
    }
}

void COptionPriceTPanel::loadAccounts()
{
    // The account list may have changed: the combo lists it again, keeping its choice.
    if (accountCombo != nullptr) {
        const QSignalBlocker quiet(accountCombo);
        accountCombo->reload();
    }
    updateAccounts();
}

void COptionPriceTPanel::updateGreek()
{
    if (chainTable != nullptr) {
        chainTable->updateAllTable();
    }
}

void COptionPriceTPanel::slotReadFinished()
{
    if (chainTable != nullptr && chainTable->getTableType() == PTT_RISK) {
        chainTable->updateAllTable();
    }
    if (greeksTable != nullptr) {
        greeksTable->refreshAll();
    }
}

void COptionPriceTPanel::slotAutoImportExGreeksChanged()
{
    if (chainTable != nullptr) {
        chainTable->updateExGreeksVisible();
    }
    if (greeksTable != nullptr) {
        greeksTable->updateExGreeksVisible();
    }
}

// ---- positions ----

namespace {

int netOf(const nqservice::CPositionStatics& record)
{
    const int size = static_cast<int>(record.position);  // the low 32 bits, as the board reads it
    return record.direction == 48 ? size : -size;
}

boost::shared_ptr<nqservice::IDataCenter> dataCenter()
{
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    return center ? center->getDataCenter() : boost::shared_ptr<nqservice::IDataCenter>();
}

}  // namespace

void COptionPriceTPanel::updateAccounts()
{
    clearRequestedAccounts();
    if (accountCombo == nullptr) {
        return;
    }
    const QPair<ESelectedAccountType, QString> selection = accountCombo->getSelection();
    {
        // Dropped outside the lock: a callback in flight may wait for it.
        QMap<std::string, boost::shared_ptr<nqservice::SubRequest>> dropped;
        dropped.swap(positionSubs);
    }
    if (chainTable != nullptr) {
        chainTable->clearRowCode2NetMap();
        chainTable->updateOrderAccounts();
    }
    if (greeksTable != nullptr) {
        greeksTable->clearRowCode2NetMap();
    }
    CUserConfig* config = getUserConfig();
    if (config != nullptr && selection.first == SAT_GROUP && !selection.second.isEmpty()) {
        for (const boost::shared_ptr<CAccount>& account :
             config->getGroupAccounts(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, selection.second)) {
            if (!account || config->isAccountFilter(account->key())) {
                continue;
            }
            const std::string key = account->key().toStdString();
            addRequestedAccount(key);
            subPositionStatics(key);
        }
    } else if (config != nullptr && selection.first == SAT_ACCOUNT) {
        const boost::shared_ptr<CAccount> account = config->getAccountData(selection.second);
        if (account) {
            if (config->isAccountFilter(account->key())) {
                accountCombo->setItemText(0, QString());
            } else {
                const std::string key = account->key().toStdString();
                addRequestedAccount(key);
                subPositionStatics(key);
            }
        }
    }
    if (quickOrderWidget != nullptr) {
        quickOrderWidget->setAccounts(requestedAccountInfos(),
                                      selection.first == SAT_GROUP ? selection.second : QString());
    }
    if (chainTable != nullptr) {
        chainTable->updateAllTable();
    }
    if (greeksTable != nullptr) {
        greeksTable->refreshAll();
    }
}

std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>> COptionPriceTPanel::requestedAccountInfos() const
{
    std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>> infos;
    CUserConfig* config = getUserConfig();
    for (const std::string& key : requestedAccounts()) {
        const boost::shared_ptr<CAccount> account =
            config != nullptr ? config->getAccountData(QString::fromStdString(key)) : boost::shared_ptr<CAccount>();
        if (account) {
            infos[key] = account->toInfo();
        }
    }
    return infos;
}

void COptionPriceTPanel::requestAccount(const nqservice::CAccountInfo& info)
{
    const std::string key = info.getKey();
    if (accountCombo == nullptr) {
        return;
    }
    CUserConfig* config = getUserConfig();
    if (config == nullptr) {
        return;
    }
    const QPair<ESelectedAccountType, QString> selection = accountCombo->getSelection();
    if (selection.first == SAT_GROUP) {
        const CAccountGroup* group =
            selection.second.isEmpty() ? nullptr
                                       : config->getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, selection.second);
        if (group == nullptr || !group->contains(QString::fromStdString(key))) {
            return;
        }
    } else if (selection.second != QString::fromStdString(key)) {
        return;
    }
    if (config->isAccountFilter(QString::fromStdString(key)) || !needRequestAccount(key)) {
        return;
    }
    addRequestedAccount(key);
    subPositionStatics(key);
    if (quickOrderWidget != nullptr) {
        quickOrderWidget->setAccounts(requestedAccountInfos(),
                                      selection.first == SAT_GROUP ? selection.second : QString());
    }
    if (chainTable != nullptr) {
        chainTable->updateAllTable();
    }
    if (greeksTable != nullptr) {
        greeksTable->refreshAll();
    }
}

void COptionPriceTPanel::subPositionStatics(const std::string& accountKey)
{
    const boost::shared_ptr<nqservice::IDataCenter> center = dataCenter();
    const boost::shared_ptr<nqservice::CAccountData> data =
        center ? center->getAccountData(utils::hash(accountKey)) : boost::shared_ptr<nqservice::CAccountData>();
    if (!data) {
        return;  // a later requestAccount tries again
    }
    positionSubs[accountKey] = data->subscribe(
        nqservice::VQ_DATA_TYPE_POSITION_STATICS, "",
        [this](const boost::shared_ptr<nqservice::IData>& record) { onPositionStatics(record); });
    std::vector<boost::shared_ptr<nqservice::IData>> records;
    data->getVector(nqservice::VQ_DATA_TYPE_POSITION_STATICS, records);
    for (const auto& item : records) {
        const auto* record = dynamic_cast<const nqservice::CPositionStatics*>(item.get());
        if (record == nullptr) {
            continue;
        }
        // The snapshot keys by the bare code, as the system has it: a row finds
        // the net of a position once its first change comes by the tick.
        const QString code = QString::fromStdString(record->code);
        const std::string recordKey = record->getKey();
        if (chainTable != nullptr) {
            chainTable->updateRowCode2NetMap(code, recordKey, netOf(*record));
        }
        if (greeksTable != nullptr) {
            greeksTable->updateRowCode2NetMap(code, recordKey, netOf(*record));
        }
    }
}

void COptionPriceTPanel::onPositionStatics(const boost::shared_ptr<nqservice::IData>& record)
{
    if (!record) {
        return;
    }
    std::lock_guard<std::recursive_mutex> lock(dataMutex);
    positionCache[record->getKey()] = record;
}

int COptionPriceTPanel::pendingPositionCount() const
{
    std::lock_guard<std::recursive_mutex> lock(dataMutex);
    return static_cast<int>(positionCache.size());
}

void COptionPriceTPanel::updatePositionStatics(const boost::shared_ptr<nqservice::IData>& item)
{
    const auto* record = dynamic_cast<const nqservice::CPositionStatics*>(item.get());
    if (record == nullptr || !record->account || accountCombo == nullptr) {
        return;
    }
    CUserConfig* config = getUserConfig();
    if (config == nullptr) {
        return;
    }
    const QString accountKey = QString::fromStdString(record->account->getKey());
    const QPair<ESelectedAccountType, QString> selection = accountCombo->getSelection();
    if (selection.first == SAT_GROUP) {
        const CAccountGroup* group = config->getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, selection.second);
        if (group == nullptr || !group->contains(accountKey)) {
            return;
        }
    } else if (selection.first == SAT_ACCOUNT) {
        const boost::shared_ptr<CAccount> account = config->getAccountData(selection.second);
        if (!account || QString::fromStdString(account->toInfo()->getKey()) != accountKey) {
            return;
        }
    } else {
        return;
    }
    const QString code = WG::sToQs(utils::vqStockKey(record->market, record->code));
    const std::string recordKey = record->getKey();
    const int net = netOf(*record);
    if (chainTable != nullptr) {
        chainTable->updatePositionStatics(code, recordKey, net);
    }
    if (greeksTable != nullptr) {
        greeksTable->updatePositionStatics(code, recordKey, net);
    }
}

// ---- tasks ----

void COptionPriceTPanel::cancelAllTasks()
{
    const boost::shared_ptr<nqservice::IDataCenter> center = dataCenter();
    const boost::shared_ptr<nqservice::IDataTable> table =
        center ? center->getAllAccountsTable() : boost::shared_ptr<nqservice::IDataTable>();
    if (!table) {
        return;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> tasks;
    table->getVector(nqservice::VQ_DATA_TYPE_TASK, tasks);
    CUserConfig* config = getUserConfig();
    const std::string user = config != nullptr ? config->getUserDataString(UM_USER_NAME).toStdString() : std::string();
    auto op = boost::make_shared<nqservice::CTaskOpRecord>();
    op->operation = 3;
    op->time = getTimeService() != nullptr ? getTimeService()->currentTime() : 0;
    op->userName = user;
    op->remark = user + "终止任务";
    for (const auto& item : tasks) {
        const auto task = boost::dynamic_pointer_cast<nqservice::CTaskDetail>(item);
        if (!task || !task->owner || task->owner->traderType != nqservice::VQ_TRADER_TYPE_STOCK_OPTION ||
            task->status != 3 || task->owner->userName != user) {
            continue;
        }
        if (!task->onServer) {
            const boost::shared_ptr<nqservice::TraderCenter> trader = nqservice::TraderCenter::instance();
            const boost::shared_ptr<nqservice::ITaskCenter> taskCenter =
                trader ? trader->getTaskCenter() : boost::shared_ptr<nqservice::ITaskCenter>();
            if (const auto control = taskCenter ? taskCenter->getTask(task->taskId, task->accountId)
                                                : boost::shared_ptr<nqservice::ITaskControl>()) {
                control->operate(op);
            }
            continue;
        }
        COvCommandCenter* commands = utils::CManualSingletonT<COvCommandCenter>::instance();
        if (commands == nullptr) {
            continue;
        }
        const boost::shared_ptr<nqservice::CAccountInfo> account =
            task->accounts.empty() ? boost::shared_ptr<nqservice::CAccountInfo>() : task->accounts.front().account;
        QPointer<COptionPriceTPanel> self(this);
        commands->operateServerTask(nqservice::CTaskHelper::genServerTaskKey(task), op, account,
                                    [self, task, op](const utils::NQError& error, bson::BSONObj reply) {
                                        if (self) {
                                            self->onOperateBztTask(error, reply, task, op);
                                        }
                                    });
    }
}

void COptionPriceTPanel::onOperateBztTask(const utils::NQError& error, bson::BSONObj,
                                          const boost::shared_ptr<nqservice::CTaskDetail>& task,
                                          const boost::shared_ptr<nqservice::CTaskOpRecord>& op)
{
    if (!error.isSuccess() || !task) {
        return;  // the server refused: no word, as the client has it
    }
    const boost::shared_ptr<nqservice::TraderCenter> trader = nqservice::TraderCenter::instance();
    const boost::shared_ptr<nqservice::ITaskCenter> taskCenter =
        trader ? trader->getTaskCenter() : boost::shared_ptr<nqservice::ITaskCenter>();
    if (const auto control = taskCenter ? taskCenter->getTask(task->taskId, task->accountId)
                                        : boost::shared_ptr<nqservice::ITaskControl>()) {
        control->operate(op);
    }
}

}  // namespace TC
