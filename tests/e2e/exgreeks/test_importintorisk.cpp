// A Greeks file dropped into the watched directory ends up in the risk
// columns of its contract's row: the import thread's pass, the queued signal,
// and the chain table drawing the imported figures beside its own.
#include "board/boardfixture.h"
#include "board/cautoimportoptionexgreeksthread.h"
#include "board/coptionpricettable.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

class ImportIntoRisk : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        ASSERT_TRUE(watchDir.isValid());
        TC::CTradeSetting setting = store->tradeSetting();
        setting.autoImportExGreeks = true;
        setting.autoImportExGreeksDir = watchDir.path();
        store->setTradeSetting(setting);
    }

    QTemporaryDir watchDir;
};

TEST_F(ImportIntoRisk, FileValuesReachTheRiskColumnsOfTheirRow)
{
    publish(quote("510050", 3.05, 3.0));
    publish(quote("10000041", 0.12, 0.1));
    publish(quote("10000042", 0.05, 0.06));
    TC::COptionPriceTTable table(nullptr);
    table.setInstrument({QStringLiteral("10000010.SH"), QStringLiteral("10000020.SH"),
                         QStringLiteral("10000041.SH"), QStringLiteral("10000042.SH")});
    table.setTableType(TC::PTT_RISK);
    const int row = table.rowOfCode(QStringLiteral("10000041.SH"));
    const int other = table.rowOfCode(QStringLiteral("10000010.SH"));
    ASSERT_GE(row, 0);
    ASSERT_GE(other, 0);
    ASSERT_NE(row, other);
    ASSERT_EQ(table.rowOfCode(QStringLiteral("10000042.SH")), row);
    ASSERT_TRUE(table.itemText(row, 9).isEmpty());

    TC::CAutoImportOptionExGreeksThread thread;
    int passes = 0;
    QObject receiver;
    QObject::connect(&thread, &TC::CAutoImportOptionExGreeksThread::sigReadFinish, &receiver, [&] {
        ++passes;
        table.updateExGreeksData();
    });
    thread.start();
    const QString file = QDir(watchDir.path()).filePath(QStringLiteral("greeks.json"));
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("[{\"code\": \"10000041.SH\", \"exSellImpliedVolatility\": 0.2312, \"exBuyImpliedVolatility\": "
                  "0.2298, \"exDelta\": 0.5321, \"exGamma\": 2.1456, \"exVega\": 0.0052, \"exTheta\": -0.0011},"
                  "{\"code\": \"10000042.SH\", \"exSellImpliedVolatility\": 0.2411, \"exBuyImpliedVolatility\": "
                  "0.2387, \"exDelta\": -0.4702, \"exGamma\": 2.0978, \"exVega\": 0.0051, \"exTheta\": -0.0009}]");
    }
    const bool imported = testsupport::waitUntil([&] { return passes > 0; }, 10000);
    thread.stop();
    ASSERT_TRUE(imported);
    EXPECT_FALSE(QFile::exists(file));

    struct Cell {
        int column;
        const char* text;
    };
    for (const Cell& cell : {Cell{3, "0.0052"}, Cell{5, "-0.0011"}, Cell{7, "2.1456"}, Cell{9, "0.5321"},
                             Cell{10, "0.2298"}, Cell{11, "0.2312"}, Cell{34, "0.0051"}, Cell{32, "-0.0009"},
                             Cell{30, "2.0978"}, Cell{28, "-0.4702"}, Cell{27, "0.2387"}, Cell{26, "0.2411"}}) {
        EXPECT_EQ(table.itemText(row, cell.column), QString::fromUtf8(cell.text)) << "column " << cell.column;
    }
    // The board's own Greeks stand beside them, and a row without a file shows none.
    EXPECT_FALSE(table.itemText(row, 8).isEmpty());
    for (int column : {3, 5, 7, 9, 10, 11, 34, 32, 30, 28, 27, 26}) {
        EXPECT_TRUE(table.itemText(other, column).isEmpty()) << "column " << column;
    }
}

}  // namespace
