// The strategy table: rows from a basket and from the code entry, edits written
// back, ticks and directions told upward, live quotes, margin, Greeks and the
// statistics row.
#include "strategy/cstrategymanagetable.h"
#include "strategy/cstrategylegfigures.h"

#include "strategyfixture.h"

#include "seam/formatters.h"
#include "seam/uievents.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QFileInfo>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QValidator>

#include <cmath>
#include <memory>
#include <thread>

using strategytest::leg;
using strategytest::settle;
using strategytest::writeBasket;
using TC::CStrategyManageTable;

namespace {

class StrategyTableTest : public strategytest::StrategyTest {
protected:
    void SetUp() override
    {
        StrategyTest::SetUp();
        table = new CStrategyManageTable(8, recorder);
        recorder->resize(1400, 400);
        tester = std::make_unique<QAbstractItemModelTester>(table->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override
    {
        tester.reset();
        StrategyTest::TearDown();
    }
    // Types text into a cell's editor and presses Return.
    void editCell(int row, int column, const QString& text)
    {
        recorder->show();
        table->updateTable();
        QTableView* view = table->tableView();
        const QModelIndex index = view->model()->index(table->rowPosition(row), column);
        view->edit(index);
        auto* line = qobject_cast<QLineEdit*>(view->indexWidget(index));
        if (line == nullptr) {
            line = view->viewport()->findChild<QLineEdit*>();
        }
        ASSERT_NE(line, nullptr);
        line->setText(text);
        QTest::keyClick(line, Qt::Key_Return);
        settle();
    }
    TC::CStrategySetting basket(const QString& name) { return TC::CStrategyBaskets::copy().value(name); }

    CStrategyManageTable* table = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

double normalCdf(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }
double normalPdf(double x) { return std::exp(-0.5 * x * x) / std::sqrt(2.0 * M_PI); }

}  // namespace

TEST_F(StrategyTableTest, ColumnsInTheirOrder)
{
    const QStringList headers = {"选择", "代码", "名称", "类别", "方向", "相对权重", "绝对权重", "数量",
                                 "最新价", "成交量", "保证金", "delta", "gamma", "theta", "vega", "rho"};
    ASSERT_EQ(table->columnCount(), headers.size());
    for (int column = 0; column < headers.size(); ++column) {
        EXPECT_EQ(table->columnHeader(column), headers.at(column));
    }
    EXPECT_EQ(table->extra(), 8);
    EXPECT_TRUE(CStrategyManageTable::isLive(table));
}

TEST_F(StrategyTableTest, LoadingABasketFillsRowsAndTellsTicksAndSides)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 2, nqservice::OT_BUY, true), leg("10000021", 1, nqservice::OT_SELL, false)});
    table->loadBasket(QStringLiteral("b"));
    EXPECT_EQ(table->currentBasket(), QStringLiteral("b"));
    ASSERT_EQ(table->rowCount(), 2);
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("10000011"));
    EXPECT_EQ(table->itemText(0, 3), QStringLiteral("认购"));
    EXPECT_EQ(table->itemText(1, 3), QStringLiteral("认沽"));
    EXPECT_EQ(table->itemInt(0, 7), 2);
    EXPECT_TRUE(table->checkDelegate()->itemChecked("0"));
    EXPECT_FALSE(table->checkDelegate()->itemChecked("1"));
    EXPECT_EQ(table->directionDelegate()->itemText("0"), QStringLiteral("买"));
    EXPECT_EQ(table->directionDelegate()->itemType("0"), WG::NBT_PRIMARY);
    EXPECT_EQ(table->directionDelegate()->itemText("1"), QStringLiteral("卖"));
    EXPECT_EQ(table->directionDelegate()->itemType("1"), WG::NBT_CRITICAL);
    const auto ticks = recorder->ofCode(CStrategyManageTable::UE_LEG_SELECTED);
    ASSERT_EQ(ticks.size(), 2);
    EXPECT_EQ(ticks[0].arg, 2);
    EXPECT_EQ(ticks[0].text, QStringLiteral("10000011"));  // loading names legs by code
    EXPECT_EQ(ticks[1].arg, 0);
    const auto sides = recorder->ofCode(CStrategyManageTable::UE_LEG_BS_CHANGED);
    ASSERT_EQ(sides.size(), 2);
    EXPECT_EQ(sides[0].arg, nqservice::OT_BUY);
    EXPECT_EQ(sides[1].arg, nqservice::OT_SELL);
    EXPECT_EQ(table->quoteRequestCount(), 2);
    EXPECT_EQ(table->rowByKey().value(QStringLiteral("10000021.SH")), 1);
}

