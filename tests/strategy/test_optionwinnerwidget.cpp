// The winner widget on the services of a small fixed universe: the tools, the
// candidates of each forecast, repricing of the keys that changed only while
// the widget is shown, the radio choice filling the analysis and naming the
// legs, a changed setting rebuilding, and the quick order's answers.
#include "strategy/winnerfixture.h"

#include "seam/uievents.h"
#include "order/cstkoptionorderdialog.h"
#include "strategy/coptionwinnertable.h"
#include "strategy/coptionwinnerwidget.h"
#include "strategy/cprofitlossanalysiswidget.h"
#include "support/testsupport.h"
#include "toolkit/cbasewidget.h"
#include "toolkit/ccombobox.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "toolkit/cradiobutton.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>

#include <cstdlib>

namespace {

using TC::COptionWinnerTable;
using TC::COptionWinnerWidget;
using winnertest::key;
using winnertest::setting;

// Stands for the strategy panel: records what the winner passes upward.
class CPanelStandIn : public WG::CBaseWidget {
public:
    CPanelStandIn() : WG::CBaseWidget(QStringLiteral("panel"), false, nullptr) { resize(900, 400); }
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        if (code == COptionWinnerWidget::kChoiceChangedEvent) {
            choices << Choice{arg, text, data != nullptr ? *static_cast<QString*>(data) : QStringLiteral("<null>")};
        } else if (code == WG::UE_COMBO_CHANGED || code == COptionWinnerTable::kRowChosenEvent) {
            passedOn << qMakePair(code, id);
        }
        return true;
    }
    struct Choice {
        int forecast;
        QString underlying;
        QString rowKey;
    };
    QList<Choice> choices;
    QList<QPair<int, int>> passedOn;
};

