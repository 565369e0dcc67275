#include "order/cpricetquickorderwidget.h"

#include "order/coptionorderrules.h"
#include "order/cpricetquickordertable.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cquotespriceslist.h"
#include "toolkit/cradiobuttongroup.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cuiresource.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>
#include <fmt/format.h>

#include <climits>

namespace TC {

namespace {

constexpr const char* kWhere = "TC::CPriceTQuickOrderWidget";

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }
CQuoteClient* quotes() { return utils::CManualSingletonT<CQuoteClient>::instance(); }

boost::shared_ptr<nqservice::CAccountData> accountDataOf(const std::string& key)
{
    const auto center = nqservice::TraderCenter::instance();
    const auto data = center ? center->getDataCenter() : boost::shared_ptr<nqservice::IDataCenter>();
    return data ? data->getAccountData(utils::hash(key)) : boost::shared_ptr<nqservice::CAccountData>();
}

int segmented()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? static_cast<int>(config->getSegmentedFormatFlag()) : 0;
}

void info(const std::string& text) { utils::writeLog(utils::kLogLevelInfo, kWhere, std::to_string(__LINE__), text); }
void error(const std::string& text) { utils::writeLog(utils::kLogLevelError, kWhere, std::to_string(__LINE__), text); }

WG::CSimpleTextWidget* text(const QString& value, QWidget* parent, int width = 60)
{
    auto* widget = new WG::CSimpleTextWidget(false, -1, value, parent);
    widget->setFixedSize(width, 22);
    return widget;
}

}  // namespace

CPriceTQuickOrderWidget::CPriceTQuickOrderWidget(QWidget* parent) : WG::CBaseWidget(QStringLiteral("priceT_quick_order_widget"), false, parent)
{
    qRegisterMetaType<TC::CPriceDataPtr>("TC::CPriceDataPtr");
    qRegisterMetaType<nqservice::IDataPtr>("nqservice::IDataPtr");
    setObjectName(QStringLiteral("priceT_quick_order_widget"));
    setFixedWidth(kWidth);
    createUi();
    connect(this, &CPriceTQuickOrderWidget::sigLatestPrice, this, &CPriceTQuickOrderWidget::slotLatestPrice);
    connect(this, &CPriceTQuickOrderWidget::sigPositionStatics, this, &CPriceTQuickOrderWidget::slotPositionStatics);
    connect(this, &CPriceTQuickOrderWidget::sigOrderDetail, this, &CPriceTQuickOrderWidget::slotOrderDetail);
}

CPriceTQuickOrderWidget::~CPriceTQuickOrderWidget()
{
    // Handles first: no callback reaches a widget that is going.
    quoteRequest.reset();
    accountSubscriptions.clear();
}

