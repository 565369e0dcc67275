// The row widget of a branch of the basket tree: "自选组合" with its add and
// delete-all buttons, or "稳稳胜" without them. It reports clicks and its
// buttons by signals; the tree acts on them.
#pragma once

#include "strategy/cstrategytreerow.h"

class QMouseEvent;

namespace WG {
class CPushButton;
}  // namespace WG

namespace TC {

class CStrategyTypeItem : public CStrategyTreeRow {
    Q_OBJECT
public:
    enum EButtonId {
        ID_ADD = 0,
        ID_DELETE_ALL = 1,
    };

    CStrategyTypeItem(int type, const QString& caption, QWidget* parent);
    ~CStrategyTypeItem() override;

    int type() const { return m_type; }
    QString caption() const;
    // The branch of the winner shows neither button.
    void setButtonsVisible(bool visible);
    WG::CSimpleTextWidget* captionWidget() const { return m_caption; }
    WG::CPushButton* addButton() const { return m_add; }
    WG::CPushButton* deleteButton() const { return m_delete; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

signals:
    void sigDoubleClick(int type);
    void sigClick(int type);
    void sigNewStrategy(bool);
    void sigDelStrategy(int type);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void layoutChildren() override;

private:
    int m_type;
    WG::CPushButton* m_add;
    WG::CPushButton* m_delete;
};

}  // namespace TC
