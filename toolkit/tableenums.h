// Flags, enumerations and small records shared by the toolkit's tables and
// their cell delegates.
#pragma once

#include <QFlags>
#include <QString>

namespace WG {

// Behaviour of a table. A table starts with BTF_DEFAULT; panels add or clear bits.
enum EBaseTableFlag {
    BTF_NONE = 0x0,
    BTF_SORTABLE = 0x1,           // a header click sorts
    BTF_SELECT_ROW = 0x2,         // a click selects the whole row
    BTF_HEADER_VISIBLE = 0x4,
    BTF_COLUMN_MOVABLE = 0x8,     // the user may drag columns
    BTF_COLUMN_RESIZABLE = 0x10,
    BTF_HOVER_ROW = 0x20,         // the row under the mouse is lit
    BTF_NO_ROW_SELECTION = 0x40,  // no built-in selection highlight at all
    BTF_GRID_LINES = 0x80,
    BTF_CONTEXT_MENU = 0x100,     // the built-in menu of EBaseTableMenuFlag on a right click
    BTF_STRETCH_LAST = 0x800,     // the last column takes the rest of the width
    BTF_DEFAULT = 0x1BF,
};
Q_DECLARE_FLAGS(EBaseTableFlags, EBaseTableFlag)

// Entries of the built-in context menu. The quote panel passes 495 (all but the column list).
enum EBaseTableMenuFlag {
    BTMF_NONE = 0x0,
    BTMF_EXPORT = 0x1,        // "导出" to a CSV file
    BTMF_COPY = 0x2,          // "复制" the selected rows
    BTMF_COPY_ALL = 0x4,      // "复制全部"
    BTMF_FILTER = 0x8,        // "筛选" by the values of the clicked column
    BTMF_COLUMN_LIST = 0x10,  // "显示列" with a check per column
    BTMF_AUTO_WIDTH = 0x20,   // "自动列宽"
    BTMF_RESET_SORT = 0x40,   // "取消排序"
    BTMF_CLEAR_FILTER = 0x80, // "清除筛选"
    BTMF_SELECT_ALL = 0x100,  // "全选"
    BTMF_ALL = 0x1FF,
};
Q_DECLARE_FLAGS(EBaseTableMenuFlags, EBaseTableMenuFlag)

// How a set of values filters a column.
enum EFilterType {
    FLT_NONE = 0,
    FLT_INCLUDE = 1,  // only rows whose text is in the set
    FLT_EXCLUDE = 2,  // rows whose text is not in the set
};

// Whether a change to a delegate's cell repaints at once or waits for the next update.
enum EUpdateType {
    UT_NONE = 0,     // store only
    UT_UPDATE = 1,   // repaint the cell now
};

// The saved form of a table's look, beside the column layout.
struct CBaseTableSettingParam {
    int rowHeight = 0;          // 0: the theme's "siz_table_row_height"
    bool showGrid = true;
    bool alternateRows = false;
    QString fontKey;            // "" : the theme's "fnt_default_normal_fix"
};

// The record of a cell edit, the data of UE_CELL_EDITING and UE_CELL_EDIT_COMMITTED.
// A handler of UE_CELL_EDITING may rewrite text and set flag to mark it changed.
struct CTableEditRecord {
    int row = -1;
    int column = -1;
    bool flag = false;
    QString text;
};

// Sort orders as the panels pass them; 2 and 3 ask to sort afresh in order 0 or 1.
enum ETableSortOrder {
    TSO_NONE = -1,
    TSO_ASCENDING = 0,
    TSO_DESCENDING = 1,
};

}  // namespace WG

Q_DECLARE_OPERATORS_FOR_FLAGS(WG::EBaseTableFlags)
Q_DECLARE_OPERATORS_FOR_FLAGS(WG::EBaseTableMenuFlags)
