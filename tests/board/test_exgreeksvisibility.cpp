// The visibility slot of the imported Greeks only ever shows their columns.
#include "board/coptionpricettable.h"
#include "board/cpricettableschema.h"
#include "boardfixture.h"

#include <gtest/gtest.h>

namespace {

class ExGreeksVisibility : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        table = std::make_unique<TC::COptionPriceTTable>(nullptr);
    }
    void TearDown() override
    {
        table.reset();
        BoardTest::TearDown();
    }
    void setImport(bool on)
    {
        TC::CTradeSetting setting = store->tradeSetting();
        setting.autoImportExGreeks = on;
        setting.autoImportExGreeksDir = configDir.path();
        store->setTradeSetting(setting);
    }
    int visibleImportColumns() const
    {
        int visible = 0;
        for (int column : TC::CPriceTTableSchema::externalGreekColumns()) {
            visible += table->columnVisible(column) ? 1 : 0;
        }
        return visible;
    }
    std::unique_ptr<TC::COptionPriceTTable> table;
};

}  // namespace

TEST_F(ExGreeksVisibility, ImportOffHidesTheColumnsOfTheRiskSet)
{
    setImport(false);
    table->setTableType(TC::PTT_RISK);
    ASSERT_FALSE(TC::CPriceTTableSchema::externalGreekColumns().isEmpty());
    EXPECT_EQ(visibleImportColumns(), 0);
}

TEST_F(ExGreeksVisibility, SwitchingTheImportOnShowsThem)
{
    setImport(false);
    table->setTableType(TC::PTT_RISK);
    setImport(true);
    table->updateExGreeksVisible();
    EXPECT_EQ(visibleImportColumns(), TC::CPriceTTableSchema::externalGreekColumns().size());
}

TEST_F(ExGreeksVisibility, SwitchingTheImportOffNeverHidesThem)
{
    setImport(true);
    table->setTableType(TC::PTT_RISK);
    const int shown = visibleImportColumns();
    EXPECT_EQ(shown, TC::CPriceTTableSchema::externalGreekColumns().size());
    setImport(false);
    table->updateExGreeksVisible();
    EXPECT_EQ(visibleImportColumns(), shown);
}

TEST_F(ExGreeksVisibility, OtherSetsAreLeftAlone)
{
    setImport(true);
    table->setTableType(TC::PTT_QUOTE);
    const QString before = table->saveConfigStr();
    table->updateExGreeksVisible();
    EXPECT_EQ(table->saveConfigStr(), before);
}
