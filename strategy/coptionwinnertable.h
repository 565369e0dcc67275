// The table of the option winner: one row a candidate, a radio button in the
// first column choosing the one that goes to the analysis, the curve and a
// quick order. Two column sets: nine columns for a single option (rise and
// fall), fourteen for a put-call pair (breakout and range). It shows records;
// the winner widget builds and reprices them.
#pragma once

#include "strategy/coptionwinnertabledata.h"
#include "toolkit/coddevenrowtable.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

namespace WG {
class CRadioButton;
}

namespace TC {

class COptionWinnerTable : public WG::COddEvenRowTable {
    Q_OBJECT
public:
    // A radio button's click goes up as this event with id the row id.
    static constexpr int kRowChosenEvent = 100;

    // Columns of both sets: single option (modes 0 and 1) and pair (modes 2 and 3).
    enum ESingleColumn {
        SC_CHOICE = 0, SC_NAME = 1, SC_LAST = 2, SC_BS = 3, SC_QUANTITY = 4, SC_NET = 5, SC_PROFIT = 6,
        SC_LOSS = 7, SC_VOLUME = 8, SC_COUNT = 9
    };
    enum EPairColumn {
        PC_CHOICE = 0, PC_NAME_ONE = 1, PC_LAST_ONE = 2, PC_BS_ONE = 3, PC_QUANTITY_ONE = 4, PC_NAME_TWO = 5,
        PC_LAST_TWO = 6, PC_BS_TWO = 7, PC_QUANTITY_TWO = 8, PC_NET = 9, PC_PROFIT = 10, PC_LOSS = 11,
        PC_VOLUME_ONE = 12, PC_VOLUME_TWO = 13, PC_COUNT = 14
    };

    explicit COptionWinnerTable(QWidget* parent);
    ~COptionWinnerTable() override;

    // The rows and the three maps go.
    void clear() override;
    void themeChanged() override;
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    int getMode() const { return mode; }
    // Shows the column set of a forecast; the rows go with the old columns.
    void setMode(int forecast);

    // Adds a candidate, or replaces the one of the same row key; returns the
    // row id. The first row (id 0) is checked as it is added.
    int addRecord(const COptionWinnerTableDataPtr& record);
    // Column widths for the rows shown, the money columns wide enough for
    // figures that come with the first quotes.
    void fitColumns();
    // Writes the row's columns of the present set from its record.
    void updateRow(int row);
    COptionWinnerTableDataPtr record(int row) const { return rows.value(row); }
    int rowOfKey(const QString& rowKey) const { return rowByKey.value(rowKey, -1); }
    // Every row that uses the contract.
    QSet<int> rowsOfCode(const QString& code) const { return rowsByCode.value(code); }
    int candidateCount() const { return rows.size(); }

    // The checked row id, -1 when none.
    int checkedRow() const { return checked; }
    // Checks the row's radio button and unchecks the one before; an unknown row unchecks all.
    void setCheckedRow(int row);
    WG::CRadioButton* radioOf(int row) const;

    const QSet<int>& getTotalColumns() const { return totalColumns; }
    int getProfitColumn() const { return profitColumn; }
    int getLossColumn() const { return lossColumn; }

private:
    void setupColumns();
    void applyColorKeys(int row);
    void writeNumber(int row, int column, double value, int decimals, bool known);

    int mode = 0;
    QMap<int, COptionWinnerTableDataPtr> rows;
    QMap<QString, int> rowByKey;
    QMap<QString, QSet<int>> rowsByCode;
    QSet<int> totalColumns;
    int profitColumn = SC_PROFIT;
    int lossColumn = SC_LOSS;
    int checked = -1;
};

}  // namespace TC
