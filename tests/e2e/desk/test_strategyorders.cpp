// The strategy pages' quick orders on the running desk, down to the paper
// broker: a bull call spread from the two-leg dialog fills both legs, an iron
// condor by copies fills four legs in copies times their quantities. On
// request (OPTDESK_KEEP_SCREENSHOTS) both dialogs are kept as pictures in both themes.
#include "app/cdeskwindow.h"
#include "app/cpanelfactory.h"
#include "e2e/desk/paperdesk.h"
#include "order/cstkoptionmultiorderdialog.h"
#include "order/cstkoptionorderdialog.h"
#include "order/cstkoptionorderwidget.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/uievents.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumncomboxdelegate.h"
#include "toolkit/cbasetablecolumndoublespinboxdelegate.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/cparametercell.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>

#include <algorithm>
#include <cstdlib>

namespace {

using namespace paperdesk;

// The calls and puts of the at-the-money call's expiry, by strike.
struct Chain {
    std::vector<std::shared_ptr<nqservice::CInstrumentDetail>> calls;
    std::vector<std::shared_ptr<nqservice::CInstrumentDetail>> puts;
};

Chain chainOf(const nqservice::CInstrumentDetail& anchor)
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    QMap<QString, QMap<QString, QStringList>> chains;
    exchange->getStockOptionMap(chains);
    Chain chain;
    for (const QStringList& keys : chains.value(QStringLiteral("510050.SH"))) {
        for (const QString& key : keys) {
            const auto detail = exchange->getCodeInfo(key);
            if (detail && !detail->adjusted && detail->expireDate == anchor.expireDate) {
                (detail->call ? chain.calls : chain.puts).push_back(detail);
            }
        }
    }
    const auto byStrike = [](const auto& a, const auto& b) { return a->exercisePrice < b->exercisePrice; };
    std::sort(chain.calls.begin(), chain.calls.end(), byStrike);
    std::sort(chain.puts.begin(), chain.puts.end(), byStrike);
    return chain;
}

TC::CStrategyStockData legOf(const nqservice::CInstrumentDetail& detail, nqservice::EOperationType operation,
                             long long quantity)
{
    TC::CStrategyStockData leg;
    leg.code = QString::fromStdString(detail.key());
    leg.name = QString::fromStdString(detail.name);
    leg.market = QString::fromStdString(detail.market);
    leg.operation = operation;
    leg.quantity = quantity;
    return leg;
}

boost::shared_ptr<TC::CPriceData> quoteOf(const QString& key)
{
    return utils::CManualSingletonT<TC::CQuoteClient>::instance()->getStockPrice(key);
}

long long shortOf(const std::string& account, const std::string& code)
{
    const auto pos = positionOf(account, code, '1');
    return pos ? pos->position : 0;
}

class StrategyOrders : public deskfixture::DeskTest {
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window->restore(QStringLiteral("dark"));
        window->resize(1280, 800);
        window->show();
        atm = atTheMoneyCall();
        ASSERT_TRUE(atm);
        chain = chainOf(*atm);
        const auto at = std::find(chain.calls.begin(), chain.calls.end(), atm);
        ASSERT_NE(at, chain.calls.end());
        atmIndex = static_cast<int>(at - chain.calls.begin());
        ASSERT_GE(atmIndex, 2);
        ASSERT_LT(atmIndex + 2, static_cast<int>(chain.calls.size()));
        ASSERT_GE(static_cast<int>(chain.puts.size()), atmIndex);
    }
    void keep(QWidget* widget, const QString& name) { deskfixture::keepInBothThemes(*window, widget, name); }

    std::shared_ptr<nqservice::CInstrumentDetail> atm;
    Chain chain;
    int atmIndex = -1;
};

}  // namespace

