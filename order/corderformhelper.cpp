#include "order/corderformhelper.h"

#include "order/ccolorkeybutton.h"
#include "order/coptionorderrules.h"
#include "order/cstrategyorderrules.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/common.h"
#include "seam/logger.h"
#include "seam/nqerror.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "toolkit/ccodeorderparamtable.h"
#include "toolkit/ccombobox.h"
#include "toolkit/ccomboboxdelegate.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmultiparamstable.h"
#include "toolkit/cparametercell.h"
#include "toolkit/csimpletextwidget.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>

#include <QApplication>
#include <QHBoxLayout>

#include <algorithm>
#include <climits>

namespace TC {

QVector<CAccountChoice> COrderFormHelper::readyAccounts(nqservice::EVqTraderType traderType)
{
    QVector<CAccountChoice> out;
    CUserConfig* config = getUserConfig();
    nqservice::TradeLogicInterface* logic =
        utils::CSingletonT<TC::SingletonManager>::instance()->getTradeLogicInterface();
    if (config == nullptr || logic == nullptr) {
        return out;
    }
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<CAccount>>*>(config->getUserDataAddress(UM_ACCOUNT_LIST));
    if (accounts == nullptr) {
        return out;
    }
    for (const boost::shared_ptr<CAccount>& entry : *accounts) {
        if (!entry) {
            continue;
        }
        const boost::shared_ptr<nqservice::CAccountInfo> info = entry->toInfo();
        if (!nqservice::isLoginStatusReady(logic->getLoginStatus(info->getKey()))) {
            continue;
        }
        if (!isBrokerTypeMatchTradeType(info->accountType, traderType)) {
            continue;
        }
        const QString key = QString::fromStdString(info->getKey());
        if (info->displayName.empty() || config->isAccountFilter(key)) {
            continue;
        }
        const bool known =
            std::any_of(out.begin(), out.end(), [&key](const CAccountChoice& choice) { return choice.key == key; });
        if (!known) {
            out.push_back({QString::fromStdString(info->displayName), key});
        }
    }
    return out;
}

void COrderFormHelper::fillStockOptionPriceTypes(WG::CComboBox* combo, const QString& code)
{
    if (combo == nullptr) {
        return;
    }
    combo->clear();
    // What the exchange of this code accepts, as the order parameter table offers it.
    static CCodeOrderParamTable* paramTable = nullptr;
    if (paramTable == nullptr) {
        paramTable = new CCodeOrderParamTable(static_cast<EOpParamWidgetID>(5), static_cast<nqservice::EVQBrokerType>(6),
                                              nullptr, false, nqservice::VQ_TRADER_TYPE_STOCK_OPTION, true, true, false);
        paramTable->hide();  // one per process, never shown, kept until the process ends
    }
    paramTable->setStockCode(code);
    QStringList texts;
    QVector<QVariant> datas;
    if (WG::CMultiParamsTable* table = paramTable->getMultiParamsTable()) {
        if (auto* types = dynamic_cast<WG::CComboBoxDelegate*>(table->getItem(1))) {
            texts = types->getQStringList();
            datas = types->getDatas();
        }
    }
    if (!texts.isEmpty() && !datas.isEmpty()) {
        const int count = std::min(texts.size(), datas.size());
        for (int i = 0; i < count; ++i) {
            combo->addItem(texts.at(i), datas.at(i));
        }
        return;  // no choice of ours: the combo stands on the exchange's first type
    }
    CUserConfig* config = getUserConfig();
    const bool upStop = config != nullptr && config->hasUpStopPrice();
    for (const auto& type : COptionOrderRules::priceTypes(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, upStop)) {
        combo->addItem(type.first, type.second);
    }
    combo->setCurrentIndex(
        combo->findData(COptionOrderRules::defaultPriceType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION)));
}

std::shared_ptr<nqservice::CInstrumentDetail> COrderFormHelper::instrumentOf(const QString& code)
{
    CExchangeClient* client = utils::CManualSingletonT<CExchangeClient>::instance();
    return client != nullptr && !code.isEmpty() ? client->getCodeInfo(code) : nullptr;
}

boost::shared_ptr<nqservice::CAccountData> COrderFormHelper::accountDataOf(const QString& key)
{
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    if (!center || key.isEmpty()) {
        return boost::shared_ptr<nqservice::CAccountData>();
    }
    const boost::shared_ptr<nqservice::IDataCenter> data = center->getDataCenter();
    return data ? data->getAccountData(utils::hash(key.toStdString())) : boost::shared_ptr<nqservice::CAccountData>();
}

