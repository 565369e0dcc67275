// The desk's settings of the limit per order: what it shows, what it writes,
// and that the limits are there again when the settings are read anew.
#include "app/corderlimitsdialog.h"
#include "seam/tradingrecords.h"
#include "seam/user.h"
#include "services/user/cusersettingsstore.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QSpinBox>
#include <QTemporaryDir>

namespace {

class OrderLimitsDialogTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        store = new TC::CUserSettingsStore(dir.path());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
    }
    void TearDown() override { utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr); }

    QTemporaryDir dir;
    TC::CUserSettingsStore* store = nullptr;
};

TEST_F(OrderLimitsDialogTest, ShowsTheDemoUsersLimits)
{
    desk::COrderLimitsDialog dialog;
    EXPECT_EQ(dialog.fixPriceLimit(), 50);
    EXPECT_EQ(dialog.marketPriceLimit(), 10);
    EXPECT_TRUE(dialog.fixPriceSplit());
    EXPECT_TRUE(dialog.marketPriceSplit());
    EXPECT_EQ(dialog.findChild<QSpinBox*>(QStringLiteral("fixLimit"))->suffix(), QStringLiteral(" 张"));
}

TEST_F(OrderLimitsDialogTest, WritesThePermissionsTheOrderFlowReadsAndKeepsThem)
{
    desk::COrderLimitsDialog dialog;
    dialog.setFixPriceLimit(30);
    dialog.setMarketPriceLimit(5);
    dialog.setFixPriceSplit(false);
    dialog.accept();
    const auto info = store->getPermissionInfoPtr();
    EXPECT_EQ(info->getInt(nqservice::kPermStkOptFixPriceMaxOrderLimit), 30);
    EXPECT_EQ(info->getInt(nqservice::kPermStkOptMarketPriceMaxOrderLimit), 5);
    EXPECT_EQ(info->getInt(nqservice::kPermStkOptFixPriceSplitAllowance), 0);
    EXPECT_EQ(info->getInt(nqservice::kPermStkOptMarketPriceSplitAllowance), 1);
    // Read anew, as at the next start.
    auto* again = new TC::CUserSettingsStore(dir.path());
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(again);
    desk::COrderLimitsDialog second;
    EXPECT_EQ(second.fixPriceLimit(), 30);
    EXPECT_EQ(second.marketPriceLimit(), 5);
    EXPECT_FALSE(second.fixPriceSplit());
}

TEST_F(OrderLimitsDialogTest, CancelWritesNothing)
{
    desk::COrderLimitsDialog dialog;
    dialog.setFixPriceLimit(7);
    dialog.reject();
    EXPECT_EQ(store->getPermissionInfoPtr()->getInt(nqservice::kPermStkOptFixPriceMaxOrderLimit), 50);
}

}  // namespace
