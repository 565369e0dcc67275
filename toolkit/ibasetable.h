// The common table: columns, rows, sort, filter, saved layout, flags, the cell
// events and the built-in context menu. Cells live in a Qt model that a subclass
// provides (CBaseNormalTable owns one; CBaseHighPerformanceTable adapts a row
// model); this class shows it through a sort proxy and never copies cell data.
// Row numbers in every call are ids: the source rows, unchanged by sorting.
#pragma once

#include "toolkit/cbasewidget.h"
#include "toolkit/tableenums.h"

#include <QPair>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <QVector>

#include <string>

class QAbstractItemModel;
class QFontMetrics;
class QTableView;
class QLineEdit;
class QMenu;
class QPainter;
class QStyleOptionViewItem;
class QModelIndex;
class QRect;
class QRegion;

namespace WG {

class CBaseTableColumnWidgetDelegate;
class CHpfTableAdapterModel;
class CTableHeaderView;
class CTableCellModel;
class CTableItemPainter;
class CTableSortProxy;
class CTableStatRow;
class CTableView;

class IBaseTable : public CBaseWidget {
    Q_OBJECT
    friend class CTableView;
    friend class CTableHeaderView;
    friend class CTableItemPainter;
    friend class CTableStatRow;

public:
    // view: a drawing surface of a subclass's own kind; the table takes it. Null gives the standard view.
    IBaseTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags, CTableView* view = nullptr);
    ~IBaseTable() override;

    int id() const { return m_id; }

    // --- virtual operations, in the order the panels know them ---
    virtual void clear() = 0;
    virtual void loadConfigStr(QString config);
    virtual void loadDefaulfConfigStr(QString config);
    virtual CBaseTableSettingParam getTableSetting();
    virtual void setTableSetting(const CBaseTableSettingParam& setting);
    virtual void setInnerEnabled(bool enabled);
    virtual void setFlag(EBaseTableFlags flags);
    // The text an absent number shows, and the format flags numbers get by default.
    virtual void setNumberTextInfo(const QString& invalidText, int defaultFormatFlags);
    virtual void clearColumns() = 0;
    virtual void setColumnCount(int count) = 0;
    virtual int addColumn() = 0;
    virtual void removeColumn(int column) = 0;
    // Rows that pass the filter and are shown.
    virtual int realRowCount();
    virtual void removeRow(int row) = 0;
    virtual void setColumnVisible(int column, bool visible);
    virtual void setColumnLocked(int column, bool locked);
    virtual void moveColumn(int from, int to);
    virtual void setColumnWidth(int column, int width);
    virtual int itemInt(int row, int column);
    virtual long long itemLonglong(int row, int column);
    virtual double itemDouble(int row, int column);
    virtual QString itemText(int row, int column);
    // The text of a cell as shown, delegate columns included.
    virtual QString itemTextFromAll(int row, int column);
    virtual int itemType(int row, int column);
    virtual int itemFlag(int row, int column);
    virtual bool exportData(QString path);
    virtual void copyData();
    virtual void filterColumn(int column, const QPair<EFilterType, QSet<QString>>& filter);
    virtual void filterColumnRange(int column, double minimum, double maximum);
    virtual void clearFilter();
    virtual void showFilterMenu(int column, QRect anchor);
    // The table owns the delegate from here on.
    virtual void setColumnDelegate(int column, CBaseTableColumnWidgetDelegate* delegate);
    virtual void updateUiData();
    // Brings the screen up to date with the model; the panels call it once per tick.
    virtual void updateTable();

    // --- non-virtual ---
    QString saveConfigStr() const;
    EBaseTableFlags flag() const { return m_flags; }
    EBaseTableMenuFlags menuFlag() const { return m_menuFlags; }
    int rowCount() const;
    int columnCount() const;
    // The row id shown at a view position, -1 past the end.
    int rowID(int viewRow) const;
    // The view position of a row id, -1 when hidden by a filter.
    int rowPosition(int row) const;
    // The column shown at a view position.
    int columnID(int viewColumn) const;
    int columnWidth(int column) const;
    bool columnVisible(int column) const;
    bool colListVisible(int column) const;
    bool columnLocked(int column) const;
    CBaseTableColumnWidgetDelegate* columnDelegate(int column) const;
    QString columnHeader(int column) const;
    void setColumnHeader(int column, QString text);
    void setColListVisible(int column, bool visible);
    void setColumnFilterable(int column, bool filterable);
    void setColumnBoldFont(int column, bool bold);
    bool columnBoldFont(int column) const;
    void setColumnFlashChange(int column, bool flash);
    bool columnFlashChange(int column) const;
    // Horizontal alignment of a column's cells (Qt::Alignment), 0 for the default.
    void setColumnAlignment(int column, int alignment);
    // order 0 ascending, 1 descending; 2 and 3 sort afresh in order 0 or 1, on the
    // current column when column is no column of this table.
    void sortByColumn(int column, int order);
    int getSortOrder() const { return m_sortOrder; }
    int getSortColumn() const { return m_sortColumn; }
    void adjustColumnWidth();
    // Row colours: the background and the alternate row's.
    void setBackgroundColorKey(const char* backgroundKey, const char* alternateKey);
    void setSelectedRow(int row);
    int selectedRow() const;
    void setStatText(int column, QString text);
    QString statText(int column) const;
    bool statRowVisible() const;
    // How long a changed cell of a flashing column stays lit.
    void setFlashDuration(int milliseconds) { m_flashDuration = milliseconds; }
    int flashDuration() const { return m_flashDuration; }
    bool isCellFlashing(int row, int column) const;
    // The current horizontal offset as UE_TABLE_HSCROLL reports it.
    int horizontalScrollArg() const;
    QString invalidText() const { return m_invalidText; }
    QTableView* tableView() const;

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;
    void themeChanged() override;

protected:
    // The model of the cells, in source rows and columns.
    virtual QAbstractItemModel* cellModel() const = 0;
    // The key by which column delegates name a source row.
    virtual std::string rowKey(int row) const;
    // The resource key of a row's background when no cell colour is set.
    virtual QString rowBackgroundKey(int viewRow) const;
    // Called after a committed cell edit with the final text.
    virtual void applyEditedText(int row, int column, const QString& text);
    // Whether a cell shows a change at this moment.
    virtual bool cellFlashing(const QModelIndex& sourceIndex, double now) const;
    virtual void onModelFlushNeeded() {}
    // Attach the model once the subclass has built it.
    void attachModel(QAbstractItemModel* model);
    void ensureColumnStates();
    CTableSortProxy* proxy() const { return m_proxy; }
    CTableView* view() const { return m_view; }
    void startFlashTimer();
    // Removes a deleted column's state and delegate and moves later ones down.
    void dropColumnState(int column);
    void insertColumnState(int column);
    void resetColumnStates();
    QModelIndex sourceIndex(const QModelIndex& viewIndex) const;
    QModelIndex viewIndex(int row, int column) const;
    void applyFlags();

