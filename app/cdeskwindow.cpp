#include "app/cdeskwindow.h"

#include "app/caccountsdock.h"
#include "app/ccombclosehandler.h"
#include "app/cdeskmessageservice.h"
#include "app/cgreeksimportsettingsdialog.h"
#include "app/cmessagesmodel.h"
#include "app/corderlimitsdialog.h"
#include "app/cwinnersettingsdialog.h"
#include "app/crecordtable.h"

#include "positions/coptionstrategypositionpanel.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/tradingrecords.h"
#include "seam/user.h"
#include "seam/userrecords.h"
#include "seam/tradingenums.h"
#include "seam/uievents.h"
#include "toolkit/caccountscombobox.h"
#include "toolkit/cstylesheetcenter.h"
#include "toolkit/cuiresource.h"
#include "toolkit/itradedockablewidget.h"

#include <QAction>
#include <QActionGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>

namespace desk {

namespace {
const QString kDark = QStringLiteral("dark");
const QString kLight = QStringLiteral("light");

// The window chrome follows the theme too; panels paint from resource keys themselves.
QString chromeStyle()
{
    const WG::CUiResource* r = WG::CUiResource::get();
    auto c = [r](const char* key) { return r->getColor(QString::fromLatin1(key))->name(); };
    return QStringLiteral(
               "QMainWindow, QDockWidget { background: %1; color: %2; }"
               "QDockWidget::title { background: %3; padding: 4px 8px; color: %2; }"
               "QMenuBar { background: %3; color: %2; } QMenuBar::item:selected { background: %4; }"
               "QMenu { background: %3; color: %2; border: 1px solid %5; } QMenu::item:selected { background: %4; }"
               "QStatusBar { background: %3; color: %6; } QStatusBar QLabel { color: %6; }"
               "QMainWindow::separator { background: %5; width: 2px; height: 2px; }"
               "QTabBar::tab { background: %3; color: %6; padding: 4px 12px; border: 1px solid %5; }"
               "QTabBar::tab:selected { background: %4; color: %2; }"
               // Tab bars and tab panes draw no base line or frame of the platform's light colour.
               "QTabBar { qproperty-drawBase: 0; } QTabWidget::pane { border: none; }")
        .arg(c("clr_window_background"), c("clr_text_default"), c("clr_tab_header"), c("clr_table_background_selected"),
             c("clr_table_split_line"), c("clr_table_header_text")) +
           // Lists and views of the desk's own take the theme's scroll bars too.
           WG::CStyleSheetCenter::getStyle(WG::SS_SCROLLBAR);
}
}  // namespace

CDeskWindow::CDeskWindow(CPanelFactory factory, const QString& configDir, int tickMs, QWidget* parent)
    : QMainWindow(parent), m_factory(std::move(factory)), m_store(configDir)
{
    setObjectName(QStringLiteral("optdeskMainWindow"));
    setWindowTitle(QStringLiteral("optdesk 期权交易台"));
    setDockNestingEnabled(true);
    resize(1440, 900);
    m_tick.setInterval(tickMs);
    connect(&m_tick, &QTimer::timeout, this, &CDeskWindow::onTick);
    m_marketText = new QLabel(this);
    m_marketText->setObjectName(QStringLiteral("marketStatus"));
    statusBar()->addPermanentWidget(m_marketText, 1);
    m_haltText = new QLabel(QStringLiteral("交易已暂停"), this);
    m_haltText->setObjectName(QStringLiteral("tradingHaltStatus"));
    m_haltText->hide();
    statusBar()->addPermanentWidget(m_haltText);
    m_statusText = new QLabel(this);
    statusBar()->addPermanentWidget(m_statusText);
    buildMenus();
}

CDeskWindow::~CDeskWindow() { m_tick.stop(); }

void CDeskWindow::setNextTradingDay(std::function<void()> jump)
{
    m_nextTradingDay = std::move(jump);
    m_nextTradingDayAction->setEnabled(static_cast<bool>(m_nextTradingDay));
}

void CDeskWindow::buildMenus()
{
    QMenu* view = menuBar()->addMenu(QStringLiteral("视图"));
    view->setObjectName(QStringLiteral("menuView"));
    QMenu* themeMenu = menuBar()->addMenu(QStringLiteral("主题"));
    auto* group = new QActionGroup(this);
    const std::pair<QString, QString> themes[] = {{kDark, QStringLiteral("深色")}, {kLight, QStringLiteral("浅色")}};
    for (const auto& entry : themes) {
        QAction* action = themeMenu->addAction(entry.second);
        action->setCheckable(true);
        action->setData(entry.first);
        action->setObjectName(QStringLiteral("theme_") + entry.first);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, name = entry.first] { applyTheme(name); });
    }
    QMenu* settingsMenu = menuBar()->addMenu(QStringLiteral("设置"));
    QAction* greeksImport = settingsMenu->addAction(QStringLiteral("希腊值导入..."));
    greeksImport->setObjectName(QStringLiteral("actionGreeksImport"));
    connect(greeksImport, &QAction::triggered, this, [this] {
        CGreeksImportSettingsDialog dialog(this);
        dialog.exec();
    });
    QAction* orderLimits = settingsMenu->addAction(QStringLiteral("下单限制..."));
    orderLimits->setObjectName(QStringLiteral("actionOrderLimits"));
    connect(orderLimits, &QAction::triggered, this, [this] {
        COrderLimitsDialog dialog(this);
        dialog.exec();
    });
    QAction* winnerSettings = settingsMenu->addAction(QStringLiteral("稳稳胜设置..."));
    winnerSettings->setObjectName(QStringLiteral("actionWinnerSettings"));
    connect(winnerSettings, &QAction::triggered, this, [this] {
        CWinnerSettingsDialog dialog(this);
        dialog.exec();
    });
    buildTradingMenu();
    QMenu* simulation = menuBar()->addMenu(QStringLiteral("模拟"));
    simulation->setObjectName(QStringLiteral("menuSimulation"));
    m_nextTradingDayAction = simulation->addAction(QStringLiteral("收盘并进入下一交易日"));
    m_nextTradingDayAction->setObjectName(QStringLiteral("actionNextTradingDay"));
    m_nextTradingDayAction->setEnabled(false);
    connect(m_nextTradingDayAction, &QAction::triggered, this, [this] {
        if (m_nextTradingDay) {
            m_nextTradingDay();
            updateStatus();
        }
    });
    QMenu* fileMenu = menuBar()->addMenu(QStringLiteral("布局"));
    connect(fileMenu->addAction(QStringLiteral("保存布局")), &QAction::triggered, this, [this] {
        QString error;
        if (saveLayout(&error)) {
            statusBar()->showMessage(QStringLiteral("布局已保存"), 3000);
        } else {
            notify(QStringLiteral("布局保存失败: ") + error);
        }
    });
}

