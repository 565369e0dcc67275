// Orders from the board on the running desk, down to the paper broker: a
// press of "开", the dialog at the mouse, a confirm, a fill in the account's
// tables; the question above the limit per order; the ladder's one-click
// orders spread over the group; "全撤" and the overlay of net positions.
#include "app/caccountrecordmodel.h"
#include "app/caccountsdock.h"
#include "app/cdealstablemodel.h"
#include "app/corderstablemodel.h"
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "board/coptionpricetpanel.h"
#include "board/coptionpricetgreekstable.h"
#include "board/coptionpricettable.h"
#include "order/coptionorderdialog.h"
#include "order/cpricetquickordertable.h"
#include "order/cpricetquickorderwidget.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cparametercell.h"
#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/cquoteclient.h"
#include "seam/trading.h"
#include "seam/uievents.h"
#include "services/trading/cpaperbroker.h"
#include "services/user/cusersettingsstore.h"
#include "e2e/desk/paperdesk.h"
#include "support/testsupport.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cuiresource.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QPainter>
#include <QTabWidget>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {

using namespace paperdesk;

std::vector<boost::shared_ptr<nqservice::COrderDetail>> ordersOf(const std::string& account)
{
    return rows<nqservice::COrderDetail>(account, nqservice::VQ_DATA_TYPE_ORDER);
}


class PaperOrders : public deskfixture::DeskTest {
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window->restore(QStringLiteral("dark"));
        window->resize(1440, 900);
        window->show();
        board = qobject_cast<TC::COptionPriceTPanel*>(window->panel(QStringLiteral("pricet")));
        ASSERT_NE(board, nullptr);
        table = board->getChainTable();
        ASSERT_TRUE(testsupport::waitUntil([&] { return table->rowCount() > 0; }, 5000));
        call = atTheMoneyCall();
        ASSERT_TRUE(call);
        row = table->rowOfCode(QString::fromStdString(call->key()));
        ASSERT_GE(row, 0);
    }

    // Presses the row's "开" of buying the call, sets a limit at the limit-up
    // (marketable: it fills at the book's asks) and confirms.
    void buyCall(int volume) { orderCall(4, volume, true); }
    // The same with the button of an operation (2 sells to open) and the limit of its side.
    void orderCall(int operationIndex, int volume, bool buy)
    {
        table->handleEvent(WG::UE_BUTTON_CLICKED, row * 100 + operationIndex, 0, QString(), nullptr);
        TC::COptionOrderDialog* dialog = table->getOrderDialog();
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(dialog->isVisible());
        const auto quote = utils::CManualSingletonT<TC::CQuoteClient>::instance()->getStockPrice(
            QString::fromStdString(call->key()));
        ASSERT_TRUE(quote);
        WG::CComboBox* types = dialog->getPriceTypeCombo();
        ASSERT_GE(types->findData(11), 0) << "the price types are there at the first press";
        types->setCurrentIndex(types->findData(11));
        dialog->getPriceEdit()->setText(QString::number(buy ? quote->upStopPrice : quote->downStopPrice, 'f', 4));
        dialog->getVolumeCell()->setInt(volume);
        dialog->handleEvent(WG::UE_SPIN_CHANGED, TC::COptionOrderDialog::ID_VOLUME_CELL, 0, QString(), nullptr);
        dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::COptionOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    }
    std::size_t allOrders() { return ordersOf("SO001").size() + ordersOf("SO002").size(); }

    TC::COptionPriceTPanel* board = nullptr;
    TC::COptionPriceTTable* table = nullptr;
    std::shared_ptr<nqservice::CInstrumentDetail> call;
    int row = -1;
};

}  // namespace

TEST_F(PaperOrders, TheFirstPressOrdersAndTheOrderFillsOnPaper)
{
    buyCall(2);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return volumeOf("SO001", call->code) + volumeOf("SO002", call->code) == 2; }, 10000))
        << "the order reached the broker and filled";
    EXPECT_EQ(allOrders(), 1u);
    // The accounts dock shows the order, its deal and the position.
    desk::CAccountsDock* dock = window->accounts();
    ASSERT_NE(dock, nullptr);
    std::string orderKey;
    for (const std::string account : {"SO001", "SO002"}) {
        if (!ordersOf(account).empty()) {
            orderKey = ordersOf(account).front()->getKey();
        }
    }
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock->ordersModel()->rowOfKey(orderKey) >= 0; }, 5000));
    const auto shown = boost::dynamic_pointer_cast<nqservice::COrderDetail>(
        dock->ordersModel()->record(dock->ordersModel()->rowOfKey(orderKey)));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->status, nqservice::OS_FILLED);
    EXPECT_GE(dock->dealsModel()->rowCount(), 1);
    // The board stands on the group: its 仓差 column nets both accounts, live.
    EXPECT_TRUE(testsupport::waitUntil([&] { return table->itemText(row, 14) == QStringLiteral("2"); }, 5000))
        << table->itemText(row, 14).toStdString();
}

