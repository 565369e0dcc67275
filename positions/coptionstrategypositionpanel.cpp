#include "positions/coptionstrategypositionpanel.h"

#include "positions/ccombreleaseparams.h"
#include "seam/cexchangeclient.h"
#include "seam/logger.h"
#include "seam/paramstring.h"
#include "seam/user.h"
#include "seam/uievents.h"
#include "toolkit/cautobutton.h"
#include "toolkit/cautoexpandtoolbar.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/csearchtextlineedit.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/cuiresource.h"

#include <QApplication>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

namespace TC {

namespace {

constexpr int kSearchEditId = 4;

// The roles that may send a release.
bool roleMayRelease(int role)
{
    static const int s_roles[] = {90, 91, 101, 100, 80, 92};
    for (int allowed : s_roles) {
        if (role == allowed) {
            return true;
        }
    }
    return false;
}

boost::shared_ptr<nqservice::CAccountData> accountData(const std::string& key)
{
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    const boost::shared_ptr<nqservice::IDataCenter> data =
        center ? center->getDataCenter() : boost::shared_ptr<nqservice::IDataCenter>();
    return data ? data->getAccountData(utils::hash(key)) : boost::shared_ptr<nqservice::CAccountData>();
}

}  // namespace

COptionStrategyPositionPanel::COptionStrategyPositionPanel(int widgetID, QWidget* parent)
    : ITradeDockableWidget(false, QStringLiteral("opsp"), widgetID,
                           TraderTypeFlags(nqservice::VQ_TRADER_TYPE_STOCK_OPTION), parent)
{
    // The host may take the signal across threads.
    qRegisterMetaType<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>();
    createUi();
    if (CTradeClient* client = utils::CManualSingletonT<CTradeClient>::instance()) {
        connect(client, &CTradeClient::sigLoginStatus, this, &COptionStrategyPositionPanel::slotLoginStatus);
    }
    if (CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance()) {
        connect(exchange, &CExchangeClient::sigNewTradingDate, this, &COptionStrategyPositionPanel::slotNewTradingDay);
    }
}

COptionStrategyPositionPanel::~COptionStrategyPositionPanel()
{
    // No callback reaches the table once the handles are gone.
    QMap<QString, boost::shared_ptr<nqservice::SubRequest>> dropped;
    dropped.swap(subscriptions);
    dropped.clear();
}

void COptionStrategyPositionPanel::createUi()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    WG::CUiResource* resources = WG::CUiResource::get();

    toolBar = new WG::CAutoExpandToolBar("tc_img_op_hedge_type_bg", 2, 8, 2, 8, this, -1);
    toolBar->addSeperator();
    releaseButton = new WG::CSmallNoNormalButton(OSP_RELEASE, false, WG::NBT_NORMAL, QStringLiteral("解除"), toolBar);
    releaseButton->setFixedSize(resources->getSize(QStringLiteral("tc_siz_account_btn_width_small")),
                                resources->getSize(QStringLiteral("tc_siz_account_btn_height")));
    releaseButton->setTextFontKey(QStringLiteral("fnt_default_normal_fix"));
    toolBar->addToolItem(releaseButton);
    toolBar->addSeperator();
    searchEdit = new WG::CSearchTextLineEdit(toolBar, kSearchEditId);
    searchEdit->setLineEditFrame(true);
    searchEdit->setEmptyTip(QStringLiteral("请输入组合号码"));
    searchEdit->setFixedWidth(160);
    toolBar->addToolItem(searchEdit);
    CUserConfig* config = getUserConfig();
    if (config != nullptr && config->isKelvanQuoteMode()) {
        refreshButton = new CAutoButton(OSP_REFRESH, true, WG::NBT_CRITICAL, toolBar, 500);
        refreshButton->setFixedSize(40, 20);
        refreshButton->setText(QStringLiteral("刷新"));
        refreshButton->setTextFontKey(QStringLiteral("fnt_default_normal_fix"));
        toolBar->addToolItem(refreshButton);
    }
    layout->addWidget(toolBar);
    table = new COptionStrategyPositionTable(OSP_TABLE, this);
    layout->addWidget(table, 1);
}

// ---- parameter string ----

QString COptionStrategyPositionPanel::param()
{
    return table != nullptr ? CParamString::joinSections({table->saveConfigStr()}) : QString();
}

