#include "app/cdeskwindow.h"
#include "seam/common.h"
#include "seam/paramstring.h"
#include "seam/trading.h"
#include "seam/tradingrecords.h"
#include "seam/user.h"
#include "seam/userrecords.h"
#include "services/user/cusersettingsstore.h"
#include "support/testsupport.h"
#include "toolkit/cuiresource.h"
#include "toolkit/itradedockablewidget.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QAction>
#include <QImage>
#include <QMenu>
#include <QTemporaryDir>

namespace {

// A panel that records what the host hands it.
class RecordingPanel : public TC::ITradeDockableWidget {
public:
    RecordingPanel(int id, QWidget* parent)
        : TC::ITradeDockableWidget(false, QStringLiteral("recording"), id, TC::TraderTypeFlags(1056), parent)
    {
    }
    void setParam(const QString& param) override
    {
        ++setParamCalls;
        const QStringList sections = TC::CParamString::sections(param);
        if (sections.isEmpty()) {
            return;  // nothing saved: keep what we have
        }
        state = sections;
    }
    QString param() override { return TC::CParamString::joinSections(state); }
    void setTradeType(nqservice::EVqTraderType type) override
    {
        TC::ITradeDockableWidget::setTradeType(type);
        tradeTypes << type;
    }
    void loadAccounts() override { ++loadAccountsCalls; }
    void requestAccount(const nqservice::CAccountInfo& info) override { requested.push_back(info.getKey()); }
    void onTimer(QFlags<TC::ETimerUpdateFlag>) override { ++ticks; }
    void themeChanged() override { ++themeChanges; }

    QStringList state{QStringLiteral("initial")};
    QList<int> tradeTypes;
    std::vector<std::string> requested;
    int setParamCalls = 0;
    int loadAccountsCalls = 0;
    int ticks = 0;
    int themeChanges = 0;
};

desk::CPanelFactory recordingFactory()
{
    desk::CPanelFactory factory;
    factory.add(QStringLiteral("alpha"), QStringLiteral("甲面板"),
                [](int id, QWidget* parent) { return new RecordingPanel(id, parent); });
    factory.add(QStringLiteral("beta"), QStringLiteral("乙面板"),
                [](int id, QWidget* parent) { return new RecordingPanel(id, parent); });
    return factory;
}

RecordingPanel* recording(desk::CDeskWindow& window, const char* name)
{
    return dynamic_cast<RecordingPanel*>(window.panel(QString::fromLatin1(name)));
}

class DeskWindowTest : public testing::Test {
protected:
    void SetUp() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
    void TearDown() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
    QTemporaryDir dir;
};

}  // namespace

TEST_F(DeskWindowTest, DocksEveryOfferedPanelAndHandsThemOver)
{
    desk::CDeskWindow window(recordingFactory(), dir.path(), 20);
    window.restore();
    EXPECT_EQ(window.panelNames(), (QStringList{QStringLiteral("alpha"), QStringLiteral("beta")}));
    RecordingPanel* alpha = recording(window, "alpha");
    ASSERT_NE(alpha, nullptr);
    EXPECT_EQ(alpha->setParamCalls, 1);
    EXPECT_EQ(alpha->state, QStringList{QStringLiteral("initial")});  // an empty string changes nothing
    EXPECT_EQ(alpha->tradeTypes, QList<int>{32});
    EXPECT_EQ(alpha->loadAccountsCalls, 1);
    EXPECT_EQ(window.dock(QStringLiteral("beta"))->windowTitle(), QStringLiteral("乙面板"));
    EXPECT_EQ(alpha->widgetID() == recording(window, "beta")->widgetID(), false);
}

TEST_F(DeskWindowTest, OneTimerTicksEveryPanel)
{
    desk::CDeskWindow window(recordingFactory(), dir.path(), 20);
    window.restore();
    ASSERT_TRUE(testsupport::waitUntil([&] { return recording(window, "beta")->ticks >= 3; }));
    EXPECT_GE(recording(window, "alpha")->ticks, 3);
    EXPECT_GE(window.tickCount(), 3);
}

TEST_F(DeskWindowTest, LayoutAndParamsSurviveARestart)
{
    {
        desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
        window.restore();
        window.show();
        recording(window, "alpha")->state = QStringList{QStringLiteral("510050.SH"), QString(), QStringLiteral("a;b")};
        window.dock(QStringLiteral("beta"))->hide();
        window.applyTheme(QStringLiteral("light"));
        QString error;
        ASSERT_TRUE(window.saveLayout(&error)) << error.toStdString();
    }
    desk::CDeskWindow again(recordingFactory(), dir.path(), 50);
    again.restore();
    again.show();
    EXPECT_EQ(recording(again, "alpha")->state,
              (QStringList{QStringLiteral("510050.SH"), QString(), QStringLiteral("a;b")}));
    EXPECT_TRUE(again.dock(QStringLiteral("beta"))->isHidden());
    EXPECT_FALSE(again.dock(QStringLiteral("alpha"))->isHidden());
    EXPECT_EQ(again.theme(), QStringLiteral("light"));
    EXPECT_TRUE(again.notices().isEmpty());
}

