// The combination table: columns from the field descriptors, the check-box
// column of the roles that may release, the twelve leg columns, reloads on the
// model's worker that replace one account's rows, updates from the
// subscription, volume-0 rows, the search and the exclusive check.
#include "positions/ccomblegfigures.h"
#include "positions/combfixture.h"
#include "seam/tradinghelpers.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/chpftableadaptermodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

#include <thread>

namespace {

using positionstest::combAccount;
using positionstest::combPosition;
using M = TC::CHpfOptionStrategyPositionModel;

class CombTableTest : public positionstest::CombPanelTest {};

TEST_F(CombTableTest, FieldColumnsComeFromTheDescriptorsThenTheCheckBoxAndTheLegs)
{
    start();
    const std::vector<nqservice::FieldDes> fields = nqservice::TypeManager::instance()->getAllFields({1030}, 32);
    ASSERT_EQ(fields.size(), 13u);
    ASSERT_EQ(table()->columnCount(), 13 + 1 + 12);
    for (std::size_t n = 0; n < fields.size(); ++n) {
        SCOPED_TRACE(fields[n].name);
        const int column = static_cast<int>(n);
        EXPECT_EQ(table()->columnHeader(column),
                  QString::fromStdString(nqservice::TypeManager::instance()->getFieldChsNameByType(fields[n], 32)));
        EXPECT_EQ(model()->fieldColumn(fields[n].name), column);
        const int alignment = model()->columnProperty(column).alignment;
        EXPECT_EQ(alignment, fields[n].getProperty(2) ? 129 : fields[n].getProperty(3) ? 132 : 130);
        EXPECT_EQ(model()->columnProperty(column).stat, fields[n].getProperty(1));
    }
    EXPECT_EQ(table()->columnHeader(2), QStringLiteral("组合编号"));
    EXPECT_EQ(model()->checkColumn(), 13);
    EXPECT_EQ(table()->columnHeader(13), QStringLiteral("选择"));
    EXPECT_TRUE(model()->checkDelegate()->isExclusive());
    const QStringList legs = {"合约一delta", "合约一gamma", "合约一theta", "合约一vega", "合约一rho", "合约一时间价值",
                              "合约二delta", "合约二gamma", "合约二theta", "合约二vega", "合约二rho", "合约二时间价值"};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(table()->columnHeader(14 + i), legs.at(i));
        EXPECT_EQ(model()->legColumn(i / 6, static_cast<M::ELegFigure>(i % 6)), 14 + i);
        EXPECT_EQ(model()->columnType(14 + i), QVariant::Double);
        EXPECT_EQ(model()->columnProperty(14 + i).alignment, 132);
    }
}

TEST_F(CombTableTest, ARoleOutsideTheListHasNoCheckBoxAndNothingToRelease)
{
    store->setUserDataInt(TC::UM_USER_ROLE, 102);
    one->store(1030, combPosition(infoOne, "c1", 2));
    start();
    EXPECT_EQ(model()->checkColumn(), -1);
    EXPECT_EQ(model()->checkDelegate(), nullptr);
    EXPECT_EQ(table()->columnCount(), 13 + 12);
    EXPECT_EQ(table()->columnHeader(13), QStringLiteral("合约一delta"));
    ASSERT_EQ(shownCombs(), QStringList({"c1"}));
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> checked;
    table()->checkAll();
    table()->checkedRows(checked);
    EXPECT_TRUE(checked.isEmpty());
    WG::CMessageBox::TestHook hook;
    clickButton(TC::COptionStrategyPositionPanel::OSP_RELEASE);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("warning"));
    EXPECT_EQ(hook.last().title, QStringLiteral("提示"));
    EXPECT_EQ(hook.last().text, QStringLiteral("未选择任何组合策略持仓!"));
    EXPECT_TRUE(commands->commands.empty());
}