void CDeskWindow::buildTradingMenu()
{
    QMenu* trading = menuBar()->addMenu(QStringLiteral("交易"));
    trading->setObjectName(QStringLiteral("menuTrading"));
    m_haltAction = trading->addAction(QStringLiteral("暂停交易"));
    m_haltAction->setObjectName(QStringLiteral("actionHaltTrading"));
    m_resumeAction = trading->addAction(QStringLiteral("恢复交易"));
    m_resumeAction->setObjectName(QStringLiteral("actionResumeTrading"));
    connect(m_haltAction, &QAction::triggered, this, [this] { setTradingHalted(true); });
    connect(m_resumeAction, &QAction::triggered, this, [this] { setTradingHalted(false); });
    updateHaltLook();
}

void CDeskWindow::setTradingHalted(bool halted)
{
    if (halted == m_halted) {
        return;
    }
    m_halted = halted;
    if (m_haltHandler) {
        m_haltHandler(halted);
    }
    updateHaltLook();
    const QString text = halted ? QStringLiteral("交易已暂停") : QStringLiteral("交易已恢复");
    if (TC::CMsgService* messages = utils::CManualSingletonT<TC::CMsgService>::instance()) {
        messages->showQsMsg(text, TC::MTD_OPERATION, halted ? nqservice::ML_WARNING : nqservice::ML_INFO, false,
                            false);
    } else {
        NQ_LOG_INFO(text.toStdString());
    }
}

void CDeskWindow::updateHaltLook()
{
    // Only the switch that applies can be pulled.
    m_haltAction->setEnabled(!m_halted);
    m_resumeAction->setEnabled(m_halted);
    m_haltText->setVisible(m_halted);
    m_haltText->setStyleSheet(
        QStringLiteral("color: %1; font-weight: bold; padding: 0 8px;")
            .arg(WG::CUiResource::get()->getColor(QStringLiteral("clr_text_warning"))->name()));
}