class OptionWinnerWidgetTest : public winnertest::WinnerTest {
protected:
    void SetUp() override
    {
        winnertest::WinnerTest::SetUp();
        const QString undl = QStringLiteral("510050.SH");
        store->setWinnerSetting(undl, TC::WPD_RISE, setting(3.05, 0.0));
        store->setWinnerSetting(undl, TC::WPD_FALL, setting(0.0, 3.0));
        store->setWinnerSetting(undl, TC::WPD_BREAK, setting(3.0, 2.95));
        store->setWinnerSetting(undl, TC::WPD_RANGE, setting(3.0, 3.0));
        panel = std::make_unique<CPanelStandIn>();
        winner = new COptionWinnerWidget(panel.get());
        winner->resize(900, 300);
        table = winner->getTable();
        tester = std::make_unique<QAbstractItemModelTester>(table->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override
    {
        tester.reset();
        panel.reset();
        winnertest::WinnerTest::TearDown();
    }

    void chooseForecast(int direction) { winner->getForecastCombo()->setCurrentIndex(direction); }
    QStringList columnTexts(int column)
    {
        QStringList out;
        for (int row = 0; row < table->rowCount(); ++row) {
            out << table->itemText(row, column);
        }
        return out;
    }

    std::unique_ptr<CPanelStandIn> panel;
    COptionWinnerWidget* winner = nullptr;
    COptionWinnerTable* table = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(OptionWinnerWidgetTest, ToolsInTheirOrder)
{
    EXPECT_EQ(winner->objectName(), QStringLiteral("option_winner_widget"));
    WG::CComboBox* forecast = winner->getForecastCombo();
    ASSERT_EQ(forecast->count(), 4);
    const QStringList texts = {"看涨", "看跌", "突破", "盘整"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(forecast->itemText(i), texts.at(i));
        EXPECT_EQ(forecast->itemData(i).toInt(), i);
    }
    EXPECT_EQ(forecast->width(), 82);
    EXPECT_EQ(winner->getUnderlyingCombo()->currentData().toString(), QStringLiteral("510050.SH"));
    EXPECT_GE(winner->getUnderlyingCombo()->minimumWidth(), 82);
    EXPECT_EQ(winner->getPredictDirection(), 0);
    EXPECT_EQ(table->flag() & WG::EBaseTableFlags(QFlag(8)), WG::EBaseTableFlags());
}

TEST_F(OptionWinnerWidgetTest, StartsWithTheRiseCandidatesAndTheFirstChecked)
{
    EXPECT_EQ(table->getMode(), 0);
    EXPECT_EQ(table->columnCount(), 9);
    EXPECT_EQ(columnTexts(1), (QStringList{"50ETF购11月2900", "50ETF购11月3000"}));
    EXPECT_EQ(columnTexts(3), (QStringList{"买", "买"}));
    EXPECT_EQ(columnTexts(6), (QStringList{"无限", "无限"}));
    EXPECT_EQ(table->checkedRow(), 0);
    EXPECT_EQ(winner->getCheckedRowKeys(), QStringList{key("10000010")});
    EXPECT_EQ(winner->subscribedKeys(), (QStringList{key("10000010"), key("10000011")}));
}

TEST_F(OptionWinnerWidgetTest, EachForecastShowsItsSetAndCandidates)
{
    chooseForecast(TC::WPD_FALL);
    EXPECT_EQ(table->columnCount(), 9);
    EXPECT_EQ(columnTexts(1), (QStringList{"50ETF沽11月3000", "50ETF沽11月3100"}));
    chooseForecast(TC::WPD_BREAK);
    EXPECT_EQ(table->columnCount(), 14);
    EXPECT_EQ(columnTexts(1), (QStringList{"50ETF沽11月2900", "50ETF沽11月2900"}));
    EXPECT_EQ(columnTexts(5), (QStringList{"50ETF购11月3000", "50ETF购11月3100"}));
    EXPECT_EQ(columnTexts(10), (QStringList{"无限", "无限"}));
    chooseForecast(TC::WPD_RANGE);
    EXPECT_EQ(table->rowCount(), 4);
    EXPECT_EQ(columnTexts(3), (QStringList{"卖", "卖", "卖", "卖"}));
    EXPECT_EQ(columnTexts(7), (QStringList{"卖", "卖", "卖", "卖"}));
    EXPECT_EQ(columnTexts(11), (QStringList{"无限", "无限", "无限", "无限"}));
    // The put's key comes first.
    EXPECT_EQ(winner->getCheckedRowKeys(), (QStringList{key("10000020"), key("10000011")}));
    ASSERT_EQ(winner->checkedLegs().size(), 2);
    EXPECT_EQ(winner->checkedLegs().at(1).operation, nqservice::OT_SELL);
}

TEST_F(OptionWinnerWidgetTest, RepricesTheKeysThatChangedOnlyWhileShown)
{
    quoteAt("10000011", 0.08, 0.06, 321);
    EXPECT_EQ(winner->dirtyKeyCount(), 1);
    winner->slotTimeOut();
    EXPECT_EQ(table->itemText(1, 2), QString()) << "hidden: nothing is applied";
    EXPECT_EQ(winner->dirtyKeyCount(), 1);

    panel->show();
    winner->slotTimeOut();
    EXPECT_EQ(winner->dirtyKeyCount(), 0);
    EXPECT_EQ(table->itemText(1, 2), QStringLiteral("0.0800"));
    EXPECT_EQ(table->itemText(1, 5), QStringLiteral("-800.00"));
    EXPECT_EQ(table->itemText(1, 7), QStringLiteral("-800.0000"));
    EXPECT_EQ(table->itemText(1, 8), QStringLiteral("321"));
    EXPECT_EQ(table->model()->cellTextColorKey(1, 2), QStringLiteral("tc_clr_priceT_rise"));
    // The other row had no quote: it stays empty.
    EXPECT_EQ(table->itemText(0, 2), QString());
}

TEST_F(OptionWinnerWidgetTest, AQuoteOfOneLegReachesEveryPairThatUsesIt)
{
    chooseForecast(TC::WPD_RANGE);
    panel->show();
    quoteAt("10000020", 0.04);
    quoteAt("10000011", 0.08);
    quoteAt("10000012", 0.05);
    winner->slotTimeOut();
    // Rows: 2.9 put with the 3.0 and 3.1 calls, then the 3.0 put with both (no quote yet).
    EXPECT_EQ(table->itemText(0, 9), QStringLiteral("1200.00"));
    EXPECT_EQ(table->itemText(0, 10), QStringLiteral("1200.0000"));
    EXPECT_EQ(table->itemText(1, 9), QStringLiteral("900.00"));
    EXPECT_EQ(table->itemText(2, 6), QString()) << "without the put's quote the row waits whole";
    EXPECT_EQ(table->itemText(2, 9), QString());
    quoteAt("10000021", 0.07);
    winner->slotTimeOut();
    EXPECT_EQ(table->itemText(3, 9), QStringLiteral("1200.00"));
}

TEST_F(OptionWinnerWidgetTest, ChoosingARowFillsTheAnalysisAndNamesTheLegs)
{
    TC::CProfitLossAnalysisWidget analysis(nullptr);
    winner->setAnalysisWidget(&analysis);
    EXPECT_EQ(analysis.texts.expiry, QStringLiteral("行权到期日:2026-11-25")) << "a checked row fills it at once";
    QSignalSpy legs(winner, &COptionWinnerWidget::sigSelectedLegs);
    quoteAt("10000011", 0.08);
    table->radioOf(1)->click();
    EXPECT_EQ(table->checkedRow(), 1);
    EXPECT_FALSE(table->radioOf(0)->isChecked());
    EXPECT_EQ(analysis.texts.profitRange, QStringLiteral("盈利区间:3.080以上"));
    EXPECT_EQ(analysis.texts.lossRange, QStringLiteral("亏损区间:3.080以下"));
    EXPECT_EQ(analysis.texts.maxProfit, QStringLiteral("最大盈利:无限"));
    ASSERT_EQ(panel->choices.size(), 1);
    EXPECT_EQ(panel->choices.at(0).forecast, 0);
    EXPECT_EQ(panel->choices.at(0).underlying, QStringLiteral("510050.SH"));
    EXPECT_EQ(panel->choices.at(0).rowKey, key("10000011"));
    ASSERT_EQ(legs.count(), 1);
    EXPECT_EQ(legs.at(0).at(0).toStringList(), QStringList{key("10000011")});
    EXPECT_EQ(legs.at(0).at(1).toInt(), 18);
    // The row chosen goes on to the panel too.
    EXPECT_TRUE(panel->passedOn.contains(qMakePair(COptionWinnerTable::kRowChosenEvent, 1)));
}

TEST_F(OptionWinnerWidgetTest, TheCheckedRowsAnalysisFollowsTheTimer)
{
    TC::CProfitLossAnalysisWidget analysis(nullptr);
    winner->setAnalysisWidget(&analysis);
    panel->show();
    quoteAt("10000010", 0.15);
    winner->slotTimeOut();
    EXPECT_EQ(analysis.texts.maxLoss, QStringLiteral("最大亏损:-1500.0000"));
    EXPECT_EQ(analysis.texts.netPremium, QStringLiteral("权利金净值:-1500.00"));
    EXPECT_EQ(analysis.texts.profitRange, QStringLiteral("盈利区间:3.050以上"));
}

TEST_F(OptionWinnerWidgetTest, AChangedChoiceIsToldOnlyWhileShownAndAlwaysPassedOn)
{
    TC::CProfitLossAnalysisWidget analysis(nullptr);
    winner->setAnalysisWidget(&analysis);
    chooseForecast(TC::WPD_FALL);
    EXPECT_TRUE(panel->choices.isEmpty());
    EXPECT_TRUE(panel->passedOn.contains(qMakePair(int(WG::UE_COMBO_CHANGED), 1)));
    panel->show();
    QSignalSpy legs(winner, &COptionWinnerWidget::sigSelectedLegs);
    chooseForecast(TC::WPD_RANGE);
    ASSERT_EQ(panel->choices.size(), 1);
    EXPECT_EQ(panel->choices.at(0).forecast, 3);
    EXPECT_EQ(panel->choices.at(0).rowKey, key("10000020") + "|" + key("10000011"));
    EXPECT_EQ(analysis.texts.maxLoss, QStringLiteral("最大亏损:无限"));
    ASSERT_EQ(legs.count(), 1);
    EXPECT_EQ(legs.at(0).at(1).toInt(), 19);
}

TEST_F(OptionWinnerWidgetTest, ARangeWithNoRowLeavesTheOldAnalysis)
{
    TC::CProfitLossAnalysisWidget analysis(nullptr);
    winner->setAnalysisWidget(&analysis);
    const QString before = analysis.texts.expiry;
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_BREAK, setting(3.0, 2.8));
    panel->show();
    chooseForecast(TC::WPD_BREAK);
    EXPECT_EQ(table->rowCount(), 0) << "no put passes: no pair at all";
    EXPECT_EQ(winner->subscribedKeys(), (QStringList{key("10000011"), key("10000012")})) << "the calls are subscribed";
    EXPECT_EQ(analysis.texts.expiry, before);
    EXPECT_TRUE(winner->getCheckedRowKeys().isEmpty());
}

TEST_F(OptionWinnerWidgetTest, ASettingOfTheShownChoiceRebuilds)
{
    EXPECT_EQ(table->rowCount(), 2);
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_FALL, setting(0.0, 3.1));
    EXPECT_EQ(table->rowCount(), 2) << "another forecast: nothing changes";
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RISE, setting(3.2, 0.0));
    EXPECT_EQ(columnTexts(1), (QStringList{"50ETF购11月2900", "50ETF购11月3000", "50ETF购11月3100"}));
    store->setWinnerSetting(QStringLiteral("510300.SH"), TC::WPD_RISE, setting(2.0, 0.0));
    EXPECT_EQ(table->rowCount(), 3);
}

