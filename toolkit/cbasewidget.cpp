#include "toolkit/cbasewidget.h"

#include "toolkit/cuiresource.h"

#include <QPainter>

namespace WG {

CBaseWidget::CBaseWidget(const QString& name, bool paintsBackground, QWidget* parent)
    : CEventWidgetT<QWidget>(parent), m_name(name), m_paintsBackground(paintsBackground)
{
    setObjectName(name);
}

CBaseWidget::~CBaseWidget() = default;

bool CBaseWidget::setActive(bool active, bool notify)
{
    if (m_active == active) {
        return false;
    }
    m_active = active;
    if (active) {
        onActive();
    }
    if (notify) {
        emit sigActiveChanged(active);
    }
    return true;
}

void CBaseWidget::onActive() {}

QRect CBaseWidget::getMaskRect() { return rect(); }

void CBaseWidget::paintBackgroud(const QColor& color)
{
    QPainter painter(this);
    painter.fillRect(rect(), color);
}

bool CBaseWidget::handleEvent(int code, int id, int arg, QString text, void* data)
{
    return CEventDeliverer::handleEvent(code, id, arg, text, data);
}

void CBaseWidget::paintEvent(QPaintEvent* event)
{
    if (m_paintsBackground) {
        // Resolved per paint: a theme change gives the key another colour.
        paintBackgroud(*CUiResource::get()->getColor(QStringLiteral("clr_table_background")));
    }
    QWidget::paintEvent(event);
}

}  // namespace WG
