// The view paints all visible cells in one pass; every cell must come out as
// the single-cell paint that the item delegate serves draws it: row colours,
// cell backgrounds and text colours by key, bold columns, selection, the grid,
// delegates, and the theme's background past the last row and column.
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/coddevenrowtable.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QAbstractItemDelegate>
#include <QCoreApplication>
#include <QImage>
#include <QItemSelectionModel>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <QTableView>

#include <tuple>

namespace {

void fill(WG::COddEvenRowTable& table, WG::CBaseTableColumnCheckBoxDelegate* check)
{
    const QStringList headers = {"选择", "合约", "最新价", "涨跌", "成交量", "名称", "隐含波动率"};
    table.setColumnCount(headers.size());
    for (int c = 0; c < headers.size(); ++c) {
        table.setColumnHeader(c, headers[c]);
        table.setColumnWidth(c, 70);
    }
    table.setColumnDelegate(0, check);
    table.setColumnBoldFont(2, true);
    table.setRowCount(14);
    for (int r = 0; r < 14; ++r) {
        check->setItemChecked(std::to_string(r), r % 3 == 0);
        table.setItemText(r, 1, QStringLiteral("1000%1").arg(4500 + r), true);
        table.setItemDouble(r, 2, 0.1 + r * 0.0123, 4, utils::FNF_NONE, true);
        table.setItemDouble(r, 3, r % 2 ? 1.25 * r : -0.5 * r, 2, utils::FNF_PERCENT, true);
        table.setItemTextColorKey(r, 3, r % 2 ? "clr_global_rise" : "clr_global_fall", true);
        table.setItemInt(r, 4, 123456 * (r + 1), utils::FNF_SEGMENTED, true);
        table.setItemText(r, 5, QStringLiteral("50ETF购12月%1").arg(2800 + 50 * r), true);
        table.setItemDouble(r, 6, 0.18 + r * 0.004, 4, utils::FNF_NONE, true);
        if (r == 5) {
            for (int c = 1; c < headers.size(); ++c) {
                table.setItemBackgroundColorKey(r, c, "clr_table_background_selected", true);
            }
        }
    }
    table.updateTable();
}

class TablePainting : public ::testing::TestWithParam<std::tuple<const char*, bool>> {};

TEST_P(TablePainting, OnePassPaintsWhatTheCellPainterPaints)
{
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(QString::fromLatin1(std::get<0>(GetParam()))));
    const bool sorted = std::get<1>(GetParam());
    WG::COddEvenRowTable table(1, nullptr, WG::BTMF_ALL);
    auto* check = new WG::CBaseTableColumnCheckBoxDelegate(0, nullptr);
    table.resize(640, 420);
    fill(table, check);
    if (sorted) {
        table.sortByColumn(3, WG::TSO_DESCENDING);  // view rows are no longer model rows
    }
    table.setSelectedRow(4);
    table.show();
    QCoreApplication::processEvents();

    QTableView* view = table.tableView();
    QWidget* viewport = view->viewport();
    const QImage onePass = viewport->grab().toImage().convertToFormat(QImage::Format_RGB32);

    QImage perCell(viewport->size(), QImage::Format_RGB32);
    perCell.fill(*WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background")));
    {
        QPainter painter(&perCell);
        QAbstractItemModel* model = view->model();
        int painted = 0;
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int column = 0; column < model->columnCount(); ++column) {
                const QModelIndex index = model->index(row, column);
                QStyleOptionViewItem option;
                option.rect = view->visualRect(index);
                if (!option.rect.intersects(viewport->rect())) {
                    continue;
                }
                option.state = view->selectionModel()->isSelected(index) ? QStyle::State_Selected : QStyle::State_None;
                painter.save();
                view->itemDelegate()->paint(&painter, option, index);
                painter.restore();
                ++painted;
            }
        }
        ASSERT_GT(painted, 14 * 6);
    }
    ASSERT_EQ(onePass.size(), perCell.size());
    int differing = 0;
    for (int y = 0; y < onePass.height(); ++y) {
        for (int x = 0; x < onePass.width(); ++x) {
            if (onePass.pixel(x, y) != perCell.pixel(x, y)) {
                if (differing++ < 5) {
                    ADD_FAILURE() << "pixel " << x << "," << y << " one pass " << std::hex << onePass.pixel(x, y)
                                  << " per cell " << perCell.pixel(x, y);
                }
            }
        }
    }
    EXPECT_EQ(differing, 0);
    // The pass drew the selected row in the selection colour: not a blank.
    const QColor selected = *WG::CUiResource::get()->getColor(QStringLiteral("clr_table_background_selected"));
    ASSERT_FALSE(view->selectionModel()->selectedIndexes().isEmpty());
    const QRect cell = view->visualRect(view->selectionModel()->selectedIndexes().front());
    EXPECT_EQ(onePass.pixel(cell.left() + 1, cell.top() + 1) & 0xffffff, selected.rgb() & 0xffffff);
}

INSTANTIATE_TEST_SUITE_P(BothThemesSortedOrNot, TablePainting,
                         ::testing::Combine(::testing::Values("dark", "light"), ::testing::Bool()));

}  // namespace
