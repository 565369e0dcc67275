#include "order/coptionorderdialog.h"

#include "order/ccolorkeybutton.h"
#include "order/coptionorderrules.h"
#include "order/corderformhelper.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/common.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cdoublevalidator.h"
#include "toolkit/cframesplitterline.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cquotesgraphwidget.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/csmallnormalbutton.h"
#include "toolkit/cuiresource.h"

#include <boost/format.hpp>
#include <boost/make_shared.hpp>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QThread>
#include <QVBoxLayout>

#include <cfloat>
#include <climits>
#include <cmath>

namespace TC {

namespace {

const QString kMarketPriceText = QStringLiteral("市价");

}  // namespace

COptionOrderDialog::COptionOrderDialog(QWidget* parent)
    : WG::CCommonDialog(parent), priceByType(boost::make_shared<QMap<int, double>>())
{
    createUi();
    // The parent's slots by name: any parent that offers them can use the dialog.
    if (parent != nullptr) {
        connect(this, SIGNAL(sigSetDefaultAccount(QString)), parent, SLOT(slotSetDefaultAccount(QString)));
        connect(this, SIGNAL(sigDoOperation()), parent, SLOT(slotDoOperation()));
    }
    connect(volumeCell, &WG::CParameterCell::sigUnitClicked, this, &COptionOrderDialog::slotUnitClicked);
    connect(this, &COptionOrderDialog::sigUpdateCellPrice, this, &COptionOrderDialog::slotUpdateCellPrice);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setTitle(QStringLiteral("期权下单"));
}

COptionOrderDialog::~COptionOrderDialog()
{
    // First of all: once the handles are dropped no callback reaches this object.
    quoteRequest.reset();
    volumeTable.reset();
}

void COptionOrderDialog::createUi()
{
    CUserConfig* config = getUserConfig();
    unitContracts = config != nullptr ? config->getStockUnitText(QStringLiteral("张")) : QStringLiteral("张");
    unitPercent = config != nullptr ? config->getStockUnitText(QStringLiteral("%")) : QStringLiteral("%");

    auto* body = new QWidget(this);
    auto* outer = new QVBoxLayout(body);
    outer->setContentsMargins(8, 6, 8, 0);
    outer->setSpacing(4);
    auto* top = new QHBoxLayout();
    top->setSpacing(8);
    auto* leftHolder = new QWidget(body);
    leftHolder->setFixedWidth(262);
    auto* left = new QVBoxLayout(leftHolder);
    left->setContentsMargins(0, 0, 0, 0);
    left->setSpacing(4);

    titleText = new WG::CSimpleTextWidget(false, -1, QString(), leftHolder);
    titleText->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
    titleText->setFixedHeight(28);
    left->addWidget(titleText);

    auto* accountRow = new QHBoxLayout();
    accountRow->setSpacing(4);
    accountRow->addWidget(COrderFormHelper::caption(QStringLiteral("账  号"), leftHolder));
    accountCombo = new WG::CComboBox(ID_ACCOUNT_COMBO, leftHolder);
    accountCombo->setFixedSize(130, 24);
    accountRow->addWidget(accountCombo);
    defaultButton = new WG::CPushButton(QString(), ID_DEFAULT_BUTTON, 1, 1, 60, 24, 0, leftHolder);
    defaultButton->setText(QStringLiteral("设为默认"));
    defaultButton->setHorizontalText(true);
    WG::CButtonColor face;
    face.normal = QStringLiteral("clr_order_operation_background");
    face.hover = QStringLiteral("clr_button_hover");
    face.active = QStringLiteral("clr_button_checked");
    face.disabled = QStringLiteral("clr_order_operation_background");
    defaultButton->setButtonColor(face);
    defaultButton->setTextColorKey(QStringLiteral("clr_param_table_order_mode_inactive"),
                                   QStringLiteral("clr_param_table_order_mode_active"),
                                   QStringLiteral("clr_param_table_order_mode_active"),
                                   QStringLiteral("clr_simple_text_disable"));
    defaultButton->setEnabled(false);
    accountRow->addWidget(defaultButton);
    accountRow->addStretch(1);
    left->addLayout(accountRow);

    auto* priceRow = new QHBoxLayout();
    priceRow->setSpacing(4);
    priceRow->addWidget(COrderFormHelper::caption(QStringLiteral("报  价"), leftHolder));
    priceTypeCombo = new WG::CComboBox(ID_PRICE_TYPE_COMBO, leftHolder);
    priceTypeCombo->setFixedSize(130, 24);
    priceRow->addWidget(priceTypeCombo);
    priceEdit = new WG::CLineEdit(ID_PRICE_EDIT, leftHolder, true);
    priceEdit->setFixedSize(60, 24);
    priceEdit->setValidator(new WG::CDoubleValidator(0.0, DBL_MAX, 4, priceEdit));
    priceRow->addWidget(priceEdit);
    priceRow->addStretch(1);
    left->addLayout(priceRow);

    availableCell = new WG::CParameterCell(ID_AVAILABLE_CELL, QString(), unitContracts, leftHolder);
    availableCell->setFixedSize(220, 24);
    availableCell->setEnabled(false);
    left->addWidget(availableCell);

    auto* volumeRow = new QHBoxLayout();
    volumeRow->setSpacing(4);
    volumeCell = COrderFormHelper::makeVolumeCell(ID_VOLUME_CELL, unitContracts, unitPercent, leftHolder);
    volumeRow->addWidget(volumeCell);
    percentVolumeText = new WG::CSimpleTextWidget(false, -1, QString(), leftHolder);
    percentVolumeText->hide();
    volumeRow->addWidget(percentVolumeText, 1);
    left->addLayout(volumeRow);
    left->addStretch(1);
    top->addWidget(leftHolder);

    quotesWidget = new CQuotesGraphWidget(body);
    WG::CUiResource* resources = WG::CUiResource::get();
    quotesWidget->setFixedSize(resources->getSize(QStringLiteral("tc_siz_code_quotes_width")),
                               resources->getSize(QStringLiteral("tc_siz_code_quotes_height")));
    top->addWidget(quotesWidget);
    outer->addLayout(top);

    outer->addWidget(new WG::CFrameSplitterLine(QStringLiteral("clr_operation_frame_line_color"), body));
    auto* bottomHolder = new QWidget(body);
    bottomHolder->setFixedHeight(60);
    auto* bottom = new QHBoxLayout(bottomHolder);
    bottom->setContentsMargins(0, 0, 10, 0);
    bottom->addStretch(1);
    closeTodayCheck = new WG::CCheckBox(ID_CLOSE_TODAY, QStringLiteral("平今"), bottomHolder);
    closeTodayCheck->setFixedSize(40, 25);
    closeTodayCheck->setCheckable(true);
    closeTodayCheck->hide();
    bottom->addWidget(closeTodayCheck);
    bottom->addSpacing(95);
    auto* button = new CColorKeyButton(ID_ORDER_BUTTON, QString(), bottomHolder);
    button->setFixedSize(80, 40);
    orderButton = button;
    bottom->addWidget(orderButton);
    outer->addWidget(bottomHolder);
    setInnerWidget(body);
}

// ---- loading ----

void COptionOrderDialog::setViewInfo(int id, const QMap<int, QStringList>& rowCodes,
                                     nqservice::EVqTraderType type, const std::string& account)
{
    if (titleText == nullptr || availableCell == nullptr || orderButton == nullptr || accountCombo == nullptr ||
        defaultButton == nullptr) {
        return;
    }
    requestOpVolume();
    defaultAccount = QString::fromStdString(account);
    setInterface(id, rowCodes, type);
    loadAccounts(type, account);
    if (defaultAccount.isEmpty() && accountCombo->count() == 1) {
        accountCombo->setCurrentIndex(0);
        defaultButton->setEnabled(false);
        defaultAccount = accountCombo->itemData(0).toString();
        emit sigSetDefaultAccount(defaultAccount);
    }
    setAvailable();
}

void COptionOrderDialog::setInterface(int id, const QMap<int, QStringList>& rowCodes,
                                      nqservice::EVqTraderType type)
{
    operationIndex = id % 100;
    const int row = id / 100;
    const QStringList codes = rowCodes.value(row);
    const int side = operationIndex < 6 ? 0 : 1;
    if (side < codes.size()) {
        stockCode = codes.at(side);
    }
    quotesWidget->setStockCode(stockCode);
    traderType = type;
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
    const QString name = detail ? QString::fromStdString(detail->name) : QString();
    titleText->setText(COptionOrderRules::operationText(operationIndex) + QStringLiteral(":") + name);
    availableCell->setCellName(QStringLiteral(" ") + COptionOrderRules::availableText(operationIndex));
    const bool future = traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION;
    orderButton->setText(future ? COptionOrderRules::futureButtonText(operationIndex)
                                : COptionOrderRules::operationText(operationIndex));
    if (COptionOrderRules::showsCloseToday(operationIndex, traderType)) {
        closeTodayCheck->show();  // never hidden again by this code
    }
    buttonColorKey = QString::fromLatin1(COptionOrderRules::buttonColorKey(operationIndex));
    static_cast<CColorKeyButton*>(orderButton)->setColorKey(buttonColorKey);

    // The subscription hands its cached snapshot over at once, so the price
    // types below are built from a price on the first press already.
    // The handle is dropped first in the destructor: no callback outlives the dialog.
    quoteRequest = CQuoteRequest::makeHandicapRequest(
        stockCode, [this](boost::shared_ptr<CPriceData>& data) { onTablePriceData(data); }, ST_DEFAULT);
    setQuote();
    if (CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance()) {
        const boost::shared_ptr<CPriceData> latest = quotes->getStockPrice(stockCode);
        if (latest) {
            priceData = latest;
        }
    }
}

void COptionOrderDialog::loadAccounts(nqservice::EVqTraderType type, const std::string& account)
{
    accountCombo->clear();
    const QString wanted = QString::fromStdString(account);
    for (const CAccountChoice& choice : COrderFormHelper::readyAccounts(type)) {
        accountCombo->addItem(choice.name, choice.key);
        if (choice.key == wanted) {
            accountCombo->setCurrentIndex(accountCombo->findData(choice.key));
            defaultButton->setEnabled(false);
        }
    }
}

void COptionOrderDialog::setOperationType()
{
    operationType = COptionOrderRules::operationType(operationIndex, traderType,
                                                     closeTodayCheck != nullptr && closeTodayCheck->isChecked());
}

void COptionOrderDialog::setQuote()
{
    setOperationType();
    if (!priceData) {
        return;
    }
    priceTypeCombo->clear();
    CUserConfig* config = getUserConfig();
    const bool upStop = config != nullptr && config->hasUpStopPrice();
    if (traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        for (const auto& type : COptionOrderRules::priceTypes(traderType, upStop)) {
            priceTypeCombo->addItem(type.first, type.second);
        }
        priceTypeCombo->setCurrentIndex(priceTypeCombo->findData(COptionOrderRules::defaultPriceType(traderType)));
    } else if (traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION) {
        COrderFormHelper::fillStockOptionPriceTypes(priceTypeCombo, stockCode);
    }
    resetPrice();
}

void COptionOrderDialog::resetPrice()
{
    if (!priceData) {
        return;
    }
    const auto operation = static_cast<nqservice::EOperationType>(operationType);
    for (int type : COptionOrderRules::pricedTypes(traderType)) {
        double price = 0.0;
        if (type >= 0 && type <= 4) {
            price = priceData->askPrice(5 - type);
        } else if (type == 5) {
            price = priceData->lastPrice;
        } else if (type >= 6 && type <= 10) {
            price = priceData->bidPrice(type - 5);
        } else {
            price = priceData->getPriceForOrder(static_cast<nqservice::EPriceType>(type), operation, 0, nullptr, false);
        }
        priceByType->insert(type, price);
    }
}

// ---- quotes and volumes from other threads ----

void COptionOrderDialog::onTablePriceData(boost::shared_ptr<TC::CPriceData> price)
{
    if (!price) {
        return;
    }
    if (QThread::currentThread() == thread()) {
        applyPrice(price);
        return;
    }
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        pendingPrice = std::move(price);  // the newest wins
    }
    postPending();
}

