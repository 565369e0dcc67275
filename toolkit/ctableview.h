// The drawing parts of a table: the view, its header, the cell painter and the
// statistics row. They paint with the theme's keys, resolved at each paint, and
// ask the owning IBaseTable for everything else; they hold no cell data.
#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QWidget>

namespace WG {

class IBaseTable;

class CTableView : public QTableView {
    Q_OBJECT
public:
    CTableView(IBaseTable* table, QWidget* parent);
    IBaseTable* table() const { return m_table; }
    int hoverRow() const { return m_hoverRow; }
    Qt::MouseButton lastButton() const { return m_lastButton; }

signals:
    void sigRightClicked(const QModelIndex& index, const QPoint& globalPosition);

protected:
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    // The viewport area of a range of cells, grid lines included.
    QRect rangeRect(const QModelIndex& topLeft, const QModelIndex& bottomRight) const;

    IBaseTable* m_table;
    int m_hoverRow = -1;
    Qt::MouseButton m_lastButton = Qt::NoButton;
};

class CTableHeaderView : public QHeaderView {
    Q_OBJECT
public:
    CTableHeaderView(IBaseTable* table, QWidget* parent);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    QSize sectionSizeFromContents(int logicalIndex) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    IBaseTable* m_table;
};

class CTableItemPainter : public QStyledItemDelegate {
    Q_OBJECT
public:
    CTableItemPainter(IBaseTable* table, QObject* parent);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    IBaseTable* m_table;
};

class CTableStatRow : public QWidget {
    Q_OBJECT
public:
    CTableStatRow(IBaseTable* table, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    IBaseTable* m_table;
};

}  // namespace WG