TEST_F(StrategyTableTest, AnUnknownBasketLeavesTheTableEmpty)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 2, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    table->loadBasket(QStringLiteral("nope"));
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(table->currentBasket().isEmpty());
}

TEST_F(StrategyTableTest, AddingAKeyAppendsALegAndWritesItBack)
{
    writeBasket(QStringLiteral("b"), {});
    table->loadBasket(QStringLiteral("b"));
    table->addKey(QStringLiteral("10000012.SH"));
    ASSERT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->itemText(0, 2), QStringLiteral("50ETF购11月3100"));
    const TC::CStrategySetting saved = basket(QStringLiteral("b"));
    ASSERT_EQ(saved.legs.size(), 1);
    EXPECT_EQ(saved.legs.at(0)->weight, 0.0);
    EXPECT_EQ(saved.legs.at(0)->quantity, 0);
    EXPECT_EQ(recorder->ofCode(CStrategyManageTable::UE_LEGS_CHANGED).size(), 1);
    // A duplicate and an unknown key are dropped without a word.
    table->addKey(QStringLiteral("10000012.SH"));
    table->addKey(QStringLiteral("99999999.SH"));
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(basket(QStringLiteral("b")).legs.size(), 1);
    EXPECT_EQ(recorder->ofCode(CStrategyManageTable::UE_LEGS_CHANGED).size(), 1);
}

TEST_F(StrategyTableTest, AddingWithoutABasketDoesNothing)
{
    table->addKey(QStringLiteral("10000012.SH"));
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(TC::CStrategyBaskets::copy().isEmpty());
}

TEST_F(StrategyTableTest, AllWeightsZeroGiveZeroAbsoluteWeights)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, true, 0.0), leg("10000012", 1, nqservice::OT_BUY, true, 0.0)});
    table->loadBasket(QStringLiteral("b"));
    EXPECT_EQ(table->itemDouble(0, 6), 0.0);
    EXPECT_EQ(table->itemDouble(1, 6), 0.0);
    EXPECT_EQ(table->itemText(0, 6), QStringLiteral("0.00%"));
}

TEST_F(StrategyTableTest, WeightEditorRefusesLettersAndRoundsToThreeDecimals)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, true, 1.0), leg("10000012", 1, nqservice::OT_BUY, true, 3.0)});
    table->loadBasket(QStringLiteral("b"));
    EXPECT_EQ(table->itemText(0, 6), QStringLiteral("25.00%"));
    recorder->show();
    table->updateTable();
    QTableView* view = table->tableView();
    const QModelIndex index = view->model()->index(0, 5);
    view->edit(index);
    auto* line = view->viewport()->findChild<QLineEdit*>();
    if (line == nullptr || !line->isVisible()) {
        line = qobject_cast<QLineEdit*>(view->indexWidget(index));
    }
    ASSERT_NE(line, nullptr);
    ASSERT_NE(line->validator(), nullptr);
    QString letters = QStringLiteral("abc");
    int position = 0;
    EXPECT_EQ(line->validator()->validate(letters, position), QValidator::Invalid);
    line->setText(QString());
    QTest::keyClicks(line, QStringLiteral("x1.2346"));
    EXPECT_FALSE(line->text().contains(QLatin1Char('x')));
    line->setText(QStringLiteral("1.2346"));
    QTest::keyClick(line, Qt::Key_Return);
    settle();
    EXPECT_EQ(table->itemText(0, 5), QStringLiteral("1.235"));
    EXPECT_DOUBLE_EQ(basket(QStringLiteral("b")).legs.at(0)->weight, 1.235);
    EXPECT_EQ(table->itemText(0, 6), QStringLiteral("29.16%"));  // 1.235 / 4.235
    EXPECT_GE(recorder->ofCode(CStrategyManageTable::UE_LEGS_CHANGED).size(), 1);
}

TEST_F(StrategyTableTest, QuantityEditSetsTheMarginOfTheLeg)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_SELL)});
    table->loadBasket(QStringLiteral("b"));
    editCell(0, 7, QStringLiteral("5"));
    EXPECT_EQ(basket(QStringLiteral("b")).legs.at(0)->quantity, 5);
    // Field 3007 of the fixture is 0.12: 0.12 x 5 x 1.2, sold as bought.
    EXPECT_NEAR(table->itemDouble(0, 10), 0.72, 1e-9);
    EXPECT_EQ(table->statText(7), QStringLiteral("5"));
}

