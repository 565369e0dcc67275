// The chain table's schema at work: rows paired by strike, adjusted contracts
// apart, the order buttons, shading and fixed colours, theme changes, hiding by
// trader type, the selected code, and the resets of type changes.
#include "board/coptionpricettable.h"
#include "boardfixture.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/cwidgetlist.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QTableView>

namespace {

using boardtest::BoardTest;
using boardtest::OptionSpec;

class PriceTTable : public BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        table = std::make_unique<TC::COptionPriceTTable>(nullptr);
        tester = std::make_unique<QAbstractItemModelTester>(table->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override
    {
        tester.reset();
        table.reset();
        BoardTest::TearDown();
    }

    QString key(int row, int column) { return table->model()->cellTextColorKey(row, column); }
    QString background(int row, int column) { return table->model()->cellBackgroundKey(row, column); }
    QString text(int row, int column) { return table->itemText(row, column); }

    // Publishes an underlying price and one quote per option of the November chain.
    void publishChain(double undlLast)
    {
        publish(quote("510050", undlLast, 3.0));
        for (int i = 0; i < 4; ++i) {
            publish(quote("1000001" + std::to_string(i), 0.10 + 0.01 * i, 0.10));
            publish(quote("1000002" + std::to_string(i), 0.20 - 0.01 * i, 0.20));
        }
    }

    std::unique_ptr<TC::COptionPriceTTable> table;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(PriceTTable, PutsFirstStillEndWithTheCallAtElementZero)
{
    table->setInstrument({"10000020.SH", "10000021.SH", "10000010.SH", "10000011.SH"});
    const QMap<int, QStringList>& rows = table->getRowCodes();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0], (QStringList{"10000010.SH", "10000020.SH"}));
    EXPECT_EQ(rows[1], (QStringList{"10000011.SH", "10000021.SH"}));
    EXPECT_EQ(table->rowCount(), 2);
    EXPECT_EQ(table->rowOfCode("10000021.SH"), 1);
}

TEST_F(PriceTTable, CodesUnknownOrRepeatedTakeNoRow)
{
    table->setInstrument({"99999999.SH", "10000010.SH", "10000010.SH"});
    ASSERT_EQ(table->getRowCodes().size(), 1);
    EXPECT_EQ(table->getRowCodes()[0], QStringList{"10000010.SH"});
}

TEST_F(PriceTTable, AdjustedCallAndNormalPutOfOneStrikeTakeTwoRows)
{
    market::TInstrumentList list = boardtest::defaultUniverse();
    OptionSpec adjusted;
    adjusted.code = "10000051";
    adjusted.strike = 3.0;
    adjusted.adjusted = true;
    adjusted.unit = 10150;
    list.push_back(boardtest::option(adjusted));
    installUniverse(list);
    publish(quote("510050", 3.0, 3.0));
    publish(quote("10000051", 0.1, 0.1));
    publish(quote("10000021", 0.1, 0.1));

    table->setInstrument({"10000051.SH", "10000021.SH"});
    ASSERT_EQ(table->getRowCodes().size(), 2);
    table->updateAllTable();
    EXPECT_EQ(text(0, 16), QStringLiteral("3.0000A"));
    EXPECT_EQ(text(1, 16), QStringLiteral("3.0000"));
}

TEST_F(PriceTTable, SingleCallWithoutPutLeavesTheRightHalfEmpty)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH"});
    table->updateAllTable();
    ASSERT_EQ(table->rowCount(), 1);
    EXPECT_EQ(text(0, 15), QStringLiteral("10000011.SH"));
    for (int column = 17; column < 32; ++column) {
        EXPECT_TRUE(text(0, column).isEmpty()) << "column " << column;
        EXPECT_EQ(table->itemWidget(0, column), nullptr) << "column " << column;
    }
}

TEST_F(PriceTTable, RowsSortByTheNumberOfTheStrike)
{
    market::TInstrumentList list = boardtest::defaultUniverse();
    for (double strike : {10.0, 9.5}) {
        OptionSpec def;
        def.code = strike > 9.9 ? "10000061" : "10000062";
        def.strike = strike;
        list.push_back(boardtest::option(def));
    }
    OptionSpec adjusted;
    adjusted.code = "10000063";
    adjusted.strike = 2.95;
    adjusted.adjusted = true;
    list.push_back(boardtest::option(adjusted));
    installUniverse(list);
    publish(quote("510050", 3.0, 3.0));
    const QStringList codes = {"10000061.SH", "10000012.SH", "10000063.SH", "10000062.SH", "10000010.SH"};
    for (const QString& code : codes) {
        publish(quote(code.left(8).toStdString(), 0.1, 0.1));
    }
    table->setInstrument(codes);
    table->updateAllTable();
    QStringList shown;
    for (int position = 0; position < table->rowCount(); ++position) {
        shown << text(table->rowID(position), 16);
    }
    EXPECT_EQ(shown, (QStringList{"2.9000", "2.9500A", "3.1000", "9.5000", "10.0000"}));
    // Row ids stay what setInstrument gave.
    EXPECT_EQ(table->rowOfCode("10000061.SH"), 0);
}

