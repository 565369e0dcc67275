#include "order/cstkoptionorderwidget.h"

#include "order/corderformhelper.h"
#include "order/cstrategyorderrules.h"
#include "order/coptionorderrules.h"
#include "seam/cinstrumentdetail.h"
#include "seam/common.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cdoublevalidator.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/csimpletextwidget.h"

#include <QHBoxLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <cfloat>
#include <climits>
#include <cmath>

namespace TC {

namespace {

const QString kMarketPriceText = QStringLiteral("市价");

}  // namespace

CStkOptionOrderWidget::CStkOptionOrderWidget(QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("stk_option_order_widget"), false, parent)
{
    setObjectName(QStringLiteral("stk_option_order_widget"));
    createUi();
    connect(volumeCell, &WG::CParameterCell::sigUnitClicked, this, &CStkOptionOrderWidget::slotUnitClicked);
    timer = new QTimer(this);
    timer->setInterval(kTimerMs);
    connect(timer, &QTimer::timeout, this, &CStkOptionOrderWidget::slotCanOrderNum);
    timer->start();
}

CStkOptionOrderWidget::~CStkOptionOrderWidget() = default;

void CStkOptionOrderWidget::createUi()
{
    CUserConfig* config = getUserConfig();
    unitContracts = config != nullptr ? config->getStockUnitText(QStringLiteral("张")) : QStringLiteral("张");
    unitPercent = config != nullptr ? config->getStockUnitText(QStringLiteral("%")) : QStringLiteral("%");

    setFixedWidth(kWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(5);

    titleText = new WG::CSimpleTextWidget(false, -1, QString(), this);
    titleText->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
    titleText->setFixedHeight(28);
    layout->addWidget(titleText);

    auto* accountRow = new QHBoxLayout();
    accountRow->setSpacing(5);
    accountRow->addWidget(COrderFormHelper::caption(QStringLiteral("账  号"), this));
    accountCombo = new WG::CComboBox(ID_ACCOUNT_COMBO, this);
    accountCombo->setFixedSize(130, 24);
    accountRow->addWidget(accountCombo);
    accountRow->addStretch(1);
    layout->addLayout(accountRow);

    auto* priceRow = new QHBoxLayout();
    priceRow->setSpacing(5);
    priceRow->addWidget(COrderFormHelper::caption(QStringLiteral("报  价"), this));
    priceTypeCombo = new WG::CComboBox(ID_PRICE_TYPE_COMBO, this);
    priceTypeCombo->setFixedSize(130, 24);
    priceRow->addWidget(priceTypeCombo);
    priceEdit = new WG::CLineEdit(ID_PRICE_EDIT, this, true);
    priceEdit->setFixedSize(60, 24);
    priceEdit->setValidator(new WG::CDoubleValidator(0.0001, DBL_MAX, 4, priceEdit));
    priceRow->addWidget(priceEdit);
    priceRow->addStretch(1);
    layout->addLayout(priceRow);

    superPriceCell = new WG::CParameterCell(ID_SUPER_PRICE_CELL, QStringLiteral(" 单笔超价"), QStringLiteral("%"), this);
    superPriceCell->setFixedSize(220, 24);
    superPriceCell->setDoubleValidator(QStringLiteral("%"), 0.0, DBL_MAX, 0.0001);
    superPriceCell->setSpin(QStringLiteral("%"), qMakePair(true, 0.0001));
    superPriceCell->setDouble(0.0);
    layout->addWidget(superPriceCell);

    availableCell = new WG::CParameterCell(ID_AVAILABLE_CELL, QStringLiteral(" 可买开"), unitContracts, this);
    availableCell->setFixedSize(220, 24);
    availableCell->setEnabled(false);
    layout->addWidget(availableCell);

    auto* volumeRow = new QHBoxLayout();
    volumeRow->setSpacing(5);
    volumeCell = COrderFormHelper::makeVolumeCell(ID_VOLUME_CELL, unitContracts, unitPercent, this);
    volumeRow->addWidget(volumeCell);
    percentVolumeText = new WG::CSimpleTextWidget(false, -1, QString(), this);
    percentVolumeText->hide();
    volumeRow->addWidget(percentVolumeText, 1);
    layout->addLayout(volumeRow);
    layout->addStretch(1);
}

// ---- loading ----

void CStkOptionOrderWidget::loadAccounts()
{
    accountCombo->clear();
    // No account stands pre-selected: the trader picks one for each leg.
    for (const CAccountChoice& choice : COrderFormHelper::readyAccounts(nqservice::VQ_TRADER_TYPE_STOCK_OPTION)) {
        accountCombo->addItem(choice.name, choice.key);
    }
    accountCombo->setCurrentIndex(-1);
}

void CStkOptionOrderWidget::setLeg(const CStrategyStockData& leg)
{
    stockCode = leg.code;
    operationType = CStrategyOrderRules::legOperationType(leg.operation);
    loadAccounts();
    COrderFormHelper::fillStockOptionPriceTypes(priceTypeCombo, stockCode);
    const std::string item = nqservice::TypeManager::instance()->getEnumItemName("nqservice::EOperationType",
                                                                                  operationType, 1);
    titleText->setText(QStringLiteral("%1:%2").arg(QString::fromStdString(item), leg.name));
    availableCell->setCellName(operationType == nqservice::OT_BUY_OPEN ? QStringLiteral(" 可买开")
                                                                        : QStringLiteral(" 可卖开"));
    volumeCell->setUnit(unitContracts);
    volumeCell->setInt(CStrategyOrderRules::legQuantity(leg.quantity));
    updateOrderCount();
    if (CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance()) {
        priceData = quotes->getStockPrice(stockCode);
    }
    priceTypeChanged();
}

// ---- price and available volume ----

int CStkOptionOrderWidget::selectedPriceType() const
{
    const QVariant data = priceTypeCombo != nullptr && priceTypeCombo->currentIndex() >= 0
                              ? priceTypeCombo->currentData()
                              : QVariant();
    return data.isValid() ? data.toInt() : -1;
}

void CStkOptionOrderWidget::setPriceText(double price)
{
    priceEdit->setText(utils::isUsable(price) ? QString::number(price, 'f', 4) : QString());
}

void CStkOptionOrderWidget::priceTypeChanged()
{
    if (priceTypeCombo != nullptr && priceEdit != nullptr && availableCell != nullptr && superPriceCell != nullptr) {
        const auto type = static_cast<nqservice::EPriceType>(selectedPriceType());
        if (!nqservice::isRealMarketPrice(type)) {
            availableCell->show();
            superPriceCell->show();
            setPriceText(nqservice::CPriceDataHelper::getPriceForOrder(priceData, type, operationType, 0, nullptr,
                                                                       false, false));
        } else {
            availableCell->hide();
            superPriceCell->hide();
            priceEdit->setText(kMarketPriceText);
        }
        priceEdit->setEnabled(nqservice::isFixPriceType(type));
        superPriceCell->setVisible(!nqservice::isMarketPrice(type) && !nqservice::isFixPriceType(type));
    }
    slotCanOrderNum();
}

void CStkOptionOrderWidget::updatePrice(const boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price) {
        return;
    }
    priceData = price;
    const auto type = static_cast<nqservice::EPriceType>(selectedPriceType());
    if (priceEdit != nullptr && selectedPriceType() >= 0 && !nqservice::isRealMarketPrice(type) &&
        !nqservice::isFixPriceType(type)) {
        setPriceText(
            nqservice::CPriceDataHelper::getPriceForOrder(priceData, type, operationType, 0, nullptr, false, false));
    }
}

void CStkOptionOrderWidget::slotCanOrderNum()
{
    if (accountCombo == nullptr || priceEdit == nullptr || accountCombo->currentIndex() < 0) {
        availableVolume = 0;
        return;
    }
    const boost::shared_ptr<nqservice::CAccountData> account = COrderFormHelper::accountDataOf(currentAccount());
    if (!account) {
        availableVolume = 0;
        return;
    }
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
    if (!detail) {
        return;
    }
    const double price = priceEdit->toDouble();
    if (operationType == nqservice::OT_BUY_OPEN) {
        // Without a price no sum of money bounds a buy.
        const bool unpriced = std::fabs(price) <= utils::kPriceTolerance || utils::isAbsent(price);
        availableVolume = unpriced ? LLONG_MAX
                                   : COrderFormHelper::calcAvailableVolume(account, *detail, operationType, price,
                                                                           availableVolume);
    } else if (operationType == nqservice::OT_SELL_OPEN) {
        availableVolume = COrderFormHelper::calcAvailableVolume(account, *detail, operationType, price, availableVolume);
    }
    COrderFormHelper::showAvailable(availableCell, volumeCell, unitContracts, availableVolume);
}

QString CStkOptionOrderWidget::currentAccount() const
{
    return accountCombo != nullptr && accountCombo->currentIndex() >= 0 ? accountCombo->currentData().toString()
                                                                         : QString();
}

// ---- volume ----

void CStkOptionOrderWidget::updateOrderCount()
{
    COrderFormHelper::countVolume(volumeCell, percentVolumeText, unitContracts, availableVolume, orderCount, ratio);
}

void CStkOptionOrderWidget::slotUnitClicked(QString unit)
{
    COrderFormHelper::switchVolumeUnit(unit, volumeCell, percentVolumeText, unitContracts, unitPercent,
                                       availableVolume, orderCount, ratio);
}

// ---- events ----

bool CStkOptionOrderWidget::handleEvent(int event, int id, int arg, QString text, void* data)
{
    switch (event) {
    case WG::UE_COMBO_CHANGED:
        if (id == ID_ACCOUNT_COMBO) {
            slotCanOrderNum();
            return true;
        }
        if (id == ID_PRICE_TYPE_COMBO) {
            priceTypeChanged();
            return true;
        }
        break;
    case WG::UE_TEXT_CHANGED:
        if (id == ID_PRICE_EDIT) {
            slotCanOrderNum();
            return true;
        }
        if (id == ID_VOLUME_CELL) {
            updateOrderCount();  // typing a volume counts as a step of the spin
            return true;
        }
        if (id == ID_SUPER_PRICE_CELL) {
            return true;
        }
        break;
    case WG::UE_SPIN_CHANGED:
        if (id == ID_VOLUME_CELL) {
            updateOrderCount();
        }
        return true;
    default:
        break;
    }
    return WG::CBaseWidget::handleEvent(event, id, arg, text, data);
}

bool CStkOptionOrderWidget::validate()
{
    if (accountCombo->currentIndex() < 0) {
        WG::CMessageTip::showTip(accountCombo, 0x40, QStringLiteral("请选择账号"), 3, 300);
        return false;
    }
    if (priceTypeCombo->currentIndex() < 0) {
        WG::CMessageTip::showTip(priceTypeCombo, 0x40, QStringLiteral("请选择报价方式"), 3, 300);
        return false;
    }
    if (orderCount == 0) {
        WG::CMessageTip::showTip(volumeCell, 0x40, QStringLiteral("下单量为0"), 3, 300);
        return false;
    }
    return true;
}

bool CStkOptionOrderWidget::fillStockParams(boost::shared_ptr<nqservice::CCodeOrderParam>& param, QString& error,
                                            QString&)
{
    if (priceEdit == nullptr || priceTypeCombo == nullptr || accountCombo == nullptr) {
        return false;
    }
    const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(stockCode);
    if (!detail) {
        error = CStrategyOrderRules::codeErrorText(stockCode);
        return false;
    }
    const auto type = static_cast<nqservice::EPriceType>(selectedPriceType());
    const double typed = priceEdit->toDouble();
    const double price = utils::isUsable(typed) ? typed : 0.0;
    if (!(price - 0.0 > utils::kPriceTolerance) && !nqservice::isRealMarketPrice(type)) {
        error = CStrategyOrderRules::priceErrorText(price);
        return false;
    }
    CLegOrder leg;
    leg.stock = COrderFormHelper::stockInfoOf(*detail);
    leg.account = COrderFormHelper::accountInfoOf(currentAccount());
    leg.operationType = operationType;
    leg.priceType = type;
    leg.price = price;
    leg.volume = COrderFormHelper::splitOne(orderCount, price, type, leg.account, leg.stock, operationType);
    leg.superPricePercent = superPriceCell != nullptr && !superPriceCell->isHidden() ? superPriceCell->toDouble() : -1.0;
    leg.userName = COrderFormHelper::userName();
    param = CStrategyOrderRules::makeParam(leg);
    return COrderFormHelper::checkOrderLimit(*detail, param->volume, type, error);
}

}  // namespace TC