nqservice::CStockInfo COrderFormHelper::stockInfoOf(const nqservice::CInstrumentDetail& detail)
{
    nqservice::CStockInfo stock;
    stock.market = detail.market;
    stock.code = detail.code;
    stock.textField2 = detail.getTextField(2);
    stock.name = detail.name;
    return stock;
}

boost::shared_ptr<nqservice::CAccountInfo> COrderFormHelper::accountInfoOf(const QString& key)
{
    CUserConfig* config = getUserConfig();
    const boost::shared_ptr<CAccount> account =
        config != nullptr && !key.isEmpty() ? config->getAccountData(key) : boost::shared_ptr<CAccount>();
    return account ? account->toInfo() : boost::shared_ptr<nqservice::CAccountInfo>();
}

long long COrderFormHelper::splitOne(long long volume, double price, nqservice::EPriceType priceType,
                                     const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                     const nqservice::CStockInfo& stock, nqservice::EOperationType operation)
{
    CTradeClient* trade = utils::CManualSingletonT<CTradeClient>::instance();
    if (trade == nullptr) {
        return 0;
    }
    const std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accounts{account};
    const std::vector<double> weights{1.0};
    auto error = boost::make_shared<utils::NQError>();
    const std::vector<long long> volumes =
        trade->splitEntrusts(volume, price, priceType, accounts, weights, static_cast<nqservice::EPositionType>(1),
                             stock.market, stock.code, operation, static_cast<nqservice::EHedge_Flag_Type>(49), error,
                             false, true);
    return volumes.empty() ? 0 : volumes.front();
}

bool COrderFormHelper::checkOrderLimit(const nqservice::CInstrumentDetail& detail, long long volume,
                                       nqservice::EPriceType priceType, QString& error)
{
    std::map<std::string, int> permissions;
    if (CUserConfig* config = getUserConfig()) {
        if (const auto permission = config->getPermissionInfoPtr()) {
            permissions = permission->intMap;
        }
    }
    const bool marketBranch = nqservice::isSupportMarketPrice(detail.market, detail.code, priceType);
    const COrderLimit limit = COptionOrderRules::orderLimit(detail.getIntField(2008), permissions, marketBranch);
    if (volume <= limit.limit) {
        return true;
    }
    QWidget* window = QApplication::activeWindow();
    if (!limit.allowance) {
        error = QStringLiteral("单笔下单量不能超过合规最大下单量%1").arg(limit.limit, 0, 10, QLatin1Char(' '));
        WG::CMessageBox::warning(nullptr, window, QStringLiteral("提示"), error, QMessageBox::Ok);
        return false;
    }
    error = QStringLiteral("单笔下单量超过合规最大下单量%1").arg(limit.limit, 0, 10, QLatin1Char(' '));
    const QMessageBox::StandardButton answer =
        WG::CMessageBox::question(nullptr, window, QStringLiteral("提示"), error + QStringLiteral(",是否自动拆单?"),
                                  QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    return answer == QMessageBox::Yes;
}

std::string COrderFormHelper::userName()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? config->getUserDataString(UM_USER_NAME).toStdString() : std::string();
}

bool COrderFormHelper::sendStockOptionCommand(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                                              const std::map<std::string, double>& weights, const QString& remark,
                                              const void* object, const char* function)
{
    CUserConfig* config = getUserConfig();
    const int role = config != nullptr ? config->getUserDataInt(UM_USER_ROLE) : 0;
    if (!CStrategyOrderRules::roleSends(role)) {
        return false;
    }
    utils::writeLog(utils::kLogLevelInfo, fmt::format("{0}", object), function,
                    "placeCommands: [manual] option speculation.");
    COvCommandCenter* commands = utils::CManualSingletonT<COvCommandCenter>::instance();
    if (commands == nullptr) {
        return false;
    }
    return commands->createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, static_cast<nqservice::EVqHedgeType>(0),
                                   params, weights, static_cast<nqservice::EVqStopLossType>(0), false, true,
                                   COvCommandCenter::CommandCallback(), bson::BSONObj(), "",
                                   static_cast<nqservice::ETradePlatform>(0), bson::BSONObj(),
                                   static_cast<nqservice::EVqLimitedPriceType>(0), bson::BSONObj(), remark, false,
                                   bson::BSONObj(), 0, static_cast<nqservice::EtfHedgeStatus>(-1), bson::BSONObj(),
                                   bson::BSONObj());
}

