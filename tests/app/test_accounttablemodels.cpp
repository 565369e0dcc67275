#include "accountsfakes.h"

#include "app/cdealstablemodel.h"
#include "app/cfundstablemodel.h"
#include "app/corderstablemodel.h"
#include "app/cpositionstablemodel.h"
#include "app/csettlementstablemodel.h"
#include "services/trading/cpapersettlementrecord.h"
#include "support/testsupport.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace accountsfakes;

namespace {

QString text(const QAbstractItemModel& model, int row, int column)
{
    return model.index(row, column).data(Qt::DisplayRole).toString();
}

QString colorKey(const QAbstractItemModel& model, int row, int column)
{
    return model.index(row, column).data(WG::CTableCellModel::TextColorKeyRole).toString();
}

std::vector<nqservice::IDataPtr> records(std::initializer_list<nqservice::IDataPtr> list) { return list; }

}  // namespace

TEST(OrdersTableModel, ShowsEachOrderOnceNewestFirstAndUpdatesItInPlace)
{
    desk::COrdersTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.setAccountNames({{QStringLiteral("A1"), QStringLiteral("模拟一")}});
    // The snapshot comes in any order: time decides the place.
    model.apply(records({makeOrder(account, "2", 2000, nqservice::OS_WORKING, 5, 0),
                         makeOrder(account, "1", 1000, nqservice::OS_FILLED, 3, 3),
                         makeOrder(account, "3", 3000, nqservice::OS_REJECTED, 1, 0)}));
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.keyOf(0), "A1|3");
    EXPECT_EQ(model.keyOf(1), "A1|2");
    EXPECT_EQ(model.keyOf(2), "A1|1");
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_ACCOUNT), QStringLiteral("模拟一"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_OPERATION), QStringLiteral("买入开仓"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_PRICE_TYPE), QStringLiteral("限价"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_PRICE), QStringLiteral("0.1234"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_STATUS), QStringLiteral("已报"));
    EXPECT_EQ(text(model, 0, desk::COrdersTableModel::COL_STATUS), QStringLiteral("废单"));
    EXPECT_EQ(text(model, 2, desk::COrdersTableModel::COL_STATUS), QStringLiteral("已成"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_REMAINING), QStringLiteral("5"));

    // A fill changes the row where it is: one ranged signal over that row, no new row.
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    auto partial = makeOrder(account, "2", 2000, nqservice::OS_PARTIAL, 5, 2);
    partial->updateTime = 2500;
    model.apply(records({partial}));
    EXPECT_EQ(inserted.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    const QModelIndex from = changed.at(0).at(0).toModelIndex();
    const QModelIndex to = changed.at(0).at(1).toModelIndex();
    EXPECT_EQ(from.row(), 1);
    EXPECT_EQ(to.row(), 1);
    EXPECT_EQ(from.column(), 0);
    EXPECT_EQ(to.column(), model.columnCount() - 1);
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_TRADED), QStringLiteral("2"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_REMAINING), QStringLiteral("3"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_STATUS), QStringLiteral("部成"));

    // An older version of the order arriving late does not undo the fill.
    model.apply(records({makeOrder(account, "2", 2000, nqservice::OS_WORKING, 5, 0)}));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_TRADED), QStringLiteral("2"));

    // A new order goes on top.
    model.apply(records({makeOrder(account, "4", 4000, nqservice::OS_WORKING, 1, 0)}));
    EXPECT_EQ(model.keyOf(0), "A1|4");
    EXPECT_EQ(model.rowCount(), 4);
}

TEST(OrdersTableModel, BuysShowRedSellsGreenAndARefusalShowsItsReason)
{
    desk::COrdersTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    auto refused = makeOrder(account, "1", 1000, nqservice::OS_REJECTED, 1, 0, nqservice::OT_SELL_OPEN);
    refused->message = "可用资金不足";
    model.apply(records({refused, makeOrder(account, "2", 2000, nqservice::OS_WORKING, 1, 0)}));
    EXPECT_EQ(colorKey(model, 0, desk::COrdersTableModel::COL_OPERATION), QStringLiteral("clr_global_rise"));
    EXPECT_EQ(colorKey(model, 1, desk::COrdersTableModel::COL_OPERATION), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_OPERATION), QStringLiteral("卖出开仓"));
    EXPECT_EQ(text(model, 1, desk::COrdersTableModel::COL_MESSAGE), QStringLiteral("可用资金不足"));
    EXPECT_EQ(model.index(0, desk::COrdersTableModel::COL_PRICE).data(WG::CTableCellModel::SortRole).toDouble(),
              0.1234);
}