void COptionOrderDialog::onQueryVolume(std::string key, long long volume)
{
    if (volumeTable) {
        // The table guards itself; the dialog's cells wait for the GUI thread.
        volumeTable->setVolume(key + std::to_string(operationType), volume == LLONG_MAX ? 0 : volume);
    }
    if (QThread::currentThread() == thread()) {
        setAvailable();
        return;
    }
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        pendingVolume = true;
    }
    postPending();
}

void COptionOrderDialog::postPending()
{
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        if (pendingPosted) {
            return;
        }
        pendingPosted = true;
    }
    QMetaObject::invokeMethod(this, "applyPending", Qt::QueuedConnection);
}

void COptionOrderDialog::applyPending()
{
    boost::shared_ptr<CPriceData> price;
    bool volume = false;
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        price.swap(pendingPrice);
        volume = pendingVolume;
        pendingVolume = false;
        pendingPosted = false;
    }
    if (price) {
        applyPrice(price);
    }
    if (volume) {
        setAvailable();
    }
}

void COptionOrderDialog::applyPrice(const boost::shared_ptr<TC::CPriceData>& price)
{
    priceData = price;
    quotesWidget->parsePrice(price);
    resetPrice();
    emit sigUpdateCellPrice();
}

void COptionOrderDialog::slotUpdateCellPrice()
{
    const int type = selectedPriceType();
    const auto priceType = static_cast<nqservice::EPriceType>(type);
    if (priceEdit != nullptr && type >= 0 && !nqservice::isFixPriceType(priceType)) {
        if (!nqservice::isRealMarketPrice(priceType)) {
            setPriceText(priceByType->value(type));
        } else {
            priceEdit->setText(kMarketPriceText);
        }
    }
    setAvailable();
}

