// The chain panel as the host drives it: selection of underlying and expiry,
// the month tabs, the parameter string, the buffered quotes and the tick, the
// tool bar's figures, clearing, trade types and events it does not know.
#include "board/coptionpricetpanel.h"
#include "board/coptionpricettable.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "boardfixture.h"
#include "support/testsupport.h"
#include "toolkit/caccountscombobox.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/csimpletextwidget.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

#include <cstdlib>
#include <QApplication>

namespace {

using boardtest::BoardTest;

// A whole saved layout of a set: every column in order, 60 wide, one of them `width`.
QString fullLayout(int tableType, int traderType, int column, int width)
{
    QStringList parts{QStringLiteral("v1"), QStringLiteral("-1"), QStringLiteral("-1")};
    const int count = TC::CPriceTTableSchema::columns(tableType, traderType).size();
    for (int c = 0; c < count; ++c) {
        parts << QStringLiteral("%1:%2:1").arg(c).arg(c == column ? width : 60);
    }
    return parts.join(QLatin1Char(','));
}

// Records the events that reach it from below.
class CRecorder : public WG::CEventWidgetT<QWidget> {
public:
    struct Event {
        int code;
        int id;
        int arg;
        QString text;
        void* data;
    };
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        events.push_back({code, id, arg, text, data});
        return true;
    }
    std::vector<Event> events;
};

class PriceTPanel : public BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        publish(quote("510050", 3.05, 3.0));
        panel = std::make_unique<TC::COptionPriceTPanel>(7, nullptr);
        panel->resize(1600, 800);
    }
    void TearDown() override
    {
        panel.reset();
        BoardTest::TearDown();
    }
    void start(bool show = true)
    {
        if (show) {
            panel->show();
        }
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    }
    TC::COptionPriceTTable* chain() { return panel->getChainTable(); }
    QString cell(const QString& code, int column)
    {
        const int row = chain()->rowOfCode(code);
        return row < 0 ? QStringLiteral("<no row>") : chain()->itemText(row, column);
    }
    QString cellKey(const QString& code, int column)
    {
        return chain()->model()->cellTextColorKey(chain()->rowOfCode(code), column);
    }

    std::unique_ptr<TC::COptionPriceTPanel> panel;
};

