#include "toolkit/cradiobuttongroup.h"

#include "toolkit/cradiobutton.h"

#include <QBoxLayout>
#include <QButtonGroup>

namespace WG {

CRadioButtonGroup::CRadioButtonGroup(QWidget* parent, Qt::Orientation orientation, int spacing)
    : CEventWidgetT<QWidget>(parent),
      m_layout(new QBoxLayout(orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this)),
      m_group(new QButtonGroup(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(spacing);
    m_layout->addStretch(1);
    m_group->setExclusive(true);
    connect(m_group, QOverload<int, bool>::of(&QButtonGroup::buttonToggled), this, [this](int id, bool checked) {
        if (checked) {
            emit sigCheckedChanged(id);
        }
    });
}

CRadioButtonGroup::~CRadioButtonGroup() = default;

CRadioButton* CRadioButtonGroup::addButton(const QString& text, int id, bool checked, bool enabled)
{
    auto* button = new CRadioButton(id, text, this);
    button->setEnabled(enabled);
    m_layout->insertWidget(m_layout->count() - 1, button);
    m_group->addButton(button, id);
    m_buttons << button;
    if (checked) {
        button->setChecked(true);
    }
    return button;
}

void CRadioButtonGroup::setButtonCheckedByID(int id)
{
    if (CRadioButton* target = button(id)) {
        target->setChecked(true);
    }
}

int CRadioButtonGroup::getCheckedButtonID() const { return m_group->checkedId(); }

CRadioButton* CRadioButtonGroup::button(int id) const
{
    for (CRadioButton* member : m_buttons) {
        if (member->id() == id) {
            return member;
        }
    }
    return nullptr;
}

}  // namespace WG
