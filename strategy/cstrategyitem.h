// The row widget of one basket in the tree: an icon, the name and a delete
// button. It reports clicks, double clicks (rename) and its button by signals;
// hovering shows the whole name as a tool tip.
#pragma once

#include "strategy/cstrategytreerow.h"

class QMouseEvent;
class QTreeWidgetItem;

namespace WG {
class CPushButton;
}  // namespace WG

namespace TC {

class CStrategyItem : public CStrategyTreeRow {
    Q_OBJECT
public:
    enum EButtonId { ID_DELETE = 3 };

    CStrategyItem(int type, const QString& name, QTreeWidgetItem* row, QWidget* parent);
    ~CStrategyItem() override;

    int type() const { return m_type; }
    QString name() const;
    QTreeWidgetItem* row() const { return m_row; }
    WG::CSimpleTextWidget* textWidget() const { return m_caption; }
    WG::CPushButton* deleteButton() const { return m_delete; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

signals:
    void sigDoubleClick(bool);
    void sigClick(int type, QString name);
    void sigDelete(bool, QString name);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void layoutChildren() override;

private:
    int m_type;
    QTreeWidgetItem* m_row;
    WG::CPushButton* m_delete;
};

}  // namespace TC
