// A table that owns its cells, addressed by row id and column. Cells live in a
// CTableCellModel; writes are coalesced into one ranged dataChanged per turn of
// the event loop (or at updateTable()), so a tick that rewrites every cell
// repaints once. Numbers keep their value for sorting beside their text.
#pragma once

#include "seam/common.h"
#include "toolkit/ibasetable.h"
#include "toolkit/toolkitenums.h"

#include <QHash>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <string>
#include <vector>

namespace WG {

class CLineEdit;
class CTableCellModel;
class CItemWidgetHolder;

class CBaseNormalTable : public IBaseTable {
    Q_OBJECT
public:
    CBaseNormalTable(int id, QWidget* parent, EBaseTableMenuFlags menuFlags);
    ~CBaseNormalTable() override;

    void clear() override;
    void clearColumns() override;
    void setColumnCount(int count) override;
    int addColumn() override;
    void removeColumn(int column) override;
    void removeRow(int row) override;
    void updateTable() override;

    // Rows grow or shrink at the end; returns the ids of all rows.
    QVector<int> setRowCount(int count);
    // Returns the new row's id.
    int appendRow();

    // The update flag is kept for callers; every write reaches the screen at the
    // end of the current turn of the event loop, or at updateTable().
    void setItemText(int row, int column, const QString& text, bool update = true);
    void setItemText(int row, int column, const std::string& text, bool update = true);
    void setItemInt(int row, int column, int value, utils::CFlags<utils::EFormatNumberFlag> flags = {},
                    bool update = true);
    void setItemLongLong(int row, int column, long long value, utils::CFlags<utils::EFormatNumberFlag> flags = {},
                         bool update = true);
    void setItemDouble(int row, int column, double value, int decimals,
                       utils::CFlags<utils::EFormatNumberFlag> flags = {}, bool update = true);
    // Keys are resolved at paint time; "" gives back the default.
    void setItemTextColorKey(int row, int column, const char* key, bool update = true);
    void setItemBackgroundColorKey(int row, int column, const char* key, bool update = true);
    void clearItem(int row, int column);
    // The table takes the widget; a widget already in the cell is deleted. The
    // cell answers with the new widget at once; on screen the old one makes way
    // for it at updateTable() or at the end of the current turn of the event loop,
    // together with all others replaced meanwhile, and is deleted afterwards.
    // A widget whose cell is out of view stays hidden until the cell scrolls in.
    void setItemWidget(int row, int column, QWidget* widget, EAligns align = AL_CENTER, bool update = true);
    QWidget* itemWidget(int row, int column) const;
    // The table takes the editor and shows it over a cell of the column while editing.
    void setColumnEditor(int column, CLineEdit* editor);
    void setColumnEditable(int column, bool editable);
    void setItemDblClickEnabled(int column, bool enabled);
    void setFlashOnlyUpdateBorderAndText();

    CTableCellModel* model() const { return m_model; }

protected:
    QAbstractItemModel* cellModel() const override;
    void applyEditedText(int row, int column, const QString& text) override;
    void onModelFlushNeeded() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void noteFlash();
    void remapHolders(int removedRow, int removedColumn);
    void commitItemWidgets();

    CTableCellModel* m_model;
    QHash<quint64, QPointer<CItemWidgetHolder>> m_holders;
    QVector<QPointer<CItemWidgetHolder>> m_stagedHolders;  // waiting to show their new widget
    std::vector<QPointer<QWidget>> m_retired;                // replaced, waiting for their deletion
    QTimer m_widgetTimer;
    double m_seenFlashAt = 0.0;
};

}  // namespace WG