void CDeskWindow::addTradingDocks()
{
    if (m_accountsDock) {
        return;
    }
    m_accountsDock = new QDockWidget(QStringLiteral("账户"), this);
    m_accountsDock->setObjectName(QStringLiteral("dock_accounts"));
    m_accountsDock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable |
                                QDockWidget::DockWidgetClosable);
    m_accounts = new CAccountsDock(m_accountsDock);
    m_accountsDock->setWidget(m_accounts);

    m_messageDock = new QDockWidget(QStringLiteral("消息"), this);
    m_messageDock->setObjectName(QStringLiteral("dock_messages"));
    m_messageDock->setFeatures(m_accountsDock->features());
    CMessagesModel* messages = nullptr;
    if (auto* service = dynamic_cast<CDeskMessageService*>(utils::CManualSingletonT<TC::CMsgService>::instance())) {
        messages = service->model();
        // A note that asks for attention shows in the status bar as well.
        connect(service, &CDeskMessageService::sigMessage, this, [this](const QString& text, int, bool modal) {
            if (modal) {
                statusBar()->showMessage(text, 15000);
            }
        });
    } else {
        m_ownMessages = new CMessagesModel(500, this);
        messages = m_ownMessages;
    }
    m_messageTable = new CRecordTable(990, messages, m_messageDock);
    m_messageTable->setObjectName(QStringLiteral("messageTable"));
    m_messageTable->setFlag(m_messageTable->flag() | WG::BTF_STRETCH_LAST);
    m_messageTable->setColumnWidth(CMessagesModel::COL_TIME, 70);
    m_messageTable->setColumnWidth(CMessagesModel::COL_LEVEL, 44);
    m_messageDock->setWidget(m_messageTable);

    placeTradingDocks();
    if (QMenu* view = menuBar()->findChild<QMenu*>(QStringLiteral("menuView"))) {
        view->addAction(m_accountsDock->toggleViewAction());
        view->addAction(m_messageDock->toggleViewAction());
    }
}

QDockWidget* CDeskWindow::accountsDock() const { return m_accountsDock; }

QDockWidget* CDeskWindow::messageDock() const { return m_messageDock; }

void CDeskWindow::placeTradingDocks()
{
    m_accountsDock->setFloating(false);
    m_messageDock->setFloating(false);
    addDockWidget(Qt::BottomDockWidgetArea, m_accountsDock);
    tabifyDockWidget(m_accountsDock, m_messageDock);
    m_accountsDock->show();
    m_messageDock->show();
    m_accountsDock->raise();
    // Room for a few rows by default, the rest for the chain above (whose Greeks
    // pane takes 400 px of it); a saved layout brings the trader's own height.
    resizeDocks({m_accountsDock}, {160}, Qt::Vertical);
}

bool CDeskWindow::stateNamesDock(const QByteArray& state, const QString& objectName)
{
    // QMainWindow::saveState() writes object names as QDataStream strings: UTF-16, big-endian.
    QByteArray name;
    for (const QChar c : objectName) {
        name.append(static_cast<char>(c.unicode() >> 8));
        name.append(static_cast<char>(c.unicode() & 0xff));
    }
    return state.contains(name);
}

void CDeskWindow::restore(const QString& themeOverride)
{
    DeskLayout layout;
    QString aside;
    switch (m_store.load(layout, &aside)) {
    case CDeskLayoutStore::LoadResult::Loaded:
        NQ_LOG_INFO("layout restored from " + m_store.filePath().toStdString());
        break;
    case CDeskLayoutStore::LoadResult::Damaged:
        notify(QStringLiteral("保存的布局已损坏, 已另存为 %1, 使用默认布局").arg(aside));
        break;
    case CDeskLayoutStore::LoadResult::Missing:
        break;
    }

    QStringList names;
    for (const QString& name : layout.panels) {
        if (m_factory.has(name) && !names.contains(name)) {
            names << name;
        }
    }
    // Panels this build has that the saved layout does not know yet come too.
    for (const QString& name : m_factory.names()) {
        if (!names.contains(name)) {
            names << name;
        }
    }
    for (const QString& name : names) {
        addPanel(name);
    }
    // Before the dock state is restored, so it finds them by name.
    addTradingDocks();
    for (const Docked& docked : m_panels) {
        docked.panel->setParam(layout.panelParams.value(docked.name));
        if (QComboBox* selector = underlyingSelector(docked.panel)) {
            selectUnderlying(selector, layout.underlyings.value(docked.name, m_defaultUnderlying));
        }
        // The boards start on the paper user's group, so "仓差" counts its accounts without the ladder.
        for (TC::CAccountsComboBox* accounts : docked.panel->findChildren<TC::CAccountsComboBox*>()) {
            accounts->setSelection(TC::SAT_GROUP, m_defaultGroup);
        }
    }
    if (!layout.geometry.isEmpty()) {
        restoreGeometry(layout.geometry);
    }
    if (!layout.dockState.isEmpty() && !restoreState(layout.dockState)) {
        notify(QStringLiteral("保存的停靠布局无法恢复, 使用默认布局"));
    }
    // A panel's splitters come in the order it made them; a state that no longer fits its splitter is refused
    // by it and the default stays.
    for (const Docked& docked : m_panels) {
        const QList<QByteArray> states = layout.splitters.value(docked.name);
        const QList<QSplitter*> splitters = docked.panel->findChildren<QSplitter*>();
        for (int i = 0; i < states.size() && i < splitters.size(); ++i) {
            splitters.at(i)->restoreState(states.at(i));
        }
    }
    // A layout saved before the trading docks existed leaves them where Qt puts
    // strangers; they go back to their default place, tabbed at the bottom.
    if (!layout.dockState.isEmpty() && !stateNamesDock(layout.dockState, m_accountsDock->objectName())) {
        placeTradingDocks();
    }
    QString theme = themeOverride.isEmpty() ? layout.theme : themeOverride;
    applyTheme(theme == kLight ? kLight : kDark);
    deliverAccounts();
    updateStatus();
    m_tick.start();
}

