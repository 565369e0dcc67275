// The desk's editor of the winner settings: what it shows of the stored
// settings, what it writes and announces, that a wrong edit writes nothing and
// keeps every edit, and the demo user's 50ETF settings seeded once.
#include "app/cdeskservices.h"
#include "app/cwinnersettingsdialog.h"
#include "board/boardfixture.h"
#include "seam/user.h"

#include <gtest/gtest.h>

#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QSignalSpy>

namespace {

using desk::CWinnerSettingsDialog;

unsigned midnight(const QDate& date) { return static_cast<unsigned>(QDateTime(date, QTime(0, 0)).toSecsSinceEpoch()); }

class WinnerSettingsDialogTest : public boardtest::BoardTest {};

TEST_F(WinnerSettingsDialogTest, ShowsTheStoredSettingOfAChoice)
{
    TC::CWinnerSetting stored;
    stored.levelOne = 3.1;
    stored.levelTwo = 2.9;
    stored.startTime = midnight(QDate(2026, 11, 20));
    stored.endTime = midnight(QDate(2026, 12, 31));
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_BREAK, stored);
    CWinnerSettingsDialog dialog;
    EXPECT_EQ(dialog.underlying(), QStringLiteral("510050.SH"));
    EXPECT_EQ(dialog.direction(), 0);
    ASSERT_TRUE(dialog.choose(QStringLiteral("510050.SH"), TC::WPD_BREAK));
    EXPECT_TRUE(dialog.shownSetting() == stored);
    EXPECT_EQ(dialog.findChild<QDateEdit*>(QStringLiteral("winnerEndDate"))->date(), QDate(2026, 12, 31));
    EXPECT_FALSE(dialog.choose(QStringLiteral("999999.SH"), 0));
}

TEST_F(WinnerSettingsDialogTest, WritesEveryEditedChoiceAndAnnouncesEach)
{
    QSignalSpy changed(store, &TC::CUserConfig::sigWinnerSettingChanged);
    CWinnerSettingsDialog dialog;
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_RISE);
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelOne"))->setValue(3.05);
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_RANGE);
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelOne"))->setValue(2.9);
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelTwo"))->setValue(3.1);
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    ASSERT_EQ(changed.count(), 2);
    TC::CWinnerSetting rise;
    store->getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RISE, rise);
    EXPECT_DOUBLE_EQ(rise.levelOne, 3.05);
    EXPECT_LT(rise.startTime, rise.endTime);
    TC::CWinnerSetting range;
    store->getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RANGE, range);
    EXPECT_DOUBLE_EQ(range.levelOne, 2.9);
    EXPECT_DOUBLE_EQ(range.levelTwo, 3.1);
    // Kept in the file: read anew, as at the next start.
    TC::CUserSettingsStore again(configDir.path());
    TC::CWinnerSetting reread;
    again.getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RANGE, reread);
    EXPECT_TRUE(reread == range);
}

TEST_F(WinnerSettingsDialogTest, AWrongEditWritesNothingAndLosesNothing)
{
    QSignalSpy changed(store, &TC::CUserConfig::sigWinnerSettingChanged);
    CWinnerSettingsDialog dialog;
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_RISE);
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelOne"))->setValue(3.05);
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_FALL);
    auto* end = dialog.findChild<QDateEdit*>(QStringLiteral("winnerEndDate"));
    auto* start = dialog.findChild<QDateEdit*>(QStringLiteral("winnerStartDate"));
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelTwo"))->setValue(2.9);
    end->setDate(start->date());
    EXPECT_FALSE(dialog.apply());
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(dialog.direction(), TC::WPD_FALL) << "the wrong choice is shown";
    EXPECT_TRUE(dialog.errorText().contains(QStringLiteral("看跌"))) << dialog.errorText().toStdString();
    EXPECT_TRUE(dialog.errorText().contains(QStringLiteral("截止日须晚于起始日")));
    // The other edit is still there.
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_RISE);
    EXPECT_DOUBLE_EQ(dialog.shownSetting().levelOne, 3.05);
    dialog.choose(QStringLiteral("510050.SH"), TC::WPD_FALL);
    end->setDate(start->date().addMonths(2));
    EXPECT_TRUE(dialog.apply());
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(WinnerSettingsDialogTest, LevelsAForecastUsesMustBePositive)
{
    TC::CWinnerSetting setting;
    setting.startTime = midnight(QDate(2026, 11, 20));
    setting.endTime = midnight(QDate(2026, 12, 20));
    setting.levelTwo = 3.0;
    EXPECT_EQ(CWinnerSettingsDialog::check(setting, TC::WPD_RISE), QStringLiteral("价位一须大于0"));
    EXPECT_EQ(CWinnerSettingsDialog::check(setting, TC::WPD_FALL), QString());
    setting.levelOne = 3.0;
    setting.levelTwo = 0.0;
    EXPECT_EQ(CWinnerSettingsDialog::check(setting, TC::WPD_RANGE), QStringLiteral("价位二须大于0"));
    EXPECT_EQ(CWinnerSettingsDialog::check(setting, TC::WPD_RISE), QString());
}

TEST_F(WinnerSettingsDialogTest, CancelWritesNothing)
{
    QSignalSpy changed(store, &TC::CUserConfig::sigWinnerSettingChanged);
    CWinnerSettingsDialog dialog;
    dialog.findChild<QDoubleSpinBox*>(QStringLiteral("winnerLevelOne"))->setValue(3.05);
    dialog.reject();
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(WinnerSettingsDialogTest, TheDemoUserGets50EtfSettingsOnce)
{
    ASSERT_TRUE(desk::CDeskServices::seedDemoWinnerSettings(store, 3.0, QDate(2026, 11, 20)));
    TC::CWinnerSetting rise;
    store->getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RISE, rise);
    EXPECT_DOUBLE_EQ(rise.levelOne, 3.05);
    TC::CWinnerSetting range;
    store->getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RANGE, range);
    EXPECT_DOUBLE_EQ(range.levelOne, 2.85);
    EXPECT_DOUBLE_EQ(range.levelTwo, 3.15);
    EXPECT_EQ(range.startTime, midnight(QDate(2026, 11, 19)));
    EXPECT_EQ(range.endTime, midnight(QDate(2027, 2, 28)));
    // A user's own setting stays.
    range.levelOne = 2.5;
    store->setWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RANGE, range);
    EXPECT_FALSE(desk::CDeskServices::seedDemoWinnerSettings(store, 3.2, QDate(2026, 11, 21)));
    TC::CWinnerSetting kept;
    store->getWinnerSetting(QStringLiteral("510050.SH"), TC::WPD_RANGE, kept);
    EXPECT_DOUBLE_EQ(kept.levelOne, 2.5);
    EXPECT_FALSE(desk::CDeskServices::seedDemoWinnerSettings(nullptr, 3.0, QDate(2026, 11, 20)));
}

}  // namespace
