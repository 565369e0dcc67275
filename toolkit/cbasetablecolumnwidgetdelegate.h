// The base of a table column's cell controls (check box, button, combo, spin,
// text). A delegate paints its cells and takes their clicks itself, so a column
// of controls costs no widget per row. Rows are named by key: the decimal row id
// in a normal table, the row's keyString() in a high-performance one. Events go
// to the deliverer given at construction, else to the table that holds it.
#pragma once

#include "toolkit/ceventdeliverer.h"
#include "toolkit/tableenums.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <string>
#include <unordered_map>

class QPainter;
class QWidget;

namespace WG {

// What the table knows of a cell when it asks a delegate to paint it.
struct CCellPaintContext {
    QRect rect;
    QFont font;
    QString text;        // the cell's own display text
    QColor textColor;    // resolved for this paint
    int alignment = 0;   // Qt::Alignment
    bool selected = false;
};

class CBaseTableColumnWidgetDelegate : public QObject, public CEventDeliverer {
    Q_OBJECT
public:
    CBaseTableColumnWidgetDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnWidgetDelegate() override;

    int column() const { return m_column; }
    void setColumn(int column) { m_column = column; }
    // The view whose viewport hosts short-lived editors (spin, combo popup).
    void setHostView(QWidget* view) { m_hostView = view; }
    QWidget* hostView() const { return m_hostView; }

    virtual void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const;
    // A left press inside the cell; true when the delegate acted on it.
    virtual bool mousePress(const std::string& key, const QRect& cellRect, const QPoint& position);
    // The cell's text for copy and export.
    virtual QString itemText(const std::string& key) const;

    void setItemVisible(const std::string& key, bool visible, bool update = true);
    bool itemVisible(const std::string& key) const;
    void setItemEnabled(const std::string& key, bool enabled, bool update = true);
    bool itemEnabled(const std::string& key) const;
    void removeItem(const std::string& key);
    // The state of one row's cell now belongs to another key (a row moved up); a state under `to` is replaced.
    void moveItem(const std::string& from, const std::string& to);
    void clearItems();
    bool hasItem(const std::string& key) const { return m_items.count(key) != 0; }
    std::size_t itemCount() const { return m_items.size(); }

signals:
    // The delegate's cells need a repaint.
    void sigRepaint();

protected:
    struct ItemState {
        bool visible = true;
        bool enabled = true;
        bool checked = false;
        QString text;
        int type = 0;
        QStringList items;
        QVector<QVariant> datas;
        int current = -1;
        double value = 0.0;
        bool hasValue = false;
    };
    ItemState& item(const std::string& key) { return m_items[key]; }
    const ItemState* findItem(const std::string& key) const;
    void changed(bool update);
    // The rectangle a control takes inside its cell: centred, at most size.
    static QRect controlRect(const QRect& cell, const QSize& size);
    bool deliver(int code, int arg, const std::string& key) { return deliverEvent(code, m_column, arg, QString::fromStdString(key), nullptr); }

    std::unordered_map<std::string, ItemState> m_items;

private:
    int m_column;
    QWidget* m_hostView = nullptr;
};

}  // namespace WG
