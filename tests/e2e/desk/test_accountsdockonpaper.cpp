// The accounts dock, the message area and the kill switch of the desk on the
// paper broker: what a trader sends shows in the dock, a working order is
// cancelled by its button, and a paused desk says why it refuses.
#include "app/caccountsdock.h"
#include "app/ccombinationbuilddialog.h"
#include "app/ccombinationstablemodel.h"
#include "app/cdeskmessageservice.h"
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "app/cdealstablemodel.h"
#include "app/cfundstablemodel.h"
#include "app/cmessagesmodel.h"
#include "app/corderstablemodel.h"
#include "app/cpositionstablemodel.h"
#include "app/crecordtable.h"
#include "app/csettlementstablemodel.h"
#include "e2e/desk/paperdesk.h"
#include "seam/common.h"
#include "seam/cpricedata.h"
#include "seam/cquoteclient.h"
#include "seam/trading.h"
#include "services/market/csimexchangeclient.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/cuiresource.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QAbstractButton>
#include <QSpinBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

namespace {

const std::string kAccount = "SO001";

bool send(const std::shared_ptr<nqservice::CInstrumentDetail>& option, nqservice::EPriceType type, double price,
          long long volume)
{
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->account = paperdesk::accountData(kAccount)->getAccountInfo();
    param->operationType = nqservice::OT_BUY_OPEN;
    param->stockInfo.market = option->market;
    param->stockInfo.code = option->code;
    param->priceType = type;
    param->price = price;
    param->volume = volume;
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {param};
    return utils::CManualSingletonT<TC::COvCommandCenter>::instance()->createCommand(
        nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE, params, {{kAccount, 1.0}},
        nqservice::VQ_STOP_LOSS_NONE, false, true, TC::COvCommandCenter::CommandCallback(), bson::BSONObj(), "");
}

class AccountsDockOnPaper : public deskfixture::DeskTest {
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory(), dir.path(), 50);
        window->setTradingHaltHandler([this](bool halted) { services->setTradingHalted(halted); });
        window->restore();
        window->resize(2200, 700);
        window->show();
    }
    desk::CAccountsDock* dock() const { return window->accounts(); }
    desk::CMessagesModel* messages() const
    {
        return dynamic_cast<desk::CDeskMessageService*>(utils::CManualSingletonT<TC::CMsgService>::instance())->model();
    }
    bool messageShown(const QString& text) const
    {
        for (int row = 0; row < messages()->rowCount(); ++row) {
            if (messages()->index(row, desk::CMessagesModel::COL_TEXT).data().toString().contains(text)) {
                return true;
            }
        }
        return false;
    }

    std::unique_ptr<desk::CDeskWindow> window;
};

}  // namespace

TEST_F(AccountsDockOnPaper, ThePaperAccountsShowTheirFundsAndHoldings)
{
    ASSERT_NE(dock(), nullptr);
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock()->fundsModel()->rowCount() == 3; }));
    const int row = dock()->fundsModel()->rowOfKey(kAccount);
    ASSERT_GE(row, 0);
    EXPECT_FALSE(dock()->fundsModel()->index(row, desk::CFundsTableModel::COL_AVAILABLE).data().toString().isEmpty());
    // The ETF shares held for covered calls are long rows of the fund.
    const int etf = dock()->positionsModel()->rowOfKey(kAccount + "|510050.SH|48");
    ASSERT_GE(etf, 0);
    EXPECT_EQ(dock()->positionsModel()->index(etf, desk::CPositionsTableModel::COL_DIRECTION).data().toString(),
              QStringLiteral("权利仓"));
}