TEST_F(PaperOrders, BuyThreeSellOneNetsTwoOnTheBoardAndInTheGreeksPane)
{
    buyCall(3);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return volumeOf("SO001", call->code) + volumeOf("SO002", call->code) == 3; }, 10000));
    orderCall(2, 1, false);  // sell to open one
    ASSERT_TRUE(testsupport::waitUntil([&] { return table->itemText(row, 14) == QStringLiteral("2"); }, 10000))
        << "long 3 and short 1 net 2: " << table->itemText(row, 14).toStdString();
    // With a delta of 0.5 imported for the contract, the pane's imported delta of its expiry is 2 x 0.5.
    auto* store = dynamic_cast<TC::CUserSettingsStore*>(TC::getUserConfig());
    ASSERT_NE(store, nullptr);
    TC::OptionExGreeksMap imported;
    auto ex = boost::make_shared<nqservice::COptionExGreeksVolatility>();
    ex->code = call->key();
    ex->exDelta = 0.5;
    imported.insert(QString::fromStdString(call->key()), ex);
    store->replaceOptionExGreeks(imported);
    TC::COptionPriceTGreeksTable* greeks = board->getGreeksTable();
    greeks->refreshAll();
    EXPECT_EQ(greeks->itemText(0, 2), QStringLiteral("1.0000"));
    EXPECT_EQ(greeks->itemText(greeks->getTotalRow(), 2), QStringLiteral("1.0000"));
    // The calculated delta of a call held net long is positive and below the net.
    const double calculated = greeks->itemText(0, 1).toDouble();
    EXPECT_GT(calculated, 0.0);
    EXPECT_LT(calculated, 2.0);
    // Where the desk is worth a look: the board with its positions, the Greeks
    // pane, the accounts dock and the order dialog, in both themes.
    const QString keep = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!keep.isEmpty()) {
        for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
            window->applyTheme(theme);
            window->accounts()->tabs()->setCurrentIndex(2);
            testsupport::waitUntil([] { return false; }, 600);
            window->saveScreenshot(QDir(keep).filePath(QStringLiteral("positions-%1.png").arg(theme)));
            table->handleEvent(WG::UE_BUTTON_CLICKED, row * 100 + 4, 0, QString(), nullptr);
            if (QWidget* dialog = table->getOrderDialog()) {
                testsupport::waitUntil([] { return false; }, 300);
                QPixmap picture = window->grab();
                QPainter painter(&picture);
                painter.drawPixmap(420, 200, dialog->grab());
                painter.end();
                picture.save(QDir(keep).filePath(QStringLiteral("dialog-%1.png").arg(theme)));
                dialog->close();
            }
        }
    }
}

TEST_F(PaperOrders, TheLadderOrdersOverTheGroupByWeightAndCancelsByPrice)
{
    board->getQuickOrderCheck()->setChecked(true);
    TC::CPriceTQuickOrderWidget* ladder = board->getQuickOrderWidget();
    ASSERT_NE(ladder, nullptr);
    const QString code = QString::fromStdString(call->key());
    board->handleEvent(WG::UE_CELL_PRIMARY, 1000, row, QStringLiteral("15"), nullptr);
    ASSERT_EQ(ladder->currentCode(), code);
    TC::CPriceTQuickOrderTable* ladderTable = ladder->getPriceTable();
    ASSERT_TRUE(testsupport::waitUntil([&] { return ladderTable->bestBidRow >= 0; }, 5000));
    // Five rows under the best bid: a buy there rests.
    const int restRow = std::min(40, ladderTable->bestBidRow + 5);
    const QString price = ladderTable->itemText(restRow, 2);
    ladder->getVolumeCell()->setInt(3);
    int left = 1;
    ladder->handleEvent(WG::UE_CELL_SECONDARY, 0, restRow, QStringLiteral("1"), &left);
    // Weights 1 and 2: one contract for SO001, two for SO002.
    ASSERT_TRUE(testsupport::waitUntil([&] { return allOrders() == 2u; }, 5000));
    ASSERT_EQ(ordersOf("SO001").size(), 1u);
    EXPECT_EQ(ordersOf("SO001").front()->volume, 1);
    EXPECT_EQ(ordersOf("SO002").front()->volume, 2);
    EXPECT_EQ(ordersOf("SO002").front()->status, nqservice::OS_WORKING);
    ASSERT_TRUE(testsupport::waitUntil([&] { return ladder->workingVolume(price, true) == 3; }, 5000))
        << "the group's working volume shows at its price";
    int right = 2;
    ladder->handleEvent(WG::UE_CELL_SECONDARY, 0, restRow, QStringLiteral("0"), &right);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            return ordersOf("SO001").front()->status == nqservice::OS_CANCELLED &&
                   ordersOf("SO002").front()->status == nqservice::OS_CANCELLED;
        },
        5000));
    EXPECT_TRUE(testsupport::waitUntil([&] { return ladder->workingVolume(price, true) == 0; }, 5000));

    // A buy ten rows above the best bid crosses the asks: it fills and the group's long figure moves.
    EXPECT_EQ(ladder->positionText(0), QStringLiteral("0"));
    const int crossRow = std::max(0, ladderTable->bestBidRow - 10);
    ladder->handleEvent(WG::UE_CELL_SECONDARY, 0, crossRow, QStringLiteral("1"), &left);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return volumeOf("SO001", call->code) + volumeOf("SO002", call->code) == 3; }, 10000))
        << "the crossing click filled";
    EXPECT_TRUE(testsupport::waitUntil([&] { return ladder->positionText(0) == QStringLiteral("3"); }, 5000))
        << ladder->positionText(0).toStdString();
}

