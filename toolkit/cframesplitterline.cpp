#include "toolkit/cframesplitterline.h"

#include "toolkit/cuiresource.h"

#include <QPainter>

namespace WG {

CFrameSplitterLine::CFrameSplitterLine(const QString& colorKey, QWidget* parent, Qt::Orientation orientation)
    : QWidget(parent), m_colorKey(colorKey), m_orientation(orientation)
{
    updateFixedSize();
}

CFrameSplitterLine::~CFrameSplitterLine() = default;

void CFrameSplitterLine::setMargin(int left, int top, int right, int bottom)
{
    m_margins = QMargins(left, top, right, bottom);
    updateFixedSize();
    update();
}

void CFrameSplitterLine::setColorKey(const QString& key)
{
    m_colorKey = key;
    update();
}

void CFrameSplitterLine::updateFixedSize()
{
    if (m_orientation == Qt::Horizontal) {
        setFixedHeight(1 + m_margins.top() + m_margins.bottom());
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    } else {
        setFixedWidth(1 + m_margins.left() + m_margins.right());
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    }
}

void CFrameSplitterLine::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect inner = rect().marginsRemoved(m_margins);
    painter.fillRect(inner, *CUiResource::get()->getColor(m_colorKey));
}

}  // namespace WG