TEST_F(PriceTTable, SetTableTypeWithThePresentTypeChangesNothing)
{
    publishChain(3.0);
    table->setInstrument({"10000010.SH", "10000020.SH"});
    table->updateAllTable();
    table->setItemText(0, 11, QStringLiteral("marker"));
    const int made = table->buttonListsMade();
    table->setTableType(TC::PTT_QUOTE);
    EXPECT_EQ(text(0, 11), QStringLiteral("marker"));
    EXPECT_EQ(table->buttonListsMade(), made);
    EXPECT_EQ(table->getRowCodes().size(), 1);
}

TEST_F(PriceTTable, SetTradeTypeWithThePresentTypeResetsFully)
{
    publishChain(3.0);
    table->setInstrument({"10000010.SH", "10000020.SH"});
    table->updateAllTable();
    table->setItemText(0, 11, QStringLiteral("marker"));
    table->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_NE(text(0, 11), QStringLiteral("marker"));
    // The rows come back from the quote client.
    EXPECT_EQ(text(0, 15), QStringLiteral("10000010.SH"));
    EXPECT_EQ(text(0, 17), QStringLiteral("10000020.SH"));
}

TEST_F(PriceTTable, RiskSetHidesImportedGreeksWhileTheImportIsOff)
{
    const QVector<int> imported = {3, 5, 7, 9, 10, 11, 34, 32, 30, 28, 27, 26};
    table->setTableType(TC::PTT_RISK);
    for (int column = 0; column < table->columnCount(); ++column) {
        EXPECT_EQ(table->columnVisible(column), !imported.contains(column)) << "column " << column;
    }
    TC::CTradeSetting setting = store->tradeSetting();
    setting.autoImportExGreeks = true;
    store->setTradeSetting(setting);
    table->resetTable();
    for (int column : imported) {
        EXPECT_TRUE(table->columnVisible(column)) << "column " << column;
    }
    // Switching off again hides them only at the next reset.
    setting.autoImportExGreeks = false;
    store->setTradeSetting(setting);
    EXPECT_TRUE(table->columnVisible(3));
    table->resetTable();
    for (int column : imported) {
        EXPECT_FALSE(table->columnVisible(column)) << "column " << column;
    }
    // The other sets never hide them.
    table->setTableType(TC::PTT_QUOTE);
    EXPECT_TRUE(table->columnVisible(3));
}

TEST_F(PriceTTable, CreateButtonMakesTheOpenAndClosePair)
{
    EXPECT_EQ(table->createButton(-1, TC::BC_BUY, table.get()), nullptr);
    struct Case {
        TC::ButtonColor color;
        const char* a;
        const char* b;
    };
    const Case cases[] = {{TC::BC_COVERED, "clr_global_fall", "clr_global_rise"},
                          {TC::BC_BUY, "clr_global_rise", "clr_global_rise"},
                          {TC::BC_SELL, "clr_global_fall", "clr_global_fall"},
                          {static_cast<TC::ButtonColor>(7), "", ""}};
    for (const Case& c : cases) {
        std::unique_ptr<WG::CWidgetList> list(table->createButton(304, c.color, nullptr));
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->width(), 50);
        const QList<WG::CPushButton*> buttons = list->findChildren<WG::CPushButton*>();
        ASSERT_EQ(buttons.size(), 2);
        EXPECT_EQ(buttons[0]->id(), 304);
        EXPECT_EQ(buttons[0]->text(), QStringLiteral("开"));
        EXPECT_EQ(buttons[0]->currentTextColorKey(), QString::fromLatin1(c.a));
        EXPECT_EQ(buttons[1]->id(), 305);
        EXPECT_EQ(buttons[1]->text(), QStringLiteral("平"));
        EXPECT_EQ(buttons[1]->currentTextColorKey(), QString::fromLatin1(c.b));
        EXPECT_EQ(buttons[0]->size(), QSize(24, 21));
    }
}