TEST_F(PaperOrders, OverTheLimitNoSendsNothingAndYesIsFilledInSlices)
{
    WG::CMessageBox::TestHook boxes;
    boxes.queueAnswer(QMessageBox::No);
    buyCall(51);
    ASSERT_EQ(boxes.count(), 1);
    EXPECT_EQ(boxes.last().text, QStringLiteral("单笔下单量超过合规最大下单量50,是否自动拆单?"));
    services->broker()->flush();
    EXPECT_EQ(allOrders(), 0u) << "No sends nothing";

    boxes.queueAnswer(QMessageBox::Yes);
    buyCall(120);
    ASSERT_TRUE(testsupport::waitUntil([&] { return allOrders() == 3u; }, 10000));
    std::vector<int> volumes;
    for (const std::string account : {"SO001", "SO002"}) {
        for (const auto& order : ordersOf(account)) {
            volumes.push_back(order->volume);
            EXPECT_EQ(order->commandId, ordersOf(account).front()->commandId);
        }
    }
    std::sort(volumes.begin(), volumes.end());
    EXPECT_EQ(volumes, (std::vector<int>{20, 50, 50})) << "the broker splits the whole volume into slices";
}

TEST_F(PaperOrders, CancelAllStopsTheGroupsRunningTaskOnPaper)
{
    board->getQuickOrderCheck()->setChecked(true);
    TC::CPriceTQuickOrderWidget* ladder = board->getQuickOrderWidget();
    board->handleEvent(WG::UE_CELL_PRIMARY, 1000, row, QStringLiteral("15"), nullptr);
    TC::CPriceTQuickOrderTable* ladderTable = ladder->getPriceTable();
    ASSERT_TRUE(testsupport::waitUntil([&] { return ladderTable->bestBidRow >= 0; }, 5000));
    ladder->getVolumeCell()->setInt(3);
    int left = 1;
    ladder->handleEvent(WG::UE_CELL_SECONDARY, 0, std::min(40, ladderTable->bestBidRow + 5), QStringLiteral("1"),
                        &left);
    ASSERT_TRUE(testsupport::waitUntil([&] { return allOrders() == 2u; }, 5000));
    // The group's orders run as one task of the paper user.
    std::vector<boost::shared_ptr<nqservice::IData>> tasks;
    nqservice::TraderCenter::instance()->getDataCenter()->getAllAccountsTable()->getVector(nqservice::VQ_DATA_TYPE_TASK,
                                                                                           tasks);
    ASSERT_EQ(tasks.size(), 1u);
    EXPECT_EQ(boost::dynamic_pointer_cast<nqservice::CTaskDetail>(tasks.front())->status, nqservice::TS_RUNNING);
    board->handleEvent(WG::UE_BUTTON_CLICKED, 23, 0, QString(), nullptr);  // 全撤
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            return ordersOf("SO001").front()->status == nqservice::OS_CANCELLED &&
                   ordersOf("SO002").front()->status == nqservice::OS_CANCELLED;
        },
        5000));
    EXPECT_EQ(ordersOf("SO002").front()->message, "任务已终止, 已撤单");
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            nqservice::TraderCenter::instance()->getDataCenter()->getAllAccountsTable()->getVector(
                nqservice::VQ_DATA_TYPE_TASK, tasks);
            return boost::dynamic_pointer_cast<nqservice::CTaskDetail>(tasks.front())->status ==
                   nqservice::TS_STOPPED;
        },
        5000));
}
