#include "app/caccountsdock.h"
#include "app/cdesklayoutstore.h"
#include "app/cdeskmessageservice.h"
#include "app/cdeskwindow.h"
#include "app/cmessagesmodel.h"
#include "app/crecordtable.h"
#include "seam/common.h"
#include "support/testsupport.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>

namespace {

class DeskTradingTest : public testing::Test {
protected:
    void SetUp() override
    {
        utils::CSingletonT<WG::CUiResource>::destroy();
        messages = new desk::CDeskMessageService;
        utils::CManualSingletonT<TC::CMsgService>::install(messages);
    }
    void TearDown() override
    {
        utils::CManualSingletonT<TC::CMsgService>::destroy();
        utils::CSingletonT<WG::CUiResource>::destroy();
    }
    QAction* action(desk::CDeskWindow& window, const char* name)
    {
        return window.findChild<QAction*>(QString::fromLatin1(name));
    }
    QMenu* tradingMenu(desk::CDeskWindow& window)
    {
        for (QAction* entry : window.menuBar()->actions()) {
            if (entry->text() == QStringLiteral("交易")) {
                return entry->menu();
            }
        }
        return nullptr;
    }
    QTemporaryDir dir;
    desk::CDeskMessageService* messages = nullptr;
};

}  // namespace

TEST_F(DeskTradingTest, TheKillSwitchCallsTheHandlerAndShowsTheState)
{
    desk::CDeskWindow window(desk::CPanelFactory(), dir.path(), 50);
    window.restore();
    std::vector<bool> calls;
    window.setTradingHaltHandler([&](bool halted) { calls.push_back(halted); });

    QMenu* menu = tradingMenu(window);
    ASSERT_NE(menu, nullptr);
    QAction* halt = action(window, "actionHaltTrading");
    QAction* resume = action(window, "actionResumeTrading");
    ASSERT_NE(halt, nullptr);
    ASSERT_NE(resume, nullptr);
    EXPECT_TRUE(menu->actions().contains(halt));
    EXPECT_TRUE(menu->actions().contains(resume));
    EXPECT_EQ(halt->text(), QStringLiteral("暂停交易"));
    EXPECT_EQ(resume->text(), QStringLiteral("恢复交易"));
    EXPECT_TRUE(halt->isEnabled());
    EXPECT_FALSE(resume->isEnabled());
    auto* status = window.findChild<QLabel*>(QStringLiteral("tradingHaltStatus"));
    ASSERT_NE(status, nullptr);
    EXPECT_TRUE(status->isHidden());

    halt->trigger();
    EXPECT_EQ(calls, std::vector<bool>{true});
    EXPECT_TRUE(window.tradingHalted());
    EXPECT_FALSE(halt->isEnabled());
    EXPECT_TRUE(resume->isEnabled());
    EXPECT_FALSE(status->isHidden());
    EXPECT_EQ(status->text(), QStringLiteral("交易已暂停"));
    const QString warning = WG::CUiResource::get()->getColor(QStringLiteral("clr_text_warning"))->name();
    EXPECT_TRUE(status->styleSheet().contains(warning)) << status->styleSheet().toStdString();
    ASSERT_TRUE(testsupport::waitUntil([&] { return messages->model()->rowCount() == 1; }));
    EXPECT_EQ(messages->model()->index(0, desk::CMessagesModel::COL_TEXT).data().toString(),
              QStringLiteral("交易已暂停"));
    EXPECT_EQ(messages->model()->index(0, desk::CMessagesModel::COL_LEVEL).data().toString(), QStringLiteral("警告"));

    // Where the desk is worth a look: OPTDESK_SHOT_DIR keeps a picture of the paused desk.
    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!shots.isEmpty()) {
        window.resize(1000, 600);
        window.show();
        window.messageDock()->raise();
        QCoreApplication::processEvents();
        window.grab().save(shots + QStringLiteral("/desk-halted.png"));
    }

    // The warning colour follows the theme.
    window.applyTheme(QStringLiteral("light"));
    const QString lightWarning = WG::CUiResource::get()->getColor(QStringLiteral("clr_text_warning"))->name();
    EXPECT_NE(lightWarning, warning);
    EXPECT_TRUE(status->styleSheet().contains(lightWarning));

    resume->trigger();
    EXPECT_EQ(calls, (std::vector<bool>{true, false}));
    EXPECT_FALSE(window.tradingHalted());
    EXPECT_TRUE(halt->isEnabled());
    EXPECT_FALSE(resume->isEnabled());
    EXPECT_TRUE(status->isHidden());
    ASSERT_TRUE(testsupport::waitUntil([&] { return messages->model()->rowCount() == 2; }));
    EXPECT_EQ(messages->model()->index(0, desk::CMessagesModel::COL_TEXT).data().toString(),
              QStringLiteral("交易已恢复"));

    // A switch to the state it is in calls nobody.
    window.setTradingHalted(false);
    EXPECT_EQ(calls.size(), 2u);
}