TEST_F(DeskWindowTest, ClosingSavesTheLayout)
{
    {
        desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
        window.restore();
        window.show();
        recording(window, "beta")->state = QStringList{QStringLiteral("kept")};
        window.close();
    }
    desk::CDeskWindow again(recordingFactory(), dir.path(), 50);
    again.restore();
    EXPECT_EQ(recording(again, "beta")->state, QStringList{QStringLiteral("kept")});
}

TEST_F(DeskWindowTest, DamagedLayoutIsSetAsideAndTheUserTold)
{
    {
        QFile file(QDir(dir.path()).filePath(QStringLiteral("layout.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{ \"version\": 1, \"panels\": [\"alpha\"");
    }
    desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
    window.restore();
    EXPECT_EQ(window.panelNames().size(), 2);  // defaults
    ASSERT_EQ(window.notices().size(), 1);
    EXPECT_TRUE(window.notices().first().contains(QStringLiteral("损坏")));
    const QStringList aside = QDir(dir.path()).entryList({QStringLiteral("layout.json.damaged-*")}, QDir::Files);
    EXPECT_EQ(aside.size(), 1);
}

TEST_F(DeskWindowTest, UnknownPanelsInTheLayoutAreNotOffered)
{
    {
        desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
        window.restore();
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CPanelFactory onlyBeta;
    onlyBeta.add(QStringLiteral("beta"), QStringLiteral("乙面板"),
                 [](int id, QWidget* parent) { return new RecordingPanel(id, parent); });
    desk::CDeskWindow window(onlyBeta, dir.path(), 50);
    window.restore();
    EXPECT_EQ(window.panelNames(), QStringList{QStringLiteral("beta")});
}

TEST_F(DeskWindowTest, ThemeSwitchReachesEveryPanel)
{
    desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
    window.restore(QStringLiteral("dark"));
    const int before = recording(window, "alpha")->themeChanges;
    window.applyTheme(QStringLiteral("light"));
    EXPECT_EQ(recording(window, "alpha")->themeChanges, before + 1);
    EXPECT_EQ(recording(window, "beta")->themeChanges, before + 1);
    EXPECT_EQ(WG::CUiResource::get()->themeName(), QStringLiteral("light"));
    window.applyTheme(QStringLiteral("neon"));
    EXPECT_EQ(window.theme(), QStringLiteral("light"));
}

TEST_F(DeskWindowTest, ScreenshotIsAPictureOfTheWindow)
{
    desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
    window.restore();
    window.resize(800, 500);
    window.show();
    const QString file = QDir(dir.path()).filePath(QStringLiteral("desk.png"));
    QString error;
    ASSERT_TRUE(window.saveScreenshot(file, &error)) << error.toStdString();
    QImage image(file);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), window.size());
    // The dark theme's window background, not a blank white surface.
    const QColor corner(image.pixel(image.width() / 2, image.height() / 2));
    EXPECT_LT(corner.lightness(), 128);
    EXPECT_FALSE(window.saveScreenshot(QStringLiteral("/proc/optdesk-no-such/desk.png"), &error));
}

namespace {
// Logins of the paper accounts: one ready, the others not.
class OneReadyLogin : public nqservice::TradeLogicInterface {
public:
    explicit OneReadyLogin(std::string ready) : m_ready(std::move(ready)) {}
    nqservice::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& key) override
    {
        return key == m_ready ? nqservice::BLS_READY : nqservice::BLS_NONE;
    }

private:
    std::string m_ready;
};
}  // namespace

TEST_F(DeskWindowTest, ReadyAccountsAreHandedToEveryPanel)
{
    auto* store = new TC::CUserSettingsStore(dir.path());
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<TC::CAccount>>*>(store->getUserDataAddress(TC::UM_ACCOUNT_LIST));
    ASSERT_NE(accounts, nullptr);
    ASSERT_GE(accounts->size(), 2);
    const std::string ready = accounts->at(1)->key().toStdString();
    utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(new OneReadyLogin(ready));
    {
        desk::CDeskWindow window(recordingFactory(), dir.path(), 50);
        window.restore();
        EXPECT_EQ(recording(window, "alpha")->requested, std::vector<std::string>{ready});
        EXPECT_EQ(recording(window, "beta")->requested, std::vector<std::string>{ready});
    }
    utils::CSingletonT<TC::SingletonManager>::destroy();
    utils::CSingletonT<TC::CUserManager>::destroy();
}

TEST_F(DeskWindowTest, TheSimulationMenuClosesTheDayThroughTheHost)
{
    desk::CDeskWindow window(recordingFactory(), dir.path(), 20);
    window.restore();
    auto* menu = window.findChild<QMenu*>(QStringLiteral("menuSimulation"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->title(), QStringLiteral("模拟"));
    auto* jump = window.findChild<QAction*>(QStringLiteral("actionNextTradingDay"));
    ASSERT_NE(jump, nullptr);
    EXPECT_EQ(jump->text(), QStringLiteral("收盘并进入下一交易日"));
    EXPECT_FALSE(jump->isEnabled()) << "nothing to jump without a market";
    int jumps = 0;
    window.setNextTradingDay([&jumps] { ++jumps; });
    EXPECT_TRUE(jump->isEnabled());
    jump->trigger();
    EXPECT_EQ(jumps, 1);
}