// ---- available volume ----

int COptionOrderDialog::selectedPriceType() const
{
    const QVariant data = priceTypeCombo != nullptr ? priceTypeCombo->currentData() : QVariant();
    return data.isValid() ? data.toInt() : -1;
}

QString COptionOrderDialog::selectedAccount() const
{
    return accountCombo != nullptr && accountCombo->currentIndex() >= 0 ? accountCombo->currentData().toString()
                                                                         : QString();
}

void COptionOrderDialog::setPriceText(double price)
{
    priceEdit->setText(utils::isAbsent(price) ? QString() : QString::number(price, 'f', 4));
}

double COptionOrderDialog::calcPrice() const
{
    const double typed = priceEdit != nullptr ? priceEdit->toDouble() : 0.0;
    if (!utils::isAbsent(typed) && std::fabs(typed) > utils::kPriceTolerance) {
        return typed;
    }
    return nqservice::CPriceDataHelper::getPriceForCalc(priceData, static_cast<nqservice::EPriceType>(selectedPriceType()),
                                                        static_cast<nqservice::EOperationType>(operationType), 0,
                                                        nullptr, false, false);
}

void COptionOrderDialog::requestOpVolume()
{
    const QString key = selectedAccount();
    if (!COrderFormHelper::accountDataOf(key)) {
        return;
    }
    CStockRequestParam param;
    if (nqservice::DataHelper::isEnabledRequestByBrokerAccount(key.toStdString())) {
        param.accounts.push_back(key.toStdString());
    }
    if (param.accounts.empty()) {
        return;
    }
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
    if (volumeTable && detail && volumeTable->stockKey() != detail->key()) {
        volumeTable->clearVolumes();
    }
    if (!detail) {
        return;
    }
    param.market = detail->market;
    param.code = detail->code;
    param.priceType = static_cast<nqservice::EPriceType>(selectedPriceType());
    param.price = calcPrice();
    param.operationType = static_cast<nqservice::EOperationType>(operationType);
    param.callback = [this](std::string account, long long volume) { onQueryVolume(std::move(account), volume); };
    if (param.isValid()) {
        makeStockRequest(param, volumeTable);
        utils::writeLog(utils::kLogLevelInfo, "TC::COptionOrderDialog::requestOpVolume", std::to_string(__LINE__),
                        (boost::format("COptionOrderDialog::requestStockOptionOpVolume : optType: %1% code: %2% price %3%") %
                         operationType % detail->code % param.price)
                            .str());
    }
}