TEST_F(StrategyTableTest, EditsMatchLegsByCodeAloneTheFirstWins)
{
    TC::CStrategyStockData other = leg("10000011", 7, nqservice::OT_BUY);
    other.market = QStringLiteral("SZ");
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY), other});
    table->loadBasket(QStringLiteral("b"));
    ASSERT_EQ(table->rowCount(), 2);
    editCell(1, 7, QStringLiteral("9"));
    const TC::CStrategySetting saved = basket(QStringLiteral("b"));
    EXPECT_EQ(saved.legs.at(0)->quantity, 9) << "the first leg of the code takes the edit";
    EXPECT_EQ(saved.legs.at(1)->quantity, 7);
}

TEST_F(StrategyTableTest, TicksAreWrittenBackAndToldWithTheKey)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, false), leg("10000021", 1, nqservice::OT_SELL, false)});
    table->loadBasket(QStringLiteral("b"));
    recorder->events.clear();
    table->checkDelegate()->setItemChecked("1", true, true);
    EXPECT_TRUE(basket(QStringLiteral("b")).legs.at(1)->checked);
    auto ticks = recorder->ofCode(CStrategyManageTable::UE_LEG_SELECTED);
    ASSERT_EQ(ticks.size(), 1);
    EXPECT_EQ(ticks[0].arg, 2);
    EXPECT_EQ(ticks[0].text, QStringLiteral("10000021.SH"));
    auto sides = recorder->ofCode(CStrategyManageTable::UE_LEG_BS_CHANGED);
    ASSERT_EQ(sides.size(), 1);
    EXPECT_EQ(sides[0].arg, nqservice::OT_SELL);

    table->checkAll();
    EXPECT_TRUE(basket(QStringLiteral("b")).legs.at(0)->checked);
    EXPECT_EQ(recorder->ofCode(CStrategyManageTable::UE_LEG_SELECTED).size(), 2) << "only the unticked row is told";
    table->invertChecked();
    EXPECT_FALSE(basket(QStringLiteral("b")).legs.at(0)->checked);
    EXPECT_FALSE(basket(QStringLiteral("b")).legs.at(1)->checked);
    EXPECT_FALSE(table->checkDelegate()->itemChecked("0"));
}

TEST_F(StrategyTableTest, DirectionButtonSwapsTheSide)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    recorder->events.clear();
    table->handleEvent(WG::UE_DELEGATE_BUTTON_CLICKED, CStrategyManageTable::COL_DIRECTION, 0, QStringLiteral("0"), nullptr);
    EXPECT_EQ(basket(QStringLiteral("b")).legs.at(0)->operation, nqservice::OT_SELL);
    EXPECT_EQ(table->directionDelegate()->itemText("0"), QStringLiteral("卖"));
    EXPECT_EQ(table->directionDelegate()->itemType("0"), WG::NBT_CRITICAL);
    const auto sides = recorder->ofCode(CStrategyManageTable::UE_LEG_BS_CHANGED);
    ASSERT_EQ(sides.size(), 1);
    EXPECT_EQ(sides[0].arg, nqservice::OT_SELL);
    EXPECT_EQ(sides[0].text, QStringLiteral("10000011"));
}

TEST_F(StrategyTableTest, DeleteRemovesTickedRowsAndMovesTheRestUp)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, true), leg("10000012", 2, nqservice::OT_BUY, false),
                                      leg("10000021", 3, nqservice::OT_SELL, true)});
    table->loadBasket(QStringLiteral("b"));
    recorder->events.clear();
    table->deleteChecked();
    ASSERT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->itemText(0, 1), QStringLiteral("10000012"));
    EXPECT_FALSE(table->checkDelegate()->itemChecked("0")) << "the row that moved up keeps its own tick";
    EXPECT_EQ(table->directionDelegate()->itemText("0"), QStringLiteral("买"));
    const TC::CStrategySetting saved = basket(QStringLiteral("b"));
    ASSERT_EQ(saved.legs.size(), 1);
    EXPECT_EQ(saved.legs.at(0)->code, QStringLiteral("10000012"));
    const auto removed = recorder->ofCode(CStrategyManageTable::UE_LEG_SELECTED);
    ASSERT_EQ(removed.size(), 2);
    EXPECT_EQ(removed[0].arg, 0);
    EXPECT_EQ(removed[0].text, QStringLiteral("10000011.SH"));
    EXPECT_EQ(removed[1].text, QStringLiteral("10000021.SH"));
    EXPECT_EQ(recorder->ofCode(CStrategyManageTable::UE_LEGS_CHANGED).size(), 1);
    EXPECT_EQ(table->rowByKey().value(QStringLiteral("10000012.SH")), 0);
}

