#include "strategy/cstrategytreerow.h"

#include "toolkit/cimagewidget.h"
#include "toolkit/csimpletextwidget.h"

#include <QResizeEvent>

#include <algorithm>

namespace TC {

namespace {
constexpr int kIconSize = 14;
}  // namespace

CStrategyTreeRow::CStrategyTreeRow(const QString& objectName, const QString& imageKey, const QString& caption,
                                   int captionX, QWidget* parent)
    : WG::CBaseWidget(objectName, false, parent), m_captionX(captionX)
{
    setFixedHeight(kRowHeight);
    m_image = new WG::CImageWidget(-1, imageKey, this);
    m_image->setFixedSize(kIconSize, kIconSize);
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_caption = new WG::CSimpleTextWidget(false, -1, caption, this);
    m_caption->setAttribute(Qt::WA_TransparentForMouseEvents);
}

CStrategyTreeRow::~CStrategyTreeRow() = default;

void CStrategyTreeRow::themeChanged() { layoutChildren(); }

void CStrategyTreeRow::resizeEvent(QResizeEvent* event)
{
    WG::CBaseWidget::resizeEvent(event);
    layoutChildren();
}

int CStrategyTreeRow::centredY(int childHeight) const
{
    const int h = height() > 0 ? height() : kRowHeight;
    return (h - childHeight - 1) / 2;
}

void CStrategyTreeRow::layoutRow(int captionRight)
{
    m_image->move(2, centredY(m_image->height()));
    const int captionHeight = m_caption->sizeHint().height();
    m_caption->setFixedHeight(captionHeight);
    m_caption->move(m_captionX, centredY(captionHeight));
    m_caption->setFixedWidth(std::max(0, captionRight - m_captionX));
}

}  // namespace TC
