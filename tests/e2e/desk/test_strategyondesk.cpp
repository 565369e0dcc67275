// The strategy workbench on the running desk: the demo user's example basket,
// a two-leg basket built from the code entry, ticked, sent by the quick order
// and filled by the paper broker; baskets that come back after a restart.
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "app/cpanelfactory.h"
#include "seam/common.h"
#include "e2e/desk/deskfixture.h"
#include "e2e/desk/paperdesk.h"
#include "order/cstkoptionorderdialog.h"
#include "order/cstkoptionorderwidget.h"
#include "seam/cquoteclient.h"
#include "seam/uievents.h"
#include "strategy/coptionstrategypanel.h"
#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategymanagetable.h"
#include "strategy/cstrategymanagetree.h"
#include "support/testsupport.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cparametercell.h"
#include "toolkit/cquotesaddinstrumentwidget.h"
#include "toolkit/csmallnonormalbutton.h"
#include "toolkit/tableenums.h"

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QTest>

#include <algorithm>
#include <vector>

namespace {

using namespace paperdesk;

class StrategyOnDesk : public deskfixture::DeskTest {
protected:
    void open()
    {
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window->restore(QStringLiteral("dark"));
        window->resize(1600, 900);
        window->show();
        panel = qobject_cast<TC::COptionStrategyPanel*>(window->panel(QStringLiteral("ops")));
        ASSERT_NE(panel, nullptr);
    }
    // The calls of 50ETF's nearest month by strike.
    static std::vector<std::shared_ptr<nqservice::CInstrumentDetail>> nearestCalls()
    {
        TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
        QMap<QString, QMap<QString, QStringList>> chains;
        exchange->getStockOptionMap(chains);
        std::vector<std::shared_ptr<nqservice::CInstrumentDetail>> calls;
        for (const QString& key : chains.value(QStringLiteral("510050.SH")).first()) {
            const auto detail = exchange->getCodeInfo(key);
            if (detail && detail->call && !detail->adjusted) {
                calls.push_back(detail);
            }
        }
        std::sort(calls.begin(), calls.end(), [](const auto& a, const auto& b) { return a->exercisePrice < b->exercisePrice; });
        return calls;
    }
    // Commits a quantity into a row as the cell editor does.
    void setQuantity(int row, int quantity)
    {
        TC::CStrategyManageTable* table = panel->getTable();
        WG::CTableEditRecord record;
        record.row = row;
        record.column = TC::CStrategyManageTable::COL_QUANTITY;
        record.text = QString::number(quantity);
        table->handleEvent(WG::UE_CELL_EDITING, 0, row, QStringLiteral("7"), &record);
        table->setItemText(row, TC::CStrategyManageTable::COL_QUANTITY, record.text);
        table->handleEvent(WG::UE_CELL_EDIT_COMMITTED, 0, row, QStringLiteral("7"), &record);
    }
    static long long heldOf(const std::string& code) { return volumeOf("SO001", code); }

    TC::COptionStrategyPanel* panel = nullptr;
};

}  // namespace

TEST_F(StrategyOnDesk, TheWorkbenchDocksBesideTheBoardWithTheExampleBasket)
{
    open();
    QDockWidget* ops = window->dock(QStringLiteral("ops"));
    QDockWidget* board = window->dock(QStringLiteral("pricet"));
    ASSERT_NE(ops, nullptr);
    ASSERT_NE(board, nullptr);
    EXPECT_EQ(window->dockWidgetArea(ops), Qt::RightDockWidgetArea);
    EXPECT_TRUE(ops->isVisible());
    EXPECT_TRUE(window->tabifiedDockWidgets(ops).isEmpty()) << "a dock of its own, not a tab";
    EXPECT_TRUE(testsupport::waitUntil([&] { return ops->geometry().left() > board->geometry().left(); }, 2000))
        << "beside the board, to its right: " << ops->geometry().left() << " " << board->geometry().left();

    const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    ASSERT_EQ(baskets.size(), 1);
    const TC::CStrategySetting example = baskets.first();
    EXPECT_EQ(example.name, QStringLiteral("50ETF牛市价差"));
    ASSERT_EQ(example.legs.size(), 2);
    EXPECT_EQ(example.legs.at(0)->operation, nqservice::OT_BUY);
    EXPECT_EQ(example.legs.at(1)->operation, nqservice::OT_SELL);
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    const auto low = exchange->getCodeInfo(TC::CStrategyBaskets::legKey(*example.legs.at(0)));
    const auto high = exchange->getCodeInfo(TC::CStrategyBaskets::legKey(*example.legs.at(1)));
    ASSERT_TRUE(low && high);
    EXPECT_TRUE(low->call && high->call);
    EXPECT_EQ(low->expireDate, high->expireDate);
    EXPECT_LT(low->exercisePrice, high->exercisePrice) << "bought the lower strike, sold the higher";
    // The panel shows it with live prices.
    EXPECT_EQ(panel->getTable()->currentBasket(), example.name);
    EXPECT_EQ(panel->getTable()->rowCount(), 2);
    EXPECT_TRUE(testsupport::waitUntil([&] { return !panel->getTable()->itemText(0, 8).isEmpty(); }, 5000));
}