void CDeskWindow::addPanel(const QString& name)
{
    auto* dock = new QDockWidget(m_factory.title(name), this);
    dock->setObjectName(QStringLiteral("dock_") + name);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetClosable);
    TC::ITradeDockableWidget* panel = m_factory.make(name, m_nextWidgetID++, dock);
    if (panel == nullptr) {
        delete dock;
        return;
    }
    dock->setWidget(panel);
    // The boards and the price quote panel share the top as tabs; the other panels dock below them.
    const auto atTop = [](const QString& panel) {
        return panel.startsWith(QStringLiteral("pricet")) || panel == QStringLiteral("pricequote");
    };
    const bool board = atTop(name);
    QDockWidget* firstBoard = nullptr;
    for (const Docked& docked : m_panels) {
        if (firstBoard == nullptr && atTop(docked.name)) {
            firstBoard = docked.dock;
        }
    }
    // The strategy workbench works beside the board, where a trader looks from the chain to the basket.
    const bool besideBoard = name == QStringLiteral("ops") && firstBoard != nullptr;
    const Qt::DockWidgetArea area = besideBoard                        ? Qt::RightDockWidgetArea
                                    : board || m_panels.empty() ? Qt::TopDockWidgetArea
                                                                : Qt::BottomDockWidgetArea;
    if (besideBoard) {
        // The right area reaches up to the top, so the workbench stands beside the board, not under it.
        setCorner(Qt::TopRightCorner, Qt::RightDockWidgetArea);
    }
    addDockWidget(area, dock);
    if (besideBoard) {
        resizeDocks({dock}, {620}, Qt::Horizontal);
    }
    if (board && firstBoard != nullptr) {
        tabifyDockWidget(firstBoard, dock);
        firstBoard->raise();
    }
    if (QMenu* view = menuBar()->findChild<QMenu*>(QStringLiteral("menuView"))) {
        view->addAction(dock->toggleViewAction());
    }
    // A double click in the combination panel asks the desk to close the combination, as a host does.
    if (auto* combinations = qobject_cast<TC::COptionStrategyPositionPanel*>(panel)) {
        connect(combinations, &TC::COptionStrategyPositionPanel::sigCloseOptionCombPosition, this,
                [this](boost::shared_ptr<nqservice::CStkOptCombPositionDetail> detail) {
                    CCombCloseHandler::closeCombination(this, detail);
                });
    }
    // Host hand-over: trade type first here, so a saved string meets the columns of its type.
    panel->setTradeType(m_factory.traderType(name));
    m_panels.push_back(Docked{name, dock, panel});
}

void CDeskWindow::deliverAccounts()
{
    for (const Docked& docked : m_panels) {
        docked.panel->loadAccounts();
    }
    // Accounts whose login is ready are handed over one by one, as a broker
    // gateway reports them; without a login service none is ready.
    TC::CUserConfig* user = TC::getUserConfig();
    nqservice::TradeLogicInterface* logic = utils::CSingletonT<TC::SingletonManager>::instance()->getTradeLogicInterface();
    if (user == nullptr || logic == nullptr) {
        return;
    }
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<TC::CAccount>>*>(user->getUserDataAddress(TC::UM_ACCOUNT_LIST));
    if (accounts == nullptr) {
        return;
    }
    for (const auto& account : *accounts) {
        if (!account || !nqservice::isLoginStatusReady(logic->getLoginStatus(account->key().toStdString()))) {
            continue;
        }
        const boost::shared_ptr<nqservice::CAccountInfo> info = account->toInfo();
        for (const Docked& docked : m_panels) {
            docked.panel->requestAccount(*info);
        }
    }
}