TEST_F(OptionWinnerWidgetTest, QuickOrderWithoutARowAsksForOne)
{
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RISE, setting(2.0, 0.0));
    ASSERT_EQ(table->rowCount(), 0);
    WG::CMessageBox::TestHook hook;
    EXPECT_TRUE(winner->handleEvent(WG::UE_BUTTON_CLICKED, COptionWinnerWidget::WID_QUICK_ORDER, 0, QString(), nullptr));
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("warning"));
    EXPECT_EQ(hook.last().title, QStringLiteral("提示"));
    EXPECT_EQ(hook.last().text, QStringLiteral("请选择合约"));
}

TEST_F(OptionWinnerWidgetTest, QuickOrderIsSilentForRolesThatOrderNothing)
{
    WG::CMessageBox::TestHook hook;
    for (int role : {200, 102}) {
        store->setUserDataInt(TC::UM_USER_ROLE, role);
        winner->handleEvent(WG::UE_BUTTON_CLICKED, COptionWinnerWidget::WID_QUICK_ORDER, 0, QString(), nullptr);
    }
    EXPECT_EQ(hook.count(), 0);
}

TEST_F(OptionWinnerWidgetTest, QuickOrderOpensTheDialogWithTheCheckedCandidatesLegs)
{
    chooseForecast(TC::WPD_RANGE);
    table->radioOf(3)->click();
    WG::CMessageBox::TestHook hook;
    winner->handleEvent(WG::UE_BUTTON_CLICKED, COptionWinnerWidget::WID_QUICK_ORDER, 0, QString(), nullptr);
    EXPECT_EQ(hook.count(), 0);
    TC::CStkOptionOrderDialog* dialog = winner->lastOrderDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->parentWidget(), winner);
    EXPECT_EQ(dialog->getLegCount(), 2);
    const QList<TC::CStrategyStockData> legs = winner->checkedLegs();
    ASSERT_EQ(legs.size(), 2);
    EXPECT_EQ(legs.at(0).code, key("10000021"));
    EXPECT_EQ(legs.at(1).code, key("10000012"));
    EXPECT_EQ(legs.at(0).operation, nqservice::OT_SELL);
    EXPECT_EQ(legs.at(0).quantity, 1);
    EXPECT_EQ(legs.at(1).name, QStringLiteral("50ETF购11月3100"));
    delete dialog;
}