void COptionOrderDialog::setAvailable()
{
    const QString key = selectedAccount();
    if (key.isEmpty()) {
        return;
    }
    const boost::shared_ptr<nqservice::CAccountData> account = COrderFormHelper::accountDataOf(key);
    if (!account) {
        availableVolume = 0;
        return;
    }
    const bool byServer = nqservice::DataHelper::isEnabledRequestByBrokerAccount(key.toStdString()) && volumeTable;
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
    const double price = calcPrice();
    if (!detail) {
        return;
    }
    if (byServer) {
        long long volume = 0;
        availableVolume = volumeTable->getVolume(key.toStdString() + std::to_string(operationType), volume) ? volume : 0;
    } else if (operationIndex >= 0 && operationIndex < COptionOrderRules::kButtonCount) {
        availableVolume = COrderFormHelper::calcAvailableVolume(account, *detail, operationType, price, availableVolume);
    }
    COrderFormHelper::showAvailable(availableCell, volumeCell, unitContracts, availableVolume);
}

void COptionOrderDialog::updateOrderCount()
{
    COrderFormHelper::countVolume(volumeCell, percentVolumeText, unitContracts, availableVolume, orderCount, ratio);
}

void COptionOrderDialog::slotUnitClicked(QString unit)
{
    COrderFormHelper::switchVolumeUnit(unit, volumeCell, percentVolumeText, unitContracts, unitPercent, availableVolume,
                                       orderCount, ratio);
}

