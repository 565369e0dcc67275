// The option winner on the paper desk: the demo user's 50ETF settings give
// candidates on the generated market, and the first candidate of 看涨 sent
// through the quick order fills at the paper broker.
#include "app/cdeskwindow.h"
#include "app/cpanelfactory.h"
#include "e2e/desk/paperdesk.h"
#include "order/cstkoptionorderdialog.h"
#include "order/cstkoptionorderwidget.h"
#include "seam/cquoteclient.h"
#include "seam/uievents.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "support/testsupport.h"
#include "toolkit/ccombobox.h"
#include "toolkit/clineedit.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cuiresource.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QVBoxLayout>

#include <cstdlib>

namespace {

using namespace paperdesk;

class WinnerOnDesk : public deskfixture::DeskTest {
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        window = std::make_unique<desk::CDeskWindow>(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window->restore(QStringLiteral("dark"));
        host = std::make_unique<QWidget>();
        host->resize(1100, 560);
        auto* layout = new QVBoxLayout(host.get());
        winner = new TC::COptionWinnerWidget(host.get());
        analysis = new TC::CProfitLossAnalysisWidget(host.get());
        layout->addWidget(winner, 1);
        layout->addWidget(analysis);
        winner->setAnalysisWidget(analysis);
        host->show();
        TC::COptionUndlCodeComboBox* combo = winner->getUnderlyingCombo();
        combo->setCurrentIndex(combo->findData(QStringLiteral("510050.SH")));
    }
    void TearDown() override
    {
        host.reset();
        window.reset();
        DeskTest::TearDown();
    }
    void keep(const QString& name) { deskfixture::keepInBothThemes(*window, host.get(), name); }

    std::unique_ptr<QWidget> host;
    TC::COptionWinnerWidget* winner = nullptr;
    TC::CProfitLossAnalysisWidget* analysis = nullptr;
};

TEST_F(WinnerOnDesk, EveryForecastHasCandidatesFromTheDemoSettings)
{
    for (int direction = 0; direction < 4; ++direction) {
        winner->getForecastCombo()->setCurrentIndex(direction);
        EXPECT_GT(winner->getTable()->rowCount(), 0) << direction;
        EXPECT_EQ(winner->getTable()->checkedRow(), 0) << direction;
    }
    // The quotes come within a second of ticks.
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            winner->slotTimeOut();
            return !winner->getTable()->itemText(0, 9).isEmpty();
        },
        5000));
    EXPECT_NE(analysis->texts.profitRange, QStringLiteral("盈利区间:-"));
    keep(QStringLiteral("winner-range-on-desk"));
}

TEST_F(WinnerOnDesk, TheFirstRiseCandidateSentByQuickOrderFills)
{
    winner->getForecastCombo()->setCurrentIndex(TC::WPD_RISE);
    ASSERT_GT(winner->getTable()->rowCount(), 0);
    const QString key = winner->getCheckedRowKeys().value(0);
    const auto detail = utils::CManualSingletonT<TC::CExchangeClient>::instance()->getCodeInfo(key);
    ASSERT_TRUE(detail);
    winner->handleEvent(WG::UE_BUTTON_CLICKED, TC::COptionWinnerWidget::WID_QUICK_ORDER, 0, QString(), nullptr);
    TC::CStkOptionOrderDialog* dialog = winner->lastOrderDialog();
    ASSERT_NE(dialog, nullptr);
    ASSERT_EQ(dialog->getLegCount(), 1);
    TC::CStkOptionOrderWidget* widget = dialog->getOrderWidget(0);
    ASSERT_NE(widget, nullptr);
    EXPECT_EQ(widget->getStockCode(), key);
    widget->getAccountCombo()->setCurrentIndex(widget->getAccountCombo()->findData(QStringLiteral("SO001")));
    ASSERT_GE(widget->getAccountCombo()->currentIndex(), 0);
    const auto quote = utils::CManualSingletonT<TC::CQuoteClient>::instance()->getStockPrice(key);
    ASSERT_TRUE(quote);
    // A marketable limit: a buy at the limit-up fills at the book.
    widget->getPriceEdit()->setText(QString::number(quote->upStopPrice, 'f', 4));
    dialog->handleEvent(WG::UE_BUTTON_CLICKED, TC::CStkOptionOrderDialog::ID_ORDER_BUTTON, 0, QString(), nullptr);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(testsupport::waitUntil([&] { return volumeOf("SO001", detail->code) >= 1; }, 10000))
        << "held " << volumeOf("SO001", detail->code);
}

}  // namespace
