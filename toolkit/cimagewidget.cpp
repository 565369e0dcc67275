#include "toolkit/cimagewidget.h"

#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QMouseEvent>
#include <QPainter>

namespace WG {

CImageWidget::CImageWidget(int id, const QString& key, QWidget* parent) : CEventWidgetT<QWidget>(parent), m_id(id), m_key(key) {}

CImageWidget::~CImageWidget() = default;

void CImageWidget::setImageKey(const QString& key)
{
    m_key = key;
    updateGeometry();
    update();
}

QSize CImageWidget::sizeHint() const
{
    if (m_key.isEmpty()) {
        return QSize(16, 16);
    }
    return CUiResource::get()->getPixmap(m_key)->size();
}

void CImageWidget::paintEvent(QPaintEvent*)
{
    if (m_key.isEmpty()) {
        return;
    }
    const QPixmap* pixmap = CUiResource::get()->getPixmap(m_key);
    QSize target = pixmap->size();
    target.scale(target.boundedTo(size()), Qt::KeepAspectRatio);
    QRect place(QPoint(0, 0), target);
    place.moveCenter(rect().center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
    painter.drawPixmap(place, *pixmap);
}

void CImageWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()) && isEnabled()) {
        emit sigClicked(m_id);
        deliverEvent(UE_BUTTON_CLICKED, m_id, 0, m_key, nullptr);
        return;
    }
    QWidget::mouseReleaseEvent(event);
}

}  // namespace WG