TEST_F(OptionWinnerWidgetTest, QuickOrderOfASingleOptionHasOneLeg)
{
    winner->handleEvent(WG::UE_BUTTON_CLICKED, COptionWinnerWidget::WID_QUICK_ORDER, 0, QString(), nullptr);
    ASSERT_NE(winner->lastOrderDialog(), nullptr);
    ASSERT_EQ(winner->checkedLegs().size(), 1);
    EXPECT_EQ(winner->checkedLegs().at(0).operation, nqservice::OT_BUY);
    delete winner->lastOrderDialog();
}

TEST_F(OptionWinnerWidgetTest, TheLayoutIsKeptButNotTheChoice)
{
    chooseForecast(TC::WPD_RANGE);
    table->setColumnWidth(1, 151);
    const QString saved = winner->param();
    EXPECT_FALSE(saved.isEmpty());
    table->setColumnWidth(1, 60);
    winner->setParam(saved);
    EXPECT_EQ(table->columnWidth(1), 151);
}

TEST_F(OptionWinnerWidgetTest, NoTimerWorkWithoutAnUnderlying)
{
    winner->getUnderlyingCombo()->clear();
    panel->show();
    quoteAt("10000010", 0.15);
    winner->slotTimeOut();
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(winner->dirtyKeyCount(), 0) << "the rebuild on the empty choice dropped the subscriptions";
}

TEST_F(OptionWinnerWidgetTest, LooksRightInBothThemes)
{
    TC::CProfitLossAnalysisWidget* analysis = new TC::CProfitLossAnalysisWidget(panel.get());
    winner->setAnalysisWidget(analysis);
    chooseForecast(TC::WPD_RANGE);
    quoteAt("10000020", 0.04);
    quoteAt("10000021", 0.07);
    quoteAt("10000011", 0.08);
    quoteAt("10000012", 0.05);
    panel->resize(1100, 480);
    winner->setGeometry(0, 0, 1100, 260);
    analysis->setGeometry(0, 262, 1100, analysis->height());
    panel->show();
    winner->slotTimeOut();
    table->radioOf(3)->click();
    table->updateTable();
    testsupport::waitUntil([] { return false; }, 100);
    const QImage dark = panel->grab().toImage();
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(QStringLiteral("light")));
    testsupport::waitUntil([] { return false; }, 100);
    const QImage light = panel->grab().toImage();
    WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
    EXPECT_NE(dark, light);
    EXPECT_EQ(analysis->texts.profitRange, QStringLiteral("盈利区间:2.880与3.220之间"));
    if (const char* keep = std::getenv("OPTDESK_KEEP_SCREENSHOTS")) {
        const QDir dir(QString::fromLocal8Bit(keep));
        dark.save(dir.filePath(QStringLiteral("winner-dark.png")));
        light.save(dir.filePath(QStringLiteral("winner-light.png")));
    }
}

}  // namespace
