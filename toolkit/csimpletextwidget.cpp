#include "toolkit/csimpletextwidget.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>

namespace WG {

CSimpleTextWidget::CSimpleTextWidget(bool clickable, int id, const QString& text, QWidget* parent)
    : CEventWidgetT<QWidget>(parent), m_clickable(clickable), m_id(id), m_text(text)
{
    if (clickable) {
        setCursor(Qt::PointingHandCursor);
    }
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

CSimpleTextWidget::~CSimpleTextWidget() = default;

void CSimpleTextWidget::setText(const QString& text, int maxWidth)
{
    m_text = text;
    m_maxWidth = qMax(0, maxWidth);
    if (m_maxWidth > 0) {
        setFixedWidth(m_maxWidth);
    }
    setToolTip(shownText() != m_text ? m_text : QString());
    updateGeometry();
    update();
}

QString CSimpleTextWidget::shownText() const
{
    const int limit = m_maxWidth > 0 ? m_maxWidth : width();
    const QFontMetrics metrics(*CUiResource::get()->getFont(m_fontKey));
    if (limit <= 0 || (m_maxWidth <= 0 && !isVisible())) {
        return m_text;
    }
    return metrics.elidedText(m_text, Qt::ElideRight, limit);
}

void CSimpleTextWidget::setFontKey(const QString& key)
{
    m_fontKey = key;
    updateGeometry();
    update();
}

void CSimpleTextWidget::setColorKey(const QString& key)
{
    m_colorKey = key;
    update();
}

void CSimpleTextWidget::setFlag(int flag)
{
    m_flag = flag;
    update();
}

QString CSimpleTextWidget::currentColorKey() const
{
    return isEnabled() ? m_colorKey : QStringLiteral("clr_simple_text_disable");
}

QSize CSimpleTextWidget::sizeHint() const
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(m_fontKey));
    const int width = m_maxWidth > 0 ? m_maxWidth : metrics.horizontalAdvance(m_text) + 2;
    return QSize(width, metrics.height() + 2);
}

QSize CSimpleTextWidget::minimumSizeHint() const
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(m_fontKey));
    return QSize(m_maxWidth > 0 ? m_maxWidth : qMin(sizeHint().width(), metrics.horizontalAdvance(QStringLiteral("..."))),
                 metrics.height() + 2);
}

void CSimpleTextWidget::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    const QFont font = *res->getFont(m_fontKey);
    painter.setFont(font);
    painter.setPen(*res->getColor(currentColorKey()));
    const QFontMetrics metrics(font);
    painter.drawText(rect(), m_flag, metrics.elidedText(m_text, Qt::ElideRight, width()));
}

void CSimpleTextWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_clickable && isEnabled() && event->button() == Qt::LeftButton && rect().contains(event->pos())) {
        emit sigClicked(m_id);
        deliverEvent(UE_BUTTON_CLICKED, m_id, 0, m_text, nullptr);
        return;
    }
    QWidget::mouseReleaseEvent(event);
}

}  // namespace WG
