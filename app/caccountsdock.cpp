#include "app/caccountsdock.h"

#include "app/caccountsfeed.h"
#include "app/ccombinationbuilddialog.h"
#include "app/ccombinationcommand.h"
#include "app/ccombinationstablemodel.h"
#include "app/cdealstablemodel.h"
#include "app/cfundstablemodel.h"
#include "app/corderstablemodel.h"
#include "app/cpositionstablemodel.h"
#include "app/crecordtable.h"
#include "app/csettlementstablemodel.h"
#include "positions/ccombreleaseparams.h"

#include "seam/common.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "services/trading/cpapersettlementrecord.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace desk {

namespace {
const QString kCancelText = QStringLiteral("撤单");
}

CAccountsDock::CAccountsDock(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("accountsDock"));
    m_orders = new COrdersTableModel(this);
    m_deals = new CDealsTableModel(this);
    m_positions = new CPositionsTableModel(this);
    m_funds = new CFundsTableModel(this);
    m_combinations = new CCombinationsTableModel(this);
    m_settlements = new CSettlementsTableModel(this);

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("accountsTabs"));
    m_tabs->setDocumentMode(true);
    const std::pair<CAccountRecordModel*, QString> tabs[TAB_COUNT] = {{m_orders, QStringLiteral("委托")},
                                                                      {m_deals, QStringLiteral("成交")},
                                                                      {m_positions, QStringLiteral("持仓")},
                                                                      {m_funds, QStringLiteral("资金")},
                                                                      {m_combinations, QStringLiteral("组合持仓")},
                                                                      {m_settlements, QStringLiteral("交割")}};
    for (int tab = 0; tab < TAB_COUNT; ++tab) {
        m_models[tab] = tabs[tab].first;
        auto* table = new CRecordTable(900 + tab, tabs[tab].first, m_tabs);
        table->setObjectName(QStringLiteral("accountsTable%1").arg(tab));
        table->adjustColumnWidth();
        m_tables[tab] = table;
        if (tab != TAB_COMBINATIONS) {
            m_tabs->addTab(table, tabs[tab].second);
            continue;
        }
        // The combinations' page: its two actions above the table.
        auto* page = new QWidget(m_tabs);
        page->setObjectName(QStringLiteral("combinationsPage"));
        m_buildButton = new WG::CSmallNormalButton(1, false, WG::NBT_PRIMARY, QStringLiteral("构建组合"), page);
        m_buildButton->setObjectName(QStringLiteral("combinationBuild"));
        m_releaseButton = new WG::CSmallNoNormalButton(2, false, WG::NBT_NORMAL, QStringLiteral("解除组合"), page);
        m_releaseButton->setObjectName(QStringLiteral("combinationRelease"));
        auto* bar = new QHBoxLayout();
        bar->setContentsMargins(4, 2, 4, 2);
        bar->addWidget(m_buildButton);
        bar->addWidget(m_releaseButton);
        bar->addStretch(1);
        auto* pageLayout = new QVBoxLayout(page);
        pageLayout->setContentsMargins(0, 0, 0, 0);
        pageLayout->setSpacing(0);
        pageLayout->addLayout(bar);
        pageLayout->addWidget(table, 1);
        m_tabs->addTab(page, tabs[tab].second);
        for (QAbstractButton* button : {m_buildButton, m_releaseButton}) {
            button->setFixedSize(72, 22);
        }
        connect(m_buildButton, &QAbstractButton::clicked, this, &CAccountsDock::openBuildDialog);
        connect(m_releaseButton, &QAbstractButton::clicked, this, [this] { releaseSelected(); });
    }
    m_cancelButtons = new WG::CBaseTableColumnPushButtonDelegate(COrdersTableModel::COL_CANCEL, nullptr);
    m_tables[TAB_ORDERS]->setColumnDelegate(COrdersTableModel::COL_CANCEL, m_cancelButtons);
    connect(m_cancelButtons, &WG::CBaseTableColumnPushButtonDelegate::sigItemClicked, this,
            [this](const QString& key) { cancelOrder(key.toStdString()); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tabs);

    m_feed = new CAccountsFeed(this);
    m_feed->setRecordSink(
        [this](int dataType, const std::vector<nqservice::IDataPtr>& records) { onRecords(dataType, records); });
    m_feed->setAccountSink([this](const std::string& accountKey) { onAccountGone(accountKey); });
    connect(m_feed, &CAccountsFeed::sigAccountsChanged, this, [this] {
        const QHash<QString, QString> names = m_feed->accountNames();
        for (CAccountRecordModel* model :
             std::initializer_list<CAccountRecordModel*>{m_orders, m_deals, m_positions, m_funds, m_combinations, m_settlements}) {
            model->setAccountNames(names);
        }
    });
    m_feed->refresh();
}