TEST_F(AccountsDockOnPaper, AFilledOrderShowsItsDealAndPositionAndAWorkingOneIsCancelledByItsButton)
{
    const auto call = paperdesk::atTheMoneyCall();
    ASSERT_TRUE(call);
    ASSERT_TRUE(send(call, nqservice::PT_OPPONENT, 0.0, 2));
    const std::string positionKey = kAccount + "|" + call->key() + "|48";
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            const int row = dock()->positionsModel()->rowOfKey(positionKey);
            return row >= 0 &&
                   dock()->positionsModel()->index(row, desk::CPositionsTableModel::COL_VOLUME).data().toString() ==
                       QStringLiteral("2");
        },
        10000));
    EXPECT_GE(dock()->dealsModel()->rowCount(), 1);
    EXPECT_EQ(dock()->ordersModel()->index(0, desk::COrdersTableModel::COL_STATUS).data().toString(),
              QStringLiteral("已成"));

    // A buy at the day's lowest allowed price waits in the book.
    const auto quote = utils::CManualSingletonT<TC::CQuoteClient>::instance()->getStockPrice(
        QString::fromStdString(call->key()));
    ASSERT_TRUE(quote);
    ASSERT_TRUE(utils::isUsable(quote->downStopPrice));
    ASSERT_TRUE(send(call, nqservice::PT_FIX, quote->downStopPrice, 1));
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            return dock()->ordersModel()->rowCount() == 2 &&
                   dock()->cancelButtons()->itemVisible(dock()->ordersModel()->keyOf(0));
        },
        10000));
    const std::string working = dock()->ordersModel()->keyOf(0);
    desk::CRecordTable* table = dock()->table(desk::CAccountsDock::TAB_ORDERS);
    dock()->tabs()->setCurrentIndex(desk::CAccountsDock::TAB_ORDERS);
    window->accountsDock()->raise();
    const int row = dock()->ordersModel()->rowOfKey(working);
    table->tableView()->scrollTo(table->tableView()->model()->index(row, desk::COrdersTableModel::COL_CANCEL));
    const QRect cell = table->cellRect(row, desk::COrdersTableModel::COL_CANCEL);
    ASSERT_FALSE(cell.isEmpty());
    QTest::mouseClick(table->tableView()->viewport(), Qt::LeftButton, {}, cell.center());
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            const int at = dock()->ordersModel()->rowOfKey(working);
            return dock()->ordersModel()->index(at, desk::COrdersTableModel::COL_STATUS).data().toString() ==
                   QStringLiteral("已撤");
        },
        10000));
    EXPECT_FALSE(dock()->cancelButtons()->itemVisible(working));

    // Where the desk is worth a look: OPTDESK_SHOT_DIR keeps a picture of each tab.
    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!shots.isEmpty()) {
        for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
            window->applyTheme(theme);
            for (int tab = 0; tab < desk::CAccountsDock::TAB_COUNT; ++tab) {
                dock()->tabs()->setCurrentIndex(tab);
                QCoreApplication::processEvents();
                window->grab().save(QStringLiteral("%1/paper-%2-%3.png").arg(shots, theme).arg(tab));
            }
        }
    }
}

TEST_F(AccountsDockOnPaper, APausedDeskRefusesOrdersAndSaysWhy)
{
    const auto call = paperdesk::atTheMoneyCall();
    ASSERT_TRUE(call);
    QAction* halt = window->findChild<QAction*>(QStringLiteral("actionHaltTrading"));
    ASSERT_NE(halt, nullptr);
    halt->trigger();
    ASSERT_TRUE(testsupport::waitUntil([&] { return messageShown(QStringLiteral("交易已暂停")); }));
    send(call, nqservice::PT_OPPONENT, 0.0, 1);
    ASSERT_TRUE(testsupport::waitUntil([&] { return messageShown(QStringLiteral("委托被拒绝: 交易已暂停")); }, 10000));
    EXPECT_EQ(dock()->positionsModel()->rowOfKey(kAccount + "|" + call->key() + "|48"), -1);

    window->findChild<QAction*>(QStringLiteral("actionResumeTrading"))->trigger();
    ASSERT_TRUE(send(call, nqservice::PT_OPPONENT, 0.0, 1));
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return dock()->positionsModel()->rowOfKey(kAccount + "|" + call->key() + "|48") >= 0; }, 10000));
}