void CDeskWindow::onTick()
{
    ++m_ticks;
    if (m_hostTick) {
        m_hostTick();
    }
    for (const Docked& docked : m_panels) {
        docked.panel->onTimer(TC::TUF_QUOTE);
    }
    if (m_marketStatus) {
        const QString text = m_marketStatus();
        if (text != m_marketText->text()) {
            m_marketText->setText(text);
        }
    }
}

bool CDeskWindow::saveLayout(QString* error)
{
    DeskLayout layout;
    layout.geometry = saveGeometry();
    layout.dockState = saveState();
    layout.theme = m_theme;
    for (const Docked& docked : m_panels) {
        layout.panels << docked.name;
        layout.panelParams.insert(docked.name, docked.panel->param());
        // Where the trader dragged a panel's dividers: the chain's Greeks pane, the workbench's chart.
        QList<QByteArray> states;
        for (const QSplitter* splitter : docked.panel->findChildren<QSplitter*>()) {
            states << splitter->saveState();
        }
        if (!states.isEmpty()) {
            layout.splitters.insert(docked.name, states);
        }
        if (QComboBox* selector = underlyingSelector(docked.panel)) {
            const QString key = selector->currentData(Qt::UserRole).toString();
            if (!key.isEmpty()) {
                layout.underlyings.insert(docked.name, key);
            }
        }
    }
    QString reason;
    if (!m_store.save(layout, &reason)) {
        NQ_LOG_ERROR("layout not saved: " + reason.toStdString());
        if (error != nullptr) {
            *error = reason;
        }
        return false;
    }
    return true;
}

bool CDeskWindow::saveScreenshot(const QString& file, QString* error)
{
    const QPixmap picture = grab();
    if (picture.isNull() || !picture.save(file, "PNG")) {
        if (error != nullptr) {
            *error = QStringLiteral("cannot write the screenshot %1").arg(file);
        }
        return false;
    }
    return true;
}

void CDeskWindow::applyTheme(const QString& theme)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    if (!resource->setTheme(theme)) {
        return;
    }
    m_theme = theme;
    setStyleSheet(chromeStyle());
    updateHaltLook();
    for (QAction* action : findChildren<QAction*>(QStringLiteral("theme_") + theme)) {
        action->setChecked(true);
    }
    update();
}

QComboBox* CDeskWindow::underlyingSelector(QWidget* panel)
{
    for (QComboBox* combo : panel->findChildren<QComboBox*>()) {
        if (combo->inherits("TC::COptionUndlCodeComboBox")) {
            return combo;
        }
    }
    return nullptr;
}

void CDeskWindow::selectUnderlying(QComboBox* selector, const QString& key)
{
    const int index = selector->findData(key, Qt::UserRole);
    if (index >= 0 && index != selector->currentIndex()) {
        selector->setCurrentIndex(index);
    }
}

TC::ITradeDockableWidget* CDeskWindow::panel(const QString& name) const
{
    for (const Docked& docked : m_panels) {
        if (docked.name == name) {
            return docked.panel;
        }
    }
    return nullptr;
}

bool CDeskWindow::showPanel(const QString& name)
{
    QDockWidget* shown = dock(name);
    if (shown == nullptr) {
        return false;
    }
    shown->show();
    shown->raise();
    return true;
}

QDockWidget* CDeskWindow::dock(const QString& name) const
{
    for (const Docked& docked : m_panels) {
        if (docked.name == name) {
            return docked.dock;
        }
    }
    return nullptr;
}

QStringList CDeskWindow::panelNames() const
{
    QStringList names;
    for (const Docked& docked : m_panels) {
        names << docked.name;
    }
    return names;
}

void CDeskWindow::notify(const QString& text)
{
    m_notices << text;
    statusBar()->showMessage(text, 15000);
    NQ_LOG_INFO(text.toStdString());
}

void CDeskWindow::updateStatus()
{
    m_statusText->setText(QStringLiteral("面板 %1 个  |  配置目录 %2")
                              .arg(m_panels.size())
                              .arg(QFileInfo(m_store.filePath()).absolutePath()));
    if (m_marketStatus) {
        m_marketText->setText(m_marketStatus());
    }
}

void CDeskWindow::closeEvent(QCloseEvent* event)
{
    QString error;
    if (!saveLayout(&error)) {
        NQ_LOG_ERROR("layout not saved at exit: " + error.toStdString());
    }
    m_tick.stop();
    QMainWindow::closeEvent(event);
}

}  // namespace desk
