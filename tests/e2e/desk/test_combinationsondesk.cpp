// The combination panel on the desk with the paper broker: a bull call spread
// formed from the accounts dock shows in "组合持仓" with the Greeks of both legs,
// is found by its number, and "解除" gives the legs back as plain positions; a
// second one closes by a double click, the desk asking first.
#include "app/caccountsdock.h"
#include "app/ccombinationbuilddialog.h"
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "app/cpositionstablemodel.h"
#include "e2e/desk/deskfixture.h"
#include "e2e/desk/paperdesk.h"
#include "positions/ccomblegfigures.h"
#include "positions/coptionstrategypositionpanel.h"
#include "positions/coptionstrategypositiontable.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/trading.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/csearchtextlineedit.h"
#include "toolkit/csmallnonormalbutton.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QSpinBox>

#include <memory>

namespace {

const std::string kAccount = "SO001";
using M = TC::CHpfOptionStrategyPositionModel;

class CombinationsOnDesk : public deskfixture::DeskTest {
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        desk::CPanelFactory factory;
        factory.add(QStringLiteral("opsp"), QStringLiteral("组合持仓"), [](int id, QWidget* parent) {
            return new TC::COptionStrategyPositionPanel(id, parent);
        });
        window = std::make_unique<desk::CDeskWindow>(std::move(factory), dir.path(), 50);
        window->restore();
        window->resize(2200, 900);
        window->show();
        call = paperdesk::atTheMoneyCall();
        ASSERT_TRUE(call);
        higher = paperdesk::nextCallUp(*call);
        ASSERT_TRUE(higher);
    }
    TC::COptionStrategyPositionPanel* panel() const
    {
        return qobject_cast<TC::COptionStrategyPositionPanel*>(window->panel(QStringLiteral("opsp")));
    }
    TC::COptionStrategyPositionTable* table() const { return panel()->getTable(); }
    int rows() const
    {
        table()->updateTable();
        return table()->realRowCount();
    }
    // Opens the legs of a bull call spread: long the lower call, short the higher.
    void holdLegs(long long volume)
    {
        auto* commands = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
        std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params = {
            paperdesk::opponentOrder(kAccount, *call, nqservice::OT_BUY_OPEN, volume),
            paperdesk::opponentOrder(kAccount, *higher, nqservice::OT_SELL_OPEN, volume)};
        ASSERT_TRUE(commands->createCommand(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, nqservice::VQ_HEDGE_TYPE_NONE,
                                            params, {{kAccount, 1.0}}, nqservice::VQ_STOP_LOSS_NONE, false, true,
                                            TC::COvCommandCenter::CommandCallback(), bson::BSONObj(), ""));
        ASSERT_TRUE(testsupport::waitUntil([&] { return closable(*call, '0') == volume && closable(*higher, '1') == volume; },
                                           10000));
        // The build dialog offers what the dock lists.
        ASSERT_TRUE(testsupport::waitUntil(
            [&] { return listed(*call, '0') == QString::number(volume) && listed(*higher, '1') == QString::number(volume); },
            10000));
    }
    QString listed(const nqservice::CInstrumentDetail& detail, int direction) const
    {
        desk::CPositionsTableModel* positions = window->accounts()->positionsModel();
        const int row = positions->rowOfKey(kAccount + "|" + detail.key() + "|" + std::to_string(direction));
        return row < 0 ? QString() : positions->index(row, desk::CPositionsTableModel::COL_AVAILABLE).data().toString();
    }
    static long long closable(const nqservice::CInstrumentDetail& detail, int direction)
    {
        const auto pos = paperdesk::positionOf(kAccount, detail.code, direction);
        return pos ? pos->available : 0;
    }
    // Forms the spread from the accounts dock's "构建组合".
    void formFromTheDock(int volume)
    {
        std::unique_ptr<desk::CCombinationBuildDialog> dialog(window->accounts()->makeBuildDialog());
        ASSERT_TRUE(deskfixture::fillCombination(*dialog, call->code, higher->code, QStringLiteral("CNSJC"), volume));
        dialog->accept();
        ASSERT_EQ(dialog->result(), QDialog::Accepted);
    }
    boost::shared_ptr<nqservice::CStkOptCombPositionDetail> shownDetail(int position) const
    {
        return table()->detailOfRow(table()->rowID(position));
    }
    QString cell(const std::string& key, int column) const
    {
        const int row = table()->rowOfKey(key);
        return row < 0 ? QString() : table()->itemText(row, column);
    }

