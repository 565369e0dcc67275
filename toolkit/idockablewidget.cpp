#include "toolkit/idockablewidget.h"

namespace WG {

IDockableWidget::IDockableWidget(const QString& name, bool paintsBackground, QWidget* parent)
    : CBaseWidget(name, paintsBackground, parent)
{
}

IDockableWidget::~IDockableWidget() = default;

}  // namespace WG