void COptionStrategyPositionPanel::setParam(const QString& param)
{
    const QStringList sections = CParamString::sections(param);
    if (!sections.isEmpty() && table != nullptr) {
        table->loadConfigStr(sections.at(0));
    }
}

// ---- events ----

bool COptionStrategyPositionPanel::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == WG::UE_BUTTON_CLICKED) {
        switch (id) {
        case 0:
            if (table != nullptr) {
                table->checkAll();
                table->updateTable();
            }
            return true;
        case 1:
            if (table != nullptr) {
                table->invertChecks();
                table->updateTable();
            }
            return true;
        case OSP_RELEASE: {
            QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> details;
            if (table != nullptr) {
                table->checkedRows(details);
            }
            doCheckAndReleaseComb(details);
            return true;
        }
        case OSP_REFRESH:
            forEachReadyAccount(true, [](const nqservice::CAccountInfo& info) {
                if (CTradeClient* client = utils::CManualSingletonT<CTradeClient>::instance()) {
                    client->checkStkOptCombPosition_async(boost::make_shared<nqservice::CAccountInfo>(info));
                }
            });
            return true;
        default:
            break;
        }
    }
    if (code == WG::UE_CELL_ACTIVATED) {
        if (table != nullptr) {
            if (const auto detail = table->detailOfRow(arg)) {
                emit sigCloseOptionCombPosition(detail);
            }
        }
        return true;
    }
    if (code == WG::UE_TEXT_CHANGED || code == WG::UE_TEXT_FILTER_CHANGED) {
        reloadData();
        return true;
    }
    return WG::CBaseWidget::handleEvent(code, id, arg, text, data);
}

// ---- accounts ----

nqservice::EVqTraderType COptionStrategyPositionPanel::effectiveTradeType() const
{
    // Before the host sets a type the panel's only one applies.
    return getTradeType() != 0 ? static_cast<nqservice::EVqTraderType>(getTradeType())
                               : nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
}

void COptionStrategyPositionPanel::forEachReadyAccount(
    bool testFilter, const std::function<void(const nqservice::CAccountInfo&)>& visit)
{
    CUserConfig* config = getUserConfig();
    nqservice::TradeLogicInterface* logic =
        utils::CSingletonT<SingletonManager>::instance()->getTradeLogicInterface();
    if (config == nullptr || logic == nullptr) {
        return;
    }
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<CAccount>>*>(config->getUserDataAddress(UM_ACCOUNT_LIST));
    if (accounts == nullptr) {
        return;
    }
    // A copy: a visit may reach code that changes the list.
    const QVector<boost::shared_ptr<CAccount>> list = *accounts;
    for (const boost::shared_ptr<CAccount>& account : list) {
        if (!account || !isBrokerTypeMatchTradeType(account->accountType, effectiveTradeType())) {
            continue;
        }
        if (testFilter && config->isAccountFilter(account->key())) {
            continue;
        }
        if (!nqservice::isLoginStatusReady(logic->getLoginStatus(account->key().toStdString()))) {
            continue;
        }
        visit(*account->toInfo());
    }
}

void COptionStrategyPositionPanel::refreshAccounts()
{
    forEachReadyAccount(true, [this](const nqservice::CAccountInfo& info) { requestAccount(info); });
}

void COptionStrategyPositionPanel::loadAccounts()
{
    if (table != nullptr) {
        table->clear();
    }
    clear();
    refreshAccounts();
}

void COptionStrategyPositionPanel::loadAccountGroupSettings() {}

void COptionStrategyPositionPanel::requestAccount(const nqservice::CAccountInfo& info)
{
    CUserConfig* config = getUserConfig();
    if (!isBrokerTypeMatchTradeType(info.accountType, effectiveTradeType()) || config == nullptr ||
        config->isAccountFilter(QString::fromStdString(info.getKey()))) {
        return;
    }
    const std::string key = info.getKey();
    if (!needRequestAccount(key)) {
        return;
    }
    requestedAccounts.insert(key, boost::shared_ptr<nqservice::SubRequest>());
    const boost::shared_ptr<nqservice::CAccountData> data = accountData(key);
    if (!data) {
        return;
    }
    if (table != nullptr) {
        table->requestAccount(key);
    }
    boost::shared_ptr<nqservice::SubRequest> request =
        data->subscribe(nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, "",
                        [this](const boost::shared_ptr<nqservice::IData>& record) { onPositionDetail(record); });
    if (request) {
        subscriptions[QString::fromStdString(key)] = request;
    }
}

