// The accounts dock's combinations: the build and release commands as the
// broker reads them, the legs offered, the 组合持仓 table and the 构建组合 dialog.
#include "accountsfakes.h"

#include "app/ccombinationbuilddialog.h"
#include "app/ccombinationcommand.h"
#include "app/ccombinationstablemodel.h"
#include "seam/tradinghelpers.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>

using namespace accountsfakes;
using desk::CCombinationCommand;

namespace {

CCombinationCommand::Leg leg(const boost::shared_ptr<nqservice::CAccountInfo>& account, const std::string& code,
                             int direction, long long available = 5)
{
    CCombinationCommand::Leg leg;
    leg.account = account;
    leg.market = "SH";
    leg.code = code;
    leg.direction = direction;
    leg.available = available;
    return leg;
}

boost::shared_ptr<nqservice::CStkOptCombPositionDetail> combination(const boost::shared_ptr<nqservice::CAccountInfo>& account,
                                                                   const std::string& id, int volume)
{
    auto detail = boost::make_shared<nqservice::CStkOptCombPositionDetail>();
    detail->account = account;
    detail->market = "SH";
    detail->combId = id;
    detail->strategyCode = "KS";
    detail->name = "跨式空头";
    detail->volume = volume;
    detail->releaseVolume = volume;
    detail->legOneCode = "10000001";
    detail->legOneType = '1';
    detail->legOneExtra = volume;
    detail->legTwoCode = "10000002";
    detail->legTwoType = '1';
    detail->legTwoExtra = volume;
    return detail;
}

}  // namespace