long long COrderFormHelper::calcAvailableVolume(const boost::shared_ptr<nqservice::CAccountData>& account,
                                                const nqservice::CInstrumentDetail& detail, int operationType,
                                                double price, long long fallback)
{
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    const boost::shared_ptr<nqservice::ICalculator> calculator =
        center ? center->getCalculator() : boost::shared_ptr<nqservice::ICalculator>();
    if (!calculator) {
        return fallback;
    }
    const int offset = 48;
    const int cover = 48;
    return calculator->calcAvailableVolume(account, detail.market, detail.code, operationType, 49, &offset, &cover,
                                           price, LLONG_MAX, -1, false, boost::shared_ptr<nqservice::IData>());
}

WG::CParameterCell* COrderFormHelper::makeVolumeCell(int id, const QString& contracts, const QString& percent,
                                                     QWidget* parent)
{
    auto* cell = new WG::CParameterCell(id, QStringLiteral(" 下单量"), QStringList{contracts, percent}, parent);
    cell->setFixedSize(220, 24);
    cell->setIntValidator(contracts, 0, 0x7fffffff, 1);
    cell->setSpin(contracts, qMakePair(true, 1.0));
    cell->setDoubleValidator(percent, 0.0, 100.0, 0.001);
    cell->setSpin(percent, qMakePair(true, 0.001));
    return cell;
}

void COrderFormHelper::countVolume(WG::CParameterCell* volumeCell, WG::CSimpleTextWidget* percentText,
                                   const QString& contracts, long long available, int& orderCount, double& ratio)
{
    if (volumeCell->unit() == contracts) {
        orderCount = volumeCell->toInt();
        ratio = available > 0 ? static_cast<double>(orderCount) / static_cast<double>(available) : 0.0;
    } else {
        ratio = volumeCell->toDouble() / 100.0;
        orderCount = COptionOrderRules::volumeOfRatio(available, ratio);
        percentText->setText(QStringLiteral("         ") + QString::number(orderCount) + contracts);
    }
}

void COrderFormHelper::switchVolumeUnit(const QString& unit, WG::CParameterCell* volumeCell,
                                        WG::CSimpleTextWidget* percentText, const QString& contracts,
                                        const QString& percent, long long available, int& orderCount, double& ratio)
{
    if (unit == contracts) {
        percentText->hide();
        volumeCell->setUnit(contracts);
        volumeCell->setInt(orderCount);
        return;
    }
    volumeCell->setUnit(percent);
    volumeCell->setDouble(ratio * 100.0);
    countVolume(volumeCell, percentText, contracts, available, orderCount, ratio);
    percentText->show();
}

void COrderFormHelper::showAvailable(WG::CParameterCell* availableCell, WG::CParameterCell* volumeCell,
                                     const QString& unit, long long available)
{
    availableCell->setString(CStrategyOrderRules::availableText(available));
    volumeCell->setIntValidator(unit, 0, CStrategyOrderRules::volumeRangeTop(available), 1);
}

QWidget* COrderFormHelper::makeButtonRow(QWidget* parent, int cancelId, int orderId, CColorKeyButton*& cancel,
                                         CColorKeyButton*& order)
{
    auto* holder = new QWidget(parent);
    holder->setFixedHeight(60);
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 10, 0);
    row->setSpacing(10);
    row->addStretch(1);
    cancel = new CColorKeyButton(cancelId, QStringLiteral("取消"), holder);
    order = new CColorKeyButton(orderId, QStringLiteral("下单"), holder);
    for (CColorKeyButton* button : {cancel, order}) {
        button->setFixedSize(80, 40);
        button->setColorKey(QStringLiteral("clr_global_rise"));
        row->addWidget(button);
    }
    return holder;
}

QWidget* COrderFormHelper::caption(const QString& text, QWidget* parent)
{
    auto* label = new WG::CSimpleTextWidget(false, -1, text, parent);
    label->setFixedSize(48, 24);
    return label;
}

void COrderFormHelper::showMessage(const QString& text)
{
    if (CMsgService* messages = utils::CManualSingletonT<CMsgService>::instance()) {
        messages->showQsMsg(text, static_cast<EMsgTypeDef>(4), static_cast<nqservice::MsgLevel>(1), false, false);
    }
}

}  // namespace TC