std::vector<std::string> COptionStrategyPositionPanel::requestedAccountKeys() const
{
    return std::vector<std::string>(requestedAccounts.keyBegin(), requestedAccounts.keyEnd());
}

void COptionStrategyPositionPanel::onPositionDetail(const boost::shared_ptr<nqservice::IData>& data)
{
    const auto detail = boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(data);
    if (!detail || !detail->account) {
        return;
    }
    if (isBrokerTypeMatchTradeType(detail->account->accountType, effectiveTradeType()) && table != nullptr) {
        table->onPositionDetail(detail);
    }
}

void COptionStrategyPositionPanel::slotLoginStatus(const nqservice::CAccountInfoPtr& account,
                                                   nqservice::EBROKER_LOGIN_STATUS, std::string)
{
    if (account) {
        requestAccount(*account);
    }
}

void COptionStrategyPositionPanel::slotNewTradingDay(const std::string&)
{
    clear();
    // The user's filter is not asked here: a new day brings every ready account back.
    forEachReadyAccount(false, [this](const nqservice::CAccountInfo& info) { requestAccount(info); });
}

// ---- table ----

void COptionStrategyPositionPanel::onTimer(QFlags<TC::ETimerUpdateFlag>)
{
    if (table != nullptr) {
        table->updateTable();
    }
}

void COptionStrategyPositionPanel::reloadData()
{
    if (table == nullptr) {
        return;
    }
    table->clear();
    table->setSearchText(searchEdit != nullptr ? searchEdit->getText() : QString());
    for (auto it = requestedAccounts.constBegin(); it != requestedAccounts.constEnd(); ++it) {
        table->requestAccount(it.key());
    }
}

void COptionStrategyPositionPanel::refreshDatas()
{
    if (table == nullptr) {
        return;
    }
    table->clear();
    const int order = table->getSortOrder();
    if (order == 0 || order == 1) {
        // Not a column of this table: the toolkit sorts afresh on the current one.
        table->sortByColumn(54228, order + 2);
    }
    for (auto it = requestedAccounts.constBegin(); it != requestedAccounts.constEnd(); ++it) {
        table->requestAccount(it.key());
    }
}

void COptionStrategyPositionPanel::clear()
{
    if (table != nullptr) {
        table->clear();
    }
    {
        // Dropped outside any lock: a callback in flight may still be running.
        QMap<QString, boost::shared_ptr<nqservice::SubRequest>> dropped;
        dropped.swap(subscriptions);
    }
    requestedAccounts.clear();
    if (table != nullptr) {
        table->updateTable();
    }
}

void COptionStrategyPositionPanel::emptyStringChange()
{
    if (table != nullptr) {
        table->refreshExtraColumns();
    }
}

// ---- release ----

void COptionStrategyPositionPanel::doCheckAndReleaseComb(
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details)
{
    if (!details.isEmpty()) {
        doOperation(details);
        return;
    }
    WG::CMessageBox::warning(nullptr, QApplication::activeWindow(), QStringLiteral("提示"),
                             QStringLiteral("未选择任何组合策略持仓!"), QMessageBox::Ok);
}

void COptionStrategyPositionPanel::doOperation(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details)
{
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    QString message;
    QString warning;
    if (!fillStockParams(details, params, nqservice::OT_COMB_STRATEGY_RELEASE, message, warning)) {
        if (CMsgService* messages = utils::CManualSingletonT<CMsgService>::instance()) {
            messages->showQsMsg(message, MTD_OPERATION, nqservice::ML_WARNING, false, false);
        }
        return;
    }
    CUserConfig* config = getUserConfig();
    if (config == nullptr || !roleMayRelease(config->getUserDataInt(UM_USER_ROLE))) {
        return;
    }
    utils::writeLog(utils::kLogLevelInfo, "TC::COptionStrategyPositionPanel::doOperation", std::to_string(__LINE__),
                    "placeCommands: option release comb strategy");
    const auto command = CCombReleaseParams::command(params, warning);
    if (COvCommandCenter* center = utils::CManualSingletonT<COvCommandCenter>::instance()) {
        center->createCommand(command, COvCommandCenter::CommandCallback(), true, 0);
    }
}

bool COptionStrategyPositionPanel::fillStockParams(
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& details,
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& out, nqservice::EOperationType operation,
    QString& message, QString& warning)
{
    return CCombReleaseParams::fill(details, out, operation, message, warning);
}

}  // namespace TC