TEST_F(CombTableTest, LegColumnsShowBothLegsGreeksAndTimeValues)
{
    publish(quote("10000011", 0.11, 0.1));  // call 3.0 against 3.05: intrinsic 0.05, time value 0.06
    one->store(1030, combPosition(infoOne, "c1", 2, "CNSJC", "10000010", "10000011"));
    start();
    const std::string key = "A1|c1";
    const TC::CCombLegFigures legOne = TC::CCombLegFigures::of("10000010.SH");
    const TC::CCombLegFigures legTwo = TC::CCombLegFigures::of("10000011.SH");
    ASSERT_TRUE(legOne.hasGreeks);
    ASSERT_TRUE(legTwo.hasGreeks);
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_DELTA)), TC::CCombLegFigures::greekText(legOne.delta, 0));
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_GAMMA)), TC::CCombLegFigures::greekText(legOne.gamma, 0));
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_THETA)), TC::CCombLegFigures::greekText(legOne.theta, 0));
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_VEGA)), TC::CCombLegFigures::greekText(legOne.vega, 0));
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_RHO)), TC::CCombLegFigures::greekText(legOne.rho, 0));
    EXPECT_EQ(cell(key, model()->legColumn(0, M::LF_TIME_VALUE)), QStringLiteral("0.0500"));
    EXPECT_EQ(cell(key, model()->legColumn(1, M::LF_DELTA)), TC::CCombLegFigures::greekText(legTwo.delta, 0));
    EXPECT_EQ(cell(key, model()->legColumn(1, M::LF_RHO)), TC::CCombLegFigures::greekText(legTwo.rho, 0));
    EXPECT_EQ(cell(key, model()->legColumn(1, M::LF_TIME_VALUE)), QStringLiteral("0.0600"));
    EXPECT_NE(cell(key, model()->legColumn(0, M::LF_DELTA)), cell(key, model()->legColumn(1, M::LF_DELTA)));
    EXPECT_EQ(cell(key, 0), QStringLiteral("A1")) << "the account shows by its key";
    EXPECT_EQ(cell(key, 2), QStringLiteral("c1"));
    EXPECT_EQ(cell(key, 5), QStringLiteral("2"));
    // The legs' sides show by name, as the accounts dock names them.
    EXPECT_EQ(cell(key, model()->fieldColumn("legOneType")), QStringLiteral("权利仓"));
    EXPECT_EQ(cell(key, model()->fieldColumn("legTwoType")), QStringLiteral("义务仓"));
}

TEST_F(CombTableTest, ALegWithoutQuoteHasNoTimeValueAndAnUnknownLegNoGreeks)
{
    // 10000021 has no quote of its own (its Greeks rest on the historical
    // volatility); 99999999 is no instrument at all.
    one->store(1030, combPosition(infoOne, "c1", 2, "KS", "10000021", "99999999"));
    start();
    const TC::CCombLegFigures legOne = TC::CCombLegFigures::of("10000021.SH");
    ASSERT_TRUE(legOne.hasGreeks);
    EXPECT_EQ(cell("A1|c1", model()->legColumn(0, M::LF_DELTA)), TC::CCombLegFigures::greekText(legOne.delta, 0));
    EXPECT_EQ(cell("A1|c1", model()->legColumn(0, M::LF_TIME_VALUE)), QStringLiteral("-"));
    EXPECT_EQ(cell("A1|c1", model()->legColumn(1, M::LF_DELTA)), QString());
    EXPECT_EQ(cell("A1|c1", model()->legColumn(1, M::LF_VEGA)), QString());
    EXPECT_EQ(cell("A1|c1", model()->legColumn(1, M::LF_TIME_VALUE)), QStringLiteral("-"));
}

TEST_F(CombTableTest, AReloadOfOneAccountLeavesTheOthersRowsInPlace)
{
    one->store(1030, combPosition(infoOne, "a", 1));
    one->store(1030, combPosition(infoOne, "b", 1));
    two->store(1030, combPosition(infoTwo, "x", 1));
    start();
    QAbstractItemModelTester tester(table()->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(shownCombs(), QStringList({"a", "b", "x"}));
    // Account one loses "a" and gains "c" at the broker; a reload of it alone follows.
    auto fresh = boost::make_shared<accountsfakes::CFakeAccountData>();
    fresh->info = infoOne;
    fresh->store(1030, combPosition(infoOne, "b", 3));
    fresh->store(1030, combPosition(infoOne, "c", 1));
    center->data->accounts[utils::hash("A1")] = fresh;
    table()->requestAccount("A1");
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"b", "c", "x"}));
    EXPECT_EQ(cell("A1|b", 5), QStringLiteral("3"));
    EXPECT_EQ(cell("A2|x", 2), QStringLiteral("x"));
}

TEST_F(CombTableTest, AnAccountWithoutDataClearsItsRows)
{
    one->store(1030, combPosition(infoOne, "a", 1));
    two->store(1030, combPosition(infoTwo, "x", 1));
    start();
    ASSERT_EQ(shownCombs(), QStringList({"a", "x"}));
    center->data->accounts.erase(utils::hash("A1"));
    table()->requestAccount("A1");
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"x"}));
}

TEST_F(CombTableTest, AnAccountThatIsNoStockOptionAccountNeverShows)
{
    // A record that names a future-option account, in a stock-option account's table.
    one->store(1030, combPosition(infoFuture, "f", 1));
    one->store(1030, combPosition(infoOne, "a", 1));
    start();
    EXPECT_EQ(shownCombs(), QStringList({"a"}));
    table()->onPositionDetail(combPosition(infoFuture, "g", 1));
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"a"}));
}

TEST_F(CombTableTest, VolumeZeroLeavesUnlessTheBrokerKeepsEmptyCombinations)
{
    one->store(1030, combPosition(infoOne, "a", 2));
    one->store(1030, combPosition(infoOne, "z", 0));
    start();
    EXPECT_EQ(shownCombs(), QStringList({"a"}));
    table()->onPositionDetail(combPosition(infoOne, "a", 0));
    settle();
    EXPECT_TRUE(shownCombs().isEmpty()) << "released to 0, it leaves";
    nqservice::ConfigCollector::instance()->setShowAllCombPositions(infoOne->brokerId, true);
    table()->requestAccount("A1");
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"a", "z"})) << "the broker's table still has a of volume 2";
    EXPECT_EQ(cell("A1|z", 5), QStringLiteral("0"));
    table()->onPositionDetail(combPosition(infoOne, "a", 0));
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"a", "z"}));
    EXPECT_EQ(cell("A1|a", 5), QStringLiteral("0"));
}

