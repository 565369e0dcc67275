// A strip of CPushButtons of which exactly one is checked, like tabs. Each
// member still delivers UE_BUTTON_CLICKED with its own id.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QList>

class QBoxLayout;
class QButtonGroup;

namespace WG {

class CPushButton;

class CPushButtonGroup : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    // backgroundKey: a colour key or an image key painted behind the buttons; empty for none.
    CPushButtonGroup(Qt::Orientation orientation, int spacing, const QString& backgroundKey, QWidget* parent);
    ~CPushButtonGroup() override;

    void addPushButton(CPushButton* button, bool checked);
    // Adds a text button of a mode switch (行情, 指标, ...) 40 px wide: faces in
    // the theme's button colours, the chosen mode's text in the active colour.
    CPushButton* addModeButton(const QString& text, int id, int height, bool checked);
    void setCheckedByID(int id);
    // The id of the checked button, -1 when none is.
    int checkedButton() const;
    CPushButton* button(int id) const;
    QList<CPushButton*> buttons() const { return m_buttons; }

signals:
    void sigCheckedChanged(int id);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_backgroundKey;
    QBoxLayout* m_layout;
    QButtonGroup* m_group;
    QList<CPushButton*> m_buttons;
};

}  // namespace WG