CAccountsDock::~CAccountsDock()
{
    // Subscriptions end before the models and tables they feed go away.
    delete m_feed;
    m_feed = nullptr;
    delete m_tabs;
    m_tabs = nullptr;
}

void CAccountsDock::onRecords(int dataType, const std::vector<nqservice::IDataPtr>& records)
{
    ETab tab = TAB_ORDERS;
    switch (dataType) {
    case nqservice::VQ_DATA_TYPE_ORDER:
        m_orders->apply(records);
        for (const nqservice::IDataPtr& record : records) {
            const auto order = boost::dynamic_pointer_cast<nqservice::COrderDetail>(record);
            if (!order) {
                continue;
            }
            // Only working orders hold a button; a finished one lets its state go.
            const std::string key = order->getKey();
            if (TC::canCancelOrder(order)) {
                m_cancelButtons->setItemText(key, kCancelText, WG::UT_NONE);
                m_cancelButtons->setItemVisible(key, true, false);
            } else {
                m_cancelButtons->removeItem(key);
            }
        }
        m_tables[TAB_ORDERS]->tableView()->viewport()->update();
        tab = TAB_ORDERS;
        break;
    case nqservice::VQ_DATA_TYPE_QUICK_ORDER:
        m_deals->apply(records);
        tab = TAB_DEALS;
        break;
    case nqservice::VQ_DATA_TYPE_POSITION_STATICS:
        m_positions->apply(records);
        tab = TAB_POSITIONS;
        break;
    case nqservice::VQ_DATA_TYPE_ACCOUNT_DETAIL:
        m_funds->apply(records);
        tab = TAB_FUNDS;
        break;
    case nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION:
        m_combinations->apply(records);
        tab = TAB_COMBINATIONS;
        break;
    case trading::kPaperSettlementDataType:
        m_settlements->apply(records);
        tab = TAB_SETTLEMENTS;
        break;
    default:
        return;
    }
    widenToFit(tab, records);
}