TEST_F(StrategyTableTest, DeleteWithNothingTickedStillWritesAndTells)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, false)});
    table->loadBasket(QStringLiteral("b"));
    recorder->events.clear();
    const QString settings = store->settingsPath();
    const QDateTime before = QFileInfo(settings).lastModified();
    QTest::qWait(20);
    table->deleteChecked();
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(recorder->ofCode(CStrategyManageTable::UE_LEGS_CHANGED).size(), 1);
    EXPECT_GT(QFileInfo(settings).lastModified(), before) << "the baskets were written back";
}

TEST_F(StrategyTableTest, DeleteKeyDeletesTickedRows)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, true), leg("10000012", 1, nqservice::OT_BUY, false)});
    table->loadBasket(QStringLiteral("b"));
    QTest::keyClick(table, Qt::Key_Delete);
    EXPECT_EQ(table->rowCount(), 1);
}

TEST_F(StrategyTableTest, AnEmptyBasketSwallowsEveryEvent)
{
    writeBasket(QStringLiteral("b"), {});
    table->loadBasket(QStringLiteral("b"));
    recorder->events.clear();
    EXPECT_TRUE(table->handleEvent(12345, 0, 0, QString(), nullptr));
    EXPECT_TRUE(recorder->events.isEmpty()) << "not even passed on";
}

TEST_F(StrategyTableTest, CheckedLegsAreCopiesInBasketOrder)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY, true), leg("10000012", 1, nqservice::OT_BUY, false),
                                      leg("10000021", 3, nqservice::OT_SELL, true)});
    table->loadBasket(QStringLiteral("b"));
    QList<TC::CStrategyStockData*> legs;
    table->getCheckedLegs(legs);
    ASSERT_EQ(legs.size(), 2);
    EXPECT_EQ(legs[0]->code, QStringLiteral("10000011"));
    EXPECT_EQ(legs[1]->code, QStringLiteral("10000021"));
    EXPECT_EQ(legs[1]->quantity, 3);
    qDeleteAll(legs);
}

// Three legs by hand: 50ETF at 3.05 on 2026-11-20, expiry 2026-11-25 (5 days),
// volatility 0.2 (field 3012), rate 0.02; benchmark 1 (per cent) on the quote path.
//   call 3.0 x2 bought, call 3.1 x1 bought, put 3.0 x3 sold
TEST_F(StrategyTableTest, ThreeLegsByHandWithASoldLeg)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 2, nqservice::OT_BUY), leg("10000012", 1, nqservice::OT_BUY),
                                      leg("10000021", 3, nqservice::OT_SELL)});
    table->loadBasket(QStringLiteral("b"));
    publish(quote("510050", 3.05, 3.0));
    auto option = [&](const char* code, double last, int volume) {
        auto data = quote(code, last, 0.05);
        data->volume = volume;
        publish(data);
    };
    option("10000011", 0.0800, 10);
    option("10000012", 0.0300, 20);
    option("10000021", 0.0200, 30);
    ASSERT_TRUE(testsupport::waitUntil([&] { return table->itemText(2, 8) == QStringLiteral("0.0200"); }, 2000));
    settle();

    const double S = 3.05, sigma = 0.2, r = 0.02, T = 5.0 / 365.0;
    const double strikes[3] = {3.0, 3.1, 3.0};
    const bool calls[3] = {true, true, false};
    const int quantities[3] = {2, 1, 3};
    double deltaSum = 0.0, gammaSum = 0.0, marginSum = 0.0;
    for (int row = 0; row < 3; ++row) {
        const double d1 = (std::log(S / strikes[row]) + (r + sigma * sigma / 2) * T) / (sigma * std::sqrt(T));
        const double delta = (calls[row] ? normalCdf(d1) : normalCdf(d1) - 1.0) * S / 100.0;
        const double gamma = normalPdf(d1) / (S * sigma * std::sqrt(T)) * S * S / 10000.0;
        const double margin = 0.12 * quantities[row] * 1.2;
        EXPECT_NEAR(table->itemDouble(row, 11), delta, 1e-4) << "row " << row;
        EXPECT_NEAR(table->itemDouble(row, 12), gamma, 1e-4) << "row " << row;
        EXPECT_NEAR(table->itemDouble(row, 10), margin, 1e-9) << "row " << row;
        deltaSum += quantities[row] * table->itemDouble(row, 11);
        gammaSum += quantities[row] * table->itemDouble(row, 12);
        marginSum += margin;
    }
    EXPECT_NEAR(marginSum, 0.864, 1e-12);
    EXPECT_EQ(table->statText(7), QStringLiteral("6"));
    EXPECT_EQ(table->statText(9), QStringLiteral("60"));
    EXPECT_EQ(table->statText(10), QStringLiteral("0.8640"));
    EXPECT_EQ(table->statText(11), WG::formatDoubleNumber(deltaSum, 4)) << "the sold put adds its delta as it is";
    EXPECT_EQ(table->statText(12), WG::formatDoubleNumber(gammaSum, 4));
    EXPECT_EQ(table->statText(5), QStringLiteral("3.000"));
    EXPECT_EQ(table->itemText(0, 9), QStringLiteral("10"));
    // The put's delta is negative and stays so in the sum: no sign for the side.
    EXPECT_LT(table->itemDouble(2, 11), 0.0);
}

