#include "toolkit/cradiobutton.h"

#include "seam/uievents.h"
#include "toolkit/ccheckbox.h"
#include "toolkit/cuiresource.h"

#include <QFontMetrics>
#include <QPainter>

namespace WG {

CRadioButton::CRadioButton(int id, const QString& text, QWidget* parent) : CEventWidgetT<QRadioButton>(parent), m_id(id)
{
    setText(text);
    setAttribute(Qt::WA_Hover, true);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this,
            [this](bool checked) { deliverEvent(UE_CHECK_CLICKED, m_id, checked ? 1 : 0, this->text(), nullptr); });
    connect(this, &QAbstractButton::toggled, this,
            [this](bool checked) { deliverEvent(UE_CHECK_TOGGLED, m_id, checked ? 1 : 0, this->text(), nullptr); });
}

CRadioButton::~CRadioButton() = default;

void CRadioButton::setFontKey(const QString& key)
{
    m_fontKey = key;
    updateGeometry();
    update();
}

QSize CRadioButton::sizeHint() const
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(m_fontKey));
    const int box = 13;
    return QSize(box + (text().isEmpty() ? 0 : 5 + metrics.horizontalAdvance(text())) + 2, qMax(box + 4, metrics.height() + 2));
}

void CRadioButton::paintEvent(QPaintEvent*)
{
    CUiResource* res = CUiResource::get();
    QPainter painter(this);
    const int box = 13;
    const QRect boxRect(1, (height() - box) / 2, box, box);
    paintCheckMark(painter, boxRect, isChecked(), isEnabled(), true, underMouse());
    if (!text().isEmpty()) {
        painter.setFont(*res->getFont(m_fontKey));
        painter.setPen(*res->getColor(isEnabled() ? QStringLiteral("clr_text_default") : QStringLiteral("clr_simple_text_disable")));
        const QRect textRect(boxRect.right() + 6, 0, width() - boxRect.right() - 6, height());
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text(), Qt::ElideRight, textRect.width()));
    }
}

}  // namespace WG