    struct ColumnState {
        bool visible = true;
        bool colListVisible = true;
        bool locked = false;
        bool bold = false;
        bool flash = false;
        bool filterable = false;
        bool dblClick = true;
        int alignment = 0;
        int width = 0;  // the last shown width, kept while hidden
        QString stat;
        CBaseTableColumnWidgetDelegate* delegate = nullptr;
        QPointer<QLineEdit> editor;
    };
    QVector<ColumnState> m_columns;
    int m_invalidFlags = 0;
    bool m_flashBorderOnly = false;  // a changed cell gets a frame instead of a filled background

    // Editing, for the cell painter.
    QLineEdit* columnEditor(int column) const;
    void setColumnEditorWidget(int column, QLineEdit* editor);
    void setColumnDblClick(int column, bool enabled);

private:
    void onPressed(const QModelIndex& index);
    void onDoubleClicked(const QModelIndex& index);
    void onRightClicked(const QModelIndex& index, const QPoint& globalPosition);
    void onSectionResized(int logical, int oldSize, int newSize);
    void onSectionMoved(int logical, int oldVisual, int newVisual);
    void onHeaderClicked(int logical);
    void onFlashTick();
    void applyColumnVisibility(int column);
    void keepLockedColumnsInFront();
    void buildContextMenu(QMenu* menu, int column);
    QString cellTextForCopy(int row, int column);
    QString rowsAsText(const QVector<int>& rows, QChar separator, bool quote);
    QVector<int> rowsInViewOrder() const;

    // Painting (ibasetablepainting.cpp). The view paints every cell that meets
    // its dirty region in one pass, resolving the theme once per paint;
    // paintCell serves the item delegate's single-cell requests.
    struct CellLook;
    struct PaintState;
    static const QString& cellFontKey(bool bold);
    // What a column's header needs: its text in the bold font, padding, and the sort arrow when it has it.
    int headerWidth(const QFontMetrics& bold, int column) const;
    static constexpr int kCellPadding = 4;
    void paintCells(QPainter* painter, const QRegion& region) const;
    void paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& viewIndex) const;
    void readCell(int sourceRow, int sourceColumn, CellLook& look) const;
    void paintCellBackground(QPainter* painter, const QRect& rect, const CellLook& look, const QColor& rowBackground,
                             bool hover, bool selected, bool flashing, const PaintState& state) const;
    void paintCellContent(QPainter* painter, const QRect& rect, int sourceRow, int sourceColumn, bool selected,
                          const CellLook& look, const PaintState& state) const;
    bool commitEdit(int row, int column, const QString& text);

    int m_id;
    EBaseTableFlags m_flags = BTF_DEFAULT;
    EBaseTableMenuFlags m_menuFlags;
    CTableView* m_view = nullptr;
    CTableHeaderView* m_header = nullptr;
    CTableItemPainter* m_painter = nullptr;
    CTableSortProxy* m_proxy = nullptr;
    CTableStatRow* m_statRow = nullptr;
    QAbstractItemModel* m_model = nullptr;
    CTableCellModel* m_cells = nullptr;  // m_model when it is a normal table's cells: read without variants
    CHpfTableAdapterModel* m_hpfCells = nullptr;  // likewise when it shows high-performance rows
    int m_sortColumn = -1;
    int m_sortOrder = TSO_NONE;
    int m_flashDuration = 600;
    double m_flashTickAt = 0.0;  // clockMSec of the last flash tick, 0 while none runs
    QTimer m_flashTimer;
    double m_lastFlashAt = 0.0;
    QString m_backgroundKey;
    QString m_alternateKey;
    QString m_invalidText;
    QString m_defaultConfig;
    CBaseTableSettingParam m_setting;
    bool m_movingLocked = false;
    double m_paintClock = 0.0;  // the clock of the paint under way: one reading serves every cell
};

}  // namespace WG