void CAccountsDock::widenToFit(ETab tab, const std::vector<nqservice::IDataPtr>& records)
{
    // Columns grow to what new rows show (a refusal's reason, a long name), never
    // shrink: a width the trader chose stays unless a cell needs more.
    constexpr int kPadding = 12;
    constexpr int kMaxWidth = 400;
    CRecordTable* table = m_tables[tab];
    CAccountRecordModel* model = m_models[tab];
    const QFontMetrics metrics(*WG::CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    // A burst is judged by its newest rows: measuring text costs more than showing it.
    constexpr std::size_t kMeasured = 200;
    std::vector<int> wanted(static_cast<std::size_t>(model->columnCount()), 0);
    const std::size_t first = records.size() > kMeasured ? records.size() - kMeasured : 0;
    for (std::size_t i = first; i < records.size(); ++i) {
        const nqservice::IDataPtr& record = records[i];
        const int row = record ? model->rowOfKey(record->getKey()) : -1;
        if (row < 0) {
            continue;
        }
        for (int column = 0; column < model->columnCount(); ++column) {
            const QString text = model->index(row, column).data(Qt::DisplayRole).toString();
            if (!text.isEmpty()) {
                wanted[static_cast<std::size_t>(column)] =
                    std::max(wanted[static_cast<std::size_t>(column)], metrics.horizontalAdvance(text) + kPadding);
            }
        }
    }
    for (int column = 0; column < model->columnCount(); ++column) {
        const int width = std::min(wanted[static_cast<std::size_t>(column)], kMaxWidth);
        if (width > table->columnWidth(column)) {
            table->setColumnWidth(column, width);
        }
    }
}

void CAccountsDock::onAccountGone(const std::string& accountKey)
{
    for (int row = 0; row < m_orders->rowCount(); ++row) {
        const auto order = m_orders->order(row);
        if (order && order->account && order->account->getKey() == accountKey) {
            m_cancelButtons->removeItem(order->getKey());
        }
    }
    for (CAccountRecordModel* model :
         std::initializer_list<CAccountRecordModel*>{m_orders, m_deals, m_positions, m_funds, m_combinations, m_settlements}) {
        model->removeAccount(accountKey);
    }
}

bool CAccountsDock::cancelOrder(const std::string& orderKey)
{
    const auto order = m_orders->order(m_orders->rowOfKey(orderKey));
    if (!order || !TC::canCancelOrder(order)) {
        return false;
    }
    TC::CTradeClient* client = utils::CManualSingletonT<TC::CTradeClient>::instance();
    if (client == nullptr) {
        NQ_LOG_ERROR("cancel of " + orderKey + " not sent: no trade client");
        return false;
    }
    QString message;
    // The client gets its own copy: the row's record stays as the broker last sent it.
    client->cancelOrder(boost::make_shared<nqservice::COrderDetail>(*order), message, 0, QString(), nullptr);
    if (!message.isEmpty()) {
        tell(message);
    }
    return true;
}

CCombinationBuildDialog* CAccountsDock::makeBuildDialog()
{
    // Every stock-option position with contracts free, account by account.
    std::vector<nqservice::IDataPtr> positions;
    for (int row = m_positions->rowCount() - 1; row >= 0; --row) {
        positions.push_back(m_positions->record(row));
    }
    std::vector<CCombinationCommand::Leg> legs;
    for (const std::string& account : m_feed->followedAccounts()) {
        for (const auto& leg : CCombinationCommand::legsOf(positions, account)) {
            legs.push_back(leg);
        }
    }
    return new CCombinationBuildDialog(std::move(legs), this);
}

void CAccountsDock::openBuildDialog()
{
    CCombinationBuildDialog* dialog = makeBuildDialog();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

bool CAccountsDock::releaseSelected()
{
    const int row = m_tables[TAB_COMBINATIONS]->selectedRow();
    const auto detail = boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(
        row >= 0 ? m_combinations->record(row) : nqservice::IDataPtr());
    if (!detail) {
        tell(QStringLiteral("未选择任何组合策略持仓!"));
        return false;
    }
    // The same release order the combination position panel sends.
    QString why;
    QString warning;
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    const auto command =
        TC::CCombReleaseParams::fill({detail}, params, nqservice::OT_COMB_STRATEGY_RELEASE, why, warning)
            ? TC::CCombReleaseParams::command(params, warning)
            : boost::shared_ptr<nqservice::COrderComandParam>();
    TC::COvCommandCenter* commands = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
    if (command && commands == nullptr) {
        why = QStringLiteral("未连接交易通道, 无法解除组合");
    }
    if (!command || commands == nullptr) {
        tell(why);
        return false;
    }
    NQ_LOG_INFO("combination release " + detail->combId);
    commands->createCommand(command, TC::COvCommandCenter::CommandCallback(), true, 0);
    return true;
}

void CAccountsDock::tell(const QString& text)
{
    if (TC::CMsgService* messages = utils::CManualSingletonT<TC::CMsgService>::instance()) {
        messages->showQsMsg(text, TC::MTD_ORDER, nqservice::ML_WARNING, false, false);
    } else {
        NQ_LOG_INFO(text.toStdString());
    }
    // Shown over the page the trader is on.
    QWidget* page = m_tabs->currentWidget();
    WG::CMessageTip::showTip(page != nullptr ? page : m_tables[TAB_ORDERS], WG::AL_BOTTOM, text);
}

}  // namespace desk