void CPriceTQuickOrderWidget::createUi()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    pricesList = new CQuotesPricesList(static_cast<EOpParamWidgetID>(46), this);
    pricesList->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    pricesList->setShowCancelOrder(false);
    layout->addWidget(pricesList);

    auto addPair = [this](QHBoxLayout* row, int which, const QString& caption) {
        row->addWidget(text(caption, this));
        WG::CSimpleTextWidget* value = text(QStringLiteral("0"), this);
        value->setFontKey(QStringLiteral("fnt_default_normal_heavy_fix"));
        positionLabels[which] = value;
        row->addWidget(value);
    };
    auto* first = new QHBoxLayout();
    addPair(first, 0, QStringLiteral("多仓"));
    addPair(first, 2, QStringLiteral("净仓"));
    first->addStretch(1);
    layout->addLayout(first);
    auto* second = new QHBoxLayout();
    addPair(second, 1, QStringLiteral("空仓"));
    second->addStretch(1);
    layout->addLayout(second);

    auto* buyRow = new QHBoxLayout();
    WG::CSimpleTextWidget* buyCaption = text(QStringLiteral("买入:"), this);
    buyCaption->setColorKey(QStringLiteral("clr_global_rise"));
    buyRow->addWidget(buyCaption);
    buyRow->addWidget(text(QStringLiteral("优先买平"), this, 80));  // a buy always closes first
    buyRow->addStretch(1);
    layout->addLayout(buyRow);

    auto* sellRow = new QHBoxLayout();
    WG::CSimpleTextWidget* sellCaption = text(QStringLiteral("卖出:"), this);
    sellCaption->setColorKey(QStringLiteral("clr_global_fall"));
    sellRow->addWidget(sellCaption);
    sellModeGroup = new WG::CRadioButtonGroup(this);
    sellModeGroup->addButton(QStringLiteral("卖开"), 0, true);
    sellModeGroup->addButton(QStringLiteral("卖平"), 1, false);
    sellRow->addWidget(sellModeGroup);
    sellRow->addStretch(1);
    layout->addLayout(sellRow);

    volumeCell = new WG::CParameterCell(2, QStringLiteral(" 单笔委托量"), QStringLiteral("张"), this);
    volumeCell->setIntValidator(QStringLiteral("张"), 0, 0x7fffffff, 1);
    volumeCell->setSpin(QStringLiteral("张"), qMakePair(true, 1.0));
    volumeCell->setInt(0);
    volumeCell->setFixedSize(200, 22);
    layout->addWidget(volumeCell);

    priceTable = new CPriceTQuickOrderTable(this);
    layout->addWidget(priceTable, 1);
}

void CPriceTQuickOrderWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    WG::CUiResource* resources = WG::CUiResource::get();
    painter.fillRect(rect(), *resources->getColor(QStringLiteral("clr_order_operation_background")));
    painter.setPen(*resources->getColor(QStringLiteral("ov_clr_pirce_t_quick_order_background")));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

QString CPriceTQuickOrderWidget::currentCode() const { return pricesList != nullptr ? pricesList->getStockCode() : QString(); }

QString CPriceTQuickOrderWidget::positionText(int which) const
{
    const WG::CSimpleTextWidget* label = positionLabels.value(which, nullptr);
    return label != nullptr ? label->getText() : QString();
}

long long CPriceTQuickOrderWidget::workingVolume(const QString& priceText, bool isBuy) const
{
    const auto& volumes = isBuy ? buyVolumes : sellVolumes;
    auto code = volumes.find(currentCode());
    return code == volumes.end() ? 0 : code->second.value(priceText).sum();
}

// ---- code, accounts, parameter string ----

void CPriceTQuickOrderWidget::setStockCode(QString code)
{
    pricesList->setStockCode(code);
    if (CQuoteClient* client = quotes()) {
        slotLatestPrice(client->getStockPrice(code));
    }
    priceTable->scrollToBestBid();
    quoteRequest = CQuoteRequest::makeHandicapRequest(
        code, [this](boost::shared_ptr<CPriceData>& data) { emit sigLatestPrice(data); }, ST_DEFAULT);
    rebuildPositions();
}

void CPriceTQuickOrderWidget::setAccounts(
    const std::map<std::string, boost::shared_ptr<nqservice::CAccountInfo>>& chosen, const QString& group)
{
    {
        std::vector<boost::shared_ptr<nqservice::SubRequest>> dropped;
        dropped.swap(accountSubscriptions);
    }
    sellVolumes.clear();
    buyVolumes.clear();
    buyOrders.clear();
    sellOrders.clear();
    accounts = chosen;
    accountGroup = group;
    for (const auto& account : accounts) {
        subscribeAccount(account.first);
    }
    rebuildPositions();
    for (int row = 0; row < priceTable->rowCount(); ++row) {
        priceTable->setItemText(row, CPriceTQuickOrderTable::COL_BUY_WORKING, QString(), true);
        priceTable->setItemText(row, CPriceTQuickOrderTable::COL_SELL_WORKING, QString(), true);
    }
    refreshWorkingVolumes();
}