TEST_F(StrategyTableTest, WithoutQuotesTheSumsShowTheInvalidText)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 2, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    EXPECT_EQ(table->statText(11), QStringLiteral("非法值"));
    EXPECT_EQ(table->statText(7), QStringLiteral("2"));
}

TEST_F(StrategyTableTest, ABurstOfQuotesCostsOneUpdatePerKey)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    publish(quote("510050", 3.05, 3.0));
    for (int i = 1; i <= 50; ++i) {
        publish(quote("10000011", 0.01 * i, 0.05));
    }
    EXPECT_NE(table->itemText(0, 8), QStringLiteral("0.5000")) << "no cell is touched on the publishing call";
    settle();
    EXPECT_EQ(table->itemText(0, 8), QStringLiteral("0.5000"));
}

TEST_F(StrategyTableTest, QuotesFromAnotherThreadReachTheCellsOnTheGuiThread)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    std::thread feed([this] {
        for (int i = 1; i <= 100; ++i) {
            publish(quote("10000011", 0.001 * i, 0.05));
        }
    });
    feed.join();
    ASSERT_TRUE(testsupport::waitUntil([&] { return table->itemText(0, 8) == QStringLiteral("0.1000"); }, 2000));
}

TEST_F(StrategyTableTest, ACallbackAfterTheTableIsGoneDoesNoHarm)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    const int before = CStrategyManageTable::liveCount();
    CStrategyManageTable* dead = table;
    tester.reset();
    delete table;
    table = nullptr;
    EXPECT_EQ(CStrategyManageTable::liveCount(), before - 1);
    EXPECT_FALSE(CStrategyManageTable::isLive(dead));
    publish(quote("10000011", 0.09, 0.05));
    settle();
    SUCCEED();
}

TEST_F(StrategyTableTest, UpdateGreekUsesTheUsersBenchmark)
{
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000011", 0.08, 0.05));
    settle();
    const double percent = table->itemDouble(0, 11);
    store->setUserDataInt(TC::UM_GREEK_BENCHMARK, 0);
    table->updateGreek();
    const double unit = table->itemDouble(0, 11);
    EXPECT_NEAR(unit * 3.05 / 100.0, percent, 1e-6) << "per unit against per one per cent";
}

TEST_F(StrategyTableTest, AnOptionExpiringTodayUsesTheSecondsLeft)
{
    clock->set(boardtest::exchangeMs(2026, 11, 25, 10, 0));
    writeBasket(QStringLiteral("b"), {leg("10000011", 1, nqservice::OT_BUY)});
    table->loadBasket(QStringLiteral("b"));
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000011", 0.06, 0.05));
    settle();
    const TC::CStrategyLegGreeks greeks = TC::CStrategyLegFigures::compute(TC::CStrategyLegFigures::inputFor(
        exchange->getCodeInfo(QStringLiteral("10000011.SH")), 0.06, 1));
    ASSERT_TRUE(greeks.valid);
    EXPECT_EQ(greeks.days, 0.0);
    EXPECT_EQ(greeks.seconds, 13 * 3600 + 59 * 60 + 59.0);
    EXPECT_NEAR(table->itemDouble(0, 11), greeks.values[0], 1e-4);
}