// ---- events ----

void COptionOrderDialog::refreshDefaultButton()
{
    const QString key = selectedAccount();
    defaultButton->setEnabled(!key.isEmpty() && key != defaultAccount);
}

void COptionOrderDialog::priceTypeChanged()
{
    const int type = selectedPriceType();
    if (priceEdit != nullptr && type >= 0) {
        const auto priceType = static_cast<nqservice::EPriceType>(type);
        if (!nqservice::isRealMarketPrice(priceType)) {
            availableCell->show();
            setPriceText(priceByType->value(type));
        } else {
            availableCell->hide();
            priceEdit->setText(kMarketPriceText);
        }
        priceEdit->setEnabled(nqservice::isFixPriceType(priceType));
    }
    setAvailable();
    if (isVisible()) {
        requestOpVolume();
    }
}

bool COptionOrderDialog::handleEvent(int event, int id, int arg, QString text, void* data)
{
    switch (event) {
    case WG::UE_BUTTON_CLICKED:
        if (id == ID_ORDER_BUTTON) {
            confirm();
            return true;
        }
        if (id == ID_DEFAULT_BUTTON) {
            const QString key = selectedAccount();
            if (!key.isEmpty()) {
                defaultAccount = key;
                defaultButton->setEnabled(false);
                emit sigSetDefaultAccount(defaultAccount);
            }
            return true;
        }
        if (id == ID_CLOSE) {
            finish();
            return true;
        }
        break;
    case WG::UE_ACCOUNT_SELECTED:
        if (id == ID_ACCOUNT_COMBO) {
            refreshDefaultButton();
            return true;
        }
        break;
    case WG::UE_CHECK_CLICKED:
    case WG::UE_CHECK_TOGGLED:
        if (id == ID_CLOSE_TODAY) {
            setOperationType();
            resetPrice();
            setAvailable();
            return true;
        }
        break;
    case WG::UE_COMBO_CHANGED:
        if (id == ID_ACCOUNT_COMBO) {
            refreshDefaultButton();
            setAvailable();
            if (isVisible()) {
                requestOpVolume();
            }
            return true;
        }
        if (id == ID_PRICE_TYPE_COMBO) {
            priceTypeChanged();
            return true;
        }
        break;
    case WG::UE_VALUE_COMMITTED:
        if (id == ID_PRICE_EDIT) {
            if (isVisible()) {
                requestOpVolume();
            }
            return true;
        }
        break;
    case WG::UE_TEXT_CHANGED:
        if (id == ID_PRICE_EDIT) {
            setAvailable();
            return true;
        }
        if (id == ID_VOLUME_CELL) {
            updateOrderCount();  // typing a volume counts as a step of the spin
            return true;
        }
        break;
    case WG::UE_SPIN_CHANGED:
    case WG::UE_SPIN_VALUE_CHANGED:
        updateOrderCount();
        return true;
    case WG::UE_SET_PRICE_TYPE:
        priceTypeCombo->setCurrentIndex(priceTypeCombo->findData(arg));
        return true;
    case WG::UE_SET_LIMIT_PRICE: {
        bool ok = false;
        const double price = text.toDouble(&ok);
        priceTypeCombo->setCurrentIndex(priceTypeCombo->findData(11));
        setPriceText(ok ? price : DBL_MAX);
        return true;
    }
    case WG::UE_SET_VOLUME_UNITS: {
        bool ok = false;
        const double units = text.toDouble(&ok);
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
        const int minUnit = detail ? nqservice::getTradeMinUnit(detail->market, detail->code) : 1;
        volumeCell->setUnit(unitContracts);
        percentVolumeText->hide();
        volumeCell->setInt(static_cast<int>(minUnit * (ok ? units : DBL_MAX)));
        updateOrderCount();
        return true;
    }
    default:
        break;
    }
    return WG::CCommonDialog::handleEvent(event, id, arg, text, data);
}

