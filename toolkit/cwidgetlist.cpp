#include "toolkit/cwidgetlist.h"

#include <QLayoutItem>

namespace WG {

CWidgetList::CWidgetList(Qt::Orientation orientation, QWidget* parent)
    : CEventWidgetT<QWidget>(parent),
      m_orientation(orientation),
      m_layout(new QBoxLayout(orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
}

CWidgetList::~CWidgetList() = default;

void CWidgetList::setMargin(int left, int top, int right, int bottom)
{
    m_layout->setContentsMargins(left, top, right, bottom);
    updateWidgetLength();
}

void CWidgetList::setSpacing(int spacing)
{
    m_layout->setSpacing(spacing);
    updateWidgetLength();
}

Qt::Alignment CWidgetList::alignmentOf(EWidgetAnchor anchor) const
{
    const bool horizontal = m_orientation == Qt::Horizontal;
    switch (anchor) {
    case WA_LEADING:
        return horizontal ? Qt::AlignTop : Qt::AlignLeft;
    case WA_TRAILING:
        return horizontal ? Qt::AlignBottom : Qt::AlignRight;
    case WA_FILL:
        return Qt::Alignment();
    case WA_CENTER:
        break;
    }
    return horizontal ? Qt::AlignVCenter : Qt::AlignHCenter;
}

void CWidgetList::addFixedWidget(QWidget* widget, EWidgetAnchor anchor, bool updateLength)
{
    if (widget == nullptr) {
        return;
    }
    m_layout->addWidget(widget, 0, alignmentOf(anchor));
    if (updateLength) {
        updateWidgetLength();
    }
}

void CWidgetList::addStretchWidget(QWidget* widget, int stretch, EWidgetAnchor anchor, bool updateLength)
{
    if (widget == nullptr) {
        return;
    }
    m_layout->addWidget(widget, stretch, alignmentOf(anchor));
    if (updateLength) {
        updateWidgetLength();
    }
}

void CWidgetList::addFixedSpace(int length) { m_layout->addSpacing(length); }

void CWidgetList::addStretchSpace(int stretch) { m_layout->addStretch(stretch); }

void CWidgetList::removeAllWidgets()
{
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    updateWidgetLength();
}

void CWidgetList::updateWidgetLength()
{
    const QMargins margins = m_layout->contentsMargins();
    const bool horizontal = m_orientation == Qt::Horizontal;
    int length = horizontal ? margins.left() + margins.right() : margins.top() + margins.bottom();
    int visible = 0;
    for (int i = 0; i < m_layout->count(); ++i) {
        QLayoutItem* item = m_layout->itemAt(i);
        if (QWidget* widget = item->widget()) {
            if (widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide)) {
                continue;
            }
            const QSize hint = widget->minimumSizeHint().expandedTo(widget->minimumSize());
            const QSize size = hint.isValid() ? hint : widget->sizeHint();
            length += horizontal ? qMax(0, size.width()) : qMax(0, size.height());
            ++visible;
        } else if (item->spacerItem() != nullptr) {
            const QSize size = item->sizeHint();
            length += horizontal ? size.width() : size.height();
        }
    }
    if (visible > 1) {
        length += (visible - 1) * qMax(0, m_layout->spacing());
    }
    if (horizontal) {
        setMinimumWidth(length);
    } else {
        setMinimumHeight(length);
    }
}

}  // namespace WG