TEST(OrdersTableModel, AnAccountsRowsGoWithIt)
{
    desk::COrdersTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto one = makeAccount("A1", "模拟一");
    const auto two = makeAccount("A2", "模拟二");
    model.apply(records({makeOrder(one, "1", 1000, nqservice::OS_WORKING, 1, 0),
                         makeOrder(two, "1", 1500, nqservice::OS_WORKING, 1, 0),
                         makeOrder(one, "2", 2000, nqservice::OS_WORKING, 1, 0)}));
    ASSERT_EQ(model.rowCount(), 3);
    model.removeAccount("A1");
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.keyOf(0), "A2|1");
    EXPECT_EQ(model.rowOfKey("A1|2"), -1);
    EXPECT_EQ(model.rowOfKey("A2|1"), 0);
}

TEST(DealsTableModel, OneRowPerFillNewestFirstWithFees)
{
    desk::CDealsTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.apply(records({makeDeal(account, "d1", 1000, nqservice::EBS_BUY),
                         makeDeal(account, "d2", 2000, nqservice::EBS_SELL)}));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.keyOf(0), "A1|d2");
    EXPECT_EQ(text(model, 0, desk::CDealsTableModel::COL_OPERATION), QStringLiteral("卖出平仓"));
    EXPECT_EQ(colorKey(model, 0, desk::CDealsTableModel::COL_OPERATION), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(colorKey(model, 1, desk::CDealsTableModel::COL_OPERATION), QStringLiteral("clr_global_rise"));
    EXPECT_EQ(text(model, 0, desk::CDealsTableModel::COL_FEE), QStringLiteral("3.40"));
    EXPECT_EQ(text(model, 0, desk::CDealsTableModel::COL_VOLUME), QStringLiteral("2"));
    // The same deal again is the same row.
    model.apply(records({makeDeal(account, "d1", 1000, nqservice::EBS_BUY)}));
    EXPECT_EQ(model.rowCount(), 2);
}

TEST(PositionsTableModel, DirectionsByNameAndAPositionOfVolumeZeroLeaves)
{
    desk::CPositionsTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.apply(records({makePosition(account, "10007821", '0', 3), makePosition(account, "10007821", '1', 2),
                         makePosition(account, "10007822", '2', 1), makePosition(account, "510050", '0', 10000),
                         makePosition(account, "10007899", '1', 0)}));
    ASSERT_EQ(model.rowCount(), 4) << "a position of volume 0 never shows";
    auto directionOf = [&](const std::string& key) {
        return text(model, model.rowOfKey(key), desk::CPositionsTableModel::COL_DIRECTION);
    };
    EXPECT_EQ(directionOf("A1|10007821.SH|48"), QStringLiteral("权利仓"));
    EXPECT_EQ(directionOf("A1|10007821.SH|49"), QStringLiteral("义务仓"));
    EXPECT_EQ(directionOf("A1|10007822.SH|50"), QStringLiteral("备兑仓"));
    EXPECT_EQ(directionOf("A1|510050.SH|48"), QStringLiteral("权利仓")) << "an ETF holding is a long row of the fund";
    const int etf = model.rowOfKey("A1|510050.SH|48");
    EXPECT_EQ(text(model, etf, desk::CPositionsTableModel::COL_VOLUME), QStringLiteral("10000"));
    EXPECT_EQ(colorKey(model, etf, desk::CPositionsTableModel::COL_FLOAT_PROFIT), QStringLiteral("clr_global_rise"));
    EXPECT_EQ(text(model, etf, desk::CPositionsTableModel::COL_FLOAT_PROFIT), QStringLiteral("2,000,000.00"));

    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.apply(records({makePosition(account, "10007821", '1', 0)}));
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.rowOfKey("A1|10007821.SH|49"), -1);
    EXPECT_GE(model.rowOfKey("A1|10007821.SH|48"), 0);
}

