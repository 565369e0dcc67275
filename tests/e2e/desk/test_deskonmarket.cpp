// The desk with its real panels on the simulated market, as a trader starts it.
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "board/coptionpricetpanel.h"
#include "board/coptionpricettable.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "board/coptionpricetgreekstable.h"
#include "order/coptionorderdialog.h"
#include "order/cpricetquickordertable.h"
#include "order/cpricetquickorderwidget.h"
#include "seam/uievents.h"
#include "toolkit/caccountscombobox.h"
#include "toolkit/ccheckbox.h"
#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "support/testsupport.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cuiresource.h"
#include "toolkit/itradedockablewidget.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QAction>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>

namespace {

QComboBox* selectorOf(desk::CDeskWindow& window)
{
    TC::ITradeDockableWidget* board = window.panel(QStringLiteral("pricet"));
    if (board == nullptr) {
        return nullptr;
    }
    for (QComboBox* combo : board->findChildren<QComboBox*>()) {
        if (combo->inherits("TC::COptionUndlCodeComboBox")) {
            return combo;
        }
    }
    return nullptr;
}

class DeskOnMarket : public deskfixture::DeskTest {};

}  // namespace

TEST_F(DeskOnMarket, TheBoardStartsOn50ETFAndKeepsTheTradersChoice)
{
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.restore();
        window.show();
        ASSERT_NE(window.panel(QStringLiteral("pricet")), nullptr) << "the chain board is docked by default";
        QComboBox* selector = selectorOf(window);
        ASSERT_NE(selector, nullptr);
        EXPECT_EQ(selector->currentData(Qt::UserRole).toString(), QStringLiteral("510050.SH"));
        const int other = selector->findData(QStringLiteral("510300.SH"), Qt::UserRole);
        ASSERT_GE(other, 0);
        selector->setCurrentIndex(other);
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CDeskWindow again(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    again.restore();
    QComboBox* selector = selectorOf(again);
    ASSERT_NE(selector, nullptr);
    EXPECT_EQ(selector->currentData(Qt::UserRole).toString(), QStringLiteral("510300.SH"));
}

// The chain's Greeks pane starts at 400 px; where the trader drags its divider
// is where it stays after a restart.
TEST_F(DeskOnMarket, TheBoardsDividerStaysWhereTheTraderLeftIt)
{
    const auto greeksHeight = [](desk::CDeskWindow& window) {
        auto* board = dynamic_cast<TC::COptionPriceTPanel*>(window.panel(QStringLiteral("pricet")));
        auto* greeks = board != nullptr ? board->findChild<TC::COptionPriceTGreeksTable*>() : nullptr;
        auto* splitter = board != nullptr ? board->findChild<QSplitter*>() : nullptr;
        if (greeks == nullptr || splitter == nullptr || splitter->indexOf(greeks) < 0) {
            return -1;
        }
        return splitter->sizes().at(splitter->indexOf(greeks));
    };
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.restore();
        window.resize(1440, 900);
        window.show();
        ASSERT_TRUE(testsupport::waitUntil([&] { return greeksHeight(window) == 400; }, 2000))
            << greeksHeight(window);
        auto* splitter = window.panel(QStringLiteral("pricet"))->findChild<QSplitter*>();
        const QList<int> sizes = splitter->sizes();
        const int greeks = splitter->indexOf(window.panel(QStringLiteral("pricet"))->findChild<TC::COptionPriceTGreeksTable*>());
        QList<int> dragged = sizes;
        dragged[greeks] = 150;
        dragged[1 - greeks] = sizes.at(0) + sizes.at(1) - 150;
        splitter->setSizes(dragged);
        ASSERT_EQ(greeksHeight(window), 150);
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CDeskWindow again(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    again.restore();
    again.show();
    EXPECT_TRUE(testsupport::waitUntil([&] { return greeksHeight(again) == 150; }, 2000)) << greeksHeight(again);
}

TEST_F(DeskOnMarket, ScreenshotShowsALivingBoardInBothThemes)
{
    desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    window.setMarketStatus([this] { return services->statusText(); });
    window.restore(QStringLiteral("dark"));
    window.resize(1440, 900);
    window.show();
    // Quotes arrive on the feed's threads and reach the screen on the ticks.
    testsupport::waitUntil([] { return false; }, 1500);
    for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
        window.applyTheme(theme);
        testsupport::waitUntil([] { return false; }, 300);
        const QString file = QDir(dir.path()).filePath(QStringLiteral("desk-%1.png").arg(theme));
        ASSERT_TRUE(window.saveScreenshot(file));
        QImage image(file);
        ASSERT_FALSE(image.isNull());
        // The board fills the window: its background is the theme's, not the bare window.
        const QColor background = *WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background"));
        int rise = 0;
        int fall = 0;
        const QColor riseColor = *WG::CUiResource::get()->getColor(QStringLiteral("tc_clr_priceT_rise"));
        const QColor fallColor = *WG::CUiResource::get()->getColor(QStringLiteral("tc_clr_priceT_fall"));
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2) {
                const QColor pixel(image.pixel(x, y));
                rise += pixel == riseColor ? 1 : 0;
                fall += pixel == fallColor ? 1 : 0;
            }
        }
        EXPECT_GT(rise + fall, 50) << theme.toStdString() << ": no rise or fall colour on the board";
        EXPECT_TRUE(background.isValid());
        if (const char* keep = std::getenv("OPTDESK_KEEP_SCREENSHOTS")) {
            image.save(QDir(QString::fromLocal8Bit(keep)).filePath(QStringLiteral("desk-%1.png").arg(theme)));
        }
    }
}

