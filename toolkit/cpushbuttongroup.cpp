#include "toolkit/cpushbuttongroup.h"

#include "toolkit/cpushbutton.h"
#include "toolkit/cuiresource.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QPainter>

namespace WG {

CPushButtonGroup::CPushButtonGroup(Qt::Orientation orientation, int spacing, const QString& backgroundKey,
                                   QWidget* parent)
    : CEventWidgetT<QWidget>(parent),
      m_backgroundKey(backgroundKey),
      m_layout(new QBoxLayout(orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom,
                              this)),
      m_group(new QButtonGroup(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(spacing);
    m_group->setExclusive(true);
    connect(m_group, QOverload<int>::of(&QButtonGroup::buttonClicked), this,
            [this](int id) { emit sigCheckedChanged(id); });
}

CPushButtonGroup::~CPushButtonGroup() = default;

void CPushButtonGroup::addPushButton(CPushButton* button, bool checked)
{
    if (button == nullptr) {
        return;
    }
    button->setCheckable(true);
    m_layout->addWidget(button);
    m_group->addButton(button, button->id());
    m_buttons << button;
    if (checked) {
        button->setChecked(true);
    }
}

void CPushButtonGroup::setCheckedByID(int id)
{
    if (CPushButton* target = button(id)) {
        target->setChecked(true);
    }
}

int CPushButtonGroup::checkedButton() const { return m_group->checkedId(); }

CPushButton* CPushButtonGroup::button(int id) const
{
    for (CPushButton* member : m_buttons) {
        if (member->id() == id) {
            return member;
        }
    }
    return nullptr;
}

void CPushButtonGroup::paintEvent(QPaintEvent*)
{
    if (m_backgroundKey.isEmpty()) {
        return;
    }
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    if (res->hasKey(QStringLiteral("images"), m_backgroundKey)) {
        painter.drawPixmap(rect(), *res->getPixmap(m_backgroundKey));
    } else {
        painter.fillRect(rect(), *res->getColor(m_backgroundKey));
    }
}

CPushButton* CPushButtonGroup::addModeButton(const QString& text, int id, int height, bool checked)
{
    // The button draws an image as an icon beside its text, so the faces are
    // theme colours rather than the images of the button keys.
    CButtonColor face;
    face.normal = QStringLiteral("clr_order_operation_background");
    face.hover = QStringLiteral("clr_button_hover");
    face.active = QStringLiteral("clr_button_checked");
    auto* button = new CPushButton(QString(), id, 1, 1, 40, height, 0, this);
    button->setButtonColor(face);
    button->setText(text);
    button->setHorizontalText(true);
    button->setTextColorKey(QStringLiteral("clr_param_table_order_mode_inactive"),
                            QStringLiteral("clr_param_table_order_mode_inactive"),
                            QStringLiteral("clr_param_table_order_mode_active"),
                            QStringLiteral("clr_param_table_order_mode_inactive"));
    addPushButton(button, checked);
    return button;
}

}  // namespace WG
