// Shows an IBaseHpfTableModel as a Qt table model. It copies nothing: each
// data() call asks the row. The row set it reports changes only at sync(), so
// views and proxies always see a consistent count; sync() runs at the table's
// updateTable() and, coalesced, at the end of a turn in which rows changed.
#pragma once

#include "toolkit/ibasehpftablemodel.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QTimer>

namespace WG {

class CHpfTableAdapterModel : public QAbstractTableModel, public IHpfModelObserver {
    Q_OBJECT
public:
    explicit CHpfTableAdapterModel(QObject* parent = nullptr);
    ~CHpfTableAdapterModel() override;

    void setSource(IBaseHpfTableModel* source);
    IBaseHpfTableModel* source() const { return m_source; }
    // Reports new, removed and changed rows to the views; returns whether anything changed.
    bool sync();
    // Tells the views that these cells changed inside rows already reported, when
    // the source changed them in place without a new revision: the views repaint
    // just those cells. The range is cut to the rows and columns reported.
    void cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // What a painter needs of one cell, read from its row once: the display
    // text, the alignment and the row's own colours (invalid where the row has
    // none). Gives the same as data() with the matching roles, without a
    // variant or a row lookup per role. False outside the reported rows.
    struct CellPaint {
        QString text;
        QColor textColor;
        QColor background;
        int alignment = 0;
    };
    bool cellPaint(int row, int column, CellPaint& paint) const;

    void hpfModelChanged() override;
    void hpfModelDestroyed() override;

signals:
    void sigSynced();

private:
    int alignmentOf(int column) const;
    const QColor* backgroundOf(const IBaseHpfTableData& row, int column) const;

    IBaseHpfTableModel* m_source = nullptr;
    int m_rows = 0;
    int m_columns = 0;
    unsigned m_structureRevision = 0;
    unsigned m_dataRevision = 0;
    QTimer m_syncTimer;
};

}  // namespace WG