TEST_F(PriceTPanel, NameFlagsAndStartState)
{
    EXPECT_EQ(panel->name(), QStringLiteral("pricet"));
    EXPECT_EQ(panel->widgetID(), 7);
    EXPECT_EQ(static_cast<int>(panel->supportedTraderTypes()), 1056);
    EXPECT_EQ(panel->getTraderType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(panel->getModeGroup()->checkedButton(), 0);
    EXPECT_EQ(panel->getTableConfigs().keys(), (QList<int>{0, 1, 2, 3}));
    EXPECT_EQ(panel->getQuickOrderCheck()->text(), QStringLiteral("启用价格快速下单"));
    EXPECT_EQ(panel->figureWidget(7)->getText(), QStringLiteral("剩余到期天数: "));
    EXPECT_EQ(panel->figureWidget(19)->getText(), QStringLiteral("金额: "));
    EXPECT_EQ(chain()->columnCount(), 32);
    EXPECT_FALSE(chain()->flag() & WG::BTF_COLUMN_MOVABLE);
    EXPECT_EQ(panel->getDateTabs()->height(), 24);
}

TEST_F(PriceTPanel, SelectionSubscribesEveryExpiryAndShowsTheFirst)
{
    start();
    EXPECT_EQ(panel->getUndlCombo()->currentText(), QStringLiteral("510050.SH"));
    EXPECT_TRUE(panel->hasUndlRequest());
    EXPECT_EQ(panel->quoteRequestCount(), 12);
    EXPECT_EQ(quotes->subscriberCount("10000041.SH"), 1);
    EXPECT_EQ(panel->getCurrentDate(), QStringLiteral("20261125"));
    EXPECT_EQ(chain()->getRowCodes().size(), 4);
    EXPECT_EQ(panel->figureWidget(8)->getText(), QStringLiteral("5"));
}

TEST_F(PriceTPanel, TwoExpiriesInOneMonthGiveOneTabForTheEarlier)
{
    start();
    const QMap<int, QString>& tabs = panel->getTabDates();
    EXPECT_EQ(tabs.size(), 2);
    EXPECT_EQ(tabs.value(24), QStringLiteral("20261125"));
    EXPECT_EQ(tabs.value(26), QStringLiteral("20261223"));
    EXPECT_FALSE(tabs.values().contains(QStringLiteral("20261127")));
    QStringList texts;
    for (WG::CPushButton* button : panel->getDateTabs()->buttons()) {
        texts << button->text();
    }
    EXPECT_EQ(texts, (QStringList{"2026年11月", "2026年12月"}));
    EXPECT_EQ(panel->getDateTabs()->checkedButton(), 24);
}

TEST_F(PriceTPanel, TabClickShowsItsExpiryWithoutNewRequests)
{
    start();
    const int requests = panel->quoteRequestCount();
    panel->getDateTabs()->button(26)->click();
    EXPECT_EQ(panel->getCurrentDate(), QStringLiteral("20261223"));
    ASSERT_EQ(chain()->getRowCodes().size(), 1);
    EXPECT_EQ(chain()->getRowCodes().first(), (QStringList{"10000041.SH", "10000042.SH"}));
    EXPECT_EQ(panel->quoteRequestCount(), requests);
    EXPECT_EQ(panel->figureWidget(8)->getText(), QStringLiteral("33"));
    // An id without a tab does nothing.
    panel->handleEvent(WG::UE_BUTTON_CLICKED, 25, 0, QString(), nullptr);
    EXPECT_EQ(panel->getCurrentDate(), QStringLiteral("20261223"));
}

TEST_F(PriceTPanel, ChainAfterATickRowByRow)
{
    start();
    auto call = quote("10000011", 0.12, 0.10);
    call->bidPrice1 = 0.119;
    call->askPrice1 = 0.121;
    call->volume = 1234;
    call->openInterest = 5678;
    publish(call);
    auto put = quote("10000021", 0.08, 0.10);
    put->bidPrice1 = 0.079;
    put->askPrice1 = 0.081;
    put->volume = 4321;
    put->openInterest = 8765;
    publish(put);
    EXPECT_EQ(panel->pendingQuoteCount(), 2);
    // Nothing reaches the table before the tick.
    EXPECT_TRUE(cell("10000011.SH", 10).isEmpty());
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(panel->pendingQuoteCount(), 0);

    const QString code = QStringLiteral("10000011.SH");
    const int row = chain()->rowOfCode(code);
    ASSERT_EQ(row, 1);
    auto calculator = nqservice::GreekAndOptionsCalculator::instance();
    const double callIv = calculator->calcCallImpliedVolatility(3.05, 3.0, 5, 0, 0.02, 0.12, 1.5);
    const double putIv = calculator->calcPutImpliedVolatility(3.05, 3.0, 5, 0, 0.02, 0.08, 1.5);
    ASSERT_TRUE(utils::isUsable(callIv));
    ASSERT_TRUE(utils::isUsable(putIv));
    const QStringList expected = {
        "4920.0000", "-",          "-0.0700",     QString::number(callIv, 'f', 4), "5678", "1234", "0.1190",
        "0.1210",    "20.00%",     "0.0200",      "0.1200",  "",        "",      "",        "0",
        "10000011.SH", "3.0000",   "10000021.SH", "0",       "",        "",      "0.0800",  "-0.0200",
        "-20.00%",   "0.0810",     "0.0790",      "4321",    "8765",    QString::number(putIv, 'f', 4),
        "-0.0800",   "-",          "4920.0000"};
    for (int column = 0; column < 32; ++column) {
        EXPECT_EQ(chain()->itemText(row, column), expected.at(column)) << "column " << column;
    }
    for (int column : {6, 7, 8, 9, 10}) {
        EXPECT_EQ(cellKey(code, column), QStringLiteral("tc_clr_priceT_rise")) << column;
    }
    for (int column : {21, 22, 23, 24, 25}) {
        EXPECT_EQ(cellKey(code, column), QStringLiteral("tc_clr_priceT_fall")) << column;
    }
    for (int column : {2, 3, 4, 14, 18, 27, 28, 29}) {
        EXPECT_EQ(cellKey(code, column), QStringLiteral("tc_clr_priceT_number")) << column;
    }
    EXPECT_EQ(cellKey(code, 16), QStringLiteral("tc_clr_pricet_exercise_price"));
    struct Buttons {
        int column;
        int offset;
    };
    for (const Buttons& b : {Buttons{11, 0}, Buttons{12, 2}, Buttons{13, 4}, Buttons{19, 6}, Buttons{20, 8}}) {
        QWidget* widget = chain()->itemWidget(row, b.column);
        ASSERT_NE(widget, nullptr) << b.column;
        const QList<WG::CPushButton*> buttons = widget->findChildren<WG::CPushButton*>();
        ASSERT_EQ(buttons.size(), 2);
        EXPECT_EQ(buttons[0]->id(), row * 100 + b.offset);
        EXPECT_EQ(buttons[0]->text(), QStringLiteral("开"));
        EXPECT_EQ(buttons[1]->text(), QStringLiteral("平"));
    }
    // Rows without a quote stay empty.
    EXPECT_TRUE(cell("10000010.SH", 16).isEmpty());
    EXPECT_TRUE(cell("10000010.SH", 10).isEmpty());
    // The tool bar's figures of the underlying.
    EXPECT_EQ(panel->figureWidget(10)->getText(), QStringLiteral("50ETF"));
    EXPECT_EQ(panel->figureWidget(12)->getText(), QStringLiteral("3.0500"));
    EXPECT_EQ(panel->figureWidget(12)->colorKey(), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(panel->figureWidget(14)->getText(), QStringLiteral("0.050"));
}

TEST_F(PriceTPanel, BurstOfOneCodeAppliesOnlyTheNewest)
{
    start();
    QAbstractItemModelTester tester(chain()->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int i = 1; i <= 1000; ++i) {
        publish(quote("10000011", 0.1 + 0.0001 * i, 0.10));
    }
    EXPECT_EQ(panel->pendingQuoteCount(), 1);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000011.SH", 10), QStringLiteral("0.2000"));
    EXPECT_EQ(panel->pendingQuoteCount(), 0);
    // A second tick without quotes changes nothing.
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000011.SH", 10), QStringLiteral("0.2000"));
}

TEST_F(PriceTPanel, HiddenInactivePanelKeepsItsBufferUntilShown)
{
    start(false);
    ASSERT_FALSE(panel->isVisible());
    ASSERT_FALSE(panel->isActive());
    for (int minute = 0; minute < 60; ++minute) {
        publish(quote("10000011", 0.10 + 0.001 * minute, 0.10));
        publish(quote("10000021", 0.20 - 0.001 * minute, 0.20));
        panel->onTimer(TC::TUF_QUOTE);
    }
    EXPECT_EQ(panel->pendingQuoteCount(), 2);
    EXPECT_TRUE(cell("10000011.SH", 10).isEmpty());
    EXPECT_TRUE(panel->figureWidget(12)->getText().isEmpty());
    panel->show();
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000011.SH", 10), QStringLiteral("0.1590"));
    EXPECT_EQ(cell("10000021.SH", 21), QStringLiteral("0.1410"));
    EXPECT_EQ(panel->pendingQuoteCount(), 0);
}

TEST_F(PriceTPanel, ActiveButHiddenPanelStillApplies)
{
    start(false);
    panel->setActive(true, false);
    publish(quote("10000011", 0.13, 0.10));
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000011.SH", 10), QStringLiteral("0.1300"));
}

TEST_F(PriceTPanel, StockOptionsHideTheOpenInterestOnItsFirstValue)
{
    start();
    EXPECT_FALSE(panel->figureWidget(17)->isHidden());
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_FALSE(panel->figureWidget(17)->isHidden());  // no valid open interest yet
    auto undl = quote("510050", 3.06, 3.0);
    undl->openInterest = 123456;
    publish(undl);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_TRUE(panel->figureWidget(17)->isHidden());
    EXPECT_TRUE(panel->figureWidget(18)->isHidden());
    EXPECT_EQ(panel->figureWidget(18)->getText(), QStringLiteral("123456"));
}

TEST_F(PriceTPanel, ClearingTheTitleKeepsTheOpenInterest)
{
    start();
    auto undl = quote("510050", 3.06, 3.0);
    undl->openInterest = 4321;
    undl->volume = 999;
    undl->amount = 12345.0;
    publish(undl);
    panel->onTimer(TC::TUF_QUOTE);
    ASSERT_EQ(panel->figureWidget(16)->getText(), QStringLiteral("999"));
    ASSERT_EQ(panel->figureWidget(20)->getText(), QStringLiteral("12345"));
    // No underlying: every tick clears.
    panel->getUndlCombo()->clear();
    publish(quote("10000011", 0.13, 0.10));
    panel->onTimer(TC::TUF_QUOTE);
    for (int id : {10, 12, 14, 16, 20}) {
        EXPECT_TRUE(panel->figureWidget(id)->getText().isEmpty()) << id;
    }
    EXPECT_EQ(panel->figureWidget(18)->getText(), QStringLiteral("4321"));
    EXPECT_EQ(chain()->rowCount(), 0);
    EXPECT_EQ(panel->quoteRequestCount(), 0);
    EXPECT_EQ(panel->pendingQuoteCount(), 0);
    EXPECT_EQ(quotes->subscriberCount("10000011.SH"), 0);
}

TEST_F(PriceTPanel, UnderlyingWithoutExpiriesLeavesNoExpiryState)
{
    start();
    // The same underlying, but its options are gone from the exchange's tables.
    market::TInstrumentList list;
    list.push_back(boardtest::underlying("510050", "SH", "50ETF", 3.0));
    list.push_back(boardtest::underlying("510300", "SH", "300ETF", 4.0));
    boardtest::OptionSpec def;
    def.code = "10000091";
    def.undlCode = "510300";
    list.push_back(boardtest::option(def));
    installUniverse(list);
    panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(panel->getUndlCombo()->currentText(), QStringLiteral("510300.SH"));
    EXPECT_EQ(panel->getCurrentDate(), QStringLiteral("20261125"));
    EXPECT_EQ(chain()->getRowCodes().size(), 1);
}

TEST_F(PriceTPanel, ParameterStringFieldsAndExtraSections)
{
    start();
    panel->setParam(QStringLiteral("a;b;c;d;e|greeks|1|ladder|extra"));
    EXPECT_EQ(panel->getTableConfigs().size(), 5);
    EXPECT_EQ(panel->getTableConfigs().value(4), QStringLiteral("e"));
    EXPECT_TRUE(panel->getQuickOrderCheck()->isChecked());
    const QString saved = panel->param();
    const QStringList sections = saved.split(QLatin1Char('|'));
    ASSERT_GE(sections.size(), 2);
    const QStringList layouts = sections.at(0).split(QLatin1Char(';'));
    ASSERT_EQ(layouts.size(), 5);
    EXPECT_EQ(layouts.at(0), chain()->saveConfigStr());  // the present type writes its live layout
    EXPECT_EQ(layouts.mid(1), (QStringList{"b", "c", "d", "e"}));
    EXPECT_FALSE(saved.contains(QStringLiteral("extra")));
    EXPECT_TRUE(sections.contains(QStringLiteral("1")));
}

TEST_F(PriceTPanel, EmptyParameterStringChangesNothing)
{
    start();
    const QString before = panel->param();
    panel->setParam(QString());
    EXPECT_EQ(panel->param(), before);
    EXPECT_FALSE(panel->getQuickOrderCheck()->isChecked());
    EXPECT_EQ(panel->getTableConfigs().size(), 4);
}

TEST_F(PriceTPanel, SetParamInRiskModeLoadsTheQuoteLayout)
{
    start();
    panel->getModeGroup()->button(2)->click();
    ASSERT_EQ(chain()->getTableType(), TC::PTT_RISK);
    ASSERT_NE(chain()->columnWidth(5), 123);
    panel->setParam(fullLayout(TC::PTT_QUOTE, 32, 5, 123) + QLatin1Char(';') + fullLayout(TC::PTT_TARGET, 32, 5, 77) +
                    QStringLiteral(";;"));
    EXPECT_EQ(chain()->getTableType(), TC::PTT_RISK);
    EXPECT_EQ(chain()->columnWidth(5), 123);
}

TEST_F(PriceTPanel, ModeButtonsSwitchSetsAndKeepLayoutsPerSet)
{
    start();
    publish(quote("10000011", 0.13, 0.10));
    panel->onTimer(TC::TUF_QUOTE);
    chain()->setColumnWidth(3, 111);
    panel->getModeGroup()->button(3)->click();
    EXPECT_EQ(chain()->getTableType(), TC::PTT_INFO);
    EXPECT_EQ(chain()->columnCount(), 26);
    EXPECT_EQ(cell("10000011.SH", 7), QStringLiteral("0.1300"));
    EXPECT_TRUE(panel->getTableConfigs().value(0).contains(QStringLiteral("3:111:1")));
    panel->getModeGroup()->button(0)->click();
    EXPECT_EQ(chain()->getTableType(), TC::PTT_QUOTE);
    EXPECT_EQ(chain()->columnWidth(3), 111);
    EXPECT_EQ(cell("10000011.SH", 10), QStringLiteral("0.1300"));
}

TEST_F(PriceTPanel, UnknownEventsReachTheBaseUnchanged)
{
    CRecorder recorder;
    panel.reset(new TC::COptionPriceTPanel(7, &recorder));
    recorder.events.clear();  // what the controls reported while they were built
    int payload = 0;
    EXPECT_TRUE(panel->handleEvent(9999, 42, -3, QStringLiteral("text"), &payload));
    ASSERT_EQ(recorder.events.size(), 1U);
    EXPECT_EQ(recorder.events[0].code, 9999);
    EXPECT_EQ(recorder.events[0].id, 42);
    EXPECT_EQ(recorder.events[0].arg, -3);
    EXPECT_EQ(recorder.events[0].text, QStringLiteral("text"));
    EXPECT_EQ(recorder.events[0].data, &payload);
    // A combo change of another id is not the underlying selector's.
    panel->handleEvent(WG::UE_COMBO_CHANGED, 6, 0, QString(), nullptr);
    EXPECT_EQ(recorder.events.size(), 2U);
    panel.reset();
}

TEST_F(PriceTPanel, OtherTradeTypesReachTheTablesButNotTheCombo)
{
    start();
    panel->setTradeType(static_cast<nqservice::EVqTraderType>(2));
    EXPECT_EQ(chain()->getTradeType(), 2);
    EXPECT_EQ(chain()->columnCount(), 28);
    EXPECT_EQ(panel->getUndlCombo()->getTradeType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(panel->getTraderType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(panel->getTradeType(), 2);
    panel->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(panel->getUndlCombo()->getTradeType(), nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(panel->getTraderType(), nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    // The fixed universe has no future options: nothing to choose.
    EXPECT_TRUE(panel->getUndlCombo()->currentText().isEmpty());
}

TEST_F(PriceTPanel, QuickOrderCheckShowsTheAccountCombo)
{
    start();
    EXPECT_FALSE(panel->getAccountCombo()->isVisible());
    panel->getQuickOrderCheck()->setChecked(true);
    EXPECT_TRUE(panel->getAccountCombo()->isVisible());
    EXPECT_EQ(panel->getAccountCombo()->traderType(), nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    panel->getQuickOrderCheck()->setChecked(false);
    EXPECT_FALSE(panel->getAccountCombo()->isVisible());
}

TEST_F(PriceTPanel, HostCallsInAnyOrderBeforeSelection)
{
    panel->onTimer(TC::TUF_QUOTE);
    panel->loadAccounts();
    panel->setParam(QStringLiteral("||0"));
    panel->handleEvent(WG::UE_ACCOUNTS_CHANGED, 0, 0, QString(), nullptr);
    panel->handleEvent(WG::UE_CELL_PRIMARY, 1000, 0, QStringLiteral("3"), nullptr);
    panel->onTablePriceData(boost::shared_ptr<TC::CPriceData>());
    EXPECT_EQ(panel->pendingQuoteCount(), 0);
    start();
    EXPECT_EQ(chain()->getRowCodes().size(), 4);
}

TEST_F(PriceTPanel, QuotesFromAServiceThreadWaitForTheTick)
{
    start();
    std::thread feed([this] {
        for (int i = 1; i <= 500; ++i) {
            publish(quote("10000012", 0.05 + 0.0001 * i, 0.05));
            publish(quote("10000022", 0.15 + 0.0001 * i, 0.15));
        }
    });
    feed.join();
    EXPECT_EQ(panel->pendingQuoteCount(), 2);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000012.SH", 10), QStringLiteral("0.1000"));
    EXPECT_EQ(cell("10000022.SH", 21), QStringLiteral("0.2000"));
}

}  // namespace

namespace {

TEST_F(PriceTPanel, FirstQuotesAfterARefreshWidenTheColumns)
{
    start();
    const int before = chain()->columnWidth(1);
    auto call = quote("10000011", 0.12, 0.10);
    call->optionStatus = nqservice::SOS_RECENTLY_ADJUSTED;
    publish(call);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(cell("10000011.SH", 1), QStringLiteral("近期调整"));
    EXPECT_GT(chain()->columnWidth(1), before);
    // A saved layout keeps its widths.
    panel->setParam(fullLayout(TC::PTT_QUOTE, 32, 1, 40));
    panel->getDateTabs()->button(24)->click();
    publish(call);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(chain()->columnWidth(1), 40);
}

}  // namespace

namespace {

TEST_F(PriceTPanel, OrderButtonClicksStayInTheTable)
{
    start();
    publish(quote("10000010", 0.13, 0.10));
    panel->onTimer(TC::TUF_QUOTE);
    const int row = chain()->rowOfCode("10000010.SH");
    ASSERT_EQ(row, 0);
    // Row 0's call "卖出" carries id 2, the same number as the panel's "风险" button.
    QWidget* cellButtons = chain()->itemWidget(row, 12);
    ASSERT_NE(cellButtons, nullptr);
    WG::CPushButton* open = cellButtons->findChildren<WG::CPushButton*>().value(0);
    ASSERT_NE(open, nullptr);
    ASSERT_EQ(open->id(), 2);
    open->click();
    EXPECT_EQ(chain()->getLastOrderButtonId(), 2);
    EXPECT_EQ(chain()->getTableType(), TC::PTT_QUOTE);
    EXPECT_EQ(panel->getModeGroup()->checkedButton(), 0);
}

}  // namespace

namespace {

TEST_F(PriceTPanel, AnEmptyFirstFieldStoresAnEmptyQuoteLayout)
{
    start();
    panel->setParam(fullLayout(TC::PTT_QUOTE, 32, 5, 123) + QStringLiteral(";a;b;c"));
    ASSERT_FALSE(panel->getTableConfigs().value(0).isEmpty());
    panel->setParam(QStringLiteral("|x|1"));
    EXPECT_EQ(panel->getTableConfigs().value(0), QString());
    EXPECT_EQ(panel->getTableConfigs().value(1), QStringLiteral("a")) << "the other layouts stay";
    EXPECT_TRUE(panel->getQuickOrderCheck()->isChecked());
}

TEST_F(PriceTPanel, ColumnLayoutsAreKeptPerTraderType)
{
    start();
    const int stockColumns = chain()->columnCount();
    panel->setParam(fullLayout(TC::PTT_QUOTE, 32, 5, 123));
    ASSERT_EQ(chain()->columnWidth(5), 123);
    const QString stockLayout = chain()->saveConfigStr();

    panel->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    const int futureColumns = chain()->columnCount();
    ASSERT_NE(futureColumns, stockColumns);
    EXPECT_EQ(panel->getTableConfigs().value(0), QString()) << "the futures board starts from its own default";
    // Every column of the futures set stands where its set puts it.
    for (int visual = 0; visual < futureColumns; ++visual) {
        EXPECT_EQ(chain()->columnID(visual), visual);
    }
    // A layout of the stock set is refused by the futures table, whoever hands it over.
    chain()->loadConfigStr(stockLayout);
    for (int visual = 0; visual < futureColumns; ++visual) {
        EXPECT_EQ(chain()->columnID(visual), visual);
    }
    panel->setParam(fullLayout(TC::PTT_QUOTE, 1024, 3, 88));
    EXPECT_EQ(chain()->columnWidth(3), 88);

    panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_EQ(chain()->columnCount(), stockColumns);
    EXPECT_EQ(chain()->columnWidth(5), 123) << "the stock layout comes back";
    EXPECT_TRUE(panel->param().startsWith(chain()->saveConfigStr()));
    panel->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(chain()->columnWidth(3), 88) << "and the futures one";
}

TEST_F(PriceTPanel, TheStrikeStandsInTheMiddleOfANarrowView)
{
    panel->resize(700, 500);
    start();
    panel->onTimer(TC::TUF_QUOTE);
    QApplication::processEvents();
    QTableView* view = chain()->tableView();
    QScrollBar* bar = view->horizontalScrollBar();
    ASSERT_GT(bar->maximum(), 0) << "the set is wider than the view";
    const int strike = chain()->getStrikeColumn();
    const QHeaderView* header = view->horizontalHeader();
    auto strikeCentreOffset = [&] {
        const int centre = header->sectionViewportPosition(strike) + header->sectionSize(strike) / 2;
        return centre - view->viewport()->width() / 2;
    };
    EXPECT_LE(std::abs(strikeCentreOffset()), 1);
    // Both sides keep columns in view: the call's code left of the strike, the put's right.
    const int callCode = TC::CPriceTTableSchema::codeColumn(TC::PTT_QUOTE, 32, true);
    const int putCode = TC::CPriceTTableSchema::codeColumn(TC::PTT_QUOTE, 32, false);
    EXPECT_GE(header->sectionViewportPosition(callCode), 0);
    EXPECT_LE(header->sectionViewportPosition(putCode) + header->sectionSize(putCode), view->viewport()->width());

    // The trader's own scroll stands until the set changes.
    bar->triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_EQ(bar->value(), 0);
    panel->onTimer(TC::TUF_QUOTE);
    EXPECT_EQ(bar->value(), 0);
    panel->getModeGroup()->button(2)->click();
    panel->getModeGroup()->button(0)->click();
    panel->onTimer(TC::TUF_QUOTE);
    QApplication::processEvents();
    EXPECT_LE(std::abs(strikeCentreOffset()), 1);
}

TEST_F(PriceTPanel, ScrollBarsTakeTheThemesColours)
{
    start();
    QScrollBar* bar = chain()->tableView()->horizontalScrollBar();
    WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
    const QString dark = WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background"))->name(QColor::HexArgb);
    EXPECT_TRUE(bar->styleSheet().contains(dark));
    WG::CUiResource::get()->setTheme(QStringLiteral("light"));
    const QString light = WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background"))->name(QColor::HexArgb);
    ASSERT_NE(dark, light);
    EXPECT_TRUE(bar->styleSheet().contains(light));
    EXPECT_TRUE(chain()->tableView()->verticalScrollBar()->styleSheet().contains(light));
    // What is painted: the groove in the theme's table colour, not the platform's light grey.
    // A bar of the same style with a small handle at its left shows the groove at its right.
    QScrollBar probe(Qt::Horizontal);
    probe.setStyleSheet(bar->styleSheet());
    probe.setRange(0, 1000);
    probe.setPageStep(10);
    probe.setValue(0);
    probe.resize(200, 12);
    const QImage picture = probe.grab().toImage();
    EXPECT_EQ(picture.pixelColor(picture.width() - 3, picture.height() / 2).name(),
              WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background"))->name());
    WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
}

}  // namespace