TEST_F(StrategyOnDesk, ATwoLegBasketFromTheCodeEntryFillsThroughTheQuickOrder)
{
    open();
    panel->getTree()->slotNewStrategy(true);
    ASSERT_EQ(panel->getTable()->currentBasket(), QStringLiteral("我的组合"));
    const auto calls = nearestCalls();
    const auto atm = atTheMoneyCall();
    ASSERT_TRUE(atm);
    auto at = std::find_if(calls.begin(), calls.end(), [&](const auto& c) { return c->code == atm->code; });
    ASSERT_TRUE(at != calls.end() && at + 1 != calls.end());
    const auto other = *(at + 1);
    panel->getCodeEntry()->lineEdit()->setText(QString::fromStdString(atm->code));
    QTest::keyClick(panel->getCodeEntry()->lineEdit(), Qt::Key_Return);
    panel->getCodeEntry()->lineEdit()->setText(QString::fromStdString(other->code));
    QTest::keyClick(panel->getCodeEntry()->lineEdit(), Qt::Key_Return);
    ASSERT_EQ(panel->getTable()->rowCount(), 2);
    setQuantity(0, 1);
    setQuantity(1, 1);
    QTest::mouseClick(panel->getToolButton(TC::COptionStrategyPanel::ID_CHECK_ALL), Qt::LeftButton);
    const TC::CStrategySetting basket = TC::CStrategyBaskets::copy().value(QStringLiteral("我的组合"));
    ASSERT_EQ(basket.legs.size(), 2);
    EXPECT_TRUE(basket.legs.at(0)->checked && basket.legs.at(1)->checked);
    EXPECT_EQ(basket.legs.at(1)->quantity, 1);

    WG::CMessageBox::TestHook hook;
    QTest::mouseClick(panel->getToolButton(TC::COptionStrategyPanel::ID_QUICK_ORDER), Qt::LeftButton);
    auto* dialog = qobject_cast<TC::CStkOptionOrderDialog*>(panel->getLastOrderDialog());
    ASSERT_NE(dialog, nullptr);
    ASSERT_EQ(dialog->getLegCount(), 2);
    TC::CQuoteClient* quotes = utils::CManualSingletonT<TC::CQuoteClient>::instance();
    for (int legIndex = 0; legIndex < 2; ++legIndex) {
        TC::CStkOptionOrderWidget* widget = dialog->getOrderWidget(legIndex);
        ASSERT_NE(widget, nullptr);
        const auto detail = legIndex == 0 ? atm : other;
        const auto quote = quotes->getStockPrice(QString::fromStdString(detail->key()));
        ASSERT_TRUE(quote);
        // No account stands pre-selected: the trader picks one.
        WG::CComboBox* accounts = widget->getAccountCombo();
        ASSERT_GE(accounts->findData(QStringLiteral("SO001")), 0);
        accounts->setCurrentIndex(accounts->findData(QStringLiteral("SO001")));
        WG::CComboBox* types = widget->getPriceTypeCombo();
        ASSERT_GE(types->findData(11), 0);
        types->setCurrentIndex(types->findData(11));
        // A limit at the day's highest price: marketable, it fills at the asks.
        widget->getPriceEdit()->setText(QString::number(quote->upStopPrice, 'f', 4));
        widget->getVolumeCell()->setInt(1);
        widget->handleEvent(WG::UE_SPIN_CHANGED, TC::CStkOptionOrderWidget::ID_VOLUME_CELL, 0, QString(), nullptr);
    }
    hook.queueAnswer(QMessageBox::Ok);
    dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::CStkOptionOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    EXPECT_TRUE(testsupport::waitUntil([&] { return heldOf(atm->code) == 1 && heldOf(other->code) == 1; }, 15000))
        << "held " << heldOf(atm->code) << " and " << heldOf(other->code) << "; boxes: " << hook.count() << " "
        << hook.last().text.toStdString() << "; tip: " << WG::CMessageTip::lastTip().text.toStdString()
        << "; dialog open: " << (panel->getLastOrderDialog() != nullptr);
}

TEST_F(StrategyOnDesk, BasketsComeBackAfterARestartOfTheDesk)
{
    open();
    panel->getTree()->slotNewStrategy(true);
    const auto atm = atTheMoneyCall();
    ASSERT_TRUE(atm);
    panel->getCodeEntry()->addInstrument(QString::fromStdString(atm->code));
    setQuantity(0, 3);
    panel->getTable()->setColumnVisible(TC::CStrategyManageTable::COL_VOLUME, false);
    ASSERT_TRUE(window->saveLayout());
    window.reset();
    services.reset();

    services = std::make_unique<desk::CDeskServices>(deskfixture::config(dir.path()));
    open();
    const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    EXPECT_EQ(baskets.keys(), (QStringList{QStringLiteral("50ETF牛市价差"), QStringLiteral("我的组合")}));
    const TC::CStrategySetting mine = baskets.value(QStringLiteral("我的组合"));
    ASSERT_EQ(mine.legs.size(), 1);
    EXPECT_EQ(mine.legs.at(0)->quantity, 3);
    EXPECT_FALSE(panel->getTable()->columnVisible(TC::CStrategyManageTable::COL_VOLUME)) << "the table's layout comes back";
    panel->getTree()->select(QStringLiteral("我的组合"));
    EXPECT_EQ(panel->getTable()->currentBasket(), QStringLiteral("我的组合"));
    EXPECT_EQ(panel->getTable()->itemInt(0, 7), 3);
}