TEST_F(PriceTTable, OrderButtonsCarryRowTimesHundredPlusTheirIndex)
{
    publishChain(3.0);
    table->setInstrument({"10000010.SH", "10000020.SH", "10000011.SH", "10000021.SH"});
    table->updateAllTable();
    struct Cell {
        int column;
        int offset;
    };
    for (int row = 0; row < 2; ++row) {
        for (const Cell& cell : {Cell{11, 0}, Cell{12, 2}, Cell{13, 4}, Cell{19, 6}, Cell{20, 8}}) {
            QWidget* widget = table->itemWidget(row, cell.column);
            ASSERT_NE(widget, nullptr) << row << " " << cell.column;
            const QList<WG::CPushButton*> buttons = widget->findChildren<WG::CPushButton*>();
            ASSERT_EQ(buttons.size(), 2);
            EXPECT_EQ(buttons[0]->id(), row * 100 + cell.offset);
            EXPECT_EQ(buttons[1]->id(), row * 100 + cell.offset + 1);
        }
    }
}

TEST_F(PriceTTable, RowUpdatesKeepTheButtonsTheyShow)
{
    publishChain(3.0);
    table->setInstrument({"10000010.SH", "10000020.SH"});
    table->updateAllTable();
    QWidget* before = table->itemWidget(0, 13);
    const int made = table->buttonListsMade();
    const int widgets = QApplication::allWidgets().size();
    for (int i = 0; i < 200; ++i) {
        table->updateTableByPrice(quote("10000010", 0.1 + 0.0001 * i, 0.1));
        table->updateTableByPrice(quote("10000020", 0.2 - 0.0001 * i, 0.2));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(table->itemWidget(0, 13), before);
    EXPECT_EQ(table->buttonListsMade(), made);
    EXPECT_EQ(QApplication::allWidgets().size(), widgets);
    EXPECT_EQ(text(0, 10), QStringLiteral("0.1199"));
}

TEST_F(PriceTTable, InTheMoneyShadingBySide)
{
    publishChain(3.05);  // strikes 2.9, 3.0 are calls in the money; 3.1, 3.2 puts
    table->setInstrument({"10000010.SH", "10000020.SH", "10000011.SH", "10000021.SH", "10000012.SH",
                          "10000022.SH", "10000013.SH", "10000023.SH"});
    table->updateAllTable();
    const QString itm = QStringLiteral("tc_clr_priceT_actual_value_background");
    const QString otm = QStringLiteral("tc_clr_priceT_null_value_background");
    const QString expectedCall[] = {itm, itm, otm, otm};
    const QString expectedPut[] = {otm, otm, itm, itm};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column <= 15; ++column) {
            EXPECT_EQ(background(row, column), expectedCall[row]) << row << " " << column;
        }
        EXPECT_TRUE(background(row, 16).isEmpty());
        for (int column = 17; column <= 31; ++column) {
            EXPECT_EQ(background(row, column), expectedPut[row]) << row << " " << column;
        }
    }
}

TEST_F(PriceTTable, AtTheMoneyCountsAsOutOfTheMoneyOnBothSides)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    EXPECT_EQ(background(0, 0), QStringLiteral("tc_clr_priceT_null_value_background"));
    EXPECT_EQ(background(0, 31), QStringLiteral("tc_clr_priceT_null_value_background"));
}

TEST_F(PriceTTable, AbsentUnderlyingPriceShadesCallsOnly)
{
    publishChain(utils::kAbsentDouble);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    EXPECT_EQ(background(0, 0), QStringLiteral("tc_clr_priceT_actual_value_background"));
    EXPECT_EQ(background(0, 31), QStringLiteral("tc_clr_priceT_null_value_background"));
}

TEST_F(PriceTTable, NoUnderlyingRecordMeansNoShading)
{
    publish(quote("10000011", 0.1, 0.1));
    table->setInstrument({"10000011.SH"});
    table->updateAllTable();
    EXPECT_TRUE(background(0, 0).isEmpty());
    EXPECT_EQ(text(0, 15), QStringLiteral("10000011.SH"));
}

TEST_F(PriceTTable, FixedTextColoursOfNumberTotalAndStrikeColumns)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    for (int column : {2, 3, 4, 14, 18, 27, 28, 29}) {
        EXPECT_EQ(key(0, column), QStringLiteral("tc_clr_priceT_number")) << column;
    }
    EXPECT_EQ(key(0, 5), QStringLiteral("tc_clr_priceT_total"));
    EXPECT_EQ(key(0, 26), QStringLiteral("tc_clr_priceT_total"));
    EXPECT_EQ(key(0, 16), QStringLiteral("tc_clr_pricet_exercise_price"));
}