void CPriceTQuickOrderWidget::subscribeAccount(const std::string& key)
{
    const boost::shared_ptr<nqservice::CAccountData> data = accountDataOf(key);
    if (!data) {
        return;
    }
    accountSubscriptions.push_back(
        data->subscribe(nqservice::VQ_DATA_TYPE_POSITION_STATICS, "", [this](const nqservice::IDataPtr& record) {
            info(fmt::format("CPriceTQuickOrderWidget receive positionDetail : {0}", record ? record->toString() : ""));
            emit sigPositionStatics(record);
        }));
    accountSubscriptions.push_back(data->subscribe(nqservice::VQ_DATA_TYPE_QUICK_ORDER, "", [this](const nqservice::IDataPtr&) {
        // A fill changes the book: the ladder takes the newest quote again.
        const QString code = currentCode();
        if (!code.isEmpty()) {
            if (CQuoteClient* client = quotes()) {
                emit sigLatestPrice(client->getStockPrice(code));
            }
        }
    }));
    accountSubscriptions.push_back(data->subscribe(nqservice::VQ_DATA_TYPE_ORDER, "",
                                                   [this](const nqservice::IDataPtr& record) { emit sigOrderDetail(record); }));
    std::vector<boost::shared_ptr<nqservice::IData>> orders;
    data->getVector(nqservice::VQ_DATA_TYPE_ORDER, orders);
    for (const auto& item : orders) {
        const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(item);
        if (order && order->remaining >= 1 && order->remaining <= 0x7ffffffe) {
            applyOrder(WG::formatDoubleNumber(order->price, 4, segmented(), false,
                                              QStringLiteral("非法值")),
                       order);
        }
    }
}

QString CPriceTQuickOrderWidget::param() const
{
    return currentCode() + QLatin1Char('$') + QString::number(volumeCell->toInt());
}

void CPriceTQuickOrderWidget::setParam(const QString& param)
{
    const QStringList fields = param.split(QLatin1Char('$'));
    if (fields.isEmpty()) {
        return;
    }
    setStockCode(fields.at(0));
    if (fields.size() > 1) {
        volumeCell->setInt(fields.at(1).toInt());
    }
}

// ---- what arrives ----

void CPriceTQuickOrderWidget::slotLatestPrice(const TC::CPriceDataPtr& price)
{
    if (!price) {
        return;
    }
    info(fmt::format(" the pricePtr detailInfo : {0}", utils::vqStockKey(price->market, price->code)));
    if (utils::isAbsent(price->lastPrice) && utils::isAbsent(price->quoteMarkA) && utils::isAbsent(price->quoteMarkB)) {
        return;
    }
    pricesList->parsePrice(price);
    if (priceTable != nullptr && QString::fromStdString(utils::vqStockKey(price->market, price->code)) == currentCode()) {
        priceTable->updateQuoteTable(price);
        refreshWorkingVolumes();
    }
}

void CPriceTQuickOrderWidget::slotOrderDetail(const nqservice::IDataPtr& record)
{
    const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
    if (!order || !order->account) {
        return;
    }
    if (!isBrokerTypeMatchTradeType(order->account->accountType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION) ||
        order->remaining == 0x7fffffff) {
        return;
    }
    applyOrder(WG::formatDoubleNumber(order->price, 4, segmented(), false,
                                      QStringLiteral("非法值")),
               order);
    if (QString::fromStdString(utils::vqStockKey(order->market, order->code)) == currentCode()) {
        refreshWorkingVolumes();
    }
}

void CPriceTQuickOrderWidget::applyOrder(const QString& priceText, const boost::shared_ptr<nqservice::COrderDetail>& order)
{
    if (order->side != nqservice::EBS_BUY && order->side != nqservice::EBS_SELL) {
        return;
    }
    const bool buy = order->side == nqservice::EBS_BUY;
    const QString code = QString::fromStdString(utils::vqStockKey(order->market, order->code));
    const quint64 key = utils::hash(order->getKey());
    auto& volumes = (buy ? buyVolumes : sellVolumes)[code][priceText];
    auto& orders = (buy ? buyOrders : sellOrders)[code][priceText];
    if (nqservice::COrderDetailHelper::completed(*order)) {
        volumes.update(key, 0);
        orders.remove(key);
    } else {
        volumes.update(key, order->remaining);
        orders.insert(key, order);
    }
}

