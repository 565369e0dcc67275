// IData tables: field columns from record descriptors, computed columns, and the
// threaded model that takes jobs and single updates from other threads.
#include "seam/idata.h"
#include "support/testsupport.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/chpfdata.h"
#include "toolkit/chpfdatatable.h"
#include "toolkit/chpfthreaddatamodel.h"
#include "toolkit/chpftableadaptermodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

#include <boost/make_shared.hpp>

#include <atomic>
#include <thread>

namespace {

// A small combination position record for these tests.
class CTestPosition : public nqservice::TData<CTestPosition, 1030> {
public:
    static constexpr const char* kStructName = "test::CTestPosition";
    std::string combId;
    std::string account;
    int volume = 0;
    double margin = 0.0;

    std::string getKey() const override { return account + "/" + combId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        using nqservice::fieldProps;
        visit("combId", "组合编号", self.combId, fieldProps({nqservice::FP_KEY, nqservice::FP_DISPLAY, nqservice::FP_ALIGN_LEFT}));
        visit("account", "资金账号", self.account, fieldProps({nqservice::FP_DISPLAY, nqservice::FP_ALIGN_CENTER}));
        visit("volume", "数量", self.volume, fieldProps({nqservice::FP_DISPLAY, nqservice::FP_STAT}));
        visit("margin", "保证金", self.margin, fieldProps({nqservice::FP_DISPLAY, nqservice::FP_STAT}));
    }
};

boost::shared_ptr<nqservice::IData> position(const std::string& account, const std::string& id, int volume,
                                             double margin)
{
    auto record = boost::make_shared<CTestPosition>();
    record->account = account;
    record->combId = id;
    record->volume = volume;
    record->margin = margin;
    return record;
}

class HpfDataTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        model = new TC::CHpfThreadDataModel(1030, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        model->setStructDes(CTestPosition::staticStructDes());
        model->setColumns({1030});
        table = new TC::CHpfDataTable(3, 1030, nullptr, true, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        table->setDataModel(model);
    }
    void TearDown() override
    {
        delete table;
        delete model;
    }
    TC::CHpfThreadDataModel* model = nullptr;
    TC::CHpfDataTable* table = nullptr;
};

TEST_F(HpfDataTableTest, FieldColumnsComeFromTheDescriptor)
{
    ASSERT_EQ(table->columnCount(), 4);
    EXPECT_EQ(table->columnHeader(0), QStringLiteral("组合编号"));
    EXPECT_EQ(model->columnType(2), QVariant::Int);
    EXPECT_EQ(model->columnType(3), QVariant::Double);
    EXPECT_EQ(model->columnProperty(0).alignment & Qt::AlignHorizontal_Mask, Qt::AlignLeft);
    EXPECT_EQ(model->columnProperty(1).alignment & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    EXPECT_EQ(model->columnProperty(2).alignment & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    QPair<WG::EFilterType, QSet<QString>> none(WG::FLT_NONE, {});
    model->doAddDatas({qMakePair(position("A1", "c1", 3, 1000.5), QStringLiteral("clr_text_default"))}, -1, none);
    table->updateTable();
    ASSERT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->itemText(0, 0), QStringLiteral("c1"));
    EXPECT_EQ(table->itemText(0, 2), QStringLiteral("3"));
    EXPECT_EQ(table->itemText(0, 3), QStringLiteral("1,000.50"));
    auto row = boost::dynamic_pointer_cast<TC::CHpfData>(table->rowData(0));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->getIData()->getKey(), "A1/c1");
    EXPECT_EQ(row->getIndexFromName(QStringLiteral("margin")), 3);
}

TEST_F(HpfDataTableTest, ComputedColumnsShowExtraValuesAndStatisticsSumFields)
{
    TC::CHpfDataColumnProperty property(QStringLiteral("合约一delta"), QVariant::Double, 0x84);
    const int column = table->addColumn(property, false, true, QString(), 2, 0);
    ASSERT_EQ(column, 4);
    auto* check = new WG::CBaseTableColumnCheckBoxDelegate(column, nullptr);
    table->setColumnDelegate(column, check);
    QPair<WG::EFilterType, QSet<QString>> none(WG::FLT_NONE, {});
    model->doAddDatas({qMakePair(position("A1", "c1", 3, 10.0), QString()),
                       qMakePair(position("A1", "c2", 4, 20.0), QString())},
                      -1, none);
    model->getExtraDataModel()->addData(QStringLiteral("A1/c2"), column, 0.5123, check, nullptr);
    table->updateUiData();
    EXPECT_EQ(table->itemText(1, column), QStringLiteral("0.5123"));
    EXPECT_EQ(table->itemText(0, column), QString());
    EXPECT_EQ(table->statText(2), QStringLiteral("7"));
    EXPECT_EQ(table->statText(3), QStringLiteral("30.00"));
    check->setItemChecked("A1/c2", true);
    EXPECT_TRUE(check->itemChecked("A1/c2"));
}

TEST_F(HpfDataTableTest, WorkerJobsAndUpdatesFromOtherThreadsApplyOnTheGuiThreadInOrder)
{
    QAbstractItemModelTester tester(table->adapter(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::atomic<bool> jobRanOffGui{false};
    const auto gui = std::this_thread::get_id();
    model->postJob([&] {
        jobRanOffGui = std::this_thread::get_id() != gui;
        QList<QPair<boost::shared_ptr<nqservice::IData>, QString>> batch;
        for (int i = 0; i < 20; ++i) {
            batch.append(qMakePair(position("A1", "c" + std::to_string(i), i, 1.0), QString()));
        }
        QPair<WG::EFilterType, QSet<QString>> none(WG::FLT_NONE, {});
        model->doAddDatas(batch, -1, none);
        // A reload replaces one account's rows: remove, then add again, in this order.
        model->removeDataByKey("A1/c0");
    });
    std::thread feeder([&] {
        for (int i = 0; i < 50; ++i) {
            model->updateDataFixColorForSortTime(position("B2", "d" + std::to_string(i % 5), i, 2.0),
                                                 QStringLiteral("clr_global_rise"));
        }
    });
    feeder.join();
    ASSERT_TRUE(model->waitForIdle(5000));
    table->updateTable();
    EXPECT_TRUE(jobRanOffGui.load());
    EXPECT_EQ(model->size(), 19 + 5);
    EXPECT_FALSE(model->getDataByKey(std::string("A1/c0")));
    // The newest update per key wins.
    auto row = model->getDataByKey(std::string("B2/d4"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->intValue(2), 49);
    EXPECT_NE(row->textColor(0), nullptr);
}

TEST_F(HpfDataTableTest, FilterOfAJobLeavesRowsOut)
{
    QPair<WG::EFilterType, QSet<QString>> onlyA(WG::FLT_INCLUDE, {QStringLiteral("A1")});
    model->postJob([&] {
        model->doAddDatas({qMakePair(position("A1", "c1", 1, 1.0), QString()),
                           qMakePair(position("B2", "c2", 1, 1.0), QString())},
                          1, onlyA);
    });
    ASSERT_TRUE(model->waitForIdle(5000));
    EXPECT_EQ(model->size(), 1);
}

TEST(HpfThreadDataModel, EndsCleanlyWithJobsStillQueued)
{
    std::atomic<int> ran{0};
    {
        TC::CHpfThreadDataModel model(1030, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        for (int i = 0; i < 100; ++i) {
            model.postJob([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                ++ran;
            });
        }
    }
    EXPECT_LT(ran.load(), 100) << "queued jobs are dropped at the end";
}

}  // namespace