    std::shared_ptr<nqservice::CInstrumentDetail> call;
    std::shared_ptr<nqservice::CInstrumentDetail> higher;
};

TEST_F(CombinationsOnDesk, ASpreadIsListedFoundReleasedAndAnotherClosedByADoubleClick)
{
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(window->dock(QStringLiteral("opsp"))->windowTitle(), QStringLiteral("组合持仓"));
    holdLegs(2);
    formFromTheDock(2);
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 1; }, 10000));
    const auto spread = shownDetail(0);
    ASSERT_TRUE(spread);
    EXPECT_EQ(spread->strategyCode, "CNSJC");
    EXPECT_EQ(spread->volume, 2);
    EXPECT_EQ(spread->legOneCode, call->code);
    EXPECT_EQ(spread->legTwoCode, higher->code);
    const std::string key = spread->getKey();

    // Both legs' Greeks: the lower call moves more with the underlying.
    auto number = [&](int leg, M::ELegFigure figure) {
        bool ok = false;
        const double value = cell(key, table()->getModel()->legColumn(leg, figure)).toDouble(&ok);
        return ok ? value : -99.0;
    };
    ASSERT_TRUE(testsupport::waitUntil([&] {
        panel()->emptyStringChange();
        return number(0, M::LF_DELTA) > -1.0 && number(1, M::LF_DELTA) > -1.0;
    }, 10000));
    EXPECT_GT(number(0, M::LF_DELTA), number(1, M::LF_DELTA));
    EXPECT_GT(number(0, M::LF_DELTA), 0.0);
    EXPECT_GT(number(0, M::LF_GAMMA), 0.0);
    EXPECT_GT(number(1, M::LF_GAMMA), 0.0);
    EXPECT_LT(number(0, M::LF_THETA), 0.0);
    EXPECT_GT(number(1, M::LF_VEGA), 0.0);

    // Found by its number, and not by another.
    panel()->getSearchEdit()->setText(QString::fromStdString(spread->combId).toLower());
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 1; }, 10000));
    panel()->getSearchEdit()->setText(QStringLiteral("no-such-combination"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 0; }, 10000));
    panel()->getSearchEdit()->setText(QString());
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 1; }, 10000));

    // "解除": the legs come back as plain, closable positions.
    EXPECT_EQ(closable(*call, '0'), 0) << "locked in the combination";
    table()->getModel()->checkDelegate()->setItemChecked(key, true, true, true);
    panel()->getReleaseButton()->click();
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 0; }, 10000));
    ASSERT_TRUE(testsupport::waitUntil([&] { return closable(*call, '0') == 2 && closable(*higher, '1') == 2; }, 10000));

    // Another spread, closed by a double click: release, then both legs.
    ASSERT_TRUE(testsupport::waitUntil([&] { return listed(*call, '0') == "2" && listed(*higher, '1') == "2"; }, 10000));
    formFromTheDock(2);
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 1; }, 10000));
    const QString shots = qEnvironmentVariable("OPTDESK_SHOT_DIR");
    if (!shots.isEmpty()) {
        panel()->emptyStringChange();
        for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
            window->applyTheme(theme);
            QCoreApplication::processEvents();
            window->grab().save(QStringLiteral("%1/opsp-%2.png").arg(shots, theme));
        }
    }
    WG::CMessageBox::TestHook hook;
    hook.queueAnswer(QMessageBox::Yes);
    panel()->handleEvent(WG::UE_CELL_ACTIVATED, 0, table()->rowID(0), QString(), nullptr);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_TRUE(hook.last().text.contains(QStringLiteral("卖平 %1").arg(QString::fromStdString(call->code))))
        << hook.last().text.toStdString();
    EXPECT_TRUE(hook.last().text.contains(QStringLiteral("买平 %1").arg(QString::fromStdString(higher->code))))
        << hook.last().text.toStdString();
    ASSERT_TRUE(testsupport::waitUntil([&] { return rows() == 0; }, 10000));
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            return paperdesk::positionOf(kAccount, call->code, '0') == nullptr ||
                   paperdesk::positionOf(kAccount, call->code, '0')->position == 0;
        },
        10000));
    ASSERT_TRUE(testsupport::waitUntil(
        [&] {
            const auto pos = paperdesk::positionOf(kAccount, higher->code, '1');
            return pos == nullptr || pos->position == 0;
        },
        10000));
}

}  // namespace