void CPriceTQuickOrderWidget::refreshWorkingVolumes()
{
    const QString code = currentCode();
    auto write = [this, &code](const std::map<QString, QMap<QString, utils::TStringMapSum<long long>>>& volumes,
                               int column) {
        auto entry = volumes.find(code);
        if (entry == volumes.end()) {
            return;
        }
        for (auto price = entry->second.constBegin(); price != entry->second.constEnd(); ++price) {
            const int row = priceTable->priceToRow.value(price.key(), -1);
            if (row < 0) {
                continue;
            }
            const long long sum = price.value().sum();
            priceTable->setItemText(row, column, sum == 0 ? QString() : WG::formatLongLongNumber(sum, 0), true);
        }
    };
    write(buyVolumes, CPriceTQuickOrderTable::COL_BUY_WORKING);
    write(sellVolumes, CPriceTQuickOrderTable::COL_SELL_WORKING);
}

void CPriceTQuickOrderWidget::takePosition(const nqservice::CPositionStatics& record)
{
    const std::string account = record.account ? record.account->getKey() : std::string();
    if (accounts.count(account) == 0 ||
        QString::fromStdString(utils::vqStockKey(record.market, record.code)) != currentCode()) {
        return;
    }
    auto& side = record.direction == 48 ? longByAccount : shortByAccount;
    side[account].update(utils::hash(record.getKey()), record.position);
}

void CPriceTQuickOrderWidget::showPositions()
{
    long long longs = 0;
    long long shorts = 0;
    for (const auto& entry : longByAccount) {
        longs += entry.second.sum();
    }
    for (const auto& entry : shortByAccount) {
        shorts += entry.second.sum();
    }
    positionLabels[0]->setText(QString::number(longs));
    positionLabels[1]->setText(QString::number(shorts));
    positionLabels[2]->setText(QString::number(longs - shorts));
}

void CPriceTQuickOrderWidget::slotPositionStatics(const nqservice::IDataPtr& record)
{
    const auto* position = dynamic_cast<const nqservice::CPositionStatics*>(record.get());
    if (position == nullptr) {
        return;
    }
    takePosition(*position);
    showPositions();
}

void CPriceTQuickOrderWidget::rebuildPositions()
{
    longByAccount.clear();
    shortByAccount.clear();
    for (const auto& account : accounts) {
        const boost::shared_ptr<nqservice::CAccountData> data = accountDataOf(account.first);
        if (!data) {
            continue;
        }
        std::vector<boost::shared_ptr<nqservice::IData>> records;
        data->getVector(nqservice::VQ_DATA_TYPE_POSITION_STATICS, records);
        for (const auto& item : records) {
            if (const auto* position = dynamic_cast<const nqservice::CPositionStatics*>(item.get())) {
                takePosition(*position);
            }
        }
    }
    showPositions();
}

// ---- clicks ----

bool CPriceTQuickOrderWidget::handleEvent(int event, int id, int arg, QString text, void* data)
{
    if (event == WG::UE_CELL_SECONDARY && id == 0) {
        const int column = text.toInt();
        if (column == CPriceTQuickOrderTable::COL_PRICE) {
            return true;
        }
        const bool isBuy = column < CPriceTQuickOrderTable::COL_PRICE;
        const int button = data != nullptr ? *static_cast<const int*>(data) : 0;
        if (button == 2) {
            cancelOrder(arg, isBuy);
        } else {
            doOperition(arg, isBuy);
        }
        return true;
    }
    if (event == kSetCodeEvent) {
        setStockCode(text);
        return true;
    }
    return WG::CBaseWidget::handleEvent(event, id, arg, text, data);
}

void CPriceTQuickOrderWidget::warn(const QString& message)
{
    WG::CMessageBox::warning(nullptr, QApplication::activeWindow(), QStringLiteral("提示"), message, QMessageBox::Ok);
}