TEST_F(PriceTTable, ThemeChangeRecoloursFromThePresentQuoteWithoutTexts)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    const QString lastText = text(0, 10);
    for (int column : {6, 7, 8, 9, 10, 21, 22, 23, 24, 25, 0, 31, 16}) {
        table->setItemTextColorKey(0, column, "clr_text_default");
        table->setItemBackgroundColorKey(0, column, "");
    }
    // The call rose (0.11 against 0.10), the put fell (0.19 against 0.20).
    table->themeChanged();
    for (int column : {6, 7, 8, 9, 10}) {
        EXPECT_EQ(key(0, column), QStringLiteral("tc_clr_priceT_rise")) << column;
    }
    for (int column : {21, 22, 23, 24, 25}) {
        EXPECT_EQ(key(0, column), QStringLiteral("tc_clr_priceT_fall")) << column;
    }
    EXPECT_EQ(key(0, 16), QStringLiteral("tc_clr_pricet_exercise_price"));
    EXPECT_EQ(background(0, 0), QStringLiteral("tc_clr_priceT_null_value_background"));
    EXPECT_EQ(text(0, 10), lastText);
}

TEST_F(PriceTTable, PriceSetThemeChangeLeavesBidAndAsk)
{
    publishChain(3.0);
    table->setTableType(TC::PTT_PRICE);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    table->setItemTextColorKey(0, 0, "clr_text_default");
    table->setItemTextColorKey(0, 2, "clr_text_default");
    table->themeChanged();
    EXPECT_EQ(key(0, 0), QStringLiteral("clr_text_default"));
    EXPECT_EQ(key(0, 2), QStringLiteral("tc_clr_priceT_rise"));
}

TEST_F(PriceTTable, HidingByTraderType)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_FALSE(table->columnVisible(9));
    EXPECT_FALSE(table->colListVisible(9));
    EXPECT_EQ(table->columnHeader(9), QStringLiteral("备兑"));
    table->setTableType(TC::PTT_INFO);
    EXPECT_FALSE(table->columnVisible(9));
    table->setTableType(TC::PTT_TARGET);
    EXPECT_FALSE(table->columnVisible(11));
    EXPECT_FALSE(table->colListVisible(11));
    table->setTableType(TC::PTT_RISK);
    EXPECT_FALSE(table->columnVisible(15));
    table->setTableType(TC::PTT_PRICE);
    EXPECT_FALSE(table->columnVisible(3));
    EXPECT_FALSE(table->columnVisible(5));
    EXPECT_TRUE(table->colListVisible(3));
    table->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    EXPECT_FALSE(table->columnVisible(3));
    table->setTableType(TC::PTT_QUOTE);
    EXPECT_TRUE(table->columnVisible(11));
    EXPECT_TRUE(table->colListVisible(11));
}

TEST_F(PriceTTable, SelectedCodeIsTheOptionOfTheClickedSide)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    EXPECT_EQ(table->getSelectStockCode(0, 3), QStringLiteral("10000011.SH"));
    EXPECT_EQ(table->getSelectStockCode(0, 16), QStringLiteral("10000011.SH"));
    EXPECT_EQ(table->getSelectStockCode(0, 17), QStringLiteral("10000021.SH"));
    EXPECT_EQ(table->getSelectStockCode(0, 30), QStringLiteral("10000021.SH"));
    table->setTableType(TC::PTT_INFO);
    EXPECT_EQ(table->getSelectStockCode(0, 13), QStringLiteral("10000011.SH"));
    EXPECT_EQ(table->getSelectStockCode(0, 14), QStringLiteral("10000021.SH"));
}

TEST_F(PriceTTable, DoClearDropsRowsAndKeepsNothingForLateQuotes)
{
    publishChain(3.0);
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->updateAllTable();
    table->doClear();
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(table->getRowCodes().isEmpty());
    table->updateTableByPrice(quote("10000011", 0.5, 0.1));
    EXPECT_EQ(table->rowCount(), 0);
    // A mode change keeps the row codes, a clear does not.
    table->setInstrument({"10000011.SH", "10000021.SH"});
    table->setTableType(TC::PTT_INFO);
    EXPECT_EQ(table->getRowCodes().size(), 1);
    EXPECT_EQ(table->rowCount(), 1);
}

}  // namespace
