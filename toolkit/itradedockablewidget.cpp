#include "toolkit/itradedockablewidget.h"

namespace TC {

ITradeDockableWidget::ITradeDockableWidget(bool paintsBackground, const QString& name, int widgetID,
                                           TraderTypeFlags flags, QWidget* parent)
    : WG::IDockableWidget(name, paintsBackground, parent), m_widgetID(widgetID), m_supported(flags)
{
}

ITradeDockableWidget::~ITradeDockableWidget() = default;

void ITradeDockableWidget::acquire() { ++m_references; }

void ITradeDockableWidget::release()
{
    if (m_references > 0) {
        --m_references;
    }
}

bool ITradeDockableWidget::needRequestAccount(std::string key) const
{
    return !key.empty();
}

}  // namespace TC
