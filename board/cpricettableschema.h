// The column sets of the chain table: for each table type and trader type the
// headers and properties by fixed column number, the strike column, the code
// column of each side, the shading blocks and the columns hidden by trader
// type. Plain data, no widgets: the table builds itself from it and the row
// functions write by the same numbers.
#pragma once

#include <QString>
#include <QVector>

namespace TC {

// The five column sets of the chain table, chosen by the panel's mode buttons
// (all but PTT_PRICE, which only setTableType reaches).
enum EPriceTTableType {
    PTT_QUOTE = 0,   // "行情"
    PTT_TARGET = 1,  // "指标"
    PTT_RISK = 2,    // "风险"
    PTT_INFO = 3,    // "信息"
    PTT_PRICE = 4,   // bare prices
};

// The colours of a cell's pair of order buttons.
enum ButtonColor : int {
    BC_COVERED = 0,  // "备兑": open in fall colour, close in rise colour
    BC_BUY = 1,      // "买入": both in rise colour
    BC_SELL = 2,     // "卖出": both in fall colour
};

// One column: its number, header and properties.
struct CPriceTColumn {
    int column = 0;
    QString header;
    bool bold = false;    // B
    bool flash = false;   // F
    bool number = false;  // N: text in "tc_clr_priceT_number"
    bool total = false;   // T: text in "tc_clr_priceT_total"
};

// Columns that a quote recolours, for one side of a row (-1: none).
struct CPriceTSideColours {
    int bidColumn = -1;
    int askColumn = -1;
    QVector<int> riseColumns;
};

class CPriceTTableSchema {
public:
    // The columns of a set in column order; empty for an unknown type.
    static const QVector<CPriceTColumn>& columns(int tableType, int traderType);
    // The middle column; -1 for an unknown type.
    static int strikeColumn(int tableType, int traderType);
    // The column of the option's stock key on the call or the put side; -1 for an unknown type.
    static int codeColumn(int tableType, int traderType, bool call);
    // The code column of the side a clicked column belongs to; the strike column counts for the call.
    static int selectCodeColumn(int tableType, int traderType, int column);
    // First and last column of the call's (left) and the put's (right) shaded block.
    static bool leftBlock(int tableType, int traderType, int& first, int& last);
    static bool rightBlock(int tableType, int traderType, int& first, int& last);
    // Columns hidden after a full refresh by trader type; fromList tells whether
    // they also leave the column list or only the view.
    static QVector<int> hiddenColumns(int tableType, int traderType, bool& fromList);
    // The risk columns of imported Greeks and implied vols, hidden while the import is off, in hiding order.
    static QVector<int> externalGreekColumns();
    // The columns a theme change recolours from the quote, per side.
    static CPriceTSideColours themeColours(int tableType, int traderType, bool call);
    // Whether a saved layout was saved from a set of this trader type: it names
    // each column of such a set once. The quote sets of the two trader types
    // differ in width, and a layout of one applied to the other would put
    // columns under the wrong headers. (A layout of another set of the same
    // trader type is the panel's to give: it loads the quote layout in any mode.)
    static bool layoutBelongsTo(const QString& layout, int traderType);
};

}  // namespace TC
