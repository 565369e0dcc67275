// The desk's main window: docks the panels, the accounts dock and the message
// area, drives the panels by one timer, hands them their saved state, trade type
// and accounts, switches themes, holds the trading kill switch (menu "交易"), and
// saves the layout and every panel's parameter string.
#pragma once

#include "app/cdesklayoutstore.h"
#include "app/cpanelfactory.h"

#include <QMainWindow>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <vector>

class QAction;
class QComboBox;
class QDockWidget;
class QLabel;

namespace TC {
class ITradeDockableWidget;
}

namespace desk {

class CAccountsDock;
class CMessagesModel;
class CRecordTable;

class CDeskWindow : public QMainWindow {
    Q_OBJECT
public:
    CDeskWindow(CPanelFactory factory, const QString& configDir, int tickMs, QWidget* parent = nullptr);
    ~CDeskWindow() override;

    // Builds the panels from the saved layout (or the defaults) and starts the tick.
    // themeOverride, when not empty, wins over the saved theme.
    void restore(const QString& themeOverride = QString());
    // Writes the layout and every panel's param(); false with the reason on failure.
    bool saveLayout(QString* error = nullptr);
    // Renders the window into a PNG.
    bool saveScreenshot(const QString& file, QString* error = nullptr);
    // Switches the colour theme of every widget.
    void applyTheme(const QString& theme);
    QString theme() const { return m_theme; }

    // Gives every panel the account list again.
    void deliverAccounts();

    // Work the host does on its own tick (a trading-day roll-over check, say), and
    // the market text of the status bar.
    void setHostTick(std::function<void()> work) { m_hostTick = std::move(work); }
    void setMarketStatus(std::function<QString()> text) { m_marketStatus = std::move(text); }
    // What 模拟 → 收盘并进入下一交易日 does; the item is disabled without it.
    void setNextTradingDay(std::function<void()> jump);

    // Called with true when the trader pauses trading ("暂停交易") and false when
    // trading resumes ("恢复交易"); the host makes the broker refuse new orders.
    void setTradingHaltHandler(std::function<void(bool halted)> handler) { m_haltHandler = std::move(handler); }
    // Pauses or resumes trading as the menu does: calls the handler, flips the
    // menu, shows the state in the status bar and posts a message.
    void setTradingHalted(bool halted);
    bool tradingHalted() const { return m_halted; }

    // The accounts dock ("账户") and the message area ("消息"); null before restore().
    CAccountsDock* accounts() const { return m_accounts; }
    QDockWidget* accountsDock() const;
    QDockWidget* messageDock() const;
    CRecordTable* messageTable() const { return m_messageTable; }

    TC::ITradeDockableWidget* panel(const QString& name) const;
    // Shows a panel's dock and brings it to the front of its tabs; false for an unknown name.
    bool showPanel(const QString& name);
    QDockWidget* dock(const QString& name) const;
    QStringList panelNames() const;
    // Things the user was told at start (e.g. a damaged layout set aside).
    QStringList notices() const { return m_notices; }
    int tickCount() const { return m_ticks; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildTradingMenu();
    // The accounts dock and the message area, tabbed at the bottom.
    void addTradingDocks();
    void placeTradingDocks();
    // Whether a saved dock state knows a dock of this object name.
    static bool stateNamesDock(const QByteArray& state, const QString& objectName);
    void updateHaltLook();
    void addPanel(const QString& name);
    void onTick();
    void notify(const QString& text);
    void updateStatus();
    // The underlying selector of a board panel, null for panels without one.
    static QComboBox* underlyingSelector(QWidget* panel);
    static void selectUnderlying(QComboBox* selector, const QString& key);

    struct Docked {
        QString name;
        QPointer<QDockWidget> dock;
        TC::ITradeDockableWidget* panel = nullptr;
    };

    CPanelFactory m_factory;
    CDeskLayoutStore m_store;
    QTimer m_tick;
    std::vector<Docked> m_panels;
    QString m_theme = QStringLiteral("dark");
    QStringList m_notices;
    // The underlying a board shows when the layout names none.
    QString m_defaultUnderlying = QStringLiteral("510050.SH");
    // The account group a board shows positions of at start.
    QString m_defaultGroup = QStringLiteral("默认组");
    QLabel* m_statusText = nullptr;
    QLabel* m_marketText = nullptr;
    std::function<void()> m_hostTick;
    std::function<QString()> m_marketStatus;
    std::function<void()> m_nextTradingDay;
    QAction* m_nextTradingDayAction = nullptr;
    int m_ticks = 0;
    int m_nextWidgetID = 1;

    std::function<void(bool)> m_haltHandler;
    bool m_halted = false;
    QAction* m_haltAction = nullptr;
    QAction* m_resumeAction = nullptr;
    QLabel* m_haltText = nullptr;
    CAccountsDock* m_accounts = nullptr;
    QPointer<QDockWidget> m_accountsDock;
    QPointer<QDockWidget> m_messageDock;
    CRecordTable* m_messageTable = nullptr;
    CMessagesModel* m_ownMessages = nullptr;  // when the desk runs without its message service
};

}  // namespace desk