TEST(FundsTableModel, OneRowPerAccountWithItsFigures)
{
    desk::CFundsTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setAccountNames({{QStringLiteral("A1"), QStringLiteral("模拟一")}});
    model.apply(records({makeFunds("A1", 99000.5), makeFunds("A2", 5.0)}));
    ASSERT_EQ(model.rowCount(), 2);
    const int one = model.rowOfKey("A1");
    ASSERT_GE(one, 0);
    EXPECT_EQ(model.headerData(desk::CFundsTableModel::COL_BALANCE, Qt::Horizontal).toString(), QStringLiteral("总资产"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_ACCOUNT), QStringLiteral("模拟一"));
    EXPECT_EQ(text(model, model.rowOfKey("A2"), desk::CFundsTableModel::COL_ACCOUNT), QStringLiteral("A2"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_BALANCE), QStringLiteral("1,000,000.00"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_AVAILABLE), QStringLiteral("99,000.50"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_FROZEN), QStringLiteral("500.00"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_MARGIN), QStringLiteral("3,000.00"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_FEE), QStringLiteral("12.50"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_FLOAT_PROFIT), QStringLiteral("-150.00"));
    EXPECT_EQ(colorKey(model, one, desk::CFundsTableModel::COL_FLOAT_PROFIT), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_MARKET_VALUE), QStringLiteral("25,000.00"));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.apply(records({makeFunds("A1", 10.0)}));
    EXPECT_EQ(model.rowCount(), 2);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(text(model, one, desk::CFundsTableModel::COL_AVAILABLE), QStringLiteral("10.00"));
}

TEST(OrdersTableModel, ABurstOfNewOrdersEntersAtTheTopInOneInsertionAndALateOlderOneFindsItsPlace)
{
    desk::COrdersTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.apply(records({makeOrder(account, "0", 500, nqservice::OS_FILLED, 1, 1)}));
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    std::vector<nqservice::IDataPtr> burst;
    for (int i = 1; i <= 100; ++i) {
        burst.push_back(makeOrder(account, std::to_string(i), 1000 + i, nqservice::OS_WORKING, 1, 0));
    }
    model.apply(burst);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted.at(0).at(1).toInt(), 0);
    EXPECT_EQ(inserted.at(0).at(2).toInt(), 99);
    ASSERT_EQ(model.rowCount(), 101);
    EXPECT_EQ(model.keyOf(0), "A1|100");
    EXPECT_EQ(model.keyOf(99), "A1|1");
    EXPECT_EQ(model.keyOf(100), "A1|0");
    EXPECT_EQ(model.rowOfKey("A1|100"), 0);
    EXPECT_EQ(model.rowOfKey("A1|0"), 100);

    // Older than some: between them (above one of its own time, which came earlier),
    // and every row's key still finds it.
    model.apply(records({makeOrder(account, "late", 1050, nqservice::OS_WORKING, 1, 0)}));
    ASSERT_EQ(model.rowCount(), 102);
    const int late = model.rowOfKey("A1|late");
    EXPECT_EQ(model.keyOf(late - 1), "A1|51");
    EXPECT_EQ(model.keyOf(late + 1), "A1|50");
    for (int row = 0; row < model.rowCount(); ++row) {
        EXPECT_EQ(model.rowOfKey(model.keyOf(row)), row);
    }
}

TEST(SettlementsTableModel, ShowsTheStepsOfTheCloseLatestFirst)
{
    desk::CSettlementsTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto account = makeAccount("A1", "模拟一");
    model.setAccountNames({{QStringLiteral("A1"), QStringLiteral("模拟一")}});
    auto step = [&](const std::string& id, const std::string& kind, double amount, int valueDay) {
        auto rec = boost::make_shared<trading::CPaperSettlementRecord>();
        rec->account = account;
        rec->recordId = id;
        rec->tradingDay = 20261125;
        rec->kind = kind;
        rec->code = "10000001";
        rec->volume = 2;
        rec->price = 3.0;
        rec->amount = amount;
        rec->valueDay = valueDay;
        rec->note = "自动行权";
        return rec;
    };
    model.apply({step("J00000002", "行权", -60001.2, 20261126), step("J00000001", "结算", 120.0, 0)});
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.keyOf(0), "A1|J00000002");
    EXPECT_EQ(text(model, 0, desk::CSettlementsTableModel::COL_KIND), QStringLiteral("行权"));
    EXPECT_EQ(text(model, 0, desk::CSettlementsTableModel::COL_DAY), QStringLiteral("2026-11-25"));
    EXPECT_EQ(text(model, 0, desk::CSettlementsTableModel::COL_VALUE_DAY), QStringLiteral("2026-11-26"));
    EXPECT_EQ(text(model, 1, desk::CSettlementsTableModel::COL_VALUE_DAY), QString());
    EXPECT_EQ(text(model, 0, desk::CSettlementsTableModel::COL_ACCOUNT), QStringLiteral("模拟一"));
    EXPECT_EQ(colorKey(model, 0, desk::CSettlementsTableModel::COL_AMOUNT), QStringLiteral("clr_global_fall"));
    EXPECT_EQ(colorKey(model, 1, desk::CSettlementsTableModel::COL_AMOUNT), QStringLiteral("clr_global_rise"));
}