TEST_F(DeskTradingTest, TheAccountsDockAndTheMessageAreaDockAtTheBottomAndKeepTheirLayout)
{
    {
        desk::CDeskWindow window(desk::CPanelFactory(), dir.path(), 50);
        window.restore();
        QDockWidget* accounts = window.accountsDock();
        QDockWidget* messageDock = window.messageDock();
        ASSERT_NE(accounts, nullptr);
        ASSERT_NE(messageDock, nullptr);
        EXPECT_EQ(accounts->windowTitle(), QStringLiteral("账户"));
        EXPECT_EQ(messageDock->windowTitle(), QStringLiteral("消息"));
        EXPECT_EQ(accounts->objectName(), QStringLiteral("dock_accounts"));
        EXPECT_EQ(messageDock->objectName(), QStringLiteral("dock_messages"));
        EXPECT_EQ(window.dockWidgetArea(accounts), Qt::BottomDockWidgetArea);
        EXPECT_EQ(window.dockWidgetArea(messageDock), Qt::BottomDockWidgetArea);
        EXPECT_EQ(accounts->widget(), window.accounts());
        ASSERT_NE(window.messageTable(), nullptr);
        EXPECT_EQ(window.messageTable()->columnCount(), desk::CMessagesModel::COL_COUNT);

        messages->showQsMsg(QStringLiteral("账户未登录"), TC::MTD_ORDER, nqservice::ML_ERROR, false, false);
        ASSERT_TRUE(testsupport::waitUntil([&] { return window.messageTable()->rowCount() == 1; }));
        EXPECT_EQ(window.messageTable()->itemText(0, desk::CMessagesModel::COL_TEXT), QStringLiteral("账户未登录"));

        window.show();
        messageDock->setFloating(true);
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CDeskWindow window(desk::CPanelFactory(), dir.path(), 50);
    window.restore();
    ASSERT_NE(window.messageDock(), nullptr);
    EXPECT_TRUE(window.messageDock()->isFloating()) << "the saved dock state finds the dock by its name";
    EXPECT_FALSE(window.accountsDock()->isFloating());
}

TEST_F(DeskTradingTest, ALayoutSavedBeforeTheTradingDocksExistedBringsThemToTheirDefaultPlace)
{
    // A window of that time: one dock, none of the trading docks.
    QMainWindow older;
    auto* board = new QDockWidget(QStringLiteral("T型报价"), &older);
    board->setObjectName(QStringLiteral("dock_pricet"));
    older.addDockWidget(Qt::TopDockWidgetArea, board);
    desk::DeskLayout layout;
    layout.dockState = older.saveState();
    layout.theme = QStringLiteral("dark");
    ASSERT_TRUE(desk::CDeskLayoutStore(dir.path()).save(layout));

    desk::CDeskWindow window(desk::CPanelFactory(), dir.path(), 50);
    window.restore();
    window.show();
    ASSERT_NE(window.accountsDock(), nullptr);
    EXPECT_EQ(window.dockWidgetArea(window.accountsDock()), Qt::BottomDockWidgetArea);
    EXPECT_TRUE(window.tabifiedDockWidgets(window.accountsDock()).contains(window.messageDock()));
    EXPECT_TRUE(window.accountsDock()->isVisible());
    EXPECT_TRUE(window.notices().isEmpty());
}
