// A row or column of CRadioButtons of which one is chosen. Each member delivers
// its own events; the group answers which id is checked.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QList>

class QBoxLayout;
class QButtonGroup;

namespace WG {

class CRadioButton;

class CRadioButtonGroup : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    explicit CRadioButtonGroup(QWidget* parent, Qt::Orientation orientation = Qt::Horizontal, int spacing = 12);
    ~CRadioButtonGroup() override;

    CRadioButton* addButton(const QString& text, int id, bool checked, bool enabled = true);
    void setButtonCheckedByID(int id);
    // -1 when none is checked.
    int getCheckedButtonID() const;
    CRadioButton* button(int id) const;
    QList<CRadioButton*> buttons() const { return m_buttons; }

signals:
    void sigCheckedChanged(int id);

private:
    QBoxLayout* m_layout;
    QButtonGroup* m_group;
    QList<CRadioButton*> m_buttons;
};

}  // namespace WG