TEST(CombinationCommand, ABuildCarriesTheStrategyTheLegsAndThePriceTypeOfTheStrategy)
{
    const auto account = makeAccount("A1", "模拟一");
    QString why;
    const auto command = CCombinationCommand::build(QStringLiteral("CNSJC"), leg(account, "10000001", '0'),
                                                    leg(account, "10000003", '1'), 3, "trader", &why);
    ASSERT_TRUE(command) << why.toStdString();
    EXPECT_EQ(command->traderType, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    ASSERT_EQ(command->params.size(), 1u);
    const auto& param = *command->params.front();
    EXPECT_EQ(param.operationType, nqservice::OT_COMB_STRATEGY_BUILD);
    EXPECT_EQ(param.account->getKey(), "A1");
    EXPECT_EQ(param.stockInfo.code, "10000001/10000003");
    EXPECT_EQ(param.stockInfo.market, "SH");
    EXPECT_EQ(param.stockInfo.textField2, "CNSJC");
    EXPECT_EQ(param.priceType, nqservice::DataHelper::getOptionCombStrategyPriceType("CNSJC"));
    EXPECT_DOUBLE_EQ(param.price, 0.0);
    EXPECT_EQ(param.volume, 3);
    EXPECT_EQ(param.userName, "trader");
    EXPECT_NE(param.extraFlags & 64, 0);
    const auto legs = nqservice::DataHelper::getOptionCombStrategyParam(param.extraParams);
    ASSERT_TRUE(legs);
    EXPECT_EQ(legs->marketName, "SH");
    EXPECT_EQ(legs->legOneCode, "10000001");
    EXPECT_EQ(legs->legTwoCode, "10000003");
    EXPECT_EQ(legs->legOneType, '0');
    EXPECT_EQ(legs->legTwoType, '1');
}

TEST(CombinationCommand, ABuildThatCannotBeIsRefusedWithAReason)
{
    const auto account = makeAccount("A1", "模拟一");
    const auto other = makeAccount("A2", "模拟二");
    QString why;
    EXPECT_FALSE(CCombinationCommand::build(QStringLiteral("ZBD"), leg(account, "1", '0'), leg(account, "2", '1'), 1, "",
                                            &why));
    EXPECT_EQ(why, QStringLiteral("请选择组合策略"));
    EXPECT_FALSE(CCombinationCommand::build(QStringLiteral("KS"), leg(account, "1", '1'), leg(other, "2", '1'), 1, "",
                                            &why));
    EXPECT_EQ(why, QStringLiteral("两个合约须属于同一资金账号"));
    EXPECT_FALSE(CCombinationCommand::build(QStringLiteral("KS"), leg(account, "1", '1'), leg(account, "1", '1'), 1, "",
                                            &why));
    EXPECT_EQ(why, QStringLiteral("组合策略的两个合约不能相同"));
    EXPECT_FALSE(CCombinationCommand::build(QStringLiteral("KS"), leg(account, "1", '1'), leg(account, "2", '1'), 0, "",
                                            &why));
    EXPECT_EQ(why, QStringLiteral("组合数量必须大于0"));
    EXPECT_FALSE(CCombinationCommand::build(QStringLiteral("KS"), CCombinationCommand::Leg(), leg(account, "2", '1'), 1,
                                            "", &why));
    EXPECT_EQ(why, QStringLiteral("请选择两个持仓合约"));
}

TEST(CombinationCommand, TheLegsAreTheFreeOptionPositionsOfTheAccount)
{
    const auto account = makeAccount("A1", "模拟一");
    const auto future = makeAccount("F1", "期货", nqservice::VQ_BROKER_TYPE_FUTURE_OPTION);
    auto locked = makePosition(account, "10000004", '1', 2);
    locked->available = 0;
    const std::vector<nqservice::IDataPtr> positions = {
        makePosition(account, "510050", '0', 1000),      // the ETF: no leg
        makePosition(account, "10000001", '0', 2),       makePosition(account, "10000003", '1', 2),
        makePosition(account, "10000005", '2', 1),       // covered: no leg
        locked,                                          // all in combinations
        makePosition(future, "10000009", '0', 1),        // another account
    };
    const auto legs = CCombinationCommand::legsOf(positions, "A1");
    ASSERT_EQ(legs.size(), 2u);
    EXPECT_EQ(legs[0].code, "10000001");
    EXPECT_EQ(legs[1].code, "10000003");
    EXPECT_EQ(legs[1].direction, '1');
}

TEST(CombinationsTableModel, ShowsEachCombinationAndDropsAReleasedOne)
{
    desk::CCombinationsTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.setAccountNames({{QStringLiteral("A1"), QStringLiteral("模拟一")}});
    model.apply({combination(account, "Z1", 2), combination(account, "Z2", 3)});
    ASSERT_EQ(model.rowCount(), 2);
    const int row = model.rowOfKey("A1|Z2");
    ASSERT_GE(row, 0);
    auto text = [&](int column) { return model.index(row, column).data().toString(); };
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_ACCOUNT), QStringLiteral("模拟一"));
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_STRATEGY), QStringLiteral("KS"));
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_NAME), QStringLiteral("跨式空头"));
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_VOLUME), QStringLiteral("3"));
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_LEG_ONE), QStringLiteral("10000001"));
    EXPECT_EQ(text(desk::CCombinationsTableModel::COL_LEG_TWO_TYPE), QStringLiteral("义务仓"));
    EXPECT_EQ(model.headerData(desk::CCombinationsTableModel::COL_RELEASE_VOLUME, Qt::Horizontal).toString(),
              QStringLiteral("可解除数量"));
    model.apply({combination(account, "Z2", 0)});
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.rowOfKey("A1|Z2"), -1);
}

TEST(CombinationBuildDialog, OffersTheStrategiesAndLegsAndSaysWhyItCannotBuild)
{
    const auto account = makeAccount("A1", "模拟一");
    desk::CCombinationBuildDialog dialog({leg(account, "10000001", '0'), leg(account, "10000003", '1')});
    EXPECT_EQ(dialog.strategyBox()->count(), 6);
    EXPECT_EQ(dialog.strategyBox()->itemText(0), QStringLiteral("认购牛市价差 (CNSJC)"));
    ASSERT_EQ(dialog.legOneBox()->count(), 2);
    EXPECT_EQ(dialog.legTwoBox()->currentIndex(), 1);
    EXPECT_TRUE(dialog.legOneBox()->itemText(0).contains(QStringLiteral("权利仓")));
    dialog.volumeBox()->setValue(2);
    const auto command = dialog.command();
    ASSERT_TRUE(command);
    EXPECT_EQ(command->params.front()->stockInfo.code, "10000001/10000003");
    EXPECT_EQ(command->params.front()->volume, 2);
    // The same leg twice: the reason shows and nothing is sent.
    dialog.legTwoBox()->setCurrentIndex(0);
    EXPECT_FALSE(dialog.command());
    EXPECT_EQ(dialog.reasonLabel()->text(), QStringLiteral("组合策略的两个合约不能相同"));
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);

    desk::CCombinationBuildDialog empty({});
    EXPECT_TRUE(empty.reasonLabel()->text().contains(QStringLiteral("没有可组合的期权持仓")));
}
