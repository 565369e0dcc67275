// The cells of a normal table: text, sort value, colour keys and change time per
// cell, in a QAbstractTableModel. Writes are coalesced: many writes in one turn of
// the event loop end in one ranged dataChanged (at flush() or on a zero timer).
// It paints nothing and resolves no resource key; the table does that at paint.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QTimer>
#include <QVector>

#include <vector>

namespace WG {

class CTableCellModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // Roles beyond Qt's, read by the tables' cell painter and the sort proxy.
    enum ERole {
        SortRole = Qt::UserRole + 1,  // double for numbers, else the text
        TextColorKeyRole,             // QString resource key, "" for the default
        BackgroundKeyRole,            // QString resource key, "" for the row's colour
        ChangedAtRole,                // double clockMSec of the last change of a flashing cell, 0 if none
        BoldRole,                     // bool
        RowKeyRole,                   // QString: the row's key for column delegates (the decimal row id)
        ValueTypeRole,                // int QVariant::Type of the last write
        TextColorRole,                // a resolved QColor (high-performance rows give colours, not keys)
        BackgroundColorRole,          // likewise
        FlashingRole,                 // bool: the row says the cell shows a change
    };

    explicit CTableCellModel(QObject* parent = nullptr);
    ~CTableCellModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // Structure. Each emits its own signals at once, after flushing pending writes.
    void setColumnCount(int count);
    int insertColumnAt(int column);  // returns the new column
    void removeColumnAt(int column);
    void setRowCountTo(int count);
    int appendRowAt();               // returns the new row
    void removeRowAt(int row);
    void clearRows();

    void setHeaderText(int column, const QString& text);
    QString headerText(int column) const;
    void setColumnFlash(int column, bool flash);
    bool columnFlash(int column) const;
    void setColumnBold(int column, bool bold);
    bool columnBold(int column) const;
    void setColumnEditable(int column, bool editable);
    bool columnEditable(int column) const;
    // 0 keeps the default: numbers right, other text left.
    void setColumnAlignment(int column, int alignment);

    // Cell writes; each returns whether the cell changed. An unchanged write costs no signal.
    bool setCellText(int row, int column, const QString& text);
    // A number: its text as formatted, the value for sorting.
    bool setCellNumber(int row, int column, const QString& text, double value, int type);
    bool setCellTextColorKey(int row, int column, const QString& key);
    bool setCellBackgroundKey(int row, int column, const QString& key);
    void clearCell(int row, int column);

    QString cellText(int row, int column) const;
    double cellNumber(int row, int column) const;  // the absent marker when the cell holds no number
    int cellType(int row, int column) const;
    QString cellTextColorKey(int row, int column) const;
    QString cellBackgroundKey(int row, int column) const;
    double cellChangedAt(int row, int column) const;

    // What a painter reads of a cell, without variants: a paint reads every
    // visible cell. The pointers live until the cell's next write.
    struct CellPaint {
        const QString* text = nullptr;
        const QString* textColorKey = nullptr;
        const QString* backgroundKey = nullptr;
        double changedAt = 0.0;
        int alignment = 0;  // as Qt::TextAlignmentRole gives it
        bool bold = false;
    };
    bool cellPaint(int row, int column, CellPaint& paint) const;

    // Emits the pending changes now, one ranged dataChanged per run of adjacent
    // changed rows (one for all when the runs are many); a no-op when nothing is pending.
    void flush();
    bool hasPendingChanges() const { return !m_dirtyRows.empty(); }
    // The clockMSec of the newest flash start, 0 if none.
    double lastFlashAt() const { return m_lastFlashAt; }

private:
    struct Cell {
        QString text;
        QString textColorKey;
        QString backgroundKey;
        double number;
        double changedAt = 0.0;
        int type = 0;  // QVariant::Invalid
        Cell();
    };
    struct Column {
        QString header;
        bool flash = false;
        bool bold = false;
        bool editable = false;
        int alignment = 0;
    };

    bool valid(int row, int column) const;
    void markChanged(int row, int column);
    void dropPending();
    static bool looksNumeric(const QString& text);
    static int alignmentOf(const Cell& cell, const Column& column);

    std::vector<std::vector<Cell>> m_rows;
    QVector<Column> m_columns;
    // Changed since the last flush: the rows, and per row the first and last
    // changed column (-1 when the row is clean).
    std::vector<int> m_dirtyRows;
    std::vector<std::pair<int, int>> m_dirtySpan;
    double m_lastFlashAt = 0.0;
    QTimer m_flushTimer;
};

}  // namespace WG