namespace {

TC::COptionPriceTPanel* boardOf(desk::CDeskWindow& window, const QString& name)
{
    return qobject_cast<TC::COptionPriceTPanel*>(window.panel(name));
}

}  // namespace

TEST_F(DeskOnMarket, TheCommodityOptionsHaveABoardOfTheirOwnKeptWithItsOwnLayout)
{
    QString futureLayout;
    QString stockLayout;
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.restore();
        window.show();
        TC::COptionPriceTPanel* stock = boardOf(window, QStringLiteral("pricet"));
        TC::COptionPriceTPanel* future = boardOf(window, QStringLiteral("pricet_future"));
        ASSERT_NE(stock, nullptr);
        ASSERT_NE(future, nullptr) << "the commodity board is docked by default";
        EXPECT_EQ(future->getTraderType(), nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
        EXPECT_EQ(stock->getTraderType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        EXPECT_TRUE(window.showPanel(QStringLiteral("pricet_future")));
        // The commodity board lists the soybean meal options of the market.
        ASSERT_GT(future->getUndlCombo()->count(), 0);
        EXPECT_TRUE(future->getUndlCombo()->currentText().endsWith(QStringLiteral(".DCE")))
            << future->getUndlCombo()->currentText().toStdString();
        ASSERT_TRUE(testsupport::waitUntil([&] { return future->getChainTable()->rowCount() > 0; }, 5000));
        EXPECT_NE(future->getChainTable()->columnCount(), stock->getChainTable()->columnCount());
        future->getChainTable()->setColumnWidth(3, 91);
        stock->getChainTable()->setColumnWidth(5, 93);
        futureLayout = future->getChainTable()->saveConfigStr();
        stockLayout = stock->getChainTable()->saveConfigStr();
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CDeskWindow again(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    again.restore();
    TC::COptionPriceTPanel* stock = boardOf(again, QStringLiteral("pricet"));
    TC::COptionPriceTPanel* future = boardOf(again, QStringLiteral("pricet_future"));
    ASSERT_NE(future, nullptr);
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(future->getTraderType(), nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(future->getChainTable()->saveConfigStr(), futureLayout);
    EXPECT_EQ(stock->getChainTable()->saveConfigStr(), stockLayout);
    EXPECT_EQ(future->getChainTable()->columnWidth(3), 91);
    EXPECT_EQ(stock->getChainTable()->columnWidth(5), 93);
}

TEST_F(DeskOnMarket, TheBoardStartsOnTheGroupAndTheLadderFollowsAClickedContract)
{
    desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    window.restore(QStringLiteral("dark"));
    window.resize(1440, 900);
    window.show();
    TC::COptionPriceTPanel* board = boardOf(window, QStringLiteral("pricet"));
    ASSERT_NE(board, nullptr);
    const auto selection = board->getAccountCombo()->getSelection();
    EXPECT_EQ(selection.first, TC::SAT_GROUP);
    EXPECT_EQ(selection.second, QStringLiteral("默认组"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return board->getChainTable()->rowCount() > 0; }, 5000));
    ASSERT_NE(board->getGreeksTable(), nullptr);
    EXPECT_GT(board->getGreeksTable()->rowCount(), 1) << "a row per expiry and 合计";

    board->getQuickOrderCheck()->setChecked(true);
    TC::CPriceTQuickOrderWidget* ladder = board->getQuickOrderWidget();
    ASSERT_NE(ladder, nullptr);
    EXPECT_TRUE(ladder->isVisible());
    EXPECT_TRUE(board->getAccountCombo()->isVisible());
    const int row = 0;
    const QString code = board->getChainTable()->getSelectStockCode(row, 15);
    board->handleEvent(WG::UE_CELL_PRIMARY, 1000, row, QStringLiteral("15"), nullptr);
    EXPECT_EQ(ladder->currentCode(), code);
    ASSERT_TRUE(testsupport::waitUntil([&] { return !ladder->getPriceTable()->priceToRow.isEmpty(); }, 3000))
        << "the ladder stands on the contract's market";
    if (const char* keep = std::getenv("OPTDESK_KEEP_SCREENSHOTS")) {
        testsupport::waitUntil([] { return false; }, 600);
        window.grab().save(QDir(QString::fromLocal8Bit(keep)).filePath(QStringLiteral("desk-ladder.png")));
        window.applyTheme(QStringLiteral("light"));
        testsupport::waitUntil([] { return false; }, 300);
        window.grab().save(QDir(QString::fromLocal8Bit(keep)).filePath(QStringLiteral("desk-ladder-light.png")));
        window.applyTheme(QStringLiteral("dark"));
        board->getChainTable()->handleEvent(WG::UE_BUTTON_CLICKED, 2 * 100 + 4, 0, QString(), nullptr);
        testsupport::waitUntil([] { return false; }, 300);
        if (QWidget* dialog = board->getChainTable()->getOrderDialog()) {
            dialog->move(window.mapToGlobal(QPoint(420, 260)));
            testsupport::waitUntil([] { return false; }, 300);
            QPixmap picture = window.grab();
            QPainter painter(&picture);
            painter.drawPixmap(420, 260, dialog->grab());
            painter.end();
            picture.save(QDir(QString::fromLocal8Bit(keep)).filePath(QStringLiteral("desk-dialog.png")));
        }
    }
}

TEST(DeskAcrossAClose, TheBoardKeepsItsUnderlyingAndTheExpiredMonthGoes)
{
    utils::CSingletonT<WG::CUiResource>::destroy();
    QTemporaryDir dir;
    desk::DeskServicesConfig config = deskfixture::config(dir.path());
    config.clockSpeed = 0.0;  // the test moves the clock
    // The November month's last trading day.
    config.marketStart = QDateTime(QDate(2026, 11, 25), QTime(14, 50));
    auto services = std::make_unique<desk::CDeskServices>(config);
    std::vector<std::string> newDates;
    QObject::connect(services->exchange(), &TC::CExchangeClient::sigNewTradingDate,
                     [&newDates](const std::string& date) { newDates.push_back(date); });
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.setHostTick([&services] { services->checkTradingDate(); });
        window.restore();
        window.show();
        auto* board = qobject_cast<TC::COptionPriceTPanel*>(window.panel(QStringLiteral("pricet")));
        ASSERT_NE(board, nullptr);
        QComboBox* selector = selectorOf(window);
        ASSERT_NE(selector, nullptr);
        selector->setCurrentIndex(selector->findData(QStringLiteral("510300.SH"), Qt::UserRole));
        ASSERT_EQ(selector->currentData(Qt::UserRole).toString(), QStringLiteral("510300.SH"));
        EXPECT_TRUE(board->getTabDates().values().contains(QStringLiteral("20261125")));
        // December's tab, to read its days to expiry before and after.
        const int december = board->getTabDates().key(QStringLiteral("20261223"), -1);
        ASSERT_GE(december, 0);
        board->handleEvent(WG::UE_BUTTON_CLICKED, december, 0, QString(), nullptr);
        const QString daysBefore = board->figureWidget(8)->getText();
        EXPECT_EQ(daysBefore, QStringLiteral("28"));

        // The clock runs past the close; the desk's tick ends the day.
        services->clock()->setDateTime(QDateTime(QDate(2026, 11, 25), QTime(15, 10)));
        QTest::qWait(200);
        ASSERT_EQ(newDates.size(), 1U);
        EXPECT_EQ(newDates.front(), "20261126");
        EXPECT_EQ(selector->currentData(Qt::UserRole).toString(), QStringLiteral("510300.SH"))
            << "the board stays on the trader's underlying";
        EXPECT_FALSE(board->getTabDates().values().contains(QStringLiteral("20261125"))) << "the expired month's tab has gone";
        EXPECT_TRUE(board->getTabDates().values().contains(QStringLiteral("20270127"))) << "the new month has a tab";
        const int decemberAfter = board->getTabDates().key(QStringLiteral("20261223"), -1);
        ASSERT_GE(decemberAfter, 0);
        board->handleEvent(WG::UE_BUTTON_CLICKED, decemberAfter, 0, QString(), nullptr);
        EXPECT_EQ(board->figureWidget(8)->getText(), QStringLiteral("27")) << "one day nearer to expiry";
        QTest::qWait(200);
        EXPECT_EQ(newDates.size(), 1U) << "one new trading day for one close";
    }
    services.reset();
    utils::CSingletonT<WG::CUiResource>::destroy();
}

TEST(DeskAcrossAClose, TheMenuClosesTheDayAndOpensTheNextOne)
{
    utils::CSingletonT<WG::CUiResource>::destroy();
    QTemporaryDir dir;
    desk::DeskServicesConfig config = deskfixture::config(dir.path());
    config.clockSpeed = 0.0;
    config.marketStart = QDateTime(QDate(2026, 11, 25), QTime(10, 30));
    auto services = std::make_unique<desk::CDeskServices>(config);
    // Pictures of the board before and after, for a look by eye when asked for.
    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.setHostTick([&services] { services->checkTradingDate(); });
        window.setNextTradingDay([&services] { services->closeAndAdvance(); });
        window.setMarketStatus([&services] { return services->statusText(); });
        window.restore();
        window.show();
        auto* board = qobject_cast<TC::COptionPriceTPanel*>(window.panel(QStringLiteral("pricet")));
        ASSERT_NE(board, nullptr);
        QComboBox* selector = selectorOf(window);
        ASSERT_NE(selector, nullptr);
        selector->setCurrentIndex(selector->findData(QStringLiteral("159919.SZ"), Qt::UserRole));
        QTest::qWait(300);
        if (!shots.isEmpty()) {
            window.saveScreenshot(QDir(shots).filePath(QStringLiteral("before-jump.png")));
        }
        EXPECT_EQ(board->getTabDates().value(24), QStringLiteral("20261125"));

        auto* jump = window.findChild<QAction*>(QStringLiteral("actionNextTradingDay"));
        ASSERT_NE(jump, nullptr);
        ASSERT_TRUE(jump->isEnabled());
        jump->trigger();
        EXPECT_EQ(services->tradingDate(), QDate(2026, 11, 26));
        EXPECT_EQ(services->clock()->currentDateTime().time(), desk::CDeskServices::openTime());
        EXPECT_EQ(selector->currentData(Qt::UserRole).toString(), QStringLiteral("159919.SZ"));
        EXPECT_EQ(board->getTabDates().value(24), QStringLiteral("20261223")) << "December is the front month now";
        EXPECT_EQ(board->getCurrentDate(), QStringLiteral("20261223"));
        QTest::qWait(300);
        if (!shots.isEmpty()) {
            window.saveScreenshot(QDir(shots).filePath(QStringLiteral("after-jump.png")));
        }
        // The status bar tells the new day.
        auto* status = window.findChild<QLabel*>(QStringLiteral("marketStatus"));
        ASSERT_NE(status, nullptr);
        EXPECT_TRUE(status->text().contains(QStringLiteral("2026-11-26 09:30"))) << status->text().toStdString();
    }
    services.reset();
    utils::CSingletonT<WG::CUiResource>::destroy();
}
