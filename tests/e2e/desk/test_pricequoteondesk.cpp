// The price quote panel in the desk on the simulated market: docked as a tab
// beside the boards, idle while hidden, live when brought to the front, and
// kept with the layout.
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "positions/chpfpricequotedatamodel.h"
#include "positions/chpfpricequotedatatable.h"
#include "positions/coptionpricequotepanel.h"
#include "positions/cpricequoteschema.h"
#include "seam/common.h"
#include "support/testsupport.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/cuiresource.h"

#include "e2e/desk/deskfixture.h"

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QTemporaryDir>

namespace {

using S = TC::CPriceQuoteSchema;

class PriceQuoteOnDesk : public deskfixture::DeskTest {
protected:
    static TC::COptionPriceQuotePanel* quotePanel(desk::CDeskWindow& window)
    {
        return qobject_cast<TC::COptionPriceQuotePanel*>(window.panel(QStringLiteral("pricequote")));
    }
    // Whether some month of some row shows a last price.
    static bool anyPrice(TC::COptionPriceQuotePanel* panel)
    {
        TC::CHpfPriceQuoteDataModel* model = panel->getModel();
        for (int r = 0; r < model->size(); ++r) {
            for (int m = 0; m < model->monthCount; ++m) {
                if (!utils::isAbsent(model->getData(r)->doubleValue(S::columnOf(m, S::PQ_LAST)))) {
                    return true;
                }
            }
        }
        return false;
    }
};

TEST_F(PriceQuoteOnDesk, ATabBesideTheBoardsIdleUntilBroughtToTheFront)
{
    desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    window.restore();
    window.resize(1440, 900);
    window.show();
    TC::COptionPriceQuotePanel* panel = quotePanel(window);
    ASSERT_NE(panel, nullptr) << "the price quote panel is docked by default";
    EXPECT_EQ(window.dock(QStringLiteral("pricequote"))->windowTitle(), QStringLiteral("价格报价"));
    EXPECT_TRUE(window.tabifiedDockWidgets(window.dock(QStringLiteral("pricet")))
                    .contains(window.dock(QStringLiteral("pricequote"))));
    EXPECT_EQ(panel->getUnderlyingCombo()->currentData(Qt::UserRole).toString(), QStringLiteral("510050.SH"));
    EXPECT_GT(panel->getModel()->monthCount, 1);
    EXPECT_GT(panel->getModel()->size(), 0);
    // Behind the board it only buffers.
    ASSERT_TRUE(testsupport::waitUntil([&] { return panel->pendingPriceCount() > 0; }, 5000));
    EXPECT_FALSE(anyPrice(panel));

    ASSERT_TRUE(window.showPanel(QStringLiteral("pricequote")));
    ASSERT_TRUE(testsupport::waitUntil([&] { return anyPrice(panel); }, 5000)) << "the tick moves quotes in";
    EXPECT_FALSE(panel->valueLabel(TC::COptionPriceQuotePanel::PQC_PRICE)->getText().isEmpty());
}

TEST_F(PriceQuoteOnDesk, UnderlyingAndViewLayoutsSurviveARestart)
{
    QString quoteLayout;
    {
        desk::CDeskWindow window(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
        window.restore();
        window.show();
        ASSERT_TRUE(window.showPanel(QStringLiteral("pricequote")));
        TC::COptionPriceQuotePanel* panel = quotePanel(window);
        ASSERT_NE(panel, nullptr);
        TC::COptionUndlCodeComboBox* selector = panel->getUnderlyingCombo();
        const int other = selector->findData(QStringLiteral("510300.SH"), Qt::UserRole);
        ASSERT_GE(other, 0);
        selector->setCurrentIndex(other);
        panel->getTable()->setColumnWidth(S::columnOf(0, S::PQ_LAST), 93);
        quoteLayout = panel->getTable()->saveConfigStr();
        panel->getViewGroup()->button(2)->click();
        ASSERT_TRUE(window.saveLayout());
    }
    desk::CDeskWindow again(desk::CPanelFactory::withBuiltins(), dir.path(), 50);
    again.restore();
    TC::COptionPriceQuotePanel* panel = quotePanel(again);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->getUnderlyingCombo()->currentData(Qt::UserRole).toString(), QStringLiteral("510300.SH"));
    EXPECT_EQ(panel->getViewConfigs().value(0), quoteLayout);
    EXPECT_FALSE(panel->getViewConfigs().value(2).isEmpty());
    EXPECT_EQ(panel->getTable()->getView(), 0) << "a restored panel starts in its first view";
}

}  // namespace