TEST_F(AccountsDockOnPaper, ACombinationIsFormedByTheBuildDialogAndReleasedByItsButton)
{
    // A bull call spread: long the at-the-money call, short the next strike up.
    const auto call = paperdesk::atTheMoneyCall();
    ASSERT_TRUE(call);
    const auto higher = paperdesk::nextCallUp(*call);
    ASSERT_TRUE(higher);
    auto* commands = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {
        paperdesk::opponentOrder(kAccount, *call, nqservice::OT_BUY_OPEN, 2),
        paperdesk::opponentOrder(kAccount, *higher, nqservice::OT_SELL_OPEN, 2)};
    ASSERT_TRUE(commands->createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE, params,
                                        {{kAccount, 1.0}}, nqservice::VQ_STOP_LOSS_NONE, false, true,
                                        TC::COvCommandCenter::CommandCallback(), bson::BSONObj(), ""));
    const std::string shortKey = kAccount + "|" + higher->key() + "|49";
    const std::string longKey = kAccount + "|" + call->key() + "|48";
    auto available = [&](const std::string& key) {
        const int row = dock()->positionsModel()->rowOfKey(key);
        return row < 0 ? QString() : dock()->positionsModel()->index(row, desk::CPositionsTableModel::COL_AVAILABLE).data().toString();
    };
    ASSERT_TRUE(testsupport::waitUntil([&] { return available(shortKey) == "2" && available(longKey) == "2"; }, 10000));
    const QString marginBefore =
        dock()->fundsModel()->index(dock()->fundsModel()->rowOfKey(kAccount), desk::CFundsTableModel::COL_MARGIN).data().toString();

    dock()->tabs()->setCurrentIndex(desk::CAccountsDock::TAB_COMBINATIONS);
    EXPECT_EQ(dock()->buildButton()->text(), QStringLiteral("构建组合"));
    std::unique_ptr<desk::CCombinationBuildDialog> dialog(dock()->makeBuildDialog());
    ASSERT_TRUE(deskfixture::fillCombination(*dialog, call->code, higher->code, QStringLiteral("CNSJC"), 2));
    dialog->accept();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock()->combinationsModel()->rowCount() == 1; }, 10000));
    auto* model = dock()->combinationsModel();
    EXPECT_EQ(model->index(0, desk::CCombinationsTableModel::COL_STRATEGY).data().toString(), QStringLiteral("CNSJC"));
    EXPECT_EQ(model->index(0, desk::CCombinationsTableModel::COL_VOLUME).data().toString(), QStringLiteral("2"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return available(shortKey) == "0" && available(longKey) == "0"; }, 10000));
    // A bull call spread holds no margin: the short leg's goes.
    ASSERT_TRUE(testsupport::waitUntil([&] {
        return dock()->fundsModel()->index(dock()->fundsModel()->rowOfKey(kAccount), desk::CFundsTableModel::COL_MARGIN)
                   .data()
                   .toString() != marginBefore;
    }));

    // Nothing selected: the reason; the row selected: released.
    dock()->table(desk::CAccountsDock::TAB_COMBINATIONS)->setSelectedRow(-1);
    EXPECT_FALSE(dock()->releaseSelected());
    dock()->table(desk::CAccountsDock::TAB_COMBINATIONS)->setSelectedRow(0);
    dock()->releaseButton()->click();
    ASSERT_TRUE(testsupport::waitUntil([&] { return model->rowCount() == 0; }, 10000));
    ASSERT_TRUE(testsupport::waitUntil([&] { return available(shortKey) == "2" && available(longKey) == "2"; }, 10000));

    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!shots.isEmpty()) {
        ASSERT_TRUE(commands->createCommand(dialog->command(), TC::COvCommandCenter::CommandCallback(), true, 0));
        ASSERT_TRUE(testsupport::waitUntil([&] { return model->rowCount() == 1; }, 10000));
        window->accountsDock()->raise();
        for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
            window->applyTheme(theme);
            QCoreApplication::processEvents();
            window->grab().save(QStringLiteral("%1/combinations-%2.png").arg(shots, theme));
        }
    }
}

TEST_F(AccountsDockOnPaper, TheCloseOfTheDaySettlesThePaperBooksAndShowsItsStepsInTheDeliveryTab)
{
    const auto call = paperdesk::atTheMoneyCall();
    ASSERT_TRUE(call);
    ASSERT_TRUE(send(call, nqservice::PT_OPPONENT, 0.0, 2));
    const std::string positionKey = kAccount + "|" + call->key() + "|48";
    ASSERT_TRUE(testsupport::waitUntil([&] { return dock()->positionsModel()->rowOfKey(positionKey) >= 0; }, 10000));
    const double settlement = services->exchange()->settlementPrices().value(QString::fromStdString(call->key()));
    ASSERT_GT(settlement, 0.0);

    services->closeAndAdvance();
    auto* model = dock()->settlementsModel();
    auto hasKind = [&](const QString& kind) {
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->index(row, desk::CSettlementsTableModel::COL_KIND).data().toString() == kind &&
                model->keyOf(row).rfind(kAccount + "|", 0) == 0) {
                return true;
            }
        }
        return false;
    };
    ASSERT_TRUE(testsupport::waitUntil([&] { return hasKind(QStringLiteral("结算")); }, 10000));
    // The position is marked at the day's settlement price.
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            const int row = dock()->positionsModel()->rowOfKey(positionKey);
            return row >= 0 && std::fabs(dock()->positionsModel()->index(row, desk::CPositionsTableModel::COL_AVG_PRICE)
                                             .data(Qt::DisplayRole)
                                             .toString()
                                             .toDouble() -
                                         settlement) < 1e-4;
        },
        10000));
    dock()->tabs()->setCurrentIndex(desk::CAccountsDock::TAB_SETTLEMENTS);
    EXPECT_EQ(dock()->tabs()->tabText(desk::CAccountsDock::TAB_SETTLEMENTS), QStringLiteral("交割"));
    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!shots.isEmpty()) {
        window->accountsDock()->raise();
        for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
            window->applyTheme(theme);
            QCoreApplication::processEvents();
            window->grab().save(QStringLiteral("%1/settlements-%2.png").arg(shots, theme));
        }
    }
}