TEST_F(CombTableTest, TheSearchKeepsMatchingNumbersOnly)
{
    one->store(1030, combPosition(infoOne, "ZH001", 1));
    one->store(1030, combPosition(infoOne, "ZH002", 1));
    two->store(1030, combPosition(infoTwo, "KS010", 1));
    start();
    table()->clear();
    table()->setSearchText(QStringLiteral("zh00"));
    EXPECT_EQ(model()->getSearchText(), "zh00");
    table()->requestAccount("A1");
    table()->requestAccount("A2");
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"ZH001", "ZH002"}));
    table()->onPositionDetail(combPosition(infoTwo, "KS011", 1));
    table()->onPositionDetail(combPosition(infoTwo, "ZH003", 1));
    settle();
    EXPECT_EQ(shownCombs(), QStringList({"ZH001", "ZH002", "ZH003"}));
}

TEST_F(CombTableTest, UpdatesFromServiceThreadsArriveWithTheTesterWatching)
{
    start();
    QAbstractItemModelTester tester(table()->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::thread feeder([&] {
        for (int i = 0; i < 40; ++i) {
            table()->onPositionDetail(combPosition(i % 2 == 0 ? infoOne : infoTwo, "c" + std::to_string(i % 10),
                                                   i % 7 == 0 ? 0 : 1 + i));
        }
    });
    feeder.join();
    settle();
    // The last record per key wins: i = 30..39 with c0..c9; i = 35 (volume 0) removed c5.
    QStringList expected;
    for (int i = 30; i < 40; ++i) {
        if (i % 7 != 0) {
            expected << QStringLiteral("c%1").arg(i % 10);
        }
    }
    expected.sort();
    EXPECT_EQ(shownCombs(), expected);
    EXPECT_EQ(cell("A2|c9", 5), QStringLiteral("40"));
}

TEST_F(CombTableTest, OnlyOneRowIsTickedAtATimeAndTheTickSurvivesAReload)
{
    one->store(1030, combPosition(infoOne, "a", 1));
    one->store(1030, combPosition(infoOne, "b", 1));
    start();
    tick("A1|a");
    tick("A1|b");
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> checked;
    table()->checkedRows(checked);
    ASSERT_EQ(checked.size(), 1);
    EXPECT_EQ(checked.front()->combId, "b");
    EXPECT_TRUE(model()->isKeyChecked(QStringLiteral("A1|b")));
    EXPECT_FALSE(model()->isKeyChecked(QStringLiteral("A1|a")));
    table()->requestAccount("A1");
    settle();
    checked.clear();
    table()->checkedRows(checked);
    ASSERT_EQ(checked.size(), 1);
    EXPECT_EQ(checked.front()->combId, "b");
}

TEST_F(CombTableTest, CheckAllAndInvertComeThroughThePanelsEvents)
{
    one->store(1030, combPosition(infoOne, "a", 1));
    start();
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> checked;
    EXPECT_TRUE(clickButton(0));
    table()->checkedRows(checked);
    ASSERT_EQ(checked.size(), 1);
    EXPECT_TRUE(model()->isKeyChecked(QStringLiteral("A1|a")));
    EXPECT_TRUE(clickButton(1));
    checked.clear();
    table()->checkedRows(checked);
    EXPECT_TRUE(checked.isEmpty());
    EXPECT_FALSE(model()->isKeyChecked(QStringLiteral("A1|a")));
}

TEST_F(CombTableTest, TickingAllOfSeveralRowsLeavesOneTicked)
{
    one->store(1030, combPosition(infoOne, "a", 1));
    one->store(1030, combPosition(infoOne, "b", 1));
    two->store(1030, combPosition(infoTwo, "x", 1));
    start();
    EXPECT_TRUE(clickButton(0));
    QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>> checked;
    table()->checkedRows(checked);
    EXPECT_EQ(checked.size(), 1) << "exclusive: one row at a time";
    EXPECT_TRUE(clickButton(1));
    checked.clear();
    table()->checkedRows(checked);
    EXPECT_EQ(checked.size(), 1);
}

TEST_F(CombTableTest, AThemeOrFormatChangeFormatsTheLegColumnsAfresh)
{
    one->store(1030, combPosition(infoOne, "a", 1, "CNSJC", "10000010", "10000011"));
    start();
    const int column = model()->legColumn(0, M::LF_TIME_VALUE);
    EXPECT_EQ(cell("A1|a", column), QStringLiteral("0.0500"));
    publish(quote("10000010", 0.25, 0.18));
    panel->emptyStringChange();
    settle();
    EXPECT_EQ(cell("A1|a", column), QStringLiteral("0.1000"));
}

}  // namespace
