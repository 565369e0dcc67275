// Renders a filled chain-like table in both themes to PNG files under the build
// directory, for a person to look at; asserts that theme colours reach the pixels.
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/coddevenrowtable.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QTableView>

namespace {

class TableLook : public ::testing::TestWithParam<const char*> {};

TEST_P(TableLook, FilledTableRendersWithThemeColours)
{
    const QString theme = QString::fromLatin1(GetParam());
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(theme));
    WG::COddEvenRowTable table(1000, nullptr, WG::BTMF_ALL);
    table.resize(760, 300);
    table.setColumnCount(9);
    const QStringList headers = {"选择", "买价", "卖价", "最新价", "合约代码", "购<行权价>沽", "合约代码", "最新价", "方向"};
    for (int c = 0; c < headers.size(); ++c) {
        table.setColumnHeader(c, headers[c]);
    }
    table.setColumnBoldFont(5, true);
    table.setColumnFlashChange(3, true);
    auto* check = new WG::CBaseTableColumnCheckBoxDelegate(0, nullptr);
    auto* button = new WG::CBaseTableColumnPushButtonDelegate(8, nullptr);
    table.setColumnDelegate(0, check);
    table.setColumnDelegate(8, button);
    table.setRowCount(10);
    for (int r = 0; r < 10; ++r) {
        const std::string key = std::to_string(r);
        check->setItemChecked(key, r % 3 == 0);
        button->setItemText(key, r % 2 ? QStringLiteral("买") : QStringLiteral("卖"), WG::UT_NONE);
        button->setItemType(key, r % 2 ? WG::NBT_CRITICAL : WG::NBT_SAFE, WG::UT_NONE);
        table.setItemDouble(r, 1, 0.1 + r * 0.0123, 4, utils::FNF_NONE, true);
        table.setItemDouble(r, 2, 0.1 + r * 0.0125, 4, utils::FNF_NONE, true);
        table.setItemDouble(r, 3, 0.1 + r * 0.0124, 4, utils::FNF_NONE, true);
        table.setItemTextColorKey(r, 3, r % 2 ? "tc_clr_priceT_rise" : "tc_clr_priceT_fall", true);
        table.setItemText(r, 4, QStringLiteral("1000%1").arg(4500 + r), true);
        table.setItemText(r, 5, QStringLiteral("%1").arg(2.5 + r * 0.05, 0, 'f', 3), true);
        table.setItemTextColorKey(r, 5, "tc_clr_pricet_exercise_price", true);
        table.setItemText(r, 6, QStringLiteral("1000%1").arg(4600 + r), true);
        table.setItemDouble(r, 7, utils::kAbsentDouble, 4, utils::FNF_NONE, true);
        if (r == 4) {
            for (int c = 1; c < 8; ++c) {
                table.setItemBackgroundColorKey(r, c, "tc_clr_priceT_actual_value_background", true);
            }
        }
    }
    table.setItemDouble(2, 3, 0.5, 4, utils::FNF_NONE, true);  // a change: flashes
    table.setStatText(1, QStringLiteral("合计"));
    table.setStatText(3, QStringLiteral("1.2345"));
    table.adjustColumnWidth();
    table.setSelectedRow(6);
    table.updateTable();
    table.show();
    QCoreApplication::processEvents();
    const QImage image = table.grab().toImage();
    const QString path = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("table_%1.png").arg(theme));
    ASSERT_TRUE(image.save(path));
    // The header strip and the empty area below the rows take the theme's colours.
    const QColor header = *WG::CUiResource::get()->getColor(QStringLiteral("clr_table_header_background"));
    EXPECT_EQ(image.pixelColor(table.width() - 3, 3).rgb(), header.rgb());
    WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
}

INSTANTIATE_TEST_SUITE_P(Themes, TableLook, ::testing::Values("dark", "light"));

}  // namespace
