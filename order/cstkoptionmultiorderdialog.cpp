#include "order/cstkoptionmultiorderdialog.h"

#include "order/ccolorkeybutton.h"
#include "order/chpfoptionmultiorderdata.h"
#include "order/chpfoptionmultiorderdatamodel.h"
#include "order/corderformhelper.h"
#include "order/cstrategyorderrules.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/common.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "toolkit/cbasetablecolumncomboxdelegate.h"
#include "toolkit/cbasetablecolumndoublespinboxdelegate.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cframesplitterline.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cstandardexhpftable.h"
#include "toolkit/cuiresource.h"
#include "toolkit/cwidgetlist.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cfloat>
#include <climits>

namespace TC {

namespace {

const QString kMarketPriceText = QStringLiteral("市价");

// The price column: a spin box where the trader types the price (fixed types),
// else the price the type means, or "市价", as plain text.
class CMultiOrderPriceDelegate : public WG::CBaseTableColumnDoubleSpinBoxDelegate {
public:
    CMultiOrderPriceDelegate(int column, WG::CEventDeliverer* deliverer)
        : WG::CBaseTableColumnDoubleSpinBoxDelegate(column, deliverer)
    {
    }
    void setShownText(const std::string& key, const QString& text)
    {
        m_texts[key] = text;
        setItemText(key, text);  // a number becomes the row's price; "市价" leaves it
        emit sigRepaint();
    }
    QString shownText(const std::string& key) const
    {
        const auto it = m_texts.find(key);
        return it == m_texts.end() ? QString() : it->second;
    }
    void paintCell(QPainter* painter, const std::string& key, const WG::CCellPaintContext& context) const override
    {
        if (itemVisible(key)) {
            WG::CBaseTableColumnDoubleSpinBoxDelegate::paintCell(painter, key, context);
            return;
        }
        painter->setFont(context.font);
        painter->setPen(context.textColor);
        painter->drawText(context.rect.adjusted(4, 0, -4, 0), Qt::AlignRight | Qt::AlignVCenter, shownText(key));
    }
    QString itemText(const std::string& key) const override
    {
        return itemVisible(key) ? WG::CBaseTableColumnDoubleSpinBoxDelegate::itemText(key) : shownText(key);
    }

private:
    std::map<std::string, QString> m_texts;
};

CMultiOrderPriceDelegate* asPriceDelegate(WG::CBaseTableColumnDoubleSpinBoxDelegate* delegate)
{
    return static_cast<CMultiOrderPriceDelegate*>(delegate);
}

}  // namespace

CStkOptionMultiOrderDialog::CStkOptionMultiOrderDialog(QWidget* parent)
    : WG::CCommonDialog(parent), legModel(std::make_unique<CHpfOptionMultiOrderDataModel>())
{
    setTitle(QStringLiteral("快速下单"));
    setWindowFlags(windowFlags() | Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    createUi();
    setFixedSize(800, 350);
    timer = new QTimer(this);
    timer->setInterval(kTimerMs);
    connect(timer, &QTimer::timeout, this, &CStkOptionMultiOrderDialog::slotTimeOut);
    timer->start();
}

CStkOptionMultiOrderDialog::~CStkOptionMultiOrderDialog()
{
    // First of all: once the handles are dropped no callback reaches the queue.
    subscriptions.clear();
    // The table goes before the model it shows.
    delete legTable;
    legTable = nullptr;
}

void CStkOptionMultiOrderDialog::createUi()
{
    CUserConfig* config = getUserConfig();
    unitCopies = QStringLiteral("份");
    const QString unitContracts = config != nullptr ? config->getStockUnitText(QStringLiteral("张")) : QStringLiteral("张");

    auto* body = new QWidget(this);
    auto* outer = new QVBoxLayout(body);
    outer->setContentsMargins(10, 8, 10, 0);
    outer->setSpacing(6);

    topRow = new WG::CWidgetList(Qt::Horizontal, body);
    topRow->setSpacing(8);
    auto* caption = new WG::CSimpleTextWidget(false, -1, QStringLiteral("报  价"), topRow);
    caption->setFixedSize(40, 24);
    topRow->addFixedWidget(caption, WG::WA_CENTER, false);
    priceTypeCombo = new WG::CComboBox(ID_PRICE_TYPE_COMBO, topRow);
    priceTypeCombo->setFixedSize(130, 24);
    topRow->addFixedWidget(priceTypeCombo, WG::WA_CENTER, false);
    availableCell = new WG::CParameterCell(ID_AVAILABLE_CELL, QStringLiteral(" 可下单"), unitContracts, topRow);
    availableCell->setFixedSize(181, 24);
    availableCell->setEnabled(false);
    topRow->addFixedWidget(availableCell, WG::WA_CENTER, false);
    superPriceCell = new WG::CParameterCell(ID_SUPER_PRICE_CELL, QStringLiteral(" 单笔超价"), QStringLiteral("%"), topRow);
    superPriceCell->setFixedSize(181, 24);
    superPriceCell->setDoubleValidator(QStringLiteral("%"), 0.0, DBL_MAX, 0.0001);
    superPriceCell->setSpin(QStringLiteral("%"), qMakePair(true, 0.0001));
    superPriceCell->setDouble(0.0);
    topRow->addFixedWidget(superPriceCell, WG::WA_CENTER, false);
    copiesCell = new WG::CParameterCell(ID_COPIES_CELL, QStringLiteral(" 下单量"), unitCopies, topRow);
    copiesCell->setFixedSize(181, 24);
    copiesCell->setIntValidator(unitCopies, 0, 0x7fffffff, 1);
    copiesCell->setSpin(unitCopies, qMakePair(true, 1.0));
    copiesCell->setInt(0);
    topRow->addFixedWidget(copiesCell, WG::WA_CENTER, false);
    topRow->addStretchSpace(1);
    topRow->updateWidgetLength();
    outer->addWidget(topRow);

    legTable = new WG::CStandardExHpfTable(ID_LEG_TABLE, body, WG::EBaseTableMenuFlags(0x1FF & ~0x8));
    legTable->setDataModel(legModel.get());
    priceDelegate = new CMultiOrderPriceDelegate(CHpfOptionMultiOrderData::COL_PRICE, nullptr);
    priceDelegate->setDoubleSpinBoxRange(0.0001, DBL_MAX);
    priceDelegate->setDoubleSpinBoxDecimals(4);
    priceDelegate->setDoubleSpinBoxSingelStep(0.0001);
    legTable->setColumnDelegate(CHpfOptionMultiOrderData::COL_PRICE, priceDelegate);
    accountDelegate = new WG::CBaseTableColumnComboxDelegate(CHpfOptionMultiOrderData::COL_ACCOUNT, nullptr);
    legTable->setColumnDelegate(CHpfOptionMultiOrderData::COL_ACCOUNT, accountDelegate);
    outer->addWidget(legTable, 1);

    outer->addWidget(new WG::CFrameSplitterLine(QStringLiteral("clr_operation_frame_line_color"), body));
    outer->addWidget(COrderFormHelper::makeButtonRow(body, ID_CANCEL_BUTTON, ID_ORDER_BUTTON, cancelButton, orderButton));
    setInnerWidget(body);
}

// ---- loading ----

void CStkOptionMultiOrderDialog::setLegs(const QList<CStrategyStockData>& legs)
{
    if (legTable == nullptr || !legModel || legs.isEmpty()) {
        return;
    }
    COrderFormHelper::fillStockOptionPriceTypes(priceTypeCombo, legs.first().code);
    QStringList names;
    QVector<QVariant> keys;
    for (const CAccountChoice& choice : COrderFormHelper::readyAccounts(nqservice::VQ_TRADER_TYPE_STOCK_OPTION)) {
        names << choice.name;
        keys << choice.key;
    }
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    for (const CStrategyStockData& leg : legs) {
        auto row = boost::make_shared<CHpfOptionMultiOrderData>();
        row->code = leg.code;
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(leg.code);
        row->name = detail ? QString::fromStdString(detail->name) : leg.name;
        row->optionKind = exchange != nullptr && detail && exchange->isCall(detail) ? QStringLiteral("认购") : QStringLiteral("认沽");
        row->offsetFlag = nqservice::OF_OPEN;
        row->buySell = getBuyOrSellType(leg.operation);
        row->quantity = CStrategyOrderRules::legQuantity(leg.quantity);
        const std::string key = row->keyString();
        accountDelegate->setItems(key, names, keys);
        subscriptions.insert(leg.code,
                             CQuoteRequest::makeHandicapRequest(
                                 leg.code, [this](boost::shared_ptr<CPriceData>& data) { onPrice(data); },
                                 static_cast<ESubscribeType>(0)));
        legModel->addData(row);
    }
    priceTypeChanged();
    calcAvailableCopies();
    legTable->updateTable();
    legTable->adjustColumnWidth();
    // The delegates' cells have no text of the row to measure: room for a price with its arrows and a name.
    legTable->setColumnWidth(CHpfOptionMultiOrderData::COL_PRICE, 110);
    legTable->setColumnWidth(CHpfOptionMultiOrderData::COL_ACCOUNT, 150);
}

// ---- quotes ----

void CStkOptionMultiOrderDialog::onPrice(boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price) {
        return;
    }
    const QString key = QString::fromStdString(utils::vqStockKey(price->market, price->code));
    std::lock_guard<std::mutex> lock(priceMutex);
    priceQueue.insert(key, price);
}

int CStkOptionMultiOrderDialog::queuedPrices() const
{
    std::lock_guard<std::mutex> lock(priceMutex);
    return priceQueue.size();
}

void CStkOptionMultiOrderDialog::slotTimeOut()
{
    const int type = selectedPriceType();
    const auto priceType = static_cast<nqservice::EPriceType>(type);
    if (priceTypeCombo != nullptr && legModel && legTable != nullptr && type >= 0 &&
        !nqservice::isRealMarketPrice(priceType) && !nqservice::isFixPriceType(priceType)) {
        std::lock_guard<std::mutex> lock(priceMutex);
        for (const boost::shared_ptr<TC::CPriceData>& price : priceQueue) {
            updateRow(price);
        }
        priceQueue.clear();
    }
    calcAvailableCopies();
}

boost::shared_ptr<CHpfOptionMultiOrderData> CStkOptionMultiOrderDialog::rowOf(const QString& code) const
{
    return boost::dynamic_pointer_cast<CHpfOptionMultiOrderData>(legModel->getDataByKey(code));
}

void CStkOptionMultiOrderDialog::setRowPrice(const QString& code, int buySell,
                                             const boost::shared_ptr<TC::CPriceData>& price)
{
    CUserConfig* config = getUserConfig();
    const WG::FormatFlags flags = config != nullptr ? WG::FormatFlags(config->getSegmentedFormatFlag())
                                                    : WG::FormatFlags();
    // The side (18 or 19) goes in as the operation, as it stands.
    const double value = nqservice::CPriceDataHelper::getPriceForOrder(
        price, static_cast<nqservice::EPriceType>(selectedPriceType()), static_cast<nqservice::EOperationType>(buySell),
        0, nullptr, false, false);
    asPriceDelegate(priceDelegate)
        ->setShownText(code.toUtf8().toStdString(), WG::formatDoubleNumber(value, 4, flags, false, QStringLiteral("非法值")));
}

void CStkOptionMultiOrderDialog::updateRow(const boost::shared_ptr<TC::CPriceData>& price)
{
    const QString key = QString::fromStdString(utils::vqStockKey(price->market, price->code));
    const boost::shared_ptr<CHpfOptionMultiOrderData> row = rowOf(key);
    if (!row) {
        return;
    }
    setRowPrice(key, row->buySell, price);
    legModel->updateData(row);
    ++rowUpdateCount;
}

QString CStkOptionMultiOrderDialog::priceText(const QString& code) const
{
    return priceDelegate != nullptr ? priceDelegate->itemText(code.toUtf8().toStdString()) : QString();
}

void CStkOptionMultiOrderDialog::setRowAccount(const QString& code, const QString& accountKey)
{
    const std::string key = code.toUtf8().toStdString();
    const int previous = accountDelegate->currentIndex(key);
    int index = -1;
    for (int i = 0; i < accountDelegate->items(key).size() && index < 0; ++i) {
        accountDelegate->setCurrentIndex(key, i);
        if (accountDelegate->currentData(key).toString() == accountKey) {
            index = i;
        }
    }
    accountDelegate->setCurrentIndex(key, previous);
    accountDelegate->setCurrentIndex(key, index, true);
}

// ---- price type ----

int CStkOptionMultiOrderDialog::selectedPriceType() const
{
    const QVariant data = priceTypeCombo != nullptr && priceTypeCombo->currentIndex() >= 0
                              ? priceTypeCombo->currentData()
                              : QVariant();
    return data.isValid() ? data.toInt() : -1;
}

void CStkOptionMultiOrderDialog::priceTypeChanged()
{
    if (priceTypeCombo != nullptr && availableCell != nullptr && superPriceCell != nullptr && topRow != nullptr &&
        legModel && legTable != nullptr) {
        const auto type = static_cast<nqservice::EPriceType>(selectedPriceType());
        const bool realMarket = nqservice::isRealMarketPrice(type);
        availableCell->setVisible(!realMarket);
        superPriceCell->setVisible(!nqservice::isMarketPrice(type) && !nqservice::isFixPriceType(type));
        topRow->updateWidgetLength();
        CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
        for (const WG::IBaseHpfTableDataPtr& data : legModel->getAllDatas()) {
            const auto row = boost::dynamic_pointer_cast<CHpfOptionMultiOrderData>(data);
            if (!row) {
                continue;
            }
            const std::string key = row->keyString();
            const boost::shared_ptr<TC::CPriceData> price =
                quotes != nullptr ? quotes->getStockPrice(row->code) : boost::shared_ptr<TC::CPriceData>();
            if (!realMarket) {
                priceDelegate->setItemVisible(key, nqservice::isFixPriceType(type));
                setRowPrice(row->code, row->buySell, price);
            } else {
                priceDelegate->setItemVisible(key, false);
                asPriceDelegate(priceDelegate)->setShownText(key, kMarketPriceText);
            }
            legModel->updateData(row);
        }
        legTable->updateTable();
    }
    calcAvailableCopies();
}

// ---- money ----

void CStkOptionMultiOrderDialog::calcAvailableCopies()
{
    if (!legModel || availableCell == nullptr || priceDelegate == nullptr || accountDelegate == nullptr) {
        return;
    }
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    nqservice::IFeeService* fees = center ? center->getFeeService() : nullptr;
    QMap<QString, double> needs;
    for (const WG::IBaseHpfTableDataPtr& data : legModel->getAllDatas()) {
        const auto row = boost::dynamic_pointer_cast<CHpfOptionMultiOrderData>(data);
        if (!row) {
            continue;
        }
        const std::string key = row->keyString();
        const QString account = accountDelegate->currentData(key).toString();
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(row->code);
        const boost::shared_ptr<nqservice::CAccountData> accountData = COrderFormHelper::accountDataOf(account);
        if (!detail || !accountData || fees == nullptr) {
            continue;
        }
        const boost::shared_ptr<nqservice::CInstrumentFee> fee =
            fees->getInstrumentFee(accountData->getAccountInfo(), detail->market, detail->code);
        if (!fee) {
            continue;
        }
        CLegMoney money;
        money.buy = row->buySell == nqservice::OT_BUY;
        money.price = priceDelegate->itemValue(key);
        money.multiplier = detail->getDoubleField(nqservice::IF_CONTRACT_UNIT);
        money.marginPrice = detail->getDoubleField(nqservice::IF_MARGIN_PARAMETER);
        money.openBuyFee = nqservice::StockOptionFeeDataHelper::getUnitFee(fee, nqservice::OF_OPEN, nqservice::EBS_BUY);
        money.openSellFee = nqservice::StockOptionFeeDataHelper::getUnitFee(fee, nqservice::OF_OPEN, nqservice::EBS_SELL);
        money.marginRatio = fee->marginRatio;
        money.quantity = row->quantity;
        needs[account] += CStrategyOrderRules::legNeed(money);
    }
    QMap<QString, double> funds;
    for (auto it = needs.constBegin(); it != needs.constEnd(); ++it) {
        const boost::shared_ptr<nqservice::CAccountData> accountData = COrderFormHelper::accountDataOf(it.key());
        const boost::shared_ptr<nqservice::CAccountDetail> detail =
            accountData ? accountData->getAccountDetail() : boost::shared_ptr<nqservice::CAccountDetail>();
        if (detail) {
            funds.insert(it.key(), detail->availableFunds);
        }
    }
    availableCopies = CStrategyOrderRules::availableCopies(needs, funds);
    availableCell->setString(CStrategyOrderRules::availableText(availableCopies));
    copiesCell->setIntValidator(unitCopies, 0, CStrategyOrderRules::volumeRangeTop(availableCopies), 1);
}

// ---- sending ----

bool CStkOptionMultiOrderDialog::validate()
{
    if (priceTypeCombo->currentIndex() < 0) {
        WG::CMessageTip::showTip(priceTypeCombo, 0x40, QStringLiteral("请选择报价方式"), 3, 300);
        return false;
    }
    if (copiesCell->toInt() == 0 || utils::isAbsent(copiesCell->toInt())) {
        WG::CMessageTip::showTip(copiesCell, 0x40, QStringLiteral("下单量为0"), 3, 300);
        return false;
    }
    const QList<WG::IBaseHpfTableDataPtr> rows = legModel->getAllDatas();
    for (const WG::IBaseHpfTableDataPtr& row : rows) {
        const QString account = accountDelegate->currentData(row->keyString()).toString();
        if (account.isEmpty() || !COrderFormHelper::accountInfoOf(account)) {
            WG::CMessageBox::warning(nullptr, this, QStringLiteral("提示"), QStringLiteral("请选择账号"),
                                     QMessageBox::Ok);
            return false;
        }
    }
    const bool anyVolume = std::any_of(rows.begin(), rows.end(), [](const WG::IBaseHpfTableDataPtr& data) {
        const auto row = boost::dynamic_pointer_cast<CHpfOptionMultiOrderData>(data);
        return row && row->quantity > 0;
    });
    if (!anyVolume) {
        WG::CMessageBox::warning(nullptr, this, QStringLiteral("提示"), QStringLiteral("下单量为0"), QMessageBox::Ok);
        return false;
    }
    return true;
}

bool CStkOptionMultiOrderDialog::fillStockParams(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                                                 std::map<std::string, double>& weights, QString& error, QString&)
{
    params.clear();
    if (!legModel || priceTypeCombo == nullptr || copiesCell == nullptr) {
        return false;
    }
    const auto type = static_cast<nqservice::EPriceType>(selectedPriceType());
    const int copies = copiesCell->toInt();
    const double superPercent = superPriceCell != nullptr && !superPriceCell->isHidden() ? superPriceCell->toDouble() : -1.0;
    for (const WG::IBaseHpfTableDataPtr& data : legModel->getAllDatas()) {
        const auto row = boost::dynamic_pointer_cast<CHpfOptionMultiOrderData>(data);
        if (!row) {
            continue;
        }
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = COrderFormHelper::instrumentOf(row->code);
        if (!detail) {
            error = CStrategyOrderRules::codeErrorText(row->code);
            return false;
        }
        const std::string key = row->keyString();
        const QString account = accountDelegate->currentData(key).toString();
        const double value = priceDelegate->itemValue(key);
        CLegOrder leg;
        leg.stock = COrderFormHelper::stockInfoOf(*detail);
        leg.account = COrderFormHelper::accountInfoOf(account);
        weights[account.toStdString()] = 1.0;
        leg.operationType = row->buySell == nqservice::OT_BUY ? nqservice::OT_BUY_OPEN : nqservice::OT_SELL_OPEN;
        leg.priceType = type;
        leg.price = utils::isUsable(value) ? value : 0.0;
        leg.volume = COrderFormHelper::splitOne(CStrategyOrderRules::legVolume(copies, row->quantity), leg.price, type,
                                                leg.account, leg.stock, leg.operationType);
        leg.superPricePercent = superPercent;
        leg.userName = COrderFormHelper::userName();
        boost::shared_ptr<nqservice::CCodeOrderParam> param = CStrategyOrderRules::makeParam(leg);
        if (!COrderFormHelper::checkOrderLimit(*detail, param->volume, type, error)) {
            return false;
        }
        params.push_back(param);
    }
    return true;
}

void CStkOptionMultiOrderDialog::confirm()
{
    if (!validate()) {
        return;
    }
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    std::map<std::string, double> weights;
    QString error;
    QString remark;
    if (!fillStockParams(params, weights, error, remark)) {
        COrderFormHelper::showMessage(error);
        return;
    }
    COrderFormHelper::sendStockOptionCommand(params, weights, remark, this,
                                             "TC::CStkOptionMultiOrderDialog::handleEvent");
    accept();
}

bool CStkOptionMultiOrderDialog::handleEvent(int event, int id, int arg, QString text, void* data)
{
    switch (event) {
    case WG::UE_BUTTON_CLICKED:
        if (id == ID_ORDER_BUTTON) {
            confirm();
            return true;
        }
        if (id == ID_CANCEL_BUTTON) {
            reject();
            return true;
        }
        break;
    case WG::UE_COMBO_CHANGED:
        if (id == ID_PRICE_TYPE_COMBO) {
            priceTypeChanged();
            return true;
        }
        break;
    case WG::UE_DELEGATE_COMBO_CHANGED:
    case WG::UE_DELEGATE_SPIN_CHANGED:
    case UE_ACCOUNT_DATA:
    case UE_ACCOUNT_FUNDS:
    case UE_ACCOUNT_LOGIN:
        calcAvailableCopies();
        return true;
    default:
        break;
    }
    return WG::CCommonDialog::handleEvent(event, id, arg, text, data);
}

}  // namespace TC