bool CPriceTQuickOrderWidget::checkLimit(const std::shared_ptr<nqservice::CInstrumentDetail>& detail, long long volume)
{
    std::map<std::string, int> permissions;
    if (CUserConfig* config = getUserConfig()) {
        if (const auto permission = config->getPermissionInfoPtr()) {
            permissions = permission->intMap;
        }
    }
    // Every ladder order is a limit order: the fixed-price keys rule.
    const COrderLimit limit = COptionOrderRules::orderLimit(detail->getIntField(2008), permissions, false);
    if (volume <= limit.limit) {
        return true;
    }
    if (!limit.allowance) {
        warn(QStringLiteral("单笔下单量不能超过合规最大下单量%1").arg(limit.limit, 0, 10, QLatin1Char(' ')));
        return false;
    }
    const QString text = QStringLiteral("单笔下单量超过合规最大下单量%1").arg(limit.limit, 0, 10, QLatin1Char(' '));
    return WG::CMessageBox::question(nullptr, QApplication::activeWindow(), QStringLiteral("提示"),
                                     text + QStringLiteral(",是否自动拆单?"),
                                     QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No)) ==
           QMessageBox::Yes;
}

void CPriceTQuickOrderWidget::doOperition(int row, bool isBuy)
{
    if (accounts.empty()) {
        warn(QStringLiteral("请选择账号"));
        return;
    }
    for (const auto& account : accounts) {
        if (!account.second) {
            warn(QStringLiteral("请选择账号"));
            return;
        }
        const boost::shared_ptr<nqservice::CAccountData> data = accountDataOf(account.first);
        if (!data || !data->getAccountInfo()) {
            warn(QStringLiteral("账号未登录"));
            return;
        }
    }
    CExchangeClient* client = exchange();
    const std::shared_ptr<nqservice::CInstrumentDetail> detail =
        client != nullptr ? client->getCodeInfo(currentCode()) : nullptr;
    if (!detail) {
        warn(QStringLiteral("请选择合约"));
        return;
    }
    const double price = priceTable->itemText(row, CPriceTQuickOrderTable::COL_PRICE).toDouble();
    const long long volume = volumeCell->toInt();
    if (volume < 1) {
        warn(QStringLiteral("下单量为0"));
        return;
    }
    nqservice::CStockInfo stock;
    stock.market = detail->market;
    stock.code = detail->code;
    stock.textField2 = detail->getTextField(2);
    stock.name = detail->name;

    std::vector<double> weights;
    std::map<std::string, double> weightMap;
    std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accountList;
    for (const auto& account : accounts) {
        accountList.push_back(account.second);
    }
    CUserConfig* config = getUserConfig();
    if (accountGroup.isEmpty()) {
        weights.push_back(1.0);
        weightMap[accounts.begin()->first] = 1.0;
    } else {
        const CAccountGroup* group =
            config != nullptr ? config->getAccountGroupConst(nqservice::VQ_BROKER_TYPE_STOCK_OPTION, accountGroup) : nullptr;
        if (group == nullptr) {
            error(fmt::format("can not find accountGroup {0}", accountGroup.toStdString()));
        } else {
            for (const auto& account : accounts) {
                int weight = 0;
                if (group->getWeight(QString::fromStdString(account.first), weight)) {
                    weights.push_back(weight);
                    weightMap[account.first] = weight;
                } else {
                    error(fmt::format("can not find account weights {0}", account.first));
                    weights.push_back(1.0);
                    weightMap[account.first] = 1.0;
                }
            }
        }
    }
    const int sellMode = sellModeGroup->getCheckedButtonID();
    const nqservice::EOperationType operation =
        isBuy ? nqservice::OT_BUY_OPEN
              : (sellMode == 1 ? nqservice::OT_SELL_CLOSE : (sellMode == 0 ? nqservice::OT_SELL_OPEN : nqservice::OT_BUY_OPEN));
    auto splitError = boost::make_shared<utils::NQError>();
    std::vector<long long> shares;
    if (CTradeClient* trade = utils::CManualSingletonT<CTradeClient>::instance()) {
        shares = trade->splitEntrusts(volume, price, nqservice::PT_FIX, accountList, weights,
                                      static_cast<nqservice::EPositionType>(1), stock.market, stock.code, operation,
                                      static_cast<nqservice::EHedge_Flag_Type>(49), splitError, false, true);
    }
    if (shares.size() != accounts.size()) {
        warn(QStringLiteral("分单错误, ") + QString::fromStdString(splitError->errorMsg()));
        return;
    }
    auto templ = boost::make_shared<nqservice::CCodeOrderParam>();
    templ->userName = config != nullptr ? config->getUserDataString(UM_USER_NAME).toStdString() : std::string();
    templ->hedgeFlag = static_cast<nqservice::EHedge_Flag_Type>(49);
    templ->orderKind = 5;
    templ->stockInfo = stock;
    templ->price = price;
    templ->priceType = nqservice::PT_FIX;
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    std::size_t index = 0;
    for (const auto& account : accounts) {
        long long share = index < shares.size() ? shares[index] : 0;
        ++index;
        templ->account = account.second;
        long long closable = 0;
        if (isBuy) {
            const boost::shared_ptr<nqservice::CAccountData> data = accountDataOf(account.first);
            closable = static_cast<long long>(data->getCanOrderVolume(stock.market, stock.code, nqservice::OT_BUY_CLOSE,
                                                                      49, price, 0, static_cast<nqservice::EPriceType>(-1), 0));
        }
        if (isBuy && closable > 0) {
            templ->volume = std::min(closable, share);
            templ->operationType = nqservice::OT_BUY_CLOSE;
            // The same object each time, as the system has it: with several
            // accounts that can close, the list holds the last one's values.
            params.push_back(templ);
        }
        auto open = boost::make_shared<nqservice::CCodeOrderParam>(*templ);
        open->operationType = operation;
        if (isBuy && share > closable) {
            open->volume = share - closable;
            params.push_back(open);
        } else {
            const long long rest = share - open->volume;
            if (rest != 0) {
                open->volume = rest;
                params.push_back(open);
            }
        }
        if (isBuy) {
            share -= closable;
        }
        if (!checkLimit(detail, share)) {
            return;  // nothing goes, not even what earlier accounts gathered
        }
    }
    COvCommandCenter* commands = utils::CManualSingletonT<COvCommandCenter>::instance();
    if (commands == nullptr) {
        return;
    }
    commands->createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, static_cast<nqservice::EVqHedgeType>(0), params,
                            weightMap, static_cast<nqservice::EVqStopLossType>(0), false, true,
                            COvCommandCenter::CommandCallback(), bson::BSONObj(), "",
                            static_cast<nqservice::ETradePlatform>(0), bson::BSONObj(),
                            static_cast<nqservice::EVqLimitedPriceType>(0), bson::BSONObj(), QString(), false,
                            bson::BSONObj(), 0, static_cast<nqservice::EtfHedgeStatus>(-1), bson::BSONObj(),
                            bson::BSONObj());
}

void CPriceTQuickOrderWidget::cancelOrder(int row, bool isBuy)
{
    const QString priceText = priceTable->itemText(row, CPriceTQuickOrderTable::COL_PRICE);
    const auto& orders = isBuy ? buyOrders : sellOrders;
    auto code = orders.find(currentCode());
    if (code == orders.end() || !code->second.contains(priceText)) {
        return;
    }
    const OrderMap working = code->second.value(priceText);  // a copy: cancels may answer at once
    CTradeClient* trade = utils::CManualSingletonT<CTradeClient>::instance();
    CUserConfig* config = getUserConfig();
    const std::string user = config != nullptr ? config->getUserDataString(UM_USER_NAME).toStdString() : std::string();
    for (const auto& order : working) {
        if (!canCancelOrder(order)) {
            continue;
        }
        info(fmt::format("User {0} cancel order {1}", user, order->toString()));
        if (trade != nullptr) {
            QString message;
            trade->cancelOrder(order, message, -1, QString(), boost::shared_ptr<COrderAuxInfo>());
        }
    }
}

}  // namespace TC