TEST_F(StrategyOrders, ABullCallSpreadFromTheTwoLegDialogFillsBothLegs)
{
    const auto upper = chain.calls.at(atmIndex + 1);
    TC::CStkOptionOrderDialog dialog(2, window.get());
    dialog.setLegs({legOf(*atm, nqservice::OT_BUY, 2), legOf(*upper, nqservice::OT_SELL, 2)});
    dialog.show();
    dialog.raise();
    const std::pair<TC::CStkOptionOrderWidget*, bool> legs[] = {{dialog.getOrderWidget(0), true},
                                                                {dialog.getOrderWidget(1), false}};
    for (const auto& leg : legs) {
        TC::CStkOptionOrderWidget* widget = leg.first;
        ASSERT_NE(widget, nullptr);
        widget->getAccountCombo()->setCurrentIndex(widget->getAccountCombo()->findData(QStringLiteral("SO001")));
        ASSERT_GE(widget->getAccountCombo()->currentIndex(), 0);
        ASSERT_EQ(widget->getPriceTypeCombo()->currentData().toInt(), 11);
        const auto quote = quoteOf(widget->getStockCode());
        ASSERT_TRUE(quote);
        // Marketable limits: a buy at the limit-up, a sell at the limit-down fill at the book.
        widget->getPriceEdit()->setText(QString::number(leg.second ? quote->upStopPrice : quote->downStopPrice, 'f', 4));
        EXPECT_GT(widget->getAvailableVolume(), 0) << "the paper broker's calculator answers";
        EXPECT_EQ(widget->getOrderCount(), 2);
    }
    keep(&dialog, QStringLiteral("strategy-order-two-legs"));
    dialog.handleEvent(WG::UE_BUTTON_CLICKED, TC::CStkOptionOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] { return volumeOf("SO001", atm->code) == 2 && shortOf("SO001", upper->code) == 2; }, 10000))
        << "long " << volumeOf("SO001", atm->code) << ", short " << shortOf("SO001", upper->code);
}

TEST_F(StrategyOrders, AnIronCondorByCopiesFillsFourLegsInTheRightVolumes)
{
    const auto lowPut = chain.puts.at(atmIndex - 2);
    const auto highPut = chain.puts.at(atmIndex - 1);
    const auto lowCall = chain.calls.at(atmIndex + 1);
    const auto highCall = chain.calls.at(atmIndex + 2);
    TC::CStkOptionMultiOrderDialog dialog(window.get());
    dialog.setLegs({legOf(*lowPut, nqservice::OT_BUY, 1), legOf(*highPut, nqservice::OT_SELL, 1),
                    legOf(*lowCall, nqservice::OT_SELL, 1), legOf(*highCall, nqservice::OT_BUY, 2)});
    dialog.show();
    dialog.raise();
    const std::pair<std::shared_ptr<nqservice::CInstrumentDetail>, bool> legs[] = {
        {lowPut, true}, {highPut, false}, {lowCall, false}, {highCall, true}};
    for (const auto& leg : legs) {
        const QString key = QString::fromStdString(leg.first->key());
        dialog.setRowAccount(key, QStringLiteral("SO002"));
        const auto quote = quoteOf(key);
        ASSERT_TRUE(quote);
        dialog.getPriceDelegate()->setItemValue(leg.first->key(), leg.second ? quote->upStopPrice : quote->downStopPrice,
                                                true);
    }
    dialog.calcAvailableCopies();
    // The paper account's funds over one copy's fees, premiums and margins: a finite number.
    EXPECT_GT(dialog.getAvailableCopies(), 3);
    EXPECT_LT(dialog.getAvailableCopies(), 100000);
    dialog.getCopiesCell()->setInt(3);
    keep(&dialog, QStringLiteral("strategy-order-multi-legs"));
    dialog.handleEvent(WG::UE_BUTTON_CLICKED, TC::CStkOptionMultiOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            return volumeOf("SO002", lowPut->code) == 3 && shortOf("SO002", highPut->code) == 3 &&
                   shortOf("SO002", lowCall->code) == 3 && volumeOf("SO002", highCall->code) == 6;
        },
        10000))
        << volumeOf("SO002", lowPut->code) << " " << shortOf("SO002", highPut->code) << " "
        << shortOf("SO002", lowCall->code) << " " << volumeOf("SO002", highCall->code);
}