void COptionOrderDialog::confirm()
{
    result = orderValue();
    if (accountCombo->currentIndex() < 0) {
        WG::CMessageTip::showTip(accountCombo, 0x40, QStringLiteral("请选择账号"), 3, 300);
        return;
    }
    const int type = selectedPriceType();
    if (type < 0) {
        WG::CMessageTip::showTip(priceTypeCombo, 0x40, QStringLiteral("请选择报价方式"), 3, 300);
        return;
    }
    if (orderCount == 0) {
        WG::CMessageTip::showTip(volumeCell, 0x40, QStringLiteral("下单量为0"), 3, 300);
        return;
    }
    const auto priceType = static_cast<nqservice::EPriceType>(type);
    result.accountKey = selectedAccount();
    result.stockCode = stockCode;
    result.priceType = priceType;
    result.price = nqservice::isFixPriceType(priceType) ? priceEdit->toDouble() : priceByType->value(type);
    result.volume = orderCount;
    result.ratio = ratio;
    result.operationType = static_cast<nqservice::EOperationType>(operationType);
    emit sigDoOperation();
    close();
}

void COptionOrderDialog::finish()
{
    emit sigDoOperation();
    close();
}

void COptionOrderDialog::keyPressEvent(QKeyEvent* event)
{
    WG::CCommonDialog::keyPressEvent(event);
    if (event->key() == Qt::Key_Escape) {
        emit sigDoOperation();
        close();
    }
}

}  // namespace TC
